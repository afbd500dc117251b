// SPDX-License-Identifier: MIT
#ifndef GL_CAMERA_H
#define GL_CAMERA_H

#include <iosfwd>

#include <qopengl.h>

#include "GL/export.h"
#include "math/vector.h"

namespace GL {

/// The 3D view of one drawing object: an eye that orbits, walks or floats, with eased motion.
///
/// Frame: right-handed world coordinates, +Y up; with all angles zero the eye looks along -Z.
/// Units: lengths in world units, angles in degrees, velocities per unit of `dt` (`d_rot`: degrees
/// per update). Plain fields, written freely between frames; derived fields (`nearZ`, `farZ`, `up`
/// and, by mode, `target`, `pos` or the angles) hold after Update(), the matrices and `viewport`
/// after Setup(). Owned by its drawing object. Only members that say so need a GL context.
struct GLWINDOW_EXPORT Camera {
    int mode = 2;  ///< 0: as `m` says; 1: target from eye; 2: eye from target; 3: angles from both.
    int ortho = 0; ///< 0 perspective, else orthographic.
    Vector pos;    ///< The eye.
    Vector target; ///< The point looked at; follows `setTarget`.
    Vector up{0, 1, 0};   ///< Derived from the angles.
    Vector rot;           ///< x elevation (positive looks down), y azimuth, z roll.
    float radius = 0;     ///< Distance from eye to target.
    float fov = 60;       ///< Vertical field of view, kept within 1 to 90.
    float nearZ = 0.001f; ///< Derived from the radius within its limits.
    float farZ = 10000;   ///< Derived from the radius within its limits.
    /// Of `target`: x is the longest distance from the vertical axis through the origin, y that
    /// from the ground, up or down; z is not read.
    Vector bounds{1000, 1000, 1000};
    float minRadius = 0.0005f;
    float maxRadius = 1000;
    float d_pos_max = 1;    ///< For the host; not read here.
    float d_target_max = 1; ///< Largest target step per unit of `dt`.
    float dt = 30;          ///< Time step of one update, scaling velocities and the target step.
    Vector d_pos;           ///< Velocity of `pos`.
    Vector d_target;        ///< Velocity of `setTarget`.
    Vector d_rot;           ///< Added to `rot` by every update, not scaled by `dt`.
    float d_radius = 0;     ///< Velocity of `radius`.
    Vector setPos;          ///< For the host; not read here.
    Vector setTarget;       ///< The target asked for.
    Vector unproj;          ///< Unit direction of the ray under the pointer, from Unproject().
    Vector last_unproj;     ///< The `unproj` before.
    Vector vnear;           ///< Orthographic: the point under the pointer on the near plane.
    Vector last_vnear;      ///< The `vnear` before.
    GLfloat m[16] = {1, 0, 0, 0, 0, 1, 0, 0, 0, 0, 1, 0, 0, 0, 0, 1}; ///< Mode 0, by columns.
    GLdouble model_matrix[16] = {}; ///< Read back by Setup(), by columns.
    GLdouble proj_matrix[16] = {};  ///< Read back by Setup(), by columns.
    GLint viewport[4] = {};         ///< Read by Setup(): x, y, width, height, y from the bottom.

    /// Advances the state by the velocities if @p adjust is non-zero, keeps it within its limits
    /// and completes it according to `mode`. Equal radius limits make the clip range NaN.
    void Update(int adjust);

    /// Loads projection and model-view for a region of @p w x @p h pixels and reads them back. With
    /// @p pw and @p ph non-zero the projection shows only the @p pw x @p ph pixels around
    /// (@p px, @p py), window pixels with y from the bottom. Expects a current context; leaves the
    /// model-view matrix mode current. A region without width or height makes no usable projection:
    /// the identity (with GL_INVALID_VALUE if orthographic), or one with zeros or NaN in it.
    void Setup(int w, int h, float px, float py, float pw, float ph);

    /// Turns the current matrix by `rot`: about x, then y, then z. Expects a current context.
    void SetupRotation();

