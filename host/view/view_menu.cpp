// SPDX-License-Identifier: MIT
// A view's context menu, its list of bindings and what a person switches.
#include <algorithm>
#include <cmath>

#include <QAction>
#include <QKeyEvent>
#include <QMenu>
#include <QWheelEvent>

#include "host/view/view.h"
#include "host/view/window/binding.h"
#include "host/view/window/bindings_list.h"
#include "host/view/window/menu_tree.h"
#include "host/view/window/window.h"

namespace host {

void View::InitContextMenuTree(GLW *glw, QObject *tree)
{
    if (auto *menu = qobject_cast<MenuTree *>(tree)) {
        GLW *target = menuFor_ ? menuFor_.data() : glw;
        fillMenu(target, menu);
        emit menuOpening(menu);
        const QList<QAction *> all = bindings();
        menu->agreeWith(bindingRows(all), bindingRows(all, contents(target)));
    }
}

void View::askMenu(GLW *glw)
{
    menuFor_ = glw;
    // Once the dispatch is over: the menu runs its own event loop.
    QMetaObject::invokeMethod(scene_, "ContextMenu", Qt::QueuedConnection);
}

void View::ShowMenu()
{
    // Not the module's: that opens menus under the pointer alone.
    GLW *target = keyTarget();
    menuFor_ = target;
    MenuTree tree;
    InitContextMenuTree(mainGLW(), &tree);
    auto *menu = new QMenu(window_.widget());
    menu->setAttribute(Qt::WA_DeleteOnClose);
    tree.Build(menu);
    menu->popup(window_.widget()->mapToGlobal(target->geometry(false).center().toPoint()));
    menu->setActiveAction(menu->actions().value(0));
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
    if (contents(glw) & OnModel)
        fillModeMenu(tree);
    if (contents(glw) & OnPoints) {
        tree->add(tr("Wider points"), "Ctrl++", this, [this] { WiderPoints(); });
        tree->add(tr("Thinner points"), "Ctrl+-", this, [this] { ThinnerPoints(); });
    }
    if (contents(glw) & OnModel)
        tree->addCheck(tr("Less detail while it moves"), "Shift+W", display_.reduces, this,
                       [this] { ToggleReducing(); });
    tree->addCheck(tr("Mark what the pointer is on"), "M", display_.hover, this,
                   [this] { ToggleHover(); });
    tree->addCheck(tr("Dark background"), "B", display_.dark, this, [this] { ToggleBackdrop(); });
    tree->addSeparator();
}

void View::fillModeMenu(MenuTree *tree)
{
    using Mode = Display::Mode;
    const std::pair<QString, Mode> modes[] = {{tr("Shaded"), Mode::Shaded},
                                              {tr("Shaded with edges"), Mode::Edged},
                                              {tr("Hidden lines removed"), Mode::HiddenLines},
                                              {tr("Wireframe"), Mode::Wireframe}};
    MenuTree *ways = tree->addMenu(tr("Draw surfaces"));
    for (const auto &[text, mode] : modes)
        ways->addCheck(text, {}, display_.mode == mode, this, [this, mode = mode] {
            display_.mode = mode;
            changed();
        });
    ways->add(tr("Shaded, edges, hidden lines, wireframe"), "W", this, [this] { NextMode(); });
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

void View::ToggleReducing()
{
    display_.reduces = !display_.reduces;
    changed();
}

void View::NextMode()
{
    display_.mode = Display::after(display_.mode);
    changed();
}

void View::scalePoints(double factor)
{
    display_.pointScale = std::clamp(display_.pointScale * factor, 1 / 8.0, 16.0);
    changed();
}

void View::WiderPoints()
{
    scalePoints(std::sqrt(2));
}

void View::ThinnerPoints()
{
    scalePoints(std::sqrt(0.5));
}

void View::ToggleBackdrop()
{
    display_.dark = !display_.dark;
    changed();
}

void View::ToggleHover()
{
    display_.hover = !display_.hover;
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
    return window_.widget()->actions() + controls_->hints() + mainGLW()->actions();
}

int View::contents(GLW *glw) const
{
    int kinds = NoContent;
    for (const auto &[each, slot] : slots_)
        if (glw ? each == glw : each->property<bool>("visible"))
            kinds |= (slot.item->isSpatial() ? OnModel : OnPlot) |
                     (slot.item->hasPoints() ? OnPoints : NoContent) |
                     (slot.item->playback() ? OnAnimated : NoContent);
    return kinds;
}

void View::showBindings(bool on)
{
    showsBindings_ = on;
    firstBinding_ = 0;
    changed();
}

void View::paintList(QPainter *painter)
{
    const int last =
        paintBindings(painter, window_.widget()->rect(), tr("Controls"),
                      bindingRows(bindings(), contents()), firstBinding_, display_.theme());
    firstBinding_ = std::min(firstBinding_, last);
}

bool View::eventFilter(QObject *object, QEvent *event)
{
    if (showsBindings_ && scene_ && mainGLW()->property<bool>("visible") && scrollBindings(event))
        return true;
    if (LateClear::isDue(*event) && scene_ && fillsWindow() && mainGLW()->property<bool>("visible"))
        lateClear_.begin();
    return QObject::eventFilter(object, event);
}

/// While the list is shown, the wheel and the keys that move in a text are its own. Returns whether
/// @p event was one of these.
bool View::scrollBindings(QEvent *event)
{
    constexpr int step = 3, page = 8, all = 1000; // rows
    int by = 0;
    if (event->type() == QEvent::Wheel) {
        by = static_cast<QWheelEvent *>(event)->angleDelta().y() > 0 ? -step : step;
    } else if (event->type() == QEvent::KeyPress || event->type() == QEvent::ShortcutOverride) {
        const std::pair<int, int> keys[] = {{Qt::Key_Up, -1},        {Qt::Key_Down, 1},
                                            {Qt::Key_PageUp, -page}, {Qt::Key_PageDown, page},
                                            {Qt::Key_Home, -all},    {Qt::Key_End, all}};
        const auto *key = static_cast<QKeyEvent *>(event);
        for (const auto &[code, rows] : keys)
            if (key->key() == code && key->modifiers() == Qt::NoModifier)
                by = rows;
    }
    if (by == 0)
        return false;
    event->accept();
    if (event->type() != QEvent::ShortcutOverride) { // which asks alone whose key it is
        firstBinding_ = std::max(0, firstBinding_ + by);
        changed();
    }
    return true;
}

QAction *View::bindViewKey(const QString &key, const char *name, const QString &text,
                           QObject *receiver, const char *slot)
{
    viewKeys_.append(window_.bindKey(key, name, text, receiver, slot));
    return viewKeys_.last();
}

void View::bindDisplay()
{
    setContents(bindViewKey("W", "mode", tr("Shaded, edges, hidden lines, wireframe"), this,
                            SLOT(NextMode())),
                OnModel);
    setContents(bindViewKey("G", "lighting", tr("Lighting"), this, SLOT(ToggleLighting())),
                OnModel);
    setContents(bindViewKey("Shift+W", "reducing", tr("Less detail while it moves"), this,
                            SLOT(ToggleReducing())),
                OnModel);
    setContents(
        bindViewKey("M", "hover", tr("Mark what the pointer is on"), this, SLOT(ToggleHover())),
        OnAny);
    setContents(bindKey(scene_, "U", "up", tr("Next axis up"), this, SLOT(NextUp(GLW *))), OnModel);
    bindViewKey("B", "background", tr("Dark background"), this, SLOT(ToggleBackdrop()));
    bindPoints();
    const QString menu = tr("Menu");
    bindViewKey("Menu", "menu-key", menu, this, SLOT(ShowMenu()));
    bindViewKey("Shift+F10", "menu-shift", menu, this, SLOT(ShowMenu()));
}

/// A plus sign has another key on each keyboard.
void View::bindPoints()
{
    const auto bind = [this](const QString &key, const char *name, const QString &words,
                             const QString &text, const char *slot) {
        QAction *action = bindViewKey(key, name, text, this, slot);
        action->setProperty("words", words);
        setContents(action, OnPoints);
    };
    for (const char *key : {"Ctrl++", "Ctrl+Shift++", "Ctrl+=", "Ctrl+Num++"})
        bind(key, QByteArray("points-wider") + key, "Ctrl++", tr("Wider points"),
             SLOT(WiderPoints()));
    for (const char *key : {"Ctrl+-", "Ctrl+Num+-"})
        bind(key, QByteArray("points-thinner") + key, "Ctrl+-", tr("Thinner points"),
             SLOT(ThinnerPoints()));
}

} // namespace host
