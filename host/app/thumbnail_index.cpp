// SPDX-License-Identifier: MIT
#include "host/app/thumbnail_index.h"

#include <algorithm>

#include <QCollator>
#include <QFileInfo>
#include <QLocale>
#include <QUrl>

namespace host {

namespace {

/// Takes the title and the width of a column in pixels.
const char *const head = R"(<!DOCTYPE html>
<html lang="en">
<meta charset="utf-8">
<meta name="viewport" content="width=device-width, initial-scale=1">
<title>%1</title>
<style>
:root { color-scheme: light dark; --ground: #f5f5f3; --text: #26282b; --faint: #6a6e73;
        --rule: #dcdcd8; --fault: #a03232; }
@media (prefers-color-scheme: dark) {
  :root { --ground: #1c1e21; --text: #d9dbde; --faint: #92979d; --rule: #383b40; --fault: #e08a80; }
  img { filter: brightness(.88); }
}
body { margin: 0 auto; max-width: 120rem; padding: 1.5rem 2rem 4rem; background: var(--ground);
       color: var(--text); font: 15px/1.45 system-ui, sans-serif; }
h1 { font-size: 1.25rem; font-weight: 600; margin: 0; }
h2 { font-size: .95rem; font-weight: 600; margin: 2.25rem 0 .75rem; overflow-wrap: anywhere; }
.sheet { display: grid; grid-template-columns: repeat(auto-fill, minmax(%2px, 1fr)); gap: 1.25rem; }
figure { margin: 0; }
img { display: block; width: 100%; height: auto; border-radius: 4px; }
figcaption { margin-top: .35rem; font-size: .87rem; overflow-wrap: anywhere; }
small { display: block; color: var(--faint); font-size: .8rem; }
table { border-collapse: collapse; font-size: .87rem; }
td { border-top: 1px solid var(--rule); padding: .35rem 1.5rem .35rem 0; vertical-align: top;
     overflow-wrap: anywhere; }
.fault { color: var(--fault); }
</style>
)";

QString folderOfFile(const QString &file)
{
    return QFileInfo(file).path();
}

QString nameOfFile(const QString &file)
{
    return QFileInfo(file).fileName();
}

/// By folder and then by name, case aside and 2 before 10.
template <typename Entries> void sortByFile(Entries &entries)
{
    QCollator collator{QLocale(QLocale::English)};
    collator.setNumericMode(true);
    collator.setCaseSensitivity(Qt::CaseInsensitive);
    std::sort(entries.begin(), entries.end(), [&](const auto &a, const auto &b) {
        int order = collator.compare(folderOfFile(a.file), folderOfFile(b.file));
        if (order == 0)
            order = collator.compare(nameOfFile(a.file), nameOfFile(b.file));
        return order == 0 ? a.file < b.file : order < 0;
    });
}

QString figure(const ThumbnailEntry &entry)
{
    const QString address = QString::fromLatin1(QUrl::toPercentEncoding(entry.picture));
    const QString name = nameOfFile(entry.file).toHtmlEscaped();
    const QString details = entry.details.isEmpty()
                                ? QString()
                                : "<small>" + entry.details.toHtmlEscaped() + "</small>";
    // In one step, since names may hold a "%1".
    return QStringLiteral("<figure title=\"%1\"><a href=\"./%2\"><img src=\"./%2\" alt=\"%3\" "
                          "width=\"%4\" height=\"%5\" loading=\"lazy\"></a>"
                          "<figcaption>%3%6</figcaption></figure>\n")
        .arg(entry.file.toHtmlEscaped(), address, name, QString::number(entry.size.width()),
             QString::number(entry.size.height()), details);
}

QString countOf(int count, const QString &one, const QString &many)
{
    return count == 1 ? one : many.arg(QLocale::c().toString(count));
}

} // namespace

QString thumbnailIndex(ThumbnailList list)
{
    using List = ThumbnailList;
    constexpr int narrowest = 96, widest = 400; // pixels of a column
    sortByFile(list.pictures);
    sortByFile(list.failures);
    int column = narrowest;
    for (const ThumbnailEntry &entry : qAsConst(list.pictures))
        column = std::clamp(entry.size.width(), column, widest);
    QString title = countOf(list.pictures.size(), List::tr("1 picture"), List::tr("%1 pictures"));
    if (!list.failures.isEmpty())
        title += ", " + countOf(list.failures.size(), List::tr("1 file failed"),
                                List::tr("%1 files failed"));
    QString page = QString(head).arg(title, QString::number(column)) + "<h1>" + title + "</h1>\n";
    if (!list.failures.isEmpty())
        page += "<p><a href=\"#failed\">" + List::tr("What failed, and why") + "</a></p>\n";
    QString folder; // of no file: paths are absolute
    for (const ThumbnailEntry &entry : qAsConst(list.pictures)) {
        if (folder != folderOfFile(entry.file)) {
            page += folder.isEmpty() ? "" : "</div>\n";
            folder = folderOfFile(entry.file);
            page += "<h2>" + folder.toHtmlEscaped() + "</h2>\n<div class=\"sheet\">\n";
        }
        page += figure(entry);
    }
    page += folder.isEmpty() ? "" : "</div>\n";
    if (list.failures.isEmpty())
        return page;
    page += "<h2 id=\"failed\">" + List::tr("Failed") + "</h2>\n<table>\n";
    for (const ThumbnailFailure &failure : qAsConst(list.failures))
        page += "<tr><td>" + failure.file.toHtmlEscaped() + "</td><td class=\"fault\">" +
                failure.reason.toHtmlEscaped() + "</td></tr>\n";
    return page + "</table>\n";
}

} // namespace host
