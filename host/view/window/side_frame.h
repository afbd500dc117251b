// SPDX-License-Identifier: MIT
#ifndef HOST_VIEW_WINDOW_SIDE_FRAME_H
#define HOST_VIEW_WINDOW_SIDE_FRAME_H

#include <QPointer>
#include <QSplitter>

namespace host {

/// What a person sees as the window: the views, and at a person's wish something beside them, to
/// the right, as wide as a person draws it.
class SideFrame : public QSplitter {
    Q_OBJECT
public:
    SideFrame();

    void setViews(QWidget *views); ///< Once; becomes a child.

    /// Whether a person wants the side; it is there only while it has a content too.
    bool isOpen() const { return open_; }
    void setOpen(bool open);
    int sideWidth() const { return width_; } ///< As chosen, in pixels; 0: nobody chose.
    void setSideWidth(int width) { width_ = width; }

    /// Shows @p content there, nothing for null. It stays the caller's to delete. Where another
    /// one follows at once, nothing else changes its size in between.
    void setContent(QWidget *content);

    bool eventFilter(QObject *object, QEvent *event) override;

    void setGround(const QColor &colour); ///< Between the views and the side.

private:
    void followContent();

    QWidget *side_;
    QPointer<QWidget> content_;
    bool open_ = false;
    int width_ = 0;
};

} // namespace host

#endif
