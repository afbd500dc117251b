// SPDX-License-Identifier: MIT
// What a scene object and a tile do in a frame: signals, matrices, lights, pick regions.
#include <QPainter>
#include <QRegularExpression>

#include "tests/GL/fixture.h"

namespace {

// What is missing from a frame while a property is not true. There are a scene object a, and a view
// with the tiles 1 and 2, the pointer over the second.
const char *const gateRows = R"(
Enabled: a enabled => Pick.*:a
Visible: a visible => .*:a
Pick3D: a pick3d => Pick3D:a
Pick2D: a pick2d => Pick2D:a
Draw3D: a draw3d => Draw3D:a
Draw2D: a draw2d => Draw2D:a
ViewDisabledPaints: view enabled => Update.*|Pick.*:2
ViewHidden: view visible => .*:[12]|.*:view|DrawEvent
Background: view drawbg => DrawBG.*
Foreground: view drawfg => DrawFG.*
ViewPick3D: view pick3d => Pick3D:2
ViewPick2D: view pick2d => Pick2D:2
ViewDraw3D: view draw3d => Draw3D:[12]
ViewDraw2D: view draw2d => Draw2D:[12]
TileDisabledIsPickedAndDrawn: 2 enabled => -
TileHidden: 2 visible => .*:2
TilePick3D: 2 pick3d => Pick3D:2
TilePick2D: 2 pick2d => Pick2D:2
TileDraw3D: 2 draw3d => Draw3D:2
TileDraw2D: 2 draw2d => Draw2D:2
)";

using Passes = WindowTest;

TEST_F(Passes, AreLetThroughByProperties)
{
    run("add a; view 2; frame; point 150,50");
    const QString all =
        " Pick3D:a Pick2D:a Update:1 Update:2 Pick3D:2 Pick2D:2 Draw3D:a Draw2D:a DrawEvent "
        "DrawBG:view Draw3D:1 "
        "Draw2D:1 Draw3D:2 Draw2D:2 DrawFG:view PaintForeground:a PaintForeground:view";
    for (const Script &row : Script::table(gateRows))
        for (const char *off : {"false", "none", "5x5"}) {
            EXPECT_EQ(' ' + run("frame"), all);
            const QString rest = QString(all).remove(
                QRegularExpression(" (" + QString(row.told).replace(".", "\\S") + ")(?= |$)"));
            EXPECT_EQ(' ' + run("set " + row.script + ' ' + off + "; frame"),
                      rest.isEmpty() ? " " : rest)
                << row.name.toStdString();
            run("set " + row.script + " true");
        }
    GLWidget alone(nullptr, "alone"), *v = view();
    window->RemoveGLWidget(v);
    host.hear(&alone);
    alone.camera.d_rot = Vector(1, 0, 0);
    for (GLWidget *o : {&alone, v}) {
        for (const auto pass : {&GLWidget::pickGL, &GLWidget::paintGL, &GLWidget::paintForeground,
                                &GLWidget::Init2D, &GLWidget::Init3D})
            (o->*pass)();
        o->InitPick2D(window->mouse);
        o->InitPick3D(window->mouse);
    }
    view()->paintEvent(nullptr);
    EXPECT_EQ(host.take(), "") << "without a window";
    EXPECT_EQ(alone.camera.rot.x, 0);
    alone.initializeGL();
    EXPECT_EQ(host.take(), "Init:alone");
}

/// A scene object, or a tile of its own view, named a.
class Drawn : public WindowTest, public testing::WithParamInterface<const char *> {
protected:
    Drawn()
    {
        run(*GetParam() == 'S' ? "add a" : "view 1; set 1 objectName a; frame");
        o = object("a");
        for (const char *entry : {"Pick3D", "Pick2D", "Draw3D", "Draw2D"})
            host.on[entry + QString(":a")] = [=] {
                seen[entry] = State();
                lit += glIsEnabled(GL_LIGHTING) ? '1' : '0';
            };
    }
    std::map<QString, State> seen;
    QString lit;
    GLW *o = nullptr;
};

INSTANTIATE_TEST_SUITE_P(Rows, Drawn, testing::Values("SceneObject", "Tile"),
                         [](const auto &row) { return std::string(row.param); });

