// SPDX-License-Identifier: MIT
// The test program as the child that a reader starts.
#include <cerrno>

#include <QCoreApplication>
#include <QStringList>

#include <seccomp.h>

#include "host/read/reader_process.h"
#include "tests/host/read/support.h"

int runAsChild(int argc, char **argv);

namespace {

/// Reads files where the kernel lets nobody be closed in.
int runOpen()
{
    scmp_filter_ctx filter = seccomp_init(SCMP_ACT_ALLOW);
    seccomp_rule_add(filter, SCMP_ACT_ERRNO(EACCES), SCMP_SYS(seccomp), 0);
    return seccomp_load(filter) == 0 ? host::runReaderProcess() : 1;
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
    return arguments[1] == "--open" ? runOpen() : -1;
}
