// SPDX-License-Identifier: MIT
// Which tiles of a sheet are chosen, and which are seen. What is hidden is not chosen.
#include <algorithm>

#include "host/view/sheet/sheet_view.h"
#include "host/view/window/window.h"

namespace host {

/// A click that steered nothing is the module's, which selects with it.
void SheetView::passOn(GLW *glw, bool state)
{
    if (state)
        beforePress_ = selected();
    QMetaObject::invokeMethod(scene(), "LeftMouse", Q_ARG(GLW *, glw), Q_ARG(bool, state));
}

bool SheetView::isSeen(int id) const
{
    const GLW *glw = tile(id);
    return glw && glw->property<bool>("visible");
}

QList<int> SheetView::seen() const
{
    QList<int> ids;
    for (const auto &[id, entry] : entries_)
        if (isSeen(id))
            ids.append(id);
    return ids;
}

/// The tiles know which of them are selected.
QList<int> SheetView::selected() const
{
    QList<int> ids;
    for (int id : seen())
        if (tile(id)->property<bool>("selected"))
            ids.append(id);
    return ids;
}

/// Selects @p ids, and tells of it as the module does when it selects.
void SheetView::select(const QList<int> &ids)
{
    for (auto it = tiles_.cbegin(); it != tiles_.cend(); ++it)
        it.value()->setProperty("selected", ids.contains(it.key()));
    QMetaObject::invokeMethod(scene(), "ValueChanged", Q_ARG(QList<int>, ids));
}

void SheetView::SelectAll()
{
    const QList<int> all = seen();
    select(selected() == all ? QList<int>() : all);
}

/// Selects the tiles in view that @p area meets; window pixels, y upwards.
void SheetView::areaSelected(const QRectF &area)
{
    QRectF fromTop = area;
    fromTop.moveTop(window().widget()->height() - area.bottom());
    QList<int> ids;
    for (int id : seen())
        if (tile(id)->orect.intersects(fromTop))
            ids.append(id);
    select(ids);
}

/// What an entry of the menu over @p glw is for: the selection, if it is part of that.
QList<int> SheetView::targetsOf(const GLW *glw) const
{
    const QList<int> chosen = selected();
    return chosen.contains(glw->id()) ? chosen : QList<int>{glw->id()};
}

void SheetView::hide(const QList<int> &ids)
{
    QMetaObject::invokeMethod(scene(), "SetVisible", Q_ARG(QList<int>, ids), Q_ARG(bool, false));
    // The module tells nobody of what it was told to hide.
    QMetaObject::invokeMethod(scene(), "VisibleCountChanged", Q_ARG(int, seen().size()));
    select(selected());
}

void SheetView::OpenTile(GLW *glw, bool pressed)
{
    const auto found = entries_.find(glw->id());
    if (pressed || found == entries_.end())
        return;
    select(beforePress_); // the first of the two clicks is not meant to choose
    emit openAsked(found->second.path);
}

} // namespace host
