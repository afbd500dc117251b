// SPDX-License-Identifier: MIT
#include "tests/GL/fixture.h"

#include <cstring>

#include <dlfcn.h>
#include <malloc.h>
#include <sys/time.h>

#include <QApplication>
#include <QCursor>
#include <QDebug>
#include <QJsonArray>
#include <QJsonDocument>
#include <QKeyEvent>
#include <QMouseEvent>
#include <QRegularExpression>
#include <QSequentialIterable>
#include <QTest>
#include <QTimerEvent>
#include <QWheelEvent>

Machine machine;

// The functions up to the next class stand in front of the libraries' own, for the module too.

extern "C" int gettimeofday(timeval *now, void *) noexcept
{
    timespec real;
    clock_gettime(CLOCK_REALTIME, &real);
    now->tv_sec = machine.clock ? machine.clock / 1000000 : real.tv_sec;
    now->tv_usec = machine.clock ? machine.clock % 1000000 : real.tv_nsec / 1000;
    return 0;
}

extern "C" const GLubyte *glGetString(GLenum name)
{
    static const auto real =
        reinterpret_cast<decltype(&glGetString)>(dlsym(RTLD_NEXT, "glGetString"));
    const bool fake = machine.renderer && name == GL_RENDERER;
    return fake ? reinterpret_cast<const GLubyte *>(machine.renderer) : real(name);
}

QPoint QCursor::pos()
{
    return machine.pointer;
}

void QCursor::setPos(int x, int y)
{
    machine.pointer = QPoint(x, y);
}

void QGLWidget::swapBuffers()
{
    ++machine.swaps;
    machine.shown = grabFrameBuffer();
    context()->swapBuffers();
}

void QGLWidget::renderText(int x, int y, const QString &text, const QFont &)
{
    GLfloat c[4];
    glGetFloatv(GL_CURRENT_COLOR, c);
    machine.texts << QString("%1,%2,%3,%4").arg(x).arg(y).arg(text).arg(c[0] + c[1] + c[2]);
}

#ifndef __SANITIZE_ADDRESS__
// What was freed leads nowhere, so that whoever reads it is found without a sanitizer too.
void operator delete(void *p) noexcept
{
    if (p)
        std::memset(p, 0xDB, malloc_usable_size(p));
    std::free(p);
}
void operator delete(void *p, std::size_t) noexcept
{
    operator delete(p);
}
#endif

/// Offers the slot by which scene objects ask the application for a menu tree. What a person does
/// on the display does not reach the tests.
class Application : public QApplication {
    Q_OBJECT

public:
    using QApplication::QApplication;

    bool notify(QObject *receiver, QEvent *event) override
    {
        const auto type = event->type();
        const bool input = (type >= QEvent::MouseButtonPress && type <= QEvent::KeyRelease) ||
                           type == QEvent::Enter || type == QEvent::Leave || type == QEvent::Wheel;
        return (input && event->spontaneous()) || QApplication::notify(receiver, event);
    }

public Q_SLOTS:
    QObject *NewObject(QString type, QObject *parent, QString name)
    {
        return machine.newObject ? machine.newObject(type, parent, name) : nullptr;
    }
};

QCoreApplication *makeApplication(int &argc, char **argv);
QCoreApplication *makeApplication(int &argc, char **argv)
{
    return new Application(argc, argv);
}

void PrintTo(const QString &s, std::ostream *out)
{
    *out << '"' << s.toStdString() << '"';
}

QString wordOf(const QVariant &value)
{
    const QByteArray type = value.typeName();
    if (type == "Mouse*") {
        const Mouse *m = *static_cast<Mouse *const *>(value.constData());
        return QString("%1;%2").arg(m->x).arg(m->y);
    }
    if (type.endsWith('*')) {
        const QObject *o = type == "GLW*" ? *static_cast<GLW *const *>(value.constData())
                                          : value.value<QObject *>();
        return o ? o->objectName() : "null";
    }
    if (type.startsWith("QList<") || type == "QVariantList") {
        QStringList all;
        for (const QVariant &each : value.value<QSequentialIterable>())
            all << wordOf(each);
        return all.join(',');
    }
    if (value.canConvert<QString>())
        return type == "bool" ? QString::number(value.toBool()) : value.toString();
    QString text; // such as "QVariant(QRectF, QRectF(0,0 1x1))"
    QDebug(&text).nospace() << value;
    return text.section(", ", 1)
        .remove(QRegularExpression("\\w+\\(|\\)"))
        .replace(QRegularExpression(",? +|x"), ",")
        .trimmed();
}

