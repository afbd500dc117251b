// SPDX-License-Identifier: MIT
#ifndef HOST_VIEW_OVERLAY_NEIGHBOURS_H
#define HOST_VIEW_OVERLAY_NEIGHBOURS_H

#include <QStringList>

#include "host/view/overlay/overlay.h"

namespace host {

/// The files before and after the one that is open, by name, in its folder: a strip at the lower
/// edge; a click opens one.
class Neighbours : public Overlay {
    Q_OBJECT
public:
    /// Shows nothing until setFiles().
    Neighbours(const Underlay &under, Window &window, const QString &path);

    /// Takes the files of the folder, in their order.
    void setFiles(const QStringList &files);

    /// The path @p step files further in the folder, or empty beyond its ends.
    QString next(int step) const;

    bool belongsInPicture() const override { return false; }

signals:
    void chosen(const QString &path);

protected:
    QRectF place(const QSizeF &size) const override;
    bool isShown() const override { return files_.size() > 1; }
    void paint(QPainter *painter, const QRectF &bounds) override;
    bool takes(const QPointF &at, const QRectF &bounds) const override;
    void click(const QPointF &at, const QRectF &bounds) override;

private:
    static constexpr int shown = 5; ///< The open file in the middle.
    QRectF cell(const QRectF &bounds, int index) const;
    QString fileAt(const QPointF &at, const QRectF &bounds) const; ///< Empty if none is there.

    QString path_; // absolute
    QStringList files_;
    int current_ = -1;
};

} // namespace host

#endif
