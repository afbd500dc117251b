// SPDX-License-Identifier: MIT
#include "host/app/icon.h"

#include <cmath>

#include <QPainter>
#include <QPixmap>
#include <QPolygonF>

namespace host {

namespace {

QPixmap drawn(int side)
{
    QPixmap pixmap(side, side);
    pixmap.fill(Qt::transparent);
    QPainter painter(&pixmap);
    painter.setRenderHint(QPainter::Antialiasing);
    painter.scale(side / 64.0, side / 64.0);
    painter.setPen(Qt::NoPen);
    painter.setBrush(QColor(38, 44, 54));
    painter.drawRoundedRect(QRectF(2, 2, 60, 60), 13, 13);

    // A cube seen along its diagonal: three faces around the middle of a hexagon.
    const QPointF middle(32, 32);
    QPointF corner[6];
    for (int i = 0; i < 6; ++i) {
        const double angle = (90 + 60 * i) * 0.017453292519943295;
        corner[i] = middle + 22 * QPointF(std::cos(angle), -std::sin(angle));
    }
    const QColor faces[] = {QColor(142, 202, 255), QColor(36, 99, 176), QColor(74, 150, 230)};
    for (int face = 0; face < 3; ++face) {
        const int first = (2 * face + 5) % 6;
        painter.setBrush(faces[face]);
        painter.drawPolygon(
            QPolygonF({middle, corner[first], corner[(first + 1) % 6], corner[(first + 2) % 6]}));
    }
    return pixmap;
}

} // namespace

QIcon applicationIcon()
{
    QIcon icon;
    for (int side : {16, 24, 32, 48, 64, 128, 256})
        icon.addPixmap(drawn(side));
    return icon;
}

} // namespace host
