// SPDX-License-Identifier: MIT
#include "host/view/controls.h"

#include "GL/glwindowbase.h"
#include "host/ui/metrics.h"
#include "host/view/window/binding.h"

namespace host {

namespace {

/// The middle of the pixel that the record names: its y counts the rows below and the pixel's own.
QPointF middleOf(const Mouse &mouse)
{
    return QPointF(mouse.x + 0.5, mouse.y - 0.5);
}

/// While an action fires the record is in the pixels of the object that was hit.
QPointF windowPointer(const GLW *fired)
{
    return middleOf(fired->gl->mouse) + fired->glCorner();
}

} // namespace

Controls::Controls(QObject *scene, Lookup steering, bool single, QObject *parent)
    : QObject(parent), steering_(std::move(steering))
{
    bindPointer(scene, single);
    bindKeys(scene);
}

void Controls::bindPointer(QObject *scene, bool single)
{
    const auto bind = [&](quint32 word, quint32 mask, const char *name, const QString &verb,
                          const QString &text, const char *slot) {
        if (QAction *action = bindMouse(scene, word, mask, name, text, this, slot))
            action->setProperty("verb", verb);
    };
    const QString drag = tr("drag"), click = tr("click");
    const QString orbit = tr("Orbit"), pan = tr("Pan"), rollText = tr("Roll");
    const QString zoomText = tr("Zoom towards the pointer");
    bind(LeftButton, 0, "orbit", drag, orbit, SLOT(Orbit(GLW *, bool)));
    bind(MiddleButton, 0, "pan", drag, pan, SLOT(Pan(GLW *, bool)));
    bind(LeftButton | Qt::ShiftModifier, 0, "pan-left", drag, pan, SLOT(Pan(GLW *, bool)));
    if (single) {
        bind(LeftButton | Qt::ControlModifier, 0, "roll", drag, rollText, SLOT(Roll(GLW *, bool)));
        bind(LeftButton | DoubleClick, 0, "focus", {},
             tr("Make the point under the pointer the centre"), SLOT(Focus(GLW *, bool)));
    }
    bind(WheelUp, AnyModifier, "zoom-in", {}, zoomText, SLOT(ZoomIn(GLW *)));
    bind(WheelDown, AnyModifier, "zoom-out", {}, zoomText, SLOT(ZoomOut(GLW *)));
    bind(RightButton | Qt::ShiftModifier, 0, "select-area", drag,
         tr("Select what a rectangle holds"), SLOT(SelectArea(GLW *, bool)));
    bind(RightButton, 0, "menu", click, tr("Menu"), SLOT(Menu(GLW *, bool)));
}

void Controls::bindKeys(QObject *scene)
{
    struct Key {
        const char *key;
        const char *name;
        QString text;
        const char *slot;
    };
    const Key keys[] = {
        {"R", "roll-key", tr("Roll, with a left drag"), SLOT(HoldRoll(GLW *, bool))},
        {"F", "fit", tr("Fit to the window"), SLOT(Fit(GLW *))},
        {"Home", "home", tr("Back to the first view"), SLOT(Home(GLW *))},
        {"1", "front", tr("Look from the front"), SLOT(LookFront(GLW *))},
        {"2", "back", tr("Look from the back"), SLOT(LookBack(GLW *))},
        {"3", "left", tr("Look from the left"), SLOT(LookLeft(GLW *))},
        {"4", "right", tr("Look from the right"), SLOT(LookRight(GLW *))},
        {"5", "top", tr("Look from the top"), SLOT(LookTop(GLW *))},
        {"6", "bottom", tr("Look from the bottom"), SLOT(LookBottom(GLW *))},
        {"O", "projection", tr("Orthographic"), SLOT(ToggleProjection(GLW *))},
    };
    for (const Key &k : keys)
        bindKey(scene, k.key, k.name, k.text, this, k.slot);
}

QPointF Controls::pointerIn(const GLW *glw, const Mouse &mouse)
{
    return middleOf(mouse) - glw->glCorner();
}

void Controls::forPeers(GLW *glw, const std::function<void(Steering *, GLW *)> &steer)
{
    const QList<GLW *> peers = peers_ ? peers_(glw) : QList<GLW *>{glw};
    for (GLW *peer : peers) {
        if (Steering *steering = steering_(peer)) {
            steer(steering, peer);
            emit steered(peer);
        }
    }
}

void Controls::Fit(GLW *glw)
{
    forPeers(glw, [](Steering *steering, GLW *peer) { steering->fit(peer); });
}

void Controls::Home(GLW *glw)
{
    forPeers(glw, [](Steering *steering, GLW *peer) { steering->home(peer); });
}

void Controls::look(GLW *glw, Steering::Side side)
{
    forPeers(glw, [side](Steering *steering, GLW *peer) { steering->lookFrom(peer, side); });
}

void Controls::ToggleProjection(GLW *glw)
{
    forPeers(glw, [](Steering *steering, GLW *peer) { steering->toggleProjection(peer); });
}

void Controls::HoldRoll(GLW *, bool held)
{
    rollHeld_ = held;
}

void Controls::Orbit(GLW *glw, bool held)
{
    dragTo(glw, rollHeld_ ? Steering::Drag::Roll : Steering::Drag::Orbit, held);
    tellClick(glw, held);
}

/// Tells a click from a drag: a hand trembles by a pixel or two.
void Controls::tellClick(GLW *glw, bool held)
{
    const double tremble = Metrics::px(3);
    const QPointF now = windowPointer(glw);
    if (!held) {
        if (!travelled_)
            emit clicked(glw, now - glw->glCorner());
    } else if (glw->gl->mouse.button != glw->gl->mouse.last_button) {
        pressedAt_ = now;
        travelled_ = false;
        emit pressed(glw);
    } else if ((now - pressedAt_).manhattanLength() > tremble) {
        travelled_ = true;
    }
}

void Controls::Pan(GLW *glw, bool held)
{
    dragTo(glw, Steering::Drag::Pan, held);
}

void Controls::Roll(GLW *glw, bool held)
{
    dragTo(glw, Steering::Drag::Roll, held);
}

/// A binding fires for the press and for every motion while it is held. The press only notes the
/// place: what the record calls the motion since the event before may be of any length.
void Controls::dragTo(GLW *fired, Steering::Drag kind, bool held)
{
    if (!held || !fired->gl) {
        dragged_ = nullptr;
        return;
    }
    const QPointF now = windowPointer(fired);
    const bool pressed = fired->gl->mouse.button != fired->gl->mouse.last_button;
    if (pressed || !dragged_ || kind != kind_) {
        dragged_ = pressed || !dragged_ ? fired : dragged_.data();
        kind_ = kind;
        last_ = now;
        const QPointF at = now - dragged_->glCorner();
        forPeers(dragged_,
                 [&](Steering *steering, GLW *peer) { steering->beginDrag(peer, kind, at); });
        return;
    }
    const QPointF corner = dragged_->glCorner();
    const QPointF from = last_ - corner, to = now - corner;
    last_ = now;
    if (from != to)
        forPeers(dragged_,
                 [&](Steering *steering, GLW *peer) { steering->drag(peer, kind, from, to); });
}

void Controls::zoom(GLW *glw, float steps)
{
    const QPointF at = windowPointer(glw) - glw->glCorner();
    const auto modifiers = Qt::KeyboardModifiers(glw->gl->mouse.modifier);
    forPeers(glw,
             [&](Steering *steering, GLW *peer) { steering->zoom(peer, at, steps, modifiers); });
}

void Controls::Focus(GLW *glw, bool pressed)
{
    // The second press alone: motions while it is held fire too.
    if (!pressed || glw->gl->mouse.button == glw->gl->mouse.last_button)
        return;
    const QPointF at = windowPointer(glw) - glw->glCorner();
    forPeers(glw, [&](Steering *steering, GLW *peer) { steering->focus(peer, at); });
}

/// While the record's `area` is set, its reference position stays at the first corner.
void Controls::SelectArea(GLW *glw, bool held)
{
    if (!glw->gl)
        return;
    Mouse &mouse = glw->gl->mouse;
    if (!held) {
        if (mouse.area)
            emit areaEnded(glw);
        return;
    }
    if (mouse.button != mouse.last_button) {
        mouse.area = 1;
        mouse.x0 = mouse.x;
        mouse.y0 = mouse.y;
    }
    if (mouse.area)
        emit areaDragged(glw);
}

void Controls::Menu(GLW *glw, bool pressed)
{
    // Shift may be let go before the button.
    if (!pressed && glw->gl && glw->gl->mouse.area) {
        emit areaEnded(glw);
        return;
    }
    // On release: the window would never hear of one that ends in the open menu.
    if (!pressed)
        emit menuAsked(glw);
}

} // namespace host
