// SPDX-License-Identifier: MIT
#include "host/measure/measurement.h"

#include <cmath>

#include <Eigen/Geometry>
#include <QLocale>

namespace host {

namespace {

/// A value with its unit, to the power of 1, 2 or 3.
QString withUnit(double value, const QString &unit, int power = 1)
{
    static const char *const powers[] = {"", "²", "³"};
    const QString number = Measurement::number(value);
    return unit.isEmpty() ? number : number + ' ' + unit + QString::fromUtf8(powers[power - 1]);
}

QString coordinates(const char *format, const Vec &v)
{
    QString text = QString::fromUtf8(format);
    for (int k = 0; k < 3; ++k)
        text = text.arg(Measurement::number(v[k]));
    return text;
}

/// An angle in radians.
QString angleText(double angle)
{
    return Measurement::number(angle * degrees) + QChar(0xB0);
}

/// A closed line around @p circle.
std::vector<Vec> outline(const Circle &circle)
{
    constexpr int sides = 72;
    const Vec u = circle.normal.unitOrthogonal(), v = circle.normal.cross(u);
    std::vector<Vec> points;
    for (int i = 0; i <= sides; ++i) {
        const double angle = i * 360.0 / sides / degrees;
        points.push_back(circle.centre +
                         circle.radius * (std::cos(angle) * u + std::sin(angle) * v));
    }
    return points;
}

} // namespace

QString Measurement::number(double value)
{
    QLocale locale;
    locale.setNumberOptions(QLocale::OmitGroupSeparator);
    return locale.toString(value == 0 ? 0.0 : value, 'g', 6); // no minus before a zero
}

QString Measurement::text() const
{
    return (QStringList(name) + values).join('\t');
}

Measurement Measurement::point(const Vec &at, const QString &unit)
{
    Measurement m;
    m.name = tr("Point");
    m.values << coordinates("x %1   y %2   z %3", at) + (unit.isEmpty() ? unit : ' ' + unit);
    m.marks = {at};
    m.anchor = at;
    return m;
}

Measurement Measurement::distance(const Vec &a, const Vec &b, const QString &unit)
{
    Measurement m;
    m.name = tr("Distance");
    m.values << withUnit((b - a).norm(), unit) << coordinates("Δx %1   Δy %2   Δz %3", b - a);
    m.marks = m.line = {a, b};
    m.anchor = (a + b) / 2;
    return m;
}

Measurement Measurement::faceAngle(const FacePoint &a, const FacePoint &b, const QString &unit)
{
    constexpr double parallel = 1e-5; // radians: what floats leave of it
    const double apart = angleBetween(a.normal, b.normal);
    Measurement m;
    m.name = tr("Angle of faces");
    m.values << angleText(180 / degrees - apart);
    if (apart < parallel || 180 / degrees - apart < parallel)
        m.values << tr("parallel, %1 apart")
                        .arg(withUnit(std::abs((b.at - a.at).dot(a.normal.normalized())), unit));
    m.marks = m.line = {a.at, b.at};
    m.anchor = (a.at + b.at) / 2;
    return m;
}

Measurement Measurement::pointAngle(const Vec &a, const Vec &apex, const Vec &b)
{
    Measurement m;
    m.name = tr("Angle of points");
    m.values << angleText(angleBetween(a - apex, b - apex));
    m.marks = m.line = {a, apex, b};
    m.anchor = apex;
    return m;
}

Measurement Measurement::radius(const Circle &circle, const QString &unit)
{
    const double rest = 1e-7 * (circle.radius + circle.centre.norm()); // that floats leave of 0
    const Vec centre = (circle.centre.array().abs() < rest).select(0, circle.centre);
    Measurement m;
    m.name = tr("Radius");
    m.values << "R " + withUnit(circle.radius, unit)
             << QString(QChar(0x2300)) + ' ' + withUnit(2 * circle.radius, unit)
             << coordinates("x %1   y %2   z %3", centre);
    m.marks = {circle.centre};
    m.line = outline(circle);
    m.anchor = circle.centre;
    return m;
}

Measurement Measurement::surface(const SurfaceMeasures &surface, const Mesh &mesh,
                                 const QString &what)
{
    Measurement m;
    m.name = tr("Area and volume");
    m.values << what << tr("area %1").arg(withUnit(surface.area, mesh.unit, 2));
    switch (surface.bounds) {
    case SurfaceMeasures::Bounds::Volume:
        m.values << tr("volume %1").arg(withUnit(surface.volume, mesh.unit, 3));
        break;
    case SurfaceMeasures::Bounds::Open:
        m.values << tr("no volume: it is not closed");
        break;
    case SurfaceMeasures::Bounds::Disagree:
        m.values << tr("no volume: some faces look inwards");
        break;
    }
    m.anchor = placeInFile(mesh, (surface.min + surface.max) / 2);
    return m;
}

} // namespace host
