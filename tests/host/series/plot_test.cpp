// SPDX-License-Identifier: MIT
#include "host/series/plot.h"

#include <cmath>
#include <random>

#include <QApplication>
#include <gtest/gtest.h>

namespace host {
namespace {

const double none = std::numeric_limits<double>::quiet_NaN();

/// A drawing object without a window: its rectangle is 800 x 500 pixels.
class Object : public GLW {
public:
    explicit Object(int align = GL::Viewport::AlignCenter) : GLW(nullptr, "object")
    {
        resize(800, 500);
        viewport.align = align;
    }
    QAction *NewKeyAction(const QString &, const char *, QObject *, const char *) override
    {
        return nullptr;
    }
    QAction *NewMouseAction(quint32, quint32, const char *, QObject *, const char *) override
    {
        return nullptr;
    }
    bool DeleteAction(const char *) override { return false; }
};

std::shared_ptr<const Table> tableOf(std::vector<double> x,
                                     const std::vector<std::vector<double>> &columns)
{
    auto table = std::make_shared<Table>();
    table->x = std::move(x);
    for (const auto &values : columns)
        table->columns.emplace_back(QStringLiteral("series %1").arg(table->columns.size()), values);
    return table;
}

// One sample a second over eleven days, in this century.
std::shared_ptr<const Table> seconds()
{
    std::vector<double> x(1000000);
    std::vector<double> y(x.size());
    for (std::size_t i = 0; i < x.size(); ++i) {
        x[i] = 1.4e9 + double(i);
        y[i] = 1000 + double(i % 100);
    }
    return tableOf(std::move(x), {y});
}

struct AlignCase {
    const char *name;
    int align;
};

const AlignCase alignCases[] = {
    {"Centre", GL::Viewport::AlignCenter},
    {"LeftTop", GL::Viewport::AlignLeft | GL::Viewport::AlignTop},
    {"LeftBottom", GL::Viewport::AlignLeft | GL::Viewport::AlignBottom},
    {"None", 0},
    {"CentreBottom", GL::Viewport::AlignHCenter | GL::Viewport::AlignBottom},
};

void PrintTo(const AlignCase &c, std::ostream *out)
{
    *out << c.name;
}

class PlotView : public testing::TestWithParam<AlignCase> {
protected:
    void expectAt(const QPointF &data, const QPointF &pixel, double tolerance)
    {
        const QPointF at = plot.toLocal(&object, data);
        EXPECT_NEAR(at.x(), pixel.x(), tolerance);
        EXPECT_NEAR(at.y(), pixel.y(), tolerance);
    }

