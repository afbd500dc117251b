// SPDX-License-Identifier: MIT
// How a model is cut, as its view asks for it.
#include <algorithm>

#include "host/item/model_item.h"

namespace host {

CutPlane ModelItem::planeOf(const SectionRequest &request) const
{
    const QVector3D a = mesh_->axes.toFile(mesh_->min), b = mesh_->axes.toFile(mesh_->max);
    QVector3D min, max;
    for (int k = 0; k < 3; ++k) {
        min[k] = std::min(a[k], b[k]);
        max[k] = std::max(a[k], b[k]);
    }
    SectionRequest inMesh = request; // coordinates are those that people know
    if (!request.isShare)
        inMesh.value -= mesh_->origin[std::size_t(request.axis)];
    return inMesh.plane(min, max);
}

std::optional<CutPlane> ModelItem::planeAt(const GLW *glw, const QPointF &pixel) const
{
    const Ray ray = CameraSteering::geometryOf(glw).ray(pixel);
    const auto found = hit(ray);
    return found ? planeThrough(*mesh_, found->triangle, ray.direction) : std::nullopt;
}

} // namespace host
