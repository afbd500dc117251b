// SPDX-License-Identifier: MIT
#ifndef HOST_ITEM_LEVEL_BUFFERS_H
#define HOST_ITEM_LEVEL_BUFFERS_H

#include <utility>
#include <vector>

#include <QOpenGLBuffer>

#include "host/item/background.h"
#include "host/item/mesh_levels.h"

namespace host {

/// The levels of a mesh at work: made in the background when they are first asked for, then kept,
/// and put into the GL as they are drawn. bind() and destroy() need the same current context.
class LevelBuffers {
public:
    /// Lets the levels of @p mesh be made, unless that was begun or it needs none: of a model that
    /// moves, as it stands without an animation. They hold however it stands, also in a pose.
    void request(const MeshPtr &mesh);
    bool lackedMemory() const { return made_.lackedMemory(); } ///< The whole is drawn.
    /// In memory and in the GL, of @p mesh: until the levels are there, about what they will take.
    quint64 byteSize(const Mesh &mesh) const;

    /// The finest level of at most @p most triangles, or else the coarsest; -1 if the whole @p mesh
    /// is to be drawn: it has no more, or no levels yet.
    int levelFor(const Mesh &mesh, std::size_t most) const;
    void choose(int level) { chosen_ = std::size_t(level); } ///< Expects one from levelFor().
    std::size_t triangleCount() const { return chosen().triangleCount(); } ///< Of the chosen one.
    void bind(); ///< Its indices, in place of the mesh's.
    /// Where in the chosen one a part of triangles begins, and how many indices it has.
    std::pair<quint32, quint32> run(std::size_t part) const;
    void destroy(); ///< Gives back what bind() made in GL. bind() may follow.

private:
    const MeshLevel &chosen() const { return made_.get()->levels[chosen_]; }

    Background<MeshLevels> made_;
    std::vector<QOpenGLBuffer> buffers_; // of the levels; those drawn before are created
    std::size_t chosen_ = 0;
};

} // namespace host

#endif
