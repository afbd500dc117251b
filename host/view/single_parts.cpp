// SPDX-License-Identifier: MIT
// What a person does to the parts of a model that fills the window.
#include <QMenu>

#include "host/item/model_item.h"
#include "host/view/measure_tool.h"
#include "host/view/side/parts_panel.h"
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
    bind("P", "parts", tr("List of the parts"), SLOT(ToggleParts()));
    bind("Ctrl+F", "find-part", tr("Find a part"), SLOT(FindPart()));
    connect(&controls(), &Controls::menuAsked, this, &SingleView::forMenu);
    // Whatever changed them, a frame follows.
    connect(this, &View::framePainted, this, &SingleView::followParts, Qt::QueuedConnection);
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

void SingleView::fillPartsMenu(MenuTree *tree)
{
    const ModelItem *shown = model();
    if (!shown)
        return;
    const PartMarks &marks = shown->marks();
    if (marks.selectedCount() > 0) {
        tree->add(tr("Hide"), "H", this, [this] { HideParts(); });
        tree->add(tr("Show only that"), "I", this, [this] { ShowOnlyParts(); });
    }
    if (marks.hiddenCount() > 0)
        tree->add(tr("Show all parts"), "A", this, [this] { ShowAllParts(); });
}

void SingleView::fillMenu(GLW *glw, MenuTree *tree)
{
    fillPartsMenu(tree);
    if (model()) {
        tree->addCheck(tr("List of the parts"), "P", window().frame()->isOpen(), this,
                       [this] { ToggleParts(); });
        tree->addSeparator();
    }
    View::fillMenu(glw, tree);
    if (section_)
        section_->fillMenu(tree);
    fillPlayMenu(tree);
    if (measure_)
        measure_->fillMenu(tree);
    if (model())
        tree->addSeparator();
}

/// What the pointer is on may be another part now.
void SingleView::marksChanged()
{
    forgetPointer(glw());
    changed();
}

void SingleView::HideParts()
{
    if (ModelItem *shown = model())
        shown->hideParts();
    marksChanged();
}

void SingleView::ShowOnlyParts()
{
    if (ModelItem *shown = model())
        shown->showOnlyParts();
    marksChanged();
}

void SingleView::ShowAllParts()
{
    if (ModelItem *shown = model())
        shown->marks().showAll();
    marksChanged();
}

void SingleView::ToggleParts()
{
    if (item(glw()) && !model()) // it has none
        return;
    SideFrame *frame = window().frame();
    frame->setOpen(!frame->isOpen());
    listParts();
    if (!frame->isOpen())
        window().widget()->setFocus();
}

void SingleView::FindPart()
{
    if (item(glw()) && !model())
        return;
    window().frame()->setOpen(true);
    listParts();
    if (parts_)
        parts_->find();
}

/// Lists the parts of what is shown now, if a person wants that.
void SingleView::listParts()
{
    SideFrame *frame = window().frame();
    const ModelItem *shown = model();
    if (!frame->isOpen() || !shown) {
        delete parts_;
        frame->setContent(nullptr);
        return;
    }
    if (!parts_) {
        parts_ = new PartsPanel(window().widget(), frame);
        connect(parts_, &PartsPanel::selected, this, [this](const std::vector<bool> &parts) {
            if (ModelItem *model = this->model())
                model->marks().select(parts);
            changed();
        });
        connect(parts_, &PartsPanel::shownAsked, this,
                [this](const std::vector<bool> &parts, bool on) {
                    if (ModelItem *model = this->model())
                        for (std::size_t i = 0; i < parts.size(); ++i)
                            if (parts[i])
                                model->marks().setHidden(i, !on);
                    marksChanged();
                });
        connect(parts_, &PartsPanel::fitAsked, this, [this] { controls().Fit(glw()); });
        connect(parts_, &PartsPanel::menuAsked, this, &SingleView::openPartsMenu);
    }
    parts_->setMesh(shown->sharedMesh());
    frame->setContent(parts_);
    followParts();
}

void SingleView::followParts()
{
    const ModelItem *shown = model();
    if (!parts_ || !shown)
        return;
    parts_->setTheme(display().theme());
    window().frame()->setGround(display().theme().bottom);
    parts_->follow(shown->marks());
}

/// The entries of the view's menu that are about parts.
void SingleView::openPartsMenu(const QPoint &at)
{
    MenuTree tree;
    fillPartsMenu(&tree);
    tree.add(tr("Fit to the window"), "F", this, [this] { controls().Fit(glw()); });
    auto *menu = new QMenu(parts_);
    menu->setAttribute(Qt::WA_DeleteOnClose);
    tree.Build(menu);
    menu->popup(at);
}

} // namespace host
