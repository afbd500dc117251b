// SPDX-License-Identifier: MIT
#ifndef HOST_APP_STANDARD_INPUT_H
#define HOST_APP_STANDARD_INPUT_H

#include <QByteArray>
#include <QCoreApplication>
#include <QString>
#include <QTemporaryDir>

namespace host {

/// What is piped into the program, as a file that can be read like any other. The file goes with
/// the object.
class StandardInput {
    Q_DECLARE_TR_FUNCTIONS(StandardInput)
public:
    /// Reads all of it. Returns the reason if there is nothing to show in it, else an empty text.
    QString read();
    QString path() const { return path_; } ///< Its suffix names the format that was found.

    /// The suffix of the format that a file of @p size bytes with such a @p start has, of those
    /// that need no second file; empty if none is known.
    static QString suffixOf(const QByteArray &start, qint64 size);

private:
    QTemporaryDir folder_;
    QString path_;
};

} // namespace host

#endif
