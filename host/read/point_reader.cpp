// SPDX-License-Identifier: MIT
#include "host/read/point_reader.h"

#include <algorithm>
#include <cmath>

#include <QFile>
#include <QFileInfo>

#include "host/read/line_reader.h"
#include "host/read/ply_points.h"

namespace host {
namespace {

constexpr int mostNumbers = 10;         // on a line that count: place, intensity, normal and colour
constexpr std::size_t firstLines = 200; // that tell what the numbers are

struct Row {
    std::array<double, mostNumbers> numbers{};
    int count = 0;
};

/// Which number on a line is what.
struct Columns {
    int colour = -1; ///< The first of three.
    int intensity = -1;
    double scale = 1; ///< Of a colour, so that it reaches 255.
};

/// Whether three numbers from @p column on are that in all of @p rows.
template <class Test> bool are(const std::vector<Row> &rows, int column, const Test &test)
{
    return std::all_of(rows.begin(), rows.end(), [&](const Row &row) {
        return row.count >= column + 3 && test(&row.numbers[std::size_t(column)]);
    });
}

bool isUnit(const double *v)
{
    return std::abs(std::sqrt(v[0] * v[0] + v[1] * v[1] + v[2] * v[2]) - 1) < 0.02;
}

bool isColour(const double *v)
{
    return std::all_of(v, v + 3, [](double c) { return c >= 0 && c <= 65535; });
}

double scaleOf(const std::vector<Row> &rows, int column)
{
    double most = 0;
    bool whole = true;
    for (const Row &row : rows) {
        for (int k = 0; k < 3; ++k) {
            const double v = row.numbers[std::size_t(column + k)];
            most = std::max(most, v);
            whole = whole && v == std::floor(v);
        }
    }
    return most > 255 ? 1 / 257.0 : most <= 1 && !whole ? 255 : 1;
}

Columns columnsOf(const std::vector<Row> &rows, bool intensityFirst)
{
    Columns columns;
    const int fewest = std::min_element(rows.begin(), rows.end(), [](const Row &a, const Row &b) {
                           return a.count < b.count;
                       })->count;
    int next = intensityFirst && fewest != 6 ? 4 : 3;
    if (are(rows, next, isUnit)) // a normal
        next += 3;
    if (!are(rows, next, isColour) && next == 3)
        next = 4;
    if (are(rows, next, isColour)) {
        columns.colour = next;
        columns.scale = scaleOf(rows, next);
    } else if (fewest == 4 || (intensityFirst && fewest > 4)) {
        columns.intensity = 3;
    }
    return columns;
}

/// Makes points of lines. The first lines are kept until it is known what their numbers are.
class TextPoints {
public:
    TextPoints(const MeshLimits &limits, bool intensityFirst)
        : limits_(limits), intensityFirst_(intensityFirst)
    {
    }

    /// Returns whether more may come.
    bool take(std::string_view line, qint64 number);
    Imported finish(const QString &name);
    bool isMostlyPoints() const { return points_ > 0 && points_ >= strange_; }

private:
    bool begin();
    bool add(const Row &row);
    void passOver(qint64 number);

