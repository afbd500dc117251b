// SPDX-License-Identifier: MIT
#include <QPainter>
#include <QPixmap>
#include <QScreen>
#include <QTest>
#include <QWindow>
#include <gtest/gtest.h>

#include "GL/glwidget.h"
#include "GL/glwindow.h"
#include "host/series/plot.h"

namespace host {
namespace {

const double none = std::numeric_limits<double>::quiet_NaN();

// Lines from x = 0 to 100: "high" at 8, without the samples 40 to 60, "low" at 3, the slope y = x,
// and a dashed and a dotted one at 5 and 7. All but the first two are hidden at first.
std::shared_ptr<const Table> levels(double step)
{
    auto table = std::make_shared<Table>();
    std::vector<double> high;
    for (double x = 0; x <= 100; x += step) {
        table->x.push_back(x);
        high.push_back(x >= 40 && x <= 60 ? none : 8);
    }
    table->columns.emplace_back("high", high);
    table->columns.emplace_back("low", std::vector<double>(high.size(), 3.0));
    table->columns.emplace_back("slope", table->x);
    for (int i = 3; i < 13; ++i)
        table->columns.emplace_back("level", std::vector<double>(high.size(), i < 7 ? 5.0 : 7.0));
    return table;
}

struct DrawCase {
    const char *name;
    int align;
    QRectF rect;  // of the object in the 640 x 480 window
    QRect pixels; // the same in window pixels, y downwards
    double step;  // between rows: few rows are drawn as they are, many are decimated
    double scale;
};

const int leftTop = GL::Viewport::AlignLeft | GL::Viewport::AlignTop;
const int leftBottom = GL::Viewport::AlignLeft | GL::Viewport::AlignBottom;

const DrawCase drawCases[] = {
    {"WholeWindow", GL::Viewport::AlignCenter, {0, 0, 1, 1}, {0, 0, 640, 480}, 1, 1},
    {"ManyRows", GL::Viewport::AlignCenter, {0, 0, 1, 1}, {0, 0, 640, 480}, 1.0 / 1024, 1.5},
    {"TileAtTheBottom", leftTop, {0.375, 0.25, 0.625, 0.75}, {240, 120, 400, 360}, 1, 1},
    {"FromTheFarEdge", leftBottom, {-20, -10, 500, 400}, {120, 70, 500, 400}, 0.0625, 1},
};

void PrintTo(const DrawCase &c, std::ostream *out)
{
    *out << c.name;
}

/// A plot in a real window, wired by signals, over a red background.
class PlotDrawing : public testing::TestWithParam<DrawCase> {
protected:
    void SetUp() override
    {
        window.resize(640, 480);
        object.setGeometry(GetParam().rect);
        object.viewport.align = GetParam().align;
        window.AddGLWidget(&object);
        window.setProperty("drawfps", false);
        QObject::connect(&object, &GLWidget::Draw2D, [this](GLW *glw) {
            while (glGetError() != GL_NO_ERROR) {
            } // Qt's, from text of the frame before
            glEnable(GL_LIGHTING);
            glEnable(GL_DEPTH_TEST);
            glPolygonMode(GL_FRONT_AND_BACK, GL_LINE);
            plot.draw2D(glw);
            GLint mode[2] = {};
            glGetIntegerv(GL_POLYGON_MODE, mode);
            stateKept = glIsEnabled(GL_LIGHTING) && glIsEnabled(GL_DEPTH_TEST) &&
                        !glIsEnabled(GL_CLIP_PLANE0) && !glIsEnabled(GL_BLEND) &&
                        mode[0] == GL_LINE;
            glPolygonMode(GL_FRONT_AND_BACK, GL_FILL);
            glDisable(GL_LIGHTING);
            error = glGetError();
        });
        QObject::connect(&object, &GLWidget::PaintForeground, [this](GLW *glw, QPainter *painter) {
            plot.paintForeground(glw, painter);
        });
        plot.setOptions(layoutOptions);
        for (int i = 2; i < 13; ++i)
            plot.toggle(i);
        window.show();
        ASSERT_TRUE(QTest::qWaitForWindowExposed(&window));
        ASSERT_TRUE(window.context() && window.context()->isValid()) << "no GL context";
        window.makeCurrent();
        glClearColor(1, 0, 0, 1);
        plot.fit(&object, {10, 10, 80, -10}); // x 10 to 90, y 0 to 10
    }

