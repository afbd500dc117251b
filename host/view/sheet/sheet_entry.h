// SPDX-License-Identifier: MIT
#ifndef HOST_VIEW_SHEET_SHEET_ENTRY_H
#define HOST_VIEW_SHEET_SHEET_ENTRY_H

#include <map>
#include <optional>

#include <QList>
#include <QString>
#include <QStringList>

#include "host/item/item.h"

namespace host {

/// One file of a sheet and how far it has come.
struct SheetEntry {
    enum class State {
        Waiting,  ///< Its turn has not come.
        Reading,  ///< `fraction` tells how far.
        Shown,    ///< Its tile has an item.
        Failed,   ///< `reason` tells why; its tile says so.
        Released, ///< It was read, and its tile has no item: that gave its memory back while nobody
                  ///< looked, is lent, or only its count was wanted.
    };

    QString path;
    QString name;        ///< Without the folder; told apart by folders where two are the same.
    qint64 fileSize = 0; ///< Bytes.
    State state = State::Waiting;
    double fraction = 0; ///< 0 to 1.
    QString reason;
    quint64 needed = 0;            ///< Bytes that there was no room for; 0 for another reason.
    int job = 0;                   ///< Of the queue; 0 unless it waits or is read.
    quint64 count = 0;             ///< Triangles or samples; 0 until it was read.
    bool hidden = false;           ///< A person does not want to see it.
    bool visible = false;          ///< It is in view.
    quint64 lastSeen = 0;          ///< Grows with each pass that showed it.
    std::optional<ItemState> left; ///< How the person left the item, until another is there.
    bool goesHome = false;         ///< Then it takes its first view, as was asked meanwhile,
    bool fits = false;             ///< or shows all of it from where it is.
};

/// The files of a sheet by the ids of their tiles, which start at 1.
using SheetEntries = std::map<int, SheetEntry>;

/// What a sheet can be sorted by.
enum class SheetOrder { Name, Size, Count };

/// Makes the entries of @p paths, in that order. Names that occur twice get as much of their
/// folders as tells them apart.
SheetEntries makeEntries(const QStringList &paths);

/// The ids sorted: names as a person sorts them (2 before 10), sizes and counts from the largest;
/// equal ones by name. @p reversed turns all of it round.
QList<int> sortedIds(const SheetEntries &entries, SheetOrder order, bool reversed);

/// The ids of those shown items that give back their memory first, so that the total falls to
/// @p limit bytes: the one that was seen longest ago first, none that is visible now.
/// @p bytes gives the memory of an entry's item.
template <typename Bytes>
QList<int> idsToRelease(const SheetEntries &entries, quint64 limit, Bytes bytes)
{
    quint64 total = 0;
    std::multimap<quint64, int> hidden; // by when they were last seen
    for (const auto &[id, entry] : entries) {
        if (entry.state != SheetEntry::State::Shown)
            continue;
        total += bytes(id);
        if (!entry.visible)
            hidden.emplace(entry.lastSeen, id);
    }
    QList<int> ids;
    for (const auto &[seen, id] : hidden) {
        if (total <= limit)
            break;
        total -= bytes(id);
        ids.append(id);
    }
    return ids;
}

} // namespace host

#endif
