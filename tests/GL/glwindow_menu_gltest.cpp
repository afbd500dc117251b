// SPDX-License-Identifier: MIT
// The window's own actions and the context menu.
#include <QApplication>
#include <QCursor>
#include <QMenu>
#include <QTimer>

#include "table.h"
#include "testing.h"

namespace {

class WindowActions : public WindowTest {
protected:
    QString names() const
    {
        QStringList all;
        for (const QAction *action : window->actions())
            all << action->objectName();
        return all.join(' ');
    }
};

TEST_F(WindowActions, NewOnesGoBeforeTheFirstAndReplaceTheirName)
{
    for (const char *name : {"A", "B", "C"})
        window->NewAction("Ctrl+S", name, &host, SLOT(Number(int)));
    EXPECT_EQ(names(), "C B A") << "kept, though the slot does not fit";
    QAction *b = window->NewAction("Ctrl+S", "B", &host, SLOT(Plain()));
    EXPECT_EQ(names(), "B C A");
    EXPECT_EQ(b->shortcut(), QKeySequence(Qt::CTRL + Qt::Key_S));
    EXPECT_EQ(b->shortcutContext(), Qt::WidgetShortcut);
    EXPECT_EQ(b->parent(), window.data());
    b->trigger();
    EXPECT_EQ(host.take(), "Plain");
    window->NewAction("", "B", &host, SLOT(Flag(bool)))->trigger();
    EXPECT_EQ(host.take(), "Flag");
    EXPECT_EQ(names(), "C A B") << "the first was the one replaced";
    window->NewAction("", nullptr, &host, SLOT(Plain()));
    window->NewAction("", nullptr, &host, SLOT(Plain()));
    EXPECT_EQ(names(), "C A B ") << "one without a name";
}

TEST_F(WindowActions, DeleteActionTakesTheFirstOfTheName)
{
    window->NewAction("", "a", &host, SLOT(Plain()));
    window->NewAction("", "b", &host, SLOT(Plain()))->setObjectName("a");
    EXPECT_FALSE(window->DeleteAction(nullptr));
    EXPECT_FALSE(window->DeleteAction("A"));
    EXPECT_TRUE(window->DeleteAction("a"));
    EXPECT_EQ(names(), "a");
    EXPECT_TRUE(window->DeleteAction("a"));
    EXPECT_FALSE(window->DeleteAction("a"));
}

TEST(ActionConnectTest, TellsWhatFits)
{
    Host host;
    auto *target = new QObject;
    QPointer<QAction> action = new QAction(nullptr);
    EXPECT_FALSE(action_connect(nullptr, &host, SLOT(Plain())));
    EXPECT_FALSE(action_connect(action, nullptr, SLOT(Plain())));
    EXPECT_FALSE(action_connect(action, &host, nullptr));
    EXPECT_TRUE(action_connect(action, &host, SLOT(Plain())));
    EXPECT_TRUE(action_connect(action, &host, SLOT(Flag(bool))));
    EXPECT_FALSE(action_connect(action, &host, SLOT(Number(int))));
    EXPECT_FALSE(action_connect(action, target, SLOT(Number(int))));
    action->trigger();
    EXPECT_EQ(host.take(), "Plain Flag");
    delete target;
    QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
    EXPECT_TRUE(action.isNull()) << "an action dies with a target, connected or not";
}

/// A menu tree: fills the menu and closes it once it is open.
class Tree : public QObject {
    Q_OBJECT

public:
    std::function<void(QMenu *)> build;
    int built = 0;

public Q_SLOTS:
    int Build(QMenu *menu)
    {
        ++built;
        menu->addAction("entry");
        if (build)
            build(menu);
        else
            QTimer::singleShot(0, menu, &QMenu::close);
        return 7;
    }
};

struct PlaceCase {
    const char *name;
    QPoint cursor; // on the screen; the window covers (100, 100) to (299, 199)
    bool opens;
};

const PlaceCase placeCases[] = {
    {"Inside", {150, 120}, true},   {"FirstPixel", {100, 100}, true},
    {"FarEdges", {300, 200}, true}, {"BeyondTheRight", {301, 150}, false},
    {"Below", {150, 201}, false},   {"LeftOfIt", {99, 150}, false},
    {"AboveIt", {150, 99}, false},
};

TABLE(MenuPlace, WindowTest, PlaceCase, placeCases);

TEST_P(MenuPlace, OpensWithTheCursorInTheWindow)
{
    QCursor::setPos(GetParam().cursor);
    Tree tree;
    window->ContextMenu(&tree);
    EXPECT_EQ(tree.built == 1, GetParam().opens);
}

using Menu = WindowTest;

TEST_F(Menu, IsBuiltRunAtTheCursorAndTheRecordFollows)
{
    QCursor::setPos(150, 120);
    Tree tree;
    tree.build = [&](QMenu *menu) {
        EXPECT_EQ(window->menu, menu);
        EXPECT_EQ(menu->parent(), window.data());
        QTimer::singleShot(0, menu, [&, menu] {
            EXPECT_TRUE(menu->isVisible());
            EXPECT_EQ(menu->pos(), QPoint(150, 120));
            window->ContextMenu(&tree); // one is open
            window->mouse.update(1, 2, 3, 5, 0);
            window->mouse.double_click = 1;
            menu->close();
        });
    };
    window->ContextMenu(&tree);
    EXPECT_EQ(tree.built, 1);
    EXPECT_EQ(window->menu, nullptr);
    EXPECT_EQ(window->findChild<QMenu *>(), nullptr) << "deleted";
    EXPECT_EQ(window->mouse.x, 50);
    EXPECT_EQ(window->mouse.y, 20) << "from the top";
    EXPECT_EQ(window->mouse.button, 5);
    EXPECT_EQ(window->mouse.double_click, 0);
    window->ContextMenu(nullptr);
    EXPECT_EQ(window->menu, nullptr);
}

TEST_F(Menu, WithoutBuildItIsEmptyAndShown)
{
    QCursor::setPos(150, 120);
    bool shown = false;
    QTimer::singleShot(0, window, [&] {
        shown = window->menu && window->menu->isVisible() && window->menu->isEmpty();
        if (window->menu)
            window->menu->close();
    });
    window->ContextMenu(&owner);
    EXPECT_TRUE(shown);
}

TEST_F(Menu, BuildMayDeleteTheWindow)
{
    QCursor::setPos(150, 120);
    Tree tree;
    tree.build = [&](QMenu *) { delete window; };
    window->ContextMenu(&tree);
    EXPECT_TRUE(window.isNull());
}

TEST_F(Menu, SceneObjectAsksTheApplicationForItsTree)
{
    QCursor::setPos(150, 120);
    GLWidget *a = add("a");
    QPointer<Tree> tree;
    const auto made = [&](const QString &type, QObject *parent, const QString &name) {
        host.log << type << parent->objectName() << name;
        tree = new Tree;
        tree->build = [&](QMenu *menu) {
            host.log << "Build";
            QTimer::singleShot(0, menu, &QMenu::close);
        };
        return tree.data();
    };
    newObject = made;
    a->ContextMenu();
    EXPECT_EQ(host.log.mid(0, 5).join(' '), "MenuTree a contextmenu a.InitContextMenuTree Build");
    host.log.clear(); // frames may follow
    EXPECT_TRUE(tree.isNull()) << "deleted";

    host.on["a.InitContextMenuTree"] = [&] { delete a; };
    a->ContextMenu();
    EXPECT_EQ(host.take(), "MenuTree a contextmenu a.InitContextMenuTree");
    EXPECT_TRUE(tree.isNull());

    GLWidget *b = add("b");
    newObject = nullptr; // the application makes none
    b->ContextMenu();
    EXPECT_EQ(host.take(), "");
    newObject = made;
    window->RemoveGLWidget(b);
    b->ContextMenu();
    EXPECT_EQ(host.take(), "") << "not in a window";
    newObject = nullptr;
}

} // namespace

#include "glwindow_menu_gltest.moc"
