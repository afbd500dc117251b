// SPDX-License-Identifier: MIT
// The multi-view's passes over a grid of two rows: what is emitted, with which GL state and pixels.
#include "tests/GL/glmultiwidget_sheet.h"

#include <GL/glu.h>

namespace {

struct GateCase {
    const char *name;
    int tile; // 0: the view
    const char *property;
    QVariant value;
    const char *frame; // of two tiles, with the pointer over the second
    friend void PrintTo(const GateCase &c, std::ostream *out) { *out << c.name; }
};

const char *const everything = "Update1 Update2 Pick3D2 Pick2D2 Draw DrawBG Draw3D1 Draw2D1 "
                               "Draw3D2 Draw2D2 DrawFG";
const char *const noDraw3D = "Update1 Update2 Pick3D2 Pick2D2 Draw DrawBG Draw2D1 Draw2D2 DrawFG";
const char *const withoutTile2 = "Update1 Draw DrawBG Draw3D1 Draw2D1 DrawFG";
const GateCase gateCases[] = {
    {"Everything", 0, "visible", true, everything},
    {"ViewHidden", 0, "visible", false, ""},
    {"ViewDisabledPaintsOnly", 0, "enabled", false,
     "Draw DrawBG Draw3D1 Draw2D1 Draw3D2 Draw2D2 DrawFG"},
    {"NoBackground", 0, "drawbg", false,
     "Update1 Update2 Pick3D2 Pick2D2 Draw Draw3D1 Draw2D1 Draw3D2 Draw2D2 DrawFG"},
    {"NoForeground", 0, "drawfg", QVariant(),
     "Update1 Update2 Pick3D2 Pick2D2 Draw DrawBG Draw3D1 Draw2D1 Draw3D2 Draw2D2"},
    {"ViewNo3D", 0, "draw3d", false, noDraw3D},
    {"ViewNo3DByAValueThatIsNoBool", 0, "draw3d", QSize(1, 1), noDraw3D},
    {"ViewNo2D", 0, "draw2d", false,
     "Update1 Update2 Pick3D2 Pick2D2 Draw DrawBG Draw3D1 Draw3D2 DrawFG"},
    {"ViewNoPick3D", 0, "pick3d", false,
     "Update1 Update2 Pick2D2 Draw DrawBG Draw3D1 Draw2D1 Draw3D2 Draw2D2 DrawFG"},
    {"ViewNoPick2D", 0, "pick2d", false,
     "Update1 Update2 Pick3D2 Draw DrawBG Draw3D1 Draw2D1 Draw3D2 Draw2D2 DrawFG"},
    {"TileHidden", 2, "visible", false, withoutTile2},
    {"TileHiddenByAValueThatIsNoBool", 2, "visible", QSize(1, 1), withoutTile2},
    {"TileDisabledIsDrawnAndPicked", 2, "enabled", false, everything},
    {"TileNo3D", 2, "draw3d", false,
     "Update1 Update2 Pick3D2 Pick2D2 Draw DrawBG Draw3D1 Draw2D1 Draw2D2 DrawFG"},
    {"TileNo2D", 2, "draw2d", false,
     "Update1 Update2 Pick3D2 Pick2D2 Draw DrawBG Draw3D1 Draw2D1 Draw3D2 DrawFG"},
    {"TileNoPick3D", 2, "pick3d", false,
     "Update1 Update2 Pick2D2 Draw DrawBG Draw3D1 Draw2D1 Draw3D2 Draw2D2 DrawFG"},
    {"TileNoPick2D", 2, "pick2d", false,
     "Update1 Update2 Pick3D2 Draw DrawBG Draw3D1 Draw2D1 Draw3D2 Draw2D2 DrawFG"},
};

class Gates : public testing::TestWithParam<GateCase> {};

TEST_P(Gates, LetSignalsThrough)
{
    Sheet s(2);
    ASSERT_TRUE(s.show());
    s.point(s.centre(2));
    QObject *object = GetParam().tile ? static_cast<QObject *>(s.tile(2)) : s.view;
    object->setProperty(GetParam().property, GetParam().value);
    s.log.take();
    s.frame();
    EXPECT_EQ(s.log.take(), GetParam().frame);
}

INSTANTIATE_TEST_SUITE_P(Rows, Gates, testing::ValuesIn(gateCases), rowName());

std::string glViewport()
{
    GLint v[4];
    glGetIntegerv(GL_VIEWPORT, v);
    return QString::asprintf("%d,%d,%dx%d", v[0], v[1], v[2], v[3]).toStdString();
}

TEST(Passes, EachSignalHasItsRectangle)
{
    Sheet s(4);
    s.view->setProperty("padding", 3);
    s.view->setProperty("header", 10);
    s.view->setProperty("footer", 5);
    ASSERT_TRUE(s.show());
    s.point(s.centre(4));
    std::string seen;
    s.log.on = [&](const std::string &name, GLW *w) {
        if (w->id() == 1 || w->id() == 4 || name == "DrawBG" || name == "DrawFG")
            seen += name + ' ' + glViewport() + '\n';
    };
    s.frame();
    EXPECT_EQ(seen, "Update 5,209,291x176\nUpdate 304,10,291x176\nPick3D 304,10,291x176\n"
                    "Pick2D 304,10,291x176\nDrawBG 0,0,600x400\nDraw3D 5,209,291x176\n"
                    "Draw2D 5,209,291x176\nDraw3D 304,10,291x176\nDraw2D 304,10,291x176\n"
                    "DrawFG 0,0,600x400\n");
}

TEST(Passes, InitOnceAddedAndOnceTheWindowHasItsContext)
{
    for (const bool enabled : {true, false}) {
        Sheet s(2);
        EXPECT_EQ(s.log.take(), "Init1 added1 Init2 added2");
        s.view->setProperty("enabled", enabled);
        ASSERT_TRUE(s.show());
        EXPECT_EQ(s.log.take().substr(0, 11), enabled ? "Init1 Init2" : "Draw DrawBG");
        EXPECT_EQ(s.tile(2)->gl, s.window) << "tiles added before the window was known";
        EXPECT_EQ(s.window->RemoveGLWidget(s.view), true);
        s.log.take();
        s.view->pickGL();
        s.view->paintGL();
        EXPECT_EQ(s.log.take(), "") << "without a window";
    }
}

TEST(Passes, PickingMovesCamerasLimitsZoomsAndLaysOut)
{
    Sheet s(3);
    ASSERT_TRUE(s.show());
    s.tile(3)->setProperty("visible", false);
    for (int id : {1, 3}) {
        s.tile(id)->camera.d_rot.y = 1;
        s.tile(id)->viewport.scale = Vector(0.0001f, 5, 2e7f);
    }
    s.view->AddTile(4);
    s.window->makeCurrent();
    s.view->paintGL();
    EXPECT_EQ(s.tile(4)->orect, QRectF(0, 0, 1, 1)) << "painting lays nothing out";
    float atUpdate = 0;
    s.log.on = [&](const std::string &name, GLW *w) {
        if (name == "Update" && w->id() == 1)
            atUpdate = w->camera.rot.y;
    };
    s.view->pickGL();
    EXPECT_EQ(s.tile(4)->orect, QRectF(400, 2, 197, 396));
    EXPECT_EQ(s.view->updateLayout, 0);
    EXPECT_EQ(atUpdate, 1);
    EXPECT_EQ(s.tile(3)->camera.rot.y, 0);
    EXPECT_TRUE(s.tile(1)->viewport.scale == Vector(0.001f, 5, 1e7f));
    EXPECT_TRUE(s.tile(3)->viewport.scale == Vector(0.0001f, 5, 2e7f));
}

struct Matrices {
    GLdouble model[16], projection[16];
    GLint viewport[4];
    static Matrices current()
    {
        Matrices m;
        glGetDoublev(GL_MODELVIEW_MATRIX, m.model);
        glGetDoublev(GL_PROJECTION_MATRIX, m.projection);
        glGetIntegerv(GL_VIEWPORT, m.viewport);
        return m;
    }
    /// Where in its viewport, 0 to 1 from the lower left, @p drawn's pixel (x, y) lies here.
    QPointF place(const Matrices &drawn, double x, double y) const
    {
        GLdouble p[3], q[3];
        gluUnProject(x, y, 0.5, drawn.model, drawn.projection, drawn.viewport, p, p + 1, p + 2);
        gluProject(p[0], p[1], p[2], model, projection, viewport, q, q + 1, q + 2);
        return QPointF((q[0] - viewport[0]) / viewport[2], (q[1] - viewport[1]) / viewport[3]);
    }
};

struct RegionCase {
    const char *name;
    int area;
    QPoint corner; // of the dragged rectangle; window pixels from the bottom, as below
    QRectF region; // that fills the pick projection
    friend void PrintTo(const RegionCase &c, std::ostream *out) { *out << c.name; }
};

// The pointer is at (450, 100), in the fourth of four tiles.
const RegionCase regionCases[] = {
    {"Click", 0, {9, 9}, {448, 98, 4, 4}},
    {"Area", 1, {420, 161}, {420, 99.5, 30, 61}},
    {"AreaWithoutWidth", 7, {450, 120}, {449.5, 100, 1, 20}},
};

class Regions : public testing::TestWithParam<RegionCase> {};

TEST_P(Regions, FillThePickProjection)
{
    Sheet s(4);
    ASSERT_TRUE(s.show());
    s.tile(4)->camera.radius = 5;
    Mouse &mouse = s.window->mouse;
    mouse.x = 450;
    mouse.y = 100;
    mouse.area = GetParam().area;
    mouse.x0 = GetParam().corner.x();
    mouse.y0 = GetParam().corner.y();
    std::map<std::string, Matrices> seen;
    s.log.on = [&](const std::string &name, GLW *) { seen[name] = Matrices::current(); };
    s.frame();
    for (const auto &[pick, draw] :
         {std::pair("Pick3D", "Draw3D"), std::pair("Pick2D", "Draw2D")}) {
        ASSERT_EQ(seen.count(pick), 1u);
        const QRectF r = GetParam().region;
        const QPointF low = seen[pick].place(seen[draw], r.left(), r.top());
        const QPointF high = seen[pick].place(seen[draw], r.right(), r.bottom());
        EXPECT_NEAR(low.x(), 0, 1e-3) << pick;
        EXPECT_NEAR(low.y(), 0, 1e-3) << pick;
        EXPECT_NEAR(high.x(), 1, 1e-3) << pick;
        EXPECT_NEAR(high.y(), 1, 1e-3) << pick;
    }
}

INSTANTIATE_TEST_SUITE_P(Rows, Regions, testing::ValuesIn(regionCases), rowName());

TEST(Passes, LightsOfATileStandInItsWorld)
{
    Sheet s(2);
    s.tile(2)->lights.emplace_back(GL_LIGHT3, 'w');
    s.tile(2)->lights[0].position = GL::Light::vector(1, 2, 3, 1);
    s.tile(2)->camera.radius = 5; // the eye: 5 towards the viewer from the origin
    ASSERT_TRUE(s.show());
    s.point(s.centre(2));
    s.window->makeCurrent();
    glDisable(GL_LIGHTING);
    std::map<std::string, bool> lit;
    GLfloat eye[4] = {};
    s.log.on = [&](const std::string &name, GLW *w) {
        if (name == "Update")
            glEnable(GL_LIGHTING);
        if (name == "Draw")
            glDisable(GL_LIGHTING);
        lit[name + (w == s.view ? "" : std::to_string(w->id()))] = glIsEnabled(GL_LIGHTING);
        if (name == "Draw3D" && w->id() == 2)
            glGetLightfv(GL_LIGHT3, GL_POSITION, eye);
    };
    s.frame();
    EXPECT_FALSE(lit.at("Pick3D2"));
    EXPECT_FALSE(lit.at("Pick2D2"));
    EXPECT_FALSE(lit.at("Draw3D1"));
    EXPECT_TRUE(lit.at("Draw3D2"));
    EXPECT_TRUE(lit.at("Draw2D2"));
    EXPECT_NEAR(eye[0], 1, 1e-4);
    EXPECT_NEAR(eye[1], 2, 1e-4);
    EXPECT_NEAR(eye[2], -2, 1e-4);
}

/// The tile whose colour stands at a point of the window counted from the top; 0 for none.
int drawnAt(QPoint p)
{
    GLubyte c[4];
    glReadPixels(p.x(), 400 - 1 - p.y(), 1, 1, GL_RGBA, GL_UNSIGNED_BYTE, c);
    return c[0] / 40;
}

TEST(Passes, DrawnPickedHitAndClickedAreOneTile)
{
    Sheet s(6);
    s.view->SetOrder({6, 2});
    s.view->setProperty("header", 20);
    ASSERT_TRUE(s.show());
    const QList<int> placed{6, 2, 1, 3, 4, 5};
    for (int i = 0; i < 6; ++i) {
        const QPoint p(100 + 200 * (i % 3), 60 + 200 * (i / 3));
        std::vector<int> drawn;
        int picked = 0;
        while (glGetError())
            ;
        s.log.on = [&](const std::string &name, GLW *w) {
            if (name == "Pick2D")
                picked = w->id();
            if (name == "Draw2D") {
                glColor3ub(GLubyte(40 * w->id() + 10), 0, 0);
                glRectf(0, 0, float(w->width() - 1), float(w->height() / 2));
            }
            if (name == "DrawFG") {
                EXPECT_EQ(glGetError(), GLenum(GL_NO_ERROR));
                drawn = {drawnAt(p), drawnAt(QPoint(p.x(), p.y() + 110)),
                         drawnAt(QPoint(199 * (i % 3), p.y())),
                         drawnAt(QPoint(p.x(), 10 + 200 * (i / 3)))};
            }
        };
        s.point(p);
        s.frame();
        EXPECT_EQ(drawn, (std::vector<int>{placed[i], 0, 0, 0})) << "above, below, gap, header";
        EXPECT_EQ(picked, placed[i]);
        EXPECT_EQ(s.view->hit(p.x(), p.y()), s.tile(placed[i]));
        QTest::mouseClick(s.window->windowHandle(), Qt::LeftButton, {}, p);
        EXPECT_EQ(s.view->GetSelected(), QList<int>{placed[i]});
    }
    s.log.on = nullptr;
    s.point(QPoint(5, 15));
    s.log.take();
    s.frame();
    EXPECT_NE(s.log.take().find("Pick2D6"), std::string::npos) << "in the header of its tile";
    EXPECT_EQ(s.view->hit(5, 15), s.tile(6)) << "in the header";
    EXPECT_EQ(s.view->hit(200, 100), nullptr) << "between the first two";
    EXPECT_EQ(s.view->hit(1, 1), nullptr) << "the border";
    s.tile(6)->setProperty("enabled", false);
    EXPECT_EQ(s.view->hit(5, 15), nullptr);
}

} // namespace
