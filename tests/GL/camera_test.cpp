// SPDX-License-Identifier: MIT
// What camera and viewport compute without a GL context.
#include "GL/camera.h"

#include <cmath>
#include <sstream>

#include <gtest/gtest.h>

#include "GL/lighting.h"

namespace GL {
namespace {

template <typename... Numbers> std::string line(const Numbers &...n)
{
    std::ostringstream out;
    ((out << n << ' '), ...);
    return out.str();
}

std::string line(const Vector &v)
{
    return line(v.x, v.y, v.z);
}

// What Update(0) makes of an eye, angles and a radius, by mode.
const struct {
    int mode;
    Vector eye, angles;
    float radius;
    Vector Camera::*member;
    Vector expected;
} poses[] = {
    {2, {}, {}, 0, &Camera::pos, {0, 0, 0.0005f}}, // along -Z
    {2, {}, {0, 90, 0}, 10, &Camera::pos, {-10, 0, 0}},
    {2, {}, {30, 60, 0}, 10, &Camera::pos, {-7.5f, 5, 4.330127f}},
    {2, {}, {100, 0, 0}, 10, &Camera::pos, {0, 10, 0}},
    {2, {}, {91, 0, 0}, 10, &Camera::rot, {90, 0, 0}},
    {2, {}, {-91, 0, 0}, 10, &Camera::rot, {-90, 0, 0}},
    {2, {}, {30, 60, 90}, 10, &Camera::up, {0.866025f, -0.433013f, -0.25f}}, // x, then y, then z
    {1, {1, 2, 3}, {0, 90, 0}, 10, &Camera::target, {11, 2, 3}},
    {1, {1, 2, 3}, {0, 90, 0}, 10, &Camera::pos, {1, 2, 3}},
    {1, {1, 2, 3}, {0, 90, 0}, 100, &Camera::setTarget, {101, 2, 3}},
    {3, {10, 0, 0}, {5, 6, 7}, 1, &Camera::rot, {0, -90, 0}},
    {3, {0, 5, 8.660254f}, {5, 6, 7}, 1, &Camera::rot, {30, 0, 0}},
    {3, {-3, 0, -3}, {5, 6, 7}, 1, &Camera::rot, {0, 135, 0}},
    {3, {}, {5, 6, 7}, 1, &Camera::rot, {5, 6, 7}}, // on its target
    {0, {1, 2, 3}, {0, 0, 90}, 1, &Camera::up, {0, 1, 0}},
    {0, {1, 2, 3}, {0, 0, 90}, 1, &Camera::pos, {1, 2, 3}},
    {9, {1, 2, 3}, {0, 0, 90}, 1, &Camera::up, {1, 0, 0}},
    {9, {1, 2, 3}, {0, 0, 90}, 1, &Camera::pos, {1, 2, 3}},
};

TEST(CameraTest, CompletesItsStateByMode)
{
    for (const auto &[mode, eye, angles, radius, member, expected] : poses) {
        Camera c;
        c.mode = mode;
        c.pos = eye;
        c.rot = angles;
        c.radius = radius;
        c.Update(0);
        EXPECT_LT((c.*member - expected).length(), 1e-5)
            << line(mode) << line(angles) << line(c.*member);
    }
    Camera c;
    c.mode = 3;
    c.pos = Vector(0, 6, 8);
    c.Update(0);
    EXPECT_EQ(c.radius, 10);
    for (c.ortho = 0; c.ortho < 2; ++c.ortho) {
        c.mode = 2;
        c.pos = c.rot = Vector();
        c.vnear = Vector(1, 1, 1);
        c.Update(0);
        EXPECT_NEAR(c.vnear.z, c.ortho ? 11 : 1, 1e-5) << "the near point moves with the eye";
    }
}

TEST(CameraTest, KeepsRadiusFieldOfViewAndClipRange)
{
    Camera c;
    for (const auto &[radius, kept, nearZ, farZ] : {std::tuple(0.0f, 0.0005f, 0.0001f, 40.0f),
                                                    {2000, 1000, 0.05f, 10000},
                                                    {500.00025f, 500.00025f, 0.02505f, 5020}}) {
        c.radius = radius;
        c.Update(0);
        EXPECT_FLOAT_EQ(c.radius, kept);
        EXPECT_FLOAT_EQ(c.nearZ, nearZ);
        EXPECT_FLOAT_EQ(c.farZ, farZ);
    }
    for (const auto &[fov, kept] :
         {std::pair(0.5f, 1.0f), {1.5f, 1.5f}, {89.5f, 89.5f}, {120, 90}}) {
        c.fov = fov;
        c.Update(0);
        EXPECT_EQ(c.fov, kept);
    }
    EXPECT_EQ(c.SetRadius(c.maxRadius), 1);
    EXPECT_EQ(c.SetRadius(std::nextafter(c.maxRadius, 2000.0f)) + c.SetRadius(0.0004f) +
                  c.SetRadius(NAN),
              0);
    EXPECT_EQ(c.radius, 1000);
    EXPECT_EQ(c.SetRadius(c.minRadius), 1);
}

// Steps of the target towards the one asked for.
const struct {
    Vector target, asked;
    float dt;
    Vector expected;
} steps[] = {
    {{}, {100, 0, 0}, 30, {60, 0, 0}},
    {{}, {0, 300, 0}, 60, {0, 120, 0}},
    {{1, 1, 1}, {29, 0, 0}, 30, {29, 0, 0}},
    {{}, {2000, -5000, 0}, 1e5f, {1000, -500, 0}},
    {{}, {1200, -7, 1600}, 1e5f, {600, -7, 800}},
    {{}, {3, 700, 4}, 1e5f, {3, 500, 4}},
    {{5000, 0, 0}, {5000, 0, 0}, 30, {5000, 0, 0}}, // reached, it is not bounded
};

TEST(CameraTest, TargetFollowsWithinItsBounds)
{
    for (const int mode : {2, 3})
        for (const auto &[target, asked, dt, expected] : steps) {
            Camera c;
            c.mode = mode;
            c.target = target;
            c.setTarget = asked;
            c.dt = dt;
            c.d_target_max = 2;
            c.bounds = Vector(1000, 500, 1); // the last is not read
            c.Update(0);
            EXPECT_LT((c.target - expected).length(), 1e-3) << line(asked) << line(c.target);
        }
}

TEST(CameraTest, VelocitiesApplyOnlyWhenAdjusting)
{
    Camera c;
    c.mode = 9;
    c.dt = 2;
    c.d_pos = Vector(1, 2, 3);
    c.d_target = Vector(4, 5, 6);
    c.d_rot = Vector(7, 8, 9); // degrees per update, whatever dt is
    c.d_radius = 5;
    c.Update(0);
    EXPECT_EQ(line(c.pos) + line(c.setTarget) + line(c.rot) + line(c.radius),
              "0 0 0 0 0 0 0 0 0 0.0005 ");
    c.Update(1);
    EXPECT_EQ(line(c.pos) + line(c.setTarget) + line(c.rot) + line(c.radius),
              "2 4 6 8 10 12 7 8 9 10.0005 ");
}

TEST(CameraTest, PrintsOneLineWithoutItsEnd)
{
    Camera c;
    c.radius = 12.34567f;
    c.pos = Vector(1, 2.5f, -3);
    c.rot = Vector(30, 45, 0);
    std::ostringstream out;
    EXPECT_EQ(&c.Print(out), &out);
    EXPECT_EQ(out.str(), "   m:2   r:12.35   p[ 1 2.5 -3]   rot[ 30 45 0]  fov:60");
    EXPECT_EQ(out.precision(), 4);
}

TEST(ViewportTest, MapsPixelsToDataAndClampsTheScale)
{
    Viewport v;
    v.scale = Vector(2, 4, 1);
    v.pos = Vector(10, 20, 30);
    const std::tuple<int, float, float, const char *> rows[] = {
        // in a region of 200 x 100
        {Viewport::AlignCenter, 150.0f, 60.0f, "35 22.5 0 "},
        {Viewport::AlignLeft, 150.0f, 60.0f, "85 35 0 "},
        {Viewport::AlignLeft | Viewport::AlignBottom, 150.0f, 60.0f, "85 35 0 "},
        {Viewport::AlignTop, 150.0f, 59.0f, "85 30 0 "}, // from the last row
        {Viewport::AlignTop | Viewport::AlignVCenter, 0.0f, 60.0f, "10 22.5 0 "}};
    for (const auto &[align, x, y, expected] : rows) {
        v.align = align;
        EXPECT_EQ(line(v.Cursor(x, y, 200, 100)), expected);
    }
    v.scale = Vector(0.0001f, 5, 2e7f);
    v.Update();
    EXPECT_EQ(line(v.scale), "0.001 5 1e+07 ");
    v.minScale = Vector(9, 9, 9);
    v.maxScale = Vector(3, 3, 3);
    v.Update();
    EXPECT_EQ(line(v.scale), "3 3 3 ") << "the maximum wins where limits cross";
}

TEST(CameraTest, RecordsStartAsTheGuideSays)
{
    const Camera c;
    EXPECT_EQ(line(c.mode, c.ortho, c.radius, c.fov, c.nearZ, c.farZ, c.minRadius, c.maxRadius,
                   c.d_pos_max, c.d_target_max, c.dt, c.d_radius),
              "2 0 0 60 0.001 10000 0.0005 1000 1 1 30 0 ");
    EXPECT_EQ(line(c.bounds) + line(c.up), "1000 1000 1000 0 1 0 ");
    for (int i = 0; i < 16; ++i)
        EXPECT_EQ(c.m[i], i % 5 ? 0 : 1);
    const Viewport v;
    EXPECT_EQ(line(v.scale) + line(v.minScale) + line(v.maxScale) + line(v.align),
              "1 1 1 0.001 0.001 0.001 1e+07 1e+07 1e+07 132 ");
    Light l(GL_LIGHT3, 'x');
    std::string text = line(l.light - GL_LIGHT0, l.mode);
    for (Light::vector *part : {&l.position, &l.ambient, &l.diffuse, &l.specular})
        text += line((*part)[0], (*part)[1], (*part)[2], (*part)[3]);
    EXPECT_EQ(text, "3 x 0 0 1 0 0 0 0 1 1 1 1 1 1 1 1 1 ");
    Light::vector four(1, 2, 3, 4), none;
    four[3] = 5;
    const float *p = four;
    EXPECT_EQ(line(p[0], p[1], p[2], p[3]) + line(none.x, none.y, none.z, none.w),
              "1 2 3 5 0 0 0 0 ");
}

} // namespace
} // namespace GL
