// SPDX-License-Identifier: MIT
// The command line, and what it finds: options, paths, standard input, the desktop's wishes.
#include <cstdio>

#include <QDir>
#include <QSignalSpy>
#include <QTemporaryDir>

#include "host/app/desktop.h"
#include "host/app/file_watch.h"
#include "host/app/opening.h"
#include "host/app/options.h"
#include "host/app/settings.h"
#include "host/app/standard_input.h"
#include "tests/support/table.h"

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
    {"SectionOfNoAxis", "--section w:3 a.obj", Action::Refuse, "\"w:3\""},
    {"SectionTooOften", "--section x --section y --section z --section x a.obj", Action::Refuse,
     "three"},
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
            "--companions anywhere --section y --section -z:1.5 - -- -a.obj")
            .split(' '));
    EXPECT_EQ(o.size, QSize(640, 480));
    EXPECT_EQ(o.module, "m.so");
    EXPECT_EQ(o.companions, Companions::Anywhere);
    EXPECT_EQ(o.fps, 25);
    EXPECT_EQ(o.up, FileAxes::Z);
    ASSERT_EQ(o.section.size(), 2);
    EXPECT_EQ(o.section[0].axis, FileAxes::Y);
    EXPECT_EQ(o.section[1].value, 1.5);
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
        const char *values[3];
        double factor;
    } rows[] = {{{"2", "", ""}, 2},   {{"1.5", "", "A=2;B=1"}, 3}, {{"", "", "1;2"}, 1},
                {{"-1", "", ""}, 1},  {{"99", "", ""}, 8},         {{"0.1", "", ""}, 0.5},
                {{"", "", "2;1"}, 2}, {{"", "3", "B=2"}, 3}};
    const char *const names[] = {"QT_SCALE_FACTOR", "QT_DEVICE_PIXEL_RATIO",
                                 "QT_SCREEN_SCALE_FACTORS", "QT_AUTO_SCREEN_SCALE_FACTOR",
                                 "QT_ENABLE_HIGHDPI_SCALING"};
    for (const auto &row : rows) {
        for (int i = 0; i < 5; ++i)
            qputenv(names[i], i < 3 ? row.values[i] : "1");
        EXPECT_EQ(DesktopScale::take().factor("A"), row.factor) << row.factor;
        for (const char *name : names)
            EXPECT_FALSE(qEnvironmentVariableIsSet(name)) << name;
    }
}

TEST(StandardInputTest, FormatsAreKnownByTheirFirstBytes)
{
    const QByteArray solid = QByteArray("solid").leftJustified(80, ' ');
    const QByteArray binary = solid + QByteArray("\2\0\0\0", 4);
    const std::tuple<QByteArray, int, const char *> rows[] = {
        {binary, 184, "stl"},
        {QByteArray(80, 'x') + binary.right(4), 184, "stl"},
        {QByteArray(80, 'x') + binary.right(4), 185, ""},
        {QByteArray(84, '\0'), 84, ""},
        {"solid words", 11, "stl"},
        {"# made by hand\nv 0 0 0\n", 23, "obj"},
        {"usemtl red\n", 11, "obj"},
        {"time,v 1\n0,1\n", 13, "csv"},
        {"a\tb\n", 4, "csv"},
        {"a;b\n", 4, "csv"},
        {"one\na,b\n", 8, ""},
        {"<?xml version='1'?><COLLADA>", 28, "dae"},
        {"<amf>", 5, "amf"},
        {"<X3D>", 5, "x3d"},
        {"glTF", 4, "glb"},
        {"\n{\"asset\"", 9, "gltf"},
        {"ply\n", 4, "ply"},
        {"OFF\n", 4, "off"},
        {"PK\x03\x04", 4, "3mf"},
        {"; FBX 7", 7, "fbx"},
        {"Kaydara FBX Binary", 18, "fbx"},
        {"BLENDER", 7, "blend"},
        {"xof 0303", 8, "x"},
        {"these are words", 15, ""}};
    for (const auto &[start, size, suffix] : rows)
        EXPECT_EQ(StandardInput::suffixOf(start, size), suffix) << start.toStdString();
}

