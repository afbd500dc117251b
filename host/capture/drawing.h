// SPDX-License-Identifier: MIT
#ifndef HOST_CAPTURE_DRAWING_H
#define HOST_CAPTURE_DRAWING_H

#include <deque>
#include <vector>

#include <QRect>

#include "host/capture/picture.h"
#include "host/capture/saved_state.h"

namespace host {

/// Draws the objects of one request, as many blocks of the picture as are asked for. Holds the
/// objects' records in the meantime and gives them back when it goes out of scope.
class Drawing {
public:
    /// @p request outlives the drawing. @p largestViewport is OpenGL's.
    Drawing(const PictureRequest &request, const QSize &largestViewport);

    /// How many pixels a block has to reach beyond what is used of it, so that what crosses its
    /// edge is whole: 0 unless an object has to be cut into frusta.
    int overlap() const;

    /// Draws what lies in @p block, picture pixels, y downwards, into the lower left of the bound
    /// framebuffer. Leaves GL's state changed.
    void draw(const QRect &block) const;

    /// Paints the foregrounds over @p image, the whole picture.
    void paintForegrounds(QImage &image) const;

private:
    /// Where an object stands.
    struct Placement {
        QRect window;  // whole window pixels, y downwards
        QRect picture; // picture pixels, y downwards
    };

    Placement place(const QRectF &rect) const;
    bool fitsViewport(const QRect &rect) const;
    void drawObject(const PictureObject &object, const Placement &at, const QRect &block) const;
    void drawBackground(const PictureObject &object, const Placement &at,
                        const QRect &region) const;
    void draw3D(const PictureObject &object, const Placement &at, const QRect &region) const;
    void draw2D(const PictureObject &object, const Placement &at, const QRect &region) const;

    const PictureRequest &request_;
    QSize largestViewport_;
    QRect crop_; // of the window
    double scaleX_, scaleY_;
    float scale_;
    std::vector<Placement> placements_;
    std::deque<SavedRecords> records_; // a deque, since they never move
};

} // namespace host

#endif
