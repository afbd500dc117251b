// SPDX-License-Identifier: MIT
#include "host/view/measure_paint.h"

#include <algorithm>
#include <cmath>

#include <QFontMetricsF>
#include <QPainter>

#include "host/measure/label_layout.h"
#include "host/series/line_clip.h"
#include "host/ui/metrics.h"
#include "host/view/window/panel.h"

namespace host {

namespace {

double padding()
{
    return Metrics::px(6);
}

double lineHeight(const QFont &font)
{
    return std::ceil(QFontMetricsF(font).height() * 1.15);
}

} // namespace

MeasurePaint::MeasurePaint(QPainter *painter, const ModelItem &item, const GLW *glw,
                           const Theme &theme)
    : painter_(painter),
      item_(item),
      glw_(glw),
      theme_(theme),
      sight_(item, glw),
      plain_(painter->font()),
      strong_(painter->font())
{
    strong_.setBold(true);
    theme_.panel.setAlpha(225); // whatever is behind, text reads well on it
    painter_->setRenderHint(QPainter::Antialiasing);
}

QPointF MeasurePaint::toWindow(const QPointF &pixel) const
{
    const QRectF r = glw_->geometry(false);
    return {r.left() + pixel.x(), r.bottom() - pixel.y()};
}

/// Places in the file's frame; the line in the window's pixels.
std::optional<QLineF> MeasurePaint::lineOf(const Vec &a, const Vec &b) const
{
    const Mesh &mesh = item_.mesh();
    const auto line = sight_.line(placeInMesh(mesh, a), placeInMesh(mesh, b));
    if (!line)
        return {};
    return QLineF(toWindow(line->p1()), toWindow(line->p2()));
}

/// With a rim, so that lines are seen on any colour.
void MeasurePaint::stroke(const std::vector<QLineF> &wanted)
{
    const QRectF around = glw_->geometry(false).adjusted(-99, -99, 99, 99);
    std::vector<QLineF> lines;
    for (const QLineF &line : wanted) {
        QPointF a = line.p1(), b = line.p2();
        if (clipSegment(around, a, b)) // the painter bears no millions of pixels
            lines.emplace_back(a, b);
    }
    for (const bool rim : {true, false}) {
        painter_->setPen(QPen(rim ? theme_.panel : theme_.accent, Metrics::px(rim ? 4 : 1.8),
                              Qt::SolidLine, Qt::RoundCap));
        painter_->drawLines(lines.data(), int(lines.size()));
    }
}

void MeasurePaint::dot(const Vec &place)
{
    const auto at = lineOf(place, place);
    if (!at)
        return;
    painter_->setPen(QPen(theme_.panel, Metrics::px(1.5)));
    painter_->setBrush(theme_.accent);
    painter_->drawEllipse(at->p1(), Metrics::px(4), Metrics::px(4));
}

void MeasurePaint::pending(const std::vector<Vec> &places)
{
    std::vector<QLineF> lines;
    for (std::size_t i = 1; i < places.size(); ++i)
        if (const auto line = lineOf(places[i - 1], places[i]))
            lines.push_back(*line);
    stroke(lines);
    for (const Vec &place : places)
        dot(place);
}

void MeasurePaint::snap(const Snap &snap)
{
    const QPointF at = toWindow(sight_.seen(snap.at).pixel);
    const double r = Metrics::px(6);
    painter_->setBrush(Qt::NoBrush);
    for (const bool rim : {true, false}) {
        painter_->setPen(QPen(rim ? theme_.panel : theme_.accent, Metrics::px(rim ? 4.5 : 2)));
        if (snap.kind == Snap::Kind::Vertex)
            painter_->drawRect(QRectF(at - QPointF(r, r), QSizeF(2 * r, 2 * r)));
        else if (snap.kind == Snap::Kind::Edge)
            painter_->drawPolygon(QPolygonF(
                {at + QPointF(0, -1.3 * r), at + QPointF(1.3 * r, r), at + QPointF(-1.3 * r, r)}));
        else
            painter_->drawEllipse(at, r, r);
    }
}

/// Where the label's leader ends: on what is seen of the measurement.
std::optional<QPointF> MeasurePaint::anchorOf(const Measurement &m, const QRectF &bounds) const
{
    const auto middle = lineOf(m.anchor, m.anchor);
    if (middle && bounds.contains(middle->p1()))
        return middle->p1();
    for (std::size_t i = 1; i < m.line.size(); ++i) {
        const auto line = lineOf(m.line[i - 1], m.line[i]);
        if (!line)
            continue;
        QPointF a = line->p1(), b = line->p2();
        if (clipSegment(bounds, a, b))
            return (a + b) / 2;
    }
    return {};
}

QSizeF MeasurePaint::sizeOf(const Measurement &m) const
{
    double width = 0;
    for (int i = 0; i < m.values.size(); ++i)
        width = std::max(width, QFontMetricsF(i ? plain_ : strong_).horizontalAdvance(m.values[i]));
    return {std::ceil(width) + 2 * padding(), m.values.size() * lineHeight(strong_) + padding()};
}

void MeasurePaint::label(const Measurement &m, const QPointF &anchor, const QRectF &r)
{
    const QPointF near(std::clamp(anchor.x(), r.left(), r.right()),
                       std::clamp(anchor.y(), r.top(), r.bottom()));
    if (near != anchor)
        stroke({QLineF(anchor, near)});
    paintPanel(painter_, r, theme_);
    QRectF text = r.adjusted(padding(), padding() / 2, 0, 0);
    text.setHeight(lineHeight(strong_));
    for (int i = 0; i < m.values.size(); ++i) {
        painter_->setFont(i ? plain_ : strong_);
        painter_->setPen(theme_.text);
        painter_->drawText(text, Qt::AlignVCenter | Qt::TextSingleLine, m.values[i]);
        text.translate(0, text.height());
    }
}

void MeasurePaint::measurements(const std::vector<Measurement> &all, const QRectF &bounds)
{
    std::vector<LabelWish> wishes;
    std::vector<const Measurement *> labelled;
    for (const Measurement &m : all) {
        std::vector<QLineF> lines;
        for (std::size_t i = 1; i < m.line.size(); ++i)
            if (const auto line = lineOf(m.line[i - 1], m.line[i]))
                lines.push_back(*line);
        stroke(lines);
        for (const Vec &place : m.marks)
            dot(place);
        if (const auto anchor = anchorOf(m, bounds)) {
            wishes.push_back({*anchor, sizeOf(m)});
            labelled.push_back(&m);
        }
    }
    const std::vector<QRectF> places = layLabels(wishes, bounds, Metrics::px(6));
    for (std::size_t i = 0; i < places.size(); ++i)
        label(*labelled[i], wishes[i].anchor, places[i]);
}

} // namespace host
