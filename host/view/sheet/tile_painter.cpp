// SPDX-License-Identifier: MIT
#include "host/view/sheet/tile_painter.h"

#include <algorithm>

#include <QFontMetricsF>
#include <QPainter>
#include <QTextOption>

#include "host/ui/metrics.h"

namespace host {

namespace {

/// Pixels from a tile's edge to its text.
double inset()
{
    return Metrics::px(8);
}

double linkWidth()
{
    return Metrics::px(18);
}

/// Pixels for the name of a tile.
double nameWidth(const QRectF &cell, bool linked)
{
    return cell.width() - 2 * inset() - (linked ? linkWidth() : 0);
}

/// Two links of a chain.
void paintLink(QPainter *painter, const QRectF &r, const QColor &colour)
{
    painter->setPen(QPen(colour, Metrics::px(1.5)));
    const double third = Metrics::px(3);
    const QSizeF link(3 * third, 2 * third);
    for (double dx : {-third, third}) {
        QRectF one(QPointF(), link);
        one.moveCenter(r.center() + QPointF(dx, 0));
        painter->drawRoundedRect(one, third, third);
    }
}

} // namespace

int TilePainter::header()
{
    return int(Metrics::type(22));
}

void TilePainter::forget(int id)
{
    names_.remove(id);
    reasons_.remove(id);
}

void TilePainter::paint(QPainter *painter, int id, const SheetEntry &entry, const Place &place,
                        const Marks &marks, const Theme &theme)
{
    const QRectF &cell = place.cell;
    painter->save();
    if (place.drawing.top() - cell.top() >= header())
        paintHeader(painter, id, entry, cell, marks.linked, theme);
    paintState(painter, id, entry, place.drawing, theme);
    if (marks.selected || marks.hovered) {
        const double width = std::min(Metrics::px(marks.selected ? 3 : 1), cell.height() / 8);
        painter->setPen(QPen(marks.selected ? theme.accent : theme.faint, width, Qt::SolidLine,
                             Qt::SquareCap, Qt::MiterJoin));
        painter->drawRect(cell.adjusted(width / 2, width / 2, -width / 2, -width / 2));
    }
    painter->restore();
}

void TilePainter::paintHeader(QPainter *painter, int id, const SheetEntry &entry,
                              const QRectF &cell, bool linked, const Theme &theme)
{
    const double width = nameWidth(cell, linked);
    Laid &kept = names_[id];
    if (kept.width != width || kept.text != entry.name) {
        kept.width = width;
        kept.text = entry.name;
        kept.laid = QStaticText(
            QFontMetricsF(painter->font()).elidedText(entry.name, Qt::ElideMiddle, width));
        kept.laid.setTextFormat(Qt::PlainText);
    }
    const bool bad = entry.state == SheetEntry::State::Failed;
    painter->setPen(bad ? theme.fault : theme.text);
    const double height = QFontMetricsF(painter->font()).height();
    painter->drawStaticText(cell.topLeft() + QPointF(inset(), (header() - height) / 2), kept.laid);
    if (linked)
        paintLink(painter,
                  QRectF(cell.right() - inset() - linkWidth(), cell.top(), linkWidth(), header()),
                  theme.accent);
}

void TilePainter::paintWholeName(QPainter *painter, const QString &name, const QRectF &cell,
                                 bool linked, const QRectF &bounds, const Theme &theme)
{
    const QFontMetricsF metrics(painter->font());
    const double width = metrics.horizontalAdvance(name);
    if (width <= nameWidth(cell, linked))
        return;
    QRectF r(cell.left(), cell.top(), width + 2 * inset(), header());
    r.moveLeft(std::max(bounds.left(), std::min(r.left(), bounds.right() - r.width())));
    r.moveTop(std::max(bounds.top(), r.top()));
    painter->save();
    painter->fillRect(r, theme.top);
    painter->setPen(QPen(theme.faint, Metrics::px(1)));
    painter->drawRect(r);
    painter->setPen(theme.text);
    const double room = std::min(r.width(), bounds.width()) - 2 * inset();
    painter->drawText(r.adjusted(inset(), 0, 0, 0), Qt::AlignLeft | Qt::AlignVCenter,
                      metrics.elidedText(name, Qt::ElideMiddle, std::max(room, 0.0) + 1));
    painter->restore();
}

void TilePainter::paintState(QPainter *painter, int id, const SheetEntry &entry,
                             const QRectF &bounds, const Theme &theme)
{
    using State = SheetEntry::State;
    const double width = bounds.width() - 2 * inset();
    if (width < inset())
        return;
    if (entry.state == State::Waiting || entry.state == State::Reading ||
        entry.state == State::Released) {
        QRectF bar(bounds.left() + inset(), bounds.center().y(), width, Metrics::px(3));
        QColor trough = theme.faint;
        trough.setAlphaF(0.25);
        painter->fillRect(bar, trough);
        bar.setWidth(bar.width() * std::clamp(entry.fraction, 0.0, 1.0));
        painter->fillRect(bar, theme.accent);
        return;
    }
    if (entry.state != State::Failed)
        return;
    if (width < Metrics::type(60)) { // too narrow for words
        painter->setPen(theme.fault);
        painter->drawText(bounds, Qt::AlignCenter, QStringLiteral("!"));
        return;
    }
    Laid &kept = reasons_[id];
    if (kept.width != width || kept.text != entry.reason) {
        kept.width = width;
        kept.text = entry.reason;
        kept.laid = QStaticText(entry.reason);
        kept.laid.setTextFormat(Qt::PlainText);
        QTextOption option(Qt::AlignHCenter);
        option.setWrapMode(QTextOption::WrapAtWordBoundaryOrAnywhere);
        kept.laid.setTextOption(option);
        kept.laid.setTextWidth(width);
        kept.laid.prepare({}, painter->font());
    }
    const double height = std::min(kept.laid.size().height(), bounds.height());
    painter->setClipRect(bounds);
    painter->setPen(theme.faint);
    painter->drawStaticText(QPointF(bounds.left() + inset(), bounds.center().y() - height / 2),
                            kept.laid);
    painter->setClipping(false);
}

} // namespace host
