// SPDX-License-Identifier: MIT
#include "testing.h"

#include <dlfcn.h>
#include <sys/time.h>

#include <QApplication>
#include <QCursor>
#include <QScreen>
#include <QTest>
#include <QTimerEvent>
#include <QWindow>

std::function<QObject *(const QString &type, QObject *parent, const QString &name)> newObject;

/// Offers the slot by which scene objects ask the application for a menu tree.
class Application : public QApplication {
    Q_OBJECT

public:
    using QApplication::QApplication;

public Q_SLOTS:
    QObject *NewObject(QString type, QObject *parent, QString name)
    {
        return newObject ? newObject(type, parent, name) : nullptr;
    }
};

QCoreApplication *makeApplication(int &argc, char **argv);
QCoreApplication *makeApplication(int &argc, char **argv)
{
    return new Application(argc, argv);
}

time_t frozenClock = 0;
const char *fakeRenderer = nullptr;

// These two stand in front of the libraries' own, for the module too.
extern "C" int gettimeofday(timeval *now, void *) noexcept
{
    timespec real;
    clock_gettime(CLOCK_REALTIME, &real);
    now->tv_sec = frozenClock ? frozenClock / 1000000 : real.tv_sec;
    now->tv_usec = frozenClock ? frozenClock % 1000000 : real.tv_nsec / 1000;
    return 0;
}

extern "C" const GLubyte *glGetString(GLenum name)
{
    using Function = const GLubyte *(*)(GLenum);
    static const auto real = reinterpret_cast<Function>(dlsym(RTLD_NEXT, "glGetString"));
    const bool fake = fakeRenderer && name == GL_RENDERER;
    return fake ? reinterpret_cast<const GLubyte *>(fakeRenderer) : real(name);
}

QString Host::take()
{
    const QString all = log.join(' ');
    log.clear();
    return all;
}

void Host::note(GLW *o, const char *slot)
{
    const QString entry = o ? o->objectName() + '.' + slot : slot;
    log << entry;
    // A copy: the hook may delete this host.
    if (const auto hook = on.value(entry))
        hook();
}

void Host::Repeat(GLW *o, bool state, bool repeat)
{
    note(o, state ? (repeat ? "KeyAgain" : "KeyDown") : "KeyUp");
}

WindowTest::WindowTest() : window(new QGLWindow(nullptr, "window"))
{
    QCursor::setPos(700, 700);
    window->fps(0);
    window->setGeometry(100, 100, 200, 100);
    window->show();
    EXPECT_TRUE(QTest::qWaitForWindowExposed(window));
    QCoreApplication::processEvents();
    window->makeCurrent();
    while (glGetError() != GL_NO_ERROR) {
    }
}

WindowTest::~WindowTest()
{
    delete window;
    frozenClock = 0;
    fakeRenderer = nullptr;
}

GLWidget *WindowTest::add(const char *name, const QRectF &rect)
{
    auto *object = new GLWidget(&owner, name);
    object->setGeometry(rect);
    window->InsertGLWidget(-1, object);
    object->Connect(&host);
    host.log.clear();
    return object;
}

void WindowTest::tick()
{
    QTimerEvent event(0);
    QCoreApplication::sendEvent(window, &event);
}

QImage WindowTest::screen()
{
    glFinish();
    return window->screen()->grabWindow(window->winId()).toImage();
}

#include "testing.moc"
