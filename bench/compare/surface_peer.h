// SPDX-License-Identifier: MIT
#ifndef BENCH_COMPARE_SURFACE_PEER_H
#define BENCH_COMPARE_SURFACE_PEER_H

#include "peer.h"

/// A peer that is one QGLWidget, made with the number of rows, which draws all tiles in every
/// frame and has turn(tile, azimuth) itself.
template <typename Surface> class SurfacePeer : public Peer {
public:
    explicit SurfacePeer(int rows) : surface_(rows) {}
    QWidget *window() override { return &surface_; }
    void turn(int tile, float azimuth) override { surface_.turn(tile, azimuth); }
    void draw(const std::vector<int> &) override { surface_.updateGL(); }

private:
    Surface surface_;
};

#endif
