// SPDX-License-Identifier: MIT
// Two models held against each other, under a person's hands and in pictures.
#include <QRegularExpression>
#include <QThreadPool>

#include "host/view/compare/compare_view.h"
#include "sheet/support.h"

namespace host {
namespace {

/// a.obj is a box from 0 to 2 along each axis, b.obj three of them side by side up to 8.
class CompareTest : public ViewTest {
protected:
    std::unique_ptr<CompareView> own;
    CompareView *view = nullptr;

    CompareTest() { smooth = false; }

    /// Flat boxes are measured sooner: what is long is halved many times.
    void open(CompareWay way, double height = 2)
    {
        own = std::make_unique<CompareView>(*window, queue,
                                            CompareView::Model{boxes("a.obj", 1, height)},
                                            CompareView::Model{boxes("b.obj", 3, height)}, way);
        view = own.get();
        show(*view);
        frame();
    }
    void TearDown() override { own.reset(); }
    ModelItem *item(int model) const
    {
        return dynamic_cast<ModelItem *>(view->item(view->tile(model)));
    }
    const GL::Camera &camera(int model) const { return view->tile(model)->camera; }
    /// In blocks, twice as large as the window.
    QImage picture(double share)
    {
        view->divider().setShare(share);
        return ViewTest::picture(*view, false, 2).convertToFormat(QImage::Format_RGB32);
    }
};

TEST_F(CompareTest, TheDividerShowsOneOnEachSide)
{
    open(CompareWay::Divider);
    view->lookFrom(Steering::Side::Front);
    for (const bool swapped : {false, true}) {
        const QImage second = picture(0), first = picture(1), both = picture(0.4);
        int differing[2] = {}, wrong = 0; // pixels left and right of the line
        for (int y = 0; y < both.height(); ++y)
            for (int x = 0; x < both.width(); ++x) {
                const bool left = x < 480; // of 1200
                differing[left ? 0 : 1] += first.pixel(x, y) != second.pixel(x, y);
                wrong += both.pixel(x, y) != (left ? first : second).pixel(x, y);
            }
        EXPECT_LE(wrong, 4) << swapped << ": where the line cuts an outline";
        EXPECT_GT(differing[0], 5000);
        EXPECT_GT(differing[1], 5000);
        const QRgb ground = both.pixel(1190, 400), middle = first.pixel(1000, 400);
        EXPECT_EQ(middle == ground, !swapped) << "the three boxes reach farther";
        hand("S");
    }
    const auto orbits = [this](const char *script) {
        const Vector rot = camera(0).rot;
        hand(script);
        settle(view->tile(0));
        return camera(0).rot != rot;
    };
    EXPECT_FALSE(orbits("240,100 move down +100,30 move up"));
    EXPECT_DOUBLE_EQ(view->divider().share(), 340.0 / 600);
    EXPECT_TRUE(orbits("240,100 move down +40,30 move up"));
    hand("Ctrl+Left");
    EXPECT_DOUBLE_EQ(view->divider().share(), 325.0 / 600);
}

TEST_F(CompareTest, BothLieInOneWorldAndAreLookedAtTogether)
{
    open(CompareWay::Beside);
    EXPECT_EQ(item(0)->centre(), QVector3D(4, 1, 1));
    EXPECT_EQ(item(1)->centre(), item(0)->centre());
    EXPECT_EQ(item(1)->scale(), item(0)->scale());
    const auto differ = [this] {
        const GL::Camera &a = camera(0), &b = camera(1);
        return a.rot != b.rot || a.setTarget != b.setTarget || a.radius != b.radius ||
               a.ortho != b.ortho || item(0)->axes()->of != item(1)->axes()->of;
    };
    EXPECT_FALSE(differ());
    for (const char *script : {"450,200 move down +30,20 move up", "150,200 move wheel", "O", "U",
                               "S 450,200 move 4", "D 450,200 move down +30,20 move up D D"}) {
        const GL::Camera before = camera(0);
        const FileAxes axes = *item(0)->axes();
        hand(script);
        settle(view->tile(0));
        settle(view->tile(1));
        EXPECT_FALSE(differ()) << script;
        EXPECT_TRUE(camera(0).rot != before.rot || camera(0).radius != before.radius ||
                    camera(0).ortho != before.ortho || item(0)->axes()->of != axes.of)
            << script;
    }
    EXPECT_LT(view->tile(1)->rect.right(), view->tile(0)->rect.right()) << "swapped";
}

TEST_F(CompareTest, KeysAndEntriesDoWhatTheySayAndAreDrawn)
{
    own = std::make_unique<CompareView>(*window, queue, CompareView::Model{boxes("a.obj", 1)},
                                        CompareView::Model{file("b.csv", weather())},
                                        CompareWay::Beside);
    widget->window()->show();
    EXPECT_EQ(texts(*own), "Reading a.obj|Reading b.csv");
    EXPECT_TRUE(until([&] { return !own->fault().isEmpty(); }));
    EXPECT_EQ(own->fault(), "b.csv is no model: only models can be compared.");
    EXPECT_EQ(texts(*own).substr(0, 27), "Esc leaves the comparison.|");
    own.reset();
    open(CompareWay::Beside, .25);
    hand("9,300 move");
    const auto state = [&] {
        EXPECT_TRUE(until([&] { return view->isSettled(); }));
        frame();
        // Words of what has room depend on letters.
        const QString words = QString(texts(view->pictured(false)).c_str())
                                  .remove(QRegularExpression("[^|]*triang[^|]*"));
        return QString("way %1|at %2|%3|%4")
            .arg(int(view->way()))
            .arg(view->divider().share() * 600)
            .arg(view->title(), words);
    };
    walk(*view, view->mainGLW(),
         "S > b.obj and a.obj; =Swap the two > a.obj and b.obj; ~Ctrl+Right > ; D > way 1; "
         "Ctrl+Right > at 315; =Beside one another > way 0; =One over the other, with a divider > "
         "way 1; S > b.obj and a.obj; S > a.obj and b.obj; =The difference of their surfaces > way "
         "2|+10  outside|+5|-10  inside|-5|0|0 to 6|33.3 % within ±0.5|Distance|RMS 3.149|from "
         "a.obj|mean 2.333; ] > +10|+20  outside|-10|-20  inside; [ > +10  outside|+5|-10  "
         "inside|-5; . > 34.7 % within ±1; =Colours up to a larger distance > +10|+20  "
         "outside|-10|-20  inside; =Colours up to a smaller distance > +10  outside|+5|-10  "
         "inside|-5; =Larger tolerance > 50.4 % within ±2; =Smaller tolerance > 34.7 % within ±1; "
         "=Beside one another, with a divider, their difference > way 0|a.obj",
         state);
}

TEST_F(CompareTest, ColoursSayHowFarTheSecondIs)
{
    open(CompareWay::Difference, .25);
    ASSERT_TRUE(view->difference());
    EXPECT_DOUBLE_EQ(view->difference()->deviation.greatest, 6) << "at the end of the third box";
    view->lookFrom(Steering::Side::Front);
    view->ToggleLighting();
    settle(view->tile(2));
    const auto pixelAt = [this](float x) { // of the front
        const ModelItem *shown = item(2);
        const QVector3D at = (QVector3D(x, .16f, .25f) - shown->centre()) * shown->scale();
        return CameraSteering::geometryOf(view->tile(2)).pixel(at);
    };
    const QImage shown = picture(0.5);
    for (const auto &[x, distance] : {std::pair{1.0f, 0.0}, {4.5f, 2.5}, {7.5f, 5.5}}) {
        const QPointF p = pixelAt(x) * 2;
        const QColor seen = shown.pixel(int(p.x()), 800 - int(p.y())),
                     meant = ColourScale{true, 10}.at(distance);
        EXPECT_NEAR(seen.red() - seen.blue(), meant.red() - meant.blue(), 9) << distance;
    }
    for (const auto &[x, distance] : {std::pair{4.5f, 2.5}, {7.0f, 5.0}, {-0.3f, 0.0}}) {
        const QPointF p = pixelAt(x);
        hand(QString("%1,%2 move").arg(qRound(p.x())).arg(400 - qRound(p.y())));
        QThreadPool::globalInstance()->waitForDone(); // what finds it
        frame();
        const QString told = item(2)->underPointer();
        EXPECT_NEAR(told.section(' ', 1, 1).toDouble(), distance, 0.05) << told.toStdString();
        EXPECT_EQ(told.startsWith("distance "), distance > 0) << "beside the boxes";
    }
    hand("S"); // the boxes bound a volume too
    show(*view);
    EXPECT_EQ(view->difference()->deviation.largest, 0) << "the first lies on the others";
}

} // namespace
} // namespace host
