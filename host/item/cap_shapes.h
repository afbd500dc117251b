// SPDX-License-Identifier: MIT
#ifndef HOST_ITEM_CAP_SHAPES_H
#define HOST_ITEM_CAP_SHAPES_H

#include <array>
#include <cstddef>
#include <vector>

#include <QVector3D>

#include "host/item/section.h"
#include "host/item/solids.h"

namespace host {

/// A place on a plane, in world units.
using PlanePoint = std::array<double, 2>;

/// A plane in the world with two directions in it, at right angles. Each point p of a mesh stands
/// at (p - centre) * scale in the world.
class PlaneGrid {
public:
    /// @p plane is in the mesh's coordinates.
    PlaneGrid(const CutPlane &plane, const QVector3D &centre, float scale);

    /// The point of the plane that is nearest to a point of the mesh.
    PlanePoint onPlane(const QVector3D &inMesh) const;
    PlanePoint onPlaneOf(const QVector3D &inWorld) const;
    QVector3D inWorld(const PlanePoint &at) const;
    const QVector3D &right() const { return right_; }
    const QVector3D &up() const { return up_; }
    const QVector3D &normal() const { return normal_; }
    double height() const { return height_; } ///< Of the plane over the world's origin.

private:
    QVector3D normal_, right_, up_, centre_;
    double scale_, height_;
};

/// The face that a plane cuts through a solid.
struct CapShape {
    std::size_t solid = 0; ///< Into Solids::all().
    bool oriented = true;
    double area = 0; ///< In world units.
    /// Ends of pieces of the outline, two each. Of an oriented solid the inside lies to their left.
    std::vector<PlanePoint> outline;
    std::vector<PlanePoint> triangles; ///< What it covers, three corners each.

    /// Whether the point lies inside: as often to the left of the outline as to its right means it
    /// does not, or, of what has no orientation, an even number of crossings.
    bool holds(const PlanePoint &at) const;
};

/// The faces that a plane cuts through the @p solids of @p mesh, the largest first, so that what is
/// painted later lies inside of what is painted before. @p plane is in the mesh's coordinates.
std::vector<CapShape> capShapes(const Mesh &mesh, const Solids &solids, const CutPlane &plane,
                                const PlaneGrid &grid);

} // namespace host

#endif