QVariant valueOf(const QString &word)
{
    const QJsonArray json = QJsonDocument::fromJson('[' + word.toUtf8() + ']').array();
    if (!json.isEmpty())
        return json[0].toVariant();
    if (word.count('x') == 1 && word[0].isDigit())
        return QSize(word.section('x', 0, 0).toInt(), word.section('x', 1).toInt());
    return word == "none" ? QVariant() : QVariant(word);
}

static QPointF pointOf(const QString &word)
{
    return QPointF(word.section(',', 0, 0).toDouble(), word.section(',', 1, 1).toDouble());
}

static QRectF rectOf(const QString &word)
{
    return QRectF(pointOf(word),
                  QSizeF(word.section(',', 2, 2).toDouble(), word.section(',', 3).toDouble()));
}

void Recorder::hear(QObject *o, const QByteArray &arguments)
{
    const bool action = qobject_cast<QAction *>(o);
    for (int i = QObject::staticMetaObject.methodCount(); i < o->metaObject()->methodCount(); ++i) {
        const QMetaMethod method = o->metaObject()->method(i);
        if (method.methodType() != QMetaMethod::Signal ||
            (action &&
             (method.enclosingMetaObject() == &QAction::staticMetaObject ||
              (arguments != "*" && method.methodSignature() != "triggered(" + arguments + ")"))))
            continue;
        QMetaObject::connect(o, i, this,
                             QObject::staticMetaObject.methodCount() + int(heard.size()),
                             Qt::DirectConnection);
        heard.emplace_back(method, action ? o->objectName() : QString(method.name()));
    }
}

QString Recorder::take()
{
    const QString all = log.join(' ');
    log.clear();
    return all;
}

int Recorder::qt_metacall(QMetaObject::Call call, int id, void **arguments)
{
    id = QObject::qt_metacall(call, id, arguments);
    if (call != QMetaObject::InvokeMetaMethod || id < 0)
        return id;
    const auto [method, name] = heard[size_t(id)];
    QStringList words;
    for (int i = 0; i < method.parameterCount(); ++i) {
        const QByteArray type = method.parameterTypes()[i];
        if (type == "GLW*" || type == "Mouse*" || !type.endsWith('*'))
            words << wordOf(QVariant(method.parameterType(i), arguments[i + 1]));
    }
    words.removeAll("");
    const QString word = name + (words.isEmpty() ? "" : ":") + words.join(',');
    log << word;
    // Copies: a hook may replace the hooks.
    if (const auto found = on.find(word); found != on.end())
        std::function<void()>(found->second)();
    if (const auto every = each)
        every(word);
    return -1;
}

