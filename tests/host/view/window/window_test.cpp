// SPDX-License-Identifier: MIT
// What a window is made of: the context menu in the making, the clock that lets it rest, what
// frames may cost, its two sides, and texts on panels.
#include <cmath>
#include <set>

#include <QFontMetricsF>
#include <QMenu>
#include <QTest>

#include "host/view/window/bindings_list.h"
#include "host/view/window/frame_budget.h"
#include "host/view/window/frame_clock.h"
#include "host/view/window/menu_tree.h"
#include "host/view/window/panel.h"
#include "host/view/window/side_frame.h"
#include "tests/host/paint_record.h"

namespace host {
namespace {

TEST(MenuTreeTest, BuildsWhatWasAddedAndRunsItAfterwards)
{
    QObject receiver;
    auto *dies = new QObject;
    QStringList ran;
    MenuTree tree;
    tree.add("Fit", "F", &receiver, [&] { ran << "fit"; });
    tree.add("Lighting", "G", dies, [&] { ran << "lighting"; });
    QMenu menu;
    EXPECT_TRUE(tree.Build(&menu) == 2 && !menu.actions()[0]->isCheckable());
    for (QAction *entry : menu.actions())
        entry->trigger();
    delete dies;
    EXPECT_TRUE(ran.isEmpty()) << "the menu is still open";
    QCoreApplication::processEvents();
    EXPECT_EQ(ran.join(' '), "fit");
    QAction list("Controls");
    list.setShortcut(QKeySequence("Shift+?"));
    EXPECT_EQ(bindingWords(&list), "?");
}

/// Stands for the module's window: its properties and its slot.
class FakeWindow : public QWidget {
    Q_OBJECT

public:
    int requested = 0;

