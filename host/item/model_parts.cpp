// SPDX-License-Identifier: MIT
// What a person selects and hides of a model.
#include "host/item/model_item.h"
#include "host/item/model_outline.h"
#include "host/item/parts_in_pick.h"
#include "host/item/seen_parts.h"

namespace host {

int ModelItem::partOf(quint32 triangle) const
{
    return int(mesh_->partOfIndex(std::size_t(triangle) * 3));
}

/// Whether what the ray meets there is shown: nothing else is picked or measured.
bool ModelItem::isThere(const TriangleHit &hit, const Ray &ray) const
{
    return (marks_.hiddenCount() == 0 || !marks_.isHidden(std::size_t(partOf(hit.triangle)))) &&
           (!section_.isCutting() ||
            section_.keeps(ray.origin + ray.direction * float(hit.distance)));
}

int ModelItem::partAt(const GLW *glw, const QPointF &at)
{
    if (moving_)
        return -1;
    measurePixel(glw);
    const Ray ray = CameraSteering::geometryOf(glw).ray(at);
    const auto found = hit(ray);
    if (const auto thin = thinHit(ray, found))
        return int(thin->part);
    if (found)
        return partOf(found->triangle);
    const auto cap = section_.hit(ray, marks_);
    return cap ? int(cap->part) : -1;
}

void ModelItem::selectArea3D(GLW *glw, const QRectF &area, Reach reach)
{
    std::vector<bool> met;
    const ModelSection::Clipping clipping(section_);
    if (reach == Reach::Seen)
        met = partsSeen(
            buffers_, *mesh_, marks_, area.size().toSize(),
            [this](const PartColour &colourOf) { section_.drawShapes(marks_, colourOf); });
    if (met.empty()) {
        met = partsInPick(glw->camera, *mesh_, centre_, scale_, marks_, section_.planes());
        section_.addMet(PickSquare(glw->camera), marks_, met);
    }
    marks_.select(met);
}

void ModelItem::select(int part, bool toggle)
{
    const bool on = part >= 0 && !(toggle && marks_.isSelected(std::size_t(part)));
    if (!toggle)
        marks_.clearSelection();
    if (part >= 0)
        marks_.setSelected(std::size_t(part), on);
}

/// Where nothing is selected a person means what the pointer is on.
void ModelItem::selectMeant()
{
    if (marks_.selectedCount() == 0)
        select(hovered_, false);
}

void ModelItem::hideParts()
{
    selectMeant();
    marks_.hideSelected();
    hovered_ = -1;
}

void ModelItem::showOnlyParts()
{
    selectMeant();
    marks_.showOnlySelected();
}

const std::vector<QVector3D> &ModelItem::outline() const
{
    if (outlineHides_ == marks_.hidden() && !outline_.empty())
        return outline_;
    outlineHides_ = marks_.hidden();
    outline_.clear();
    if (marks_.hiddenCount() > 0)
        outline_ = outlineOf(*mesh_, centre_, scale_,
                             [this](std::size_t part) { return !marks_.isHidden(part); });
    if (outline_.empty()) // of all parts, be they all hidden
        outline_ = outlineOf(*mesh_, centre_, scale_);
    if (beside_) {
        const std::vector<QVector3D> more = outlineOf(*beside_, centre_, scale_);
        outline_.insert(outline_.end(), more.begin(), more.end());
    }
    return outline_;
}

std::vector<QVector3D> ModelItem::chosen() const
{
    if (marks_.selectedCount() == 0)
        return {};
    return outlineOf(*mesh_, centre_, scale_,
                     [this](std::size_t part) { return marks_.isSelected(part); });
}

} // namespace host
