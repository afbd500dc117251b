// SPDX-License-Identifier: MIT
// A single file's window under a person's hands: overlays, lists, keys and the mark under the
// pointer.
#include <QApplication>
#include <QHeaderView>
#include <QLabel>
#include <QLineEdit>
#include <QTreeView>

#include "host/ui/metrics.h"
#include "host/view/side/parts_panel.h"
#include "host/view/window/binding.h"
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
            texts << row.keys;
        return texts;
    }
};

TEST_F(SurfaceTest, ListAndMenuOfferWhatWorks)
{
    const std::pair<const char *, const char *> rows[] = {
        {"left drag, arrows|middle drag, Shift+left drag, Shift+arrows|Ctrl+left drag|double "
         "click|wheel|Shift+right drag|Shift+Alt+right drag|right click, Menu, "
         "Shift+F10|R|F|Home|1|2|3|4|5|6|O|+|-|U|C|Shift+C|X|Ctrl+wheel, Ctrl+Up, "
         "Ctrl+Down|W|G|Shift+W|M|B|D|Shift+D|PgDown|PgUp|H|I|A|P|Ctrl+F|left click on an arm of "
         "the axes|left click on a name of the strip|Esc|left drag on a plane's knob or edge",
         "List of the parts\tP||Fit to the window\tF|Back to the first view\tHome|Look from{Look "
         "from the front\t1|Look from the back\t2|Look from the left\t3|Look from the "
         "right\t4|Look from the top\t5|Look from the bottom\t6}|Orthographic\tO|Axis that points "
         "up{X|*Y|Z|Next axis up\tU}||*Lighting\tG|Draw surfaces{*Shaded|Shaded with edges|Hidden "
         "lines removed|Wireframe|Shaded, edges, hidden lines, wireframe\tW}|*Less detail while it "
         "moves\tShift+W|*Mark what the pointer is on\tM|Dark background\tB||Section{*Cut the "
         "model by a plane, or show all of it\tC||Plane across X|Plane across Y|Plane across Z|Cut "
         "through the face under the pointer\tShift+C||Cut away the other side\tX|Remove this "
         "plane|Remove all planes}|Measure{*Distance|Point|Angle of faces|Angle of "
         "points|Radius|Measure area and volume\tShift+D||Measure; the next kind of "
         "measure\tD|Stop measuring}|"},
        {"left drag, middle drag, arrows|wheel|Shift+wheel|Ctrl+wheel|Shift+right drag|right "
         "click, Menu, Shift+F10|F|Home|+|-|left click on a name of the "
         "legend|M|B|PgDown|PgUp|left click on a name of the strip",
         "Fit to the window\tF|Back to the first view\tHome||*Mark what the pointer is on\tM|Dark "
         "background\tB|"}};
    for (const bool plot : {false, true}) {
        open(plot);
        hand(plot ? "9,9 move C X Shift+C D Shift+D H I A U Space" : "C D"); // no use on a plot
        QStringList chosen; // by cells of 60 pixels at the lower edge, this file in the third
        QObject::connect(view.get(), &SingleView::fileChosen,
                         [&](const QString &path) { chosen << QFileInfo(path).fileName(); });
        EXPECT_EQ(list().join('|').toStdString(), rows[plot].first);
        EXPECT_EQ(menu(*view, glw()), rows[plot].second);
        EXPECT_TRUE(!plot || item<SeriesItem>()->plot().options().insets.bottom() == 36);
        hand(plot ? "P Ctrl+F" : "P P");
        hand("180,386 click 300,386 click 240,386 click 360,386 click 300,100 move PgUp PgDown");
        EXPECT_EQ(chosen.join(' ').remove(".obj"), plot ? "a b a b" : "a c a c");
        EXPECT_FALSE(window->frame()->isOpen());
    }
}

