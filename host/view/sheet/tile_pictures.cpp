// SPDX-License-Identifier: MIT
#include "host/view/sheet/tile_pictures.h"

#include <algorithm>
#include <array>

#include <QOpenGLContext>
#include <QOpenGLFramebufferObject>

namespace host {

namespace {

constexpr int pageSide = 1024; // pixels, unless one picture is larger
// Tiles that a frame draws over the last one; where more change, that one is not worth its pixels.
constexpr std::size_t few = 16;

quint64 bytesOf(const QSize &size)
{
    return quint64(size.width()) * quint64(size.height()) * 4;
}

/// Whether what is drawn into is as large as @p window: a new window's is so from its second frame
/// on, the first is drawn into what its widget began with. From outside nothing is read.
bool reaches(const QSize &window)
{
    std::array<GLubyte, 2> corner{0, 255};
    for (GLubyte &value : corner)
        glReadPixels(window.width() - 1, window.height() - 1, 1, 1, GL_RED, GL_UNSIGNED_BYTE,
                     &value);
    return corner[0] == corner[1];
}

} // namespace

TilePictures::TilePictures() = default;
TilePictures::~TilePictures() = default;

void TilePictures::setBudget(quint64 bytes)
{
    budget_ = bytes;
    clear();
}

quint64 TilePictures::byteSize() const
{
    quint64 bytes = standing_.isThere() ? bytesOf(standing_.size()) : 0;
    for (const auto &page : pages_)
        bytes += bytesOf(page->size());
    return bytes;
}

void TilePictures::clear()
{
    pages_.clear();
    copies_.clear();
    standing_.clear();
    before_.clear();
    cells_.clear();
    byId_.clear();
    cell_ = {};
}

void TilePictures::forget(int id)
{
    if (Cell *cell = find(id))
        *cell = {0, cell->page, cell->corner, {}, {}};
    byId_.erase(id);
}

TilePictures::Cell *TilePictures::find(int id)
{
    const auto found = byId_.find(id);
    return found == byId_.end() ? nullptr : &cells_[found->second];
}

bool TilePictures::isSmoothed(int id) const
{
    const auto found = byId_.find(id);
    return found != byId_.end() && cells_[found->second].smoothed;
}

QList<int> TilePictures::drawn() const
{
    QList<int> ids;
    for (const Drawn &each : drawn_)
        ids << each.id;
    return ids;
}

QRect TilePictures::drawnBounds() const
{
    QRect all;
    for (const Drawn &each : drawn_)
        all |= inWindow(each.place);
    return all;
}

QRect TilePictures::inWindow(const QRect &place) const
{
    return place & QRect({0, 0}, window_);
}

void TilePictures::begin(const QSize &window, bool refining, const QColor &ground)
{
    if (context_ != QOpenGLContext::currentContext()) {
        clear();
        context_ = QOpenGLContext::currentContext();
        isWhole_ = false;
    }
    if (standing_.size() != window)
        standing_.clear();
    if (!standing_.isThere() && byteSize() + bytesOf(window) > budget_)
        clear(); // the pages would leave no room for it, for good
    ++frame_;
    if (window_ != window) {
        before_.clear();
        isWhole_ = false;
    }
    window_ = window;
    ground_ = ground;
    refining_ = refining;
    isSized_ = false;
    begun_ = begins_ && !standing_.isEmpty() && standing_.ground() == ground_;
    if (begun_)
        standing_.draw();
    for (Pieces &pieces : copies_)
        pieces.clear();
    shown_.clear();
    drawn_.clear();
}

bool TilePictures::show(int id, const QByteArray &key, const QRect &place)
{
    if (place.isEmpty())
        return false;
    if (!isSized_ && place.size() != cell_) {
        clear();
        cell_ = place.size();
    }
    isSized_ = true;
    Cell *cell = place.size() == cell_ ? find(id) : nullptr;
    if (cell)
        cell->seen = frame_;
    const QRect seen = inWindow(place).translated(-place.topLeft());
    const bool there = cell && (seen.isEmpty() || cell->part.contains(seen));
    if (!there || key.isEmpty() || cell->key != key || (refining_ && !cell->smoothed)) {
        if (cell && !refining_) // also where the new one finds no room
            cell->key.clear();
        drawn_.push_back({id, key, place, shown_.size()});
        shown_.push_back({id, inWindow(place), true});
        return false;
    }
    shown_.push_back({id, inWindow(place), false});
    copies_[cell->page].push_back(
        {seen.translated(cell->corner), place.topLeft() + seen.topLeft()});
    return true;
}

void TilePictures::finish()
{
    const bool alike = areAlike(shown_, before_);
    if (!alike || before_.empty())
        findGaps();
    const bool held = standing_.holds(shown_, ground_);
    if (!begun_ || !held)
        copy();
    const bool taken = !held && takeAll(alike);
    for (const Drawn &drawn : drawn_)
        standing_.setTile(drawn.index, 0);
    begins_ = !held || drawn_.size() <= few;
    before_ = shown_;
    if (refining_) {
        countMeans();
    } else {
        means_ = 0;
        mean_.clear();
        keep(drawn_, false, taken);
    }
}

/// For the frames that follow. One with copies is worth it where its tiles came like this twice,
/// one that was all drawn in any case. Returns whether it was done.
bool TilePictures::takeAll(bool alike)
{
    standing_.forget();
    const bool all = drawn_.size() == shown_.size();
    if (!(all ? !refining_ : alike) || !canTake())
        return false;
    standing_.takeAll(shown_, ground_);
    return true;
}

void TilePictures::countMeans()
{
    ++means_;
    for (const Drawn &drawn : drawn_) {
        Mean &mean = mean_[drawn.id];
        if (mean.frames == 0)
            mean.key = drawn.key;
        if (mean.key == drawn.key)
            ++mean.frames;
    }
}

/// Writes all that was not drawn.
void TilePictures::copy()
{
    const FlatState state(window_);
    FlatState::fill(ground_, gaps_);
    for (std::size_t page = 0; page < pages_.size(); ++page)
        FlatState::draw(pages_[page]->texture(), pages_[page]->size(), copies_[page]);
}

void TilePictures::findGaps()
{
    QRegion tiles;
    for (const StandingPicture::Tile &tile : shown_)
        tiles += tile.seen;
    gaps_ = QRegion(QRect({0, 0}, window_)) - tiles;
}

void TilePictures::keepSmoothed()
{
    std::vector<Drawn> whole;
    std::copy_if(drawn_.begin(), drawn_.end(), std::back_inserter(whole),
                 [this](const Drawn &drawn) { return mean_[drawn.id].frames == means_; });
    keep(whole, true, false);
}

void TilePictures::giveUp()
{
    for (const auto &[id, mean] : mean_)
        if (Cell *cell = find(id); cell && cell->key == mean.key)
            cell->smoothed = true;
}

/// Takes the pixels of these tiles out of the window, if they are not @p taken yet.
void TilePictures::keep(const std::vector<Drawn> &drawn, bool smoothed, bool taken)
{
    std::vector<Pieces> pieces;
    QRect all;
    for (const Drawn &each : drawn) {
        const QRect seen = inWindow(each.place); // beyond, there are no pixels
        if (each.key.isEmpty() || each.place.size() != cell_ || seen.isEmpty())
            continue;
        if (!canTake())
            return;
        Cell *cell = cellFor(each.id);
        if (!cell)
            continue; // those that follow may have theirs
        cell->key = each.key;
        cell->smoothed = smoothed;
        cell->seen = frame_;
        cell->part = seen.translated(-each.place.topLeft());
        standing_.setTile(each.index, each.id);
        pieces.resize(pages_.size());
        pieces[cell->page].push_back({seen, cell->corner + cell->part.topLeft()});
        all |= seen;
    }
    if (pieces.empty())
        return;
    if (!taken)
        standing_.take(all);
    const FramebufferKeeper keeper;
    for (std::size_t page = 0; page < pieces.size(); ++page) {
        if (pieces[page].empty())
            continue;
        pages_[page]->bind();
        const FlatState state(pages_[page]->size());
        FlatState::draw(standing_.texture(), window_, pieces[page]);
    }
}

/// The tile's own, a free one, or the one seen longest ago; null where there is no room.
TilePictures::Cell *TilePictures::cellFor(int id)
{
    if (Cell *own = find(id))
        return own;
    const auto longestAgo = [this] {
        return std::min_element(cells_.begin(), cells_.end(),
                                [](const Cell &a, const Cell &b) { return a.seen < b.seen; });
    };
    auto found = longestAgo();
    if ((found == cells_.end() || found->id != 0) && addPage())
        found = longestAgo();
    if (found == cells_.end() || found->seen == frame_)
        return nullptr;
    byId_.erase(found->id);
    found->id = id;
    byId_[id] = std::size_t(found - cells_.begin());
    return &*found;
}

/// Whether the window's pixels can be taken.
bool TilePictures::canTake()
{
    isWhole_ = isWhole_ || reaches(window_);
    const bool room = standing_.isThere() || byteSize() + bytesOf(window_) <= budget_;
    return isWhole_ && room && standing_.make(window_);
}

/// Returns whether there are more cells now.
bool TilePictures::addPage()
{
    const QSize cells(std::max(1, pageSide / cell_.width()),
                      std::max(1, pageSide / cell_.height()));
    const QSize size(cells.width() * cell_.width(), cells.height() * cell_.height());
    auto page = byteSize() + bytesOf(size) <= budget_ ? makeTexture(size) : nullptr;
    if (!page)
        return false;
    for (int y = 0; y < size.height(); y += cell_.height())
        for (int x = 0; x < size.width(); x += cell_.width())
            cells_.push_back({0, pages_.size(), {x, y}, {}, {}});
    pages_.push_back(std::move(page));
    copies_.emplace_back();
    return true;
}

} // namespace host
