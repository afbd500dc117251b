// SPDX-License-Identifier: MIT
// The window's routing of events to the bindings of the object under the pointer.
#include "tests/support/window.h"

namespace {

const char *const watched =
    "add a; bind a all; on all:a,1 record; on all:a,0 record; clock 5000000; move 0,100; clock 40";
const char *const eventScripts = R"(
Press: down 10.5,20.4 1 3 4000000 => all:a,1 11,80 0,0 -11,-80 40 3<0 4000000<0
Motion: set window button 5; move 30.5,40.5 0 1 8000000 => all:a,1 31,59 0,0 -31,-59 40 5<5 8000000<0
Release: set window button 3; up 0,0 1 2 => all:a,0 0,100 0,0 0,-100 40 2<3 0<0
Leave: set window button 3; pointer 390,130; leave; record => 290,70 0,0 -290,-70 40 3<3 0<0
WheelUp: wheel 10.9,20.9 0,120 2000000; clock 7; record => all:a,1 10,80 0,0 -10,-80 40 8<0 2000000<0 10,80 10,80 0,0 0 0<8 2000000<2000000
WheelDown: wheel 10,20 0,-120 => all:a,1 10,80 0,0 -10,-80 40 10<0 0<0
WheelZeroIsDown: wheel 0,0 0,0 => all:a,1 0,100 0,0 0,-100 40 10<0 0<0
WheelSidewaysIsDown: wheel 0,0 120,0 => all:a,1 0,100 0,0 0,-100 40 10<0 0<0
WheelAltSidewaysIsUp: wheel 0,0 120,0 8000000 => all:a,1 0,100 0,0 0,-100 40 8<0 8000000<0
WheelAltSidewaysDown: wheel 0,0 -120,0 8000000 => all:a,1 0,100 0,0 0,-100 40 10<0 8000000<0
WheelAltVerticalWins: wheel 0,0 120,-120 8000000 => all:a,1 0,100 0,0 0,-100 40 10<0 8000000<0
WheelUpKeeps: set window button 1015; wheel 0,100 0,1; record => all:a,1 0,0 0,0 0,0 40 ff<3f7 0<0 0,0 0,0 0,0 0 f7<ff 0<0
WheelDownKeeps: set window button 1007; wheel 0,100 0,-1; record => all:a,1 0,0 0,0 0,0 40 ff<3ef 0<0 0,0 0,0 0,0 0 ef<ff 0<0
KeyUpdatesTheRecord: set window button 3; key X 4000000; clock 6; unkey X 0; record => 0,0 0,0 0,0 6 3<0 0<4000000
ClampLeft: move -20.4,50 0 1; where => all:a,1 0,50 0,0 0,-50 40 0<0 0<0 100,150
ClampTop: move 50,-7 0 2; where => all:a,1 50,100 0,0 -50,-100 40 0<0 0<0 150,100
ClampRight: move 201,30 0 1; where => all:a,1 200,70 0,0 -200,-70 40 0<0 0<0 300,130
SecondMoveCancelsTheFirst: move 230,130 0 1; where => all:a,1 200,0 0,0 -200,0 40 0<0 0<0 330,200
EdgesAreInside: move 200,100 0 1; where; move 0,0 0 1; where => all:a,1 200,0 0,0 -200,0 40 0<0 0<0 700,700 all:a,1 0,100 200,0 200,-100 0 0<0 0<0 700,700
NoButtonNoClamp: move -20,50; where; record => 700,700 -20,50 0,0 20,-50 40 0<0 0<0
ClampSwitchedOff: set window clampMouseToFrame false; move -20,50 0 1; where => 700,700
)";
SCRIPTS(Events, WindowTest, watched, eventScripts)

const char *const hitScripts = R"(
EdgeBelongsToIt: click 150,25 => all:top,1 all:top,0
BelowTheTop: click 150,26; key K => 
EarlierWinsTheOverlap: click 50,10 => all:top,1 all:top,0
LeftBelowTheTop: click 50,90 => all:left,1 all:left,0
PixelsFromTheFarCorner: click 150,90 => all:corner,1 all:corner,0
)";
SCRIPTS(Hits, WindowTest,
        "add x; bind x all; set x enabled false; add y; bind y all; set y visible none; add z "
        "0,0,0,50; bind z all; "
        "add top 0,0,1,0.25; bind top all; add left 0,0,0.5,1; bind left all; add corner "
        "-20,-10,60,40; bind corner all",
        hitScripts)

