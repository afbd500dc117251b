// SPDX-License-Identifier: MIT
// What a scene object and a tile do in a frame: signals, matrices, lights, pick regions.
#include <QPainter>
#include <QRegularExpression>

#include "tests/support/window.h"

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

TEST_F(WindowTest, PassesAreLetThroughByProperties)
{
    run("add a; view 2; frame; set window at 150,50");
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
                << row.name;
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

// A scene object, or a tile of its own view, named a: what OpenGL has in the four signals of the
// second frame. It has 2 units per pixel in 3D and 1 in 2D, from the centre.
const char *const drawnRows = R"(
RectangleAndMatrices: set a rect 0.5,-0.25,0.333,0.25; set window at 110,30 => 100,25,66,25=-100,-38,16,16,-0.0018588 100,25,66,25=-25,-9.5,4,4,-0.01 100,25,66,25=-132,-50,264,100,-0.0018588 100,25,66,25=-33,-12.5,66,25,-0.01
Click: set window area 0 at 120,40 from 7,7 => 100,50,100,50=-64,-74,8,8,-0.0018588 100,50,100,50=-32,-37,4,4,-0.01 100,50,100,50=-100,-50,200,100,-0.0018588 100,50,100,50=-50,-25,100,50,-0.01
AreaWithoutWidth: set window area 1 at 110,30 from 110,10 => 100,50,100,50=-81,-130,2,40,-0.0018588 100,50,100,50=-40.5,-65,1,20,-0.01
AreaWithoutHeight: set window area 7 at 150,30 from 110,30 => 100,50,100,50=-80,-91,80,2,-0.0018588 100,50,100,50=-40,-45.5,40,1,-0.01
AreaUpwardsAndLeft: set window area 1 at 110,10 from 131,40 => 100,50,100,50=-81,-130,42,60,-0.0018588 100,50,100,50=-40.5,-65,21,30,-0.01
CentreTruncatesTowardsZero: set window area 1 at 3,5 from -6,-10 => 100,50,100,50=-311,-169,18,30,-0.0018588 100,50,100,50=-155.5,-84.5,9,15,-0.01
)";

ROWS(Drawn, WindowTest, drawnRows)
{
    for (const char *kind : {"add a", "view 1; set 1 objectName a; frame"}) {
        run(QString(kind) + "; set a rect 0.5,0,0.5,0.5 orect 0,0,200,200 align 132 ortho 1 fov 45 "
                            "radius 50 scale 1e9,1,1 d_rot 0,1,0; frame");
        run("on Pick3D:a state; on Pick2D:a state; on Draw3D:a state; on Draw2D:a state");
        const QString states =
            QStringList(run(GetParam().script + "; frame; frame").split(' ').filter("=").mid(4))
                .join(' ');
        EXPECT_TRUE(states.startsWith(GetParam().told)) << kind << '\n' << states.toStdString();
        EXPECT_EQ(run("get a scale rot"), "1e+07,1,1 0,3,0") << "clamped, and a step per frame";
        run("delete a; delete view");
    }
}

TEST_F(WindowTest, PassesLightsStayOnForTheFlatPassAndAreOffForPicking)
{
    QString lit;
    const auto note = [&] { lit += glIsEnabled(GL_LIGHTING) ? '1' : '0'; };
    for (const char *kind : {"add a", "view 1; set 1 objectName a; frame"}) {
        run(kind);
        for (const char *word : {"Pick3D:a", "Pick2D:a", "Draw3D:a", "Draw2D:a"})
            host.on[word] = note;
        GLW *o = object("a");
        o->lights = {GL::Light(GL_LIGHT0, 'a'), GL::Light(GL_LIGHT1, 'b')};
        o->lights[0].position = {0, 0, 5, 1};
        o->lights[1].position = {1, 0, 0, 0};
        run("set a radius 10; set window at 100,50; frame; frame");
        EXPECT_EQ(std::exchange(lit, ""), "00110011");
        GLfloat eye[8];
        glGetLightfv(GL_LIGHT0, GL_POSITION, eye), glGetLightfv(GL_LIGHT1, GL_POSITION, eye + 4);
        EXPECT_EQ((Numbers{eye, 8}.text()), "0,0,-5,1,1,0,0,0") << "from the eye at 10";
        o->lights.clear();
        host.on["Pick3D:a"] = [] { glEnable(GL_LIGHTING); };
        host.on["Pick2D:a"] = [&] { note(), glEnable(GL_LIGHTING); };
        run("frame");
        EXPECT_EQ(std::exchange(lit, ""), "011") << "without lights the state is left as it is";
        host.on["Pick2D:a"] = [&] { note(), glDisable(GL_LIGHTING); };
        run("frame; delete a; delete view");
        EXPECT_EQ(std::exchange(lit, ""), "000");
        host.on.clear();
    }
}

const char *const passScripts = R"(
ObjectInANewContext: add a; hear window; context; frame; set a draw3d 0; frame => Init:a Resized:200,100 Pick3D:a Pick2D:a Draw3D:a Draw2D:a PaintForeground:a Pick3D:a Pick2D:a Draw2D:a PaintForeground:a
ViewInANewContext: view 1; hear window; set view visible 0; context; frame; frame => Init:1 Resized:200,100
DisabledViewInANewContext: view 1; hear window; set view enabled 0 visible 0; context; frame => Resized:200,100
MayDeleteViewAndNext: view 2; add a; add b; on Init:1 delete view; on Init:a delete b; context; frame => Init:1 Init:a Pick3D:a Pick2D:a Draw3D:a Draw2D:a PaintForeground:a
MayDeleteItself: add a; on Init:a delete a; context; frame => Init:a
)";
SCRIPTS(InANewContext, WindowTest, "", passScripts)

