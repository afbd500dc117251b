// SPDX-License-Identifier: MIT
#ifndef HOST_ITEM_SOLIDS_H
#define HOST_ITEM_SOLIDS_H

#include <array>
#include <atomic>
#include <vector>

#include <QVector3D>

#include "host/read/mesh.h"

namespace host {

/// What of a mesh bounds a volume, so that a cut through it has a face.
///
/// A shell is what hangs together through corners at the same place. It is closed if each of its
/// edges is met by an even number of its triangles. What is open bounds nothing and is left out:
/// nobody could say where its inside ends. Several closed shells of one part are one solid; one
/// shell that runs through several parts is a solid of its own.
class Solids {
public:
    struct Solid {
        std::vector<quint32> parts;  ///< Into the mesh's parts; the one with most triangles first.
        std::array<float, 4> colour; ///< RGBA of that part, 0 to 1: the mean of what its
                                     ///< vertices show, textures and all.
        bool oriented = true;        ///< Each edge is run through as often one way as the other.
        std::size_t first = 0;       ///< Into triangles().
        std::size_t count = 0;
        QVector3D min, max; ///< The box around it, in the mesh's coordinates.
    };

    /// About a second's work for a few million triangles; setting @p cancel from another thread
    /// ends it early, with nothing found.
    Solids(const Mesh &mesh, const std::atomic<bool> &cancel);

    const std::vector<Solid> &all() const { return solids_; }
    /// Numbers of triangles, those of each solid together.
    const std::vector<quint32> &triangles() const { return triangles_; }
    std::size_t byteSize() const;

private:
    void describe(const Mesh &mesh, Solid &solid) const;

    std::vector<Solid> solids_;
    std::vector<quint32> triangles_;
};

} // namespace host

#endif
