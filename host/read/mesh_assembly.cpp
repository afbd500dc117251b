// SPDX-License-Identifier: MIT
#include "host/read/assembly.h"

#include <algorithm>
#include <cmath>

#include <QDataStream>

#include "host/read/messages.h"

namespace host {
namespace {

constexpr quint32 maxRigBytes = 512u << 20;

struct Counts {
    quint32 vertices = 0, normals = 0, indices = 0, parts = 0, nodes = 0, rigBytes = 0;
    bool coloured = false, covered = false;
    quint32 textures = 0;
    quint64 textureBytes = 0;

    bool within(const MeshLimits &limits) const
    {
        return vertices > 0 && vertices <= limits.vertices && normals <= vertices &&
               indices <= limits.indices && parts > 0 && parts <= limits.parts &&
               textures <= limits.textures && textureBytes <= limits.textureBytes &&
               nodes <= limits.parts && rigBytes <= maxRigBytes && covered == (textures > 0);
    }
};

class MeshAssembly : public Assembly {
public:
    MeshAssembly(const Counts &wanted, Mesh &&head);

    quint64 byteSize() const override;
    double arrived() const override
    {
        const std::size_t here =
            mesh_->positions.size() + mesh_->normals.size() + mesh_->indices.size() + texels_;
        return double(here) / (3.0 * wanted_.vertices + 3.0 * wanted_.normals + wanted_.indices +
                               double(wanted_.textureBytes) / 4);
    }
    bool takeItem(QDataStream &in) override;
    char *room(quint32 array, quint32 size) override;
    bool check(quint32 array, quint32 size) override;
    Content finish() override;

private:
    bool takeNode(QDataStream &in);
    bool takeTexture(QDataStream &in);
    bool takePart(QDataStream &in);
    bool checkPositions(std::size_t from);
    bool checkNormals(std::size_t from) const;
    bool checkIndices(std::size_t from) const;
    bool hasAllParts() const;
    bool isWhole() const;
    bool finishRig();

