// SPDX-License-Identifier: MIT
#ifndef TESTS_HOST_CAPTURE_SCENE_H
#define TESTS_HOST_CAPTURE_SCENE_H

#include <memory>

#include <sys/resource.h>

#include <gtest/gtest.h>

#include "GL/glwidget.h"
#include "GL/glwindow.h"
#include "host/capture/picture.h"

namespace host {

/// A shown window of 320 x 200 pixels with two objects: `main` fills it, `inset` stands at (200,
/// 20) with 100 x 80 pixels. Both show, from 3 in front, a slanted band of colours, a wide frame of
/// lines and fat points in the plane z = 0, and in 2D a cross of 3-pixel lines through the origin.
class Scene : public testing::Test {
protected:
    Scene();
    ~Scene() override;

    PictureRequest request() const; ///< What the window shows, in the window's size.
    QImage shown();                 ///< A frame of the window itself.

    std::unique_ptr<QGLWindow> window;
    GLWidget main{nullptr, "main"};
    GLWidget inset{nullptr, "inset"};
};

/// No file grows beyond some bytes, as on a disk that is full, while this lives.
class FileSizeLimit {
public:
    explicit FileSizeLimit(rlim_t bytes);
    ~FileSizeLimit();

private:
    rlimit before_;
};

/// Pixels of which a channel differs by more than @p tolerance. Pictures of other sizes differ
/// everywhere.
int differing(const QImage &a, const QImage &b, int tolerance);

} // namespace host

#endif
