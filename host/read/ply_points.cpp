// SPDX-License-Identifier: MIT
#include "host/read/ply_points.h"

#include <algorithm>
#include <cstring>

#include <QHash>
#include <QtEndian>

#include "host/read/line_reader.h"

namespace host {
namespace {

using Type = PlyLayout::Type;

constexpr qint64 longestHeader = 1 << 16;
constexpr int mostWords = 64; // of a point in text

int sizeOf(Type type)
{
    constexpr int sizes[] = {1, 1, 2, 2, 4, 4, 4, 8};
    return sizes[int(type)];
}

std::optional<Type> typeOf(const QByteArray &name)
{
    static const QHash<QByteArray, Type> types = {
        {"char", Type::Int8},     {"int8", Type::Int8},     {"uchar", Type::UInt8},
        {"uint8", Type::UInt8},   {"short", Type::Int16},   {"int16", Type::Int16},
        {"ushort", Type::UInt16}, {"uint16", Type::UInt16}, {"int", Type::Int32},
        {"int32", Type::Int32},   {"uint", Type::UInt32},   {"uint32", Type::UInt32},
        {"float", Type::Float},   {"float32", Type::Float}, {"double", Type::Double},
        {"float64", Type::Double}};
    const auto found = types.constFind(name);
    return found == types.constEnd() ? std::nullopt : std::optional(*found);
}

struct Element {
    QByteArray name;
    quint64 count = 0;
    QHash<QByteArray, PlyLayout::Property> properties;
    int stride = 0;
    bool hasList = false;
};

struct Header {
    PlyLayout::Format format = PlyLayout::Format::Text;
    std::vector<Element> elements;
};

bool takeProperty(const QList<QByteArray> &words, Header &header)
{
    if (header.elements.empty() || words.size() < 3)
        return false;
    Element &element = header.elements.back();
    if (words[1] == "list") {
        element.hasList = true;
        return true;
    }
    const std::optional<Type> type = typeOf(words[1]);
    if (!type)
        return false;
    element.properties.insert(words[2].toLower(), {*type, element.stride});
    element.stride += header.format == PlyLayout::Format::Text ? 1 : sizeOf(*type);
    return true;
}

/// Returns whether the line may stand in a header.
bool takeHeaderLine(const QList<QByteArray> &words, Header &header)
{
    if (words[0] == "format" && words.size() > 1) {
        header.format = words[1] == "ascii"                  ? PlyLayout::Format::Text
                        : words[1] == "binary_little_endian" ? PlyLayout::Format::LittleEndian
                                                             : PlyLayout::Format::BigEndian;
        // Offsets are counted as the format has them, so that it has to stand before them.
        return header.elements.empty() && (words[1] == "ascii" || words[1] == "binary_big_endian" ||
                                           words[1] == "binary_little_endian");
    }
    if (words[0] == "element" && words.size() > 2) {
        bool isNumber = false;
        Element element;
        element.name = words[1];
        element.count = words[2].toULongLong(&isNumber);
        header.elements.push_back(element);
        return isNumber && header.elements.size() < 100;
    }
    if (words[0] == "property")
        return takeProperty(words, header);
    return words[0] == "comment" || words[0] == "obj_info";
}

template <class T> double numberAt(const char *bytes, bool bigEndian)
{
    return double(bigEndian ? qFromBigEndian<T>(bytes) : qFromLittleEndian<T>(bytes));
}

double decode(const char *point, const PlyLayout::Property &property, bool bigEndian)
{
    const char *bytes = point + property.offset;
    switch (property.type) {
    case Type::Int8:
        return double(qint8(*bytes));
    case Type::UInt8:
        return double(quint8(*bytes));
    case Type::Int16:
        return numberAt<qint16>(bytes, bigEndian);
    case Type::UInt16:
        return numberAt<quint16>(bytes, bigEndian);
    case Type::Int32:
        return numberAt<qint32>(bytes, bigEndian);
    case Type::UInt32:
        return numberAt<quint32>(bytes, bigEndian);
    case Type::Float:
        return numberAt<float>(bytes, bigEndian);
    case Type::Double:
        return numberAt<double>(bytes, bigEndian);
    }
    return 0;
}

/// What makes a colour's value one from 0 to 255.
double colourScale(Type type)
{
    return type == Type::Float || type == Type::Double ? 255 : type == Type::UInt16 ? 1 / 257.0 : 1;
}

/// Takes points until there are as many as the header promises, or the file ends.
class Points {
public:
    Points(const PlyLayout &layout, const MeshLimits &limits, qint64 bytes)
        : layout_(layout),
          builder_(limits, layout.colour      ? PointBuilder::Shade::Colour
                           : layout.intensity ? PointBuilder::Shade::Intensity
                                              : PointBuilder::Shade::None)
    {
        // No more than there can be: in text a word takes two bytes, the line's end among them.
        const quint64 least =
            quint64(layout.stride) * (layout.format == PlyLayout::Format::Text ? 2 : 1);
        builder_.reserve(std::size_t(std::min(layout.count, quint64(bytes) / least + 1)));
    }

    bool isWhole() const { return taken_ >= layout_.count; }

    template <class ValueOf> bool add(const ValueOf &valueOf)
    {
        for (std::size_t k = 0; k < 3; ++k) {
            point_.at[k] = valueOf(layout_.at[k]);
            if (layout_.colour) {
                const PlyLayout::Property &channel = (*layout_.colour)[k];
                point_.colour[k] = valueOf(channel) * colourScale(channel.type);
            }
        }
        if (layout_.intensity)
            point_.intensity = valueOf(*layout_.intensity);
        ++taken_;
        return builder_.add(point_);
    }

