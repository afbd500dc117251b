// SPDX-License-Identifier: MIT
// The matrices that camera, viewport and lights load, and what is read back from them.
#include "tests/GL/fixture.h"

namespace GL {
namespace {

class Matrices : public WindowTest {
protected:
    Matrices() { glViewport(0, 0, 200, 100); }
    static Camera at(float radius, int ortho, float fov = 45)
    {
        Camera camera;
        camera.ortho = ortho;
        camera.fov = fov;
        camera.radius = radius;
        camera.Update(0);
        glTranslatef(1, 1, 1); // what was loaded before does not matter
        glMatrixMode(GL_PROJECTION);
        glTranslatef(1, 1, 1);
        return camera;
    }
    static QVector3D column(const GLdouble *m, int i)
    {
        return QVector3D(float(m[4 * i]), float(m[4 * i + 1]), float(m[4 * i + 2]));
    }
};

const struct {
    int ortho;
    float px, py, pw, ph;
    double xx, yy, xShift, yShift; // of the projection: its diagonal, and column 2 or 3
} projections[] = {
    {0, 0, 0, 0, 0, 1.207107, 2.414214, 0, 0},
    {1, 0, 0, 0, 0, 0.05, 0.1, 0, 0},
    {1, 50, 25, 0, 50, 0.05, 0.1, 0, 0}, // no pick without width or height
    {1, 50, 25, 100, 0, 0.05, 0.1, 0, 0},
    {1, 50, 75, 100, 50, 0.1, 0.2, 1, -1},
    {0, 150, 75, 100, 50, 2.414214, 4.828427, 1, 1},
};

TEST_F(Matrices, OfTheCameraAreItsProjectionAndView)
{
    for (const auto &[ortho, px, py, pw, ph, xx, yy, xShift, yShift] : projections) {
        Camera camera = at(10, ortho);
        camera.Setup(200, 100, px, py, pw, ph);
        const State s;
        EXPECT_NEAR(s.p[0], xx, 1e-5);
        EXPECT_NEAR(s.p[5], yy, 1e-5);
        EXPECT_NEAR(s.p[ortho ? 12 : 8], xShift, 1e-5);
        EXPECT_NEAR(s.p[ortho ? 13 : 9], yShift, 1e-5);
        const double f = camera.farZ, n = camera.nearZ;
        EXPECT_NEAR(s.p[10], ortho ? -1 / f : (f + n) / (n - f), 1e-7);
        EXPECT_NEAR(s.p[14], ortho ? 0 : -2 * f * n / (f - n), 1e-7);
        EXPECT_NEAR(s.mv[14], -10, 1e-5);
        EXPECT_TRUE(std::equal(s.p, s.p + 16, camera.proj_matrix) &&
                    std::equal(s.mv, s.mv + 16, camera.model_matrix));
        EXPECT_TRUE(std::equal(s.viewport, s.viewport + 4, camera.viewport));
        GLint mode = 0;
        glGetIntegerv(GL_MATRIX_MODE, &mode);
        EXPECT_EQ(mode, GL_MODELVIEW);
    }
}

TEST_F(Matrices, ModelViewIsTheViewOrTheFixedMatrix)
{
    Camera camera;
    camera.pos = Vector(1, 2, 3);
    camera.target = Vector(1, 2, -4);
    camera.up = Vector(0, 1, 0);
    camera.m[12] = 7;
    camera.Setup(200, 100, 0, 0, 0, 0);
    EXPECT_EQ(column(State().mv, 3), QVector3D(-1, -2, -3));
    EXPECT_EQ(column(State().mv, 1), QVector3D(0, 1, 0));
    camera.target = Vector(4, 2, 3);
    camera.up = Vector(0, 0, 1);
    camera.Setup(200, 100, 0, 0, 0, 0);
    EXPECT_EQ(column(State().mv, 0), QVector3D(0, 0, -1)) << "along x";
    EXPECT_EQ(column(State().mv, 2), QVector3D(0, 1, 0)) << "z is up";
    camera.mode = 0;
    camera.Setup(200, 100, 0, 0, 0, 0);
    EXPECT_EQ(State().mv[12], 7);
    glLoadIdentity();
    camera.rot = Vector(90, 90, 30);
    camera.SetupRotation();
    // z turns x to (cos, sin) 30, y that cosine to -z, x that to +y.
    EXPECT_TRUE(
        qFuzzyCompare(column(State().mv, 0) + QVector3D(1, 0, 0), QVector3D(1, 0.8660254f, 0.5f)));
    EXPECT_TRUE(qFuzzyCompare(column(State().mv, 2) + QVector3D(0, 1, 1), QVector3D(1, 1, 1)));
}

TEST_F(Matrices, UnprojectGivesTheRayUnderThePointer)
{
    Camera camera = at(10, 0, 90);
    camera.pos.x = camera.target.x = 1;
    camera.Setup(200, 100, 0, 0, 0, 0);
    ASSERT_EQ(camera.Unproject(100, 50), 1);
    EXPECT_LT((camera.unproj - Vector(0, 0, -1)).length(), 1e-3);
    const Vector first = camera.unproj;
    ASSERT_EQ(camera.Unproject(150, 100), 1);
    EXPECT_LT((camera.unproj - Vector(0.57735f, 0.57735f, -0.57735f)).length(), 1e-3);
    EXPECT_EQ(camera.last_unproj, first);
    EXPECT_TRUE(!camera.vnear) << "of orthographic cameras only";
    camera = at(10, 1);
    camera.vnear = Vector(1, 2, 3);
    camera.Setup(200, 100, 0, 0, 0, 0);
    ASSERT_EQ(camera.Unproject(200, 25), 1);
    EXPECT_LT((camera.unproj - Vector(0, 0, -1)).length(), 1e-4) << "rays are parallel";
    EXPECT_EQ(camera.last_vnear, Vector(1, 2, 3));
    EXPECT_LT((camera.vnear - Vector(20, -5, 10 + camera.farZ)).length(), 0.1);
}

TEST_F(Matrices, UnprojectFailsWithClearedRays)
{
    const struct {
        int ortho, empty;
        float nudged, turned;
    } rows[] = {// the empty side, or a singular projection
                {0, 2, 0, 0},
                {1, 3, 0, 0},
                {0, -1, 0.0001f, 1},
                {1, -1, 0, 0}};
    for (const auto &row : rows) {
        Camera camera = at(10, row.ortho);
        camera.Setup(200, 100, 0, 0, 0, 0);
        if (row.empty >= 0)
            camera.viewport[row.empty] = 0;
        else
            std::fill_n(camera.proj_matrix, 16, 0.0);
        camera.unproj = camera.last_unproj = camera.d_rot = Vector(1, 0, 0);
        camera.vnear = Vector(1, 2, 3);
        EXPECT_EQ(camera.Unproject(100, 50), 0);
        EXPECT_TRUE(!camera.unproj && !camera.last_unproj);
        EXPECT_FLOAT_EQ(camera.rot.y, row.nudged);
        EXPECT_EQ(camera.rot.x, row.turned) << "one update with the velocities";
        EXPECT_EQ(camera.vnear, Vector(1, 2, 3));
    }
}

TEST_F(Matrices, OfTheViewportHaveItsEdges)
{
    const std::pair<int, QRectF> rows[] = {
        // left, bottom, width and signed height of 200 x 100
        {Viewport::AlignCenter, {-100, -50, 200, 100}},
        {Viewport::AlignLeft | Viewport::AlignTop, {0, 99, 199, -99}},
        {Viewport::AlignBottom, {0, 0, 199, 99}},
        {Viewport::AlignVCenter | Viewport::AlignBottom, {0, -50, 199, 100}},
        {Viewport::AlignHCenter, {-100, 99, 200, -99}}};
    for (const auto &[align, edges] : rows) {
        Viewport v;
        v.align = align;
        v.scale = Vector(2, 4, 5);
        v.pos = Vector(10, 20, 30);
        const auto shows = [&, align = align](float pw, float ph, const QRectF &expected) {
            at(1, 0);
            v.Setup(200, 100, 50, 50, 25, pw, ph);
            const QRectF r = State().shown();
            EXPECT_NEAR(r.x(), expected.x(), 1e-3) << align;
            EXPECT_NEAR(r.y(), expected.y(), 1e-3) << align;
            EXPECT_NEAR(r.width(), expected.width(), 1e-3) << align;
            EXPECT_NEAR(r.height(), expected.height(), 1e-3) << align;
        };
        shows(100, 50, QRectF(edges.x(), edges.y(), edges.width() / 2, edges.height() / 2));
        shows(100, 0, edges);
        shows(0, 50, edges);
        const State s;
        EXPECT_NEAR(s.p[10], -0.02, 1e-6);
        EXPECT_NEAR(s.p[14], 0, 1e-6);
        EXPECT_EQ(column(s.mv, 0) + column(s.mv, 1) + column(s.mv, 2), QVector3D(2, 4, 5));
        EXPECT_EQ(column(s.mv, 3), QVector3D(-20, -80, -150));
        EXPECT_TRUE(std::equal(s.viewport, s.viewport + 4, v.viewport));
        const float up = edges.height() < 0 ? -1 : 1;
        EXPECT_EQ(v.Left(200, 3), float(edges.left() + 3));
        EXPECT_EQ(v.Right(200, 3), float(edges.right() - 3));
        EXPECT_EQ(v.Bottom(100, 3), float(edges.top() + 3 * up));
        EXPECT_EQ(v.Top(100, 3), float(edges.bottom() - 3 * up));
        EXPECT_EQ(v.Width(200), float(edges.width()));
        EXPECT_EQ(v.Height(100), float(edges.height() * up));
    }
}

TEST_F(Matrices, LightsAreHandedOver)
{
    Light light(GL_LIGHT2, 'x');
    light.position = {1, 2, 3, 1};
    light.ambient = {0.25f, 0, 0, 1};
    light.diffuse = {0.5f, 0, 0, 1};
    light.specular = {0.75f, 0, 0, 1};
    glLoadIdentity();
    light.Reposition();
    light.Init();
    EXPECT_TRUE(glIsEnabled(GL_LIGHT2));
    QString values;
    for (const GLenum part : {GL_POSITION, GL_AMBIENT, GL_DIFFUSE, GL_SPECULAR}) {
        GLfloat c[4];
        glGetLightfv(GL_LIGHT2, part, c);
        values += QString("%1,%2,%3 ").arg(c[0]).arg(c[1]).arg(c[2]);
    }
    EXPECT_EQ(values, "1,2,3 0.25,0,0 0.5,0,0 0.75,0,0 ");
}

} // namespace
} // namespace GL
