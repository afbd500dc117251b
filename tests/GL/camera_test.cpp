// SPDX-License-Identifier: MIT
// What camera and viewport compute without a GL context.
#include "GL/camera.h"

#include <limits>
#include <sstream>

#include <gtest/gtest.h>

#include "table.h"

namespace GL {
namespace {

/// What Update(0) makes of an eye, angles and a radius, by mode.
struct PoseCase {
    const char *name;
    int mode;
    Vector eye, angles;
    float radius;
    Vector Camera::*member;
    Vector expected;
};

const PoseCase poseCases[] = {
    {"OrbitLooksAlongMinusZ", 2, {}, {}, 0, &Camera::pos, {0, 0, 0.0005f}},
    {"OrbitAzimuth", 2, {}, {0, 90, 0}, 10, &Camera::pos, {-10, 0, 0}},
    {"OrbitElevation", 2, {}, {30, 0, 0}, 10, &Camera::pos, {0, 5, 8.660254f}},
    {"OrbitStopsOnTop", 2, {}, {100, 0, 0}, 10, &Camera::pos, {0, 10, 0}},
    {"TopIsWrittenBack", 2, {}, {100, 0, 0}, 10, &Camera::rot, {90, 0, 0}},
    {"BottomIsWrittenBack", 2, {}, {-91, 0, 0}, 10, &Camera::rot, {-90, 0, 0}},
    {"UpWithoutAngles", 2, {}, {}, 10, &Camera::up, {0, 1, 0}},
    {"UpOnTop", 2, {}, {90, 0, 0}, 10, &Camera::up, {0, 0, -1}},
    {"UpTurnsByXThenYThenZ", 2, {}, {30, 90, 90}, 10, &Camera::up, {0.866025f, -0.5f, 0}},
    {"WalkingSeesAhead", 1, {1, 2, 3}, {0, 90, 0}, 10, &Camera::target, {11, 2, 3}},
    {"WalkingKeepsItsEye", 1, {1, 2, 3}, {0, 90, 0}, 10, &Camera::pos, {1, 2, 3}},
    {"FloatingAzimuth", 3, {10, 0, 0}, {5, 6, 7}, 1, &Camera::rot, {0, -90, 0}},
    {"FloatingElevation", 3, {0, 5, 8.660254f}, {5, 6, 7}, 1, &Camera::rot, {30, 0, 0}},
    {"FloatingOnItsTarget", 3, {}, {5, 6, 7}, 1, &Camera::rot, {5, 6, 7}},
    {"FixedMatrixKeepsUp", 0, {1, 2, 3}, {0, 0, 90}, 1, &Camera::up, {0, 1, 0}},
    {"FixedMatrixKeepsEye", 0, {1, 2, 3}, {0, 0, 90}, 1, &Camera::pos, {1, 2, 3}},
    {"OtherModesTurnUp", 9, {1, 2, 3}, {0, 0, 90}, 1, &Camera::up, {1, 0, 0}},
    {"OtherModesKeepTheEye", 9, {1, 2, 3}, {0, 0, 90}, 1, &Camera::pos, {1, 2, 3}},
};

TABLE(CameraPose, testing::Test, PoseCase, poseCases);

TEST_P(CameraPose, IsCompleted)
{
    Camera camera;
    camera.mode = GetParam().mode;
    camera.pos = GetParam().eye;
    camera.rot = GetParam().angles;
    camera.radius = GetParam().radius;
    camera.Update(0);
    EXPECT_LT((camera.*GetParam().member - GetParam().expected).length(), 1e-5);
}

/// One number of the camera before and after Update(adjust).
struct NumberCase {
    const char *name;
    float Camera::*given;
    float value;
    int adjust;
    float Camera::*read;
    float expected;
};

const NumberCase numberCases[] = {
    {"SmallestRadius", &Camera::radius, 0, 0, &Camera::radius, 0.0005f},
    {"SmallestNear", &Camera::radius, 0, 0, &Camera::nearZ, 0.0001f},
    {"SmallestFar", &Camera::radius, 0, 0, &Camera::farZ, 40},
    {"LargestRadius", &Camera::radius, 2000, 0, &Camera::radius, 1000},
    {"LargestNear", &Camera::radius, 2000, 0, &Camera::nearZ, 0.05f},
    {"LargestFar", &Camera::radius, 2000, 0, &Camera::farZ, 10000},
    {"FarGrowsLinearly", &Camera::radius, 500.00025f, 0, &Camera::farZ, 5020},
    {"NarrowFov", &Camera::fov, 0.5f, 0, &Camera::fov, 1},
    {"WideFov", &Camera::fov, 120, 0, &Camera::fov, 90},
    {"RadiusMovesByDt", &Camera::d_radius, 2, 1, &Camera::radius, 60},
    {"RadiusRestsWithoutAdjust", &Camera::d_radius, 2, 0, &Camera::radius, 0.0005f},
};

TABLE(CameraNumber, testing::Test, NumberCase, numberCases);

TEST_P(CameraNumber, IsCompleted)
{
    Camera camera;
    camera.*GetParam().given = GetParam().value;
    camera.Update(GetParam().adjust);
    EXPECT_FLOAT_EQ(camera.*GetParam().read, GetParam().expected);
}

/// Steps of the target towards the one asked for.
struct TargetCase {
    const char *name;
    Vector target, asked;
    float dt;
    Vector expected;
};

const TargetCase targetCases[] = {
    {"StepIsLimited", {}, {100, 0, 0}, 30, {30, 0, 0}},
    {"StepGrowsWithDt", {}, {0, 100, 0}, 60, {0, 60, 0}},
    {"Arrives", {1, 1, 1}, {29, 0, 0}, 30, {29, 0, 0}},
    {"Bounds", {}, {2000, -5000, 0}, 1e5f, {1000, -500, 0}},
    {"BoundsAreRoundSideways", {}, {1200, -7, 1600}, 1e5f, {600, -7, 800}},
    {"ReachedIsNotBounded", {5000, 0, 0}, {5000, 0, 0}, 30, {5000, 0, 0}},
};

TABLE(CameraTarget, testing::Test, TargetCase, targetCases);

TEST_P(CameraTarget, FollowsWithinItsBounds)
{
    Camera camera;
    camera.target = GetParam().target;
    camera.setTarget = GetParam().asked;
    camera.dt = GetParam().dt;
    camera.bounds = Vector(1000, 500, 1); // the last is not read
    camera.Update(0);
    EXPECT_LT((camera.target - GetParam().expected).length(), 1e-3);
}

TEST(CameraTest, VelocitiesApplyOnlyWhenAdjusting)
{
    Camera camera;
    camera.mode = 9;
    camera.dt = 2;
    camera.d_pos = Vector(1, 2, 3);
    camera.d_target = Vector(4, 5, 6);
    camera.d_rot = Vector(7, 8, 9);
    camera.Update(0);
    EXPECT_TRUE(!camera.pos && !camera.setTarget && !camera.rot);
    camera.Update(1);
    EXPECT_EQ(camera.pos, Vector(2, 4, 6));
    EXPECT_EQ(camera.setTarget, Vector(8, 10, 12));
    EXPECT_EQ(camera.rot, Vector(7, 8, 9)) << "degrees per update, whatever dt is";
}

TEST(CameraTest, FloatingTakesItsRadiusFromTheEye)
{
    Camera camera;
    camera.mode = 3;
    camera.pos = Vector(0, 6, 8);
    camera.Update(0);
    EXPECT_EQ(camera.radius, 10);
}

TEST(CameraTest, NearPointMovesWithAnOrthographicEye)
{
    for (const int ortho : {0, 1}) {
        Camera camera;
        camera.ortho = ortho;
        camera.radius = 10;
        camera.vnear = Vector(1, 1, 1);
        camera.Update(0);
        EXPECT_NEAR(camera.vnear.z, ortho ? 11 : 1, 1e-5);
    }
}

TEST(CameraTest, SetRadiusRefusesWhatIsOutsideTheLimits)
{
    Camera camera;
    EXPECT_EQ(camera.SetRadius(camera.maxRadius), 1);
    EXPECT_EQ(camera.SetRadius(std::nextafter(camera.maxRadius, 2000.0f)), 0);
    EXPECT_EQ(camera.SetRadius(0.0004f), 0);
    EXPECT_EQ(camera.SetRadius(std::numeric_limits<float>::quiet_NaN()), 0);
    EXPECT_EQ(camera.radius, 1000);
    EXPECT_EQ(camera.SetRadius(camera.minRadius), 1);
}

TEST(CameraTest, PrintsOneLineWithoutItsEnd)
{
    Camera camera;
    camera.radius = 12.34567f;
    camera.pos = Vector(1, 2.5f, -3);
    camera.rot = Vector(30, 45, 0);
    std::ostringstream out;
    EXPECT_EQ(&camera.Print(out), &out);
    EXPECT_EQ(out.str(), "   m:2   r:12.35   p[ 1 2.5 -3]   rot[ 30 45 0]  fov:60");
    EXPECT_EQ(out.precision(), 4);
}

struct CursorCase {
    const char *name;
    int align;
    float x, y; // in a region of 200 x 100, scale (2, 4), pos (10, 20)
    float expectedX, expectedY;
};

const CursorCase cursorCases[] = {
    {"Centre", Viewport::AlignCenter, 150, 60, 35, 22.5f},
    {"LeftDown", Viewport::AlignLeft, 150, 60, 85, 35},
    {"LeftBottom", Viewport::AlignLeft | Viewport::AlignBottom, 150, 60, 85, 35},
    {"TopCountsFromTheLastRow", Viewport::AlignTop, 150, 59, 85, 30},
    {"CentreWinsOverTop", Viewport::AlignTop | Viewport::AlignVCenter, 0, 60, 10, 22.5f},
};

TABLE(ViewportCursor, testing::Test, CursorCase, cursorCases);

TEST_P(ViewportCursor, MapsPixelsToData)
{
    Viewport viewport;
    viewport.align = GetParam().align;
    viewport.scale = Vector(2, 4, 1);
    viewport.pos = Vector(10, 20, 30);
    const Vector found = viewport.Cursor(GetParam().x, GetParam().y, 200, 100);
    EXPECT_EQ(found, Vector(GetParam().expectedX, GetParam().expectedY, 0));
}

TEST(ViewportTest, UpdateClampsTheScalePerAxis)
{
    Viewport viewport;
    EXPECT_EQ(viewport.align, 132);
    viewport.scale = Vector(0.0001f, 5, 2e7f);
    viewport.Update();
    EXPECT_EQ(viewport.scale, Vector(0.001f, 5, 1e7f));
    viewport.minScale = Vector(9, 9, 9);
    viewport.maxScale = Vector(3, 3, 3);
    viewport.Update();
    EXPECT_EQ(viewport.scale, Vector(3, 3, 3)) << "the maximum wins where limits cross";
}

} // namespace
} // namespace GL
