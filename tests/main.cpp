// SPDX-License-Identifier: MIT
// The main of all test programs: an application, with a GL context where the program needs one.
#include <cstdio>

#include <gtest/gtest.h>

#include <QApplication>
#include <QGLWidget>
#include <QTemporaryDir>

/// A program that its tests start as a child, too, defines this; -1: it was not started as one.
[[gnu::weak]] int runAsChild(int argc, char **argv);
/// A program whose tests need an application of a class of its own defines this.
[[gnu::weak]] QCoreApplication *makeApplication(int &argc, char **argv);

#ifdef GLWINDOW_TEST_GL
static bool isUsable()
{
    QGLWidget probe;
    probe.makeCurrent();
    return probe.isValid() && QGLContext::currentContext() && glGetString(GL_VERSION);
}
#else
static bool isUsable()
{
    return true;
}
#endif

int main(int argc, char **argv)
{
    const int status = runAsChild ? runAsChild(argc, argv) : -1;
    if (status >= 0)
        return status;
    testing::InitGoogleTest(&argc, argv);
    qputenv("DBUS_SESSION_BUS_ADDRESS", "disabled:"); // no desktop is asked for anything
#ifndef GLWINDOW_TEST_GL
    qputenv("QT_QPA_PLATFORM", "minimal");
#endif
    const QTemporaryDir settings; // in place of those of the person who runs the tests
    qputenv("XDG_CONFIG_HOME", settings.path().toLocal8Bit());
    // Kept to the end of the process: with it the display and its driver stay open, so that a leak
    // checker can tell what is theirs.
    static auto *const application =
        makeApplication ? makeApplication(argc, argv) : new QApplication(argc, argv);
    Q_UNUSED(application)
    if (!isUsable()) {
        std::fputs("no OpenGL context: the tests need a display with GLX\n", stderr);
        return 1;
    }
    return RUN_ALL_TESTS();
}
