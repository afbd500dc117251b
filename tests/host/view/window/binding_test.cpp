// SPDX-License-Identifier: MIT
// The list of bindings: what a person reads.
#include <QFontMetricsF>
#include <QSet>

#include "GL/action.h"
#include "host/view/window/bindings_list.h"
#include "tests/support/table.h"

namespace host {
namespace {

TEST(BindingInWords, ReadsAsAPersonWouldSayIt)
{
    const struct {
        quint32 binding; // 0: a key instead
        const char *verb, *key, *words;
    } rows[] = {
        {LeftButton, "drag", "", "left drag"},
        {RightButton, "click", "", "right click"},
        {MiddleButton, "", "", "middle button"},
        {LeftButton | Qt::ShiftModifier, "drag", "", "Shift+left drag"},
        {RightButton | Qt::ShiftModifier | Qt::ControlModifier, "drag", "",
         "Ctrl+Shift+right drag"},
        {LeftButton | RightButton, "drag", "", "left+right drag"},
        {LeftButton | DoubleClick, "", "", "double click"},
        {RightButton | DoubleClick, "", "", "right double click"},
        {WheelUp, "", "", "wheel forward"},
        {WheelDown | Qt::AltModifier, "", "", "Alt+wheel back"},
        {0, "", "F", "F"},
        {0, "", "Ctrl+S", "Ctrl+S"},
        {0, "", "Shift+?", "?"},
        {0, "", "", ""},
    };
    for (const auto &c : rows) {
        MouseAction mouse(nullptr, "m");
        mouse.setBinding(c.binding, 0);
        mouse.setProperty("verb", c.verb);
        KeyAction key(nullptr, "k");
        key.setKey(QKeySequence(c.key));
        EXPECT_EQ(bindingWords(c.binding ? static_cast<QAction *>(&mouse) : &key), c.words);
    }
}

TEST(BindingRows, GatherWhatDoesTheSameAndListWhatDoesSomething)
{
    QObject scene;
    QList<QAction *> actions; // as the module keeps them: the newest first
    const auto add = [&](const char *key, const char *text) {
        auto *action = new KeyAction(&scene, "");
        action->setKey(QKeySequence(key));
        action->setText(text);
        actions.prepend(action);
        return action;
    };
    setContents(add("F", "Fit"), OnAny);
    QAction *arrows = add("Left", "Fit");
    arrows->setProperty("words", "arrows");
    setContents(arrows, OnAny, "Shift it");
    setContents(add("G", "Lit"), OnModel);
    setContents(add("Y", "Along y"), OnPlot);
    add("F1", "Help");
    add("Shift+?", "Help");
    add("?", "Help");
    add("Esc", "");
    add("X", "Off")->setEnabled(false);
    auto *window = new QAction("Quit", &scene);
    window->setShortcut(QKeySequence("Ctrl+Q"));
    actions.prepend(window);

    const std::pair<int, const char *> expected[] = {
        {NoContent, "F1, ?: Help; Ctrl+Q: Quit"},
        {OnModel, "F, arrows: Fit; G: Lit; F1, ?: Help; Ctrl+Q: Quit"},
        {OnPlot, "F: Fit; arrows: Shift it; Y: Along y; F1, ?: Help; Ctrl+Q: Quit"},
        {OnAny, "F, arrows: Fit; arrows: Shift it; G: Lit; Y: Along y; F1, ?: Help; Ctrl+Q: Quit"}};
    for (const auto &[contents, text] : expected) {
        QStringList rows;
        for (const BindingRow &row : bindingRows(actions, contents))
            rows << row.keys + ": " + row.text;
        EXPECT_EQ(rows.join("; "), text);
    }
}

struct ListCase {
    const char *name;
    QSizeF window;
    int columns; // 0: nothing is painted
    bool scrolls;
};

const ListCase listCases[] = {
    {"Large", {1280, 800}, 1, false},
    {"Low", {1280, 400}, 2, false},
    {"Small", {250, 300}, 1, true},
    {"Thumb", {60, 40}, 0, false},
};

TABLE(BindingsList, testing::Test, ListCase, listCases);

TEST_P(BindingsList, ShowsEveryRowInFullInColumnsOrByScrolling)
{
    QVector<BindingRow> rows;
    for (int i = 0; i < 20; ++i)
        rows.append(BindingRow{"Ctrl+drag", "Zoom in to it"});
    QFont font;
    font.setPixelSize(13);
    const QRectF bounds(QPointF(), GetParam().window);
    const BindingsLayout top(bounds, font, rows, -5), end(bounds, font, rows, 1000);
    QSet<double> columns;
    for (const BindingsLayout &layout : {top, end}) {
        double below = 0;
        for (const auto &place : layout.places) {
            columns.insert(place.keys.left());
            EXPECT_TRUE(layout.panel.contains(place.keys) && layout.panel.contains(place.text));
            EXPECT_FALSE(place.keys.intersects(place.text));
            EXPECT_TRUE(place.keys.top() >= below || place.keys.top() < below - 100);
            EXPECT_GE(place.text.height(), QFontMetricsF(font)
                                               .boundingRect(QRectF(0, 0, place.text.width(), 999),
                                                             Qt::TextWordWrap, rows[0].text)
                                               .height());
            below = place.keys.bottom();
        }
        EXPECT_TRUE(layout.places.isEmpty() || bounds.contains(layout.panel));
    }
    EXPECT_EQ(top.first, 0);
    EXPECT_EQ(columns.size(), GetParam().columns);
    EXPECT_EQ(end.first > 0, GetParam().scrolls);
    EXPECT_EQ(end.first + end.places.size(), GetParam().columns ? rows.size() : 0);
}

} // namespace
} // namespace host
