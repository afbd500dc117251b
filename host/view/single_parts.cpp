// SPDX-License-Identifier: MIT
// What a person does to the parts of a model that fills the window.
#include "host/item/model_item.h"
#include "host/view/single_view.h"
#include "host/view/window/binding.h"
#include "host/view/window/menu_tree.h"
#include "host/view/window/window.h"

namespace host {

void SingleView::bindParts()
{
    const auto bind = [this](const char *key, const char *name, const QString &text,
                             const char *slot) {
        setContents(bindViewKey(key, name, text, this, slot), OnModel);
    };
    bind("H", "hide-parts", tr("Hide what is selected or under the pointer"), SLOT(HideParts()));
    bind("I", "only-parts", tr("Show only that"), SLOT(ShowOnlyParts()));
    bind("A", "all-parts", tr("Show all parts"), SLOT(ShowAllParts()));
    connect(&controls(), &Controls::menuAsked, this, &SingleView::forMenu);
}

/// Null if it shows something else, or nothing.
ModelItem *SingleView::model() const
{
    Item *shown = item(glw());
    return shown ? shown->model() : nullptr;
}

void SingleView::clicked(GLW *clicked, const QPointF &at, Qt::KeyboardModifiers modifiers)
{
    if (ModelItem *shown = model())
        shown->select(shown->partAt(clicked, at), modifiers.testFlag(Qt::ControlModifier));
    else if (Item *other = item(clicked))
        other->clearSelection();
}

/// The menu is about the part under the pointer, or about all that are selected if that is one of
/// them.
void SingleView::forMenu(GLW *glw)
{
    ModelItem *shown = model();
    if (!shown || !glw->gl)
        return;
    const int part = shown->partAt(glw, Controls::pointerIn(glw, glw->gl->mouse));
    if (part >= 0 && !shown->marks().isSelected(std::size_t(part)))
        shown->select(part, false);
    changed();
}

void SingleView::fillMenu(GLW *glw, MenuTree *tree)
{
    if (const ModelItem *shown = model()) {
        const PartMarks &marks = shown->marks();
        if (marks.selectedCount() > 0) {
            tree->add(tr("Hide"), "H", this, [this] { HideParts(); });
            tree->add(tr("Show only these"), "I", this, [this] { ShowOnlyParts(); });
        }
        if (marks.hiddenCount() > 0)
            tree->add(tr("Show all parts"), "A", this, [this] { ShowAllParts(); });
        if (marks.selectedCount() + marks.hiddenCount() > 0)
            tree->addSeparator();
    }
    View::fillMenu(glw, tree);
}

void SingleView::HideParts()
{
    if (ModelItem *shown = model())
        shown->hideParts();
    forgetPointer(glw());
    changed();
}

void SingleView::ShowOnlyParts()
{
    if (ModelItem *shown = model())
        shown->showOnlyParts();
    forgetPointer(glw());
    changed();
}

void SingleView::ShowAllParts()
{
    if (ModelItem *shown = model())
        shown->marks().showAll();
    forgetPointer(glw());
    changed();
}

} // namespace host
