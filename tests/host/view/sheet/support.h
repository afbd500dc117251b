// SPDX-License-Identifier: MIT
#ifndef TESTS_HOST_SHEET_SUPPORT_H
#define TESTS_HOST_SHEET_SUPPORT_H

#include <gtest/gtest.h>

#include <QMenu>
#include <QSemaphore>
#include <QTemporaryDir>
#include <QThreadPool>
#include <QTimer>

#include "GL/glw.h"
#include "host/app/module_loader.h"
#include "host/item/model_item.h"
#include "host/item/series_item.h"
#include "host/read/read_queue.h"
#include "host/view/single_view.h"
#include "host/view/window/window.h"
#include "tests/host/paint_record.h"
#include "tests/host/view/hand.h"

namespace host {

/// For its lifetime no thread of the pool is free.
struct BlockedThreads {
    QThreadPool &pool = *QThreadPool::globalInstance();
    std::shared_ptr<QSemaphore> go = std::make_shared<QSemaphore>();

    BlockedThreads()
    {
        for (int i = 0; i < pool.maxThreadCount(); ++i)
            pool.start([go = go] { go->acquire(); });
    }
    ~BlockedThreads() { go->release(pool.maxThreadCount()); }
};

/// A window of 600 x 400 pixels that a hand steers through events, and a folder of files.
/// Points are window pixels from the upper left corner.
class ViewTest : public testing::Test {
protected:
    ModuleLoader loader;
    ReadQueue queue;
    std::unique_ptr<Window> window;
    QPointer<GLWindow> widget; ///< What the hand is at: that of the window, if not told otherwise.
    QTemporaryDir folder;
    /// Whether a pixel has several samples, as the viewer's have; without, frames cost a third.
    bool smooth = true;
    double time = 0; ///< Of the window's clock, in seconds; each frame() takes a tenth.

    void SetUp() override;

    /// Writes a file into the folder and returns its path.
    QString file(const QString &name, const QByteArray &text) const;
    /// Boxes of length 2 with gaps of 1 along X, each an object of its own of 12 triangles.
    QString boxes(const QString &name, int count, double height = 2) const;
    static QByteArray weather(); ///< A table of two columns over ten rows.

    /// Shows the window and waits until all that @p view reads is there and at rest.
    void show(View &view);
    void frame(); ///< Paints one.
    /// Handles events until @p holds does. Returns whether it did within a minute.
    static bool until(const std::function<bool()> &holds);
    /// Lets what @p view does after a while come now, until nothing is left of it.
    static void rest(View &view);
    void settle(GLW *glw); ///< Paints until the camera stays where it is.

    /// As in steer(), with a frame after each event.
    void hand(const QString &script);
    /// Whether what a hand does asks for a frame, which the next tick of the window's timer paints.
    bool asks(View &view, const QString &script);
    bool asks(View &view, const std::function<void()> &act);
    /// Entries with their keys, * before those that are ticked, and {} around what is below one.
    static QString described(const QMenu &menu);
    /// Describes the menu over @p glw. Chooses the one named @p path first, such as Sort by|Name.
    std::string menu(View &view, GLW *glw, const QString &path = {});
    /// Goes through @p steps, which are apart by "; ". Each is what a hand does, which asks for a
    /// frame if no ~ stands before it, or an entry (=Sort by|Name) of the menu over @p glw, too, or
    /// what is written into a search (?m1). Behind " > " are the words of @p state, which have |
    /// between, that were not among them before; if there are none, the first that is gone.
    void walk(View &view, GLW *glw, const QString &steps, const std::function<QString()> &state);
    /// Of the window, @p scale times as large.
    QImage picture(View &view, bool overlays, int scale = 1) const;
    /// What is written over a window, sorted, with | between.
    std::string texts(View &view) const { return written(view).all(); }
    std::string texts(const PictureContents &picture) const { return written(picture).all(); }
    PaintRecord written(const std::function<void(QPainter *)> &paint) const;
    PaintRecord written(View &view) const;
    PaintRecord written(const PictureContents &picture) const;
    virtual std::optional<QPointF> place(const QString &) const { return {}; }
};

/// One file in the window. Its hand knows places in the model (@1,2,0), in a plot (@1.5,20), an
/// entry of its legend (@1), and the upper right corner of the first cutting plane's rectangle
/// (@c).
class SingleViewTest : public ViewTest {
protected:
    std::unique_ptr<SingleView> view;

    SingleViewTest() { smooth = false; }

    void open(const QString &path, bool fromTheFront = true);
    void TearDown() override { view.reset(); }

    GLW *glw() const { return view->mainGLW(); }
    template <typename Kind = ModelItem> Kind *item() const
    {
        return dynamic_cast<Kind *>(view->item(glw()));
    }
    std::string marks() const; ///< Of each part: hidden, selected or neither, as in "hs.".
    QString pose() const;
    QPointF at(const QVector3D &place) const; ///< In the model, in its file's units.
    std::optional<QPointF> place(const QString &word) const override;
    QImage picture(bool overlays = true) { return ViewTest::picture(*view, overlays); }
    QImage painted(); ///< The window after another frame.
};

} // namespace host

#endif
