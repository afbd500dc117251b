// SPDX-License-Identifier: MIT
// Placement and actions of drawing objects, the window's actions, and menus.
#include <QApplication>
#include <QMenu>
#include <QTimer>

#include "tests/support/window.h"

namespace {

const char *const placeScripts = R"(
Default: add a; get a x y width height rect orect; hit a 0,0 200,100 201,0 0,101; set a geometry 0,0,0,50; hit a 0,0 0,10 => 0 0 200 100 0,0,1,1 0,0,1,1 o o - - - -
Fractions: add a 0.25,0.5,0.5,0.25; get a x y width height; hit a 50,50 49,50 50,49 => 50 50 100 25 o - -
FractionsFromTheFarCorner: add a -0.25,-0.5,0.25,0.25; get a x y width height; hit a 100,25 150,50 99,25 => 100 25 50 25 o o -
Pixels: add a 10,20,100,50; get a x y width height pos size geometry => 10 20 100 50 10,20 100,50 10,20,100,50
PixelsFromTheFarCorner: add a -10,-10,100,50; get a x y geometry => 90 40 -10,-10,100,50
TallerThanOneIsInPixels: add a 0,0,1,2; get a width height => 1 2
WiderThanOneIsInPixels: add a 0,0,2,1; get a width height => 2 1
WithoutAWindow: add a 0,3,1,1; window.RemoveGLWidget a; get a x y width height; set a geometry -10,-20,100,50; get a x y => 1 0 3 1 1 -110 -70
SettersWriteBoth: add a; set a rect 5,6,7,8 orect 1,2,3,4 pos 10,20; get a rect orect; set a size 30x40; get a rect orect; set a geometry 5,6,7,8; get a rect orect => 10,20,7,8 10,20,3,4 10,20,30,40 10,20,30,40 5,6,7,8 5,6,7,8
)";
SCRIPTS(Placement, WindowTest, "", placeScripts)

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
    EXPECT_FALSE(bare.setProperty("size", 1.5f)) << "a dynamic property";
    EXPECT_EQ(bare.QObject::property("size").userType(), int(QMetaType::Float));
    bare.move(1, 2);
    bare.resize(30, 40);
    EXPECT_EQ(QRectF(bare.pos(false), bare.size(false)), QRectF(1, 2, 30, 40));
    bare.viewport.align = GL::Viewport::AlignTop | GL::Viewport::AlignHCenter;
    EXPECT_EQ(bare.Cursor(15, 39), Vector(0, 0, 0)) << "the last row of its 30 x 40 pixels";
}

const char *const actionScripts = R"(
NewFirst: actions a => [C,B,A]
InsertedMoves: a.AddAction D; a.InsertAction B D; actions a; a.InsertAction C A; actions a => D D [C,D,B,A] A [A,C,D,B]
UnknownNeighbour: a.InsertAction D C; actions a; a.InsertAction C none; actions a => C [B,A,C] null [B,A,C]
Removed: a.RemoveAction B; a.RemoveAction B; actions a; delete A; actions a => 1 0 [C,A] [C]
Replaced: a.AddAction D; keybind a B K; actions a; bind a A 1; actions a => D [B,C,A,D] [A,B,C,D]
NamesAreUtf8: keybind a größer K; bind a größer; actions a; a.DeleteAction größer; actions a => [größer,C,B,A] 1 [C,B,A]
NoNameIsOneToo: a.NewKeyAction K none none none; a.NewMouseAction 1 0 none none none; actions a => - - [,C,B,A]
DeletesTheFirst: set A objectName C; a.DeleteAction none; a.DeleteAction c; a.DeleteAction C; actions a => 0 0 1 [B,C]
ReplacesAll: set C objectName A; set D objectName A; a.AddAction A; bind a B; keybind a A; actions a => A [A,B]
Bound: a.NewKeyAction Ctrl+S k a 1ContextMenu(); get k key; a.NewMouseAction 5 6 m a 1Missing(int); get m binding mask => k Ctrl+S m 5 6
DiedOfIt: a.AddAction D; doomed D delete a; a.NewKeyAction K D none none => D null
OfTheWindow: window.NewAction Ctrl+S A none none; window.NewAction X B none none; window.NewAction Y A none none; actions window => A B A [A,B]
WindowReplacesTheFirst: window.NewAction X A none none; window.NewAction X B none none; window.NewAction X B none none; actions window => A B B [A,B]
WindowDeletes: window.NewAction X größer none none; window.NewAction X E none none; set größer objectName E; window.DeleteAction e; window.DeleteAction none; window.DeleteAction E; actions window => größer E 0 0 1 [E]
WindowShortcuts: view 1; window.NewAction Ctrl+S E view 1SelectAll(); get E shortcut shortcutContext; E.trigger; window.NewAction X F E 1setEnabled(bool); F.trigger; get E enabled; delete view; actions window => E Ctrl+S 0 ValueChanged:1 F 0 [F,E]
WindowsWithoutAName: window.NewAction X none a 1Missing(int); window.NewAction X none none none; actions window => - - []
)";

