// SPDX-License-Identifier: MIT
#ifndef HOST_APP_ICON_H
#define HOST_APP_ICON_H

#include <QIcon>

namespace host {

/// The program's icon, a lit cube, drawn in the sizes that desktops ask for.
QIcon applicationIcon();

} // namespace host

#endif
