// SPDX-License-Identifier: MIT
#include "host/view/window/late_clear.h"

#include <QEvent>

namespace host {

namespace {

void setMasks(GLboolean on)
{
    glColorMask(on, on, on, on);
    glDepthMask(on);
}

} // namespace

bool LateClear::isDue(const QEvent &event)
{
    return event.type() == QEvent::Timer || event.type() == QEvent::Paint;
}

void LateClear::begin()
{
    if (on_ || !window_ || !window_->isVisible())
        return;
    window_->makeCurrent();
    setMasks(GL_FALSE);
    on_ = true;
}

void LateClear::end()
{
    if (!on_)
        return;
    on_ = false;
    if (!window_)
        return;
    window_->makeCurrent();
    setMasks(GL_TRUE);
}

void LateClear::clearDepths()
{
    glPushAttrib(GL_SCISSOR_BIT | GL_DEPTH_BUFFER_BIT | GL_STENCIL_BUFFER_BIT);
    glDisable(GL_SCISSOR_TEST);
    glDepthMask(GL_TRUE);
    glStencilMask(~GLuint(0));
    glClear(GL_DEPTH_BUFFER_BIT | GL_STENCIL_BUFFER_BIT);
    glPopAttrib();
}

} // namespace host
