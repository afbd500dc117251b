// SPDX-License-Identifier: MIT
// The matrices that camera and viewport load, and what is read back from them.
#include "GL/camera.h"

#include "table.h"
#include "testing.h"

namespace GL {
namespace {

/// A GL viewport of 200 x 100 and the matrices as OpenGL holds them.
class Matrices : public WindowTest {
protected:
    Matrices() { glViewport(0, 0, 200, 100); }
    void read()
    {
        glGetDoublev(GL_PROJECTION_MATRIX, p);
        glGetDoublev(GL_MODELVIEW_MATRIX, mv);
        EXPECT_EQ(glGetError(), GLenum(GL_NO_ERROR));
    }

    GLdouble p[16], mv[16];
};

struct ProjectionCase {
    const char *name;
    int ortho;
    float px, py, pw, ph;
    double xx, yy, xShift; // of the projection: its diagonal, and column 2 or 3 of its first row
};

const ProjectionCase projectionCases[] = {
    {"Perspective", 0, 0, 0, 0, 0, 1.207107, 2.414214, 0},
    {"Orthographic", 1, 0, 0, 0, 0, 0.05, 0.1, 0},
    {"NoPickWithoutWidth", 1, 50, 25, 0, 50, 0.05, 0.1, 0},
    {"NoPickWithoutHeight", 1, 50, 25, 100, 0, 0.05, 0.1, 0},
    {"OrthographicPick", 1, 50, 25, 100, 50, 0.1, 0.2, 1},
    {"PerspectivePick", 0, 150, 50, 100, 50, 2.414214, 4.828427, 1},
};

TABLE(CameraSetup, Matrices, ProjectionCase, projectionCases);

TEST_P(CameraSetup, LoadsTheProjection)
{
    const ProjectionCase &c = GetParam();
    Camera camera;
    camera.ortho = c.ortho;
    camera.fov = 45;
    camera.radius = 10;
    camera.Update(0);
    camera.Setup(200, 100, c.px, c.py, c.pw, c.ph);
    read();
    EXPECT_NEAR(p[0], c.xx, 1e-5);
    EXPECT_NEAR(p[5], c.yy, 1e-5);
    EXPECT_NEAR(p[c.ortho ? 12 : 8], c.xShift, 1e-5);
    if (c.ortho)
        EXPECT_NEAR(p[10], -1 / camera.farZ, 1e-7);
    else
        EXPECT_NEAR(p[14], -2.0 * camera.farZ * camera.nearZ / (camera.farZ - camera.nearZ), 1e-7);
    EXPECT_NEAR(mv[14], -10, 1e-5);
    for (int i = 0; i < 16; ++i) {
        EXPECT_EQ(camera.proj_matrix[i], p[i]) << i;
        EXPECT_EQ(camera.model_matrix[i], mv[i]) << i;
    }
    EXPECT_EQ(camera.viewport[2], 200);
    EXPECT_EQ(camera.viewport[3], 100);
}

TEST_F(Matrices, FixedModeLoadsItsOwnMatrix)
{
    Camera camera;
    camera.mode = 0;
    camera.m[12] = 7;
    camera.Setup(200, 100, 0, 0, 0, 0);
    read();
    EXPECT_EQ(mv[12], 7);
    EXPECT_EQ(mv[0], 1);
}

TEST_F(Matrices, RotationIsAboutXThenYThenZ)
{
    Camera camera;
    camera.rot = Vector(90, 90, 0);
    glMatrixMode(GL_MODELVIEW);
    glLoadIdentity();
    camera.SetupRotation();
    read();
    // The first column is where +x goes: y turns it to -z, then x turns that to +y.
    EXPECT_NEAR(mv[0], 0, 1e-6);
    EXPECT_NEAR(mv[1], 1, 1e-6);
    EXPECT_NEAR(mv[2], 0, 1e-6);
}

TEST_F(Matrices, UnprojectGivesTheRayUnderThePointer)
{
    Camera camera;
    camera.fov = 90;
    camera.SetRadius(10);
    camera.Update(0);
    camera.Setup(200, 100, 0, 0, 0, 0);
    ASSERT_EQ(camera.Unproject(100, 50), 1);
    EXPECT_LT((camera.unproj - Vector(0, 0, -1)).length(), 1e-3);
    const Vector first = camera.unproj;
    ASSERT_EQ(camera.Unproject(100, 100), 1);
    EXPECT_LT((camera.unproj - Vector(0, 0.70711f, -0.70711f)).length(), 1e-3) << "the upper edge";
    EXPECT_EQ(camera.last_unproj, first);
    EXPECT_TRUE(!camera.vnear) << "of orthographic cameras only";
}

TEST_F(Matrices, OrthographicUnprojectGivesTheNearPoint)
{
    Camera camera;
    camera.ortho = 1;
    camera.fov = 45;
    camera.SetRadius(10);
    camera.Update(0);
    camera.vnear = Vector(1, 2, 3);
    camera.Setup(200, 100, 0, 0, 0, 0);
    ASSERT_EQ(camera.Unproject(200, 50), 1);
    EXPECT_LT((camera.unproj - Vector(0, 0, -1)).length(), 1e-4) << "rays are parallel";
    EXPECT_EQ(camera.last_vnear, Vector(1, 2, 3));
    EXPECT_NEAR(camera.vnear.x, 20, 1e-3);
    EXPECT_NEAR(camera.vnear.z, 10 + camera.farZ, 0.1);
}

struct FailureCase {
    const char *name;
    int ortho;
    int viewport; // the component that is zero, -1: the projection is singular instead
    float nudged, turned;
};

const FailureCase failureCases[] = {
    {"NoWidth", 0, 2, 0, 0},
    {"NoHeight", 1, 3, 0, 0},
    {"SingularPerspectiveMovesOn", 0, -1, 0.0001f, 1},
    {"SingularOrthographicRests", 1, -1, 0, 0},
};

TABLE(UnprojectFailure, Matrices, FailureCase, failureCases);

TEST_P(UnprojectFailure, ClearsTheRays)
{
    Camera camera;
    camera.ortho = GetParam().ortho;
    camera.Update(0);
    camera.Setup(200, 100, 0, 0, 0, 0);
    if (GetParam().viewport >= 0)
        camera.viewport[GetParam().viewport] = 0;
    else
        std::fill_n(camera.proj_matrix, 16, 0.0);
    camera.unproj = camera.last_unproj = Vector(1, 0, 0);
    camera.vnear = Vector(1, 2, 3);
    camera.d_rot = Vector(1, 0, 0);
    EXPECT_EQ(camera.Unproject(100, 50), 0);
    EXPECT_TRUE(!camera.unproj);
    EXPECT_TRUE(!camera.last_unproj);
    EXPECT_FLOAT_EQ(camera.rot.y, GetParam().nudged);
    EXPECT_EQ(camera.rot.x, GetParam().turned) << "one update with the velocities";
    EXPECT_EQ(camera.vnear, Vector(1, 2, 3));
}

struct EdgeCase {
    const char *name;
    int align;
    double left, right, bottom, top; // of a region of 200 x 100
};

const EdgeCase edgeCases[] = {
    {"Centre", Viewport::AlignCenter, -100, 100, -50, 50},
    {"TopLeftDownwards", 0, 0, 199, 99, 0},
    {"LeftAndTopAreTheDefault", Viewport::AlignLeft | Viewport::AlignTop, 0, 199, 99, 0},
    {"BottomUpwards", Viewport::AlignBottom, 0, 199, 0, 99},
    {"CentreWinsOverBottom", Viewport::AlignVCenter | Viewport::AlignBottom, 0, 199, -50, 50},
    {"MiddleTop", Viewport::AlignHCenter, -100, 100, 99, 0},
};

TABLE(ViewportSetup, Matrices, EdgeCase, edgeCases);

TEST_P(ViewportSetup, PutsTheEdgesWhereTheAlignmentSays)
{
    const EdgeCase &c = GetParam();
    Viewport viewport;
    viewport.align = c.align;
    viewport.scale = Vector(2, 4, 1);
    viewport.pos = Vector(10, 20, 30);
    viewport.Setup(200, 100, 100, 0, 0, 0, 0);
    read();
    EXPECT_NEAR((-1 - p[12]) / p[0], c.left, 1e-4);
    EXPECT_NEAR((1 - p[12]) / p[0], c.right, 1e-4);
    EXPECT_NEAR((-1 - p[13]) / p[5], c.bottom, 1e-4);
    EXPECT_NEAR((1 - p[13]) / p[5], c.top, 1e-4);
    EXPECT_NEAR(p[10], -0.01, 1e-6);
    EXPECT_EQ(mv[0], 2);
    EXPECT_EQ(mv[5], 4);
    EXPECT_EQ(mv[12], -20);
    EXPECT_EQ(mv[13], -80);
    EXPECT_EQ(viewport.viewport[2], 200);
    EXPECT_EQ(viewport.Left(200, 0), float(c.left));
    EXPECT_EQ(viewport.Right(200, 0), float(c.right));
    EXPECT_EQ(viewport.Bottom(100, 0), float(c.bottom));
    EXPECT_EQ(viewport.Top(100, 0), float(c.top));
    EXPECT_EQ(viewport.Width(200), float(c.right - c.left));
    EXPECT_EQ(viewport.Height(100), float(std::abs(c.top - c.bottom)));

    viewport.Setup(200, 100, 100, 50, 25, 100, 50);
    GLdouble picked[16];
    glGetDoublev(GL_PROJECTION_MATRIX, picked);
    EXPECT_NEAR(picked[0], 2 * p[0], 1e-6) << "half of the width is picked";
    viewport.Setup(200, 100, 100, 50, 25, 100, 0);
    glGetDoublev(GL_PROJECTION_MATRIX, picked);
    EXPECT_EQ(picked[0], p[0]);
}

} // namespace
} // namespace GL
