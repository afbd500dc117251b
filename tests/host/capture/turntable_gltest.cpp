// SPDX-License-Identifier: MIT
#include <QDir>
#include <QFile>
#include <QProcess>
#include <QTemporaryDir>

#include "host/capture/encoder.h"
#include "host/capture/matrices.h"
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
    EXPECT_LT((turned.pos - camera.pos).length(), 1e-5f);
    EXPECT_LT((turned.up - camera.up).length(), 1e-5f);
}

// A patch to the right of the axis, in a light that comes from the eye.
TEST_F(Turntable, PicturesShowOneTurnWithoutItsEnd)
{
    frame.objects.resize(1);
    main.camera.rot = Vector(0, 0, 0);
    main.camera.target = main.camera.setTarget = Vector(5, 0, 0);
    main.camera.Update(0);
    main.lights.emplace_back(GLenum(GL_LIGHT0), 'l');
    main.lights[0].position = {0, 0, 1, 0}; // from the eye
    frame.objects[0].draw2D = nullptr;
    frame.objects[0].draw3D = [](GLW *, float) {
        glEnable(GL_LIGHT0);
        glEnable(GL_COLOR_MATERIAL);
        glEnable(GL_CULL_FACE); // two sides, each lit when it is turned to the eye
        glColor3f(1, 0, 0);
        glNormal3f(0, 0, 1);
        glRectf(5.3f, -0.2f, 5.7f, 0.2f);
        glNormal3f(0, 0, -1);
        glRectf(5.7f, -0.2f, 5.3f, 0.2f);
    };
    const GL::Camera before = main.camera;
    int told = 0;
    QDir().mkdir(at("frames")); // an empty one may be there
    ASSERT_EQ(record("frames/", 1, 8,
                     [&](int done, int total) {
                         EXPECT_EQ(done, ++told);
                         return total == 8;
                     }),
              QString());
    EXPECT_EQ(told, 8);
    EXPECT_EQ(main.camera.rot.y, before.rot.y);
    EXPECT_EQ(main.camera.pos, before.pos);
    EXPECT_EQ(main.lights[0].position.z, 1);

    const QDir frames(at("frames"));
    QStringList names;
    for (int i = 1; i <= 8; ++i)
        names << QString("frame_000%1.png").arg(i);
    EXPECT_EQ(frames.entryList(QDir::Files), names);
    const auto load = [&](int i) { return QImage(frames.filePath(names[i])); };
    const auto reddest = [](const QImage &image) { // column, or -1
        for (int x = 0; x < image.width(); ++x)
            if (qRed(image.pixel(x, 100)) > 150)
                return x;
        return -1;
    };
    EXPECT_GT(reddest(load(0)), 160);
    EXPECT_NEAR(reddest(load(4)), 320 - reddest(load(0)) - 23, 3); // half a turn: on the left
    EXPECT_LT(reddest(load(4)), 140);
    EXPECT_GT(differing(load(0), load(7), 40), 50); // the last is one step short of the first
    // A growing azimuth takes the eye to the left: what is at the right comes nearer, and in.
    const QImage eighth = load(1), last = load(7);
    EXPECT_NE(reddest(eighth), reddest(last));
    EXPECT_EQ(record("frames", 1, 8), QString("The folder %1 is not empty.").arg(at("frames")));
}

struct RefusedCase {
    const char *name;
    const char *file;
    double seconds, fps;
    bool transparent;
    const char *said;
};

const RefusedCase refusedCases[] = {
    {"OtherSuffix", "turn.avi", 1, 10, false, ".mp4"},
    {"NoTime", "turn.mp4", 0, 10, false, "seconds"},
    {"RateNotANumber", "turn.mp4", 1, std::nan(""), false, "frames per second"},
    {"RateOfAGif", "turn.gif", 1, 60, false, "1 to 50"},
    {"TransparentFilm", "turn.mp4", 1, 10, true, "folder of pictures"},
    {"NoSuchFolder", "nowhere/turn.mp4", 1, 10, false, "nowhere"},
    {"FolderInTheWay", "folder.mp4", 1, 10, false, "is a folder"},
};

void PrintTo(const RefusedCase &c, std::ostream *out)
{
    *out << c.name;
}

class Refused : public Turntable, public testing::WithParamInterface<RefusedCase> {};

TEST_P(Refused, SaysWhyAndLeavesNothing)
{
    QDir().mkdir(at("folder.mp4"));
    frame.transparent = GetParam().transparent;
    const std::string said =
        record(GetParam().file, GetParam().seconds, GetParam().fps).toStdString();
    EXPECT_NE(said.find(GetParam().said), std::string::npos) << said;
    EXPECT_EQ(left(), QStringList("folder.mp4"));
}

INSTANTIATE_TEST_SUITE_P(Rows, Refused, testing::ValuesIn(refusedCases),
                         [](const auto &row) { return std::string(row.param.name); });

TEST_F(Turntable, WithoutAnEncoderNothingIsDrawn)
{
    qputenv("PATH", "");
    frame.objects[0].draw3D = [](GLW *, float) { ADD_FAILURE() << "a frame was drawn"; };
    EXPECT_TRUE(record("turn.mp4", 1, 10).contains("package ffmpeg"));
    EXPECT_EQ(left(), QStringList());
}

TEST_F(Turntable, GivingUpLeavesTheOlderFilm)
{
    ASSERT_EQ(record("turn.mp4", 0.2, 10), QString());
    const qint64 size = QFileInfo(at("turn.mp4")).size();
    for (const char *name : {"turn.mp4", "frames"})
        EXPECT_EQ(record(name, 1, 10, [](int done, int) { return done < 3; }), QString());
    EXPECT_EQ(left(), QStringList("turn.mp4"));
    EXPECT_EQ(QFileInfo(at("turn.mp4")).size(), size);
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
