// SPDX-License-Identifier: MIT
#include "host/view/window/flat_state.h"

#include <QOpenGLContext>
#include <QOpenGLFunctions>
#include <QWidget>

namespace host {

QSize pixelSize(const QWidget *window)
{
    return (QSizeF(window->size()) * window->devicePixelRatioF()).toSize();
}

FramebufferKeeper::FramebufferKeeper()
{
    glGetIntegerv(GL_FRAMEBUFFER_BINDING, &before_);
}

FramebufferKeeper::~FramebufferKeeper()
{
    QOpenGLContext::currentContext()->functions()->glBindFramebuffer(GL_FRAMEBUFFER,
                                                                     GLuint(before_));
}

FlatState::FlatState(const QSize &size)
{
    glPushAttrib(GL_ALL_ATTRIB_BITS);
    for (const GLenum off :
         {GL_LIGHTING, GL_DEPTH_TEST, GL_CULL_FACE, GL_BLEND, GL_ALPHA_TEST, GL_STENCIL_TEST,
          GL_SCISSOR_TEST, GL_FOG, GL_COLOR_LOGIC_OP, GL_DITHER})
        glDisable(off);
    glDepthMask(GL_FALSE);
    glColorMask(GL_TRUE, GL_TRUE, GL_TRUE, GL_TRUE);
    glPolygonMode(GL_FRONT_AND_BACK, GL_FILL);
    glEnable(GL_TEXTURE_2D);
    glTexEnvi(GL_TEXTURE_ENV, GL_TEXTURE_ENV_MODE, GL_REPLACE);
    glViewport(0, 0, size.width(), size.height());
    for (const GLenum mode : {GL_TEXTURE, GL_PROJECTION, GL_MODELVIEW}) {
        glMatrixMode(mode);
        glPushMatrix();
        glLoadIdentity();
    }
    glTranslated(-1, -1, 0);
    glScaled(2.0 / size.width(), 2.0 / size.height(), 1);
}

FlatState::~FlatState()
{
    for (const GLenum mode : {GL_TEXTURE, GL_PROJECTION, GL_MODELVIEW}) {
        glMatrixMode(mode);
        glPopMatrix();
    }
    glPopAttrib();
}

void FlatState::draw(GLuint texture, const QSize &size, const std::vector<Piece> &pieces)
{
    glBindTexture(GL_TEXTURE_2D, texture);
    glBegin(GL_QUADS);
    for (const Piece &piece : pieces) {
        for (const auto &[right, upper] : {std::pair(0, 0), {1, 0}, {1, 1}, {0, 1}}) {
            const QPoint by(right * piece.from.width(), upper * piece.from.height());
            const QPoint from = piece.from.topLeft() + by, to = piece.to + by;
            glTexCoord2d(double(from.x()) / size.width(), double(from.y()) / size.height());
            glVertex2i(to.x(), to.y());
        }
    }
    glEnd();
}

void FlatState::fill(const QColor &colour, const QRegion &part)
{
    glPushAttrib(GL_ENABLE_BIT | GL_CURRENT_BIT);
    glDisable(GL_TEXTURE_2D);
    glColor4d(colour.redF(), colour.greenF(), colour.blueF(), colour.alphaF());
    for (const QRect &rect : part)
        glRecti(rect.x(), rect.y(), rect.x() + rect.width(), rect.y() + rect.height());
    glPopAttrib();
}

} // namespace host
