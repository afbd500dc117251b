// SPDX-License-Identifier: MIT
// A host that links the module: it makes an object by its class and reads a property of it.
#include <QCoreApplication>
#include <QTextStream>

#include "GL/glwidget.h"

int main(int argc, char **argv)
{
    QCoreApplication app(argc, argv);
    GLWidget view(&app, "view");
    QTextStream(stdout) << view.objectName() << " visible: " << view.property("visible").toString()
                        << '\n';
    return view.metaObject() != &GLWidget::staticMetaObject;
}
