// SPDX-License-Identifier: MIT
// Placement and actions of drawing objects, the window's actions, and menus.
#include <QMenu>
#include <QTimer>

#include "tests/GL/fixture.h"

namespace {

const char *const placeScripts = R"(
Default: add a; pixels a; rects a; hit a 0,0 200,100 201,0 0,101 => 0,0,200,100 0 0,0,1,1 0,0,1,1 o o - -
Fractions: add a 0.25,0.5,0.5,0.25; pixels a; hit a 50,50 49,50 50,49 => 50,50,100,25 25 o - -
FractionsFromTheFarCorner: add a -0.25,-0.5,0.25,0.25; pixels a; get a x; get a y; get a width; get a height => 100,25,50,25 50 100 25 50 25
Pixels: add a 10,20,100,50; pixels a; get a pos; get a size; get a geometry => 10,20,100,50 30 10,20 100,50 10,20,100,50
PixelsFromTheFarCorner: add a -10,-10,100,50; pixels a; get a geometry => 90,40,100,50 10 -10,-10,100,50
TallerThanOneIsInPixels: add a 0,0,1,2; pixels a => 0,0,1,2 98
WiderThanOneIsInPixels: add a 0,0,2,1; pixels a => 0,0,2,1 99
WithoutAWindow: add a 0,3,1,1; window.RemoveGLWidget a; pixels a => 1 0,3,1,1 -4
WithoutAWindowFromTheFarCorner: add a -10,-20,100,50; window.RemoveGLWidget a; pixels a => 1 -110,-70,100,50 20
EmptyIsNotHit: add a 0,0,0,50; hit a 0,0 0,10 => - -
)";
SCRIPTS(Placement, WindowTest, "", placeScripts)

TEST(PlacementTest, SettersWriteBothRectangles)
{
    GLWidget o(nullptr, nullptr);
    o.rect = QRectF(5, 6, 7, 8); // as a layout does
    o.orect = QRectF(1, 2, 3, 4);
    o.QObject::setProperty("pos", QPointF(10, 20));
    EXPECT_EQ(wordOf(o.rect) + ' ' + wordOf(o.orect), "10,20,7,8 10,20,3,4");
    o.QObject::setProperty("size", QSizeF(30, 40));
    EXPECT_EQ(wordOf(o.rect) + ' ' + wordOf(o.orect), "10,20,30,40 10,20,30,40");
    o.viewport.align = GL::Viewport::AlignTop | GL::Viewport::AlignHCenter;
    EXPECT_EQ(o.Cursor(15, 39), Vector(0, 0, 0)) << "the last row of its 30 x 40 pixels";
    o.move(1, 2);
    o.resize(3, 4);
    EXPECT_EQ(wordOf(o.rect) + ' ' + wordOf(o.orect), "1,2,3,4 1,2,3,4");
    o.QObject::setProperty("geometry", QRectF(5, 6, 7, 8));
    EXPECT_EQ(wordOf(o.rect) + ' ' + wordOf(o.orect), "5,6,7,8 5,6,7,8");
}

/// A drawing object with nothing of its own.
class Bare : public GLTile {
public:
    explicit Bare(GLMultiWidget *view) : GLTile(view, 7) {}
    QList<QAction *> actions() const override { return GLW::actions(); }
};

TEST(GLWTest, HasDefaultsAndPropertiesThatFallBack)
{
    GLMultiWidget view(nullptr, "b\xE4r");
    Bare bare(&view);
    EXPECT_EQ(view.objectName(), QString::fromLatin1("b\xE4r"));
    EXPECT_EQ(view.id() * 10 + bare.id(), -3);
    EXPECT_EQ(bare.Range2D(1), QRectF(0, 0, 0, 0));
    EXPECT_EQ(bare.NearestDataPos(), QVector3D(0, 0, 0));
    QObject child(&bare);
    QAction nested(&child);
    EXPECT_EQ(bare.actions(), QList<QAction *>{&nested});
    bool ok = true;
    EXPECT_EQ(bare.property<QSize>("missing", &ok), QSize(-1, -1));
    EXPECT_FALSE(ok);
    bare.setProperty("word", QString("42"));
    EXPECT_EQ(bare.property<int>("word", &ok), 42);
    EXPECT_TRUE(ok);
    bare.setProperty("word", QRectF(0, 0, 1, 1));
    EXPECT_FALSE(bare.property<bool>("word"));
    EXPECT_FALSE(bare.setProperty("size", 1.5f)) << "a dynamic property";
    EXPECT_EQ(bare.QObject::property("size").userType(), int(QMetaType::Float));
}

