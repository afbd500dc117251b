// SPDX-License-Identifier: MIT
#ifndef HOST_READ_READER_PROCESS_H
#define HOST_READ_READER_PROCESS_H

#include <functional>

#include "host/read/companions.h"
#include "host/read/import.h"

class QDataStream;

namespace host {

struct ReadRequest;

/// What reads a model: importMesh(), or in a test what takes its place.
using ModelParser =
    std::function<Imported(const QString &path, const ReadProgress &progress, Companions)>;

/// How a reading process tells that its memory limit was reached, at a moment when it can say no
/// more.
constexpr int outOfMemoryExit = 77;

/// A request on its way to a reading process.
void writeRequest(QDataStream &out, const ReadRequest &request, const ReadLimits &limits);

/// Serves one request after the other from standard input and answers each on standard output with
/// the messages of messages.h: what `glview --reader` does. Ends when standard input does, or when
/// it has grown too large, which its last answer tells. Limits its own memory and processor time,
/// writes no core, and is killed when its parent dies; what libraries print goes to standard error.
/// Before the first file it enters the sandbox; where the system has none, a note of each mesh says
/// so.
/// @p parser reads models; without one importMesh() does.
/// Expects a QCoreApplication (for the names of files) and no second thread. Returns the exit code.
int runReaderProcess(const ModelParser &parser = {});

} // namespace host

#endif
