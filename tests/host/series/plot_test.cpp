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
using Columns = std::vector<std::vector<double>>;
const double none = std::numeric_limits<double>::quiet_NaN();

const auto apart = [](const QPointF &a, const QPointF &b) { return (a - b).manhattanLength(); };

std::shared_ptr<Table> tableOf(std::vector<double> x, const Columns &columns)
{
    auto table = std::make_shared<Table>(Table{"file.csv", "time", false, std::move(x), {}, {}});
    for (const auto &values : columns)
        table->columns.emplace_back(QString("series%1").arg(table->columns.size()), values);
    return table;
}

/// A plot in an object that stands in no window.
struct Plotted : SeriesPlot {
    Plotted(std::shared_ptr<const Table> table, int align = V::AlignCenter) : SeriesPlot(table)
    {
        object.setGeometry({0, 0, 800, 500});
        object.viewport.align = align;
        show(range2D());
    }
    PlotLayout layout() const { return {table(), {800, 500}, options()}; }
    void show(const QRectF &range) { fit(&object, range); }
    QSizeF seen() const { return visibleRange(&object).size(); }
    QPointF at(double x, double y) const { return toLocal(&object, {x, y}); }
    bool hit(const QPointF &local) { return click(&object, local); }
    bool scroll(const QPointF &local, double by) { return scrollList(&object, local, by); }
    PaintRecord painted()
    {
        return {{800, 500}, [this](QPainter *p) { paintForeground(&object, p); }};
    }
    GLWidget object{nullptr, "object"};
};

// One sample a second over eleven days, in this century: zoomed about a pointer, and as far out as
// it goes; then all, ten seconds in the middle and upside down; and panned some twenty widths away.
TEST(PlotTest, ZoomKeepsThePointFitFillsTheAreaAndPanMovesByPixels)
{
    const QRectF ranges[] = {
        {1.4e9, 1100, 1e6, -100}, {1.4e9 + 777777, 1050, 10, -2}, {1.4e9 + 5, 1010, 1e5, 10}};
    const int aligns[] = {V::AlignCenter, V::AlignLeft | V::AlignTop, 0,
                          V::AlignLeft | V::AlignBottom, V::AlignHCenter | V::AlignBottom};
    for (int i = 0; i < 30; ++i) {
        SCOPED_TRACE(i);
        Plotted p(tableOf({1.4e9, 1.4e9 + 999999}, {{1000, 1099}}), aligns[i % 5]);
        const QPointF pointer(613.25, 127.5), data = p.toData(&p.object, pointer);
        const QSizeF before = p.seen();
        for (int k = 0; k < 60; ++k) {
            p.zoomAbout(&p.object, pointer, 1.25, k % 2 == 0 ? 1.1 : 1);
            EXPECT_LT(apart(p.at(data.x(), data.y()), pointer), 0.05);
        }
        EXPECT_NEAR(p.seen().width(), before.width() / std::pow(1.25, 60), 1e-4);
        EXPECT_NEAR(p.seen().height(), before.height() / std::pow(1.1, 30), 1e-3);
        for (int k = 0; k < 300; ++k)
            p.zoomAbout(&p.object, pointer, 0.8, 0.8);
        p.zoomAbout(&p.object, pointer, 0, none); // neither is a factor
        const GL::Viewport &v = p.object.viewport;
        EXPECT_TRUE(v.scale.x == v.minScale.x && v.scale.y == v.minScale.y);
        p.setOptions({true, i % 2 ? QMarginsF(30, 20, 10, 60) : QMarginsF(), 1});
        const QRectF area = p.layout().area, r = ranges[i % 3].normalized();
        p.show(ranges[i % 3]);
        EXPECT_LT(apart(p.at(r.left(), r.bottom()), area.topLeft()), 0.03);
        EXPECT_LT(apart(p.at(r.right(), r.top()), area.bottomRight()), 0.03);
        const PlotState state = p.state(&p.object);
        p.show({1.4e9 + 500000, 1050, 100, -10});
        const QPointF pixel = p.at(1.4e9 + 500042, 1047);
        for (int k = 0; k < 40; ++k)
            p.panBy(&p.object, {400, -450});
        EXPECT_LT(apart(p.at(1.4e9 + 500042, 1047), pixel + 40 * QPointF(400, -450)), 0.4);
        p.restore(&p.object, state);
        EXPECT_LT(apart(p.at(r.left(), r.bottom()), area.topLeft()), 0.06);
    }
}

