// SPDX-License-Identifier: MIT
#include "host/view/sheet/sheet_entry.h"

#include <algorithm>
#include <vector>

#include <QCollator>
#include <QFileInfo>
#include <QHash>
#include <QLocale>

namespace host {

namespace {

/// The last @p pieces of a path.
QString tail(const QString &path, int pieces)
{
    return path.section('/', -pieces, -1, QString::SectionSkipEmpty);
}

/// Gives every path the shortest tail that no other of the same name has.
QStringList distinctNames(const QStringList &paths)
{
    constexpr int most = 4; // folders and the name; beyond that nobody reads on
    QStringList names;
    for (const QString &path : paths)
        names << tail(path, 1);
    for (int pieces = 2; pieces <= most; ++pieces) {
        QHash<QString, int> uses;
        for (const QString &name : qAsConst(names))
            ++uses[name];
        for (int i = 0; i < names.size(); ++i)
            if (uses.value(names[i]) > 1)
                names[i] = tail(paths[i], pieces);
    }
    return names;
}

} // namespace

SheetEntries makeEntries(const QStringList &paths)
{
    QStringList absolute;
    for (const QString &path : paths)
        absolute << QFileInfo(path).absoluteFilePath();
    absolute.removeDuplicates();
    const QStringList names = distinctNames(absolute);
    SheetEntries entries;
    for (int i = 0; i < absolute.size(); ++i) {
        SheetEntry entry;
        entry.path = absolute[i];
        entry.name = names[i];
        entry.fileSize = QFileInfo(absolute[i]).size();
        entries.emplace(i + 1, entry);
    }
    return entries;
}

QList<int> sortedIds(const SheetEntries &entries, SheetOrder order, bool reversed)
{
    // The C locale compares bytes and knows no numbers.
    const QLocale own;
    QCollator byName(own.language() == QLocale::C ? QLocale(QLocale::English) : own);
    byName.setNumericMode(true);
    byName.setCaseSensitivity(Qt::CaseInsensitive);
    struct Row {
        int id;
        quint64 most;          // the largest comes first
        QCollatorSortKey name; // made once: thousands are compared many times each
    };
    std::vector<Row> rows;
    rows.reserve(entries.size());
    for (const auto &[id, entry] : entries) {
        const quint64 most = order == SheetOrder::Size    ? quint64(entry.fileSize)
                             : order == SheetOrder::Count ? entry.count
                                                          : 0;
        rows.push_back({id, most, byName.sortKey(entry.name)});
    }
    std::stable_sort(rows.begin(), rows.end(), [](const Row &a, const Row &b) {
        return a.most != b.most ? a.most > b.most : a.name.compare(b.name) < 0;
    });
    QList<int> ids;
    for (const Row &row : rows)
        ids.append(row.id);
    if (reversed)
        std::reverse(ids.begin(), ids.end());
    return ids;
}

} // namespace host