TEST_P(Drawn, HasItsRectangleAndMatrices)
{
    o->setGeometry(QRectF(0.5, -0.25, 0.333, 0.25));
    o->viewport.scale = Vector(1e9f, 1, 1);
    o->camera.d_rot = Vector(0, 1, 0);
    run("frame");
    const State deep = seen["Draw3D"], flat = seen["Draw2D"];
    EXPECT_EQ(deep.rect(), QRect(100, 25, 66, 25));
    EXPECT_EQ(flat.rect(), QRect(100, 25, 66, 25));
    EXPECT_NEAR(deep.p[5] / deep.p[0], 66.0 / 25, 1e-4);
    EXPECT_NEAR(std::abs(flat.shown().height()), view() ? 24 : 25, 1e-3);
    EXPECT_NEAR(flat.shown().width(), view() ? 65 : 66, 1e-3);
    EXPECT_NEAR(flat.p[10], -0.01, 1e-6) << "depths to 100";
    EXPECT_EQ(flat.mv[0], 1e7f) << "clamped by the pick pass";
    EXPECT_EQ(o->camera.rot.y, 1) << "one step per frame";
    EXPECT_NEAR(deep.mv[0], std::cos(0.0174533), 1e-6) << "taken before it is drawn";
}

TEST_P(Drawn, LightsStayOnForTheFlatPassAndAreOffForPicking)
{
    o->lights = {GL::Light(GL_LIGHT0, 'a'), GL::Light(GL_LIGHT1, 'b')};
    o->lights[0].position = {0, 0, 5, 1};
    o->lights[1].position = {1, 0, 0, 0};
    o->camera.radius = 10;
    run("point 100,50; frame; frame");
    EXPECT_EQ(lit, "00110011");
    GLfloat eye[2][4];
    glGetLightfv(GL_LIGHT0, GL_POSITION, eye[0]);
    glGetLightfv(GL_LIGHT1, GL_POSITION, eye[1]);
    EXPECT_NEAR(eye[0][2], -5, 1e-4) << "5 in front of the eye at 10";
    EXPECT_NEAR(eye[1][0], 1, 1e-4);
    o->lights.clear();
    const auto unlit = host.on["Pick2D:a"];
    host.on["Pick3D:a"] = [] { glEnable(GL_LIGHTING); };
    host.on["Pick2D:a"] = [&] { unlit(), glEnable(GL_LIGHTING); };
    EXPECT_EQ((lit.clear(), run("frame"), lit), "011")
        << "without lights the state is left as it is";
    host.on["Pick2D:a"] = [&] { unlit(), glDisable(GL_LIGHTING); };
    EXPECT_EQ((lit.clear(), run("frame"), lit), "000");
}

const struct {
    const char *name;
    int area;
    const char *points; // of the record
    QRectF region;      // left, bottom, width and height
} regions[] = {
    {"Click", 0, "120,40 7,7", {118, 38, 4, 4}},
    {"AreaWithoutWidth", 1, "110,30 110,10", {109.5, 10, 1, 20}},
    {"AreaWithoutHeight", 7, "150,30 110,30", {110, 29.5, 40, 1}},
    {"AreaUpwardsAndLeft", 1, "110,10 131,40", {109.5, 10, 21, 30}},
    {"CentreTruncatesTowardsZero", 1, "3,5 -6,-10", {-5.5, -9.5, 9, 15}},
};