WindowTest::WindowTest(QSize size)
{
    qRegisterMetaType<QList<GLW *>>();
    if (!QMetaType::hasRegisteredConverterFunction<QVariantList, QList<int>>())
        QMetaType::registerConverter<QVariantList, QList<int>>([](const QVariantList &list) {
            QList<int> numbers;
            for (const QVariant &each : list)
                numbers << each.toInt();
            return numbers;
        });
    machine = Machine();
    owner.setObjectName("owner");
    open(size);
    const auto number = [](const Words &w, int i) { return w.value(i).toInt(nullptr, 16); };
    const auto pressed = [=](QEvent::Type type) {
        return [=](const Words &w) {
            mouse(type, pointOf(w[0]), number(w, 1), number(w, 2), number(w, 3));
        };
    };
    const auto typed = [=](QEvent::Type type) {
        return [=](const Words &w) {
            const auto modifiers = Qt::KeyboardModifiers(number(w, 1));
            const int key = w[0].size() == 1 ? w[0][0].unicode() : number(w, 0);
            deliver(QKeyEvent(type, key, modifiers, QString(), w.value(2) == "again"));
        };
    };
    // clang-format off
    verbs = { // points are "x,y", buttons, modifiers and binding words hexadecimal
        {"frame", [=](const Words &) { frame(); }},
        {"tick", [=](const Words &) { frame(true); }},
        {"expose", [=](const Words &) { window->repaint(), window->makeCurrent(), glGetError(); }},
        {"context", [=](const Words &) { newContext(); }},
        {"add", [=](const Words &w) { add(w[0], rectOf(w.value(1, "0,0,1,1"))); }},
        {"view", [=](const Words &w) { addView(w[0].toInt()); }},
        {"alone", [=](const Words &w) { // so many tiles of a view of so many pixels, without a window
            window->RemoveGLWidget(addView(w[0].toInt()));
            view()->setGeometry(rectOf("0,0," + w[1] + ',' + w[2]));
            view()->updateLayout = 0;
            host.log.clear(); }},
        {"set", [=](const Words &w) { // objects, property, value
            for (const QString &name : w[0].split(','))
                find(name)->setProperty(w[1].toUtf8(), valueOf(w.value(2))); }},
        {"get", [=](const Words &w) { host.log << wordOf(find(w[0])->property(w[1].toUtf8())); }},
        {"delete", [=](const Words &w) { delete find(w[0]); }},
        {"bind", [=](const Words &w) { // object, name, word, mask: a mouse binding that is heard
            host.hear(object(w[0])->NewMouseAction(uint(number(w, 2)), w.value(3, "ffffffff").toUInt(nullptr, 16), w[1].toUtf8(), nullptr, nullptr)); }},
        {"keybind", [=](const Words &w) { // object, name, key
            host.hear(object(w[0])->NewKeyAction(w.value(2), w[1].toUtf8(), nullptr, nullptr), "GLW*,bool,bool"); }},
        {"on", [=](const Words &w) { host.on[w[0]] = [=] { host.log += run(w.mid(1).join(' ')).split(' ', Qt::SkipEmptyParts); }; }},
        {"down", pressed(QEvent::MouseButtonPress)}, // at, button, held, modifiers
        {"up", pressed(QEvent::MouseButtonRelease)},
        {"double", pressed(QEvent::MouseButtonDblClick)},
        {"move", pressed(QEvent::MouseMove)},
        {"click", [=](const Words &w) { click(pointOf(w[0]), number(w, 1)); }},
        {"wheel", [=](const Words &w) { // at, delta, modifiers
            deliver(QWheelEvent(pointOf(w[0]), {}, {}, pointOf(w[1]).toPoint(), {}, Qt::KeyboardModifiers(number(w, 2)), Qt::NoScrollPhase, false)); }},
        {"key", typed(QEvent::KeyPress)}, // a name or a code, modifiers, again
        {"unkey", typed(QEvent::KeyRelease)},
        {"leave", [=](const Words &) { deliver(QEvent(QEvent::Leave)); }},
        {"pointer", [=](const Words &w) { machine.pointer = pointOf(w[0]).toPoint(); }},
        {"where", [=](const Words &) { host.log << wordOf(machine.pointer); }},
        {"point", [=](const Words &w) { // the record's positions, y from the bottom
            std::tie(window->mouse.x, window->mouse.y) = std::pair(pointOf(w[0]).x(), pointOf(w[0]).y());
            std::tie(window->mouse.x0, window->mouse.y0) = std::pair(pointOf(w.value(1)).x(), pointOf(w.value(1)).y()); }},
        {"held", [=](const Words &w) { window->mouse.button = number(w, 0); }},
        {"clock", [=](const Words &w) { machine.clock += w[0].toLongLong(); }},
        {"record", [=](const Words &) { host.log << record(); }},
        {"list", [=](const Words &) { host.log << wordOf(QVariant::fromValue(window->glwidgets)); }},
        {"actions", [=](const Words &w) {
            host.log << '[' + wordOf(QVariant::fromValue(w[0] == "window" ? window->actions() : object(w[0])->actions())) + ']'; }},
        {"cells", [=](const Words &) { // id:cell/drawing area of the placed tiles
            for (const GLTile *tile : view()->tiles)
                if (tile->orect != QRectF(0, 0, 1, 1))
                    host.log << tile->objectName() + ':' + wordOf(tile->orect) + (tile->rect == tile->orect ? "" : '/' + wordOf(tile->rect)); }},
        {"stale", [=](const Words &) { host.log << '+' + QString::number(view()->updateLayout); }},
    };
    // clang-format on
}

WindowTest::~WindowTest()
{
    if (window) {
        window->makeCurrent();
        EXPECT_EQ(glGetError(), GLenum(GL_NO_ERROR));
    }
    delete window;
    machine = Machine();
}

void WindowTest::open(QSize size)
{
    window = new QGLWindow(nullptr, "window");
    window->fps(0);
    window->setGeometry(QRect(QPoint(100, 100), size));
    window->show();
    EXPECT_TRUE(QTest::qWaitForWindowExposed(window));
    QCoreApplication::processEvents();
    window->makeCurrent();
    while (glGetError() != GL_NO_ERROR) {
    }
    machine.swaps = 0;
    machine.texts.clear();
}

GLWidget *WindowTest::add(const QString &name, const QRectF &rect)
{
    auto *object = new GLWidget(&owner, name.toUtf8());
    object->setGeometry(rect);
    window->InsertGLWidget(-1, object);
    host.hear(object);
    return object;
}

GLMultiWidget *WindowTest::addView(int tiles)
{
    auto *view = new GLMultiWidget(&owner, "view");
    for (int id = 1; id <= tiles; ++id)
        view->AddTile(uint(id));
    window->InsertGLWidget(-1, view);
    host.hear(view);
    return view;
}

