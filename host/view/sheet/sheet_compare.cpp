// SPDX-License-Identifier: MIT
// Two tiles of a sheet, to be held against each other.
#include "host/item/model_item.h"
#include "host/view/sheet/sheet_view.h"
#include "host/view/window/menu_tree.h"

namespace host {

MeshPtr SheetView::meshOf(const QString &path) const
{
    Item *shown = item(tile(idOf(path)));
    ModelItem *model = shown ? shown->model() : nullptr;
    return model ? model->sharedMesh() : nullptr;
}

/// The selected ones, if they are two; in reading order, so that what is on the left stays there.
void SheetView::CompareSelected()
{
    QStringList paths;
    for (int id : qAsConst(shown_)) // as one reads
        if (selected_.contains(id))
            paths << entries_.at(id).path;
    if (paths.size() == 2)
        emit compareAsked(paths[0], paths[1]);
    else
        hint_ = tr("Select two models to compare them: Ctrl+click adds to the selection.");
    changed();
}

void SheetView::addCompareEntry(MenuTree *tree)
{
    if (selected().size() == 2)
        tree->add(tr("Compare the two that are selected"), "D", this,
                  [this] { CompareSelected(); });
}

} // namespace host
