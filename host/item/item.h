// SPDX-License-Identifier: MIT
#ifndef HOST_ITEM_ITEM_H
#define HOST_ITEM_ITEM_H

#include <optional>

#include <QByteArray>
#include <QMarginsF>
#include <QPointF>
#include <QString>

#include "GL/glw.h"
#include "host/item/display.h"
#include "host/item/part_marks.h"
#include "host/item/section.h"
#include "host/item/steering.h"
#include "host/read/mesh.h"
#include "host/series/plot.h"

class QPainter;

namespace host {

class Playback;

class ModelItem;

/// How a person left an item, as a value that outlives it: another item for the same file takes it
/// up.
struct ItemState {
    GL::Camera camera;
    QSizeF wholeIn;                   ///< The object's size, if all of it was shown; else empty.
    std::optional<FileAxes::Axis> up; ///< If it was chosen.
    std::optional<PlotState> plot;    ///< Of a plot.
    PartMarks parts;                  ///< Of a model.
    Section section;                  ///< Of a model.
};

/// What one drawing object (GLW) shows: a model, a plot. It draws and picks there; how it is
/// steered is its steering's.
///
/// Pixels count from the object's lower-left corner, y upwards, in logical pixels. The lights of
/// the object are the item's to set.
class Item {
public:
    Item() = default;
    Item(const Item &) = delete;
    Item &operator=(const Item &) = delete;
    virtual ~Item() = default;

    virtual QString name() const = 0;         ///< Of the file, without its folder.
    virtual QString details() const = 0;      ///< Counts and sizes, in one line; what was not read.
    virtual QString underPointer() const = 0; ///< What the pointer is on; may be empty.
    virtual quint64 count() const = 0;        ///< Triangles, points, samples: for sorting.
    virtual quint64 byteSize() const = 0;     ///< Memory held, GL's included.
    virtual bool paintsTitle() const { return false; } ///< Whether the name is part of its picture.

    /// Whether its picture may name the file: not where something around it does. True at first.
    virtual void setTitled(bool) {}

    /// Pixels at the object's edges over which something else lies: views of the whole keep clear
    /// of them.
    virtual void setInsets(const QMarginsF &) {}

    /// What a pass tells an item.
    struct Pass {
        bool moved = false;   ///< The view, or the item by itself.
        bool reduces = false; ///< See Display.
        double seconds = 0;   ///< Since the last pass.
        double took = 0;      ///< Seconds that the last frame took until it was on the screen.
    };
    /// Called once a pass, after the steering advanced. Returns whether it is to be drawn anew.
    virtual bool passed(const Pass &) { return false; }
    /// Whether the last frame on the screen showed less than all, since the view moved: the passes
    /// must go on, until it is drawn anew.
    virtual bool isReduced() const { return false; }

    /// Whether something is under way that will show by itself, so that passes must go on.
    virtual bool isBusy() const { return false; }

    virtual ModelItem *model() { return nullptr; } ///< This, if it is a model.
    virtual const ModelItem *model() const { return nullptr; }
    /// Whether all that a picture shows of it is there.
    virtual bool isWhole() const { return true; }

    /// Lets what moves by itself move on by @p seconds. Returns whether it is to be drawn anew.
    /// Needs the GL context.
    virtual bool play(double) { return false; }
    /// Its animation; null where nothing can move.
    virtual Playback *playback() { return nullptr; }

    virtual Steering &steering() = 0;
    virtual ItemState state(GLW *glw)
    {
        return {glw->camera, steering().wholeIn(), chosenUp(), {}, {}, {}};
    }
    /// Expects init() to have run. What was whole is whole in an object of any size.
    virtual void restore(GLW *glw, const ItemState &state)
    {
        if (state.up)
            standOn(glw, *state.up);
        steering().restore(glw, state.camera, state.wholeIn);
    }

    // With the GL context current.
    virtual void init(GLW *glw) = 0; ///< Makes what drawing needs; sets lights and the first pose.
    virtual void release() = 0;      ///< Gives back what init() made in GL. init() may follow.
    virtual void draw3D(GLW *, const Display &) {}
    virtual void draw2D(GLW *, const Display &) {}
    virtual void paintForeground(GLW *, QPainter *, const Display &) {}

    /// What draw3D() and draw2D() draw from, written down, but for the object's camera, viewport
    /// and size, for the display, and for what the pointer is on: where that is equal, so are the
    /// pixels. Empty: these may be others in each frame.
    virtual QByteArray look(GLW *) const { return {}; }
    /// Draws over its picture, which draw3D() drew without hover, what the pointer is on. Expects a
    /// cleared depth buffer.
    virtual void drawMark(GLW *, const Display &) {}

    /// Finds what lies under @p pointer, or forgets it where there is none. Returns whether it is
    /// to be drawn anew.
    virtual bool pick3D(GLW *, const std::optional<QPointF> &) { return false; }
    virtual bool pick2D(GLW *, const std::optional<QPointF> &) { return false; }

    /// Which axes of its file the world's are; nothing where there are no such axes.
    virtual std::optional<FileAxes> axes() const { return {}; }
    /// Lets the file's +@p up point up from now on, and shows all of it. Needs the GL context after
    /// init().
    virtual void standOn(GLW *, FileAxes::Axis) {}
    /// What standOn() was last told; nothing: it stands as the rule for its format says.
    virtual std::optional<FileAxes::Axis> chosenUp() const { return {}; }

    virtual bool hasPoints() const { return false; } ///< Whether the width of points matters.
    /// The planes that cut it; null where nothing can be cut.
    virtual const Section *section() const { return nullptr; }
    virtual void setSection(const Section &) {}
    /// The planes that cut, as they stand in the world; those that do not are left out.
    virtual std::vector<SectionFrame> sectionFrames() const { return {}; }
    /// The plane that is asked for; expects a section().
    virtual CutPlane planeOf(const SectionRequest &) const { return {}; }
    /// Cuts it with the planes that are asked for; none, or nothing to cut, leaves it as it is.
    void cutBy(const QVector<SectionRequest> &requests)
    {
        if (requests.isEmpty() || !section())
            return;
        Section cut;
        for (const SectionRequest &request : requests)
            cut.planes.push_back(planeOf(request));
        setSection(cut);
    }
    /// A plane just below the face at a pixel, that cuts away what lies before it.
    virtual std::optional<CutPlane> planeAt(const GLW *, const QPointF &) const { return {}; }

    /// Whether it stands in three dimensions, so that one can look from the sides.
    virtual bool isSpatial() const { return false; }
    /// The file's units per pixel at the point looked at; 0 where that means nothing.
    virtual double unitsPerPixel(const GLW *) const { return 0; }

    /// Which parts of a model a rectangle selects.
    enum class Reach {
        Seen,   ///< Those that are not covered.
        Through ///< Those behind as well.
    };
    /// Selects what lies in the rectangle that is dragged, in the place of what was selected.
    /// Called within the object's pick passes, whose matrices show just that rectangle; the area is
    /// in the object's pixels.
    virtual void selectArea3D(GLW *, const QRectF &, Reach) {}
    virtual void selectArea2D(GLW *, const QRectF &) {}
    virtual void clearSelection() {}
    /// A click. Returns whether it did something.
    virtual bool click(GLW *, const QPointF &) { return false; }
};

} // namespace host

#endif
