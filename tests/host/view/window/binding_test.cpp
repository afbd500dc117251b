// SPDX-License-Identifier: MIT
// The list of bindings: what a person reads.
#include <gtest/gtest.h>

#include "GL/action.h"
#include "host/view/window/binding.h"

namespace host {
namespace {

TEST(BindingInWords, ReadsAsAPersonWouldSayIt)
{
    const struct {
        quint32 binding; // 0: a key instead
        const char *verb, *key, *words;
    } rows[] = {
        {LeftButton, "drag", "", "left drag"},
        {RightButton | Qt::ShiftModifier | Qt::ControlModifier, "drag", "",
         "Ctrl+Shift+right drag"},
        {LeftButton | RightButton, "drag", "", "left+right drag"},
        {RightButton | DoubleClick, "", "", "right double click"},
        {WheelDown | Qt::AltModifier, "", "", "Alt+wheel back"},
        {0, "", "Shift+?", "?"},
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

} // namespace
} // namespace host
