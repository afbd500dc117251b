// SPDX-License-Identifier: MIT
// The program run from a command line: exit codes, messages and pictures; and as a person meets it:
// started on a file and steered by the X server's own input. Needs xdotool and openbox.
#include <map>

#include <QDateTime>
#include <QDir>
#include <QImage>
#include <QProcess>
#include <QTemporaryDir>
#include <QTest>
#include <gtest/gtest.h>

namespace {

class CommandTest : public testing::Test {
protected:
    const QTemporaryDir folder;

    void SetUp() override
    {
        ASSERT_TRUE(QDir(folder.path()).mkdir("void") && QDir(folder.path()).mkdir("deep"));
        for (const auto &[name, text] :
             {std::pair("pyramid.obj", "usemtl a\n" + QByteArray(1 << 20, '\n') + // a block
                                           "v -1 0 -1\nv 1 0 -1\nv 1 0 1\nv -1 0 1\nv 0 2 0\n"
                                           "f 1 2 3 4\nf 1 5 2\nf 2 5 3\nf 3 5 4\nf 4 5 1\n"),
              {"deep/red.obj", "mtllib ../red.mtl\nv 0 0 0\nv 2 0 0\nv 0 2 0\nv 2 2 0\n"
                               "usemtl red\nf 1 2 3\nf 3 2 4\n"},
              {"red.mtl", "newmtl red\nKd 1 0 0\n"},
              {"m.x", "xof 0303txt 0032\nAnimTicksPerSecond { 4; }\n" // for half a second
                      "Frame a { Mesh { 3; 0;0;0;, 1;0;0;, 0;1;0;; 1; 3;0,1,2;; } }\nAnimationSet "
                      "s { Animation { {a} AnimationKey { 2; 2; 0;3;0;0;0;;,2;3;.4;0;0;;; } } }\n"},
              {"empty.stl", ""},
              {"words.ply", "these are words\n"}}) {
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
        {"--help", 0,
         "[file or folder...]|Window:\n  --size <WxH>           "
         "Open|--fps|--up|--section|--compare "
         "<how>|--watch|--module|\nFiles:|--screenshot <file>|--turntable|--seconds|--animation|"
         "--thumbnails|--jobs|--transparent|--no-overlays|-h, --help|-v, --version"},
        {"--version", 0, "glview|glwindow.so\nQt 5"},
        {"--size big", 2, "\"big\"|--help"},
        {"--module $/none.so $/pyramid.obj", 2, "none.so: no such file"},
        {"--module $/pyramid.obj $/pyramid.obj", 2, "pyramid.obj:"},
        {"--module " GLVIEW_OTHER_LIBRARY " $/pyramid.obj", 2, "\"init\""},
        {"--screenshot $/p.png $/none.obj", 1, "none.obj|no such file"},
        {"--screenshot $/p.png $/words.ply", 1, "words.ply"},
        {"--screenshot $/p.png $/empty.stl $/words.ply", 1, "empty.stl: |none of the"},
        {"--screenshot $/good.png $/pyramid.obj $/void", 0, "void: there is no"},
        {"--turntable $/t.webm $/pyramid.obj", 2, "t.webm|.mp4"},
        {"--animation --turntable $/film $/pyramid.obj", 1, "pyramid.obj has no animation"},
        {"--animation --turntable $/film $/pyramid.obj $/void", 1, "takes one file"},
        {"--transparent --screenshot $/p.jpg $/pyramid.obj", 2, "p.jpg"},
        {"--screenshot $/none/p.png $/pyramid.obj", 1, "none/p.png"},
        {"--thumbnails $/words.ply/a $/pyramid.obj", 1, "words.ply/a cannot be made"},
        {"--thumbnails $/thumbs $/void", 1, "nothing to show|0 made, 0 already there, 1"},
        {"--screenshot $/good.png -", 0, "", "pyramid.obj"},
        {"--screenshot $/p.png -", 1, "format", "words.ply"},
        {"--screenshot $/p.png -", 1, "standard input is empty", "empty.stl"},
        {"--screenshot $/p.png -", 1, "cannot be read: Is a directory", "void"},
        {"$/pyramid.obj", 2, "xvfb-run", "", "DISPLAY="},
    };
    for (const auto &row : rows) {
        const QString output = run(row.arguments, row.exitCode, row.input, row.variable);
        int at = 0; // they come in this order
        for (const QString &part : QString(row.output).split('|'))
            EXPECT_GE(at = output.indexOf(part, std::max(at, 0), Qt::CaseInsensitive), 0)
                << part.toStdString() << " is not in: " << output.toStdString();
        EXPECT_FALSE(QFileInfo::exists(folder.filePath("p.png"))) << row.arguments;
        EXPECT_EQ(QFile::remove(folder.filePath("good.png")),
                  QString(row.arguments).contains("good.png"));
    }
}

// Larger than the screen. Transparent: nothing but the model.
TEST_F(CommandTest, LargePicturesAndRecordingsAreTakenAsAskedFor)
{
    run("--size 3200x2400 --transparent --no-overlays --screenshot $/large.png $/pyramid.obj", 0);
    const QImage large(folder.filePath("large.png"));
    ASSERT_EQ(large.size(), QSize(3200, 2400));
    EXPECT_TRUE(qAlpha(large.pixel(1600, 1200)) == 255 && qAlpha(large.pixel(9, 1200)) == 0);

    for (const QString where : {"folder", "anywhere"}) {
        run("--companions " + where + " --size 64x64 --screenshot $/red.png $/deep/red.obj", 0);
        const QColor seen = QImage(folder.filePath("red.png")).pixelColor(32, 32);
        EXPECT_EQ(seen.red() > 3 * seen.green(), where == "anywhere");
    }

    for (const QString what :
         {"turn --fps 4 --seconds 1 --transparent --no-overlays $/deep/red.obj",
          "film --fps 8 --animation $/m.x"}) {
        const QString said = run("--size 320x240 --turntable $/" + what, 0);
        EXPECT_TRUE(said.contains("4 of 4")) << said.toStdString();
        const QDir frames(folder.filePath(what.left(4)));
        EXPECT_EQ(frames.entryList(QDir::Files).size(), 4);
        const QImage first(frames.filePath("frame_0001.png"));
        EXPECT_NE(first, QImage(frames.filePath("frame_0002.png")));
        EXPECT_EQ(qAlpha(first.pixel(0, 0)) == 0, what[0] == 't');
    }
}

TEST_F(CommandTest, ThumbnailsAreMadeOfWhatIsMissingOrStale)
{
    const QDir out(folder.filePath("o#%1"));
    for (const char *name : {"void/pyramid.obj", "void/<b>&.obj"})
        ASSERT_TRUE(QFile::copy(folder.filePath("pyramid.obj"), folder.filePath(name)));
    const auto stamp = [&] {
        std::map<QString, QDateTime> times;
        for (const QFileInfo &each : out.entryInfoList({"*.png"}))
            times[each.fileName()] = each.lastModified();
        return times;
    };
    const struct {
        const char *before; // what happens to a file first: "name=text"
        const char *arguments;
        int exitCode;
        const char *said; // parts apart by bars
        int pictures, changed;
    } rows[] = {
        {"", "64 --jobs 1 $/pyramid.obj $/void $/words.ply", 1,
         "Pictures: 1 of 4 (25 %)|Pictures: 4 of 4|no picture of:|3 made, 0 already there, 1 "
         "failed|/words.ply  ",
         3, 3},
        {"", "64 $/pyramid.obj $/pyramid.obj $/void/pyramid.obj", 0, "0 made, 2 already", 3, 0},
        {"pyramid.obj=v 0 0 0\nv 1 0 0\nv 0 1 0\nf 1 2 3\n", "64 $/void $/pyramid.obj", 0,
         "1 made, 2 already", 3, 1},
        {"", "64x48 $/pyramid.obj", 0, "1 made", 3, 1},
        {"", "64x48 --up z $/pyramid.obj", 0, "1 made", 3, 1},
        {"pyramid.obj=v", "64x48 --up z $/pyramid.obj $/void/none.obj", 1, "2 failed|none.obj", 3,
         0},
        {"", "64 --transparent $/void/pyramid.obj", 0, "1 made", 3, 1},
        {"", "64 $/void/pyramid.obj", 0, "1 made", 3, 1},
        {"void/<b>&.obj=v", "64 $/void/<b>&.obj", 1, "1 failed", 3, 0},
        {"void/<b>&.obj=v 0 0 0\nv 1 0 0\nv 0 1 0\nf 1 2 3\n", "64 $/void/<b>&.obj", 0, "1 made", 3,
         1},
    };
    for (const auto &row : rows) {
        if (const QString change = row.before; !change.isEmpty()) {
            QFile file(folder.filePath(change.section('=', 0, 0)));
            ASSERT_TRUE(file.open(QIODevice::WriteOnly) &&
                        file.write(change.section('=', 1).toUtf8()) >= 0);
        }
        const auto before = stamp();
        const QString said =
            run(QString("--thumbnails $/o#%1 --size ") + row.arguments, row.exitCode);
        for (const QString &part : QString(row.said).split('|'))
            EXPECT_TRUE(said.contains(part)) << row.arguments << ": " << said.toStdString();
        const auto after = stamp();
        int changed = 0;
        for (const auto &[name, time] : after)
            changed += before.count(name) == 0 || before.at(name) != time;
        EXPECT_TRUE(int(after.size()) == row.pictures && changed == row.changed)
            << row.arguments << ": " << changed << " of " << after.size();
    }
    // The same picture as that of a window.
    run("--section x --up x --size 64x64 --no-overlays --screenshot $/cut.png $/void/pyramid.obj",
        0);
    const QDir cut(folder.filePath("cut"));
    for (const char *section : {"", "--section x "}) {
        run(section + QString("--up x --size 64 --thumbnails $/cut $/void/pyramid.obj"), 0);
        const QImage made(cut.filePath(cut.entryList({"*.png"}).value(0)));
        EXPECT_EQ(made == QImage(folder.filePath("cut.png")), *section != 0);
    }
    for (const QString &name :
         cut.entryList({"*.png", "index.html"})) // where neither can be written
        ASSERT_TRUE(QFile::remove(cut.filePath(name)) && cut.mkdir(name));
    const QString said = run("--size 64 --thumbnails $/cut $/void/pyramid.obj", 1);
    EXPECT_TRUE(said.contains(".png is a folder") && said.contains("html is a folder") &&
                said.contains("0 made, 0 already there, 1 failed"))
        << said.toStdString();
    QFile index(out.filePath("index.html"));
    EXPECT_TRUE(index.open(QIODevice::ReadOnly));
    const QString page = QString::fromUtf8(index.readAll());
    for (const char *part : {"<title>3 pictures, 3 files failed<", "/words.ply</td>",
                             "/pyramid.obj\"><a href=\"./pyramid.obj.",
                             "width=\"64\" height=\"48\"", "&lt;b&gt;&amp;.obj<small>1 triangle "})
        EXPECT_TRUE(page.contains(part)) << part;
}

constexpr int patience = 120000; // milliseconds; far more than anything takes

QString hand(const QStringList &arguments)
{
    QProcess tool;
    tool.start("xdotool", arguments);
    EXPECT_TRUE(tool.waitForFinished(patience))
        << "no xdotool? " << arguments.join(' ').toStdString();
    return QString::fromUtf8(tool.readAllStandardOutput()).trimmed();
}

/// Windows of a name, or of the program: it has another one within.
QStringList windows(const char *by, const char *what)
{
    return hand({"search", "--onlyvisible", by, what}).split('\n', Qt::SkipEmptyParts);
}

TEST_F(CommandTest, AModelIsShownAndClosedByTheMenu)
{
    // A window that comes while the manager takes over may be shown by neither; it says when it
    // has.
    const QString ready = folder.filePath("ready");
    QProcess manager, viewer;
    manager.start("openbox", {"--startup", "touch " + ready});
    ASSERT_TRUE(QTest::qWaitFor([&] { return QFile::exists(ready); }, patience)) << "no openbox?";
    viewer.start(GLVIEW_PROGRAM, {"--size", "800x600", folder.filePath("pyramid.obj")});
    // Both are asked again in every turn: a name can belong to several windows for a while.
    QString active;
    const auto isActive = [&] {
        const QStringList named = windows("--name", "pyramid.obj");
        hand({"windowactivate", named.value(named.size() - 1)});
        active = hand({"getactivewindow"});
        return named.contains(active) && windows("--class", "glview").size() == 2;
    };
    ASSERT_TRUE(QTest::qWaitFor(isActive, patience)) << active.toStdString();
    hand({"mousemove", "--window", active, "300", "60", "click", "3"});
    const auto isOpen = [] { return windows("--class", "glview").size() > 2; };
    ASSERT_TRUE(QTest::qWaitFor(isOpen, patience)) << "no menu";
    hand({"key", "Up", "Return"}); // its last entry
    EXPECT_TRUE(viewer.waitForFinished(patience));
    EXPECT_TRUE(viewer.exitStatus() == QProcess::NormalExit && viewer.exitCode() == 0);
}

} // namespace