    void draw()
    {
        window.updateGL();
        glFinish();
        picture = window.screen()->grabWindow(window.winId()).toImage();
        ASSERT_EQ(picture.size(), QSize(640, 480));
        EXPECT_EQ(error, GLenum(GL_NO_ERROR));
        EXPECT_TRUE(stateKept);
    }

    // The window's pixel at shares (0 to 1) of the plot's area, x to the right and y upwards.
    QColor atShare(double x, double y) const
    {
        return atLocal({area.left() + x * area.width(), area.bottom() - y * area.height()});
    }
    QColor atLocal(const QPointF &local) const
    {
        const QPointF pixel = GetParam().pixels.topLeft() + local;
        return QColor(picture.pixel(int(pixel.x()), int(pixel.y())));
    }
    static bool near(const QColor &a, const QColor &b)
    {
        return std::abs(a.red() - b.red()) + std::abs(a.green() - b.green()) +
                   std::abs(a.blue() - b.blue()) <
               120;
    }
    QColor color(int column) const { return seriesStyle(column, plot.theme()).color; }
    QColor background() const { return plotColors(plot.theme()).background; }

    /// The pixels above and below a data point, of 25, that have about the colour of @p column.
    int thickness(int column, double x, double y) const
    {
        const QPointF at = plot.toLocal(&object, {x, y});
        int count = 0;
        for (int dy = -12; dy <= 12; ++dy)
            count += near(atLocal({at.x(), at.y() + dy}), color(column));
        return count;
    }

