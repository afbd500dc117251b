// SPDX-License-Identifier: MIT
// What a person switches in a comparison.
#include <tuple>
#include <utility>

#include <QAction>

#include "host/view/compare/compare_view.h"
#include "host/view/window/menu_tree.h"
#include "host/view/window/window.h"

namespace host {

void CompareView::bindKeys()
{
    bindViewKey("D", "next-way", tr("Beside one another, with a divider, their difference"), this,
                SLOT(NextWay()));
    bindViewKey("S", "swap", tr("Swap the two"), this, SLOT(Swap()));
    const std::pair<const char *, const char *> moves[] = {{"Ctrl+Left", SLOT(DividerLeft())},
                                                           {"Ctrl+Right", SLOT(DividerRight())}};
    for (const auto &[key, slot] : moves)
        bindViewKey(key, key, tr("Move the divider"), this, slot)
            ->setProperty("words", tr("Ctrl+left and right"));
    bindColours();
}

void CompareView::bindColours()
{
    const std::tuple<const char *, QString, const char *> keys[] = {
        {"]", tr("Colours up to a larger distance"), SLOT(WiderColours())},
        {"[", tr("Colours up to a smaller distance"), SLOT(NarrowerColours())},
        {".", tr("Larger tolerance"), SLOT(LargerTolerance())},
        {",", tr("Smaller tolerance"), SLOT(SmallerTolerance())}};
    for (const auto &[key, text, slot] : keys)
        bindViewKey(key, QByteArray("difference-") + key, text, this, slot);
}

void CompareView::setWay(CompareWay way)
{
    way_ = way;
    place();
}

void CompareView::NextWay()
{
    constexpr int count = 3;
    setWay(CompareWay((int(way_) + 1) % count));
}

void CompareView::Swap()
{
    first_ = 1 - first_;
    forgetDifference();
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
        {tr("One over the other, with a divider"), CompareWay::Divider},
        {tr("The difference of their surfaces"), CompareWay::Difference}};
    for (const auto &[text, way] : ways)
        tree->addCheck(text, {}, way_ == way, this, [this, way = way] { setWay(way); });
    tree->add(tr("The next way"), "D", this, [this] { NextWay(); });
    tree->add(tr("Swap the two"), "S", this, [this] { Swap(); });
    if (way_ == CompareWay::Difference) {
        tree->add(tr("Colours up to a larger distance"), "]", this, [this] { WiderColours(); });
        tree->add(tr("Colours up to a smaller distance"), "[", this, [this] { NarrowerColours(); });
        tree->add(tr("Larger tolerance"), ".", this, [this] { LargerTolerance(); });
        tree->add(tr("Smaller tolerance"), ",", this, [this] { SmallerTolerance(); });
    }
    tree->addSeparator();
    View::fillMenu(glw, tree);
}

} // namespace host
