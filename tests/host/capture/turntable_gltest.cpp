// SPDX-License-Identifier: MIT
#include <csignal>

#include <QDir>
#include <QFile>
#include <QProcess>
#include <QTemporaryDir>

#include "host/capture/encoder.h"
#include "host/capture/matrices.h"
#include "host/capture/progress_line.h"
#include "host/capture/turntable.h"
#include "scene.h"

namespace host {
namespace {

/// Records into a folder that dies with the test; PATH is given back.
class Turntable : public Scene {
protected:
    Turntable() : path_(qgetenv("PATH")) {}
    ~Turntable() override { qputenv("PATH", path_); }

    QString at(const QString &name) const { return folder.filePath(name); }
    QStringList left() const
    {
        return QDir(folder.path())
            .entryList(QDir::AllEntries | QDir::Hidden | QDir::NoDotAndDotDot);
    }
    QString record(const QString &name, double seconds, double fps,
                   const TurntableRecorder::Progress &progress = nullptr)
    {
        return TurntableRecorder(frame, {at(name), seconds, fps}).record(progress);
    }
    /// Makes the shell script @p body the only ffmpeg there is.
    void fakeEncoder(const QByteArray &body)
    {
        const QString name = bin.filePath("ffmpeg");
        QFile script(name);
        ASSERT_TRUE(script.open(QIODevice::WriteOnly));
        script.write("#!/bin/sh\nPATH=/usr/bin:/bin\n" + body);
        script.setPermissions(QFile::ReadOwner | QFile::WriteOwner | QFile::ExeOwner);
        script.close();
        qputenv("PATH", bin.path().toLocal8Bit());
    }

