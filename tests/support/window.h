// SPDX-License-Identifier: MIT
// What tests of windows and their objects share: a real window that scripts steer by name, a
// recorder of signals, and what stands in for the machine's clock, pointer and renderer.
#ifndef TESTS_SUPPORT_WINDOW_H
#define TESTS_SUPPORT_WINDOW_H

#include <ctime>
#include <functional>
#include <map>
#include <variant>

#include <QEvent>
#include <QImage>
#include <QMetaMethod>
#include <QStringList>

#include "GL/glmultiwidget.h"
#include "GL/glwindow.h"
#include "tests/support/table.h"

/// In place of what the machine says, for the module too.
struct Machine {
    time_t clock = 0;         ///< Wall clock in microseconds; the machine's own while 0.
    QPoint pointer{700, 700}; ///< Of the screen; the display's own is neither read nor moved.
    QByteArray renderer;      ///< What OpenGL calls itself; its own name while empty.
    QImage shown;             ///< The last frame that a window swapped.
    int swaps = 0;            ///< Of all windows, as GLX does them.
    int delivering = 0;       ///< How deep Qt is in events that it delivers itself.
    QStringList texts;        ///< Of renderText(): "x,y,text,colour".
    std::function<QObject *(const QString &type, QObject *parent, const QString &name)> newObject;
};
extern Machine machine;

void PrintTo(const QString &s, std::ostream *out);

/// A value as scripts and words write it: 1, 0, 2.5, text, "1,2,3", an object's name or "null".
QString wordOf(const QVariant &value);
/// The reverse: `true`, `none`, numbers, "[1,2]", "5x6" (a size), "1,2,3,4" (a rectangle), else
/// text.
QVariant valueOf(const QString &word);

/// So many numbers in a row.
struct Numbers {
    std::variant<float *, int *, double *, time_t *, size_t *> first;
    int count;
    QString text() const; ///< Apart by commas, of five digits each.
    void set(const QString &word);
};
/// The records of an object or a window by the names that scripts give them.
std::map<QString, Numbers> recordsOf(QObject *o);

/// Writes each signal that it hears as a word and then runs the hook of that word, if there is one.
/// A word is the signal's name, or an action's own, and its arguments: "Draw3D:a", "left:a,1".
class Recorder : public QObject {
public:
    QStringList log;
    std::map<QString, std::function<void()>> on;
    std::function<void(const QString &)> each; ///< Runs after every word.

    /// Hears the signals of @p o; of an action only `triggered` with @p arguments, "*" for all.
    void hear(QObject *o, const QByteArray &arguments = "GLW*,bool");
    QString take(); ///< The words since the last call.
    int qt_metacall(QMetaObject::Call call, int id, void **arguments) override;

private:
    std::vector<std::pair<QMetaMethod, QString>> heard;
};

/// A shown window at (100, 100) on the screen that has painted its first frame. Its timer rests:
/// frames come from frame() alone, and input from scripts. Points are window pixels from the top.
class WindowTest : public testing::Test {
protected:
    using Words = QStringList;
    explicit WindowTest(QSize size = QSize(200, 100));
    ~WindowTest() override;

    void open(QSize size);
    GLWidget *add(const QString &name, const QRectF &rect = QRectF(0, 0, 1, 1));
    GLMultiWidget *addView(int tiles);
    void frame(bool tick = false); ///< Draws one at once; checks the errors that it leaves.
    QColor pixel(int x, int y) const { return machine.shown.pixelColor(x, y); }
    void deliver(QEvent &&event); ///< Straight to the window's handlers.

    /// Runs statements, apart by "; ", and returns the words that came of it. A statement is a verb
    /// of the table in window.cpp, or "object.slot arguments", whose result becomes a word.
    QString run(const QString &script);
    QObject *find(const QString &name); ///< The window, the owner or one of its descendants.
    GLW *object(const QString &name);
    GLMultiWidget *view(); ///< The first.

    QObject owner;
    Recorder host;
    QPointer<QGLWindow> window;
    GLenum error = GL_NO_ERROR; ///< That the last frame left.
    bool anyError = false;      ///< OpenGL may complain of what this test does.
    std::map<QString, std::function<void(const Words &)>> verbs;

private:
    void call(QObject *o, const QByteArray &slot, const Words &arguments);
};

/// A row of a table of scripts: "Name: script => words", one per line.
struct Script {
    std::string name;
    QString script, told;
    static std::vector<Script> table(const char *rows);
};

/// Declares Suite, a fixture with a test for each row of the table @p rows of scripts.
#define ROWS(Suite, Base, rows)                                                                    \
    TABLE(Suite, Base, Script, Script::table(rows));                                               \
    TEST_P(Suite, Tells)

/// Declares Suite, whose tests run the scripts of the table @p rows, each behind @p before.
#define SCRIPTS(Suite, Base, before, rows)                                                         \
    ROWS(Suite, Base, rows)                                                                        \
    {                                                                                              \
        run(before);                                                                               \
        EXPECT_EQ(run(GetParam().script), GetParam().told);                                        \
    }

#endif
