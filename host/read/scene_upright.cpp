// SPDX-License-Identifier: MIT
#include "host/read/scene.h"

#include <algorithm>
#include <array>
#include <cmath>

#include <assimp/metadata.h>

namespace host {
namespace {

/// The beginnings of the names of the readers that hand on a +Z up without turning it.
///
/// STL states no direction, but the tools that write it, for design and for printing, stand their
/// parts on the x-y plane. OBJ, PLY, OFF, X, XGL and RAW are as vague, and +Y is the more common
/// use there.
constexpr std::array<const char *, 9> zUpReaders{
    "3D GameStudio Heightmap",
    "3mf",
    "Additive manufacturing",
    "Blender",
    "Open Game Engine Exchange",
    "Quick3D",
    "Stereolithography",
    "TrueSpace",
    "Valve SMD",
};

/// The beginnings of the names of the readers that stand a scene upright by the transform of its
/// root, where a file of these formats has none of its own.
constexpr std::array<const char *, 10> turningReaders{
    "ASE",
    "Collada",
    "Discreet 3DS",
    "Doom 3",
    "Drawing Interchange",
    "Industry Foundation Classes",
    "Inter-Quake",
    "Quake II", // and III
    "Quake Mesh",
    "Return To Castle",
};

/// The beginnings of the names of the readers that mirror left-handed files in z.
constexpr std::array<const char *, 3> mirroringReaders{
    "BlitzBasic 3D",
    "Direct3D XFile",
    "LightWave",
};

template <class Names> bool isOneOf(const Names &names, const std::string &format)
{
    return std::any_of(names.begin(), names.end(),
                       [&](const char *name) { return format.rfind(name, 0) == 0; });
}

/// The axes that @p turn, from the file to the mesh, leads to: valid if it maps axes onto axes, at
/// whatever scale.
FileAxes axesOf(const aiMatrix4x4 &turn)
{
    const float scale = std::cbrt(std::abs(aiMatrix3x3(turn).Determinant()));
    FileAxes axes{{{0, 0, 0}}};
    for (unsigned row = 0; row < 3; ++row) {
        for (unsigned column = 0; column < 3; ++column) {
            const float share = turn[row][column] / scale;
            if (std::abs(std::abs(share) - 1) < 1e-4f)
                axes.of[row] = qint8(share < 0 ? -int(column) - 1 : int(column) + 1);
            else if (!(std::abs(share) < 1e-4f))
                return {{{0, 0, 0}}};
        }
    }
    return axes;
}

/// One axis as the file names it: 0, 1, 2 for x, y, z, and a sign. Returns false if it names none.
bool axis(const aiMetadata &about, const std::string &name, aiVector3D &out)
{
    int index = 0, sign = 0;
    if (!about.Get(name, index) || !about.Get(name + "Sign", sign) || index < 0 || index > 2)
        return false;
    out = {};
    out[unsigned(index)] = sign < 0 ? -1.0f : 1.0f;
    return true;
}

/// The turn that FBX's own settings ask for.
aiMatrix4x4 fbxTurn(const aiMetadata &about)
{
    aiVector3D x, y, z;
    if (!axis(about, "CoordAxis", x) || !axis(about, "UpAxis", y) || !axis(about, "FrontAxis", z))
        return {};
    const aiMatrix4x4 turn(x.x, x.y, x.z, 0, y.x, y.y, y.z, 0, z.x, z.y, z.z, 0, 0, 0, 0, 1);
    return turn.Determinant() != 0 ? turn : aiMatrix4x4();
}

} // namespace

aiMatrix4x4 uprightTurn(const aiScene &scene, const std::string &format)
{
    if (isOneOf(zUpReaders, format))
        return {1, 0, 0, 0, 0, 0, 1, 0, 0, -1, 0, 0, 0, 0, 0, 1};
    if (format.rfind("Autodesk FBX", 0) == 0 && scene.mMetaData)
        return fbxTurn(*scene.mMetaData);
    return {};
}

FileAxes fileAxes(const aiScene &scene, const std::string &format, const aiMatrix4x4 &turn)
{
    if (isOneOf(mirroringReaders, format))
        return {{{1, 2, -3}}};
    const bool turned = scene.mRootNode && isOneOf(turningReaders, format);
    const FileAxes axes = axesOf(turned ? turn * scene.mRootNode->mTransformation : turn);
    return axes.isValid() ? axes : FileAxes();
}

} // namespace host
