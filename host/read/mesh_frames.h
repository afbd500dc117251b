// SPDX-License-Identifier: MIT
#ifndef HOST_READ_MESH_FRAMES_H
#define HOST_READ_MESH_FRAMES_H

#include <cstddef>
#include <cstring>

#include <QtGlobal>

namespace host {
namespace frames {

constexpr quint32 version = 1;
constexpr quint32 maxPayload = 256 * 1024; ///< Also the most that one frame makes the reader do.

/// A tag as its four letters stand in the stream.
constexpr quint32 tag(const char (&t)[5])
{
    return quint32(t[0]) | quint32(t[1]) << 8 | quint32(t[2]) << 16 | quint32(t[3]) << 24;
}

constexpr quint32 start = tag("GLVM");    ///< version
constexpr quint32 progress = tag("PROG"); ///< double fraction, stage in UTF-8
constexpr quint32 failure = tag("FAIL");  ///< reason in UTF-8
constexpr quint32 counts = tag("MESH");   ///< vertices, indices, parts, coloured
constexpr quint32 part = tag("PART");     ///< index count, 4 floats, length of name, name, material
constexpr quint32 positions = tag("POSN");
constexpr quint32 normals = tag("NORM");
constexpr quint32 colours = tag("COLR");
constexpr quint32 indices = tag("INDX");
constexpr quint32 end = tag("DONE");

struct Head {
    quint32 tag;
    quint32 size; // of the payload, in bytes
};

/// Over head and payload. Eight bytes at a step, since it runs over every byte of every mesh in the
/// process that draws; any change within one step changes it.
inline quint32 checksum(const Head &head, const char *data)
{
    constexpr quint64 prime = 0x9E3779B97F4A7C15;
    quint64 sum = (quint64(head.tag) << 32 | head.size) * prime;
    std::size_t i = 0;
    for (; i + 8 <= head.size; i += 8) {
        quint64 word;
        std::memcpy(&word, data + i, 8);
        sum = (sum ^ word) * prime;
        sum ^= sum >> 32;
    }
    for (; i < head.size; ++i)
        sum = (sum ^ quint8(data[i])) * prime;
    return quint32(sum * prime >> 32); // every bit of the sum reaches the upper half
}

} // namespace frames
} // namespace host

#endif
