// SPDX-License-Identifier: MIT
#ifndef HOST_ITEM_DISPLAY_H
#define HOST_ITEM_DISPLAY_H

#include <QColor>
#include <QSizeF>

namespace host {

/// The colours of one appearance of the window.
struct Theme {
    QColor top;        ///< Of the background.
    QColor bottom;     ///< Of the background.
    QColor text;       ///< On panels and on the background.
    QColor faint;      ///< Text that matters less; rules.
    QColor panel;      ///< Behind text; partly transparent.
    QColor accent;     ///< What is chosen or under the pointer.
    QColor fault;      ///< What went wrong.
    QColor ink;        ///< Lines of a model on the background.
    QColor edge;       ///< Edges over a model's surface.
    QColor edgeOnDark; ///< The same over one that is nearly black.
};

/// How things are drawn; what a person switches.
struct Display {
    /// What of a model's surface is drawn, in the order in which a key goes round.
    enum class Mode {
        Shaded,      ///< The surface.
        Edged,       ///< The surface, and its edges over it.
        HiddenLines, ///< The outlines of its triangles, without those that lie behind others.
        Wireframe    ///< The outlines of all of its triangles: one sees through.
    };
    static Mode after(Mode mode) { return Mode((int(mode) + 1) % 4); }

    bool dark = false;
    bool lighting = true;
    Mode mode = Mode::Shaded;
    bool hover = true;     ///< Whether what the pointer is on is marked and named.
    double pointScale = 1; ///< Points are so many times as wide as they would be.
    bool reduces = true;   ///< Whether large models show less while the view moves.
    // What a picture asks for.
    bool overlays = true;     ///< Whether names, counts, axes and scale bar lie over what is shown.
    float scale = 1;          ///< Pixels drawn per window pixel: what widths are multiplied by.
    bool transparent = false; ///< Nothing is drawn that only stands behind.
    bool whole = false;       ///< All is drawn, however long it takes.

    const Theme &theme() const;
};

/// Fills the GL viewport with the theme's background. Expects a current context; leaves matrices,
/// depth test and lighting as they were.
void drawBackdrop(const Theme &theme);

/// The same in one colour.
void drawPlain(const QColor &colour);

/// Darkens the strip of @p width x @p height pixels in the upper right corner of a GL viewport of
/// @p size, so that white text reads well there. Leaves GL state as it was.
void drawShade(const QSizeF &size, double width, double height);

} // namespace host

#endif
