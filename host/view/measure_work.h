// SPDX-License-Identifier: MIT
#ifndef HOST_VIEW_MEASURE_WORK_H
#define HOST_VIEW_MEASURE_WORK_H

#include <atomic>
#include <functional>
#include <memory>

#include "host/measure/mesh_measures.h"

namespace host {

using TopologyPtr = std::shared_ptr<const MeshTopology>;

/// What measuring a large mesh takes long for, in threads of its own. Answers come through the
/// thread of the application, and none after the end of this object: what is still under way then
/// is given up.
class MeasureWork {
public:
    MeasureWork() = default;
    ~MeasureWork() { cancel(); }
    MeasureWork(const MeasureWork &) = delete;
    MeasureWork &operator=(const MeasureWork &) = delete;

    /// Finds how the triangles of @p mesh meet. Null: there was not enough memory.
    void findTopology(const MeshPtr &mesh, std::function<void(TopologyPtr)> done);
    /// Measures what measureSurface() does. Null: there was not enough memory.
    void measure(const TopologyPtr &topology, const std::vector<bool> &parts,
                 std::function<void(const SurfaceMeasures *)> done);

    bool isBusy() const { return *open_ > 0; }
    void cancel(); ///< Gives up what is under way; its answers do not come.

private:
    using Flag = std::shared_ptr<std::atomic<bool>>;
    void start(const std::function<std::function<void()>(const std::atomic<bool> &)> &work);

    Flag cancelled_ = std::make_shared<std::atomic<bool>>(false);
    std::shared_ptr<int> open_ = std::make_shared<int>(0); // the application's thread counts
};

} // namespace host

#endif
