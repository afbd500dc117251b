// SPDX-License-Identifier: MIT
// What stands over a view, line by line and word by word, and what its bars and buttons do.

#include "host/item/camera_geometry.h"
#include "host/view/measure_paint.h"
#include "host/view/overlay/player.h"
#include "host/view/overlay/scale_bar.h"
#include "sheet/support.h"
#include "tests/host/paint_record.h"
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
        for (const auto &[box, colour] : record.fills)
            all << pair(box.topLeft()) + ' ' + pair(box.width(), box.height()) + ' ' +
                       called(colour);
        for (const auto &[text, how] : record.texts)
            all << text + ' ' + called(how.color);
        return all.join('\n').toStdString();
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
                       "35,336 12,12 6e%3\n78,333 18,18 ff%1\n49,299 18,18 ff%2\n"
                       "52,370 12,12 6e%2\n23,336 12,12 6e%1\n66,333 18,18 ff%3\n"
                       "X %4\nY %4\nZ %4")
            .arg(x, y, z, letters)
            .toStdString();
    };
    EXPECT_EQ(said(painted(triad)), arms("c83028", "288430", "245ccc", "ffffffff"));
    EXPECT_LT((painted(triad).at("X", .5, .5) - QPointF(87.4, 342)).manhattanLength(), 2);
    EXPECT_EQ(said(painted(bar)), "484,382 584,382 ff1c222a 1.6\n484,378 484,386 ff1c222a 1.6\n"
                                  "584,378 584,386 ff1c222a 1.6\n2 ff1c222a");
    strip.setFiles({"/b", "/c"});
    EXPECT_EQ(said(painted(strip)), "150,364 300,28 cdffffff\nb ff1c222a\nc ffd6620a");
    EXPECT_NEAR(painted(strip).at("b", .5, .5).x(), 240, 1);
    strip.setFiles({"/a", "/b", "/c", "/d", "/e", "/f"});
    EXPECT_EQ(painted(strip).all(), "a|b|c|d|e");
    display.dark = true;
    EXPECT_EQ(said(painted(triad)), arms("ff6e64", "78d26e", "6ea5ff", "ff14181e"));
    const std::pair<Overlay *, QSize> rows[] = {
        {&triad, {260, 220}}, {&bar, {360, 240}}, {&strip, {560, 320}}};
    for (const auto &[overlay, least] : rows)
        for (const QSize &less : {QSize(0, 0), QSize(1, 0), QSize(0, 1)}) {
            widget->resize(least - less);
            EXPECT_EQ(overlay->isThere(), less.isNull()) << least.width();
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
    hand("Space");
    EXPECT_FALSE(playback.isPlaying());
    hand("164,342 click");
    playback.setTime(0);
    EXPECT_EQ(said(painted(player)), bar(true, 0, "0.00"));
    hand("218,342 move down");
    EXPECT_EQ(said(painted(player)), bar(false, 41, "0.25"));
    hand("299,9 move up 320,342 move"); // it is held, wherever the pointer is
    EXPECT_EQ(said(painted(player)), bar(false, 122, "0.75"));
    playback.setPlaying(true), playback.advance(.5); // it begins anew
    EXPECT_NEAR(playback.time(), .25, .01);
}

TEST_F(PaintedTest, TheWindowSaysWhatThereIs)
{
    const auto texts = [&] {
        return PaintRecord({600, 400},
                           [&](QPainter *p) {
                               p->save();
                               view->PaintForeground(glw(), p);
                               p->restore();
                           })
            .all();
    };
    widget->window()->show();
    view = std::make_unique<SingleView>(*window, queue, "");
    EXPECT_EQ(texts(), "Drop a model here or press Ctrl+O.|F1 lists the controls.");
    view.reset();
    view = std::make_unique<SingleView>(*window, queue, file("w.ply", "these are words\n"));
    EXPECT_EQ(texts().substr(0, 13), "Reading w.ply");
    ASSERT_TRUE(QTest::qWaitFor([&] { return !view->fault().isEmpty(); }, 20000));
    EXPECT_NE(texts().find("Drop another file here"), std::string::npos) << texts();
    open(boxes("b.obj", 2));
    const std::string about = item()->details().toStdString() + "|b.obj";
    const std::pair<const char *, std::string> rows[] = {
        {"40,200 move", about},
        {"@1,1,2 move", about + "|box0  ·  DefaultMaterial"},
        {"@1,1,2 click ctrl @4,1,2 click none 40,200 move", "2 of 2 parts selected|" + about}};
    for (const auto &[script, said] : rows) {
        hand(script);
        EXPECT_EQ(texts(), said);
    }
    hand("D @0,2,2 click @2,2,2 click");
    EXPECT_EQ(texts().substr(0, 2), "2|") << "a label";
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
    const QString line = QString("%1 e1ffffff 4\n%1 ffd6620a 1.8\n%2 8,8 ffd6620a\n%3 8,8 ffd6620a")
                             .arg(ends, pair(from - QPointF(4, 4)), pair(to - QPointF(4, 4)));
    const PaintRecord step = painted([&](MeasurePaint &p) { p.pending({a, b}); });
    EXPECT_EQ(said(step), line.toStdString());
    const PaintRecord all = painted([&](MeasurePaint &p) {
        const Measurement away = Measurement::point({900, 0, 0}, "");
        p.measurements({Measurement::distance(a, b, "mm"), away}, {10, 10, 580, 380});
    });
    EXPECT_EQ(all.fills.size(), 4u) << "the point is out of sight, and has no label";
    EXPECT_TRUE(all["2 mm"].font.bold());
    const QRectF label = all.fills.at(3).first;
    EXPECT_EQ(pair(label.bottomLeft()), pair(middle + QPointF(12, -12)));
    EXPECT_NEAR(all["2 mm"].box.left(), label.left() + 6, .1);
    EXPECT_EQ(pair(all.lines.at(2).first.p1()), pair(middle)) << "its leader";
    EXPECT_EQ(pair(all.lines.at(2).first.p2()), pair(label.bottomLeft()));

    // From the front a plane across x is a line, with its arrow along x.
    SectionHandles handles(under(), *window);
    item()->setSection({{CutPlane{{1, 0, 0}, 0.5}}});
    const SectionFrame frame = item()->sectionFrames().at(0);
    QPointF knob(0, 400); // its corner on the upper right
    for (const QVector3D &corner : frame.corners) {
        const QPointF p = CameraSteering::geometryOf(glw()).pixel(corner);
        knob = p.x() + p.y() > knob.x() + 400 - knob.y() ? QPointF(p.x(), 400 - p.y()) : knob;
    }
    const QPointF tip = knob + QPointF(34, 0);
    const QString expected = QString("%1 %2 ffd6620a 2.4\n%2 %3 ffd6620a 2.4\n%2 %4 ffd6620a 2.4\n")
                                 .arg(pair(knob), pair(tip), pair(tip + QPointF(-6.93, -4)),
                                      pair(tip + QPointF(-6.93, 4)));
    EXPECT_EQ(said(PaintedTest::painted(handles)).substr(0, std::size_t(expected.size())),
              expected.toStdString());
    EXPECT_EQ(pair(PaintedTest::painted(handles).fills.at(1).first.center()), pair(knob));
    hand(QString("%1,%2 move down").arg(knob.x()).arg(knob.y()));
    const PaintRecord held = PaintedTest::painted(handles);
    EXPECT_NEAR(held["x = 0.5"].box.left(), knob.x() + 36, 1); // a note beside the pointer
    EXPECT_NEAR(held.fills.at(1).first.width(), 16.8, .01) << "the knob";
}

} // namespace
} // namespace host
