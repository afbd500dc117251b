// SPDX-License-Identifier: MIT
#include "host/view/overlay/section_handles.h"

#include <algorithm>
#include <cmath>

#include <QLocale>
#include <QMouseEvent>
#include <QPainter>

#include "host/item/camera_steering.h"
#include "host/ui/metrics.h"
#include "host/view/window/panel.h"

namespace host {

namespace {

double knobRadius()
{
    return Metrics::px(7);
}

/// How far a point lies from the piece of a line between two others.
double distance(const QPointF &p, const QPointF &a, const QPointF &b)
{
    const QPointF way = b - a;
    const double length = QPointF::dotProduct(way, way);
    const double share =
        length > 0 ? std::clamp(QPointF::dotProduct(p - a, way) / length, 0.0, 1.0) : 0;
    const QPointF d = p - (a + way * share);
    return std::sqrt(QPointF::dotProduct(d, d));
}

/// How far along @p axis from @p point the line comes nearest to the ray: where both are joined at
/// right angles. Expects that they are not parallel.
double nearestAlong(const QVector3D &point, const QVector3D &axis, const Ray &ray)
{
    const QVector3D w = point - ray.origin;
    const double b = double(QVector3D::dotProduct(axis, ray.direction));
    return (b * double(QVector3D::dotProduct(ray.direction, w)) -
            double(QVector3D::dotProduct(axis, w))) /
           (1 - b * b);
}

} // namespace

SectionHandles::SectionHandles(const Underlay &under, Window &window)
    : Overlay(under, window, "section-handles", QSizeF(160, 120))
{
    bindClick(tr("left drag on a plane's knob or edge"), tr("Move the cutting plane"));
}

QRectF SectionHandles::place(const QSizeF &size) const
{
    return QRectF(QPointF(0, 0), size);
}

bool SectionHandles::isShown() const
{
    const Item *shown = mainItem();
    return shown && shown->section() && shown->section()->isCutting();
}

int SectionHandles::chosen() const
{
    const Item *item = mainItem();
    const std::size_t count = item && item->section() ? item->section()->planes.size() : 0;
    return std::clamp(chosen_, 0, std::max(0, int(count) - 1));
}

QPointF SectionHandles::toObject(const QPointF &at, const QRectF &bounds) const
{
    return {at.x() - bounds.left(), bounds.bottom() - at.y()};
}

/// Nothing if a corner lies behind the eye: it has no pixel.
std::optional<SectionHandles::Shown> SectionHandles::shown(const SectionFrame &frame,
                                                           const QRectF &bounds) const
{
    const CameraGeometry geometry = CameraSteering::geometryOf(mainGLW());
    const bool parallel = mainGLW()->camera.ortho != 0;
    const auto inWindow = [&](const QVector3D &p) {
        const QPointF at = geometry.pixel(p);
        return QPointF(bounds.left() + at.x(), bounds.bottom() - at.y());
    };
    Shown shown;
    QVector3D knob;
    // In the upper right, where nothing else lies over the model.
    const auto rank = [](const QPointF &p) { return p.x() - p.y(); };
    for (const QVector3D &corner : frame.corners) {
        if (!parallel && geometry.depth(corner) < 0.01f)
            return {};
        shown.corners << inWindow(corner);
        if (shown.corners.size() == 1 || rank(shown.corners.last()) > rank(shown.knob)) {
            shown.knob = shown.corners.last();
            knob = corner;
        }
    }
    const double perPixel = 2 * double(geometry.halfHeight(geometry.depth(knob))) / bounds.height();
    shown.tip = inWindow(knob + frame.normal * float(perPixel * Metrics::px(34)));
    return shown;
}

/// The plane whose handle is at a place of the window; -1 for none.
int SectionHandles::planeAt(const QPointF &at, const QRectF &bounds) const
{
    const std::vector<SectionFrame> frames = mainItem()->sectionFrames();
    int nearest = -1;
    double least = Metrics::px(6);
    for (std::size_t i = 0; i < frames.size(); ++i) {
        const auto handle = shown(frames[i], bounds);
        if (!handle)
            continue;
        double d = distance(at, handle->knob, handle->knob) - knobRadius();
        for (int k = 0; k < 4; ++k)
            d = std::min(d, distance(at, handle->corners[k], handle->corners[(k + 1) % 4]));
        if (d < least) {
            least = d;
            nearest = int(i);
        }
    }
    return nearest;
}

bool SectionHandles::takes(const QPointF &at, const QRectF &bounds) const
{
    return planeAt(at, bounds) >= 0;
}

void SectionHandles::click(const QPointF &at, const QRectF &bounds)
{
    const int plane = planeAt(at, bounds);
    if (plane < 0)
        return;
    chosen_ = dragged_ = plane;
    from_ = toObject(at, bounds);
    now_ = at;
    before_ = mainItem()->section()->planes[std::size_t(plane)].offset;
    emit changed();
}

double SectionHandles::dragged(const SectionFrame &frame, double offset,
                               const CameraGeometry &camera, const QPointF &from, const QPointF &to)
{
    constexpr double alongTheNormal = 0.97; // cosine of 14 degrees
    const QVector3D &point = frame.corners[0];
    const double facing = double(QVector3D::dotProduct(frame.normal, camera.forward()));
    double way = 0;
    if (std::abs(facing) > alongTheNormal) {
        const double perPixel =
            (camera.onPlane(to + QPointF(0, 1), point) - camera.onPlane(to, point)).length();
        way = (to.y() - from.y()) * perPixel * (facing > 0 ? 1 : -1);
    } else {
        way = nearestAlong(point, frame.normal, camera.ray(to)) -
              nearestAlong(point, frame.normal, camera.ray(from));
    }
    return std::clamp(offset + way / frame.scale, frame.least, frame.most);
}

void SectionHandles::drag(const QPointF &at, const QRectF &bounds)
{
    const std::vector<SectionFrame> frames = mainItem()->sectionFrames();
    if (dragged_ < 0 || std::size_t(dragged_) >= frames.size())
        return;
    now_ = at;
    const CameraGeometry camera = CameraSteering::geometryOf(mainGLW());
    emit moved(dragged_, dragged(frames[std::size_t(dragged_)], before_, camera, from_,
                                 toObject(at, bounds)));
}

void SectionHandles::released()
{
    dragged_ = -1;
    emit changed();
}

bool SectionHandles::eventFilter(QObject *object, QEvent *event)
{
    const bool moves = event->type() == QEvent::MouseMove;
    if (dragged_ < 0 && (moves || event->type() == QEvent::Leave)) {
        const int before = hot_;
        hot_ = moves && isThere() ? planeAt(static_cast<QMouseEvent *>(event)->localPos(), bounds())
                                  : -1;
        if (hot_ != before)
            emit changed();
    }
    return Overlay::eventFilter(object, event);
}

void SectionHandles::paint(QPainter *painter, const QRectF &bounds)
{
    const std::vector<SectionFrame> frames = mainItem()->sectionFrames();
    const Theme &theme = display().theme();
    for (std::size_t i = 0; i < frames.size(); ++i) {
        const auto handle = shown(frames[i], bounds);
        if (!handle)
            continue;
        const bool strong = int(i) == dragged_ || int(i) == hot_;
        QColor line = theme.accent;
        line.setAlpha(strong ? 255 : 130);
        painter->setPen(QPen(line, Metrics::px(strong ? 2 : 1.2)));
        painter->setBrush(Qt::NoBrush);
        painter->drawPolygon(handle->corners);
        painter->setPen(QPen(theme.accent, Metrics::px(2.4), Qt::SolidLine, Qt::RoundCap));
        painter->drawLine(handle->knob, handle->tip);
        const QLineF shaft(handle->tip, handle->knob);
        if (shaft.length() > Metrics::px(12))
            for (const double turn : {-30.0, 30.0}) {
                QLineF barb = shaft;
                barb.setAngle(shaft.angle() + turn);
                barb.setLength(Metrics::px(8));
                painter->drawLine(barb);
            }
        const double radius = knobRadius() * (strong ? 1.2 : 1);
        painter->setPen(
            QPen(display().dark ? QColor(20, 24, 30) : QColor(Qt::white), Metrics::px(1.6)));
        painter->setBrush(theme.accent);
        painter->drawEllipse(handle->knob, radius, radius);
    }
    if (dragged_ >= 0)
        paintValue(painter, bounds);
}

/// Where the plane is, beside the pointer: on its axis, or how deep it lies in the model.
void SectionHandles::paintValue(QPainter *painter, const QRectF &bounds) const
{
    const Section &section = *mainItem()->section();
    const std::vector<SectionFrame> frames = mainItem()->sectionFrames();
    if (std::size_t(dragged_) >= frames.size())
        return;
    const SectionFrame &frame = frames[std::size_t(dragged_)];
    const CutPlane &plane = section.planes[std::size_t(dragged_)];
    const int axis = plane.axis();
    const double size =
        std::max({std::abs(frame.least), std::abs(frame.most), 1e-300}) + std::abs(frame.origin);
    const double step = mainItem()->unitsPerPixel(mainGLW());
    const int digits =
        step > 0 ? std::clamp(int(std::ceil(std::log10(size / step))) + 1, 3, 12) : 4;
    const double value = axis >= 0 ? plane.place() + frame.origin : frame.most - plane.offset;
    const QString number =
        QLocale().toString(std::abs(value) < step / 8 ? 0.0 : value, 'g', digits);
    const QString text = axis >= 0 ? QStringLiteral("%1 = %2").arg("xyz"[axis]).arg(number)
                                   : tr("%1 deep").arg(number);
    const double gap = Metrics::px(14);
    const QRectF near = QRectF(now_ + QPointF(gap, gap), bounds.bottomRight()).normalized();
    paintNote(painter,
              near.width() > Metrics::px(150) && near.height() > Metrics::px(50)
                  ? near
                  : bounds.adjusted(gap, 0, 0, 0),
              Qt::AlignTop | Qt::AlignLeft, {}, text, display().theme());
}

} // namespace host
