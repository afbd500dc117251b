// SPDX-License-Identifier: MIT
#include "host/read/sandbox.h"

#include <cerrno>
#include <csignal>
#include <cstring>
#include <functional>
#include <thread>

#include <QCoreApplication>
#include <QSignalSpy>

#include <fcntl.h>
#include <sched.h>
#include <seccomp.h>
#include <sys/ioctl.h>
#include <sys/mman.h>
#include <sys/ptrace.h>
#include <sys/resource.h>
#include <sys/shm.h>
#include <sys/socket.h>
#include <sys/stat.h>
#include <sys/syscall.h>
#include <unistd.h>

#include "host/read/read_queue.h"
#include "host/read/reader_process.h"
#include "tests/host/read/support.h"

namespace host {
namespace {

/// What a hostile parser might try with the model that it was given.
struct Attempt {
    const char *name;
    int error;                                  // 0: it has to stay possible
    std::function<long(const char *model)> run; // negative: errno tells why not
};

long openMany(const char *model)
{
    std::vector<int> files;
    while (files.size() < 100 && (files.empty() || files.back() >= 0))
        files.push_back(open(model, O_RDONLY));
    const int error = errno;
    for (const int file : files)
        close(file);
    errno = error;
    return files.size() < 100 ? -1 : 0;
}

const Attempt attempts[] = {
    {"write", EPERM, [](auto m) { return open(m, O_WRONLY); }},
    {"update", EPERM, [](auto m) { return open(m, O_RDWR); }},
    {"empty", EPERM, [](auto m) { return open(m, O_RDONLY | O_TRUNC); }},
    {"create", EPERM, [](auto m) { return openat(AT_FDCWD, m, O_RDONLY | O_CREAT, 0600); }},
    {"openat2", ENOSYS, [](auto m) { return syscall(SYS_openat2, AT_FDCWD, m, nullptr, 0); }},
    {"rename", EPERM, [](auto m) { return rename(m, "/tmp/x"); }},
    {"remove", EPERM, [](auto m) { return unlink(m); }},
    {"link", EPERM, [](auto m) { return symlink(m, (std::string(m) + "3").c_str()); }},
    {"change mode", EPERM, [](auto m) { return chmod(m, 0777); }},
    {"file in memory", EPERM, [](auto) { return memfd_create("x", 0); }},
    {"network", EPERM, [](auto) { return socket(AF_INET, SOCK_STREAM, 0); }},
    {"local socket", EPERM, [](auto) { return socket(AF_UNIX, SOCK_STREAM, 0); }},
    {"ring", EPERM, [](auto) { return syscall(SYS_io_uring_setup, 1, nullptr); }},
    {"program", EPERM, [](auto) { return execl("/bin/true", "true", nullptr); }},
    {"process", EPERM, [](auto) { return fork(); }}, // two would answer
    {"trace", EPERM, [](auto) { return ptrace(PTRACE_ATTACH, getppid(), nullptr, nullptr); }},
    {"signal", EPERM, [](auto) { return kill(getppid(), 0); }},
    {"tgkill", EPERM, [](auto) { return syscall(SYS_tgkill, getppid(), getppid(), 0); }},
    {"key press", EPERM, [](auto) { return ioctl(STDIN_FILENO, TIOCSTI, "x"); }},
    {"limits", EPERM, [](auto) { return prlimit(getppid(), RLIMIT_CPU, nullptr, nullptr); }},
    {"shared memory", EPERM, [](auto) { return shmget(IPC_PRIVATE, 4096, 0600); }},
    {"namespace", EPERM, [](auto) { return unshare(CLONE_NEWUSER); }},
    {"read", 0, [](auto m) { return open(m, O_RDONLY); }},
    {"signal to itself", 0, [](auto) { return kill(getpid(), 0); }},
    {"thread", 0, [](auto) { return std::thread([] {}).join(), 0; }},
    {"many files", EMFILE, openMany},
};

/// What a test has in place of a parser: tries what none may do, and fails with what came of it.
Imported tryForbidden(const QString &path)
{
    const QByteArray model = QFile::encodeName(path);
    QStringList wrong;
    for (const Attempt &attempt : attempts) {
        const int error = attempt.run(model.constData()) < 0 ? errno : 0;
        if (error != attempt.error)
            wrong << QString("%1: %2").arg(attempt.name, std::strerror(error));
    }
    return {{}, wrong.isEmpty() ? "as it should be" : wrong.join("; ")};
}

/// Reads files where the kernel lets nobody be closed in.
int runOpen()
{
    scmp_filter_ctx filter = seccomp_init(SCMP_ACT_ALLOW);
    seccomp_rule_add(filter, SCMP_ACT_ERRNO(EACCES), SCMP_SYS(seccomp), 0);
    return seccomp_load(filter) == 0 ? runReaderProcess() : 1;
}

TEST(SandboxTest, AReaderCanReadAndNothingElseAndItIsSaidWhereTheKernelRefuses)
{
    const ModelFolder folder;
    for (const bool refuses : {false, true}) {
        ReaderProgram program;
        program.arguments = QStringList{refuses ? "--open" : "--forbidden"};
        ReadQueue queue(nullptr, program);
        QSignalSpy failed(&queue, &ReadQueue::failed), finished(&queue, &ReadQueue::finished);
        queue.add(folder.write("a.obj", objTriangle()));
        ASSERT_TRUE((refuses ? finished : failed).wait(60000));
        const QString said = refuses ? finished[0][1].value<Content>().mesh->notes.join("|")
                                     : failed[0][1].toString();
        EXPECT_TRUE(said.startsWith(refuses ? "the reader was not closed in: " : "as it should be"))
            << said.toStdString();
    }
}

TEST(SandboxTest, AListenerIsMissedOnceItsEndIsClosed)
{
    int ends[2];
    ASSERT_EQ(pipe(ends), 0);
    EXPECT_TRUE(hasListener(ends[1]));
    close(ends[0]);
    EXPECT_FALSE(hasListener(ends[1]));
    close(ends[1]);
}

} // namespace
} // namespace host

/// The test program as the child that a reader starts.
int runAsChild(int argc, char **argv);
int runAsChild(int argc, char **argv)
{
    if (argc < 2 || qstrncmp(argv[1], "--gtest", 7) == 0)
        return -1;
    const QCoreApplication app(argc, argv);
    const QString asked = argv[1];
    if (asked == "--forbidden")
        return host::runReaderProcess(
            [](const QString &path, const auto &, auto) { return host::tryForbidden(path); });
    return asked == "--reader" ? host::runReaderProcess()
           : asked == "--open" ? host::runOpen()
                               : -1;
}
