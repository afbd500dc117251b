// SPDX-License-Identifier: MIT
// A window with a widget for each tile.
#ifndef BENCH_COMPARE_GRID_H
#define BENCH_COMPARE_GRID_H

#include <QCoreApplication>
#include <QGridLayout>
#include <QOpenGLWidget>

#include "peer.h"

/// @p Tile is made without arguments and has a member `azimuth`.
template <typename Tile> class GridPeer : public Peer {
public:
    explicit GridPeer(int rows)
    {
        auto *grid = new QGridLayout(&window_);
        grid->setContentsMargins(0, 0, 0, 0);
        grid->setSpacing(0);
        for (int i = 0; i < rows * rows; ++i) {
            tiles_.push_back(new Tile);
            grid->addWidget(tiles_.back(), i / rows, i % rows);
        }
    }
    QWidget *window() override { return &window_; }
    void turn(int tile, float azimuth) override { tiles_[std::size_t(tile)]->azimuth = azimuth; }

protected:
    const std::vector<Tile *> &tiles() const { return tiles_; }

private:
    QWidget window_;
    std::vector<Tile *> tiles_; // owned by the window
};

/// Asks Qt to draw, and waits until the window was swapped.
inline void updateAndWait(const std::vector<QOpenGLWidget *> &widgets)
{
    bool swapped = false;
    const auto heard = QObject::connect(widgets.back(), &QOpenGLWidget::frameSwapped,
                                        [&swapped] { swapped = true; });
    for (QOpenGLWidget *widget : widgets)
        widget->update();
    while (!swapped)
        QCoreApplication::processEvents(QEventLoop::WaitForMoreEvents);
    QObject::disconnect(heard);
}

/// The same for tiles that are QOpenGLWidgets.
template <typename Tile> class OpenGLGridPeer : public GridPeer<Tile> {
public:
    using GridPeer<Tile>::GridPeer;
    void draw(const std::vector<int> &tiles) override
    {
        std::vector<QOpenGLWidget *> widgets;
        for (const int tile : tiles)
            widgets.push_back(this->tiles()[std::size_t(tile)]);
        updateAndWait(widgets);
    }
};

#endif