TEST(PlotTest, RangeIsThatOfTheEnabledColumns)
{
    Plotted p(tableOf({2, 4}, {{1, none}, {-5, 7}}));
    const QRectF ranges[] = {{2, 7, 2, -12}, {2, 7, 2, -12}, {2, 1, 2, 0}, {2, 1, 2, -1}};
    for (int i = 0; i < 4; ++i) { // there is no column -1 or 2
        p.toggle(std::array{-1, 2, 1, 0}[std::size_t(i)]);
        EXPECT_EQ(p.range2D(), ranges[i]) << i;
    }
    p.restore(&p.object, {{}, {false}}); // knows of no second column, and of no range
    EXPECT_NEAR(p.visibleRange(&p.object).top(), 7, 1e-4);
    EXPECT_EQ(p.state(&p.object).enabled, (std::vector<bool>{false, true}));
    EXPECT_EQ(SeriesPlot(tableOf({}, {})).range2D(), QRectF(0, 1, 1, -1));
    const double single[][4] = {{7, 0, 0.7, 1}, {0, -40, 1, 4}}; // x, y and the extents around it
    for (const auto &[x, y, width, height] : single) {
        const Plotted one(tableOf({x}, {{y}}));
        EXPECT_LT(apart(one.at(x, y), one.layout().area.center()), 0.02);
        EXPECT_LT(apart({one.seen().width(), -one.seen().height()}, {width, height}), 2e-4);
    }
}

TEST(PlotTest, HiddenColumnsHaveNoSamples)
{
    Plotted p(tableOf({0, 1, 2, 3}, {{1, 2, 3, 4}, {4, none, 2, 1}, {9, 9, 9, 9}}), V::AlignTop);
    p.show({0, 10, 3, -10});
    const auto nearest = [&](double x, double y, double within) {
        const auto sample = p.nearest(&p.object, p.at(x, y) + QPointF(3, 4), within);
        return sample ? 10 * sample->column + int(sample->row) : -1;
    };
    using Counts = std::vector<std::size_t>;
    EXPECT_TRUE(nearest(2, 2, 5.1) == 12 && nearest(2, 2, 4.9) == -1);
    EXPECT_EQ(nearest(1, 4, 1e9), 1);                    // the missing one is none
    p.select(&p.object, {p.at(3.1, 0), p.at(0.9, 3.5)}); // dragged up and to the left
    p.panBy(&p.object, {1000, 0});                       // the selection is of data, not of pixels
    EXPECT_EQ(p.selection().counts, (Counts{2, 2, 0}));
    p.toggle(1);
    EXPECT_EQ(nearest(2, 2, 1e9), 2);
    EXPECT_EQ(p.selection().counts, (Counts{2, 0, 0}));
    p.restore(&p.object, {{}, {false, true, true}});
    EXPECT_EQ(p.selection().counts, (Counts{0, 2, 0}));
    EXPECT_EQ(selectSamples(p.table(), {1, 1, 1}, {1, 1, 2, 2}).total, 4u); // edges too
}

