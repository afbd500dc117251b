// SPDX-License-Identifier: MIT
// Which files there are, what they are, which others models may name, and what is said of those
// that cannot be read.
#include <QRegularExpression>
#include <sys/stat.h>

#include "host/read/companion_files.h"
#include "host/read/file_kind.h"
#include "host/read/model_files.h"
#include "tests/host/read/support.h"

namespace host {
namespace {

QStringList namesIn(const ModelFolder &folder, const CollectLimits &limits = {})
{
    QStringList names;
    for (const QString &file : listFiles({folder.path({})}, limits).files)
        names << QDir(folder.path({})).relativeFilePath(file);
    return names;
}

TEST(FileList, TakesFilesByNameAndByTheirFirstBytesWhereTheNameSaysLittle)
{
    const struct {
        const char *file;
        QByteArray content;
        bool taken, table;
    } rows[] = {
        {"a.csv", "x", true, true},
        {"a.TSV", "x", true, true},
        {"a.txt", "t;a\n1,5;2\n3;", true, true},
        {"a.txt", "t\ta\n1,5\t2\n", false, true},
        {"a.txt", "Dear diary,\nit rains\n", false, true},
        {"a.b.fbx", "x", true, false},
        {"a.png", "x", false, false},
        {"obj", "x", false, false},
        {".a.obj", "x", false, false},
        {"a.md5anim", "x", false, false},
        {"a.xml", "<?xml version=\"1.0\"?>\n<mesh>", true, false},
        {"a.xml", "<?xml version=\"1.0\"?>\n<note>", false, false},
        {"a.raw", "0 0 0 1 0 0 0 1 0\n", true, false},
        {"a.raw", QByteArray("II*\0\x10", 5), false, false},
        {"a.xyz", "# scan\n1 2 3\n", true, false},
        {"a.asc", "-----BEGIN\nPGP\nkey\nblock\n", false, false},
        {"a.obj", "", true, false}, // it is shown, with the reason
    };
    for (const auto &c : rows) {
        const ModelFolder folder;
        folder.write(c.file, c.content);
        EXPECT_EQ(namesIn(folder).size(), c.taken ? 1 : 0) << c.file << c.content.toStdString();
        EXPECT_EQ(isTable(c.file), c.table) << c.file;
    }
}

TEST(FileList, IsSortedAsAPersonSortsAndEndsWhereLinksRunInACircle)
{
    const ModelFolder folder;
    for (const char *name : {"part10.obj", "part2.OBJ", "Part1.stl", "b/2.ply", "a/wheel.glb"})
        folder.write(name, "x");
    ASSERT_TRUE(QFile::link(folder.path({}), folder.path("a/up")));
    ASSERT_TRUE(QFile::link("nowhere.obj", folder.path("b.obj")));
    EXPECT_EQ(listFiles({"z.obj", folder.path("b"), "a.obj"}).files,
              QStringList({"z.obj", folder.path("b/2.ply"), "a.obj"}));
    EXPECT_EQ(namesIn(folder),
              QStringList({"a/wheel.glb", "b/2.ply", "Part1.stl", "part2.OBJ", "part10.obj"}));
}

TEST(FileList, LimitsStopTheSearchAndSaySo)
{
    const ModelFolder folder;
    for (const char *name : {"a.obj", "b.obj", "1/c.obj", "1/2/d.obj"})
        folder.write(name, "x");
    CollectLimits limits;
    EXPECT_TRUE(listFiles({folder.path({})}, limits).cut.isEmpty());
    limits.depth = 1;
    EXPECT_EQ(namesIn(folder, limits), QStringList({"1/c.obj", "a.obj", "b.obj"}));
    EXPECT_EQ(listFiles({folder.path({})}, limits).cut, QStringList{folder.path({})});
    limits.files = 2;
    EXPECT_EQ(namesIn(folder, limits).size(), 2);
    EXPECT_EQ(listFiles({folder.path({})}, limits).cut, QStringList{folder.path({})});
}

TEST(FileObjection, NamesWhatIsWrongWithoutOpening)
{
    const ModelFolder folder;
    const QString pipe = folder.path("x.csv"), link = folder.path("link.obj");
    ASSERT_EQ(mkfifo(QFile::encodeName(pipe), 0600), 0);
    ASSERT_TRUE(QFile::link("nowhere.obj", link));
    ReadLimits small;
    small.fileBytes = 1024;
    EXPECT_EQ(fileObjection(pipe), "it is not a regular file");
    EXPECT_EQ(fileObjection(link), "the link points to nothing");
    EXPECT_EQ(fileObjection(folder.path("a.obj")), "there is no such file");
    EXPECT_EQ(fileObjection(folder.path({})), "it is a folder");
    EXPECT_EQ(fileObjection(folder.write("a.obj", "")), "the file is empty");
    EXPECT_EQ(fileObjection(folder.write("a.obj", QByteArray(1024, 'x')), small), "");
    EXPECT_EQ(fileObjection(folder.write("a.obj", QByteArray(1025, 'x')), small),
              "it is larger than 1.0 KiB, the most that is read");
    EXPECT_EQ(readFailure("/some/where/cube.obj", "it is odd"), "cube.obj: it is odd");
}

const QByteArray red = "newmtl red\nKd 1 0 0\n", redTriangle = "\nusemtl red\n" + objTriangle();

TEST(CompanionFilesTest, AreReadOrNoted)
{
    const struct {
        const char *named;       // by the model; @ is the folder above it
        bool read, readAnywhere; // whether its colour arrives
        const char *note;        // part of the only note, or empty
    } rows[] = {
        {"own.mtl", true, true, ""},
        {"sub/own.mtl", true, true, ""},
        {"none.mtl", false, false, ""},
        {"../out.mtl", false, true, "file outside the folder: not read (out.mtl)"},
        {"@/out.mtl", false, true, "outside"},
        {"../model2/out.mtl", false, true, "outside"}, // a neighbour of like name
        {"in-link.mtl", true, true, ""},
        {"out-link.mtl", false, true, "outside"},
        {"folder/out.mtl", false, true, "outside"}, // a link
        {"C:\\models\\own.mtl", true, true, ""},
        {"/no/such/place/own.mtl", true, true, ""},
        {"pipe.mtl", false, false, "pipe.mtl is not a regular file"},
        {"/dev/zero", false, false, "zero"},
    };
    const ModelFolder folder;
    for (const char *path : {"out.mtl", "model2/out.mtl", "model/own.mtl", "model/sub/own.mtl"})
        folder.write(path, red);
    const QString in = folder.path("model/");
    QFile::link("sub/own.mtl", in + "in-link.mtl");
    QFile::link("../out.mtl", in + "out-link.mtl");
    QFile::link("../model2", in + "folder");
    ASSERT_EQ(mkfifo(QFile::encodeName(in + "pipe.mtl").constData(), 0600), 0);
    for (const auto &c : rows) {
        SCOPED_TRACE(c.named);
        const QByteArray named = QByteArray(c.named).replace('@', folder.path({}).toUtf8());
        const QString model = folder.write("model/a.obj", "mtllib " + named + redTriangle);
        for (const Companions allowed : {Companions::InFolder, Companions::Anywhere}) {
            const bool anywhere = allowed == Companions::Anywhere;
            const Mesh mesh = importMesh(model, {}, {}, allowed).mesh;
            EXPECT_EQ(mesh.parts.at(0).colour[1] == 0, anywhere ? c.readAnywhere : c.read);
            const bool noted = *c.note && !(anywhere && c.readAnywhere);
            EXPECT_EQ(mesh.notes.size(), noted ? 1 : 0) << mesh.notes.join('|').toStdString();
            EXPECT_TRUE(anywhere || mesh.notes.value(0).contains(c.note)) << c.note;
        }
    }
}

TEST(CompanionFilesTest, ASkinIsCalledAsItsModelAndNothingIsWritten)
{
    const ModelFolder folder;
    const QString model = folder.write("tank.md2", "x");
    CompanionFiles files(model, Companions::InFolder);
    for (const char *name : {"other.png", "tank.txt", "tan.png", "tank2.png", "Tank.TGA"}) {
        const QString skin = folder.write(name, "x");
        EXPECT_EQ(files.skin(),
                  QString(name).contains(QRegularExpression("^tank2|^Tank")) ? skin : "");
    }
    EXPECT_FALSE(files.Open(QFile::encodeName(model).constData(), "wb"));
}

TEST(CompanionFilesTest, NotesNameTexturesAndEnd)
{
    const ModelFolder folder;
    QByteArray materials;
    for (const char letter : QByteArray("abcdefghijklmnopqrst"))
        materials += QByteArray("newmtl @\nmap_Kd ../@.png\n").replace('@', letter);
    folder.write("a.mtl", materials);
    const QString model = folder.write("a.obj", "mtllib a.mtl\nusemtl a\n" + objTriangle());
    const QStringList notes = importMesh(model).mesh.notes;
    ASSERT_EQ(notes.size(), CompanionFiles::maxNotes);
    EXPECT_EQ(notes.first(), "texture outside the folder: not read (a.png)");
    EXPECT_EQ(notes.last(), "13 more files not read");
}

} // namespace
} // namespace host
