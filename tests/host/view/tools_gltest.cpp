// SPDX-License-Identifier: MIT
// Measuring and cutting with a hand at the window.
#include <QApplication>
#include <QClipboard>

#include "sheet/support.h"
#include "tests/host/shapes.h"

namespace host {
namespace {

/// Two boxes of side 2 with a gap of 1 between them.
class MeasureTest : public SingleViewTest {
protected:
    void open() { SingleViewTest::open(boxes("two.obj", 2), false); }

    MeasureTool &tool() const { return *view->measureTool(); }
    bool await() const
    {
        return until([&] { return !tool().isBusy(); });
    }
    /// Chooses a kind by so many presses of its key, and clicks a little beside each of the places.
    void measure(int kind, const QString &places)
    {
        hand(QString("D ").repeated(kind) + "1,1");
        await();
        for (const QString &place : places.split(' ', Qt::SkipEmptyParts))
            hand('@' + place + " +5,-8 click");
    }
    std::string measured() const
    {
        QStringList all;
        for (const Measurement &m : tool().measurements())
            all << m.text();
        return all.join('\n').replace('\t', '|').toStdString();
    }
};

TEST_F(MeasureTest, ClicksAreMeasured)
{
    const std::tuple<int, const char *, const char *> rows[] = {
        {1, "0,2,2 5,0,2", "Distance|5.38516|Δx 5   Δy -2   Δz 0"},
        {2, "3,2,2", "Point|x 3   y 2   z 2"},
        {3, "1,1,2 1,2,1", "Angle of faces|90°"},
        {3, "1,1,2 4,1,2", "Angle of faces|180°|parallel, 0 apart"},
        {4, "0,0,2 2,0,2 0,2,2", "Angle of points|45°"},
        {5, "1,2,2", ""},
        {6, "0,2,2 0,0,2", "Distance|2|Δx 0   Δy -2   Δz 0"},
        {2, "9,9,9", ""}};
    for (const auto &[kind, places, text] : rows) {
        open();
        measure(kind, places);
        EXPECT_EQ(measured(), text) << kind;
        EXPECT_EQ(tool().hint().contains("no circle"), kind == 5); // a radius
        // On another axis it is drawn elsewhere and says the same.
        item()->standOn(glw(), FileAxes::Z);
        await();
        EXPECT_EQ(measured(), text) << kind;
    }
    Mesh disc = prism(arc({}, 1, 0, 360, 24), .5).mesh;
    disc.findBounds();
    const auto shown = std::make_shared<ModelItem>("a", std::make_shared<Mesh>(disc));
    view = std::make_unique<SingleView>(*window, queue, file("a.obj", ""), shown);
    show(*view);
    view->lookFrom(Steering::Side::Front);
    settle(glw());
    measure(5, "0,1,.5");
    EXPECT_EQ(measured().substr(0, 19), "Radius|R 1|⌀ 2|x ") << measured();
}

TEST_F(MeasureTest, WhatAThreadFindsLaterNeedsNoOtherMove)
{
    open();
    auto blocked = std::make_unique<BlockedThreads>();
    const Item *first = item();
    view->readAgain({});
    EXPECT_TRUE(until([&] { return item() != first; }));
    tool().MeasureSurface();
    hand("@1,1,2 move");
    EXPECT_TRUE(tool().hint() == "Measuring…" && item()->hoveredPart() == -1);
    blocked.reset(), await(), frame();
    EXPECT_EQ(item()->hoveredPart(), 0);
    EXPECT_EQ(measured(), "Area and volume|whole model|area 48|volume 16");
}

TEST_F(MeasureTest, TheToolTakesClicksAndLeavesDrags)
{
    open();
    hand("@1,1,2 click");
    measure(1, "0,2,2");
    EXPECT_TRUE(marks() == "s." && asks(*view, "@0,2,2 +3,-2 move"));
    hand("300,200 move down 340,200 move up"), settle(glw());
    hand("@2,2,2 click @2,2,2 click Backspace Ctrl+C"); // the last click
    EXPECT_EQ(QApplication::clipboard()->text(), "Distance\t2\tΔx 2   Δy 0   Δz 0\n");
    EXPECT_TRUE(view->leaveTool() && !view->leaveTool());
    hand("@4,1,2 click Del");
    EXPECT_TRUE(marks() == ".s" && measured().empty()) << "a click is the view's again";
}

TEST_F(MeasureTest, WhatWasMeasuredStaysWhileTheShapeDoes)
{
    open();
    measure(2, "2,2,2");
    for (const int count : {2, 3}) {
        file("two.obj", "f 1 2 3\n"), view->readAgain({});
        ASSERT_TRUE(until([&] { return !view->fault().isEmpty(); }));
        EXPECT_EQ(written(*view).texts.count(view->fault()), 1u);
        boxes("two.obj", count);
        const MeshPtr before = item()->sharedMesh();
        view->readAgain({});
        ASSERT_TRUE(
            until([&] { return view->fault().isEmpty() && item()->sharedMesh() != before; }));
        EXPECT_TRUE(measured().empty() == (count == 3) &&
                    tool().hint().contains("gone") == (count == 3));
    }
}

/// A cube from 0 to 2 along each axis of its file, seen from the front, cut by a plane across z.
class SectionTest : public SingleViewTest {
protected:
    void SetUp() override
    {
        SingleViewTest::SetUp();
        open(boxes("a.obj", 1));
        hand("300,200 move C");
        ASSERT_EQ(planes().size(), 1u);
    }
    const std::vector<CutPlane> &planes() const { return item()->section()->planes; }
    CameraGeometry camera() const { return CameraSteering::geometryOf(glw()); }
};

TEST_F(SectionTest, KeysAndWheelCutTurnAndMove)
{
    const auto all = [&] {
        QString words;
        for (const CutPlane &p : planes())
            words += QString("%1%2|").arg("xyz"[p.axis()]).arg(p.offset);
        return words;
    };
    EXPECT_EQ(all(), "z1|") << "away from who looks";
    // The face at z = 2; then, beside the model, across an axis that is left, in the last one's
    // place.
    walk(*view, glw(),
         "X > z-1; Shift+C > z1.99965; 10,200 move Shift+C > x1; Shift+C > y1; X > y-1; ~9,200 "
         "move Shift+C > x1; X > x-1",
         all);
    const QString cut = all();
    const Item *first = item();
    view->setUp(FileAxes::X);
    view->readAgain({});
    ASSERT_TRUE(QTest::qWaitFor([&] { return item() != first; }, 20000));
    EXPECT_TRUE(all() == cut && item()->axes()->up() == FileAxes::X);
}

TEST_F(SectionTest, HandlesAreDraggedAlongTheNormal)
{
    hand("9,200 move");
    EXPECT_TRUE(asks(*view, "@c +7,-7 move")) << "the handle under the pointer stands out";
    hand("9,200 move");
    const QImage still = painted();
    hand("@c move down middle down up 9,200 move");
    EXPECT_EQ(painted(), still) << "another button ends a drag";
    const struct {
        const char *first, *script;
        double step; // in pixels of the picture, from the offset before; 0: to the end, at 2
        double within;
        bool orbits;
    } rows[] = {
        {"9,9", "@c +8.5,-8.5 move down +0,-20 move up", 20, 0.1, false}, // upwards pushes it away
        {"X", "@c move down +0,-20 move up", -20, -0.1, false},
        {"X", "@c +-30,-5.5 move down +0,250 move up", 0, 0, false}, // an edge is a handle
        {"9,9", "@c +9.5,-9.5 move down +9,0 move up", 0, 0, true},  // the rest orbits
        {"1", "@c +-30,-6.5 move down +9,0 move up", 0, 0, true},
        {"4", "@c move down +20,7 move up", 20, 0.25, false}}; // z runs to the left
    for (const auto &row : rows) {
        hand(row.first), settle(glw());
        const QString before = pose();
        const SectionFrame frame = item()->sectionFrames()[0];
        const float depth = camera().depth(frame.corners[0]);
        const double step = row.step * 2 * double(camera().halfHeight(depth)) / 400 / frame.scale;
        const double expected = row.step != 0 ? planes()[0].offset - step : 2;
        hand(row.script), settle(glw());
        EXPECT_NEAR(planes()[0].offset, expected, step * row.within) << row.script;
        EXPECT_EQ(pose() != before, row.orbits) << row.script;
    }
}

} // namespace
} // namespace host
