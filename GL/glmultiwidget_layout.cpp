// SPDX-License-Identifier: MIT
// The multi-view's order and grid.
#include <algorithm>
#include <iostream>

#include <QSet>

#include "GL/glmultiwidget.h"

QVariantList GLMultiWidget::GetOrder()
{
    QVariantList list;
    for (int id : qAsConst(order))
        list.append(id);
    return list;
}

void GLMultiWidget::SetOrder(QVariantList o)
{
    order.clear();
    for (const QVariant &id : qAsConst(o))
        order.append(id.toInt());
    calculateLayout();
}

void GLMultiWidget::Resize(int, int)
{
    UpdateLayout();
}

void GLMultiWidget::UpdateLayout()
{
    if (property<bool>("enabled"))
        layoutIsStale();
}

QList<GLTile *> GLMultiWidget::visibleTiles() const
{
    QList<GLTile *> visible;
    for (GLTile *tile : tiles)
        if (tile->property<bool>("visible"))
            visible.append(tile);
    return visible;
}

QList<GLTile *> GLMultiWidget::orderedTiles() const
{
    if (order.isEmpty())
        return tiles.values();
    QList<GLTile *> ordered;
    QSet<int> named;
    for (int id : order) {
        named.insert(id);
        if (GLTile *tile = tiles.value(uint(id)))
            ordered.append(tile);
    }
    for (auto it = tiles.constBegin(); it != tiles.constEnd(); ++it)
        if (!named.contains(int(it.key())))
            ordered.append(it.value());
    return ordered;
}

/// The largest width and height asked for by a visible tile, and how many tiles are visible.
/// Returns false if that is no usable size.
bool GLMultiWidget::commonSize(float &width, float &height, int &count) const
{
    width = height = -1;
    const QList<GLTile *> visible = visibleTiles();
    for (GLTile *tile : visible) {
        const QSize hint = tile->property<QSize>("sizeHint");
        width = std::max(width, float(hint.width()));
        height = std::max(height, float(hint.height()));
    }
    count = visible.size();
    return width > 0 && height > 0;
}

/// The grid for @p count tiles, of those that the search tries, that makes tiles of the given
/// aspect ratio largest; on equal areas the one with fewer rows.
GLMultiWidget::Grid GLMultiWidget::searchGrid(int count, float tileWidth, float tileHeight) const
{
    const float W = float(width());
    const float H = float(height());
    const float aspect = tileWidth / tileHeight;
    Grid best;
    float bestArea = 0;
    for (int r = 1; r <= count;) {
        const int cols = std::max(1, int(float(count) / float(r) + 0.5));
        // Columns rounded down leave tiles over: each missing cell becomes a row, and the search
        // goes on behind them.
        const int missing = std::max(0, count - cols * r);
        const int rows = r + missing;
        const float cellW = W / float(cols);
        const float cellH = H / float(rows);
        const float scale = aspect > cellW / cellH ? cellW / tileWidth : cellH / tileHeight;
        const float area = (tileWidth * scale) * (tileHeight * scale);
        if (area > bestArea) {
            bestArea = area;
            best.rows = rows;
            best.cols = cols;
        }
        r = rows + 1;
    }
    return best;
}

/// Gives every visible tile its cell and, inside it, its drawing area.
void GLMultiWidget::placeTiles(const Grid &grid)
{
    const double spacing = property<int>("spacing");
    const double padding = property<int>("padding");
    const double header = property<int>("header");
    const double footer = property<int>("footer");
    const double tileW = bounded::truncate((width() - (grid.cols + 1) * spacing) / grid.cols);
    const double tileH = bounded::truncate((height() - (grid.rows + 1) * spacing) / grid.rows);
    int placed = 0;
    for (GLTile *tile : orderedTiles()) {
        if (!tile->property<bool>("visible"))
            continue;
        const int row = placed / grid.cols;
        const int col = placed % grid.cols;
        const double x = (col + 1) * spacing + tileW * col;
        const double y = (row + 1) * spacing + tileH * row;
        tile->orect = QRectF(x, y, tileW, tileH);
        tile->rect = QRectF(x + padding, y + padding + header, tileW - 2 * padding,
                            tileH - (header + 2 * padding + footer));
        ++placed;
    }
}

void GLMultiWidget::calculateLayout()
{
    if (tiles.isEmpty())
        return;
    float tileWidth, tileHeight;
    int count;
    if (!commonSize(tileWidth, tileHeight, count)) {
        std::cerr << "calculateLayout"
                  << " could not place tiles" << std::endl;
        return;
    }
    const Grid grid = searchGrid(count, tileWidth, tileHeight);
    const QPointer<GLMultiWidget> self(this);
    setProperty("rows", grid.rows);
    if (self)
        setProperty("cols", grid.cols);
    if (!self)
        return;
    placeTiles(grid);
    if (width() > 1.0 && height() > 1.0 && grid.cols * grid.rows > 0)
        emit TileResized(bounded::truncate(width() / grid.cols),
                         bounded::truncate(height() / grid.rows));
}
