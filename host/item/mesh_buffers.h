// SPDX-License-Identifier: MIT
#ifndef HOST_ITEM_MESH_BUFFERS_H
#define HOST_ITEM_MESH_BUFFERS_H

#include <QOpenGLBuffer>
#include <QVector3D>

#include "host/item/display.h"
#include "host/item/edge_lines.h"
#include "host/item/level_buffers.h"
#include "host/item/mesh_points.h"
#include "host/item/mesh_textures.h"
#include "host/item/part_marks.h"
#include "host/item/transparent_parts.h"
#include "host/read/mesh.h"

namespace host {

/// A mesh in buffers of the GL, and its drawing by the fixed-function pipeline.
///
/// Every function needs the same current context, except byteSize(). Destroyed without destroy(),
/// the buffers stay until their context ends.
class MeshBuffers {
public:
    /// Copies @p mesh, each point p as (p - centre) * scale. Does nothing if that was done.
    void create(const Mesh &mesh, const QVector3D &centre, float scale);
    void destroy();
    /// Lets its vertices stand elsewhere: as many as the mesh has, in its coordinates. The order of
    /// transparent parts stays. Does nothing before create().
    void move(const std::vector<float> &positions, const std::vector<float> &normals,
              const QVector3D &centre, float scale);
    bool isCreated() const { return vertices_.isCreated(); }

    quint64 byteSize() const { return bytes_; }

    /// Draws the mesh that create() got, without its hidden parts; the selected ones stand out.
    /// Opaque parts come first, then the transparent ones, the farthest first, of each the faces
    /// that look away first. Expects the light's place and the matrices to be set. Leaves GL state
    /// as it was.
    /// @p edges lie over surfaces that are drawn with their edges; null: there are none.
    /// @p level stands for the triangles, as it was chosen; null: all are drawn.
    void draw(const Mesh &mesh, const Display &display, const PartMarks &marks,
              EdgeLines *edges = nullptr, LevelBuffers *level = nullptr);

    /// Draws its lines and points, as drawLinesAndPoints() does: before draw(), since transparent
    /// parts cover what is there already.
    void drawThin(const Mesh &mesh, const Display &display, const PartMarks &marks,
                  const PointLook &look);

    /// Draws the bare shapes of those parts for which @p paint, which sets the colour, returns
    /// true; what is nearer covers the rest. Leaves GL state as it was.
    void drawShapes(const Mesh &mesh, const PartColour &paint);

private:
    void drawSurfaces(const Mesh &mesh, const Display &display, const PartMarks &marks);
    void drawHiddenLines(const Mesh &mesh, const Display &display, const PartMarks &marks);
    void drawTriangles(const Mesh &mesh, std::size_t index) const;
    void drawPart(const Mesh &mesh, std::size_t index, const Display &display, bool isMarked);
    void drawTransparent(const Mesh &mesh, const Display &display, const PartMarks &marks);

    QOpenGLBuffer vertices_{QOpenGLBuffer::VertexBuffer}; // positions, normals, colours, uvs
    QOpenGLBuffer indices_{QOpenGLBuffer::IndexBuffer};
    MeshTextures textures_;
    TransparentParts transparent_;
    const LevelBuffers *level_ = nullptr; // while draw() runs, what stands for the triangles
    quint64 bytes_ = 0;
};

} // namespace host

#endif