    Imported finish(const QString &name)
    {
        if (taken_ == 0)
            return {{}, QStringLiteral("the file ends before its first point")};
        Imported result = builder_.finish(name, FileAxes::Y);
        if (result.ok() && !isWhole())
            result.mesh.notes << QStringLiteral("the file ends after %1 of %2 points")
                                     .arg(taken_)
                                     .arg(layout_.count);
        return result;
    }

private:
    const PlyLayout &layout_;
    PointBuilder builder_;
    PointSample point_;
    quint64 taken_ = 0;
};

void readText(QFile &file, const PlyLayout &layout, const ReadProgress &progress, Points &points,
              QString &fault)
{
    LineReader lines(file, progress);
    std::string_view line;
    for (quint64 i = 0; i < layout.before && lines.next(line); ++i) {
    }
    double numbers[mostWords];
    while (!points.isWhole() && lines.next(line)) {
        const int count = readNumbers(line, false, numbers, layout.stride);
        if (count == 0 && line.find_first_not_of(" \t") == line.npos)
            continue;
        if (count < layout.stride) {
            fault = QStringLiteral("point on line %1 of its data: %2 numbers are expected")
                        .arg(lines.number())
                        .arg(layout.stride);
            return;
        }
        if (!points.add([&numbers](const PlyLayout::Property &p) { return numbers[p.offset]; }))
            return;
    }
    fault = lines.fault();
}

void readBinary(QFile &file, const PlyLayout &layout, const ReadProgress &progress, Points &points,
                QString &fault)
{
    const qint64 chunk = std::max<qint64>((1 << 20) / layout.stride, 1) * layout.stride;
    const bool bigEndian = layout.format == PlyLayout::Format::BigEndian;
    while (!points.isWhole()) {
        const QByteArray bytes = file.read(chunk);
        const char *point = bytes.constData(), *end = point + bytes.size();
        for (; end - point >= layout.stride && !points.isWhole(); point += layout.stride) {
            if (!points.add([point, bigEndian](const PlyLayout::Property &p) {
                    return decode(point, p, bigEndian);
                }))
                return;
        }
        if (file.error() != QFileDevice::NoError)
            fault = file.errorString();
        if (bytes.size() < chunk)
            return;
        if (progress)
            progress(0.9 * double(file.pos()) / double(file.size()),
                     QStringLiteral("reading points"));
    }
}

/// The properties of @p names, if all of them are there.
std::optional<std::array<PlyLayout::Property, 3>> three(const Element &element,
                                                        const std::array<const char *, 3> &names)
{
    std::array<PlyLayout::Property, 3> found;
    for (std::size_t k = 0; k < 3; ++k) {
        const auto property = element.properties.constFind(names[k]);
        if (property == element.properties.constEnd())
            return {};
        found[k] = *property;
    }
    return found;
}

/// What @p element, which holds the points, says of them; nothing if their place is missing.
std::optional<PlyLayout> layoutOf(const Element &element)
{
    const auto at = three(element, {"x", "y", "z"});
    if (!at || element.hasList || element.count == 0 || element.stride > mostWords * 8)
        return {};
    PlyLayout layout;
    layout.count = element.count;
    layout.stride = element.stride;
    layout.at = *at;
    layout.colour = three(element, {"red", "green", "blue"});
    if (!layout.colour)
        layout.colour = three(element, {"r", "g", "b"});
    for (const char *name : {"intensity", "scalar_intensity"}) {
        if (element.properties.contains(name))
            layout.intensity = element.properties.value(name);
    }
    return layout;
}

std::optional<Header> readHeader(QFile &file)
{
    Header header;
    if (!file.seek(0) || file.readLine(8).trimmed() != "ply")
        return {};
    while (file.pos() < longestHeader) {
        const QByteArray line = file.readLine(1024).simplified();
        if (line == "end_header")
            return header;
        if (!line.isEmpty() && !takeHeaderLine(line.split(' '), header))
            return {};
        if (file.atEnd())
            return {};
    }
    return {};
}

} // namespace

std::optional<PlyLayout> plyPoints(QFile &file)
{
    const std::optional<Header> header = readHeader(file);
    if (!header)
        return {};
    const bool text = header->format == PlyLayout::Format::Text;
    std::optional<PlyLayout> layout;
    quint64 before = 0;
    for (const Element &element : header->elements) {
        if (element.name == "vertex" && !layout) {
            layout = layoutOf(element);
            if (!layout || (text && layout->stride > mostWords))
                return {};
            layout->before = before;
        } else if (element.hasList && element.count > 0) {
            return {};
        } else if (!layout) {
            // A count beyond the file's size says that the file is broken.
            if (element.count > quint64(file.size()))
                return {};
            before += element.count * (text ? 1 : quint64(element.stride));
        }
    }
    if (!layout)
        return {};
    layout->format = header->format;
    layout->begin = file.pos();
    return layout;
}

Imported readPlyPoints(QFile &file, const PlyLayout &layout, const QString &name,
                       const ReadProgress &progress, const MeshLimits &limits)
{
    if (layout.count > limits.vertices)
        return {{}, QStringLiteral("it has more than %1 points").arg(limits.vertices)};
    Points points(layout, limits, file.size());
    QString fault;
    const bool text = layout.format == PlyLayout::Format::Text;
    file.seek(layout.begin + (text ? 0 : qint64(layout.before)));
    if (text)
        readText(file, layout, progress, points, fault);
    else
        readBinary(file, layout, progress, points, fault);
    if (!fault.isEmpty())
        return {{}, fault};
    return points.finish(name);
}

} // namespace host
