// SPDX-License-Identifier: MIT
// The multi-view's tiles.
#include "GL/glmultiwidget.h"

#include "Qt/utils.h"

namespace {

constexpr int topLeft = GL::Viewport::AlignLeft | GL::Viewport::AlignTop;

} // namespace

GLTile::GLTile(GLMultiWidget *owner, uint id) : GLW(owner, nullptr), glw(owner)
{
    _id = int(id);
    gl = owner->gl;
    viewport.align = topLeft;
    setObjectName(QString::number(id));
    setProperty("sizeHint", QSize(1, 1));
    setProperty("selected", false);
    setProperty("padding", 20);
}

GLTile::~GLTile() = default;

bool GLTile::is(Flag flag) const
{
    if (!flagsKnown)
        readFlags();
    return flags & flag;
}

void GLTile::readFlags() const
{
    flags = quint8(
        (property<bool>("enabled") ? Enabled : 0) | (property<bool>("visible") ? Visible : 0) |
        (property<bool>("pick3d") ? Pick3D : 0) | (property<bool>("pick2d") ? Pick2D : 0) |
        (property<bool>("draw3d") ? Draw3D : 0) | (property<bool>("draw2d") ? Draw2D : 0));
    flagsKnown = true; // last: reading a property asks for the meta-object too
}

const QMetaObject *GLTile::metaObject() const
{
    flagsKnown = false;
    return GLW::metaObject();
}

QList<QAction *> GLTile::actions() const
{
    return glw ? glw->actions() : QList<QAction *>();
}

QAction *GLTile::NewKeyAction(const QString &, const char *, QObject *, const char *)
{
    return nullptr;
}

QAction *GLTile::NewMouseAction(quint32, quint32, const char *, QObject *, const char *)
{
    return nullptr;
}

bool GLTile::DeleteAction(const char *)
{
    return false;
}

GLMultiWidget::GLMultiWidget(QObject *parent, const char *name) : GLWidget(parent, name)
{
    viewport.align = topLeft;
    setProperty("enabled", true);
    setProperty("drawbg", true);
    setProperty("drawfg", true);
    setProperty("rows", 1);
    setProperty("cols", 1);
    setProperty("spacing", 2);
    setProperty("padding", 0);
    setProperty("header", 0);
    setProperty("footer", 0);
    setProperty("enableSelection", true);
}

GLMultiWidget::~GLMultiWidget() = default;

/// The tile at @p it of @p all, a copy of the tiles from before a slot ran, or null if it is gone.
/// The copy is shared with `tiles` until a tile comes or goes, so that a walk over it costs nothing
/// per tile; QPointers would.
GLTile *GLMultiWidget::alive(const GLTiles &all, GLTiles::const_iterator it) const
{
    return tiles.isSharedWith(all) || tiles.value(it.key()) == it.value() ? it.value() : nullptr;
}

/// Visits every tile that is still there when its turn comes. Returns false if the view itself
/// died: whoever hears of a change, a filter of a tile's events among them, may delete either.
bool GLMultiWidget::forEachTile(const std::function<void(GLTile *)> &visit)
{
    const QPointer<GLMultiWidget> self(this);
    const GLTiles all = tiles;
    for (auto it = all.begin(); it != all.end(); ++it) {
        if (GLTile *tile = alive(all, it))
            visit(tile);
        if (!self)
            return false;
    }
    return true;
}

void GLMultiWidget::layoutIsStale()
{
    updateLayout = bounded::sum(updateLayout, 1);
}

QVariantList GLMultiWidget::Tiles()
{
    QVariantList ids;
    for (auto it = tiles.constBegin(); it != tiles.constEnd(); ++it)
        ids.append(int(it.key()));
    return ids;
}

QList<GLW *> GLMultiWidget::Widgets()
{
    QList<GLW *> all;
    for (GLTile *tile : qAsConst(tiles))
        all.append(tile);
    return all;
}

QObject *GLMultiWidget::AddTile(uint id)
{
    if (GLTile *existing = tiles.value(id))
        return existing;
    const QPointer<GLMultiWidget> self(this);
    const QPointer<GLTile> tile(new GLTile(this, id));
    tiles[id] = tile;
    // A tile deleted by other means than RemoveTile leaves the map too.
    QObject *const address = tile;
    connect(tile, &QObject::destroyed, this, [this, id, address] {
        if (tiles.value(id) == address) {
            tiles.remove(id);
            layoutIsStale();
        }
    });
    emit Init(tile);
    if (self && tile)
        emit TileAdded(id);
    if (self)
        layoutIsStale();
    return tile;
}

void GLMultiWidget::RemoveTile(int id)
{
    GLTile *tile = tiles.take(uint(id));
    if (!tile)
        return;
    layoutIsStale();
    delete tile;
}

void GLMultiWidget::Clear()
{
    const QPointer<GLMultiWidget> self(this);
    const QList<unsigned int> ids = tiles.keys();
    for (unsigned int id : ids)
        if (self)
            RemoveTile(int(id));
}

void GLMultiWidget::ResetViewport()
{
    forEachTile([](GLTile *tile) {
        tile->viewport.pos = Vector(0, 0, 0);
        tile->viewport.scale = Vector(1, 1, 1);
        tile->setProperty("zoom", 1.0f);
    });
}

QObject *GLMultiWidget::Connect(QObject *o)
{
    for (const char *signature : {"Update(GLW*)", "DrawBG(GLW*)", "DrawFG(GLW*)"})
        if (qHasSlot(o, signature))
            connect(this, '2' + QByteArray(signature), o, '1' + QByteArray(signature));
    return GLWidget::Connect(o);
}

/// Keeps the action names of several multi-views in one window apart.
QByteArray GLMultiWidget::makeName(const char *name) const
{
    return QStringLiteral("%1_%2").arg(objectName(), QString::fromLocal8Bit(name)).toLocal8Bit();
}

void GLMultiWidget::Connected()
{
    for (GLTile *tile : qAsConst(tiles))
        tile->gl = gl;
    constexpr uint left = Qt::LeftButton;
    constexpr uint doubleClick = 0x100;
    // Whoever hears of the end of those from an earlier insertion may delete the view.
    const QPointer<GLMultiWidget> self(this);
    NewMouseAction(left | doubleClick, 0, makeName("leftdoublemouse"), this,
                   SLOT(LeftDoubleMouse(GLW *, bool)));
    if (self)
        NewMouseAction(left, 0, makeName("leftmouse"), this, SLOT(LeftMouse(GLW *, bool)));
    if (self)
        NewMouseAction(left | uint(Qt::ControlModifier), 0, makeName("ctrlleftmouse"), this,
                       SLOT(CtrlLeftMouse(GLW *, bool)));
}
