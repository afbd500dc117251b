// SPDX-License-Identifier: MIT
// A single file's window under a person's hands: overlays, lists, keys and the mark under the
// pointer.
#include <QApplication>
#include <QLabel>
#include <QLineEdit>
#include <QMenu>
#include <QRegularExpression>
#include <QThreadPool>
#include <QTreeView>

#include "host/view/sheet/sheet_view.h"
#include "host/view/window/binding.h"
#include "host/view/window/menu_tree.h"
#include "sheet/support.h"
#include "tests/host/shapes.h"

namespace host {
namespace {

class SurfaceTest : public SingleViewTest {
protected:
    /// A cube between two others of the folder, or a table, at rest and seen from the front.
    void open(bool plot = false)
    {
        boxes("a.obj", 1);
        const QString path = plot ? file("b.csv", weather()) : boxes("b.obj", 1);
        boxes("c.obj", 1);
        SingleViewTest::open(path);
        ASSERT_TRUE(QTest::qWaitFor([&] { return !list().filter("strip").isEmpty(); }, 20000));
        settle(glw());
    }
    QStringList list() const
    {
        QStringList texts;
        for (const BindingRow &row : bindingRows(view->bindings(), view->contents()))
            texts << row.keys + ": " + row.text;
        return texts;
    }
};

// The triad fills the corner up to 104 pixels from the left and from the bottom; 75,325 is between
// its arms, 92,342 is on one.
TEST_F(SurfaceTest, OverlaysPassOnWhatTheyHaveNoUseFor)
{
    open();
    for (const char *script : {"75,325 wheel", "75,325 move down +0,-30 move up"}) {
        const QString before = pose();
        hand(script);
        settle(glw());
        EXPECT_NE(pose(), before) << script;
    }
    hand("350,200 down 92,342 up");
    settle(glw());
    const QString before = pose();
    hand("350,200 move");
    settle(glw());
    EXPECT_EQ(pose(), before) << "a drag that ended over an arm goes on";
}

TEST_F(SurfaceTest, WhatIsFittedKeepsClearOfOverlays)
{
    open();
    // The heading ends near 60 and the strip begins at 364; a twentieth is left free.
    for (const auto &[y, isOn] : {std::pair(330, true), {85, true}, {362, false}, {55, false}}) {
        hand(QString("350,%1 move").arg(y));
        EXPECT_EQ(!item()->underPointer().isEmpty(), isOn) << y;
    }
    open(true);
    const SeriesPlot &plot = item<SeriesItem>()->plot();
    EXPECT_EQ(plot.options().insets.bottom(), 36);
    EXPECT_NEAR(plot.toLocal(glw(), {0, -1}).y(),
                PlotLayout(plot.table(), {600, 400}, plot.options()).area.bottom(), 1);
}

TEST_F(SurfaceTest, ListAndMenuOfferWhatWorksInTheSameWords)
{
    const char *const rows[][2] = {
        // what is listed, and what is not; in a model, in a plot
        {"left drag, arrows: Orbit|left click on an arm of the axes: Look along it|W: Shaded, "
         "edges|"
         "M: Mark what|+: Zoom in|Menu, Shift+F10: Menu",
         "plot|along x|legend"},
        {"arrows: Move the plot|Shift+wheel: Zoom along x alone|Ctrl+wheel: Zoom along y|"
         "legend: Show or hide its column|F: Fit",
         "Orbit|Look|hidden lines|Lighting|Roll|arm of|Orthographic"}};
    for (const bool plot : {false, true}) {
        open(plot);
        const QString listed = list().join('\n');
        for (const QString &text : QString(rows[plot][0]).split('|'))
            EXPECT_TRUE(listed.contains(text)) << text.toStdString() << "\n"
                                               << listed.toStdString();
        MenuTree tree;
        view->InitContextMenuTree(glw(), &tree);
        QMenu menu;
        tree.Build(&menu);
        QStringList entries;
        for (const QAction *entry : menu.findChildren<QAction *>())
            if (entry->text().contains('\t'))
                entries << entry->text();
        EXPECT_GT(entries.size(), 3);
        QString below;
        for (const QAction *entry : menu.actions())
            below += entry->menu() ? entry->text() + '|' : QString();
        EXPECT_TRUE(plot ||
                    below == "Look from|Axis that points up|Draw surfaces|Section|Measure|");
        for (const QString &entry : entries) {
            const QString keys = QRegularExpression::escape(entry.section('\t', 1));
            const QRegularExpression row("(^|, )" + keys + "(,.*)?: " + entry.section('\t', 0, 0) +
                                         '$');
            EXPECT_FALSE(list().filter(row).isEmpty()) << entry.toStdString();
        }
        for (const QString &text : QString(rows[plot][1]).split('|'))
            EXPECT_FALSE((listed + entries.join('\n')).contains(text)) << text.toStdString();
        hand(plot ? "P Ctrl+F" : "P P");
        EXPECT_FALSE(window->frame()->isOpen());
    }
}

TEST_F(SurfaceTest, TheListScrollsAndItsKeysAreItsOwn)
{
    open();
    window->frame()->resize(400, 300);
    settle(glw());
    QString chosen;
    QObject::connect(view.get(), &SingleView::fileChosen, [&](const QString &p) { chosen = p; });
    view->showBindings(true);
    const QImage top = painted();
    const QString before = pose();
    hand("PgDown Down");
    EXPECT_NE(painted(), top);
    EXPECT_EQ(pose() + chosen, before);
    hand("Home");
    EXPECT_EQ(painted(), top);
    view->showBindings(false);
    hand("Down");
    settle(glw());
    EXPECT_NE(pose(), before);
}

TEST_F(SurfaceTest, TheMenuOpensByItsKeysWhereverThePointerIs)
{
    open();
    hand("-20,-20 move");
    int asked = 0;
    QObject::connect(view.get(), &View::menuOpening, [&] { ++asked; });
    for (const char *keys : {"Menu", "Shift+F10"}) {
        hand(keys);
        auto *menu = qobject_cast<QMenu *>(QApplication::activePopupWidget());
        ASSERT_TRUE(menu);
        EXPECT_EQ(menu->activeAction(), menu->actions().value(0));
        menu->close();
    }
    EXPECT_EQ(asked, 2);
}

TEST_F(SurfaceTest, PicturesHaveNoMarkAndCleanOnesTheModelAlone)
{
    open();
    const QRect cube(150, 70, 400, 280);
    const QPoint middle(350, 200);
    hand("560,80 move");
    const QImage plain = painted(), full = picture();
    hand("350,200 move");
    const QImage marked = painted();
    EXPECT_EQ(marked.pixel(middle), plain.pixel(middle)) << "not its colour";
    EXPECT_NE(marked.copy(cube), plain.copy(cube)) << "but its corners";
    const QImage clean = picture(false);
    EXPECT_EQ(picture(), full) << "the wish is the picture's";
    hand("M");
    EXPECT_EQ(painted(), plain);
    // Where the name, the axes and the scale bar stand, the backdrop has one colour in each row.
    for (const QRect &place : {QRect(8, 8, 60, 30), {10, 290, 90, 90}, {500, 360, 90, 34}}) {
        EXPECT_NE(full.copy(place), clean.copy(place));
        for (int y = place.top(); y <= place.bottom(); ++y)
            for (int x = place.left(); x <= place.right(); ++x)
                ASSERT_EQ(clean.pixel(x, y), clean.pixel(0, y)) << x << ' ' << y;
    }
    EXPECT_EQ(full.pixel(middle), clean.pixel(middle));
}

TEST_F(SurfaceTest, ThePartsListAndTheModelAgree)
{
    SingleViewTest::open(boxes("three.obj", 3));
    const int whole = widget->width();
    hand("P");
    frame();
    auto *tree = window->frame()->findChild<QTreeView *>();
    auto *search = window->frame()->findChild<QLineEdit *>();
    ASSERT_TRUE(tree && search);
    EXPECT_LT(widget->width(), whole - 100);
    const auto row = [&](int i) { return tree->model()->index(i, 0); };
    const auto follow = [&] { frame(), QCoreApplication::processEvents(); };
    ASSERT_EQ(tree->model()->rowCount(), 3);

    tree->setCurrentIndex(row(1));
    EXPECT_EQ(marks(), ".s.");
    item()->select(2, true);
    follow();
    EXPECT_TRUE(tree->selectionModel()->isSelected(row(2)));
    EXPECT_EQ(marks(), ".ss") << "nothing comes back";
    EXPECT_TRUE(window->frame()->findChild<QLabel *>()->text().endsWith("3 parts  ·  2 selected"));
    tree->setFocus();
    QTest::keyClick(tree, Qt::Key_H); // a key of the view
    EXPECT_EQ(marks(), ".hh");
    follow();
    EXPECT_EQ(row(2).data(Qt::CheckStateRole), int(Qt::Unchecked));
    tree->model()->setData(row(2), Qt::Checked, Qt::CheckStateRole);
    EXPECT_EQ(marks(), ".h.");

    const QPersistentModelIndex kept(row(0));
    QTest::keyClick(tree, Qt::Key_F, Qt::ControlModifier);
    EXPECT_TRUE(search->hasFocus());
    EXPECT_TRUE(kept.isValid()) << "what is folded stays so";
    QTest::keyClicks(search, "x1");
    EXPECT_EQ(tree->model()->rowCount(), 1);
    EXPECT_EQ(row(0).data().toString(), "box1");
    QTest::keyClick(search, Qt::Key_Escape);
    EXPECT_TRUE(widget->hasFocus());
    hand("P");
    frame();
    EXPECT_EQ(widget->width(), whole);
}

TEST_F(SurfaceTest, AtRestEdgesAreSmoothedAndThenNothingIsDrawn)
{
    const auto check = [this](View &each) {
        show(each);
        int frames = 0;
        QImage last;
        const auto heard = QObject::connect(&each, &View::framePainted, [&] {
            ++frames;
            last = window->widget()->grabFrameBuffer();
        });
        const auto rest = [&] {
            window->widget()->repaint();
            const QImage plain = last;
            EXPECT_TRUE(QTest::qWaitFor([&] { return each.isQuiet(); }, 20000));
            return plain;
        };
        hand("W"); // to edges, which are sought first
        rest();
        rest(); // whatever was under way before
        frames = 0;
        const QImage plain = rest();
        const bool keeps = qobject_cast<SheetView *>(&each); // what is smooth
        EXPECT_EQ(frames, keeps ? 1 : 1 + Refinement::frames);
        EXPECT_EQ(last == plain, keeps);
        window->widget()->repaint();
        EXPECT_EQ(last, plain) << "another frame is plain";
        QObject::disconnect(heard);
    };
    open();
    hand("560,80 move");
    check(*view);
    view->setShown(false);
    SheetView sheet(*window, queue, "sheet", {boxes("a.obj", 1), boxes("b.obj", 1)});
    check(sheet);
}

// By the window's clock a frame takes three twentieths of a second, and a tenth goes by before it.
TEST_F(SurfaceTest, ALargeModelIsReducedWhileItMovesOnTheScreenAlone)
{
    const auto large =
        std::make_shared<ModelItem>("a", std::make_shared<Mesh>(roof(250, false, 0.02f)));
    QThreadPool::globalInstance()->waitForDone(); // its tree is there
    view = std::make_unique<SingleView>(*window, queue, file("a.obj", ""), large);
    show(*view);
    QThreadPool::globalInstance()->waitForDone(); // and its levels
    hand("M");
    QObject::connect(view.get(), &View::framePainted, [&] { time += 0.15; });
    for (const bool reduces : {true, false, true}) {
        EXPECT_EQ(view->display().reduces, reduces);
        hand("300,200 down +40,10 move +40,10 move");
        settle(glw());
        EXPECT_EQ(large->isReduced(), reduces);
        const QString before = pose();
        const QImage moving = painted(), whole = picture(false);
        EXPECT_EQ(large->isReduced(), reduces) << "a picture is no frame";
        EXPECT_FALSE(reduces && view->isQuiet());
        const QImage rested = painted();
        EXPECT_FALSE(large->isReduced());
        EXPECT_EQ(pose(), before);
        EXPECT_EQ(moving != rested, reduces);
        EXPECT_EQ(picture(false), whole);
        hand("up Shift+W");
    }
}

} // namespace
} // namespace host
