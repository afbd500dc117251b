// SPDX-License-Identifier: MIT
// What a model's picture shows, and what lies over it.
#include "host/item/add_bytes.h"
#include "host/item/model_item.h"

namespace host {

namespace {

void addBits(QByteArray &to, const std::vector<bool> &bits)
{
    for (const bool bit : bits)
        to.append(bit ? '1' : '0');
}

} // namespace

QByteArray ModelItem::look(GLW *) const
{
    if (moving_)
        return {};
    QByteArray all;
    addBytes(all, shape_);
    const Detail detail = detailOf(reduces_); // while it moves not all is drawn
    addBytes(all, detail.points);
    addBytes(all, detail.level);
    all.append(buffers_.isCreated() ? 'b' : '-');
    all.append(edges_.isFound() ? 'e' : '-'); // drawn from then on
    if (section_.isCutting()) {
        all.append(section_.isBusy() ? 's' : 'S');
        for (const CutPlane &plane : section_.get().planes) {
            for (int axis = 0; axis < 3; ++axis)
                addBytes(all, plane.normal[axis]);
            addBytes(all, plane.offset);
        }
    }
    if (marks_.selectedCount() + marks_.hiddenCount() > 0) {
        addBits(all, marks_.selected());
        addBits(all, marks_.hidden());
    }
    return all;
}

void ModelItem::drawMark(GLW *glw, const Display &display)
{
    if (!display.hover || hovered_ < 0)
        return;
    measurePixel(glw);
    glPushAttrib(GL_COLOR_BUFFER_BIT);
    glDrawBuffer(GL_NONE); // the depth alone, of what is in front of the mark
    drawBody(display);
    glPopAttrib();
    brackets_.draw(*mesh_, std::size_t(hovered_), centre_, scale_, display);
}

} // namespace host
