// SPDX-License-Identifier: MIT
// What stands over a view, line by line and word by word, and what its bars and buttons do.

#include "host/item/camera_geometry.h"
#include "host/ui/metrics.h"
#include "host/view/compare/divider.h"
#include "host/view/compare/legend.h"
#include "host/view/measure_paint.h"
#include "host/view/overlay/player.h"
#include "host/view/overlay/scale_bar.h"
#include "host/view/sheet/sheet_bar.h"
#include "host/view/sheet/tile_painter.h"
#include "host/view/window/panel.h"
#include "sheet/support.h"
#include "tests/host/shapes.h"

namespace host {
namespace {

class PaintedTest : public SingleViewTest {
protected:
    Display display;

    Underlay under()
    {
        return {glw(), [this] { return view->item(glw()); },
                [this]() -> const Display & { return display; }};
    }
    static QString pair(double x, double y)
    {
        return QString("%1,%2").arg(std::floor(x + 0.5)).arg(std::floor(y + 0.5));
    }
    static QString pair(const QPointF &p) { return pair(p.x(), p.y()); }
    /// Lines with their widths, fills with their sizes, and texts, each with its colour.
    std::string said(const PaintRecord &record) const
    {
        const auto called = [](const QColor &c) { return c.name(QColor::HexArgb).mid(1); };
        QStringList all;
        for (const auto &[line, pen] : record.lines)
            all << pair(line.p1()) + ' ' + pair(line.p2()) + ' ' + called(pen.color()) + ' ' +
                       QString::number(pen.widthF());
        for (std::size_t i = 0; i < record.fills.size(); ++i) {
            const auto &[box, colour] = record.fills[i];
            all << pair(box.topLeft()) + ' ' + pair(box.width(), box.height()) + ' ' +
                       called(colour) + record.rims[i];
        }
        for (const auto &[text, how] : record.texts)
            all << text + ' ' + called(how.color) + (how.font.bold() ? " bold" : "");
        return (all.join('\n') + (record.isRough ? " rough" : "")).toStdString();
    }
    PaintRecord painted(Overlay &overlay) const
    {
        return {QSize(600, 400), [&](QPainter *p) { overlay.PaintForeground(nullptr, p); }};
    }
};

// Seen from 30 degrees to the right, at 50 pixels for a unit; the axes are 34 pixels long.
TEST_F(PaintedTest, OverlaysStandInTheirCorners)
{
    open(boxes("c.obj", 1));
    GL::Camera &camera = glw()->camera;
    camera.rot = Vector(0, 30, 0);
    camera.radius = radiusShowing(camera, item()->scale() * 4);
    Triad triad(under(), *window);
    ScaleBar bar(under(), *window);
    Neighbours strip(under(), *window, "/c");
    const auto arms = [](QString x, QString y, QString z, QString letters) { // farthest first
        return QString("58,342 87,342 ff%1 2.4\n58,342 58,308 ff%2 2.4\n58,342 75,342 ff%3 2.4\n"
                       "35,336 12,12 6e%3 in ff%3 1.2\n78,333 18,18 ff%1\n49,299 18,18 "
                       "ff%2\n52,370 12,12 6e%2 in ff%2 1.2\n23,336 12,12 6e%1 in ff%1 1.2\n66,333 "
                       "18,18 ff%3\nX %4 bold\nY %4 bold\nZ %4 bold")
            .arg(x, y, z, letters)
            .toStdString();
    };
    EXPECT_EQ(said(painted(triad)), arms("c83028", "288430", "245ccc", "ffffffff"));
    EXPECT_LT((painted(triad).at("X", .5, .5) - QPointF(87.4, 342)).manhattanLength(), 2);
    EXPECT_EQ(painted(bar).at("2", 1, .5), QPointF(584, 365));
    EXPECT_EQ(said(painted(bar)), "484,382 584,382 ff1c222a 1.6\n484,378 484,386 ff1c222a 1.6\n"
                                  "584,378 584,386 ff1c222a 1.6\n2 ff1c222a");
    strip.setFiles({"/c"});
    EXPECT_EQ(painted(strip).all(), "") << "no other file";
    strip.setFiles({"/b", "/c"});
    EXPECT_EQ(said(painted(strip)), "150,364 300,28 cdffffff\nb ff1c222a\nc ffd6620a");
    EXPECT_NEAR(painted(strip).at("b", .5, .5).x(), 240, 1);
    strip.setFiles({"/a", "/b", "/c", "/d", "/e", "/f"});
    EXPECT_EQ(painted(strip).all(), "a|b|c|d|e");
    display.dark = true;
    EXPECT_EQ(said(painted(triad)), arms("ff6e64", "78d26e", "6ea5ff", "ff14181e"));
    // The scale bar leaves drags.
    EXPECT_NE((hand("540,380 move down +0,-30 move up"), camera.rot), Vector(0, 30, 0));
    const std::pair<Overlay *, QSize> rows[] = {
        {&triad, {260, 220}}, {&bar, {360, 240}}, {&strip, {560, 320}}, {nullptr, {200, 150}}};
    for (const auto &[overlay, least] : rows)
        for (const QSize &less : {QSize(0, 0), QSize(1, 0), QSize(0, 1)}) {
            widget->resize(least - less);
            const bool isThere = overlay ? overlay->isThere() : written(*view).texts.count("c.obj");
            EXPECT_EQ(isThere, less.isNull()) << least.width();
        }
}

// Of lines as high as the font wants, and as wide as 26 letters.
TEST_F(PaintedTest, TheLegendSaysWhatColoursMean)
{
    open(boxes("c.obj", 1));
    Legend legend(under(), *window);
    const QFontMetricsF metrics(widget->font());
    const double line = std::ceil(metrics.height() * 1.2), width = metrics.averageCharWidth() * 26;
    const double left = 588 - width, top = 22 + 3 * line, bottom = 362 - 3 * line;
    for (const bool isSigned : {true, false}) {
        const ColourScale scale{isSigned, 8};
        legend.setContent(Legend::Content{scale, 2, "Title", "from a", {"one", "two"}});
        const PaintRecord drawn = painted(legend);
        const double zero = isSigned ? (top + bottom) / 2 : bottom, unit = (zero - top) / 8;
        QStringList expected;
        const auto add = [&](double x, double y, double toX, double toY, const QString &pen) {
            expected << pair(x, y) + ' ' + pair(toX, toY) + ' ' + pen;
        };
        for (int i = 0; i <= 4; ++i) {
            const double y = bottom - i * (bottom - top) / 4;
            add(left + 28, y, left + 33, y, "ff1c222a 1");
        }
        add(left + 38, zero - 2 * unit, left + 38, std::min(bottom, zero + 2 * unit), "ffd6620a 3");
        add(left + 12, bottom + 2.2 * line, left + 12, bottom + 2.8 * line, "ffd6620a 3");
        expected << pair(left, 12) + ' ' + pair(width, 360) + " cdffffff"
                 << pair(left + 10, top) + ' ' + pair(18, bottom - top) + " ff000000"
                 << pair(left + 10, top) + ' ' + pair(18, bottom - top) + " ff626c78 1";
        const QString numbers = isSigned ? "+4 %1\n+8  outside %1\n-4 %1\n-8  inside %1\n0 %1\n"
                                         : "0 %1\n2 %1\n4 %1\n6 %1\n8 %1\n";
        EXPECT_EQ(said(drawn),
                  expected.join('\n').toStdString() + '\n' +
                      (numbers.arg("ff1c222a") + "Title ff1c222a bold\nfrom a ff626c78\n"
                                                 "one ff1c222a\ntwo ff1c222a")
                          .toStdString());
        for (const auto &[text, x, y] : {std::tuple("Title", 10., 22 + line / 2),
                                         {"two", 19., bottom + 2.5 * line},
                                         {isSigned ? "0" : "4", 43., (top + bottom) / 2}})
            EXPECT_LT((drawn.at(text, 0, .5) - QPointF(left + x, y)).manhattanLength(), 1.6);
    }
}

TEST_F(PaintedTest, LinesAndBarsThatAreDragged)
{
    open(boxes("c.obj", 1));
    Divider divider(under(), *window);
    EXPECT_FALSE(divider.isThere());
    divider.setOn(true);
    divider.setShare(0.2501);
    EXPECT_EQ(said(painted(divider)),
              "150,0 150,400 96ffffff 3\n150,0 150,400 ff1c222a 1\n137,187 "
              "26,26 ffd6620a in 96ffffff 1.5\n142,196 4,9 ffd6620a in ffffffff 1.8\n154,196 4,9 "
              "ffd6620a in ffffffff 1.8");
    SheetScroll scroll;
    SheetBar bar(under(), *window, scroll);
    EXPECT_FALSE(bar.isThere());
    scroll.setLargest(600);
    scroll.jumpTo(300);
    EXPECT_EQ(said(painted(bar)), "589,123 8,154 99626c78");
    EXPECT_EQ((hand("590,200 move down"), said(painted(bar))), "589,123 8,154 e6d6620a");
    hand("590,200 move up"), scroll.setLargest(60000);
    EXPECT_EQ(said(painted(bar)), "589,5 8,26 99626c78");
}

// A cell of 200 x 150 pixels, with a name of 22 over its drawing.
TEST_F(PaintedTest, TilesAreNamedAndMarked)
{
    using State = SheetEntry::State;
    const TilePainter::Place place{{100, 50, 200, 150}, {100, 72, 200, 128}};
    SheetEntry entry;
    const auto tile = [&](const TilePainter::Marks &marks, const TilePainter::Place &at) {
        TilePainter tiles;
        return said({{600, 400},
                     [&](QPainter *p) { tiles.paint(p, 1, entry, at, marks, display.theme()); }});
    };
    entry.name = "a.obj", entry.fraction = .25, entry.reason = "why it is so";
    std::string all;
    for (const State state :
         {State::Waiting, State::Reading, State::Shown, State::Failed, State::Released}) {
        entry.state = state;
        const int i = int(state);
        all += tile({i % 2 == 1, i > 0, i == 4}, place) + '\n';
    }
    EXPECT_EQ(
        all,
        "108,136 184,3 40626c78\n108,136 46,3 ffd6620a\na.obj ff1c222a rough\n108,136 184,3 "
        "40626c78\n108,136 46,3 ffd6620a\n102,52 197,147 ffd6620a 3\na.obj ff1c222a rough\n101,51 "
        "199,149 ff626c78 1\na.obj ff1c222a rough\n102,52 197,147 ffd6620a 3\na.obj ffb02020\nwhy "
        "it is so ff626c78 rough\n276,58 9,6 ffd6620a 1.5\n282,58 9,6 ffd6620a 1.5\n108,136 184,3 "
        "40626c78\n108,136 46,3 ffd6620a\n101,51 199,149 ff626c78 1\na.obj ff1c222a rough\n");
    entry.state = State::Failed;
    for (const int width : {60, 23}) { // too narrow for words, and for all
        const QRectF small(100, 50, width, 40);
        EXPECT_EQ(tile({}, {small, small}), width > 23 ? "! ffb02020" : "");
    }
    const auto whole = [&](const QString &name, const QRectF &cell) {
        return PaintRecord({600, 400}, [&](QPainter *p) {
            TilePainter::paintWholeName(p, name, cell, false, {0, 0, 600, 400}, display.theme());
        });
    };
    EXPECT_TRUE(whole("a.obj", place.cell).texts.empty());
    const QString name(30, 'm');
    for (const QRectF &cell : {QRectF(-30, -40, 200, 90), {500, 9, 99, 90}}) { // kept in the window
        const PaintRecord drawn = whole(name, cell);
        const QRectF text = drawn[name].box, box = text.adjusted(-8, 0, 8, 0);
        EXPECT_EQ(pair(text.left(), text.center().y()),
                  cell.left() < 0 ? "8,11" : pair(592 - text.width(), 20));
        EXPECT_NEAR(drawn.fills.at(1).first.width(), box.width(), 1);
        EXPECT_TRUE(drawn.fills.at(0).second == display.theme().top &&
                    drawn[name].color == display.theme().text);
    }
}

TEST_F(PaintedTest, AnAnimationIsPlayedByKeyAndBar)
{
    Mesh mesh = box({0, 0, 0}, {2, 2, 2}).mesh;
    mesh.findBounds();
    const auto moving = std::make_shared<ModelItem>("a", flattening(mesh)); // within a second
    view = std::make_unique<SingleView>(*window, queue, file("a.obj", ""), moving);
    show(*view);
    Playback &playback = *moving->playback();
    Player player(under(), *window, [&] { return &playback; });
    const auto bar = [](bool plays, int width, const char *at) {
        const char *sign =
            plays ? "159,337 3,9 ff1c222a\n165,337 3,9 ff1c222a" : "159,337 9,9 ff1c222a";
        return QString(
                   "150,328 300,28 cdffffff\n%1\n178,341 162,3 ff626c78\n178,341 %2,3 ffd6620a\n"
                   "%3,336 12,12 ffd6620a\n%4 of 1.00 s ff1c222a")
            .arg(sign, QString::number(width), QString::number(172 + width), at)
            .toStdString();
    };
    hand("Space");
    const double before = playback.time();
    frame(), frame();
    EXPECT_NEAR(playback.time(), before + .2, 1e-9);
    EXPECT_EQ(ViewTest::texts(view->pictured(false)).find("1.00 s"), std::string::npos);
    walk(*view, glw(),
         "Space > 0 0; =Animation|Play the animation, or stop it > 1 0; =Animation|None: as the "
         "file has it > 0 -1; =Animation|flat > 0 0; Space > 1 0; Space > 0 0",
         [&] { return QString("%1 %2").arg(playback.isPlaying()).arg(playback.clip()); });
    hand("164,342 move down +54,0 move up"); // from the button
    playback.setTime(0);
    EXPECT_EQ(said(painted(player)), bar(true, 0, "0.00"));
    EXPECT_EQ((hand("218,342 move down"), said(painted(player))), bar(false, 41, "0.25"));
    hand("299,9 move up 320,342 move"); // it is held, wherever the pointer is
    EXPECT_EQ(said(painted(player)), bar(false, 122, "0.75"));
    playback.setPlaying(true), playback.advance(.5); // it begins anew
    EXPECT_NEAR(playback.time(), .25, .01);
}

TEST_F(PaintedTest, TheWindowSaysWhatThereIs)
{
    const auto texts = [&] { return ViewTest::texts(*view); };
    widget->window()->show();
    view = std::make_unique<SingleView>(*window, queue, "");
    EXPECT_EQ(texts(), "Drop a model here or press Ctrl+O.|F1 lists the controls.");
    view.reset();
    view = std::make_unique<SingleView>(*window, queue, file("w.ply", "these are words\n"));
    EXPECT_TRUE(texts() == "Reading w.ply" && view->isQuiet());
    EXPECT_EQ(written(*view).fills.at(2).first.width(), 8) << "a bar that begins";
    view->readAgain(folder.path());
    emit queue.failed(9, "", 0), emit queue.listed(9, {}); // of others
    emit queue.progressed(2, .5, "half of it");
    EXPECT_TRUE(texts() == "Reading w.ply|half of it" && !view->isQuiet()) << texts();
    EXPECT_TRUE(asks(*view, [&] { emit queue.failed(2, "", 0); }));
    EXPECT_NE(texts().find("Drop another file here"), std::string::npos) << texts();
    view = std::make_unique<SingleView>(*window, queue, file("w.ply", ""));
    view->readAgain({});
    EXPECT_EQ(queue.total(), 1);
    view.reset();
    EXPECT_TRUE(queue.isIdle());
    open(boxes("b.obj", 2));
    const std::string about = item()->details().toStdString() + "|b.obj";
    EXPECT_EQ((hand("40,200 move"), texts()), about);
    EXPECT_EQ((hand("@1,1,2 move"), texts()), about + "|box0  ·  DefaultMaterial");
    hand("@1,1,2 click ctrl @4,1,2 click none 40,200 move");
    EXPECT_EQ(texts(), "2 of 2 parts selected|" + about);
    const std::string bare = said(written(view->pictured(false)));
    hand("D @0,2,2 click");
    EXPECT_EQ(said(written(view->pictured(false))), bare) << "none of what is about to be measured";
    EXPECT_EQ((hand("@2,2,2 click"), texts().substr(0, 2)), "2|") << "a label";
    hand("shift right 100,120 move down 60,150 move");
    const std::string area = said(written(*view));
    EXPECT_NE(area.find("\n60,120 40,30 26d6620a in ffd6620a 1\n"), std::string::npos);
    open(boxes("b.obj", 1));
    hand("D 1,1"), QThreadPool::globalInstance()->waitForDone(), frame(); // edges are found
    hand("@0,0,2 click @2,0,2 click click @2,2,2 click click @0,2,2 click click @0,0,2 click");
    const double top = noteHeight(widget->font(), 2) + 8, below = noteHeight(widget->font(), 1);
    // A corner in the middle, so near that two sides leave the window; between pixels.
    for (const float k : {0, 2}) {
        const QVector3D by = QVector3D(k, k + .0006f, 2) - item()->centre();
        const QVector3D to = by * item()->scale();
        glw()->camera.setTarget = Vector(to.x(), to.y(), to.z());
        glw()->camera.radius = radiusShowing(glw()->camera, item()->scale() / 2);
        const std::string lines = said(written(*view));
        const QPointF p = at({k, k, 2}), x((p.x() + (k > 0 ? 8 : 592)) / 2, p.y());
        for (const QPointF &from : {x, QPointF(p.x(), (p.y() + (k > 0 ? 346 - below : top)) / 2)})
            EXPECT_NE(lines.find((pair(from) + ' ' + pair(from + QPointF(12, -12))).toStdString()),
                      std::string::npos)
                << k;
    }
}

TEST_F(PaintedTest, MeasuresAndPlanesAreDrawnWhereTheyAre)
{
    open(boxes("b.obj", 1));
    const Theme &theme = display.theme();
    const Vec a(0, 2, 2), b(2, 2, 2);
    const QPointF from = at({0, 2, 2}), to = at({2, 2, 2}), middle = (from + to) / 2;
    const auto painted = [&](const std::function<void(MeasurePaint &)> &paint) {
        return PaintRecord({600, 400}, [&](QPainter *p) {
            p->save();
            MeasurePaint measures(p, *item(), glw(), theme);
            paint(measures);
            p->restore();
        });
    };
    const QString ends = pair(from) + ' ' + pair(to);
    const QString line = QString("%1 e1ffffff 4\n%1 ffd6620a 1.8\n%2 8,8 ffd6620a in e1ffffff "
                                 "1.5\n%3 8,8 ffd6620a in e1ffffff 1.5")
                             .arg(ends, pair(from - QPointF(4, 4)), pair(to - QPointF(4, 4)));
    const PaintRecord step = painted([&](MeasurePaint &p) { p.pending({a, b}); });
    EXPECT_EQ(said(step), line.toStdString());
    const QPointF away = from - QPointF(300, 200); // towards who looks, as far as 99 pixels outside
    const double far = std::min(-399 / away.x(), -299 / away.y());
    const Vec behind = a + Vec(0, 0, 900);
    for (const std::vector<Vec> &ends : {std::vector<Vec>{a, behind}, {behind, a}}) {
        const QLineF all = painted([&](MeasurePaint &p) { p.pending(ends); }).lines.at(0).first;
        EXPECT_EQ(pair(all.p1() + all.p2()), pair(from + QPointF(300, 200) + away * far));
    }
    const QString dot = pair(from - QPointF(4, 4)) + " 8,8 ffd6620a in e1ffffff 1.5\n";
    for (const Snap::Kind kind : {Snap::Kind::Vertex, Snap::Kind::Edge, Snap::Kind::Face}) {
        const bool edge = kind == Snap::Kind::Edge;
        const QPointF by = edge ? QPointF(7.8, 7.8) : QPointF(6, 6);
        const QString box = pair(from - by) + (edge ? " 16,14 " : " 12,12 ");
        EXPECT_EQ(said(painted([&](MeasurePaint &p) {
                      p.pending({a}), p.snap({kind, 0, a});
                  })),
                  (dot + box + "e1ffffff 4.5\n" + box + "ffd6620a 2").toStdString());
    }
    const PaintRecord all = painted([&](MeasurePaint &p) {
        const Measurement away = Measurement::point({900, 0, 0}, "");
        p.measurements({Measurement::distance(a, b, "mm"), away}, {10, 10, 580, 380});
    });
    EXPECT_TRUE(all.fills.size() == 4 && all["2 mm"].font.bold()) << "the point is out of sight";
    const QRectF label = all.fills.at(3).first;
    EXPECT_EQ(pair(label.bottomLeft()), pair(middle + QPointF(12, -12)));
    EXPECT_NEAR(all["2 mm"].box.left(), label.left() + 6, .1);
    const QLineF leader = all.lines.at(2).first;
    EXPECT_EQ(pair(leader.p1()) + pair(leader.p2()), pair(middle) + pair(label.bottomLeft()));

    // From the front a plane across x is a line, with its arrow along x.
    SectionHandles handles(under(), *window);
    item()->setSection({{CutPlane{{1, 0, 0}, 0.5}}});
    const QPointF knob = *place("@c");
    const QPointF tip = knob + QPointF(34, 0);
    const QString expected =
        QString("%1 %2 ffd6620a 2.4\n%2 %3 ffd6620a 2.4\n%2 %4 ffd6620a "
                "2.4\n%1 4,300 82d6620a 1.2\n%5 14,14 ffd6620a in ffffffff 1.6")
            .arg(pair(knob), pair(tip), pair(tip + QPointF(-6.93, -4)),
                 pair(tip + QPointF(-6.93, 4)), pair(knob - QPointF(7, 7)));
    EXPECT_EQ(said(PaintedTest::painted(handles)), expected.toStdString());
    hand(QString("%1,%2 move down").arg(knob.x()).arg(knob.y()));
    display.dark = true;
    const PaintRecord held = PaintedTest::painted(handles);
    EXPECT_TRUE(held.rims.at(1) == " in ff14181e 1.6" && held["x = 0.5"].font == Metrics::font());
    EXPECT_NEAR(held["x = 0.5"].box.left(), knob.x() + 36, 1); // a note beside the pointer
    EXPECT_EQ(held.rims.at(0) + pair(held.fills.at(1).first.width(), 0), " 217,0") << "stronger";
    EXPECT_NEAR(held.fills.at(2).first.top(), knob.y() + 26, 1);
    item()->setSection({{CutPlane{{.6f, .8f, 0}, 1.5}}}); // while it is held
    EXPECT_EQ(PaintedTest::painted(handles).all(), "1.3 deep");
    glw()->camera.radius = .01f; // corners lie behind the eye
    hand("9,9 move up 300,200 move");
    EXPECT_EQ(said(PaintedTest::painted(handles)), "");
}

} // namespace
} // namespace host
