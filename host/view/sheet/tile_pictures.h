// SPDX-License-Identifier: MIT
#ifndef HOST_VIEW_SHEET_TILE_PICTURES_H
#define HOST_VIEW_SHEET_TILE_PICTURES_H

#include <memory>
#include <unordered_map>
#include <vector>

#include <QByteArray>
#include <QList>
#include <QPointer>
#include <QRect>

#include "host/view/sheet/standing_picture.h"
#include "host/view/window/flat_state.h"

class QOpenGLContext;
class QOpenGLFramebufferObject;

namespace host {

/// What the tiles of a window showed when they were last drawn, so that those that stay as they are
/// are copied, and only the others drawn again. A tile has a key: what it is drawn from, written
/// down. Equal keys of a tile mean equal pixels.
///
/// Pictures lie side by side in textures; tiles are of one size at a time, and others are drawn.
/// Beyond the budget, those seen longest ago make room, but none of this frame: what finds no room
/// is drawn. Of what reaches out of the window that part is kept which was in it. Pixels are the
/// window's, from its lower left corner. What the window showed as a whole is kept beside them,
/// since frames follow one another in which tiles stay where they are.
///
/// Nothing is kept of a frame that OpenGL draws into less than the window, as it does a new
/// window's first one.
///
/// A frame is begin(), show() for each tile, finish(), and keepSmoothed() where the window then
/// shows something better. The window's context is current in all of these. Another context means
/// that the pictures are lost.
class TilePictures {
public:
    static constexpr quint64 usualBudget = quint64(96) << 20; ///< Bytes.

    TilePictures();
    ~TilePictures();
    TilePictures(const TilePictures &) = delete;
    TilePictures &operator=(const TilePictures &) = delete;

    /// Bytes that pictures may take. Drops all that there are.
    void setBudget(quint64 bytes);
    quint64 byteSize() const; ///< Of what is kept, and what it takes to keep it.
    void clear();             ///< Drops all.
    void forget(int id);      ///< Of a tile that is gone.

    /// @p window is its size in pixels, @p ground what finish() paints beside the tiles. In a frame
    /// that is @p refining, what is drawn is a part of a mean: only what is smoothed is copied, and
    /// what is drawn is not kept by finish().
    void begin(const QSize &window, bool refining, const QColor &ground);
    /// Returns whether tile @p id, at @p place, will be copied; if not, it is to be drawn now. An
    /// empty @p key is never copied.
    bool show(int id, const QByteArray &key, const QRect &place);
    QRect inWindow(const QRect &place) const; ///< The part that is in it.
    bool isSmoothed(int id) const;            ///< Whether its picture is, if it has any.
    /// All others are drawn: keeps these, copies those that are copied, and paints the ground, so
    /// that each pixel of the window is written. Leaves GL state as it was.
    void finish();
    /// Keeps what was drawn in each frame since the last one that was not refining.
    void keepSmoothed();
    /// Before a frame: no more comes of the mean that was under way, so its tiles stay as they are.
    void giveUp();

    QList<int> drawn() const;  ///< The tiles of the last frame that were not copied.
    QRect drawnBounds() const; ///< Around these, in the window.

private:
    struct Cell {
        int id = 0; // of the tile; 0: it is free
        std::size_t page = 0;
        QPoint corner;  // in the page
        QRect part;     // of the picture, from its corner: what was in the window
        QByteArray key; // of what is in it
        bool smoothed = false;
        quint64 seen = 0; // in which frame
    };
    struct Drawn {
        int id;
        QByteArray key;
        QRect place;
        std::size_t index; // among what is shown
    };
    struct Mean {
        QByteArray key;
        int frames = 0;
    };
    using Pieces = std::vector<FlatState::Piece>;

    Cell *find(int id);
    Cell *cellFor(int id);
    bool addPage();
    bool canTake();
    void copy();
    void findGaps();
    bool takeAll(bool alike);
    void countMeans();
    void keep(const std::vector<Drawn> &drawn, bool smoothed, bool taken);

    QPointer<QOpenGLContext> context_;
    quint64 budget_ = usualBudget;
    QSize window_, cell_;
    bool isWhole_ = false; // what is drawn into: it is as large as the window
    quint64 frame_ = 0;
    bool refining_ = false;
    bool isSized_ = false; // a tile of this frame has said how large they are
    int means_ = 0;        // frames of the mean until now
    std::vector<std::unique_ptr<QOpenGLFramebufferObject>> pages_;
    StandingPicture standing_; // also where the window's pixels pass on their way to pages
    bool begun_ = false;       // with that
    bool begins_ = false;      // the next one will
    QColor ground_;
    std::vector<StandingPicture::Tile> shown_, before_; // in this frame and the last one
    QRegion gaps_;                                      // between these
    std::vector<Cell> cells_;
    std::unordered_map<int, std::size_t> byId_; // into the cells
    std::vector<Drawn> drawn_;                  // in this frame
    std::unordered_map<int, Mean> mean_;
    std::vector<Pieces> copies_; // for each page
};

} // namespace host

#endif
