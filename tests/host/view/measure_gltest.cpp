// SPDX-License-Identifier: MIT
// Measuring with a hand at the window: two boxes of side 2 with a gap of 1 between them.
#include <QApplication>
#include <QClipboard>

#include "sheet/support.h"

namespace host {
namespace {

class MeasureTest : public SingleViewTest {
protected:
    void open() { SingleViewTest::open(boxes("two.obj", 2), false); }

    MeasureTool &tool() const { return *view->measureTool(); }
    void await()
    {
        ASSERT_TRUE(QTest::qWaitFor([&] { return !tool().isBusy(); }, 20000));
    }
    /// Chooses a kind by so many presses of its key, and clicks a little beside each of the places.
    void measure(int kind, const QString &places)
    {
        hand(QString("D ").repeated(kind) + "1,1");
        await();
        for (const QString &place : places.split(' ', Qt::SkipEmptyParts))
            hand('@' + place + " +1,-2 click");
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
        {5, "1,2,2", ""}, // a radius
        {6, "0,2,2 0,0,2", "Distance|2|Δx 0   Δy -2   Δz 0"},
        {2, "9,9,9", ""},
    };
    for (const auto &[kind, places, text] : rows) {
        open();
        measure(kind, places);
        EXPECT_EQ(measured(), text) << kind;
        EXPECT_EQ(tool().hint().contains("no circle"), kind == 5);
        // On another axis it is drawn elsewhere and says the same.
        item()->standOn(glw(), FileAxes::Z);
        await();
        EXPECT_EQ(measured(), text) << kind;
    }
}

TEST_F(MeasureTest, AreaAndVolumeAreThoseOfWhatIsSelectedOrShown)
{
    open();
    const std::pair<const char *, const char *> steps[] = {
        {"Shift+D", "whole model|area 48|volume 16"},
        {"@4,1,2 click Shift+D", "box1|area 24|volume 8"},
        {"ctrl @1,1,2 click none Shift+D", "2 of 2 parts|area 48|volume 16"},
        {"@1,1,2 click H Shift+D", "all that is shown|area 24|volume 8"}};
    for (const auto &[script, surface] : steps) {
        hand(script);
        await();
        const QString last = tool().measurements().back().text();
        EXPECT_EQ(last.section('\t', 1).replace('\t', '|'), surface);
    }
    measure(2, "2,2,2");
    EXPECT_EQ(tool().measurements().size(), 4u) << "hidden parts are not met";
}

TEST_F(MeasureTest, TheToolTakesClicksAndLeavesDrags)
{
    open();
    hand("@1,1,2 click");
    measure(1, "0,2,2");
    EXPECT_EQ(marks(), "s.");
    const QString before = pose();
    hand("300,200 move down 340,200 move up");
    settle(glw());
    EXPECT_NE(pose(), before);
    hand("@2,2,2 click");
    EXPECT_EQ(measured(), "Distance|2|Δx 2   Δy 0   Δz 0");
    hand("@2,2,2 click Backspace Ctrl+C"); // the click
    EXPECT_EQ(tool().measurements().size(), 1u);
    EXPECT_EQ(QApplication::clipboard()->text(), "Distance\t2\tΔx 2   Δy 0   Δz 0\n");
    EXPECT_TRUE(view->leaveTool());
    EXPECT_FALSE(view->leaveTool());
    hand("@4,1,2 click Del");
    EXPECT_EQ(marks(), ".s") << "a click is the view's again";
    EXPECT_EQ(measured(), "");
}

TEST_F(MeasureTest, LabelsArePartOfPicturesAndTheMarkIsNot)
{
    open();
    const QImage plain = picture(), clean = picture(false);
    measure(1, "");
    hand("@2,2,2 move");
    EXPECT_EQ(picture(), plain);
    measure(0, "0,2,2 2,2,2");
    EXPECT_NE(picture(), plain);
    EXPECT_EQ(picture(false), clean);
    hand("M @2,0,2 click 9,200 move"); // what is done shows even so
    const QImage step = painted();
    hand("Backspace");
    for (const QRect &place : {QRect(at({2, 0, 2}).toPoint(), QSize(3, 3)), {104, 300, 300, 99}})
        EXPECT_NE(painted().copy(place), step.copy(place));
}

TEST_F(MeasureTest, WhatWasMeasuredStaysWhileTheShapeDoes)
{
    open();
    measure(2, "2,2,2");
    for (const int count : {2, 3}) {
        boxes("two.obj", count);
        const MeshPtr before = item()->sharedMesh();
        view->readAgain({});
        ASSERT_TRUE(QTest::qWaitFor([&] { return item()->sharedMesh() != before; }, 20000));
        EXPECT_EQ(tool().measurements().size(), count == 2 ? 1u : 0u);
        EXPECT_EQ(tool().hint().contains("gone"), count == 3);
    }
}

} // namespace
} // namespace host