const char *const actionScripts = R"(
NewFirst: actions a => [C,B,A]
AddedLast: a.AddAction D; actions a => D [C,B,A,D]
InsertedMoves: a.AddAction D; a.InsertAction B D; actions a; a.InsertAction C A; actions a => D D [C,D,B,A] A [A,C,D,B]
UnknownNeighbour: a.InsertAction D C; actions a; a.InsertAction C none; actions a => C [B,A,C] null [B,A,C]
Removed: a.RemoveAction B; a.RemoveAction B; actions a; delete A; actions a => 1 0 [C,A] [C]
Replaced: a.AddAction D; keybind a B K; actions a; bind a A 1; actions a => D [B,C,A,D] [A,B,C,D]
NamesAreUtf8: keybind a größer K; bind a größer; actions a; a.DeleteAction größer; actions a => [größer,C,B,A] 1 [C,B,A]
DeletesTheFirst: set A objectName C; a.DeleteAction none; a.DeleteAction c; a.DeleteAction C; actions a => 0 0 1 [B,C]
OfTheWindow: window.NewAction Ctrl+S A none none; window.NewAction X B none none; window.NewAction Y A none none; actions window => A B A [A,B]
WindowReplacesTheFirst: window.NewAction X A none none; window.NewAction X B none none; window.NewAction X B none none; actions window => A B B [A,B]
WindowDeletes: window.NewAction X größer none none; window.NewAction X E none none; set größer objectName E; window.DeleteAction e; window.DeleteAction none; window.DeleteAction E; actions window => größer E 0 0 1 [E]
ReplacesAll: set C objectName A; set D objectName A; a.AddAction A; bind a B; keybind a A; actions a => A [A,B]
)";

class Actions : public WindowTest {
protected:
    Actions()
    {
        (new QAction(&owner))->setObjectName("D");
        run("add a; bind a A; bind a B; bind a C");
    }
};
SCRIPTS(ActionList, Actions, "", actionScripts)

TEST_F(Actions, AreMadeFoundAndDeletedByName)
{
    auto *a = static_cast<GLWidget *>(find("a"));
    auto *key =
        static_cast<KeyAction *>(a->NewKeyAction("Ctrl+S", "größer", a, SLOT(ContextMenu())));
    auto *mouse =
        static_cast<MouseAction *>(a->NewMouseAction(5, 6, nullptr, a, SLOT(Missing(int))));
    EXPECT_EQ(key->key(), QKeySequence("Ctrl+S"));
    EXPECT_EQ(mouse->binding() * 10 + mouse->mask(), 56u);
    EXPECT_TRUE(key->parent() == a && mouse->parent() == a);
    EXPECT_EQ(run("actions a"), QString::fromUtf8("[,größer,C,B,A]"));
    a->NewKeyAction("", nullptr, nullptr, nullptr);
    EXPECT_EQ(run("actions a"), QString::fromUtf8("[,größer,C,B,A]")) << "no name is one, too";
    EXPECT_EQ(a->enableAction("größer", false), a->actions()[1]);
    EXPECT_FALSE(a->actions()[1]->isEnabled());
    EXPECT_EQ(a->enableAction("x", false), nullptr);
    auto *doomed = static_cast<QAction *>(find("D"));
    QObject::connect(a->AddAction(doomed), &QObject::destroyed, [a] { delete a; });
    EXPECT_EQ(a->NewKeyAction("K", "D", nullptr, nullptr), nullptr) << "it died of it";
}

/// A menu tree: fills the menu, which closes once it is open. Two of its slots are for actions.
class Tree : public QObject {
    Q_OBJECT

public:
    std::function<void(QMenu *)> build = [](QMenu *) {};
    QString log;

public Q_SLOTS:
    int Build(QMenu *menu)
    {
        log += "built";
        QTimer::singleShot(0, menu, &QMenu::close);
        build(menu);
        return 7;
    }
    void Plain() { log += "Plain"; }
    void Flag(bool) { log += "Flag"; }
};

class Menu : public WindowTest {
protected:
    Menu() { machine.pointer = QPoint(150, 120); }
    Tree tree;
};

