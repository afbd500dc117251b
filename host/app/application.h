// SPDX-License-Identifier: MIT
#ifndef HOST_APP_APPLICATION_H
#define HOST_APP_APPLICATION_H

#include <QApplication>

#include "host/app/desktop.h"

namespace host {

/// The application object. The module asks it, by name, for the objects that only a host can make.
class Application : public QApplication {
    Q_OBJECT
public:
    Application(int &argc, char **argv);

    /// Makes everything as large as @p asked says, dialogs and menus too. Where the window is for
    /// @p aPerson the screen's dots per inch and the desktop's type count as well; pictures that
    /// scripts take are the same on every desktop. Expects to be called before the first window.
    void setSizes(const DesktopScale &asked, bool aPerson);

public slots:
    /// Makes a "MenuTree" named @p name for @p owner. Returns null for any other class.
    QObject *NewObject(QString className, QObject *owner, QString name);
};

} // namespace host

#endif
