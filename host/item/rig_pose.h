// SPDX-License-Identifier: MIT
#ifndef HOST_ITEM_RIG_POSE_H
#define HOST_ITEM_RIG_POSE_H

#include <array>
#include <cstddef>
#include <vector>

#include "host/read/mesh.h"

namespace host {

/// Where the vertices of the triangles of a mesh with a rig are at a time of a clip, by linear
/// blend skinning: each goes with the weighted sum of its bones' matrices. Between keys places and
/// scales go straight, turns by the shortest way on the sphere (slerp).
///
/// Frame: that of the mesh. Normals are turned by the same matrices, right where these do not
/// stretch one direction more than another.
class RigPose {
public:
    /// Takes @p mesh as it stands without an animation. Expects it to have a rig, and to outlive
    /// this.
    explicit RigPose(const Mesh &mesh);

    /// Moves all vertices to where they are @p seconds after the beginning of the rig's clip
    /// @p clip; to where they stand without one if that is -1.
    void pose(int clip, double seconds);

    const std::vector<float> &positions() const { return positions_; } ///< x, y, z of each vertex.
    const std::vector<float> &normals() const { return normals_; }     ///< The same; unit length.

private:
    /// Three rows of four: turn and scale, then the shift.
    using Affine = std::array<float, 12>;

    void findMatrices(int clip, double seconds);
    Affine blend(std::size_t vertex) const;
    void findRest();

    const Mesh &mesh_;
    std::vector<Affine> bones_;      // at the time that was asked for last
    std::vector<float> rest_, face_; // places and directions that the bones move
    std::vector<bool> fixed_;        // vertices whose bones cannot be undone
    std::vector<float> positions_, normals_;
};

} // namespace host

#endif
