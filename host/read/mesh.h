// SPDX-License-Identifier: MIT
#ifndef HOST_READ_MESH_H
#define HOST_READ_MESH_H

#include <array>
#include <cstddef>
#include <cstdlib>
#include <memory>
#include <vector>

#include <QString>
#include <QStringList>
#include <QVector3D>
#include <QtGlobal>

#include "host/read/rig.h"

namespace host {

/// A picture that covers surfaces. Its rows run upwards, since the coordinates on it do.
struct Texture {
    static constexpr quint32 maxSide = 4096; ///< Finer ones show nothing more in a view.

    quint32 width = 0, height = 0; ///< Pixels, each 1..maxSide.
    std::vector<quint8> pixels;    ///< R, G, B, A of each; colours are not multiplied by alpha.
};
using TexturePtr = std::shared_ptr<const Texture>;

/// How a texture covers a part: its colours multiply the part's.
struct Cover {
    enum Wrap : quint8 { Repeat, Mirror, Clamp }; ///< What lies beyond the picture.
    enum Alpha : quint8 {
        Ignored, ///< All of it is there.
        Cutout,  ///< What has less than cutoff is not there, the rest is opaque.
        Blended, ///< What lies behind shines through.
    };

    qint32 texture = -1; ///< Into Mesh::textures; negative: none.
    Wrap wrapS = Repeat, wrapT = Repeat;
    bool smooth = true; ///< Between the pixels of a picture that is seen larger.
    Alpha alpha = Ignored;
    float cutoff = 0.5f; ///< 0..1
};

/// A node of a file: what its maker grouped parts by.
struct MeshNode {
    static constexpr int longestName = 200; ///< Letters.

    QString name;      ///< Never empty.
    qint32 above = -1; ///< The node that it belongs to, into Mesh::nodes; -1: none.
};

/// A run of triangles, lines or points with one name and one material.
struct MeshPart {
    enum class Kind : quint8 { Triangles, Lines, Points };

    QString name;     ///< Of the mesh or its node in the file; never empty.
    QString material; ///< Empty if the file names none.
    std::array<float, 4> colour{0.8f, 0.8f, 0.8f, 1}; ///< Diffuse RGBA, each 0..1.
    quint32 firstIndex = 0;                           ///< Into Mesh::indices.
    quint32 indexCount = 0;      ///< Three for a triangle, two for a line, none for a point.
    Kind kind = Kind::Triangles; ///< Of all that is in it.
    quint32 firstVertex = 0;     ///< Of points, which need no indices; else 0.
    quint32 vertexCount = 0;     ///< The same.
    Cover cover{};               ///< Of triangles.
    qint32 node = -1;            ///< Into Mesh::nodes; -1: none.
};

/// Which axes of its file the axes of an upright mesh are.
///
/// One rule for all formats: a mesh stands upright, with +Y up, and the file's own up is
/// - what the file states, where its format lets it (COLLADA, FBX);
/// - else what the format lays down or is in use for it: +Z for 3D Studio (.3ds, .ase), 3MF, AMF,
///   Blender, DXF, IFC, IQM, MD5, MDC, MDL, MD2, MD3, OpenGEX, Quick3D, SMD, STL, terrain (.hmp)
///   and TrueSpace;
/// - else +Y.
/// Files of left-handed formats (DirectX .x, LightWave, Blitz3D) lie mirrored in z, so
/// that shapes are what their makers saw. Sizes, axes and coordinates that people are shown are the
/// file's own.
struct FileAxes {
    enum Axis { X, Y, Z };

    /// For x, y and z of the mesh the file's axis: 1, 2, 3 for its x, y, z; negative where the two
    /// run against each other. The second is up.
    std::array<qint8, 3> of{{1, 2, 3}};

    /// The axes of a mesh whose file has +@p up on top. With Z the mesh's x is the file's, with X
    /// its z is.
    static FileAxes standing(Axis up);

