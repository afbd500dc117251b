// SPDX-License-Identifier: MIT
#ifndef HOST_ITEM_THIN_TREE_H
#define HOST_ITEM_THIN_TREE_H

#include <atomic>
#include <functional>
#include <optional>
#include <vector>

#include "host/item/camera_geometry.h"
#include "host/read/mesh.h"

namespace host {

/// A ray with room around it: at the distance t everything within radius + slope * t of it.
struct Aim {
    Ray ray;
    double radius = 0;
    double slope = 0;
};

/// A point or line that is aimed at.
struct ThinHit {
    std::size_t part = 0; ///< Into the mesh's parts.
    QVector3D at;         ///< The point, or that of the line which is closest to the ray.
    double distance = 0;  ///< Along the ray, from its origin, in the mesh's units.
};

/// Finds lines and points, which no ray meets, near a ray. Coordinates are the mesh's.
class ThinTree {
public:
    /// Sorts the lines and points of @p mesh into boxes, some seconds' work for ten million of
    /// them; setting @p cancel from another thread ends it early, with a tree that finds nothing.
    explicit ThinTree(MeshPtr mesh, const std::atomic<bool> &cancel);

    /// What one means who points there: what is near to the origin, and what is close to the ray,
    /// which counts four times as much. @p accept can refuse it; it is asked in no order and must
    /// answer the same each time.
    using Accept = std::function<bool(const ThinHit &)>;
    std::optional<ThinHit> nearest(const Aim &aim, const Accept &accept) const;

    std::size_t byteSize() const;

private:
    struct Box {
        float min[3];
        float max[3];
    };
    struct Ends {
        const float *first;
        const float *second; // of a point the same
    };
    struct Best {
        ThinHit hit;
        double score;
    };

    Ends endsOf(quint32 element) const;
    void sort(const std::atomic<bool> &cancel);
    void gather();
    void tryLeaf(std::size_t leaf, const Aim &aim, const Accept &accept, Best &best) const;
    std::size_t partOf(quint32 element) const;
    static double leastScore(const Box &box, const Aim &aim);

    MeshPtr mesh_;
    quint32 lines_ = 0;
    std::vector<quint32> order_;           // lines, then points; neighbours together
    std::vector<std::vector<Box>> levels_; // around runs of order_; each around runs of the last
};

} // namespace host

#endif
