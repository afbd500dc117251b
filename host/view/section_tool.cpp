// SPDX-License-Identifier: MIT
#include "host/view/section_tool.h"

#include <algorithm>
#include <cmath>

#include <QAction>
#include <QEvent>

#include "host/item/camera_geometry.h"
#include "host/view/controls.h"
#include "host/view/overlay/section_handles.h"
#include "host/view/window/binding.h"
#include "host/view/window/menu_tree.h"

namespace host {

SectionTool::SectionTool(Subject subject, SectionHandles &handles)
    : subject_(std::move(subject)), handles_(handles)
{
    const auto key = [this](const QString &keys, const char *name, const QString &text,
                            const char *slot) {
        QAction *action = bindKey(subject_.glw, keys, name, text, this, slot);
        setContents(action, OnModel);
        return action;
    };
    key("C", "section", tr("Cut the model by a plane, or show all of it"), SLOT(Toggle(GLW *)));
    key("Shift+C", "section-face", tr("Cut through the face under the pointer"),
        SLOT(CutFace(GLW *)));
    key("X", "section-flip", tr("Cut away the other side"), SLOT(Flip(GLW *)));
    const QString words = tr("Ctrl+wheel, Ctrl+Up, Ctrl+Down");
    const QString text = tr("Move the cutting plane a little");
    moving_ << bindMouse(subject_.glw, WheelUp | Qt::ControlModifier, AnyModifier, "section-deeper",
                         text, this, SLOT(Deeper(GLW *)));
    moving_ << bindMouse(subject_.glw, WheelDown | Qt::ControlModifier, AnyModifier, "section-back",
                         text, this, SLOT(Back(GLW *)));
    moving_ << key("Ctrl+Up", "section-deeper-key", text, SLOT(Deeper(GLW *)));
    moving_ << key("Ctrl+Down", "section-back-key", text, SLOT(Back(GLW *)));
    for (QAction *action : qAsConst(moving_)) {
        action->setProperty("words", words);
        setContents(action, OnModel);
    }
    listen();
    connect(&handles_, &SectionHandles::moved, this, [this](int plane, double offset) {
        Section moved = *section();
        moved.planes[std::size_t(plane)].offset = offset;
        set(moved);
    });
    if (subject_.glw->gl)
        subject_.glw->gl->installEventFilter(this);
}

/// Before the window looks for who an event is for: what is shown may have changed.
bool SectionTool::eventFilter(QObject *object, QEvent *event)
{
    if (event->type() == QEvent::Wheel || event->type() == QEvent::KeyPress)
        listen();
    return QObject::eventFilter(object, event);
}

/// Where nothing is cut the wheel does what it does with no modifier.
void SectionTool::listen()
{
    const bool on = section() && section()->isCutting();
    for (QAction *action : qAsConst(moving_))
        action->setEnabled(on);
}

const Section *SectionTool::section() const
{
    const Item *shown = subject_.item();
    return shown ? shown->section() : nullptr;
}

void SectionTool::set(const Section &section)
{
    subject_.item()->setSection(section);
    listen();
    subject_.changed();
}

void SectionTool::add(const CutPlane &plane)
{
    Section more = *section();
    more.on = true;
    const auto same = std::find(more.planes.begin(), more.planes.end(), plane);
    std::size_t at = std::size_t(same - more.planes.begin());
    // A fourth one takes the place of the one touched last.
    if (at == Section::most)
        at = std::size_t(handles_.chosen());
    if (at == more.planes.size())
        more.planes.emplace_back();
    more.planes[at] = plane;
    set(more);
    handles_.choose(int(at));
}

void SectionTool::addAcross(const SectionRequest &request)
{
    if (section())
        add(subject_.item()->planeOf(request));
}

SectionRequest SectionTool::facing(const QVector3D &forward, const Section &section)
{
    const auto taken = [&](int axis) {
        return std::any_of(section.planes.begin(), section.planes.end(),
                           [axis](const CutPlane &plane) { return plane.axis() == axis; });
    };
    const bool all = taken(0) && taken(1) && taken(2);
    int best = -1;
    for (int k = 0; k < 3; ++k)
        if ((all || !taken(k)) && (best < 0 || std::abs(forward[k]) > std::abs(forward[best])))
            best = k;
    SectionRequest request;
    request.axis = FileAxes::Axis(best);
    request.lowerGoes = forward[request.axis] > 0;
    return request;
}

void SectionTool::addFacing()
{
    const QVector3D forward = CameraGeometry(subject_.glw->camera, QSizeF(1, 1)).forward();
    addAcross(facing(subject_.item()->axes().value_or(FileAxes()).toFile(forward), *section()));
}

void SectionTool::addFace(const QPointF &at)
{
    if (const auto plane = subject_.item()->planeAt(subject_.glw, at))
        add(*plane);
    else
        addFacing();
}

void SectionTool::Toggle(GLW *)
{
    if (!section())
        return;
    if (section()->planes.empty()) {
        addFacing();
        return;
    }
    Section turned = *section();
    turned.on = !turned.on;
    set(turned);
}

void SectionTool::CutFace(GLW *)
{
    // While an action fires the record counts from the object's corner.
    if (section() && subject_.glw->gl)
        addFace(Controls::middleOf(subject_.glw->gl->mouse));
}

void SectionTool::Flip(GLW *)
{
    if (!section() || !section()->isCutting())
        return;
    Section flipped = *section();
    CutPlane &plane = flipped.planes[std::size_t(handles_.chosen())];
    plane = plane.flipped();
    set(flipped);
}

void SectionTool::Deeper(GLW *)
{
    step(-1);
}

void SectionTool::Back(GLW *)
{
    step(1);
}

void SectionTool::step(int steps)
{
    constexpr double share = 1.0 / 500; // of the way through the model
    if (!section() || !section()->isCutting())
        return;
    const auto at = std::size_t(handles_.chosen());
    const SectionFrame frame = subject_.item()->sectionFrames()[at];
    Section moved = *section();
    double &offset = moved.planes[at].offset;
    offset =
        std::clamp(offset + (frame.most - frame.least) * share * steps, frame.least, frame.most);
    set(moved);
}

void SectionTool::remove()
{
    Section fewer = *section();
    fewer.planes.erase(fewer.planes.begin() + handles_.chosen());
    set(fewer);
}

void SectionTool::removeAll()
{
    set({});
}

void SectionTool::fillMenu(MenuTree *tree)
{
    if (!section())
        return;
    MenuTree *menu = tree->addMenu(tr("Section"));
    const bool any = !section()->planes.empty();
    menu->addCheck({}, "C", section()->isCutting(), this, [this] { Toggle(subject_.glw); });
    menu->addSeparator();
    for (const auto axis : {FileAxes::X, FileAxes::Y, FileAxes::Z})
        menu->add(tr("Plane across %1").arg("XYZ"[axis]), {}, this, [this, axis] {
            SectionRequest request;
            request.axis = axis;
            addAcross(request);
        });
    const QPointF pointer =
        subject_.glw->gl ? Controls::pointerIn(subject_.glw, subject_.glw->gl->mouse) : QPointF();
    menu->add({}, "Shift+C", this, [this, pointer] {
        if (section())
            addFace(pointer);
    });
    if (!any)
        return;
    menu->addSeparator();
    menu->add({}, "X", this, [this] { Flip(subject_.glw); });
    menu->add(tr("Remove this plane"), {}, this, [this] {
        if (section() && !section()->planes.empty())
            remove();
    });
    menu->add(tr("Remove all planes"), {}, this, [this] {
        if (section())
            removeAll();
    });
}

} // namespace host
