// SPDX-License-Identifier: MIT
#include "GL/glwidget.h"

#include <limits>

#include <QPainter>

#include "GL/pass.h"
#include "Qt/utils.h"

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
        gl->makeCurrent();
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
    if (!gl)
        return;
    camera.Setup(int(width()), int(height()), 0, 0, 0, 0);
    if (lights.empty())
        return;
    glEnable(GL_LIGHTING);
    for (GL::Light &light : lights)
        light.Reposition();
}

void GLWidget::Init2D()
{
    if (gl)
        viewport.Setup(int(width()), int(height()), 100, 0, 0, 0, 0);
}

void GLWidget::InitPick3D(Mouse &mouse)
{
    if (!gl)
        return;
    const PickRegion r(mouse);
    camera.Setup(int(width()), int(height()), r.x, r.y, r.width, r.height);
    glDisable(GL_LIGHTING);
}

void GLWidget::InitPick2D(Mouse &mouse)
{
    if (!gl)
        return;
    const PickRegion r(mouse);
    viewport.Setup(int(width()), int(height()), 100, r.x, r.y, r.width, r.height);
    glDisable(GL_LIGHTING);
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
    // Kept, so that the record is restored exactly even if a slot moves or deletes the object.
    const int left = int(x());
    const int bottom = int(glY());
    const PassGuard pass(this);
    gl->mouse.sub(left, bottom);
    if (property<bool>("draw3d")) {
        Init3D();
        emit Draw3D(this);
    }
    if (pass.alive() && property<bool>("draw2d")) {
        Init2D();
        emit Draw2D(this);
    }
    if (pass.window())
        pass.window()->mouse.add(left, bottom);
}

void GLWidget::paintForeground()
{
    if (!gl || !property<bool>("visible"))
        return;
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
