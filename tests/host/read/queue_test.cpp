// SPDX-License-Identifier: MIT
// The queue and its processes, good ones and bad ones.
#include <QFileInfo>
#include <QPointer>
#include <QSignalSpy>
#include <QTest>

#include "host/read/read_queue.h"
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

} // namespace
} // namespace host
