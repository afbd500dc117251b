// SPDX-License-Identifier: MIT
#ifndef HOST_READ_PLY_POINTS_H
#define HOST_READ_PLY_POINTS_H

#include <array>
#include <optional>
#include <vector>

#include <QFile>

#include "host/read/point_builder.h"

namespace host {

/// Where in a PLY file the points stand, and what is said of each.
struct PlyLayout {
    enum class Type : quint8 { Int8, UInt8, Int16, UInt16, Int32, UInt32, Float, Double };
    struct Property {
        Type type = Type::Float;
        int offset = 0; ///< In bytes; in text, in words.
    };
    enum class Format { Text, LittleEndian, BigEndian };

    Format format = Format::Text;
    quint64 count = 0;  ///< Of points.
    qint64 begin = 0;   ///< Of what follows the header, in the file.
    quint64 before = 0; ///< What precedes the first point: bytes; in text, lines.
    int stride = 0;     ///< Bytes of a point; in text, words.
    std::array<Property, 3> at;
    std::optional<std::array<Property, 3>> colour;
    std::optional<Property> intensity;
};

/// The layout of a PLY file that holds points and nothing that joins them. Returns nothing for all
/// others, and for a header that is broken. Leaves the file anywhere.
std::optional<PlyLayout> plyPoints(QFile &file);

/// Reads the points of the file whose layout plyPoints() gave, +Y up, as one part called @p name;
/// or gives the reason why there are none. Fewer than the header promises are a note.
Imported readPlyPoints(QFile &file, const PlyLayout &layout, const QString &name,
                       const ReadProgress &progress, const MeshLimits &limits);

} // namespace host

#endif
