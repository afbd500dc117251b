// SPDX-License-Identifier: MIT
#include "host/read/reader_process.h"

#include <algorithm>
#include <clocale>
#include <csignal>
#include <new>

#include <QFile>
#include <QFileInfo>

#include <fcntl.h>
#include <sys/prctl.h>
#include <sys/resource.h>
#include <unistd.h>

#include "host/read/import.h"
#include "host/read/mesh_stream.h"

// GCC defines the macro; Clang answers the question, which Qt's headers answer with no elsewhere.
// Its shadow memory takes terabytes of address space.
#if defined(__SANITIZE_ADDRESS__)
#define HOST_ADDRESS_SANITIZER 1
#elif defined(__has_feature)
#define HOST_ADDRESS_SANITIZER __has_feature(address_sanitizer)
#else
#define HOST_ADDRESS_SANITIZER 0
#endif

namespace host {
namespace {

void limit(decltype(RLIMIT_AS) what, rlim_t soft, rlim_t hard)
{
    rlimit now{};
    getrlimit(what, &now);
    now.rlim_max = std::min(now.rlim_max, hard);
    now.rlim_cur = std::min(soft, now.rlim_max);
    setrlimit(what, &now);
}

void limitSelf(const ReadLimits &limits)
{
    prctl(PR_SET_PDEATHSIG, SIGKILL);
    if (canLimitMemory())
        limit(RLIMIT_AS, limits.memory, limits.memory);
    // The soft limit ends the process with a signal of its own; the hard one, if that is ignored.
    limit(RLIMIT_CPU, rlim_t(limits.cpuSeconds), rlim_t(limits.cpuSeconds) + 1);
    limit(RLIMIT_CORE, 0, 0);
    limit(RLIMIT_FSIZE, 0, 0);
    std::set_new_handler([] { _exit(outOfMemoryExit); });
}

/// Keeps standard output for the stream alone: from here on other writers reach standard error.
int takeStandardOutput()
{
    const int stream = dup(STDOUT_FILENO);
    dup2(STDERR_FILENO, STDOUT_FILENO);
    // A larger pipe, where the system allows it, lets the parent take more at each turn.
    fcntl(stream, F_SETPIPE_SZ, 512 * 1024);
    return stream;
}

/// Passes progress on in steps of a percent, so that a parser that tells too much costs nothing.
class ProgressWriter {
public:
    explicit ProgressWriter(QIODevice &out) : out_(out) {}

    void operator()(double fraction, const QString &stage)
    {
        const int percent = int(fraction * 100);
        if (percent == percent_)
            return;
        percent_ = percent;
        if (!writeProgress(out_, fraction, stage))
            _exit(1); // nobody listens
    }

private:
    QIODevice &out_;
    int percent_ = -1;
};

} // namespace

quint64 physicalMemory()
{
    const long pages = sysconf(_SC_PHYS_PAGES), size = sysconf(_SC_PAGESIZE);
    return pages > 0 && size > 0 ? quint64(pages) * quint64(size) : quint64(1) << 30;
}

ReadLimits ReadLimits::forSize(qint64 bytes) const
{
    constexpr int hour = 3600;
    const int mebibytes = int(std::min<qint64>(bytes >> 20, hour));
    ReadLimits limits = *this;
    limits.cpuSeconds = std::min(hour, cpuSeconds + 2 * mebibytes);
    limits.wallSeconds = std::min(hour, wallSeconds + 6 * mebibytes);
    return limits;
}

bool canLimitMemory()
{
    return !HOST_ADDRESS_SANITIZER;
}

ReadLimits defaultReadLimits()
{
    ReadLimits limits;
    limits.memory = std::min(quint64(4) << 30, physicalMemory() / 2);
    return limits;
}

int runReaderProcess(const QString &file, const ReadLimits &limits)
{
    limitSelf(limits.forSize(QFileInfo(file).size()));
    // Some parsers read numbers by the locale, and a comma for the point would spoil them.
    std::setlocale(LC_NUMERIC, "C");
    QFile out;
    if (!out.open(takeStandardOutput(), QIODevice::WriteOnly | QIODevice::Unbuffered) ||
        !writeStreamStart(out))
        return 1;
    const Imported result = importMesh(file, ProgressWriter(out));
    if (!result.ok()) {
        writeFailure(out, result.reason);
        return 1;
    }
    return writeMesh(out, result.mesh) ? 0 : 1;
}

} // namespace host
