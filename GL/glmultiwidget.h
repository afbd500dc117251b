// SPDX-License-Identifier: MIT
#ifndef GL_GLMULTIWIDGET_H
#define GL_GLMULTIWIDGET_H

#include <functional>

#include <QList>
#include <QMap>
#include <QSize>
#include <QVariant>

#include "GL/export.h"
#include "GL/glwidget.h"

class GLMultiWidget;
class PassGuard;
class QPaintEvent;

/// One view of a multi-view: a cell with its own camera, 2D viewport and lights.
///
/// Frame: window pixels from the top-left corner; `orect` is the whole cell, `rect` the drawing
/// area inside it, both written by the layout; until the first one both are the whole window. Data
/// coordinates start at the top-left corner, y downwards. Dynamic properties besides GLW's:
/// "sizeHint" (QSize, 1 x 1), "selected" (bool), "padding" (int, 20, for the host's drawing). Owned
/// by its multi-view, which also holds all bindings.
class GLWINDOW_EXPORT GLTile : public GLW {
public:
    enum Flag { Enabled = 1, Visible = 2, Pick3D = 4, Pick2D = 8, Draw3D = 16, Draw2D = 32 };

    QPointer<GLW> glw; ///< The multi-view.

    GLTile(GLMultiWidget *owner, uint id);
    ~GLTile() override;

    /// Whether the dynamic property of that name is true. As exact as reading the property, without
    /// the search for its name: the passes ask for every tile in every frame.
    bool is(Flag flag) const;
    /// QObject's. Qt asks for it at the start of every setProperty(), even of those whose change
    /// event nobody delivers, so this is where the flags kept from the last look become stale.
    const QMetaObject *metaObject() const override;

    /// The multi-view's actions; none once it is gone.
    QList<QAction *> actions() const override;
    QAction *NewKeyAction(const QString &, const char *, QObject *, const char *) override;
    QAction *NewMouseAction(quint32, quint32, const char *, QObject *, const char *) override;
    bool DeleteAction(const char *) override;

private:
    void readFlags() const;

    mutable quint8 flags = 0;
    mutable bool flagsKnown = false;
};

using GLTiles = QMap<unsigned int, GLTile *>;

/// A scene object divided into a grid of tiles of a common aspect ratio, large ones: the best of
/// the grids that a quick search tries, which need not be the best there is. It lays out, picks and
/// paints the tiles and keeps their selection, visibility and order.
///
/// Frame: tiles are placed in window pixels from the top-left corner, y downwards, so a multi-view
/// fills its window. Dynamic properties in pixels: "spacing" (2, between tiles and around them),
/// "padding" (0, inside each cell), "header" and "footer" (0, above and below the drawing area);
/// "rows" and "cols" tell the grid. "enableSelection", "drawbg" and "drawfg" are switches.
/// A change of these, of a tile's "sizeHint" or its "visible" counts from the layout in the next
/// pick pass after UpdateLayout(); tiles that come or go, SetVisible() and a new size call for it
/// themselves. Selection and visibility are the tiles'
/// dynamic properties "selected" and "visible"; lists of ids are in ascending order.
/// Owns its tiles. A host's slot may add, remove or clear tiles during any signal.
class GLWINDOW_EXPORT GLMultiWidget : public GLWidget {
    Q_OBJECT
    Q_PROPERTY(QVariantList order READ GetOrder WRITE SetOrder)

public:
    qint32 updateLayout = 0; ///< Above zero: the layout is stale.
    qint32 tilePressed = -1; ///< Id of the tile under the last left press.
    qint32 doublePress = 0;  ///< The window's double_press at the last double-click notice.
    GLTiles tiles;
    QList<int> order; ///< Ids in the host's order; may be empty and may name missing tiles.

    GLMultiWidget(QObject *parent, const char *name);
    ~GLMultiWidget() override;

    using GLWidget::NearestDataPos;
    using GLWidget::Range2D;

