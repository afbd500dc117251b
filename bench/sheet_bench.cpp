// SPDX-License-Identifier: MIT
// What a frame of the viewer's sheet costs when one of its tiles has changed, beside drawing all.
#include <cmath>

#include <QCoreApplication>
#include <QFile>
#include <QGLFormat>
#include <QTemporaryDir>
#include <QTextStream>

#include "GL/glmultiwidget.h"
#include "GL/glwindow.h"
#include "bench/compare.h"
#include "host/read/read_queue.h"
#include "host/view/sheet/sheet_view.h"
#include "host/view/window/window.h"

namespace {

QObject *make(const char *className, QObject *parent, const char *name)
{
    if (qstrcmp(className, "GLWindow") == 0)
        return new QGLWindow(static_cast<QWidget *>(parent), name);
    if (qstrcmp(className, "GLMultiWidget") == 0)
        return new GLMultiWidget(parent, name);
    return new GLWidget(parent, name);
}

/// A sphere of 2 * @p steps * @p steps triangles.
QByteArray sphere(int steps)
{
    QByteArray text;
    QTextStream out(&text);
    for (int row = 0; row <= steps; ++row)
        for (int column = 0; column < steps; ++column) {
            const double up = M_PI * row / steps, round = 2 * M_PI * column / steps;
            out << "v " << std::sin(up) * std::cos(round) << ' ' << std::cos(up) << ' '
                << std::sin(up) * std::sin(round) << '\n';
        }
    for (int row = 0; row < steps; ++row)
        for (int column = 0; column < steps; ++column) {
            const int next = (column + 1) % steps, a = row * steps + 1;
            out << "f " << a + column << ' ' << a + next << ' ' << a + steps + next << ' '
                << a + steps + column << '\n';
        }
    out.flush();
    return text;
}

/// A sheet of @p count files, read and drawn, in a window of so many samples.
class Sheet {
public:
    Sheet(int count, int samples)
        : queue_(nullptr, reader()), window_((setSamples(samples), make), QSize(1280, 960), 0)
    {
        QStringList paths;
        for (int i = 0; i < count; ++i) {
            paths << folder_.filePath(QString("%1.obj").arg(i));
            QFile file(paths.last());
            if (file.open(QIODevice::WriteOnly))
                file.write(sphere(30));
        }
        view_ = std::make_unique<host::SheetView>(window_, queue_, "bench", paths);
        view_->setTileSize(1); // all of them in one window
        window_.show();
        while (!view_->isSettled() || !window_.widget()->isVisible())
            QCoreApplication::processEvents(QEventLoop::WaitForMoreEvents);
        for (int i = 0; i < 10; ++i) // cameras stand after a few
            frame();
    }
    /// The tiles that were drawn in it.
    int frame()
    {
        window_.widget()->repaint();
        return view_->pictures().drawn().size();
    }
    host::TilePictures &pictures() { return view_->pictures(); }
    GLW *tile(int id) { return view_->tile(id); }

private:
    static void setSamples(int samples)
    {
        QGLFormat format = QGLFormat::defaultFormat();
        format.setSampleBuffers(samples > 0);
        format.setSamples(samples);
        QGLFormat::setDefaultFormat(format);
    }
    static host::ReaderProgram reader()
    {
        host::ReaderProgram program;
        program.path = GLVIEW_PROGRAM;
        return program;
    }

    QTemporaryDir folder_;
    host::ReadQueue queue_;
    host::Window window_;
    std::unique_ptr<host::SheetView> view_;
};

/// One tile is turned, the others are copied; "bare" draws all.
void oneChanged(benchmark::State &state, int samples)
{
    const int count = int(state.range(0));
    Sheet sheet(count, samples);
    int one = 0, all = 0;
    Contest c;
    c.module = [&] {
        sheet.tile(1 + count / 2)->camera.rot.y += 1;
        one = sheet.frame();
    };
    c.bare = [&] {
        sheet.pictures().clear();
        all = sheet.frame();
    };
    c.correct = [&] { return one == 1 && all == count; };
    c.items = count;
    c.gl = true;
    compare(state, c);
}

void SheetOneChanged(benchmark::State &state)
{
    oneChanged(state, 0);
}
void SheetOneChangedSmooth(benchmark::State &state)
{
    oneChanged(state, 4);
}

BENCHMARK(SheetOneChanged)->Arg(16)->Arg(400)->UseManualTime()->Unit(benchmark::kMillisecond);
BENCHMARK(SheetOneChangedSmooth)->Arg(400)->UseManualTime()->Unit(benchmark::kMillisecond);

} // namespace
