// SPDX-License-Identifier: MIT
// The command line, and what it finds: options, paths, standard input, the desktop's wishes.
#include <QDir>
#include <QTemporaryDir>

#include "host/app/desktop.h"
#include "host/app/opening.h"
#include "host/app/options.h"
#include "host/app/standard_input.h"
#include "tests/GL/table.h"

namespace host {
namespace {

struct OptionsCase {
    const char *name;
    QString arguments; // apart by blanks
    Options::Action action;
    const char *complaint; // a part of the error
};

using Action = Options::Action;

const OptionsCase optionsCases[] = {
    {"Reader", "--reader", Action::Reader, ""},
    {"UnknownOption", "--colour", Action::Refuse, "--colour;"},
    {"FileWithADash", "a.obj -x.obj", Action::Refuse, "-x.obj; a file whose name"},
    {"SizeWithoutHeight", "--size 800", Action::Refuse, "\"800\""},
    {"SizeTooSmall", "--size 800x9", Action::Refuse, "16"},
    {"RateOfNothing", "--fps 0", Action::Refuse, "\"0\""},
    {"UpOfNoAxis", "--up w a.obj", Action::Refuse, "\"w\""},
    {"PictureOfNothing", "--screenshot a.png", Action::Refuse, "needs a file"},
    {"RecordingOfNothing", "--turntable a.mp4", Action::Refuse, "needs a file"},
    {"PictureAndRecording", "--turntable a --screenshot b a.obj", Action::Refuse, "at a time"},
    {"SecondsOfWords", "--turntable t --seconds many a.obj", Action::Refuse, "\"many\""},
    {"SecondsOfNothing", "--turntable t --seconds 0 a.obj", Action::Refuse, "\"0\""},
    {"SecondsTooMany", "--turntable t --seconds 601 a.obj", Action::Refuse, "600"},
    {"SecondsAlone", "--seconds 3 a.obj", Action::Refuse, "--turntable"},
    {"PictureWatched", "--watch --screenshot p.png a.obj", Action::Refuse, "window"},
    {"CleanWindow", "--no-overlays a.obj", Action::Refuse, "--screenshot or"},
    {"InputTwice", "- -", Action::Refuse, "once"},
    {"CompanionsNowhere", "--companions nowhere a.obj", Action::Refuse, "\"nowhere\""},
};

TABLE(OptionsLine, testing::Test, OptionsCase, optionsCases);

TEST_P(OptionsLine, IsTakenOrRefused)
{
    const Options o =
        parseOptions(("glview " + GetParam().arguments).split(' ', Qt::SkipEmptyParts));
    EXPECT_EQ(o.action, GetParam().action) << o.error.toStdString();
    EXPECT_EQ(o.error.isEmpty(), o.action != Action::Refuse);
    EXPECT_TRUE(o.error.contains(GetParam().complaint)) << o.error.toStdString();
}

TEST(OptionsTest, ValuesArrive)
{
    const Options o = parseOptions(
        QString(
            "glview --size 640x480 --module m.so --fps 25 --up z --screenshot p.png --no-overlays "
            "--companions anywhere - -- -a.obj")
            .split(' '));
    EXPECT_EQ(o.size, QSize(640, 480));
    EXPECT_EQ(o.module, "m.so");
    EXPECT_EQ(o.companions, Companions::Anywhere);
    EXPECT_EQ(o.fps, 25);
    EXPECT_EQ(o.up, FileAxes::Z);
    EXPECT_EQ(o.screenshot, "p.png");
    EXPECT_FALSE(o.overlays);
    EXPECT_EQ(o.files, QStringList({"-", "./-a.obj"}))
        << "no later reader may take it for an option";
}

TEST(OptionsTest, TheWindowHasTheShapeOfThePicture)
{
    const std::pair<const char *, QSize> rows[] = {
        {"--size 4000x3000 a.obj", {4000, 3000}},
        {"--screenshot p.png --size 8000x5000 a.obj", {1600, 1000}},
        {"--turntable t --size 2000x4000 a.obj", {600, 1200}},
        {"--screenshot p.png --size 16000x80 a.obj", {12800, 64}}, // a strip keeps a height
        {"--screenshot p.png --size 3000x20 a.obj", {3000, 20}}};
    for (const auto &[line, window] : rows)
        EXPECT_EQ(windowSize(parseOptions(("glview " + QString(line)).split(' '))), window) << line;
}

TEST(DesktopScaleTest, VariablesAreReadAndTakenAway)
{
    const struct {
        const char *everywhere, *screens;
        double factor;
    } rows[] = {{"2", "", 2}, {"1.5", "A=2;B=1", 3}, {"", "1;2", 1}, {"-1", "", 1}, {"99", "", 8}};
    for (const auto &row : rows) {
        qputenv("QT_SCALE_FACTOR", row.everywhere);
        qputenv("QT_SCREEN_SCALE_FACTORS", row.screens);
        EXPECT_EQ(DesktopScale::take().factor("A"), row.factor) << row.everywhere << row.screens;
        EXPECT_FALSE(qEnvironmentVariableIsSet("QT_SCALE_FACTOR"));
    }
}

TEST(StandardInputTest, FormatsAreKnownByTheirFirstBytes)
{
    const QByteArray solid = QByteArray("solid").leftJustified(80, ' ');
    EXPECT_EQ(StandardInput::suffixOf(solid + QByteArray("\2\0\0\0", 4), 184), "stl");
    EXPECT_EQ(StandardInput::suffixOf("# made by hand\nv 0 0 0\n", 23), "obj");
    EXPECT_EQ(StandardInput::suffixOf("time,v 1\n0,1\n", 13), "csv");
    EXPECT_EQ(StandardInput::suffixOf("<?xml version='1'?><COLLADA>", 28), "dae");
    EXPECT_EQ(StandardInput::suffixOf("these are words", 15), "");
}

TEST(OpeningTest, OneFileFillsTheWindowAndAFolderMakesASheet)
{
    const QTemporaryDir folder;
    EXPECT_TRUE(openingOf({"a.obj"}).single && openingOf({}).single);
    EXPECT_FALSE(openingOf({folder.path()}).single || openingOf({"a.obj", "b.obj"}).single);
    EXPECT_EQ(openingOf({folder.path()}).name, QDir(folder.path()).dirName());
}

} // namespace
} // namespace host
