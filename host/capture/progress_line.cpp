// SPDX-License-Identifier: MIT
#include "host/capture/progress_line.h"

#include <csignal>

#include <unistd.h>

namespace host {

namespace {

// A terminal's Ctrl+C, a wish of the system or of another program, and the end of the terminal.
constexpr int interrupts[] = {SIGINT, SIGTERM, SIGHUP};

volatile std::sig_atomic_t interruptCame = 0;

void onInterrupt(int)
{
    interruptCame = 1;
}

} // namespace

ProgressLine::ProgressLine(std::FILE *stream, const QString &what)
    : stream_(stream), what_(what), rewrites_(isatty(fileno(stream)) != 0)
{
}

void ProgressLine::end()
{
    if (open_)
        std::fputc('\n', stream_);
    open_ = false;
}

void ProgressLine::show(int done, int total)
{
    const int tenths = int(qint64(done) * 10 / total);
    if (!rewrites_ && tenths == tenths_)
        return;
    tenths_ = tenths;
    const QByteArray line = tr("%1: %2 of %3 (%4 %)")
                                .arg(what_)
                                .arg(done)
                                .arg(total)
                                .arg(qint64(done) * 100 / total)
                                .toLocal8Bit();
    std::fprintf(stream_, rewrites_ ? "\r%s" : "%s\n", line.constData());
    std::fflush(stream_);
    open_ = rewrites_;
}

InterruptGuard::InterruptGuard()
{
    interruptCame = 0;
    for (const int signal : interrupts)
        previous_.push_back(std::signal(signal, onInterrupt));
}

InterruptGuard::~InterruptGuard()
{
    for (std::size_t i = 0; i < previous_.size(); ++i)
        std::signal(interrupts[i], previous_[i]);
}

bool InterruptGuard::interrupted() const
{
    return interruptCame != 0;
}

} // namespace host
