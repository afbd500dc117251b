// SPDX-License-Identifier: MIT
#include "host/series/plot.h"

#include <cmath>
#include <random>

#include <gtest/gtest.h>

#include "host/series/column_list.h"
#include "recorder.h"

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
    table->name = "file.csv";
    table->xName = "time";
    table->x = std::move(x);
    for (const auto &values : columns)
        table->columns.emplace_back(QStringLiteral("series%1").arg(table->columns.size()), values);
    return table;
}

// One sample a second over eleven days, in this century.
std::shared_ptr<const Table> seconds()
{
    std::vector<double> x(1000000), y(x.size());
    for (std::size_t i = 0; i < x.size(); ++i) {
        x[i] = 1.4e9 + double(i);
        y[i] = 1000 + double(i % 100);
    }
    return tableOf(std::move(x), {y});
}

const int alignments[] = {GL::Viewport::AlignCenter,
                          GL::Viewport::AlignLeft | GL::Viewport::AlignTop,
                          GL::Viewport::AlignLeft | GL::Viewport::AlignBottom, 0,
                          GL::Viewport::AlignHCenter | GL::Viewport::AlignBottom};

class PlotView : public testing::TestWithParam<int> {
protected:
    void expectAt(const QPointF &data, const QPointF &pixel, double tolerance)
    {
        const QPointF at = plot.toLocal(&object, data);
        EXPECT_NEAR(at.x(), pixel.x(), tolerance);
        EXPECT_NEAR(at.y(), pixel.y(), tolerance);
    }

    Object object{GetParam()};
    SeriesPlot plot{seconds()};
};

TEST_P(PlotView, FitFillsTheAreaWithTheRangeAndStateGivesItBack)
{
    const QRectF ranges[] = {{1.4e9, 1100, 1e6, -100},       // all
                             {1.4e9 + 777777, 1050, 10, -2}, // ten seconds in the middle
                             {1.4e9 + 5, 1010, 1e5, 10}};    // upside down
    for (const QRectF &range : ranges) {
        PlotOptions options;
        for (const QMarginsF insets : {QMarginsF(), QMarginsF(30, 20, 10, 60)}) {
            options.insets = insets;
            plot.setOptions(options);
            const QRectF area = PlotLayout(plot.table(), {800, 500}, options).area;
            plot.fit(&object, range);
            const QRectF r = range.normalized();
            expectAt({r.left(), r.bottom()}, area.topLeft(), 0.02);
            expectAt({r.right(), r.top()}, area.bottomRight(), 0.02);
            const QRectF visible = plot.visibleRange(&object);
            EXPECT_NEAR(visible.left(), r.left(), r.width() * 1e-4);
            EXPECT_NEAR(visible.top(), r.bottom(), r.height() * 1e-4);
            const PlotState state = plot.state(&object);
            plot.fit(&object, plot.range2D());
            plot.restore(&object, state);
            expectAt({r.left(), r.bottom()}, area.topLeft(), 0.05);
        }
    }
}