TEST_F(Menu, WindowActionsAreShortcutsOfTheirSlots)
{
    QAction *b = window->NewAction("Ctrl+S", "B", &tree, SLOT(Plain()));
    EXPECT_EQ(b->shortcut(), QKeySequence("Ctrl+S"));
    EXPECT_EQ(b->shortcutContext(), Qt::WidgetShortcut);
    EXPECT_EQ(b->parent(), window.data());
    b->trigger();
    window->NewAction("", "B", &tree, SLOT(Flag(bool)))->trigger();
    EXPECT_EQ(tree.log, "PlainFlag");
    window->NewAction("", nullptr, &tree, SLOT(Number(int)));
    window->NewAction("", nullptr, &tree, SLOT(Plain()));
    EXPECT_EQ(run("actions window"), "[B,]") << "one without a name";
    auto *foreign = new QAction(&tree);
    window->addAction(foreign);
    QObject::connect(foreign, &QObject::destroyed, [this] { delete window; });
    EXPECT_EQ(window->NewAction("", "", &tree, SLOT(Plain())), nullptr) << "it died of it";
}

TEST_F(Menu, OpensWithThePointerInTheWindow)
{
    const std::pair<QPoint, bool> rows[] = {{{100, 100}, true},  {{300, 200}, true},
                                            {{301, 150}, false}, {{150, 201}, false},
                                            {{99, 150}, false},  {{150, 99}, false}};
    for (const auto &[at, opens] : rows) {
        machine.pointer = at;
        tree.log.clear();
        window->ContextMenu(&tree);
        EXPECT_EQ(tree.log, opens ? "built" : "") << at.x() << ' ' << at.y();
    }
    window->ContextMenu(nullptr);
    EXPECT_EQ(window->menu, nullptr);
}

TEST_F(Menu, IsRunAtThePointerAndTheRecordFollows)
{
    tree.build = [&](QMenu *menu) {
        menu->addAction("entry");
        EXPECT_EQ(window->menu, menu);
        EXPECT_EQ(menu->parent(), window.data());
        QObject::connect(menu, &QMenu::aboutToHide, [&, menu] {
            EXPECT_EQ(menu->pos(), QPoint(150, 120));
            window->ContextMenu(&tree); // one is open
            window->mouse.update(1, 2, 3, 5, 6);
            window->mouse.double_click = 1;
        });
    };
    window->ContextMenu(&tree);
    EXPECT_EQ(tree.log, "built");
    EXPECT_EQ(window->menu, nullptr);
    EXPECT_EQ(window->findChild<QMenu *>(), nullptr) << "deleted";
    EXPECT_TRUE(record().startsWith("50,20 1,2 ")) << "from the top";
    EXPECT_TRUE(record().endsWith(" 5<5 6<6"));
    EXPECT_EQ(window->mouse.double_click, 0);
    EXPECT_GT(window->mouse.t, 3);
    bool shown = false;
    QTimer::singleShot(0, window, [&] {
        shown = window->menu && window->menu->isVisible() && window->menu->isEmpty();
        delete window->menu;
    });
    window->ContextMenu(&owner);
    EXPECT_TRUE(shown) << "without Build it is empty";
    tree.build = [&](QMenu *) { delete window; };
    window->ContextMenu(&tree);
    EXPECT_TRUE(window.isNull());
}

TEST_F(Menu, SceneObjectAsksTheApplicationForItsTree)
{
    QPointer<Tree> made;
    machine.newObject = [&](const QString &type, QObject *parent, const QString &name) {
        host.log << type << parent->objectName() << name;
        made = new Tree;
        made->build = [&](QMenu *) { host.log << "Build"; };
        return made.data();
    };
    GLWidget *a = add("a");
    a->ContextMenu();
    EXPECT_EQ(host.take().section(' ', 0, 4), "MenuTree a contextmenu InitContextMenuTree:a Build");
    EXPECT_TRUE(made.isNull()) << "deleted";
    EXPECT_EQ(run("window.RemoveGLWidget a; a.ContextMenu; window.AddGLWidget a"), "1 a")
        << "not in a window";
    EXPECT_EQ(run("on InitContextMenuTree:a delete a; a.ContextMenu"),
              "MenuTree a contextmenu InitContextMenuTree:a");
    EXPECT_TRUE(made.isNull());
    EXPECT_EQ(run("add b; on InitContextMenuTree:b window.RemoveGLWidget b; b.ContextMenu"),
              "MenuTree b contextmenu InitContextMenuTree:b 1");
    machine.newObject = nullptr; // the application makes none
    EXPECT_EQ(run("window.AddGLWidget b; b.ContextMenu"), "b");
}

} // namespace

#include "objects_gltest.moc"
