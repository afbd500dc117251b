// SPDX-License-Identifier: MIT
#include "host/read/scene.h"

#include <algorithm>
#include <array>

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
    const auto named = [&format](const char *name) { return format.rfind(name, 0) == 0; };
    if (std::any_of(zUpReaders.begin(), zUpReaders.end(), named))
        return {1, 0, 0, 0, 0, 0, 1, 0, 0, -1, 0, 0, 0, 0, 0, 1};
    if (named("Autodesk FBX") && scene.mMetaData)
        return fbxTurn(*scene.mMetaData);
    return {};
}

} // namespace host
