// SPDX-License-Identifier: MIT
// How a sheet's tiles are drawn, or copied where they stay as they are.
#include <QOpenGLContext>

#include "host/item/add_bytes.h"
#include "host/view/sheet/sheet_view.h"
#include "host/view/window/flat_state.h"
#include "host/view/window/window.h"

namespace host {

namespace {

QRect placeOf(const GLW *glw)
{
    return {glw->glCorner(), glw->glSize()};
}

/// For its lifetime nothing is drawn beside a tile: a wide line would leave a rest in the gap.
class TileClip {
public:
    explicit TileClip(const QRect &place)
    {
        glPushAttrib(GL_SCISSOR_BIT);
        glEnable(GL_SCISSOR_TEST);
        glScissor(place.x(), place.y(), place.width(), place.height());
    }
    ~TileClip() { glPopAttrib(); }
    TileClip(const TileClip &) = delete;
    TileClip &operator=(const TileClip &) = delete;
};

} // namespace

void SheetView::DrawBG(GLW *)
{
    endSparing();
    if (refinement().gaveUp())
        pictures_.giveUp();
    pictures_.begin(pixelSize(window().widget()), refinement().isRefining(), ground());
    copied_ = 0;
    // A tick asks every tile, and where there are hundreds marks come less often than ticks.
    constexpr int many = 100; // tiles
    window().clock().setLookRate(FrameClock::lookRate / (inView_.size() > many ? 2 : 1));
}

/// The colour that shows between the tiles.
QColor SheetView::ground() const
{
    return display().dark ? display().theme().bottom : display().theme().top;
}

/// All that the pixels of the tile come from. Expects its camera to be set up for drawing.
QByteArray SheetView::keyOf(GLW *glw) const
{
    QByteArray key;
    if (window().clock().isContinuous()) // which shows what drawing takes
        return key;
    if (const Item *shown = item(glw)) {
        key = shown->look(glw);
        if (key.isEmpty())
            return key;
    }
    addBytes(key, itemNumber(glw));
    addBytes(key, glw->camera.proj_matrix);
    addBytes(key, glw->camera.model_matrix);
    for (const GL::Light &lamp : glw->lights)
        addBytes(key, lamp.position);
    for (const Vector &each : {glw->viewport.pos, glw->viewport.scale})
        for (const float value : {each.x, each.y, each.z})
            addBytes(key, value);
    addBytes(key, glw->glSize());
    addBytes(key, display().mode);
    addBytes(key, display().pointScale);
    key.append(display().dark ? 'd' : 'l');
    key.append(display().lighting ? 'L' : '-');
    key.append(display().reduces ? 'r' : '-');
    return key;
}

void SheetView::Draw3D(GLW *glw)
{
    const Item *shown = item(glw);
    if (pictures_.inWindow(placeOf(glw)).isEmpty()) { // its name may be seen
        copied_ = glw->id();
        return;
    }
    if (!pictures_.show(glw->id(), keyOf(glw), placeOf(glw))) {
        const TileClip clip(placeOf(glw));
        glClear(GL_DEPTH_BUFFER_BIT);
        drawItem(glw, false);
        return;
    }
    copied_ = glw->id();
    if (shown && shown->isSpatial() && !pictures_.isSmoothed(glw->id()))
        refinement().want();
}

void SheetView::Draw2D(GLW *glw)
{
    if (copied_ == glw->id())
        return;
    const TileClip clip(placeOf(glw));
    View::Draw2D(glw);
}

void SheetView::DrawFG(GLW *)
{
    pictures_.finish();
    if (drawn(pictures_.drawnBounds()))
        pictures_.keepSmoothed();
    drawMark();
}

/// Over the tile's picture, which is the same with the pointer elsewhere.
void SheetView::drawMark()
{
    GLW *glw = tile(hovered_);
    Item *shown = glw && isSeen(hovered_) && !cramped_ ? item(glw) : nullptr;
    if (!shown || !shown->isSpatial() || !display().hover)
        return;
    const QRect place = placeOf(glw);
    const TileClip clip(place);
    glPushAttrib(GL_VIEWPORT_BIT | GL_TRANSFORM_BIT | GL_DEPTH_BUFFER_BIT);
    glViewport(place.x(), place.y(), place.width(), place.height());
    const std::pair<GLenum, const GLdouble *> matrices[] = {
        {GL_PROJECTION, glw->camera.proj_matrix}, {GL_MODELVIEW, glw->camera.model_matrix}};
    for (const auto &[mode, matrix] : matrices) {
        glMatrixMode(mode);
        glPushMatrix();
        glLoadMatrixd(matrix);
    }
    glDepthMask(GL_TRUE);
    glClear(GL_DEPTH_BUFFER_BIT);
    shown->drawMark(glw, display());
    for (const auto &[mode, matrix] : matrices) {
        glMatrixMode(mode);
        glPopMatrix();
    }
    glPopAttrib();
}

/// Only marks and a note change: they may come late, and a pointer that wanders is to cost little.
void SheetView::markChanged()
{
    hovering_.request();
}

} // namespace host
