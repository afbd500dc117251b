// SPDX-License-Identifier: MIT
#ifndef HOST_APP_THUMBNAIL_INDEX_H
#define HOST_APP_THUMBNAIL_INDEX_H

#include <QCoreApplication>
#include <QSize>
#include <QString>
#include <QVector>

namespace host {

/// A picture of a file.
struct ThumbnailEntry {
    QString file;    ///< Absolute path.
    QString picture; ///< Name of the picture, beside the index.
    QSize size;      ///< Of the picture, in pixels.
    QString details; ///< A line about the file; may be empty.
};

/// A file of which there is no picture, or none as it is now.
struct ThumbnailFailure {
    QString file;   ///< Absolute path.
    QString reason; ///< A phrase for a person.
};

struct ThumbnailList {
    Q_DECLARE_TR_FUNCTIONS(ThumbnailList)
public:
    QVector<ThumbnailEntry> pictures;
    QVector<ThumbnailFailure> failures;
};

/// The page that shows @p list: a heading for each folder, its pictures in the order in which
/// people sort names, and a table of what failed. It follows the reader's choice of light or dark
/// and needs no other file but the pictures.
QString thumbnailIndex(ThumbnailList list);

} // namespace host

#endif
