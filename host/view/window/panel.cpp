// SPDX-License-Identifier: MIT
#include "host/view/window/panel.h"

#include <algorithm>
#include <cmath>

#include <QFontMetricsF>
#include <QPainter>

#include "host/ui/metrics.h"

namespace host {

namespace {

/// Pixels of a panel and around it.
struct Sizes {
    const double margin = Metrics::px(12);  // between a panel and the edge of its bounds
    const double padding = Metrics::px(10); // between a panel's edge and its text
    const double rounding = Metrics::px(7);
};

void paintText(QPainter *painter, const QFont &font, const QColor &colour, const QRectF &r,
               int flags, const QString &text)
{
    painter->setFont(font);
    painter->setPen(colour);
    painter->drawText(r, flags, text);
}

void paintBar(QPainter *painter, const QRectF &r, double fraction, const Theme &theme)
{
    QColor trough = theme.faint;
    trough.setAlphaF(0.3);
    painter->setPen(Qt::NoPen);
    painter->setBrush(trough);
    painter->drawRoundedRect(r, r.height() / 2, r.height() / 2);
    QRectF done = r;
    done.setWidth(std::max(r.height(), r.width() * std::min(1.0, fraction)));
    painter->setBrush(theme.accent);
    painter->drawRoundedRect(done, r.height() / 2, r.height() / 2);
}

} // namespace

QFont bold(QFont font)
{
    font.setBold(true);
    return font;
}

void paintPanel(QPainter *painter, const QRectF &r, const Theme &theme)
{
    painter->setRenderHint(QPainter::Antialiasing);
    painter->setPen(Qt::NoPen);
    painter->setBrush(theme.panel);
    painter->drawRoundedRect(r, Sizes().rounding, Sizes().rounding);
}

double noteHeight(const QFont &font, int lines)
{
    const double line = std::ceil(QFontMetricsF(font).height() * 1.2);
    return lines * line + Sizes().padding + Sizes().margin;
}

QRectF paintNote(QPainter *painter, const QRectF &bounds, Qt::Alignment corner,
                 const QString &heading, const QString &details, const Theme &theme)
{
    const double margin = Sizes().margin, padding = Sizes().padding;
    const QFont plain = painter->font(), strong = bold(plain);
    const QFontMetricsF plainMetrics(plain), strongMetrics(strong);
    const double room = bounds.width() - 2 * (margin + padding);
    const int lines = int(!heading.isEmpty()) + int(!details.isEmpty());
    if (lines == 0 || room < 3 * plainMetrics.averageCharWidth())
        return {};
    const QString first = strongMetrics.elidedText(heading, Qt::ElideMiddle, room);
    const QString second = plainMetrics.elidedText(details, Qt::ElideRight, room);
    const double width = std::max(heading.isEmpty() ? 0 : strongMetrics.horizontalAdvance(first),
                                  plainMetrics.horizontalAdvance(second));
    const double line = std::ceil(plainMetrics.height() * 1.2);
    QRectF r(0, 0, std::ceil(width) + 2 * padding, lines * line + padding);
    if (r.height() + 2 * margin > bounds.height())
        return {};
    r.moveTopLeft(bounds.topLeft() + QPointF(margin, margin));
    if (corner & Qt::AlignRight)
        r.moveRight(bounds.right() - margin);
    if (corner & Qt::AlignBottom)
        r.moveBottom(bounds.bottom() - margin);

    painter->save();
    paintPanel(painter, r, theme);
    QRectF text = r.adjusted(padding, padding / 2, 0, 0);
    text.setHeight(line);
    if (!heading.isEmpty()) {
        paintText(painter, strong, theme.text, text, Qt::AlignVCenter | Qt::TextSingleLine, first);
        text.translate(0, line);
    }
    paintText(painter, plain, heading.isEmpty() ? theme.text : theme.faint, text,
              Qt::AlignVCenter | Qt::TextSingleLine, second);
    painter->restore();
    return r;
}

void paintMessage(QPainter *painter, const QRectF &bounds, const QString &heading,
                  const QString &details, double fraction, const Theme &theme)
{
    const double margin = Sizes().margin, padding = Sizes().padding;
    const double widest = Metrics::type(460), bar = Metrics::px(8);
    const double width = std::min(widest, bounds.width() - 2 * margin) - 4 * padding;
    if (width < Metrics::type(60))
        return;
    const QFont plain = painter->font(), strong = bold(plain);
    const int flags = Qt::AlignHCenter | Qt::TextWordWrap;
    const QRectF any(0, 0, width, 10000);
    const QRectF head = QFontMetricsF(strong).boundingRect(any, flags, heading);
    const QRectF body =
        details.isEmpty() ? QRectF() : QFontMetricsF(plain).boundingRect(any, flags, details);
    const double bodyGap = details.isEmpty() ? 0 : padding / 2;
    const double barGap = fraction < 0 ? 0 : padding + bar;
    QRectF r(0, 0, width + 4 * padding,
             head.height() + bodyGap + body.height() + barGap + 3 * padding);
    r.moveCenter(bounds.center());

    painter->save();
    paintPanel(painter, r, theme);
    QRectF text = r.adjusted(2 * padding, 1.5 * padding, -2 * padding, 0);
    text.setHeight(head.height());
    paintText(painter, strong, theme.text, text, flags, heading);
    if (!details.isEmpty()) {
        text.translate(0, head.height() + bodyGap);
        text.setHeight(body.height());
        paintText(painter, plain, theme.faint, text, flags, details);
    }
    if (fraction >= 0)
        paintBar(painter, QRectF(text.left(), text.bottom() + padding, width, bar), fraction,
                 theme);
    painter->restore();
}

} // namespace host
