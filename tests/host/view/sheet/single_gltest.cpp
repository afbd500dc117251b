// SPDX-License-Identifier: MIT
// One file under a person's hands: parts, areas, the legend, and the overlays in front of it.
#include "support.h"

namespace host {
namespace {

using SingleTest = SingleViewTest;

// The axes take 104 pixels on the left. From the right the third box covers the others.
TEST_F(SingleTest, PartsAreSelectedHiddenAndFitted)
{
    open(boxes("model.obj", 3));
    const auto parts = [&] { return QString(marks().c_str()); };
    QObject::connect(view.get(), &View::menuOpening, [] {
        QTimer::singleShot(0, qApp, [] { delete QApplication::activePopupWidget(); });
    });
    walk(*view, glw(),
         "~I > ; ~150,200 click > s..; ~352,200 click > .s.; ~ctrl 550,200 click > .ss; ~ctrl "
         "352,200 "
         "click > ..s; ~352,70 click > ...; ~shift right 150,80 move down 200,320 move up > s..; "
         "~shift right 200,120 move down 350,320 move up > ss.; ~shift right 500,320 move down "
         "380,80 move up > .ss; ~shift right 20,20 move down 60,50 move up > ...; ~150,200 move H "
         "> h..; ~150,200 click > ; ~550,200 click I > hhs; ~A > ..s; ~352,200 right click > .s.; "
         "~ctrl 150,200 click > ss.; ~352,200 right click > ; ~550,200 click > ..s; ~H > ..h",
         parts);
    EXPECT_TRUE(item()->details().endsWith("1 part hidden"));
    // What is fitted stands in the middle of the rest: where its front is seen, along x.
    walk(*view, glw(),
         "~F > 25 61 115 168; ~150,200 click F > 44 96 174 253; ~A ctrl 352,200 click none F > "
         "25 "
         "48 81 115",
         [&] {
             QString all;
             settle(glw());
             for (const float x : {0, 2, 5, 8})
                 all += QString::number(int(at({x, 1, 2}).x() / 5)) + ' ';
             return all.trimmed();
         });
    hand("4");
    settle(glw());
    walk(*view, glw(),
         "~shift right 110,50 move down 550,350 move up > ..s; ~alt shift right 110,50 move down "
         "550,350 move up > sss; ~352,200 click H > ..h; ~shift right 110,50 move down 550,350 "
         "move up > .sh; ~alt shift right 110,50 move down 550,350 move up > ssh",
         parts);
}

TEST_F(SingleTest, ARectangleSelectsSamplesAndTheLegendTogglesColumns)
{
    open(file("weather.csv", weather()));
    const SeriesPlot &plot = item<SeriesItem>()->plot();
    const QPoint on = place("@5,20")->toPoint();
    EXPECT_EQ(picture(false).pixel(on), painted().pixel(on)) << "the line";
    walk(*view, glw(),
         "~shift right @1.5,20.5 move down @5.5,15 move up > 11: 4 of 4 0; ~shift right @6.5,-0.5 "
         "move down @8.5,20.5 move up > 11: 4 of 2 2; ~@1 click > 10: 2 of 2 0; ~@1 click > 11: 4 "
         "of 2 2; ~@4.5,10 click > 11: 0 of; ~@4.5,10 wheel > 7.2x-17.6; ~shift wheel > "
         "5.76x-17.6; ~ctrl wheel > 5.76x-14.08; ~none F > 9x-22",
         [&] { // the range stays but for the wheel
             const QRectF range = plot.visibleRange(glw());
             QString all = QString("%1x%2|").arg(range.width()).arg(range.height()) +
                           QString("%1%2: %3 of")
                               .arg(plot.enabled(0))
                               .arg(plot.enabled(1))
                               .arg(plot.selection().total);
             for (const std::size_t count : plot.selection().counts)
                 all += ' ' + QString::number(count);
             return all;
         });
}

TEST_F(SingleTest, AViewThatFillsTheWindowSparesItTheClearingAlone)
{
    open(boxes("model.obj", 2));
    const QImage shown = painted(), whole = picture();
    QTimerEvent tick(0); // after which no pass comes
    auto masked = [masks = std::array<GLint, 5>()]() mutable {
        glGetIntegerv(GL_COLOR_WRITEMASK, &masks[0]), glGetIntegerv(GL_DEPTH_WRITEMASK, &masks[4]);
        return std::count(masks.begin(), masks.end(), 0);
    };
    for (const bool hides : {false, true}) {
        view->eventFilter(widget, &tick);
        EXPECT_EQ(masked(), 5);
        glClear(GL_COLOR_BUFFER_BIT | GL_DEPTH_BUFFER_BIT);
        if (hides)
            view->setShown(false);
        EXPECT_TRUE(hides || picture() == whole);
        EXPECT_EQ(masked(), 0);
    }
    view->setShown(true);
    glClearColor(1, 0, 0, 1); // neither this is to be seen, nor these depths
    glClearDepth(0);
    glClear(GL_COLOR_BUFFER_BIT | GL_DEPTH_BUFFER_BIT);
    glClearDepth(1);
    EXPECT_EQ(painted(), shown);

    const QFontMetricsF metrics(widget->font()); // the frame rate is white, on a shade
    const int left = int(594 - metrics.horizontalAdvance("0000 fps 000%gfx")),
              below = int(metrics.height() + 2);
    window->clock().setContinuous(true);
    const QImage rated = painted();
    for (const auto &[x, y] : {std::pair(left - 1, 0), {left, 0}, {left, below - 1}, {left, below}})
        EXPECT_EQ(rated.pixel(x, y) != shown.pixel(x, y), x >= left && y < below) << x << ' ' << y;
}

} // namespace
} // namespace host
