// SPDX-License-Identifier: MIT
#include "GL/action.h"

namespace {

/// Whether the participants of an activation are all still there; null ones need not be.
class Participants {
public:
    Participants(QAction *action, GLW *glw)
        : action_(action),
          glw_(glw),
          window_(glw ? glw->gl.data() : nullptr),
          hasGlw_(glw),
          hasWindow_(window_)
    {
    }
    bool alive() const { return action_ && (!hasGlw_ || glw_) && (!hasWindow_ || window_); }

private:
    QPointer<QAction> action_;
    QPointer<GLW> glw_;
    QPointer<GLWindow> window_;
    bool hasGlw_;
    bool hasWindow_;
};

} // namespace

KeyAction::KeyAction(QObject *parent, const char *name) : QAction(parent)
{
    if (name)
        setObjectName(QString::fromLatin1(name));
}

bool KeyAction::connect(QObject *obj, const char *slot)
{
    return connectFirst(this,
                        {SIGNAL(triggered()), SIGNAL(triggered(bool)),
                         SIGNAL(triggered(bool, bool)), SIGNAL(triggered(GLW *)),
                         SIGNAL(triggered(GLW *, bool)), SIGNAL(triggered(GLW *, bool, bool))},
                        obj, slot);
}

KeyAction *KeyAction::find(const QList<QAction *> &actions, int key)
{
    const QKeySequence sequence(key);
    for (QAction *entry : actions) {
        KeyAction *action = qobject_cast<KeyAction *>(entry);
        if (action && action->isEnabled() && action->match(sequence) > 0)
            return action;
    }
    return nullptr;
}

void KeyAction::activate(GLW *glw, bool state, bool repeat)
{
    const Participants all(this, glw);
    if (state) {
        emit triggered();
        if (!all.alive())
            return;
        emit triggered(glw);
        if (!all.alive())
            return;
    }
    if (!repeat) {
        emit triggered(state);
        if (!all.alive())
            return;
        emit triggered(glw, state);
        if (!all.alive())
            return;
    }
    emit triggered(state, repeat);
    if (all.alive())
        emit triggered(glw, state, repeat);
}

MouseAction::MouseAction(QObject *parent, const char *name) : QAction(parent)
{
    if (name)
        setObjectName(QString::fromLatin1(name));
}

void MouseAction::setBinding(quint32 binding, quint32 mask)
{
    _binding = binding;
    _mask = mask;
}

bool MouseAction::connect(QObject *obj, const char *slot)
{
    return connectFirst(this,
                        {SIGNAL(triggered()), SIGNAL(triggered(bool)), SIGNAL(triggered(Mouse *)),
                         SIGNAL(triggered(Mouse *, bool)), SIGNAL(triggered(GLW *)),
                         SIGNAL(triggered(GLW *, bool))},
                        obj, slot);
}

int MouseAction::match(quint32 word) const
{
    const quint32 relevant = (~_mask | _binding) & word;
    return relevant == _binding ? bit_count(relevant, 32) : -1;
}

MouseAction *MouseAction::find(const QList<QAction *> &actions, const Mouse &mouse, bool press)
{
    constexpr quint32 doubleClick = 0x100;
    const quint32 word = press ? quint32(mouse.modifier) + quint32(mouse.button) +
                                     (mouse.double_press ? doubleClick : 0)
                               : quint32(mouse.last_button) + quint32(mouse.last_modifier) +
                                     (mouse.double_click ? doubleClick : 0);
    MouseAction *best = nullptr;
    int bestScore = -1;
    for (QAction *entry : actions) {
        MouseAction *action = qobject_cast<MouseAction *>(entry);
        if (!action || !action->isEnabled())
            continue;
        const int score = action->match(word);
        if (score > bestScore) {
            bestScore = score;
            best = action;
        }
    }
    return best;
}

void MouseAction::activate(GLW *glw, Mouse &mouse, bool state)
{
    const Participants all(this, glw);
    if (state) {
        emit triggered();
        if (!all.alive())
            return;
        emit triggered(&mouse);
        if (!all.alive())
            return;
        emit triggered(glw);
        if (!all.alive())
            return;
    }
    emit triggered(state);
    if (!all.alive())
        return;
    emit triggered(&mouse, state);
    if (all.alive())
        emit triggered(glw, state);
}