TEST_P(Drawn, PickRegionIsWhatThePickProjectionShows)
{
    o->setGeometry(QRectF(0.5, 0, 0.5, 0.5));
    o->orect = QRectF(0, 0, 200, 200); // the whole window is its cell
    o->camera.ortho = 1;
    o->camera.radius = 50;
    run("frame");
    for (const auto &[name, area, points, region] : regions) {
        window->mouse.area = area;
        seen.clear();
        run(QString("point %1; frame").arg(points));
        for (const QString kind : {"3D", "2D"}) {
            SCOPED_TRACE(name + kind.toStdString());
            ASSERT_EQ(seen.count("Pick" + kind), 1u);
            const State pick = seen["Pick" + kind], draw = seen["Draw" + kind];
            const double sx = draw.rect().width() / draw.shown().width(),
                         sy = draw.rect().height() / draw.shown().height();
            EXPECT_EQ(pick.rect(), draw.rect());
            EXPECT_NEAR(draw.rect().x() + (pick.shown().x() - draw.shown().x()) * sx, region.x(),
                        1e-2);
            EXPECT_NEAR(draw.rect().y() + (pick.shown().y() - draw.shown().y()) * sy, region.y(),
                        1e-2);
            EXPECT_NEAR(pick.shown().width() * sx, region.width(), 1e-2);
            EXPECT_NEAR(pick.shown().height() * sy, region.height(), 1e-2);
            EXPECT_NEAR(pick.p[10], draw.p[10], 1e-9);
        }
    }
}

TEST_P(Drawn, IsInitialisedAgainInANewContext)
{
    host.hear(window);
    const QString begun = run("context; frame");
    EXPECT_TRUE(begun.startsWith("Init:a Resized:200,100 ")) << begun.toStdString();
    EXPECT_FALSE(run("frame").contains("Init"));
    if (view()) {
        EXPECT_TRUE(run("set view enabled false; context; frame").startsWith("Resized:200,100 "));
    }
}

TEST_F(Passes, PixelsAreClearedDrawnInTheRectangleAndPaintedOver)
{
    GLWidget *a = add("a", QRectF(0.5, 0, 0.5, 0.5));
    QObject::connect(a, &GLWidget::PaintForeground, [](GLW *, QPainter *painter) {
        painter->fillRect(120, 20, 10, 10, QColor(0, 0, 255));
    });
    for (const float depth : {-0.5f, 0.5f}) { // the latter is farther, but the frame before is gone
        host.on["Draw2D:a"] = [depth] {
            glPushAttrib(GL_ALL_ATTRIB_BITS);
            glEnable(GL_DEPTH_TEST);
            glColor3f(1, 0, 0);
            glTranslatef(0, 0, 100 * depth);
            glRectf(-50, -25, 50, 25);
            glPopAttrib();
        };
        frame();
    }
    EXPECT_EQ(pixel(110, 40), QColor(255, 0, 0)) << "the upper right quarter";
    EXPECT_EQ(pixel(110, 60), QColor(0, 0, 0)) << "below it";
    EXPECT_EQ(pixel(90, 40), QColor(0, 0, 0)) << "left of it";
    EXPECT_EQ(pixel(125, 25), QColor(0, 0, 255)) << "from the top left";
    QObject::connect(a, &GLWidget::PaintForeground,
                     [](GLW *, QPainter *painter) { painter->end(); });
    frame(); // a host may end it itself
    QRect seen;
    host.on["Pick3D:a"] = [&] { seen = State().rect(); };
    host.on["PaintForeground:a"] = [&] { a->setGeometry(QRectF(0, 0, 7, 7)); };
    run("frame; set a visible false; set a visible true; frame");
    EXPECT_EQ(seen, QRect(100, 50, 100, 50)) << "the painting's, whoever paints text";
    run("set a visible false; frame");
    EXPECT_EQ(pixel(110, 40), QColor(0, 0, 0));
}

TEST_F(Passes, OfTheViewHaveItsRectangleAndMatricesAndTilesTheirCells)
{
    window->resize(140, 100);
    run("view 4; set view padding 3; set view header 10; set view footer 5; frame; point 110,20");
    QString seen;
    host.each = [&](const QString &word) {
        const State s;
        if (!word.startsWith("PaintForeground"))
            seen += word + ' ' + wordOf(QRectF(s.rect())) +
                    (word.endsWith("view") ? '=' + wordOf(s.shown()) : "") + '\n';
    };
    glViewport(0, 0, 7, 7);
    frame();
    EXPECT_EQ(seen, R"(Update:1 5,59,61,26
Update:2 74,59,61,26
Update:3 5,10,61,26
Update:4 74,10,61,26
Pick3D:4 74,10,61,26
Pick2D:4 74,10,61,26
DrawEvent 74,10,61,26
DrawBG:view 0,0,140,100=0,99,139,-99
Draw3D:1 5,59,61,26
Draw2D:1 5,59,61,26
Draw3D:2 74,59,61,26
Draw2D:2 74,59,61,26
Draw3D:3 5,10,61,26
Draw2D:3 5,10,61,26
Draw3D:4 74,10,61,26
Draw2D:4 74,10,61,26
DrawFG:view 0,0,140,100=0,99,139,-99
)");
    host.each = nullptr;
    host.take();
    window->doneCurrent();
    view()->paintEvent(nullptr);
    EXPECT_EQ(QGLContext::currentContext(), window->context());
    EXPECT_TRUE(host.take().startsWith("DrawEvent DrawBG:view Draw3D:1")) << "at once";
}

