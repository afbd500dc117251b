// SPDX-License-Identifier: MIT
#ifndef HOST_APP_MODULE_LOADER_H
#define HOST_APP_MODULE_LOADER_H

#include <QHash>
#include <QLibrary>
#include <QObject>
#include <QString>
#include <QStringList>

#include "host/view/window/window.h"

namespace host {

/// Loads the views' module at run time and makes its objects by class name: the only place that
/// knows how objects come from there. The module stays loaded until the program ends.
class ModuleLoader : public QObject {
    Q_OBJECT
public:
    /// Where the module is looked for when nobody names a path: beside the program, then in the
    /// library folder of the installation that the program is part of, then in the configured one.
    static QStringList searchPaths();

    /// Loads the first of @p paths that is a module and takes its factories. Returns false, with
    /// error() telling what was wrong with each path, if none is.
    bool load(const QStringList &paths);

    QString error() const { return error_; } ///< One line for each path that failed.

    /// Makes an object of class @p className, owned by @p parent as its factory says.
    /// Returns null if the module registered no such class.
    QObject *make(const char *className, QObject *parent, const char *name) const;
    ObjectFactory factory() const; ///< make(), as a function; the loader must outlive it.

public slots:
    /// Called by the module once for each of its classes.
    void Register(const char *kind, const char *name, void *factory);

private:
    QString tryPath(const QString &path);

    QLibrary library_;
    QString error_;
    QHash<QByteArray, void *> factories_;
};

} // namespace host

#endif
