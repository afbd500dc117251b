// SPDX-License-Identifier: MIT
#include "host/capture/block_target.h"

#include <algorithm>

#include <QOpenGLFramebufferObject>

namespace host {

namespace {

constexpr int samples = 4;
constexpr int preferredSide = 2048; // 2048 x 2048 x 4 samples x 8 bytes are 134 MB

} // namespace

BlockTarget::BlockTarget() = default;
BlockTarget::~BlockTarget() = default;

int BlockTarget::longestSide()
{
    GLint buffer = 0;
    glGetIntegerv(GL_MAX_RENDERBUFFER_SIZE, &buffer);
    const QSize viewport = largestViewport();
    return std::min({preferredSide, viewport.width(), viewport.height(), int(buffer)});
}

QSize BlockTarget::largestViewport()
{
    GLint size[2] = {0, 0};
    glGetIntegerv(GL_MAX_VIEWPORT_DIMS, size);
    return QSize(size[0], size[1]);
}

QString BlockTarget::make(const QSize &size)
{
    if (!QOpenGLFramebufferObject::hasOpenGLFramebufferObjects())
        return tr("This OpenGL cannot draw off the screen (no framebuffer objects).");
    QOpenGLFramebufferObjectFormat format;
    format.setAttachment(QOpenGLFramebufferObject::CombinedDepthStencil);
    if (QOpenGLFramebufferObject::hasOpenGLFramebufferBlit())
        format.setSamples(samples);
    drawn_ = std::make_unique<QOpenGLFramebufferObject>(size, format);
    if (drawn_->isValid() && drawn_->format().samples() > 0)
        resolved_ = std::make_unique<QOpenGLFramebufferObject>(size);
    if (!drawn_->isValid() || (resolved_ && !resolved_->isValid()))
        return tr("OpenGL has no memory for a block of the picture of %1 × %2 pixels.")
            .arg(size.width())
            .arg(size.height());
    return {};
}

void BlockTarget::begin(const QColor &colour)
{
    drawn_->bind();
    glEnable(GL_MULTISAMPLE); // off where the window has no samples
    glDisable(GL_SCISSOR_TEST);
    glColorMask(GL_TRUE, GL_TRUE, GL_TRUE, GL_TRUE);
    glDepthMask(GL_TRUE);
    glClearColor(float(colour.redF()), float(colour.greenF()), float(colour.blueF()), 1);
    glClear(GL_COLOR_BUFFER_BIT | GL_DEPTH_BUFFER_BIT | GL_STENCIL_BUFFER_BIT);
}

QImage BlockTarget::read(const QSize &size)
{
    if (resolved_) {
        const QRect region(QPoint(0, 0), size);
        QOpenGLFramebufferObject::blitFramebuffer(resolved_.get(), region, drawn_.get(), region);
        resolved_->bind();
    }
    QImage block(size, QImage::Format_ARGB32_Premultiplied);
    glPixelStorei(GL_PACK_ALIGNMENT, 4);
    glPixelStorei(GL_PACK_ROW_LENGTH, 0);
    glPixelStorei(GL_PACK_SKIP_ROWS, 0);
    glPixelStorei(GL_PACK_SKIP_PIXELS, 0);
    glReadPixels(0, 0, size.width(), size.height(), GL_BGRA, GL_UNSIGNED_INT_8_8_8_8_REV,
                 block.bits());
    block = block.mirrored(false, true);
    // What was drawn with alpha below 1 is as opaque here as it is on the screen.
    for (int y = 0; y < block.height(); ++y) {
        auto *line = reinterpret_cast<QRgb *>(block.scanLine(y));
        std::for_each(line, line + block.width(), [](QRgb &pixel) { pixel |= 0xff000000u; });
    }
    return block;
}

} // namespace host
