// SPDX-License-Identifier: MIT
// The program run from a command line: exit codes, messages and pictures.
#include <QDir>
#include <QImage>
#include <QProcess>
#include <QTemporaryDir>
#include <gtest/gtest.h>

namespace {

class CommandTest : public testing::Test {
protected:
    const QTemporaryDir folder;

    void SetUp() override
    {
        ASSERT_TRUE(QDir(folder.path()).mkdir("void"));
        for (const auto &[name, text] :
             {std::pair("pyramid.obj", "v -1 0 -1\nv 1 0 -1\nv 1 0 1\nv -1 0 1\nv 0 2 0\n"
                                       "f 1 2 3 4\nf 1 5 2\nf 2 5 3\nf 3 5 4\nf 4 5 1\n"),
              std::pair("empty.stl", ""), std::pair("words.ply", "these are words\n")}) {
            QFile file(folder.filePath(name));
            ASSERT_TRUE(file.open(QIODevice::WriteOnly) && file.write(text) >= 0);
        }
    }

    QString run(const QString &arguments, int exitCode, const char *input = "",
                const char *variable = "") const
    {
        QProcess program;
        program.setProcessChannelMode(QProcess::MergedChannels);
        if (*input)
            program.setStandardInputFile(folder.filePath(input));
        if (*variable)
            program.setEnvironment(QProcess::systemEnvironment() << variable);
        program.start(GLVIEW_PROGRAM, QString(arguments).replace('$', folder.path()).split(' '));
        EXPECT_TRUE(program.waitForFinished(-1));
        const QString output = QString::fromLocal8Bit(program.readAll());
        EXPECT_EQ(program.exitStatus(), QProcess::NormalExit);
        EXPECT_EQ(program.exitCode(), exitCode) << output.toStdString();
        return output;
    }
};

TEST_F(CommandTest, EndsAsAScriptExpects)
{
    const struct {
        const char *arguments; // apart by blanks; $ stands for a folder of files
        int exitCode;
        const char *output;     // parts of what is printed, apart by bars
        const char *input = ""; // a file of the folder on standard input
        const char *variable = "";
    } rows[] = {
        {"--help", 0, "Window:|--screenshot <file>|-v, --version|[file or folder...]"},
        {"--version", 0, "glview|glwindow.so|Qt 5"},
        {"--size big", 2, "\"big\"|--help"},
        {"--module $/none.so $/pyramid.obj", 2, "none.so: no such file"},
        {"--module $/pyramid.obj $/pyramid.obj", 2, "pyramid.obj:"},
        {"--module " GLVIEW_OTHER_LIBRARY " $/pyramid.obj", 2, "\"init\""},
        {"--screenshot $/p.png $/none.obj", 1, "none.obj|no such file"},
        {"--screenshot $/p.png $/words.ply", 1, "words.ply"},
        {"--screenshot $/p.png $/empty.stl $/words.ply", 1, "empty.stl: |none of the"},
        {"--screenshot $/good.png $/pyramid.obj $/void", 0, "void: there is no"},
        {"--turntable $/t.webm $/pyramid.obj", 2, "t.webm|.mp4"},
        {"--transparent --screenshot $/p.jpg $/pyramid.obj", 2, "p.jpg"},
        {"--screenshot $/none/p.png $/pyramid.obj", 1, "none/p.png"},
        {"--screenshot $/good.png -", 0, "", "pyramid.obj"},
        {"--screenshot $/p.png -", 1, "format", "words.ply"},
        {"$/pyramid.obj", 2, "xvfb-run", "", "DISPLAY="},
    };
    for (const auto &row : rows) {
        const QString output = run(row.arguments, row.exitCode, row.input, row.variable);
        for (const QString &part : QString(row.output).split('|'))
            EXPECT_TRUE(output.contains(part, Qt::CaseInsensitive))
                << part.toStdString() << " is not in: " << output.toStdString();
        EXPECT_FALSE(QFileInfo::exists(folder.filePath("p.png"))) << row.arguments;
        EXPECT_EQ(QFile::remove(folder.filePath("good.png")),
                  QString(row.arguments).contains("good.png"));
    }
}

// Larger than the screen: the same picture, finer. Transparent: nothing but model and text.
TEST_F(CommandTest, LargePicturesAndRecordingsAreTakenAsAskedFor)
{
    run("--size 1600x1200 --screenshot $/small.png $/pyramid.obj", 0);
    run("--size 3200x2400 --transparent --screenshot $/large.png $/pyramid.obj", 0);
    const QImage small(folder.filePath("small.png")), large(folder.filePath("large.png"));
    ASSERT_EQ(large.size(), QSize(3200, 2400));
    int apart = 0, covered = 0;
    for (int y = 100; y < 1000; ++y) { // between text, triad and scale bar
        for (int x = 0; x < 1600; ++x) {
            const bool model = small.pixel(x, y) != small.pixel(1599, y);
            apart += model != (qAlpha(large.pixel(2 * x + 1, 2 * y + 1)) == 255);
            covered += model;
        }
    }
    EXPECT_GT(covered, 10000);
    EXPECT_LT(apart, covered / 50);

    const QString said =
        run("--size 320x240 --fps 4 --seconds 1 --turntable $/turn $/pyramid.obj", 0);
    EXPECT_TRUE(said.contains("4 of 4")) << said.toStdString();
    EXPECT_EQ(QDir(folder.filePath("turn")).entryList(QDir::Files).size(), 4);
    run("--size 320x240 --animation --turntable $/film $/pyramid.obj", 1);
}

} // namespace
