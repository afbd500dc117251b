// SPDX-License-Identifier: MIT
#ifndef HOST_APP_SOFTWARE_GL_H
#define HOST_APP_SOFTWARE_GL_H

#include <QByteArray>

namespace host {

/// Whether OpenGL's renderer of that name, GL_RENDERER, draws on the processor.
bool isSoftwareRenderer(const QByteArray &name);

/// Lets the memory that is freed stay with the process, for what is allocated next: software GL
/// takes some megabytes in each frame and gives them back, and each time the system clears them
/// anew. Where the C library cannot, nothing changes.
void keepFreedMemory();

} // namespace host

#endif
