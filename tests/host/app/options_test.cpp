// SPDX-License-Identifier: MIT
// The command line, and what it finds: options, paths, standard input, the desktop's wishes.

#include <QDir>
#include <QRegularExpression>
#include <QSettings>
#include <QTemporaryDir>
#include <gtest/gtest.h>

#include "host/app/desktop.h"
#include "host/app/options.h"
#include "host/app/settings.h"
#include "host/app/software_gl.h"
#include "host/app/standard_input.h"
#include "host/app/thumbnail_index.h"

namespace host {
namespace {

TEST(OptionsTest, WhatMakesNoSenseIsRefused)
{
    // A command line and a part of the complaint.
    const QString rows =
        "--colour => --colour;|--fps => value|--fps 1001 => \"1001\"|a.obj -x.obj => -x.obj; a "
        "file whose name|--size 800 "
        "=> \"800\""
        "|--size 800x15 => 16|--size 800x16385 => 16384|--fps 0 => \"0\"|--up w a.obj => \"w\""
        "|--compare over a.obj b.obj => \"over\"|--compare divider a.obj => two files"
        "|--section w:3 a.obj => \"w:3\""
        "|--section x --section y --section z --section x a.obj => three"
        "|--screenshot a.png => needs a file|--turntable a.mp4 => needs a file"
        "|--turntable a --screenshot b a.obj => at a time"
        "|--turntable t --seconds many a.obj => \"many\""
        "|--turntable t --seconds 0 a.obj => \"0\"|--turntable t --seconds 601 a.obj => 600"
        "|--seconds 3 a.obj => --turntable|--animation a.obj => --turntable"
        "|--watch --screenshot p.png a.obj => window|--watch --thumbnails d a.obj => window"
        "|--thumbnails d => needs files|--thumbnails d a.obj - => \"-\""
        "|--thumbnails d --screenshot b a.obj => at a time"
        "|--thumbnails d --no-overlays a.obj => --screenshot or"
        "|--thumbnails d --compare beside a.obj b.obj => --compare"
        "|--thumbnails d --size 15 a.obj => \"15\"|--thumbnails d --jobs 0 a.obj => \"0\""
        "|--thumbnails d --jobs 257 a.obj => 256|--jobs 1 a.obj => --thumbnails"
        "|--transparent a.obj => --thumbnails|--no-overlays a.obj => --screenshot or"
        "|- - => once|--companions nowhere a.obj => \"nowhere\"";
    for (const QString &row : rows.split('|')) {
        const Options o = parseOptions(("glview " + row.section(" => ", 0, 0)).split(' '));
        EXPECT_EQ(o.action, Options::Action::Refuse) << row.toStdString();
        EXPECT_TRUE(o.error.contains(row.section(" => ", 1))) << o.error.toStdString();
    }
}

TEST(OptionsTest, ValuesArrive)
{
    const Options o = parseOptions(
        QString(
            "glview --size 640x480 --module m.so --fps 25 --up Z --screenshot p.png --no-overlays "
            "--companions anywhere --section y --section -z:1.5 --section x - -- -a.obj")
            .split(' '));
    EXPECT_TRUE(o.size == QSize(640, 480) && o.module == "m.so" && o.fps == 25 && !o.overlays &&
                o.companions == Companions::Anywhere && o.up == FileAxes::Z);
    ASSERT_EQ(o.section.size(), 3);
    EXPECT_TRUE(o.section[0].axis == FileAxes::Y && o.section[1].value == 1.5 &&
                o.screenshot == "p.png");
    EXPECT_EQ(o.files, QStringList({"-", "./-a.obj"})); // no later reader takes it for an option
    const Options film =
        parseOptions(QString("glview --turntable t --animation --seconds 2.5 a.obj").split(' '));
    EXPECT_TRUE(film.animation && film.secondsGiven && film.seconds == 2.5 && o.sizeGiven);
    EXPECT_TRUE(film.recordedFps == 30 && o.recordedFps == 25 && o.seconds == 6);
}

TEST(OptionsTest, TheWindowHasTheShapeOfThePicture)
{
    const std::pair<const char *, QSize> rows[] = {
        {"--fps 1 --size 4000x3000 a.obj", {4000, 3000}},
        {"--screenshot p.png --fps 1000 --size 8000x5000 a.obj", {1600, 1000}},
        {"--turntable t --seconds 600 --size 2000x4000 a.obj", {600, 1200}},
        {"--screenshot p.png --size 16000x80 a.obj", {12800, 64}}, // a strip keeps a height
        {"--screenshot p.png --size 3000x20 a.obj", {3000, 20}},
        {"--thumbnails d --jobs 256 --transparent a.obj", {256, 256}},
        {"--thumbnails d --jobs 1 --size 64 a.obj", {64, 64}},
        {"--turntable t --seconds .1 --size 16x16384 a.obj", {16, 16384}},
        {"--thumbnails d --size 4000x2000 a.obj", {1600, 800}}};
    for (const auto &[line, window] : rows)
        EXPECT_EQ(windowSize(parseOptions(("glview " + QString(line)).split(' '))), window) << line;
}

TEST(DesktopScaleTest, VariablesAreReadAndTakenAway)
{
    const struct {
        const char *values[3];
        double factor;
    } rows[] = {{{"2", "", ""}, 2},    {{"1.5", "", "A=2;B=1"}, 3}, {{"", "", "1;2"}, 1},
                {{"0", "inf", ""}, 1}, {{"99", "", ""}, 8},         {{"0.1", "", ""}, 0.5},
                {{"", "", "2;1"}, 2},  {{"", "3", "B=2"}, 3},       {{"", "", "=2"}, 1}};
    const char *const names[] = {"QT_SCALE_FACTOR", "QT_DEVICE_PIXEL_RATIO",
                                 "QT_SCREEN_SCALE_FACTORS", "QT_AUTO_SCREEN_SCALE_FACTOR",
                                 "QT_ENABLE_HIGHDPI_SCALING"};
    for (const auto &row : rows) {
        for (int i = 0; i < 5; ++i)
            qputenv(names[i], i < 3 ? row.values[i] : "1");
        qputenv("DISPLAY", row.values[0]);
        qunsetenv("QT_QPA_PLATFORM");
        EXPECT_EQ(DesktopScale::take().factor("A"), row.factor) << row.factor;
        for (const char *name : names)
            EXPECT_FALSE(qEnvironmentVariableIsSet(name)) << name;
        EXPECT_EQ(qgetenv("QT_QPA_PLATFORM"), *row.values[0] ? "xcb" : "") << "where X is";
    }
}

TEST(StandardInputTest, FormatsAreKnownByTheirFirstBytes)
{
    const QString texts = "stl=solid words|obj=# made by hand\nv 0 0 0\n|obj=usemtl red\n|"
                          "csv=time,v 1\n0,1\n|csv=a\tb\n|csv=a;b\n|=one\na,b\n|"
                          "dae=<?xml version='1'?><COLLADA>|amf=<amf>|x3d=<X3D>|glb=glTF|"
                          "gltf=\n{\"asset\"|ply=ply\n|off=OFF\n|3mf=PK\x03\x04|fbx=; FBX 7|"
                          "fbx=Kaydara FBX Binary|blend=BLENDER|x=xof 0303|=these are words";
    for (const QString &row : texts.split('|')) {
        const QByteArray start = row.section('=', 1).toLatin1();
        EXPECT_EQ(StandardInput::suffixOf(start, start.size()), row.section('=', 0, 0));
    }
    const QByteArray two("\2\0\0\0", 4), named = "solid" + QByteArray(75, ' ') + two;
    const QByteArray binary = QByteArray(80, 'x') + two, zeros(84, '\0');
    const auto of = StandardInput::suffixOf;
    EXPECT_TRUE(of(named, 184) + of(binary, 184) == "stlstl" &&
                of(binary, 185) + of(zeros, 84) == "");
}

TEST(SettingsTest, AreKeptFromRunToRun)
{
    const QTemporaryDir folder;
    QSettings::setPath(QSettings::IniFormat, QSettings::UserScope, folder.path());
    ASSERT_TRUE(QDir::setCurrent(folder.path()));
    QStringList files;
    for (int i = 0; i < 12; ++i) {
        QFile file(folder.filePath(QString::number(i)));
        ASSERT_TRUE(file.open(QIODevice::WriteOnly));
        files << file.fileName();
    }
    EXPECT_FALSE(Settings().isDark() || !Settings().isReducing() || Settings().isOrthographic() ||
                 Settings().windowSize().isValid() || Settings().recentFiles().size());
    Settings().addFiles(files);
    EXPECT_EQ(Settings().recentFiles(), files.mid(0, 10));
    Settings().addFiles({"7", files[5], files[5]});
    QFile::remove(files[0]);
    EXPECT_EQ(Settings().recentFiles(), QStringList({files[7], files[5]}) + files.mid(1, 4) +
                                            QStringList({files[6]}) + files.mid(8, 2));
    for (const auto &[set, kept] : {std::pair(310, 310), {-1, 0}, {99999, 10000}}) {
        Settings().setPartsWidth(set);
        EXPECT_EQ(Settings().partsWidth(), kept);
    }
    Settings().setTileSize(1.5);
    EXPECT_EQ(Settings().tileSize(), 1.5);
    Settings().setFolder(files[1]);
    EXPECT_EQ(Settings().folder(), "") << "no folder";
}

TEST(ThumbnailIndexTest, IsAPageOfAllInOrder)
{
    ThumbnailList list;
    list.pictures = {{"/b/10.obj", "p", {500, 4}, {}},
                     {"/b/9.obj", "q", {96, 5}, "1 < 2"},
                     {"/a/<z>&.obj", "%1#", {7, 6}, {}}};
    list.failures = {{"/c/B", "r>"}, {"/c/a", "s"}};
    QString page = thumbnailIndex(list).section("<title>", 1);
    EXPECT_TRUE(
        page.contains("400px") &&
        page.contains("\n<figure title=\"/a/&lt;z&gt;&amp;.obj\"><a href=\"./%251%23\"><img "
                      "src=\"./%251%23\" alt=\"&lt;z&gt;&amp;.obj\" width=\"7\" height=\"6\" "
                      "loading=\"lazy\"></a><figcaption>"));
    for (const char *part : {"<style>.*</style>", "<figure.*</a>", " class=\"\\w*\""})
        page.remove(QRegularExpression(part, QRegularExpression::DotMatchesEverythingOption |
                                                 QRegularExpression::InvertedGreedinessOption));
    EXPECT_EQ(page.remove("</figure>").remove('\n').replace("figcaption", "i").toStdString(),
              "3 pictures, 2 files failed</title><h1>3 pictures, 2 files failed</h1><p><a "
              "href=\"#failed\">What failed, and "
              "why</a></p><h2>/a</h2><div><i>&lt;z&gt;&amp;.obj</i></div><h2>/b</"
              "h2><div><i>9.obj<small>1 &lt; 2</small></i><i>10.obj</i></div><h2 "
              "id=\"failed\">Failed</h2><table><tr><td>/c/a</td><td>s</td></tr><tr><td>/c/B</"
              "td><td>r&gt;</td></tr></table>");
    page = thumbnailIndex({{{"/a", "b", {95, 1}, {}}}, {}});
    EXPECT_TRUE(page.contains("<title>1 picture<") && page.contains("(96px") &&
                !page.contains("ailed"));
}

TEST(SoftwareGLTest, IsToldByTheRenderersName)
{
    EXPECT_TRUE(isSoftwareRenderer("llvmpipe (LLVM 15.0.6)") && isSoftwareRenderer("softpipe") &&
                !isSoftwareRenderer("AMD Radeon RX 550 (radeonsi)"));
}

} // namespace
} // namespace host
