// SPDX-License-Identifier: MIT
#ifndef HOST_ITEM_CAMERA_STEERING_H
#define HOST_ITEM_CAMERA_STEERING_H

#include <optional>
#include <vector>

#include <QMarginsF>

#include "host/item/camera_geometry.h"
#include "host/item/camera_motion.h"
#include "host/item/steering.h"

namespace host {

/// Steers what stands in three dimensions through the camera of its object, whose lamps go along
/// with it.
class CameraSteering : public Steering {
public:
    /// What the camera is steered about. It lies within CameraMotion::worldRadius of the world's
    /// origin.
    class Shape {
    public:
        /// Where the ray meets the surface that is seen, in world coordinates.
        virtual std::optional<QVector3D> surfaceAt(const Ray &ray) const = 0;
        /// Points, in world coordinates, that a picture of the whole must hold.
        virtual const std::vector<QVector3D> &outline() const = 0;
        /// The same of what a person chose of it; empty for all.
        virtual std::vector<QVector3D> chosen() const { return {}; }

    protected:
        ~Shape() = default;
    };

    /// @p shape outlives the steering.
    explicit CameraSteering(const Shape &shape) : shape_(shape) {}

    /// Puts the camera at the first pose and hangs the lamps. Expects a current context.
    void init(GLW *glw);
    /// Pixels at the object's edges of which views of the whole keep clear.
    void setInsets(const QMarginsF &insets);
    static CameraGeometry geometryOf(const GLW *glw);

    void restore(GLW *glw, const GL::Camera &camera, const QSizeF &wholeIn = {}) override;
    bool advance(GLW *glw, double seconds) override;
    void fit(GLW *glw) override;
    void fitTurn(GLW *glw) override;
    void home(GLW *glw) override;
    QSizeF wholeIn() const override { return showsWhole_ ? fittedSize_ : QSizeF(); }
    void lookAlong(GLW *glw, const GL::Camera &other) override;
    void lookFrom(GLW *glw, Side side) override;
    void toggleProjection(GLW *glw) override;
    bool isOrthographic(const GLW *glw) const override { return glw->camera.ortho != 0; }
    void beginDrag(GLW *glw, Drag kind, const QPointF &at) override;
    void drag(GLW *glw, Drag kind, const QPointF &from, const QPointF &to) override;
    void zoom(GLW *glw, const QPointF &at, float steps, Qt::KeyboardModifiers) override;
    void focus(GLW *glw, const QPointF &at) override;

private:
    Pose poseFor(const GLW *glw, const QVector3D &rot) const;
    QVector3D pointAt(const GLW *glw, const QPointF &at) const;

    const Shape &shape_;
    CameraMotion motion_;
    QMarginsF insets_;
    QVector3D grabbed_;      // the point that a pan holds, world coordinates
    QSizeF fittedSize_;      // of the object when the whole was last shown
    bool showsWhole_ = true; // nothing but the object's size changed since
};

} // namespace host

#endif
