// SPDX-License-Identifier: MIT
// A sheet's item in another view, while that shows its file alone.
#include "host/view/sheet/sheet_view.h"

namespace host {

Loan SheetView::lend(const QString &path)
{
    takeBack();
    const auto found = entries_.find(idOf(path));
    if (found == entries_.end() || found->second.state != State::Shown)
        return {};
    GLW *glw = tiles_.value(found->first);
    SheetEntry &entry = found->second;
    entry.left = item(glw)->state(glw);
    entry.state = State::Released;
    lent_ = found->first;
    lentItem_ = takeItem(glw);
    countHeld();
    return {lentItem_, *entry.left};
}

void SheetView::takeBack()
{
    const std::shared_ptr<Item> item = lentItem_;
    lentItem_.reset();
    if (!item || !entries_.count(lent_) || entries_.at(lent_).state != State::Released)
        return;
    item->clearSelection();
    if (entries_.at(lent_).left && item->section()) // what was cut meanwhile stays so
        entries_.at(lent_).left->section = *item->section();
    show(lent_, item);
    forgetPointer(tile(lent_)); // it was elsewhere
}

} // namespace host
