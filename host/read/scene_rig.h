// SPDX-License-Identifier: MIT
#ifndef HOST_READ_SCENE_RIG_H
#define HOST_READ_SCENE_RIG_H

#include <array>
#include <map>
#include <memory>
#include <string>
#include <unordered_map>
#include <vector>

#include <QStringList>

#include <assimp/scene.h>

#include "host/read/rig.h"

namespace host {

/// The rig of a scene while its mesh is made: which bones move each vertex, through the steps that
/// join and part vertices.
class SceneRig {
public:
    /// Four bones, the heaviest, and their weights.
    struct Hold {
        std::array<quint16, 4> bones{};
        std::array<float, 4> weights{1, 0, 0, 0};
    };

    /// The rig of @p scene, as the reader @p format left it, if something of it moves; else null.
    /// The skins are still in their meshes, and posed. @p notes takes why there is none.
    static std::unique_ptr<SceneRig> of(const aiScene &scene, const std::string &format,
                                        QStringList &notes);

    /// Writes what holds the vertices of skins into their meshes, as colours that nobody shows:
    /// there they follow the vertices. Expects that no vertex went since of().
    void attach(aiScene &scene) const;

    /// Takes in the next vertex of the triangles that are made: @p index of @p mesh where @p node
    /// shows it.
    void addVertex(const aiNode *node, const aiMesh &mesh, unsigned index);

    /// The rig of the vertices that were added, for a mesh made with @p turn; null if there are no
    /// vertices, or too many bones, which @p notes then tells.
    std::shared_ptr<const Rig> finish(const aiMatrix4x4 &turn, QStringList &notes);

private:
    Hold holdOf(const aiNode *node, const aiMesh &mesh, unsigned index);
    bool collectNodes(const aiScene &scene);
    void collectClips(const aiScene &scene);
    bool collectSkins(const aiScene &scene);
    bool moves(const Rig::Clip &clip, const aiScene &scene) const;
    void addClip(const aiAnimation &animation);
    quint16 boneOf(quint32 node, const aiMatrix4x4 &offset);

    std::shared_ptr<Rig> rig_ = std::make_shared<Rig>();
    std::vector<const aiNode *> sources_; // of the rig's nodes but the first
    std::unordered_map<const aiNode *, quint32> numbers_;
    std::unordered_map<std::string, quint32> names_;
    std::map<std::pair<quint32, std::array<float, 16>>, quint16> bones_;
    std::unordered_map<const aiMesh *, std::vector<Hold>> skins_;
    bool tooMany_ = false;
};

} // namespace host

#endif
