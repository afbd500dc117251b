// SPDX-License-Identifier: MIT
// Pictures and recordings as files, what keeps them from being written, and progress on a terminal.
#include <cmath>
#include <csignal>
#include <cstdio>

#include <fcntl.h>
#include <sys/resource.h>
#include <sys/stat.h>
#include <unistd.h>

#include <QDir>
#include <QFileInfo>
#include <QProcess>
#include <QTemporaryDir>

#include "host/capture/atomic_output.h"
#include "host/capture/encoder.h"
#include "host/capture/matrices.h"
#include "host/capture/picture_file.h"
#include "host/capture/progress_line.h"
#include "host/capture/turntable.h"
#include "scene.h"

namespace host {
namespace {

// No file grows beyond so many bytes from now on, as on a disk that is full.
void limitFiles(rlim_t bytes)
{
    std::signal(SIGXFSZ, SIG_IGN);
    const rlimit limit{bytes, RLIM_INFINITY};
    setrlimit(RLIMIT_FSIZE, &limit);
}

/// Writes into a folder that dies with the test; PATH and the size of files are given back.
class Files : public Scene {
protected:
    ~Files() override
    {
        qputenv("PATH", path);
        limitFiles(RLIM_INFINITY);
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
    QByteArray bytes(const QString &name) const
    {
        QFile file(at(name));
        return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray();
    }
    QString recorded(const QString &name, double seconds, double fps,
                     const TurntableRecorder::Progress &progress = nullptr)
    {
        return TurntableRecorder(request, {at(name), seconds, fps}).record(progress);
    }
    /// Makes the script @p text the only ffmpeg there is.
    void fakeEncoder(const QByteArray &text)
    {
        put(bin.filePath("ffmpeg"), text);
        QFile::setPermissions(bin.filePath("ffmpeg"), QFile::ReadOwner | QFile::ExeOwner);
        qputenv("PATH", bin.path().toLocal8Bit());
    }

    const QTemporaryDir folder, bin;
    const QByteArray path = qgetenv("PATH");
};

QImage picture(QRgb color, QImage::Format format = QImage::Format_RGB32)
{
    QImage image(1000, 600, format);
    image.fill(color);
    return image;
}

TEST_F(Files, APictureSaysWhatIsWrongWithIt)
{
    const std::pair<QString, QString> rows[] = {
        // where to, and the fault; opaque if it has a space
        {"a.png", ""},
        {"a.PNG", ""},
        {"a", ""},
        {"a.b/c", ""},
        {"a .jpg", ""},
        {"a .bmp", ""},
        {"a.jpg", "a.jpg: a picture of this format cannot be transparent; a .png can"},
        {"a.ppm", "a.ppm: a picture of this format cannot be transparent; a .png can"},
        {"a .xyz", "a .xyz: a picture has one of these suffixes: "}};
    for (const auto &[name, said] : rows) {
        const QString fault = PictureFile::fault(name, !name.contains(' '));
        EXPECT_TRUE(fault.left(said.size()) == said && fault.isEmpty() == said.isEmpty())
            << qPrintable(fault);
    }
    const QImage clear = picture(0, QImage::Format_ARGB32);
    EXPECT_TRUE(PictureFile::write(clear, "/nowhere/a.jpg").contains("transparent"));
    const std::pair<QString, QString> places[] = {
        {"/dev/full", "/dev/full cannot be written: No space left on device"},
        {"/dev/null", ""},
        {folder.path(), folder.path() + " is a folder."},
        {at("none/a.png"), at("none/a.png") + " cannot be written: No such file or directory"}};
    for (const auto &[place, said] : places)
        EXPECT_EQ(PictureFile::write(clear, place), said);
    EXPECT_FALSE(QFileInfo("/dev/null").isFile()); // nothing took its place
    EXPECT_EQ(left(), "");
}

TEST_F(Files, AnOlderPictureIsReplacedByAWholeOneOrByNone)
{
    const QString name = at("a.png");
    ASSERT_EQ(PictureFile::write(picture(0xff112233), name), QString());
    const mode_t mask = umask(0);
    umask(mask);
    EXPECT_EQ(int(QFileInfo(name).permissions() & QFile::ReadOther) != 0, !(mask & 4));
    QFile::setPermissions(name, QFile::ReadOwner | QFile::WriteOwner | QFile::ExeOwner);
    limitFiles(500);
    EXPECT_EQ(PictureFile::write(picture(0xff445566), name),
              name + " cannot be written: File too large");
    limitFiles(RLIM_INFINITY);
    {
        AtomicFile givenUp(name);
        EXPECT_GT(givenUp.device().write("half"), 0);
        EXPECT_TRUE(QFile::exists(givenUp.path()));
    }
    EXPECT_EQ(left(), "a.png");
    EXPECT_EQ(QImage(name).pixel(9, 9), 0xff112233);
    ASSERT_TRUE(QFile::link(name, at("link.png")));
    ASSERT_EQ(PictureFile::write(picture(0xff778899), at("link.png")), QString());
    EXPECT_EQ(QImage(name).pixel(9, 9), 0xff778899);
    EXPECT_TRUE(QFileInfo(at("link.png")).isSymLink());
    EXPECT_TRUE(QFileInfo(name).permissions() & QFile::ExeOwner); // as it was
    EXPECT_EQ(left(), "a.png link.png");
}

TEST_F(Files, FilmHasItsFramesSizeAndRate)
{
    put(at("turn.gif"), "older");
    request.size = QSize(161, 101);
    ASSERT_EQ(recorded("turn.mp4", 0.8, 15), QString());
    ASSERT_EQ(recorded("turn.gif", 0.5, 10), QString());
    EXPECT_EQ(left(), "turn.gif turn.mp4");
    const auto probe = [this](const char *name) {
        QProcess p;
        p.start("ffprobe",
                {"-v", "error", "-count_frames", "-of", "csv=p=0", "-show_entries",
                 "stream=codec_name,width,height,pix_fmt,r_frame_rate,nb_read_frames", at(name)});
        p.waitForFinished();
        return p.readAllStandardOutput().trimmed().toStdString();
    };
    EXPECT_EQ(probe("turn.mp4"), "h264,160,100,yuv420p,15/1,12");
    EXPECT_EQ(probe("turn.gif"), "gif,161,101,bgra,10/1,5");
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
turn.mp4 1 10 noencoder => package ffmpeg
turn.mp4 1 10 #!/none => ffmpeg failed
+turn.mp4 1 10 #!/bin/sh;/bin/cat>/dev/null;for|i|in|1|2|3|4|5|6|7;do|echo|l$i>&2;done;exit|1 => ffmpeg failed:/  l2/  l3/  l4/  l5/  l6/  l7
+turn.gif 1 10 disk => ffmpeg failed
+frames 1 10 disk => frame_0001.png cannot be written: File too large
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
        SCOPED_TRACE(row.toStdString());
        QStringList w = row.section(" =>", 0, 0).remove('+').split(' ');
        const QString fault = w.value(3),
                      part = row.section(" =>", 1).trimmed().replace("/  ", "\n  ");
        request.transparent = fault == "transparent";
        request.size = fault == "empty" ? QSize(0, 1) : size;
        limitFiles(fault == "disk" ? 1000 : RLIM_INFINITY);
        qputenv("PATH", fault == "noencoder" ? "" : path);
        if (fault.startsWith("#!"))
            fakeEncoder(QString(fault).replace('|', ' ').replace(';', '\n').toUtf8());
        drawn = 0;
        const InterruptGuard guard;
        EXPECT_FALSE(guard.interrupted());
        const auto progress = [&](int done, int) {
            EXPECT_TRUE(bytes("turn.mp4") == "older" && !QFile::exists(at("frames")));
            EXPECT_LE(done, fault.toInt() > 0 ? 3 : 10);
            if (done == 3 && fault.toInt() > 0)
                std::raise(fault.toInt());
            return !guard.interrupted();
        };
        const QString said = recorded(w[0], w[1].toDouble(), w[2].toDouble(), progress);
        EXPECT_TRUE(said.contains(part) && said.isEmpty() == part.isEmpty()) << qPrintable(said);
        EXPECT_EQ(drawn > 0, row[0] == '+');
        EXPECT_EQ(left(), before);
        EXPECT_TRUE(bytes("turn.mp4") == "older" && bytes("turn.gif") == "older");
    }
    EXPECT_EQ(std::signal(SIGTERM, SIG_DFL), SIG_DFL); // it was given back
}

// What is not read does not pile up: the hand-over waits, and learns of the end at once.
TEST_F(Files, FramesAreNotHeldBack)
{
    fakeEncoder("#!/bin/sh\n/usr/bin/head -c 2400000 >/dev/null\necho enough >&2\n");
    Encoder encoder;
    const QImage raw = picture(0); // 2,400,000 bytes
    ASSERT_EQ(encoder.start(at("film"), Encoder::Format::Mp4, raw.size(), 10), QString());
    EXPECT_EQ(encoder.addFrame(raw), QString());
    EXPECT_TRUE(encoder.addFrame(raw).contains("enough"));
}

// Turned by hand, a camera stands where its own update would put it.
TEST(TurnTest, IsThatOfAGrowingAzimuth)
{
    GL::Camera camera;
    camera.rot = Vector(30, 20, 0);
    camera.target = camera.setTarget = Vector(1, 2, 3);
    camera.Update(0);
    GL::Camera turned = camera;
    turn(turned, 75);
    camera.rot.y += 75;
    camera.Update(0);
    EXPECT_EQ(turned.rot.y, camera.rot.y);
    EXPECT_LT((turned.pos - camera.pos).length() + (turned.up - camera.up).length(), 1e-5f);
}

// A patch to the right of the axis, in a light that comes from the eye.
TEST_F(Files, PicturesShowOneTurnWithoutItsEnd)
{
    request.objects.resize(1);
    main->camera.rot = Vector(0, 0, 0);
    main->camera.target = main->camera.setTarget = Vector(5, 0, 0);
    main->camera.Update(0);
    main->lights.emplace_back(GLenum(GL_LIGHT0), 'l');
    main->lights[0].position = {0.1f, 0.2f, 1, 0};
    request.objects[0].draw2D = nullptr;
    request.objects[0].draw3D = [](GLW *glw, float) {
        const GL::Light::vector &lamp = glw->lights[0].position;
        EXPECT_EQ(lamp.y, 0.2f); // it goes round at its height
        EXPECT_NEAR(std::hypot(lamp.x, lamp.z), std::hypot(0.1, 1), 1e-5);
        for (const GLenum on : {GL_LIGHT0, GL_COLOR_MATERIAL, GL_CULL_FACE})
            glEnable(on);
        glColor3f(1, 0, 0);
        for (const float side : {1.0f, -1.0f}) { // each lit when it is turned to the eye
            glNormal3f(0, 0, side);
            glRectf(5.5f - side * 0.2f, -0.2f, 5.5f + side * 0.2f, 0.2f);
        }
    };
    const GL::Camera before = main->camera;
    int told = 0;
    QDir().mkdir(at("frames")); // an empty one may be there
    const auto count = [&](int done, int total) { return done == ++told && total == 8; };
    ASSERT_EQ(recorded("frames/", 1, 8, count), QString());
    EXPECT_EQ(told, 8);
    EXPECT_TRUE(main->camera.rot.y == before.rot.y && main->camera.pos == before.pos);
    EXPECT_EQ(main->lights[0].position.z, 1);
    const QStringList frames = QDir(at("frames")).entryList(QDir::Files);
    ASSERT_EQ(frames.size(), 8);
    EXPECT_EQ(frames.front() + frames.back(), "frame_0001.pngframe_0008.png");
    const auto reddest = [&](int i) { // the first column, or -1
        const QImage image(at("frames/" + frames[i]));
        for (int x = 0; x < image.width(); ++x)
            if (qRed(image.pixel(x, 100)) > 150)
                return x;
        return -1;
    };
    EXPECT_GT(reddest(0), 160);
    EXPECT_NEAR(reddest(4), 320 - reddest(0) - 23, 3); // half a turn: on the left
    // A growing azimuth takes the eye to the left: what is at the right comes nearer, and in.
    EXPECT_LT(std::abs(reddest(1) - reddest(7)), 60);
    EXPECT_NE(reddest(1), reddest(7));
    EXPECT_NE(reddest(0), reddest(7)); // the last is one step short of the first
}

TEST(ProgressLineTest, IsRewrittenOnATerminalAndRareInAFile)
{
    const int terminal = posix_openpt(O_RDWR | O_NOCTTY);
    ASSERT_TRUE(terminal >= 0 && grantpt(terminal) == 0 && unlockpt(terminal) == 0);
    int ends[2];
    ASSERT_EQ(pipe(ends), 0);
    const auto shown = [](std::FILE *stream, int reader) {
        ProgressLine line(stream, "Recording");
        for (const int i : {1, 2, 3, 20})
            line.show(i, 20);
        line.end();
        line.end();
        std::fflush(stream);
        char text[500];
        const std::string all(text, std::size_t(read(reader, text, sizeof text)));
        std::fclose(stream);
        close(reader);
        return all;
    };
    EXPECT_EQ(shown(fdopen(ends[1], "w"), ends[0]),
              "Recording: 1 of 20 (5 %)\nRecording: 2 of 20 (10 %)\nRecording: 20 of 20 (100 %)\n");
    EXPECT_EQ(shown(std::fopen(ptsname(terminal), "w"), terminal),
              "\rRecording: 1 of 20 (5 %)\rRecording: 2 of 20 (10 %)\rRecording: 3 of 20 (15 %)"
              "\rRecording: 20 of 20 (100 %)\r\n");
}

} // namespace
} // namespace host
