// SPDX-License-Identifier: MIT
// The program run from a command line: exit codes, messages and pictures.
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
    {"Help", "--help", 0, "--screenshot|--module|[file]"},
    {"Version", "--version", 0, "glview|glwindow.so|Qt 5"},
    {"NoSense", "--size big", 2, "\"big\"|--help"},
    {"ModuleMissing", "--module $/none.so $/pyramid.obj", 2, "none.so: no such file"},
    {"ModuleOfAnotherKind", "--module $/pyramid.obj $/pyramid.obj", 2, "pyramid.obj:"},
    {"NotOurModule", "--module " GLVIEW_OTHER_LIBRARY " $/pyramid.obj", 2, "\"init\""},
    {"FileMissing", "--screenshot $/p.png $/none.obj", 1, "none.obj|no such file"},
    {"FileEmpty", "--screenshot $/p.png $/empty.stl", 1, "empty.stl|empty"},
    {"FileNoModel", "--screenshot $/p.png $/words.ply", 1, "words.ply"},
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

} // namespace
