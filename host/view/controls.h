// SPDX-License-Identifier: MIT
#ifndef HOST_VIEW_CONTROLS_H
#define HOST_VIEW_CONTROLS_H

#include <functional>

#include <QList>
#include <QObject>
#include <QPointF>
#include <QPointer>

#include "host/item/steering.h"

class QAction;

namespace host {

/// The person's hands on the items of one scene object: bindings, made by name, that turn keys,
/// drags and wheel steps into steering of the item under the pointer. It works on an object with
/// one view and on one with tiles alike: the GLW that fires says which item is meant.
class Controls : public QObject {
    Q_OBJECT
public:
    using Lookup = std::function<Steering *(GLW *)>;
    using Peers = std::function<QList<GLW *>(GLW *)>;

    /// Binds everything on @p scene. @p steering gives that of a GLW, null where there is none yet.
    /// On an object that is @p single, Control+drag rolls, as R+drag does anyway, a double click
    /// focuses, Control+wheel zooms a plot along y, arrows, + and - steer, and keys are heard with
    /// the pointer outside of the window too; on one with tiles these belong to the tiles. Every
    /// drag ends where its button is let go, be it over another object or none.
    Controls(QObject *scene, Lookup steering, bool single, QObject *parent);

    /// What moves along when a GLW is steered, that one included; by default just itself. With
    /// more than one, the others do what the first one does, each in its own pixels.
    void setPeers(Peers peers) { peers_ = std::move(peers); }

    /// What a person can do that no binding is for, as actions with texts, for the list of
    /// bindings.
    const QList<QAction *> &hints() const { return hints_; }

    bool eventFilter(QObject *object, QEvent *event) override;

    /// The middle of the pixel that @p mouse names: its y counts the rows below and the pixel's
    /// own.
    static QPointF middleOf(const Mouse &mouse) { return {mouse.x + 0.5, mouse.y - 0.5}; }
    /// The pointer in the pixels of @p glw: from its lower-left corner, y upwards, the middle of
    /// the pixel. @p mouse is the record as the window holds it between events.
    static QPointF pointerIn(const GLW *glw, const Mouse &mouse);

signals:
    void steered(GLW *glw);                 ///< Something is to be drawn anew.
    void areaDragged(GLW *glw);             ///< The record's rectangle has another size.
    void areaEnded(GLW *glw, bool through); ///< It is complete, or will be once the event is over;
                                            ///< the record holds it until somebody ends it.
    void menuAsked(GLW *glw);               ///< The right button was released over @p glw.
    void pressed(GLW *glw);                 ///< The left button alone went down.
    /// It went up where it had gone down, within a few pixels; @p at counts in the pixels of @p
    /// glw.
    void clicked(GLW *glw, const QPointF &at, Qt::KeyboardModifiers modifiers);

public slots:
    void Fit(GLW *glw);
    void Home(GLW *glw);
    void LookFront(GLW *glw) { look(glw, Steering::Side::Front); }
    void LookBack(GLW *glw) { look(glw, Steering::Side::Back); }
    void LookLeft(GLW *glw) { look(glw, Steering::Side::Left); }
    void LookRight(GLW *glw) { look(glw, Steering::Side::Right); }
    void LookTop(GLW *glw) { look(glw, Steering::Side::Top); }
    void LookBottom(GLW *glw) { look(glw, Steering::Side::Bottom); }
    void ToggleProjection(GLW *glw);
    void HoldRoll(GLW *glw, bool held);
    void Step(GLW *glw); ///< Orbits or pans by a step, as the action that fires says.
    void Nearer(GLW *glw) { zoomMiddle(glw, 1); }
    void Farther(GLW *glw) { zoomMiddle(glw, -1); }

    void Orbit(GLW *glw, bool held);
    void Pan(GLW *glw, bool held);
    void Roll(GLW *glw, bool held);
    void ZoomIn(GLW *glw) { zoom(glw, 1); }
    void ZoomOut(GLW *glw) { zoom(glw, -1); }
    void Focus(GLW *glw, bool pressed);
    void Menu(GLW *glw, bool pressed);
    void SelectArea(GLW *glw, bool held) { selectArea(glw, held, false); }
    void SelectThrough(GLW *glw, bool held) { selectArea(glw, held, true); }

private:
    void bindKeys(QObject *scene);
    void bindPointer(QObject *scene);
    void bindSteps(QObject *scene);
    void endDrags();
    void bringPointerIn();
    void zoomMiddle(GLW *glw, float steps);
    void look(GLW *glw, Steering::Side side);
    void zoom(GLW *glw, float steps);
    void dragTo(GLW *glw, Steering::Drag kind, bool held);
    void tellClick(GLW *glw, bool held);
    void selectArea(GLW *glw, bool held, bool through);
    void forPeers(GLW *glw, const std::function<void(Steering *, GLW *)> &steer);

    QPointer<GLW> scene_;
    bool single_;
    Lookup steering_;
    Peers peers_;
    bool rollHeld_ = false;
    QPointer<GLW> dragged_; // keeps the drag when the pointer passes over another object
    Steering::Drag kind_ = Steering::Drag::Orbit;
    QPointF last_;            // window pixels, y upwards
    QPointer<GLW> areaOf_;    // where a rectangle began that is still dragged
    bool through_ = false;    // it takes what is covered as well
    QPointer<GLW> pressedOn_; // where the left button went down
    QPointF pressedAt_;
    QList<QAction *> hints_;
    bool travelled_ = false; // since the left button went down
};

} // namespace host

#endif