    void UpdateTarget(); ///< Mode 1: asks for the target that lies `radius` ahead of the eye.
    void UpdateCamera(); ///< Mode 2: puts the eye `radius` behind the target.
    void UpdateAngles(); ///< Mode 3: angles and radius; with the eye on the target, no new angles.
    void UpdateUp();     ///< `up` from the angles.
    void SetTarget();    ///< One step of `target` towards `setTarget`, kept within `bounds`.
    void LookAt();       ///< Multiplies the current matrix by the view. Expects a current context.

    /// Computes `unproj` (and orthographically `vnear`) for the point (@p x, @p y) in window pixels
    /// of the last Setup(), y from the bottom; `last_unproj` becomes the `unproj` before. Returns
    /// 1, or 0, with both zero, for an empty viewport or a matrix that cannot be inverted. In the
    /// latter case a perspective camera turns by 0.0001 degrees, to leave the degenerate position,
    /// and runs a whole Update(1): its velocities count once more.
    int Unproject(float x, float y);

    /// Returns 0, and changes nothing, unless `minRadius` <= @p rad <= `maxRadius`.
    int SetRadius(float rad);

    /// Writes mode, radius, position, angles and field of view without an end of line, and flushes;
    /// leaves the stream's precision at 4.
    std::ostream &Print(std::ostream &out);

private:
    Vector direction() const;
};

/// The 2D view of one drawing object: pan and per-axis zoom over a projection in pixels.
///
/// Frame: data coordinates; a point p appears (p - pos) * scale pixels from the alignment origin:
/// the region's centre (AlignCenter), else the left edge with x rightwards and the top edge with y
/// downwards, or with AlignBottom, unless AlignVCenter is set too, the bottom edge with y upwards.
/// Units: `scale` in pixels per data unit. Plain fields, written freely; owned by its drawing
/// object. Only Setup() needs a context.
struct GLWINDOW_EXPORT Viewport {
    enum AlignmentFlag {
        AlignLeft = 1,
        AlignHCenter = 4,
        AlignTop = 32,
        AlignBottom = 64,
        AlignVCenter = 128,
        AlignCenter = AlignHCenter | AlignVCenter
    };

    Vector pos; ///< The data point shown at the alignment origin.
    Vector scale{1, 1, 1};
    Vector minScale{0.001f, 0.001f, 0.001f};
    Vector maxScale{1e7f, 1e7f, 1e7f};
    GLint viewport[4] = {};  ///< Read by Setup(): x, y, width, height, y from the bottom.
    int align = AlignCenter; ///< A set of AlignmentFlag bits.

    /// Loads projection and model-view for a region of @p w x @p h pixels and depths -@p z to @p z.
    /// With @p pw and @p ph non-zero only the @p pw x @p ph pixels around (@p px, @p py) are shown,
    /// window pixels with y from the bottom. Expects a current context; leaves the model-view
    /// matrix mode current. A region of one pixel (of none, if centred) on an axis cannot be
    /// projected: the projection stays as it was without it, and GL_INVALID_VALUE is raised.
    void Setup(int w, int h, int z, float px, float py, float pw, float ph);

    /// Keeps `scale` within its limits; the upper one wins where they cross.
    void Update();

    /// The data point, with z = 0, at pixel (@p x, @p y) of a @p w x @p h region: x from the left;
    /// y in the direction in which data grow, except that with AlignTop it counts from the bottom.
    Vector Cursor(float x, float y, int w, int h) const;

    /// Edges of a region @p w pixels wide or @p h pixels high, in pixels from the alignment origin,
    /// signed as data are, just as Setup() projects them; @p inset moves an edge inwards.
    float Left(int w, float inset) const;
    float Right(int w, float inset) const;
    float Top(int h, float inset) const;
    float Bottom(int h, float inset) const;
    float Width(int w) const;  ///< Distance of left and right edge, pixels.
    float Height(int h) const; ///< Distance of top and bottom edge, pixels.
};

inline Vector Viewport::Cursor(float x, float y, int w, int h) const
{
    const float cx =
        (align & AlignHCenter) ? float((x - w * 0.5) / scale.x + pos.x) : x / scale.x + pos.x;
    float cy;
    if (align & AlignVCenter)
        cy = float(pos.y + (y - h * 0.5) / scale.y);
    else if (align & AlignTop)
        cy = pos.y - (y - float(h - 1.0)) / scale.y;
    else
        cy = pos.y + y / scale.y;
    return Vector(cx, cy, 0);
}

} // namespace GL

#endif
