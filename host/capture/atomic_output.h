// SPDX-License-Identifier: MIT
#ifndef HOST_CAPTURE_ATOMIC_OUTPUT_H
#define HOST_CAPTURE_ATOMIC_OUTPUT_H

#include <memory>

#include <QCoreApplication>
#include <QString>
#include <QTemporaryDir>

namespace host {

/// A file or a folder that takes its name when it is whole: it grows in a hidden folder beside its
/// place and is moved there by commit(). Without commit() nothing of it is left.
class AtomicOutput {
    Q_DECLARE_TR_FUNCTIONS(AtomicOutput)
public:
    enum class Kind { File, Folder };

    /// @p target may exist: a file is replaced, a folder has to be empty.
    AtomicOutput(const QString &target, Kind kind);

    QString error() const { return error_; } ///< Empty if it can be written.
    /// Where to write: a file that does not exist yet, or an empty folder. Absolute.
    QString path() const { return path_; }

    /// Returns the reason why the result could not be put in its place; empty on success.
    QString commit();

private:
    QString target_; // absolute
    QString path_;
    QString error_;
    std::unique_ptr<QTemporaryDir> folder_;
};

} // namespace host

#endif
