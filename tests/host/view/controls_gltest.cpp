// SPDX-License-Identifier: MIT
// Gestures on a real window: which steering comes of them, and with which pixels.
#include "GL/glwindow.h"
#include "hand.h"
#include "host/view/controls.h"
#include "tests/support/table.h"

namespace host {
namespace {

/// Writes down what it is told.
class Recorder : public Steering {
public:
    QStringList log;

    bool advance(GLW *, double) override { return false; }
    void fit(GLW *) override { log << "fit"; }
    void home(GLW *) override { log << "home"; }
    void lookFrom(GLW *, Side side) override { log << QString("from %1").arg(int(side)); }
    void toggleProjection(GLW *) override { log << "projection"; }
    void beginDrag(GLW *, Drag kind, const QPointF &at) override
    {
        log << QString("grab %1 at %2").arg(word(kind), place(at));
    }
    void drag(GLW *, Drag kind, const QPointF &from, const QPointF &to) override
    {
        log << QString("%1 from %2 to %3").arg(word(kind), place(from), place(to));
    }
    void zoom(GLW *, const QPointF &at, float steps, Qt::KeyboardModifiers) override
    {
        log << QString("zoom %1 at %2").arg(steps).arg(place(at));
    }
    void focus(GLW *, const QPointF &at) override { log << "focus " + place(at); }

private:
    static QString word(Drag kind)
    {
        return kind == Drag::Orbit ? "orbit" : kind == Drag::Pan ? "pan" : "roll";
    }
    static QString place(const QPointF &p) { return QString("%1,%2").arg(p.x()).arg(p.y()); }
};

/// A window of 400 x 300 pixels. The object with the controls is 200 x 100 pixels large and stands
/// 150 pixels from the left, 20 from the top; in front of its left half stands another.
class ControlsTest : public testing::Test {
protected:
    QGLWindow window{nullptr, "window"};
    GLWidget scene{nullptr, "scene"}, front{nullptr, "front"};
    Recorder item;
    std::unique_ptr<Controls> controls;

    ControlsTest()
    {
        window.fps(0);
        window.resize(400, 300);
        scene.setGeometry(QRectF(150, 20, 200, 100));
        front.setGeometry(QRectF(150, 20, 20, 100));
        window.AddGLWidget(&scene);
        window.AddGLWidget(&front);
        window.show();
        EXPECT_TRUE(QTest::qWaitForWindowExposed(&window));
        window.setProperty("clampMouseToFrame", false);
    }
    ~ControlsTest() override
    {
        window.RemoveGLWidget(&scene);
        window.RemoveGLWidget(&front);
    }

    void control(bool single)
    {
        controls = std::make_unique<Controls>(
            &scene, [this](GLW *) { return &item; }, single, nullptr);
        const auto log = [this](const char *word) {
            return [this, word](GLW *glw) { item.log << word + glw->objectName(); };
        };
        QObject::connect(controls.get(), &Controls::menuAsked, log("menu "));
        QObject::connect(controls.get(), &Controls::areaEnded, log("area "));
        QObject::connect(controls.get(), &Controls::clicked, log("click "));
    }

