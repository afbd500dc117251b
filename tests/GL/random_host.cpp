// SPDX-License-Identifier: MIT
// A host that does anything at any time: random_host SEED COUNT. Statements of scripts, made at
// random, call slots, set properties of right and wrong types, send events, and make and delete
// windows, objects, tiles and actions, also inside slots; numbers may be absurd. It ends with 0
// unless something crashes; the sanitizers tell what. The same seed does the same from the start.
#include <random>

#include <QApplication>
#include <QPainter>
#include <QRegularExpression>
#include <QScopedValueRollback>
#include <QTimer>

#include "tests/support/window.h"

static int seed = 1, operations = 20000;

int runAsChild(int argc, char **argv);
int runAsChild(int argc, char **argv)
{
    seed = argc > 1 ? std::atoi(argv[1]) : seed;
    operations = argc > 2 ? std::atoi(argv[2]) : operations;
    return -1;
}

namespace {

/// Offers slots to Connect() and to bindings; each does something at random.
class Slots : public QObject {
    Q_OBJECT

public:
    std::function<void()> act;

public Q_SLOTS:
    void Init(GLW *) { ++machine.delivering, act(), --machine.delivering; } // no window dies there
    void Draw2D() { act(); }
    void Connected(GLW *) { act(); }
    void Heard(GLW *, bool) { act(); }
    void PaintForeground(GLW *, QPainter *painter) { painter->drawText(9, 9, "text"), act(); }
    void Range2D(QRectF *r, int) { *r = QRectF(3, 2, 1e30, 0), act(); }
    int Build(QMenu *) { return act(), 0; }
};

const char *const kinds = R"(tick
frame
add {a|b|c|größer} #,#,#,#
view {0|1|3|6}
delete @
{leave|expose|context|tick|tick|tick}
bind @ {x|y} {1|2|4|8|101}
keybind @ {k|l} K
{down|up|double|move} #,# {1|2|4} {0|1|3} {0|0|2000000|4000000|8000000|10000000}
{down|up|double|move} #,# {1|2|4} {0|1|3} 0
wheel #,# #,# {0|0|2000000|4000000|8000000|10000000}
{key|unkey} {K|L|1000020|1000023} {0|0|2000000|4000000|8000000|10000000}
pointer {0|100|150|299|499},{0|101|199|399}
resize {1|11|60|200}x{1|10|90|150}
call @
call @
set @ {enabled|visible|flags|pick3d|pick2d|draw3d|draw2d|drawbg|drawfg} {true|false|none|5x6|#}
set @ {rows|cols|spacing|padding|header|footer|enableSelection|sizeHint|selected|zoom|order} {true|none|5x6|[1,2,3]|text|#}
set @ {pos|size|geometry|timer|drawfps|fpsString|swRendering|clampMouseToFrame|key|binding|mask} {true|none|5x6|#,#|#,#,#,#|text|#})";

class RandomHost : public WindowTest {
protected:
    int below(int n) { return int(chance() % unsigned(n)); }
    QString any(const QString &words, char between = ' ')
    {
        const int i = below(words.count(between) + 1);
        return words.section(between, i, i);
    }
    QString number()
    {
        return below(4) ? QString::number(below(3) ? below(300) - 50 : below(1000) / 1000.0)
                        : any("0 -0.25 1e30 -1e30 1e300 1e-30 nan inf -inf 2147483647 -2147483648 "
                              "-2147483649");
    }
    QString numbers(int n) { return n > 1 ? number() + ',' + numbers(n - 1) : number(); }
    QString name()
    {
        const auto all = owner.findChildren<QObject *>();
        const QString found =
            all.isEmpty() || below(9) == 0 ? "window" : all[below(all.size())]->objectName();
        return found.isEmpty() || found.contains(' ') ? "owner" : found;
    }
    QString slotCall(const QObject *o)
    {
        const QMetaMethod method = o->metaObject()->method(below(o->metaObject()->methodCount()));
        const QByteArray of = method.enclosingMetaObject()->className();
        if (method.methodType() != QMetaMethod::Slot || method.name() == "SetTarget" ||
            (busy() && method.name() == "ContextMenu") ||
            (of != "QGLWindow" && of != "GLWidget" && of != "GLMultiWidget"))
            return "frame";
        QString call = o->objectName() + '.' + method.name();
        for (const QByteArray &type : method.parameterTypes())
            call += method.name() == "Connect" ? " slots"
                    : type == "const char*"    ? " {a|b|größer|none|1Heard(GLW*,bool)|1Clear()|x}"
                    : type.endsWith("*")       ? " @"
                    : type.contains("List")    ? " [{0|1|8},{0|7|98}]"
                    : type == "QString"        ? " {K|Ctrl+S|nonsense+}"
                    : type == "uint"           ? " {0|1|2|8}"
                                               : " #";
        return fill(call);
    }
    QString fill(QString text)
    {
        static const QRegularExpression open(R"(\{([^}]*)\}|[#@])");
        for (auto m = open.match(text); m.hasMatch(); m = open.match(text))
            text.replace(m.capturedStart(), m.capturedLength(),
                         m.captured() == "#"   ? number()
                         : m.captured() == "@" ? name()
                                               : any(m.captured(1), '|'));
        return text;
    }
    /// One of the kinds of statements, in which # stands for a number, @ for a name.
    QString statement()
    {
        const QString text = fill(any(kinds, '\n'));
        const QString verb = text.section(' ', 0, 0), target = text.section(' ', 1, 1);
        const bool spared =
            target == "owner" || target == "slots" || (machine.delivering && target == "window");
        const bool sensible = verb == "delete"                  ? !spared
                              : verb == "add" || verb == "view" ? owner.children().size() < 40
                              : verb.endsWith("bind")           ? bool(object(target))
                              : verb == "call"                  ? bool(find(target))
                                                                : depth < 2 || verb != "context";
        return !sensible ? "tick" : verb == "call" ? slotCall(find(target)) : text;
    }
    /// Within a frame, where no other one and no menu begins: Qt has one paint engine for all
    /// windows.
    bool busy() const { return drawing || machine.delivering; }
    /// Writes into a record of an object or of the window, and asks the object.
    void write(GLW *o)
    {
        auto records = recordsOf(below(3) ? static_cast<QObject *>(o) : window);
        Numbers &record = std::next(records.begin(), below(int(records.size())))->second;
        record.set(numbers(record.count));
        o->lights.assign(size_t(below(3)), GL::Light(GLenum(GL_LIGHT0 + below(10)), 'x'));
        o->camera.Unproject(number().toFloat(), number().toFloat());
        o->hit(below(300), int(chance()));
        const QPointer<GLW> self(o); // its host may delete it
        o->NearestDataPos();
        if (self)
            o->Range2D(0);
    }
    /// Does one thing; not deep within itself, and where Qt delivers an event no window dies.
    void act()
    {
        if (depth > 3 || (depth && below(12)))
            return;
        ++depth;
        windows.removeAll(nullptr);
        if (windows.isEmpty() || (depth == 1 && below(400) == 0 && windows.size() < 3)) {
            open(QSize(1 + below(200), 1 + below(150)));
            windows << window;
        }
        window = windows[below(windows.size())];
        const QString next = statement();
        GLW *o = object(name());
        if (depth == 1 && below(9) == 0)
            QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
        else if (below(300) == 0 && !machine.delivering)
            delete window;
        else if (o && below(4) == 0)
            write(o);
        else if (const bool draws = QString("frame tick expose").contains(next);
                 !draws || !busy()) {
            drawing += draws;
            run(next);
            drawing -= draws;
        }
        if (window)
            window->fps(0);
        --depth;
    }

    std::mt19937 chance{unsigned(seed)};
    QList<QPointer<QGLWindow>> windows;
    int depth = 0, drawing = 0;
};

TEST_F(RandomHost, Lives)
{
    anyError = true;
    auto *slots_ = new Slots;
    slots_->setParent(&owner);
    slots_->setObjectName("slots");
    slots_->act = [this] { act(); };
    host.each = [this](const QString &word) {
        // In Init no window dies: Qt reads it afterwards.
        const QScopedValueRollback in(machine.delivering,
                                      machine.delivering + word.startsWith("Init"));
        act();
    };
    machine.newObject = [](auto...) { return new QObject; };
    QTimer closing; // a menu runs until somebody closes it
    QObject::connect(&closing, &QTimer::timeout, [] {
        if (QWidget *popup = QApplication::activePopupWidget())
            popup->close();
    });
    closing.start(1);
    for (int i = 0; i < operations; ++i)
        act();
    host.each = nullptr;
    slots_->act = [] {};
    for (const QPointer<QGLWindow> &each : qAsConst(windows))
        delete each;
    std::printf("%d operations with seed %d\n", operations, seed);
}

} // namespace

#include "random_host.moc"