    QGLWindow window{nullptr, "window"};
    GLWidget object{nullptr, "object"};
    const PlotOptions layoutOptions{true, {}, GetParam().scale};
    SeriesPlot plot{levels(GetParam().step)};
    PlotLayout layout{plot.table(), GetParam().pixels.size(), layoutOptions};
    QRectF area = layout.area;
    QImage picture;
    GLenum error = GL_NO_ERROR;
    bool stateKept = false;
};

TEST_P(PlotDrawing, LinesStandWhereTheirDataAre)
{
    draw();
    // In x, 10 to 90 fill the area: the gap from 40 to 60 lies between 3/8 and 5/8 of it.
    for (const double share : {0.01, 0.2, 0.36, 0.64, 0.99}) {
        EXPECT_TRUE(near(atShare(share, 0.8), color(0))) << share;
        EXPECT_TRUE(near(atShare(share, 0.3), color(1))) << share;
    }
    for (const double share : {0.385, 0.44, 0.615}) {
        EXPECT_TRUE(near(atShare(share, 0.8), background())) << "the gap at " << share;
        EXPECT_TRUE(near(atShare(share, 0.3), color(1))) << share;
    }
    for (const double share : {0.05, 0.46, 0.72, 0.97})
        EXPECT_TRUE(near(atShare(share, 0.83), background())) << "beside the line at " << share;
    // The lines go on beyond the range, but not into the margins.
    const double y = area.bottom() - 0.3 * area.height();
    EXPECT_TRUE(near(atLocal({area.right() + 3, y}), background()));
    EXPECT_TRUE(near(atLocal({area.left() - 3, y}), background()));
    plot.toggle(1);
    draw();
    EXPECT_TRUE(near(atShare(0.2, 0.3), background()));
}

TEST_P(PlotDrawing, OnlyItsRectangleIsPainted)
{
    const QRect &pixels = GetParam().pixels;
    plot.setTheme(PlotTheme::Dark);
    draw();
    EXPECT_TRUE(near(atLocal({1, 1}), background()));
    EXPECT_TRUE(near(atLocal({pixels.width() - 2.0, pixels.height() - 2.0}), background()));
    for (const QPoint &outside :
         {pixels.topLeft() - QPoint(2, 2), pixels.bottomRight() + QPoint(3, 3)}) {
        if (window.rect().contains(outside)) {
            EXPECT_EQ(QColor(picture.pixel(outside)), QColor(Qt::red));
        }
    }
    plot.setBackground(false);
    draw();
    EXPECT_EQ(atLocal({1, 1}), QColor(Qt::red));
}

// Far into a zoom, the neighbours of the visible part lie millions of pixels away.
TEST_P(PlotDrawing, LinesStayExactDeepInAZoom)
{
    plot.toggle(2);
    plot.fit(&object, {25.3, 25.30001, 0.00001, -0.00001}); // from corner to corner
    draw();
    for (const double share : {0.05, 0.52, 0.95}) {
        EXPECT_TRUE(near(atShare(share, share), color(2))) << share;
        EXPECT_FALSE(near(atShare(share, share + 0.03), color(2))) << share;
    }
}

TEST_P(PlotDrawing, WhatIsNotSelectedFades)
{
    const double y = area.bottom() - 0.3 * area.height();
    plot.select(&object, QRectF(area.left(), y - 9, area.width() / 4, 18));
    draw();
    EXPECT_TRUE(near(atShare(0.2, 0.3), color(1)));
    EXPECT_FALSE(near(atShare(0.36, 0.3), color(1)));
    EXPECT_FALSE(near(atShare(0.2, 0.8), color(0)));
    EXPECT_NE(atLocal({area.left() + area.width() / 4 - 1, y}), color(1)); // its edge
    plot.clearSelection();
    draw();
    EXPECT_TRUE(near(atShare(0.36, 0.3), color(1)));
}

TEST_P(PlotDrawing, GridLinesStandAtRoundValues)
{
    draw();
    const PlotColors colors = plotColors(plot.theme());
    int across = 0, up = 0;
    for (int x = int(area.left()) + 1; x < int(area.right()); ++x) {
        const double value = plot.toData(&object, {x + 0.5, 0}).x() / 10;
        if (atLocal({double(x), area.bottom() - 8}) == colors.grid) {
            EXPECT_NEAR(value, std::round(value), 0.03) << x;
            ++across;
        }
    }
    for (int y = int(area.top()) + 2; y < int(area.bottom()); ++y) {
        const double value = plot.toData(&object, {0, y + 0.5}).y();
        if (atLocal({area.left() + 3, double(y)}) == colors.grid) {
            EXPECT_NEAR(value, std::round(value), 0.05) << y;
            ++up;
        }
    }
    EXPECT_TRUE(across > 0 && across < 30 && up > 1 && up < 30) << across << ' ' << up;
    EXPECT_EQ(atLocal({area.left() + 3, std::floor(area.bottom())}), colors.axis);
}

TEST_P(PlotDrawing, LinesHaveTheirWidthsDashesAndDots)
{
    const double scale = GetParam().scale;
    plot.toggle(6);
    plot.toggle(12);
    draw();
    EXPECT_NEAR(thickness(1, 23.4, 3), (layout.small ? 1.2 : 1.6) * scale, 1);
    for (const auto &[column, share] : {std::pair<int, double>{6, 9 / 14.0}, {12, 2 / 5.0}}) {
        int drawn = 0;
        for (int i = 0; i < 400; ++i)
            drawn += thickness(column, 20 + i * 0.1, column < 12 ? 5 : 7) > 0;
        EXPECT_NEAR(drawn / 400.0, share, 0.2) << column;
    }
    plot.fit(&object, {21, 10, 4, -10});
    draw();
    if (GetParam().step == 1) { // samples far apart are marked
        EXPECT_GE(thickness(1, 23, 3), thickness(1, 23.4, 3) + 2);
    }
}

INSTANTIATE_TEST_SUITE_P(Rows, PlotDrawing, testing::ValuesIn(drawCases),
                         [](const auto &row) { return std::string(row.param.name); });

} // namespace
} // namespace host
