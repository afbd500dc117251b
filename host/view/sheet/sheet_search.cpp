// SPDX-License-Identifier: MIT
#include "host/view/sheet/sheet_search.h"

#include <algorithm>

#include <QKeyEvent>

#include "host/ui/metrics.h"

namespace host {

SheetSearch::SheetSearch(QWidget *over) : over_(over), line_(new QLineEdit(over))
{
    // What lies over a GL window has to be a window of its own.
    line_->setAttribute(Qt::WA_NativeWindow);
    line_->hide();
    line_->setFont(Metrics::font());
    line_->setPlaceholderText(tr("Find by name"));
    line_->setAccessibleName(tr("Find by name"));
    line_->setClearButtonEnabled(true);
    line_->installEventFilter(this);
    over->installEventFilter(this);
    connect(line_, &QLineEdit::textChanged, this, [this](const QString &text) {
        words_ = text.split(' ', Qt::SkipEmptyParts);
        emit changed();
    });
}

SheetSearch::~SheetSearch()
{
    delete line_.data();
}

void SheetSearch::open()
{
    open_ = true;
    setShown(true);
    line_->setFocus();
    line_->selectAll();
}

void SheetSearch::close()
{
    if (!open_)
        return;
    open_ = false;
    over_->setFocus();
    line_->hide();
    line_->clear();
    emit closed();
}

void SheetSearch::setShown(bool on)
{
    place();
    line_->setVisible(on && open_);
}

void SheetSearch::setTheme(const Theme &theme)
{
    QPalette palette;
    palette.setColor(QPalette::Base, theme.top);
    palette.setColor(QPalette::Text, theme.text);
    palette.setColor(QPalette::PlaceholderText, theme.faint);
    palette.setColor(QPalette::Highlight, theme.accent);
    line_->setPalette(palette);
}

double SheetSearch::height() const
{
    return open_ ? line_->height() + 2 * Metrics::px(8) : 0;
}

bool SheetSearch::matches(const QString &name) const
{
    return std::all_of(words_.begin(), words_.end(), [&name](const QString &word) {
        return name.contains(word, Qt::CaseInsensitive);
    });
}

void SheetSearch::place()
{
    const int margin = int(Metrics::px(8));
    const int width = std::min(int(Metrics::type(260)), over_->width() - 2 * margin);
    const int height = line_->sizeHint().height();
    line_->setGeometry(over_->width() - width - 2 * margin, over_->height() - height - margin,
                       width, height);
}

bool SheetSearch::eventFilter(QObject *object, QEvent *event)
{
    if (object == over_ && event->type() == QEvent::Resize)
        place();
    if (takesKey(object, event))
        return true;
    return QObject::eventFilter(object, event);
}

/// Escape ends the search; Return and Down lead to the tiles that it left.
bool SheetSearch::takesKey(const QObject *object, QEvent *event)
{
    // The type first: a line that is being deleted sends events when it no longer is a line.
    if ((event->type() != QEvent::KeyPress && event->type() != QEvent::ShortcutOverride) ||
        object != line_)
        return false;
    const int key = static_cast<QKeyEvent *>(event)->key();
    const bool tiles = key == Qt::Key_Down || key == Qt::Key_Return || key == Qt::Key_Enter;
    if (key != Qt::Key_Escape && !tiles)
        return false;
    event->accept();
    if (event->type() != QEvent::KeyPress)
        return true;
    if (tiles)
        over_->setFocus();
    else
        close();
    return true;
}

} // namespace host
