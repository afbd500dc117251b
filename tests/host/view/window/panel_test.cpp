// SPDX-License-Identifier: MIT
// Texts on panels: where they stand in which colour, and what has no room.
#include "host/view/window/panel.h"

#include <cmath>
#include <set>

#include <QFontMetricsF>

#include "host/item/display.h"
#include "host/view/window/bindings_list.h"
#include "tests/host/paint_record.h"

namespace host {
namespace {

const Theme theme = Display().theme();

struct NoteBox {
    QRectF box;
    double line = 0;
};

struct Note : NoteBox, PaintRecord {
    explicit Note(const QRectF &bounds, Qt::Alignment corner = {}, const QString &heading = "Name",
                  const QString &details = "some details")
        : PaintRecord({600, 400}, [&, this](QPainter *p) {
              line = std::ceil(QFontMetricsF(p->font()).height() * 1.2);
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
        EXPECT_TRUE(note.fills[0].first == r && note.fills[0].second == theme.panel);
        EXPECT_EQ(corner & 0x2 ? bounds.right() - r.right() : r.left() - bounds.left(), 12);
        EXPECT_EQ(corner & 0x40 ? bounds.bottom() - r.bottom() : r.top() - bounds.top(), 12);
        const PaintRecord::Text name = note["Name"], details = note["some details"];
        EXPECT_TRUE(name.font.bold() && !details.font.bold());
        EXPECT_TRUE(name.color == theme.text && details.color == theme.faint);
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
    EXPECT_TRUE(Note({0, 0, 400, least - 1}).fills.empty() && Note({0, 0, 55, 90}).fills.empty());
    EXPECT_EQ(Note({0, 0, 400, least}).texts.size(), 2u);
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
            EXPECT_TRUE(head.color == theme.text && body.color == theme.faint);
            EXPECT_TRUE(head.font.bold() && !body.font.bold());
            EXPECT_NEAR(head.box.center().x(), across / 2, 1);
            EXPECT_NEAR(body.box.center().x(), across / 2, 1);
            EXPECT_NEAR(head.box.top(), r.top() + 15, 1);
            EXPECT_NEAR(body.box.top(), head.box.bottom() + 5, 2);
            EXPECT_NEAR(r.bottom(), body.box.bottom() + 15 + (fraction < 0 ? 0 : 18), 2);
            if (fraction < 0)
                continue;
            const QRectF trough = said.fills[1].first, done = said.fills[2].first;
            EXPECT_NEAR(said.fills[1].second.alphaF(), 0.3, 0.01);
            EXPECT_EQ(said.fills[2].second, theme.accent);
            EXPECT_TRUE(trough.height() == 8 && trough.width() == r.width() - 40);
            EXPECT_NEAR(trough.top(), body.box.bottom() + 10, 2);
            EXPECT_TRUE(done.topLeft() == trough.topLeft() && trough.left() == r.left() + 20);
            EXPECT_NEAR(done.width(), std::max(8.0, trough.width() * std::min(1.0, fraction)), .01);
        }
    EXPECT_TRUE(PaintRecord({90, 90}, [](QPainter *p) {
                    paintMessage(p, {0, 0, 90, 90}, "Reading", "", 0, theme);
                }).fills.empty());
}

TEST(PanelTest, TheListOfBindingsShowsEveryRowInFullInColumnsOrByScrolling)
{
    QVector<BindingRow> rows;
    for (int i = 1; i <= 20; ++i)
        rows.append(BindingRow{QString("Key%1").arg(i), QString("Does%1").arg(i)});
    const struct {
        QSizeF size;
        int columns;
        bool scrolls;
    } windows[] = {{{1280, 800}, 1, false}, {{1280, 400}, 2, false}, {{250, 800}, 1, false},
                   {{250, 500}, 1, true},   {{250, 250}, 1, true},   {{220, 400}, 0, false},
                   {{60, 40}, 0, false}};
    for (const auto &window : windows) {
        for (const int from : {-5, 2, 1000}) {
            int last = 0;
            const PaintRecord list(window.size.toSize(), [&](QPainter *p) {
                last = paintBindings(p, {{0, 0}, window.size}, "Controls", rows, from, theme);
            });
            ASSERT_EQ(list.fills.empty(), window.columns == 0);
            if (list.fills.empty())
                continue;
            const int first = std::clamp(from, 0, last) + 1, shown = last > 0 ? 20 - last : 20;
            EXPECT_EQ(last > 0, window.scrolls) << window.size.height();
            EXPECT_EQ(list["Controls"].color, theme.accent);
            EXPECT_TRUE(list["Controls"].font.bold());
            EXPECT_EQ(list.fills[0].second.alpha(), 240);
            const QRectF panel = list.fills[0].first;
            EXPECT_TRUE(QRectF({0, 0}, window.size).adjusted(8, 8, -8, -8).contains(panel));
            EXPECT_EQ(panel.center(), QRectF({0, 0}, window.size).center());
            EXPECT_NEAR(list["Controls"].box.left(), panel.left() + 16, .1);
            EXPECT_NEAR(list["Controls"].box.top(), panel.top() + 16, .1);
            std::set<double> columns;
            double below = 0;
            for (int i = 1; i <= 20; ++i) {
                const bool seen = i >= first && i < first + shown;
                EXPECT_EQ(list.texts.count(rows[i - 1].keys), seen ? 1u : 0u) << i;
                if (!seen)
                    continue;
                const PaintRecord::Text key = list[rows[i - 1].keys], text = list[rows[i - 1].text];
                EXPECT_TRUE(key.font.bold() && !text.font.bold() && key.color == theme.text);
                EXPECT_TRUE(text.color == theme.text && text.box.top() == key.box.top());
                EXPECT_TRUE(panel.contains(key.box) && panel.contains(text.box));
                EXPECT_LT(key.box.right(), text.box.left());
                EXPECT_TRUE(key.box.top() >= below || columns.count(key.box.left()) == 0) << i;
                below = key.box.bottom();
                columns.insert(key.box.left());
            }
            EXPECT_EQ(int(columns.size()), window.columns);
            EXPECT_NEAR(*columns.begin(), panel.left() + 16, .1);
            const auto said = QString("%1 to %2 of 20: scroll").arg(first).arg(first + shown - 1);
            EXPECT_EQ(list.texts.count(said), last > 0 ? 1u : 0u) << said.toStdString();
            EXPECT_TRUE(last <= 0 || std::abs(list[said].box.right() - panel.right() + 16) < 1);
        }
    }
}

} // namespace
} // namespace host