const char *const layoutScripts = R"(
PaintingDoesNot: set view enabled false; view.AddTile 3; frame; cells; stale => Init:3 TileAdded:3 3 DrawEvent DrawBG:view Draw3D:1 Draw2D:1 Draw3D:2 Draw2D:2 Draw3D:3 Draw2D:3 DrawFG:view PaintForeground:view 1:2,2,97,96 2:101,2,97,96 +1
PickingDoes: view.AddTile 3; view.SetVisible [1] false; set view visible 0; frame; set view visible 1; set view draw2d 0; frame; cells; stale => Init:3 TileAdded:3 3 TileResized:100,100 Update:2 Pick3D:2 Pick2D:2 Update:3 DrawEvent DrawBG:view Draw3D:2 Draw3D:3 DrawFG:view PaintForeground:view 1:2,2,97,96 2:2,2,97,96 3:101,2,97,96 +0
AskedForEveryTile: on Update:1 set view enabled false; frame => Update:1 Pick3D:1 Pick2D:1 DrawEvent DrawBG:view Draw3D:1 Draw2D:1 Draw3D:2 Draw2D:2 DrawFG:view PaintForeground:view
)";
SCRIPTS(LayingOut, WindowTest, "view 2; frame; point 5,50", layoutScripts)

const struct {
    QRectF set; // by the host; what is 0 it leaves
    QRectF expected;
} ranges[] = {
    {{0, 0, 0, 0}, {0, 10, 3680, -20}},      {{5, 0, 45, 0}, {5, 10, 45, -20}},
    {{-45, 0, 45, 0}, {-45, 10, 3725, -20}}, {{5, 3, 45, 4}, {5, 3, 45, 4}},
    {{5, 3, 45, 0}, {5, 10, 45, -20}},       {{5, 0, 45, 4}, {5, 10, 45, -20}},
};

TEST_F(Passes, QuestionsToTheHostHaveAnswersWithoutOne)
{
    GLWidget *a = add("a");
    QRectF set;
    QObject::connect(a, qOverload<QRectF *, int>(&GLWidget::Range2D), [&](QRectF *r) {
        r->setX(set.x());
        r->setWidth(set.width());
        if (set.y() != 0)
            r->setTop(set.y()); // the bottom stays
        if (set.height() != 0)
            r->setBottom(set.y() + set.height());
    });
    for (const auto &row : ranges) {
        set = row.set;
        EXPECT_EQ(a->Range2D(7), row.expected);
    }
    run("point 150,60");
    EXPECT_EQ(a->NearestDataPos(), QVector3D(50, 10, 0)) << "under the pointer";
    QVector3D from;
    QObject::connect(a, qOverload<QVector3D *>(&GLWidget::NearestDataPos),
                     [&](QVector3D *v) { from = std::exchange(*v, QVector3D(1, 2, 3)); });
    EXPECT_EQ(a->NearestDataPos(), QVector3D(1, 2, 3));
    EXPECT_EQ(from, QVector3D(50, 10, 0));
    EXPECT_EQ(GLWidget(nullptr, "b").NearestDataPos(), QVector3D(0, 0, -1));
    QMetaObject::invokeMethod(a, "SetTarget", Q_ARG(Vector, Vector(100, 0, 0)));
    EXPECT_EQ(a->camera.setTarget, Vector(100, 0, 0));
    EXPECT_LT((a->camera.target - Vector(30, 0, 0)).length(), 1e-4);
    EXPECT_TRUE(host.take().startsWith("Range2D:7 Range2D:7"));
}

} // namespace
