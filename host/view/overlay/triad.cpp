// SPDX-License-Identifier: MIT
#include "host/view/overlay/triad.h"

#include <algorithm>

#include <QPainter>

#include "host/item/camera_geometry.h"
#include "host/ui/metrics.h"
#include "host/view/window/window.h"

namespace host {

namespace {

/// Pixels from the middle to an arm's end.
double reach()
{
    return Metrics::px(34);
}

double endRadius()
{
    return Metrics::px(9);
}

} // namespace

double Triad::size()
{
    return Metrics::px(92);
}

double Triad::margin()
{
    return Metrics::px(12);
}

Triad::Triad(const Underlay &under, Window &window)
    : Overlay(under, window, "triad", QSizeF(260, 220))
{
    bindClick(tr("left click on an arm of the axes"), tr("Look along it"));
}

QRectF Triad::place(const QSizeF &window) const
{
    return QRectF(margin(), window.height() - margin() - size(), size(), size());
}

bool Triad::isShown() const
{
    const Item *shown = mainItem();
    return shown && shown->isSpatial();
}

std::array<Triad::Arm, 6> Triad::arms(const QRectF &bounds) const
{
    const CameraGeometry geometry(mainGLW()->camera, QSizeF(size(), size()));
    const FileAxes axes = mainItem()->axes().value_or(FileAxes());
    using Side = Steering::Side;
    // Who looks from the right sees the end of +X come towards the eye.
    const Side sides[3][2] = {
        {Side::Right, Side::Left}, {Side::Top, Side::Bottom}, {Side::Front, Side::Back}};
    std::array<Arm, 6> all;
    for (int i = 0; i < 6; ++i) {
        const int axis = i / 2; // of the world
        const bool positive = i % 2 == 0;
        const int ofFile = axes.of[std::size_t(axis)];
        QVector3D v;
        v[axis] = positive ? 1 : -1;
        const QPointF out(double(QVector3D::dotProduct(v, geometry.right())),
                          -double(QVector3D::dotProduct(v, geometry.up())));
        all[std::size_t(i)] = {
            bounds.center() + out * reach(), -double(QVector3D::dotProduct(v, geometry.forward())),
            std::abs(ofFile) - 1, positive == (ofFile > 0), sides[axis][positive ? 0 : 1]};
    }
    std::sort(all.begin(), all.end(), [](const Arm &a, const Arm &b) { return a.depth < b.depth; });
    return all;
}

void Triad::paint(QPainter *painter, const QRectF &bounds)
{
    const bool dark = display().dark;
    const QColor colours[3] = {dark ? QColor(255, 110, 100) : QColor(200, 48, 40),
                               dark ? QColor(120, 210, 110) : QColor(40, 132, 48),
                               dark ? QColor(110, 165, 255) : QColor(36, 92, 204)};
    painter->setFont(Metrics::font(11, true));
    for (const Arm &arm : arms(bounds)) {
        const QColor colour = colours[arm.axis];
        const double radius = endRadius(), inner = Metrics::px(3);
        const QRectF end(arm.end - QPointF(radius, radius), QSizeF(2 * radius, 2 * radius));
        if (!arm.positive) {
            QColor faint = colour;
            faint.setAlpha(110);
            painter->setPen(QPen(colour, Metrics::px(1.2)));
            painter->setBrush(faint);
            painter->drawEllipse(end.adjusted(inner, inner, -inner, -inner));
            continue;
        }
        painter->setPen(QPen(colour, Metrics::px(2.4)));
        painter->drawLine(bounds.center(), arm.end);
        painter->setPen(Qt::NoPen);
        painter->setBrush(colour);
        painter->drawEllipse(end);
        painter->setPen(dark ? QColor(20, 24, 30) : QColor(Qt::white));
        painter->drawText(end, Qt::AlignCenter, QString("XYZ"[arm.axis]));
    }
}

std::optional<Steering::Side> Triad::sideAt(const QPointF &at, const QRectF &bounds) const
{
    const auto all = arms(bounds);
    // What is nearer to the viewer was painted last and covers the rest.
    for (auto arm = all.rbegin(); arm != all.rend(); ++arm) {
        const QPointF d = at - arm->end;
        if (QPointF::dotProduct(d, d) <= endRadius() * endRadius() * 1.4)
            return arm->side;
    }
    return {};
}

bool Triad::takes(const QPointF &at, const QRectF &bounds) const
{
    return sideAt(at, bounds).has_value();
}

void Triad::click(const QPointF &at, const QRectF &bounds)
{
    if (const auto side = sideAt(at, bounds))
        emit sideChosen(*side);
}

} // namespace host
