// SPDX-License-Identifier: MIT
// A single file's window under a person's hands: overlays, lists, keys and the mark under the
// pointer.
#include <QApplication>
#include <QGLWidget>
#include <QLineEdit>
#include <QMenu>
#include <QRegularExpression>
#include <QTest>
#include <QTreeView>
#include <QWheelEvent>

#include "host/capture/picture.h"
#include "host/item/model_item.h"
#include "host/item/series_item.h"
#include "host/view/sheet/sheet_view.h"
#include "host/view/single_view.h"
#include "host/view/window/binding.h"
#include "host/view/window/menu_tree.h"
#include "sheet/support.h"
#include "tests/GL/table.h"

namespace host {
namespace {

class SurfaceTest : public ViewTest {
protected:
    std::unique_ptr<SingleView> view;

    /// A cube between two others of the folder, or a table, at rest and seen from the front.
    void open(bool plot = false)
    {
        boxes("a.obj", 1);
        const QString path = plot ? file("b.csv", weather()) : boxes("b.obj", 1);
        boxes("c.obj", 1);
        view = std::make_unique<SingleView>(*window, queue, path);
        show(*view);
        QApplication::setActiveWindow(window->widget()); // shortcuts are heard
        ASSERT_TRUE(QTest::qWaitFor([&] { return !list().filter("strip").isEmpty(); }, 20000));
        view->lookFrom(Steering::Side::Front);
        settle(glw());
    }
    void TearDown() override { view.reset(); }

