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
    const bool beyond = std::any_of(selected_.begin(), selected_.end(),
                                    [this](int id) { return !tile(id) || !isSeen(id); });
    if (beyond && !state) // of which the module does not know
        select({glw->id()});
    else
        QMetaObject::invokeMethod(scene(), "LeftMouse", Q_ARG(GLW *, glw), Q_ARG(bool, state));
}

/// Of tiles that the module does not hold it says nothing.
void SheetView::SelectionChanged()
{
    for (auto it = tiles_.cbegin(); it != tiles_.cend(); ++it)
        if (it.value()->property<bool>("selected"))
            selected_.insert(it.key());
        else
            selected_.remove(it.key());
    hint_.clear();
    changed();
}

/// Whether it is shown, be it in view or scrolled away.
bool SheetView::isSeen(int id) const
{
    return index_.contains(id);
}

QList<int> SheetView::seen() const
{
    QList<int> ids = shown_;
    std::sort(ids.begin(), ids.end());
    return ids;
}

/// In the order of their numbers, as the module lists tiles.
QList<int> SheetView::selected() const
{
    QList<int> ids;
    for (int id : selected_)
        if (isSeen(id))
            ids.append(id);
    std::sort(ids.begin(), ids.end());
    return ids;
}

/// Selects @p ids, and tells of it as the module does when it selects.
void SheetView::select(const QList<int> &ids)
{
    selected_ = QSet<int>(ids.begin(), ids.end());
    for (auto it = tiles_.cbegin(); it != tiles_.cend(); ++it)
        it.value()->setProperty("selected", selected_.contains(it.key()));
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
    for (int id : qAsConst(inView_))
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
    for (int id : ids)
        entries_.at(id).hidden = true;
    listShown();
    select(selected());
}

/// Where only the selected are shown already, all are.
void SheetView::ToggleShown()
{
    const bool more = std::any_of(entries_.begin(), entries_.end(), [this](const auto &each) {
        return !each.second.hidden && !selected_.contains(each.first);
    });
    const bool onlyChosen = more && chosen() >= 0;
    for (auto &[id, entry] : entries_)
        entry.hidden = onlyChosen && !selected_.contains(id);
    listShown();
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
