// SPDX-License-Identifier: MIT
#include "host/view/sheet/tile_pictures.h"

#include <algorithm>

#include <QOpenGLContext>
#include <QOpenGLFramebufferObject>

namespace host {

namespace {

constexpr int pageSide = 1024; // pixels, unless one picture is larger

quint64 bytesOf(const QSize &size)
{
    return quint64(size.width()) * quint64(size.height()) * 4;
}

/// Null where OpenGL lacks what it takes.
std::unique_ptr<QOpenGLFramebufferObject> makeTexture(const QSize &size)
{
    if (!QOpenGLFramebufferObject::hasOpenGLFramebufferObjects())
        return nullptr;
    const FramebufferKeeper keeper;
    auto made = std::make_unique<QOpenGLFramebufferObject>(
        size, QOpenGLFramebufferObject::NoAttachment, GL_TEXTURE_2D, GL_RGBA8);
    return made->isValid() ? std::move(made) : nullptr;
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
    quint64 bytes = stage_ ? bytesOf(stage_->size()) : 0;
    for (const auto &page : pages_)
        bytes += bytesOf(page->size());
    return bytes;
}

void TilePictures::clear()
{
    pages_.clear();
    copies_.clear();
    stage_.reset();
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

void TilePictures::begin(const QSize &window, bool refining)
{
    if (context_ != QOpenGLContext::currentContext()) {
        clear();
        context_ = QOpenGLContext::currentContext();
    }
    if (stage_ && stage_->size() != window)
        stage_.reset();
    if (!stage_ && byteSize() + bytesOf(window) > budget_)
        clear(); // the pages would leave no room for it, for good
    ++frame_;
    window_ = window;
    refining_ = refining;
    isSized_ = false;
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
        drawn_.push_back({id, key, place});
        return false;
    }
    copies_[cell->page].push_back(
        {seen.translated(cell->corner), place.topLeft() + seen.topLeft()});
    return true;
}

void TilePictures::finish()
{
    if (refining_) {
        ++means_;
        for (const Drawn &drawn : drawn_) {
            Mean &mean = mean_[drawn.id];
            if (mean.frames == 0)
                mean.key = drawn.key;
            if (mean.key == drawn.key)
                ++mean.frames;
        }
    } else {
        means_ = 0;
        mean_.clear();
        keep(drawn_, false);
    }
    for (std::size_t page = 0; page < pages_.size(); ++page) {
        if (copies_[page].empty())
            continue;
        const FlatState state(window_);
        FlatState::draw(pages_[page]->texture(), pages_[page]->size(), copies_[page]);
        copies_[page].clear();
    }
}

void TilePictures::keepSmoothed()
{
    std::vector<Drawn> whole;
    std::copy_if(drawn_.begin(), drawn_.end(), std::back_inserter(whole),
                 [this](const Drawn &drawn) { return mean_[drawn.id].frames == means_; });
    keep(whole, true);
}

void TilePictures::giveUp()
{
    for (const auto &[id, mean] : mean_)
        if (Cell *cell = find(id); cell && cell->key == mean.key)
            cell->smoothed = true;
}

/// Takes the pixels of these tiles out of the window.
void TilePictures::keep(const std::vector<Drawn> &drawn, bool smoothed)
{
    std::vector<Pieces> pieces;
    QRect all;
    for (const Drawn &each : drawn) {
        const QRect seen = inWindow(each.place); // beyond, there are no pixels
        if (each.key.isEmpty() || each.place.size() != cell_ || seen.isEmpty())
            continue;
        if (!takeStage())
            return;
        Cell *cell = cellFor(each.id);
        if (!cell)
            continue; // those that follow may have theirs
        cell->key = each.key;
        cell->smoothed = smoothed;
        cell->seen = frame_;
        cell->part = seen.translated(-each.place.topLeft());
        pieces.resize(pages_.size());
        pieces[cell->page].push_back({seen, cell->corner + cell->part.topLeft()});
        all |= seen;
    }
    if (pieces.empty())
        return;
    glPushAttrib(GL_TEXTURE_BIT);
    glBindTexture(GL_TEXTURE_2D, stage_->texture());
    glCopyTexSubImage2D(GL_TEXTURE_2D, 0, all.x(), all.y(), all.x(), all.y(), all.width(),
                        all.height());
    glPopAttrib();
    const FramebufferKeeper keeper;
    for (std::size_t page = 0; page < pieces.size(); ++page) {
        if (pieces[page].empty())
            continue;
        pages_[page]->bind();
        const FlatState state(pages_[page]->size());
        FlatState::draw(stage_->texture(), window_, pieces[page]);
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

/// Returns whether there is one.
bool TilePictures::takeStage()
{
    if (!stage_ && byteSize() + bytesOf(window_) <= budget_)
        stage_ = makeTexture(window_);
    return stage_ != nullptr;
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
