// SPDX-License-Identifier: MIT
// Two models held against each other, under a person's hands and in pictures.
#include <QThreadPool>

#include "host/app/viewer.h"
#include "host/view/compare/compare_view.h"
#include "host/view/sheet/sheet_view.h"
#include "sheet/support.h"

namespace host {
namespace {

/// a.obj is a box from 0 to 2 along each axis, b.obj three of them side by side up to 8.
class CompareTest : public ViewTest {
protected:
    std::unique_ptr<CompareView> own;
    CompareView *view = nullptr;

    void open(CompareWay way)
    {
        own = std::make_unique<CompareView>(*window, queue, CompareView::Model{boxes("a.obj", 1)},
                                            CompareView::Model{boxes("b.obj", 3)}, way);
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
        PictureRequest request;
        request.window = widget->size();
        request.size = request.window * 2;
        request.blockSide = 256;
        widget->makeCurrent();
        request.objects = view->pictured(false, false).objects();
        return renderPicture(request).image.convertToFormat(QImage::Format_RGB32);
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

TEST_F(CompareTest, ColoursSayHowFarTheSecondIs)
{
    open(CompareWay::Difference);
    ASSERT_TRUE(view->difference());
    EXPECT_DOUBLE_EQ(view->difference()->deviation.greatest, 6) << "at the end of the third box";
    view->lookFrom(Steering::Side::Front);
    view->ToggleLighting();
    settle(view->tile(2));
    const auto pixelAt = [this](float x) { // of the front
        const ModelItem *shown = item(2);
        const QVector3D at = (QVector3D(x, 1.3f, 2) - shown->centre()) * shown->scale();
        return CameraSteering::geometryOf(view->tile(2)).pixel(at);
    };
    const auto colourAt = [&](const QImage &image, float x) {
        const QPointF p = pixelAt(x);
        return QColor(image.pixel(QPointF(p.x() * 2, 800 - p.y() * 2).toPoint()));
    };
    const auto near = [](const QColor &a, const QColor &b) {
        return std::abs(a.red() - b.red()) + std::abs(a.green() - b.green()) +
                   std::abs(a.blue() - b.blue()) <
               12;
    };
    for (const double end : {10.0, 20.0, 5.0}) {
        const QImage shown = picture(0.5);
        for (const auto &[x, distance] : {std::pair{1.0f, 0.0}, {4.5f, 2.5}, {7.5f, 5.5}}) {
            const QColor seen = colourAt(shown, x), meant = ColourScale{true, end}.at(distance);
            EXPECT_TRUE(near(seen, meant))
                << end << ' ' << distance << ' ' << seen.name().toStdString() << " for "
                << meant.name().toStdString();
        }
        const float radius = camera(2).radius;
        hand(end == 10 ? "]" : "[ [");
        EXPECT_EQ(camera(2).radius, radius);
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
    hand("Esc");
    EXPECT_EQ(view->way(), CompareWay::Difference) << "nothing is under way";
}

TEST_F(CompareTest, TwoOfASheetAreComparedAndLeft)
{
    Options options;
    options.files = QStringList{boxes("a.obj", 1), boxes("b.obj", 3), boxes("c.obj", 2)};
    options.size = QSize(600, 400);
    options.sizeGiven = true;
    Viewer viewer(loader, options);
    widget = viewer.view()->mainGLW()->gl;
    auto *sheet = dynamic_cast<SheetView *>(viewer.view());
    show(*sheet);
    const Item *shown = sheet->item(sheet->tile(2));
    hand("Tab D");
    EXPECT_EQ(viewer.view(), sheet) << "of one alone";
    hand("Ctrl+A D");
    EXPECT_EQ(viewer.view(), sheet) << "of three";
    QMetaObject::invokeMethod(sheet->scene(), "SelectAll"); // none
    for (int id : {1, 2})
        sheet->tile(id)->setProperty("selected", true);
    sheet->SelectionChanged(); // as it hears of what the module selects
    hand("D");
    frame();
    ASSERT_NE(viewer.view(), sheet);
    EXPECT_EQ(viewer.view()->title(), "a.obj and b.obj");
    EXPECT_TRUE(viewer.view()->isSettled()) << "nothing is read again";
    hand("B Esc");
    ASSERT_EQ(viewer.view(), sheet);
    EXPECT_EQ(sheet->item(sheet->tile(2)), shown);
    EXPECT_TRUE(sheet->display().dark);
}

} // namespace
} // namespace host
