// SPDX-License-Identifier: MIT
#ifndef HOST_VIEW_SHEET_STANDING_PICTURE_H
#define HOST_VIEW_SHEET_STANDING_PICTURE_H

#include <memory>
#include <vector>

#include <QColor>
#include <QRect>
#include <qopengl.h>

class QOpenGLFramebufferObject;

namespace host {

/// All of what a window showed, tiles and the ground between them, as one picture: where the tiles
/// stay where they are, a frame is this picture and over it the few that were drawn. Drawn as the
/// frame begins, it goes on while the host finds out what changed. Pixels count from the window's
/// lower left corner; its context is current, and what it draws into bound, in all that draws,
/// takes, makes and clears. All leave GL state as it was.
class StandingPicture {
public:
    /// A tile of a frame: its part in the window, and whether it was drawn instead of copied.
    struct Tile {
        int id;
        QRect seen;
        bool drawn;
    };

    StandingPicture();
    ~StandingPicture();
    StandingPicture(const StandingPicture &) = delete;
    StandingPicture &operator=(const StandingPicture &) = delete;

    bool make(const QSize &window); ///< Returns whether OpenGL could.
    void clear();
    bool isThere() const { return picture_ != nullptr; }
    QSize size() const;
    GLuint texture() const;

    /// Whether all that was not drawn is in it, there and nothing else.
    bool holds(const std::vector<Tile> &shown, const QColor &ground) const;
    bool isEmpty() const { return tiles_.empty(); }
    const QColor &ground() const { return ground_; }
    void draw() const;            ///< All of it into the window, beginning at once.
    void take(const QRect &part); ///< Out of the window.
    /// Takes the window, which shows all of @p shown.
    void takeAll(const std::vector<Tile> &shown, const QColor &ground);
    void forget() { tiles_.clear(); } ///< It holds nothing; its texture stays.
    /// Number @p index of what is shown is that of tile @p id now; 0: of none.
    void setTile(std::size_t index, int id);

private:
    std::unique_ptr<QOpenGLFramebufferObject> picture_;
    std::vector<Tile> tiles_;
    QColor ground_;
};

/// A texture that can be drawn into; null where OpenGL lacks what it takes.
std::unique_ptr<QOpenGLFramebufferObject> makeTexture(const QSize &size);

/// Whether tiles stand in the same places.
bool areAlike(const std::vector<StandingPicture::Tile> &a,
              const std::vector<StandingPicture::Tile> &b);

} // namespace host

#endif