    Counts wanted_;
    std::vector<char> rigBytes_;
    std::shared_ptr<Rig> rig_ = std::make_shared<Rig>();
    quint32 triangleIndices_ = 0, indices_ = 0, points_ = 0; // of the parts that are here
    quint64 unclaimed_;                                      // bytes that no texture has taken
    quint64 texels_ = 0;                                     // that are here
    std::shared_ptr<Mesh> mesh_;
    std::vector<std::shared_ptr<Texture>> textures_; // the mesh's, while they are written
};

/// @p head is a mesh without arrays and parts.
MeshAssembly::MeshAssembly(const Counts &wanted, Mesh &&head)
    : wanted_(wanted),
      unclaimed_(wanted.textureBytes),
      mesh_(std::make_shared<Mesh>(std::move(head)))
{
    // Reserved memory costs nothing until it is written to, so a lie about the size gains nothing.
    mesh_->positions.reserve(std::size_t(wanted.vertices) * 3);
    mesh_->normals.reserve(std::size_t(wanted.normals) * 3);
    mesh_->colours.reserve(wanted.coloured ? std::size_t(wanted.vertices) * 4 : 0);
    mesh_->indices.reserve(wanted.indices);
    mesh_->uvs.reserve(wanted.covered ? std::size_t(wanted.normals) * 2 : 0);
}

quint64 MeshAssembly::byteSize() const
{
    // The bytes of a rig take about as much as what they say.
    const quint64 rig = wanted_.rigBytes > 0 ? wanted_.rigBytes + quint64(wanted_.normals) * 24 : 0;
    return Mesh::byteSize(wanted_.vertices, wanted_.normals, wanted_.coloured, wanted_.indices,
                          wanted_.parts, wanted_.covered, wanted_.textureBytes, wanted_.nodes) +
           rig;
}

/// The one above comes first, so that no ring can form.
bool MeshAssembly::takeNode(QDataStream &in)
{
    MeshNode node;
    in >> node.above >> node.name;
    if (in.status() != QDataStream::Ok)
        return true;
    const bool good = node.above >= -1 && node.above < qint32(mesh_->nodes.size()) &&
                      !node.name.isEmpty() && node.name.size() <= MeshNode::longestName;
    if (good)
        mesh_->nodes.push_back(node);
    return good;
}

bool MeshAssembly::takeItem(QDataStream &in)
{
    if (mesh_->nodes.size() < wanted_.nodes)
        return takeNode(in);
    return textures_.size() < wanted_.textures ? takeTexture(in) : takePart(in);
}

bool MeshAssembly::takeTexture(QDataStream &in)
{
    auto texture = std::make_shared<Texture>();
    in >> texture->width >> texture->height;
    if (in.status() != QDataStream::Ok)
        return true;
    const auto fits = [](quint32 side) { return side > 0 && side <= Texture::maxSide; };
    const quint64 bytes = quint64(texture->width) * texture->height * 4;
    if (!fits(texture->width) || !fits(texture->height) || bytes > unclaimed_)
        return false;
    unclaimed_ -= bytes;
    texture->pixels.reserve(bytes);
    textures_.push_back(std::move(texture));
    return true;
}

/// Reads how a part is covered. Returns whether it may be covered so, by one of so many textures.
bool takeCover(QDataStream &in, Cover &cover, quint32 textures)
{
    quint8 wrapS = 0, wrapT = 0, alpha = 0;
    in >> cover.texture >> wrapS >> wrapT >> cover.smooth >> alpha >> cover.cutoff;
    cover.wrapS = Cover::Wrap(wrapS);
    cover.wrapT = Cover::Wrap(wrapT);
    cover.alpha = Cover::Alpha(alpha);
    return wrapS <= Cover::Clamp && wrapT <= Cover::Clamp && alpha <= Cover::Blended &&
           cover.texture >= -1 && cover.texture < qint64(textures) && cover.cutoff >= 0 &&
           cover.cutoff <= 1;
}

bool MeshAssembly::takePart(QDataStream &in)
{
    MeshPart part;
    quint8 kind = 0;
    quint32 count = 0;
    in >> kind >> count >> part.node;
    for (float &c : part.colour)
        in >> c;
    in >> part.name >> part.material;
    const bool coverable = takeCover(in, part.cover, wanted_.textures);
    if (in.status() != QDataStream::Ok)
        return true;
    auto &parts = mesh_->parts;
    part.kind = MeshPart::Kind(kind);
    const bool points = part.kind == MeshPart::Kind::Points;
    // The members of one: three indices, two, or a vertex.
    const quint32 step = part.kind == MeshPart::Kind::Triangles ? 3 : points ? 1 : 2;
    const bool good =
        coverable && (step == 3 || part.cover.texture < 0) && parts.size() < wanted_.parts &&
        part.kind <= MeshPart::Kind::Points && (parts.empty() || parts.back().kind <= part.kind) &&
        !part.name.isEmpty() && count > 0 && count % step == 0 && part.node >= -1 &&
        part.node < qint32(wanted_.nodes) &&
        count <=
            (points ? wanted_.vertices - wanted_.normals - points_ : wanted_.indices - indices_) &&
        std::all_of(part.colour.begin(), part.colour.end(),
                    [](float c) { return c >= 0 && c <= 1; });
    if (!good)
        return false;
    part.firstIndex = indices_;
    (points ? part.vertexCount : part.indexCount) = count;
    (points ? points_ : indices_) += count;
    if (part.kind == MeshPart::Kind::Triangles)
        triangleIndices_ = indices_;
    parts.push_back(part);
    return true;
}

bool MeshAssembly::hasAllParts() const
{
    return mesh_->parts.size() == wanted_.parts && mesh_->nodes.size() == wanted_.nodes &&
           indices_ == wanted_.indices;
}

char *MeshAssembly::room(quint32 array, quint32 size)
{
    const std::size_t vertices = wanted_.vertices;
    switch (array) {
    case messages::Positions:
        return extend(mesh_->positions, size, 12, vertices * 3);
    case messages::Normals:
        return extend(mesh_->normals, size, 12, std::size_t(wanted_.normals) * 3);
    case messages::Colours:
        return extend(mesh_->colours, size, 4, wanted_.coloured ? vertices * 4 : 0);
    case messages::Indices:
        return hasAllParts() ? extend(mesh_->indices, size, 4, wanted_.indices) : nullptr;
    case messages::RigBytes:
        return extend(rigBytes_, size, 1, wanted_.rigBytes);
    case messages::Bones:
        return extend(rig_->vertexBones, size, 8,
                      wanted_.rigBytes > 0 ? std::size_t(wanted_.normals) * 4 : 0);
    case messages::Weights:
        return extend(rig_->vertexWeights, size, 16,
                      wanted_.rigBytes > 0 ? std::size_t(wanted_.normals) * 4 : 0);
    case messages::Uvs:
        return extend(mesh_->uvs, size, 8, wanted_.covered ? std::size_t(wanted_.normals) * 2 : 0);
    default:
        break;
    }
    const std::size_t number = array - messages::FirstTexture;
    if (number >= textures_.size())
        return nullptr;
    Texture &texture = *textures_[number];
    texels_ += size / 4;
    return extend(texture.pixels, size, 4, std::size_t(texture.width) * texture.height * 4);
}

bool MeshAssembly::check(quint32 array, quint32 size)
{
    const std::size_t values = size / 4;
    switch (array) {
    case messages::Positions:
        return checkPositions(mesh_->positions.size() - values);
    case messages::Normals:
        return checkNormals(mesh_->normals.size() - values);
    case messages::Indices:
        return checkIndices(mesh_->indices.size() - values);
    case messages::Uvs:
        return std::all_of(mesh_->uvs.end() - std::ptrdiff_t(values), mesh_->uvs.end(),
                           [](float v) { return std::abs(v) <= Mesh::maxUv; }); // false for NaN
    default:
        return true;
    }
}

/// Also lets the box grow.
bool MeshAssembly::checkPositions(std::size_t from)
{
    Mesh &m = *mesh_;
    if (from == 0)
        m.min = m.max = QVector3D(m.positions[0], m.positions[1], m.positions[2]);
    for (std::size_t k = 0; k < 3; ++k) {
        float low = m.min[int(k)], high = m.max[int(k)];
        bool good = true;
        for (std::size_t i = from + k; i < m.positions.size(); i += 3) {
            const float v = m.positions[i];
            good = good && std::abs(v) <= Mesh::maxCoordinate; // false for NaN
            low = std::min(low, v);
            high = std::max(high, v);
        }
        if (!good)
            return false;
        m.min[int(k)] = low;
        m.max[int(k)] = high;
    }
    return true;
}

bool MeshAssembly::checkNormals(std::size_t from) const
{
    const std::vector<float> &n = mesh_->normals;
    for (std::size_t i = from; i < n.size(); i += 3) {
        const float square = n[i] * n[i] + n[i + 1] * n[i + 1] + n[i + 2] * n[i + 2];
        if (!(std::abs(square - 1) <= 0.002f)) // NaN too
            return false;
    }
    return true;
}

bool MeshAssembly::checkIndices(std::size_t from) const
{
    const auto begin = mesh_->indices.begin();
    const auto middle = std::clamp<std::size_t>(triangleIndices_, from, mesh_->indices.size());
    const auto below = [](quint32 end) { return [end](quint32 i) { return i < end; }; };
    return std::all_of(begin + std::ptrdiff_t(from), begin + std::ptrdiff_t(middle),
                       below(wanted_.normals)) &&
           std::all_of(begin + std::ptrdiff_t(middle), mesh_->indices.end(),
                       below(wanted_.vertices - points_));
}

bool MeshAssembly::finishRig()
{
    if (rigBytes_.size() != wanted_.rigBytes ||
        !fromBytes(QByteArray::fromRawData(rigBytes_.data(), int(rigBytes_.size())), *rig_) ||
        !suitsVertices(*rig_, wanted_.normals))
        return false;
    rigBytes_ = {};
    mesh_->rig = std::move(rig_);
    return true;
}

bool MeshAssembly::isWhole() const
{
    const std::size_t vertices = wanted_.vertices, normals = wanted_.normals;
    const auto isFull = [](const std::shared_ptr<Texture> &t) {
        return t->pixels.size() == std::size_t(t->width) * t->height * 4;
    };
    return mesh_->positions.size() == vertices * 3 && mesh_->normals.size() == normals * 3 &&
           mesh_->colours.size() == (wanted_.coloured ? vertices * 4 : 0) &&
           mesh_->uvs.size() == (wanted_.covered ? normals * 2 : 0) &&
           mesh_->indices.size() == wanted_.indices && hasAllParts() && unclaimed_ == 0 &&
           std::all_of(textures_.begin(), textures_.end(), isFull);
}

Content MeshAssembly::finish()
{
    if (!isWhole() || (wanted_.rigBytes > 0 && !finishRig()))
        return {};
    mesh_->textures.assign(textures_.begin(), textures_.end());
    quint32 next = wanted_.vertices - points_;
    for (MeshPart &part : mesh_->parts) {
        if (part.kind != MeshPart::Kind::Points)
            continue;
        part.firstVertex = next;
        next += part.vertexCount;
    }
    return {std::move(mesh_), nullptr, nullptr};
}

} // namespace

std::unique_ptr<Assembly> meshAssembly(QDataStream &head, const MeshLimits &limits)
{
    Counts counts;
    Mesh mesh;
    auto &axes = mesh.axes.of;
    head >> counts.vertices >> counts.normals >> counts.indices >> counts.parts >> counts.nodes >>
        counts.coloured;
    head >> axes[0] >> axes[1] >> axes[2];
    for (double &coordinate : mesh.origin)
        head >> coordinate;
    head >> mesh.notes >> mesh.unit >> counts.covered >> counts.textures >> counts.textureBytes >>
        counts.rigBytes;
    mesh.unit.truncate(8); // a word of few letters
    const bool near = std::all_of(mesh.origin.begin(), mesh.origin.end(), [](double c) {
        return std::abs(c) <= double(Mesh::maxCoordinate); // false for NaN
    });
    if (head.status() != QDataStream::Ok || !counts.within(limits) || !mesh.axes.isValid() || !near)
        return nullptr;
    return std::make_unique<MeshAssembly>(counts, std::move(mesh));
}

} // namespace host
