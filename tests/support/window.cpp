// SPDX-License-Identifier: MIT
#include "tests/support/window.h"

#include <QCoreApplication>
#include <QKeyEvent>
#include <QMouseEvent>
#include <QTest>
#include <QTimerEvent>
#include <QWheelEvent>

static QPoint pixelOf(const QString &word)
{
    const QPointF point = valueOf(word).toPointF();
    return QPoint(bounded::truncate(point.x()), bounded::truncate(point.y()));
}

std::map<QString, Numbers> recordsOf(QObject *o)
{
    const auto of = [](auto &first, int count = 1) { return Numbers{&first, count}; };
    const auto xyz = [](Vector &v) { return Numbers{&v.x, 3}; };
    const auto rect = [](QRectF &r) { return Numbers{reinterpret_cast<qreal *>(&r), 4}; };
    std::map<QString, Numbers> all;
    // clang-format off
    if (auto *window = qobject_cast<QGLWindow *>(o)) {
        Mouse &m = window->mouse;
        all = {{"at", of(m.x, 2)}, {"from", of(m.x0, 2)}, {"area", of(m.area)},
            {"button", of(m.button)}, {"last", of(m.last_button)}, {"modifier", of(m.modifier)}, {"updates", of(window->update)},
            {"double_press", of(m.double_press)}, {"double_click", of(m.double_click)}, {"start", of(window->timer.start)},
            {"sum", of(window->timer.sum)}, {"last_draw", of(window->last_draw)}};
    }
    if (auto *view = qobject_cast<GLMultiWidget *>(o))
        all = {{"stale", of(view->updateLayout)}, {"pressed", of(view->tilePressed)}, {"doublePress", of(view->doublePress)}};
    if (auto *glw = dynamic_cast<GLW *>(o)) {
        auto &c = glw->camera;
        auto &v = glw->viewport;
        all.insert({{"rect", rect(glw->rect)}, {"orect", rect(glw->orect)},
            {"mode", of(c.mode)}, {"ortho", of(c.ortho)}, {"eye", xyz(c.pos)}, {"target", xyz(c.target)}, {"up", xyz(c.up)},
            {"rot", xyz(c.rot)}, {"radius", of(c.radius)}, {"fov", of(c.fov)}, {"nearZ", of(c.nearZ)}, {"farZ", of(c.farZ)},
            {"bounds", xyz(c.bounds)}, {"minRadius", of(c.minRadius)}, {"maxRadius", of(c.maxRadius)}, {"d_target_max", of(c.d_target_max)}, {"d_pos_max", of(c.d_pos_max)},
            {"dt", of(c.dt)}, {"d_eye", xyz(c.d_pos)}, {"d_target", xyz(c.d_target)}, {"d_rot", xyz(c.d_rot)}, {"d_radius", of(c.d_radius)},
            {"setTarget", xyz(c.setTarget)}, {"unproj", xyz(c.unproj)}, {"last_unproj", xyz(c.last_unproj)}, {"vnear", xyz(c.vnear)},
            {"last_vnear", xyz(c.last_vnear)}, {"m", of(c.m[0], 16)}, {"view", of(c.model_matrix[0], 16)},
            {"projection", of(c.proj_matrix[0], 16)}, {"viewport", of(c.viewport[0], 4)},
            {"pan", xyz(v.pos)}, {"scale", xyz(v.scale)}, {"minScale", xyz(v.minScale)}, {"maxScale", xyz(v.maxScale)}, {"align", of(v.align)}});
    }
    // clang-format on
    return all;
}

