// SPDX-License-Identifier: MIT
// The multi-view without a window: its interface, properties, operations and visibility.
#include "tests/GL/glmultiwidget_sheet.h"

#include <QMetaMethod>

namespace {

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

/// Keeps the news of a changed property from everybody.
class Silence : public QObject {
public:
    bool eventFilter(QObject *, QEvent *e) override
    {
        return e->type() == QEvent::DynamicPropertyChange;
    }
};

TEST(GLMultiWidgetVisibility, ChangesThatNobodyHearsOfCount)
{
    View view(2, 800, 600);
    view.SetOrder({});
    Silence silence;
    qApp->installEventFilter(&silence);
    for (const char *name : {"visible", "enabled"}) {
        for (const QVariant &value : {QVariant(false), QVariant(true), QVariant(), QVariant(1)}) {
            ASSERT_EQ(view.hit(5, 5), view.tile(1));
            view.set({1}, name, value);
            EXPECT_EQ(view.hit(5, 5), value.toBool() ? view.tile(1) : nullptr) << name;
            view.set({1}, name, true);
        }
    }
    qApp->removeEventFilter(&silence);
}

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

} // namespace

#include "glmultiwidget_test.moc"