// Of each number of columns, at two scales: entries stand in rows, and the rest is told.
TEST(PlotLegend, TogglesWhatItNamesAndTellsHowManyItLeavesOut)
{
    for (int n = 1; n < 60; ++n) {
        Plotted p(tableOf({1}, Columns(std::size_t(n), {2})));
        p.setOptions({true, {40, 30, 20, 10}, n % 2 ? 1.5 : 1});
        const PlotLayout now = p.layout();
        const PaintRecord painted = p.painted();
        EXPECT_EQ(int(painted.texts.count(QString("series%1").arg(n - 1))), now.leftOut == 0);
        QRectF last(now.area.left(), 0, 0, 1);
        int i = 0;
        for (QRectF entry; i < n && !(entry = now.legend[std::size_t(i)]).isNull(); ++i) {
            EXPECT_TRUE(p.hit(entry.center()) && !p.enabled(i));
            EXPECT_GE(entry.left(), entry.top() > last.top() ? now.area.left() : last.right() + 9);
            EXPECT_LE(entry.right(), now.area.right());
            last = entry;
        }
        EXPECT_EQ(now.leftOut, n - i);
        EXPECT_TRUE((i > 6 || i == n) && !p.hit(now.area.center()));
        EXPECT_EQ(now.free, QRectF(40, 30, 740, 460));
        const double line = painted["series0"].box.height(), ends = now.free.bottom();
        for (const auto &[gap, pixels] : {std::pair(now.legend[0].top() - now.title.bottom(), 2),
                                          {now.legend[0].height() - line, 4},
                                          {now.area.top() - last.bottom(), 8},
                                          {ends - now.area.bottom() - 2 * line, 12}})
            EXPECT_NEAR(gap, pixels * now.scale, 0.01);
        EXPECT_EQ(now.more.isNull(), now.leftOut == 0);
        if (now.leftOut > 0) {
            const auto &[box, font, color] = painted[QString("+%1 more").arg(now.leftOut)];
            EXPECT_TRUE(now.more.adjusted(-1, -2, 1, 2).contains(box));
            EXPECT_EQ(color, plotColors(p.theme()).axis);
            EXPECT_TRUE(now.more.left() > last.right() && now.more.top() == last.top());
            EXPECT_LE(now.more.right(), now.area.right() + 1);
        }
    }
}

// Of sixty columns, with room for all, and for few rows.
TEST(PlotList, HasASwitchForEach)
{
    for (const double inset : {0.0, 300.0}) {
        Plotted p(tableOf({1, 2}, Columns(60, {2, 3})));
        const double scale = inset > 0 ? 1.25 : 1;
        p.setOptions({true, {0, 0, inset, inset / 2}, scale});
        const PlotLayout now = p.layout();
        EXPECT_FALSE(p.scroll(now.area.center(), 1));
        EXPECT_TRUE(p.hit(now.more.center()) && p.isListOpen());
        ColumnList list(p.table(), now, 0);
        EXPECT_EQ(list.lastFirst > 0, inset > 0);
        int found = 0;
        for (double row = 0; row <= list.lastFirst; ++row) {
            list = ColumnList(p.table(), now, row);
            EXPECT_TRUE(now.area.adjusted(-1, -1, 1, 1).contains(list.box));
            for (const QRectF &entry : list.entries)
                if (const int i = list.hit(entry.center()); list.box.contains(entry))
                    found += p.enabled(i) && p.hit(entry.center()) && !p.enabled(i);
            EXPECT_TRUE(p.scroll(list.box.center(), -1));
        }
        EXPECT_TRUE(found == 60 && p.scroll(list.box.center(), 1e9) && !p.scroll({0, 0}, 1));
        EXPECT_EQ(ColumnList(p.table(), now, 1e9).firstRow, list.lastFirst);
        EXPECT_TRUE(p.hit(list.box.topLeft() + QPointF(2, 2))); // its margin
        p.scroll(list.box.center(), 1e9);
        p.toggle(1);
        const PaintRecord painted = p.painted();
        const PlotColors colors = plotColors(p.theme());
        ASSERT_TRUE(painted.texts.count("series0") == 2 && painted.texts.count("series1") == 2);
        EXPECT_EQ(painted.texts.count("series59"), inset > 0 ? 0u : 1u);
        const auto &entry = std::next(painted.texts.find("series0"))->second; // first the legend's
        EXPECT_NEAR(entry.box.left(), list.box.left() + 46 * scale, 1.5);
        EXPECT_TRUE(list.box.contains(entry.box) && entry.color == colors.axis);
        EXPECT_EQ(std::next(painted.texts.find("series1"))->second.color, colors.text);
        EXPECT_EQ(std::count_if(painted.lines.begin(), painted.lines.end(),
                                [&](auto &line) { return line.second.color() == colors.text; }),
                  2); // the tick of the only one that is on
        const auto &[ground, color] = painted.fills.at(0);
        EXPECT_EQ(ground, list.box.translated(0.5, 0.5));
        EXPECT_EQ(color.name(QColor::HexArgb), "#eb" + colors.background.name().mid(1));
        const auto &[last, itsColor] = painted.fills.back();
        const double way = list.box.height() - 16 * scale; // of a bar to scroll
        const QRectF bar(list.box.right() - 6 * scale, list.box.top() + 8 * scale, 4 * scale,
                         way * list.seen);
        EXPECT_EQ(itsColor == colors.axis && last == bar, inset > 0);
        EXPECT_TRUE(p.hit({1, 1}) && !p.isListOpen()); // beside it
        EXPECT_TRUE(p.hit(now.more.center()) && p.hit(now.more.center()) && !p.isListOpen());
    }
}

