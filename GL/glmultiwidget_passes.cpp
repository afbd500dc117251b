// SPDX-License-Identifier: MIT
// The multi-view's hit test and its passes.
#include "GL/glmultiwidget.h"
#include "GL/pass.h"

GLW *GLMultiWidget::hit(int x, int y)
{
    const QPointF point(x, y);
    for (GLTile *tile : qAsConst(tiles))
        if (tile->orect.contains(point) && tile->is(GLTile::Enabled) && tile->is(GLTile::Visible))
            return tile;
    return nullptr;
}

void GLMultiWidget::initializeGL()
{
    if (property<bool>("enabled"))
        forEachTile([this](GLTile *tile) { emit Init(tile); });
}

void GLMultiWidget::pickGL()
{
    if (!gl || !property<bool>("enabled") || !property<bool>("visible"))
        return;
    const PassGuard pass(this);
    if (updateLayout > 0) {
        calculateLayout();
        if (!pass.alive())
            return;
        updateLayout = 0;
    }
    const GLTiles all = tiles;
    for (auto it = all.begin(); it != all.end(); ++it) {
        if (property<bool>("enabled") && alive(all, it) && (*it)->is(GLTile::Visible))
            pickTile(all, it, pass);
        if (!pass.alive())
            return;
    }
}

void GLMultiWidget::pickTile(const GLTiles &all, GLTiles::const_iterator it, const PassGuard &pass)
{
    GLTile *tile = *it;
    setGLViewport(*tile);
    tile->camera.Update(1);
    tile->viewport.Update();
    emit Update(tile);
    if (!pass.alive() || !alive(all, it))
        return;

    const Mouse &mouse = gl->mouse;
    if (!tile->orect.contains(QPointF(mouse.x, height() - mouse.y)))
        return;
    const PickRegion r(mouse);
    if (property<bool>("pick3d") && tile->is(GLTile::Pick3D)) {
        setUpPick3D(*tile, r);
        emit Pick3D(tile);
        if (!pass.alive() || !alive(all, it))
            return;
    }
    if (property<bool>("pick2d") && tile->is(GLTile::Pick2D)) {
        setUpPick2D(*tile, r);
        emit Pick2D(tile);
    }
}

void GLMultiWidget::paintGL()
{
    if (!gl || !property<bool>("visible"))
        return;
    const PassGuard pass(this);
    emit DrawEvent();
    if (pass.alive())
        paintWhole("drawbg", &GLMultiWidget::DrawBG);
    if (!pass.alive())
        return;
    const GLTiles all = tiles;
    for (auto it = all.begin(); it != all.end(); ++it) {
        if (alive(all, it) && (*it)->is(GLTile::Visible))
            paintTile(all, it, pass);
        if (!pass.alive())
            return;
    }
    paintWhole("drawfg", &GLMultiWidget::DrawFG);
}

/// The pass over the view as a whole, if the property @p gate lets it run.
void GLMultiWidget::paintWhole(const char *gate, void (GLMultiWidget::*signal)(GLW *))
{
    if (!property<bool>(gate))
        return;
    setGLViewport(*this);
    Init2D();
    emit(this->*signal)(this);
}

void GLMultiWidget::paintTile(const GLTiles &all, GLTiles::const_iterator it, const PassGuard &pass)
{
    GLTile *tile = *it;
    setGLViewport(*tile);
    if (property<bool>("draw3d") && tile->is(GLTile::Draw3D) && tile->gl) {
        setUp3D(*tile);
        emit Draw3D(tile);
        if (!pass.alive() || !alive(all, it))
            return;
    }
    if (property<bool>("draw2d") && tile->is(GLTile::Draw2D)) {
        setUp2D(*tile);
        emit Draw2D(tile);
    }
}

void GLMultiWidget::paintEvent(QPaintEvent *)
{
    if (!gl)
        return;
    gl->makeCurrent();
    paintGL();
}

void GLMultiWidget::ForceUpdate()
{
    if (!property<bool>("enabled"))
        return;
    forEachTile([this](GLTile *tile) {
        if (tile->is(GLTile::Visible))
            emit Update(tile);
    });
}
