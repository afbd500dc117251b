// SPDX-License-Identifier: MIT
#include "host/read/mesh.h"

namespace host {

std::size_t Mesh::byteSize() const
{
    return positions.size() * sizeof(float) + normals.size() * sizeof(float) + colours.size() +
           indices.size() * sizeof(quint32);
}

} // namespace host
