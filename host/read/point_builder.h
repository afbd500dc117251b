// SPDX-License-Identifier: MIT
#ifndef HOST_READ_POINT_BUILDER_H
#define HOST_READ_POINT_BUILDER_H

#include <array>
#include <vector>

#include "host/read/import.h"

namespace host {

/// What a file says of one point.
struct PointSample {
    std::array<double, 3> at{};     ///< In the file's own axes.
    std::array<double, 3> colour{}; ///< 0 to 255; what lies beyond counts as the nearer end.
    double intensity = 0;           ///< Of any range: shown as grey, between the least and most.
};

/// Makes a cloud of points that come one by one. Takes 12 to 20 bytes for each, and 12 more
/// while it is finished.
class PointBuilder {
public:
    enum class Shade { None, Colour, Intensity };

    PointBuilder(const MeshLimits &limits, Shade shade) : limits_(limits), shade_(shade) {}

    /// Makes room for as many; more can be added.
    void reserve(std::size_t points);

    /// Takes a point, or counts it as left out if its coordinates are of no use. Returns false if
    /// the limits let in no more.
    bool add(const PointSample &point);

    std::size_t count() const { return mesh_.positions.size() / 3; }

    /// The cloud as one part called @p name, standing on the file's axis @p up; or the reason why
    /// there is none. Once.
    Imported finish(const QString &name, FileAxes::Axis up);

private:
    void shadeByIntensity();

    const MeshLimits limits_;
    const Shade shade_;
    Mesh mesh_; // in the file's own axes until it is finished
    std::vector<float> intensities_;
    std::size_t leftOut_ = 0;
};

} // namespace host

#endif
