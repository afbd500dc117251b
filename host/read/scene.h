// SPDX-License-Identifier: MIT
#ifndef HOST_READ_SCENE_H
#define HOST_READ_SCENE_H

#include <string>

#include <assimp/scene.h>

#include "host/read/import.h"

namespace host {

/// Moves the vertices of skinned meshes, in place, to where their bones stand without an animation:
/// the places that a file stores for them can be those of another pose, or of no common frame at
/// all. Leaves the scenes of a reader @p format alone that has done it.
void poseSkins(aiScene &scene, const std::string &format);

/// Makes @p scene, as the reader @p format left it, fit for assimp's own steps. Takes out the faces
/// that none of them can bear: with an index beyond the vertices, or with a vertex that is not
/// finite. Where a mesh has no normals, or only such as hide its creases, gives each face vertices
/// of its own, so that the normals made later can differ across an edge.
/// Returns how many faces it took out.
quint64 prepareScene(aiScene &scene, const std::string &format);

/// The turn that makes a scene of the reader @p format stand upright (+Y up, right-handed), where
/// assimp leaves that to its caller. @p format is aiImporterDesc::mName. Identity for all others.
aiMatrix4x4 uprightTurn(const aiScene &scene, const std::string &format);

/// The colour that shows @p material best: base or diffuse colour; a light grey where that is black
/// only because a texture was meant to fill it; the emissive colour where that is all there is.
std::array<float, 4> materialColour(const aiMaterial &material);

/// Whether no channel of a colour is more than a trace.
bool isBlack(float r, float g, float b);

/// Joins all triangles that the nodes of @p scene show into one mesh, each through its transforms
/// and then through @p turn. Expects triangles only where a face is to be kept.
Imported flattenScene(const aiScene &scene, const aiMatrix4x4 &turn, const MeshLimits &limits);

} // namespace host

#endif
