// SPDX-License-Identifier: MIT
#include "host/series/plot.h"

#include <cmath>
#include <numeric>

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

const int alignments[] = {GL::Viewport::AlignCenter,
                          GL::Viewport::AlignLeft | GL::Viewport::AlignTop,
                          GL::Viewport::AlignLeft | GL::Viewport::AlignBottom, 0,
                          GL::Viewport::AlignHCenter | GL::Viewport::AlignBottom};

/// One sample a second over eleven days, in this century.
class PlotView : public testing::TestWithParam<int> {
protected:
    PlotView()
    {
        std::vector<double> x(1000000), y(x.size());
        for (std::size_t i = 0; i < x.size(); ++i) {
            x[i] = 1.4e9 + double(i);
            y[i] = 1000 + double(i % 100);
        }
        plot = std::make_unique<SeriesPlot>(tableOf(std::move(x), {y}));
    }
    double off(const QPointF &data, const QPointF &pixel) const
    {
        return (plot->toLocal(&object, data) - pixel).manhattanLength();
    }

    Object object{GetParam()};
    std::unique_ptr<SeriesPlot> plot;
};

TEST_P(PlotView, FitFillsTheAreaWithTheRangeAndStateGivesItBack)
{
    const QRectF ranges[] = {{1.4e9, 1100, 1e6, -100},       // all
                             {1.4e9 + 777777, 1050, 10, -2}, // ten seconds in the middle
                             {1.4e9 + 5, 1010, 1e5, 10}};    // upside down
    for (const QRectF &range : ranges)
        for (const QMarginsF &insets : {QMarginsF(), QMarginsF(30, 20, 10, 60)}) {
            plot->setOptions({true, insets, 1});
            const QRectF area = PlotLayout(plot->table(), {800, 500}, plot->options()).area;
            plot->fit(&object, range);
            const QRectF r = range.normalized();
            EXPECT_LT(off(r.bottomLeft(), area.topLeft()), 0.03);
            EXPECT_LT(off(r.topRight(), area.bottomRight()), 0.03);
            const PlotState state = plot->state(&object);
            EXPECT_NEAR(state.range.left(), r.left(), r.width() * 1e-4);
            EXPECT_NEAR(state.range.top(), r.bottom(), r.height() * 1e-4);
            plot->fit(&object, plot->range2D());
            plot->restore(&object, state);
            EXPECT_LT(off(r.bottomLeft(), area.topLeft()), 0.06);
        }
}

TEST_P(PlotView, ZoomKeepsTheDataUnderThePointer)
{
    plot->fit(&object, plot->range2D());
    const QPointF pointer(613.25, 127.5);
    const QPointF data = plot->toData(&object, pointer);
    const QRectF before = plot->visibleRange(&object);
    for (int i = 0; i < 60; ++i) {
        plot->zoomAbout(&object, pointer, 1.25, i % 2 == 0 ? 1.1 : 1);
        EXPECT_LT(off(data, pointer), 0.05);
    }
    const QRectF after = plot->visibleRange(&object);
    EXPECT_NEAR(after.width(), before.width() / std::pow(1.25, 60), 1e-4);
    EXPECT_NEAR(after.height(), before.height() / std::pow(1.1, 30), 1e-3);
    for (int i = 0; i < 300; ++i)
        plot->zoomAbout(&object, pointer, 0.8, 0.8);
    plot->zoomAbout(&object, pointer, 0, none); // neither is a factor
    EXPECT_EQ(object.viewport.scale.x, object.viewport.minScale.x);
    EXPECT_EQ(object.viewport.scale.y, object.viewport.minScale.y);
}

