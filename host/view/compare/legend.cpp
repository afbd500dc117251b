// SPDX-License-Identifier: MIT
#include "host/view/compare/legend.h"

#include <algorithm>
#include <cmath>

#include <QFontMetricsF>
#include <QLocale>
#include <QPainter>

#include "host/ui/metrics.h"
#include "host/view/window/panel.h"

namespace host {

namespace {

double padding()
{
    return Metrics::px(10);
}

double lineHeight(const QFont &font)
{
    return std::ceil(QFontMetricsF(font).height() * 1.2);
}

} // namespace

Legend::Legend(const Underlay &under, Window &window)
    : Overlay(under, window, "legend", QSizeF(330, 240))
{
}

QRectF Legend::place(const QSizeF &size) const
{
    const double margin = Metrics::px(12);
    const double width = QFontMetricsF(window().widget()->font()).averageCharWidth() * 26;
    const double height = std::min(size.height() - 2 * margin, Metrics::type(360));
    return QRectF(size.width() - margin - width, margin, width, height);
}

void Legend::paintLine(QPainter *painter, const QRectF &line, const QColor &colour,
                       const QString &text) const
{
    painter->setPen(colour);
    painter->drawText(
        line, Qt::AlignLeft | Qt::AlignVCenter,
        QFontMetricsF(painter->font()).elidedText(text, Qt::ElideMiddle, line.width()));
}

void Legend::paint(QPainter *painter, const QRectF &bounds)
{
    const Theme &theme = display().theme();
    paintPanel(painter, bounds, theme);
    const double line = lineHeight(painter->font());
    QRectF room = bounds.adjusted(padding(), padding(), -padding(), -padding());
    const auto takeTop = [&room, line] {
        const QRectF taken(room.topLeft(), QSizeF(room.width(), line));
        room.setTop(room.top() + line);
        return taken;
    };
    const QFont plain = painter->font();
    QFont bold = plain;
    bold.setBold(true);
    painter->setFont(bold);
    paintLine(painter, takeTop(), theme.text, content_->title);
    painter->setFont(plain);
    paintLine(painter, takeTop(), theme.faint, content_->subtitle);
    QRectF bar = room.adjusted(0, line, 0, -line * (content_->lines.size() + 1));
    bar.setWidth(Metrics::px(18));
    paintBar(painter, bar);
    room.setTop(bar.bottom() + line);
    for (int i = 0; i < content_->lines.size(); ++i) {
        QRectF place = takeTop();
        if (i + 1 == content_->lines.size()) { // as along the colours
            painter->setPen(QPen(theme.accent, Metrics::px(3)));
            painter->drawLine(place.topLeft() + QPointF(Metrics::px(2), line * 0.2),
                              place.bottomLeft() + QPointF(Metrics::px(2), -line * 0.2));
            place.setLeft(place.left() + Metrics::px(9));
        }
        paintLine(painter, place, theme.text, content_->lines[i]);
    }
}

/// The colours from below upwards, with numbers beside them.
void Legend::paintBar(QPainter *painter, const QRectF &bar) const
{
    constexpr int stops = 64, ticks = 4;
    const Theme &theme = display().theme();
    const ColourScale &scale = content_->scale;
    const double low = scale.isSigned ? -scale.end : 0, range = scale.end - low;
    QLinearGradient gradient(bar.bottomLeft(), bar.topLeft());
    for (int i = 0; i <= stops; ++i)
        gradient.setColorAt(double(i) / stops, scale.at(low + range * i / stops));
    painter->fillRect(bar, gradient);
    painter->setPen(QPen(theme.faint, 1));
    painter->setBrush(Qt::NoBrush);
    painter->drawRect(bar);
    const auto height = [&](double value) {
        return bar.bottom() - bar.height() * std::clamp((value - low) / range, 0.0, 1.0);
    };
    const double line = lineHeight(painter->font()), gap = Metrics::px(5);
    for (int i = 0; i <= ticks; ++i) {
        const double value = low + range * i / ticks, y = height(value);
        QString text = QLocale().toString(value, 'g', 4);
        if (scale.isSigned && value > 0)
            text.prepend('+');
        if (scale.isSigned && (i == 0 || i == ticks))
            text += QStringLiteral("  ") + (i == 0 ? tr("inside") : tr("outside"));
        painter->setPen(QPen(theme.text, 1));
        painter->drawLine(QPointF(bar.right(), y), QPointF(bar.right() + gap, y));
        painter->drawText(QRectF(bar.right() + 3 * gap, y - line / 2, bar.width() * 20, line),
                          Qt::AlignLeft | Qt::AlignVCenter, text);
    }
    const double x = bar.right() + 2 * gap;
    painter->setPen(QPen(theme.accent, Metrics::px(3)));
    painter->drawLine(QPointF(x, height(content_->tolerance)),
                      QPointF(x, height(-content_->tolerance)));
}

} // namespace host
