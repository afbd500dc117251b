// SPDX-License-Identifier: MIT
#include "host/capture/atomic_output.h"

#include <cerrno>
#include <cstdio>
#include <cstring>

#include <QDir>
#include <QFileInfo>

namespace host {

AtomicOutput::AtomicOutput(const QString &target, Kind kind)
    : target_(QDir::cleanPath(QFileInfo(target).absoluteFilePath()))
{
    const QFileInfo info(target_);
    if (kind == Kind::File && info.isDir()) {
        error_ = tr("%1 is a folder.").arg(target);
        return;
    }
    if (kind == Kind::Folder && info.exists() && (!info.isDir() || !QDir(target_).isEmpty())) {
        error_ = info.isDir() ? tr("The folder %1 is not empty.").arg(target)
                              : tr("%1 is a file, not a folder.").arg(target);
        return;
    }
    folder_ = std::make_unique<QTemporaryDir>(info.absolutePath() + "/.unfinished-XXXXXX");
    if (!folder_->isValid()) {
        error_ = tr("%1 cannot be written: %2").arg(target, folder_->errorString());
        return;
    }
    // A name of its own, so that nothing in the target's name is taken for an option or a pattern;
    // the suffix tells what is to be written.
    const QString suffix = info.suffix().isEmpty() ? QString() : '.' + info.suffix().toLower();
    path_ = folder_->filePath("result" + suffix);
    if (kind == Kind::Folder && !QDir().mkdir(path_))
        error_ = tr("%1 cannot be written.").arg(target);
}

QString AtomicOutput::commit()
{
    if (!error_.isEmpty())
        return error_;
    // Takes the place of an older file, or of an empty folder, in one step.
    if (std::rename(QFile::encodeName(path_).constData(), QFile::encodeName(target_).constData()) !=
        0)
        return tr("%1 cannot be written: %2")
            .arg(target_, QString::fromLocal8Bit(std::strerror(errno)));
    return {};
}

} // namespace host
