// SPDX-License-Identifier: MIT
#include "host/view/sheet/sheet_entry.h"

#include <algorithm>

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
    QList<int> ids;
    for (const auto &[id, entry] : entries)
        ids.append(id);
    std::stable_sort(ids.begin(), ids.end(), [&](int a, int b) {
        const SheetEntry &left = entries.at(a), &right = entries.at(b);
        if (order == SheetOrder::Size && left.fileSize != right.fileSize)
            return left.fileSize > right.fileSize;
        if (order == SheetOrder::Count && left.count != right.count)
            return left.count > right.count;
        return byName.compare(left.name, right.name) < 0;
    });
    if (reversed)
        std::reverse(ids.begin(), ids.end());
    return ids;
}

} // namespace host
