// SPDX-License-Identifier: MIT
// The main of the module's test programs: Qt's application first, a GL context where one is needed.
#include <cstdio>
#include <functional>

#include <gtest/gtest.h>

#include <QApplication>
#include <QGLWidget>
#include <QTemporaryDir>

std::function<QObject *(const QString &type, QObject *parent, const QString &name)> newObject;

/// Offers the slot by which scene objects ask the application for a menu tree.
class Application : public QApplication {
    Q_OBJECT

public:
    using QApplication::QApplication;

public Q_SLOTS:
    QObject *NewObject(QString type, QObject *parent, QString name)
    {
        return newObject ? newObject(type, parent, name) : nullptr;
    }
};

#ifdef GLWINDOW_TEST_GL
static bool hasContext()
{
    QGLWidget probe;
    probe.makeCurrent();
    return probe.isValid() && QGLContext::currentContext() && glGetString(GL_VERSION);
}
#else
static bool hasContext()
{
    return true;
}
#endif

int main(int argc, char **argv)
{
    testing::InitGoogleTest(&argc, argv);
    qputenv("DBUS_SESSION_BUS_ADDRESS", "disabled:"); // no desktop is asked for anything
#ifndef GLWINDOW_TEST_GL
    qputenv("QT_QPA_PLATFORM", "minimal");
#endif
    const QTemporaryDir settings; // in place of those of the person who runs the tests
    qputenv("XDG_CONFIG_HOME", settings.path().toLocal8Bit());
    // Kept to the end of the process: with it the display and its driver stay open, so that a leak
    // checker can tell what is theirs.
    static auto *const application = new Application(argc, argv);
    Q_UNUSED(application)
    if (!hasContext()) {
        std::fputs("no OpenGL context: the tests need a display with GLX\n", stderr);
        return 1;
    }
    return RUN_ALL_TESTS();
}

#include "main.moc"
