// SPDX-License-Identifier: MIT
// A plot of 800 x 500 pixels without a window: its view, its samples and what is painted of it.
#include "host/series/plot.h"

#include <cmath>

#include <gtest/gtest.h>

#include "GL/glwidget.h"
#include "host/series/column_list.h"
#include "tests/host/paint_record.h"

namespace host {
namespace {

using V = GL::Viewport;
const double none = std::numeric_limits<double>::quiet_NaN();

struct Painting : PaintRecord {
    Painting(const SeriesPlot &plot, GLW &object)
        : PaintRecord({800, 500}, [&](QPainter *p) { plot.paintForeground(&object, p); })
    {
    }
};

const auto apart = [](const QPointF &a, const QPointF &b) { return (a - b).manhattanLength(); };

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

/// A plot in an object that stands in no window.
struct Plotted {
    Plotted(std::shared_ptr<const Table> table, int align = V::AlignCenter) : plot(table)
    {
        object.setGeometry({0, 0, 800, 500});
        object.viewport.align = align;
        plot.fit(&object, plot.range2D());
    }
    PlotLayout layout() const { return {plot.table(), {800, 500}, plot.options()}; }
    QPointF at(double x, double y) const { return plot.toLocal(&object, {x, y}); }
    bool click(const QPointF &local) { return plot.click(&object, local); }
    GLWidget object{nullptr, "object"};
    SeriesPlot plot;
};

/// One sample a second over eleven days, in this century, for each alignment.
struct PlotView : Plotted, testing::TestWithParam<int> {
    PlotView() : Plotted(tableOf({1.4e9, 1.4e9 + 999999}, {{1000, 1099}}), GetParam()) {}
};

TEST_P(PlotView, FitFillsTheAreaWithTheRangeAndStateGivesItBack)
{
    // All, ten seconds in the middle, upside down.
    const QRectF ranges[] = {
        {1.4e9, 1100, 1e6, -100}, {1.4e9 + 777777, 1050, 10, -2}, {1.4e9 + 5, 1010, 1e5, 10}};
    for (const QRectF &range : ranges)
        for (const QMarginsF &insets : {QMarginsF(), QMarginsF(30, 20, 10, 60)}) {
            plot.setOptions({true, insets, 1});
            const QRectF area = layout().area, r = range.normalized();
            plot.fit(&object, range);
            EXPECT_LT(apart(at(r.left(), r.bottom()), area.topLeft()), 0.03);
            EXPECT_LT(apart(at(r.right(), r.top()), area.bottomRight()), 0.03);
            const PlotState state = plot.state(&object);
            plot.fit(&object, plot.range2D());
            plot.restore(&object, state);
            EXPECT_LT(apart(at(r.left(), r.bottom()), area.topLeft()), 0.06);
        }
}

TEST_P(PlotView, ZoomKeepsTheDataUnderThePointerAndPanMovesByPixels)
{
    const QPointF pointer(613.25, 127.5), data = plot.toData(&object, pointer);
    const QRectF before = plot.visibleRange(&object);
    for (int i = 0; i < 60; ++i) {
        plot.zoomAbout(&object, pointer, 1.25, i % 2 == 0 ? 1.1 : 1);
        EXPECT_LT(apart(at(data.x(), data.y()), pointer), 0.05);
    }
    const QRectF after = plot.visibleRange(&object);
    EXPECT_NEAR(after.width(), before.width() / std::pow(1.25, 60), 1e-4);
    EXPECT_NEAR(after.height(), before.height() / std::pow(1.1, 30), 1e-3);
    for (int i = 0; i < 300; ++i)
        plot.zoomAbout(&object, pointer, 0.8, 0.8);
    plot.zoomAbout(&object, pointer, 0, none); // neither is a factor
    const GL::Viewport &v = object.viewport;
    EXPECT_TRUE(v.scale.x == v.minScale.x && v.scale.y == v.minScale.y);
    plot.fit(&object, {1.4e9 + 500000, 1050, 100, -10});
    const QPointF pixel = at(1.4e9 + 500042, 1047);
    for (int i = 0; i < 40; ++i) // some twenty widths of the window away
        plot.panBy(&object, {400, -450});
    EXPECT_LT(apart(at(1.4e9 + 500042, 1047), pixel + 40 * QPointF(400, -450)), 0.4);
}

INSTANTIATE_TEST_SUITE_P(Alignments, PlotView,
                         testing::Values(V::AlignCenter, V::AlignLeft | V::AlignTop,
                                         V::AlignLeft | V::AlignBottom, 0,
                                         V::AlignHCenter | V::AlignBottom));

TEST(PlotTest, RangeIsThatOfTheEnabledColumns)
{
    Plotted p(tableOf({2, 4}, {{1, none}, {-5, 7}}));
    const std::pair<int, QRectF> toggles[] = {// there is no column -1 or 2
                                              {-1, {2, 7, 2, -12}},
                                              {2, {2, 7, 2, -12}},
                                              {1, {2, 1, 2, 0}},
                                              {0, {2, 1, 2, -1}}};
    for (const auto &[column, range] : toggles) {
        p.plot.toggle(column);
        EXPECT_EQ(p.plot.range2D(), range) << column;
    }
    p.plot.restore(&p.object, {{}, {false}}); // knows of no second column, and of no range
    EXPECT_NEAR(p.plot.visibleRange(&p.object).top(), 7, 1e-4);
    EXPECT_EQ(p.plot.state(&p.object).enabled, (std::vector<bool>{false, true}));
    EXPECT_EQ(SeriesPlot(tableOf({}, {})).range2D(), QRectF(0, 1, 1, -1));
    const double single[][4] = {{7, 0, 0.7, 1}, {0, -40, 1, 4}}; // x, y and the extents around it
    for (const auto &[x, y, width, height] : single) {
        const Plotted one(tableOf({x}, {{y}}));
        const QRectF range = one.plot.visibleRange(&one.object);
        EXPECT_LT(apart(one.at(x, y), one.layout().area.center()), 0.02);
        EXPECT_LT(std::abs(range.width() - width) + std::abs(range.height() + height), 2e-4);
    }
}

TEST(PlotTest, HiddenColumnsHaveNoSamples)
{
    Plotted p(tableOf({0, 1, 2, 3}, {{1, 2, 3, 4}, {4, none, 2, 1}, {9, 9, 9, 9}}), V::AlignTop);
    p.plot.fit(&p.object, {0, 10, 3, -10});
    const auto nearest = [&](double x, double y, double within) {
        const auto sample = p.plot.nearest(&p.object, p.at(x, y) + QPointF(3, 4), within);
        return sample ? 10 * sample->column + int(sample->row) : -1;
    };
    using Counts = std::vector<std::size_t>;
    EXPECT_EQ(nearest(2, 2, 5.1), 12);
    EXPECT_EQ(nearest(2, 2, 4.9), -1);
    EXPECT_EQ(nearest(1, 4, 1e9), 1);                         // the missing one is none
    p.plot.select(&p.object, {p.at(3.1, 0), p.at(0.9, 3.5)}); // dragged up and to the left
    p.plot.panBy(&p.object, {1000, 0}); // the selection is of data, not of pixels
    EXPECT_EQ(p.plot.selection().counts, (Counts{2, 2, 0}));
    p.plot.toggle(1);
    EXPECT_EQ(nearest(2, 2, 1e9), 2);
    EXPECT_EQ(p.plot.selection().counts, (Counts{2, 0, 0}));
    p.plot.restore(&p.object, {{}, {false, true, true}});
    EXPECT_EQ(p.plot.selection().counts, (Counts{0, 2, 0}));
    EXPECT_EQ(selectSamples(p.plot.table(), {1, 1, 1}, {1, 1, 2, 2}).total, 4u); // edges too
}

/// Sixty columns, of which the legend has room for some.
struct ManyColumns : Plotted, testing::Test {
    ManyColumns() : Plotted(tableOf({1, 2}, std::vector<std::vector<double>>(60, {2, 3}))) {}
};

TEST_F(ManyColumns, LegendEntriesToggleOneByOne)
{
    for (const double scale : {1.0, 1.5}) {
        plot.setOptions({true, {40, 30, 20, 10}, scale});
        const PlotLayout now = layout();
        int shown = 0;
        QRectF last(now.area.left(), 0, 0, 1);
        for (QRectF entry; !(entry = now.legend[std::size_t(shown)]).isNull(); ++shown) {
            EXPECT_TRUE(click(entry.center()) && !plot.enabled(shown));
            EXPECT_GE(entry.left(), entry.top() > last.top() ? now.area.left() : last.right() + 9);
            EXPECT_LE(entry.right(), now.area.right());
            last = entry;
        }
        EXPECT_TRUE(shown > 6 && now.leftOut == 60 - shown);
        EXPECT_TRUE(now.more.left() > last.right() && now.more.top() == last.top());
        EXPECT_TRUE(now.more.right() <= now.area.right() + 1 && now.more.bottom() < now.area.top());
        EXPECT_TRUE(now.free == QRectF(40, 30, 740, 460) &&
                    now.font.pixelSize() == int(12 * scale));
        plot.restore(&object, {});
    }
    EXPECT_FALSE(click(layout().area.center()));
}

// From all that have room on, each number of columns: what is left out is told, and no less.
TEST(PlotLegend, TellsHowManyItLeavesOut)
{
    bool one = false;
    for (std::size_t n = 10; n < 60; ++n) {
        std::vector<std::vector<double>> columns(n, {2});
        Plotted p(tableOf({1}, columns));
        const int left = p.layout().leftOut;
        one = one || left == 1;
        const Painting painted(p.plot, p.object);
        if (left > 0) {
            const auto &[box, font, color] = painted[QString("+%1 more").arg(left)];
            EXPECT_TRUE(p.layout().more.adjusted(-1, -2, 1, 2).contains(box));
            EXPECT_EQ(color, plotColors(p.plot.theme()).axis);
        }
        EXPECT_EQ(painted.texts.count("+0 more"), 0u);
        EXPECT_EQ(painted.texts.count(QString("series%1").arg(n - 1)), left > 0 ? 0u : 1u);
    }
}

TEST_F(ManyColumns, TheListHasASwitchForEach)
{
    EXPECT_FALSE(plot.scrollList(&object, layout().area.center(), 1));
    for (const double inset : {0.0, 400.0}) { // with room for all, and for few rows
        plot.setOptions({true, {0, 0, inset, inset / 2}, 1});
        EXPECT_TRUE(click(layout().more.center()) && plot.isListOpen());
        int found = 0;
        ColumnList list(plot.table(), layout(), 0);
        EXPECT_EQ(list.lastFirst > 0, inset > 0);
        for (double row = 0; row <= list.lastFirst; ++row) {
            list = ColumnList(plot.table(), layout(), row);
            EXPECT_TRUE(layout().area.adjusted(-1, -1, 1, 1).contains(list.box));
            for (const QRectF &entry : list.entries)
                if (const int i = list.hit(entry.center()); list.box.contains(entry))
                    found += plot.enabled(i) && click(entry.center()) && !plot.enabled(i);
            EXPECT_TRUE(plot.scrollList(&object, list.box.center(), -1));
        }
        EXPECT_TRUE(found == 60 && plot.scrollList(&object, list.box.center(), 1e9));
        EXPECT_EQ(ColumnList(plot.table(), layout(), 1e9).firstRow, list.lastFirst);
        EXPECT_FALSE(plot.scrollList(&object, {0, 0}, 1));
        plot.restore(&object, {});
        plot.toggle(0);
        EXPECT_TRUE(click(list.box.topLeft() + QPointF(2, 2))); // its margin
        const Painting painted(plot, object);
        const PlotColors colors = plotColors(plot.theme());
        ASSERT_TRUE(painted.texts.count("series0") == 2 && painted.texts.count("series1") == 2);
        EXPECT_EQ(painted.texts.count("series59"), inset > 0 ? 0u : 1u);
        const auto &entry = std::next(painted.texts.find("series0"))->second; // first the legend's
        EXPECT_TRUE(list.box.contains(entry.box) && entry.color == colors.axis);
        EXPECT_EQ(std::next(painted.texts.find("series1"))->second.color, colors.text);
        const auto &[ground, color] = painted.fills.at(0);
        EXPECT_TRUE(ground == list.box.translated(0.5, 0.5) &&
                    std::abs(color.alphaF() - 0.92) < 0.01 &&
                    color.rgb() == colors.background.rgb());
        EXPECT_EQ(painted.fills.back().second == colors.axis, inset > 0); // a bar to scroll
        EXPECT_TRUE(click({1, 1}) && !plot.isListOpen());                 // beside it
        click(layout().more.center());
        EXPECT_TRUE(click(layout().more.center()) && !plot.isListOpen());
        plot.restore(&object, {});
    }
}

/// Two levels and a hidden one, seen from x = 0 to 100 and y = 0 to 10, at two scales.
struct PlotTexts : Plotted, testing::TestWithParam<double> {
    PlotTexts() : Plotted(tableOf({0, 20, 50, 100}, {{8, 8, 8, none}, {3, 3, 3, 3}, {1, 1, 1, 1}}))
    {
        plot.setOptions({true, scale > 1 ? QMarginsF(40, 30, 20, 10) : QMarginsF(), scale});
        plot.fit(&object, {0, 10, 101, -10});
        plot.toggle(2);
    }
    const double scale = GetParam();
};

TEST_P(PlotTexts, StandBesideWhatTheySpeakOf)
{
    const PlotLayout now = layout();
    const PlotColors colors = plotColors(plot.theme());
    const Painting painted(plot, object);
    const QRectF name = painted["time"].box, title = painted["file.csv"].box;
    for (const int i : {1, 2, 3, 4}) {
        const QRectF across = painted[QString::number(20 * i)].box;
        const QRectF up = painted[QString::number(2 * i)].box;
        const QPointF below(at(20 * i, 0).x(), now.area.bottom() + 5 * scale);
        const QPointF beside(now.area.left() - 8 * scale, at(0, 2 * i).y());
        EXPECT_LT(apart({across.center().x(), across.top()}, below), 3);
        EXPECT_LT(apart({up.right(), up.center().y()}, beside), 3);
        EXPECT_TRUE(name.top() > across.bottom() - 2 && name.bottom() < now.free.bottom());
    }
    EXPECT_LT(std::abs(name.right() - now.area.right()) + std::abs(title.left() - now.area.left()),
              2);
    EXPECT_NEAR(title.center().y(), now.title.center().y(), 2);
    EXPECT_EQ(painted.texts.count("0 samples selected"), 0u);
    ASSERT_EQ(painted.lines.size(), 2u); // the swatches of those that are shown
    for (const std::size_t i : {0u, 1u, 2u}) {
        const QPointF place(now.legend[i].left(), now.legend[i].center().y());
        const Painting::Text entry = painted[QString("series%1").arg(i)];
        EXPECT_LT(apart({entry.box.left() - 23 * scale, entry.box.center().y()}, place), 3);
        EXPECT_EQ(entry.color, i < 2 ? colors.text : colors.axis);
        const auto &[line, pen] = painted.lines[i % 2];
        EXPECT_TRUE(i == 2 || apart(line.p1(), place) < 1);
        EXPECT_NEAR(line.length(), 18 * scale, 0.01);
        EXPECT_EQ(pen.color(), seriesStyle(int(i % 2), plot.theme()).color);
        EXPECT_EQ(pen.widthF(), 2 * scale);
    }
}

TEST_P(PlotTexts, CrosshairAndSelectionTellTheirValues)
{
    const QRectF area = layout().area;
    const double atX[] = {0, 20, 50, 100};
    for (const std::size_t row : {1u, 2u, 3u}) {
        plot.setCrosshair(Sample{1, row, atX[row], 3});
        const Painting painted(plot, object);
        EXPECT_EQ(painted.texts.count("series0  8"), row == 3 ? 0u : 1u);
        EXPECT_EQ(painted.texts.count("series2  1"), 0u);
        const Painting::Text marked = painted["series1  3"];
        const Painting::Text head = painted[QString("time %1").arg(atX[row])];
        EXPECT_TRUE(marked.font.bold() && !head.font.bold() && area.contains(marked.box));
        EXPECT_LT(head.box.bottom(), marked.box.bottom());
        const double left = at(atX[row], 0).x() + (12 + 6 + 18) * scale; // gap, padding, swatch
        EXPECT_TRUE(row < 3 ? std::abs(marked.box.left() - left) < 2
                            : marked.box.right() < at(100, 0).x() - 12 * scale);
    }
    plot.setCrosshair(Sample{0, 1, 20, 9.9}); // at the top: the box goes below
    EXPECT_GT(Painting(plot, object)["time 20"].box.top(), at(0, 9.9).y());
    for (const Sample &unseen : {Sample{2, 1, 20, 1}, Sample{0, 1, 20, 11}}) { // hidden, outside
        plot.setCrosshair(unseen);
        EXPECT_EQ(Painting(plot, object).texts.count("time 20"), 0u);
    }
    plot.select(&object, QRectF(at(10, 9), at(60, 0)));
    const Painting painted(plot, object);
    const QPointF corner = painted["4 samples selected"].box.topLeft();
    EXPECT_LT(apart(corner, area.topLeft() + QPointF(14, 14) * scale), 3);
    EXPECT_TRUE(painted.texts.count("series0  2") == 1 && painted.texts.count("series2  2") == 0);
    plot.select(&object, QRectF(at(10, 9), at(30, 7)));
    EXPECT_EQ(Painting(plot, object).texts.count("1 sample selected"), 1u);
}

INSTANTIATE_TEST_SUITE_P(Scales, PlotTexts, testing::Values(1.0, 1.5));

TEST(PlotTextsTest, DaysStandBelowTheirFirstHours)
{
    auto table = std::make_shared<Table>(*tableOf({0, 3 * 86400}, {{0, 1}}));
    table->xIsTime = true;
    Plotted p(table);
    p.plot.fit(&p.object, {-3600, 1, 3 * 86400, -1});
    const Painting painted(p.plot, p.object);
    for (const int day : {1, 2, 3}) {
        const QRectF box = painted[QString("%1 Jan 1970").arg(day)].box;
        EXPECT_NEAR(box.center().x(), p.at(86400.0 * (day - 1), 0).x(), 1);
        EXPECT_GT(box.top(), painted.texts.find("12:00")->second.box.bottom() - 2);
    }
}

TEST(PaletteTest, IsThatOfOkabeAndItoOnBothGrounds)
{
    const std::pair<PlotTheme, const char *> rows[] = {
        {PlotTheme::Light,
         "#ffffff #e6e8eb #9aa0a6 #30343a #0072b2 #d55e00 #009e73 #c56f9f #b37b00 "
         "#000000 "},
        {PlotTheme::Dark, "#1b1e23 #2d3239 #6b727c #d5d9df #56b4e9 #d55e00 #009e73 #cc79a7 #e69f00 "
                          "#f0e442 "}};
    for (const auto &[theme, names] : rows) {
        const auto &[background, grid, axis, text] = plotColors(theme);
        QString all;
        for (const QColor &color : {background, grid, axis, text})
            all += color.name() + ' ';
        for (int i = 0; i < 6; ++i)
            all += seriesStyle(i, theme).color.name() + ' ';
        EXPECT_EQ(all, names);
        for (int i = 0; i < 24; ++i) // solid, dashed, dotted, and again
            EXPECT_TRUE(seriesStyle(i, theme).pen == i / 6 % 3 + 1 &&
                        seriesStyle(i, theme).color == seriesStyle(i % 6, theme).color);
    }
}

TEST(PlotLayoutTest, LeavesOutWhatHasNoRoom)
{
    // Width, height, scale; whether it is small, and has axes; pixels of both fonts, and left of,
    // right of and over the title.
    const double rows[][10] = {
        {360, 240, 1, 0, 1, 12, 13, 64, 20, 10}, {359, 240, 1, 1, 1, 11, 11, 48, 10, 4},
        {360, 239, 1, 1, 1, 11, 11, 48, 10, 4},  {120, 90, 1, 1, 1, 11, 11, 48, 10, 4},
        {119, 90, 1, 1, 0, 11, 11, 0, 119, 0},   {120, 89, 1, 1, 0, 11, 11, 0, 120, 0},
        {240, 180, 2, 1, 1, 22, 22, 96, 20, 8},  {238, 180, 2, 1, 0, 22, 22, 0, 238, 0},
        {0, 0, 1, 1, 0, 11, 11, 0, 0, 0}};
    for (const auto &[width, height, scale, small, axes, type, head, left, right, top] : rows) {
        const QSize size = QSizeF(width, height).toSize();
        const PlotLayout layout(*tableOf({1}, {{2}, {3}}), size, {false, {}, scale});
        EXPECT_TRUE(layout.font.pixelSize() == type && layout.titleFont.pixelSize() == head);
        EXPECT_TRUE(layout.title.left() == left && layout.title.top() == top &&
                    size.width() - layout.title.right() == right)
            << width;
        EXPECT_TRUE(layout.small == (small > 0) && layout.axes == (axes > 0)) << width;
        EXPECT_EQ(layout.area == QRectF(QPointF(0, 0), size.expandedTo({1, 1})), axes == 0);
        EXPECT_TRUE(layout.title.isEmpty());
    }
}

} // namespace
} // namespace host
