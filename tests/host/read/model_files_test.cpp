// SPDX-License-Identifier: MIT
#include "host/read/model_files.h"

#include <QFile>

#include <gtest/gtest.h>

#include "tests/host/read/support.h"

namespace host {
namespace {

QStringList namesIn(const ModelFolder &folder, const CollectLimits &limits = {})
{
    QStringList names;
    for (const QString &file : collectModelFiles(folder.path(QString()), limits).files)
        names << QDir(folder.path(QString())).relativeFilePath(file);
    return names;
}

TEST(ModelFiles, AreSortedAsAPersonSorts)
{
    const ModelFolder folder;
    for (const char *name : {"part10.obj", "part2.OBJ", "Part1.stl", "b/2.ply", "a/wheel.glb"})
        folder.write(QLatin1String(name), "x");
    EXPECT_EQ(namesIn(folder),
              QStringList({"a/wheel.glb", "b/2.ply", "Part1.stl", "part2.OBJ", "part10.obj"}));
}

struct SuffixCase {
    const char *name;
    const char *file;
    QByteArray content;
    bool taken;
};

const SuffixCase suffixCases[] = {
    {"Table", "a.csv", "x,y\n", true},
    {"DottedName", "a.b.fbx", "x", true},
    {"Picture", "a.png", "x", false},
    {"NoSuffix", "obj", "x", false},
    {"Hidden", ".a.obj", "x", false},
    {"MotionAlone", "a.md5anim", "x", false},
    {"XmlOfAMesh", "a.xml", "<?xml version=\"1.0\"?>\n<mesh>", true},
    {"XmlOfSomethingElse", "a.xml", "<?xml version=\"1.0\"?>\n<note>", false},
    {"RawTriangles", "a.raw", "0 0 0 1 0 0 0 1 0\n", true},
    {"RawPhotograph", "a.raw", QByteArray("II*\0\x10", 5), false},
    {"Empty", "a.obj", "", true}, // it is shown, with the reason
};

void PrintTo(const SuffixCase &c, std::ostream *out)
{
    *out << c.name;
}

class ModelFileKind : public testing::TestWithParam<SuffixCase> {};

TEST_P(ModelFileKind, IsTakenOrLeft)
{
    const ModelFolder folder;
    folder.write(QLatin1String(GetParam().file), GetParam().content);
    EXPECT_EQ(namesIn(folder).size(), GetParam().taken ? 1 : 0);
}

INSTANTIATE_TEST_SUITE_P(Rows, ModelFileKind, testing::ValuesIn(suffixCases),
                         [](const auto &row) { return std::string(row.param.name); });

TEST(ModelFiles, LinksThatRunInACircleEnd)
{
    const ModelFolder folder;
    folder.write(QStringLiteral("sub/a.obj"), "x");
    ASSERT_TRUE(QFile::link(folder.path(QString()), folder.path(QStringLiteral("sub/up"))));
    ASSERT_TRUE(QFile::link(QStringLiteral("nowhere.obj"), folder.path(QStringLiteral("b.obj"))));
    EXPECT_EQ(namesIn(folder), QStringList("sub/a.obj"));
}

TEST(ModelFiles, LimitsStopTheSearchAndSaySo)
{
    const ModelFolder folder;
    for (const char *name : {"a.obj", "b.obj", "1/c.obj", "1/2/d.obj"})
        folder.write(QLatin1String(name), "x");
    CollectLimits limits;
    EXPECT_TRUE(collectModelFiles(folder.path(QString()), limits).complete);
    limits.depth = 1;
    EXPECT_EQ(namesIn(folder, limits), QStringList({"1/c.obj", "a.obj", "b.obj"}));
    EXPECT_FALSE(collectModelFiles(folder.path(QString()), limits).complete);
    limits.files = 2;
    EXPECT_EQ(namesIn(folder, limits).size(), 2);
    EXPECT_FALSE(collectModelFiles(folder.path(QString()), limits).complete);
}

TEST(ModelFiles, SuffixesAreFitForADialog)
{
    const QStringList suffixes = modelSuffixes();
    for (const char *suffix : {"obj", "ply", "stl", "gltf", "glb", "dae", "fbx", "xml"})
        EXPECT_TRUE(suffixes.contains(QLatin1String(suffix))) << suffix;
    for (const QString &suffix : suffixes)
        EXPECT_FALSE(suffix.isEmpty() || suffix.contains(QLatin1Char('*')));
}

} // namespace
} // namespace host