WindowTest::WindowTest(QSize size)
{
    qRegisterMetaType<QList<GLW *>>();
    machine = Machine();
    owner.setObjectName("owner");
    open(size);
    const auto number = [](const Words &w, int i) { return w.value(i).toInt(nullptr, 16); };
    const auto mouse = [=](QEvent::Type type, const Words &w, int button, int held, int modifiers) {
        const QPointF at = valueOf(w[0]).toPointF();
        deliver(QMouseEvent(type, at, at, QPointF(100, 100) + at, Qt::MouseButton(button),
                            Qt::MouseButtons(held), Qt::KeyboardModifiers(modifiers)));
    };
    const auto pressed = [=](QEvent::Type type) {
        return [=](const Words &w) { mouse(type, w, number(w, 1), number(w, 2), number(w, 3)); };
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
        {"context", [=](const Words &) { // gives the shown window another one
            window->setContext(new QGLContext(window->format(), window));
            window->show();
            window->setAttribute(Qt::WA_Mapped); }}, // as the display says later
        {"add", [=](const Words &w) { add(w[0], valueOf(w.value(1, "0,0,1,1")).toRectF()); }},
        {"view", [=](const Words &w) { addView(w[0].toInt()); }},
        {"alone", [=](const Words &w) { // so many tiles of a view of so many pixels, without a window
            window->RemoveGLWidget(addView(w[0].toInt()));
            view()->setGeometry(QRectF(0, 0, w[1].toInt(), w[2].toInt()));
            view()->updateLayout = 0;
            host.log.clear(); }},
        {"set", [=](const Words &w) { // objects, and the names and values of properties or records
            for (const QString &name : w[0].split(','))
                for (int i = 1; i < w.size() && find(name); i += 2)
                    if (auto records = recordsOf(find(name)); records.count(w[i]))
                        records.at(w[i]).set(w.value(i + 1));
                    else
                        find(name)->setProperty(w[i].toUtf8(), valueOf(w.value(i + 1))); }},
        {"get", [=](const Words &w) {
            for (const QString &name : w.mid(1))
                if (const auto records = recordsOf(find(w[0])); records.count(name))
                    host.log << records.at(name).text();
                else
                    host.log << wordOf(find(w[0])->property(name.toUtf8())); }},
        {"delete", [=](const Words &w) { delete find(w[0]); }},
        {"bind", [=](const Words &w) { // object, name, word, mask: a mouse binding that is heard
            host.hear(object(w[0])->NewMouseAction(uint(number(w, 2)), w.value(3, "ffffffff").toUInt(nullptr, 16), w[1].toUtf8(), nullptr, nullptr)); }},
        {"keybind", [=](const Words &w) { // object, name, key
            host.hear(object(w[0])->NewKeyAction(w.value(2), w[1].toUtf8(), nullptr, nullptr), "GLW*,bool,bool"); }},
        {"on", [=](const Words &w) { host.on[w[0]] = [=] { host.log += run(w.mid(1).join(' ')).split(' ', Qt::SkipEmptyParts); }; }},
        {"hear", [=](const Words &w) { host.hear(find(w[0])); }},
        {"doomed", [=](const Words &w) { // object, statement: run when that has died
            QObject::connect(find(w[0]), &QObject::destroyed, &host, [=] { run(w.mid(1).join(' ')); }); }},
        {"down", pressed(QEvent::MouseButtonPress)}, // at, button, held, modifiers
        {"up", pressed(QEvent::MouseButtonRelease)},
        {"double", pressed(QEvent::MouseButtonDblClick)},
        {"move", pressed(QEvent::MouseMove)},
        {"click", [=](const Words &w) { // at, modifiers: press and release of the left button
            mouse(QEvent::MouseButtonPress, w, 1, 1, number(w, 1));
            mouse(QEvent::MouseButtonRelease, w, 1, 0, number(w, 1)); }},
        {"wheel", [=](const Words &w) { // at, delta, modifiers
            deliver(QWheelEvent(valueOf(w[0]).toPointF(), {}, {}, pixelOf(w[1]), {}, Qt::KeyboardModifiers(number(w, 2)), Qt::NoScrollPhase, false)); }},
        {"key", typed(QEvent::KeyPress)}, // a name or a code, modifiers, again
        {"unkey", typed(QEvent::KeyRelease)},
        {"leave", [=](const Words &) { deliver(QEvent(QEvent::Leave)); }},
        {"pointer", [=](const Words &w) { machine.pointer = pixelOf(w[0]); }},
        {"where", [=](const Words &) { host.log << wordOf(machine.pointer); }},
        {"clock", [=](const Words &w) { machine.clock += w[0].toLongLong(); }},
        {"record", [=](const Words &) { // x,y x0,y0 dx,dy dt button<last modifier<last
            const Mouse &m = window->mouse;
            host.log << QString::asprintf("%d,%d %d,%d %d,%d %ld %x<%x %x<%x", m.x, m.y, m.x0, m.y0, m.dx, m.dy,
                                          m.dt, m.button, m.last_button, m.modifier, m.last_modifier); }},
        {"list", [=](const Words &) { host.log << wordOf(QVariant::fromValue(window->glwidgets)); }},
        {"actions", [=](const Words &w) {
            host.log << '[' + wordOf(QVariant::fromValue(w[0] == "window" ? window->actions() : object(w[0])->actions())) + ']'; }},
        {"cells", [=](const Words &) { // id:cell/drawing area of the placed tiles
            for (GLTile *tile : view()->tiles)
                if (auto of = recordsOf(tile); of.at("orect").text() != "0,0,1,1")
                    host.log << tile->objectName() + ':' + of.at("orect").text() + (tile->rect == tile->orect ? "" : '/' + of.at("rect").text()); }},
        {"resize", [=](const Words &w) { window->resize(valueOf(w[0]).toSize()); }},
        {"hit", [=](const Words &w) { // object, points: o where it is hit, else -
            for (const QString &at : w.mid(1))
                host.log << (object(w[0])->hit(pixelOf(at).x(), pixelOf(at).y()) ? "o" : "-"); }},
        {"state", [=](const Words &) { // the GL viewport, what a flat projection shows, its depth, lighting
            double p[16];
            int v[4];
            glGetDoublev(GL_PROJECTION_MATRIX, p), glGetIntegerv(GL_VIEWPORT, v);
            double shown[]{(-1 - p[12]) / p[0], (-1 - p[13]) / p[5], 2 / p[0], 2 / p[5], p[10]};
            host.log << Numbers{v, 4}.text() + '=' + Numbers{shown, 5}.text() + (glIsEnabled(GL_LIGHTING) ? "L" : ""); }},
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
    const GLenum most = machine.swaps > before ? GL_INVALID_ENUM : GL_NO_ERROR;
    EXPECT_TRUE(anyError || error == GL_NO_ERROR || error == most) << error;
    EXPECT_TRUE(machine.swaps < before + 2 && (anyError || glGetError() == GL_NO_ERROR));
}

void WindowTest::deliver(QEvent &&event)
{
    event.setAccepted(false);
    static_cast<QObject *>(window)->event(&event);
    EXPECT_TRUE(anyError || event.isAccepted());
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
        texts << arguments[k].toUtf8();
        void *address =
            type == "const char*"
                ? arguments[k] == "none" ? nullptr : static_cast<void *>(texts[k].data())
            : type == "GLW*"     ? static_cast<void *>(object(arguments[k]))
            : type == "QAction*" ? qobject_cast<QAction *>(find(arguments[k]))
                                 : find(arguments[k]);
        const bool pointer = type.endsWith('*');
        values << (pointer ? QVariant::fromValue(address) : valueOf(arguments[k]));
        if (type == "QList<int>") {
            QList<int> numbers;
            for (const QVariant &each : values[k].toList())
                numbers << each.toInt();
            values[k] = QVariant::fromValue(numbers);
        }
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
        all.push_back({row.section(": ", 0, 0).toStdString(),
                       row.section(": ", 1).section(" =>", 0, 0), row.section(" =>", 1).trimmed()});
    return all;
}
