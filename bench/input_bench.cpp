// SPDX-License-Identifier: MIT
// The search for a binding, and an event's way from the window to the host's slot.
#include <vector>

#include <QCoreApplication>
#include <QMouseEvent>

#include "GL/glmultiwidget.h"
#include "GL/glwindow.h"
#include "bench/compare.h"

namespace {

/// The best binding is the last one; the baseline holds the words in an array.
void MouseActionFind(benchmark::State &state)
{
    const int count = int(state.range(0));
    struct Binding {
        quint32 word, mask;
    };
    QObject owner;
    QList<QAction *> actions;
    std::vector<Binding> plain;
    for (int i = 0; i < count; ++i) {
        const bool last = i == count - 1;
        const Binding b{last ? quint32(Qt::LeftButton) | quint32(Qt::ControlModifier)
                             : quint32(i % 2 ? Qt::LeftButton : Qt::RightButton),
                        i % 3 ? 0 : 0x3E000000u};
        auto *action = new MouseAction(&owner, nullptr);
        action->setBinding(b.word, b.mask);
        actions << action;
        plain.push_back(b);
    }
    Mouse mouse;
    mouse.button = Qt::LeftButton;
    mouse.modifier = int(Qt::ControlModifier);
    MouseAction *found = nullptr;
    int index = -1;
    Contest c;
    c.module = [&] { found = MouseAction::find(actions, mouse, true); };
    c.bare = [&] {
        const quint32 word = quint32(mouse.button) + quint32(mouse.modifier);
        int best = -1;
        for (size_t i = 0; i < plain.size(); ++i) {
            const quint32 relevant = (~plain[i].mask | plain[i].word) & word;
            if (relevant == plain[i].word && __builtin_popcount(relevant) > best) {
                best = __builtin_popcount(relevant);
                index = int(i);
            }
        }
        benchmark::DoNotOptimize(index);
    };
    c.correct = [&] { return found == actions.last() && index == count - 1; };
    c.batch = 4096 / count;
    c.items = count;
    compare(state, c);
}

class Host : public QObject {
    Q_OBJECT

public:
    int calls = 0;

public Q_SLOTS:
    void Moved(GLW *) { ++calls; }
    void Moved() { ++calls; }
};

/// What a program would write without the module.
class BareWidget : public QWidget {
    Q_OBJECT

Q_SIGNALS:
    void moved();

protected:
    void mouseMoveEvent(QMouseEvent *) override { emit moved(); }
};

/// A move over a scene object with one binding; the baseline is one widget with one signal.
void InputEvent(benchmark::State &state)
{
    QGLWindow window(nullptr, "window");
    window.fps(0);
    window.resize(640, 480);
    GLWidget object(nullptr, "object");
    window.AddGLWidget(&object);
    Host host, bareHost;
    object.NewMouseAction(0, 0xFFFFFFFFu, "move", &host, SLOT(Moved(GLW *)));
    BareWidget widget;
    widget.setMouseTracking(true); // as the window does, to hear moves without a button
    QObject::connect(&widget, SIGNAL(moved()), &bareHost, SLOT(Moved()));
    QMouseEvent event(QEvent::MouseMove, QPointF(100, 100), QPointF(100, 100), Qt::NoButton,
                      Qt::NoButton, Qt::NoModifier);
    Contest c;
    c.module = [&] { QCoreApplication::sendEvent(&window, &event); };
    c.bare = [&] { QCoreApplication::sendEvent(&widget, &event); };
    c.correct = [&] { return host.calls == 1 && bareHost.calls == 1; };
    c.batch = 100;
    compare(state, c);
}

BENCHMARK(MouseActionFind)->Arg(4)->Arg(64)->Arg(1024)->UseManualTime();
BENCHMARK(InputEvent)->UseManualTime();

} // namespace

#include "input_bench.moc"