const char *const three = "add a; add b; bind b D; bind a A; bind a B; bind a C";
SCRIPTS(Actions, WindowTest, three, actionScripts)

TEST_F(WindowTest, ActionsAreEnabledByNameAndMayEndTheWindow)
{
    run(three);
    GLW *a = object("a");
    EXPECT_EQ(a->enableAction("B", false), a->actions()[1]);
    EXPECT_TRUE(a->actions()[0]->isEnabled() && !a->actions()[1]->isEnabled());
    EXPECT_EQ(a->enableAction("x", false), nullptr);
    window->addAction(qobject_cast<QAction *>(find("D")));
    run("doomed D delete window");
    EXPECT_EQ(window->NewAction("", "D", nullptr, nullptr), nullptr);
}

/// A menu tree of one entry.
class Tree : public QObject {
    Q_OBJECT

public:
    using QObject::QObject;

Q_SIGNALS:
    void Built();

public Q_SLOTS:
    int Build(QMenu *menu)
    {
        menu->addAction("entry");
        menu->setObjectName("menu");
        emit Built();
        return 7;
    }
};

// A menu that opens tells where, and how many entries it has; then it is closed.
const char *const menuScripts = R"(
InTheCorners: pointer 300,200; window.ContextMenu tree; pointer 100,100; window.ContextMenu tree => Built open:300,200:1 Built open:100,100:1
Outside: pointer 301,150; window.ContextMenu tree; pointer 150,201; window.ContextMenu tree; pointer 99,150; window.ContextMenu tree; pointer 150,99; window.ContextMenu tree => 
OfNobodyAndWithoutBuild: window.ContextMenu none; window.ContextMenu owner => open:150,120:0
OnlyOne: on Built window.ContextMenu tree; window.ContextMenu tree => Built open:150,120:1
RecordFollowsFromTheTop: clock 5000000; set window at 1,2 button 5 modifier 6 double_click 1; window.ContextMenu tree; record; get window double_click => Built open:150,120:1 50,20 1,2 -49,-18 5000000 5<5 6<6 0
MenuDies: on Built delete menu; window.ContextMenu tree; window.ContextMenu tree => Built Built
WindowDies: on Built delete window; window.ContextMenu tree => Built
OfAnObject: a.ContextMenu => MenuTree a contextmenu InitContextMenuTree:a Built open:150,120:1
OfAnObjectWithoutAWindow: window.RemoveGLWidget a; a.ContextMenu => 1
OfAnObjectThatDies: on InitContextMenuTree:a delete a; a.ContextMenu => MenuTree a contextmenu InitContextMenuTree:a
OfAnObjectThatLeaves: on InitContextMenuTree:a window.RemoveGLWidget a; a.ContextMenu => MenuTree a contextmenu InitContextMenuTree:a 1
OfATreeThatDies: on InitContextMenuTree:a delete made; a.ContextMenu => MenuTree a contextmenu InitContextMenuTree:a
OfNoTree: set a objectName b; b.ContextMenu => MenuTree b contextmenu
)";

class Menus : public WindowTest {
protected:
    Menus()
    {
        const auto make = [this](const char *name) {
            auto *tree = new Tree(&owner);
            tree->setObjectName(name);
            host.hear(tree);
            return tree;
        };
        make("tree");
        machine.newObject = [=](const QString &type, QObject *parent, const QString &name) {
            host.log << type << parent->objectName() << name;
            return parent->objectName() == "b" ? nullptr : make("made");
        };
        QObject::connect(&closing, &QTimer::timeout, [this] {
            if (auto *menu = qobject_cast<QMenu *>(QApplication::activePopupWidget())) {
                host.log
                    << QString("open:%1:%2").arg(wordOf(menu->pos())).arg(menu->actions().size());
                menu->close();
            }
        });
        closing.start(0);
    }
    QTimer closing;
};

ROWS(Menu, Menus, menuScripts)
{
    anyError = true; // what the menu covered is painted meanwhile
    run("add a; set a visible 0 enabled 0; pointer 150,120");
    EXPECT_EQ(run(GetParam().script), GetParam().told);
    EXPECT_TRUE(!window || (!window->menu && !window->findChild<QMenu *>())) << "it is deleted";
    EXPECT_FALSE(find("made")) << "the tree, too";
}

} // namespace

#include "objects_gltest.moc"