TEST(StandardInputTest, IsKeptAsAFileOfItsFormat)
{
    const std::tuple<QByteArray, const char *, const char *> rows[] = {
        {QByteArray("v 0 0 0\n").repeated(300000), "obj", ""},
        {"", "", "standard input is empty"},
        {"these are words", "", "its format is not known"}};
    const QTemporaryDir folder;
    for (const auto &[bytes, suffix, said] : rows) {
        const QByteArray path = folder.filePath("input").toLocal8Bit();
        QFile file(path);
        ASSERT_TRUE(file.open(QIODevice::WriteOnly) && file.write(bytes) == bytes.size());
        file.close();
        ASSERT_TRUE(std::freopen(path.constData(), "r", stdin));
        StandardInput input;
        const QString fault = input.read();
        EXPECT_TRUE(fault.contains(said) && fault.isEmpty() == !*said) << fault.toStdString();
        EXPECT_EQ(QFileInfo(input.path()).suffix(), suffix);
        QFile kept(input.path());
        EXPECT_TRUE(*said || (kept.open(QIODevice::ReadOnly) && kept.readAll() == bytes));
    }
}

TEST(SettingsTest, AreKeptFromRunToRun)
{
    const QTemporaryDir folder;
    ASSERT_TRUE(QDir::setCurrent(folder.path()));
    QStringList files;
    for (int i = 0; i < 12; ++i) {
        QFile file(folder.filePath(QString::number(i)));
        ASSERT_TRUE(file.open(QIODevice::WriteOnly));
        files << file.fileName();
    }
    EXPECT_FALSE(Settings().isDark() || Settings().isOrthographic());
    EXPECT_FALSE(Settings().windowSize().isValid() || Settings().recentFiles().size());
    EXPECT_EQ(Settings().folder(), "");
    Settings().addFiles(files);
    EXPECT_EQ(Settings().recentFiles(), files.mid(0, 10));
    Settings().addFiles({"7", files[5], files[5]});
    QFile::remove(files[0]);
    EXPECT_EQ(Settings().recentFiles(), QStringList({files[7], files[5]}) + files.mid(1, 4) +
                                            QStringList({files[6]}) + files.mid(8, 2));
    Settings().setDark(true);
    EXPECT_TRUE(Settings().isDark() && !Settings().isOrthographic());
    Settings().setOrthographic(true);
    Settings().setWindowSize({640, 480});
    Settings().setFolder(folder.path());
    EXPECT_TRUE(Settings().isOrthographic() && Settings().windowSize() == QSize(640, 480));
    EXPECT_EQ(Settings().folder(), folder.path());
    Settings().setFolder(files[1]);
    EXPECT_EQ(Settings().folder(), "") << "no folder";
}

TEST(FileWatchTest, TellsOfEachChangeAndOfFilesThatComeBack)
{
    const QTemporaryDir folder;
    const QString a = folder.filePath("a"), b = folder.filePath("b");
    QByteArray text;
    const auto write = [&](const QString &path) {
        QFile file(path);
        text += 'x';
        ASSERT_TRUE(file.open(QIODevice::WriteOnly) && file.write(text) > 0);
    };
    write(a), write(b);
    FileWatch watch;
    QSignalSpy told(&watch, &FileWatch::changed);
    watch.setFiles({a, b});
    const auto hears = [&](const QString &path) {
        EXPECT_TRUE(told.count() > 0 || told.wait(60000));
        EXPECT_EQ(told.value(0).value(0).toString(), path);
        told.clear();
    };
    write(a), write(a);
    hears(a);
    QFile::remove(a);
    write(a);
    hears(a);
    watch.setFiles({b});
    write(a), write(b);
    hears(b);
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
