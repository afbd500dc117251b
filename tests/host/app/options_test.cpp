// SPDX-License-Identifier: MIT
// The command line: what a person types.
#include "host/app/options.h"
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
    {"Nothing", "", Action::View, ""},
    {"File", "a.obj", Action::View, ""},
    {"Help", "--help", Action::Help, ""},
    {"Version", "--version a.obj", Action::Version, ""},
    {"Reader", "--read-model a.obj", Action::ReadModel, ""},
    {"UnknownOption", "--colour", Action::Refuse, "colour"},
    {"SizeWithoutHeight", "--size 800", Action::Refuse, "\"800\""},
    {"SizeTooSmall", "--size 800x9", Action::Refuse, "16"},
    {"SizeTooLarge", "--size 99999x800", Action::Refuse, "16384"},
    {"RateOfNothing", "--fps 0", Action::Refuse, "\"0\""},
    {"RateOfWords", "--fps fast", Action::Refuse, "\"fast\""},
    {"PictureOfNothing", "--screenshot a.png", Action::Refuse, "needs a file"},
    {"RecordingOfNothing", "--turntable a.mp4", Action::Refuse, "needs a file"},
    {"PictureAndRecording", "--turntable a --screenshot b a.obj", Action::Refuse, "at a time"},
    {"SecondsOfWords", "--seconds many a.obj", Action::Refuse, "\"many\""},
    {"TransparentWindow", "--transparent a.obj", Action::Refuse, "--screenshot"},
    {"TransparentFrames", "--transparent --turntable a a.obj", Action::View, ""},
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
    const Options o = parseOptions({"glview", "--size", "640x480", "--module", "m.so", "--fps",
                                    "25", "--screenshot", "p.png", "a.obj"});
    EXPECT_EQ(o.size, QSize(640, 480));
    EXPECT_EQ(o.module, "m.so");
    EXPECT_EQ(o.fps, 25);
    EXPECT_EQ(o.screenshot, "p.png");
    EXPECT_EQ(o.files, QStringList{"a.obj"});
    EXPECT_EQ(parseOptions({"glview", "--read-model", "b.stl"}).readModel, "b.stl");
}

struct WindowCase {
    const char *name;
    const char *arguments;
    QSize window;
};

const WindowCase windowCases[] = {
    {"Window", "--size 4000x3000 a.obj", {4000, 3000}},
    {"SmallPicture", "--screenshot p.png --size 1600x1200 a.obj", {1600, 1200}},
    {"WidePicture", "--screenshot p.png --size 8000x5000 a.obj", {1600, 1000}},
    {"HighRecording", "--turntable t --size 2000x4000 a.obj", {600, 1200}},
    {"StripKeepsAHeight", "--screenshot p.png --size 16000x80 a.obj", {12800, 64}},
    {"NarrowAsAskedFor", "--screenshot p.png --size 3000x20 a.obj", {3000, 20}},
};

TABLE(WindowSize, testing::Test, WindowCase, windowCases);

TEST_P(WindowSize, HasTheShapeOfThePicture)
{
    const QString line = QString("glview ") + GetParam().arguments;
    EXPECT_EQ(windowSize(parseOptions(line.split(' '))), GetParam().window);
}

} // namespace
} // namespace host
