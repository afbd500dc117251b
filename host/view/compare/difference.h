// SPDX-License-Identifier: MIT
#ifndef HOST_VIEW_COMPARE_DIFFERENCE_H
#define HOST_VIEW_COMPARE_DIFFERENCE_H

#include <QCoreApplication>

#include "host/item/background.h"
#include "host/measure/deviation.h"

namespace host {

/// How far the surface, or the points, of one mesh lie from the surface of another one, found by a
/// thread of its own. Both are in one frame.
class Difference {
    Q_DECLARE_TR_FUNCTIONS(Difference)
public:
    struct Found {
        MeshPtr mesh;        ///< The one, in triangles that are small beside it.
        Deviation deviation; ///< Of its vertices; signed where the other one bounds a volume.
    };

    /// What makes it impossible; empty if nothing does.
    static QString fault(const Mesh &from, const Mesh &mesh);

    /// Begins to measure @p mesh from @p from, and gives up what was under way. Edges of triangles
    /// that are longer than its size by @p fineness are halved.
    void start(const MeshPtr &from, const MeshPtr &mesh, double fineness = 100);
    void stop() { work_.clear(); } ///< Forgets all.

    bool isStarted() const { return work_.isStarted(); }
    bool isBusy() const { return work_.isBusy(); }
    double fraction() const { return progress_ ? progress_->load() : 0; } ///< 0 to 1.
    /// Null until it is there, and if there was not enough memory.
    const Found *get() const { return work_.get(); }
    bool lackedMemory() const { return work_.lackedMemory(); }

private:
    Background<Found> work_;
    std::shared_ptr<std::atomic<double>> progress_; // shared with the thread
};

} // namespace host

#endif
