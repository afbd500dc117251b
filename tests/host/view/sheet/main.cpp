// SPDX-License-Identifier: MIT
// The tests, and, called with the arguments that a reader gives to its child, that child.
#include <gtest/gtest.h>

#include <QGLWidget>

#include "host/app/application.h"
#include "host/read/reader_process.h"

int main(int argc, char **argv)
{
    if (argc == 3 && qstrcmp(argv[1], "--read-model") == 0) {
        const QCoreApplication application(argc, argv);
        return host::runReaderProcess(application.arguments().at(2));
    }
    testing::InitGoogleTest(&argc, argv);
    qputenv("DBUS_SESSION_BUS_ADDRESS", "disabled:"); // no desktop is asked for anything
    // Kept to the end of the process: with it the display and its driver stay open, so that a leak
    // checker can tell what is theirs.
    static auto *const application = new host::Application(argc, argv);
    Q_UNUSED(application)
    {
        QGLWidget probe;
        probe.makeCurrent();
        if (!probe.isValid() || !glGetString(GL_VERSION)) {
            std::fputs("no OpenGL context: the tests need a display with GLX\n", stderr);
            return 1;
        }
    }
    return RUN_ALL_TESTS();
}
