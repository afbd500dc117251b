// SPDX-License-Identifier: MIT
#include "host/capture/saved_state.h"

#include <QOpenGLContext>
#include <QOpenGLFunctions>

namespace host {

SavedGLState::SavedGLState()
{
    // The draw and read buffers among the attributes belong to this framebuffer.
    glGetIntegerv(GL_FRAMEBUFFER_BINDING, &framebuffer_);
    glGetIntegerv(GL_MATRIX_MODE, &matrixMode_);
    glGetDoublev(GL_PROJECTION_MATRIX, projection_);
    glGetDoublev(GL_MODELVIEW_MATRIX, modelView_);
    glPushAttrib(GL_ALL_ATTRIB_BITS);
    glPushClientAttrib(GL_CLIENT_ALL_ATTRIB_BITS);
}

SavedGLState::~SavedGLState()
{
    QOpenGLContext::currentContext()->functions()->glBindFramebuffer(GL_FRAMEBUFFER,
                                                                     GLuint(framebuffer_));
    glPopClientAttrib();
    glPopAttrib();
    glMatrixMode(GL_PROJECTION);
    glLoadMatrixd(projection_);
    glMatrixMode(GL_MODELVIEW);
    glLoadMatrixd(modelView_);
    glMatrixMode(GLenum(matrixMode_));
}

SavedRecords::SavedRecords(GLW *glw)
    : glw_(glw),
      rect_(glw->rect),
      orect_(glw->orect),
      camera_(glw->camera),
      viewport_(glw->viewport),
      lights_(glw->lights)
{
}

SavedRecords::~SavedRecords()
{
    if (!glw_)
        return;
    glw_->rect = rect_;
    glw_->orect = orect_;
    glw_->camera = camera_;
    glw_->viewport = viewport_;
    glw_->lights = lights_;
}

} // namespace host
