// SPDX-License-Identifier: MIT
#include "support.h"

#include <QApplication>
#include <QFile>
#include <QMouseEvent>
#include <QTest>
#include <QThreadPool>

#include "host/app/application.h"
#include "host/read/reader_process.h"

/// The program is also the child that a reader starts.
int runAsChild(int argc, char **argv);
int runAsChild(int argc, char **argv)
{
    if (argc != 2 || qstrcmp(argv[1], "--reader") != 0)
        return -1;
    const QCoreApplication application(argc, argv);
    return host::runReaderProcess();
}

QCoreApplication *makeApplication(int &argc, char **argv);
QCoreApplication *makeApplication(int &argc, char **argv)
{
    return new host::Application(argc, argv);
}

namespace host {

void ViewTest::SetUp()
{
    ASSERT_TRUE(loader.load({GLWINDOW_MODULE})) << loader.error().toStdString();
    window = std::make_unique<Window>(loader.factory(), QSize(600, 400), 0);
    widget = window->widget();
    widget->setProperty("clampMouseToFrame", false);
    window->clock().setTime([this] { return time; });
}

QString ViewTest::file(const QString &name, const QByteArray &text) const
{
    const QString path = folder.filePath(name);
    QFile out(path);
    EXPECT_TRUE(out.open(QIODevice::WriteOnly));
    out.write(text);
    return path;
}

QString ViewTest::boxes(const QString &name, int count) const
{
    QByteArray text;
    for (int box = 0; box < count; ++box) {
        text += "o box" + QByteArray::number(box) + "\n";
        for (int corner = 0; corner < 8; ++corner)
            text += "v " + QByteArray::number(3 * box + (corner & 1 ? 2 : 0)) +
                    (corner & 2 ? " 2" : " 0") + (corner & 4 ? " 2\n" : " 0\n");
        const int faces[6][4] = {{0, 2, 3, 1}, {4, 5, 7, 6}, {0, 1, 5, 4},
                                 {2, 6, 7, 3}, {0, 4, 6, 2}, {1, 3, 7, 5}};
        for (const auto &face : faces) {
            text += "f";
            for (int corner : face)
                text += " " + QByteArray::number(8 * box + corner + 1);
            text += "\n";
        }
    }
    return file(name, text);
}

QByteArray ViewTest::weather()
{
    QByteArray text = "day,warm,cold\n";
    for (int row = 0; row < 10; ++row)
        text += QByteArray::number(row) + ",20,0\n";
    return text;
}

void ViewTest::show(View &view)
{
    widget->window()->show();
    ASSERT_TRUE(QTest::qWaitForWindowExposed(widget));
    QApplication::setActiveWindow(widget); // without a window manager nobody else does
    widget->setFocus();
    widget->setAttribute(Qt::WA_UnderMouse); // the hand is here, wherever the screen's pointer is
    ASSERT_TRUE(QTest::qWaitFor([&] { return view.isSettled(); }, 60000));
    QThreadPool::globalInstance()->waitForDone(); // then the pointer finds triangles
    frame();
}

void ViewTest::frame()
{
    time += 0.1; // seconds
    widget->repaint();
    QCoreApplication::processEvents();
}

void ViewTest::settle(GLW *glw)
{
    const GL::Camera &camera = glw->camera;
    int frames = 0;
    do {
        frame(); // it moves on, and says how far it will move in the next one
        ASSERT_LT(++frames, 100) << "it never comes to rest";
    } while (camera.d_rot != Vector() || camera.d_target != Vector() || camera.d_radius != 0);
}

void ViewTest::send(QEvent::Type type, const QPointF &at, Qt::MouseButton button,
                    Qt::MouseButtons held, Qt::KeyboardModifiers modifiers)
{
    QMouseEvent event(type, at, widget->mapToGlobal(at.toPoint()), button, held, modifiers);
    QCoreApplication::sendEvent(widget, &event);
}

void ViewTest::press(const QPointF &at, Qt::MouseButton button, Qt::KeyboardModifiers modifiers)
{
    send(QEvent::MouseButtonPress, at, button, button, modifiers);
}

void ViewTest::move(const QPointF &at, Qt::MouseButtons held, Qt::KeyboardModifiers modifiers)
{
    send(QEvent::MouseMove, at, Qt::NoButton, held, modifiers);
}

void ViewTest::release(const QPointF &at, Qt::MouseButton button, Qt::KeyboardModifiers modifiers)
{
    send(QEvent::MouseButtonRelease, at, button, Qt::NoButton, modifiers);
}

void ViewTest::click(const QPointF &at, Qt::KeyboardModifiers modifiers)
{
    move(at, {}, modifiers);
    press(at, Qt::LeftButton, modifiers);
    release(at, Qt::LeftButton, modifiers);
    frame();
}

void ViewTest::doubleClick(const QPointF &at)
{
    click(at);
    send(QEvent::MouseButtonDblClick, at, Qt::LeftButton, Qt::LeftButton, {});
    release(at, Qt::LeftButton);
    frame();
}

void ViewTest::drag(const QPointF &from, const QPointF &to, Qt::MouseButton button,
                    Qt::KeyboardModifiers modifiers)
{
    move(from, {}, modifiers);
    press(from, button, modifiers);
    move((from + to) / 2, button, modifiers);
    move(to, button, modifiers);
    frame();
    release(to, button, modifiers);
    frame();
    frame();
}

void ViewTest::key(int key, Qt::KeyboardModifiers modifiers)
{
    QTest::keyClick(widget, Qt::Key(key & ~Qt::KeyboardModifierMask),
                    modifiers | Qt::KeyboardModifiers(key & int(Qt::KeyboardModifierMask)));
    frame();
}

} // namespace host
