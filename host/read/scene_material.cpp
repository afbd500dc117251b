// SPDX-License-Identifier: MIT
#include "host/read/scene.h"

#include <algorithm>
#include <cmath>
#include <string>

#include <assimp/material.h>

namespace host {
namespace {

float share(float value)
{
    return std::isfinite(value) ? std::clamp(value, 0.0f, 1.0f) : 1.0f;
}

bool isBlack(const aiColor4D &c)
{
    return host::isBlack(c.r, c.g, c.b);
}

bool isTextured(const aiMaterial &material)
{
    for (int type = aiTextureType_DIFFUSE; type <= AI_TEXTURE_TYPE_MAX; ++type) {
        if (material.GetTextureCount(aiTextureType(type)) > 0)
            return true;
    }
    return false;
}

/// Whether the file said nothing of a material: readers put one of their own there, each in another
/// grey. Unnamed, it is that of a format whose default is white, or of a reader.
bool isStandIn(const aiMaterial &material, const aiColor4D &colour)
{
    aiString name;
    material.Get(AI_MATKEY_NAME, name);
    const std::string given = name.C_Str();
    const bool madeUp = given == AI_DEFAULT_MATERIAL_NAME || given == "<MS3D_DefaultMat>" ||
                        given.rfind("%%%", 0) == 0 ||
                        (given.empty() && (colour.r == 1 || colour.r == 0.6f));
    return madeUp && colour.r == colour.g && colour.g == colour.b && !isTextured(material);
}

} // namespace

bool isBlack(float r, float g, float b)
{
    return std::max({r, g, b}) < 0.02f;
}

std::array<float, 4> materialColour(const aiMaterial &material)
{
    const aiColor4D lightGrey{0.8f, 0.8f, 0.8f, 1};
    aiColor4D colour = lightGrey;
    if (material.Get(AI_MATKEY_BASE_COLOR, colour) != AI_SUCCESS)
        material.Get(AI_MATKEY_COLOR_DIFFUSE, colour);
    if (isStandIn(material, colour)) {
        colour = {lightGrey.r, lightGrey.g, lightGrey.b, colour.a};
    } else if (isBlack(colour)) {
        aiColor4D glow{0, 0, 0, 1};
        material.Get(AI_MATKEY_COLOR_EMISSIVE, glow);
        if (isTextured(material))
            colour = lightGrey;
        else if (!isBlack(glow))
            colour = glow;
    }
    // An opacity of zero is nearly always a slip of an exporter: nobody stores an unseen model.
    float opacity = 1;
    material.Get(AI_MATKEY_OPACITY, opacity);
    opacity = share(opacity) * share(colour.a);
    return {share(colour.r), share(colour.g), share(colour.b), opacity > 0 ? opacity : 1.0f};
}

} // namespace host
