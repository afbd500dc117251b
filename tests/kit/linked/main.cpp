// SPDX-License-Identifier: MIT
// A host that links the module: it makes an object by its class and reads a property of it.
#include <QCoreApplication>

#include "GL/glwidget.h"

int main(int argc, char **argv)
{
    QCoreApplication app(argc, argv);
    const GLWidget view(&app, "view");
    return !view.property("visible").toBool() || view.metaObject() != &GLWidget::staticMetaObject;
}
