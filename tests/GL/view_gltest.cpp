// SPDX-License-Identifier: MIT
// The multi-view: grid, order, operations, selection and visibility, and clicks on its tiles.
#include <QApplication>
#include <QRegularExpression>

#include "tests/GL/fixture.h"

namespace {

using View = WindowTest;

// Tiles in a width and height, size hints of the first tiles => rows and columns.
const char *const gridRows = R"(
One: 1 800 600 => 1 1
TwoInATallView: 2 200 800 => 2 1
ATieKeepsFewerRows: 3 600 400 => 1 3
Three: 3 800 600 => 2 2
Five: 5 800 600 => 2 3
Seven: 7 800 600 => 2 4
SevenRowsRoundedDown: 7 200 400 => 4 2
Ten: 10 800 600 => 2 5
FourRowsAreNeverTried: 16 200 300 => 6 3
NorAreSeven: 20 300 600 => 5 4
Wide: 12 800 600; set 1 sizeHint 2x1 => 4 3
OnlyTheAspectCounts: 5 800 600; set 1 sizeHint 400x200 => 3 2
WidestAndTallestMakeOneSize: 2 800 600; set 1 sizeHint 8x1; set 2 sizeHint 1x8 => 1 2
)";

TEST_F(View, GridIsLargeForTheAspect)
{
    for (const Script &row : Script::table(gridRows)) {
        run("alone " + row.script +
            "; view.AddTile 99; set 99 sizeHint 1x500; set 99 visible 5x5; view.SetOrder []");
        EXPECT_EQ(run("get view rows; get view cols; delete view"), row.told)
            << row.name.toStdString();
    }
}

const char *const layoutScripts = R"(
Defaults: view.SetOrder []; cells => TileResized:266,300 1:2,2,264,297 2:268,2,264,297 3:534,2,264,297 4:2,301,264,297 5:268,301,264,297 6:534,301,264,297
NoSpacing: set view spacing 0; set 2,3,4,6 visible false; view.SetOrder []; cells => TileResized:400,600 1:0,0,400,600 5:400,0,400,600
Insets: set view spacing 4; set view padding 3; set view header 10; set view footer 5; set 2,3,4,6 visible 0; view.SetOrder []; cells => TileResized:400,600 1:4,4,394,592/7,17,388,571 5:402,4,394,592/405,17,388,571
NotNumbers: set view spacing 9x9; set view padding none; set view header x; set view footer 9x9; set 1,2,3,4 visible none; view.SetOrder []; cells => TileResized:400,600 5:0,0,400,600 6:400,0,400,600
LargerThanTheCell: set view padding 200; set 1,2,3,4 visible 5x5; view.SetOrder []; cells => TileResized:400,600 5:2,2,397,596/202,202,-3,196 6:401,2,397,596/601,202,-3,196
Order: set 1,2,3 visible false; set view order [9,6,4]; cells; get view order; view.GetOrder => TileResized:400,300 4:401,2,397,297 5:2,301,397,297 6:2,2,397,297 9,6,4 9,6,4
OrderOfText: set 1,2,3,4 visible false; view.SetOrder [6,"x"]; cells; view.GetOrder => TileResized:400,600 5:401,2,397,596 6:2,2,397,596 6,0
HiddenLeavesNoHole: set 1,2,3,5 visible false; view.SetOrder [6,5]; cells; view.SetOrder [4]; cells => TileResized:400,600 4:401,2,397,596 6:2,2,397,596 TileResized:400,600 4:2,2,397,596 6:401,2,397,596
NoTiles: view.Clear; view.SetOrder []; get view rows => 1
OnePixelTellsNoShare: delete view; alone 1 1 600; view.SetOrder []; delete view; alone 1 600 1; view.SetOrder []; cells => 1:2,2,596,-3
)";
SCRIPTS(Layout, WindowTest, "alone 6 800 600", layoutScripts)

TEST_F(View, WithoutAUsableSizeStaysAndTells)
{
    for (const char *cause : {"visible false", "sizeHint 5x0", "sizeHint 0x5", "sizeHint none"}) {
        testing::internal::CaptureStderr();
        const QString told = run(QString("alone 2 800 600; view.SetOrder []; set 1,2 %1; set view "
                                         "spacing 50; view.SetOrder []; cells; delete view")
                                     .arg(cause));
        EXPECT_EQ(testing::internal::GetCapturedStderr(),
                  "calculateLayout could not place tiles\n");
        EXPECT_EQ(told, "TileResized:400,600 1:2,2,397,596 2:401,2,397,596") << cause;
    }
}

