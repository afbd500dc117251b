// SPDX-License-Identifier: MIT
#ifndef HOST_ITEM_MESH_TEXTURES_H
#define HOST_ITEM_MESH_TEXTURES_H

#include <vector>

#include <qopengl.h>

#include "host/read/mesh.h"

namespace host {

/// The textures of a mesh in the GL, with smaller copies for where they are seen from afar.
///
/// Every function needs the same current context, except byteSize(). Destroyed without destroy(),
/// the textures stay until their context ends.
class MeshTextures {
public:
    /// Copies the textures of @p mesh, scaled down to what the GL takes. Does nothing if that was
    /// done.
    void create(const Mesh &mesh);
    void destroy();

    quint64 byteSize() const { return bytes_; } ///< The smaller copies included.

    /// Covers what is drawn next as @p cover says. Its colour, lit or not, multiplies the texture's
    /// or, of a marked part, shows through it. Without textures it does nothing; else it writes the
    /// state of GL_TEXTURE_BIT and the alpha test.
    void cover(const Cover &cover, bool isMarked) const;

private:
    std::vector<GLuint> names_;
    quint64 bytes_ = 0;
};

} // namespace host

#endif
