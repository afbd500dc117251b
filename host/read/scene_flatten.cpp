// SPDX-License-Identifier: MIT
#include "host/read/scene.h"

#include <algorithm>
#include <cmath>
#include <limits>
#include <vector>

#include <assimp/material.h>

#include "host/read/left_out.h"
#include "host/read/point_order.h"
#include "host/read/scene_nodes.h"
#include "host/read/scene_values.h"

namespace host {
namespace {

constexpr quint32 unseen = std::numeric_limits<quint32>::max();

/// Twice the area as a vector, relative to the longer edges so that tiny triangles have it too;
/// zero without area.
aiVector3D faceNormal(const aiVector3D &a, const aiVector3D &b, const aiVector3D &c)
{
    aiVector3D u = b - a, v = c - a;
    const float scale = std::max(
        {std::abs(u.x), std::abs(u.y), std::abs(u.z), std::abs(v.x), std::abs(v.y), std::abs(v.z)});
    if (!(scale > 0))
        return {};
    u *= 1 / scale;
    v *= 1 / scale;
    return u ^ v;
}

/// Joins the instances of a scene's meshes, one after the other, into one mesh.
class Flattener {
public:
    Flattener(const aiScene &scene, const MeshLimits &limits, const SceneTextures &textures,
              SceneRig *rig)
        : scene_(scene), limits_(limits), covers_(textures.covers), rig_(rig)
    {
        out_.textures = textures.textures;
    }

    Imported run(const aiMatrix4x4 &turn);

private:
    struct Instance {
        const aiNode *node;
        const aiMesh *mesh;
        aiMatrix4x4 world;
        qint32 number; // of the node
    };

    QString collect(const aiMatrix4x4 &turn);
    QString measure() const;
    void add(const Instance &instance);
    void addTriangles(const Instance &instance);
    void addLines(const Instance &instance);
    void addPoints(const Instance &instance);
    quint32 addVertex(const Instance &instance, const aiMatrix3x3 &turn, unsigned index,
                      const aiVector3D &position, const aiVector3D &facing);
    quint32 addEnd(const Instance &instance, unsigned index, const aiVector3D &position);
    void beginPart(const Instance &instance);
    void addColour(const aiMesh &mesh, unsigned index);
    void lightenBlack();
    void dropTextures();