    void run(const QString &script)
    {
        steer(
            &window, script, [] {}, [](const QString &) { return std::nullopt; });
    }
};

struct HandsCase {
    const char *name;
    const char *script;
    const char *steering;
    bool single = true;
};

const HandsCase handsCases[] = {
    // The motion from far away to the press is none of the drag, nor is one after the release.
    {"LeftOrbits", "10,290 move 180,30 left down 190,35 move up 195,40 move",
     "grab orbit at 30.5,89.5; orbit from 30.5,89.5 to 40.5,84.5"},
    {"MiddlePans", "180,30 middle down 183,35 move up",
     "grab pan at 30.5,89.5; pan from 30.5,89.5 to 33.5,84.5"},
    {"ShiftLeftPans", "180,30 shift down 183,35 move up",
     "grab pan at 30.5,89.5; pan from 30.5,89.5 to 33.5,84.5"},
    {"ControlLeftRolls", "180,30 ctrl down 183,35 move up",
     "grab roll at 30.5,89.5; roll from 30.5,89.5 to 33.5,84.5"},
    {"ControlLeftIsTheTiles", "180,30 ctrl down 183,35 move up", "", false},
    {"AltIsFree", "180,30 alt down 183,35 move up", ""},
    {"ALateReleaseDoesNotJump", "180,30 down 10,290 up 190,30 down",
     "grab orbit at 30.5,89.5; grab orbit at 40.5,89.5"},
    {"ReleasedOverAnother", "180,30 down 190,30 move 160,30 up 190,30 left none move",
     "grab orbit at 30.5,89.5; orbit from 30.5,89.5 to 40.5,89.5"},
    {"AClick", "180,30 down 181,31 move up",
     "grab orbit at 30.5,89.5; orbit from 30.5,89.5 to 31.5,88.5; click scene"},
    {"AClickThatBeganElsewhere", "160,30 down 180,30 up", ""},
    {"AreaReleasedInAGap", "180,30 shift right down 200,50 move 10,290 move up", "area scene"},
    {"AreaWithoutItsShift", "180,30 shift right down 200,50 move none up", "area scene"},
    {"RRolls", "200,50 move +R left down 200,51 move -R 200,52 move 200,53 move",
     "grab roll at 50.5,69.5; roll from 50.5,69.5 to 50.5,68.5; grab orbit at 50.5,67.5; "
     "orbit from 50.5,67.5 to 50.5,66.5"},
    {"RLetGoInAGap", "200,50 move +R 10,290 move -R 200,50 move down", "grab orbit at 50.5,69.5",
     false},
    {"WheelZoomsWhereThePointerIs", "349,119 wheel 180,20 back 149,140 wheel",
     "zoom 1 at 199.5,0.5; zoom -1 at 30.5,99.5"},
    {"ADoubleClickFocusesOnce", "250,70 twice 252,70 move up", "focus 100.5,49.5"},
    {"TheMenuComesWithTheRelease", "250,70 right down 250,72 move", ""},
    {"TheMenu", "250,70 right down up", "menu scene"},
    {"Keys", "250,70 move F Home 1 2 3 4 5 6 O",
     "fit; home; from 0; from 1; from 2; from 3; from 4; from 5; projection"},
    {"KeysOutside", "390,290 move F", "fit"},
    {"KeysInAGap", "10,10 move F Left", "", false},
    {"ArrowsOrbit", "390,10 move Left Up",
     "grab orbit at 100,50; orbit from 100,50 to 93.75,50; grab orbit at 100,50; "
     "orbit from 100,50 to 100,56.25"},
    {"ShiftArrowsPan", "250,70 move shift Right Down",
     "grab pan at 100,50; pan from 100,50 to 106.25,50; grab pan at 100,50; "
     "pan from 100,50 to 100,43.75"},
    {"PlusAndMinusZoom", "250,70 move + = - none",
     "zoom 1 at 100,50; zoom 1 at 100,50; zoom -1 at 100,50"},
};

TABLE(Hands, ControlsTest, HandsCase, handsCases);

TEST_P(Hands, SteerTheItemInItsOwnPixels)
{
    control(GetParam().single);
    run(GetParam().script);
    EXPECT_EQ(item.log.join("; ").toStdString(), GetParam().steering);
}

TEST_F(ControlsTest, PeersMoveAlong)
{
    control(true);
    GLWidget other(nullptr, "other");
    controls->setPeers([&](GLW *glw) { return QList<GLW *>{glw, &other}; });
    QStringList steered;
    QObject::connect(controls.get(), &Controls::steered,
                     [&](GLW *glw) { steered << glw->objectName(); });
    run("250,70 move F");
    EXPECT_EQ(item.log.join("; "), "fit; fit");
    EXPECT_EQ(steered.join(' '), "scene other");
}

} // namespace
} // namespace host
