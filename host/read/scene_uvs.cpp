// SPDX-License-Identifier: MIT
#include "host/read/scene_uvs.h"

#include <cmath>
#include <utility>

#include "host/read/mesh.h"

namespace host {
namespace {

/// One way of moving coordinates: row by row, on the picture from its lower left.
struct UvTransform {
    double u[3]{1, 0, 0}, v[3]{0, 1, 0};

    aiVector3D operator()(const aiVector3D &at) const
    {
        const auto row = [&at](const double(&r)[3]) {
            const double value = r[0] * double(at.x) + r[1] * double(at.y) + r[2];
            return std::abs(value) <= double(Mesh::maxUv) ? float(value) : 0.0f; // NaN too
        };
        return {row(u), row(v), 0};
    }
};

/// Scaled, turned about the picture's middle, moved.
UvTransform transformOf(const aiUVTransform &t)
{
    const double c = std::cos(double(t.mRotation)), s = std::sin(double(t.mRotation));
    const double x = double(t.mScaling.x), y = double(t.mScaling.y);
    return {{c * x, -s * y, 0.5 - 0.5 * c + 0.5 * s + double(t.mTranslation.x)},
            {s * x, c * y, 0.5 - 0.5 * s - 0.5 * c + double(t.mTranslation.y)}};
}

/// glTF turns about the picture's upper left corner, after scaling, with v down. The reader has put
/// a part of that into the translation, which is taken out of it again.
UvTransform gltfTransformOf(const aiUVTransform &t)
{
    const double c = std::cos(double(t.mRotation)), s = -std::sin(double(t.mRotation));
    const double x = double(t.mScaling.x), y = double(t.mScaling.y);
    const double right = double(t.mTranslation.x) - 0.5 * x * (1 - c + s);
    const double down = 0.5 * y * (s + c - 1) + 1 - y - double(t.mTranslation.y);
    return {{c * x, -s * y, s * y + right}, {s * x, c * y, 1 - c * y - down}};
}

/// Takes out the channels from @p first on.
void dropFrom(aiMesh &mesh, unsigned first)
{
    for (unsigned i = first; i < AI_MAX_NUMBER_OF_TEXTURECOORDS; ++i) {
        delete[] mesh.mTextureCoords[i];
        mesh.mTextureCoords[i] = nullptr;
    }
}

} // namespace

bool isGltf(const std::string &format)
{
    return format.rfind("glTF", 0) == 0;
}

std::optional<TextureUse> textureUseOf(const aiMaterial &material)
{
    TextureUse use;
    for (const aiTextureType type : {aiTextureType_BASE_COLOR, aiTextureType_DIFFUSE}) {
        use.type = type;
        if (material.GetTexture(type, 0, &use.name, &use.mapping, &use.channel, nullptr, nullptr,
                                use.wrap) == AI_SUCCESS &&
            use.name.length > 0 && std::string(use.name.C_Str()).rfind("Procedural,", 0) != 0)
            return use;
    }
    return {};
}

std::optional<unsigned> channelOf(const aiMesh &mesh, const TextureUse &use)
{
    // Some readers number the channels as the file does, and leave gaps out.
    for (const unsigned channel : {use.channel, 0u}) {
        if (channel < AI_MAX_NUMBER_OF_TEXTURECOORDS && mesh.mTextureCoords[channel])
            return channel;
    }
    return {};
}

void keepCoordinates(aiMesh &mesh, const aiMaterial &material, const TextureUse &use,
                     const std::string &format)
{
    std::swap(mesh.mTextureCoords[0], mesh.mTextureCoords[channelOf(mesh, use).value_or(0)]);
    aiUVTransform given;
    UvTransform transform;
    if (material.Get(AI_MATKEY_UVTRANSFORM(use.type, 0), given) == AI_SUCCESS)
        transform = isGltf(format) ? gltfTransformOf(given) : transformOf(given);
    for (unsigned i = 0; i < mesh.mNumVertices; ++i)
        mesh.mTextureCoords[0][i] = transform(mesh.mTextureCoords[0][i]);
    dropFrom(mesh, 1);
}

void dropCoordinates(aiMesh &mesh)
{
    dropFrom(mesh, 0);
}

} // namespace host
