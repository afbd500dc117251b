// SPDX-License-Identifier: MIT
#include "host/view/overlay/player.h"

#include <QLocale>
#include <QPainter>

#include "host/ui/metrics.h"

namespace host {

Player::Player(const Underlay &under, Window &window, std::function<Playback *()> playback)
    : Overlay(under, window, "player", QSizeF(400, 240)), playback_(std::move(playback))
{
    bindClick(tr("left click or drag on the bar of the animation"), tr("Go to that time"));
}

/// In the middle, above the strip of neighbours.
QRectF Player::place(const QSizeF &size) const
{
    const double height = Metrics::type(28), margin = Metrics::px(8);
    return QRectF(size.width() / 4, size.height() - 2 * (margin + height), size.width() / 2,
                  height);
}

QRectF Player::button(const QRectF &bounds)
{
    return QRectF(bounds.topLeft(), QSizeF(bounds.height(), bounds.height()));
}

QRectF Player::bar(const QRectF &bounds)
{
    return bounds.adjusted(bounds.height(), 0, -Metrics::type(110), 0);
}

void Player::paint(QPainter *painter, const QRectF &bounds)
{
    const Playback &playback = *playback_();
    const Theme &theme = display().theme();
    const double rounding = Metrics::px(6), third = bounds.height() / 3, thick = Metrics::px(3);
    painter->setPen(Qt::NoPen);
    painter->setBrush(theme.panel);
    painter->drawRoundedRect(bounds, rounding, rounding);

    const QRectF sign = button(bounds).adjusted(third, third, -third, -third);
    painter->setBrush(theme.text);
    if (playback.isPlaying()) {
        painter->drawRect(QRectF(sign.topLeft(), QSizeF(third * 0.36, third)));
        painter->drawRect(QRectF(sign.right() - third * 0.36, sign.top(), third * 0.36, third));
    } else {
        const QPointF corners[] = {
            sign.topLeft(), {sign.right(), sign.center().y()}, sign.bottomLeft()};
        painter->drawPolygon(corners, 3);
    }

    const QRectF line = bar(bounds);
    const double at = line.width() * playback.time() / playback.length();
    QRectF groove(line.left(), line.center().y() - thick / 2, line.width(), thick);
    painter->setBrush(theme.faint);
    painter->drawRoundedRect(groove, thick / 2, thick / 2);
    groove.setWidth(at);
    painter->setBrush(theme.accent);
    painter->drawRoundedRect(groove, thick / 2, thick / 2);
    painter->drawEllipse(QPointF(line.left() + at, line.center().y()), thick * 2, thick * 2);

    const QLocale locale;
    painter->setPen(theme.text);
    painter->drawText(bounds.adjusted(0, 0, -Metrics::px(8), 0), Qt::AlignRight | Qt::AlignVCenter,
                      tr("%1 of %2 s")
                          .arg(locale.toString(playback.time(), 'f', 2),
                               locale.toString(playback.length(), 'f', 2)));
}

void Player::click(const QPointF &at, const QRectF &bounds)
{
    Playback &playback = *playback_();
    onBar_ = !button(bounds).contains(at);
    if (onBar_)
        drag(at, bounds);
    else
        playback.setPlaying(!playback.isPlaying());
    emit changed();
}

void Player::drag(const QPointF &at, const QRectF &bounds)
{
    Playback *playback = playback_();
    if (!onBar_ || !playback)
        return;
    const QRectF line = bar(bounds);
    playback->setPlaying(false);
    playback->setTime((at.x() - line.left()) / line.width() * playback->length());
    emit changed();
}

} // namespace host
