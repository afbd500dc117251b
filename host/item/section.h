// SPDX-License-Identifier: MIT
#ifndef HOST_ITEM_SECTION_H
#define HOST_ITEM_SECTION_H

#include <array>
#include <optional>
#include <vector>

#include <QVector3D>

#include "host/read/mesh.h"

namespace host {

/// A plane that cuts away what lies on the side that its normal points to.
///
/// Of the points p with p · normal = offset (the plane's Hessian form). Coordinates are the axes
/// and the units of a file, if not said otherwise, counted from Mesh::origin, so that a file that
/// is read again, or stood on another axis, is cut in the same place.
struct CutPlane {
    QVector3D normal{1, 0, 0}; ///< Of unit length.
    double offset = 0;         ///< Of the plane from the origin, along the normal.

    /// How far a point lies on the side that is cut away; negative: it is kept.
    double beyond(const QVector3D &point) const;
    CutPlane flipped() const { return {-normal, -offset}; } ///< The other side goes.
    /// The axis that it stands across; -1 if it is inclined.
    int axis() const;
    /// Where it stands on that axis, from Mesh::origin; expects that it stands across one.
    double place() const;

    bool operator==(const CutPlane &other) const
    {
        return normal == other.normal && offset == other.offset;
    }
};

/// Up to three planes; what one of them cuts away is gone. A plain value.
struct Section {
    static constexpr std::size_t most = 3;

    std::vector<CutPlane> planes; ///< At most so many.
    bool on = true;               ///< Whether they cut; else they are only remembered.

    bool isCutting() const { return on && !planes.empty(); }
    /// Whether @p point is left; @p without is a plane that is not asked, none if negative.
    bool keeps(const QVector3D &point, int without = -1) const;
    /// The same for a mesh whose file has these @p axes, in the mesh's coordinates.
    Section inMesh(const FileAxes &axes) const;
};

/// How a plane across one of the file's axes is asked for before the file is read.
struct SectionRequest {
    FileAxes::Axis axis = FileAxes::X;
    bool lowerGoes = false; ///< What lies below it on the axis is cut away, not what lies above.
    bool isShare = true; ///< The value is a share of the model's size, 0 to 1, else a coordinate.
    double value = 0.5;

    /// In a box around the model, from the same origin as the coordinate.
    CutPlane plane(const QVector3D &min, const QVector3D &max) const;
};

/// Reads "x", "x:30%" or "x:12.5", with a minus in front if what lies below goes. Returns nothing
/// if it is none of these.
std::optional<SectionRequest> parseSection(const QString &text);

/// How a plane stands in the world, to be shown and dragged.
struct SectionFrame {
    std::array<QVector3D, 4> corners; ///< Of a rectangle around what is cut, in order.
    QVector3D normal;                 ///< Of unit length, to the side that is cut away.
    double scale = 1;                 ///< World units for one of the file's.
    double least = 0; ///< The plane's offset where it has cut away all, in the file's units,
    double most = 0;  ///< and where it cuts away nothing.
    /// On the axis that it stands across, of Mesh::origin: see CutPlane::place().
    double origin = 0;
};

} // namespace host

#endif
