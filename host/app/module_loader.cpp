// SPDX-License-Identifier: MIT
#include "host/app/module_loader.h"

#include <QCoreApplication>
#include <QDir>
#include <QFileInfo>

namespace host {

QStringList ModuleLoader::searchPaths()
{
    const QDir program(QCoreApplication::applicationDirPath());
    QStringList paths{program.filePath("glwindow.so")};
    const QString installed = program.filePath(QStringLiteral(GLVIEW_MODULE_FOLDER));
    paths << QDir::cleanPath(installed + "/glwindow.so");
    paths << QStringLiteral(GLVIEW_MODULE_FOLDER_FULL "/glwindow.so");
    paths.removeDuplicates();
    return paths;
}

void ModuleLoader::Register(const char *, const char *name, void *factory)
{
    factories_.insert(name, factory);
}

/// Returns what is wrong with @p path; nothing if it is loaded now.
QString ModuleLoader::tryPath(const QString &path)
{
    if (!QFileInfo(path).isFile())
        return tr("no such file");
    library_.setFileName(QFileInfo(path).absoluteFilePath());
    library_.setLoadHints(QLibrary::PreventUnloadHint);
    if (!library_.load())
        return library_.errorString();
    using Entry = int (*)(QObject *);
    const auto entry = reinterpret_cast<Entry>(library_.resolve("init"));
    if (!entry)
        return tr("it has no function \"init\"");
    entry(this);
    for (const char *wanted : {"GLWindow", "GLWidget"})
        if (!factories_.contains(wanted))
            return tr("it offers no class \"%1\"").arg(wanted);
    return {};
}

bool ModuleLoader::load(const QStringList &paths)
{
    QStringList faults;
    for (const QString &path : paths) {
        const QString fault = tryPath(path);
        if (fault.isEmpty())
            return true;
        faults << QStringLiteral("  %1: %2").arg(QDir::toNativeSeparators(path), fault);
    }
    error_ = faults.join('\n');
    return false;
}

QObject *ModuleLoader::make(const char *className, QObject *parent, const char *name) const
{
    using Factory = QObject *(*)(QObject *, const char *);
    const auto factory = reinterpret_cast<Factory>(factories_.value(className));
    return factory ? factory(parent, name) : nullptr;
}

ObjectFactory ModuleLoader::factory() const
{
    return [this](const char *className, QObject *parent, const char *name) {
        return make(className, parent, name);
    };
}

} // namespace host
