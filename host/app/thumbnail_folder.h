// SPDX-License-Identifier: MIT
#ifndef HOST_APP_THUMBNAIL_FOLDER_H
#define HOST_APP_THUMBNAIL_FOLDER_H

#include <QCoreApplication>
#include <QImage>
#include <QString>

#include "host/app/thumbnail_index.h"

namespace host {

/// A folder of small pictures, one for each file, that says by itself what is in it: each picture
/// holds, as text, the file's path and what that was like when the picture was made. What could not
/// be made leaves a note with the reason.
///
/// Any number of programs, on machines that share the folder, write into it at once: what one of
/// them puts there is there whole or not at all, and named by the whole path of the file.
class ThumbnailFolder {
    Q_DECLARE_TR_FUNCTIONS(ThumbnailFolder)
public:
    /// @p options names all that pictures depend on besides their files.
    ThumbnailFolder(const QString &path, const QString &options);

    /// The path by which a file is known: from the root, without detours.
    static QString absolute(const QString &file);

    /// Makes the folder where it is not there. Returns the reason why that cannot be done, or an
    /// empty text, as the others do that return one.
    QString make() const;

    QString indexPath() const { return path_ + "/index.html"; }
    QString pictureOf(const QString &file) const; ///< Path of the picture; it may not be there.

    /// What a picture that is made now would be of: the file's size and time, and the options.
    QString stateOf(const QString &file) const;
    /// Whether there is a picture of @p file as it is now. Reads no pixels.
    bool isFresh(const QString &file) const;

    /// Writes the picture of a file that was in @p state before it was read; @p details is what a
    /// person may want to know of it. An older note goes.
    QString keep(QImage picture, const QString &file, const QString &state,
                 const QString &details) const;
    /// Notes why there is no picture of @p file; an older picture stays.
    QString note(const QString &file, const QString &reason) const;
    void forgetNote(const QString &file) const;

    /// Writes the index of all that is there. The last of several that end at once writes all.
    QString writeIndex() const;

private:
    QString nameOf(const QString &file) const;
    ThumbnailList list() const;

    QString path_; // absolute
    QString options_;
};

} // namespace host

#endif