    const MeshLimits limits_;
    const bool intensityFirst_;
    std::optional<bool> decimalComma_;
    std::vector<Row> rows_;
    Columns columns_;
    std::optional<PointBuilder> builder_;
    bool full_ = false;
    std::size_t points_ = 0, strange_ = 0;
    qint64 firstStrange_ = 0;
};

bool TextPoints::take(std::string_view line, qint64 number)
{
    if (number == 1 && line.substr(0, 3) == "\xEF\xBB\xBF")
        line.remove_prefix(3);
    const std::size_t start = line.find_first_not_of(" \t\r");
    if (start == line.npos || line[start] == '#' || line[start] == '/' || line[start] == '%')
        return true;
    if (!decimalComma_)
        decimalComma_ = line.find(';') != line.npos && line.find(',') != line.npos;
    Row row;
    row.count = readNumbers(line, *decimalComma_, row.numbers.data(), mostNumbers);
    if (row.count < 3) {
        passOver(number);
        return true;
    }
    ++points_;
    if (builder_)
        return add(row);
    rows_.push_back(row);
    return rows_.size() < firstLines || begin();
}

/// Names of columns and a count may stand before the first point.
void TextPoints::passOver(qint64 number)
{
    decimalComma_ = points_ > 0 ? decimalComma_ : std::nullopt;
    constexpr qint64 mayPrecede = 3;
    if (points_ == 0 && number <= mayPrecede)
        return;
    if (strange_++ == 0)
        firstStrange_ = number;
}

bool TextPoints::begin()
{
    columns_ = columnsOf(rows_, intensityFirst_);
    builder_.emplace(limits_, columns_.colour >= 0      ? PointBuilder::Shade::Colour
                              : columns_.intensity >= 0 ? PointBuilder::Shade::Intensity
                                                        : PointBuilder::Shade::None);
    return std::all_of(rows_.begin(), rows_.end(), [this](const Row &row) { return add(row); });
}

bool TextPoints::add(const Row &row)
{
    PointSample point;
    for (std::size_t k = 0; k < 3; ++k) {
        point.at[k] = row.numbers[k];
        if (columns_.colour >= 0) // 0 where the line is shorter
            point.colour[k] = row.numbers[std::size_t(columns_.colour) + k] * columns_.scale;
    }
    if (columns_.intensity >= 0)
        point.intensity = row.numbers[std::size_t(columns_.intensity)];
    full_ = !builder_->add(point);
    return !full_;
}

Imported TextPoints::finish(const QString &name)
{
    if (!builder_ && !rows_.empty())
        begin();
    if (full_)
        return {{}, QStringLiteral("it has more than %1 points").arg(limits_.vertices)};
    if (!isMostlyPoints())
        return {{},
                strange_ == 0 ? QStringLiteral("there are no points in it")
                              : QStringLiteral("line %1 is no point: three numbers are expected")
                                    .arg(firstStrange_)};
    Imported result = builder_->finish(name, FileAxes::Z);
    if (result.ok() && strange_ > 0)
        result.mesh.notes << QStringLiteral("%1 lines that are no points left out, the first is "
                                            "line %2")
                                 .arg(strange_)
                                 .arg(firstStrange_);
    return result;
}

Imported readText(QFile &file, const QFileInfo &info, const ReadProgress &progress,
                  const MeshLimits &limits)
{
    TextPoints points(limits, info.suffix().toLower() == QLatin1String("pts"));
    LineReader lines(file, progress);
    std::string_view line;
    while (lines.next(line) && points.take(line, lines.number())) {
    }
    if (!lines.fault().isEmpty())
        return {{}, lines.fault()};
    return points.finish(info.completeBaseName());
}

} // namespace

QStringList pointSuffixes()
{
    return {QStringLiteral("asc"), QStringLiteral("pts"), QStringLiteral("xyz")};
}

bool isPointFile(const QString &path)
{
    const QString suffix = QFileInfo(path).suffix().toLower();
    if (suffix != QLatin1String("ply"))
        return pointSuffixes().contains(suffix);
    QFile file(path);
    return file.open(QIODevice::ReadOnly) && plyPoints(file);
}

bool looksLikePoints(const QByteArray &head)
{
    TextPoints points({}, false);
    const int end = head.lastIndexOf('\n') + 1;
    qint64 number = 0;
    for (int at = 0; at < end;) {
        const int next = head.indexOf('\n', at);
        points.take({head.constData() + at, std::size_t(next - at)}, ++number);
        at = next + 1;
    }
    return points.isMostlyPoints();
}

Imported readPoints(const QString &path, const ReadProgress &progress, const MeshLimits &limits)
{
    QFile file(path);
    if (!file.open(QIODevice::ReadOnly))
        return {{}, file.errorString()};
    const QFileInfo info(path);
    if (info.suffix().toLower() != QLatin1String("ply"))
        return readText(file, info, progress, limits);
    const std::optional<PlyLayout> layout = plyPoints(file);
    if (!layout)
        return {{}, QStringLiteral("its header tells of no points")};
    return readPlyPoints(file, *layout, info.completeBaseName(), progress, limits);
}

} // namespace host
