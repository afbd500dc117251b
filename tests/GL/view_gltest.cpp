// SPDX-License-Identifier: MIT
// The multi-view: grid, order, operations, selection and visibility, and clicks on its tiles.
#include <QApplication>
#include <QRegularExpression>

#include "tests/support/window.h"

namespace {

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

TEST_F(WindowTest, GridIsLargeForTheAspect)
{
    for (const Script &row : Script::table(gridRows)) {
        run("alone " + row.script +
            "; view.AddTile 99; set 99 sizeHint 1x500; set 99 visible 5x5; view.SetOrder []");
        EXPECT_EQ(run("get view rows cols; delete view"), row.told) << row.name;
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
NoArea: delete view; alone 2 800 0; view.SetOrder []; get view rows cols => -1 -1
NoTiles: view.Clear; view.SetOrder []; get view rows => 1
OnePixelTellsNoShare: delete view; alone 1 1 600; view.SetOrder []; delete view; alone 1 600 1; view.SetOrder []; cells => 1:2,2,596,-3
)";
SCRIPTS(Layout, WindowTest, "alone 6 800 600", layoutScripts)

TEST_F(WindowTest, WithoutAUsableSizeStaysAndTells)
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
AddNew: view.AddTile 9; get view stale; view.Tiles => Init:9 TileAdded:9 9 1 1,2,3,9
AddExisting: view.AddTile 2; get view stale; view.Tiles => 2 0 1,2,3
RemoveAndDelete: view.RemoveTile 2; view.RemoveTile 7; get view stale; view.Tiles; view.Widgets; delete 3; get view stale; view.Tiles => 1 1,3 1,3 2 1
Clear: view.Clear; get view stale; view.Tiles => 3 - 
SetOrder: view.SetOrder [3]; get view stale => TileResized:300,300 0
Resize: view.Resize 5 5; view.UpdateLayout; get view stale => 2
Disabled: set view enabled 0; view.Resize 5 5; view.UpdateLayout; view.ForceUpdate; get view stale; view.SetVisible [] true; get view stale; view.SetOrder [] => 0 1 TileResized:300,300
SetVisible: view.SetVisible [2,77] false; get view stale; view.GetVisible; view.ForceUpdate => 1 1,3 Update:1 Update:3
SelectAll: set view enableSelection 0; set 3 visible 0; set 1,2 selected 1; set 3 selected 5x5; view.GetSelected; view.SelectAll; view.GetSelected; view.SelectAll; view.GetSelected; get view stale => 1,2 ValueChanged:1,2,3 1,2,3 ValueChanged - 0
ToggleWithoutSelection: set 2 visible 0; view.ToggleVisible; view.GetVisible; get view stale => VisibleCountChanged:3 1,2,3 1
ToggleSelected: set 1,3 selected 1; view.ToggleVisible; view.GetVisible; view.ToggleVisible => VisibleCountChanged:2 1,3 VisibleCountChanged:3
ToggleAsManyButOthers: set 3 selected 1; set 1,3 visible 0; view.ToggleVisible; view.GetVisible => VisibleCountChanged:1 3
Hits: view.SetOrder []; hit view 5,5 305,5 298,5 299,5 300,5 1,5 => TileResized:300,300 o o o o - -
HitAsksForTheSwitches: view.SetOrder []; set 1 visible 0; hit view 5,5; set 1 visible 1; hit view 5,5; set 1 enabled none; hit view 5,5 => TileResized:300,300 - o -
Bindings: window.AddGLWidget view; actions view; actions 2; get view_leftdoublemouse binding mask; get view_leftmouse binding mask; get view_ctrlleftmouse binding mask => view [view_ctrlleftmouse,view_leftmouse,view_leftdoublemouse] [view_ctrlleftmouse,view_leftmouse,view_leftdoublemouse] 257 0 1 0 67108865 0
Viewports: get view align; set 1,3 pan 1,2,3 scale 4,5,6; view.ResetViewport; get 1 align pan scale zoom; get 3 pan scale zoom => 33 33 0,0,0 1,1,1 1 0,0,0 1,1,1 1
DiesOfItsBindings: add b; bind b x; view.AddAction x; doomed x delete view; set x objectName view_leftdoublemouse; window.AddGLWidget view => x null
DiesOfItsSecondBinding: add b; bind b x; view.AddAction x; doomed x delete view; set x objectName view_leftmouse; window.AddGLWidget view => x null
StaleEndsAtTheLimit: set view stale 2147483646; view.UpdateLayout; view.UpdateLayout; get view stale => 2.1475e+09
)";
SCRIPTS(Operations, WindowTest, "alone 3 900 300", operationScripts)

TEST_F(WindowTest, TileHasNoBindingsOfItsOwn)
{
    run("alone 2 800 600; bind view v");
    GLTile *tile = view()->tiles[1];
    EXPECT_EQ(tile->NewKeyAction("A", "a", view(), SLOT(UpdateLayout())), nullptr);
    EXPECT_EQ(tile->NewMouseAction(1, 0, "a", view(), SLOT(UpdateLayout())), nullptr);
    EXPECT_FALSE(tile->DeleteAction("v"));
    EXPECT_EQ(run("actions 1"), run("actions view"));
    tile->glw = nullptr;
    EXPECT_EQ(run("actions 1"), "[]");
    view()->tiles.remove(1);
    view()->AddTile(1);
    delete tile;
    EXPECT_EQ(run("view.Tiles"), "1,2") << "the end of the old one does not concern the new";
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

const std::map<QChar, QString> gestures{
    {'p', "down AT 1 1"},
    {'m', "move AT 1 1"},
    {'r', "up AT 1 0"},
    {'c', "click AT 4000000"},
    {'d', "click AT; double AT 1 1; up AT 1 0"},
    {'C', "click AT 4000000; double AT 1 1 4000000; up AT 1 0 4000000"},
    {'h', "view.SetVisible [ID] false"},
    {'-', "view.RemoveTile ID"}};

class Clicks : public WindowTest {
protected:
    Clicks() : WindowTest(QSize(600, 400)) { addView(4); }
};

ROWS(Gestures, Clicks, gestureScripts)
{
    QStringList told;
    for (const QString &gesture : GetParam().script.split(' ')) {
        run("frame");
        const QString id = gesture.right(1);
        const GLTile *tile = view()->tiles.value(id.toUInt());
        QString script = gesture.size() > 2 ? "set view " + gesture + " false" : "click AT";
        if (const auto found = gestures.find(gesture[0]);
            found != gestures.end() && gesture.size() == 2)
            script = found->second;
        script.replace("ID", id).replace("AT", tile ? wordOf(tile->orect.center()) : "1,1");
        told += run(script)
                    .replace("VisibleCountChanged:", "n")
                    .replace(QRegularExpression("ValueChanged:?"), "v")
                    .split(' ', Qt::SkipEmptyParts);
    }
    EXPECT_EQ(told.join(' '), GetParam().told);
    const QStringList values = told.filter("v");
    EXPECT_EQ('v' + run("view.GetSelected").remove('-'), values.isEmpty() ? "v" : values.last());
}

// The tile 9 has no window, and the stranger is no tile.
const char *const noticeScripts = R"(
Click: set view pressed 2; view.LeftMouse 2 false; view.CtrlLeftMouse 2 false => ValueChanged:2 ValueChanged
NoTile: set view pressed 9; view.LeftMouse none false; view.LeftMouse 9 false; view.CtrlLeftMouse 9 false => 
Stranger: set view pressed -1; view.LeftMouse stranger false; view.CtrlLeftMouse stranger false => 
EndOfADoubleClick: set view pressed 2 doublePress 1; view.LeftMouse 2 false => 
Press: set window button 1; view.LeftMouse 2 true; get view pressed; view.LeftMouse stranger true; get view pressed => 2 -1
PressOfNoChange: set window button 1 last 1; view.LeftMouse 2 true; get view pressed => -1
PressOnNoTile: set window button 1; set view pressed 5; view.LeftMouse none true; view.LeftMouse 9 true; get view pressed => 5
Double: set window double_click 1 double_press 1; view.LeftDoubleMouse none true; view.LeftDoubleMouse 9 true; get view doublePress; view.LeftDoubleMouse stranger false; get view doublePress; view.GetSelected => 0 1 1
)";
SCRIPTS(Notices, WindowTest, "alone 3 900 300; view.AddTile 9; add stranger; set 1 selected true",
        noticeScripts)

TEST_F(Clicks, DrawnPickedHitAndClickedAreOneTile)
{
    run("view.AddTile 5; view.AddTile 6; view.SetOrder [6,2]; set view header 20; frame");
    const QList<int> placed{6, 2, 1, 3, 4, 5};
    int picked = 0;
    for (GLTile *tile : view()->tiles) {
        host.on["Pick2D:" + tile->objectName()] = [&picked, tile] { picked = tile->id(); };
        host.on["Draw2D:" + tile->objectName()] = [tile] {
            glColor3ub(GLubyte(40 * tile->id() + 10), 0, 0);
            glRectf(0, 0, float(tile->width() - 1), float(tile->height() / 2));
        };
    }
    for (int i = 0; i < 6; ++i) {
        const QPoint p(100 + 200 * (i % 3), 60 + 200 * (i / 3));
        run(QString("set window at %1,%2; frame").arg(p.x()).arg(400 - p.y()));
        const QList<int> drawn{pixel(p.x(), p.y()).red() / 40, pixel(p.x(), p.y() + 110).red(),
                               pixel(199 * (i % 3), p.y()).red(),
                               pixel(p.x(), 10 + 200 * (i / 3)).red()};
        EXPECT_EQ(drawn, (QList<int>{placed[i], 0, 0, 0})) << "above, below, gap, header";
        EXPECT_EQ(picked, placed[i]);
        EXPECT_EQ(view()->hit(p.x(), p.y()), view()->tiles[uint(placed[i])]);
        EXPECT_EQ(run("click " + wordOf(QPointF(p))), "ValueChanged:" + QString::number(placed[i]));
    }
    EXPECT_TRUE(run("set window at 5,385; frame").contains("Pick2D:6"))
        << "in the header of its tile";
    EXPECT_FALSE(run("set window at 200,300; frame").contains("Pick2D")) << "between the first two";
}

} // namespace