    FakeWindow() { setMouseTracking(true); } // as the module's does
    float fps() const { return property("fps").toFloat(); }

public slots:
    void Update() { ++requested; }
};

/// Its rests are over as soon as events are looked for.
TEST(FrameClockTest, RestsWhenNothingHappensAndWakesWithInput)
{
    FakeWindow window;
    FrameClock clock(&window, 50, nullptr, 0);
    const auto rest = [] { QCoreApplication::processEvents(); };
    EXPECT_TRUE(!window.property("timer").toBool() && window.fps() == 50) << "frames are asked for";
    EXPECT_EQ((rest(), window.fps()), 0);

    QMouseEvent move(QEvent::MouseMove, QPointF(1, 1), Qt::NoButton, Qt::NoButton, Qt::NoModifier);
    EXPECT_EQ((QCoreApplication::sendEvent(&window, &move), window.fps()), 12);
    clock.setLookRate(7);
    EXPECT_EQ((QCoreApplication::sendEvent(&window, &move), window.fps()), 7);
    FakeWindow busy;
    const FrameClock other(&busy, 50, nullptr, 60000);
    QCoreApplication::sendEvent(&busy, &move);
    EXPECT_EQ(busy.fps(), 50) << "something else goes on";
    QMouseEvent drag(QEvent::MouseMove, {1, 1}, Qt::NoButton, Qt::LeftButton, Qt::NoModifier);
    QCoreApplication::sendEvent(&window, &drag);
    EXPECT_TRUE(window.fps() == 50 && window.requested == 0) << "input alone draws nothing";
    rest();
    QResizeEvent resize({9, 9}, {8, 8});
    QCoreApplication::sendEvent(&window, &resize);
    EXPECT_TRUE(window.fps() == 50 && window.requested == 1);

    clock.setContinuous(true);
    EXPECT_TRUE(window.property("timer").toBool());
    rest();
    EXPECT_EQ((QCoreApplication::sendEvent(&window, &move), window.fps()), 50); // it never rests
    clock.setContinuous(false);
    rest();
    EXPECT_TRUE(!window.property("timer").toBool() && window.fps() == 0);
}

TEST(FrameBudgetTest, FramesTakeTheirShareOfTheProcessorsTime)
{
    FrameBudget budget(nullptr, 100000, 3);
    const auto ask = [&] { return budget.request(), budget.findChild<QTimer *>()->interval(); };
    EXPECT_EQ(ask(), 3);
    ASSERT_TRUE(QTest::qWaitFor([&] { return !budget.isPending(); }, 20000));
    for (const auto end = std::clock() + CLOCKS_PER_SEC / 50; std::clock() < end;)
        continue; // 20 milliseconds of work
    budget.measure();
    QCoreApplication::processEvents();
    EXPECT_NEAR(ask(), 4e6, 2e6);
}

TEST(SideFrameTest, TheViewsHaveWhatTheSideLeaves)
{
    SideFrame frame;
    auto *views = new QWidget, *content = new QWidget;
    frame.setViews(views);
    frame.setContent(content);
    frame.resize(600, 400);
    frame.show();
    QCoreApplication::processEvents();
    views->resize(200, 100); // what the X server tells of it can be old
    QCoreApplication::processEvents();
    EXPECT_EQ(views->size(), QSize(600, 400));
    for (const auto &[chosen, wide] : {std::pair(0, 270), {150, 150}, {500, 360}}) {
        frame.setSideWidth(chosen);
        frame.setOpen(true);
        frame.resize(700, 400); // who widens it wants to see more of the views
        EXPECT_TRUE(content->width() == wide && !frame.childrenCollapsible()) << wide;
        frame.resize(600, 400), frame.setOpen(false);
    }
    emit frame.splitterMoved(400, 1);
    EXPECT_EQ(frame.sideWidth(), 360);
}

const Theme theme = Display().theme();

struct NoteBox {
    QRectF box;
    double line = 0;
    QFont font;
};

struct Note : NoteBox, PaintRecord {
    explicit Note(const QRectF &bounds, Qt::Alignment corner = {}, const QString &heading = "Name",
                  const QString &details = "some details")
        : PaintRecord({600, 400}, [&, this](QPainter *p) {
              font = p->font();
              line = std::ceil(QFontMetricsF(font).height() * 1.2);
              EXPECT_EQ(noteHeight(p->font(), 2), 2 * line + 22);
              box = paintNote(p, bounds, corner, heading, details, theme);
          })
    {
    }
};

TEST(PanelTest, NotesStandInTheirCorners)
{
    const QRectF bounds(10, 20, 400, 200);
    for (const int corner : {0, int(Qt::AlignRight), int(Qt::AlignBottom), 0x2 | 0x40}) {
        const Note note(bounds, Qt::Alignment(corner));
        const QRectF &r = note.box;
        ASSERT_EQ(note.fills.size(), 1u);
        EXPECT_TRUE(note.fills[0] == std::pair(r, theme.panel) && note.rims[0].isEmpty());
        EXPECT_EQ(corner & 0x2 ? bounds.right() - r.right() : r.left() - bounds.left(), 12);
        EXPECT_EQ(corner & 0x40 ? bounds.bottom() - r.bottom() : r.top() - bounds.top(), 12);
        const PaintRecord::Text name = note["Name"], details = note["some details"];
        EXPECT_TRUE(name.font.bold() && name.color == theme.text);
        EXPECT_TRUE(!details.font.bold() && details.color == theme.faint);
        EXPECT_TRUE(name.box.left() == r.left() + 10 && details.box.left() == r.left() + 10);
        EXPECT_NEAR(r.width(), details.box.width() + 20, 1);
        EXPECT_EQ(r.height(), 2 * note.line + 10);
        EXPECT_NEAR(details.box.center().y() - name.box.center().y(), note.line, 1);
        EXPECT_NEAR(name.box.center().y(), r.top() + 5 + note.line / 2, 1.5);
    }
    const Note plain(bounds, {}, "");
    EXPECT_TRUE(plain["some details"].color == theme.text && plain.box.height() == plain.line + 10);
    EXPECT_EQ(Note(bounds, {}, "Name", "").box.height(), plain.line + 10);
    const double least = 2 * plain.line + 34; // high
    EXPECT_TRUE(Note(bounds, {}, "", "").fills.empty());
    const double narrow = 44 + 3 * QFontMetricsF(plain.font).averageCharWidth();
    for (const double less : {0.0, .1}) {
        EXPECT_EQ(Note({0, 0, 400, least - less}).texts.size(), less > 0 ? 0u : 2u);
        EXPECT_EQ(Note({0, 0, narrow - less, 90}).texts.size(), less > 0 ? 0u : 2u);
    }
    const Note cut({0, 0, 150, 90}, {}, QString(90, 'a') + 'z', 'b' + QString(90, 'c'));
    ASSERT_EQ(cut.texts.size(), 2u);
    EXPECT_LE(cut.box.right(), 150 - 11);
    EXPECT_TRUE(cut.texts.begin()->first.endsWith('z') && cut.texts.rbegin()->first[0] == 'b');
}

TEST(PanelTest, AMessageStandsInTheMiddleWithABarOrWithout)
{
    for (const double fraction : {-1.0, 0.0, 0.5, 2.0})
        for (const double across : {600.0, 300.0}) {
            const QRectF bounds(0, 10, across, 300);
            const PaintRecord said({600, 400}, [&](QPainter *p) {
                paintMessage(p, bounds, "Reading", "half of it", fraction, theme);
            });
            ASSERT_EQ(said.fills.size(), fraction < 0 ? 1u : 3u);
            const QRectF r = said.fills[0].first;
            EXPECT_LT((r.center() - bounds.center()).manhattanLength(), 0.01);
            EXPECT_EQ(r.width(), across == 600 ? 460 : 276);
            const PaintRecord::Text head = said["Reading"], body = said["half of it"];
            EXPECT_TRUE(head.color == theme.text && head.font.bold());
            EXPECT_TRUE(body.color == theme.faint && !body.font.bold());
            EXPECT_NEAR(head.box.center().x(), across / 2, 1);
            EXPECT_NEAR(body.box.center().x(), across / 2, 1);
            EXPECT_NEAR(head.box.top(), r.top() + 15, 1);
            EXPECT_NEAR(body.box.top(), head.box.bottom() + 5, 2);
            EXPECT_NEAR(r.bottom(), body.box.bottom() + 15 + (fraction < 0 ? 0 : 18), 2);
            if (fraction < 0)
                continue;
            const QRectF trough = said.fills[1].first, done = said.fills[2].first;
            EXPECT_NEAR(said.fills[1].second.alphaF(), 0.3, 0.01);
            EXPECT_TRUE(said.fills[2].second == theme.accent && said.rims[1] + said.rims[2] == "");
            EXPECT_TRUE(trough.height() == 8 && trough.width() == r.width() - 40);
            EXPECT_NEAR(trough.top(), body.box.bottom() + 10, 2);
            EXPECT_TRUE(done.topLeft() == trough.topLeft() && trough.left() == r.left() + 20);
            EXPECT_NEAR(done.width(), std::max(8.0, trough.width() * std::min(1.0, fraction)), .01);
        }
    for (const double less : {0.1, 0.0}) {
        const PaintRecord small({200, 90}, [&](QPainter *p) {
            paintMessage(p, {0, 0, 124 - less, 90}, "R", "", 0, theme);
        });
        ASSERT_EQ(small.fills.size(), less > 0 ? 0u : 3u);
        EXPECT_TRUE(less > 0 || qRound(small.fills[1].first.top() - small["R"].box.bottom()) == 10);
    }
}

TEST(PanelTest, TheListOfBindingsShowsEveryRowInFullInColumnsOrByScrolling)
{
    QFont font;
    font.setPixelSize(13);
    const double line = std::ceil(QFontMetricsF(font).height() * 1.35);
    QVector<BindingRow> rows;
    for (int i = 1; i <= 20; ++i)
        rows.append(BindingRow{QString("Key%1").arg(i), QString("Does%1").arg(i)});
    const double one = BindingsLayout({0, 0, 1280, 900}, font, rows, 0).panel.width(); // column
    const std::tuple<double, double, int, int> windows[] = {
        // rows that fit, columns, greatest first
        {1280, 20, 1, 0}, {1280, 10, 2, 0},    {1280, 9.9, 3, 0},        {1280, 1.9, 0, 0},
        {250, 20, 1, 0},  {250, 19.9, 1, 1},   {228, 9, 1, 11},          {227, 9, 0, 0},
        {250, 2, 1, 18},  {2 * one, 10, 2, 0}, {2 * one - .1, 10, 1, 10}};
    for (const auto &[width, high, columns, last] : windows)
        for (const int from : {-5, 1, 1000}) {
            const QRectF bounds(5, 9, width, (high + 1.5) * line + 48);
            const BindingsLayout all(bounds, font, rows, from);
            EXPECT_TRUE(bounds.adjusted(8, 8, -8, -8).contains(all.panel) || columns == 0);
            std::set<double> lefts;
            for (int i = 0; i < all.places.size(); ++i) {
                const QRectF &key = all.places[i].keys, &top = all.places[0].keys;
                lefts.insert(key.left());
                EXPECT_TRUE(key.top() == top.top() || key.top() == all.places[i - 1].keys.bottom());
            }
            EXPECT_TRUE(int(lefts.size()) == columns && all.first == std::clamp(from, 0, last));
            EXPECT_EQ(all.places.size(), columns > 0 ? 20 - last : 0) << width << ' ' << high;
        }
    const QRectF bounds(0, 0, 250, 250);
    const PaintRecord list({250, 250}, [&](QPainter *p) {
        font = p->font();
        EXPECT_EQ(paintBindings(p, {0, 0, 200, 90}, "Controls", rows, 3, theme), 0);
        const int last = paintBindings(p, bounds, "Controls", rows, 3, theme);
        EXPECT_EQ(last, BindingsLayout(bounds, font, rows, 3).last);
    });
    const BindingsLayout shown(bounds, font, rows, 3);
    EXPECT_TRUE(list.fills[0].first == shown.panel && list.fills[0].second.alpha() == 240);
    EXPECT_TRUE(list["Controls"].color == theme.accent && list["Controls"].font.bold());
    EXPECT_EQ(list["Controls"].box.topLeft(), shown.heading.topLeft());
    const auto hint = list[QString("4 to %1 of 20: scroll").arg(3 + shown.places.size())];
    EXPECT_TRUE(hint.color == theme.faint && qRound(hint.box.right() - shown.heading.right()) == 0);
    for (int i = 0; i < shown.places.size(); ++i) {
        const PaintRecord::Text key = list[rows[3 + i].keys], text = list[rows[3 + i].text];
        EXPECT_TRUE(key.font.bold() && !text.font.bold() && key.color == theme.text);
        EXPECT_TRUE(key.box.topLeft() == shown.places[i].keys.topLeft() &&
                    text.color == theme.text);
        EXPECT_EQ(text.box.topLeft(), shown.places[i].text.topLeft());
    }
    font.setPixelSize(13);
    // What is too long is wrapped, to 200 and 240 pixels; a row is as high as the higher of both.
    const QString words = QString("word ").repeated(60).trimmed();
    for (const auto &[keys, across, wide] :
         {std::tuple(true, 900, 200), {false, 900, 240}, {true, 260, 89}}) {
        const BindingsLayout all({0, 0, double(across), 1800}, font,
                                 {{keys ? words : "k", "t"}, {"k", keys ? "t" : words}}, 0);
        ASSERT_EQ(all.places.size(), 2);
        const QRectF key = all.places[0].keys, text = all.places[1].text;
        const QRectF inside = all.panel.adjusted(16, 16, -16, -16);
        EXPECT_EQ(keys ? key.width() : text.width(), wide);
        EXPECT_GT(keys ? key.height() : text.height(), 10 * line);
        EXPECT_EQ(keys ? text.height() : key.height(), line);
        EXPECT_EQ(key.topLeft(), inside.topLeft() + QPointF(0, 1.5 * line));
        EXPECT_TRUE(text.topLeft() == key.bottomRight() + QPointF(16, 0) &&
                    text.right() == inside.right());
        EXPECT_TRUE(text.bottom() <= inside.bottom() && text.bottom() > inside.bottom() - line / 2);
        EXPECT_EQ(all.heading, QRectF(inside.topLeft(), QSizeF(inside.width(), line)));
        EXPECT_EQ(all.panel.center(), QPointF(across / 2.0, 900));
    }
}

} // namespace
} // namespace host

#include "window_test.moc"
