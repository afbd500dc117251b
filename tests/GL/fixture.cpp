// SPDX-License-Identifier: MIT
#include "tests/GL/fixture.h"

#include <QAbstractEventDispatcher>
#include <QCoreApplication>
#include <QKeyEvent>
#include <QMouseEvent>
#include <QTest>
#include <QTimerEvent>
#include <QWheelEvent>

static QPointF pointOf(const QString &word)
{
    return QPointF(word.section(',', 0, 0).toDouble(), word.section(',', 1, 1).toDouble());
}

static QPoint pixelOf(const QString &word)
{
    return QPoint(bounded::truncate(pointOf(word).x()), bounded::truncate(pointOf(word).y()));
}

static QRectF rectOf(const QString &word)
{
    return QRectF(pointOf(word),
                  QSizeF(word.section(',', 2, 2).toDouble(), word.section(',', 3).toDouble()));
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
                if (QObject *o = find(name))
                    o->setProperty(w[1].toUtf8(), valueOf(w.value(2))); }},
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
            deliver(QWheelEvent(pointOf(w[0]), {}, {}, pixelOf(w[1]), {}, Qt::KeyboardModifiers(number(w, 2)), Qt::NoScrollPhase, false)); }},
        {"key", typed(QEvent::KeyPress)}, // a name or a code, modifiers, again
        {"unkey", typed(QEvent::KeyRelease)},
        {"leave", [=](const Words &) { deliver(QEvent(QEvent::Leave)); }},
        {"pointer", [=](const Words &w) { machine.pointer = pixelOf(w[0]); }},
        {"where", [=](const Words &) { host.log << wordOf(machine.pointer); }},
        {"point", [=](const Words &w) { // the record's positions, y from the bottom
            std::tie(window->mouse.x, window->mouse.y) = std::pair(pixelOf(w[0]).x(), pixelOf(w[0]).y());
            std::tie(window->mouse.x0, window->mouse.y0) = std::pair(pixelOf(w.value(1)).x(), pixelOf(w.value(1)).y()); }},
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
        {"resize", [=](const Words &w) { window->resize(valueOf(w[0]).toSize()); }},
        {"swaps", [=](const Words &) { host.log << QString::number(std::exchange(machine.swaps, 0)); }},
        {"period", [=](const Words &w) { // microseconds: since the last frame, of the period, worked in it
            machine.clock = time_t(2000000000) * 1000000;
            window->last_draw = size_t(machine.clock - w[0].toLongLong());
            window->timer = {machine.clock - w[1].toLongLong(), w[2].toLongLong()};
            window->last_fps = "old"; }},
        {"texts", [=](const Words &) {
            const QStringList all{window->last_fps, window->property("fpsString").toString(), window->property("cpuString").toString()};
            host.log << all.join(';').replace(' ', '_') << QString("%1,%2,%3").arg(machine.clock - window->timer.start).arg(window->timer.sum).arg(machine.clock - time_t(window->last_draw)); }},
        {"timer", [=](const Words &) { // its interval, if it runs, and the rate
           
            for (const auto &timer : QAbstractEventDispatcher::instance()->registeredTimers(window))
                host.log << QString("%1%2").arg(timer.interval).arg(timer.timerType == Qt::PreciseTimer && timer.timerId == window->timerID ? "" : "?");
            host.log << QString::number(window->fps()) << (window->timerID ? "on" : "off"); }},
        {"renderer", [=](const Words &w) { machine.renderer = (renderer = w.join(' ').toUtf8()); }},
        {"defaults", [=](const Words &w) {
            for (const QByteArray &name : find(w[0])->dynamicPropertyNames())
                host.log << name + '=' + wordOf(find(w[0])->property(name)); }},
        {"pixels", [=](const Words &w) {
            const GLW *o = object(w[0]);
            EXPECT_EQ(QRectF(o->pos(false), o->size(false)), o->geometry(false));
            host.log << wordOf(o->geometry(false)) << wordOf(o->glY()); }},
        {"rects", [=](const Words &w) { host.log << wordOf(object(w[0])->rect) << wordOf(object(w[0])->orect); }},
        {"hit", [=](const Words &w) { // object, points: o where it is hit, else -
            for (const QString &at : w.mid(1))
                host.log << (object(w[0])->hit(pixelOf(at).x(), pixelOf(at).y()) ? "o" : "-"); }},
        {"stale", [=](const Words &) { host.log << '+' + QString::number(view()->updateLayout); }},
    };
    // clang-format on
}

WindowTest::~WindowTest()
{
    if (window) {
        window->makeCurrent();
        EXPECT_TRUE(anyError || glGetError() == GL_NO_ERROR);
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
    EXPECT_TRUE(anyError || error == GL_NO_ERROR ||
                (error == GL_INVALID_ENUM && machine.swaps > before))
        << error;
    EXPECT_TRUE(anyError || glGetError() == GL_NO_ERROR);
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
    EXPECT_TRUE(anyError || event.isAccepted());
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
    QObject *o = name == "window"  ? window.data()
                 : name == "owner" ? &owner
                                   : owner.findChild<QObject *>(name);
    return o || !window ? o : window->findChild<QObject *>(name);
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
    QByteArrayList texts;
    void *data[8] = {result.data()};
    for (int k = 0; k < arguments.size(); ++k) {
        const QByteArray type = method.parameterTypes()[k];
        const bool pointer = type.endsWith('*');
        texts << (arguments[k] == "none" ? QByteArray() : arguments[k].toUtf8());
        void *address = type == "const char*"
                            ? texts[k].isNull() ? nullptr : static_cast<void *>(texts[k].data())
                        : type == "GLW*"     ? static_cast<void *>(object(arguments[k]))
                        : type == "QAction*" ? qobject_cast<QAction *>(find(arguments[k]))
                                             : find(arguments[k]);
        values << (pointer ? QVariant::fromValue(address) : valueOf(arguments[k]));
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
