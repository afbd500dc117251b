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

TEST(CompanionFilesTest, TheReadersProgramDecides)
{
    const ModelFolder folder;
    folder.write("out.mtl", red);
    const QString model = folder.write("model/a.obj", "mtllib ../out.mtl" + redTriangle);
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
