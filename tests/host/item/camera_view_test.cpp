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

/// Lets the camera come to rest after what @p motion was asked for.
void runToRest(GL::Camera &camera, CameraMotion &motion)
{
    motion.step(camera, frameTime);
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

QRectF reachedBy(const GL::Camera &camera, const std::vector<QVector3D> &points)
{
    QRectF reached;
    for (const QVector3D &p : points)
        reached |= QRectF(CameraGeometry(camera, size).pixel(p), QSizeF(1e-9, 1e-9));
    return reached;
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
    const Framing framing = frameAll(camera, size, {}, points, 0.1f);
    CameraMotion().jumpTo(camera, {GetParam().rot, framing.target, framing.radius});
    const QRectF reached = reachedBy(camera, points);
    const QRectF room(40, 25, 720, 450);
    EXPECT_TRUE(room.adjusted(-0.5, -0.5, 0.5, 0.5).contains(reached));
    EXPECT_LT(std::min(room.width() - reached.width(), room.height() - reached.height()), 1);
    EXPECT_LT(distance(reached.center(), room.center()), 120);
}

TEST(CameraTurn, KeepsAllPointsInThePictureAndFillsIt)
{
    const std::vector<QVector3D> points{
        {0.4f, 0.3f, 0.1f}, {-0.2f, -0.1f, 0.35f}, {0.1f, -0.4f, -0.1f}, {0, 0.2f, -0.3f}};
    for (const QVector3D &row : {QVector3D(0, 0, 0), {22, 1, 0}, {-60, 0, 0}, {90, 1, 0}}) {
        GL::Camera camera = cameraAt({row.x(), -32, 0}, row.y() > 0);
        const Framing framing = frameTurn(camera, size, points, 0.1f);
        EXPECT_LT(std::hypot(framing.target.x(), framing.target.z()), 1e-5f);
        QRectF reached;
        for (float azimuth = 0; azimuth < 360; ++azimuth) {
            CameraMotion().jumpTo(camera, {{row.x(), azimuth, 0}, framing.target, framing.radius});
            reached |= reachedBy(camera, points);
        }
        EXPECT_TRUE(QRectF(-1, -1, 802, 502).contains(reached));
        EXPECT_GT(std::max(reached.width() / 800, reached.height() / 500), 0.75);
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

/// Degrees, right and up in the picture, in pictures that are rolled by the third number.
TEST(CameraMotionTest, DragsMoveTheNearSideTheSameWay)
{
    for (const QVector3D &row :
         {QVector3D(20, 0, 0), {0, 20, 0}, {-20, 0, 0}, {20, 0, 90}, {0, 20, 90}, {0, -20, 180}}) {
        GL::Camera camera = cameraAt({5, 10, row.z()});
        const CameraGeometry frame(camera, size);
        const QVector3D nearSide = frame.target() - frame.forward() * 0.4f;
        const QPointF before = drawnAt(camera, nearSide);
        CameraMotion motion;
        motion.orbit(camera, row.toPointF());
        runToRest(camera, motion);
        const QPointF moved = drawnAt(camera, nearSide) - before;
        const double along = QPointF::dotProduct(moved, row.toPointF()) / 20;
        EXPECT_GT(along, std::max(50.0, 0.9 * distance(moved, {})))
            << row.x() << row.y() << row.z();
    }
}

TEST(CameraMotionTest, DragsBeyondThePoleLeaveNothingToUndo)
{
    GL::Camera camera = cameraAt({60, 0, 0});
    CameraMotion motion;
    for (const auto &[drag, elevation] : {std::pair(-300.0, 90.0f), {30.0, 60.0f}}) {
        motion.orbit(camera, {0, drag});
        runToRest(camera, motion);
        EXPECT_NEAR(camera.rot.x, elevation, 0.05);
    }
}

TEST(CameraMotionTest, TakesTheSameTimeAtAnyFrameRate)
{
    GL::Camera cameras[2] = {cameraAt({}), cameraAt({})};
    for (const int i : {0, 1}) {
        const double seconds = i ? 0.05 : 0.005;
        CameraMotion motion;
        motion.orbit(cameras[i], {90, 0});
        motion.step(cameras[i], seconds);
        for (int frames = i ? 4 : 40; frames > 0; --frames)
            runFrame(cameras[i], motion, seconds);
    }
    EXPECT_NEAR(cameras[0].rot.y, cameras[1].rot.y, 0.5);
}

TEST(CameraMotionTest, GoesToAPoseTheShortWayAndRests)
{
    GL::Camera camera = cameraAt({0, 170, 0});
    CameraMotion motion;
    motion.orbit(camera, {500, 0}); // dropped by what follows
    const Pose pose{{10, -170, 0}, {-0.2f, 0.1f, 0}, 0.5f};
    motion.goTo(camera, pose);
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
    for (const bool ortho : {false, true})
        for (const float radius : {0.02f, 0.3f, 1.5f, 4.5f}) {
            GL::Camera camera = cameraAt({}, ortho);
            camera.radius = ortho ? radiusShowing(camera, radius * 0.3f) : radius;
            camera.Update(1);
            const double n = ortho ? -camera.farZ : camera.nearZ, f = camera.farZ;
            const double back = double(camera.radius) + CameraMotion::worldRadius;
            const double front = back - 0.001 * CameraMotion::worldRadius;
            const double apart =
                ortho ? (back - front) / (f - n) : f / (f - n) * n * (1 / front - 1 / back);
            EXPECT_GT(apart * (1 << 24), 4) << "radius " << radius << " ortho " << ortho;
        }
}

} // namespace
} // namespace host
