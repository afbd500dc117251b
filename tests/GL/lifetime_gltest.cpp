// SPDX-License-Identifier: MIT
// Slots that delete what is at work: every stage of a frame and of input with every victim. What is
// not concerned goes on, and what is gone is neither read nor told of.
#include <QRegularExpression>

#include "tests/support/window.h"

namespace {

// A frame, a press, a key, a click and a double click; the pointer is on the third of four tiles.
const char *const segments[] = {"set window at 40,25; view.UpdateLayout; frame", "down 40,75 2 2",
                                "key K", "click 40,75; double 40,75 1 1; up 40,75 1 0"};

// What goes wrong in one word of them, by the script that does it; %1 is what the word is about.
const char *const victims = R"(
Itself: delete %1 =>
Next: delete 4; delete b =>
Window: delete window =>
Removed: window.RemoveGLWidget view; window.RemoveGLWidget a =>
View: delete a; delete view =>
Cleared: view.Clear =>
Added: view.AddTile 9; add c =>
Actions: delete key; delete right =>
)";

class LifeTest : public WindowTest {
protected:
    LifeTest() : WindowTest(QSize(140, 100)) {}
    void build()
    {
        run("delete view; delete a; delete b; delete c");
        if (window)
            window->glwidgets.clear();
        else
            open(QSize(140, 100));
        run("view 4; add a; add b; frame");
        host.on.clear();
        host.hear(view()->NewMouseAction(2, 0, "right", nullptr, nullptr), "*");
        host.hear(view()->NewKeyAction("K", "key", nullptr, nullptr), "*");
    }
    /// The words of a segment, as far as there are a window and a view.
    QStringList play(size_t i)
    {
        segment = i;
        QStringList words;
        for (const QString &statement : QString(segments[i]).split("; "))
            if (window && (view() || !statement.startsWith("view")))
                words += run(statement).split(' ', Qt::SkipEmptyParts);
        return words.filter(QRegularExpression("^(?!.*:(9|c)$|Resized)"));
    }
    static QString about(const QString &word)
    {
        const QString object = word.section(':', 1).section(',', 0, 0);
        return object.isEmpty() || word.startsWith("TileResized") ? "view" : object;
    }
    /// Whether what tells @p word is still at work.
    bool tells(const QString &word)
    {
        if (segment > 0)
            return window && find("3") && find(word.section(':', 0, 0));
        const auto *o = qobject_cast<GLWidget *>(find(about(word)));
        return window && (o ? o->gl == window : object(about(word)) && view()->gl);
    }
    size_t segment = 0;
};

ROWS(Life, LifeTest, victims)
{
    build();
    QStringList all, undisturbed[4];
    for (size_t i = 0; i < 4; ++i)
        all += undisturbed[i] = play(i);
    ASSERT_EQ(all.size(), 44) << all.join(' ').toStdString();
    for (const QString &stage : all) {
        SCOPED_TRACE(stage.toStdString());
        build();
        QStringList expected;
        host.each = [&](const QString &word) {
            if (word != stage || !expected.isEmpty())
                return;
            run(GetParam().script.contains("%1")
                    ? GetParam().script.arg(segment ? segment < 3 ? "3" : "view" : about(word))
                    : GetParam().script);
            for (const QString &w : undisturbed[segment])
                if (expected.size() <= undisturbed[segment].indexOf(stage) || tells(w))
                    expected << w;
        };
        for (size_t i = 0; i < 4; ++i) {
            const bool before = expected.isEmpty();
            const QStringList words = play(i);
            if (before && !expected.isEmpty() && (i < 3 || !view())) {
                EXPECT_EQ(i < 3 ? words.join(' ') : words.last(),
                          i < 3 ? expected.join(' ') : stage);
            }
        }
        EXPECT_FALSE(expected.isEmpty());
        host.each = nullptr;
        play(0); // what is left keeps working
        if (window)
            emit window->Resized(3, 4);
    }
}

} // namespace
