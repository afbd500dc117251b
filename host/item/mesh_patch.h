// SPDX-License-Identifier: MIT
#ifndef HOST_ITEM_MESH_PATCH_H
#define HOST_ITEM_MESH_PATCH_H

#include <cstddef>
#include <vector>

#include <QVector3D>

namespace host {

/// Triangles and the places of their corners alone.
struct Patch {
    static constexpr std::size_t stride = 3 * sizeof(float); ///< Bytes from place to place.

    std::vector<float> positions;
    std::vector<quint32> vertices; ///< Which one each place is, where the triangles come from.
    std::vector<quint32> indices;  ///< Of places.

    std::size_t count() const { return vertices.size(); } ///< Of places.
};

/// Gathers patches of one mesh after the other, for which it needs room for a number per vertex.
class PatchGatherer {
public:
    /// The triangles from @p begin to @p end, whose corners are in @p positions.
    Patch gather(const std::vector<float> &positions, const quint32 *begin, const quint32 *end);

private:
    std::vector<quint32> slots_; // none, but while it gathers
};

/// Across a triangle to its front, however long: of the places that @p corners names.
QVector3D across(const float *positions, const quint32 *corners);

/// Whether a triangle, with this vector across it, looks where the normals of its corners do (1) or
/// the other way (-1); 0 for neither.
int facing(const QVector3D &across, const float *normals, const quint32 *corners);

} // namespace host

#endif
