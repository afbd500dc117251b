// SPDX-License-Identifier: MIT
// The queue and its processes, good ones and bad ones, and what these may do.
#include <cerrno>
#include <csignal>
#include <cstring>
#include <functional>
#include <thread>

#include <QFileInfo>
#include <QPointer>
#include <QSignalSpy>
#include <QTest>

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
#include "host/read/sandbox.h"
#include "tests/host/read/support.h"

namespace host {
namespace {

constexpr int timeout = 60000; // ms; a test that waits so long has failed

/// What a queue did, in the order in which it did it.
struct Log {
    explicit Log(ReadQueue &q) : queue(q)
    {
        QObject::connect(&q, &ReadQueue::started, &q, [this](int id) {
            order.push_back(id);
            most = std::max(most, ++running);
        });
        QObject::connect(&q, &ReadQueue::finished, &q, [this](int, const Content &content) {
            contents.push_back(content);
            --running;
        });
        QObject::connect(&q, &ReadQueue::failed, &q, [this](int, const QString &why, quint64 n) {
            reasons << why;
            needed = n;
            --running;
        });
        QObject::connect(&q, &ReadQueue::progressed, &q, [this](int, double fraction) {
            rises = rises && fraction >= last;
            last = fraction == 1 ? 0 : fraction;
            ++told;
        });
    }
    bool waitUntilIdle() const
    {
        return QTest::qWaitFor([this] { return queue.isIdle(); }, timeout);
    }

    ReadQueue &queue;
    std::vector<int> order;
    std::vector<Content> contents;
    QStringList reasons;
    quint64 needed = 0;
    int running = 0, most = 0, told = 0;
    bool rises = true;
    double last = 0;
};

/// A shell that runs @p script in place of the reader.
ReaderProgram shell(const QString &script)
{
    ReaderProgram program;
    program.path = "/bin/sh";
    program.arguments = QStringList{"-c", script};
    return program;
}

class ReadQueueTest : public testing::Test {
protected:
    ReadQueueTest() { queue.setMaxProcesses(1); }
    QString file(int number) const
    {
        return folder.write(QString::number(number) + ".obj", objTriangle());
    }

