// SPDX-License-Identifier: MIT
#ifndef HOST_ITEM_SECTION_CAPS_H
#define HOST_ITEM_SECTION_CAPS_H

#include <optional>
#include <vector>

#include "host/item/cap_shapes.h"
#include "host/item/display.h"
#include "host/item/part_marks.h"
#include "host/item/pick_square.h"

namespace host {

struct Ray;

/// Where a ray meets a cut face.
struct CapHit {
    std::size_t part = 0; ///< Whose face it is.
    double distance = 0;  ///< From the ray's origin, in world units.
};

/// The faces that planes cut through the solids of a mesh, and their drawing by the fixed-function
/// pipeline. They are polygons, so they need no stencil buffer, and are found when a plane moves,
/// not in each frame.
class SectionCaps {
public:
    /// What faces and planes stand in.
    struct Place {
        const Section &section; ///< In the mesh's coordinates.
        const QVector3D &centre;
        float scale;
    };

    /// Finds the faces of those planes that are not as they were the last time.
    void update(const Mesh &mesh, const Solids &solids, const Place &place);
    void clear() { planes_.clear(); }

    /// Those of opaque solids first, before the mesh is drawn; those that let shine through what
    /// lies behind after it. Coplanar faces of several solids: the smaller ones are seen.
    enum Kind { Opaque, Transparent };
    /// What a drawing goes by. Hidden parts have no face, selected ones stand out.
    struct Look {
        const Display &display;
        const PartMarks &marks;
        double perPixel; ///< World units per window pixel, where the camera looks.
    };
    /// Expects the world's matrices to be set and the planes to clip in their order; while a
    /// plane's own faces are drawn, it does not. Leaves GL state as it was.
    void draw(Kind kind, const Solids &solids, const Look &look);

    /// Draws faces without light and hatch, where @p colourOf sets a colour for their part.
    void drawShapes(const Solids &solids, const PartMarks &marks, const PartColour &colourOf) const;

    /// Notes in @p met, one for each part, whose faces meet the square.
    void addMet(const PickSquare &square, const Solids &solids, const PartMarks &marks,
                std::vector<bool> &met) const;

    /// The first face that a ray meets from the side that is cut away; coordinates are the world's.
    std::optional<CapHit> hit(const Ray &ray, const Solids &solids, const Place &place,
                              const PartMarks &marks) const;

    void release(); ///< Gives back what draw() made in GL; needs the context if it ever ran.
    std::size_t byteSize() const;

private:
    struct Plane {
        CutPlane plane;
        PlaneGrid grid;
        std::vector<CapShape> shapes;
    };
    void drawPlane(const Plane &plane, Kind kind, const Solids &solids, const Look &look) const;
    void beginHatch();

    std::vector<Plane> planes_;
    unsigned hatch_ = 0; // a texture of OpenGL's, 0: none
};

} // namespace host

#endif
