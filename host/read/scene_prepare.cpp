// SPDX-License-Identifier: MIT
#include "host/read/scene.h"

#include <cmath>
#include <utility>
#include <vector>

namespace host {
namespace {

bool usable(const aiVector3D &v)
{
    const auto fits = [](float x) {
        return std::isfinite(x) && std::abs(x) <= Mesh::maxCoordinate;
    };
    return fits(v.x) && fits(v.y) && fits(v.z);
}

bool usable(const aiFace &face, const std::vector<bool> &bad)
{
    for (unsigned i = 0; i < face.mNumIndices; ++i) {
        if (face.mIndices[i] >= bad.size() || bad[face.mIndices[i]])
            return false;
    }
    return face.mNumIndices > 0;
}

quint64 scrubMesh(aiMesh &mesh)
{
    std::vector<bool> bad(mesh.mVertices ? mesh.mNumVertices : 0);
    for (unsigned i = 0; i < bad.size(); ++i) {
        bad[i] = !usable(mesh.mVertices[i]);
        if (bad[i])
            mesh.mVertices[i] = {};
    }
    unsigned kept = 0;
    for (unsigned i = 0; i < mesh.mNumFaces; ++i) {
        aiFace &face = mesh.mFaces[i];
        if (!usable(face, bad))
            continue;
        if (kept != i) {
            std::swap(mesh.mFaces[kept].mIndices, face.mIndices);
            std::swap(mesh.mFaces[kept].mNumIndices, face.mNumIndices);
        }
        ++kept;
    }
    // The faces beyond the count keep their indices; the array's own deletion frees them.
    const quint64 dropped = mesh.mNumFaces - kept;
    mesh.mNumFaces = kept;
    return dropped;
}

/// Replaces @p array, one element for each vertex, by one element for each corner of each face.
template <class T> void spread(T *&array, const std::vector<unsigned> &corners)
{
    if (!array)
        return;
    T *spreadOut = new T[corners.size()];
    for (std::size_t i = 0; i < corners.size(); ++i)
        spreadOut[i] = array[corners[i]];
    delete[] array;
    array = spreadOut;
}

/// Gives each face its own vertices. Only positions and colours follow; nothing else is shown.
void unshare(aiMesh &mesh)
{
    std::vector<unsigned> corners;
    for (unsigned i = 0; i < mesh.mNumFaces; ++i) {
        aiFace &face = mesh.mFaces[i];
        for (unsigned k = 0; k < face.mNumIndices; ++k) {
            corners.push_back(face.mIndices[k]);
            face.mIndices[k] = unsigned(corners.size() - 1);
        }
    }
    if (corners.empty())
        return;
    spread(mesh.mVertices, corners);
    for (aiColor4D *&colours : mesh.mColors)
        spread(colours, corners);
    mesh.mNumVertices = unsigned(corners.size());
}

template <class T> void drop(T *&array)
{
    delete[] array;
    array = nullptr;
}

/// Takes out what is not shown and would not fit the vertices after unshare().
void dropUnshown(aiMesh &mesh)
{
    drop(mesh.mTangents);
    drop(mesh.mBitangents);
    for (aiVector3D *&coordinates : mesh.mTextureCoords)
        drop(coordinates);
    for (unsigned i = 0; i < mesh.mNumBones; ++i)
        delete mesh.mBones[i];
    mesh.mNumBones = 0;
    drop(mesh.mBones);
    for (unsigned i = 0; i < mesh.mNumAnimMeshes; ++i)
        delete mesh.mAnimMeshes[i];
    mesh.mNumAnimMeshes = 0;
    drop(mesh.mAnimMeshes);
}

/// Blender's files hold one normal for each vertex even of flat faces, so a cube looks like a ball.
bool hidesCreases(const std::string &format)
{
    return format.rfind("Blender", 0) == 0;
}

} // namespace

quint64 prepareScene(aiScene &scene, const std::string &format)
{
    quint64 dropped = 0;
    for (unsigned i = 0; i < scene.mNumMeshes; ++i) {
        aiMesh &mesh = *scene.mMeshes[i];
        dropped += scrubMesh(mesh);
        dropUnshown(mesh);
        if (hidesCreases(format))
            drop(mesh.mNormals);
        if (!mesh.mNormals)
            unshare(mesh);
    }
    scene.mFlags &= ~unsigned(AI_SCENE_FLAGS_NON_VERBOSE_FORMAT);
    return dropped;
}

} // namespace host
