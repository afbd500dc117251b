// SPDX-License-Identifier: MIT
#ifndef HOST_READ_SCENE_H
#define HOST_READ_SCENE_H

#include <string>

#include <assimp/scene.h>

#include "host/read/import.h"
#include "host/read/scene_rig.h"
#include "host/read/scene_textures.h"

namespace host {

/// Moves the vertices of skinned meshes, in place, to where their bones stand without an animation:
/// the places that a file stores for them can be those of another pose, or of no common frame at
/// all. Leaves the scenes of a reader @p format alone that has done it.
void poseSkins(aiScene &scene, const std::string &format);

/// Makes @p scene, as the reader @p format left it, fit for what follows: takes out the faces that
/// no step can bear, with an index beyond the vertices or with a vertex that is not finite; all
/// that is not shown; and normals that hide a mesh's creases. Returns how many faces it took out.
/// Afterwards mPrimitiveTypes of a mesh says what is in it; without faces, that is points if
/// nothing in the whole scene had a face, or if the reader said so: then each vertex is one.
quint64 prepareScene(aiScene &scene, const std::string &format);

/// What is drawn of @p mesh. Expects finishScene() to have been here.
MeshPart::Kind kindOf(const aiMesh &mesh);

/// Leaves only triangles, lines or points in each mesh of @p scene, gives normals to the vertices
/// of triangles that have none, and joins vertices. Expects polygons to be triangles already, each
/// mesh to have faces of one kind, and prepareScene() to have been here.
void finishScene(aiScene &scene);

/// Whether each vertex has a normal that says something: not zero, and finite.
bool hasNormals(const aiMesh &mesh);

/// Gives each corner of a mesh's faces, which are triangles, its own vertex and normal: the one it
/// had, or where that is missing, zero or not finite, one from the faces around, smooth across
/// edges of up to 60 degrees. A face without area among none that have one gets a normal of
/// zero.
void makeNormals(aiMesh &mesh);

/// Joins the vertices of a mesh that are equal in place, normal, every set of colours and first
/// coordinates on textures.
void joinVertices(aiMesh &mesh);

/// The turn that makes a scene of the reader @p format stand upright (+Y up, right-handed), where
/// assimp leaves that to its caller. @p format is aiImporterDesc::mName. Identity for all others.
aiMatrix4x4 uprightTurn(const aiScene &scene, const std::string &format);

/// Where the axes of the file are in a scene of the reader @p format that is stood upright by
/// @p turn: what some readers turn themselves is undone in the names.
FileAxes fileAxes(const aiScene &scene, const std::string &format, const aiMatrix4x4 &turn);

/// The unit of lengths in a scene of the reader @p format, as people write it ("mm"): that of an
/// FBX file, metres for glTF, and for COLLADA and IFC, whose lengths assimp turns into these. Empty
/// for all others; 3MF and AMF state one, but assimp hands on nothing of it.
QString lengthUnit(const aiScene &scene, const std::string &format);

/// The colour that shows @p material best: base or diffuse colour; a light grey where that is black
/// only because a texture was meant to fill it; the emissive colour where that is all there is.
std::array<float, 4> materialColour(const aiMaterial &material);

/// Whether no channel of a colour is more than a trace.
bool isBlack(float r, float g, float b);

/// Joins all triangles, lines and points that the nodes of @p scene show into one mesh, each
/// through its transforms and then through @p turn. Expects finishScene() to have been here, and
/// coordinates only on @p textures. With a @p rig the mesh gets it.
Imported flattenScene(const aiScene &scene, const aiMatrix4x4 &turn, const MeshLimits &limits,
                      const SceneTextures &textures, SceneRig *rig = nullptr);

} // namespace host

#endif