TEST_P(PlotView, PanMovesByPixels)
{
    plot->fit(&object, {1.4e9 + 500000, 1050, 100, -10});
    const QPointF data(1.4e9 + 500042, 1047);
    const QPointF pixel = plot->toLocal(&object, data);
    for (int i = 0; i < 40; ++i) // some twenty widths of the window away
        plot->panBy(&object, {400, -450});
    EXPECT_LT(off(data, pixel + 40 * QPointF(400, -450)), 0.4);
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

TEST(PlotTest, HiddenColumnsHaveNoSamples)
{
    Object object(GL::Viewport::AlignLeft | GL::Viewport::AlignTop);
    SeriesPlot plot(tableOf({0, 1, 2, 3}, {{1, 2, 3, 4}, {4, none, 2, 1}, {9, 9, 9, 9}}));
    plot.fit(&object, {0, 10, 3, -10});
    const auto at = [&](double x, double y) { return plot.toLocal(&object, {x, y}); };
    const auto nearest = [&](double x, double y, double within) {
        const auto sample = plot.nearest(&object, at(x, y) + QPointF(3, 4), within);
        return sample ? 10 * sample->column + int(sample->row) : -1;
    };
    const auto counts = [&] {
        const Selection &now = plot.selection();
        EXPECT_EQ(now.total, std::accumulate(now.counts.begin(), now.counts.end(), 0u));
        return now.counts;
    };
    EXPECT_EQ(nearest(2, 2, 5.1), 12);
    EXPECT_EQ(nearest(2, 2, 4.9), -1);
    EXPECT_EQ(nearest(1, 4, 1e9), 1);                 // the missing one is none
    plot.select(&object, {at(3.1, 0), at(0.9, 3.5)}); // dragged up and to the left
    plot.panBy(&object, {1000, 0});                   // the selection is of data, not of pixels
    EXPECT_EQ(counts(), (std::vector<std::size_t>{2, 2, 0}));
    plot.toggle(1);
    EXPECT_EQ(nearest(2, 2, 1e9), 2);
    EXPECT_EQ(counts(), (std::vector<std::size_t>{2, 0, 0}));
    plot.restore(&object, {{}, {false, true, true}});
    EXPECT_EQ(counts(), (std::vector<std::size_t>{0, 2, 0}));
    EXPECT_EQ(selectSamples(plot.table(), {true, true, true}, {1, 1, 2, 2}).total, 4u); // edges too
    plot.clearSelection();
    EXPECT_TRUE(plot.selection().total == 0 && !plot.selection().range);
}

Painting paintingOf(const SeriesPlot &plot, Object &object)
{
    Recorder recorder;
    QPainter painter(&recorder);
    plot.paintForeground(&object, &painter);
    EXPECT_TRUE(painter.transform().isIdentity());
    return recorder;
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
    for (const double scale : {1.0, 1.5}) {
        plot.setOptions({true, {40, 30, 20, 10}, scale});
        const PlotLayout now = layout();
        int shown = 0;
        QRectF last(now.area.left(), 0, 0, 1);
        for (; !now.legend[std::size_t(shown)].isNull(); ++shown) {
            const QRectF &entry = now.legend[std::size_t(shown)];
            EXPECT_TRUE(plot.click(&object, entry.center()) && !plot.enabled(shown));
            EXPECT_GE(entry.left(), entry.top() > last.top() ? now.area.left() : last.right() + 9);
            EXPECT_LE(entry.right(), now.area.right());
            last = entry;
        }
        EXPECT_GT(shown, 6);
        EXPECT_EQ(now.leftOut, 60 - shown);
        EXPECT_TRUE(now.more.left() > last.right() && now.more.top() == last.top());
        EXPECT_TRUE(now.more.right() <= now.area.right() + 1 && now.more.bottom() < now.area.top());
        EXPECT_EQ(now.free, QRectF(40, 30, 740, 460));
        EXPECT_EQ(now.font.pixelSize(), int(12 * scale));
        plot.restore(&object, {});
    }
    EXPECT_FALSE(plot.click(&object, layout().area.center()));
}

TEST_F(ManyColumns, TheListHasASwitchForEach)
{
    EXPECT_FALSE(plot.scrollList(&object, layout().area.center(), 1));
    for (const double inset : {0.0, 400.0}) { // with room for all, and for few rows
        plot.setOptions({true, {0, 0, inset, inset / 2}, 1});
        EXPECT_TRUE(plot.click(&object, layout().more.center()) && plot.isListOpen());
        int found = 0;
        ColumnList list(plot.table(), layout(), 0);
        EXPECT_EQ(list.lastFirst > 0, inset > 0);
        for (double row = 0; row <= list.lastFirst; ++row) {
            list = ColumnList(plot.table(), layout(), row);
            EXPECT_TRUE(layout().area.adjusted(-1, -1, 1, 1).contains(list.box));
            for (int i = 0; i < 60; ++i) {
                const QRectF &entry = list.entries[std::size_t(i)];
                if (entry.isNull() || !plot.enabled(i))
                    continue;
                EXPECT_TRUE(list.box.contains(entry));
                EXPECT_TRUE(plot.click(&object, entry.center()) && !plot.enabled(i)) << i;
                ++found;
            }
            EXPECT_TRUE(plot.scrollList(&object, list.box.center(), -1));
        }
        EXPECT_EQ(found, 60);
        EXPECT_EQ(ColumnList(plot.table(), layout(), 1e9).firstRow, list.lastFirst);
        EXPECT_TRUE(plot.scrollList(&object, list.box.center(), 1e9));
        EXPECT_FALSE(plot.scrollList(&object, {0, 0}, 1));
        plot.restore(&object, {});
        plot.toggle(0);
        EXPECT_TRUE(plot.click(&object, list.box.topLeft() + QPointF(2, 2))); // its margin
        const Painting painted = paintingOf(plot, object);
        const auto first = painted.find("series0"), second = painted.find("series1");
        ASSERT_TRUE(first.size() == 2 && second.size() == 2); // in the legend and in the list
        EXPECT_EQ(painted.find("series59").size(), inset > 0 ? 0u : 1u);
        EXPECT_EQ(first[1].color, plotColors(plot.theme()).axis);
        EXPECT_EQ(second[1].color, plotColors(plot.theme()).text);
        EXPECT_TRUE(list.box.contains(first[1].box));
        EXPECT_TRUE(plot.click(&object, {1, 1}) && !plot.isListOpen()); // beside it
        plot.click(&object, layout().more.center());
        EXPECT_TRUE(plot.click(&object, layout().more.center()) && !plot.isListOpen());
        plot.restore(&object, {});
    }
}

/// What is painted of a plot of two levels, seen from x = 0 to 100 and y = 0 to 10.
class PlotTexts : public testing::TestWithParam<double> {
protected:
    PlotTexts()
    {
        plot.setOptions({true, scale > 1 ? QMarginsF(40, 30, 20, 10) : QMarginsF(), scale});
        layout = PlotLayout(plot.table(), {800, 500}, plot.options());
        plot.fit(&object, {0, 10, 101, -10});
        plot.toggle(2);
    }
    Painting paint() { return paintingOf(plot, object); }
    QRectF boxOf(const QString &text)
    {
        const auto found = paint().find(text);
        EXPECT_EQ(found.size(), 1u) << text.toStdString();
        return found.empty() ? QRectF() : found[0].box;
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
    const QRectF name = boxOf("time"), title = boxOf("file.csv");
    EXPECT_NEAR(name.right(), area.right(), 1);
    EXPECT_TRUE(name.top() > boxOf("20").bottom() - 2 && name.bottom() < layout.free.bottom());
    EXPECT_NEAR(title.left(), area.left(), 1);
    EXPECT_NEAR(title.center().y(), layout.title.center().y(), 2);
    const Painting painted = paint();
    EXPECT_TRUE(painted.find("0 samples selected").empty());
    ASSERT_EQ(painted.lines.size(), 2u); // the swatches of those that are shown
    for (const std::size_t i : {0u, 1u, 2u}) {
        const QRectF &place = layout.legend[i];
        const auto entry = painted.find(QString("series%1").arg(i)).at(0);
        EXPECT_NEAR(entry.box.left(), place.left() + 23 * scale, 1);
        EXPECT_NEAR(entry.box.center().y(), place.center().y(), 2);
        const PlotColors colors = plotColors(plot.theme());
        EXPECT_EQ(entry.color, i < 2 ? colors.text : colors.axis);
        if (i == 2)
            continue;
        const auto &[line, pen] = painted.lines[i];
        EXPECT_EQ(pen.color(), seriesStyle(int(i), plot.theme()).color);
        EXPECT_EQ(pen.widthF(), 2 * scale);
        EXPECT_NEAR(line.x1(), place.left(), 0.01);
        EXPECT_NEAR(line.length(), 18 * scale, 0.01);
        EXPECT_NEAR(line.y1(), place.center().y(), 1);
    }
}

TEST_P(PlotTexts, CrosshairTellsTheValuesBesideItsSample)
{
    const double atX[] = {0, 20, 50, 100};
    for (std::size_t row = 1; row < 4; ++row) {
        plot.setCrosshair(Sample{1, row, atX[row], 3});
        const Painting painted = paint();
        EXPECT_EQ(painted.find("series0  8").size(), row == 3 ? 0u : 1u);
        EXPECT_EQ(painted.find("series2  1").size(), 0u);
        const auto marked = painted.find("series1  3");
        const auto head = painted.find(QString("time %1").arg(atX[row]));
        ASSERT_TRUE(marked.size() == 1 && head.size() == 1);
        EXPECT_TRUE(marked[0].font.bold() && !head[0].font.bold());
        EXPECT_TRUE(layout.area.contains(marked[0].box));
        EXPECT_LT(head[0].box.bottom(), marked[0].box.bottom());
        if (row < 3) // beside the box, its padding and the swatch
            EXPECT_NEAR(marked[0].box.left(), x(atX[row]) + (12 + 6 + 18) * scale, 2);
        else
            EXPECT_LT(marked[0].box.right(), x(100) - 12 * scale);
    }
    plot.setCrosshair(Sample{0, 1, 20, 9.9}); // at the top: the box goes below
    EXPECT_GT(boxOf("time 20").top(), y(9.9));
    for (const Sample &unseen : {Sample{2, 1, 20, 1}, Sample{0, 1, 20, 11}}) { // hidden, outside
        plot.setCrosshair(unseen);
        EXPECT_TRUE(paint().find("time 20").empty());
    }
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

TEST(PlotTextsTest, DaysStandBelowTheirFirstHours)
{
    Object object;
    auto table = std::make_shared<Table>();
    table->xIsTime = true;
    table->x = {0, 3 * 86400};
    table->columns.emplace_back("y", std::vector<double>{0, 1});
    SeriesPlot plot(table);
    plot.fit(&object, {-3600, 1, 3 * 86400, -1});
    const Painting painted = paintingOf(plot, object);
    for (const int day : {1, 2, 3}) {
        const auto found = painted.find(QString("%1 Jan 1970").arg(day));
        ASSERT_EQ(found.size(), 1u) << day;
        EXPECT_NEAR(found[0].box.center().x(), plot.toLocal(&object, {86400.0 * (day - 1), 0}).x(),
                    1);
        EXPECT_GT(found[0].box.top(), painted.find("12:00")[0].box.bottom() - 2);
    }
}

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

TEST(PaletteTest, TellsColumnsApart)
{
    for (const PlotTheme theme : {PlotTheme::Light, PlotTheme::Dark})
        for (int i = 0; i < 3 * paletteSize; ++i)
            for (int j = 0; j < i; ++j)
                EXPECT_TRUE(seriesStyle(j, theme).color != seriesStyle(i, theme).color ||
                            seriesStyle(j, theme).pen != seriesStyle(i, theme).pen);
    EXPECT_GT(plotColors(PlotTheme::Dark).text.lightness(), 200);
    EXPECT_LT(plotColors(PlotTheme::Dark).background.lightness(), 50);
}

} // namespace
} // namespace host
