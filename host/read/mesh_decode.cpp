// SPDX-License-Identifier: MIT
#include "host/read/mesh_stream.h"

#include <algorithm>
#include <cmath>
#include <new>

#include "host/read/mesh_frames.h"

namespace host {
namespace {

const QString broken = QStringLiteral("the reader's answer is broken");

/// A number out of @p data, which moves past it. Expects that enough is left.
template <class T> T next(const char *&data)
{
    T value;
    std::memcpy(&value, data, sizeof value);
    data += sizeof value;
    return value;
}

/// Appends the payload to @p array unless it would grow past @p wanted elements.
template <class T>
bool append(std::vector<T> &array, const char *data, quint32 size, quint64 wanted)
{
    const std::size_t count = size / sizeof(T);
    if (size % sizeof(T) != 0 || array.size() + count > wanted)
        return false;
    const std::size_t old = array.size();
    array.resize(old + count);
    std::memcpy(array.data() + old, data, size);
    return true;
}

bool allCoordinates(const std::vector<float> &values, std::size_t from, float most)
{
    return std::all_of(values.begin() + std::ptrdiff_t(from), values.end(),
                       [most](float v) { return std::abs(v) <= most; }); // false for NaN
}

} // namespace

quint64 MeshDecoder::Counts::bytes() const
{
    return quint64(vertices) * (24 + 4 * coloured) + quint64(indices) * 4;
}

MeshDecoder::State MeshDecoder::feed(const QByteArray &bytes)
{
    if (state_ != State::Reading)
        return state_;
    buffer_.append(bytes);
    begin_ = 0;
    try {
        while (state_ == State::Reading && takeFrame()) {
        }
    } catch (const std::bad_alloc &) {
        fail(QStringLiteral("there is not enough memory to hold it"));
    }
    buffer_.remove(0, begin_);
    return state_;
}

/// Returns false if no whole frame is left in the buffer.
bool MeshDecoder::takeFrame()
{
    const std::size_t left = std::size_t(buffer_.size() - begin_);
    frames::Head head;
    if (left < sizeof head)
        return false;
    const char *at = buffer_.constData() + begin_;
    head = next<frames::Head>(at);
    if (head.size > frames::maxPayload) {
        fail(broken);
        return false;
    }
    if (left < sizeof head + head.size + sizeof(quint32))
        return false;
    quint32 sum;
    std::memcpy(&sum, at + head.size, sizeof sum);
    const QString objection =
        sum == frames::checksum(head, at) ? accept(head.tag, at, head.size) : broken;
    begin_ += int(sizeof head + head.size + sizeof sum);
    if (!objection.isEmpty())
        fail(objection);
    return true;
}

/// Returns what is wrong with the frame, or nothing.
QString MeshDecoder::accept(quint32 tag, const char *data, quint32 size)
{
    if (!started_) {
        if (tag != frames::start || size != sizeof(quint32))
            return broken;
        if (next<quint32>(data) != frames::version)
            return QStringLiteral("the reader is of another version");
        started_ = true;
        return {};
    }
    switch (tag) {
    case frames::progress:
        return acceptProgress(data, size);
    case frames::failure:
        return size > 0 ? QString::fromUtf8(data, int(size)).left(400) : broken;
    case frames::counts:
        return acceptCounts(data, size);
    case frames::part:
        return acceptPart(data, size);
    case frames::end:
        return finish();
    default:
        return acceptArray(tag, data, size);
    }
}

QString MeshDecoder::acceptProgress(const char *data, quint32 size)
{
    if (size < sizeof(double))
        return broken;
    const double fraction = next<double>(data);
    fraction_ = fraction >= 0 && fraction <= 1 ? fraction : fraction_;
    stage_ = QString::fromUtf8(data, int(size - sizeof(double))).left(80);
    return {};
}

QString MeshDecoder::acceptCounts(const char *data, quint32 size)
{
    if (mesh_ || size != 16)
        return broken;
    Counts counts;
    counts.vertices = next<quint32>(data);
    counts.indices = next<quint32>(data);
    counts.parts = next<quint32>(data);
    counts.coloured = next<quint32>(data);
    if (counts.vertices == 0 || counts.vertices > limits_.vertices || counts.indices == 0 ||
        counts.indices > limits_.indices || counts.indices % 3 != 0 || counts.parts == 0 ||
        counts.parts > limits_.parts || counts.coloured > 1)
        return broken;
    mesh_ = std::make_shared<Mesh>();
    // Reserved memory costs nothing until it is written to, so a lie about the size gains nothing.
    mesh_->positions.reserve(std::size_t(counts.vertices) * 3);
    mesh_->normals.reserve(std::size_t(counts.vertices) * 3);
    mesh_->colours.reserve(counts.coloured ? std::size_t(counts.vertices) * 4 : 0);
    mesh_->indices.reserve(counts.indices);
    wanted_ = counts;
    return {};
}

QString MeshDecoder::acceptPart(const char *data, quint32 size)
{
    if (!mesh_ || mesh_->parts.size() >= wanted_.parts || size < 24)
        return broken;
    MeshPart part;
    part.indexCount = next<quint32>(data);
    part.colour = next<std::array<float, 4>>(data);
    const quint32 nameSize = next<quint32>(data);
    if (nameSize > size - 24)
        return broken;
    part.name = QString::fromUtf8(data, int(nameSize));
    part.material = QString::fromUtf8(data + nameSize, int(size - 24 - nameSize));
    part.firstIndex =
        mesh_->parts.empty() ? 0 : mesh_->parts.back().firstIndex + mesh_->parts.back().indexCount;
    const bool good = part.indexCount > 0 && part.indexCount % 3 == 0 &&
                      part.indexCount <= wanted_.indices - part.firstIndex &&
                      std::all_of(part.colour.begin(), part.colour.end(),
                                  [](float c) { return c >= 0 && c <= 1; });
    if (!good)
        return broken;
    mesh_->parts.push_back(part);
    return {};
}

QString MeshDecoder::acceptArray(quint32 tag, const char *data, quint32 size)
{
    if (!mesh_)
        return broken;
    Mesh &m = *mesh_;
    const quint64 vertices = wanted_.vertices;
    if (tag == frames::positions) {
        const std::size_t old = m.positions.size();
        if (size % 12 != 0 || !append(m.positions, data, size, vertices * 3) ||
            !allCoordinates(m.positions, old, Mesh::maxCoordinate))
            return broken;
        grow(old);
        return {};
    }
    if (tag == frames::normals) {
        const std::size_t old = m.normals.size();
        const bool good = append(m.normals, data, size, vertices * 3);
        return good && allCoordinates(m.normals, old, 1.001f) ? QString() : broken;
    }
    if (tag == frames::colours)
        return append(m.colours, data, size, vertices * 4 * wanted_.coloured) ? QString() : broken;
    const std::size_t old = m.indices.size();
    if (tag != frames::indices || !append(m.indices, data, size, wanted_.indices))
        return broken;
    return checkIndices(old);
}

QString MeshDecoder::checkIndices(std::size_t from) const
{
    const auto begin = mesh_->indices.begin() + std::ptrdiff_t(from);
    const bool good = std::all_of(begin, mesh_->indices.end(),
                                  [this](quint32 i) { return i < wanted_.vertices; });
    return good ? QString() : broken;
}

void MeshDecoder::grow(std::size_t firstPosition)
{
    Mesh &m = *mesh_;
    for (std::size_t i = firstPosition; i < m.positions.size(); i += 3) {
        const QVector3D p(m.positions[i], m.positions[i + 1], m.positions[i + 2]);
        for (int k = 0; k < 3; ++k) {
            m.min[k] = i == 0 ? p[k] : std::min(m.min[k], p[k]);
            m.max[k] = i == 0 ? p[k] : std::max(m.max[k], p[k]);
        }
    }
}

QString MeshDecoder::finish()
{
    if (!mesh_ || mesh_->byteSize() != announcedBytes() || mesh_->parts.size() != wanted_.parts)
        return broken;
    const MeshPart &last = mesh_->parts.back();
    if (last.firstIndex + last.indexCount != wanted_.indices)
        return broken;
    state_ = State::Done;
    return {};
}

double MeshDecoder::arrived() const
{
    return mesh_ ? double(mesh_->byteSize()) / double(announcedBytes()) : 0;
}

MeshPtr MeshDecoder::take()
{
    return state_ == State::Done ? std::move(mesh_) : nullptr;
}

void MeshDecoder::fail(const QString &reason)
{
    state_ = State::Failed;
    reason_ = reason;
    mesh_.reset();
}

} // namespace host
