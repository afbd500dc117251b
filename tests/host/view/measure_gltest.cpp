// SPDX-License-Identifier: MIT
// Measuring with a hand at the window: two boxes of side 2 with a gap of 1 between them.
#include <QApplication>
#include <QClipboard>
#include <QTest>

#include "host/capture/picture.h"
#include "host/item/model_item.h"
#include "host/view/single_view.h"
#include "sheet/support.h"
#include "tests/GL/table.h"

namespace host {
namespace {

class MeasureTest : public ViewTest {
protected:
    std::unique_ptr<SingleView> view;

    void open()
    {
        view = std::make_unique<SingleView>(*window, queue, boxes("two.obj", 2));
        show(*view);
        QApplication::setActiveWindow(window->widget()); // shortcuts are heard
        settle(view->mainGLW());
    }
    void TearDown() override { view.reset(); }

    MeasureTool &tool() const { return *view->measureTool(); }
    ModelItem &item() const { return *dynamic_cast<ModelItem *>(view->item(view->mainGLW())); }

    QPointF at(const QVector3D &place) const
    {
        const QPointF p = CameraSteering::geometryOf(view->mainGLW())
                              .pixel((place - item().centre()) * item().scale());
        return {p.x(), 400 - p.y()};
    }
    void await()
    {
        ASSERT_TRUE(QTest::qWaitFor([&] { return !tool().isBusy(); }, 20000));
    }
    /// Chooses a kind by so many presses of its key, and clicks.
    void measure(int kind, const std::vector<QVector3D> &places)
    {
        for (int i = 0; i < kind; ++i)
            key(Qt::Key_D);
        await();
        for (const QVector3D &place : places)
            click(at(place) + QPointF(1, -2));
    }
    QString measured() const
    {
        QStringList all;
        for (const Measurement &m : tool().measurements())
            all << m.text();
        return all.join('\n').replace('\t', '|');
    }
    QImage picture()
    {
        PictureRequest request;
        request.window = request.size = window->widget()->size();
        window->widget()->makeCurrent();
        request.objects = view->pictured(false).objects();
        return renderPicture(request).image;
    }
};

struct ClicksCase {
    const char *name;
    int kind;
    std::vector<QVector3D> places;
    const char *text;
};

const ClicksCase clicksCases[] = {
    {"Distance", 1, {{0, 2, 2}, {5, 0, 2}}, "Distance|5.38516|Δx 5   Δy -2   Δz 0"},
    {"Point", 2, {{3, 2, 2}}, "Point|x 3   y 2   z 2"},
    {"Faces", 3, {{1, 1, 2}, {1, 2, 1}}, "Angle of faces|90°"},
    {"ParallelFaces", 3, {{1, 1, 2}, {4, 1, 2}}, "Angle of faces|180°|parallel, 0 apart"},
    {"Points", 4, {{0, 0, 2}, {2, 0, 2}, {0, 2, 2}}, "Angle of points|45°"},
    {"Radius", 5, {{1, 2, 2}}, ""},
    {"AllKindsAround", 6, {{0, 2, 2}, {0, 0, 2}}, "Distance|2|Δx 0   Δy -2   Δz 0"},
    {"BesideTheModel", 2, {{9, 9, 9}}, ""},
};

TABLE(MeasureClicks, MeasureTest, ClicksCase, clicksCases);

TEST_P(MeasureClicks, AreMeasured)
{
    open();
    measure(GetParam().kind, GetParam().places);
    EXPECT_EQ(measured().toStdString(), GetParam().text);
    EXPECT_EQ(tool().hint().contains("no circle"), GetParam().name == std::string("Radius"));
    // On another axis it is drawn elsewhere and says the same.
    item().standOn(view->mainGLW(), FileAxes::Z);
    await();
    EXPECT_EQ(measured().toStdString(), GetParam().text);
}

TEST_F(MeasureTest, AreaAndVolumeAreThoseOfWhatIsSelectedOrShown)
{
    open();
    const auto surface = [&] {
        key(Qt::Key_D, Qt::ShiftModifier);
        await();
        const QString text = measured().section('\n', -1);
        return text.section('|', 1).toStdString();
    };
    EXPECT_EQ(surface(), "whole model|area 48|volume 16");
    item().marks().setSelected(1, true);
    EXPECT_EQ(surface(), "box1|area 24|volume 8");
    item().marks().setSelected(0, true);
    EXPECT_EQ(surface(), "2 of 2 parts|area 48|volume 16");
    item().marks().setHidden(0, true);
    item().marks().clearSelection();
    EXPECT_EQ(surface(), "all that is shown|area 24|volume 8");
    measure(2, {{2, 2, 2}});
    EXPECT_EQ(tool().measurements().size(), 4u) << "hidden parts are not met";
}

TEST_F(MeasureTest, TheToolTakesClicksAndLeavesDrags)
{
    open();
    item().marks().setSelected(0, true);
    measure(1, {{0, 2, 2}});
    EXPECT_EQ(item().marks().selectedCount(), 1u);
    const float before = view->mainGLW()->camera.rot.y;
    drag({300, 200}, {340, 200}, Qt::LeftButton);
    settle(view->mainGLW());
    EXPECT_NE(view->mainGLW()->camera.rot.y, before);
    click(at({2, 2, 2}));
    EXPECT_EQ(measured().toStdString(), "Distance|2|Δx 2   Δy 0   Δz 0");
    click(at({2, 2, 2}));
    key(Qt::Key_Backspace); // the click
    EXPECT_EQ(tool().measurements().size(), 1u);
    key(Qt::Key_C, Qt::ControlModifier);
    EXPECT_EQ(QApplication::clipboard()->text(), "Distance\t2\tΔx 2   Δy 0   Δz 0\n");
    EXPECT_TRUE(view->leaveTool());
    EXPECT_FALSE(view->leaveTool());
    click(at({4, 1, 2}));
    EXPECT_EQ(item().marks().selected(), (std::vector<bool>{false, true})) << "again a view's";
    key(Qt::Key_Delete);
    EXPECT_EQ(measured(), "");
}

TEST_F(MeasureTest, LabelsArePartOfPicturesAndTheMarkIsNot)
{
    open();
    const QColor accent = view->display().theme().accent;
    const QImage plain = picture();
    measure(1, {});
    move(at({2, 2, 2}));
    EXPECT_EQ(picture(), plain);
    measure(0, {{0, 2, 2}, {2, 2, 2}});
    const QImage measured = picture();
    const QPoint middle = ((at({0, 2, 2}) + at({2, 2, 2})) / 2).toPoint();
    int line = 0;
    for (int y = -3; y <= 3; ++y)
        line += QColor(measured.pixel(middle + QPoint(0, y))) == accent;
    EXPECT_GT(line, 0);
    EXPECT_EQ(QColor(plain.pixel(middle)) == accent, false);
}

TEST_F(MeasureTest, WhatWasMeasuredStaysWhileTheShapeDoes)
{
    open();
    measure(2, {{2, 2, 2}});
    const auto again = [&] {
        const MeshPtr before = item().sharedMesh();
        view->readAgain({});
        return QTest::qWaitFor([&] { return item().sharedMesh() != before; }, 20000);
    };
    ASSERT_TRUE(again());
    EXPECT_EQ(tool().measurements().size(), 1u);
    boxes("two.obj", 3);
    ASSERT_TRUE(again());
    EXPECT_EQ(measured(), "");
    EXPECT_TRUE(tool().hint().contains("gone"));
}

} // namespace
} // namespace host
