// SPDX-License-Identifier: MIT
// A QOpenGLWidget for each tile.
#include <QOpenGLWidget>

#include "fixed.h"
#include "grid.h"

namespace {

class Tile : public QOpenGLWidget {
public:
    float azimuth = 0;

protected:
    void initializeGL() override { list_ = fixed::begin(); }
    void paintGL() override
    {
        glClear(GL_COLOR_BUFFER_BIT | GL_DEPTH_BUFFER_BIT);
        fixed::draw(list_, azimuth);
    }

private:
    GLuint list_ = 0;
};

} // namespace

void prepare() {}

std::unique_ptr<Peer> makePeer(int rows)
{
    return std::make_unique<OpenGLGridPeer<Tile>>(rows);
}
