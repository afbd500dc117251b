// SPDX-License-Identifier: MIT
#ifndef HOST_ITEM_CAMERA_ITEM_H
#define HOST_ITEM_CAMERA_ITEM_H

#include <vector>

#include "host/item/camera_motion.h"
#include "host/item/item.h"

namespace host {

/// An item in three dimensions, steered through the camera of its object, with one lamp over the
/// viewer's shoulder. The item lies within CameraMotion::worldRadius of the world's origin.
class CameraItem : public Item {
public:
    void restoreView(GLW *glw, const GL::Camera &camera) override;
    bool advance(GLW *glw, double seconds) override;
    void fit(GLW *glw) override;
    void fitTurn(GLW *glw) override;
    void home(GLW *glw) override;
    void lookFrom(GLW *glw, Side side) override;
    void toggleProjection(GLW *glw) override;
    bool isSpatial() const override { return true; }
    bool isOrthographic(const GLW *glw) const override { return glw->camera.ortho != 0; }
    void beginDrag(GLW *glw, Drag kind, const QPointF &at) override;
    void drag(GLW *glw, Drag kind, const QPointF &from, const QPointF &to) override;
    void zoom(GLW *glw, const QPointF &at, float steps, Qt::KeyboardModifiers) override;
    void focus(GLW *glw, const QPointF &at) override;

protected:
    /// Puts the camera at the first view and hangs the lamp. Expects a current context.
    void initView(GLW *glw);

    /// Where the ray meets the surface that is seen, in world coordinates.
    virtual std::optional<QVector3D> surfaceAt(const Ray &ray) const = 0;

    /// Points, in world coordinates, that a view of the whole must hold.
    virtual const std::vector<QVector3D> &outline() const = 0;

    static ViewFrame frameOf(const GLW *glw);

private:
    Pose poseFor(const GLW *glw, const QVector3D &rot) const;
    QVector3D pointAt(const GLW *glw, const QPointF &at) const;
    void placeLamp(GLW *glw) const;

    CameraMotion motion_;
    QVector3D grabbed_;      // the point that a pan holds, world coordinates
    QSizeF fittedSize_;      // of the object when the whole was last shown
    bool showsWhole_ = true; // nothing but the object's size changed since
};

} // namespace host

#endif
