// SPDX-License-Identifier: MIT
#include "host/read/companion_files.h"

#include <QSignalSpy>

#include <gtest/gtest.h>
#include <sys/stat.h>

#include "host/read/import.h"
#include "host/read/read_queue.h"
#include "tests/host/read/support.h"

namespace host {
namespace {

struct CompanionCase {
    const char *name;
    const char *named;       // by the model; @ is the folder above it
    bool read, readAnywhere; // whether its colour arrives
    const char *note;        // part of the only note, or null
};

const CompanionCase companionCases[] = {
    {"Beside", "own.mtl", true, true, nullptr},
    {"Below", "sub/own.mtl", true, true, nullptr},
    {"Missing", "none.mtl", false, false, nullptr},
    {"ByDots", "../out.mtl", false, true, "file outside the folder: not read (out.mtl)"},
    {"Absolute", "@/out.mtl", false, true, "outside"},
    {"NeighbourOfLikeName", "../model2/out.mtl", false, true, "outside"},
    {"LinkInside", "in-link.mtl", true, true, nullptr},
    {"LinkOutside", "out-link.mtl", false, true, "outside"},
    {"LinkedFolder", "folder/out.mtl", false, true, "outside"},
    {"OfAnotherMachine", "C:\\models\\own.mtl", true, true, nullptr},
    {"ByItsNameHere", "/no/such/place/own.mtl", true, true, nullptr},
    {"Pipe", "pipe.mtl", false, false, "pipe.mtl is not a regular file"},
    {"Device", "/dev/zero", false, false, "zero"},
};

void PrintTo(const CompanionCase &c, std::ostream *out)
{
    *out << c.name;
}

class CompanionOf : public testing::TestWithParam<CompanionCase> {};

TEST_P(CompanionOf, IsReadOrNoted)
{
    const CompanionCase &c = GetParam();
    const ModelFolder folder;
    const QByteArray red = "newmtl red\nKd 1 0 0\n";
    for (const char *path : {"out.mtl", "model2/out.mtl", "model/own.mtl", "model/sub/own.mtl"})
        folder.write(QLatin1String(path), red);
    const QString in = folder.path(QStringLiteral("model/"));
    QFile::link(QStringLiteral("sub/own.mtl"), in + "in-link.mtl");
    QFile::link(QStringLiteral("../out.mtl"), in + "out-link.mtl");
    QFile::link(QStringLiteral("../model2"), in + "folder");
    ASSERT_EQ(mkfifo(QFile::encodeName(in + "pipe.mtl").constData(), 0600), 0);
    const QByteArray named = QByteArray(c.named).replace('@', folder.path({}).toUtf8());
    const QString model = folder.write(QStringLiteral("model/a.obj"),
                                       "mtllib " + named + "\nusemtl red\n" + objTriangle());
    for (const Companions allowed : {Companions::InFolder, Companions::Anywhere}) {
        const bool anywhere = allowed == Companions::Anywhere;
        const Imported got = importMesh(model, {}, {}, allowed);
        ASSERT_TRUE(got.ok()) << got.reason.toStdString();
        EXPECT_EQ(got.mesh.parts[0].colour[1] == 0, anywhere ? c.readAnywhere : c.read) << anywhere;
        const bool noted = anywhere ? c.note && !c.readAnywhere : c.note != nullptr;
        ASSERT_EQ(got.mesh.notes.size(), noted ? 1 : 0) << got.mesh.notes.join('|').toStdString();
        if (c.note && !anywhere) {
            EXPECT_TRUE(got.mesh.notes[0].contains(c.note)) << got.mesh.notes[0].toStdString();
        }
    }
}

INSTANTIATE_TEST_SUITE_P(Rows, CompanionOf, testing::ValuesIn(companionCases),
                         [](const auto &row) { return std::string(row.param.name); });

TEST(CompanionFilesTest, TheReadersProgramDecides)
{
    const ModelFolder folder;
    folder.write("out.mtl", "newmtl red\nKd 1 0 0\n");
    const QString model =
        folder.write("model/a.obj", "mtllib ../out.mtl\nusemtl red\n" + objTriangle());
    for (const Companions allowed : {Companions::InFolder, Companions::Anywhere}) {
        ReaderProgram program;
        program.companions = allowed;
        ReadQueue queue(nullptr, program);
        QSignalSpy finished(&queue, &ReadQueue::finished);
        queue.add(model);
        ASSERT_TRUE(finished.wait(60000));
        const MeshPtr mesh = finished[0][1].value<Content>().mesh;
        EXPECT_EQ(mesh->notes.isEmpty(), allowed == Companions::Anywhere);
    }
}

TEST(CompanionFilesTest, NotesNameTexturesAndEnd)
{
    const ModelFolder folder;
    QByteArray materials;
    for (int i = 0; i < 20; ++i)
        materials +=
            "newmtl m" + QByteArray::number(i) + "\nmap_Kd ../t" + QByteArray::number(i) + ".png\n";
    folder.write(QStringLiteral("a.mtl"), materials);
    const QStringList notes = importMesh(folder.write(QStringLiteral("a.obj"),
                                                      "mtllib a.mtl\nusemtl m0\n" + objTriangle()))
                                  .mesh.notes;
    ASSERT_EQ(notes.size(), CompanionFiles::maxNotes);
    EXPECT_EQ(notes.first(), QStringLiteral("texture outside the folder: not read (t0.png)"));
    EXPECT_EQ(notes.last(), QStringLiteral("13 more files not read"));
}

} // namespace
} // namespace host
