// SPDX-License-Identifier: MIT
// One file under a person's hands: areas, the legend, and the overlays in front of it.
#include <functional>

#include <QTest>

#include "host/item/camera_geometry.h"
#include "host/item/model_item.h"
#include "host/item/playback.h"
#include "host/item/series_item.h"
#include "host/view/single_view.h"
#include "support.h"

namespace host {
namespace {

class SingleTest : public ViewTest {
protected:
    std::unique_ptr<SingleView> view;

    void open(const QString &path)
    {
        view = std::make_unique<SingleView>(*window, queue, path);
        show(*view);
    }
    void openFromTheFront(int count)
    {
        open(boxes("model.obj", count));
        view->lookFrom(Steering::Side::Front);
        settle(view->mainGLW());
    }
    void TearDown() override { view.reset(); }

    template <typename Kind> Kind *item()
    {
        return dynamic_cast<Kind *>(view->item(view->mainGLW()));
    }
    QVector3D forward() const
    {
        return CameraGeometry(view->mainGLW()->camera, QSizeF(600, 400)).forward();
    }
};

TEST_F(SingleTest, ARectangleSelectsThePartsThatItMeets)
{
    openFromTheFront(2);
    const auto *model = item<ModelItem>();
    ASSERT_TRUE(model);
    drag({150, 80}, {250, 320}, Qt::RightButton, Qt::ShiftModifier);
    EXPECT_EQ(model->marks().selected(), (std::vector<bool>{true, false}));
    drag({250, 120}, {430, 320}, Qt::RightButton, Qt::ShiftModifier);
    EXPECT_EQ(model->marks().selected(), (std::vector<bool>{true, true}));
    drag({450, 320}, {350, 80}, Qt::RightButton, Qt::ShiftModifier);
    EXPECT_EQ(model->marks().selected(), (std::vector<bool>{false, true}));
    drag({20, 20}, {60, 50}, Qt::RightButton, Qt::ShiftModifier);
    EXPECT_EQ(model->marks().selected(), (std::vector<bool>{false, false}));
}

TEST_F(SingleTest, AnAnimationPlaysAndItsBarGoesToATime)
{
    open(file("walk.bvh",
              "HIERARCHY\nROOT a\n{\nOFFSET 0 0 0\nCHANNELS 6 Xposition Yposition "
              "Zposition Zrotation Xrotation Yrotation\nEnd Site\n{\nOFFSET 0 1 0\n}\n}\n"
              "MOTION\nFrames: 3\nFrame Time: 1\n0 0 0 0 0 0\n4 0 0 0 0 0\n8 0 0 0 0 0\n"));
    const auto *model = item<ModelItem>();
    Playback *playback = view->item(view->mainGLW())->playback();
    ASSERT_TRUE(playback);
    const float before = model->mesh().min.x();
    const auto moved = [&] { // a frame moves it, the next one finds it at rest
        frame();
        frame();
        return model->mesh().min.x() - before;
    };
    key(Qt::Key_Space);
    for (int i = 0; i < 4; ++i)
        frame(); // of a tenth of a second each
    EXPECT_NEAR(playback->time(), 0.4, 0.11);
    EXPECT_EQ(moved(), 0) << "what is picked stays until it stops";
    click({164, 342}); // the button
    EXPECT_NEAR(moved(), 4 * playback->time(), 1e-3);
    click({259, 342}); // the middle of the bar
    EXPECT_NEAR(moved(), 4, 0.1);
    drag({259, 342}, {340, 200}, Qt::LeftButton);
    EXPECT_NEAR(moved(), 8, 0.1);
    EXPECT_FALSE(playback->isPlaying());
    playback->setClip(-1);
    EXPECT_EQ(moved(), 0);
    playback->setTime(1);
    playback->setPlaying(true);
    playback->advance(1.5); // of two seconds
    EXPECT_NEAR(playback->time(), 0.5, 1e-9);
}

TEST_F(SingleTest, ARectangleTakesWhatIsSeenAndWithAltWhatIsBehind)
{
    openFromTheFront(3);
    auto *model = item<ModelItem>();
    view->lookFrom(Steering::Side::Right); // the third box covers the others
    settle(view->mainGLW());
    using Parts = std::vector<bool>;
    const auto all = [&](Qt::KeyboardModifiers more) {
        drag({100, 50}, {500, 350}, Qt::RightButton, Qt::ShiftModifier | more);
        return model->marks().selected();
    };
    EXPECT_EQ(all({}), (Parts{false, false, true}));
    EXPECT_EQ(all(Qt::AltModifier), (Parts{true, true, true}));
    model->marks().setHidden(2, true);
    EXPECT_EQ(all({}), (Parts{false, true, false}));
    EXPECT_EQ(all(Qt::AltModifier), (Parts{true, true, false}));
}

TEST_F(SingleTest, PartsAreSelectedHiddenAndFitted)
{
    openFromTheFront(3);
    auto *model = item<ModelItem>();
    const auto marks = [&] {
        std::string all;
        for (std::size_t i = 0; i < 3; ++i)
            all += model->marks().isHidden(i) ? 'h' : model->marks().isSelected(i) ? 's' : '.';
        return all;
    };
    // The axes take 104 pixels on the left.
    const QPointF left(150, 200), middle(352, 200), right(550, 200), beside(352, 70);
    const struct {
        const char *name;
        std::function<void()> act;
        const char *after;
    } steps[] = {
        {"Click", [&] { click(left); }, "s.."},
        {"ClickOther", [&] { click(middle); }, ".s."},
        {"Add", [&] { click(right, Qt::ControlModifier); }, ".ss"},
        {"Take", [&] { click(middle, Qt::ControlModifier); }, "..s"},
        {"Beside", [&] { click(beside); }, "..."},
        {"HideUnderPointer", [&] { move(left), frame(), key(Qt::Key_H); }, "h.."},
        {"HiddenIsNotHit", [&] { click(left); }, "h.."},
        {"Only", [&] { click(right), key(Qt::Key_I); }, "hhs"},
        {"All", [&] { key(Qt::Key_A); }, "..s"},
        {"HideSelected", [&] { key(Qt::Key_H); }, "..h"},
    };
    for (const auto &step : steps) {
        step.act();
        EXPECT_EQ(marks(), step.after) << step.name;
    }
    EXPECT_TRUE(model->details().endsWith("1 part hidden"));
    // What is fitted stands in the middle of the rest: where its front is seen, along x.
    const auto fitted = [&](double from, double to, double width) {
        key(Qt::Key_F);
        settle(view->mainGLW());
        double seen[2];
        for (const int i : {0, 1})
            seen[i] = CameraSteering::geometryOf(view->mainGLW())
                          .pixel((QVector3D(float(i ? to : from), 1, 2) - model->centre()) *
                                 model->scale())
                          .x();
        EXPECT_NEAR((seen[0] + seen[1]) / 2, 352, 2) << to;
        EXPECT_NEAR(seen[1] - seen[0], width, 12) << to;
    };
    fitted(0, 5, 446); // the two that are shown
    model->select(0, false);
    fitted(0, 2, 261);
    key(Qt::Key_A);
    model->select(-1, false);
    fitted(0, 8, 446);
}

TEST_F(SingleTest, ARectangleSelectsSamplesAndTheLegendTogglesColumns)
{
    open(file("weather.csv", weather()));
    const auto *series = item<SeriesItem>();
    ASSERT_TRUE(series);
    const SeriesPlot &plot = series->plot();
    const auto at = [&](double x, double y) { return plot.toLocal(view->mainGLW(), {x, y}); };
    drag(at(1.5, 20.5), at(5.5, 15), Qt::RightButton, Qt::ShiftModifier);
    EXPECT_EQ(plot.selection().counts, (std::vector<std::size_t>{4, 0}));
    drag(at(6.5, -0.5), at(8.5, 20.5), Qt::RightButton, Qt::ShiftModifier);
    EXPECT_EQ(plot.selection().counts, (std::vector<std::size_t>{2, 2}));

    click(PlotLayout(plot.table(), {600, 400}).legend[1].center());
    EXPECT_TRUE(plot.enabled(0));
    EXPECT_FALSE(plot.enabled(1));
    EXPECT_EQ(plot.selection().total, 2u) << "of what is shown; the range stays";
    click(PlotLayout(plot.table(), {600, 400}).legend[1].center());
    EXPECT_TRUE(plot.enabled(1));
    click(at(4.5, 10));
    EXPECT_EQ(plot.selection().total, 0u);
}

TEST_F(SingleTest, AnArmOfTheTriadLooksAlongItsAxis)
{
    openFromTheFront(2);
    // The middle of the triad stands 58 pixels from the left and from the bottom.
    const QPointF middle(58, 342);
    click(middle + QPointF(17, -17)); // between the arms
    settle(view->mainGLW());
    EXPECT_NEAR(double(forward().z()), -1, 1e-3);
    click(middle + QPointF(34, 0)); // +X
    settle(view->mainGLW());
    EXPECT_NEAR(double(forward().x()), -1, 1e-3);
    click(middle + QPointF(0, -34)); // +Y
    settle(view->mainGLW());
    EXPECT_NEAR(double(forward().y()), -1, 1e-2);
}

TEST_F(SingleTest, TheStripOpensTheFilesBesideThisOne)
{
    boxes("a.obj", 1);
    boxes("c.obj", 1);
    open(boxes("b.obj", 1));
    QStringList chosen;
    QObject::connect(view.get(), &SingleView::fileChosen,
                     [&](const QString &path) { chosen << QFileInfo(path).fileName(); });
    // Five cells of 60 pixels in the middle of the lower edge, this file in the third.
    const double y = 386;
    click({180, y}); // nothing comes before a.obj
    click({300, y});
    EXPECT_EQ(chosen.join(' '), "");
    click({240, y});
    click({360, y});
    move({300, 100});
    key(Qt::Key_PageDown);
    EXPECT_EQ(chosen.join(' '), "a.obj c.obj c.obj");
}

} // namespace
} // namespace host
