// SPDX-License-Identifier: MIT
// Which tiles of a sheet there are, which of them are in view, and where these stand.
#include <algorithm>
#include <cmath>
#include <map>

#include <QVariant>
#include <QWheelEvent>

#include "host/ui/metrics.h"
#include "host/view/sheet/sheet_view.h"
#include "host/view/window/window.h"

namespace host {

namespace {

constexpr double usualTile = 120, smallestTile = 16, largestTile = 2000; // usual pixels
constexpr double tileStep = 1.2;

} // namespace

GLW *SheetView::tileFor(int id)
{
    if (GLW *made = tiles_.value(id))
        return made;
    QObject *made = nullptr;
    QMetaObject::invokeMethod(scene(), "AddTile", Q_RETURN_ARG(QObject *, made),
                              Q_ARG(uint, uint(id)));
    auto *glw = static_cast<GLW *>(made);
    glw->setProperty("sizeHint", QSize(4, 3));
    glw->setProperty("selected", selected_.contains(id));
    glw->setProperty("visible", false);
    tiles_[id] = glw;
    return glw;
}

/// Its item goes, and comes back as it was left when its tile is near again.
void SheetView::dropTile(int id)
{
    if (item(tile(id)))
        release(id);
    painter_.forget(id);
    pictures_.forget(id);
    tiles_.remove(id);
    QMetaObject::invokeMethod(scene(), "RemoveTile", Q_ARG(int, id));
}

/// What is shown now, in its order: files came or went, were sorted, hidden or searched for.
void SheetView::listShown()
{
    shown_.clear();
    index_.clear();
    for (int id : qAsConst(inOrder_)) {
        const SheetEntry &entry = entries_.at(id);
        if (entry.hidden || !search_.matches(entry.name))
            continue;
        index_[id] = shown_.size();
        shown_.append(id);
    }
    arrange();
}

double SheetView::tileWidth() const
{
    return std::round(Metrics::px(tileSize_));
}

/// What stood uppermost in the window does so afterwards.
void SheetView::arrange()
{
    const int index = index_.value(inView_.value(0), -1); // none at first
    const double above = index < 0 ? 0 : (scroll_.offset() - firstTop_) / grid_.pitch();
    SheetGrid::Measures measures;
    measures.window = window().widget()->size();
    measures.count = shown_.size();
    measures.least = tileWidth();
    measures.spacing = spacingIn(tileWidth() * 0.75);
    measures.header = TilePainter::header();
    measures.bar = SheetBar::width();
    measures.foot = search_.height();
    grid_ = SheetGrid(measures);
    scroll_.setLargest(grid_.largestOffset());
    if (index >= 0)
        scroll_.jumpTo(grid_.rowTop(index) + above * grid_.pitch());
    showTiles();
    changed();
}

/// Shows the tiles that are in view, and reads those that are near.
void SheetView::showTiles()
{
    const bool fits = grid_.fits();
    const double offset = scroll_.offset();
    const int count = shown_.size();
    const SheetGrid::Range view = fits ? SheetGrid::Range{0, count} : grid_.inView(offset);
    near_ = fits ? view : grid_.inView(offset, grid_.measures().window.height());
    firstTop_ = grid_.rowTop(view.first);
    for (int id : qAsConst(inView_))
        if (!isIn(id, view))
            setVisible(id, false);
    inView_ = shown_.mid(view.first, view.end - view.first);
    for (int id : qAsConst(inView_))
        setVisible(id, true);
    if (!inView_.contains(hovered_)) {
        forgetPointer(tile(hovered_));
        hovered_ = -1;
    }
    const auto isRefused = [this](int id) { return entries_.at(id).needed > 0; };
    if (held_ > budget_ / 2 || std::any_of(inView_.begin(), inView_.end(), isRefused))
        makeRoom(); // others are out of sight now; and before a reader asks for room
    for (int i = near_.first; i < near_.end; ++i)
        comeNear(shown_[i]);
    forgetFar();
    if (fits)
        layOut();
    else
        placeCells();
}

bool SheetView::isIn(int id, const SheetGrid::Range &range) const
{
    const int index = index_.value(id, -1);
    return index >= range.first && index < range.end;
}

bool SheetView::isLent(int id) const
{
    return lentItem_ && id == lent_;
}

void SheetView::setVisible(int id, bool visible)
{
    SheetEntry &entry = entries_.at(id);
    if (entry.visible == visible)
        return;
    entry.visible = visible;
    tileFor(id)->setProperty("visible", visible);
    queue_.setPriority(entry.job, visible ? ReadQueue::InView : ReadQueue::Background);
}

/// What is in view is read in any case; around it, as long as there is room.
void SheetView::comeNear(int id)
{
    tileFor(id);
    SheetEntry &entry = entries_.at(id);
    if (!entry.visible)
        entry.lastSeen = passes_; // it goes after what was left behind
    const bool due = entry.job == 0 && !isLent(id) &&
                     (entry.state == State::Waiting || entry.state == State::Released);
    if (due && (entry.visible || held_ < budget_ / 2))
        read(id);
}

/// Nobody waits any more for what has not begun; and of the tiles that are out of sight the module
/// keeps some hundreds, since it goes through all that it has in every frame.
void SheetView::forgetFar()
{
    const QList<int> asked = jobs_.values();
    for (int id : asked) {
        SheetEntry &entry = entries_.at(id);
        if (order_ == SheetOrder::Count || entry.state != State::Waiting || isIn(id, near_))
            continue;
        queue_.cancel(entry.job);
        jobs_.remove(entry.job);
        entry.job = 0;
        if (item(tile(id))) // of the file as it was before
            release(id);
    }
    std::multimap<quint64, int> far; // by when they were last seen
    if (tiles_.size() > mostTiles_)
        for (auto it = tiles_.cbegin(); it != tiles_.cend(); ++it)
            if (!isIn(it.key(), near_) && !isLent(it.key()))
                far.emplace(entries_.at(it.key()).lastSeen, it.key());
    if (far.empty())
        return;
    for (auto it = far.begin(); it != far.end() && tiles_.size() > mostTiles_; ++it)
        dropTile(it->second);
    countHeld();
}

/// All have room: the module gives them as much of it as it can.
void SheetView::layOut()
{
    if (shown_.isEmpty()) // of which the module would complain
        return;
    QVariantList ids;
    for (int id : qAsConst(shown_))
        ids.append(id);
    scene()->setProperty("order", ids); // which lays out at once
}

/// The module knows no sheet that is larger than its window: it places what is in view as if there
/// was nothing else, and this is where they stand instead.
void SheetView::placeCells()
{
    const QSizeF size = grid_.measures().window;
    setCramped(grid_.cellSize().height() < 4);
    header_ = int(grid_.header());
    for (int id : qAsConst(inView_)) {
        GLW *glw = tile(id);
        glw->orect = grid_.cell(index_.value(id), scroll_.offset());
        glw->rect = storedRect(glw->orect.adjusted(0, header_, 0, 0), size);
    }
}

/// The next stretch, on the way to where a person scrolls.
void SheetView::glide()
{
    if (!scene()->property("visible").toBool() || !scroll_.isMoving())
        return;
    if (scroll_.advance(window().clock().seconds()))
        showTiles();
    changed();
}

void SheetView::scrollTo(double offset)
{
    scroll_.jumpTo(offset);
    showTiles();
    changed();
}

void SheetView::glideTo(double offset)
{
    scroll_.glideTo(offset);
    glide(); // the next frame shows it already
}

void SheetView::scrollPages(int pages)
{
    const double rows = std::max(1.0, std::floor(grid_.measures().window.height() / grid_.pitch()));
    scroll_.glideBy(pages * rows * grid_.pitch());
    glide();
}

/// Brings a tile into view, whole.
void SheetView::reveal(int id)
{
    if (index_.contains(id) && !grid_.fits())
        glideTo(grid_.revealing(index_.value(id), scroll_.offset()));
}

void SheetView::setTileSize(double usual)
{
    tileSize_ = usual > 0 ? std::clamp(usual, smallestTile, largestTile) : usualTile;
    arrange();
}

/// Where all have room they are larger already: who wants larger ones begins with what is seen.
void SheetView::resizeTiles(double steps)
{
    const double seen = inView_.isEmpty() ? tileSize_ : tile(inView_[0])->orect.width();
    const double base =
        steps > 0 && grid_.fits() ? std::max(tileSize_, seen / Metrics::px(1)) : tileSize_;
    if (steps > 0 || !grid_.fits())
        setTileSize(base * std::pow(tileStep, steps));
    emit tileSizeChosen(tileSize_);
}

bool SheetView::wheel(const QWheelEvent &event)
{
    constexpr double notch = 120; // in Qt's unit
    const double steps = event.angleDelta().y() / notch;
    if (event.modifiers() == Qt::ControlModifier) {
        resizeTiles(steps);
        return true;
    }
    if (event.modifiers() != Qt::NoModifier || scroll_.largest() <= 0)
        return false;
    if (!event.pixelDelta().isNull()) {
        scrollTo(scroll_.offset() - event.pixelDelta().y());
    } else {
        scroll_.glideBy(-steps * std::min(grid_.pitch(), grid_.measures().window.height() * 0.8));
        glide();
    }
    return true;
}

bool SheetView::eventFilter(QObject *object, QEvent *event)
{
    if (View::eventFilter(object, event))
        return true;
    if (!scene() || !scene()->property("visible").toBool())
        return false;
    switch (event->type()) {
    case QEvent::Resize: // a window may be too small for the module to place anything
        arrange();
        break;
    case QEvent::Wheel:
        event->accept();
        return wheel(*static_cast<QWheelEvent *>(event));
    case QEvent::KeyPress:
        bringPointerToChosen();
        break;
    case QEvent::MouseMove:
    case QEvent::MouseButtonPress:
        chosenByKeys_ = false;
        break;
    default:
        break;
    }
    return false;
}

/// Keys are for the tile under the pointer. Who chose one by keys and did not touch the mouse since
/// then means that one.
void SheetView::bringPointerToChosen()
{
    const int id = chosenByKeys_ ? chosen() : -1;
    Mouse &mouse = window().widget()->mouse;
    if (id < 0 || !entries_.at(id).visible || mouse.button != 0)
        return;
    const QPoint at = tile(id)->orect.center().toPoint();
    mouse.x = at.x();
    mouse.y = window().widget()->height() - at.y();
}

void SheetView::Find()
{
    search_.setTheme(display().theme());
    search_.open();
    arrange(); // the last row stays in sight above the line
}

/// The names that are to be seen are others.
void SheetView::searched()
{
    listShown();
    const int id = chosen();
    scrollTo(id < 0 ? 0 : grid_.revealing(index_.value(id), 0));
}

bool SheetView::leaveTool()
{
    const bool was = search_.isOpen();
    search_.close();
    return was;
}

void SheetView::setShown(bool on)
{
    window().clock().setLookRate();
    search_.setShown(on);
    View::setShown(on);
}

} // namespace host
