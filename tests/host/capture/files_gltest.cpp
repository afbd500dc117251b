// SPDX-License-Identifier: MIT
// Pictures and recordings as files, what keeps them from being written, and progress on a terminal.
#include <csignal>
#include <cstdio>

#include <fcntl.h>
#include <sys/ioctl.h>
#include <sys/resource.h>
#include <sys/stat.h>
#include <unistd.h>

#include <QDir>
#include <QFileInfo>
#include <QMatrix4x4>
#include <QProcess>
#include <QTemporaryDir>

#include "host/capture/atomic_output.h"
#include "host/capture/picture_file.h"
#include "host/capture/progress_line.h"
#include "host/capture/turntable.h"
#include "scene.h"

namespace host {
namespace {

/// Writes into a folder that dies with the test; PATH and the size of files are given back.
class Files : public Scene {
protected:
    ~Files() override { limit(RLIM_INFINITY), qputenv("PATH", path); }

    // No file grows beyond so many bytes from now on, as on a disk that is full.
    void limit(rlim_t bytes) const
    {
        std::signal(SIGXFSZ, SIG_IGN);
        rlimit now{};
        getrlimit(RLIMIT_FSIZE, &now);
        now.rlim_cur = std::min(bytes, now.rlim_max); // whoever runs the tests may have set one
        EXPECT_EQ(setrlimit(RLIMIT_FSIZE, &now), 0);
    }
    QString at(const QString &name) const { return folder.filePath(name); }
    QString left() const
    {
        const auto all = QDir::AllEntries | QDir::Hidden | QDir::NoDotAndDotDot;
        return QDir(folder.path()).entryList(all, QDir::Name).join(' ');
    }
    void put(const QString &name, const QByteArray &text) const
    {
        QFile file(name);
        EXPECT_TRUE(file.open(QIODevice::WriteOnly) && file.write(text) == text.size());
    }
    bool areOlder() const // the films
    {
        QFile mp4(at("turn.mp4")), gif(at("turn.gif"));
        return mp4.open(QFile::ReadOnly) && gif.open(QFile::ReadOnly) &&
               mp4.readAll() + gif.readAll() == "olderolder";
    }
    QString recorded(const QString &name, double seconds, double fps,
                     const TurntableRecorder::Progress &progress = nullptr)
    {
        return TurntableRecorder(request, {at(name), seconds, fps}).record(progress);
    }

