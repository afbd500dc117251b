// SPDX-License-Identifier: MIT
#ifndef HOST_READ_SCENE_TEXTURES_H
#define HOST_READ_SCENE_TEXTURES_H

#include <string>
#include <vector>

#include <QStringList>

#include <assimp/scene.h>

#include "host/read/mesh.h"

namespace host {

class CompanionFiles;

/// What covers the meshes of a scene.
struct SceneTextures {
    std::vector<TexturePtr> textures;
    std::vector<Cover> covers; ///< By materials.
    QStringList notes;         ///< What could not be read, in at most two phrases.
};

/// Whether some mesh of @p scene is to be covered by a rule (as around a ball) and has to be given
/// coordinates for that before readTextures().
bool asksForCoordinates(const aiScene &scene);

/// Reads the base colours, else the diffuse ones, that materials of @p scene take from pictures,
/// inside the model or among @p files, each once. Those with a coordinate on a readable picture
/// keep just these, transformed as the material says, as their first; all others are taken out. The
/// colour of a material that is covered becomes what its picture is to be multiplied by. Pictures
/// are scaled down until all keep within @p limits. @p format is the reader's name.
SceneTextures readTextures(aiScene &scene, const std::string &format, CompanionFiles &files,
                           const MeshLimits &limits);

} // namespace host

#endif