TEST_P(PlotView, ZoomKeepsTheDataUnderThePointer)
{
    plot.fit(&object, plot.range2D());
    const QPointF pointer(613.25, 127.5);
    const QPointF data = plot.toData(&object, pointer);
    const double before = plot.visibleRange(&object).width();
    for (int i = 0; i < 60; ++i) {
        plot.zoomAbout(&object, pointer, 1.25, i % 2 == 0 ? 1.1 : 1);
        expectAt(data, pointer, 0.05);
    }
    EXPECT_NEAR(plot.visibleRange(&object).width(), before / std::pow(1.25, 60), 1e-4);
    EXPECT_NEAR(plot.visibleRange(&object).height(), -99 / std::pow(1.1, 30), 1e-4);
    for (int i = 0; i < 300; ++i)
        plot.zoomAbout(&object, pointer, 0.8, 0.8);
    EXPECT_EQ(object.viewport.scale.x, object.viewport.minScale.x);
    EXPECT_EQ(object.viewport.scale.y, object.viewport.minScale.y);
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

INSTANTIATE_TEST_SUITE_P(Alignments, PlotView, testing::ValuesIn(alignments));

TEST(PlotTest, RangeIsThatOfTheEnabledColumns)
{
    SeriesPlot plot(tableOf({2, 4}, {{1, none}, {-5, 7}}));
    EXPECT_EQ(plot.range2D(), QRectF(2, 7, 2, -12));
    plot.toggle(1);
    EXPECT_TRUE(plot.enabled(0) && !plot.enabled(1) && !plot.enabled(-1) && !plot.enabled(2));
    EXPECT_EQ(plot.range2D(), QRectF(2, 1, 2, 0));
    plot.toggle(0);
    EXPECT_EQ(plot.range2D(), QRectF(2, 1, 2, -1));
    plot.toggle(-1);
    plot.toggle(2);
    Object object;
    plot.restore(&object, {{}, {false}}); // knows of no second column, and of no range
    EXPECT_TRUE(!plot.enabled(0) && plot.enabled(1));
    EXPECT_NEAR(plot.visibleRange(&object).top(), 7, 1e-4);
    EXPECT_EQ(plot.state(&object).enabled, (std::vector<bool>{false, true}));
    EXPECT_EQ(SeriesPlot(tableOf({}, {})).range2D(), QRectF(0, 1, 1, -1));
}

TEST(PlotTest, ASingleSampleIsShownInTheMiddle)
{
    for (const auto &[x, y, width, height] :
         {std::array<double, 4>{7, 0, 0.7, 1}, {0, -40, 1, 4}}) {
        Object object;
        SeriesPlot plot(tableOf({x}, {{y}}));
        plot.fit(&object, plot.range2D());
        const QPointF off =
            plot.toLocal(&object, {x, y}) - PlotLayout(plot.table(), {800, 500}).area.center();
        EXPECT_LT(off.manhattanLength(), 0.02);
        EXPECT_NEAR(plot.visibleRange(&object).width(), width, 1e-4);
        EXPECT_NEAR(plot.visibleRange(&object).height(), -height, 1e-4);
    }
}

/// A plot of 3000 random samples in three columns, of which the middle one is hidden.
class RandomPlot : public testing::Test {
protected:
    RandomPlot()
    {
        plot.fit(&object, plot.range2D());
        plot.toggle(1);
    }
    static std::shared_ptr<const Table> randomTable()
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
    QPointF at(int column, std::size_t row) const
    {
        const double y = plot.table().columns[std::size_t(column)].values[row];
        return plot.toLocal(&object, {plot.table().x[row], y});
    }

    Object object{GL::Viewport::AlignLeft | GL::Viewport::AlignTop};
    SeriesPlot plot{randomTable()};
};

TEST_F(RandomPlot, NearestSampleIsThatOfTheEnabledColumns)
{
    for (const QPointF pointer : {QPointF(10, 10), QPointF(300, 250), QPointF(799, 480)}) {
        const auto distance = [&](const QPointF &p) { return QLineF(p, pointer).length(); };
        double closest = 1e9;
        for (const int column : {0, 2})
            for (std::size_t row = 0; row < plot.table().rows(); ++row)
                closest = std::fmin(closest, distance(at(column, row)));
        const auto sample = plot.nearest(&object, pointer);
        ASSERT_TRUE(sample);
        EXPECT_NEAR(distance(at(sample->column, sample->row)), closest, 1e-6);
        EXPECT_EQ(plot.toLocal(&object, {sample->x, sample->y}), at(sample->column, sample->row));
        EXPECT_FALSE(plot.nearest(&object, pointer, closest - 1e-3));
        // The same in viewport coordinates, as the module asks for it.
        const QPointF cursor = PlotTransform::pixelToViewport(object.viewport, {800, 500}, pointer);
        const QVector3D snapped =
            plot.nearestPosition(&object, QVector3D(cursor.x(), cursor.y(), 4));
        const QPointF pixel =
            PlotTransform::viewportToPixel(object.viewport, {800, 500}, snapped.toPointF());
        EXPECT_LT((pixel - at(sample->column, sample->row)).manhattanLength(), 0.01);
        EXPECT_EQ(snapped.z(), 4);
    }
    plot.toggle(0);
    plot.toggle(2);
    EXPECT_FALSE(plot.nearest(&object, {10, 10}));
    EXPECT_EQ(plot.nearestPosition(&object, {1, 2, 3}), QVector3D(1, 2, 3));
}

TEST_F(RandomPlot, SelectionCountsTheSamplesShownInTheRectangle)
{
    std::size_t inside[3] = {0, 0, 0};
    for (int column = 0; column < 3; ++column)
        for (std::size_t row = 0; row < plot.table().rows(); ++row)
            inside[column] += !std::isnan(at(column, row).y()) &&
                              QRectF(280, 230, 220, 170).contains(at(column, row));
    plot.select(&object, {500, 400, -220, -170}); // dragged up and to the left
    plot.panBy(&object, {1000, 0});               // the selection is of data, not of pixels
    const auto expectCounts = [&](std::size_t a, std::size_t b, std::size_t c) {
        EXPECT_EQ(plot.selection().counts, (std::vector<std::size_t>{a, b, c}));
        EXPECT_EQ(plot.selection().total, a + b + c);
    };
    expectCounts(inside[0], 0, inside[2]);
    plot.toggle(0);
    plot.toggle(1);
    expectCounts(0, inside[1], inside[2]);
    plot.restore(&object, {{}, {false, false, true}});
    expectCounts(0, 0, inside[2]);
    const auto table = tableOf({1, 2, 3, 4}, {{1, 2, 3, 4}});
    EXPECT_EQ(selectSamples(*table, {true}, {2, 2, 1, 1}).total, 2u); // the edges count
    plot.clearSelection();
    EXPECT_TRUE(plot.selection().total == 0 && !plot.selection().range);
}

/// Sixty columns, of which the legend has room for some.
class ManyColumns : public testing::Test {
protected:
    PlotLayout layout() const { return {plot.table(), {800, 500}, plot.options()}; }

    Object object;
    SeriesPlot plot{tableOf({1, 2}, std::vector<std::vector<double>>(60, {2.0, 3.0}))};
};

TEST_F(ManyColumns, LegendEntriesToggleOneByOne)
{
    PlotOptions options;
    for (const double scale : {1.0, 1.5}) {
        options.scale = scale;
        options.insets = QMarginsF(40, 30, 20, 10);
        plot.setOptions(options);
        const PlotLayout now = layout();
        int shown = 0;
        double right = 0, row = 0;
        for (int i = 0; i < 60; ++i) {
            const QRectF &entry = now.legend[std::size_t(i)];
            if (entry.isNull())
                continue;
            EXPECT_TRUE(plot.click(&object, entry.center()));
            EXPECT_FALSE(plot.enabled(i));
            EXPECT_GE(entry.left(), entry.top() > row ? now.area.left() : right + 9 * scale);
            EXPECT_LE(entry.right(), now.area.right());
            right = entry.right();
            row = entry.top();
            ++shown;
            plot.toggle(i);
        }
        EXPECT_GT(shown, 6);
        EXPECT_EQ(now.leftOut, 60 - shown);
        EXPECT_TRUE(now.more.left() > right && now.more.top() == row);
        EXPECT_LE(now.more.right(), now.area.right() + 1);
        EXPECT_LE(now.more.bottom(), now.area.top());
        EXPECT_GE(now.title.left(), now.free.left());
        EXPECT_EQ(now.free, QRectF(40, 30, 740, 460));
        EXPECT_EQ(now.font.pixelSize(), int(12 * scale));
    }
    EXPECT_FALSE(plot.click(&object, layout().area.center()));
    EXPECT_FALSE(plot.click(&object, {0, 0}));
}

TEST_F(ManyColumns, TheListHasASwitchForEach)
{
    EXPECT_FALSE(plot.scrollList(&object, layout().area.center(), 1));
    for (const double inset : {0.0, 400.0}) { // with room for all, and for few rows
        PlotOptions options;
        options.insets.setRight(inset);
        options.insets.setBottom(inset / 2);
        plot.setOptions(options);
        EXPECT_TRUE(plot.click(&object, layout().more.center()));
        EXPECT_TRUE(plot.isListOpen());
        std::vector<int> seen(60);
        ColumnList list(plot.table(), layout(), 0);
        for (double row = 0; row <= list.lastFirst; ++row) {
            list = ColumnList(plot.table(), layout(), row);
            EXPECT_TRUE(layout().area.adjusted(-1, -1, 1, 1).contains(list.box));
            for (int i = 0; i < 60; ++i) {
                const QRectF &entry = list.entries[std::size_t(i)];
                if (entry.isNull() || seen[std::size_t(i)]++ > 0)
                    continue;
                EXPECT_TRUE(list.box.contains(entry));
                EXPECT_EQ(list.hit(entry.center()), i);
                EXPECT_TRUE(plot.click(&object, entry.center()));
                EXPECT_FALSE(plot.enabled(i)) << i;
                plot.toggle(i);
            }
            EXPECT_TRUE(plot.scrollList(&object, list.box.center(), -1));
        }
        EXPECT_EQ(std::count(seen.begin(), seen.end(), 0), 0);
        EXPECT_EQ(list.lastFirst > 0, inset > 0);
        EXPECT_EQ(ColumnList(plot.table(), layout(), 1e9).firstRow, list.lastFirst);
        EXPECT_TRUE(plot.scrollList(&object, list.box.center(), 1e9));
        EXPECT_FALSE(plot.scrollList(&object, {0, 0}, 1));
        EXPECT_TRUE(plot.click(&object, list.box.topLeft() + QPointF(2, 2))); // its margin
        EXPECT_TRUE(plot.isListOpen());
        Recorder painted;
        QPainter painter(&painted);
        plot.toggle(0);
        plot.toggle(59);
        plot.paintForeground(&object, &painter);
        painter.end();
        const auto first = painted.find("series0"), last = painted.find("series59");
        ASSERT_EQ(first.size(), 2u); // in the legend and in the list
        ASSERT_EQ(last.size(), inset > 0 ? 0u : 1u);
        EXPECT_EQ(first[1].color, plotColors(plot.theme()).axis);
        EXPECT_EQ(painted.find("series1")[1].color, plotColors(plot.theme()).text);
        EXPECT_TRUE(list.box.contains(first[1].box));
        plot.toggle(0);
        plot.toggle(59);
        EXPECT_TRUE(plot.click(&object, {1, 1})); // beside it
        EXPECT_FALSE(plot.isListOpen());
        plot.click(&object, layout().more.center());
        EXPECT_TRUE(plot.click(&object, layout().more.center()));
        EXPECT_FALSE(plot.isListOpen());
    }
}

/// What is painted of a plot of two levels, seen from x = 0 to 100 and y = 0 to 10.
class PlotTexts : public testing::TestWithParam<double> {
protected:
    PlotTexts()
    {
        PlotOptions options;
        options.scale = GetParam();
        options.insets = GetParam() > 1 ? QMarginsF(40, 30, 20, 10) : QMarginsF();
        plot.setOptions(options);
        layout = PlotLayout(plot.table(), {800, 500}, options);
        plot.fit(&object, {0, 10, 100, -10});
        plot.toggle(2);
    }
    Painting paint()
    {
        Recorder recorder;
        QPainter painter(&recorder);
        plot.paintForeground(&object, &painter);
        EXPECT_TRUE(painter.transform().isIdentity());
        return recorder;
    }
    QRectF boxOf(const QString &text, std::size_t which = 0)
    {
        const auto found = paint().find(text);
        EXPECT_LT(which, found.size()) << text.toStdString();
        return which < found.size() ? found[which].box : QRectF();
    }
    double x(double value) const { return plot.toLocal(&object, {value, 0}).x(); }
    double y(double value) const { return plot.toLocal(&object, {0, value}).y(); }

    const double scale = GetParam();
    Object object;
    SeriesPlot plot{tableOf({0, 20, 50, 100}, {{8, 8, 8, none}, {3, 3, 3, 3}, {1, 1, 1, 1}})};
    PlotLayout layout{plot.table(), {800, 500}};
};

TEST_P(PlotTexts, StandBesideWhatTheySpeakOf)
{
    const QRectF &area = layout.area;
    for (const int value : {20, 40, 60, 80}) {
        const QRectF box = boxOf(QString::number(value));
        EXPECT_NEAR(box.center().x(), x(value), 1);
        EXPECT_NEAR(box.top(), area.bottom() + 5 * scale, 2);
    }
    for (const int value : {2, 4, 6, 8}) {
        const QRectF box = boxOf(QString::number(value));
        EXPECT_NEAR(box.right(), area.left() - 8 * scale, 1);
        EXPECT_NEAR(box.center().y(), y(value), 2);
    }
    EXPECT_NEAR(boxOf("time").right(), area.right(), 1);
    EXPECT_GT(boxOf("time").top(), boxOf("20").bottom() - 2);
    EXPECT_LT(boxOf("time").bottom(), layout.free.bottom());
    EXPECT_NEAR(boxOf("file.csv").left(), area.left(), 1);
    EXPECT_EQ(paint().find("file.csv")[0].font.bold(), true);
    EXPECT_NEAR(boxOf("file.csv").center().y(), layout.title.center().y(), 2);
    const Painting painted = paint();
    const PlotColors colors = plotColors(plot.theme());
    for (const std::size_t i : {0u, 1u, 2u}) {
        const auto entry = painted.find(QString("series%1").arg(i)).at(0);
        EXPECT_NEAR(entry.box.left(), layout.legend[i].left() + 23 * scale, 1);
        EXPECT_NEAR(entry.box.center().y(), layout.legend[i].center().y(), 2);
        EXPECT_EQ(entry.color, i < 2 ? colors.text : colors.axis);
    }
    ASSERT_EQ(painted.lines.size(), 2u); // the swatches of those that are shown
    for (const std::size_t i : {0u, 1u}) {
        EXPECT_EQ(painted.lines[i].pen.color(), seriesStyle(int(i), plot.theme()).color);
        EXPECT_EQ(painted.lines[i].pen.widthF(), 2 * scale);
        EXPECT_NEAR(painted.lines[i].line.x1(), layout.legend[i].left(), 0.01);
        EXPECT_NEAR(painted.lines[i].line.length(), 18 * scale, 0.01);
        EXPECT_NEAR(painted.lines[i].line.y1(), layout.legend[i].center().y(), 1);
    }
}

TEST_P(PlotTexts, CrosshairTellsTheValuesBesideItsSample)
{
    for (const double at : {20.0, 50.0, 100.0}) {
        const std::size_t row = at == 20 ? 1 : at == 50 ? 2 : 3;
        plot.setCrosshair(Sample{1, row, at, 3});
        const Painting painted = paint();
        EXPECT_EQ(painted.find("series0  8").size(), row == 3 ? 0u : 1u);
        EXPECT_EQ(painted.find("series2  1").size(), 0u);
        const auto marked = painted.find("series1  3");
        ASSERT_EQ(marked.size(), 1u);
        EXPECT_TRUE(marked[0].font.bold());
        EXPECT_TRUE(layout.area.contains(marked[0].box));
        const double gap = 12 * scale + 6 * scale + 18 * scale; // the box, its padding, its swatch
        if (row < 3) {
            EXPECT_NEAR(marked[0].box.left(), x(at) + gap, 2);
        } else {
            EXPECT_LT(marked[0].box.right(), x(at) - 12 * scale);
        }
        const auto head = painted.find(QString("time %1").arg(at));
        ASSERT_EQ(head.size(), 1u);
        EXPECT_FALSE(head[0].font.bold());
        EXPECT_LT(head[0].box.bottom(), marked[0].box.bottom());
    }
    plot.setCrosshair(Sample{0, 0, 0, 9.9}); // at the top: the box goes below
    EXPECT_GT(boxOf("time 0").top(), y(9.9));
    plot.setCrosshair(Sample{2, 0, 0, 1}); // of a hidden column
    EXPECT_TRUE(paint().find("time 0").empty());
    plot.setCrosshair(Sample{0, 0, 0, 11}); // outside
    EXPECT_TRUE(paint().find("time 0").empty());
}

TEST_P(PlotTexts, SelectionIsCountedInWords)
{
    plot.select(&object, QRectF(QPointF(x(10), y(9)), QPointF(x(60), y(0))));
    EXPECT_NEAR(boxOf("4 samples selected").left(), layout.area.left() + 14 * scale, 1);
    EXPECT_NEAR(boxOf("4 samples selected").top(), layout.area.top() + 14 * scale, 2);
    EXPECT_EQ(paint().find("series0  2").size(), 1u);
    EXPECT_EQ(paint().find("series2  2").size(), 0u);
    plot.select(&object, QRectF(QPointF(x(10), y(9)), QPointF(x(30), y(7))));
    EXPECT_EQ(paint().find("1 sample selected").size(), 1u);
}

INSTANTIATE_TEST_SUITE_P(Scales, PlotTexts, testing::Values(1.0, 1.5));

TEST(PlotLayoutTest, LeavesOutWhatHasNoRoom)
{
    const auto table = tableOf({1}, {{2}, {3}});
    const struct {
        QSize size;
        double scale;
        bool small, axes;
    } rows[] = {
        {{360, 240}, 1, false, true}, {{359, 240}, 1, true, true},  {{360, 239}, 1, true, true},
        {{120, 90}, 1, true, true},   {{119, 90}, 1, true, false},  {{120, 89}, 1, true, false},
        {{240, 180}, 2, true, true},  {{238, 180}, 2, true, false}, {{0, 0}, 1, true, false}};
    for (const auto &c : rows) {
        const PlotLayout layout(*table, c.size, {false, {}, c.scale});
        EXPECT_TRUE(layout.small == c.small && layout.axes == c.axes) << c.size.width();
        EXPECT_EQ(layout.area == QRectF(QPointF(0, 0), c.size.expandedTo({1, 1})), !c.axes);
        EXPECT_TRUE(layout.title.isEmpty());
    }
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
    const double x = luminance(a) + 0.05, y = luminance(b) + 0.05;
    return std::max(x, y) / std::min(x, y);
}

TEST(PaletteTest, IsLegibleOnBothThemes)
{
    for (const PlotTheme theme : {PlotTheme::Light, PlotTheme::Dark}) {
        const PlotColors colors = plotColors(theme);
        EXPECT_GT(contrast(colors.text, colors.background), 7);
        EXPECT_LT(contrast(colors.grid, colors.background), 1.5);
        for (int i = 0; i < 3 * paletteSize; ++i) {
            const SeriesStyle style = seriesStyle(i, theme);
            EXPECT_GT(contrast(style.color, colors.background), 3) << i;
            for (int j = 0; j < i; ++j)
                EXPECT_TRUE(seriesStyle(j, theme).color != style.color ||
                            seriesStyle(j, theme).pen != style.pen);
        }
    }
}

} // namespace
} // namespace host
