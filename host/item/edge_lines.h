// SPDX-License-Identifier: MIT
#ifndef HOST_ITEM_EDGE_LINES_H
#define HOST_ITEM_EDGE_LINES_H

#include <QOpenGLBuffer>

#include "host/item/background.h"
#include "host/item/display.h"
#include "host/item/mesh_edges.h"
#include "host/item/part_marks.h"

namespace host {

/// The edges of a mesh as lines over its surface: found in the background when they are first asked
/// for, then kept. draw() and destroy() need the same current context.
class EdgeLines {
public:
    /// Lets the edges of @p mesh be found, unless that was begun: of a model that moves, as it
    /// stands without an animation. They hold however it stands, also in a pose.
    void request(const MeshPtr &mesh);
    bool isBusy() const { return found_.isBusy(); }
    bool isFound() const { return found_.isStarted() && !found_.isBusy(); }
    bool lackedMemory() const { return found_.lackedMemory(); }
    quint64 byteSize() const;  ///< In memory and in the GL.
    std::size_t count() const; ///< Of those found by now.

    /// Draws what is found by now of the parts that are not hidden. Expects the vertices' array to
    /// be set and the depth test to be as for the surface. Leaves lighting, texture, alpha test,
    /// blending, the colours' array, line width, current colour and the bound buffer of indices
    /// changed.
    void draw(const Mesh &mesh, const Display &display, const PartMarks &marks);
    void destroy(); ///< Gives back what draw() made in GL, which may follow.

private:
    Background<MeshEdges> found_;
    QOpenGLBuffer indices_{QOpenGLBuffer::IndexBuffer};
};

} // namespace host

#endif
