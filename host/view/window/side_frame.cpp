// SPDX-License-Identifier: MIT
#include "host/view/window/side_frame.h"

#include <algorithm>

#include <QEvent>
#include <QTimer>
#include <QVBoxLayout>

#include "host/ui/metrics.h"

namespace host {

SideFrame::SideFrame() : QSplitter(Qt::Horizontal), side_(new QWidget)
{
    setChildrenCollapsible(false);
    auto *layout = new QVBoxLayout(side_);
    layout->setContentsMargins(0, 0, 0, 0);
    connect(this, &QSplitter::splitterMoved, this, [this] { width_ = side_->width(); });
}

void SideFrame::setViews(QWidget *views)
{
    insertWidget(0, views);
    insertWidget(1, side_);
    setStretchFactor(0, 1); // who widens the window wants to see more of the views
    setStretchFactor(1, 0);
    side_->hide();
    views->installEventFilter(this);
}

/// The views' native window is older than their size, and what the X server tells of it can come
/// after they were laid out: they would stay as small as it began.
bool SideFrame::eventFilter(QObject *object, QEvent *event)
{
    if (event->type() == QEvent::Resize && object == widget(0) && isVisible() &&
        widget(0)->height() != contentsRect().height())
        QTimer::singleShot(0, this, &QSplitter::refresh);
    return QSplitter::eventFilter(object, event);
}

void SideFrame::setOpen(bool open)
{
    open_ = open;
    followContent();
}

void SideFrame::setContent(QWidget *content)
{
    content_ = content;
    if (!content) {
        QTimer::singleShot(0, this, [this] { followContent(); });
        return;
    }
    side_->layout()->addWidget(content);
    content->show();
    followContent();
}

void SideFrame::setGround(const QColor &colour)
{
    QPalette all = palette();
    if (all.color(QPalette::Window) == colour)
        return;
    all.setColor(QPalette::Window, colour);
    setPalette(all);
}

void SideFrame::followContent()
{
    const bool shown = open_ && content_;
    if (shown == !side_->isHidden())
        return;
    side_->setVisible(shown);
    if (!shown)
        return;
    const int wanted = width_ > 0 ? width_ : int(Metrics::type(270));
    const int given = std::min(wanted, width() * 3 / 5);
    setSizes({width() - given, given});
}

} // namespace host
