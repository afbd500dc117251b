// SPDX-License-Identifier: MIT
#include "host/item/section.h"

#include <cmath>

#include <QRegularExpression>

namespace host {

double CutPlane::beyond(const QVector3D &p) const
{
    // In double: far from the origin the products of floats would lose what matters.
    return double(normal.x()) * double(p.x()) + double(normal.y()) * double(p.y()) +
           double(normal.z()) * double(p.z()) - offset;
}

int CutPlane::axis() const
{
    for (int k = 0; k < 3; ++k)
        if (std::abs(normal[k]) == 1)
            return k;
    return -1;
}

double CutPlane::place() const
{
    const int k = axis();
    return k < 0 ? offset : offset * double(normal[k]);
}

bool Section::keeps(const QVector3D &point, int without) const
{
    if (!on)
        return true;
    for (std::size_t i = 0; i < planes.size(); ++i)
        if (int(i) != without && planes[i].beyond(point) > 0)
            return false;
    return true;
}

Section Section::inMesh(const FileAxes &axes) const
{
    Section turned = *this;
    for (CutPlane &plane : turned.planes)
        plane.normal = axes.fromFile(plane.normal); // the axes share their origin
    return turned;
}

CutPlane SectionRequest::plane(const QVector3D &min, const QVector3D &max) const
{
    const double low = double(min[axis]), high = double(max[axis]);
    CutPlane plane;
    plane.normal = {0, 0, 0};
    plane.normal[axis] = 1;
    plane.offset = isShare ? low + (high - low) * value : value;
    return lowerGoes ? plane.flipped() : plane;
}

std::optional<SectionRequest> parseSection(const QString &text)
{
    static const QRegularExpression form("^(-?)([xyz])(?::([^%]+)(%?))?$",
                                         QRegularExpression::CaseInsensitiveOption);
    const QRegularExpressionMatch match = form.match(text);
    if (!match.hasMatch())
        return {};
    SectionRequest request;
    request.lowerGoes = !match.captured(1).isEmpty();
    request.axis = FileAxes::Axis(match.captured(2).toLower()[0].unicode() - u'x');
    if (match.captured(3).isEmpty())
        return request;
    bool number = false;
    request.value = match.captured(3).toDouble(&number);
    request.isShare = !match.captured(4).isEmpty();
    if (request.isShare)
        request.value /= 100;
    const double least = request.isShare ? 0 : -double(Mesh::maxCoordinate);
    const double most = request.isShare ? 1 : double(Mesh::maxCoordinate);
    return number && request.value >= least && request.value <= most ? std::optional(request)
                                                                     : std::nullopt;
}

} // namespace host
