// SPDX-License-Identifier: MIT
// The test program as the child that a reader starts, and as one that misbehaves.
#include <csignal>
#include <cstdio>

#include <QCoreApplication>
#include <QStringList>
#include <QThread>

#include <unistd.h>

#include "host/read/reader_process.h"
#include "tests/host/read/support.h"

int runAsChild(int argc, char **argv);

namespace host {

int misbehave(const QByteArray &how, const QString &file)
{
    ReadLimits limits = defaultReadLimits();
    limits.cpuSeconds = 1;
    limits.memory = 512u << 20;
    if (how == "crash") {
        std::signal(SIGSEGV, SIG_DFL); // a sanitizer would turn it into an exit
        std::raise(SIGSEGV);
    } else if (how == "sleep") {
        QThread::sleep(100);
    } else if (how == "garbage") {
        std::puts("Segmentation fault is what this is not, but neither is it a mesh.");
    } else if (how == "cut") {
        // The first bytes of a good answer, then a good exit.
        std::fputs("GLVM", stdout);
    } else if (how == "briefly") {
        return runReaderProcess(file, limits);
    } else if (how == "silent") {
        return 3;
    } else if (how == "memory") {
        return outOfMemoryExit;
    }
    return 0;
}

} // namespace host

int runAsChild(int argc, char **argv)
{
    if (argc < 3 || argv[1][0] != '-' || qstrncmp(argv[1], "--gtest", 7) == 0)
        return -1;
    const QCoreApplication app(argc, argv);
    const QStringList arguments = app.arguments();
    if (arguments.size() == 3 && arguments[1] == QLatin1String("--read-model"))
        return host::runReaderProcess(arguments[2]);
    if (arguments.size() == 4 && arguments[1] == QLatin1String("--misbehave"))
        return host::misbehave(arguments[2].toUtf8(), arguments[3]);
    return -1;
}
