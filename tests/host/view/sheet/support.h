// SPDX-License-Identifier: MIT
#ifndef TESTS_HOST_SHEET_SUPPORT_H
#define TESTS_HOST_SHEET_SUPPORT_H

#include <gtest/gtest.h>

#include <QEvent>
#include <QTemporaryDir>

#include "GL/glw.h"
#include "host/app/module_loader.h"
#include "host/read/read_queue.h"
#include "host/view/view.h"
#include "host/view/window/window.h"

namespace host {

/// A window of 600 x 400 pixels that a hand steers through events, and a folder of files.
/// Points are window pixels from the upper left corner.
class ViewTest : public testing::Test {
protected:
    ModuleLoader loader;
    ReadQueue queue;
    std::unique_ptr<Window> window;
    QPointer<GLWindow> widget; ///< What the hand is at: that of the window, if not told otherwise.
    QTemporaryDir folder;
    double time = 0; ///< Of the window's clock, in seconds; each frame() takes a tenth.

    void SetUp() override;

    /// Writes a file into the folder and returns its path.
    QString file(const QString &name, const QByteArray &text) const;
    /// Boxes side by side along X, each an object of its own; about 12 triangles each.
    QString boxes(const QString &name, int count) const;
    static QByteArray weather(); ///< A table of two columns over ten rows.

    /// Shows the window and waits until all that @p view reads is there and at rest.
    void show(View &view);
    void frame();          ///< Paints one.
    void settle(GLW *glw); ///< Paints until the camera stays where it is.

    void press(const QPointF &at, Qt::MouseButton button, Qt::KeyboardModifiers modifiers = {});
    void move(const QPointF &at, Qt::MouseButtons held = {}, Qt::KeyboardModifiers modifiers = {});
    void release(const QPointF &at, Qt::MouseButton button, Qt::KeyboardModifiers modifiers = {});
    void click(const QPointF &at, Qt::KeyboardModifiers modifiers = {});
    void doubleClick(const QPointF &at);
    void drag(const QPointF &from, const QPointF &to, Qt::MouseButton button,
              Qt::KeyboardModifiers modifiers = {});
    void key(int key, Qt::KeyboardModifiers modifiers = {}); ///< Those within @p key count too.

private:
    void send(QEvent::Type type, const QPointF &at, Qt::MouseButton button, Qt::MouseButtons held,
              Qt::KeyboardModifiers modifiers);
};

} // namespace host

#endif
