// SPDX-License-Identifier: MIT
// Placement and actions of drawing objects, the window's actions, and menus.
#include <QMenu>
#include <QTimer>

#include "tests/GL/fixture.h"

namespace {

const struct {
    QRectF rect, pixels;
    double glY;
    bool alive = true; // whether the window, 800 x 600, is
} placements[] = {
    {{0, 0, 1, 1}, {0, 0, 800, 600}, 0},
    {{0.25, 0.5, 0.5, 0.25}, {200, 300, 400, 150}, 150},
    {{-0.25, -0.5, 0.25, 0.25}, {400, 150, 200, 150}, 300},
    {{10, 20, 100, 50}, {10, 20, 100, 50}, 530},
    {{-10, -10, 100, 50}, {690, 540, 100, 50}, 10},
    {{0, 0, 1, 2}, {0, 0, 1, 2}, 598},
    {{0, 0, 2, 1}, {0, 0, 2, 1}, 599},
    {{0, 3, 1, 1}, {0, 3, 1, 1}, -4, false},
    {{-10, -20, 100, 50}, {-110, -70, 100, 50}, 20, false},
};

TEST(PlacementTest, IsInPixelsOfTheWindowWithItsEdges)
{
    for (const auto &[rect, pixels, glY, alive] : placements) {
        QScopedPointer<QGLWindow> window(new QGLWindow(nullptr, nullptr));
        window->resize(800, 600);
        GLWidget o(nullptr, "a");
        window->AddGLWidget(&o);
        EXPECT_EQ(o.rect, o.orect);
        EXPECT_EQ(o.rect, QRectF(0, 0, 1, 1));
        QObject &named = o;
        named.setProperty("geometry", rect);
        o.viewport.align = 0;
        window->mouse.x = 30;
        window->mouse.y = 40;
        if (!alive)
            window.reset();
        EXPECT_EQ(o.geometry(false), pixels);
        EXPECT_EQ(QRectF(o.pos(false), o.size(false)), pixels);
        EXPECT_EQ(QRectF(named.property("x").toReal(), named.property("y").toReal(),
                         named.property("width").toReal(), named.property("height").toReal()),
                  pixels);
        EXPECT_EQ(o.glY(), glY);
        EXPECT_EQ(named.property("geometry").toRectF(), rect) << "stored, not pixels";
        EXPECT_EQ(QRectF(named.property("pos").toPointF(), named.property("size").toSizeF()), rect);
        EXPECT_EQ(o.Cursor(), alive ? Vector(30, 40, 0) : Vector(0, 0, -1));
        const QPoint far = pixels.bottomRight().toPoint();
        EXPECT_EQ(o.hit(far.x(), far.y()), &o);
        EXPECT_EQ(o.hit(far.x() + 1, far.y()), nullptr);
        EXPECT_EQ(o.hit(far.x(), far.y() + 1), nullptr);
        o.rect = QRectF(5, 6, 7, 8); // as a layout does
        o.orect = QRectF(1, 2, 3, 4);
        named.setProperty("pos", QPointF(10, 20));
        EXPECT_EQ(o.rect, QRectF(10, 20, 7, 8));
        EXPECT_EQ(o.orect, QRectF(10, 20, 3, 4));
        named.setProperty("size", QSizeF(30, 40));
        EXPECT_EQ(o.rect, QRectF(10, 20, 30, 40));
        EXPECT_EQ(o.orect, o.rect);
        o.viewport.align = GL::Viewport::AlignTop | GL::Viewport::AlignHCenter;
        EXPECT_EQ(o.Cursor(15, 39), Vector(0, 0, 0)) << "the last row of its 30 x 40 pixels";
        o.move(1, 2);
        o.resize(0, 4);
        EXPECT_EQ(o.orect, QRectF(1, 2, 0, 4));
        EXPECT_EQ(o.hit(1, 2), nullptr) << "empty";
    }
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
    a->NewMouseAction(1, 0, "größer", nullptr, nullptr);
    a->NewKeyAction("", nullptr, nullptr, nullptr);
    EXPECT_EQ(run("actions a"), QString::fromUtf8("[,größer,C,B,A]")) << "each once";
    EXPECT_EQ(a->enableAction("größer", false), a->actions()[1]);
    EXPECT_FALSE(a->actions()[1]->isEnabled());
    EXPECT_EQ(a->enableAction("x", false), nullptr);
    EXPECT_FALSE(a->DeleteAction(nullptr) || a->DeleteAction("c"));
    find("A")->setObjectName("C");
    EXPECT_TRUE(a->DeleteAction("C") && a->DeleteAction("größer"));
    EXPECT_EQ(run("actions a"), "[,B,C]") << "the first of the name";
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

TEST_F(Menu, WindowActionsGoBeforeTheFirstAndReplaceTheirName)
{
    for (const char *name : {"A", "B", "größer"})
        window->NewAction("Ctrl+S", name, &tree, SLOT(Number(int)));
    EXPECT_EQ(run("actions window"), QString::fromUtf8("[größer,B,A]"))
        << "kept, though the slot does not fit";
    QAction *b = window->NewAction("Ctrl+S", "B", &tree, SLOT(Plain()));
    EXPECT_EQ(run("actions window"), QString::fromUtf8("[B,größer,A]"));
    EXPECT_EQ(b->shortcut(), QKeySequence("Ctrl+S"));
    EXPECT_EQ(b->shortcutContext(), Qt::WidgetShortcut);
    EXPECT_EQ(b->parent(), window.data());
    b->trigger();
    window->NewAction("", "B", &tree, SLOT(Flag(bool)))->trigger();
    EXPECT_EQ(tree.log, "PlainFlag");
    EXPECT_EQ(run("actions window"), QString::fromUtf8("[größer,A,B]"))
        << "the first was the one replaced";
    window->NewAction("", nullptr, &tree, SLOT(Plain()));
    window->NewAction("", nullptr, &tree, SLOT(Plain()))->setObjectName("A");
    EXPECT_FALSE(window->DeleteAction(nullptr) || window->DeleteAction("a"));
    EXPECT_TRUE(window->DeleteAction("größer") && window->DeleteAction("A"));
    EXPECT_EQ(run("actions window"), "[B,A]") << "the first of the name, and one without";
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
