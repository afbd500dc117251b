// SPDX-License-Identifier: MIT
// A viewer of libQGLViewer for each tile.
#include <QGLViewer/qglviewer.h>

#include "fixed.h"
#include "grid.h"

namespace {

class Tile : public QGLViewer {
public:
    float azimuth = 0;

protected:
    void init() override
    {
        glDisable(GL_COLOR_MATERIAL); // which keeps materials from being set
        list_ = fixed::begin();
        setBackgroundColor(Qt::black);
        setSceneRadius(2);
        camera()->setFieldOfView(double(scene::fieldOfView) * scene::degree);
    }
    void preDraw() override
    {
        const scene::Point eye = scene::eye(azimuth);
        camera()->setPosition({double(eye[0]), double(eye[1]), double(eye[2])});
        camera()->setUpVector({0, 1, 0});
        camera()->lookAt({0, 0, 0});
        QGLViewer::preDraw();
    }
    void draw() override { fixed::drawLit(list_); }

private:
    GLuint list_ = 0;
};

} // namespace

void prepare() {}

std::unique_ptr<Peer> makePeer(int rows)
{
    return std::make_unique<OpenGLGridPeer<Tile>>(rows);
}
