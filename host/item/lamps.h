// SPDX-License-Identifier: MIT
#ifndef HOST_ITEM_LAMPS_H
#define HOST_ITEM_LAMPS_H

#include "GL/glw.h"
#include "host/item/camera_geometry.h"

namespace host {

/// The light in which models stand: a key light over the viewer's left shoulder, which goes along
/// so that what one looks at has shape; a weaker fill from the right and below, so that no side
/// goes black; and a sky, brighter from the world's +Y than from the sides. Together they give a
/// white surface at most its own colour. Colours are near those of daylight: the key a little warm,
/// the sky a little cold.

/// Puts the lamps into the lights of @p glw, in the place of what is there. Expects a current
/// context, whose lights it switches on.
void hangLamps(GLW *glw);

/// Lets the key and the fill follow the camera. Does nothing if no lamps hang.
void placeLamps(GLW *glw, const CameraGeometry &camera);

} // namespace host

#endif