    const aiScene &scene_;
    const MeshLimits &limits_;
    const std::vector<Cover> &covers_; // by materials
    SceneRig *rig_;                    // null: nothing moves
    std::vector<Instance> instances_;
    SceneNodes nodes_;
    std::vector<quint32> seen_; // of the mesh in work: its vertex -> the vertex in out_
    bool coloured_ = false;     // some mesh shows the colours of its vertices
    bool fromVertices_ = false; // the mesh in work does
    quint64 leftOut_ = 0;       // points
    Mesh out_;
};

bool isNeutral(const std::array<float, 4> &colour)
{
    const auto [low, high] = std::minmax({colour[0], colour[1], colour[2]});
    return high - low < 0.02f;
}

std::array<float, 4> colourOf(const aiScene &scene, const aiMesh &mesh)
{
    if (mesh.mMaterialIndex >= scene.mNumMaterials)
        return MeshPart().colour;
    return materialColour(*scene.mMaterials[mesh.mMaterialIndex]);
}

/// Some readers make up black colours for vertices where the file has none.
bool showsVertexColours(const aiScene &scene, const aiMesh &mesh)
{
    if (!mesh.HasVertexColors(0) || !isNeutral(colourOf(scene, mesh)))
        return false;
    const aiColor4D *colours = mesh.mColors[0];
    return std::any_of(colours, colours + mesh.mNumVertices,
                       [](const aiColor4D &c) { return !isBlack(c.r, c.g, c.b); });
}

/// Fills instances_, parents before children, in the order of the file.
QString Flattener::collect(const aiMatrix4x4 &turn)
{
    struct Step {
        const aiNode *node;
        aiMatrix4x4 above;
        int depth;
        qint32 nodeAbove;
    };
    std::vector<Step> steps;
    if (scene_.mRootNode)
        steps.push_back({scene_.mRootNode, turn, 1, -1});
    quint64 nodes = 0;
    while (!steps.empty()) {
        const Step step = steps.back();
        steps.pop_back();
        if (++nodes > limits_.nodes)
            return QStringLiteral("it has more than %1 nodes").arg(limits_.nodes);
        if (step.depth > limits_.depth)
            return QStringLiteral("its nodes are nested more than %1 deep").arg(limits_.depth);
        const aiMatrix4x4 world = step.above * step.node->mTransformation;
        const qint32 number = nodes_.add(*step.node, step.nodeAbove);
        for (unsigned i = 0; i < step.node->mNumMeshes; ++i) {
            const unsigned mesh = step.node->mMeshes[i];
            if (mesh < scene_.mNumMeshes)
                instances_.push_back({step.node, scene_.mMeshes[mesh], world, number});
        }
        for (unsigned i = step.node->mNumChildren; i-- > 0;) {
            if (step.node->mChildren[i]) // some readers leave gaps
                steps.push_back({step.node->mChildren[i], world, step.depth + 1, number});
        }
    }
    return {};
}

/// Holds what the instances will take against the limits, before any of it is made.
QString Flattener::measure() const
{
    quint64 indices = 0, vertices = 0;
    for (const Instance &instance : instances_) {
        const MeshPart::Kind kind = kindOf(*instance.mesh);
        const quint64 faces = instance.mesh->mNumFaces;
        const unsigned corners = kind == MeshPart::Kind::Triangles ? 3 : 2;
        if (kind != MeshPart::Kind::Points)
            indices += faces * corners;
        vertices +=
            kind == MeshPart::Kind::Points && faces > 0 ? faces : instance.mesh->mNumVertices;
        if (indices > limits_.indices)
            return (corners == 3 ? QStringLiteral("it shows more than %1 triangles")
                                 : QStringLiteral("it shows more than %1 lines"))
                .arg(limits_.indices / corners);
        if (vertices > limits_.vertices)
            return QStringLiteral("it has more than %1 vertices").arg(limits_.vertices);
    }
    return {};
}

void Flattener::beginPart(const Instance &instance)
{
    MeshPart part;
    const aiString &name =
        instance.mesh->mName.length > 0 ? instance.mesh->mName : instance.node->mName;
    part.name = shortText(name);
    if (part.name.isEmpty())
        part.name = QStringLiteral("part %1").arg(out_.parts.size() + 1);
    part.node = instance.number;
    part.colour = colourOf(scene_, *instance.mesh);
    if (instance.mesh->mMaterialIndex < scene_.mNumMaterials) {
        part.material = shortText(scene_.mMaterials[instance.mesh->mMaterialIndex]->GetName());
    }
    if (instance.mesh->mTextureCoords[0] && instance.mesh->mMaterialIndex < covers_.size())
        part.cover = covers_[instance.mesh->mMaterialIndex];
    part.kind = kindOf(*instance.mesh);
    part.firstIndex = quint32(out_.indices.size());
    out_.parts.push_back(part);
}

void Flattener::addColour(const aiMesh &mesh, unsigned index)
{
    const std::array<float, 4> &plain = out_.parts.back().colour;
    aiColor4D colour{plain[0], plain[1], plain[2], plain[3]};
    if (fromVertices_) {
        // Files often leave the alpha of vertices at zero, so the material's holds.
        colour = mesh.mColors[0][index];
        colour.a = plain[3];
    }
    for (const float value : {colour.r, colour.g, colour.b, colour.a}) {
        const float share = std::isfinite(value) ? std::clamp(value, 0.0f, 1.0f) : 1;
        out_.colours.push_back(quint8(std::lround(share * 255)));
    }
}

quint32 Flattener::addVertex(const Instance &instance, const aiMatrix3x3 &turn, unsigned index,
                             const aiVector3D &position, const aiVector3D &facing)
{
    if (seen_[index] != unseen)
        return seen_[index];
    seen_[index] = quint32(out_.vertexCount());
    aiVector3D normal;
    if (instance.mesh->mNormals)
        normal = turn * instance.mesh->mNormals[index];
    if (!isUsable(normal) || !(normal.Length() > 0))
        normal = facing;
    normal.NormalizeSafe();
    out_.positions.insert(out_.positions.end(), {position.x, position.y, position.z});
    out_.normals.insert(out_.normals.end(), {normal.x, normal.y, normal.z});
    if (!out_.textures.empty()) {
        const aiVector3D *uvs = instance.mesh->mTextureCoords[0];
        out_.uvs.insert(out_.uvs.end(), {uvs ? uvs[index].x : 0, uvs ? uvs[index].y : 0});
    }
    if (coloured_)
        addColour(*instance.mesh, index);
    if (rig_)
        rig_->addVertex(instance.node, *instance.mesh, index);
    return seen_[index];
}

/// Whether the corners of a triangle run the wrong way round for its normals, in the file or after
/// a mirroring transform.
bool facesAway(const aiMesh &mesh, const aiMatrix3x3 &turn, const std::array<unsigned, 3> &corners,
               const aiVector3D &facing)
{
    if (!mesh.mNormals)
        return false;
    const aiVector3D *n = mesh.mNormals;
    return facing * (turn * (n[corners[0]] + n[corners[1]] + n[corners[2]])) < 0;
}

void Flattener::add(const Instance &instance)
{
    const aiMesh &mesh = *instance.mesh;
    beginPart(instance);
    fromVertices_ = coloured_ && showsVertexColours(scene_, mesh);
    if (kindOf(mesh) == MeshPart::Kind::Points) {
        addPoints(instance);
    } else {
        seen_.assign(mesh.mNumVertices, unseen);
        if (kindOf(mesh) == MeshPart::Kind::Lines)
            addLines(instance);
        else
            addTriangles(instance);
    }
    MeshPart &part = out_.parts.back();
    part.indexCount = quint32(out_.indices.size()) - part.firstIndex;
    if (part.indexCount == 0 && part.vertexCount == 0)
        out_.parts.pop_back();
}

/// The vertex of a line's end, which has no normal.
quint32 Flattener::addEnd(const Instance &instance, unsigned index, const aiVector3D &position)
{
    if (seen_[index] != unseen)
        return seen_[index];
    seen_[index] = quint32(out_.vertexCount());
    out_.positions.insert(out_.positions.end(), {position.x, position.y, position.z});
    if (coloured_)
        addColour(*instance.mesh, index);
    return seen_[index];
}

void Flattener::addLines(const Instance &instance)
{
    const aiMesh &mesh = *instance.mesh;
    for (unsigned i = 0; i < mesh.mNumFaces; ++i) {
        const unsigned *ends = mesh.mFaces[i].mIndices;
        const aiVector3D from = instance.world * mesh.mVertices[ends[0]];
        const aiVector3D to = instance.world * mesh.mVertices[ends[1]];
        if (!isUsable(from) || !isUsable(to) || from == to)
            continue;
        out_.indices.push_back(addEnd(instance, ends[0], from));
        out_.indices.push_back(addEnd(instance, ends[1], to));
    }
}

void Flattener::addPoints(const Instance &instance)
{
    const aiMesh &mesh = *instance.mesh;
    MeshPart &part = out_.parts.back();
    part.firstVertex = quint32(out_.vertexCount());
    const unsigned count = mesh.mNumFaces > 0 ? mesh.mNumFaces : mesh.mNumVertices;
    for (unsigned i = 0; i < count; ++i) {
        const unsigned index = mesh.mNumFaces > 0 ? mesh.mFaces[i].mIndices[0] : i;
        const aiVector3D at = instance.world * mesh.mVertices[index];
        if (!isUsable(at)) {
            ++leftOut_;
            continue;
        }
        out_.positions.insert(out_.positions.end(), {at.x, at.y, at.z});
        if (coloured_)
            addColour(mesh, index);
        ++part.vertexCount;
    }
    const PointOrder order(part.vertexCount);
    order.apply(out_.positions, 3);
    if (coloured_)
        order.apply(out_.colours, 4);
}

void Flattener::addTriangles(const Instance &instance)
{
    const aiMesh &mesh = *instance.mesh;
    aiMatrix3x3 turn(instance.world);
    turn.Inverse().Transpose();
    for (unsigned i = 0; i < mesh.mNumFaces; ++i) {
        const aiFace &face = mesh.mFaces[i];
        if (face.mNumIndices != 3)
            continue;
        std::array<unsigned, 3> corners{face.mIndices[0], face.mIndices[1], face.mIndices[2]};
        std::array<aiVector3D, 3> at;
        for (std::size_t k = 0; k < 3; ++k)
            at[k] = instance.world * mesh.mVertices[corners[k]];
        aiVector3D facing = faceNormal(at[0], at[1], at[2]);
        if (!isUsable(at[0]) || !isUsable(at[1]) || !isUsable(at[2]) ||
            !(facing.SquareLength() > 0))
            continue;
        if (facesAway(mesh, turn, corners, facing)) {
            std::swap(corners[1], corners[2]);
            std::swap(at[1], at[2]);
            facing *= -1;
        }
        for (std::size_t k = 0; k < 3; ++k)
            out_.indices.push_back(addVertex(instance, turn, corners[k], at[k], facing));
    }
}

/// A model that is black all over is nearly always one whose colours its format does not carry,
/// and nothing of it could be seen.
void Flattener::lightenBlack()
{
    const auto black = [](const MeshPart &p) {
        return isBlack(p.colour[0], p.colour[1], p.colour[2]);
    };
    if (coloured_ || !std::all_of(out_.parts.begin(), out_.parts.end(), black))
        return;
    for (MeshPart &part : out_.parts)
        part.colour = {0.8f, 0.8f, 0.8f, part.colour[3]};
}

/// What asked for the pictures is lines, points or without area, and shows none.
void Flattener::dropTextures()
{
    out_.textures.clear();
    for (MeshPart &part : out_.parts)
        part.cover = {};
}

Imported Flattener::run(const aiMatrix4x4 &turn)
{
    QString reason = collect(turn);
    if (reason.isEmpty())
        reason = measure();
    if (!reason.isEmpty())
        return {{}, reason};
    for (const Instance &instance : instances_)
        coloured_ = coloured_ || showsVertexColours(scene_, *instance.mesh);
    std::stable_sort(
        instances_.begin(), instances_.end(),
        [](const Instance &a, const Instance &b) { return kindOf(*a.mesh) < kindOf(*b.mesh); });
    for (const Instance &instance : instances_) {
        add(instance);
        if (out_.parts.size() > limits_.parts)
            return {{}, QStringLiteral("it has more than %1 parts").arg(limits_.parts)};
    }
    if (out_.parts.empty())
        return {{}, leftOut_ > 0 ? noUsablePoints() : nothingToShow()};
    if (leftOut_ > 0)
        out_.notes << pointsLeftOut(leftOut_);
    if (out_.uvs.empty())
        dropTextures();
    nodes_.fill(out_, limits_.parts);
    lightenBlack();
    out_.findBounds();
    if (rig_)
        out_.rig = rig_->finish(turn, out_.notes);
    return {std::move(out_), {}};
}

} // namespace

Imported flattenScene(const aiScene &scene, const aiMatrix4x4 &turn, const MeshLimits &limits,
                      const SceneTextures &textures, SceneRig *rig)
{
    return Flattener(scene, limits, textures, rig).run(turn);
}

} // namespace host
