// SPDX-License-Identifier: MIT
// A sheet under the keyboard alone: arrows and Tab choose a tile, Return opens it.
#include <algorithm>
#include <cmath>
#include <limits>

#include <QAction>

#include "host/view/sheet/sheet_view.h"

namespace host {

void SheetView::bindChoosing()
{
    const std::pair<const char *, QPointF> ways[] = {
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

/// The tiles in view, row after row.
QList<int> SheetView::inReadingOrder() const
{
    QList<int> ids;
    for (const auto &[id, entry] : entries_)
        if (entry.visible)
            ids.append(id);
    std::sort(ids.begin(), ids.end(), [this](int a, int b) {
        const QPointF p = tiles_.value(a)->orect.topLeft(), q = tiles_.value(b)->orect.topLeft();
        return p.y() != q.y() ? p.y() < q.y() : p.x() < q.x();
    });
    return ids;
}

/// The first selected tile in view; -1 if there is none.
int SheetView::chosen() const
{
    const QList<int> chosen = selected();
    for (int id : inReadingOrder())
        if (chosen.contains(id))
            return id;
    return -1;
}

GLW *SheetView::keyTarget() const
{
    const int id = chosen();
    return id < 0 ? mainGLW() : tiles_.value(id);
}

void SheetView::choose(int step)
{
    const QList<int> ids = inReadingOrder();
    if (ids.isEmpty())
        return;
    const int at = ids.indexOf(chosen()), count = ids.size();
    const int first = step > 0 ? 0 : count - 1;
    select({ids[at < 0 ? first : (at + step + count) % count]});
}

void SheetView::ChooseNext()
{
    choose(1);
}

void SheetView::ChoosePrevious()
{
    choose(-1);
}

/// The nearest whose middle lies that way; one that is off to the side counts as farther away.
void SheetView::ChooseNear()
{
    const QPointF way = sender() ? sender()->property("way").toPointF() : QPointF();
    const int from = chosen();
    if (from < 0) {
        choose(1);
        return;
    }
    int best = -1;
    double least = std::numeric_limits<double>::max();
    for (int id : inReadingOrder()) {
        const QPointF d = tiles_.value(id)->orect.center() - tiles_.value(from)->orect.center();
        const double ahead = QPointF::dotProduct(d, way);
        const double aside = std::abs(d.x() * way.y() - d.y() * way.x());
        if (ahead >= 1 && ahead + 3 * aside < least) {
            least = ahead + 3 * aside;
            best = id;
        }
    }
    if (best >= 0)
        select({best});
}

/// As a double click does.
void SheetView::OpenChosen()
{
    const auto found = entries_.find(chosen());
    if (found != entries_.end())
        emit openAsked(found->second.path);
}

} // namespace host