    GLW *glw() const { return view->mainGLW(); }
    Item *item() const { return view->item(glw()); }
    QString pose() const
    {
        const GL::Camera &c = glw()->camera;
        QString words;
        for (double v : {double(c.rot.x), double(c.rot.y), double(c.setTarget.x), double(c.radius)})
            words += QString::number(v, 'f', 3) + ' ';
        return words;
    }
    bool isOnCube(const QPointF &at)
    {
        move(at);
        frame();
        return !item()->underPointer().isEmpty();
    }
    QImage painted()
    {
        QImage image;
        const auto heard = QObject::connect(view.get(), &View::framePainted,
                                            [&] { image = window->widget()->grabFrameBuffer(); });
        window->widget()->repaint();
        QObject::disconnect(heard);
        return image;
    }
    QStringList list() const
    {
        QStringList texts;
        for (const BindingRow &row : bindingRows(view->bindings(), view->contents()))
            texts << row.keys + ": " + row.text;
        return texts;
    }
};

// The triad fills the corner up to 104 pixels from the left and from the bottom.
const QPointF between(75, 325), arm(92, 342), onCube(350, 200), beside(560, 80);

TEST_F(SurfaceTest, OverlaysPassOnWhatTheyHaveNoUseFor)
{
    open();
    QString before = pose();
    move(between);
    QWheelEvent wheel(between, {}, {}, {0, 120}, Qt::NoButton, {}, Qt::NoScrollPhase, false);
    QCoreApplication::sendEvent(window->widget(), &wheel);
    settle(glw());
    EXPECT_NE(pose(), before) << "the wheel";
    before = pose();
    drag(between, between + QPointF(0, -30), Qt::LeftButton);
    settle(glw());
    EXPECT_NE(pose(), before) << "a drag between the arms";

    press(onCube, Qt::LeftButton);
    release(arm, Qt::LeftButton);
    settle(glw());
    before = pose();
    move(onCube);
    settle(glw());
    EXPECT_EQ(pose(), before) << "a drag that ended over an arm goes on";
}

TEST_F(SurfaceTest, WhatIsFittedKeepsClearOfOverlays)
{
    open();
    // The heading ends near 60 and the strip begins at 364; a twentieth is left free.
    EXPECT_TRUE(isOnCube({350, 330}));
    EXPECT_TRUE(isOnCube({350, 85}));
    EXPECT_FALSE(isOnCube({350, 362}));
    EXPECT_FALSE(isOnCube({350, 55}));
    view.reset();
    open(true);
    const SeriesPlot &plot = static_cast<SeriesItem *>(item())->plot();
    EXPECT_EQ(plot.options().insets.bottom(), 36);
    EXPECT_NEAR(plot.toLocal(glw(), {0, -1}).y(),
                PlotLayout(plot.table(), {600, 400}, plot.options()).area.bottom(), 1);
}

struct SizeCase {
    const char *name;
    QSize size;
    const char *overlays; // that are listed
};

const SizeCase sizeCases[] = {
    {"All", {600, 400}, "Look along it; Open that file"},
    {"WithoutTheStrip", {400, 300}, "Look along it"},
    {"Nothing", {60, 40}, ""},
};

TABLE(SurfaceOfSize, SurfaceTest, SizeCase, sizeCases);

TEST_P(SurfaceOfSize, LosesItsOverlaysOneByOne)
{
    open();
    window->frame()->resize(GetParam().size);
    settle(glw());
    QStringList listed;
    for (const QString &row : list())
        if (row.contains("arm of") || row.contains("strip"))
            listed << row.section(": ", 1);
    EXPECT_EQ(listed.join("; "), GetParam().overlays);
    if (!listed.isEmpty())
        return;
    const QImage image = painted(); // of one cube in the middle of a background in rows
    const QPoint middle(image.width() / 2, image.height() / 2);
    EXPECT_NE(image.pixel(middle), image.pixel(0, middle.y()));
    for (int y = 0; y < image.height(); ++y)
        for (int x : {3, 10, image.width() - 4})
            EXPECT_EQ(image.pixel(x, y), image.pixel(0, y)) << x << "," << y;
}

struct ListsCase {
    const char *name;
    bool plot;
    const char *listed;
    const char *missing;
};

const ListsCase listsCases[] = {
    {"Model", false,
     "left drag, arrows: Orbit|left click on an arm of the axes: Look along it|W: Shaded, edges|"
     "M: Mark what|+: Zoom in|Menu, Shift+F10: Menu",
     "plot|along x|legend"},
    {"Plot", true,
     "arrows: Move the plot|Shift+wheel: Zoom along x alone|Ctrl+wheel: Zoom along y|"
     "legend: Show or hide its column|F: Fit",
     "Orbit|Look|hidden lines|Lighting|Roll|arm of|Orthographic"},
};

TABLE(SurfaceLists, SurfaceTest, ListsCase, listsCases);

TEST_P(SurfaceLists, OfferWhatWorksInTheSameWords)
{
    open(GetParam().plot);
    const QString rows = list().join('\n');
    for (const QString &text : QString(GetParam().listed).split('|'))
        EXPECT_TRUE(rows.contains(text)) << text.toStdString() << "\n" << rows.toStdString();
    MenuTree tree;
    view->InitContextMenuTree(glw(), &tree);
    QMenu menu;
    tree.Build(&menu);
    QStringList entries;
    for (const QAction *entry : menu.findChildren<QAction *>())
        if (entry->text().contains('\t'))
            entries << entry->text();
    EXPECT_GT(entries.size(), 3);
    for (const QString &entry : entries)
        EXPECT_TRUE(!list()
                         .filter(QRegularExpression(
                             "(^|, )" + QRegularExpression::escape(entry.section('\t', 1)) +
                             "(,.*)?: " + entry.section('\t', 0, 0) + '$'))
                         .isEmpty())
            << entry.toStdString();
    for (const QString &text : QString(GetParam().missing).split('|'))
        EXPECT_FALSE((rows + entries.join('\n')).contains(text)) << text.toStdString();
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
    key(Qt::Key_PageDown);
    key(Qt::Key_Down);
    EXPECT_NE(painted(), top);
    EXPECT_EQ(pose() + chosen, before);
    key(Qt::Key_Home);
    EXPECT_EQ(painted(), top);
    view->showBindings(false);
    key(Qt::Key_Down);
    settle(glw());
    EXPECT_NE(pose(), before);
}

TEST_F(SurfaceTest, TheMenuOpensByItsKeysWhereverThePointerIs)
{
    open();
    move({-20, -20});
    int asked = 0;
    QObject::connect(view.get(), &View::menuOpening, [&] { ++asked; });
    for (const auto &[code, modifier] :
         {std::pair(Qt::Key_Menu, Qt::NoModifier), std::pair(Qt::Key_F10, Qt::ShiftModifier)}) {
        key(code, modifier);
        auto *menu = qobject_cast<QMenu *>(QApplication::activePopupWidget());
        ASSERT_TRUE(menu);
        EXPECT_EQ(menu->activeAction(), menu->actions().value(0));
        menu->close();
    }
    EXPECT_EQ(asked, 2);
}

TEST_F(SurfaceTest, WhatThePointerIsOnIsMarkedAtItsCornersAndNotInPictures)
{
    open();
    const auto picture = [&] {
        PictureRequest request;
        request.window = request.size = window->widget()->size();
        window->widget()->makeCurrent();
        request.objects = view->pictured(false).objects();
        return renderPicture(request).image;
    };
    const QRect cube(150, 70, 400, 280);
    move(beside);
    frame();
    const QImage plain = painted(), saved = picture();
    move(onCube);
    frame();
    const QImage marked = painted();
    EXPECT_EQ(marked.pixel(onCube.toPoint()), plain.pixel(onCube.toPoint())) << "not its colour";
    EXPECT_NE(marked.copy(cube), plain.copy(cube)) << "but its corners";
    EXPECT_EQ(picture(), saved);
    key(Qt::Key_M);
    EXPECT_EQ(painted(), plain);
}

TEST_F(SurfaceTest, ACleanPictureHasTheModelAlone)
{
    open();
    const auto picture = [&](bool overlays) {
        PictureRequest request;
        request.window = request.size = window->widget()->size();
        window->widget()->makeCurrent();
        request.objects = view->pictured(false, overlays).objects();
        return renderPicture(request).image;
    };
    const QImage full = picture(true), clean = picture(false);
    // Where the name, the axes and the scale bar stand, the backdrop has one colour in each row.
    const QRect places[] = {{8, 8, 60, 30}, {10, 290, 90, 90}, {500, 360, 90, 34}};
    for (const QRect &place : places) {
        EXPECT_NE(full.copy(place), clean.copy(place));
        for (int y = place.top(); y <= place.bottom(); ++y)
            for (int x = place.left(); x <= place.right(); ++x)
                ASSERT_EQ(clean.pixel(x, y), clean.pixel(0, y)) << x << ' ' << y;
    }
    const QPoint cube = onCube.toPoint();
    EXPECT_EQ(full.pixel(cube), clean.pixel(cube));
    EXPECT_EQ(picture(true), full) << "the wish is the picture's";
}

TEST_F(SurfaceTest, ThePartsListAndTheModelAgree)
{
    open();
    view.reset();
    view = std::make_unique<SingleView>(*window, queue, boxes("three.obj", 3));
    show(*view);
    auto *model = view->item(view->mainGLW())->model();
    ASSERT_TRUE(model);
    const int whole = widget->width();
    key(Qt::Key_P);
    frame();
    auto *tree = window->frame()->findChild<QTreeView *>();
    auto *search = window->frame()->findChild<QLineEdit *>();
    ASSERT_TRUE(tree && search);
    EXPECT_LT(widget->width(), whole - 100);
    using Parts = std::vector<bool>;
    const auto follow = [&] { frame(), QCoreApplication::processEvents(); };
    const auto rows = [&] { return tree->model()->rowCount(); };
    ASSERT_EQ(rows(), 3);

    tree->setCurrentIndex(tree->model()->index(1, 0));
    EXPECT_EQ(model->marks().selected(), (Parts{false, true, false}));
    model->select(2, true);
    follow();
    EXPECT_TRUE(tree->selectionModel()->isSelected(tree->model()->index(2, 0)));
    EXPECT_EQ(model->marks().selected(), (Parts{false, true, true})) << "nothing comes back";
    QTest::keyClick(tree, Qt::Key_H); // a key of the view
    EXPECT_EQ(model->marks().hidden(), (Parts{false, true, true}));
    follow();
    EXPECT_EQ(tree->model()->index(2, 0).data(Qt::CheckStateRole), int(Qt::Unchecked));
    tree->model()->setData(tree->model()->index(2, 0), Qt::Checked, Qt::CheckStateRole);
    EXPECT_EQ(model->marks().hidden(), (Parts{false, true, false}));

    key(Qt::Key_F, Qt::ControlModifier);
    EXPECT_TRUE(search->hasFocus());
    QTest::keyClicks(search, "x1");
    EXPECT_EQ(rows(), 1);
    EXPECT_EQ(tree->model()->index(0, 0).data().toString(), "box1");
    QTest::keyClick(search, Qt::Key_Escape);
    EXPECT_TRUE(widget->hasFocus());
    key(Qt::Key_P);
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
        key(Qt::Key_W); // to edges, which are sought first
        rest();
        rest(); // whatever was under way before
        frames = 0;
        const QImage plain = rest();
        EXPECT_EQ(frames, 1 + Refinement::frames);
        EXPECT_NE(last, plain);
        window->widget()->repaint();
        EXPECT_EQ(last, plain) << "another frame is plain";
        QObject::disconnect(heard);
    };
    open();
    move(beside);
    check(*view);
    view->setShown(false);
    SheetView sheet(*window, queue, "sheet", {boxes("a.obj", 1), boxes("b.obj", 1)});
    check(sheet);
}

TEST_F(SurfaceTest, TilesAreChosenAndOpenedByKeys)
{
    SheetView sheet(*window, queue, "sheet",
                    {boxes("a.obj", 1), boxes("b.obj", 1), boxes("c.obj", 1), boxes("d.obj", 1)});
    show(sheet);
    QApplication::setActiveWindow(window->widget());
    move({-20, -20});
    const auto selected = [&] {
        QList<int> ids;
        QMetaObject::invokeMethod(sheet.scene(), "GetSelected", Q_RETURN_ARG(QList<int>, ids));
        return ids;
    };
    // Two rows of two.
    const std::pair<Qt::Key, int> steps[] = {
        {Qt::Key_Down, 1}, {Qt::Key_Down, 3},  {Qt::Key_Right, 4}, {Qt::Key_Right, 4},
        {Qt::Key_Tab, 1},  {Qt::Key_Right, 2}, {Qt::Key_Left, 1},  {Qt::Key_Tab, 2}};
    for (const auto &[code, chosen] : steps) {
        key(code);
        EXPECT_EQ(selected(), QList<int>{chosen}) << int(code);
    }
    QString opened;
    QObject::connect(&sheet, &SheetView::openAsked, [&](const QString &path) { opened = path; });
    key(Qt::Key_Return);
    EXPECT_TRUE(opened.endsWith("b.obj"));
}

} // namespace
} // namespace host
