// SPDX-License-Identifier: MIT
// Two models compared, with a hand at the window.
#include <QRegularExpression>

#include "host/view/compare/compare_view.h"
#include "host/view/window/binding.h"
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
        view = own.get(), show(*view), frame();
    }
    void TearDown() override { own.reset(); }
    ModelItem *item(int model) const
    {
        return dynamic_cast<ModelItem *>(view->item(view->tile(model)));
    }
    const GL::Camera &camera(int model) const { return view->tile(model)->camera; }
    /// Of a place in the world, in the file's units, as it is seen in the tile of @p model.
    QString at(int model, const QVector3D &place) const
    {
        const GLW *glw = view->tile(model);
        const QVector3D to = (place - item(model)->centre()) * item(model)->scale();
        const QPointF p = glw->rect.topLeft() + CameraSteering::geometryOf(glw).pixel(to);
        return QString("%1,%2 ").arg(qRound(p.x())).arg(400 - qRound(p.y()));
    }
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
    for (const bool swapped : {false, true}) {
        const QImage second = picture(0), first = picture(1), both = picture(0.4);
        int differing[2] = {}, wrong = 0; // pixels left and right of the line
        for (int i = 0; i < both.width() * both.height(); ++i) {
            const QPoint at(i % 1200, i / 1200);
            const bool left = at.x() < 480;
            differing[left ? 0 : 1] += first.pixel(at) != second.pixel(at);
            wrong += both.pixel(at) != (left ? first : second).pixel(at);
        }
        EXPECT_LE(wrong, 4) << swapped << ": where the line cuts an outline";
        EXPECT_TRUE(differing[0] > 5000 && differing[1] > 5000);
        // Three reach farther.
        EXPECT_EQ(first.pixel(1000, 400) == both.pixel(1190, 400), !swapped);
        hand("S");
    }
    EXPECT_EQ(bindingRows(view->bindings()).last().keys, "left drag on the line between the two");
    EXPECT_EQ(menu(*view, view->mainGLW()),
              "Beside one another|*One over the other, with a divider|The difference of their "
              "surfaces|Beside one another, with a divider, their difference\tD|Swap the "
              "two\tS||Dark background\tB|");
}

TEST_F(CompareTest, BothLieInOneWorldAndAreLookedAtTogether)
{
    open(CompareWay::Beside);
    EXPECT_EQ(item(0)->centre(), QVector3D(4, 1, 1));
    EXPECT_TRUE(item(1)->centre() == item(0)->centre() && item(1)->scale() == item(0)->scale());
    const auto pose = [this](int i) {
        const GL::Camera &c = camera(i);
        return std::tuple(c.rot, c.setTarget, c.radius, c.ortho, item(i)->axes()->of);
    };
    EXPECT_TRUE(pose(0) == pose(1));
    for (const int under : {0, 1, 0}) {
        hand(at(under, {1, 1, 1}) + "move");
        EXPECT_TRUE(item(under)->hoveredPart() == 0 && item(1 - under)->hoveredPart() < 0);
    }
    for (const char *script : {"450,200 move down +30,20 move up", "150,200 move wheel", "O", "U",
                               "S 450,200 move 4", "D 450,200 move down +30,20 move up D D"}) {
        const auto before = pose(0);
        hand(script), settle(view->tile(0)), settle(view->tile(1));
        EXPECT_TRUE(pose(0) == pose(1) && pose(0) != before) << script;
    }
    EXPECT_LT(view->tile(1)->rect.right(), view->tile(0)->rect.right()) << "swapped";
    const Vector rot = camera(0).rot;
    view->readAgain(boxes("b.obj", 5));
    EXPECT_TRUE(until([&] { return item(0)->centre().x() == 7; }));
    EXPECT_TRUE(camera(0).rot == rot && item(1)->count() == 60);
    file("b.obj", "f 1 2 3\n"), view->readAgain({});
    EXPECT_TRUE(until([&] { return !view->fault().isEmpty(); }));
    EXPECT_EQ(written(*view).texts.count(view->fault()), 1u);
    const ModelItem *kept = item(1);
    EXPECT_EQ((emit queue.finished(5, {}), item(1)), kept);
    EXPECT_EQ(view->fault().toStdString(), "b.obj is no model: only models can be compared.");
    view->readAgain(boxes("a.obj", 3));
    EXPECT_TRUE(until([&] { return item(0)->count() == 36; }));
    EXPECT_EQ(item(1)->count(), 60) << "what was there stays";
    window->frame()->resize(300, 600), frame();
    EXPECT_EQ(written(*view).lines.at(0).first, QLineF(0, 300, 300, 300)) << "one above the other";
}