TEST_F(WindowTest, PassesPixelsAreClearedDrawnInTheRectangleAndPaintedOver)
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
    run("on Pick3D:a state; on PaintForeground:a set a geometry 0,0,7,7; frame");
    EXPECT_TRUE(run("frame").section(' ', 1).startsWith("100,50,100,50=")) << "the painting's";
    run("set a visible false; frame");
    EXPECT_EQ(pixel(110, 40), QColor(0, 0, 0));
}

TEST_F(WindowTest, PassesOfAViewRunAtOnceOnAPaintEvent)
{
    run("view 1; frame");
    window->doneCurrent();
    view()->paintEvent(nullptr);
    EXPECT_EQ(QGLContext::currentContext(), window->context());
    EXPECT_EQ(host.take(), "DrawEvent DrawBG:view Draw3D:1 Draw2D:1 DrawFG:view");
}

const char *const layoutScripts = R"(
CellsAndTheWhole: set view padding 3 header 10 footer 5 draw3d 0 pick3d 0; view.UpdateLayout; set window at 110,20; on Update:1 state; on Pick2D:2 state; on DrawBG:view state; on Draw2D:2 state; on DrawFG:view state; frame => TileResized:100,100 Update:1 5,10,91,75=0,99,199,-99,-0.01 Update:2 Pick2D:2 104,10,91,75=3.956,66.107,3.956,-3.9467,-0.01 DrawEvent DrawBG:view 0,0,200,100=0,99,199,-99,-0.01 Draw2D:1 Draw2D:2 104,10,91,75=0,74,90,-74,-0.01 DrawFG:view 0,0,200,100=0,99,199,-99,-0.01 PaintForeground:view
PaintingDoesNot: set view enabled false; view.AddTile 3; frame; cells; get view stale => Init:3 TileAdded:3 3 DrawEvent DrawBG:view Draw3D:1 Draw2D:1 Draw3D:2 Draw2D:2 Draw3D:3 Draw2D:3 DrawFG:view PaintForeground:view 1:2,2,97,96 2:101,2,97,96 1
PickingDoes: view.AddTile 3; view.SetVisible [1] false; set view visible 0; frame; set view visible 1; set view draw2d 0; frame; cells; get view stale => Init:3 TileAdded:3 3 TileResized:100,100 Update:2 Pick3D:2 Pick2D:2 Update:3 DrawEvent DrawBG:view Draw3D:2 Draw3D:3 DrawFG:view PaintForeground:view 1:2,2,97,96 2:2,2,97,96 3:101,2,97,96 0
AskedForEveryTile: on Update:1 set view enabled false; frame => Update:1 Pick3D:1 Pick2D:1 DrawEvent DrawBG:view Draw3D:1 Draw2D:1 Draw3D:2 Draw2D:2 DrawFG:view PaintForeground:view
)";
SCRIPTS(LayingOut, WindowTest, "view 2; frame; set window at 5,50", layoutScripts)

// What the host sets, what is 0 it leaves, and what becomes of it.
const std::pair<QRectF, QRectF> ranges[] = {
    {{0, 0, 0, 0}, {0, 10, 3680, -20}},      {{5, 0, 45, 0}, {5, 10, 45, -20}},
    {{-45, 0, 45, 0}, {-45, 10, 3725, -20}}, {{5, 3, 45, 4}, {5, 3, 45, 4}},
    {{5, 3, 45, 0}, {5, 10, 45, -20}},       {{5, 0, 45, 4}, {5, 10, 45, -20}},
};

TEST_F(WindowTest, PassesQuestionsToTheHostHaveAnswersWithoutOne)
{
    GLWidget *a = add("a");
    QRectF set;
    QObject::connect(a, qOverload<QRectF *, int>(&GLWidget::Range2D), [&](QRectF *r) {
        if (set.x() != 0)
            r->setX(set.x());
        r->setWidth(set.width());
        if (set.y() != 0)
            r->setTop(set.y()); // the bottom stays
        if (set.height() != 0)
            r->setBottom(set.y() + set.height());
    });
    for (const auto &[given, expected] : ranges) {
        set = given;
        EXPECT_EQ(a->Range2D(7), expected);
    }
    run("set window at 150,60");
    EXPECT_EQ(a->NearestDataPos(), QVector3D(50, 10, 0)) << "under the pointer";
    QVector3D from;
    QObject::connect(a, qOverload<QVector3D *>(&GLWidget::NearestDataPos),
                     [&](QVector3D *v) { from = std::exchange(*v, QVector3D(1, 2, 3)); });
    EXPECT_EQ(a->NearestDataPos(), QVector3D(1, 2, 3));
    EXPECT_EQ(from, QVector3D(50, 10, 0));
    EXPECT_EQ(GLWidget(nullptr, "b").NearestDataPos(), QVector3D(0, 0, -1));
    EXPECT_TRUE(host.take().startsWith("Range2D:7 Range2D:7"));
    QMetaObject::invokeMethod(a, "SetTarget", Q_ARG(Vector, Vector(100, 0, 0)));
    EXPECT_EQ(run("get a setTarget target"), "100,0,0 30,0,0");
}

} // namespace