// Two levels and a hidden one, seen from x = 0 to 101 and y = 0 to 10, at two scales.
TEST(PlotTexts, StandBesideWhatTheySpeakOf)
{
    for (const double scale : {1.0, 1.5}) {
        Plotted p(tableOf({0, 20, 50, 100}, {{8, 8, 8, none}, {3, 3, 3, 3}, {1, 1, 1, 1}}));
        p.setOptions({true, scale > 1 ? QMarginsF(40, 30, 20, 10) : QMarginsF(), scale});
        p.show({0, 10, 101, -10});
        p.toggle(2);
        p.setCrosshair(Sample{1, 1, 20, 3});
        p.select(&p.object, QRectF(p.at(10, 9), p.at(60, 0)));
        const PlotLayout now = p.layout();
        const QRectF area = now.area;
        const double below = area.bottom() + 5 * scale, beside = area.left() - 8 * scale;
        const double boxed = p.at(20, 0).x() + (12 + 6 + 18) * scale; // gap, padding, swatch
        const PaintRecord painted = p.painted();
        const auto entry = [&](std::size_t i, double right = 0) {
            return QPointF(now.legend[i].left() + right * scale, now.legend[i].center().y());
        };
        EXPECT_EQ(painted.all(),
                  "0|0|10|100|2|20|4|4 samples selected|40|6|60|8|80|file.csv|series0|series0  "
                  "2|series0  8|series1|series1  2|series1  3|series2|time|time 20");
        const std::tuple<const char *, double, double, QPointF> places[] = {
            {"20", 0.5, 0, {p.at(20, 0).x(), below}},
            {"80", 0.5, 0, {p.at(80, 0).x(), below}},
            {"2", 1, 0.5, {beside, p.at(0, 2).y()}},
            {"8", 1, 0.5, {beside, p.at(0, 8).y()}},
            {"file.csv", 0, 0.5, {area.left(), now.title.center().y()}},
            {"time", 1, 0, {area.right(), painted.at("20", 0, 1).y()}},
            {"series0", 0, 0.5, entry(0, 23)},
            {"series2", 0, 0.5, entry(2, 23)},
            {"series1  3", 0, 0, {boxed, painted.at("series0  8", 0, 1).y()}},
            {"4 samples selected", 0, 0, area.topLeft() + QPointF(14, 14) * scale}};
        for (const auto &[text, x, y, place] : places)
            EXPECT_LT(apart(painted.at(text, x, y), place), 3) << text << scale;
        EXPECT_LT(painted.at("time", 1, 1).y(), now.free.bottom());
        EXPECT_TRUE(painted["series1  3"].font.bold() && !painted["time 20"].font.bold());
        EXPECT_EQ(painted["series1"].color, plotColors(p.theme()).text);
        EXPECT_EQ(painted["series2"].color, plotColors(p.theme()).axis);
        const QRectF mark = painted.fills.at(0).first, box = painted.fills.at(2).first;
        const QRectF words = painted["4 samples selected"].box;
        EXPECT_TRUE(mark.width() == 10 * scale && apart(mark.center(), p.at(20, 3)) < 0.1);
        const QPointF room(box.width() - words.width(), box.height() - 3 * words.height());
        EXPECT_LT(apart(room, QPointF(30, 12) * scale), 1);
        for (const int i : {0, 1}) { // the swatches of those that are shown
            const auto &[line, pen] = painted.lines.at(std::size_t(i));
            EXPECT_LT(apart(line.p1(), entry(std::size_t(i))) +
                          apart(line.p2(), entry(std::size_t(i), 18)),
                      2);
            EXPECT_TRUE(pen.widthF() == 2 * scale &&
                        pen.color() == seriesStyle(i, p.theme()).color);
        }
        p.select(&p.object, QRectF(p.at(10, 9), p.at(30, 7)));
        p.setCrosshair(Sample{1, 3, 100, 3}); // at the right: the box goes to the left
        EXPECT_LT(p.painted().at("series1  3", 1, 0).x(), p.at(100, 0).x() - 12 * scale);
        EXPECT_EQ(p.painted().texts.count("series0  8"), 0u); // the missing one
        p.setCrosshair(Sample{0, 1, 20, 9.9});                // at the top: below
        EXPECT_GT(p.painted().at("time 20", 0, 0).y(), p.at(0, 9.9).y());
        for (const Sample &unseen :
             {Sample{2, 1, 20, 1}, Sample{0, 1, 20, 11}}) { // hidden, outside
            p.setCrosshair(unseen);
            EXPECT_EQ(p.painted().all(),
                      "0|0|1 sample selected|10|100|2|20|4|40|6|60|8|80|file.csv|series0|series0  "
                      "1|series1|series2|time");
        }
    }
}

