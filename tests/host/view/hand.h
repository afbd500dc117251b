// SPDX-License-Identifier: MIT
#ifndef TESTS_HOST_VIEW_HAND_H
#define TESTS_HOST_VIEW_HAND_H

#include <functional>
#include <optional>

#include <QPointer>
#include <QTest>
#include <QWheelEvent>

namespace host {

/// What a hand does at @p widget, in words apart by blanks: what it holds from then on (left,
/// middle, right, none of which is down then; shift, ctrl, alt, none), where it is (160,30 from the
/// upper left corner, +5,0 from there, or what @p place knows), what happens there (down, move, up,
/// twice, wheel, back; click is the first three), and keys (F, Ctrl+A; +R goes down, -R up). @p
/// after follows each event.
inline void steer(const QPointer<QWidget> &widget, const QString &script,
                  const std::function<void()> &after,
                  const std::function<std::optional<QPointF>(const QString &)> &place)
{
    const QHash<QString, Qt::MouseButton> buttons{
        {"left", Qt::LeftButton}, {"middle", Qt::MiddleButton}, {"right", Qt::RightButton}};
    const QHash<QString, Qt::KeyboardModifier> held{
        {"shift", Qt::ShiftModifier}, {"ctrl", Qt::ControlModifier}, {"alt", Qt::AltModifier}};
    const QHash<QString, QEvent::Type> events{{"down", QEvent::MouseButtonPress},
                                              {"move", QEvent::MouseMove},
                                              {"up", QEvent::MouseButtonRelease},
                                              {"twice", QEvent::MouseButtonDblClick}};
    QPointF at;
    Qt::MouseButton button = Qt::LeftButton;
    Qt::KeyboardModifiers modifiers;
    bool down = false;
    for (const QString &word : QString(script).replace("click", "move down up").split(' ')) {
        const QPoint global = widget->mapToGlobal(at.toPoint());
        if (const std::optional<QPointF> known = place(word)) {
            at = *known;
        } else if (word.contains(',')) {
            const QStringList by = word.mid(word[0] == '+').split(',');
            at = (word[0] == '+' ? at : QPointF()) + QPointF(by[0].toDouble(), by[1].toDouble());
        } else if (buttons.contains(word)) {
            button = buttons[word], down = false;
        } else if (held.contains(word) || word == "none") {
            modifiers = held.contains(word) ? modifiers | held[word] : Qt::NoModifier;
        } else if (word == "wheel" || word == "back") {
            QWheelEvent e(at, global, {}, {0, word == "wheel" ? 120 : -120}, {}, modifiers,
                          Qt::NoScrollPhase, false);
            QCoreApplication::sendEvent(widget, &e);
            after();
        } else if (events.contains(word)) {
            const QEvent::Type type = events[word];
            down = type == QEvent::MouseMove ? down : type != QEvent::MouseButtonRelease;
            QMouseEvent e(type, at, global, type == QEvent::MouseMove ? Qt::NoButton : button,
                          down ? button : Qt::NoButton, modifiers);
            QCoreApplication::sendEvent(widget, &e);
            after();
        } else {
            const bool both = word.size() == 1 || word[0] >= 'A';
            const int key = QKeySequence(word.mid(both ? 0 : 1))[0];
            const Qt::KeyboardModifiers own(key & int(Qt::KeyboardModifierMask));
            if (both || word[0] == '+')
                QTest::keyPress(widget, Qt::Key(key & ~int(own)), modifiers | own);
            if (both || word[0] == '-')
                QTest::keyRelease(widget, Qt::Key(key & ~int(own)), modifiers | own);
            after();
        }
    }
}

} // namespace host

#endif
