// SPDX-License-Identifier: MIT
// The multi-view's tiles and its passes.
#include "GL/glmultiwidget.h"

#include "GL/pass.h"
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
            ++updateLayout;
        }
    });
    emit Init(tile);
    if (self && tile)
        emit TileAdded(id);
    if (self)
        ++updateLayout;
    return tile;
}

void GLMultiWidget::RemoveTile(int id)
{
    GLTile *tile = tiles.take(uint(id));
    if (!tile)
        return;
    ++updateLayout;
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
    const GLTiles all = tiles;
    for (auto it = all.begin(); it != all.end(); ++it) {
        GLTile *tile = alive(all, it);
        if (!tile)
            continue;
        tile->viewport.pos = Vector(0, 0, 0);
        tile->viewport.scale = Vector(1, 1, 1);
        tile->setProperty("zoom", 1.0f);
    }
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
    NewMouseAction(left | doubleClick, 0, makeName("leftdoublemouse"), this,
                   SLOT(LeftDoubleMouse(GLW *, bool)));
    NewMouseAction(left, 0, makeName("leftmouse"), this, SLOT(LeftMouse(GLW *, bool)));
    NewMouseAction(left | uint(Qt::ControlModifier), 0, makeName("ctrlleftmouse"), this,
                   SLOT(CtrlLeftMouse(GLW *, bool)));
}

GLW *GLMultiWidget::hit(int x, int y)
{
    const QPointF point(x, y);
    for (GLTile *tile : qAsConst(tiles))
        if (tile->orect.contains(point) && tile->is(GLTile::Enabled) && tile->is(GLTile::Visible))
            return tile;
    return nullptr;
}

void GLMultiWidget::initializeGL()
{
    if (!property<bool>("enabled"))
        return;
    const QPointer<GLMultiWidget> self(this);
    const GLTiles all = tiles;
    for (auto it = all.begin(); it != all.end(); ++it) {
        if (GLTile *tile = alive(all, it))
            emit Init(tile);
        if (!self)
            return;
    }
}

void GLMultiWidget::pickGL()
{
    if (!gl || !property<bool>("enabled") || !property<bool>("visible"))
        return;
    const PassGuard pass(this);
    if (updateLayout > 0) {
        calculateLayout();
        if (!pass.alive())
            return;
        updateLayout = 0;
    }
    const GLTiles all = tiles;
    for (auto it = all.begin(); it != all.end(); ++it) {
        if (property<bool>("enabled") && alive(all, it) && (*it)->is(GLTile::Visible))
            pickTile(all, it, pass);
        if (!pass.alive())
            return;
    }
}

void GLMultiWidget::pickTile(const GLTiles &all, GLTiles::const_iterator it, const PassGuard &pass)
{
    GLTile *tile = *it;
    setGLViewport(*tile);
    tile->camera.Update(1);
    tile->viewport.Update();
    emit Update(tile);
    if (!pass.alive() || !alive(all, it))
        return;

    const Mouse &mouse = gl->mouse;
    if (!tile->orect.contains(QPointF(mouse.x, height() - mouse.y)))
        return;
    const PickRegion r(mouse);
    if (property<bool>("pick3d") && tile->is(GLTile::Pick3D)) {
        tile->camera.Setup(int(tile->width()), int(tile->height()), r.x, r.y, r.width, r.height);
        glDisable(GL_LIGHTING);
        emit Pick3D(tile);
        if (!pass.alive() || !alive(all, it))
            return;
    }
    if (property<bool>("pick2d") && tile->is(GLTile::Pick2D)) {
        tile->viewport.Setup(int(tile->width()), int(tile->height()), 100, r.x, r.y, r.width,
                             r.height);
        glDisable(GL_LIGHTING);
        emit Pick2D(tile);
    }
}

void GLMultiWidget::paintGL()
{
    if (!gl || !property<bool>("visible"))
        return;
    const PassGuard pass(this);
    emit DrawEvent();
    if (pass.alive())
        paintWhole("drawbg", &GLMultiWidget::DrawBG);
    if (!pass.alive())
        return;
    const GLTiles all = tiles;
    for (auto it = all.begin(); it != all.end(); ++it) {
        if (alive(all, it) && (*it)->is(GLTile::Visible))
            paintTile(all, it, pass);
        if (!pass.alive())
            return;
    }
    paintWhole("drawfg", &GLMultiWidget::DrawFG);
}

/// The pass over the view as a whole, if the property @p gate lets it run.
void GLMultiWidget::paintWhole(const char *gate, void (GLMultiWidget::*signal)(GLW *))
{
    if (!property<bool>(gate))
        return;
    setGLViewport(*this);
    Init2D();
    emit(this->*signal)(this);
}

void GLMultiWidget::paintTile(const GLTiles &all, GLTiles::const_iterator it, const PassGuard &pass)
{
    GLTile *tile = *it;
    setGLViewport(*tile);
    if (property<bool>("draw3d") && tile->is(GLTile::Draw3D) && tile->gl) {
        tile->camera.Setup(int(tile->width()), int(tile->height()), 0, 0, 0, 0);
        if (!tile->lights.empty())
            glEnable(GL_LIGHTING);
        for (GL::Light &light : tile->lights)
            light.Reposition();
        emit Draw3D(tile);
        if (!pass.alive() || !alive(all, it))
            return;
    }
    if (property<bool>("draw2d") && tile->is(GLTile::Draw2D)) {
        tile->viewport.Setup(int(tile->width()), int(tile->height()), 100, 0, 0, 0, 0);
        emit Draw2D(tile);
    }
}

void GLMultiWidget::paintEvent(QPaintEvent *)
{
    if (!gl)
        return;
    gl->makeCurrent();
    paintGL();
}

void GLMultiWidget::ForceUpdate()
{
    if (!property<bool>("enabled"))
        return;
    const QPointer<GLMultiWidget> self(this);
    const GLTiles all = tiles;
    for (auto it = all.begin(); it != all.end(); ++it) {
        if (alive(all, it) && (*it)->is(GLTile::Visible))
            emit Update(*it);
        if (!self)
            return;
    }
}
