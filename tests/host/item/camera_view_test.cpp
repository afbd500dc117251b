// SPDX-License-Identifier: MIT
// The viewer's camera mathematics, against the module's own camera.
#include <cmath>

#include <QMatrix4x4>

#include "host/item/camera_motion.h"
#include "host/item/framing.h"
#include "tests/GL/table.h"

namespace host {
namespace {

const QSizeF size(800, 500);
constexpr double frameTime = 1 / 60.0;

GL::Camera cameraAt(const QVector3D &rot, bool ortho = false)
{
    GL::Camera camera;
    CameraMotion motion;
    CameraMotion::prepare(camera);
    motion.jumpTo(camera, {rot, {0.1f, -0.05f, 0.2f}, 1.3f});
    if (ortho)
        motion.toggleProjection(camera);
    camera.Update(1);
    motion.step(camera, frameTime);
    return camera;
}

/// What the pass does with one frame: the camera's update, then the step for the next one.
bool runFrame(GL::Camera &camera, CameraMotion &motion, double seconds = frameTime)
{
    camera.Update(1);
    return motion.step(camera, seconds);
}

void runToRest(GL::Camera &camera, CameraMotion &motion)
{
    for (int i = 0; i < 600; ++i)
        if (!runFrame(camera, motion))
            return;
    ADD_FAILURE() << "the camera never comes to rest";
}

/// The pixel of @p p by the matrices that the camera hands to OpenGL, from its derived fields.
QPointF drawnAt(const GL::Camera &camera, const QVector3D &p)
{
    QMatrix4x4 m;
    const float aspect = float(size.width() / size.height());
    if (camera.ortho) {
        const float half = camera.radius / std::tan(camera.fov * 0.01745329f);
        m.ortho(-half * aspect, half * aspect, -half, half, -camera.farZ, camera.farZ);
    } else {
        m.perspective(camera.fov, aspect, camera.nearZ, camera.farZ);
    }
    m.lookAt(toQt(camera.pos), toQt(camera.target), toQt(camera.up));
    const QVector3D clip = m.map(p);
    return {(clip.x() + 1) / 2 * size.width(), (clip.y() + 1) / 2 * size.height()};
}

double distance(const QPointF &a, const QPointF &b)
{
    return std::hypot(a.x() - b.x(), a.y() - b.y());
}

struct ViewCase {
    const char *name;
    QVector3D rot;
    bool ortho;
};

const ViewCase viewCases[] = {
    {"Level", {0, 0, 0}, false},
    {"FromAboveRight", {22, -32, 0}, false},
    {"FromBelowBehind", {-40, 160, 0}, false},
    {"StraightDown", {90, 30, 0}, false},
    {"RolledFromTheSide", {10, 90, 35}, false},
    {"Orthographic", {22, -32, 0}, true},
    {"OrthographicRolled", {-15, 70, -120}, true},
};

TABLE(CameraView, testing::Test, ViewCase, viewCases);

TEST_P(CameraView, PredictsThePixelThatOpenGLDraws)
{
    const GL::Camera camera = cameraAt(GetParam().rot, GetParam().ortho);
    const CameraGeometry frame(camera, size);
    for (const QVector3D &p :
         {QVector3D(0, 0, 0), QVector3D(0.3f, 0.2f, -0.1f), QVector3D(-0.2f, 0.4f, 0.25f)}) {
        EXPECT_LT(distance(frame.pixel(p), drawnAt(camera, p)), 0.2);
        const Ray ray = frame.ray(drawnAt(camera, p));
        EXPECT_LT(p.distanceToLine(ray.origin, ray.direction), 2e-4f);
    }
}

TEST_P(CameraView, FramesAllPointsUpToTheMargin)
{
    GL::Camera camera = cameraAt(GetParam().rot, GetParam().ortho);
    std::vector<QVector3D> points;
    for (int i = 0; i < 8; ++i)
        points.push_back({i & 1 ? 0.4f : -0.1f, i & 2 ? 0.3f : -0.2f, i & 4 ? 0.05f : -0.35f});
    constexpr float margin = 0.1f;
    const Framing framing = frameAll(camera, size, {}, points, margin);
    CameraMotion().jumpTo(camera, {GetParam().rot, framing.target, framing.radius});
    QRectF reached;
    for (const QVector3D &p : points)
        reached |= QRectF(CameraGeometry(camera, size).pixel(p), QSizeF(1e-9, 1e-9));
    const QRectF room(0.05 * size.width(), 0.05 * size.height(), 0.9 * size.width(),
                      0.9 * size.height());
    EXPECT_TRUE(room.adjusted(-0.5, -0.5, 0.5, 0.5).contains(reached));
    EXPECT_TRUE(std::fabs(reached.width() - room.width()) < 1 ||
                std::fabs(reached.height() - room.height()) < 1)
        << reached.width() << " x " << reached.height();
    EXPECT_LT(distance(reached.center(), room.center()), 120);
}

TEST(CameraTurn, KeepsAllPointsInThePictureAndFillsIt)
{
    const std::vector<QVector3D> points{
        {0.4f, 0.3f, 0.1f}, {-0.2f, -0.1f, 0.35f}, {0.1f, -0.4f, -0.1f}, {0, 0.2f, -0.3f}};
    for (const bool ortho : {false, true})
        for (const float elevation : {0.0f, 22.0f, -60.0f, 90.0f}) {
            SCOPED_TRACE(testing::Message() << "elevation " << elevation << " ortho " << ortho);
            GL::Camera camera = cameraAt({elevation, -32, 0}, ortho);
            const Framing framing = frameTurn(camera, size, points, 0.1f);
            EXPECT_EQ(framing.target.x(), 0);
            EXPECT_NEAR(framing.target.z(), 0, 1e-5f);
            QRectF reached;
            for (float azimuth = 0; azimuth < 360; ++azimuth) {
                CameraMotion().jumpTo(camera,
                                      {{elevation, azimuth, 0}, framing.target, framing.radius});
                for (const QVector3D &p : points)
                    reached |= QRectF(CameraGeometry(camera, size).pixel(p), QSizeF(1e-9, 1e-9));
            }
            EXPECT_TRUE(QRectF(QPointF(), QSizeF(size)).adjusted(-1, -1, 1, 1).contains(reached));
            EXPECT_GT(std::max(reached.width() / size.width(), reached.height() / size.height()),
                      0.75);
        }
}

TEST_P(CameraView, PanHoldsTheGrabbedPoint)
{
    GL::Camera camera = cameraAt(GetParam().rot, GetParam().ortho);
    const QVector3D grabbed(0.2f, 0.1f, 0.3f);
    const QPointF from = drawnAt(camera, grabbed), to = from + QPointF(120, -75);
    const QVector3D there = CameraGeometry(camera, size).onPlane(to, grabbed);
    CameraMotion::pan(camera, there - grabbed);
    camera.Update(1);
    CameraMotion().step(camera, frameTime); // the roll of `up`
    EXPECT_LT(distance(drawnAt(camera, grabbed), to), 0.5);
}

TEST_P(CameraView, ZoomHoldsThePivotInEveryFrame)
{
    GL::Camera camera = cameraAt(GetParam().rot, GetParam().ortho);
    const QVector3D pivot(0.15f, 0.1f, 0.1f);
    const QPointF before = drawnAt(camera, pivot);
    const float radius = camera.radius;
    CameraMotion motion;
    motion.zoom(4, pivot);
    motion.step(camera, frameTime);
    int frames = 0;
    for (bool moves = true; moves && frames < 600; ++frames) {
        moves = runFrame(camera, motion);
        EXPECT_LT(distance(drawnAt(camera, pivot), before), 1) << "frame " << frames;
    }
    EXPECT_NEAR(camera.radius, radius / 4, radius * 1e-4);
    EXPECT_GT(frames, 5) << "the zoom is not smooth";
}

TEST_P(CameraView, ProjectionSwitchKeepsTheSizeAtTheTarget)
{
    GL::Camera camera = cameraAt(GetParam().rot, GetParam().ortho);
    const CameraGeometry frame(camera, size);
    const QVector3D a = frame.target(), b = a + frame.up() * 0.2f + frame.right() * 0.1f;
    const double before = distance(drawnAt(camera, a), drawnAt(camera, b));
    CameraMotion motion;
    motion.toggleProjection(camera);
    runFrame(camera, motion);
    EXPECT_NE(bool(camera.ortho), GetParam().ortho);
    EXPECT_NEAR(distance(drawnAt(camera, a), drawnAt(camera, b)), before, 0.5);
}

struct DragCase {
    const char *name;
    float roll;
    QPointF drag; // degrees, right and up in the picture
};

const DragCase dragCases[] = {
    {"Right", 0, {20, 0}},
    {"Up", 0, {0, 20}},
    {"Left", 0, {-20, 0}},
    {"RightInARolledView", 90, {20, 0}},
    {"UpInARolledView", 90, {0, 20}},
    {"DownUpsideDown", 180, {0, -20}},
};

TABLE(OrbitDrag, testing::Test, DragCase, dragCases);

TEST_P(OrbitDrag, MovesTheNearSideTheSameWay)
{
    GL::Camera camera = cameraAt({5, 10, GetParam().roll});
    const CameraGeometry frame(camera, size);
    const QVector3D nearSide = frame.target() - frame.forward() * 0.4f;
    const QPointF before = drawnAt(camera, nearSide);
    CameraMotion motion;
    motion.orbit(camera, GetParam().drag);
    motion.step(camera, frameTime);
    runToRest(camera, motion);
    const QPointF moved = drawnAt(camera, nearSide) - before;
    const QPointF drag = GetParam().drag;
    const double along = QPointF::dotProduct(moved, drag) / std::hypot(drag.x(), drag.y());
    EXPECT_GT(along, 50);
    EXPECT_GT(along, 0.9 * std::hypot(moved.x(), moved.y()));
}

TEST(CameraMotionTest, DragsBeyondThePoleLeaveNothingToUndo)
{
    GL::Camera camera = cameraAt({60, 0, 0});
    CameraMotion motion;
    motion.orbit(camera, {0, -300});
    motion.step(camera, frameTime);
    runToRest(camera, motion);
    EXPECT_FLOAT_EQ(camera.rot.x, 90);
    motion.orbit(camera, {0, 30});
    motion.step(camera, frameTime);
    runToRest(camera, motion);
    EXPECT_NEAR(camera.rot.x, 60, 0.05);
}

TEST(CameraMotionTest, TakesTheSameTimeAtAnyFrameRate)
{
    const auto afterAWhile = [](int frames, double seconds) {
        GL::Camera camera = cameraAt({0, 0, 0});
        CameraMotion motion;
        motion.orbit(camera, {90, 0});
        motion.step(camera, seconds);
        for (int i = 0; i < frames; ++i)
            runFrame(camera, motion, seconds);
        return camera.rot.y;
    };
    EXPECT_NEAR(afterAWhile(4, 0.05), afterAWhile(40, 0.005), 0.5);
}

TEST(CameraMotionTest, GoesToAPoseTheShortWayAndRests)
{
    GL::Camera camera = cameraAt({0, 170, 0});
    CameraMotion motion;
    motion.orbit(camera, {500, 0}); // dropped by what follows
    const Pose pose{{10, -170, 0}, {-0.2f, 0.1f, 0}, 0.5f};
    motion.goTo(camera, pose);
    motion.step(camera, frameTime);
    runToRest(camera, motion);
    EXPECT_NEAR(camera.rot.y, 190, 0.1);
    EXPECT_NEAR(camera.rot.x, 10, 0.1);
    EXPECT_NEAR(camera.radius, 0.5, 0.001);
    EXPECT_LT((toQt(camera.target) - pose.target).length(), 0.002f);
    const Vector rot = camera.rot;
    runFrame(camera, motion);
    EXPECT_EQ(camera.rot, rot);
}

TEST(CameraMotionTest, ZoomStopsAtBothEndsInBothProjections)
{
    for (const bool ortho : {false, true}) {
        GL::Camera camera = cameraAt({0, 0, 0}, ortho);
        CameraMotion motion;
        for (const float factor : {1e6f, 1e-6f}) {
            motion.zoom(factor, {});
            motion.step(camera, frameTime);
            runToRest(camera, motion);
        }
        GL::Camera farthest = camera;
        farthest.ortho = 0;
        farthest.radius = CameraMotion::maxRadius;
        EXPECT_NEAR(shownHalfHeight(camera), shownHalfHeight(farthest), 0.01) << ortho;
        EXPECT_LE(std::hypot(camera.target.x, camera.target.z), camera.bounds.x * 1.001f);
    }
}

/// Two surfaces a thousandth of the model apart must land in different steps of a 24-bit buffer.
TEST(CameraMotionTest, ClipRangeTellsCloseSurfacesApart)
{
    for (const bool ortho : {false, true}) {
        for (const float radius : {0.02f, 0.3f, 1.5f, 4.5f}) {
            GL::Camera camera = cameraAt({0, 0, 0}, ortho);
            camera.radius = ortho ? radiusShowing(camera, radius * 0.3f) : radius;
            camera.Update(1);
            const double n = ortho ? -camera.farZ : camera.nearZ, f = camera.farZ;
            const auto stored = [&](double z) {
                return (ortho ? (z - n) / (f - n) : f / (f - n) * (1 - n / z)) * (1 << 24);
            };
            const double back = camera.radius + CameraMotion::worldRadius;
            EXPECT_GT(stored(back) - stored(back - 0.001 * CameraMotion::worldRadius), 4)
                << "radius " << radius << " ortho " << ortho;
        }
    }
}

} // namespace
} // namespace host