TEST_F(CompareTest, KeysAndEntriesDoWhatTheySayAndAreDrawn)
{
    int jobs = 0;
    const auto fault = [&](const QString &first, const QString &second, const char *hint) {
        own = std::make_unique<CompareView>(*window, queue, CompareView::Model{first},
                                            CompareView::Model{second}, CompareWay::Difference);
        emit queue.progressed(jobs += 2, .5, "half of it"); // the second
        const PaintRecord waits = written(*own);
        const auto box = [&](std::size_t i) { return waits.fills.at(i).first; };
        EXPECT_TRUE(!own->isQuiet() && waits.texts.count("half of it") == 1 && box(2).width() == 8);
        EXPECT_TRUE(box(0).center().x() == 150 && box(3).center().x() == 450);
        EXPECT_EQ(box(5).width() * 2, box(4).width());
        widget->window()->show();
        EXPECT_TRUE(until([&] { return frame(), !own->fault().isEmpty(); }));
        EXPECT_EQ(written(*own).texts.count(hint), 1u) << hint;
        for (const auto &[box, colour] : written(*own).fills)
            EXPECT_NE(colour, own->display().theme().accent) << "no bar: nothing goes on";
        return own->fault().toStdString();
    };
    EXPECT_EQ(fault(boxes("a.obj", 1), file("b.csv", weather()), "Esc leaves the comparison."),
              "b.csv is no model: only models can be compared.");
    EXPECT_EQ(fault(file("p.xyz", "0 0 0\n1 1 1\n"), boxes("a.obj", 1), "D shows the next way."),
              "The first model has no surface to measure from.");
    own.reset();
    open(CompareWay::Beside, .25);
    hand("9,300 move");
    const auto state = [&] {
        EXPECT_TRUE(until([&] { return view->isSettled(); }));
        frame();
        // Words of what has room depend on letters.
        const PaintRecord drawn = written(view->pictured(false));
        const QString words =
            QString(drawn.all().c_str()).remove(QRegularExpression("[^|]*triang[^|]*"));
        QString panels; // where they stand, from the nearer side
        for (const auto &[box, colour] : drawn.fills)
            if (colour == view->display().theme().panel)
                panels +=
                    QString(" %1").arg(std::min(std::fmod(box.left(), 300), 600 - box.right()));
        if (view->way() != CompareWay::Difference)
            panels += QString("|line %1|").arg(drawn.lines.at(0).first.x1());
        for (const auto &[text, how] : drawn.texts)
            if (text.endsWith(".obj")) // and on which side the names
                panels += QString(" %1%2").arg(text[0]).arg(int(how.box.left() / 300));
        if (view->way() == CompareWay::Difference)
            panels += QString("|mark %1").arg(qRound(drawn.lines.at(5).first.length()));
        panels += '|';
        for (int i = 0; i < 3; ++i)
            panels += view->tile(i)->property<bool>("visible") ? "+" : "-";
        return QString("way %1|at %2|%3|%4|%5")
            .arg(int(view->way()))
            .arg(view->divider().share() * 600)
            .arg(panels, view->title(), words);
    };
    walk(
        *view, view->mainGLW(),
        "~. > ; ~] > ; S >  a1 b0|b.obj and a.obj; =Swap the two >  a0 b1|a.obj and b.obj; "
        "~Ctrl+Right > ; D > way 1|+--; Ctrl+Right > at 315|line 315; ~309,100 move down up > ; "
        "~320,100 move down +25,30 "
        "move up > at 340|line 340; ~353,200 move down +-15,0 move up > at 325|line 325; Ctrl+Left "
        "> at 310|line 310; Ctrl+Right > at 325|line 325; =Beside one another > way 0|line "
        "300|++-; =One over the other, with a divider > way 1|line 325|+--; S >  a1 b0|b.obj and "
        "a.obj; S >  a0 b1|a.obj and b.obj; =The difference of their surfaces > way 2| 12 12 b0 "
        "f1|mark 9|--+|+10  outside|+5|-10  inside|-5|0|0 to 6|33.3 % within ±0.5|Distance|RMS "
        "3.149|from a.obj|mean 2.333; ] > mark 4|+10|+20  outside|-10|-20  inside; [ > mark 9|+10 "
        " outside|+5|-10  inside|-5; . > mark 17|34.7 % within ±1; =Colours up to a larger "
        "distance > mark 9|+10|+20  outside|-10|-20  inside; =Colours up to a smaller distance > "
        "mark 17|+10  outside|+5|-10  inside|-5; =Larger tolerance > mark 34|50.4 % within ±2; "
        "=Smaller tolerance > mark 17|34.7 % within ±1; =Beside one another, with a divider, "
        "their difference > way 0| 12 12|line 300| a0 b1|++-|a.obj",
        state);
}

