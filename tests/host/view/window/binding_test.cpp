// SPDX-License-Identifier: MIT
// The list of bindings: what a person reads.
#include "GL/action.h"
#include "host/view/window/binding.h"
#include "tests/GL/table.h"

namespace host {
namespace {

struct WordsCase {
    const char *name;
    quint32 binding; // 0: a key instead
    const char *verb;
    const char *key;
    const char *words;
};

const WordsCase wordsCases[] = {
    {"LeftDrag", LeftButton, "drag", "", "left drag"},
    {"RightClick", RightButton, "click", "", "right click"},
    {"WithoutVerb", MiddleButton, "", "", "middle button"},
    {"ShiftLeft", LeftButton | Qt::ShiftModifier, "drag", "", "Shift+left drag"},
    {"TwoModifiers", RightButton | Qt::ShiftModifier | Qt::ControlModifier, "drag", "",
     "Ctrl+Shift+right drag"},
    {"TwoButtons", LeftButton | RightButton, "drag", "", "left+right drag"},
    {"DoubleClick", LeftButton | DoubleClick, "", "", "double click"},
    {"OtherDoubleClick", RightButton | DoubleClick, "", "", "right double click"},
    {"WheelForward", WheelUp, "", "", "wheel forward"},
    {"AltWheelBack", WheelDown | Qt::AltModifier, "", "", "Alt+wheel back"},
    {"Key", 0, "", "F", "F"},
    {"KeyWithModifier", 0, "", "Ctrl+S", "Ctrl+S"},
    {"QuestionMark", 0, "", "Shift+?", "?"},
    {"Unbound", 0, "", "", ""},
};

TABLE(BindingInWords, testing::Test, WordsCase, wordsCases);

TEST_P(BindingInWords, ReadsAsAPersonWouldSayIt)
{
    const WordsCase &c = GetParam();
    MouseAction mouse(nullptr, "m");
    mouse.setBinding(c.binding, 0);
    mouse.setProperty("verb", c.verb);
    KeyAction key(nullptr, "k");
    key.setKey(QKeySequence(c.key));
    EXPECT_EQ(bindingWords(c.binding ? static_cast<QAction *>(&mouse) : &key), c.words);
}

TEST(BindingRows, GathersWhatDoesTheSameInTheOrderOfBinding)
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
    add("F", "Fit");
    add("F1", "Help");
    add("Shift+?", "Help");
    add("?", "Help");
    add("Esc", "");
    add("X", "Off")->setEnabled(false);
    auto *window = new QAction("Quit", &scene);
    window->setShortcut(QKeySequence("Ctrl+Q"));
    actions.prepend(window);

    QStringList rows;
    for (const BindingRow &row : bindingRows(actions))
        rows << row.keys + ": " + row.text;
    EXPECT_EQ(rows.join("; "), "F: Fit; F1, ?: Help; Ctrl+Q: Quit");
}

} // namespace
} // namespace host
