// SPDX-License-Identifier: MIT
#include "host/view/picture_contents.h"

namespace host {

PictureContents::PictureContents(const Display &display, bool transparent) : display_(display)
{
    display_.transparent = transparent;
    display_.hover = false;
    display_.whole = true;
}

void PictureContents::addGround(GLW *glw, const QRectF &rect, std::function<void()> draw)
{
    PictureObject object;
    object.glw = glw;
    object.rect = rect;
    object.background = [draw = std::move(draw)](GLW *, float) { draw(); };
    add(std::move(object));
}

void PictureContents::addItem(GLW *glw, Item *item)
{
    PictureObject object;
    object.glw = glw;
    object.rect = glw->geometry(false);
    object.background = [display = display_](GLW *, float) { drawBackdrop(display.theme()); };
    const auto displayAt = [display = display_](float scale) {
        Display scaled = display;
        scaled.scale = scale;
        return scaled;
    };
    if (item) {
        object.draw3D = [item, displayAt](GLW *at, float scale) {
            item->draw3D(at, displayAt(scale));
        };
        object.draw2D = [item, displayAt](GLW *at, float scale) {
            item->draw2D(at, displayAt(scale));
        };
    }
    add(std::move(object));
}

void PictureContents::addModels(GLW *glw, std::function<void(GLW *, const Display &)> draw)
{
    addItem(glw, nullptr);
    objects_.back().draw3D = [draw = std::move(draw), display = display_](GLW *at, float scale) {
        Display scaled = display;
        scaled.scale = scale;
        draw(at, scaled);
    };
}

void PictureContents::addText(GLW *glw, const QRectF &rect,
                              std::function<void(GLW *, QPainter *)> paint)
{
    PictureObject object;
    object.glw = glw;
    object.rect = rect;
    object.foreground = std::move(paint);
    add(std::move(object));
}

} // namespace host
