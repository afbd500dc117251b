// SPDX-License-Identifier: MIT
#include "host/read/reader_process.h"

#include <algorithm>
#include <clocale>
#include <csignal>
#include <cstdio>
#include <new>

#include <QDataStream>
#include <QFile>
#include <QFileInfo>

#include <fcntl.h>
#include <malloc.h>
#include <sys/prctl.h>
#include <sys/resource.h>
#include <unistd.h>

#include "host/read/content_send.h"
#include "host/read/csv_reader.h"
#include "host/read/file_kind.h"
#include "host/read/image_read.h"
#include "host/read/import.h"
#include "host/read/model_files.h"
#include "host/read/sandbox.h"

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

/// What the process gives up for good: all libraries are loaded, and no file was opened yet.
/// Returns what stayed open against the rule, in words.
QString closeIn()
{
    prctl(PR_SET_PDEATHSIG, SIGKILL);
    limit(RLIMIT_CORE, 0, 0);
    limit(RLIMIT_FSIZE, 0, 0);
    std::set_new_handler([] { _exit(outOfMemoryExit); });
    // Some parsers read numbers by the locale, and a comma for the point would spoil them.
    std::setlocale(LC_NUMERIC, "C");
    return enterSandbox();
}

/// What the next file may take. Processor time counts from the start of the process.
void limitFile(const ReadLimits &limits)
{
    if (canLimitMemory())
        limit(RLIMIT_AS, limits.memory, limits.memory);
    rusage used{};
    getrusage(RUSAGE_SELF, &used);
    const rlim_t seconds = rlim_t(used.ru_utime.tv_sec + used.ru_stime.tv_sec) + 1;
    limit(RLIMIT_CPU, seconds + rlim_t(limits.cpuSeconds), RLIM_INFINITY);
}

quint64 residentBytes()
{
    long pages = 0;
    if (FILE *file = std::fopen("/proc/self/statm", "re")) {
        if (std::fscanf(file, "%*d %ld", &pages) != 1)
            pages = 0;
        std::fclose(file);
    }
    return quint64(pages) * quint64(sysconf(_SC_PAGESIZE));
}

/// Whether more memory is kept than @p most bytes, now that all that was read is freed.
bool hasGrown(quint64 most)
{
    if (residentBytes() <= most)
        return false;
    malloc_trim(0);
    return residentBytes() > most;
}

/// Keeps standard output for the answers alone: from here on other writers reach standard error.
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
        if (!sendProgress(out_, fraction, stage))
            _exit(1); // nobody listens
    }

private:
    QIODevice &out_;
    int percent_ = -1;
};

struct Answer {
    Content content;
    QString reason; ///< Empty if there is content.
};

Answer readFile(const ReadRequest &request, const ReadLimits &limits, const ModelParser &parser,
                const ReadProgress &progress)
{
    const QString path = request.paths.value(0);
    const QString objection = fileObjection(path, limits);
    if (!objection.isEmpty())
        return {{}, objection};
    if (isTable(path)) {
        CsvResult read = readCsv(path, progress);
        return {{nullptr, read.table, nullptr}, read.error};
    }
    Imported read = parser(path, progress, request.companions);
    return {{std::make_shared<Mesh>(std::move(read.mesh)), nullptr, nullptr}, read.reason};
}

FileList list(const ReadRequest &request)
{
    CollectLimits limits;
    if (request.kind == ReadRequest::Kind::List)
        return listFiles(request.paths, limits);
    limits.depth = 0;
    return listFiles({QFileInfo(request.paths.value(0)).absolutePath()}, limits);
}

Answer answer(const ReadRequest &request, const ReadLimits &limits, const ModelParser &parser,
              const ReadProgress &progress)
{
    try {
        if (request.kind != ReadRequest::Kind::File)
            return {{nullptr, nullptr, std::make_shared<FileList>(list(request))}, {}};
        return readFile(request, limits, parser, progress);
    } catch (const std::bad_alloc &) {
        return {{}, QStringLiteral("it asks for more memory than there is")};
    }
}

/// Returns whether another request may be served.
bool serve(const ReadRequest &request, const ReadLimits &limits, const ModelParser &parser,
           QIODevice &out)
{
    const qint64 size = QFileInfo(request.paths.value(0)).size();
    const ReadLimits now = limits.forSize(size);
    limitFile(now);
    if (!sendBegin(out, size))
        return false;
    Answer given = answer(request, now, parser, ProgressWriter(out));
    try {
        if (given.reason.isEmpty() && !sendContent(out, given.content))
            return false;
    } catch (const std::bad_alloc &) { // some of it was sent: nothing can be taken back
        _exit(outOfMemoryExit);
    }
    given.content = {};
    const bool last = hasGrown(limits.keptBytes);
    const bool sent =
        given.reason.isEmpty() ? sendEnd(out, last) : sendFailure(out, given.reason, last);
    return sent && !last;
}

bool readRequest(QDataStream &in, ReadRequest &request, ReadLimits &limits)
{
    quint8 kind = 0, companions = 0;
    qint32 cpu = 0, wall = 0;
    in >> kind >> request.paths >> companions >> limits.memory >> limits.fileBytes >>
        limits.keptBytes >> cpu >> wall;
    request.kind = ReadRequest::Kind(kind);
    request.companions = Companions(companions);
    limits.cpuSeconds = cpu;
    limits.wallSeconds = wall;
    return in.status() == QDataStream::Ok;
}

/// Puts @p note before those of each mesh.
ModelParser noting(const QString &note, const ModelParser &parser)
{
    return [=](const QString &path, const ReadProgress &progress, Companions companions) {
        Imported read = parser(path, progress, companions);
        if (!note.isEmpty())
            read.mesh.notes.prepend(note);
        return read;
    };
}

} // namespace

void writeRequest(QDataStream &out, const ReadRequest &request, const ReadLimits &limits)
{
    out << quint8(request.kind) << request.paths << quint8(request.companions) << limits.memory
        << limits.fileBytes << limits.keptBytes << qint32(limits.cpuSeconds)
        << qint32(limits.wallSeconds);
}

int runReaderProcess(const ModelParser &parser)
{
    QFile in, out;
    const int stream = takeStandardOutput();
    if (!out.open(stream, QIODevice::WriteOnly | QIODevice::Unbuffered) ||
        !in.open(STDIN_FILENO, QIODevice::ReadOnly | QIODevice::Unbuffered))
        return 1;
    ImageReader::loadPlugins();
    const QString open = closeIn();
    if (!hasListener(stream)) // the parent died before its death was to be told
        return 1;
    const auto import = [](const QString &path, const ReadProgress &progress, Companions others) {
        return importMesh(path, progress, {}, others);
    };
    const ModelParser noted = noting(open, parser ? parser : import);
    QDataStream requests(&in);
    ReadRequest request;
    ReadLimits limits;
    while (readRequest(requests, request, limits)) {
        if (!serve(request, limits, noted, out))
            break;
    }
    return 0;
}

} // namespace host
