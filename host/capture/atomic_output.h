// SPDX-License-Identifier: MIT
#ifndef HOST_CAPTURE_ATOMIC_OUTPUT_H
#define HOST_CAPTURE_ATOMIC_OUTPUT_H

#include <memory>

#include <QCoreApplication>
#include <QFileDevice>
#include <QString>
#include <QTemporaryDir>

class QTemporaryFile;

namespace host {

/// A file that takes its name when it is whole, in one step; until then an older one of that name
/// stays as it is. Before commit() it has no name at all where the file system allows that, so that
/// nothing of it is left even by a program that is killed; elsewhere it has a hidden one.
///
/// A terminal, a pipe and the like are written as they are. A symbolic link stays one: what it
/// points to is replaced.
class AtomicFile {
    Q_DECLARE_TR_FUNCTIONS(AtomicFile)
public:
    explicit AtomicFile(const QString &target);
    ~AtomicFile();
    AtomicFile(const AtomicFile &) = delete;
    AtomicFile &operator=(const AtomicFile &) = delete;

    QString error() const { return error_; } ///< Why it cannot be written; empty if it can.

    QFileDevice &device() { return *file_; } ///< To write to; expects no error().
    /// Where another process can write while this object lives; expects no error().
    QString path() const;

    /// Puts the file in its place. Returns the reason why that could not be done, with the name, or
    /// an empty text.
    QString commit();

private:
    QString open(bool special);
    QString failure(const QString &reason) const;

    QString target_; // absolute
    QString error_;
    std::unique_ptr<QFileDevice> file_;
    QTemporaryFile *temporary_ = nullptr; // `file_`, unless that is the target itself
};

/// A folder that takes its name when it is whole: it grows in a hidden one beside its place.
/// Without commit() nothing of it is left, unless the program is killed.
class AtomicFolder {
    Q_DECLARE_TR_FUNCTIONS(AtomicFolder)
public:
    explicit AtomicFolder(const QString &target); ///< There may be an empty folder of that name.

    QString error() const { return error_; } ///< Why it cannot be written; empty if it can.
    QString path() const { return path_; }   ///< An empty folder to write in. Absolute.
    QString commit();                        ///< As AtomicFile's.

private:
    QString target_; // absolute
    QString path_;
    QString error_;
    std::unique_ptr<QTemporaryDir> hidden_;
};

} // namespace host

#endif
