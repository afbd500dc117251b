// SPDX-License-Identifier: MIT
// The viewer's camera mathematics, against the module's own camera.
#include <cmath>
#include <functional>

#include <QLineF>
#include <QMatrix4x4>

#include "host/item/camera_motion.h"
#include "tests/support/table.h"

namespace host {
namespace {

const QSizeF size(800, 500);

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

/// A camera, its motion, and what the pass does with them in one frame: the camera's update, then
/// the step for the next one.
struct Moving {
    explicit Moving(const QVector3D &rot, bool ortho = false)
    {
        CameraMotion::prepare(camera);
        motion.jumpTo(camera, {rot, {0.1f, -0.05f, 0.2f}, 1.3f});
        if (ortho)
            motion.toggleProjection(camera);
        frame();
    }
    bool frame(double seconds = 1 / 60.0)
    {
        camera.Update(1);
        return motion.step(camera, seconds);
    }
    /// Lets the camera come to rest after what was asked for; returns the number of frames.
    int rest(const std::function<void()> &each = [] {})
    {
        int frames = 0;
        for (bool moves = true; moves && frames < 600; ++frames) {
            moves = frame();
            each();
        }
        EXPECT_LT(frames, 600) << "the camera never comes to rest";
        return frames;
    }
    QPointF at(const QVector3D &p) const { return drawnAt(camera, p); }

    GL::Camera camera;
    CameraMotion motion;
};

double distance(const QPointF &a, const QPointF &b)
{
    return QLineF(a, b).length();
}

struct ViewCase {
    const char *name;
    QVector3D rot;
    bool ortho = false;
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

struct Posed : testing::Test, Moving {
    using Row = testing::WithParamInterface<ViewCase>;
    Posed() : Moving(Row::GetParam().rot, Row::GetParam().ortho) {}
};

TABLE(CameraView, Posed, ViewCase, viewCases);

TEST_P(CameraView, PredictsThePixelThatOpenGLDrawsAndASwitchKeepsTheSize)
{
    const CameraGeometry geometry(camera, size);
    const QVector3D a = geometry.target(), b = a + geometry.up() * 0.2f + geometry.right() * 0.1f;
    for (const QVector3D &p : {a, b, QVector3D(0.3f, 0.2f, -0.1f), QVector3D(-0.2f, 0.4f, 0.25f)}) {
        EXPECT_LT(distance(geometry.pixel(p), at(p)), 0.2);
        const Ray ray = geometry.ray(at(p));
        EXPECT_LT(p.distanceToLine(ray.origin, ray.direction), 2e-4f);
    }
    const double before = distance(at(a), at(b));
    motion.toggleProjection(camera);
    frame();
    EXPECT_NE(bool(camera.ortho), GetParam().ortho);
    EXPECT_NEAR(distance(at(a), at(b)), before, 0.5);
}

TEST(CameraMotionTest, DragsBeyondThePoleLeaveNothingToUndoAtAnyFrameRate)
{
    Moving fast({60, 0, 0}), slow({60, 0, 0});
    for (const auto &[drag, elevation] : {std::pair(QPointF(90, -300), 90.0f), {{90, 30}, 60.0f}}) {
        for (Moving *m : {&fast, &slow}) {
            m->motion.orbit(m->camera, drag);
            m->motion.step(m->camera, m == &slow ? 0.05 : 0.005);
            for (int frames = m == &slow ? 4 : 40; frames > 0; --frames)
                m->frame(m == &slow ? 0.05 : 0.005);
        }
        EXPECT_NEAR(fast.camera.rot.y, slow.camera.rot.y, 0.5);
        fast.rest();
        slow.rest();
        for (const Moving *m : {&fast, &slow})
            EXPECT_NEAR(m->camera.rot.x, elevation, 0.05);
    }
}

/// Two surfaces a thousandth of the model apart must land in different steps of a 24-bit buffer.
TEST(CameraMotionTest, ClipRangeTellsCloseSurfacesApart)
{
    for (const bool ortho : {false, true})
        for (const float radius : {0.02f, 0.3f, 1.5f, 4.5f}) {
            GL::Camera camera = Moving({}, ortho).camera;
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
