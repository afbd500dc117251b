// SPDX-License-Identifier: MIT
#include "host/view/compare/difference_item.h"

#include <QLocale>

#include "host/measure/deviation.h"

namespace host {

QString DifferenceItem::underPointer() const
{
    const QString part = ModelItem::underPointer();
    if (distance_.isEmpty())
        return part;
    return part.isEmpty() ? distance_ : QStringLiteral("%1  ·  %2").arg(distance_, part);
}

bool DifferenceItem::pick3D(GLW *glw, const std::optional<QPointF> &pointer)
{
    const bool isOther = ModelItem::pick3D(glw, pointer);
    const QString before = distance_;
    distance_ = pointer ? distanceAt(glw, *pointer) : QString();
    return isOther || distance_ != before;
}

QString DifferenceItem::distanceAt(const GLW *glw, const QPointF &at) const
{
    const Ray ray = CameraSteering::geometryOf(glw).ray(at);
    const std::optional<TriangleHit> found = hit(ray);
    if (!found)
        return {};
    const QVector3D place =
        ray.origin / scale() + centre() + ray.direction * float(found->distance);
    const double distance =
        valueAt(distances_, mesh(), found->triangle, {place.x(), place.y(), place.z()});
    return tr("distance %1 %2").arg(QLocale().toString(distance, 'g', 4), mesh().unit).trimmed();
}

} // namespace host
