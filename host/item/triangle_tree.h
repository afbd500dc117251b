// SPDX-License-Identifier: MIT
#ifndef HOST_ITEM_TRIANGLE_TREE_H
#define HOST_ITEM_TRIANGLE_TREE_H

#include <atomic>
#include <functional>
#include <limits>
#include <optional>
#include <vector>

#include "host/item/camera_geometry.h"
#include "host/measure/nearest_on_triangle.h"
#include "host/read/mesh.h"

namespace host {

/// Where a ray meets a mesh first.
struct TriangleHit {
    quint32 triangle = 0; ///< Its first index stands at three times this.
    double distance = 0;  ///< From the ray's origin, in the mesh's units.
};

/// The point of a mesh's triangles that is nearest to another point.
struct NearestTriangle {
    quint32 triangle = 0; ///< Of several that it lies on, any.
    NearestOnTriangle nearest;
    double distance = 0; ///< To the other point.
};

/// Finds the triangle that a ray meets first, or that is nearest to a point, in a time that hardly
/// grows with their number: boxes in boxes around the triangles. Coordinates are the mesh's.
class TriangleTree {
public:
    /// Builds the boxes around the triangles of @p mesh, about a second's work for a few million of
    /// them; setting @p cancel from another thread ends it early, with a tree that finds nothing.
    explicit TriangleTree(MeshPtr mesh, const std::atomic<bool> &cancel);

    /// The first triangle in the ray's way, seen from either side.
    std::optional<TriangleHit> nearest(const Ray &ray) const
    {
        return nearest(ray, [](const TriangleHit &) { return true; });
    }
    /// The first one that @p accept does not refuse. It is asked in no order, only of what is
    /// nearer than all that it accepted before, and must answer the same each time.
    using Accept = std::function<bool(const TriangleHit &)>;
    std::optional<TriangleHit> nearest(const Ray &ray, const Accept &accept) const;

    /// The nearest point, if one is no farther from @p p than @p within. A good guess for that
    /// spares most of the search.
    std::optional<NearestTriangle>
    nearestTo(const Vec &p, double within = std::numeric_limits<double>::infinity()) const;

    std::size_t byteSize() const;

private:
    struct Box {
        float min[3];
        float max[3];
    };
    struct Node {
        Box box;
        quint32 first; // of a leaf: into order_; of others: the second child, the first stands next
        quint32 count; // triangles of a leaf; 0 for others
    };

    Box boxOf(quint32 begin, quint32 end) const;
    void build(quint32 begin, quint32 end, const std::atomic<bool> &cancel);
    template <class Away, class Worth, class Take>
    void walk(const Away &away, const Worth &worth, const Take &take) const;
    double squareTo(quint32 node, const Vec &p) const;
    double meets(quint32 triangle, const double origin[3], const double direction[3]) const;

    MeshPtr mesh_;
    std::vector<quint32> order_; // triangles, those of each leaf together
    std::vector<Node> nodes_;
};

} // namespace host

#endif
