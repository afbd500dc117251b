// SPDX-License-Identifier: MIT
#ifndef HOST_READ_SCENE_UVS_H
#define HOST_READ_SCENE_UVS_H

#include <optional>
#include <string>

#include <assimp/material.h>
#include <assimp/scene.h>

namespace host {

/// What a material says of the picture that fills it: its name, or where it is in the model, and
/// how coordinates lead to it.
struct TextureUse {
    aiTextureType type = aiTextureType_BASE_COLOR;
    aiString name;
    aiTextureMapping mapping = aiTextureMapping_UV;
    unsigned channel = 0;
    aiTextureMapMode wrap[3]{aiTextureMapMode_Wrap, aiTextureMapMode_Wrap, aiTextureMapMode_Wrap};
};

/// The first picture of the base colour, else of the diffuse one.
std::optional<TextureUse> textureUseOf(const aiMaterial &material);

/// Where a mesh has the coordinates that @p use asks for; nothing if it has none.
std::optional<unsigned> channelOf(const aiMesh &mesh, const TextureUse &use);

/// Keeps of the coordinates of @p mesh those that @p use asks for, as its first, and moves them as
/// @p material says; they begin in the lower left. Expects them to be there.
void keepCoordinates(aiMesh &mesh, const aiMaterial &material, const TextureUse &use,
                     const std::string &format);

void dropCoordinates(aiMesh &mesh); ///< All of them.

/// Whether the reader @p format is that of glTF, whose materials say more than those of others.
bool isGltf(const std::string &format);

} // namespace host

#endif