    ModelFolder folder;
    ReadQueue queue;
    Log log{queue};
};

TEST_F(ReadQueueTest, OrderFollowsThePrioritiesAsTheyChangeAndListsComeFirst)
{
    folder.write("sub/b.obj", "x");
    QSignalSpy listed(&queue, &ReadQueue::listed);
    std::vector<int> id;
    for (int i = 0; i < 4; ++i)
        id.push_back(queue.add(file(i), i == 1 ? ReadQueue::InView : ReadQueue::Background));
    id.push_back(queue.add(file(4), ReadQueue::Opened));
    queue.setPriority(id[3], ReadQueue::InView);
    queue.setPriority(id[1], ReadQueue::Background);
    queue.setPriority(12345, ReadQueue::Opened); // no such file
    QObject::connect(&queue, &ReadQueue::started, &queue, [&](int started) {
        if (started == id[4])
            queue.setPriority(id[2], ReadQueue::InView);
    });
    const QString bare = folder.path("bare");
    ASSERT_TRUE(QDir().mkdir(bare));
    const int all = queue.list({folder.path({}), bare}), near = queue.listNeighbours(file(0));
    ASSERT_TRUE(log.waitUntilIdle());
    EXPECT_EQ(log.order, (std::vector<int>{all, id[4], id[2], id[3], near, id[0], id[1]}));
    EXPECT_TRUE(log.contents.size() == 5 && queue.total() == 5);
    ASSERT_EQ(listed.count(), 2);
    EXPECT_TRUE(listed[0][0].toInt() == all && listed[1][0].toInt() == near);
    EXPECT_EQ(listed[0][1].value<FileListPtr>()->files.size(), 6);
    EXPECT_EQ(listed[0][1].value<FileListPtr>()->empty, QStringList{bare});
    EXPECT_EQ(listed[1][1].value<FileListPtr>()->files.size(), 5);
}

TEST_F(ReadQueueTest, RunsAsManyAsAllowedReadsBothKindsAndCountsThem)
{
    queue.setMaxProcesses(3);
    QSignalSpy totals(&queue, &ReadQueue::totals);
    for (int i = 0; i < 6; ++i)
        queue.add(file(i));
    queue.add(folder.write(QStringLiteral("größe.obj"),
                           objTriangle() + QByteArray("f 1 2 3\n").repeated(20000)));
    queue.add(folder.write("t.csv", "t,a\n" + QByteArray("1,2\n").repeated(100000)));
    queue.add(folder.path("gone.obj"));
    queue.add(folder.write("bad.tsv", "t\ta\n1\n"));
    ASSERT_TRUE(log.waitUntilIdle());
    EXPECT_EQ(log.most, 3);
    log.reasons.sort();
    EXPECT_EQ(log.reasons.join('|').toStdString(),
              "line 2: 1 fields where the first row has 2|there is no such file");
    EXPECT_EQ(totals.last(), QVariantList({8, 2, 10}));
    std::size_t triangles = 0, rows = 0;
    for (const Content &content : log.contents) {
        triangles += content.mesh ? content.mesh->triangleCount() * content.mesh->notes.empty() : 0;
        rows += content.table ? content.table->rows() : 0;
    }
    EXPECT_EQ(triangles, 20007u);
    EXPECT_EQ(rows, 100000u);
    queue.add(file(7));
    EXPECT_EQ(totals.last(), QVariantList({0, 0, 1})) << "a new count";
}

TEST_F(ReadQueueTest, CancelledFilesStayUnanswered)
{
    const int first = queue.add(folder.write("two.obj", objTriangle() + "f 1 2 3\n"));
    const int second = queue.add(file(1)), third = queue.add(file(2));
    ASSERT_TRUE(QTest::qWaitFor([&] { return !log.order.empty(); }, timeout));
    queue.cancel(first);
    queue.cancel(second);
    queue.cancel(second); // is no longer there
    EXPECT_EQ(queue.total(), 1);
    ASSERT_TRUE(log.waitUntilIdle());
    EXPECT_EQ(log.order, (std::vector<int>{first, third}));
    EXPECT_TRUE(log.contents.size() == 1 && log.contents[0].mesh->triangleCount() == 1);
}

TEST_F(ReadQueueTest, WhatPassesTheMemoryIsRefusedWhileOthersAreHeld)
{
    queue.add(file(0));
    queue.add(folder.write("a.csv", "t,a\n1,2\n"));
    ASSERT_TRUE(log.waitUntilIdle());
    ASSERT_EQ(log.contents.size(), 2u);
    const quint64 size = log.contents[0].byteSize(), table = log.contents[1].byteSize();
    EXPECT_EQ(queue.memoryInUse(), size + table);
    queue.setMemoryLimit(size * 2 + table - 1);
    queue.add(file(1));
    ASSERT_TRUE(log.waitUntilIdle());
    EXPECT_TRUE(log.reasons.size() == 1 && log.needed == size);
    log.contents.clear();
    EXPECT_EQ(queue.memoryInUse(), 0u);
    queue.add(file(1));
    ASSERT_TRUE(log.waitUntilIdle());
    EXPECT_EQ(log.contents.size(), 1u);
}

TEST_F(ReadQueueTest, MayBeDeletedFromItsOwnSignals)
{
    for (const bool early : {false, true}) {
        auto *doomed = new ReadQueue;
        const QPointer<ReadQueue> alive(doomed);
        QObject scope;
        QObject::connect(doomed, &ReadQueue::finished, &scope, [doomed] { delete doomed; });
        if (early)
            QObject::connect(doomed, &ReadQueue::progressed, &scope, [doomed] { delete doomed; });
        doomed->add(file(0));
        doomed->add(file(1));
        EXPECT_TRUE(QTest::qWaitFor([&] { return !alive; }, timeout)) << early;
    }
}

TEST(ReadQueueChild, ServesUntilItHasServedEnoughOrHasGrownOrCrashesAndIsReplaced)
{
    const QString reader = QCoreApplication::applicationFilePath() + " --reader";
    const QString crashing = reader + "; dd bs=4096 count=1 >&2; kill -SEGV $$";
    const struct {
        QString script;
        int mostServed;
        quint64 keptBytes;
        int processes, good; // that five files take; that are read
    } rows[] = {
        {"exec " + reader, 200, quint64(1) << 40, 1, 4},
        {"exec " + reader, 2, quint64(1) << 40, 3, 4},
        {"exec " + reader, 200, 1 << 20, 5, 4},
        {"dd bs=4096 count=1 | " + crashing, 200, quint64(1) << 40, 5, 4},
        {"printf %099d; exec sleep 60", 200, quint64(1) << 40, 5, 0},
    };
    for (const auto &c : rows) {
        const ModelFolder folder;
        ReaderProgram program = shell("printf x >> " + folder.path("processes; ") + c.script);
        program.mostServed = c.mostServed;
        program.limits.keptBytes = c.keptBytes;
        ReadQueue queue(nullptr, program);
        queue.setMaxProcesses(1);
        const Log log(queue);
        for (int i = 0; i < 5; ++i)
            queue.add(folder.write(QString::number(i) + ".obj", i == 2 ? "x" : objTriangle()));
        ASSERT_TRUE(log.waitUntilIdle());
        EXPECT_EQ(int(log.contents.size()), c.good) << log.reasons.join('\n').toStdString();
        EXPECT_EQ(log.reasons.size(), 5 - c.good);
        EXPECT_TRUE(c.good || log.reasons[0].startsWith("the reader's answer is broken"));
        EXPECT_EQ(QFileInfo(folder.path("processes")).size(), c.processes);
        EXPECT_TRUE(log.rises && (log.told > 0) == (c.good > 0));
    }
}

TEST(ReadQueueChild, ThatFailsLeavesAReason)
{
    const char *const slow = "reading it took longer than 1 s";
    const char *const memory = "the reader ran out of its memory limit of 512.0 MiB";
    const struct {
        const char *shell; // what a shell does in place of the reader, or its path; empty: reads
        const char *file;
        QByteArray content;
        const char *reason; // or its beginning
    } rows[] = {
        {"kill -SEGV $$", "a.obj", "x", "the reader crashed (signal 11) on it"},
        {"exec sleep 60", "a.csv", "x", slow},
        {"exit 3", "a.obj", "x", "the reader stopped without an answer (exit code 3)"},
        {"exit 77", "a.csv", "x", memory},
        {"/none", "a.csv", "x", "the reader /none does not start: "},
        // assimp 5.2 looks for the end of this header for ever.
        {"", "a.ply", "ply\nformat ascii 1.0\nelement vertex 3\nprop", slow},
        {"", "a.off", "OFF\n60000000 60000000 0\n0 0 0\n", memory},
    };
    for (const auto &c : rows) {
        if (!*c.shell && c.reason == memory && !canLimitMemory())
            continue; // this build has no limit, and the file would take gigabytes
        const ModelFolder folder;
        ReaderProgram program;
        if (*c.shell)
            program = shell(QString("head -c 1 >&2; ") + c.shell);
        if (*c.shell == '/')
            program.path = c.shell;
        program.limits.memory = 512u << 20;
        program.limits.cpuSeconds = 1;
        program.limits.wallSeconds = *c.shell ? 1 : 60;
        ReadQueue queue(nullptr, program);
        const Log log(queue);
        queue.add(folder.write(c.file, c.content));
        ASSERT_TRUE(log.waitUntilIdle());
        EXPECT_TRUE(log.reasons.join('|').startsWith(c.reason)) << c.reason;
    }
}

TEST(ReadLimitsTest, LargerFilesGetMoreTimeButNotForEver)
{
    const ReadLimits limits, large = limits.forSize(100 << 20);
    EXPECT_EQ(limits.forSize(1000).cpuSeconds, limits.cpuSeconds);
    EXPECT_EQ(large.cpuSeconds - limits.cpuSeconds + large.wallSeconds - limits.wallSeconds, 800);
    EXPECT_EQ(limits.forSize(qint64(1) << 60).wallSeconds, 3600);
}

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
