// SPDX-License-Identifier: MIT
#ifndef GL_GLWINDOWBASE_H
#define GL_GLWINDOWBASE_H

#include <QGLWidget>

#include "GL/export.h"
#include "GL/mouse.h"

class QAction;

/// What a drawing object knows of the window that shows it: its size, its pointer record, its
/// actions and its context menu.
///
/// Frame: Qt's widget frame (logical pixels, origin top-left, y downwards), except for `mouse`,
/// which counts y from the bottom. Owned by its Qt parent or by the host.
class GLWINDOW_EXPORT GLWindow : public QGLWidget {
public:
    /// Repaint requests not yet served. A frame that paints zeroes it between its pick and its
    /// paint pass, so that a request made while it paints is left for the next one.
    int update = 0;
    Mouse mouse;

    GLWindow(QWidget *parent, const char *name) : QGLWidget(parent)
    {
        setObjectName(QString::fromLatin1(name));
    }

    /// Makes a keyboard shortcut of the window, in the place of any of the same name.
    virtual QAction *NewAction(const QString &binding, const char *name, QObject *obj,
                               const char *slot) = 0;
    /// Returns whether an action of that name was there to delete.
    virtual bool DeleteAction(const char *name) = 0;
    /// Runs a context menu at the cursor, filled by @p o.
    virtual void ContextMenu(QObject *o) = 0;
};

#endif