    const QTemporaryDir folder, bin;
    const QByteArray path = qgetenv("PATH");
};

QString written(const QString &name, QRgb color, QImage::Format format = QImage::Format_RGB32)
{
    QImage image(1000, 600, format);
    image.fill(color);
    return PictureFile::write(image, name);
}

TEST_F(Files, APictureSaysWhatIsWrongWithIt)
{
    const QString opaque = ": a picture of this format cannot be transparent; a .png can";
    const auto fault = PictureFile::fault;
    for (const char *name : {"a.png", "a.PNG", "a", "a.b/c"})
        EXPECT_EQ(fault(name, true), "") << name;
    for (const char *name : {"a.jpg", "a.ppm"})
        EXPECT_TRUE(fault(name, true) == name + opaque && fault(name, false).isEmpty()) << name;
    EXPECT_TRUE(fault("a.xyz", false).startsWith("a.xyz: a picture has one of these suffixes: "));
    const std::pair<QString, QString> places[] = {
        {"/dev/full", "/dev/full cannot be written: No space left on device"},
        {"/dev/null", ""},
        {"/nowhere/a.jpg", "/nowhere/a.jpg" + opaque},
        {folder.path(), folder.path() + " is a folder."},
        {at("none/a.png"), at("none/a.png") + " cannot be written: No such file or directory"}};
    for (const auto &[place, said] : places)
        EXPECT_EQ(written(place, 0, QImage::Format_ARGB32), said);
    EXPECT_FALSE(QFileInfo("/dev/null").isFile()); // nothing took its place
}

TEST_F(Files, AnOlderPictureIsReplacedByAWholeOneOrByNone)
{
    const QString name = at("a.png"), link = at("link.png");
    EXPECT_EQ(written(name, 0xff112233), "");
    const mode_t mask = umask(0);
    umask(mask);
    EXPECT_EQ(int(QFileInfo(name).permissions() & QFile::ReadOther) != 0, !(mask & 4));
    QFile::setPermissions(name, QFile::ReadOwner | QFile::WriteOwner | QFile::ExeOwner);
    limit(500);
    EXPECT_EQ(written(name, 0xff445566), name + " cannot be written: File too large");
    limit(RLIM_INFINITY);
    {
        AtomicFile givenUp(name);
        EXPECT_GT(givenUp.device().write("half"), 0);
        EXPECT_TRUE(QFile::exists(givenUp.path()));
    }
    EXPECT_EQ(QImage(name).pixel(9, 9), 0xff112233);
    EXPECT_TRUE(QFile::link(name, link) && written(link, 0xff778899).isEmpty());
    EXPECT_EQ(QImage(name).pixel(9, 9), 0xff778899);
    EXPECT_TRUE(QFileInfo(link).isSymLink());
    EXPECT_TRUE(QFileInfo(name).permissions() & QFile::ExeOwner); // as it was
    EXPECT_EQ(left(), "a.png link.png");
}

TEST_F(Files, FilmHasItsFramesSizeAndRate)
{
    put(at("turn.gif"), "older");
    request.size = QSize(161, 101);
    ASSERT_EQ(recorded("turn.mp4", 0.8, 15) + recorded("turn.gif", 0.5, 10), "");
    for (const auto &[name, facts] : {std::pair("turn.mp4", "h264,160,100,yuv420p,15/1,12"),
                                      std::pair("turn.gif", "gif,161,101,bgra,10/1,5")}) {
        QProcess p;
        p.start("ffprobe",
                {"-v", "error", "-count_frames", "-of", "csv=p=0", "-show_entries",
                 "stream=codec_name,width,height,pix_fmt,r_frame_rate,nb_read_frames", at(name)});
        EXPECT_TRUE(p.waitForFinished());
        EXPECT_EQ(p.readAllStandardOutput().trimmed().toStdString(), facts);
    }
}

// A row: name, seconds and rate, and what is wrong besides; then a part of what is said. Only those
// with a + have drawn anything by then. A number is the signal that comes after three frames.
const char *const faults = R"(
turn.avi 1 10 => .mp4
turn.mp4 0 10 => seconds
turn.mp4 600.1 10 => seconds
turn.mp4 1 nan => frames per second
turn.gif 1 60 => 1 to 50
turn.mp4 1 121 => 1 to 120
turn.mp4 1 10 transparent => folder of pictures
turn.gif 1 10 empty => nothing
nowhere/turn.mp4 1 10 => nowhere
nowhere/frames 1 10 => nowhere
folder.mp4 1 10 => is a folder
file 1 10 => a file, not a folder
full 1 10 => full is not empty
turn.mp4 1 10 none => package ffmpeg
turn.mp4 1 10 #!/none => ffmpeg failed
+turn.mp4 1 10 #!/bin/sh;/bin/cat>/dev/null;for|i|in|1|2|3|4|5|6|7;do|echo|l$i>&2;done;exit|1 => ffmpeg failed:/  l2/  l3/  l4/  l5/  l6/  l7
+turn.mp4 1 10 #!/bin/sh;/usr/bin/head|-c|256000>/dev/null;echo|enough>&2 => enough
+turn.gif 1 10 disk => ffmpeg failed
+frames 1 10 disk => .png cannot be written: File too large
+turn.mp4 1 10 2 =>
+turn.gif 1 10 15 =>
+frames 1 10 1 =>
)";

// At no moment does anything stand in the place of a film that is not whole.
TEST_F(Files, WhatCannotBeRecordedSaysWhyAndLeavesTheOlderFilm)
{
    put(at("turn.mp4"), "older"), put(at("turn.gif"), "older"), put(at("file"), "");
    QDir().mkdir(at("folder.mp4")), QDir().mkpath(at("full/of"));
    const QString before = left();
    int drawn = 0;
    request.objects[0].draw3D = [&](GLW *, float) { ++drawn; };
    const QSize size = request.size;
    for (const QString &row : QString(faults).split('\n', Qt::SkipEmptyParts)) {
        const QStringList w = row.section(" =>", 0, 0).remove('+').split(' ');
        const QString fault = w.value(3), part = row.section(" =>", 1).trimmed().replace('/', '\n');
        request.transparent = fault == "transparent";
        request.size = fault == "empty" ? QSize(0, 1) : size;
        limit(fault == "disk" ? 1000 : RLIM_INFINITY);
        const QByteArray fake = bin.path().toUtf8();
        qputenv("PATH", fault.startsWith('#') ? fake : fault == "none" ? "" : path);
        put(bin.filePath("ffmpeg"), QString(fault).replace('|', ' ').replace(';', '\n').toUtf8());
        QFile::setPermissions(bin.filePath("ffmpeg"), QFile::Permissions(0x7000));
        drawn = 0;
        const int signal = fault.toInt();
        const InterruptGuard guard;
        EXPECT_FALSE(guard.interrupted());
        const auto progress = [&](int done, int) {
            EXPECT_TRUE(areOlder() && !QFile::exists(at("frames")) && done <= (signal ? 3 : 10));
            if (done == 3 && signal > 0)
                std::raise(signal);
            return !guard.interrupted();
        };
        const QString said = recorded(w[0], w[1].toDouble(), w[2].toDouble(), progress);
        EXPECT_TRUE(said.contains(part) && said.isEmpty() == part.isEmpty() && left() == before &&
                    areOlder() && (drawn > 0) == (row[0] == '+'))
            << row.toStdString() << ": " << said.toStdString() << ", left " << left().toStdString();
    }
    EXPECT_EQ(std::signal(SIGTERM, SIG_DFL), SIG_DFL); // it was given back
}

// Each view is what a grown azimuth makes of it; a lamp at the eye and one that shines from its
// direction go along. The fixed matrix shows a point that turns with the world as it was.
TEST_F(Files, PicturesShowOneTurnWithoutItsEnd)
{
    GL::Camera &camera = main->camera;
    camera.target = camera.setTarget = Vector(5, 0, 0);
    camera.Update(0);
    for (int i = 0; i < 12; ++i)
        camera.m[i / 3 * 4 + i % 3] = float(i * i % 7);
    const GL::Camera before = camera;
    const Vector p = camera.pos, way = p - camera.target;
    main->lights = {GL::Light(GL_LIGHT0, 'l'), GL::Light(GL_LIGHT1, 'l')};
    main->lights[0].position = {p.x, p.y, p.z, 1};
    main->lights[1].position = {way.x, way.y, way.z, 0};
    const auto seen = [](const GL::Camera &c) {
        return QMatrix4x4(c.m).transposed() * QVector3D(c.pos.x, c.pos.y, c.pos.z);
    };
    QString turns;
    request.objects[0].draw3D = [&](GLW *glw, float) {
        turns += QString::number(camera.rot.y - before.rot.y) + ' ';
        GL::Camera grown = camera;
        grown.Update(0);
        float off = (grown.pos - camera.pos).length() + (grown.up - camera.up).length();
        for (const auto &lamp : {glw->lights[0].position, glw->lights[1].position})
            off += (Vector(lamp.x, lamp.y, lamp.z) + camera.target * (1 - lamp.w) - camera.pos)
                       .length();
        EXPECT_LT(off + (seen(camera) - seen(before)).length(), 1e-3f);
    };
    QDir().mkdir(at("frames")); // an empty one may be there
    int told = 0;
    const auto count = [&](int done, int total) { return done == ++told && total == 8; };
    ASSERT_EQ(recorded("frames/", 1, 8, count), QString());
    EXPECT_EQ(turns, "0 45 90 135 180 225 270 315 ");
    EXPECT_TRUE(told == 8 && camera.rot.y == before.rot.y && camera.pos == before.pos);
    EXPECT_EQ(main->lights[0].position.z, before.pos.z);
    const QStringList frames = QDir(at("frames")).entryList(QDir::Files);
    EXPECT_EQ(frames.join(' ').remove("frame_000").remove(".png"), "1 2 3 4 5 6 7 8");
    EXPECT_NE(QImage(at("frames/" + frames[1])), QImage(at("frames/" + frames[7])));
}

TEST(ProgressLineTest, IsRewrittenOnATerminalAndRareInAFile)
{
    const int terminal = posix_openpt(O_RDWR | O_NOCTTY);
    int ends[2];
    ASSERT_TRUE(grantpt(terminal) == 0 && unlockpt(terminal) == 0 && pipe(ends) == 0);
    const std::tuple<std::FILE *, int, std::string> rows[] = {
        {fdopen(ends[1], "w"), ends[0],
         "Recording: 1 of 20 (5 %)\nRecording: 2 of 20 (10 %)\nRecording: 20 of 20 (100 %)\n"
         "Again: 1 of 1 (100 %)\n"},
        {std::fopen(ptsname(terminal), "w"), terminal,
         "\rRecording: 1 of 20 (5 %)\rRecording: 2 of 20 (10 %)\rRecording: 3 of 20 (15 %)"
         "\rRecording: 20 of 20 (100 %)\r\n\rAgain: 1 of 1 (100 %)\r\n"}};
    for (const auto &[stream, reader, expected] : rows) {
        {
            ProgressLine line(stream, "Recording"), again(stream, "Again"), none(stream, "None");
            for (const int i : {1, 2, 3, 20})
                line.show(i, 20);
            int there = 0;
            EXPECT_TRUE(ioctl(reader, FIONREAD, &there) == 0 && (there > 0 || reader == terminal));
            line.end(), line.end();
            again.show(1, 1);
        } // which ends the other
        std::fclose(stream);
        std::string all; // a terminal hands it over in pieces, and then ends as a pipe does
        for (char c; read(reader, &c, 1) == 1;)
            all += c;
        EXPECT_EQ(all, expected);
    }
}

} // namespace
} // namespace host
