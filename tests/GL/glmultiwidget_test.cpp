// SPDX-License-Identifier: MIT
// The multi-view without a window: its interface, properties, order, grid and visibility.
#include "tests/GL/glmultiwidget_sheet.h"

#include <algorithm>

#include <QMetaMethod>

namespace {

/// A view of 1:1 pixels, without a window, that holds the tiles 1 to @p count.
struct View : GLMultiWidget {
    View(int count, double w, double h) : GLMultiWidget(nullptr, "view")
    {
        setGeometry(QRectF(0, 0, w, h));
        for (int id = 1; id <= count; ++id)
            AddTile(uint(id));
        updateLayout = 0;
    }
    GLTile *tile(int id) { return tiles.value(uint(id)); }
    View &hide(int id)
    {
        tile(id)->setProperty("visible", false);
        return *this;
    }
    View &disable()
    {
        setProperty("enabled", false);
        return *this;
    }
    void set(const QList<int> &ids, const char *name, const QVariant &value)
    {
        for (int id : ids)
            static_cast<QObject *>(tile(id))->setProperty(name, value);
    }
};

/// Offers the view two of its three slots in the form it takes, and one of the base's.
class Host : public QObject {
    Q_OBJECT

public:
    QStringList log;

public Q_SLOTS:
    void Update(GLW *w) { log << "Update" + w->objectName(); }
    void DrawBG() { log << "DrawBG"; }
    void DrawFG(GLW *w) { log << "DrawFG" + w->objectName(); }
    void Draw3D() { log << "Draw3D"; }
};

TEST(GLMultiWidgetConnect, WiresTheSlotsOfTheHost)
{
    View view(1, 800, 600);
    Host host;
    EXPECT_EQ(view.Connect(&host), &host);
    emit view.Update(view.tile(1));
    emit view.DrawBG(&view);
    emit view.DrawFG(&view);
    emit view.Draw3D(&view);
    EXPECT_EQ(host.log.join(' '), "Update1 DrawFGview Draw3D");
}

/// Return type, name and parameters as the meta-object has them.
QByteArray described(const QMetaMethod &m)
{
    QByteArrayList parameters;
    for (int i = 0; i < m.parameterCount(); ++i)
        parameters << (m.parameterTypes()[i] + ' ' + m.parameterNames()[i]).trimmed();
    return QByteArray(m.typeName()) + ' ' + m.name() + '(' + parameters.join(", ") + ')';
}

TEST(GLMultiWidgetInterface, SignalsAndSlotsInOrder)
{
    const QMetaObject &meta = GLMultiWidget::staticMetaObject;
    QByteArrayList signals_, slots_;
    for (int i = meta.methodOffset(); i < meta.methodCount(); ++i)
        (meta.method(i).methodType() == QMetaMethod::Signal ? signals_ : slots_)
            << described(meta.method(i));
    EXPECT_EQ(meta.method(meta.methodOffset() + 16).methodType(), QMetaMethod::Signal);
    EXPECT_EQ(signals_.join("\n").toStdString(),
              "void Init(GLW*)\nvoid Resized(int, int)\nvoid TileResized(int, int)\n"
              "void Update(GLW*)\nvoid Pick3D(GLW*)\nvoid Pick2D(GLW*)\nvoid Draw3D(GLW*)\n"
              "void Draw2D(GLW*)\nvoid DrawBG(GLW*)\nvoid DrawFG(GLW*)\nvoid DrawEvent()\n"
              "void Range2D(QRectF*, int)\nvoid InitContextMenuTree(GLW*, QObject*)\n"
              "void ValueChanged(QList<int> l)\nvoid VisibleCountChanged(int)\n"
              "void VisibleChanged(QList<int> l)\nvoid TileAdded(uint id)");
    EXPECT_EQ(slots_.join("\n").toStdString(),
              "QVariantList Tiles()\nQObject* AddTile(uint id)\nvoid RemoveTile(int id)\n"
              "void Clear()\nQVariantList GetOrder()\nvoid SetOrder(QVariantList o)\n"
              "QList<GLW*> Widgets()\nvoid ResetViewport()\nQObject* Connect(QObject* o)\n"
              "void Connected()\nvoid Resize(int w, int h)\nvoid UpdateLayout()\n"
              "void ForceUpdate()\nvoid LeftMouse(GLW* glw, bool state)\n"
              "void CtrlLeftMouse(GLW* glw, bool state)\n"
              "void LeftDoubleMouse(GLW* glw, bool state)\n"
              "void SetVisible(QList<int> ids, bool visible)\nQList<int> GetSelected()\n"
              "QList<int> GetVisible()\nvoid ToggleVisible()\nvoid SelectAll()");
    ASSERT_EQ(meta.propertyCount(), meta.propertyOffset() + 1);
    const QMetaProperty order = meta.property(meta.propertyOffset());
    EXPECT_STREQ(order.name(), "order");
    EXPECT_STREQ(order.typeName(), "QVariantList");
    EXPECT_TRUE(order.isReadable() && order.isWritable() && order.isDesignable() &&
                order.isScriptable() && order.isStored());
}

/// The dynamic properties in the order in which they were set: name, type and value.
std::string properties(const QObject &o)
{
    QStringList all;
    for (const QByteArray &name : o.dynamicPropertyNames()) {
        const QVariant v = o.property(name);
        const QString value =
            v.userType() == QMetaType::QSize
                ? QStringLiteral("%1x%2").arg(v.toSize().width()).arg(v.toSize().height())
                : v.toString();
        all << QStringLiteral("%1:%2=%3").arg(name.constData(), v.typeName(), value);
    }
    return all.join(' ').toStdString();
}

const std::string drawable = "enabled:bool=true visible:bool=true flags:int=0 pick3d:bool=true "
                             "pick2d:bool=true draw3d:bool=true draw2d:bool=true ";

TEST(GLMultiWidgetProperties, OfViewAndTileWithTypesInOrder)
{
    View view(0, 800, 600);
    EXPECT_EQ(properties(view),
              drawable + "drawbg:bool=true drawfg:bool=true rows:int=1 cols:int=1 spacing:int=2 "
                         "padding:int=0 header:int=0 footer:int=0 enableSelection:bool=true");
    view.AddTile(12);
    EXPECT_EQ(properties(*view.tile(12)),
              drawable + "sizeHint:QSize=1x1 selected:bool=false padding:int=20");
    EXPECT_EQ(view.tile(12)->objectName(), "12");
    EXPECT_EQ(view.tile(12)->viewport.align, 33);
    EXPECT_EQ(view.viewport.align, 33);
    view.tile(12)->viewport.pos = Vector(1, 2, 3);
    view.tile(12)->viewport.scale = Vector(4, 5, 6);
    view.ResetViewport();
    EXPECT_TRUE(view.tile(12)->viewport.pos == Vector(0, 0, 0));
    EXPECT_TRUE(view.tile(12)->viewport.scale == Vector(1, 1, 1));
    const QVariant zoom = static_cast<QObject *>(view.tile(12))->property("zoom");
    EXPECT_EQ(zoom.userType(), int(QMetaType::Float));
    EXPECT_EQ(zoom.toFloat(), 1.0f);
}

TEST(GLMultiWidgetTiles, BindingsBelongToTheOwnerAndTilesHaveNone)
{
    View view(1, 800, 600);
    view.Connected();
    GLTile *tile = view.tile(1);
    EXPECT_EQ(tile->actions(), view.actions());
    QStringList actions;
    for (QAction *a : view.actions())
        actions << a->objectName() + ':' + QString::number(a->property("binding").toUInt(), 16) +
                       ':' + a->property("mask").toString();
    EXPECT_EQ(actions.join(' '),
              "view_ctrlleftmouse:4000001:0 view_leftmouse:1:0 view_leftdoublemouse:101:0");
    QObject receiver;
    EXPECT_EQ(tile->NewKeyAction("A", "a", &receiver, SLOT(deleteLater())), nullptr);
    EXPECT_EQ(tile->NewMouseAction(1, 0, "a", &receiver, SLOT(deleteLater())), nullptr);
    EXPECT_FALSE(tile->DeleteAction("view_leftmouse"));
    EXPECT_EQ(view.actions().size(), 3);
    tile->glw = nullptr;
    EXPECT_TRUE(tile->actions().isEmpty());
}

/// What an operation on the tiles 1 to 3 tells, by how much it makes the layout stale, and what is
/// left.
struct OperationCase {
    const char *name;
    void (*run)(View &);
    int stale;
    const char *told;
    QVariantList left;
    friend void PrintTo(const OperationCase &c, std::ostream *out) { *out << c.name; }
};

const QVariantList all3{1, 2, 3};
const OperationCase operationCases[] = {
    {"AddNew", [](View &v) { v.AddTile(9); }, 1, "Init9 added9", {1, 2, 3, 9}},
    {"AddExisting", [](View &v) { EXPECT_EQ(v.AddTile(2), v.tile(2)); }, 0, "", all3},
    {"Remove", [](View &v) { v.RemoveTile(2); }, 1, "", {1, 3}},
    {"RemoveUnknown", [](View &v) { v.RemoveTile(7); }, 0, "", all3},
    {"Clear", [](View &v) { v.Clear(); }, 3, "", {}},
    {"SetOrder", [](View &v) { v.SetOrder({3}); }, 0, "share300,300", all3},
    {"Resize", [](View &v) { v.Resize(5, 5); }, 1, "", all3},
    {"UpdateLayout", [](View &v) { v.UpdateLayout(); }, 1, "", all3},
    {"SetVisible", [](View &v) { v.SetVisible(QList<int>() << 2 << 77, false); }, 1, "", all3},
    {"ToggleVisible", [](View &v) { v.ToggleVisible(); }, 1, "visible3", all3},
    {"SelectAll", [](View &v) { v.SelectAll(); }, 0, "values1,2,3", all3},
    {"ForceUpdate", [](View &v) { v.ForceUpdate(); }, 0, "Update1 Update2 Update3", all3},
    {"ForceUpdateOfVisible", [](View &v) { v.hide(2).ForceUpdate(); }, 0, "Update1 Update3", all3},
    {"NotForcedWhileDisabled", [](View &v) { v.disable().ForceUpdate(); }, 0, "", all3},
    {"NotStaleWhileDisabled", [](View &v) { v.disable().UpdateLayout(); }, 0, "", all3},
    {"NotResizedWhileDisabled", [](View &v) { v.disable().Resize(5, 5); }, 0, "", all3},
    {"ShownWhileDisabled", [](View &v) { v.disable().SetVisible({}, true); }, 1, "", all3},
    {"OrderedWhileDisabled", [](View &v) { v.disable().SetOrder({}); }, 0, "share300,300", all3},
};

class Operations : public testing::TestWithParam<OperationCase> {};

TEST_P(Operations, TellCountAndLeave)
{
    View view(3, 900, 300);
    Log log(&view);
    GetParam().run(view);
    EXPECT_EQ(view.updateLayout, GetParam().stale);
    EXPECT_EQ(log.take(), GetParam().told);
    EXPECT_EQ(view.Tiles(), GetParam().left);
    EXPECT_EQ(view.Widgets().size(), GetParam().left.size());
}

INSTANTIATE_TEST_SUITE_P(Rows, Operations, testing::ValuesIn(operationCases), rowName());

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

TEST(GLMultiWidgetVisibility, TogglesBetweenTheSelectedAndAll)
{
    View view(4, 800, 600);
    Log log(&view);
    view.ToggleVisible();
    EXPECT_EQ(log.take(), "visible4"); // nothing selected: everything stays
    view.set({2, 4}, "selected", true);
    view.SetVisible({1}, false);
    view.ToggleVisible();
    EXPECT_EQ(log.take(), "visible2");
    EXPECT_EQ(view.GetVisible(), (QList<int>{2, 4}));
    view.ToggleVisible();
    EXPECT_EQ(log.take(), "visible4");
    view.SetVisible({1, 2}, false);
    view.ToggleVisible(); // as many are visible as selected, but others
    EXPECT_EQ(log.take(), "visible2");
    EXPECT_EQ(view.GetVisible(), (QList<int>{2, 4}));
}

TEST(GLMultiWidgetSelection, AllAreSelectedUnlessAllWere)
{
    View view(3, 800, 600);
    Log log(&view);
    view.setProperty("enableSelection", false);
    view.set({3}, "visible", false);
    view.set({1, 2}, "selected", true);
    view.set({3}, "selected", QSize(1, 1)); // does not convert: not selected
    EXPECT_EQ(view.GetSelected(), (QList<int>{1, 2}));
    view.SelectAll();
    EXPECT_EQ(log.take(), "values1,2,3");
    EXPECT_EQ(view.GetSelected(), (QList<int>{1, 2, 3}));
    view.SelectAll();
    EXPECT_EQ(log.take(), "values");
    EXPECT_TRUE(view.GetSelected().isEmpty());
}

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

#include "glmultiwidget_test.moc"
