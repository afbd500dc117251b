// SPDX-License-Identifier: MIT
#include "host/read/mesh_reader.h"

#include <memory>

#include <QSignalSpy>
#include <QTest>

#include <gtest/gtest.h>

#include "tests/host/read/support.h"

namespace host {
namespace {

constexpr int patience = 60000; // ms; a test that waits so long has failed

/// What came of one reading.
struct Outcome {
    MeshPtr mesh;
    QString reason;
    int answers = 0;
    bool monotonic = true;
};

Outcome readBy(MeshReader &reader, const QString &path)
{
    Outcome outcome;
    double last = 0;
    QObject scope;
    QObject::connect(&reader, &MeshReader::finished, &scope, [&](const MeshPtr &mesh) {
        outcome.mesh = mesh;
        ++outcome.answers;
    });
    QObject::connect(&reader, &MeshReader::failed, &scope, [&](const QString &reason) {
        outcome.reason = reason;
        ++outcome.answers;
    });
    QObject::connect(&reader, &MeshReader::progressed, &scope, [&](double fraction) {
        outcome.monotonic = outcome.monotonic && fraction >= last && fraction <= 1;
        last = fraction;
    });
    reader.start(path);
    EXPECT_EQ(outcome.answers, 0) << "answered from within start()";
    EXPECT_TRUE(QTest::qWaitFor([&] { return outcome.answers > 0; }, patience));
    QTest::qWait(1); // a second answer would come now
    EXPECT_EQ(outcome.answers, 1);
    return outcome;
}

TEST(MeshReaderTest, ALargeModelComesThroughTheProcess)
{
    const ModelFolder folder;
    const QString path = folder.write(QStringLiteral("größe.obj"), objGrid(200));
    MeshReader reader;
    QSignalSpy announced(&reader, &MeshReader::announced);
    const Outcome outcome = readBy(reader, path);
    ASSERT_TRUE(outcome.mesh) << outcome.reason.toStdString();
    EXPECT_EQ(outcome.mesh->triangleCount(), 80000u);
    EXPECT_EQ(outcome.mesh->max, QVector3D(200, 200, 0));
    EXPECT_TRUE(outcome.monotonic);
    ASSERT_EQ(announced.count(), 1);
    EXPECT_EQ(announced[0][0].toULongLong(), outcome.mesh->byteSize());
    EXPECT_FALSE(reader.isReading());
}

struct ChildCase {
    const char *name; // also what the child is told to do, in lower case
    const char *how;
    const char *reason;
};

const ChildCase childCases[] = {
    {"Crashes", "crash", "the reader crashed (signal 11) on it"},
    {"WaitsForEver", "sleep", "reading it took longer than 1 s"},
    {"TalksNonsense", "garbage", "the reader's answer is broken"},
    {"StopsInTheMiddle", "cut", "the reader stopped without an answer (exit code 0)"},
    {"StopsWithoutAWord", "silent", "the reader stopped without an answer (exit code 3)"},
    {"IsOutOfMemory", "memory", "the reader ran out of its memory limit of 512.0 MiB"},
};

void PrintTo(const ChildCase &c, std::ostream *out)
{
    *out << c.name;
}

class MeshReaderChild : public testing::TestWithParam<ChildCase> {};

TEST_P(MeshReaderChild, FailsWithAReasonAndTheNextFileReads)
{
    const ModelFolder folder;
    const QString path = folder.write(QStringLiteral("a.obj"), objTriangle());
    ReadLimits limits;
    limits.memory = 512u << 20;
    limits.wallSeconds = 1;
    MeshReader reader(nullptr, {}, {QStringLiteral("--misbehave"), GetParam().how}, limits);
    EXPECT_EQ(readBy(reader, path).reason, QLatin1String(GetParam().reason));
    MeshReader good;
    EXPECT_TRUE(readBy(good, path).mesh);
}

INSTANTIATE_TEST_SUITE_P(Rows, MeshReaderChild, testing::ValuesIn(childCases),
                         [](const auto &row) { return std::string(row.param.name); });

TEST(MeshReaderTest, AFileThatKeepsTheParserBusyIsGivenUp)
{
    // assimp 5.2 looks for the end of this header for ever.
    const ModelFolder folder;
    const QString path =
        folder.write(QStringLiteral("cut.ply"), "ply\nformat ascii 1.0\nelement vertex 3\nprop");
    ReadLimits limits = defaultReadLimits();
    limits.cpuSeconds = 1;
    MeshReader reader(nullptr, {}, {QStringLiteral("--misbehave"), QStringLiteral("briefly")},
                      limits);
    EXPECT_EQ(readBy(reader, path).reason, QStringLiteral("reading it took longer than 1 s"));
}

TEST(MeshReaderTest, AFileThatAsksForAllMemoryIsRefused)
{
    if (!canLimitMemory())
        GTEST_SKIP() << "this build has no limit, and the file would take gigabytes";
    const ModelFolder folder;
    const QString path =
        folder.write(QStringLiteral("huge.off"), "OFF\n60000000 60000000 0\n0 0 0\n");
    ReadLimits limits;
    limits.memory = 512u << 20; // as the child takes it, to name it
    MeshReader reader(nullptr, {}, {QStringLiteral("--misbehave"), QStringLiteral("briefly")},
                      limits);
    EXPECT_EQ(readBy(reader, path).reason,
              QStringLiteral("the reader ran out of its memory limit of 512.0 MiB"));
}

TEST(MeshReaderTest, LargerFilesGetMoreTimeButNotForEver)
{
    const ReadLimits limits;
    EXPECT_EQ(limits.forSize(1000).cpuSeconds, limits.cpuSeconds);
    EXPECT_EQ(limits.forSize(100 << 20).cpuSeconds, limits.cpuSeconds + 200);
    EXPECT_EQ(limits.forSize(100 << 20).wallSeconds, limits.wallSeconds + 600);
    EXPECT_EQ(limits.forSize(qint64(1) << 60).wallSeconds, 3600);
}

TEST(MeshReaderTest, AProgramThatIsNotThereIsNamed)
{
    const ModelFolder folder;
    const QString path = folder.write(QStringLiteral("a.obj"), objTriangle());
    MeshReader reader(nullptr, folder.path(QStringLiteral("no-such-program")));
    EXPECT_TRUE(readBy(reader, path).reason.contains(QLatin1String("no-such-program")));
}

TEST(MeshReaderTest, WhatCannotBeOpenedIsToldBeforeAProcessStarts)
{
    const ModelFolder folder;
    MeshReader reader(nullptr, folder.path(QStringLiteral("no-such-program")));
    EXPECT_EQ(readBy(reader, folder.path(QStringLiteral("gone.obj"))).reason,
              QStringLiteral("there is no such file"));
}

TEST(MeshReaderTest, CancelIsSilentAndAnotherStartHolds)
{
    const ModelFolder folder;
    const QString path = folder.write(QStringLiteral("a.obj"), objTriangle());
    const QString other = folder.write(QStringLiteral("b.obj"), objGrid(2));
    MeshReader reader;
    QSignalSpy finished(&reader, &MeshReader::finished), failed(&reader, &MeshReader::failed);
    for (const bool running : {false, true}) {
        reader.start(path);
        if (running)
            QTest::qWait(1);
        reader.cancel();
        EXPECT_FALSE(reader.isReading());
        QTest::qWait(1);
        EXPECT_TRUE(reader.findChildren<QProcess *>().isEmpty()) << running;
    }
    const Outcome outcome = readBy(reader, other);
    ASSERT_TRUE(outcome.mesh);
    EXPECT_EQ(outcome.mesh->triangleCount(), 8u);
    EXPECT_EQ(finished.count() + failed.count(), 1);
}

TEST(MeshReaderTest, MayBeDeletedFromItsOwnSignals)
{
    const ModelFolder folder;
    const QString path = folder.write(QStringLiteral("a.obj"), objTriangle());
    for (const bool early : {false, true}) {
        auto *reader = new MeshReader;
        QObject gone;
        const auto die = [&] { delete reader; };
        if (early)
            QObject::connect(reader, &MeshReader::progressed, &gone, die);
        else
            QObject::connect(reader, &MeshReader::finished, &gone, die);
        QSignalSpy destroyed(reader, &QObject::destroyed);
        reader->start(path);
        EXPECT_TRUE(QTest::qWaitFor([&] { return destroyed.count() == 1; }, patience));
    }
}

} // namespace
} // namespace host
