// SPDX-License-Identifier: MIT
#include "host/read/rig.h"

#include <algorithm>
#include <cmath>

#include <QDataStream>

namespace host {
namespace {

// Fewer bytes than any element of the kind takes: no count beyond what is left makes sense.
constexpr quint32 leastItem = 8;

bool isFinite(const QMatrix4x4 &m)
{
    return std::all_of(m.constData(), m.constData() + 16, [](float v) { return std::isfinite(v); });
}

bool isFinite(const QVector3D &v)
{
    return std::isfinite(v.x()) && std::isfinite(v.y()) && std::isfinite(v.z());
}

bool isSound(const Rig::VectorKey &key)
{
    return isFinite(key.value);
}

bool isSound(const Rig::TurnKey &key)
{
    return std::abs(key.value.length() - 1) <= 1e-3f; // false for NaN
}

template <class Key> bool areSound(const std::vector<Key> &keys)
{
    double last = 0;
    for (const Key &key : keys) {
        if (!(key.seconds >= last && key.seconds <= Rig::maxSeconds) || !isSound(key))
            return false;
        last = key.seconds;
    }
    return !keys.empty();
}

bool isSound(const Rig &rig)
{
    const auto nodes = rig.nodes.size();
    for (std::size_t i = 0; i < nodes; ++i) {
        const qint32 parent = rig.nodes[i].parent;
        if (parent < (i == 0 ? -1 : 0) || parent >= qint32(i) || !isFinite(rig.nodes[i].local))
            return false;
    }
    const auto boneFits = [&](const Rig::Bone &b) { return b.node < nodes && isFinite(b.offset); };
    const auto trackFits = [&](const Rig::Track &t) {
        return t.node < nodes && areSound(t.places) && areSound(t.turns) && areSound(t.scales);
    };
    const auto clipFits = [&](const Rig::Clip &c) {
        return !c.name.isEmpty() && c.seconds > 0 && c.seconds <= Rig::maxSeconds &&
               std::all_of(c.tracks.begin(), c.tracks.end(), trackFits);
    };
    return nodes > 0 && nodes <= Rig::maxNodes && !rig.bones.empty() &&
           rig.bones.size() <= Rig::maxBones && !rig.clips.empty() &&
           std::all_of(rig.bones.begin(), rig.bones.end(), boneFits) &&
           std::all_of(rig.clips.begin(), rig.clips.end(), clipFits);
}

// The templates below look for these.
QDataStream &operator<<(QDataStream &out, const Rig::Track &t);
QDataStream &operator>>(QDataStream &in, Rig::Track &t);
QDataStream &operator<<(QDataStream &out, const Rig::Clip &c);
QDataStream &operator>>(QDataStream &in, Rig::Clip &c);

QDataStream &operator<<(QDataStream &out, const Rig::Node &n)
{
    return out << n.parent << n.local;
}

QDataStream &operator>>(QDataStream &in, Rig::Node &n)
{
    return in >> n.parent >> n.local;
}

QDataStream &operator<<(QDataStream &out, const Rig::Bone &b)
{
    return out << b.node << b.offset;
}

QDataStream &operator>>(QDataStream &in, Rig::Bone &b)
{
    return in >> b.node >> b.offset;
}

template <class Value> QDataStream &operator<<(QDataStream &out, const Rig::Key<Value> &k)
{
    return out << k.seconds << k.value;
}

template <class Value> QDataStream &operator>>(QDataStream &in, Rig::Key<Value> &k)
{
    return in >> k.seconds >> k.value;
}

template <class T> QDataStream &operator<<(QDataStream &out, const std::vector<T> &items)
{
    out << quint32(items.size());
    for (const T &item : items)
        out << item;
    return out;
}

/// Leaves the stream bad where the count cannot be.
template <class T> QDataStream &operator>>(QDataStream &in, std::vector<T> &items)
{
    quint32 count = 0;
    in >> count;
    if (count > quint64(in.device()->bytesAvailable()) / leastItem) {
        in.setStatus(QDataStream::ReadCorruptData);
        return in;
    }
    for (quint32 i = 0; i < count && in.status() == QDataStream::Ok; ++i) {
        items.emplace_back();
        in >> items.back();
    }
    return in;
}

QDataStream &operator<<(QDataStream &out, const Rig::Track &t)
{
    return out << t.node << t.places << t.turns << t.scales;
}

QDataStream &operator>>(QDataStream &in, Rig::Track &t)
{
    return in >> t.node >> t.places >> t.turns >> t.scales;
}

QDataStream &operator<<(QDataStream &out, const Rig::Clip &c)
{
    return out << c.name << c.seconds << c.tracks;
}

QDataStream &operator>>(QDataStream &in, Rig::Clip &c)
{
    return in >> c.name >> c.seconds >> c.tracks;
}

} // namespace

std::size_t Rig::keyCount() const
{
    std::size_t count = 0;
    for (const Clip &clip : clips)
        for (const Track &track : clip.tracks)
            count += track.places.size() + track.turns.size() + track.scales.size();
    return count;
}

std::size_t Rig::byteSize() const
{
    constexpr std::size_t perTrack = sizeof(Track) + 64;
    std::size_t tracks = 0;
    for (const Clip &clip : clips)
        tracks += clip.tracks.size();
    return nodes.size() * sizeof(Node) + bones.size() * sizeof(Bone) + tracks * perTrack +
           keyCount() * sizeof(VectorKey) + vertexBones.size() * sizeof(quint16) +
           vertexWeights.size() * sizeof(float);
}

QByteArray toBytes(const Rig &rig)
{
    QByteArray bytes;
    QDataStream out(&bytes, QIODevice::WriteOnly);
    out << rig.nodes << rig.bones << rig.clips;
    return bytes;
}

bool fromBytes(const QByteArray &bytes, Rig &rig)
{
    QDataStream in(bytes);
    in >> rig.nodes >> rig.bones >> rig.clips;
    return in.status() == QDataStream::Ok && in.atEnd() && isSound(rig);
}

bool suitsVertices(const Rig &rig, std::size_t vertices)
{
    if (rig.vertexBones.size() != vertices * 4 || rig.vertexWeights.size() != vertices * 4)
        return false;
    for (std::size_t i = 0; i < vertices; ++i) {
        float sum = 0;
        for (std::size_t k = i * 4; k < i * 4 + 4; ++k) {
            if (rig.vertexBones[k] >= rig.bones.size() || !(rig.vertexWeights[k] >= 0))
                return false;
            sum += rig.vertexWeights[k];
        }
        if (!(std::abs(sum - 1) <= 1e-3f))
            return false;
    }
    return true;
}

} // namespace host
