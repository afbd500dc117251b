// SPDX-License-Identifier: MIT
// The window's list of scene objects and its frame.
#include "GL/glwindow.h"

#include <cstdio>
#include <cstring>

#include <QFontMetrics>
#include <QPaintEngine>
#include <QPainter>
#include <QWindow>

#include "Qt/utils.h"

QGLWindow::QGLWindow(QWidget *parent, const char *name) : GLWindow(parent, name)
{
    setSizePolicy(QSizePolicy::Expanding, QSizePolicy::Expanding);
    setFocusPolicy(Qt::StrongFocus);
    setAttribute(Qt::WA_MouseTracking);
    setAutoBufferSwap(false);
    setAutoFillBackground(false);
    fps(30);
    setProperty("verbose", 0);
    setProperty("timer", true);
    setProperty("drawfps", true);
    setProperty("fpsString", QString());
    setProperty("cpuString", QString());
    setProperty("swRendering", false);
    setProperty("clampMouseToFrame", true);
}

QGLWindow::~QGLWindow()
{
    // A slot that paints the foreground deletes the window: its painter must not outlive it.
    if (!paintingActive())
        return;
    QPaintEngine *engine = paintEngine();
    if (engine && engine->painter())
        engine->painter()->end();
}

void QGLWindow::fps(float rate)
{
    if (timerID > 0) {
        killTimer(timerID);
        timerID = 0;
    }
    if (!(rate > 0))
        return;
    _fps = rate;
    timerID = startTimer(bounded::truncate(1000 / rate), Qt::PreciseTimer);
}

QObject *QGLWindow::AddGLWidget(QObject *o)
{
    return InsertGLWidget(0, o);
}

QObject *QGLWindow::InsertGLWidget(int pos, QObject *o)
{
    GLWidget *w = qobject_cast<GLWidget *>(o);
    if (!w)
        return nullptr;
    if (glwidgets.contains(w))
        RemoveGLWidget(w);
    const QPointer<GLWidget> guard(w);
    guards[w] = guard;
    glwidgets.insert(pos < 0 || pos > glwidgets.size() ? glwidgets.size() : pos, w);
    // Once per object: its connections outlive its place in the list.
    constexpr auto once = Qt::ConnectionType(Qt::AutoConnection | Qt::UniqueConnection);
    connect(w, SIGNAL(destroyed(QObject *)), this, SLOT(RemoveGLWidget(QObject *)), once);
    if (qHasSlot(w, "Resize(int,int)"))
        connect(this, SIGNAL(Resized(int, int)), w, SLOT(Resize(int, int)), once);
    w->gl = this;
    if (qHasSlot(w, "Connected()"))
        QMetaObject::invokeMethod(w, "Connected");
    return guard;
}

bool QGLWindow::RemoveGLWidget(QObject *o)
{
    GLWidget *w = qobject_cast<GLWidget *>(o);
    if (!w)
        return false;
    w->gl = nullptr;
    guards.remove(w);
    return glwidgets.removeAll(w) > 0;
}

/// The objects of the list that live, in order, guarded.
QGLWindow::Objects QGLWindow::snapshot() const
{
    Objects objects;
    objects.reserve(glwidgets.size());
    for (GLWidget *w : glwidgets) {
        const auto guard = guards.constFind(w);
        objects.append(guard == guards.constEnd() ? QPointer<GLWidget>(w) : *guard);
    }
    return objects;
}

/// Runs one pass over the list. Returns false if the window died in it.
bool QGLWindow::forEachObject(void (GLWidget::*pass)())
{
    const QPointer<QGLWindow> self(this);
    const Objects objects = snapshot();
    for (const QPointer<GLWidget> &object : objects) {
        if (object)
            (object->*pass)();
        if (!self)
            return false;
    }
    return true;
}

void QGLWindow::Update()
{
    update = bounded::sum(update, 1);
}

void QGLWindow::timerEvent(QTimerEvent *)
{
    if (property("verbose").toInt() != 0) {
        std::fputs((objectName().toLocal8Bit() + " # timerEvent()\n").constData(), stdout);
        std::fflush(stdout);
    }
    const QPointer<QGLWindow> self(this);
    timer_event = true;
    updateGL();
    if (self)
        timer_event = false;
}

