// SPDX-License-Identifier: MIT
#ifndef HOST_VIEW_WINDOW_FLAT_STATE_H
#define HOST_VIEW_WINDOW_FLAT_STATE_H

#include <vector>

#include <QColor>
#include <QRect>
#include <QRegion>
#include <qopengl.h>

class QWidget;

namespace host {

QSize pixelSize(const QWidget *window); ///< In device pixels, as OpenGL counts them.

/// For its lifetime other framebuffers may be bound. Expects the context to be current.
class FramebufferKeeper {
public:
    FramebufferKeeper();
    ~FramebufferKeeper();
    FramebufferKeeper(const FramebufferKeeper &) = delete;
    FramebufferKeeper &operator=(const FramebufferKeeper &) = delete;

private:
    GLint before_ = 0;
};

/// For its lifetime: what is drawn of a texture comes out in the texture's own colours, pixel by
/// pixel, all over a target of @p size pixels, 0 to that size both ways, y upwards. Then all GL
/// state is as it was. Expects the context to be current, and the target's framebuffer bound.
class FlatState {
public:
    explicit FlatState(const QSize &size);
    ~FlatState();
    FlatState(const FlatState &) = delete;
    FlatState &operator=(const FlatState &) = delete;

    /// A rectangle of a texture and where its lower left corner comes to lie; both count from the
    /// lower left.
    struct Piece {
        QRect from;
        QPoint to;
    };
    /// Draws pieces of a texture of @p size pixels.
    static void draw(GLuint texture, const QSize &size, const std::vector<Piece> &pieces);
    /// Fills what @p part covers.
    static void fill(const QColor &colour, const QRegion &part);
};

} // namespace host

#endif