const char *const operationScripts = R"(
AddNew: view.AddTile 9; stale; view.Tiles => Init:9 TileAdded:9 9 +1 1,2,3,9
AddExisting: view.AddTile 2; stale; view.Tiles => 2 +0 1,2,3
Remove: view.RemoveTile 2; view.RemoveTile 7; stale; view.Tiles; view.Widgets => +1 1,3 1,3
Delete: delete 2; stale; view.Tiles => +1 1,3
Clear: view.Clear; stale; view.Tiles => +3 - 
SetOrder: view.SetOrder [3]; stale => TileResized:300,300 +0
Resize: view.Resize 5 5; view.UpdateLayout; stale => +2
Disabled: set view enabled 0; view.Resize 5 5; view.UpdateLayout; view.ForceUpdate; stale; view.SetVisible [] true; stale; view.SetOrder [] => +0 +1 TileResized:300,300
SetVisible: view.SetVisible [2,77] false; stale; view.GetVisible; view.ForceUpdate => +1 1,3 Update:1 Update:3
SelectAll: set view enableSelection 0; set 3 visible 0; set 1,2 selected 1; set 3 selected 5x5; view.GetSelected; view.SelectAll; view.GetSelected; view.SelectAll; view.GetSelected; stale => 1,2 ValueChanged:1,2,3 1,2,3 ValueChanged - +0
ToggleWithoutSelection: set 2 visible 0; view.ToggleVisible; view.GetVisible; stale => VisibleCountChanged:3 1,2,3 +1
ToggleSelected: set 1,3 selected 1; view.ToggleVisible; view.GetVisible; view.ToggleVisible => VisibleCountChanged:2 1,3 VisibleCountChanged:3
ToggleAsManyButOthers: set 3 selected 1; set 1,3 visible 0; view.ToggleVisible; view.GetVisible => VisibleCountChanged:1 3
Hits: view.SetOrder []; hit view 5,5 305,5 298,5 299,5 300,5 1,5 => TileResized:300,300 o o o o - -
HitAsksForTheSwitches: view.SetOrder []; set 1 visible 0; hit view 5,5; set 1 visible 1; hit view 5,5; set 1 enabled none; hit view 5,5 => TileResized:300,300 - o -
Bindings: window.AddGLWidget view; actions view; actions 2; get view_leftdoublemouse binding; get view_leftmouse binding; get view_ctrlleftmouse binding; get view_ctrlleftmouse mask => view [view_ctrlleftmouse,view_leftmouse,view_leftdoublemouse] [view_ctrlleftmouse,view_leftmouse,view_leftdoublemouse] 257 1 67108865 0
)";
SCRIPTS(Operations, WindowTest, "alone 3 900 300", operationScripts)

TEST_F(View, TileHasNoBindingsOfItsOwn)
{
    run("alone 2 800 600; bind view v");
    auto *view = static_cast<GLMultiWidget *>(find("view"));
    GLTile *tile = view->tiles[1];
    EXPECT_EQ(tile->NewKeyAction("A", "a", view, SLOT(UpdateLayout())), nullptr);
    EXPECT_EQ(tile->NewMouseAction(1, 0, "a", view, SLOT(UpdateLayout())), nullptr);
    EXPECT_FALSE(tile->DeleteAction("v"));
    EXPECT_EQ(run("actions 1"), run("actions view"));
    EXPECT_EQ(tile->viewport.align * 100 + view->viewport.align, 3333);
    tile->viewport.pos = tile->viewport.scale = Vector(1, 2, 3);
    EXPECT_EQ(run("view.ResetViewport; get 1 zoom"), "1");
    EXPECT_EQ(find("1")->property("zoom").userType(), int(QMetaType::Float));
    EXPECT_EQ(tile->viewport.pos, Vector(0, 0, 0));
    EXPECT_EQ(tile->viewport.scale, Vector(1, 1, 1));
    tile->glw = nullptr;
    EXPECT_EQ(run("actions 1"), "[]");
    view->tiles.remove(1);
    view->AddTile(1);
    delete tile;
    EXPECT_EQ(run("view.Tiles"), "1,2") << "the end of the old one does not concern the new";
    view->updateLayout = 2147483646;
    EXPECT_EQ(run("view.UpdateLayout; view.UpdateLayout; stale"), "+2147483647");
}

// Clicks and double clicks on tiles; four stand in two rows, 0 is the border.
const char *const gestureScripts = R"(
EveryRow: 1 2 3 4 => v1 v2 v3 v4
AgainClears: 3 3 => v3 v
ControlAddsInOrderAndRemoves: c3 c1 c3 => v3 v1,3 v1
PlainAfterControlSelectsOne: 4 c1 4 => v4 v1,4 v4
ReleasedOnAnotherTile: p1 r3 p0 r2 => 
DraggedOutAndBack: p1 m3 m1 r1 => v1
DraggedOverIsNotPressed: p1 m3 r3 => 
DoubleOpensAndCloses: d2 d2 => v2 v n1 v n4
DoubleInTheLowerRow: d3 3 => v3 v n1
ClickAfterReturningFromDouble: d4 d4 1 => v4 v n1 v n4 v1
ControlDoubleIsOneClick: C2 => v2
LoneTileStaysOpen: -2 -3 -4 1 c1 d1 => v
LoneVisibleTile: h1 h3 h4 2 => 
OneOfTwoVisible: h3 h4 d1 d1 => v1 v n1 v n4
SelectionSwitchedOff: enableSelection 1 c2 d2 => v n1
ViewDisabled: enabled 1 c2 d2 => 
)";