void WindowTest::frame(bool tick)
{
    const int before = machine.swaps;
    QTimerEvent event(0);
    if (tick)
        static_cast<QObject *>(window)->event(&event);
    else
        window->updateGL();
    if (!window)
        return;
    // A painted frame leaves one error, on purpose, unless a new painter took it; and no other.
    window->makeCurrent();
    error = glGetError();
    EXPECT_TRUE(error == GL_NO_ERROR || (error == GL_INVALID_ENUM && machine.swaps > before))
        << error;
    EXPECT_EQ(glGetError(), GLenum(GL_NO_ERROR));
}

void WindowTest::newContext()
{
    window->setContext(new QGLContext(window->format(), window));
    window->show();
    window->setAttribute(Qt::WA_Mapped); // as the display says later
}

void WindowTest::deliver(QEvent &&event)
{
    event.setAccepted(false);
    static_cast<QObject *>(window)->event(&event);
    EXPECT_TRUE(event.isAccepted());
}

void WindowTest::mouse(QEvent::Type type, QPointF at, int button, int held, int modifiers)
{
    deliver(QMouseEvent(type, at, at, QPointF(100, 100) + at, Qt::MouseButton(button),
                        Qt::MouseButtons(held), Qt::KeyboardModifiers(modifiers)));
}

void WindowTest::click(QPointF at, int modifiers)
{
    mouse(QEvent::MouseButtonPress, at, 1, 1, modifiers);
    mouse(QEvent::MouseButtonRelease, at, 1, 0, modifiers);
}

QString WindowTest::record() const
{
    const Mouse &m = window->mouse;
    return QString::asprintf("%d,%d %d,%d %d,%d %ld %x<%x %x<%x", m.x, m.y, m.x0, m.y0, m.dx, m.dy,
                             m.dt, m.button, m.last_button, m.modifier, m.last_modifier);
}

GLW *WindowTest::object(const QString &name)
{
    return dynamic_cast<GLW *>(find(name));
}

GLMultiWidget *WindowTest::view()
{
    return owner.findChild<GLMultiWidget *>();
}

QObject *WindowTest::find(const QString &name)
{
    return name == "window"  ? window.data()
           : name == "owner" ? &owner
                             : owner.findChild<QObject *>(name);
}

void WindowTest::call(QObject *o, const QByteArray &slot, const Words &arguments)
{
    int i = o->metaObject()->methodCount() - 1;
    while (i > 0 && o->metaObject()->method(i).name() != slot)
        --i;
    const QMetaMethod method = o->metaObject()->method(i);
    ASSERT_EQ(method.parameterCount(), arguments.size()) << slot.constData();
    const bool isVoid = method.returnType() == QMetaType::Void;
    QVariant result = isVoid ? QVariant() : QVariant(method.returnType(), nullptr);
    QVariantList values;
    void *data[8] = {result.data()};
    for (int k = 0; k < arguments.size(); ++k) {
        const bool pointer = method.parameterTypes()[k].endsWith('*');
        values << (pointer ? QVariant::fromValue(find(arguments[k])) : valueOf(arguments[k]));
        EXPECT_TRUE(pointer || values[k].convert(method.parameterType(k)))
            << arguments[k].toStdString();
        data[k + 1] = values[k].data();
    }
    QMetaObject::metacall(o, QMetaObject::InvokeMetaMethod, i, data);
    if (const QString word = wordOf(result); !isVoid)
        host.log << (word.isEmpty() ? "-" : word);
}

QString WindowTest::run(const QString &script)
{
    const QStringList outer = std::exchange(host.log, {});
    for (const QString &statement : script.split("; ", Qt::SkipEmptyParts)) {
        Words words = statement.split(' ', Qt::SkipEmptyParts);
        const QString verb = words.takeFirst();
        if (const auto found = verbs.find(verb); found != verbs.end())
            found->second(words);
        else
            call(find(verb.section('.', 0, 0)), verb.section('.', 1).toUtf8(), words);
    }
    const QString told = host.take();
    host.log = outer;
    return told;
}

std::vector<Script> Script::table(const char *rows)
{
    std::vector<Script> all;
    for (const QString &row : QString(rows).split('\n', Qt::SkipEmptyParts))
        all.push_back({row.section(": ", 0, 0), row.section(": ", 1).section(" =>", 0, 0),
                       row.section(" =>", 1).trimmed()});
    return all;
}

State::State()
{
    glGetDoublev(GL_PROJECTION_MATRIX, p);
    glGetDoublev(GL_MODELVIEW_MATRIX, mv);
    glGetIntegerv(GL_VIEWPORT, viewport);
}

#include "fixture.moc"