TEST_F(SurfaceTest, KeysAndEntriesDoWhatTheySayAndAreDrawn)
{
    SingleViewTest::open(boxes("two.obj", 2));
    const MeasureTool &tool = *view->measureTool();
    const auto state = [&] {
        settle(glw());
        EXPECT_TRUE(until([&] { return !tool.isBusy(); }));
        const Display &d = view->display();
        const bool side = window->frame()->isOpen(), flat = view->isOrthographic();
        QString all = QString::number(int(d.mode));
        for (const bool on : {d.lighting, d.reduces, d.hover, d.dark, side, flat})
            all += on ? "0GRMBPO"[all.size()] : '.';
        all += QString("|%1 up|").arg("XYZ"[item()->axes()->up()]) + pose().trimmed() + '|' +
               marks().c_str() + '|' + tool.hint().section("  ·", 0, 0);
        all += item()->section()->on ? "|" : "|off ";
        for (const CutPlane &p : item()->section()->planes)
            all += QString("%1%2 ").arg("xyz"[p.axis()]).arg(p.offset);
        for (const Measurement &m : tool.measurements())
            all += '|' + m.text().simplified();
        return all;
    };
    EXPECT_EQ(menu(*view, glw()).find("Remove"), std::string::npos) << "there is nothing";
    // The triad fills the corner up to 104 pixels from the left and from the bottom; 75,325 is
    // between its arms, 92,342 is on one.
    walk(*view, glw(),
         "G > 0.RM...; =Lighting > 0GRM...; W > 1GRM...; =Draw surfaces|Wireframe > 3GRM...; =Draw "
         "surfaces|Shaded, edges, hidden lines, wireframe > 0GRM...; Shift+W > 0G.M...; =Less "
         "detail while it moves > 0GRM...; M > 0GR....; =Mark what the pointer is on > 0GRM...; B "
         "> 0GRMB..; =Dark background > 0GRM...; O > 0GRM..O|0.000 0.000 -0.101 0.311; "
         "=Orthographic > 0GRM...|0.000 0.000 -0.101 1.411; U > Z up; =Axis that points up|X > X "
         "up|0.000 0.000 -0.173 2.289; =Axis that points up|Next axis up > Y up|0.000 0.000 -0.101 "
         "1.411; =Look from|Look from the back > 0.000 180.000 0.101 1.411; =Look from|Look from "
         "the left > 0.000 90.000 0.000 1.281; =Look from|Look from the right > 0.000 -90.000 "
         "-0.000 1.281; =Look from|Look from the top > 90.000 0.000 -0.101 1.411; =Look from|Look "
         "from the bottom > -90.000 0.000 -0.101 1.411; Left > -90.000 -15.000 -0.101 1.411; + > "
         "-90.000 -15.000 -0.101 1.129; =Back to the first view > 22.000 -32.000 -0.069 1.493; "
         "=Fit to the window > ; =Section|Plane across Y > y1 ; =Section|Plane across X > y1 x2.5 "
         "; Ctrl+Up > y1 x2.49 ; X > y1 x-2.49 ; =Section|Cut away the other side > y1 x2.49 ; "
         "=Section|Remove this plane > y1 ; C > off y1 ; =Section|Cut the model by a plane, or "
         "show all of it > y1 ; =Section|Remove all planes > -y1 ; @1,1,2 click > s.; =Hide what "
         "is selected or under the pointer > h.; =Show all parts > ..; @4,1,2 click > .s; =Show "
         "only that > hs; A > .s; shift right 20,20 move down +9,9 move > ; ~shift right 29,29 "
         "move up > ..; @1,1,2 click Shift+D > s.|Area and volume box0 area 24 volume 8; ctrl "
         "@4,1,2 click none Shift+D > ss|Area and volume 2 of 2 parts area 48 volume 16; H "
         "Shift+D > hh|Area and volume all that is shown area 0 no volume: it is not closed; A > "
         "..; =List "
         "of the parts > 0GRM.P.|22.000 -32.000 0.037 2.060; ~P > 0GRM...|22.000 -32.000 -0.069 "
         "1.493; =Measure|Angle of points > Angle of points: click the first point; D > Radius: "
         "click a round edge or face; D > Distance: click the first point; @0,2,2 click > "
         "Distance: click the second point; @2,2,2 click > Distance: click the first "
         "point|Distance 2 Δx 2 Δy 0 Δz 0; =Measure|Measure area and volume > Area and volume "
         "whole model area 48 volume 16; =Measure|Remove|Distance: 2  Δx 2   Δy 0   Δz 0 > "
         "-Distance 2 Δx 2 Δy 0 Δz 0; =Measure|Remove the last measure > -Area and volume whole "
         "model area 48 volume 16; =Measure|Remove|All of them > -Area and volume box0 area 24 "
         "volume 8; =Measure|Stop measuring > -Distance: click the first point; ~75,325 wheel > "
         "22.000 -32.000 -0.147 1.194; ~75,325 move down +0,-30 move up > 0.000 -180.000 -0.147 "
         "1.194; ~350,200 down 92,342 up > ; ~103,342 click > ; ~ctrl 58,308 click > ; ~102,342 "
         "click > 0.000 -270.000 -0.147 1.194; ~350,200 move > ; ~ctrl 300,200 wheel > 0.000 "
         "-270.000 -0.204 0.955; =Section|Plane across Z > z1 ; ~ctrl 300,200 wheel wheel back > "
         "z0.996 ; Ctrl+Down > z1 ",
         state);
    EXPECT_EQ(texts(view->pictured(false, false)), "");
    EXPECT_EQ(texts(view->pictured(false)), "1|24 triangles  ·  5 × 2 × 2  ·  Y up|X|Y|Z|two.obj");
    const QImage bare = picture();
    hand("350,200 move");
    EXPECT_EQ(picture(), bare) << "where the pointer is, is no part of a picture";
    hand("Menu");
    QWidget *menu = QApplication::activePopupWidget();
    EXPECT_TRUE(menu && menu->actions().size() > 5 && menu->close());
    EXPECT_FALSE((hand("9,200 move"), asks(*view, "12,200 move"))) << "nothing changes";
}

