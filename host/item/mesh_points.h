// SPDX-License-Identifier: MIT
#ifndef HOST_ITEM_MESH_POINTS_H
#define HOST_ITEM_MESH_POINTS_H

#include <cstddef>

#include "host/item/display.h"
#include "host/item/part_marks.h"
#include "host/read/mesh.h"

namespace host {

/// How a frame draws points.
struct PointLook {
    double pixel = 0;     ///< A window pixel in the world, at the depth that one looks at.
    double spacing = 0;   ///< World: see pointSpacing().
    std::size_t most = 0; ///< Points of the mesh that are drawn: a fair sample if it has more.
};

/// About how far the points of @p mesh stand from their neighbours, in its units, if they cover the
/// sides of the box around it; 0 without points.
double pointSpacing(const Mesh &mesh);

/// How wide points are drawn, in window pixels: so that they touch, between a usual pixel and a
/// few, and then as @p display wants it.
double pointSize(const Mesh &mesh, const Display &display, const PointLook &look);

/// Draws the lines and points of @p mesh, without light and as opaque, from the buffers that are
/// bound: vertices in @p mesh's order and, from the byte @p colours on, their colours. Those
/// without a hue of their own take the theme's ink, and fade a little with the depth; what is
/// selected takes the accent. Expects the matrices to be set and the world's origin in the middle
/// of the mesh. Leaves GL state as it was.
void drawLinesAndPoints(const Mesh &mesh, std::size_t colours, const Display &display,
                        const PartMarks &marks, const PointLook &look);

/// Draws a part of lines or points with the state, the arrays and the indices that are set; of
/// points that @p share of them, 0 to 1. Leaves the depth range changed.
void drawThinPart(const MeshPart &part, double share = 1);

} // namespace host

#endif
