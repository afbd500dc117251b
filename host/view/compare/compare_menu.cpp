// SPDX-License-Identifier: MIT
// What a person switches in a comparison.
#include <QAction>

#include "host/view/compare/compare_view.h"
#include "host/view/window/menu_tree.h"
#include "host/view/window/window.h"

namespace host {

void CompareView::bindKeys()
{
    bindViewKey("D", "next-way", tr("Beside one another, or with a divider"), this,
                SLOT(NextWay()));
    bindViewKey("S", "swap", tr("Swap the two"), this, SLOT(Swap()));
    const std::pair<const char *, const char *> moves[] = {{"Ctrl+Left", SLOT(DividerLeft())},
                                                           {"Ctrl+Right", SLOT(DividerRight())}};
    for (const auto &[key, slot] : moves)
        bindViewKey(key, key, tr("Move the divider"), this, slot)
            ->setProperty("words", tr("Ctrl+left and right"));
}

void CompareView::setWay(CompareWay way)
{
    if (way == way_)
        return;
    follow();
    way_ = way;
    place();
}

void CompareView::NextWay()
{
    constexpr int count = 2;
    setWay(CompareWay((int(way_) + 1) % count));
}

void CompareView::Swap()
{
    first_ = 1 - first_;
    place();
    emit titleChanged();
}

void CompareView::moveDivider(int steps)
{
    constexpr double step = 1 / 40.0; // of the window
    if (divider_->isOn())
        divider_->setShare(divider_->share() + steps * step);
}

QList<QAction *> CompareView::bindings() const
{
    return divider_->actions() + View::bindings();
}

void CompareView::fillMenu(GLW *glw, MenuTree *tree)
{
    const std::pair<QString, CompareWay> ways[] = {
        {tr("Beside one another"), CompareWay::Beside},
        {tr("One over the other, with a divider"), CompareWay::Divider}};
    for (const auto &[text, way] : ways)
        tree->addCheck(text, {}, way_ == way, this, [this, way = way] { setWay(way); });
    tree->add(tr("The next way"), "D", this, [this] { NextWay(); });
    tree->add(tr("Swap the two"), "S", this, [this] { Swap(); });
    tree->addSeparator();
    View::fillMenu(glw, tree);
}

} // namespace host
