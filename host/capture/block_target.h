// SPDX-License-Identifier: MIT
#ifndef HOST_CAPTURE_BLOCK_TARGET_H
#define HOST_CAPTURE_BLOCK_TARGET_H

#include <memory>

#include <QColor>
#include <QCoreApplication>
#include <QImage>
#include <QSize>
#include <QString>

class QOpenGLFramebufferObject;

namespace host {

/// A framebuffer object that takes one block of a picture after the other: 24 bits of depth, four
/// samples a pixel where OpenGL can. Everything expects the same context to be current.
class BlockTarget {
    Q_DECLARE_TR_FUNCTIONS(BlockTarget)
public:
    BlockTarget();
    ~BlockTarget();
    BlockTarget(const BlockTarget &) = delete;
    BlockTarget &operator=(const BlockTarget &) = delete;

    /// The longest side that is made: what OpenGL can, and 134 MB at most.
    static int longestSide();
    /// The largest GL viewport; it may be larger than a target.
    static QSize largestViewport();

    /// Makes the target. Returns the reason if that fails, else an empty text.
    QString make(const QSize &size);

    /// Binds the target, cleared to @p colour, opaque, with nothing masked.
    void begin(const QColor &colour);

    /// What was drawn into the lower left @p size pixels, opaque, as ARGB32_Premultiplied. Leaves
    /// another framebuffer bound.
    QImage read(const QSize &size);

private:
    std::unique_ptr<QOpenGLFramebufferObject> drawn_, resolved_;
};

} // namespace host

#endif
