// SPDX-License-Identifier: MIT
#ifndef HOST_ITEM_LEVEL_BUFFERS_H
#define HOST_ITEM_LEVEL_BUFFERS_H

#include <memory>
#include <utility>

#include <QOpenGLBuffer>

#include "host/item/background.h"
#include "host/item/rough_level.h"

namespace host {

/// The levels of a mesh at work: made in the background when they are first asked for, then kept,
/// and put into the GL as they are drawn. bind() and destroy() need the same current context.
class LevelBuffers {
public:
    /// Lets a rough level of @p mesh be made, and with @p all the others, unless that was begun or
    /// it needs none: of a model that moves, as it stands without an animation. They hold however
    /// it stands, also in a pose.
    void request(const MeshPtr &mesh, bool all = true);
    /// The whole is drawn, or a level that is too fine.
    bool lackedMemory() const { return making_.lackedMemory(); }
    /// In memory and in the GL, of @p mesh: until the levels are there, about what they will take.
    quint64 byteSize(const Mesh &mesh) const;

    /// The finest level of at most @p most triangles, or else the coarsest, but if it can be, one
    /// of at least @p least; -1 if the whole @p mesh is to be drawn: it has no more than @p most,
    /// or no levels yet. A number stands for the same level always.
    int levelFor(const Mesh &mesh, std::size_t most, std::size_t least = 0) const;
    void choose(int level) { chosen_ = level; } ///< Expects one from levelFor().
    std::size_t triangleCount() const { return chosen().triangleCount(); } ///< Of the chosen one.
    void bind(); ///< Its indices, in place of the mesh's.
    /// Where in the chosen one a part of triangles begins, and how many indices it has.
    std::pair<quint32, quint32> run(std::size_t part) const;
    void destroy(); ///< Gives back what bind() made in GL. bind() may follow.

private:
    const MeshLevel &chosen() const;
    bool hasRough() const { return rough_.get() && rough_.get()->triangleCount() > 0; }

    Background<MeshLevel> rough_;
    std::shared_ptr<MeshLevels> made_; // with a thread that may still add to them
    Background<bool> making_;
    QOpenGLBuffer buffer_{QOpenGLBuffer::IndexBuffer}; // of one level: it takes a moment to fill
    int held_ = -1;                                    // by it
    int chosen_ = 0;                                   // 0: the rough one
};

} // namespace host

#endif
