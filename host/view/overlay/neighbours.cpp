// SPDX-License-Identifier: MIT
#include "host/view/overlay/neighbours.h"

#include <QFileInfo>
#include <QFontMetricsF>
#include <QPainter>

#include "host/ui/metrics.h"

namespace host {

Neighbours::Neighbours(const Underlay &under, Window &window, const QString &path)
    : Overlay(under, window, "neighbours", QSizeF(560, 320)),
      path_(QFileInfo(path).absoluteFilePath())
{
    bindClick(tr("left click on a name of the strip"), tr("Open that file"));
}

/// In the middle of the lower edge, clear of both corners.
QRectF Neighbours::place(const QSizeF &size) const
{
    const double height = Metrics::type(28), margin = Metrics::px(8);
    return QRectF(size.width() / 4, size.height() - margin - height, size.width() / 2, height);
}

void Neighbours::setFiles(const QStringList &files)
{
    current_ = files.indexOf(path_);
    files_ = current_ < 0 ? QStringList() : files;
}

QString Neighbours::next(int step) const
{
    return current_ < 0 ? QString() : files_.value(current_ + step);
}

QRectF Neighbours::cell(const QRectF &bounds, int index) const
{
    const double width = bounds.width() / shown;
    return QRectF(bounds.left() + index * width, bounds.top(), width, bounds.height());
}

void Neighbours::paint(QPainter *painter, const QRectF &bounds)
{
    const double inset = Metrics::px(4), rounding = Metrics::px(6);
    const Theme &theme = display().theme();
    painter->setPen(Qt::NoPen);
    painter->setBrush(theme.panel);
    painter->drawRoundedRect(bounds, rounding, rounding);
    const QFontMetricsF metrics(painter->font());
    for (int i = 0; i < shown; ++i) {
        const QString name = QFileInfo(next(i - shown / 2)).fileName(); // empty where there is none
        const QRectF r = cell(bounds, i).adjusted(inset, 0, -inset, 0);
        painter->setPen(i == shown / 2 ? theme.accent : theme.text);
        painter->drawText(r, Qt::AlignCenter, metrics.elidedText(name, Qt::ElideMiddle, r.width()));
    }
}

QString Neighbours::fileAt(const QPointF &at, const QRectF &bounds) const
{
    for (int i = 0; i < shown; ++i)
        if (i != shown / 2 && cell(bounds, i).contains(at))
            return next(i - shown / 2);
    return {};
}

bool Neighbours::takes(const QPointF &at, const QRectF &bounds) const
{
    return !fileAt(at, bounds).isEmpty();
}

void Neighbours::click(const QPointF &at, const QRectF &bounds)
{
    const QString path = fileAt(at, bounds);
    if (!path.isEmpty())
        emit chosen(path);
}

} // namespace host
