// SPDX-License-Identifier: MIT
#ifndef HOST_READ_READER_PROCESS_H
#define HOST_READ_READER_PROCESS_H

class QDataStream;

namespace host {

struct ReadLimits;
struct ReadRequest;

/// How a reading process tells that its memory limit was reached, at a moment when it can say no
/// more.
constexpr int outOfMemoryExit = 77;

/// A request on its way to a reading process.
void writeRequest(QDataStream &out, const ReadRequest &request, const ReadLimits &limits);

/// Serves one request after the other from standard input and answers each on standard output with
/// the messages of messages.h: what `glview --reader` does. Ends when standard input does, or when
/// it has grown too large, which its last answer tells. Limits its own memory and processor time,
/// writes no core, and is killed when its parent dies; what libraries print goes to standard error.
/// Expects a QCoreApplication (for the names of files) and no second thread. Returns the exit code.
int runReaderProcess();

} // namespace host

#endif
