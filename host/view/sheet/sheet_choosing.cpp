// SPDX-License-Identifier: MIT
// How a sheet's tiles are chosen and opened by keys, and how it is scrolled by keys, wheel and bar.
#include <algorithm>

#include <QAction>

#include "host/view/sheet/sheet_view.h"

namespace host {

void SheetView::bindChoosing()
{
    const std::pair<const char *, QPoint> ways[] = {
        {"Left", {-1, 0}}, {"Right", {1, 0}}, {"Up", {0, -1}}, {"Down", {0, 1}}};
    for (const auto &[key, way] : ways) {
        QAction *action = bindViewKey(key, QByteArray("choose-") + key, tr("Choose a tile"), this,
                                      SLOT(ChooseNear()));
        action->setProperty("way", way);
        action->setProperty("words", tr("arrows"));
    }
    bindViewKey("Tab", "choose-next", tr("Choose the next tile"), this, SLOT(ChooseNext()));
    bindViewKey("Shift+Backtab", "choose-previous", {}, this, SLOT(ChoosePrevious()));
    for (const char *key : {"Return", "Enter"})
        bindViewKey(key, QByteArray("open-chosen-") + key, tr("Open the chosen tile"), this,
                    SLOT(OpenChosen()));
}

/// A sheet that is larger than its window.
void SheetView::bindScrolling()
{
    bindViewKey("PgUp", "page-up", tr("Scroll up"), this, SLOT(PageUp()));
    bindViewKey("PgDown", "page-down", tr("Scroll down"), this, SLOT(PageDown()));
    bindViewKey("Ctrl+Home", "start", tr("Scroll to the first tile"), this, SLOT(ScrollToStart()));
    bindViewKey("Ctrl+End", "end", tr("Scroll to the last tile"), this, SLOT(ScrollToEnd()));
    bindViewKey("Z", "larger", tr("Larger tiles"), this, SLOT(LargerTiles()));
    bindViewKey("Shift+Z", "smaller", tr("Smaller tiles"), this, SLOT(SmallerTiles()));
    bindViewKey("Ctrl+F", "find", tr("Find tiles by name"), this, SLOT(Find()));
    // The sheet takes these wheel steps before they reach a binding.
    const std::pair<QString, QString> wheels[] = {
        {tr("wheel"), tr("Scroll a sheet that is larger than the window")},
        {tr("Ctrl+wheel"), tr("Larger or smaller tiles")}};
    for (const auto &[words, text] : wheels) {
        hints_.append(new QAction(text, this));
        hints_.last()->setProperty("words", words);
    }
    bar_ = std::make_unique<SheetBar>(Underlay{mainGLW(), [] { return nullptr; },
                                               [this]() -> const Display & { return display(); }},
                                      window(), scroll_);
    connect(bar_.get(), &SheetBar::moved, this, &SheetView::scrollTo);
    connect(bar_.get(), &SheetBar::letGo, this, [this] { changed(); });
}

QList<QAction *> SheetView::bindings() const
{
    return View::bindings() + hints_ + bar_->actions();
}

/// The first selected tile that is shown, as one reads; -1 if there is none.
int SheetView::chosen() const
{
    int first = -1;
    for (int id : selected_)
        if (isSeen(id) && (first < 0 || index_.value(id) < index_.value(first)))
            first = id;
    return first;
}

GLW *SheetView::keyTarget() const
{
    const int id = chosen();
    return id >= 0 && entries_.at(id).visible ? tile(id) : mainGLW();
}

void SheetView::choose(int index)
{
    select({shown_[index]});
    chosenByKeys_ = true;
    reveal(shown_[index]);
}

void SheetView::chooseNext(int step)
{
    const int count = shown_.size();
    if (count == 0)
        return;
    const int id = chosen(), first = step > 0 ? 0 : count - 1;
    choose(id < 0 ? first : (index_.value(id) + step + count) % count);
}

void SheetView::ChooseNext()
{
    chooseNext(1);
}

void SheetView::ChoosePrevious()
{
    chooseNext(-1);
}

/// The one beside it, above or below; below the last whole row that is the last tile of all.
void SheetView::ChooseNear()
{
    const QPoint way = sender() ? sender()->property("way").toPoint() : QPoint();
    const int from = chosen(), last = shown_.size() - 1;
    if (from < 0) {
        chooseNext(1);
        return;
    }
    const int columns = grid_.fits() ? scene()->property("cols").toInt() : grid_.columns();
    const int at = index_.value(from), column = at % columns + way.x();
    const int to = std::min(at + way.x() + way.y() * columns, last);
    const bool below = to / columns == at / columns + way.y();
    if (column >= 0 && column < columns && to >= 0 && below)
        choose(to);
}

/// As a double click does.
void SheetView::OpenChosen()
{
    const int id = chosen();
    if (id > 0)
        emit openAsked(entries_.at(id).path);
}

} // namespace host
