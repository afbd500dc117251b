// SPDX-License-Identifier: MIT
#ifndef HOST_VIEW_PICTURE_CONTENTS_H
#define HOST_VIEW_PICTURE_CONTENTS_H

#include <vector>

#include "host/capture/picture.h"
#include "host/item/item.h"

namespace host {

/// The list of what a picture shows, from behind to the front. It holds until the items and the
/// objects that it names are gone.
class PictureContents {
public:
    /// With @p transparent, nothing is drawn that only stands behind.
    PictureContents(const Display &display, bool transparent);

    /// What @p draw fills the whole of @p glw with, behind the rest.
    void addGround(GLW *glw, const QRectF &rect, std::function<void()> draw);
    /// What @p glw shows, without text over it; its backdrop alone if @p item is null.
    void addItem(GLW *glw, Item *item);
    /// What @p draw draws of models in @p glw, on its backdrop.
    void addModels(GLW *glw, std::function<void(GLW *, const Display &)> draw);
    /// What @p paint paints over the rest.
    void addText(GLW *glw, const QRectF &rect, std::function<void(GLW *, QPainter *)> paint);
    void add(PictureObject object) { objects_.push_back(std::move(object)); }

    const std::vector<PictureObject> &objects() const { return objects_; }

private:
    Display display_;
    std::vector<PictureObject> objects_;
};

} // namespace host

#endif
