// SPDX-License-Identifier: MIT
// A sheet that is larger than its window: 60 models in four columns; rows of 131 pixels, the first
// four in view.
#include <algorithm>

#include <QLineEdit>

#include "host/view/sheet/sheet_view.h"
#include "support.h"

namespace host {
namespace {

class ScrollTest : public ViewTest {
protected:
    std::unique_ptr<SheetView> sheet;

    ScrollTest() { smooth = false; }

    void open()
    {
        QStringList paths;
        for (int i = 1; i <= 60; ++i)
            paths << boxes(QString("m%1.obj").arg(i), i == 20 ? 9 : 1);
        sheet = std::make_unique<SheetView>(*window, queue, "folder", paths);
        show(*sheet);
    }
    void TearDown() override { sheet.reset(); }

    std::optional<QPointF> place(const QString &word) const override
    {
        const int id = word.size() <= 2 && word[0] != '+' ? word.toInt() : 0;
        return id > 0 && sheet->tile(id) ? std::optional(sheet->tile(id)->orect.center())
                                         : std::nullopt;
    }
    /// What hands do, and what they write into the search (?m1) and how they leave it (!Esc).
    /// Afterwards those tiles are visible that are in view.
    void run(const QString &steps)
    {
        for (const QString &step : steps.split("; ", Qt::SkipEmptyParts)) {
            if (step[0] == '?')
                line()->setText(step.mid(1));
            else if (step[0] == '!')
                QTest::keyClick(line(), Qt::Key(QKeySequence(step.mid(1))[0]));
            else
                hand(step);
            for (double before = -1; before != sheet->offset();) { // it glides
                before = sheet->offset();
                time += 1;
                frame();
            }
        }
        ASSERT_TRUE(until([&] { return queue.isIdle(); }));
        frame();
        for (const auto &[id, entry] : sheet->entries()) {
            const GLW *glw = sheet->tile(id);
            EXPECT_EQ(glw && glw->property<bool>("visible"), sheet->inView().contains(id)) << id;
        }
    }
    QLineEdit *line() const { return widget->findChild<QLineEdit *>(); }
    Vector rot(int id) const { return sheet->tile(id)->camera.rot; }
    int countOf(SheetEntry::State state) const
    {
        return int(
            std::count_if(sheet->entries().begin(), sheet->entries().end(),
                          [state](const auto &entry) { return entry.second.state == state; }));
    }
    int refused() const ///< The last of those in view; 0 if there is none.
    {
        int last = 0;
        for (int id : sheet->inView())
            last = sheet->entries().at(id).state == SheetEntry::State::Failed ? id : last;
        return last;
    }
    std::string describe() const
    {
        const QList<int> ids = sheet->inView();
        // What is written, and what the line leaves of a sheet that is at its end.
        const QString words = line()->isVisible() ? ' ' + line()->selectedText() : QString();
        const double foot = words.isNull() || sheet->offset() < 1000 ? 0 : line()->height() + 16;
        return QString("%1: %2 to %3%4")
            .arg(sheet->offset() - foot)
            .arg(ids.value(0))
            .arg(ids.value(ids.size() - 1))
            .arg(words)
            .toStdString();
    }
};

TEST_F(ScrollTest, StepsLeadTo)
{
    // What is selected is so, scrolled away or not.
    const QString rows(
        "N; 1 move back > 131: 5 to 20\n1 move back back wheel > 131: 5 to 20\n1 move wheel alt "
        "back "
        "ctrl Home > 0: 1 to 16\n1 move PgDown PgDown > 786: 25 to 40\n1 move Ctrl+End PgUp > "
        "1176: 33 to 48\n1 move Ctrl+End; Ctrl+Home > 0: 1 to 16\n593,5 down +0,100 move up +0,50 "
        "move > 492: 13 to 28\n593,200 down up > 787: 25 to 40\n1 move PgDown PgDown; 30 move ctrl "
        "back > 440: 21 to 40\n1 move back back; Z > 336: 7 to 15\nPgDown S; 13 click S S > 128: "
        "20 to 15\nDown Down Down Down Right > 128: 1 to 16\nShift+Backtab > 1569: 45 to "
        "60\nPgDown; Ctrl+F; ?1.OBJ m > 0: 1 to 51 \nCtrl+F; ?m6; !Return; Tab Tab; Ctrl+F; !Esc > "
        "1569: 45 to 60\nCtrl+F; ?m6; !Down; V PgDown; !Esc; PgDown > 393: 13 to 28\nCtrl+F; "
        "!Return; Ctrl+End; Ctrl+F; !Esc > 1569: 45 to 60\nCtrl+F; ?nothing > 0: 0 to 0 \nCtrl+F; "
        "!Return; Ctrl+End > 1569: 49 to 60 \nCtrl+F; !M; !6; !Return; Ctrl+F > 0: 6 to 60 "
        "m6\nCtrl+A Ctrl+End; ctrl 60 click none V > 1569: 45 to 59\nZ Z Z Z Z Shift+Z; PgDown > "
        "241: 3 to 6\nZ Z Z Z Z Z Z; 1 move back > 320: 1 to 2\nCtrl+A; ctrl 1 click none V > 0: 2 "
        "to 17\nCtrl+A; 3 click V > 0: 3 to 3\nTab "
        "Ctrl+End; V > 0: 1 to 1\nCtrl+A Ctrl+End; Ctrl+A V > 1569: 45 to 60\n2 click; Ctrl+F; ?m3 "
        "m; !Return; Ctrl+A V; Ctrl+F; !Esc > 0: 3 to 39");
    open();
    run("C"); // which has all of them read
    EXPECT_EQ(countOf(SheetEntry::State::Waiting), 0);
    for (const QString &row : rows.split('\n')) {
        run("Ctrl+Home; " + row.section(" > ", 0, 0));
        EXPECT_EQ(describe(), row.section(" > ", 1).toStdString()) << row.toStdString();
        sheet->leaveTool();
        sheet->setTileSize(0);
        hand("Tab Ctrl+A Ctrl+A V S N Tab Ctrl+A Ctrl+A V S N"); // all shown, none selected
    }
    for (const auto &[asked, size] : {std::pair(9999, 2000), {1, 16}})
        EXPECT_EQ((sheet->setTileSize(asked), sheet->tileSize()), size);
    sheet->setTileSize(0);
    for (const char *step : {"1 move PgDown", "Ctrl+Home", "593,390 down", "593,80 move"})
        EXPECT_TRUE(asks(*sheet, step)) << step;
    run("Ctrl+Home; 1 move");
    QWheelEvent touch({9, 9}, {}, {0, -50}, {0, -40}, {}, {}, Qt::NoScrollPhase, false);
    QCoreApplication::sendEvent(widget, &touch);
    EXPECT_EQ(sheet->offset(), 50) << "as far as fingers went, at once";
    menu(*sheet, sheet->tile(1), "Hide tile");
    EXPECT_EQ(sheet->offset(), 50) << "the first in view goes, and the others stay";
    run("Ctrl+F B");
    EXPECT_TRUE(line()->placeholderText() == "Find by name" && line()->isClearButtonEnabled() &&
                line()->accessibleName() == "Find by name" &&
                line()->palette().color(QPalette::Text) == sheet->display().theme().text &&
                line()->palette().color(QPalette::Highlight) == sheet->display().theme().accent);
    for (const int width : {600, 200}) {
        window->frame()->resize(width, 300);
        frame();
        EXPECT_EQ(line()->geometry().bottomRight(), QPoint(width - 17, 291));
        EXPECT_EQ(line()->width(), width == 200 ? 184 : 260);
    }
}

TEST_F(ScrollTest, OnlyWhatIsNearIsReadAndTheRestStaysAsItWasLeft)
{
    using State = SheetEntry::State;
    open();
    run("1 move");
    EXPECT_EQ(countOf(State::Shown), 28);
    EXPECT_EQ(sheet->tile(40), nullptr);
    const quint64 size = sheet->item(sheet->tile(1))->byteSize();
    run("Ctrl+End"), sheet->setMemoryBudget(57 * size);
    EXPECT_EQ(sheet->entries().at(33).state, State::Shown) << "near, though nobody saw it yet";
    sheet->setMemoryBudget(1 << 30), run("Ctrl+Home");
    run("1 down +40,0 move up L; 1 down +0,20 move up");
    const Vector left = rot(1);
    sheet->setMostTiles(30);
    run("Ctrl+End; Ctrl+A; 60 click V");
    EXPECT_EQ(describe(), "0: 60 to 60") << "what the module does not know is chosen no more";
    run("V Ctrl+End; 60 click");
    EXPECT_EQ(sheet->tile(1), nullptr);
    EXPECT_EQ(rot(60), left) << "its camera is linked";
    EXPECT_EQ(countOf(State::Shown), 28);
    run("L; 60 move +2 -2");
    EXPECT_NE(rot(60), left);
    run("Ctrl+Home; 1 move back; C");
    EXPECT_EQ(rot(1), left);
    EXPECT_EQ(sheet->inView()[0], 20) << "the largest of all, which nobody had looked at";
    EXPECT_EQ(countOf(State::Waiting), 0);
    run("Ctrl+End");
    EXPECT_EQ(describe(), "1569: 45 to 60") << "what is read again moves nothing";
    run("Shift+Home; Ctrl+Home"), settle(sheet->tile(1));
    EXPECT_NEAR(rot(1).x, 22, 0.1) << "home, though it was not there to go";
    auto blocked = std::make_unique<BlockedThreads>();
    sheet->setMemoryBudget(20 * size);
    for (const char *steps : {"PgDown", "PgDown", "Ctrl+End"}) // what nobody sees any more is held
        run(steps);
    const int last = refused();
    blocked.reset();
    EXPECT_TRUE(until([&] { return sheet->entries().at(last).state == State::Shown; })) << last;
    run("Ctrl+Home"), sheet->setMemoryBudget(4 * size);
    run("N; Ctrl+End");
    const int alone = refused();
    run(QString("Ctrl+F; ?m%1").arg(alone));
    EXPECT_TRUE(until([&] { return sheet->entries().at(alone).state == State::Shown; })) << alone;
    sheet->setMemoryBudget(1 << 30);
    run("!Esc; Ctrl+Home; C; 20 move back wheel back");
    const GLW *top = sheet->tile(20);
    EXPECT_EQ(top->geometry(false), top->orect.adjusted(0, 22, 0, 0)); // the module's own reckoning
}

} // namespace
} // namespace host
