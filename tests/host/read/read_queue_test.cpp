// SPDX-License-Identifier: MIT
#include "host/read/read_queue.h"

#include <algorithm>

#include <QSignalSpy>
#include <QTest>

#include <gtest/gtest.h>

#include "tests/host/read/support.h"

namespace host {
namespace {

/// A queue over the files 0.obj, 1.obj, ..., and what it did.
class ReadQueueTest : public testing::Test {
protected:
    ReadQueueTest()
    {
        queue.setMaxProcesses(1);
        QObject::connect(&queue, &ReadQueue::started, &queue, [this](int id) {
            order.push_back(id);
            most = std::max(most, ++running);
        });
        QObject::connect(&queue, &ReadQueue::finished, &queue, [this](int, const MeshPtr &mesh) {
            meshes.push_back(mesh);
            --running;
        });
        QObject::connect(&queue, &ReadQueue::failed, &queue, [this](int, const QString &reason) {
            reasons << reason;
            --running;
        });
    }

    QString file(int number) const
    {
        return folder.write(QString::number(number) + QStringLiteral(".obj"), objTriangle());
    }

    bool waitUntilIdle() const
    {
        return QTest::qWaitFor([this] { return queue.isIdle(); }, 60000);
    }

    ModelFolder folder;
    ReadQueue queue;
    std::vector<int> order;
    std::vector<MeshPtr> meshes;
    QStringList reasons;
    int running = 0, most = 0;
};

TEST_F(ReadQueueTest, OrderFollowsThePrioritiesAsTheyChange)
{
    std::vector<int> id;
    for (int i = 0; i < 5; ++i)
        id.push_back(queue.add(file(i), i == 3 ? 5 : 0));
    queue.setPriority(id[4], 9);
    queue.setPriority(id[0], -1);
    queue.setPriority(12345, 1); // no such file
    // When the first one runs, another becomes the most urgent, by its path.
    QObject::connect(&queue, &ReadQueue::started, &queue, [&](int started) {
        if (started == id[4])
            queue.setPriority(file(2), 7);
    });
    ASSERT_TRUE(waitUntilIdle());
    EXPECT_EQ(order, (std::vector<int>{id[4], id[2], id[3], id[1], id[0]}));
    EXPECT_EQ(meshes.size(), 5u);
}

TEST_F(ReadQueueTest, RunsAsManyAsAllowedAndCountsThem)
{
    queue.setMaxProcesses(3);
    QSignalSpy totals(&queue, &ReadQueue::totals);
    for (int i = 0; i < 8; ++i)
        EXPECT_GT(queue.add(file(i)), 0);
    EXPECT_GT(queue.add(folder.path(QStringLiteral("gone.obj"))), 0);
    EXPECT_EQ(queue.add(file(7)), 0) << "it is under way";
    ASSERT_TRUE(waitUntilIdle());
    EXPECT_EQ(most, 3);
    EXPECT_EQ(reasons, QStringList("there is no such file"));
    EXPECT_EQ(totals.last(), QVariantList({8, 1, 9}));
    EXPECT_GT(queue.add(file(7)), 0) << "it may be read again";
    EXPECT_EQ(queue.total(), 1);
}

TEST_F(ReadQueueTest, CancelledFilesStayUnanswered)
{
    const int first = queue.add(file(0)), second = queue.add(file(1)), third = queue.add(file(2));
    ASSERT_TRUE(QTest::qWaitFor([&] { return !order.empty(); }, 60000));
    queue.cancel(first);
    queue.cancel(second);
    queue.cancel(second); // is no longer there
    EXPECT_EQ(queue.total(), 1);
    ASSERT_TRUE(waitUntilIdle());
    EXPECT_EQ(order, (std::vector<int>{first, third}));
    EXPECT_EQ(meshes.size(), 1u);
    queue.add(file(0));
    queue.add(file(1));
    queue.cancelAll();
    EXPECT_TRUE(queue.isIdle());
    QTest::qWait(1);
    EXPECT_EQ(meshes.size() + std::size_t(reasons.size()), 1u);
}

TEST_F(ReadQueueTest, MeshesBeyondTheMemoryLimitAreRefusedWhileOthersAreHeld)
{
    queue.add(file(0));
    ASSERT_TRUE(waitUntilIdle());
    ASSERT_EQ(meshes.size(), 1u);
    const quint64 size = meshes[0]->byteSize();
    EXPECT_EQ(queue.memoryInUse(), size);
    queue.setMemoryLimit(size * 2 - 1);
    queue.add(file(1));
    ASSERT_TRUE(waitUntilIdle());
    ASSERT_EQ(reasons.size(), 1);
    EXPECT_TRUE(reasons[0].contains(QLatin1String("limit"))) << reasons[0].toStdString();

    meshes.clear();
    EXPECT_EQ(queue.memoryInUse(), 0u);
    queue.add(file(1));
    ASSERT_TRUE(waitUntilIdle());
    EXPECT_EQ(meshes.size(), 1u);
}

TEST_F(ReadQueueTest, MayBeDeletedFromItsOwnSignals)
{
    auto *doomed = new ReadQueue;
    QSignalSpy destroyed(doomed, &QObject::destroyed);
    QObject scope;
    QObject::connect(doomed, &ReadQueue::finished, &scope, [doomed] { delete doomed; });
    doomed->add(file(0));
    doomed->add(file(1));
    EXPECT_TRUE(QTest::qWaitFor([&] { return destroyed.count() == 1; }, 60000));
}

} // namespace
} // namespace host
