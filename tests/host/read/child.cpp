// SPDX-License-Identifier: MIT
// The test program as the child that a reader starts, and as one that misbehaves.
#include <cerrno>
#include <csignal>
#include <string>

#include <QCoreApplication>
#include <QFile>
#include <QStringList>

#include <seccomp.h>
#include <unistd.h>

#include "host/read/reader_process.h"
#include "tests/host/read/support.h"

int runAsChild(int argc, char **argv);

namespace {

int crash()
{
    std::signal(SIGSEGV, SIG_DFL); // a sanitizer would turn it into an exit
    return std::raise(SIGSEGV);
}

/// Serves the first request as it should, and crashes on the second.
int serveOne()
{
    char request[4096];
    const ssize_t size = read(STDIN_FILENO, request, sizeof request);
    const int rest = dup(STDIN_FILENO);
    int ends[2];
    if (size <= 0 || pipe(ends) != 0 || write(ends[1], request, std::size_t(size)) != size)
        return 1;
    close(ends[1]);
    dup2(ends[0], STDIN_FILENO);
    host::runReaderProcess();
    return read(rest, request, 1) == 1 ? crash() : 0;
}

int misbehave(const QString &how)
{
    char byte;
    if (how == "one")
        return serveOne();
    if (read(STDIN_FILENO, &byte, 1) != 1)
        return 0;
    if (how == "crash")
        return crash();
    if (how == "sleep")
        return pause();
    const std::string garbage(100, 'x');
    if (how == "garbage" && write(STDOUT_FILENO, garbage.data(), garbage.size()) > 0)
        return pause();
    return how == "memory" ? host::outOfMemoryExit : 3;
}

/// Reads files where the kernel lets nobody be closed in.
int runOpen()
{
    scmp_filter_ctx filter = seccomp_init(SCMP_ACT_ALLOW);
    seccomp_rule_add(filter, SCMP_ACT_ERRNO(EACCES), SCMP_SYS(seccomp), 0);
    return seccomp_load(filter) == 0 ? host::runReaderProcess() : 1;
}

/// Leaves a byte in @p file for each process that was started.
int count(const QString &file)
{
    QFile out(file);
    if (!out.open(QIODevice::Append) || out.write("x") != 1)
        return 1;
    out.close();
    return host::runReaderProcess();
}

} // namespace

int runAsChild(int argc, char **argv)
{
    if (argc < 2 || qstrncmp(argv[1], "--gtest", 7) == 0)
        return -1;
    const QCoreApplication app(argc, argv);
    const QStringList arguments = app.arguments();
    if (arguments[1] == "--reader")
        return host::runReaderProcess();
    if (arguments[1] == "--forbidden")
        return host::runReaderProcess(
            [](const QString &path, const auto &, auto) { return host::tryForbidden(path); });
    if (arguments[1] == "--open")
        return runOpen();
    if (arguments[1] == "--count")
        return count(arguments[2]);
    return arguments[1] == "--misbehave" ? misbehave(arguments[2]) : -1;
}
