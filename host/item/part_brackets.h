// SPDX-License-Identifier: MIT
#ifndef HOST_ITEM_PART_BRACKETS_H
#define HOST_ITEM_PART_BRACKETS_H

#include <optional>
#include <vector>

#include <QVector3D>

#include "host/item/display.h"
#include "host/read/mesh.h"

namespace host {

/// The quiet mark of what the pointer is on: brackets at the corners of the box around a part. They
/// tell it from its neighbours and leave its colours alone.
class PartBrackets {
public:
    /// In the coordinates of the drawing, each point p as (p - centre) * scale. Expects a part of
    /// @p mesh, the same in every call. Leaves GL state as it was.
    void draw(const Mesh &mesh, std::size_t part, const QVector3D &centre, float scale,
              const Display &display);

private:
    struct Box {
        QVector3D min;
        QVector3D max;
    };
    const Box &boxOf(const Mesh &mesh, std::size_t part);

    std::vector<std::optional<Box>> boxes_; // of the mesh, made when they are asked for
};

} // namespace host

#endif
