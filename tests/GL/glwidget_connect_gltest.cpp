// SPDX-License-Identifier: MIT
// Which slots of a host a scene object finds.
#include "testing.h"

namespace {

using Connect = WindowTest;

// Hosts that offer more or less.

class Modest : public QObject {
    Q_OBJECT
public:
    QStringList log;
public Q_SLOTS:
    void Init() { log << "Init"; }
    void Draw3D() { log << "Draw3D"; }
    void Draw2D() { log << "Draw2D"; }
    void Pick3D() { log << "Pick3D"; }
    void Pick2D() { log << "Pick2D"; }
    void Connected(GLW *o) { log << "Connected " + o->objectName(); }
    void PaintForeground() { log << "PaintForeground"; }
    void Range2D() { log << "Range2D"; }
    void NearestDataPos() { log << "NearestDataPos"; }
    void InitContextMenuTree() { log << "InitContextMenuTree"; }
};

class Both : public Modest {
    Q_OBJECT
public Q_SLOTS:
    void Init(GLW *o)
    {
        const bool current = QGLContext::currentContext() && glGetString(GL_VERSION);
        log << "Init " + o->objectName() + (current ? "" : " without context");
    }
    void InitContextMenuTree(GLW *, QObject *) { log << "Tree"; }
};

class Odd : public QObject {
    Q_OBJECT
public:
    QStringList log;
    Q_INVOKABLE void Draw3D(GLW *) { log << "Draw3D"; }
public Q_SLOTS:
    void Connected() { log << "Connected"; }
Q_SIGNALS:
    void Init(GLW *);
};

/// The log of connecting a host and emitting every signal, with a window shown or without one.
template <typename T> QString connected(QGLWindow *window)
{
    T someone;
    GLWidget object(nullptr, "a");
    if (window)
        window->AddGLWidget(&object);
    QGLContext *const before = const_cast<QGLContext *>(QGLContext::currentContext());
    if (before)
        before->doneCurrent();
    EXPECT_EQ(object.Connect(&someone), &someone);
    if (before)
        before->makeCurrent();
    someone.log << ":";
    QRectF range;
    QVector3D point;
    emit object.Init(&object);
    emit object.Draw3D(&object);
    emit object.Draw2D(&object);
    emit object.Pick3D(&object);
    emit object.Pick2D(&object);
    emit object.Range2D(&range, 0);
    emit object.NearestDataPos(&point);
    emit object.InitContextMenuTree(&object, nullptr);
    emit object.PaintForeground(&object, nullptr);
    if (window)
        window->RemoveGLWidget(&object);
    return someone.log.join(' ');
}

TEST_F(Connect, TakesTheSlotsThatAHostHas)
{
    const char *const bare = "Draw3D Draw2D Pick3D Pick2D";
    EXPECT_EQ(connected<Modest>(nullptr), QString("Connected a : Init ") + bare);
    EXPECT_EQ(connected<Modest>(window), QString("Init Connected a : Init ") + bare);
    EXPECT_EQ(connected<Both>(nullptr), QString("Connected a : Init a ") + bare + " Tree");
    EXPECT_EQ(connected<Both>(window), QString("Init a Connected a : Init a ") + bare + " Tree");
    EXPECT_EQ(connected<Odd>(window), ":") << "signals and other methods do not count";
    window->hide();
    EXPECT_EQ(connected<Both>(window), QString("Connected a : Init a ") + bare + " Tree");
}

} // namespace

#include "glwidget_connect_gltest.moc"
