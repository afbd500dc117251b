// SPDX-License-Identifier: MIT
// Measures one peer at one work and prints what it found, a line for each number.
// usage: PEER ROWS all|one|rest STARTED [PICTURE]   (nanoseconds since 1970; where to save what it
// shows)
#include <chrono>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <functional>

#include <sys/resource.h>
#include <unistd.h>

#include <QApplication>
#include <QElapsedTimer>
#include <QFile>
#include <QScreen>
#include <QTimer>
#include <QWindow>

#include "peer.h"

namespace {

/// Seconds that all threads of the process have spent on processors.
double processorTime()
{
    rusage usage{};
    getrusage(RUSAGE_SELF, &usage);
    const auto seconds = [](const timeval &t) {
        return double(t.tv_sec) + double(t.tv_usec) / 1e6;
    };
    return seconds(usage.ru_utime) + seconds(usage.ru_stime);
}

/// What the process holds, in MiB.
double residentMemory()
{
    QFile file(QStringLiteral("/proc/self/statm"));
    if (!file.open(QIODevice::ReadOnly))
        return 0;
    return file.readAll().split(' ').value(1).toDouble() * double(sysconf(_SC_PAGESIZE)) / 1048576;
}

/// Reads the window back from the screen; saves it if @p file names a place.
void printPicture(const QWidget *window, const char *file)
{
    constexpr int dark = 20; // of 255; what is lit glows with 51 at least
    const QImage shown = window->screen()
                             ->grabWindow(0, 0, 0, Peer::side, Peer::side)
                             .toImage()
                             .convertToFormat(QImage::Format_RGB32);
    if (file)
        shown.save(QString::fromLocal8Bit(file));
    double lit = 0, sum = 0;
    for (int y = 0; y < shown.height(); ++y) {
        const auto *line = reinterpret_cast<const QRgb *>(shown.constScanLine(y));
        for (int x = 0; x < shown.width(); ++x) {
            const int grey = qGray(line[x]);
            lit += grey > dark;
            sum += grey > dark ? grey : 0;
        }
    }
    std::printf("lit %g\ngrey %g\n", lit, lit > 0 ? sum / lit : 0);
}

/// Runs @p frame for a while, and prints how long one takes, by the clock and on processors.
void printFrames(const std::function<void(int)> &frame)
{
    constexpr int warm = 5, most = 2000;
    constexpr qint64 enough = 1500; // milliseconds
    for (int i = 0; i < warm; ++i)
        frame(i);
    QElapsedTimer clock;
    clock.start();
    const double before = processorTime();
    int count = 0;
    while (clock.elapsed() < enough && count < most)
        frame(warm + count++);
    std::printf("wall %g\ncpu %g\n", double(clock.nsecsElapsed()) / 1e6 / count,
                (processorTime() - before) * 1000 / count);
}

/// Lets events come for a while, and prints the milliseconds on processors per second.
void printRest()
{
    constexpr int settle = 500, watch = 2000; // milliseconds
    QTimer::singleShot(settle, qApp, &QCoreApplication::quit);
    QCoreApplication::exec();
    const double before = processorTime();
    QTimer::singleShot(watch, qApp, &QCoreApplication::quit);
    QCoreApplication::exec();
    std::printf("cpu %g\n", (processorTime() - before) * 1e6 / watch);
}

} // namespace

int main(int argc, char **argv)
{
    if (argc < 4)
        return 2;
    prepare();
    QApplication application(argc, argv);
    const int rows = std::atoi(argv[1]);
    const double started = std::atof(argv[3]);
    const int count = rows * rows;
    const std::unique_ptr<Peer> peer = makePeer(rows);
    std::vector<int> all;
    const auto turnAll = [&](float by) {
        for (int i = 0; i < count; ++i)
            peer->turn(i, float(i * 360) / float(count) + by);
    };
    for (int i = 0; i < count; ++i)
        all.push_back(i);
    turnAll(0);
    QWidget *window = peer->window();
    window->setFixedSize(Peer::side, Peer::side);
    window->move(0, 0);
    window->show();
    while (!window->windowHandle() || !window->windowHandle()->isExposed())
        QCoreApplication::processEvents(QEventLoop::WaitForMoreEvents);
    peer->draw(all);
    const auto now = std::chrono::system_clock::now().time_since_epoch();
    std::printf("first %g\n",
                double(std::chrono::duration_cast<std::chrono::nanoseconds>(now).count()) / 1e6 -
                    started / 1e6);
    QCoreApplication::processEvents();
    if (std::strcmp(argv[2], "all") == 0)
        printFrames([&](int i) {
            turnAll(float(i * 3));
            peer->draw(all);
        });
    else if (std::strcmp(argv[2], "one") == 0)
        printFrames([&](int i) {
            peer->turn(i % count, float(i * 7));
            peer->draw({i % count});
        });
    else
        printRest();
    std::printf("memory %g\n", residentMemory());
    turnAll(0);
    peer->draw(all);
    QCoreApplication::processEvents();
    printPicture(window, argc > 4 ? argv[4] : nullptr);
    return 0;
}
