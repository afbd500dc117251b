// SPDX-License-Identifier: MIT
// What fires the controls, and on what content each of them does something.
#include <QAction>

#include "host/view/controls.h"
#include "host/view/window/binding.h"

namespace host {

void Controls::bindPointer(QObject *scene)
{
    const auto bind = [&](quint32 word, quint32 mask, const char *name, const QString &verb,
                          const QString &text, const char *slot) {
        QAction *action = bindMouse(scene, word, mask, name, text, this, slot);
        action->setProperty("verb", verb);
        return action;
    };
    const QString drag = tr("drag"), click = tr("click"), none;
    const QString pan = tr("Pan"), move = tr("Move the plot");
    setContents(bind(LeftButton, 0, "orbit", drag, tr("Orbit"), SLOT(Orbit(GLW *, bool))), OnAny,
                move);
    setContents(bind(MiddleButton, 0, "pan", drag, pan, SLOT(Pan(GLW *, bool))), OnAny, move);
    // On a plot, too, but there a plain drag does the same.
    setContents(
        bind(LeftButton | Qt::ShiftModifier, 0, "pan-left", drag, pan, SLOT(Pan(GLW *, bool))),
        OnModel);
    if (single_) {
        setContents(bind(LeftButton | Qt::ControlModifier, 0, "roll", drag, tr("Roll"),
                         SLOT(Roll(GLW *, bool))),
                    OnModel);
        setContents(bind(LeftButton | DoubleClick, 0, "focus", {},
                         tr("Make the point under the pointer the centre"),
                         SLOT(Focus(GLW *, bool))),
                    OnModel);
    }
    const auto wheel = [&](quint32 modifier, const char *name, const QString &words,
                           const QString &text, int contents) {
        for (const bool forward : {true, false}) {
            const QByteArray full = QByteArray(forward ? "zoom-in" : "zoom-out") + name;
            QAction *action = bind((forward ? WheelUp : WheelDown) | modifier, AnyModifier, full,
                                   {}, text, forward ? SLOT(ZoomIn(GLW *)) : SLOT(ZoomOut(GLW *)));
            action->setProperty("words", words);
            setContents(action, contents);
        }
    };
    wheel(0, "", single_ ? tr("wheel") : tr("wheel, with Alt where that scrolls"),
          tr("Zoom towards the pointer"), OnAny);
    wheel(Qt::ShiftModifier, "-x", tr("Shift+wheel"), tr("Zoom along x alone"), OnPlot);
    if (single_)
        wheel(Qt::ControlModifier, "-y", tr("Ctrl+wheel"), tr("Zoom along y alone"), OnPlot);
    setContents(bind(RightButton | Qt::ShiftModifier, 0, "select-area", drag,
                     tr("Select what a rectangle holds"), SLOT(SelectArea(GLW *, bool))),
                OnAny);
    if (single_) {
        QAction *through =
            bind(RightButton | Qt::ShiftModifier | Qt::AltModifier, 0, "select-through", drag,
                 tr("The same, what is covered too"), SLOT(SelectThrough(GLW *, bool)));
        setContents(through, OnModel);
    }
    bind(RightButton, 0, "menu", click, tr("Menu"), SLOT(Menu(GLW *, bool)));

    // The item under the pointer takes this click: there is nothing to bind.
    auto *legend = new QAction(tr("Show or hide its column"), this);
    legend->setProperty("words", tr("left click on a name of the legend"));
    setContents(legend, OnPlot);
    hints_.append(legend);
}

void Controls::bindKeys(QObject *scene)
{
    struct Key {
        const char *key;
        const char *name;
        QString text;
        const char *slot;
        int contents;
    };
    const Key keys[] = {
        {"R", "roll-key", tr("Roll, with a left drag"), SLOT(HoldRoll(GLW *, bool)), OnModel},
        {"F", "fit", tr("Fit to the window"), SLOT(Fit(GLW *)), OnAny},
        {"Home", "home", tr("Back to the first view"), SLOT(Home(GLW *)), OnAny},
        {"1", "front", tr("Look from the front"), SLOT(LookFront(GLW *)), OnModel},
        {"2", "back", tr("Look from the back"), SLOT(LookBack(GLW *)), OnModel},
        {"3", "left", tr("Look from the left"), SLOT(LookLeft(GLW *)), OnModel},
        {"4", "right", tr("Look from the right"), SLOT(LookRight(GLW *)), OnModel},
        {"5", "top", tr("Look from the top"), SLOT(LookTop(GLW *)), OnModel},
        {"6", "bottom", tr("Look from the bottom"), SLOT(LookBottom(GLW *)), OnModel},
        {"O", "projection", tr("Orthographic"), SLOT(ToggleProjection(GLW *)), OnModel},
    };
    for (const Key &k : keys)
        setContents(bindKey(scene, k.key, k.name, k.text, this, k.slot), k.contents);
    if (single_) // on a sheet these keys belong to the tiles
        bindSteps(scene);
}

/// What the pointer does, for the keyboard alone.
void Controls::bindSteps(QObject *scene)
{
    const std::pair<const char *, QPointF> ways[] = {
        {"Left", {-1, 0}}, {"Right", {1, 0}}, {"Up", {0, 1}}, {"Down", {0, -1}}};
    const auto bindArrows = [&](const QString &modifier, Steering::Drag drag, const QString &words,
                                const QString &text, int contents) {
        for (const auto &[arrow, way] : ways) {
            const QString key = modifier + arrow;
            QAction *action = bindKey(scene, key, key.toLatin1(), text, this, SLOT(Step(GLW *)));
            action->setProperty("way", way);
            action->setProperty("drag", int(drag));
            action->setProperty("words", words);
            setContents(action, contents, tr("Move the plot"));
        }
    };
    bindArrows({}, Steering::Drag::Orbit, tr("arrows"), tr("Orbit"), OnAny);
    bindArrows("Shift+", Steering::Drag::Pan, tr("Shift+arrows"), tr("Pan"), OnModel);
    for (const char *key : {"+", "Shift++", "=", "Num++"}) {
        QAction *action = bindKey(scene, key, QByteArray("nearer") + key, tr("Zoom in"), this,
                                  SLOT(Nearer(GLW *)));
        action->setProperty("words", QStringLiteral("+"));
        setContents(action, OnAny);
    }
    for (const char *key : {"-", "Num+-"}) {
        QAction *action = bindKey(scene, key, QByteArray("farther") + key, tr("Zoom out"), this,
                                  SLOT(Farther(GLW *)));
        action->setProperty("words", QStringLiteral("-"));
        setContents(action, OnAny);
    }
}

} // namespace host
