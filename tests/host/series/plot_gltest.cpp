// SPDX-License-Identifier: MIT
// What a plot draws in a real window, over red.
#include <cmath>

#include "host/series/plot.h"
#include "tests/support/window.h"

namespace host {
namespace {

// Lines from x = 0 to 100: 0 at 8, without the samples 40 to 60, 1 at 3, 2 is the slope y = x, and
// those from 3 on at 5 or, from 7 on, at 7. All but the first two are hidden at first.
std::shared_ptr<const Table> levels(double step)
{
    auto table = std::make_shared<Table>();
    std::vector<double> high;
    for (double x = 0; x <= 100; x += step)
        table->x.push_back(x), high.push_back(x >= 40 && x <= 60 ? std::nan("") : 8);
    table->columns.emplace_back("high", high);
    for (const double y : {3, 0, 5, 5, 5, 5, 7, 7, 7, 7, 7, 7})
        table->columns.emplace_back("level", y ? std::vector<double>(table->rows(), y) : table->x);
    return table;
}

using V = GL::Viewport;
struct DrawCase {
    int align;
    QRectF rect;  // of the object in the 640 x 480 window
    QRect pixels; // the same in window pixels, y downwards
    double step;  // between rows: few rows are drawn as they are, many are decimated
    double scale;
} const drawCases[] = {
    {V::AlignCenter, {0, 0, 1, 1}, {0, 0, 640, 480}, 1, 1},
    {V::AlignCenter, {0, 0, 1, 1}, {0, 0, 640, 480}, 1.0 / 1024, 1.5},
    {V::AlignLeft | V::AlignTop, {.375, .25, .625, .75}, {240, 120, 400, 360}, 1, 1},
    {V::AlignLeft | V::AlignBottom, {-20, -10, 500, 400}, {120, 70, 500, 400}, 0.0625, 1},
};

class PlotDrawing : public WindowTest, public testing::WithParamInterface<DrawCase> {
protected:
    PlotDrawing() : WindowTest({640, 480}), object(add("object", GetParam().rect))
    {
        object->viewport.align = GetParam().align;
        QObject::connect(object, &GLWidget::Draw2D, [this](GLW *glw) {
            glGetError(); // Qt's, from text of the frame before
            glPushAttrib(GL_ALL_ATTRIB_BITS);
            glEnable(GL_LIGHTING), glEnable(GL_DEPTH_TEST);
            glPolygonMode(GL_FRONT_AND_BACK, GL_LINE);
            plot.draw2D(glw);
            GLint mode[2] = {};
            glGetIntegerv(GL_POLYGON_MODE, mode);
            EXPECT_TRUE(glIsEnabled(GL_LIGHTING) && glIsEnabled(GL_DEPTH_TEST) &&
                        !glIsEnabled(GL_CLIP_PLANE0) && !glIsEnabled(GL_BLEND) &&
                        mode[0] == GL_LINE && glGetError() == GL_NO_ERROR);
            glPopAttrib();
        });
        QObject::connect(object, &GLWidget::PaintForeground,
                         [this](GLW *glw, QPainter *p) { plot.paintForeground(glw, p); });
        plot.setOptions(options);
        for (int i = 2; i < 13; ++i)
            plot.toggle(i);
        glClearColor(1, 0, 0, 1);
        plot.fit(object, {10, 10, 80, -10}); // x 10 to 90, y 0 to 10
    }

    QColor color(const QPointF &local) const
    {
        const QPointF at = GetParam().pixels.topLeft() + local;
        return pixel(int(at.x()), int(at.y()));
    }
    // Which colour is seen there, more or less: a palette's number, b for the background, or ?.
    char seen(const QPointF &local) const
    {
        const QColor c = color(local);
        std::pair<int, char> nearest(120, '?');
        for (int i = 0; i <= paletteSize; ++i) {
            const QColor o = i < paletteSize ? seriesStyle(i, plot.theme()).color
                                             : plotColors(plot.theme()).background;
            const int apart = std::abs(c.red() - o.red()) + std::abs(c.green() - o.green()) +
                              std::abs(c.blue() - o.blue());
            nearest = std::min(nearest, {apart, "012345b"[i]});
        }
        return nearest.second;
    }
    // Draws a frame; what is seen at shares "x,y" (0 to 1) of the plot's area, y upwards.
    std::string look(const QString &points)
    {
        frame();
        std::string all;
        for (const QString &point : points.split(' ')) {
            const QPointF share = valueOf(point).toPointF();
            all += seen({area.left() + share.x() * area.width(),
                         area.bottom() - share.y() * area.height()});
        }
        return all;
    }
    /// How many of 25 pixels above and below a data point have the colour @p of.
    int thickness(char of, double x, double y) const
    {
        int count = 0;
        for (int dy = -12; dy <= 12; ++dy)
            count += seen(plot.toLocal(object, {x, y}) + QPointF(0, dy)) == of;
        return count;
    }

