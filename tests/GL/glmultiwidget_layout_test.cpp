// SPDX-License-Identifier: MIT
// The multi-view's order and grid, without a window.
#include "tests/GL/glmultiwidget_sheet.h"

#include <algorithm>

namespace {

struct GridCase {
    const char *name;
    double w, h;
    QList<QSize> hints; // of the first tiles; the others want 1 x 1
    int tiles, rows, cols;
    friend void PrintTo(const GridCase &c, std::ostream *out) { *out << c.name; }
};

const QList<QSize> twoToOne{{2, 1}};
const GridCase gridCases[] = {
    {"One", 800, 600, {}, 1, 1, 1},
    {"Two", 800, 600, {}, 2, 1, 2},
    {"TwoInATallView", 200, 800, {}, 2, 2, 1},
    {"ThreeTieKeepsFewerRows", 600, 400, {}, 3, 1, 3},
    {"ThreeLeaveAHole", 800, 600, {}, 3, 2, 2},
    {"ThreeInATallView", 200, 800, {}, 3, 3, 1},
    {"Four", 800, 600, {}, 4, 2, 2},
    {"Five", 800, 600, {}, 5, 2, 3},
    {"SevenAcross", 800, 600, {}, 7, 2, 4},
    {"SevenRowsRoundedDown", 200, 400, {}, 7, 4, 2},
    {"EightInATallView", 200, 800, {}, 8, 4, 2},
    {"Nine", 800, 600, {}, 9, 3, 3},
    {"TenNeedNoThirdRow", 800, 600, {}, 10, 2, 5},
    {"Twelve", 800, 600, {}, 12, 3, 4},
    {"SixteenJumpOverFourRows", 200, 300, {}, 16, 6, 3},
    {"TwentyJumpOverSevenRows", 300, 600, {}, 20, 5, 4},
    {"WideTwo", 800, 600, twoToOne, 2, 2, 1},
    {"WideFive", 800, 600, twoToOne, 5, 3, 2},
    {"WideSeven", 800, 600, twoToOne, 7, 4, 2},
    {"WideTwelve", 800, 600, twoToOne, 12, 4, 3},
    {"OnlyTheAspectOfAHintCounts", 800, 600, {{400, 200}}, 5, 3, 2},
    {"WidestAndTallestMakeOneSize", 800, 600, {{8, 1}, {1, 8}}, 2, 1, 2},
};

class Grids : public testing::TestWithParam<GridCase> {};

TEST_P(Grids, AsLargeAsTheAspectLets)
{
    const GridCase &c = GetParam();
    View view(c.tiles, c.w, c.h);
    for (int i = 0; i < c.hints.size(); ++i)
        view.set({i + 1}, "sizeHint", c.hints[i]);
    view.AddTile(99);
    view.set({99}, "sizeHint", QSize(1, 500)); // hidden: its hint and its place do not count
    view.set({99}, "visible", QSize());
    view.SetOrder({});
    EXPECT_EQ(static_cast<QObject &>(view).property("rows"), QVariant(c.rows));
    EXPECT_EQ(static_cast<QObject &>(view).property("cols"), QVariant(c.cols));
    EXPECT_EQ(view.tile(99)->orect, QRectF(0, 0, 1, 1));
}

INSTANTIATE_TEST_SUITE_P(Rows, Grids, testing::ValuesIn(gridCases), rowName());

struct CellCase {
    const char *name;
    QVariant spacing, padding, header, footer;
    QRectF cell, area; // of tile 5 of six: the second row's middle cell
    QRectF first;      // cell of tile 1
    friend void PrintTo(const CellCase &c, std::ostream *out) { *out << c.name; }
};

const CellCase cellCases[] = {
    {"Defaults", 2, 0, 0, 0, {268, 301, 264, 297}, {268, 301, 264, 297}, {2, 2, 264, 297}},
    {"NoSpacing", 0, 0, 0, 0, {266, 300, 266, 300}, {266, 300, 266, 300}, {0, 0, 266, 300}},
    {"Insets", 4, 3, 10, 5, {269, 302, 261, 294}, {272, 315, 255, 273}, {4, 4, 261, 294}},
    {"Text", "4", "3", "10", "5", {269, 302, 261, 294}, {272, 315, 255, 273}, {4, 4, 261, 294}},
    {"NotNumbers",
     QSize(9, 9),
     QVariant(),
     QSize(9, 9),
     "x",
     {266, 300, 266, 300},
     {266, 300, 266, 300},
     {0, 0, 266, 300}},
    {"LargerThanTheCell",
     2,
     200,
     0,
     0,
     {268, 301, 264, 297},
     {468, 501, -136, -103},
     {2, 2, 264, 297}},
};

class Cells : public testing::TestWithParam<CellCase> {};

TEST_P(Cells, StandInTheGrid)
{
    const CellCase &c = GetParam();
    View view(6, 800, 600);
    Log log(&view);
    QObject &object = view;
    object.setProperty("spacing", c.spacing);
    object.setProperty("padding", c.padding);
    object.setProperty("header", c.header);
    object.setProperty("footer", c.footer);
    view.SetOrder({});
    EXPECT_EQ(view.tile(5)->orect, c.cell);
    EXPECT_EQ(view.tile(5)->rect, c.area);
    EXPECT_EQ(view.tile(1)->orect, c.first);
    EXPECT_EQ(log.take(), "share266,300");
}

INSTANTIATE_TEST_SUITE_P(Rows, Cells, testing::ValuesIn(cellCases), rowName());

struct OrderCase {
    const char *name;
    QVariantList order;
    QList<int> hidden;
    QList<int> placed; // ids from the first cell on
    friend void PrintTo(const OrderCase &c, std::ostream *out) { *out << c.name; }
};

const OrderCase orderCases[] = {
    {"None", {}, {}, {1, 2, 3, 4}},
    {"NamedFirstUnknownSkipped", {5, 2}, {}, {2, 1, 3, 4}},
    {"All", {4, 3, 2, 1}, {}, {4, 3, 2, 1}},
    {"TextBecomesNumbers", {"3", 2.0}, {}, {3, 2, 1, 4}},
    {"HiddenLeavesNoHole", {4, 3}, {3}, {4, 1, 2}},
    {"HiddenWithoutOrder", {}, {1}, {2, 3, 4}},
};

class Orders : public testing::TestWithParam<OrderCase> {};

TEST_P(Orders, FillTheCells)
{
    const OrderCase &c = GetParam();
    View view(4, 4000, 10); // one row
    view.set(c.hidden, "visible", false);
    static_cast<QObject &>(view).setProperty("order", c.order);
    QList<int> placed = view.GetVisible();
    std::sort(placed.begin(), placed.end(),
              [&view](int a, int b) { return view.tile(a)->orect.x() < view.tile(b)->orect.x(); });
    EXPECT_EQ(placed, c.placed);
    EXPECT_EQ(view.tile(c.placed[0])->orect.x(), 2);
    for (int id : c.hidden)
        EXPECT_EQ(view.tile(id)->orect, QRectF(0, 0, 1, 1));
    ASSERT_EQ(view.GetOrder().size(), c.order.size());
    for (int i = 0; i < c.order.size(); ++i)
        EXPECT_TRUE(view.GetOrder()[i] == QVariant(c.order[i].toInt()));
}

INSTANTIATE_TEST_SUITE_P(Rows, Orders, testing::ValuesIn(orderCases), rowName());

struct UnplacedCase {
    const char *name;
    const char *property;
    QVariant value;
    friend void PrintTo(const UnplacedCase &c, std::ostream *out) { *out << c.name; }
};

class Unplaced : public testing::TestWithParam<UnplacedCase> {};

TEST_P(Unplaced, KeepTheirCellsAndAMessageTells)
{
    View view(2, 800, 600);
    view.SetOrder({});
    Log log(&view);
    view.set({1, 2}, GetParam().property, GetParam().value);
    view.setProperty("spacing", 50);
    testing::internal::CaptureStderr();
    view.SetOrder({});
    EXPECT_EQ(testing::internal::GetCapturedStderr(), "calculateLayout could not place tiles\n");
    EXPECT_EQ(view.tile(2)->orect, QRectF(401, 2, 397, 596));
    EXPECT_EQ(log.take(), "");
}

INSTANTIATE_TEST_SUITE_P(Rows, Unplaced,
                         testing::Values(UnplacedCase{"Hidden", "visible", false},
                                         UnplacedCase{"NoHeight", "sizeHint", QSize(5, 0)},
                                         UnplacedCase{"NoHint", "sizeHint", "none"}),
                         rowName());

/// A value that counts how often it is read as a bool.
struct Counted {
    static int reads;
};
int Counted::reads = 0;

TEST(GLMultiWidgetScale, EveryTileIsReadAFixedNumberOfTimes)
{
    ASSERT_TRUE((QMetaType::registerConverter<Counted, bool>(
        [](const Counted &) { return ++Counted::reads > 0; })));
    constexpr int count = 10000;
    View view(count, 1000, 1000);
    QVariantList reversed;
    for (int id = count; id > 0; --id) {
        view.set({id}, "visible", QVariant::fromValue(Counted()));
        reversed << id;
    }
    Counted::reads = 0;
    view.SetOrder(reversed);
    EXPECT_EQ(view.tile(count)->orect.topLeft(), QPointF(2, 2));
    EXPECT_GE(Counted::reads, count);
    EXPECT_LE(Counted::reads, 3 * count);
    Counted::reads = 0;
    EXPECT_EQ(view.hit(4, 4), view.tile(count));
    EXPECT_EQ(view.hit(2000, 2000), nullptr);
    EXPECT_LE(Counted::reads, 2 * count);
}

} // namespace

Q_DECLARE_METATYPE(Counted)
