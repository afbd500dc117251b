// SPDX-License-Identifier: MIT
#include "host/capture/atomic_output.h"

#include <cerrno>
#include <cstdio>

#include <sys/stat.h>
#include <unistd.h>

#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QTemporaryFile>

namespace host {

namespace {

/// The file that @p path names, behind symbolic links.
QString resolved(const QString &path)
{
    const QFileInfo info(path);
    if (!info.isSymLink())
        return QDir::cleanPath(info.absoluteFilePath());
    return info.exists() ? info.canonicalFilePath() : info.symLinkTarget();
}

QString systemError()
{
    return qt_error_string(errno);
}

bool moveOver(const QString &from, const QString &to)
{
    return std::rename(QFile::encodeName(from).constData(), QFile::encodeName(to).constData()) == 0;
}

/// The permissions of @p path or, if there is no such file, those of any new file.
mode_t permissionsOf(const QString &path)
{
    struct stat status;
    if (stat(QFile::encodeName(path).constData(), &status) == 0)
        return status.st_mode & 07777;
    const mode_t mask = umask(0);
    umask(mask);
    return 0666 & ~mask;
}

} // namespace

AtomicFile::AtomicFile(const QString &target)
{
    const QFileInfo info(target);
    const bool special = info.exists() && !info.isFile();
    target_ = special ? target : resolved(target);
    if (info.isDir())
        error_ = tr("%1 is a folder.").arg(target);
    else if (info.exists() && !info.isWritable())
        error_ = failure(qt_error_string(EACCES));
    else
        error_ = open(special);
}

AtomicFile::~AtomicFile() = default;

QString AtomicFile::open(bool special)
{
    if (special) {
        auto file = std::make_unique<QFile>(target_);
        const bool opened = file->open(QIODevice::WriteOnly);
        file_ = std::move(file);
        return opened ? QString() : failure(file_->errorString());
    }
    auto file = std::make_unique<QTemporaryFile>(QFileInfo(target_).path() + "/.unfinished-XXXXXX");
    const bool opened = file->open();
    temporary_ = file.get();
    file_ = std::move(file);
    return opened ? QString() : failure(file_->errorString());
}

QString AtomicFile::failure(const QString &reason) const
{
    return tr("%1 cannot be written: %2").arg(target_, reason);
}

QString AtomicFile::path() const
{
    if (!temporary_)
        return target_;
    return QStringLiteral("/proc/%1/fd/%2").arg(getpid()).arg(file_->handle());
}

QString AtomicFile::commit()
{
    if (!error_.isEmpty())
        return error_;
    if (!file_->flush() || file_->error() != QFileDevice::NoError)
        return failure(file_->errorString());
    if (!temporary_)
        return {};
    fchmod(file_->handle(), permissionsOf(target_)); // where it cannot, the file is its owner's
    // Asking for the name is what gives it one.
    if (temporary_->fileName().isEmpty() || !moveOver(temporary_->fileName(), target_))
        return failure(systemError());
    temporary_->setAutoRemove(false);
    return {};
}

AtomicFolder::AtomicFolder(const QString &target)
    : target_(QDir::cleanPath(QFileInfo(target).absoluteFilePath()))
{
    const QFileInfo info(target_);
    if (info.exists() && !info.isDir()) {
        error_ = tr("%1 is a file, not a folder.").arg(target);
        return;
    }
    if (info.exists() && !QDir(target_).isEmpty()) {
        error_ = tr("The folder %1 is not empty.").arg(target);
        return;
    }
    hidden_ = std::make_unique<QTemporaryDir>(info.absolutePath() + "/.unfinished-XXXXXX");
    path_ = hidden_->filePath("folder");
    if (!hidden_->isValid() || !QDir().mkdir(path_))
        error_ = tr("%1 cannot be written: %2")
                     .arg(target, hidden_->isValid() ? systemError() : hidden_->errorString());
}

QString AtomicFolder::commit()
{
    if (!error_.isEmpty())
        return error_;
    // Takes the place of an empty folder in one step.
    return moveOver(path_, target_) ? QString()
                                    : tr("%1 cannot be written: %2").arg(target_, systemError());
}

} // namespace host