TEST_F(SurfaceTest, PointsAreDrawnWiderAndThinner)
{
    SingleViewTest::open(file("a.xyz", "0 0 0\n1 0 0\n0 1 0\n1 1 1\n"));
    const QString more = QString("Ctrl++ ").repeated(9), less = QString("Ctrl+- ").repeated(15);
    walk(*view, glw(),
         "Ctrl++ > 1.41; Ctrl+= > 2; =Wider points > 2.83; Ctrl+- > 2; =Thinner points > 1.41; " +
             more + "9,9 > 16; " + less + "9,9 > 0.125",
         [&] { return QString::number(view->display().pointScale, 'g', 3); });
}

TEST_F(SurfaceTest, TheListScrollsAndItsKeysAreItsOwn)
{
    open();
    window->frame()->resize(400, 300);
    settle(glw());
    view->showBindings(true);
    const QImage top = painted();
    const QString before = pose();
    walk(*view, glw(),
         "Down > 2; Down > 3; Up > 2; PgDown > 10; PgUp > 2; back > 5; wheel > 2; End > 32; Home > "
         "1",
         [&] { return QString(texts(*view).c_str()).section(" to ", 0, 0).section('|', -1); });
    EXPECT_TRUE(painted() == top && pose() == before);
}

TEST_F(SurfaceTest, ThePartsListAndTheModelAgree)
{
    SingleViewTest::open(boxes("three.obj", 3));
    hand("Ctrl+F"), frame();
    auto *tree = window->frame()->findChild<QTreeView *>();
    auto *search = window->frame()->findChild<QLineEdit *>();
    EXPECT_EQ(widget->width(), 326) << "270 of it, and the rim";
    EXPECT_TRUE(search->placeholderText() == "Find a part" && search->isClearButtonEnabled());
    EXPECT_TRUE(search->accessibleName() == "Find a part" && tree->accessibleName() == "Parts");
    EXPECT_TRUE(tree->header()->count() == 2 && !tree->header()->sectionsMovable());
    EXPECT_EQ(tree->columnWidth(1), tree->fontMetrics().horizontalAdvance("Count") + 18);
    EXPECT_EQ(tree->pos(), search->geometry().bottomLeft() + QPoint(0, 7));
    EXPECT_TRUE(search->hasFocus() && search->x() == 6 && tree->width() + 12 == 270);
    EXPECT_TRUE(tree->indentation() == 12 && tree->selectionMode() == QTreeView::ExtendedSelection);
    EXPECT_TRUE(!tree->expandsOnDoubleClick() && tree->font() == Metrics::font());
    const auto row = [&](int i) { return tree->model()->index(i, 0); };
    const auto follow = [&] { frame(), QCoreApplication::processEvents(); };
    ASSERT_EQ(tree->model()->rowCount(), 3);

    hand("@1,1,2 move");
    EXPECT_EQ(item()->hoveredPart(), 0);
    tree->model()->setData(row(0), Qt::Unchecked, Qt::CheckStateRole);
    EXPECT_EQ(item()->hoveredPart(), -1) << "at once";
    tree->model()->setData(row(0), Qt::Checked, Qt::CheckStateRole);
    EXPECT_EQ((frame(), item()->hoveredPart()), 0) << "it is there again, though the pointer rests";
    EXPECT_EQ((tree->setCurrentIndex(row(1)), marks()), ".s.");
    const Theme &theme = view->display().theme();
    using P = QPalette;
    const auto is = [&](P::ColorRole role) { return tree->palette().color(role); };
    for (const auto role : {P::Text, P::WindowText, P::ButtonText, P::HighlightedText})
        EXPECT_EQ(is(role), theme.text) << role;
    EXPECT_TRUE(is(P::Window) == theme.bottom && is(P::Base) == theme.top &&
                is(P::Button) == theme.bottom && is(P::PlaceholderText) == theme.faint &&
                is(P::Highlight).name(QColor::HexArgb) == "#4dd6620a");
    EXPECT_EQ(window->frame()->palette().color(P::Window), theme.bottom);
    const QString before = pose();
    QTest::keyClick(tree, Qt::Key_Return), settle(glw());
    EXPECT_NE(pose(), before) << "what is selected is fitted";
    item()->select(2, true);
    follow();
    EXPECT_TRUE(tree->selectionModel()->isSelected(row(2)) && marks() == ".ss");
    EXPECT_TRUE(window->frame()->findChild<QLabel *>()->text().endsWith("3 parts  ·  2 selected"));
    tree->setFocus(), QTest::keyClick(tree, Qt::Key_H); // a key of the view
    EXPECT_EQ(marks(), ".hh");
    EXPECT_EQ((follow(), row(2).data(Qt::CheckStateRole)), int(Qt::Unchecked));
    EXPECT_EQ((tree->model()->setData(row(2), Qt::Checked, Qt::CheckStateRole), marks()), ".h.");

    search->setText("x"), QTest::keyClick(tree, Qt::Key_F, Qt::ControlModifier);
    EXPECT_TRUE(search->hasFocus() && search->selectedText() == "x");
    QTest::keyClicks(search, "x1");
    EXPECT_TRUE(tree->model()->rowCount() == 1 && row(0).data().toString() == "box1");
    EXPECT_TRUE((QTest::keyClick(search, Qt::Key_Down), tree->hasFocus()));
    EXPECT_TRUE((QTest::keyClick(tree, Qt::Key_Escape), widget->hasFocus()));
    QTest::keyClicks(search, "z");
    EXPECT_EQ(window->frame()->findChild<QLabel *>()->text(), "No part has this name.");
    EXPECT_TRUE((QTest::keyClick(search, Qt::Key_Escape), widget->hasFocus()));
    QContextMenuEvent asks(QContextMenuEvent::Mouse, {9, 9}, tree->viewport()->mapToGlobal({9, 9}));
    QCoreApplication::sendEvent(tree->viewport(), &asks);
    const QPointer<QMenu> popup = qobject_cast<QMenu *>(QApplication::activePopupWidget());
    ASSERT_TRUE(popup);
    EXPECT_EQ(described(*popup).toStdString(), "Show all parts\tA|Fit to the window\tF");
    popup->close();
    hand("P"), frame();
    EXPECT_EQ(widget->width(), 600);
    PartsPanel panel(widget, nullptr);
    const auto *folded = panel.findChild<QTreeView *>();
    Mesh mesh;
    mesh.nodes = {{"car", -1}, {"body", 0}};
    mesh.parts.assign(1999, MeshPart()), mesh.parts[0].node = mesh.parts[1].node = 1;
    panel.setMesh(std::make_shared<Mesh>(mesh)); // of 2001 rows
    const QModelIndex car = folded->model()->index(0, 0), body = folded->model()->index(0, 0, car);
    EXPECT_TRUE(folded->isExpanded(car) && !folded->isExpanded(body));
}