TEST(PlotTexts, DaysStandBelowTheirFirstHours)
{
    const auto table = tableOf({0, 3 * 86400}, {{0, 1}});
    table->xIsTime = true;
    Plotted p(table);
    p.setOptions({false, {}, 1});
    p.show({-3600, 1, 3 * 86400, -1});
    EXPECT_EQ(p.painted().texts.count("file.csv"), 0u) << "untitled";
    const double below = p.painted().texts.find("12:00")->second.box.bottom();
    for (const int day : {1, 2, 3}) {
        const QPointF place = p.painted().at(QString("%1 Jan 1970").arg(day), 0.5, 0);
        EXPECT_LT(apart(place, {p.at(86400.0 * (day - 1), 0).x(), below}), 3);
    }
}

TEST(PaletteTest, PensChangeWithEveryRoundOfColors)
{
    QString names;
    for (const PlotTheme theme : {PlotTheme::Light, PlotTheme::Dark}) {
        for (int i = 0; i < 24; ++i) { // solid, dashed, dotted, and again
            const SeriesStyle style = seriesStyle(i, theme), first = seriesStyle(i % 6, theme);
            EXPECT_TRUE(style.pen == i / 6 % 3 + 1 && style.color == first.color);
            names += i < 6 ? style.color.name() : "";
        }
        const auto &[background, grid, axis, text] = plotColors(theme);
        names += ' ' + background.name() + grid.name() + axis.name() + text.name() + ' ';
    }
    EXPECT_EQ(names, "#0072b2#d55e00#009e73#c56f9f#b37b00#000000 #ffffff#e6e8eb#9aa0a6#30343a "
                     "#56b4e9#d55e00#009e73#cc79a7#e69f00#f0e442 #1b1e23#2d3239#6b727c#d5d9df ");
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
        const PlotLayout now(*tableOf({1}, {{2}, {3}}), size, {false, {}, scale});
        EXPECT_TRUE(now.font.pixelSize() == type && now.titleFont.pixelSize() == head);
        EXPECT_TRUE(now.title.topLeft() == QPointF(left, top) && now.title.isEmpty() &&
                    width - now.title.right() == right && now.small == (small > 0));
        EXPECT_EQ(now.axes, axes > 0);
        EXPECT_EQ(now.area == QRectF(QPointF(0, 0), size.expandedTo({1, 1})), axes == 0);
    }
}

} // namespace
} // namespace host
