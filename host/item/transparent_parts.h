// SPDX-License-Identifier: MIT
#ifndef HOST_ITEM_TRANSPARENT_PARTS_H
#define HOST_ITEM_TRANSPARENT_PARTS_H

#include <array>
#include <vector>

#include <QMatrix4x4>

#include "host/read/mesh.h"

namespace host {

/// How much of a part's colour covers what lies behind: 0 (not quite) to 1.
float opacityOf(const std::array<float, 4> &colour);
inline float opacityOf(const MeshPart &part)
{
    return opacityOf(part.colour);
}

/// Whether a part lets shine through what lies behind, all of it or where its texture does.
bool isTransparent(const MeshPart &part);

/// The parts of a mesh that let shine through what lies behind, in the order in which they are to
/// be drawn. Between parts only the distances of their middles count: of two that run through each
/// other one is drawn over the other.
class TransparentParts {
public:
    TransparentParts() = default;
    /// Each point p of @p mesh stands at (p - centre) * scale in the world.
    TransparentParts(const Mesh &mesh, const QVector3D &centre, float scale);

    bool isEmpty() const { return parts_.empty(); }

    /// Indices of parts, the farthest first; those at equal distances as in the mesh.
    /// @p view leads from the world to the eye, which looks along -Z. The distance is that from the
    /// eye or, if all lines of sight are @p parallel, that along them.
    std::vector<std::size_t> farFirst(const QMatrix4x4 &view, bool parallel) const;

private:
    struct Part {
        std::size_t index;
        QVector3D middle; // of the box around it, in the world
    };
    std::vector<Part> parts_;
};

} // namespace host

#endif