    QTemporaryDir folder, bin;
    PictureRequest frame = request();

private:
    QByteArray path_;
};

TEST_F(Turntable, FilmHasItsFramesSizeAndRate)
{
    frame.size = QSize(161, 101);
    ASSERT_EQ(record("turn.mp4", 0.8, 15), QString());
    ASSERT_EQ(record("turn.gif", 0.5, 10), QString());
    EXPECT_EQ(left(), QStringList({"turn.gif", "turn.mp4"}));
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

// Turned by hand, a camera stands where its own update would put it.
TEST(TurnTest, IsThatOfAGrowingAzimuth)
{
    GL::Camera camera;
    camera.radius = 3;
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
TEST_F(Turntable, PicturesShowOneTurnWithoutItsEnd)
{
    frame.objects.resize(1);
    main.camera.rot = Vector(0, 0, 0);
    main.camera.target = main.camera.setTarget = Vector(5, 0, 0);
    main.camera.Update(0);
    main.lights.emplace_back(GLenum(GL_LIGHT0), 'l');
    main.lights[0].position = {0.1f, 0.2f, 1, 0};
    frame.objects[0].draw2D = nullptr;
    frame.objects[0].draw3D = [](GLW *glw, float) {
        const GL::Light::vector &lamp = glw->lights[0].position;
        EXPECT_EQ(lamp.y, 0.2f); // it goes round at its height
        EXPECT_NEAR(std::hypot(lamp.x, lamp.z), std::hypot(0.1, 1), 1e-5);
        glEnable(GL_LIGHT0);
        glEnable(GL_COLOR_MATERIAL);
        glEnable(GL_CULL_FACE); // two sides, each lit when it is turned to the eye
        glColor3f(1, 0, 0);
        for (const float side : {1.0f, -1.0f}) {
            glNormal3f(0, 0, side);
            glRectf(5.5f - side * 0.2f, -0.2f, 5.5f + side * 0.2f, 0.2f);
        }
    };
    const GL::Camera before = main.camera;
    int told = 0;
    QDir().mkdir(at("frames")); // an empty one may be there
    const auto count = [&](int done, int total) { return done == ++told && total == 8; };
    ASSERT_EQ(record("frames/", 1, 8, count), QString());
    EXPECT_EQ(told, 8);
    EXPECT_TRUE(main.camera.rot.y == before.rot.y && main.camera.pos == before.pos);
    EXPECT_EQ(main.lights[0].position.z, 1);
    const QDir frames(at("frames"));
    EXPECT_EQ(frames.entryList(QDir::Files).join(' '),
              "frame_0001.png frame_0002.png frame_0003.png frame_0004.png frame_0005.png "
              "frame_0006.png frame_0007.png frame_0008.png");
    const auto reddest = [&](int i) { // the first column, or -1
        const QImage image(frames.filePath(QString("frame_000%1.png").arg(i + 1)));
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
    EXPECT_EQ(record("frames", 1, 8), QString("The folder %1 is not empty.").arg(at("frames")));
}

TEST_F(Turntable, WhatCannotBeRecordedSaysWhyAndLeavesNothing)
{
    QDir().mkdir(at("folder.mp4"));
    frame.objects[0].draw3D = [](GLW *, float) { ADD_FAILURE() << "a frame was drawn"; };
    QFile file(at("file"));
    file.open(QIODevice::WriteOnly);
    const struct {
        const char *file;
        double seconds, fps;
        bool transparent;
        const char *said; // empty where it can be
    } rows[] = {
        {"turn.avi", 1, 10, false, ".mp4"},
        {"turn.mp4", 0, 10, false, "seconds"},
        {"turn.mp4", 600.1, 10, false, "seconds"},
        {"turn.mp4", 1, std::nan(""), false, "frames per second"},
        {"turn.gif", 1, 60, false, "1 to 50"},
        {"turn.mp4", 1, 121, false, "1 to 120"},
        {"turn.mp4", 1, 10, true, "folder of pictures"},
        {"nowhere/turn.mp4", 1, 10, false, "nowhere"},
        {"nowhere/frames", 1, 10, false, "nowhere"},
        {"folder.mp4", 1, 10, false, "is a folder"},
        {"file", 1, 10, false, "a file, not a folder"},
    };
    for (const auto &c : rows) {
        frame.transparent = c.transparent;
        const std::string said = record(c.file, c.seconds, c.fps).toStdString();
        EXPECT_NE(said.find(c.said), std::string::npos) << c.file << ": " << said;
        EXPECT_FALSE(said.empty());
        EXPECT_EQ(left(), QStringList({"file", "folder.mp4"}));
    }
    frame.size = QSize(0, 1);
    EXPECT_TRUE(record("turn.gif", 1, 10).contains("nothing"));
}

TEST_F(Turntable, WithoutAnEncoderNothingIsDrawn)
{
    qputenv("PATH", "");
    frame.objects[0].draw3D = [](GLW *, float) { ADD_FAILURE() << "a frame was drawn"; };
    EXPECT_TRUE(record("turn.mp4", 1, 10).contains("package ffmpeg"));
    EXPECT_EQ(left(), QStringList());
}

// At no moment does anything stand in the place of the film that is not whole.
TEST_F(Turntable, AnInterruptLeavesTheOlderFilm)
{
    ASSERT_EQ(record("turn.mp4", 0.2, 10), QString());
    const auto bytes = [this] {
        QFile file(at("turn.mp4"));
        return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray();
    };
    const QByteArray older = bytes();
    for (const char *name : {"turn.mp4", "frames"})
        for (const int signal : {SIGINT, SIGTERM, SIGHUP}) {
            const InterruptGuard guard;
            EXPECT_FALSE(guard.interrupted());
            EXPECT_EQ(record(name, 1, 10,
                             [&](int done, int) {
                                 EXPECT_TRUE(bytes() == older && !QFile::exists(at("frames")));
                                 if (done == 3)
                                     std::raise(signal);
                                 EXPECT_LE(done, 3);
                                 return !guard.interrupted();
                             }),
                      QString());
            EXPECT_EQ(left(), QStringList("turn.mp4"));
            EXPECT_EQ(bytes(), older);
        }
    EXPECT_EQ(std::signal(SIGTERM, SIG_DFL), SIG_DFL); // it was given back
    frame.size = QSize(100, 100);
    ASSERT_EQ(record("turn.mp4", 0.2, 10), QString());
    EXPECT_NE(bytes(), older);
}

TEST_F(Turntable, AFullDiskLeavesTheOlderFilm)
{
    ASSERT_EQ(record("turn.gif", 0.2, 10), QString());
    const qint64 size = QFileInfo(at("turn.gif")).size();
    const FileSizeLimit limit(1000);
    EXPECT_TRUE(record("turn.gif", 1, 10).contains("ffmpeg failed"));
    EXPECT_TRUE(
        record("frames", 1, 10).contains("frame_0001.png cannot be written: File too large"));
    EXPECT_EQ(left(), QStringList("turn.gif"));
    EXPECT_EQ(QFileInfo(at("turn.gif")).size(), size);
}

TEST_F(Turntable, AFailedEncoderIsQuoted)
{
    fakeEncoder("cat >/dev/null\nfor i in 1 2 3 4 5 6 7 8 9; do echo line $i >&2; done\nexit 1\n");
    const QString said = record("turn.mp4", 0.2, 10);
    EXPECT_TRUE(said.contains("line 9") && !said.contains("line 2")) << said.toStdString();
    EXPECT_EQ(left(), QStringList());
}

// What is not read does not pile up: the hand-over waits, and learns of the end at once.
TEST_F(Turntable, FramesAreNotHeldBack)
{
    fakeEncoder("head -c 300000 >/dev/null\necho enough >&2\n");
    Encoder encoder;
    const QImage raw(300, 250, QImage::Format_RGB32); // 300,000 bytes
    ASSERT_EQ(encoder.start(at("film"), Encoder::Format::Mp4, raw.size(), 10), QString());
    EXPECT_EQ(encoder.addFrame(raw), QString());
    EXPECT_TRUE(encoder.addFrame(raw).contains("enough"));
}

} // namespace
} // namespace host
