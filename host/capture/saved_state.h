// SPDX-License-Identifier: MIT
#ifndef HOST_CAPTURE_SAVED_STATE_H
#define HOST_CAPTURE_SAVED_STATE_H

#include <QPointer>
#include <QRectF>

#include "GL/glw.h"

namespace host {

/// Keeps the GL state of the current context and gives it back when it goes out of scope: all
/// attributes, the client's, the two matrix stacks' tops and the framebuffer that was bound.
/// Expects the same context to be current at both times.
class SavedGLState {
public:
    SavedGLState();
    ~SavedGLState();
    SavedGLState(const SavedGLState &) = delete;
    SavedGLState &operator=(const SavedGLState &) = delete;

private:
    GLint framebuffer_ = 0;
    GLint matrixMode_ = GL_MODELVIEW;
    GLdouble projection_[16];
    GLdouble modelView_[16];
};

/// Keeps an object's records (place, camera, viewport, lights) and gives them back when it goes out
/// of scope; an object that has died meanwhile is left alone.
class SavedRecords {
public:
    explicit SavedRecords(GLW *glw);
    ~SavedRecords();
    SavedRecords(const SavedRecords &) = delete;
    SavedRecords &operator=(const SavedRecords &) = delete;

    const GL::Camera &camera() const { return camera_; }
    const GL::Lights &lights() const { return lights_; }

private:
    QPointer<GLW> glw_;
    QRectF rect_, orect_;
    GL::Camera camera_;
    GL::Viewport viewport_;
    GL::Lights lights_;
};

} // namespace host

#endif
