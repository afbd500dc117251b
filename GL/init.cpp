// SPDX-License-Identifier: MIT
#include "GL/glmultiwidget.h"
#include "GL/glwindow.h"
#include "Qt/module.h"

extern "C" int init(QObject *lib)
{
    struct Entry {
        const char *name;
        QObjectFactory factory;
    };
    static const Entry entries[] = {
        {"KeyAction", qCreateObject<KeyAction>}, {"MouseAction", qCreateObject<MouseAction>},
        {"GLWidget", qCreateObject<GLWidget>},   {"GLMultiWidget", qCreateObject<GLMultiWidget>},
        {"GLWindow", qCreateWidget<QGLWindow>},
    };
    if (!lib || !qHasMethod(lib, "Register(const char*,const char*,void*)"))
        return 1;
    // Hosts that call by name alone need the lists of ids as types before the first call.
    qRegisterMetaType<QList<int>>("QList<int>");
    const QPointer<QObject> host(lib);
    for (const Entry &entry : entries) {
        if (host)
            QMetaObject::invokeMethod(lib, "Register", Qt::AutoConnection,
                                      Q_ARG(const char *, "qobject"),
                                      Q_ARG(const char *, entry.name),
                                      Q_ARG(void *, reinterpret_cast<void *>(entry.factory)));
    }
    return 1;
}