class Gestures : public WindowTest, public testing::WithParamInterface<Script> {
protected:
    Gestures() : WindowTest(QSize(600, 400)), view(addView(4)) {}
    GLMultiWidget *view;
};
INSTANTIATE_TEST_SUITE_P(Rows, Gestures, testing::ValuesIn(Script::table(gestureScripts)),
                         [](const auto &row) { return row.param.name.toStdString(); });

TEST_P(Gestures, TellSelectionAndVisibility)
{
    QStringList told;
    for (const QString &gesture : GetParam().script.split(' ')) {
        run("frame");
        const int id = gesture.right(1).toInt();
        GLTile *tile = view->tiles.value(uint(id));
        const QString at = tile ? wordOf(tile->orect.center()) : "1,1",
                      modifier = gesture[0].toUpper() == 'C' ? " 4000000" : " 0";
        QString script = "click " + at + modifier;
        if (gesture[0] == '-')
            script = "view.RemoveTile " + QString::number(id);
        else if (gesture[0] == 'h')
            script = "view.SetVisible [" + QString::number(id) + "] false";
        else if (gesture.size() > 2)
            script = "set view " + gesture + " false";
        else if (QString("pmr").contains(gesture[0]))
            script = (gesture[0] == 'p'   ? "down "
                      : gesture[0] == 'm' ? "move "
                                          : "up ") +
                     at + (gesture[0] == 'r' ? " 1 0" : " 1 1");
        else if (gesture[0] == 'd' || gesture[0] == 'C')
            script += "; double " + at + " 1 1" + modifier + "; up " + at + " 1 0" + modifier;
        told += run(script)
                    .replace("VisibleCountChanged:", "n")
                    .replace(QRegularExpression("ValueChanged:?"), "v")
                    .split(' ', Qt::SkipEmptyParts);
    }
    EXPECT_EQ(told.join(' '), GetParam().told);
    const QStringList values = told.filter("v");
    EXPECT_EQ('v' + run("view.GetSelected").remove('-'), values.isEmpty() ? "v" : values.last());
}

TEST_F(Gestures, NeedATileItsWindowAndAChange)
{
    run("frame; set 1 selected true");
    GLWidget stranger(nullptr, nullptr);
    view->tiles[1]->gl = nullptr;
    stranger.gl = window;
    for (GLW *none : {static_cast<GLW *>(nullptr), static_cast<GLW *>(view->tiles[1]),
                      static_cast<GLW *>(&stranger)}) {
        const bool alive = none == &stranger;
        view->tilePressed = alive ? -1 : 1;
        window->mouse.double_click = window->mouse.double_press = 1;
        view->LeftMouse(none, false);
        view->CtrlLeftMouse(none, false);
        view->LeftDoubleMouse(none, false);
        EXPECT_EQ(view->doublePress, alive);
        window->mouse.button = 1;
        view->LeftMouse(none, true);
        window->mouse.button = window->mouse.last_button;
        view->LeftMouse(view->tiles[2], true);
        EXPECT_EQ(view->tilePressed, alive ? -1 : 1);
    }
    view->tilePressed = 2;
    view->LeftMouse(view->tiles[2], false);
    EXPECT_EQ(host.take(), "") << "the release that ends a double click";
}

TEST_F(Gestures, DrawnPickedHitAndClickedAreOneTile)
{
    run("view.AddTile 5; view.AddTile 6; view.SetOrder [6,2]; set view header 20; frame");
    const QList<int> placed{6, 2, 1, 3, 4, 5};
    int picked = 0;
    for (GLTile *tile : view->tiles) {
        host.on["Pick2D:" + tile->objectName()] = [&picked, tile] { picked = tile->id(); };
        host.on["Draw2D:" + tile->objectName()] = [tile] {
            glColor3ub(GLubyte(40 * tile->id() + 10), 0, 0);
            glRectf(0, 0, float(tile->width() - 1), float(tile->height() / 2));
        };
    }
    for (int i = 0; i < 6; ++i) {
        const QPoint p(100 + 200 * (i % 3), 60 + 200 * (i / 3));
        run(QString("point %1,%2; frame").arg(p.x()).arg(400 - p.y()));
        const QList<int> drawn{pixel(p.x(), p.y()).red() / 40, pixel(p.x(), p.y() + 110).red(),
                               pixel(199 * (i % 3), p.y()).red(),
                               pixel(p.x(), 10 + 200 * (i / 3)).red()};
        EXPECT_EQ(drawn, (QList<int>{placed[i], 0, 0, 0})) << "above, below, gap, header";
        EXPECT_EQ(picked, placed[i]);
        EXPECT_EQ(view->hit(p.x(), p.y()), view->tiles[uint(placed[i])]);
        EXPECT_EQ(run("click " + wordOf(QPointF(p))), "ValueChanged:" + QString::number(placed[i]));
    }
    EXPECT_TRUE(run("point 5,385; frame").contains("Pick2D:6")) << "in the header of its tile";
    EXPECT_FALSE(run("point 200,300; frame").contains("Pick2D")) << "between the first two";
}

} // namespace