TEST_F(CompareTest, ColoursSayHowFarTheSecondIs)
{
    open(CompareWay::Difference, .25);
    ASSERT_TRUE(view->difference());
    EXPECT_DOUBLE_EQ(view->difference()->deviation.greatest, 6) << "at the end of the third box";
    view->ToggleLighting();
    settle(view->tile(2));
    const auto front = [this](float x) { return at(2, {x, .16f, .25f}); };
    const QImage shown = picture(0.5);
    for (const auto &[x, distance] : {std::pair{1.0f, 0.0}, {4.5f, 2.5}, {7.5f, 5.5}}) {
        const QStringList p = front(x).split(',');
        const QColor seen = shown.pixel(2 * p[0].toInt(), 2 * p[1].toInt()),
                     meant = ColourScale{true, 10}.at(distance);
        EXPECT_NEAR(seen.red() - seen.blue(), meant.red() - meant.blue(), 9) << distance;
        EXPECT_NEAR(seen.green() - seen.blue(), meant.green() - meant.blue(), 9) << distance;
    }
    for (const auto &[x, distance] : {std::pair{4.5f, 2.5}, {7.0f, 5.0}, {-0.3f, 0.0}}) {
        hand(front(x) + "move");
        QThreadPool::globalInstance()->waitForDone(); // what finds it
        frame();
        const QString told = item(2)->underPointer();
        EXPECT_NEAR(told.section(' ', 1, 1).toDouble(), distance, 0.05) << told.toStdString();
        EXPECT_EQ(told.startsWith("distance "), distance > 0) << "beside the boxes";
    }
    hand(front(7) + "move");
    EXPECT_TRUE(asks(*view, front(7.5f) + "move")) << "the same part, but farther";
    auto blocked = std::make_unique<BlockedThreads>();
    hand("S"); // the boxes bound a volume too
    EXPECT_NE(texts(*view).find("Esc stops it.|Measuring the distances|"), std::string::npos);
    EXPECT_TRUE(view->leaveTool() && view->way() == CompareWay::Beside && !view->leaveTool());
    blocked.reset(), hand("D D"), show(*view);
    EXPECT_EQ(view->difference()->deviation.largest, 0) << "the first lies on the others";
}

} // namespace
} // namespace host
