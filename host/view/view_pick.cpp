// SPDX-License-Identifier: MIT
// What lies under the pointer, and in the area that was dragged.
#include "host/view/view.h"
#include "host/view/window/window.h"

namespace host {

namespace {

/// All that decides what lies under the pointer, to tell whether to look again.
QVector<double> pickState(const GLW *glw, const std::optional<QPointF> &pointer)
{
    const GL::Camera &c = glw->camera;
    QVector<double> s{glw->width(),
                      glw->height(),
                      double(c.radius),
                      double(c.ortho),
                      c.rot.x,
                      c.rot.y,
                      c.rot.z,
                      c.setTarget.x,
                      c.setTarget.y,
                      c.setTarget.z,
                      glw->viewport.pos.x,
                      glw->viewport.pos.y,
                      glw->viewport.scale.x,
                      glw->viewport.scale.y};
    if (pointer)
        s << pointer->x() << pointer->y();
    return s;
}

} // namespace

std::optional<QPointF> View::hoverPointer(const GLW *glw) const
{
    if (!display_.hover || !glw->gl || !glw->gl->underMouse() || glw->gl->mouse.button != 0)
        return {};
    const QPointF at = Controls::pointerIn(glw, glw->gl->mouse);
    if (!QRectF(0, 0, glw->width(), glw->height()).contains(at) || !showsItemAt(glw, at))
        return {};
    return at;
}

/// Whether anything changed since the last picking; notes the present state.
bool View::pickIsDue(GLW *glw, Slot &slot, const std::optional<QPointF> &pointer)
{
    QVector<double> state = pickState(glw, pointer);
    if (state == slot.picked)
        return false;
    slot.picked = std::move(state);
    return true;
}

void View::Pick3D(GLW *glw)
{
    endSparing();
    if (advancesInPick())
        advance(glw);
    const auto found = slots_.find(glw);
    if (found == slots_.end())
        return;
    if (area_.isTaking() && itemsSelect() && glw->gl)
        found->second.item->selectArea3D(
            glw, area_.areaIn(glw), area_.goesThrough() ? Item::Reach::Through : Item::Reach::Seen);
    if (glw->gl && glw->gl->mouse.button != 0)
        return;
    Slot &slot = found->second;
    const bool busy = slot.item->isBusy(); // asked first: what it was busy with may end right now
    const std::optional<QPointF> pointer = hoverPointer(glw);
    if (pickIsDue(glw, slot, pointer) && slot.item->pick3D(glw, pointer))
        markChanged();
    if (busy)
        slot.picked.clear();
}

void View::forgetPointer(GLW *glw)
{
    const auto found = slots_.find(glw);
    if (found == slots_.end())
        return;
    found->second.picked.clear();
    found->second.item->pick3D(glw, {});
    found->second.item->pick2D(glw, {});
}

void View::Pick2D(GLW *glw)
{
    if (Item *shown = item(glw); shown && area_.isTaking() && itemsSelect() && glw->gl)
        shown->selectArea2D(glw, area_.areaIn(glw));
    if (Item *shown = item(glw); shown && shown->pick2D(glw, hoverPointer(glw)))
        markChanged();
}

} // namespace host
