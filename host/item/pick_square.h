// SPDX-License-Identifier: MIT
#ifndef HOST_ITEM_PICK_SQUARE_H
#define HOST_ITEM_PICK_SQUARE_H

#include <array>
#include <cstddef>
#include <vector>

#include "GL/camera.h"
#include "host/item/cap_shapes.h"

namespace host {

/// What a camera's last pick pass looked at, whatever lies in front of it. Places are the world's.
class PickSquare {
public:
    using Place = std::array<double, 3>;
    /// A place as the projection shows it: what is picked spans -1 to 1 both ways.
    struct Seen {
        double x = 0;
        double y = 0;
        bool inFront = false; ///< Else it is behind the eye, and the rest means nothing.
    };

    explicit PickSquare(const GL::Camera &camera);

    Seen seen(const Place &at) const;
    /// Whether a triangle meets it; with two corners in one place it is a line, with three a point.
    /// What reaches behind the eye does not.
    static bool isMet(const Seen &a, const Seen &b, const Seen &c);
    /// The same of a convex polygon, of which the planes leave what is below them; the one numbered
    /// @p without is not asked.
    bool isMet(std::vector<Place> polygon, const std::vector<PlaneGrid> &planes,
               std::size_t without = std::size_t(-1)) const;

private:
    GLdouble matrix_[16]; // column by column
};

} // namespace host

#endif
