// SPDX-License-Identifier: MIT
#include "host/read/scene.h"

#include <string>
#include <unordered_map>
#include <vector>

#include "host/read/scene_values.h"

namespace host {
namespace {

/// Where the nodes stand.
struct Stance {
    std::unordered_map<std::string, aiMatrix4x4> nodes;     // by name, the first of each
    std::unordered_map<const aiMesh *, aiMatrix4x4> meshes; // of the first node that shows it
};

Stance stanceOf(const aiScene &scene)
{
    struct Step {
        const aiNode *node;
        aiMatrix4x4 above;
    };
    Stance stance;
    std::vector<Step> steps;
    if (scene.mRootNode)
        steps.push_back({scene.mRootNode, {}});
    while (!steps.empty()) {
        const Step step = steps.back();
        steps.pop_back();
        const aiMatrix4x4 world = step.above * step.node->mTransformation;
        stance.nodes.emplace(step.node->mName.C_Str(), world);
        for (unsigned i = 0; i < step.node->mNumMeshes; ++i) {
            if (step.node->mMeshes[i] < scene.mNumMeshes)
                stance.meshes.emplace(scene.mMeshes[step.node->mMeshes[i]], world);
        }
        for (unsigned i = step.node->mNumChildren; i-- > 0;) {
            if (step.node->mChildren[i])
                steps.push_back({step.node->mChildren[i], world});
        }
    }
    return stance;
}

/// What the bones make of each vertex, in the mesh's own frame, and how much of it they hold.
struct Pose {
    std::vector<aiMatrix4x4> moves; // sums over the bones
    std::vector<float> weights;
};

void addBone(Pose &pose, const aiBone &bone, const aiMatrix4x4 &move)
{
    for (unsigned i = 0; i < bone.mNumWeights; ++i) {
        const aiVertexWeight &weight = bone.mWeights[i];
        if (weight.mVertexId >= pose.weights.size() || !(weight.mWeight > 0))
            continue;
        pose.moves[weight.mVertexId] = pose.moves[weight.mVertexId] + move * weight.mWeight;
        pose.weights[weight.mVertexId] += weight.mWeight;
    }
}

void applyPose(aiMesh &mesh, const Pose &pose)
{
    for (unsigned i = 0; i < mesh.mNumVertices; ++i) {
        if (!(pose.weights[i] > 0))
            continue;
        const aiMatrix4x4 move = pose.moves[i] * (1 / pose.weights[i]);
        mesh.mVertices[i] = move * mesh.mVertices[i];
        if (mesh.mNormals)
            mesh.mNormals[i] = aiMatrix3x3(move) * mesh.mNormals[i];
    }
}

void poseSkin(aiMesh &mesh, const Stance &stance)
{
    const auto own = stance.meshes.find(&mesh);
    if (own == stance.meshes.end() || !mesh.mVertices)
        return;
    aiMatrix4x4 fromWorld = own->second;
    fromWorld.Inverse();
    Pose pose;
    // The sums begin at zero, not at the identity.
    pose.moves.assign(mesh.mNumVertices, aiMatrix4x4() * 0.0f);
    pose.weights.assign(mesh.mNumVertices, 0);
    for (unsigned i = 0; i < mesh.mNumBones; ++i) {
        const aiBone &bone = *mesh.mBones[i];
        const auto node = stance.nodes.find(bone.mName.C_Str());
        if (node == stance.nodes.end())
            continue;
        const aiMatrix4x4 move = fromWorld * node->second * bone.mOffsetMatrix;
        if (isFinite(move))
            addBone(pose, bone, move);
    }
    applyPose(mesh, pose);
}

} // namespace

void poseSkins(aiScene &scene, const std::string &format)
{
    // This one reader, of MDL files, hands on vertices that stand where they belong.
    if (format.rfind("Quake Mesh", 0) == 0)
        return;
    Stance stance;
    for (unsigned i = 0; i < scene.mNumMeshes; ++i) {
        if (scene.mMeshes[i]->mNumBones == 0)
            continue;
        if (stance.nodes.empty())
            stance = stanceOf(scene);
        poseSkin(*scene.mMeshes[i], stance);
    }
}

} // namespace host
