// SPDX-License-Identifier: MIT
#ifndef HOST_APP_APPLICATION_H
#define HOST_APP_APPLICATION_H

#include <QApplication>

namespace host {

/// The application object. The module asks it, by name, for the objects that only a host can make.
class Application : public QApplication {
    Q_OBJECT
public:
    Application(int &argc, char **argv);

public slots:
    /// Makes a "MenuTree" named @p name for @p owner. Returns null for any other class.
    QObject *NewObject(QString className, QObject *owner, QString name);
};

} // namespace host

#endif