const char *const doubleScripts = R"(
ShownForOneRelease: double 10,20 1 1; up 10,20 1 0; up 10,20 1 0; click 10,20 => double:a,1 double:a,0 single:a,1 single:a,0
OtherButton: double 10,20 2 3; up 10,20 1 2 => 
Moved: double 10,20 1 1; move 10,21 0 1; up 10,20 1 0 => double:a,1 double:a,1 double:a,0
)";
SCRIPTS(Doubles, WindowTest, "add a; bind a double 101 0; bind a single 1 0", doubleScripts)

// Qt flips the bit of a modifier key itself, so the state before a release makes a bare key.
const char *const keyScripts = R"(
Press: key K; key K 0 again => key:a,1,0 key:a,1,1
Release: unkey K; unkey K 0 again => key:a,0,0 key:a,0,1
WithItsModifierAlone: key S; key S 4000000 => save:a,1,0
BareShiftReleased: unkey 1000020 2000000 => all:a,0 10,80 10,80 0,0 0 1<1 0<0
BareAltReleased: unkey 1000023 8000000 => all:a,0 10,80 10,80 0,0 0 1<1 0<0
BareMetaPressed: key 1000022 10000000 => all:a,1 10,80 10,80 0,0 0 1<1 0<0
ShiftWithItsBit: key 1000020 => 
BoundModifierStops: key 1000021 4000000 => modifier:a,1,0
CapsLockAndPageDownAreNone: unkey 1000024; unkey 1000017 => 
OfNobodyAndOfTheOther: delete a; key K; move 150,20; key K => key:b,1,0
)";
class Keys : public WindowTest {
protected:
    Keys()
    {
        run("add a 0,0,0.5,1; add b 0.5,0,0.5,1; keybind b key K; keybind a key K; keybind a save "
            "Ctrl+S; keybind a modifier; clock 5000000; bind a all; down 10,20 1 1; down 10,20 1 "
            "1; on all:a,1 record; on all:a,0 record; set window last 0");
        find("modifier")->setProperty("key", QVariant::fromValue(QKeySequence(Qt::Key_Control)));
    }
};
SCRIPTS(KeyEvents, Keys, "", keyScripts)

// Where an object is placed and where the pointer goes, from (1, 1) => both in the object's frame.
const char *const shiftRows = R"(
Whole: 0,0,1,1 50,40 => 50,60 1,1
FractionsFromTheTop: 0.1,0.2,0.5,0.5 50,40 => 30,30 -19,-29
FractionsFromTheFarCorner: -0.25,-0.5,0.25,0.5 120,30 => 20,20 -99,-49
PixelsFromTheFarCorner: -10,-10,100,50 100,50 => 10,40 -89,-9
OnePixelWideIsInPixels: 10,20,1,50 10,30 => 0,40 -9,-29
OnePixelHighIsInPixels: 10,20,50,1 20,20 => 10,1 -9,-78
Truncated: 0.333,0,0.333,0.333 70,20 => 4,14 -65,-65
TruncatedTowardsZero: 0,0,300,150.5 70,20 => 70,130 1,51
Infinite: 0,0,inf,inf 70,20 => 70,2147483647 1,2147483647
)";

TEST_F(Keys, AndPointerAndDrawingSeeTheRecordInTheObjectsFrameAndLeaveIt)
{
    anyError = true; // of absurd sizes
    run("add o; window.AddGLWidget o; bind o pick; keybind o key L");
    QStringList seen;
    for (const char *word : {"pick:o,1", "key:o,1,0", "Draw3D:o"})
        host.on[word] = [&] { seen << run("record").section(' ', 0, 1); };
    for (const Script &row : Script::table(shiftRows)) {
        const QString at = row.script.section(' ', 1), x = at.section(',', 0, 0),
                      whole = QString("%1,%2 1,1 ").arg(x).arg(100 - at.section(',', 1).toInt());
        run("set o geometry " + row.script.section(' ', 0, 0) + "; move 1,99");
        for (const QString &event : {"down " + at + " 1 1", QString("key L"), QString("frame")}) {
            seen.clear();
            window->doneCurrent();
            run(event);
            EXPECT_EQ(seen.join(';'), row.told) << row.name << event.toStdString();
            EXPECT_EQ(run("record").left(whole.size()), whole);
            EXPECT_EQ(QGLContext::currentContext(), window->context());
        }
    }
}

const char *const rayScripts = R"(
OfTheObjectsFrameAndNotOfKeys: key L; get o vnear; down 50,40 1 1; get o vnear => 0,0,10 -16,-10,149.6
)";
SCRIPTS(Rays, WindowTest,
        "add o 0.1,0.2,0.5,0.5; set o ortho 1 fov 45 radius 10; keybind o key L; frame", rayScripts)

} // namespace