TEST_F(SurfaceTest, AtRestEdgesAreSmoothedAndThenNothingIsDrawn)
{
    open();
    window->frame()->resize(300, 200);
    hand("2,2 move W"); // to edges, which are sought first
    int frames = 0;
    QImage last;
    QObject::connect(view.get(), &View::framePainted,
                     [&] { ++frames, last = widget->grabFrameBuffer(); });
    for (int i = 0; i < 3; ++i) { // the last time without what was under way before
        frames = 0;
        const QImage plain = painted();
        EXPECT_TRUE(until([&] { return view->isQuiet(); }));
        const bool smoothed = frames == 1 + Refinement::frames && last != plain;
        EXPECT_TRUE(i < 2 || (smoothed && painted() == plain)) << "another frame is plain";
    }
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
        hand("300,200 down +40,10 move +40,10 move"), settle(glw());
        EXPECT_EQ(large->isReduced(), reduces);
        const QString before = pose();
        const QImage moving = painted(), whole = picture(false);
        EXPECT_EQ(large->isReduced(), reduces) << "a picture is no frame";
        EXPECT_FALSE(reduces && view->isQuiet());
        const QImage rested = painted();
        EXPECT_TRUE(!large->isReduced() && pose() == before && picture(false) == whole);
        EXPECT_EQ(moving != rested, reduces);
        hand("up Shift+W");
    }
    const quint64 held = large->byteSize();
    EXPECT_LT((view.reset(), large->byteSize()), held) << "the buffers go with the view";
}

} // namespace
} // namespace host
