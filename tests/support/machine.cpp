// SPDX-License-Identifier: MIT
// What stands in for the machine, words and values, and the recorder of signals.
#include "tests/support/window.h"

#include <cstring>

#include <dlfcn.h>
#include <malloc.h>
#include <sys/time.h>

#include <QApplication>
#include <QCursor>
#include <QDebug>
#include <QInputEvent>
#include <QJsonArray>
#include <QJsonDocument>
#include <QRegularExpression>
#include <QSequentialIterable>

#include "utils/numbers.h"

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
    const bool fake = !machine.renderer.isEmpty() && name == GL_RENDERER;
    return fake ? reinterpret_cast<const GLubyte *>(machine.renderer.constData()) : real(name);
}

extern "C" void glXSwapBuffers(void *display, unsigned long drawable)
{
    ++machine.swaps;
    using Swap = decltype(&glXSwapBuffers);
    reinterpret_cast<Swap>(dlsym(RTLD_NEXT, "glXSwapBuffers"))(display, drawable);
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
        const bool input = dynamic_cast<QInputEvent *>(event) || event->type() == QEvent::Enter ||
                           event->type() == QEvent::Leave;
        ++machine.delivering;
        const bool done = (input && event->spontaneous()) || QApplication::notify(receiver, event);
        --machine.delivering;
        return done;
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
    bool isNumber; // "nan" and "inf" too, which JSON does not know
    if (const double number = word.toDouble(&isNumber); isNumber)
        return number;
    if (const QStringList n = word.split(','); n.size() == 4 && word[0] != '[')
        return QRectF(n[0].toDouble(), n[1].toDouble(), n[2].toDouble(), n[3].toDouble());
    if (word.count(',') == 1 && word[0] != '[')
        return QPointF(word.section(',', 0, 0).toDouble(), word.section(',', 1).toDouble());
    const QJsonArray json = QJsonDocument::fromJson('[' + word.toUtf8() + ']').array();
    if (json.size() == 1)
        return json[0].toVariant();
    if (word.count('x') == 1 && word[0].isDigit())
        return QSize(word.section('x', 0, 0).toInt(), word.section('x', 1).toInt());
    return word == "none" ? QVariant() : QVariant(word);
}

QString Numbers::text() const
{
    QStringList all;
    for (int i = 0; i < count; ++i) {
        const double v = std::visit([i](const auto *p) { return double(p[i]); }, first);
        all << (std::abs(v) < 1e-5 ? "0" : QString::number(v, 'g', 5));
    }
    return all.join(',');
}

void Numbers::set(const QString &word)
{
    for (int i = 0; i < std::min(count, word.count(',') + 1); ++i)
        std::visit(
            [i, v = word.section(',', i, i).toDouble()](auto *p) {
                using T = std::decay_t<decltype(*p)>;
                p[i] = std::is_integral_v<T> ? T(bounded::truncate(v)) : T(v);
            },
            first);
}

void Recorder::hear(QObject *o, const QByteArray &arguments)
{
    if (!o)
        return;
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
    return std::exchange(log, {}).join(' ');
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

#include "machine.moc"
