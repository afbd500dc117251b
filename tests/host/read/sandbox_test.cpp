// SPDX-License-Identifier: MIT
#include "host/read/sandbox.h"

#include <cerrno>
#include <csignal>
#include <cstring>
#include <thread>
#include <vector>

#include <QFile>
#include <QSignalSpy>

#include <fcntl.h>
#include <gtest/gtest.h>
#include <sched.h>
#include <sys/mman.h>
#include <sys/ptrace.h>
#include <sys/resource.h>
#include <sys/shm.h>
#include <sys/socket.h>
#include <sys/stat.h>
#include <sys/syscall.h>
#include <unistd.h>

#include "host/read/read_queue.h"
#include "tests/host/read/support.h"

namespace host {
namespace {

/// What a hostile parser might try with the model that it was given.
struct Attempt {
    const char *name;
    int error;                      // 0: it has to stay possible
    long (*run)(const char *model); // negative: errno tells why not
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
    {"write", EPERM, [](const char *m) -> long { return open(m, O_WRONLY); }},
    {"update", EPERM, [](const char *m) -> long { return open(m, O_RDWR); }},
    {"empty", EPERM, [](const char *m) -> long { return open(m, O_RDONLY | O_TRUNC); }},
    {"create", EPERM,
     [](const char *m) -> long {
         return openat(AT_FDCWD, (std::string(m) + "2").c_str(), O_RDONLY | O_CREAT, 0600);
     }},
    {"open by another call", ENOSYS,
     [](const char *m) -> long { return syscall(SYS_openat2, AT_FDCWD, m, nullptr, 0); }},
    {"rename", EPERM, [](const char *m) -> long { return rename(m, "/tmp/x"); }},
    {"remove", EPERM, [](const char *m) -> long { return unlink(m); }},
    {"link", EPERM,
     [](const char *m) -> long { return symlink(m, (std::string(m) + "3").c_str()); }},
    {"change mode", EPERM, [](const char *m) -> long { return chmod(m, 0777); }},
    {"file in memory", EPERM, [](const char *) -> long { return memfd_create("x", 0); }},
    {"network", EPERM, [](const char *) -> long { return socket(AF_INET, SOCK_STREAM, 0); }},
    {"local socket", EPERM, [](const char *) -> long { return socket(AF_UNIX, SOCK_STREAM, 0); }},
    {"ring", EPERM, [](const char *) -> long { return syscall(SYS_io_uring_setup, 1, nullptr); }},
    {"program", EPERM, [](const char *) -> long { return execl("/bin/true", "true", nullptr); }},
    {"process", EPERM,
     [](const char *) -> long {
         const pid_t p = fork();
         return p == 0 ? _exit(0), 0 : p;
     }},
    {"trace", EPERM,
     [](const char *) -> long { return ptrace(PTRACE_ATTACH, getppid(), nullptr, nullptr); }},
    {"signal", EPERM, [](const char *) -> long { return kill(getppid(), 0); }},
    {"limits of others", EPERM,
     [](const char *) -> long {
         rlimit now;
         return prlimit(getppid(), RLIMIT_CPU, nullptr, &now);
     }},
    {"shared memory", EPERM, [](const char *) -> long { return shmget(IPC_PRIVATE, 4096, 0600); }},
    {"namespace", EPERM, [](const char *) -> long { return unshare(CLONE_NEWUSER); }},
    {"read", 0, [](const char *m) -> long { return open(m, O_RDONLY); }},
    {"signal to itself", 0, [](const char *) -> long { return kill(getpid(), 0); }},
    {"thread", 0,
     [](const char *) -> long {
         std::thread([] {}).join();
         return 0;
     }},
    {"many files", EMFILE, openMany},
};

} // namespace

Imported tryForbidden(const QString &path)
{
    const QByteArray model = QFile::encodeName(path);
    QStringList wrong;
    for (const Attempt &attempt : attempts) {
        const int error = attempt.run(model.constData()) < 0 ? errno : 0;
        if (error != attempt.error)
            wrong << QString("%1: %2").arg(attempt.name, std::strerror(error));
    }
    return {{}, wrong.isEmpty() ? "all as it should be" : wrong.join("; ")};
}

namespace {

TEST(SandboxTest, AReaderCanReadAndNothingElse)
{
    const ModelFolder folder;
    ReaderProgram program;
    program.arguments = QStringList{"--forbidden"};
    ReadQueue queue(nullptr, program);
    QSignalSpy failed(&queue, &ReadQueue::failed);
    queue.add(folder.write("a.obj", objTriangle()));
    ASSERT_TRUE(failed.wait(60000));
    EXPECT_EQ(failed[0][1].toString().toStdString(), "all as it should be");
}

TEST(SandboxTest, WhereTheKernelRefusesFilesAreReadAndItIsSaid)
{
    const ModelFolder folder;
    ReaderProgram program;
    program.arguments = QStringList{"--open"};
    ReadQueue queue(nullptr, program);
    QSignalSpy finished(&queue, &ReadQueue::finished);
    queue.add(folder.write("a.obj", objTriangle()));
    ASSERT_TRUE(finished.wait(60000));
    const MeshPtr mesh = finished[0][1].value<Content>().mesh;
    ASSERT_TRUE(mesh);
    EXPECT_TRUE(mesh->notes.join("").startsWith("the reader was not closed in: "))
        << mesh->notes.join("|").toStdString();
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
