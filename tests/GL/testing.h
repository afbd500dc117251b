// SPDX-License-Identifier: MIT
// What the tests on a real window share.
#ifndef TESTS_GL_TESTING_H
#define TESTS_GL_TESTING_H

#include <ctime>
#include <functional>

#include <gtest/gtest.h>

#include <QImage>
#include <QMap>
#include <QStringList>

#include "GL/glwindow.h"

// For readable failures.
inline void PrintTo(const QString &s, std::ostream *out)
{
    *out << '"' << s.toStdString() << '"';
}
inline void PrintTo(const QStringList &list, std::ostream *out)
{
    PrintTo(list.join(" | "), out);
}

/// The module's wall clock in microseconds while non-zero; the machine's otherwise.
extern time_t frozenClock;
/// What OpenGL tells the module of its renderer while non-null.
extern const char *fakeRenderer;

/// What the application's NewObject does; null: it makes nothing.
extern std::function<QObject *(const QString &type, QObject *parent, const QString &name)>
    newObject;

/// A host object. It logs each call as "object.Slot" and then runs the hook of that entry, if any.
class Host : public QObject {
    Q_OBJECT

public:
    QStringList log;
    QMap<QString, std::function<void()>> on;

    /// The entries since the last call, joined by blanks.
    QString take();

public Q_SLOTS:
    void Init(GLW *o) { note(o, "Init"); }
    void Pick3D(GLW *o) { note(o, "Pick3D"); }
    void Pick2D(GLW *o) { note(o, "Pick2D"); }
    void Draw3D(GLW *o) { note(o, "Draw3D"); }
    void Draw2D(GLW *o) { note(o, "Draw2D"); }
    void PaintForeground(GLW *o, QPainter *) { note(o, "PaintForeground"); }
    void InitContextMenuTree(GLW *o, QObject *) { note(o, "InitContextMenuTree"); }
    void Fired(GLW *o) { note(o, "Fired"); }
    void State(GLW *o, bool state) { note(o, state ? "Press" : "Release"); }
    void Repeat(GLW *o, bool state, bool repeat);
    void Plain() { note(nullptr, "Plain"); }
    void Flag(bool) { note(nullptr, "Flag"); }
    void Number(int) { note(nullptr, "Number"); }

private:
    void note(GLW *o, const char *slot);
};

/// A shown window of 200 x 100 pixels at (100, 100) on the screen, the cursor outside of it, with
/// no timer running: frames come from tick() and QWidget::repaint() only.
class WindowTest : public testing::Test {
protected:
    WindowTest();
    ~WindowTest() override;

    /// A scene object behind those that are there, connected to the host; it dies with the test.
    GLWidget *add(const char *name, const QRectF &rect = QRectF(0, 0, 1, 1));
    /// One tick of the frame timer.
    void tick();
    /// The window's pixels as a person sees them.
    QImage screen();

    QObject owner;
    Host host;
    QPointer<QGLWindow> window;
};

#endif
