// SPDX-License-Identifier: MIT
#ifndef HOST_VIEW_COMPARE_DIFFERENCE_ITEM_H
#define HOST_VIEW_COMPARE_DIFFERENCE_ITEM_H

#include <vector>

#include "host/item/model_item.h"

namespace host {

/// A model in colours of distances, which tells the one under the pointer.
class DifferenceItem : public ModelItem {
    Q_DECLARE_TR_FUNCTIONS(DifferenceItem)
public:
    /// Of each vertex of @p mesh its distance, in the mesh's unit. The rest is a ModelItem's.
    DifferenceItem(const QString &name, MeshPtr mesh, MeshPtr beside, std::vector<float> distances)
        : ModelItem(name, std::move(mesh), std::move(beside)), distances_(std::move(distances))
    {
    }
    QString underPointer() const override;
    quint64 byteSize() const override
    {
        return ModelItem::byteSize() + distances_.size() * sizeof(float);
    }
    bool pick3D(GLW *glw, const std::optional<QPointF> &pointer) override;

private:
    QString distanceAt(const GLW *glw, const QPointF &at) const;

    std::vector<float> distances_;
    QString distance_; // under the pointer; empty beside the surface
};

} // namespace host

#endif
