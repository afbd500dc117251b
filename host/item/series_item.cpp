// SPDX-License-Identifier: MIT
#include "host/item/series_item.h"

#include <cmath>

#include <QCoreApplication>
#include <QLocale>

namespace host {

namespace {

/// From pixels counted from the lower-left corner to those that a plot counts, from the top-left.
QPointF fromTop(const GLW *glw, const QPointF &at)
{
    return {at.x(), glw->height() - at.y()};
}

bool sameSample(const std::optional<Sample> &a, const std::optional<Sample> &b)
{
    return bool(a) == bool(b) && (!a || (a->column == b->column && a->row == b->row));
}

} // namespace

SeriesItem::SeriesItem(std::shared_ptr<const Table> table) : table_(table), plot_(std::move(table))
{
}

QString SeriesItem::details() const
{
    return QCoreApplication::translate("SeriesItem", "%1 rows  ·  %2 columns")
        .arg(QLocale().toString(qulonglong(table_->rows())))
        .arg(table_->columns.size());
}

quint64 SeriesItem::byteSize() const
{
    // The pyramid of each column is about as large as the column.
    return table_->rows() * sizeof(double) * (1 + 2 * table_->columns.size());
}

void SeriesItem::init(GLW *glw)
{
    fit(glw);
}

void SeriesItem::fit(GLW *glw)
{
    // The scene object asks its host, which is this; a tile asks nobody.
    QRectF range = glw->Range2D(0);
    if (range.isNull())
        range = plot_.range2D();
    const double air = 0.05 * std::abs(range.height());
    plot_.fit(glw, range.adjusted(0, range.height() < 0 ? air : -air, 0,
                                  range.height() < 0 ? -air : air));
    fittedSize_ = QSizeF(glw->width(), glw->height());
    showsWhole_ = true;
}

bool SeriesItem::advance(GLW *glw, double)
{
    if (!showsWhole_ || fittedSize_ == QSizeF(glw->width(), glw->height()))
        return false;
    fit(glw);
    return true;
}

void SeriesItem::draw2D(GLW *glw, const Display &display)
{
    plot_.setTheme(display.dark ? PlotTheme::Dark : PlotTheme::Light);
    plot_.setBackground(!display.transparent);
    plot_.draw2D(glw);
}

void SeriesItem::paintForeground(GLW *glw, QPainter *painter, const Display &)
{
    plot_.paintForeground(glw, painter);
}

bool SeriesItem::pick2D(GLW *glw, const std::optional<QPointF> &pointer)
{
    const std::optional<Sample> before = crosshair_;
    pointer_.reset();
    if (pointer)
        pointer_ = fromTop(glw, *pointer);
    asked_ = false;
    glw->NearestDataPos();
    if (!asked_) {
        QVector3D unused;
        nearestDataPos(glw, &unused);
    }
    return !sameSample(before, crosshair_);
}

/// Snaps the crosshair to the sample nearest to the pointer.
void SeriesItem::nearestDataPos(GLW *glw, QVector3D *position)
{
    asked_ = true;
    constexpr double reach = 80; // pixels
    crosshair_.reset();
    if (pointer_)
        crosshair_ = plot_.nearest(glw, *pointer_, reach);
    plot_.setCrosshair(crosshair_);
    *position = plot_.nearestPosition(glw, *position);
}

void SeriesItem::drag(GLW *glw, Drag, const QPointF &from, const QPointF &to)
{
    plot_.panBy(glw, fromTop(glw, to) - fromTop(glw, from));
    showsWhole_ = false;
}

void SeriesItem::zoom(GLW *glw, const QPointF &at, float steps, Qt::KeyboardModifiers modifiers)
{
    constexpr double perStep = 1.25;
    const double factor = std::pow(perStep, double(steps));
    const bool xOnly = modifiers & Qt::ShiftModifier;
    const bool yOnly = modifiers & Qt::ControlModifier;
    plot_.zoomAbout(glw, fromTop(glw, at), yOnly && !xOnly ? 1 : factor, xOnly ? 1 : factor);
    showsWhole_ = false;
}

void SeriesItem::selectArea2D(GLW *glw, const QRectF &area)
{
    plot_.select(
        glw, QRectF(fromTop(glw, area.topLeft()), fromTop(glw, area.bottomRight())).normalized());
}

bool SeriesItem::click(GLW *glw, const QPointF &at)
{
    const int column = plot_.legendHit(glw, fromTop(glw, at));
    if (column < 0)
        return false;
    plot_.toggle(column);
    return true;
}

} // namespace host