    /// The tile whose cell holds pixel (@p x, @p y), y from the top, all edges included; of two
    /// that share an edge the one of the smaller id. Null between tiles.
    GLW *hit(int x, int y) override;
    void initializeGL() override;
    void pickGL() override;
    void paintGL() override;
    /// Runs paintGL() at once, outside the window's frame: nothing is cleared and nothing swapped.
    void paintEvent(QPaintEvent *);

Q_SIGNALS:
    void Init(GLW *);
    void Resized(int, int);
    void TileResized(int, int); ///< A cell's full share of the view, in pixels, spacing included.
    void Update(GLW *);         ///< Each visible tile in each pick pass, before it is picked.
    void Pick3D(GLW *);
    void Pick2D(GLW *);
    void Draw3D(GLW *);
    void Draw2D(GLW *);
    void DrawBG(GLW *); ///< The whole view, before its tiles.
    void DrawFG(GLW *); ///< The whole view, after its tiles.
    void DrawEvent();
    void Range2D(QRectF *, int);
    void InitContextMenuTree(GLW *, QObject *);
    void ValueChanged(QList<int> l); ///< The new selection.
    void VisibleCountChanged(int);
    void VisibleChanged(QList<int> l); ///< For the host; not emitted here.
    void TileAdded(uint id);

public Q_SLOTS:
    QVariantList Tiles(); ///< Ids of all tiles.
    /// Returns the tile of that id, made if need be; null if a slot removed it at once.
    QObject *AddTile(uint id);
    void RemoveTile(int id); ///< Deletes the tile; its id stays in the order.
    void Clear();            ///< Deletes all tiles.
    QVariantList GetOrder();
    void SetOrder(QVariantList o); ///< Lays out at once. Tiles that are not named come last.
    QList<GLW *> Widgets();        ///< All tiles.
    void ResetViewport();          ///< Pan 0, scale 1 and property "zoom" 1 on every tile.
    /// GLWidget's, and Update, DrawBG and DrawFG too.
    QObject *Connect(QObject *o);
    /// Called by the window: takes it for all tiles and makes the mouse bindings.
    void Connected();
    void Resize(int w, int h);
    void UpdateLayout();
    void ForceUpdate(); ///< Emits Update for every visible tile.
    void LeftMouse(GLW *glw, bool state);
    void CtrlLeftMouse(GLW *glw, bool state);
    void LeftDoubleMouse(GLW *glw, bool state);
    void SetVisible(QList<int> ids, bool visible);
    QList<int> GetSelected();
    QList<int> GetVisible();
    void ToggleVisible(); ///< Shows only the selected tiles, or all of them again.
    void SelectAll();     ///< Selects all tiles, or none if all were.

private:
    /// Rows and columns; -1 as long as no grid gives the tiles any area.
    struct Grid {
        int rows = -1;
        int cols = -1;
    };

    void layoutIsStale();
    GLTile *alive(const GLTiles &all, GLTiles::const_iterator it) const;
    bool forEachTile(const std::function<void(GLTile *)> &visit);
    QByteArray makeName(const char *name) const;
    QList<GLTile *> orderedTiles() const;
    QList<GLTile *> visibleTiles() const;
    bool commonSize(float &width, float &height, int &count) const;
    Grid searchGrid(int count, float tileWidth, float tileHeight) const;
    void placeTiles(const Grid &grid);
    void calculateLayout();
    void pickTile(const GLTiles &all, GLTiles::const_iterator it, const PassGuard &pass);
    void paintTile(const GLTiles &all, GLTiles::const_iterator it, const PassGuard &pass);
    void paintWhole(const char *gate, void (GLMultiWidget::*signal)(GLW *));
    void toggleSingleView(quint32 id);
    bool setSelected(const QList<int> &ids);
    void localSelect(int id, int multi);
    void pressOrRelease(GLW *glw, bool state, int multi);
    QList<int> idsWhere(const char *name) const;
};

#endif
