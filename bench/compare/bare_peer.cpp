// SPDX-License-Identifier: MIT
// One widget, and a loop over the tiles in it: what all others are compared with.
#include <QGLWidget>

#include "fixed.h"
#include "peer.h"
#include "surface_peer.h"

namespace {

class Bare : public QGLWidget {
public:
    explicit Bare(int rows) : rows_(rows), azimuths_(std::size_t(rows * rows)) {}
    void turn(int tile, float azimuth) { azimuths_[std::size_t(tile)] = azimuth; }

protected:
    void initializeGL() override { list_ = fixed::begin(); }
    void paintGL() override
    {
        glClear(GL_COLOR_BUFFER_BIT | GL_DEPTH_BUFFER_BIT);
        const int cell = Peer::side / rows_;
        for (int i = 0; i < rows_ * rows_; ++i) {
            glViewport(i % rows_ * cell, (rows_ - 1 - i / rows_) * cell, cell, cell);
            fixed::draw(list_, azimuths_[std::size_t(i)]);
        }
    }

private:
    int rows_;
    std::vector<float> azimuths_;
    GLuint list_ = 0;
};

} // namespace

void prepare() {}

std::unique_ptr<Peer> makePeer(int rows)
{
    return std::make_unique<SurfacePeer<Bare>>(rows);
}
