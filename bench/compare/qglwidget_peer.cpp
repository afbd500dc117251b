// SPDX-License-Identifier: MIT
// A QGLWidget for each tile.
#include <QGLWidget>

#include "fixed.h"
#include "grid.h"

namespace {

class Tile : public QGLWidget {
public:
    float azimuth = 0;

protected:
    void initializeGL() override { list_ = fixed::begin(); }
    void resizeGL(int width, int height) override { glViewport(0, 0, width, height); }
    void paintGL() override
    {
        glClear(GL_COLOR_BUFFER_BIT | GL_DEPTH_BUFFER_BIT);
        fixed::draw(list_, azimuth);
    }

private:
    GLuint list_ = 0;
};

class QGLWidgetPeer : public GridPeer<Tile> {
public:
    using GridPeer::GridPeer;
    void draw(const std::vector<int> &changed) override
    {
        for (const int tile : changed)
            tiles()[std::size_t(tile)]->updateGL();
    }
};

} // namespace

void prepare() {}

std::unique_ptr<Peer> makePeer(int rows)
{
    return std::make_unique<QGLWidgetPeer>(rows);
}
