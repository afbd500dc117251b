// SPDX-License-Identifier: MIT
#ifndef BENCH_COMPARE_PEER_H
#define BENCH_COMPARE_PEER_H

#include <memory>
#include <vector>

#include <QWidget>

/// One way to show many models in a window of `side` pixels: a square grid of tiles, in each the
/// torus of scene.h from an azimuth of its own. Each source named *_peer.cpp defines prepare() and
/// makePeer(), and is linked with main.cpp to a program of its own.
class Peer {
public:
    static constexpr int side = 1000;

    Peer() = default;
    Peer(const Peer &) = delete;
    Peer &operator=(const Peer &) = delete;
    virtual ~Peer() = default;

    virtual QWidget *window() = 0; ///< Of the whole; not yet shown.
    /// Lets the tile, counted from 0, be looked at from @p azimuth degrees from the next frame on.
    virtual void turn(int tile, float azimuth) = 0;
    /// Draws what these tiles need to be right again, and returns when it is in the window.
    virtual void draw(const std::vector<int> &tiles) = 0;
};

void prepare();                           ///< Called before the application object is made.
std::unique_ptr<Peer> makePeer(int rows); ///< Of @p rows times @p rows tiles.

#endif
