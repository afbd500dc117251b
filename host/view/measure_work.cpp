// SPDX-License-Identifier: MIT
#include "host/view/measure_work.h"

#include <new>

#include <QCoreApplication>
#include <QThreadPool>

namespace host {

void MeasureWork::cancel()
{
    *cancelled_ = true;
    cancelled_ = std::make_shared<std::atomic<bool>>(false);
    open_ = std::make_shared<int>(0);
}

/// Lets @p work run elsewhere, and here what it returns.
void MeasureWork::start(const std::function<std::function<void()>(const std::atomic<bool> &)> &work)
{
    ++*open_;
    QThreadPool::globalInstance()->start([work, cancelled = cancelled_, open = open_] {
        const std::function<void()> answer = work(*cancelled);
        QMetaObject::invokeMethod(
            QCoreApplication::instance(),
            [answer, cancelled, open] {
                --*open;
                if (!*cancelled)
                    answer();
            },
            Qt::QueuedConnection);
    });
}

void MeasureWork::findTopology(const MeshPtr &mesh, std::function<void(TopologyPtr)> done)
{
    start([mesh, done = std::move(done)](const std::atomic<bool> &cancel) {
        TopologyPtr found;
        try {
            found = std::make_shared<MeshTopology>(mesh, cancel);
        } catch (const std::bad_alloc &) {
            found = nullptr; // which says so
        }
        return [done, found] { done(found); };
    });
}

void MeasureWork::measure(const TopologyPtr &topology, const std::vector<bool> &parts,
                          std::function<void(const SurfaceMeasures *)> done)
{
    start([topology, parts, done = std::move(done)](const std::atomic<bool> &cancel) {
        std::shared_ptr<SurfaceMeasures> found;
        try {
            found = std::make_shared<SurfaceMeasures>(measureSurface(*topology, parts, cancel));
        } catch (const std::bad_alloc &) {
            found = nullptr; // which says so
        }
        return [done, found] { done(found.get()); };
    });
}

} // namespace host