    GLWidget *object;
    const PlotOptions options{true, {}, GetParam().scale};
    SeriesPlot plot{levels(GetParam().step)};
    PlotLayout layout{plot.table(), GetParam().pixels.size(), options};
    QRectF area = layout.area;
};

// In x, 10 to 90 fill the area: the gap from 40 to 60 lies between 3/8 and 5/8 of it. Lines go on
// beyond the range, not into margins.
TEST_P(PlotDrawing, LinesAndGridStandWhereTheirDataAre)
{
    EXPECT_EQ(look("0.01,0.8 0.2,0.8 0.36,0.8 0.64,0.8 0.99,0.8 0.385,0.8 0.44,0.8 0.615,0.8 "
                   "0.05,0.83 0.46,0.83 0.72,0.83"),
              "00000bbbbbb");
    EXPECT_EQ(look("0.01,0.3 0.2,0.3 0.36,0.3 0.385,0.3 0.44,0.3 0.615,0.3 0.99,0.3"), "1111111");
    const double low = area.bottom() - 0.3 * area.height();
    EXPECT_TRUE(seen({area.right() + 3, low}) == 'b' && seen({area.left() - 3, low}) == 'b');
    const PlotColors colors = plotColors(plot.theme());
    int across = 0, up = 0; // lines of the grid, and those at round values
    for (double x = int(area.left()) + 1; x < int(area.right()); ++x)
        across += color({x, area.bottom() - 8}) != colors.grid                                ? 0
                  : std::abs(std::remainder(plot.toData(object, {x + 0.5, 0}).x(), 10)) < 0.3 ? 1
                                                                                              : 99;
    for (double y = int(area.top()) + 2; y < int(area.bottom()); ++y)
        up += color({area.left() + 3, y}) != colors.grid                                  ? 0
              : std::abs(std::remainder(plot.toData(object, {0, y + 0.5}).y(), 1)) < 0.05 ? 1
                                                                                          : 99;
    EXPECT_TRUE(across > 0 && across < 30 && up > 1 && up < 30) << across << ' ' << up;
    EXPECT_EQ(color({area.left() + 3, std::floor(area.bottom())}), colors.axis);
    plot.toggle(1);
    EXPECT_EQ(look("0.2,0.3"), "b");
    plot.toggle(2);
    plot.fit(object, {25.3, 25.30001, 0.00001, -0.00001}); // neighbours millions of pixels away
    EXPECT_EQ(look("0.05,0.05 0.52,0.52 0.95,0.95 0.05,0.08 0.52,0.55 0.95,0.98"), "222bbb");
}

TEST_P(PlotDrawing, OnlyItsRectangleIsPaintedAndWhatIsNotSelectedFades)
{
    const QRect &rect = GetParam().pixels;
    const double y = area.bottom() - 0.3 * area.height();
    plot.setTheme(PlotTheme::Dark);
    plot.select(object, QRectF(area.left(), y - 9, area.width() / 4, 18));
    EXPECT_EQ(look("0.2,0.3"), "1");
    EXPECT_EQ(look("0.36,0.3 0.2,0.8").find_first_of("01"), std::string::npos);
    EXPECT_NE(seen({area.left() + area.width() / 4 - 1, y}), '1'); // its edge
    EXPECT_GT(color({area.left() + 5, y - 6}).red(), 0x1b + 5) << "a tint";
    plot.clearSelection();
    EXPECT_EQ(look("0.36,0.3 0.2,0.8"), "10");
    EXPECT_TRUE(seen({1, 1}) == 'b' && seen({rect.width() - 2.0, rect.height() - 2.0}) == 'b');
    for (const QPoint &outside : {rect.topLeft() - QPoint(2, 2), rect.bottomRight() + QPoint(3, 3)})
        EXPECT_EQ(machine.shown.rect().contains(outside),
                  pixel(outside.x(), outside.y()) == QColor(Qt::red));
    plot.setBackground(false);
    frame();
    EXPECT_EQ(color({1, 1}), QColor(Qt::red));
}

TEST_P(PlotDrawing, LinesHaveTheirWidthsDashesAndDots)
{
    plot.toggle(6);
    plot.toggle(12);
    frame();
    EXPECT_NEAR(thickness('1', 23.4, 3), (layout.small ? 1.2 : 1.6) * options.scale, 1);
    for (const auto &[level, share] : {std::pair(5, 9 / 14.0), {7, 2 / 5.0}}) {
        int drawn = 0;
        for (int i = 0; i < 400; ++i)
            drawn += thickness('0', 20 + i * 0.1, level) > 0;
        EXPECT_NEAR(drawn / 400.0, share, 0.2) << level;
    }
    plot.fit(object, {21, 10, 4, -10});
    frame();
    const int mark = GetParam().step == 1 ? 2 : -25; // samples far apart are marked
    EXPECT_GE(thickness('1', 23, 3), thickness('1', 23.4, 3) + mark);
}

INSTANTIATE_TEST_SUITE_P(Rows, PlotDrawing, testing::ValuesIn(drawCases));

} // namespace
} // namespace host
