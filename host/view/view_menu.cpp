// SPDX-License-Identifier: MIT
// A view's context menu, its list of bindings and what a person switches.
#include <QAction>

#include "host/view/view.h"
#include "host/view/window/binding.h"
#include "host/view/window/menu_tree.h"
#include "host/view/window/window.h"

namespace host {

void View::InitContextMenuTree(GLW *glw, QObject *tree)
{
    if (auto *menu = qobject_cast<MenuTree *>(tree)) {
        fillMenu(menuFor_ ? menuFor_.data() : glw, menu);
        emit menuOpening(menu);
    }
}

void View::askMenu(GLW *glw)
{
    menuFor_ = glw;
    // Once the dispatch is over: the menu runs its own event loop.
    QMetaObject::invokeMethod(scene_, "ContextMenu", Qt::QueuedConnection);
}

void View::fillMenu(GLW *glw, MenuTree *tree)
{
    const QPointer<GLW> target(glw); // it may be gone before an entry is chosen
    const auto steer = [controls = controls_, target](const char *slot) {
        return [controls, target, slot] {
            if (target)
                QMetaObject::invokeMethod(controls, slot, Q_ARG(GLW *, target));
        };
    };
    if (Item *shown = item(glw)) {
        tree->add(tr("Fit to the window"), "F", controls_, steer("Fit"));
        tree->add(tr("Back to the first view"), "Home", controls_, steer("Home"));
        MenuTree *sides = tree->addMenu(tr("Look from"));
        const std::pair<QString, const char *> views[] = {
            {tr("Front"), "LookFront"}, {tr("Back"), "LookBack"}, {tr("Left"), "LookLeft"},
            {tr("Right"), "LookRight"}, {tr("Top"), "LookTop"},   {tr("Bottom"), "LookBottom"}};
        int key = 0;
        for (const auto &[text, look] : views)
            sides->add(text, QString::number(++key), controls_, steer(look));
        tree->addCheck(tr("Orthographic"), "O", shown->steering().isOrthographic(glw), controls_,
                       steer("ToggleProjection"));
        fillUpMenu(glw, tree);
        tree->addSeparator();
    }
    tree->addCheck(tr("Lighting"), "G", display_.lighting, this, [this] { ToggleLighting(); });
    tree->addCheck(tr("Wireframe"), "W", display_.wireframe, this, [this] { ToggleWireframe(); });
    tree->addCheck(tr("Dark background"), "B", display_.dark, this, [this] { ToggleBackdrop(); });
    tree->addSeparator();
}

void View::fillUpMenu(GLW *glw, MenuTree *tree)
{
    const auto axes = item(glw)->axes();
    if (!axes)
        return;
    const QPointer<GLW> target(glw);
    MenuTree *ups = tree->addMenu(tr("Axis that points up"));
    for (const auto up : {FileAxes::X, FileAxes::Y, FileAxes::Z})
        ups->addCheck(QString("XYZ"[up]), {}, axes->up() == up, this,
                      [this, target, up] { standOn(target, up); });
    ups->add(tr("Next axis up"), "U", this, [this, target] { NextUp(target); });
}

void View::standOn(GLW *glw, FileAxes::Axis up)
{
    if (Item *shown = item(glw)) {
        window_.widget()->makeCurrent();
        shown->standOn(glw, up);
        changed();
    }
}

void View::NextUp(GLW *glw)
{
    GLW *target = item(glw) ? glw : mainGLW(); // an overlay passes on its keys
    const auto axes = item(target) ? item(target)->axes() : std::nullopt;
    if (axes)
        standOn(target, FileAxes::Axis((axes->up() + 1) % 3));
}

void View::ToggleLighting()
{
    display_.lighting = !display_.lighting;
    changed();
}

void View::ToggleWireframe()
{
    display_.wireframe = !display_.wireframe;
    changed();
}

void View::ToggleBackdrop()
{
    display_.dark = !display_.dark;
    changed();
}

void View::setDisplay(const Display &display)
{
    display_ = display;
    changed();
}

QList<QAction *> View::bindings() const
{
    if (!scene_)
        return {};
    return window_.widget()->actions() + mainGLW()->actions();
}

void View::showBindings(bool on)
{
    showsBindings_ = on;
    changed();
}

void View::bindDisplay()
{
    bindKey(scene_, "W", "wireframe", tr("Wireframe"), this, SLOT(ToggleWireframe()));
    bindKey(scene_, "G", "lighting", tr("Lighting"), this, SLOT(ToggleLighting()));
    bindKey(scene_, "U", "up", tr("Next axis up"), this, SLOT(NextUp(GLW *)));
    bindKey(scene_, "B", "background", tr("Dark background"), this, SLOT(ToggleBackdrop()));
}

} // namespace host
