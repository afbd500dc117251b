// SPDX-License-Identifier: MIT
// A scene object's passes and its connection to a host.
#include "GL/glwidget.h"

#include <QPainter>

#include "table.h"
#include "testing.h"

namespace {

using Scene = WindowTest;

struct SwitchCase {
    const char *name;
    const char *property;
    const char *log; // of one tick with the property false
};

const SwitchCase switchCases[] = {
    {"Enabled", "enabled", "a.Draw3D a.Draw2D a.PaintForeground"},
    {"Visible", "visible", ""},
    {"Pick3D", "pick3d", "a.Pick2D a.Draw3D a.Draw2D a.PaintForeground"},
    {"Pick2D", "pick2d", "a.Pick3D a.Draw3D a.Draw2D a.PaintForeground"},
    {"Draw3D", "draw3d", "a.Pick3D a.Pick2D a.Draw2D a.PaintForeground"},
    {"Draw2D", "draw2d", "a.Pick3D a.Pick2D a.Draw3D a.PaintForeground"},
};

TABLE(Switches, WindowTest, SwitchCase, switchCases);

TEST_P(Switches, LeaveOutTheirPasses)
{
    GLWidget *a = add("a");
    for (const QVariant &off : {QVariant(false), QVariant()}) {
        a->QObject::setProperty(GetParam().property, off);
        tick();
        EXPECT_EQ(host.take(), GetParam().log);
    }
}

TEST_F(Scene, WithoutAWindowNothingHappens)
{
    GLWidget object(nullptr, "a");
    object.Connect(&host);
    object.camera.d_rot = Vector(1, 0, 0);
    object.pickGL();
    object.paintGL();
    object.paintForeground();
    EXPECT_EQ(host.take(), "");
    EXPECT_EQ(object.camera.rot.x, 0);
    object.initializeGL();
    EXPECT_EQ(host.take(), "a.Init");
    EXPECT_EQ(object.NearestDataPos(), QVector3D(0, 0, -1));
}

TEST_F(Scene, PaintingSetsViewportMatricesAndMouse)
{
    GLWidget *a = add("a", QRectF(0.5, -0.25, 0.333, 0.25));
    window->mouse.update(150, 40, 1, 0, 0);
    window->mouse.update(160, 50, 2, 0, 0);
    GLint viewport[4];
    double aspect = 0, scale = 0;
    Mouse in3D, in2D;
    host.on["a.Draw3D"] = [&] {
        glGetIntegerv(GL_VIEWPORT, viewport);
        GLdouble p[16];
        glGetDoublev(GL_PROJECTION_MATRIX, p);
        aspect = p[5] / p[0];
        in3D = window->mouse;
        a->move(0, 0); // the record is restored all the same
    };
    host.on["a.Draw2D"] = [&] {
        GLdouble p[16];
        glGetDoublev(GL_PROJECTION_MATRIX, p);
        scale = 2 / p[5];
        in2D = window->mouse;
    };
    a->viewport.scale = Vector(1e9f, 1, 1);
    a->camera.d_rot = Vector(0, 1, 0);
    tick();
    EXPECT_EQ((QList<int>{viewport[0], viewport[1], viewport[2], viewport[3]}),
              (QList<int>{100, 25, 66, 25}));
    EXPECT_NEAR(aspect, 66.0 / 25, 1e-4);
    EXPECT_NEAR(scale, 25, 1e-4);
    EXPECT_EQ(QPoint(in3D.x, in3D.y), QPoint(60, 25));
    EXPECT_EQ(QPoint(in2D.x0, in2D.y0), QPoint(50, 15));
    EXPECT_EQ(QPoint(window->mouse.x, window->mouse.y), QPoint(160, 50));
    EXPECT_EQ(QPoint(window->mouse.x0, window->mouse.y0), QPoint(150, 40));
    EXPECT_EQ(a->viewport.scale.x, 1e7f) << "clamped by the pick pass";
    EXPECT_EQ(a->camera.rot.y, 1) << "one step per frame";
}

TEST_F(Scene, LightsStayOnForTheFlatPassAndAreOffForPicking)
{
    GLWidget *a = add("a");
    GL::Light first(GL_LIGHT0, 'a'), second(GL_LIGHT1, 'b');
    first.position = {0, 0, 5, 1};
    second.position = {1, 0, 0, 0};
    a->lights = {first, second};
    a->camera.radius = 10;
    QStringList lit;
    GLfloat eye[2][4];
    for (const char *entry : {"a.Pick3D", "a.Pick2D", "a.Draw3D", "a.Draw2D"})
        host.on[entry] = [&] { lit << QString::number(glIsEnabled(GL_LIGHTING)); };
    tick();
    EXPECT_EQ(lit.join(""), "0011");
    glGetLightfv(GL_LIGHT0, GL_POSITION, eye[0]);
    glGetLightfv(GL_LIGHT1, GL_POSITION, eye[1]);
    EXPECT_NEAR(eye[0][2], -5, 1e-4) << "5 in front of the eye at 10";
    EXPECT_NEAR(eye[1][0], 1, 1e-4);
    lit.clear();
    tick();
    EXPECT_EQ(lit.join(""), "0011") << "from the frame before, too";
    a->lights.clear();
    host.on["a.Pick2D"] = [] { glEnable(GL_LIGHTING); };
    lit.clear();
    tick();
    EXPECT_EQ(lit.join(""), "011") << "without lights the state is left as it is";
}

struct PickCase {
    const char *name;
    int x, y, x0, y0, area;
    double centreX, centreY, width, height;
};

const PickCase pickCases[] = {
    {"Click", 120, 40, 7, 7, 0, 120, 40, 4, 4},
    {"AreaWithoutWidth", 10, 30, 10, 10, 1, 10, 20, 1, 20},
    {"AreaWithoutHeight", 50, 30, 10, 30, 1, 30, 30, 40, 1},
    {"AreaUpwardsAndLeft", 10, 10, 31, 40, 1, 20, 25, 21, 30},
    {"CentreTruncatesTowardsZero", -3, -5, 0, 0, 1, -1, -2, 3, 5},
};

TABLE(PickRegionTest, WindowTest, PickCase, pickCases);

TEST_P(PickRegionTest, IsWhatThePickProjectionShows)
{
    const PickCase &c = GetParam();
    // A quarter of the window: the region counts in window pixels all the same.
    add("a", QRectF(0.5, 0, 0.5, 0.5));
    glViewport(0, 0, 200, 100);
    window->mouse.x = c.x;
    window->mouse.y = c.y;
    window->mouse.x0 = c.x0;
    window->mouse.y0 = c.y0;
    window->mouse.area = c.area;
    GLdouble flat[16], deep[16];
    host.on["a.Pick3D"] = [&] { glGetDoublev(GL_PROJECTION_MATRIX, deep); };
    host.on["a.Pick2D"] = [&] { glGetDoublev(GL_PROJECTION_MATRIX, flat); };
    window->glwidgets[0]->camera.ortho = 1;
    window->glwidgets[0]->camera.fov = 45;
    window->glwidgets[0]->camera.radius = 50;
    tick();
    // Both projections show the object's 100 x 50 pixels over the whole GL viewport, and the depth
    // one twice of it, before the region is cut out.
    EXPECT_NEAR(2 / flat[0] / 100 * 200, c.width, 1e-3);
    EXPECT_NEAR(2 / flat[5] / 50 * 100, c.height, 1e-3);
    EXPECT_NEAR(100 - flat[12] / flat[0] / 100 * 200, c.centreX, 1e-3);
    EXPECT_NEAR(50 - flat[13] / flat[5] / 50 * 100, c.centreY, 1e-3);
    EXPECT_NEAR(2 / deep[0] / 200 * 200, c.width, 1e-3);
    EXPECT_NEAR(100 - deep[12] / deep[0], c.centreX, 1e-3);
    EXPECT_NEAR(50 - deep[13] / deep[5], c.centreY, 1e-3);
}

TEST_F(Scene, PickingKeepsTheViewportOfTheFrameBefore)
{
    add("a", QRectF(0, 0, 0.5, 0.5));
    GLint viewport[4] = {};
    tick();
    host.on["a.Pick3D"] = [&] { glGetIntegerv(GL_VIEWPORT, viewport); };
    tick();
    EXPECT_EQ((QList<int>{viewport[0], viewport[1], viewport[2], viewport[3]}),
              (QList<int>{0, 50, 100, 50}));
}

/// Answers the scene object's questions, with what the test lays down.
class Data : public QObject {
    Q_OBJECT

public:
    QRectF left{5, 0, 45, 0};
    bool vertical = false;
    int mode = -1;
    QVector3D asked;

public Q_SLOTS:
    void Range2D(QRectF *r, int m)
    {
        mode = m;
        r->setX(left.x());
        r->setWidth(left.width());
        if (vertical) {
            r->setY(3);
            r->setHeight(4);
        }
    }
    void NearestDataPos(QVector3D *v)
    {
        asked = *v;
        *v = QVector3D(1, 2, 3);
    }
    void PaintForeground(GLW *, QPainter *painter)
    {
        painter->fillRect(20, 30, 10, 10, QColor(0, 0, 255));
    }
};

TEST_F(Scene, RangeIsTheHostsWithDefaultsForWhatItLeaves)
{
    GLWidget *a = add("a");
    EXPECT_EQ(a->Range2D(0), QRectF(0, 10, 3680, -20));
    Data data;
    a->Connect(&data);
    EXPECT_EQ(a->Range2D(7), QRectF(5, 10, 45, -20));
    EXPECT_EQ(data.mode, 7);
    data.left = QRectF(-45, 0, 45, 0);
    EXPECT_EQ(a->Range2D(0), QRectF(-45, 10, 3725, -20)) << "a right edge at 0";
    data.vertical = true;
    data.left = QRectF(5, 0, 45, 0);
    EXPECT_EQ(a->Range2D(0), QRectF(5, 3, 45, 4));
}

TEST_F(Scene, NearestPointStartsUnderThePointer)
{
    GLWidget *a = add("a");
    window->mouse.x = 150;
    window->mouse.y = 60;
    EXPECT_EQ(a->NearestDataPos(), QVector3D(50, 10, 0));
    Data data;
    a->Connect(&data);
    EXPECT_EQ(a->NearestDataPos(), QVector3D(1, 2, 3));
    EXPECT_EQ(data.asked, QVector3D(50, 10, 0));
}

TEST_F(Scene, ForegroundIsPaintedOverTheScene)
{
    add("a")->setProperty("draw2d", false);
    Data data;
    window->glwidgets[0]->Connect(&data);
    host.on["a.Draw3D"] = [] {
        glClearColor(0, 1, 0, 1);
        glClear(GL_COLOR_BUFFER_BIT);
        glClearColor(0, 0, 0, 1);
    };
    tick();
    const QImage image = screen();
    EXPECT_EQ(image.pixelColor(25, 35), QColor(0, 0, 255)) << "from the top left";
    EXPECT_EQ(image.pixelColor(35, 35), QColor(0, 255, 0));
    EXPECT_EQ(image.pixelColor(25, 65), QColor(0, 255, 0));
}

TEST_F(Scene, TargetIsAskedForAndApproached)
{
    GLWidget *a = add("a");
    QMetaObject::invokeMethod(a, "SetTarget", Q_ARG(Vector, Vector(100, 0, 0)));
    EXPECT_EQ(a->camera.setTarget, Vector(100, 0, 0));
    EXPECT_LT((a->camera.target - Vector(30, 0, 0)).length(), 1e-4);
}

} // namespace

#include "glwidget_gltest.moc"