    Axis up() const { return Axis(std::abs(of[1]) - 1); }
    bool upIsNegative() const { return of[1] < 0; }
    bool mirrored() const;                           ///< The file's axes are left-handed.
    bool isValid() const;                            ///< Each axis of the file is there once.
    QVector3D toFile(const QVector3D &inMesh) const; ///< Exact, as is its inverse.
    QVector3D fromFile(const QVector3D &inFile) const;
};

/// The triangles, lines and points of one model file, ready to be put into buffers.
///
/// Frame: the world of the model, right-handed, +Y up; the transforms of all nodes are applied;
/// axes leads back to the file's own.
/// Units: those of the file. A triangle's front is counter-clockwise.
/// A plain value. What importMesh() and ContentReceiver give keeps these promises: there is a
/// triangle, a line or a point; parts of triangles come first, then those of lines, then those of
/// points; the parts of triangles and lines cover all indices in order, those of points the last
/// vertices in order; an index of a triangle is below normalCount(), one of a line below
/// firstPoint(), and neither is beyond the other's end: normalCount() <= firstPoint(). Coordinates
/// are finite and at most maxCoordinate in magnitude; normals are of unit length, to a thousandth.
/// There are coordinates on textures where there are textures, each at most maxUv in magnitude.
/// Many points of one part stand in such an order that each beginning of them is a fair sample.
struct Mesh {
    static constexpr float maxCoordinate = 1e15f; ///< Squares of sizes still fit into a float.
    static constexpr float maxUv = 1e6f;          ///< Beyond it a float does not tell pixels apart.
    static constexpr float noSize = 1e-30f;       ///< Up to here quotients would pass a float.

    std::vector<float> positions; ///< x, y, z of each vertex.
    std::vector<float> normals;   ///< x, y, z of each vertex of triangles; these come first.
    std::vector<quint8> colours;  ///< R, G, B, A of each vertex; empty: the parts' colours hold.
    std::vector<float> uvs;       ///< On a texture, from its lower left, for each normal; or empty.
    std::vector<quint32> indices; ///< Three for each triangle, then two for each line.
    std::vector<MeshPart> parts;  ///< In the order of their kinds, indices and vertices.
    std::vector<MeshNode> nodes;  ///< Each after the one above it; may be empty.
    std::vector<TexturePtr> textures; ///< Shared by copies of the mesh; none is null.
    QVector3D min{0, 0, 0};           ///< Lower corner of the box around all vertices.
    QVector3D max{0, 0, 0};           ///< Upper corner.
    FileAxes axes;                    ///< Where the file's own axes are in all this.
    /// What is added to toFile() of a position to give the file's coordinates, which may be too
    /// large for a float: surveyors count metres from the equator.
    std::array<double, 3> origin{{0, 0, 0}};
    std::shared_ptr<const Rig> rig; ///< How its triangles move; null: they do not.
    QStringList notes;              ///< What a person should know of the reading, in phrases.
    QString unit;                   ///< Of lengths, such as "mm"; empty: nothing says it.

    std::size_t vertexCount() const { return positions.size() / 3; }
    std::size_t normalCount() const { return normals.size() / 3; }
    std::size_t triangleCount() const;
    std::size_t lineCount() const;
    std::size_t firstPoint() const; ///< The first vertex that is a point; else vertexCount().
    std::size_t pointCount() const { return vertexCount() - firstPoint(); }
    std::size_t trianglePartCount() const; ///< Of the parts, so many are of triangles.
    /// The part that has what stands at @p index of the indices. Expects one of those.
    std::size_t partOfIndex(std::size_t index) const;
    QVector3D position(std::size_t vertex) const
    {
        return {positions[vertex * 3], positions[vertex * 3 + 1], positions[vertex * 3 + 2]};
    }
    std::size_t byteSize() const; ///< Memory held; that of names and notes by rule of thumb.
    std::size_t textureBytes() const;
    /// Of a mesh of so many.
    static std::size_t byteSize(std::size_t vertices, std::size_t normals, bool coloured,
                                std::size_t indices, std::size_t parts, bool covered = false,
                                std::size_t textureBytes = 0, std::size_t nodes = 0);

    QVector3D fileSize() const; ///< Along the file's own x, y and z.

    void findBounds(); ///< Sets min and max. Expects a vertex.

    /// Turns all of it so that the file's @p up is on top, whatever it was.
    void standOn(FileAxes::Axis up);
};

using MeshPtr = std::shared_ptr<const Mesh>;

/// The largest mesh that is read. What passes it is refused with a message: a file of a few
/// kilobytes can name the same mesh millions of times.
struct MeshLimits {
    quint64 indices = quint64(32) << 20;
    quint64 vertices = quint64(32) << 20;
    quint64 parts = quint64(1) << 16;
    quint64 nodes = quint64(1) << 20;
    int depth = 4096; ///< Of the tree of nodes.
    quint64 textures = 4096;
    quint64 textureBytes = quint64(256) << 20; ///< Pictures are scaled down until all fit.
};

} // namespace host

#endif
