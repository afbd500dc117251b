// SPDX-License-Identifier: MIT
// The program run from a command line: exit codes, messages and pictures.
#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QImage>
#include <QProcess>
#include <QTemporaryDir>

#include "tests/GL/table.h"

namespace {

struct CommandCase {
    const char *name;
    const char *arguments; // apart by blanks; $ stands for a folder of files
    int exitCode;
    const char *output; // parts of what is printed, apart by bars
};

const CommandCase commandCases[] = {
    {"Help", "--help", 0, "Window:|--screenshot <file>|-v, --version|[file or folder...]"},
    {"Version", "--version", 0, "glview|glwindow.so|Qt 5"},
    {"NoSense", "--size big", 2, "\"big\"|--help"},
    {"ModuleMissing", "--module $/none.so $/pyramid.obj", 2, "none.so: no such file"},
    {"ModuleOfAnotherKind", "--module $/pyramid.obj $/pyramid.obj", 2, "pyramid.obj:"},
    {"NotOurModule", "--module " GLVIEW_OTHER_LIBRARY " $/pyramid.obj", 2, "\"init\""},
    {"FileMissing", "--screenshot $/p.png $/none.obj", 1, "none.obj|no such file"},
    {"FileEmpty", "--screenshot $/p.png $/empty.stl", 1, "empty.stl|empty"},
    {"FileNoModel", "--screenshot $/p.png $/words.ply", 1, "words.ply"},
    {"RecordingOfAnotherKind", "--turntable $/t.avi $/pyramid.obj", 1, "t.avi|.mp4"},
    {"RecordingTooLong", "--turntable $/t.mp4 --seconds 601 $/pyramid.obj", 1, "600 seconds"},
    {"PictureUnwritable", "--screenshot $/none/p.png $/pyramid.obj", 1, "none/p.png"},
};

TABLE(CommandLine, testing::Test, CommandCase, commandCases);

void write(const QString &path, const QByteArray &text)
{
    QFile file(path);
    ASSERT_TRUE(file.open(QIODevice::WriteOnly));
    file.write(text);
}

void fill(const QTemporaryDir &folder)
{
    write(folder.filePath("pyramid.obj"), "v -1 0 -1\nv 1 0 -1\nv 1 0 1\nv -1 0 1\nv 0 2 0\n"
                                          "f 1 2 3 4\nf 1 5 2\nf 2 5 3\nf 3 5 4\nf 4 5 1\n");
    write(folder.filePath("empty.stl"), "");
    write(folder.filePath("words.ply"), "these are words\n");
}

TEST_P(CommandLine, EndsAsAScriptExpects)
{
    const QTemporaryDir folder;
    fill(folder);
    QString arguments = GetParam().arguments;
    QProcess program;
    program.setProcessChannelMode(QProcess::MergedChannels);
    program.start(GLVIEW_PROGRAM, arguments.replace('$', folder.path()).split(' '));
    ASSERT_TRUE(program.waitForFinished());
    const QString output = QString::fromLocal8Bit(program.readAll());
    EXPECT_EQ(program.exitStatus(), QProcess::NormalExit);
    EXPECT_EQ(program.exitCode(), GetParam().exitCode) << output.toStdString();
    for (const QString &part : QString(GetParam().output).split('|'))
        EXPECT_TRUE(output.contains(part, Qt::CaseInsensitive))
            << part.toStdString() << " is not in: " << output.toStdString();
    EXPECT_FALSE(QFileInfo::exists(folder.filePath("p.png")));
}

TEST(CommandLineTest, ScreenshotShowsTheModelInTheSizeAskedFor)
{
    const QTemporaryDir folder;
    fill(folder);
    QProcess program;
    program.start(GLVIEW_PROGRAM, {"--size", "400x300", "--screenshot", folder.filePath("p.png"),
                                   folder.filePath("pyramid.obj")});
    ASSERT_TRUE(program.waitForFinished());
    EXPECT_EQ(program.exitCode(), 0);
    const QImage picture(folder.filePath("p.png"));
    ASSERT_EQ(picture.size(), QSize(400, 300));
    // A pyramid is wider below its top. The background is a gradient from
    // top to bottom, so that each row of it has one colour.
    const auto widthOf = [&](int y) {
        int count = 0;
        for (int x = 0; x < picture.width(); ++x)
            count += picture.pixel(x, y) != picture.pixel(399, y);
        return count;
    };
    int top = 299, bottom = 0;
    for (int y = 80; y < 300; ++y) { // below the text
        if (widthOf(y) > 2) {
            top = std::min(top, y);
            bottom = std::max(bottom, y);
        }
    }
    EXPECT_GT(bottom - top, 120);
    const int height = bottom - top;
    EXPECT_GT(widthOf(top + height / 2), widthOf(top + height / 8) + 40);
}

// Larger than the screen: the same picture, finer. Transparent: nothing but model and text.
TEST(CommandLineTest, LargePicturesAndRecordingsAreTakenAsAskedFor)
{
    const QTemporaryDir folder;
    fill(folder);
    const auto run = [&](const QStringList &arguments) {
        QProcess program;
        program.start(GLVIEW_PROGRAM, arguments + QStringList(folder.filePath("pyramid.obj")));
        EXPECT_TRUE(program.waitForFinished());
        EXPECT_EQ(program.exitCode(), 0) << program.readAllStandardError().toStdString();
        return QString(program.readAllStandardError());
    };
    run({"--size", "800x600", "--screenshot", folder.filePath("small.png")});
    run({"--size", "3200x2400", "--transparent", "--screenshot", folder.filePath("large.png")});
    const QImage small(folder.filePath("small.png")), large(folder.filePath("large.png"));
    ASSERT_EQ(large.size(), QSize(3200, 2400));
    int apart = 0, covered = 0;
    for (int y = 100; y < 460; ++y) { // between text, triad and scale bar, smaller in the large one
        for (int x = 0; x < 800; ++x) {
            const bool model = small.pixel(x, y) != small.pixel(799, y);
            const bool opaque = qAlpha(large.pixel(4 * x + 2, 4 * y + 2)) == 255;
            apart += model != opaque;
            covered += model;
        }
    }
    EXPECT_GT(covered, 10000);
    EXPECT_LT(apart, covered / 50);

    const QString said = run({"--size", "320x240", "--fps", "4", "--seconds", "1", "--turntable",
                              folder.filePath("turn")});
    EXPECT_TRUE(said.contains("4 of 4")) << said.toStdString();
    EXPECT_EQ(QDir(folder.filePath("turn")).entryList(QDir::Files).size(), 4);
}

} // namespace
