// SPDX-License-Identifier: MIT
#include "GL/glwidget.h"

#include <limits>

#include <QMetaMethod>
#include <QOpenGLContext>
#include <QPainter>
#include <QSurface>

#include "GL/pass.h"
#include "Qt/utils.h"

namespace {

/// Makes a window's context current and, at its end, again what was current before, as far as that
/// still exists.
class BorrowedContext {
public:
    explicit BorrowedContext(GLWindow *window)
        : context_(QOpenGLContext::currentContext()),
          surface_(context_ ? context_->surface() : nullptr),
          surfaceObject_(dynamic_cast<QObject *>(surface_))
    {
        window->makeCurrent();
    }
    ~BorrowedContext()
    {
        if (context_ && surfaceObject_)
            context_->makeCurrent(surface_);
        else if (QOpenGLContext *current = QOpenGLContext::currentContext())
            current->doneCurrent();
    }
    BorrowedContext(const BorrowedContext &) = delete;
    BorrowedContext &operator=(const BorrowedContext &) = delete;

private:
    QPointer<QOpenGLContext> context_;
    QSurface *surface_;
    QPointer<QObject> surfaceObject_; ///< Tells whether the surface is still there.
};

/// Puts the GL viewport of a window back at its end, if the window lives.
class GLViewportKeeper {
public:
    explicit GLViewportKeeper(GLWindow *window) : window_(window)
    {
        makeCurrent();
        glGetIntegerv(GL_VIEWPORT, viewport_);
    }
    ~GLViewportKeeper()
    {
        if (!window_)
            return;
        makeCurrent();
        glViewport(viewport_[0], viewport_[1], viewport_[2], viewport_[3]);
    }
    GLViewportKeeper(const GLViewportKeeper &) = delete;
    GLViewportKeeper &operator=(const GLViewportKeeper &) = delete;

private:
    void makeCurrent()
    {
        if (QGLContext::currentContext() != window_->context())
            window_->makeCurrent();
    }

    QPointer<GLWindow> window_;
    GLint viewport_[4] = {};
};

} // namespace

GLWidget::GLWidget(QObject *p, const char *name) : GLW(p, name) {}

GLWidget::~GLWidget() = default;

/// Connects the signal @p name (GLW*) to @p o's slot of the same name, with or without its
/// argument.
void GLWidget::connectDrawing(QObject *o, const char *name)
{
    const QByteArray full = QByteArray(name) + "(GLW*)";
    const QByteArray bare = QByteArray(name) + "()";
    const QByteArray signal = '2' + full;
    if (qHasSlot(o, full))
        connect(this, signal, o, '1' + full);
    else if (qHasSlot(o, bare))
        connect(this, signal, o, '1' + bare);
}

QObject *GLWidget::Connect(QObject *o)
{
    for (const char *name : {"Init", "Draw3D", "Draw2D", "Pick3D", "Pick2D"})
        connectDrawing(o, name);
    for (const char *signature :
         {"Range2D(QRectF*,int)", "NearestDataPos(QVector3D*)",
          "InitContextMenuTree(GLW*,QObject*)", "PaintForeground(GLW*,QPainter*)"}) {
        if (qHasSlot(o, signature))
            connect(this, '2' + QByteArray(signature), o, '1' + QByteArray(signature));
    }

    const QPointer<GLWidget> self(this);
    const QPointer<QObject> host(o);
    if (gl && gl->isVisible() && gl->isValid()) {
        const BorrowedContext context(gl);
        if (qHasSlot(o, "Init(GLW*)"))
            QMetaObject::invokeMethod(o, "Init", Q_ARG(GLW *, this));
        else if (qHasSlot(o, "Init()"))
            QMetaObject::invokeMethod(o, "Init");
    }
    if (self && host && qHasSlot(o, "Connected(GLW*)"))
        QMetaObject::invokeMethod(o, "Connected", Q_ARG(GLW *, this));
    return host;
}

void GLWidget::Resize(int, int) {}

void GLWidget::SetTarget(Vector v)
{
    camera.setTarget = v;
    camera.Update(1);
}

void GLWidget::initializeGL()
{
    emit Init(this);
}

void GLWidget::Init3D()
{
    if (gl)
        setUp3D(*this);
}

void GLWidget::Init2D()
{
    if (gl)
        setUp2D(*this);
}

void GLWidget::InitPick3D(Mouse &mouse)
{
    if (gl)
        setUpPick3D(*this, PickRegion(mouse));
}

void GLWidget::InitPick2D(Mouse &mouse)
{
    if (gl)
        setUpPick2D(*this, PickRegion(mouse));
}

void GLWidget::pickGL()
{
    if (!gl || !property<bool>("enabled") || !property<bool>("visible"))
        return;
    camera.Update(1);
    viewport.Update();
    const PassGuard pass(this);
    if (property<bool>("pick3d")) {
        InitPick3D(gl->mouse);
        emit Pick3D(this);
    }
    if (pass.alive() && property<bool>("pick2d")) {
        InitPick2D(gl->mouse);
        emit Pick2D(this);
    }
}

void GLWidget::paintGL()
{
    if (!gl || !property<bool>("visible"))
        return;
    setGLViewport(*this);
    const PassGuard pass(this);
    const LocalRecord local(gl, *this);
    if (property<bool>("draw3d")) {
        Init3D();
        emit Draw3D(this);
    }
    if (pass.alive() && property<bool>("draw2d")) {
        Init2D();
        emit Draw2D(this);
    }
}

void GLWidget::paintForeground()
{
    static const QMetaMethod signal = QMetaMethod::fromSignal(&GLWidget::PaintForeground);
    if (!gl || !property<bool>("visible") || !isSignalConnected(signal))
        return;
    // The next pick pass is given in the viewport that the painting left, not in a painter's.
    const GLViewportKeeper viewportOfPainting(gl);
    // A window that dies meanwhile ends the painter itself.
    QPainter painter(gl.data());
    emit PaintForeground(this, &painter);
    if (painter.isActive())
        painter.end();
}

QRectF GLWidget::Range2D(int mode)
{
    constexpr qreal unsetTop = std::numeric_limits<int>::min();
    constexpr qreal unsetBottom = std::numeric_limits<int>::max();
    QRectF r(0, unsetTop, 0, unsetBottom - unsetTop);
    emit Range2D(&r, mode);
    if (r.y() == unsetTop || r.y() + r.height() == unsetBottom)
        r = QRectF(r.x(), 10, r.width(), -20);
    if (r.x() + r.width() == 0)
        r.setWidth(3680 - r.x());
    return r;
}

QVector3D GLWidget::NearestDataPos()
{
    const Vector c = Cursor();
    QVector3D v(c.x, c.y, c.z);
    emit NearestDataPos(&v);
    return v;
}