    Object object{GetParam().align};
    SeriesPlot plot{seconds()};
};

TEST_P(PlotView, FitFillsTheAreaWithTheRange)
{
    const QRectF area = PlotLayout(plot.table(), {800, 500}).area;
    const QRectF ranges[] = {{1.4e9, 1100, 1e6, -100},       // all
                             {1.4e9 + 777777, 1050, 10, -2}, // ten seconds in the middle
                             {1.4e9 + 5, 1010, 1e5, 10}};    // upside down
    for (const QRectF &range : ranges) {
        plot.fit(&object, range);
        const QRectF r = range.normalized();
        expectAt({r.left(), r.bottom()}, area.topLeft(), 0.02);
        expectAt({r.right(), r.top()}, area.bottomRight(), 0.02);
        const QRectF visible = plot.visibleRange(&object);
        EXPECT_NEAR(visible.left(), r.left(), r.width() * 1e-4);
        EXPECT_NEAR(visible.top(), r.bottom(), r.height() * 1e-4);
    }
}

TEST_P(PlotView, ZoomKeepsTheDataUnderThePointer)
{
    plot.fitAll(&object);
    const QPointF pointer(613.25, 127.5);
    const QPointF data = plot.toData(&object, pointer);
    const double before = plot.visibleRange(&object).width();
    for (int i = 0; i < 60; ++i) {
        plot.zoomAbout(&object, pointer, 1.25, i % 2 == 0 ? 1.1 : 1);
        expectAt(data, pointer, 0.05);
    }
    EXPECT_NEAR(plot.visibleRange(&object).width(), before / std::pow(1.25, 60), 1e-4);
    EXPECT_NEAR(object.viewport.scale.x / object.viewport.scale.y,
                std::pow(1.25, 60) / std::pow(1.1, 30), 1e5);
    for (int i = 0; i < 300; ++i)
        plot.zoomAbout(&object, pointer, 0.8, 0.8);
    EXPECT_EQ(object.viewport.scale.x, object.viewport.minScale.x);
    plot.zoomAbout(&object, pointer, 0, none); // neither is a factor
    EXPECT_EQ(object.viewport.scale.x, object.viewport.minScale.x);
}

TEST_P(PlotView, PanMovesByPixels)
{
    plot.fit(&object, {1.4e9 + 500000, 1050, 100, -10});
    const QPointF data(1.4e9 + 500042, 1047);
    QPointF pixel = plot.toLocal(&object, data);
    for (int i = 0; i < 40; ++i) { // some twenty widths of the window away
        plot.panBy(&object, {400, -450});
        pixel += QPointF(400, -450);
    }
    expectAt(data, pixel, 0.2);
}

TEST_P(PlotView, LargerDataAreHigher)
{
    plot.fitAll(&object);
    EXPECT_LT(plot.toLocal(&object, {1.4e9, 1090}).y(), plot.toLocal(&object, {1.4e9, 1010}).y());
    EXPECT_GT(plot.toData(&object, {10, 10}).y(), plot.toData(&object, {10, 400}).y());
}

INSTANTIATE_TEST_SUITE_P(Rows, PlotView, testing::ValuesIn(alignCases),
                         [](const auto &row) { return std::string(row.param.name); });

TEST(PlotTest, RangeIsThatOfTheEnabledColumns)
{
    SeriesPlot plot(tableOf({2, 4}, {{1, none}, {-5, 7}}));
    EXPECT_EQ(plot.range2D(), QRectF(2, 7, 2, -12));
    plot.toggle(1);
    EXPECT_FALSE(plot.enabled(1));
    EXPECT_EQ(plot.range2D(), QRectF(2, 1, 2, 0));
    plot.toggle(0);
    EXPECT_EQ(plot.range2D(), QRectF(2, 1, 2, -1));
    plot.toggle(-1);
    plot.toggle(2);
    plot.toggle(1);
    EXPECT_EQ(plot.range2D(), QRectF(2, 7, 2, -12));
    EXPECT_EQ(SeriesPlot(tableOf({}, {})).range2D(), QRectF(0, 1, 1, -1));
}

TEST(PlotTest, ASingleSampleIsShownInTheMiddle)
{
    Object object;
    SeriesPlot plot(tableOf({7}, {{0}}));
    plot.fitAll(&object);
    const QPointF middle = PlotLayout(plot.table(), {800, 500}).area.center();
    const QPointF at = plot.toLocal(&object, {7, 0});
    EXPECT_NEAR(at.x(), middle.x(), 0.01);
    EXPECT_NEAR(at.y(), middle.y(), 0.01);
}

std::shared_ptr<const Table> randomTable()
{
    std::mt19937 random(17);
    std::normal_distribution<double> value(0, 100);
    std::vector<double> x(3000);
    std::vector<std::vector<double>> columns(3, std::vector<double>(x.size()));
    for (std::size_t i = 0; i < x.size(); ++i) {
        x[i] = double(i / 3); // each x three times
        for (auto &column : columns)
            column[i] = random() % 5 == 0 ? none : value(random);
    }
    return tableOf(std::move(x), columns);
}

double distance(const QPointF &a, const QPointF &b)
{
    return std::hypot(a.x() - b.x(), a.y() - b.y());
}

TEST(PlotTest, NearestSampleIsThatOfTheEnabledColumns)
{
    Object object(GL::Viewport::AlignLeft | GL::Viewport::AlignTop);
    SeriesPlot plot(randomTable());
    plot.fitAll(&object);
    plot.toggle(1);
    for (const QPointF pointer : {QPointF(10, 10), QPointF(300, 250), QPointF(799, 480)}) {
        double closest = 1e9;
        for (const int column : {0, 2})
            for (std::size_t row = 0; row < plot.table().rows(); ++row) {
                const double y = plot.table().columns[std::size_t(column)].values[row];
                const QPointF at = plot.toLocal(&object, {plot.table().x[row], y});
                closest = std::fmin(closest, distance(at, pointer));
            }
        const auto sample = plot.nearest(&object, pointer);
        ASSERT_TRUE(sample);
        EXPECT_NE(sample->column, 1);
        const QPointF found = plot.toLocal(&object, {sample->x, sample->y});
        EXPECT_NEAR(distance(found, pointer), closest, 1e-6);
        EXPECT_FALSE(plot.nearest(&object, pointer, closest - 1e-3));
        // The same in viewport coordinates, as the module asks for it.
        const QPointF cursor =
            PlotTransform::pixelToViewport(object.viewport, QSize(800, 500), pointer);
        const QVector3D snapped = plot.nearestPosition(&object, QVector3D(cursor));
        const QPointF pixel =
            PlotTransform::viewportToPixel(object.viewport, QSize(800, 500), snapped.toPointF());
        EXPECT_LT(distance(pixel, found), 0.01);
    }
    plot.toggle(0);
    plot.toggle(2);
    EXPECT_FALSE(plot.nearest(&object, {10, 10}));
    EXPECT_EQ(plot.nearestPosition(&object, {1, 2, 3}), QVector3D(1, 2, 3));
}

TEST(PlotTest, SelectionHoldsTheSamplesInTheRectangle)
{
    Object object;
    SeriesPlot plot(randomTable());
    plot.fitAll(&object);
    plot.toggle(0);
    const QRectF rectangle(500, 400, -220, -170); // dragged up and to the left
    std::size_t counts[3] = {0, 0, 0};
    for (int column = 1; column < 3; ++column)
        for (std::size_t row = 0; row < plot.table().rows(); ++row) {
            const double y = plot.table().columns[std::size_t(column)].values[row];
            const QPointF at = plot.toLocal(&object, {plot.table().x[row], y});
            if (at.x() >= 280 && at.x() <= 500 && at.y() >= 230 && at.y() <= 400)
                ++counts[column];
        }
    const Selection selection = plot.select(&object, rectangle);
    EXPECT_EQ(selection.counts, std::vector<std::size_t>(counts, counts + 3));
    EXPECT_EQ(selection.total, counts[1] + counts[2]);
    plot.panBy(&object, {1000, 0}); // the selection is of data, not of pixels
    EXPECT_EQ(plot.selectedSamples(100000).size(), selection.total);
    EXPECT_EQ(plot.selectedSamples(5).size(), 5u);
    plot.clearSelection();
    EXPECT_TRUE(plot.selectedSamples(5).empty());
    EXPECT_EQ(plot.selection().total, 0u);
}

TEST(PlotTest, LegendEntriesAreHitOneByOne)
{
    Object object;
    SeriesPlot plot(tableOf({1}, std::vector<std::vector<double>>(60, {2.0})));
    const PlotLayout layout(plot.table(), {800, 500});
    int shown = 0;
    for (int i = 0; i < 60; ++i) {
        const QRectF &entry = layout.legend[std::size_t(i)];
        if (entry.isNull())
            continue;
        EXPECT_EQ(plot.legendHit(&object, entry.center()), i);
        EXPECT_TRUE(QRectF(0, 0, 800, layout.area.top()).contains(entry));
        ++shown;
    }
    EXPECT_GT(shown, 10);
    EXPECT_EQ(layout.leftOut, 60 - shown);
    EXPECT_GT(layout.leftOut, 0);
    EXPECT_EQ(plot.legendHit(&object, layout.more.center()), -1);
    EXPECT_EQ(plot.legendHit(&object, layout.area.center()), -1);
    EXPECT_EQ(plot.legendHit(&object, {0, 0}), -1);
    const PlotLayout tiny(plot.table(), {60, 40});
    EXPECT_EQ(tiny.area, QRectF(0, 0, 60, 40));
}

// Relative luminance and contrast as the Web Content Accessibility Guidelines define them.
double luminance(const QColor &color)
{
    const auto linear = [](double c) {
        return c <= 0.03928 ? c / 12.92 : std::pow((c + 0.055) / 1.055, 2.4);
    };
    return 0.2126 * linear(color.redF()) + 0.7152 * linear(color.greenF()) +
           0.0722 * linear(color.blueF());
}

double contrast(const QColor &a, const QColor &b)
{
    const double x = luminance(a) + 0.05;
    const double y = luminance(b) + 0.05;
    return std::max(x, y) / std::min(x, y);
}

TEST(PaletteTest, IsLegibleOnBothThemes)
{
    for (const PlotTheme theme : {PlotTheme::Light, PlotTheme::Dark}) {
        const PlotColors colors = plotColors(theme);
        EXPECT_GT(contrast(colors.text, colors.background), 7);
        EXPECT_LT(contrast(colors.grid, colors.background), 1.5);
        for (int i = 0; i < paletteSize; ++i) {
            EXPECT_GT(contrast(seriesStyle(i, theme).color, colors.background), 3) << i;
            EXPECT_EQ(seriesStyle(i, theme).color, seriesStyle(i + paletteSize, theme).color);
            EXPECT_NE(seriesStyle(i, theme).pen, seriesStyle(i + paletteSize, theme).pen);
        }
    }
}

} // namespace
} // namespace host
