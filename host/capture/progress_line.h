// SPDX-License-Identifier: MIT
#ifndef HOST_CAPTURE_PROGRESS_LINE_H
#define HOST_CAPTURE_PROGRESS_LINE_H

#include <cstdio>
#include <vector>

#include <QCoreApplication>
#include <QString>

namespace host {

/// Progress on a terminal: one line that is rewritten; where the stream goes elsewhere, a line for
/// every tenth.
class ProgressLine {
    Q_DECLARE_TR_FUNCTIONS(ProgressLine)
public:
    /// @p stream is not owned. @p what says what goes on, for example "Recording".
    ProgressLine(std::FILE *stream, const QString &what);
    ~ProgressLine() { end(); }
    ProgressLine(const ProgressLine &) = delete;
    ProgressLine &operator=(const ProgressLine &) = delete;

    /// Shows that @p done of @p total are done. Expects 0 <= @p done <= @p total, 0 < @p total.
    void show(int done, int total);

    void end(); ///< Ends the line, if one stands there, so that other text can follow.

private:
    std::FILE *stream_;
    QString what_;
    bool rewrites_;
    bool open_ = false;
    int tenths_ = -1;
};

/// Makes Ctrl+C, and the signals TERM and HUP, ask instead of ending the program, while it lives.
/// One at a time.
class InterruptGuard {
public:
    InterruptGuard();
    ~InterruptGuard(); ///< Gives the signals back to whoever had them.
    InterruptGuard(const InterruptGuard &) = delete;
    InterruptGuard &operator=(const InterruptGuard &) = delete;

    bool interrupted() const; ///< Whether one came since the guard was made.

private:
    std::vector<void (*)(int)> previous_;
};

} // namespace host

#endif
