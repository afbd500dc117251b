// SPDX-License-Identifier: MIT
#include "host/app/application.h"

#include <QGLFormat>

#include "host/app/icon.h"
#include "host/view/window/menu_tree.h"

namespace host {

Application::Application(int &argc, char **argv) : QApplication(argc, argv)
{
    setApplicationName("glview");
    setApplicationDisplayName("glview");
    setApplicationVersion(GLVIEW_VERSION);
    setWindowIcon(applicationIcon());
    // The module makes its windows with the default format. Lines and edges want multisampling;
    // the depths are spread for at least 24 bits.
    QGLFormat format = QGLFormat::defaultFormat();
    format.setDepthBufferSize(24);
    format.setSampleBuffers(true);
    format.setSamples(4);
    QGLFormat::setDefaultFormat(format);
}

QObject *Application::NewObject(QString className, QObject *owner, QString name)
{
    if (className != QLatin1String("MenuTree"))
        return nullptr;
    auto *tree = new MenuTree(owner);
    tree->setObjectName(name);
    return tree;
}

} // namespace host