/// In place of the base's, which still reads the window after a frame: a slot may have deleted it.
/// GL is initialised when the window is first shown, not by a tick while it is hidden.
void QGLWindow::glDraw()
{
    if (!isValid() || !isVisible())
        return;
    const QPointer<QGLWindow> self(this);
    makeCurrent();
    if (initialized != context()) {
        glInit();
        const qreal ratio =
            window()->windowHandle() ? window()->windowHandle()->devicePixelRatio() : 1;
        if (self)
            resizeGL(bounded::truncate(width() * ratio), bounded::truncate(height() * ratio));
    }
    if (self)
        paintGL();
}

void QGLWindow::initializeGL()
{
    const QPointer<QGLWindow> self(this);
    initialized = context();
    const auto renderer = reinterpret_cast<const char *>(glGetString(GL_RENDERER));
    if (!qIsTrue(this, "swRendering") && renderer && std::strstr(renderer, "Software"))
        setProperty("swRendering", true);
    if (self)
        forEachObject(&GLWidget::initializeGL);
}

void QGLWindow::resizeGL(int w, int h)
{
    emit Resized(w, h);
}

void QGLWindow::paintEvent(QPaintEvent *)
{
    paintGL();
}

void QGLWindow::paintGL()
{
    constexpr int smallest = 10; // pixels; nothing is drawn in a window this narrow or low
    makeCurrent();
    if (!isValid() || !isVisible() || width() <= smallest || height() <= smallest)
        return;
    const time_t t0 = timer();
    glClear(GL_COLOR_BUFFER_BIT | GL_DEPTH_BUFFER_BIT);
    if (!forEachObject(&GLWidget::pickGL))
        return;
    if (timer_event && !qIsTrue(this, "timer") && update == 0)
        return;
    update = 0;
    if (!forEachObject(&GLWidget::paintGL))
        return;
    drawFrameRate();
    if (!forEachObject(&GLWidget::paintForeground))
        return;

    const time_t t1 = timer();
    swapBuffers();
    timer.Update(bounded::difference(t1, t0));
    constexpr double period = 500000; // microseconds between two refreshes of the texts
    if (double(t1) > double(timer.start) + period)
        refreshTexts(t1);
    else
        last_draw = size_t(t1);
}

void QGLWindow::drawFrameRate()
{
    glColor3f(1, 1, 1);
    glPushAttrib(GL_ALL_ATTRIB_BITS);
    // Not a capability: it disables nothing and leaves GL_INVALID_ENUM in the error flag. Kept, as
    // the frame's sequence of GL calls is part of what hosts are promised.
    glDisable(GL_DEPTH_BUFFER_BIT);
    if (qIsTrue(this, "drawfps") && qIsTrue(this, "timer")) {
        const int margin = 6; // pixels
        const int baseline = 12;
        renderText(width() - fontMetrics().horizontalAdvance(last_fps) - margin, baseline,
                   last_fps);
    }
    glPopAttrib();
}

/// The rate is that of the frame just drawn, not an average; the load is the period's.
void QGLWindow::refreshTexts(time_t now)
{
    const time_t interval = bounded::difference(now, time_t(last_draw));
    const float rate = interval ? 1000000.0f / float(interval) : 1000000.0f;
    const int decimals = rate < 10 ? 1 : 0;
    const auto load = [this] { return double(timer.GetRatio() * 100); };
    const QChar blank(' ');
    last_fps = QStringLiteral("%1 fps %2%gfx")
                   .arg(double(rate), 4, 'f', decimals, blank)
                   .arg(load(), 2, 'f', 0, blank);
    const QString loadText = QStringLiteral("%1%").arg(load(), 2, 'f', 0, blank);
    timer.Start();
    last_draw = size_t(now);
    // Last, since whoever hears of these may delete the window.
    const QPointer<QGLWindow> self(this);
    setProperty("fpsString", QStringLiteral("%1 fps").arg(double(rate), 4, 'f', decimals, blank));
    if (self)
        setProperty("cpuString", loadText);
}
