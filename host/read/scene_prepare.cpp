// SPDX-License-Identifier: MIT
#include "host/read/scene.h"

#include <algorithm>
#include <cmath>
#include <utility>
#include <vector>

#include "host/read/scene_values.h"

namespace host {
namespace {

/// Takes out the faces that @p keep does not want; returns how many.
template <class Keep> quint64 keepFaces(aiMesh &mesh, const Keep &keep)
{
    unsigned kept = 0;
    for (unsigned i = 0; i < mesh.mNumFaces; ++i) {
        aiFace &face = mesh.mFaces[i];
        if (!keep(face))
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

quint64 scrubMesh(aiMesh &mesh)
{
    std::vector<bool> bad(mesh.mVertices ? mesh.mNumVertices : 0);
    for (unsigned i = 0; i < bad.size(); ++i) {
        bad[i] = !isUsable(mesh.mVertices[i]);
        if (bad[i])
            mesh.mVertices[i] = {};
    }
    return keepFaces(mesh, [&bad](const aiFace &face) {
        const auto good = [&bad](unsigned index) { return index < bad.size() && !bad[index]; };
        return face.mNumIndices > 0 &&
               std::all_of(face.mIndices, face.mIndices + face.mNumIndices, good);
    });
}

template <class T> void drop(T *&array)
{
    delete[] array;
    array = nullptr;
}

/// Takes out what is not shown, and would not fit the vertices after later steps.
void dropUnshown(aiMesh &mesh)
{
    drop(mesh.mTangents);
    drop(mesh.mBitangents);
    for (unsigned i = 1; i < AI_MAX_NUMBER_OF_COLOR_SETS; ++i)
        drop(mesh.mColors[i]);
    for (unsigned i = 0; i < mesh.mNumBones; ++i)
        delete mesh.mBones[i];
    mesh.mNumBones = 0;
    drop(mesh.mBones);
    for (unsigned i = 0; i < mesh.mNumAnimMeshes; ++i)
        delete mesh.mAnimMeshes[i];
    mesh.mNumAnimMeshes = 0;
    drop(mesh.mAnimMeshes);
}

/// What the faces of @p mesh are, as assimp says it.
unsigned typesOf(const aiMesh &mesh)
{
    unsigned types = 0;
    for (unsigned i = 0; i < mesh.mNumFaces; ++i) {
        const unsigned corners = mesh.mFaces[i].mNumIndices;
        types |= corners == 1   ? aiPrimitiveType_POINT
                 : corners == 2 ? aiPrimitiveType_LINE
                 : corners == 3 ? aiPrimitiveType_TRIANGLE
                                : aiPrimitiveType_POLYGON;
    }
    return types;
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
    const bool faceless = std::all_of(scene.mMeshes, scene.mMeshes + scene.mNumMeshes,
                                      [](const aiMesh *mesh) { return mesh->mNumFaces == 0; });
    for (unsigned i = 0; i < scene.mNumMeshes; ++i) {
        aiMesh &mesh = *scene.mMeshes[i];
        const bool cloud = mesh.mNumFaces == 0 && mesh.mNumVertices > 0 && mesh.mVertices &&
                           (faceless || mesh.mPrimitiveTypes == aiPrimitiveType_POINT);
        if (!cloud) // of a cloud, what cannot be used is left out later
            dropped += scrubMesh(mesh);
        mesh.mPrimitiveTypes = cloud ? unsigned(aiPrimitiveType_POINT) : typesOf(mesh);
        dropUnshown(mesh);
        if (hidesCreases(format))
            drop(mesh.mNormals);
    }
    return dropped;
}

MeshPart::Kind kindOf(const aiMesh &mesh)
{
    return mesh.mPrimitiveTypes & aiPrimitiveType_TRIANGLE ? MeshPart::Kind::Triangles
           : mesh.mPrimitiveTypes & aiPrimitiveType_LINE   ? MeshPart::Kind::Lines
                                                           : MeshPart::Kind::Points;
}

void finishScene(aiScene &scene)
{
    for (unsigned i = 0; i < scene.mNumMeshes; ++i) {
        aiMesh &mesh = *scene.mMeshes[i];
        const MeshPart::Kind kind = kindOf(mesh);
        const unsigned corners = kind == MeshPart::Kind::Triangles ? 3
                                 : kind == MeshPart::Kind::Lines   ? 2
                                                                   : 1;
        keepFaces(mesh, [corners](const aiFace &face) { return face.mNumIndices == corners; });
        if (kind != MeshPart::Kind::Triangles) {
            drop(mesh.mNormals);
            drop(mesh.mTextureCoords[0]);
        } else if (!hasNormals(mesh)) {
            makeNormals(mesh);
        }
        if (kind != MeshPart::Kind::Points)
            joinVertices(mesh);
    }
}

} // namespace host
