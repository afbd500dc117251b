// SPDX-License-Identifier: MIT
#include "host/view/controls.h"

#include <algorithm>

#include <QKeyEvent>
#include <QMouseEvent>

#include "GL/glwindowbase.h"
#include "host/ui/metrics.h"

namespace host {

namespace {

/// While an action fires the record is in the pixels of the object that was hit.
QPointF windowPointer(const GLW *fired)
{
    return Controls::middleOf(fired->gl->mouse) + fired->glCorner();
}

} // namespace

Controls::Controls(QObject *scene, Lookup steering, bool single, QObject *parent)
    : QObject(parent),
      scene_(static_cast<GLW *>(scene)),
      single_(single),
      steering_(std::move(steering))
{
    bindPointer(scene);
    bindKeys(scene);
    if (scene_->gl)
        scene_->gl->installEventFilter(this);
}

/// What is pressed over one object may be let go over another, in a gap or outside of the window,
/// where no binding hears of it.
bool Controls::eventFilter(QObject *object, QEvent *event)
{
    switch (event->type()) {
    case QEvent::MouseButtonPress:
        pressedOn_ = nullptr;
        break;
    case QEvent::MouseButtonRelease:
        endDrags();
        break;
    case QEvent::MouseMove:
        if (static_cast<QMouseEvent *>(event)->buttons() == Qt::NoButton)
            endDrags();
        break;
    case QEvent::KeyRelease:
        if (static_cast<QKeyEvent *>(event)->key() == Qt::Key_R &&
            !static_cast<QKeyEvent *>(event)->isAutoRepeat())
            rollHeld_ = false;
        break;
    case QEvent::KeyPress:
        bringPointerIn();
        break;
    case QEvent::FocusOut:
        rollHeld_ = false;
        break;
    default:
        break;
    }
    return QObject::eventFilter(object, event);
}

void Controls::endDrags()
{
    dragged_ = nullptr;
    if (areaOf_ && areaOf_->gl && areaOf_->gl->mouse.area)
        emit areaEnded(areaOf_, through_);
    areaOf_ = nullptr;
}

/// Keys are for the only object there is, though the pointer may have left the window: the record
/// is left at the edge then.
void Controls::bringPointerIn()
{
    if (!single_ || !scene_ || !scene_->gl || scene_->gl->mouse.button != 0)
        return;
    const QRectF r = scene_->geometry(false);
    Mouse &mouse = scene_->gl->mouse;
    const int height = scene_->gl->height();
    if (r.contains(QPointF(mouse.x, height - mouse.y)) || r.width() < 1 || r.height() < 1)
        return;
    mouse.x = std::clamp(mouse.x, int(r.left()), int(r.right()) - 1);
    mouse.y = height - std::clamp(height - mouse.y, int(r.top()), int(r.bottom()) - 1);
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

/// A step of a key: a drag from the middle, as far as the key's action says.
void Controls::Step(GLW *glw)
{
    const QObject *action = sender();
    if (!action)
        return;
    constexpr double share = 16; // of the height
    const QPointF way = action->property("way").toPointF();
    const auto kind = Steering::Drag(action->property("drag").toInt());
    forPeers(glw, [&](Steering *steering, GLW *peer) {
        const QPointF middle(peer->width() / 2, peer->height() / 2);
        steering->beginDrag(peer, kind, middle);
        steering->drag(peer, kind, middle, middle + way * (peer->height() / share));
    });
}

void Controls::zoomMiddle(GLW *glw, float steps)
{
    forPeers(glw, [steps](Steering *steering, GLW *peer) {
        steering->zoom(peer, QPointF(peer->width() / 2, peer->height() / 2), steps, {});
    });
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
        const bool here = pressedOn_ == glw;
        pressedOn_ = nullptr;
        if (here && !travelled_)
            emit clicked(glw, now - glw->glCorner(),
                         Qt::KeyboardModifiers(glw->gl->mouse.modifier));
    } else if (glw->gl->mouse.button != glw->gl->mouse.last_button) {
        pressedAt_ = now;
        pressedOn_ = glw;
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
    tellClick(glw, held);
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
void Controls::selectArea(GLW *glw, bool held, bool through)
{
    if (!glw->gl)
        return;
    Mouse &mouse = glw->gl->mouse;
    if (!held)
        return; // its end was heard already
    if (mouse.button != mouse.last_button) {
        mouse.area = 1;
        areaOf_ = glw;
        through_ = through;
        mouse.x0 = mouse.x;
        mouse.y0 = mouse.y;
    }
    if (mouse.area)
        emit areaDragged(glw);
}

void Controls::Menu(GLW *glw, bool pressed)
{
    // Shift may be let go before the button: then it ends an area.
    if (!pressed && glw->gl && glw->gl->mouse.area)
        return;
    // On release: the window would never hear of one that ends in the open menu.
    if (!pressed)
        emit menuAsked(glw);
}

} // namespace host
