// SPDX-License-Identifier: MIT
#include "host/read/assembly.h"

#include <algorithm>
#include <cmath>

#include <QDataStream>

#include "host/read/messages.h"

namespace host {
namespace {

struct Counts {
    quint32 vertices = 0, indices = 0, parts = 0;
    bool coloured = false;

    bool within(const MeshLimits &limits) const
    {
        return vertices > 0 && vertices <= limits.vertices && indices > 0 &&
               indices <= limits.indices && indices % 3 == 0 && parts > 0 && parts <= limits.parts;
    }
};

class MeshAssembly : public Assembly {
public:
    MeshAssembly(const Counts &wanted, const FileAxes &axes, const QStringList &notes);

    quint64 byteSize() const override;
    double arrived() const override
    {
        return double(mesh_->positions.size() + mesh_->normals.size() + mesh_->indices.size()) /
               (6.0 * wanted_.vertices + wanted_.indices);
    }
    bool takeItem(QDataStream &in) override;
    char *room(quint32 array, quint32 size) override;
    bool check(quint32 array, quint32 size) override;
    Content finish() override;

private:
    bool checkPositions(std::size_t from);
    bool checkNormals(std::size_t from) const;

    Counts wanted_;
    std::shared_ptr<Mesh> mesh_ = std::make_shared<Mesh>();
};

MeshAssembly::MeshAssembly(const Counts &wanted, const FileAxes &axes, const QStringList &notes)
    : wanted_(wanted)
{
    mesh_->axes = axes;
    mesh_->notes = notes;
    // Reserved memory costs nothing until it is written to, so a lie about the size gains nothing.
    mesh_->positions.reserve(std::size_t(wanted.vertices) * 3);
    mesh_->normals.reserve(std::size_t(wanted.vertices) * 3);
    mesh_->colours.reserve(wanted.coloured ? std::size_t(wanted.vertices) * 4 : 0);
    mesh_->indices.reserve(wanted.indices);
}

quint64 MeshAssembly::byteSize() const
{
    return Mesh::byteSize(wanted_.vertices, wanted_.coloured, wanted_.indices, wanted_.parts);
}

bool MeshAssembly::takeItem(QDataStream &in)
{
    MeshPart part;
    in >> part.indexCount;
    for (float &c : part.colour)
        in >> c;
    in >> part.name >> part.material;
    if (in.status() != QDataStream::Ok)
        return true;
    auto &parts = mesh_->parts;
    part.firstIndex = parts.empty() ? 0 : parts.back().firstIndex + parts.back().indexCount;
    const bool good = parts.size() < wanted_.parts && !part.name.isEmpty() && part.indexCount > 0 &&
                      part.indexCount % 3 == 0 &&
                      part.indexCount <= wanted_.indices - part.firstIndex &&
                      std::all_of(part.colour.begin(), part.colour.end(),
                                  [](float c) { return c >= 0 && c <= 1; });
    if (good)
        parts.push_back(part);
    return good;
}

char *MeshAssembly::room(quint32 array, quint32 size)
{
    const std::size_t vertices = wanted_.vertices;
    switch (array) {
    case messages::Positions:
        return extend(mesh_->positions, size, 12, vertices * 3);
    case messages::Normals:
        return extend(mesh_->normals, size, 12, vertices * 3);
    case messages::Colours:
        return extend(mesh_->colours, size, 4, wanted_.coloured ? vertices * 4 : 0);
    case messages::Indices:
        return extend(mesh_->indices, size, 4, wanted_.indices);
    default:
        return nullptr;
    }
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
        return std::all_of(mesh_->indices.end() - std::ptrdiff_t(values), mesh_->indices.end(),
                           [this](quint32 i) { return i < wanted_.vertices; });
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

Content MeshAssembly::finish()
{
    const std::size_t vertices = wanted_.vertices;
    if (mesh_->positions.size() != vertices * 3 || mesh_->normals.size() != vertices * 3 ||
        mesh_->colours.size() != (wanted_.coloured ? vertices * 4 : 0) ||
        mesh_->indices.size() != wanted_.indices || mesh_->parts.size() != wanted_.parts)
        return {};
    const MeshPart &last = mesh_->parts.back();
    if (last.firstIndex + last.indexCount != wanted_.indices)
        return {};
    return {std::move(mesh_), nullptr, nullptr};
}

} // namespace

std::unique_ptr<Assembly> meshAssembly(QDataStream &head, const MeshLimits &limits)
{
    Counts counts;
    QStringList notes;
    FileAxes axes;
    head >> counts.vertices >> counts.indices >> counts.parts >> counts.coloured;
    head >> axes.of[0] >> axes.of[1] >> axes.of[2] >> notes;
    if (head.status() != QDataStream::Ok || !counts.within(limits) || !axes.isValid())
        return nullptr;
    return std::make_unique<MeshAssembly>(counts, axes, notes);
}

} // namespace host
