// SPDX-License-Identifier: MIT
#ifndef HOST_VIEW_SECTION_TOOL_H
#define HOST_VIEW_SECTION_TOOL_H

#include <functional>

#include <QList>
#include <QObject>
#include <QPointF>

#include "GL/glw.h"
#include "host/item/item.h"

class QAction;

namespace host {

class MenuTree;
class SectionHandles;

/// A person's way to the planes that cut what a single view shows: keys, wheel, menu, and the
/// handles that are dragged. Belongs to the view, whose object and handles outlive it.
class SectionTool : public QObject {
    Q_OBJECT
public:
    struct Subject {
        GLW *glw = nullptr;
        std::function<Item *()> item;  ///< What is cut; null if nothing is shown.
        std::function<void()> changed; ///< Another part of it is seen from now on.
    };
    SectionTool(Subject subject, SectionHandles &handles);

    void fillMenu(MenuTree *tree);

    /// The axis of the file along which one looks most, as a plane across it through the middle
    /// that cuts away what is before it. Axes that a plane of @p section stands across already are
    /// left out while there are others. @p forward is the line of sight in the file's axes.
    static SectionRequest facing(const QVector3D &forward, const Section &section);

    bool eventFilter(QObject *object, QEvent *event) override;

public slots:
    void Toggle(GLW *glw);  ///< Cuts or shows all; the first time with a plane across the view.
    void CutFace(GLW *glw); ///< Adds the plane of the face under the pointer, or across the view.
    void Flip(GLW *glw);    ///< Cuts away the other side.
    void Deeper(GLW *glw);  ///< A small step of the plane to the side that is kept.
    void Back(GLW *glw);    ///< The other way.

private:
    const Section *section() const;
    void set(const Section &section);
    void add(const CutPlane &plane);
    void addAcross(const SectionRequest &request);
    void addFacing();
    void addFace(const QPointF &at);
    void step(int steps);
    void remove();
    void removeAll();
    void listen();

    Subject subject_;
    SectionHandles &handles_;
    QList<QAction *> moving_; // they belong to others while nothing is cut
};

} // namespace host

#endif
