// SPDX-License-Identifier: MIT
#ifndef HOST_READ_CONTENT_SEND_H
#define HOST_READ_CONTENT_SEND_H

#include "host/read/content.h"

class QIODevice;

namespace host {

/// What a reading process answers: see messages.h. All return false if the device takes no more.
bool sendBegin(QIODevice &out, qint64 fileSize);
bool sendProgress(QIODevice &out, double fraction, const QString &stage);
bool sendFailure(QIODevice &out, const QString &reason, bool last = false);
bool sendContent(QIODevice &out, const Content &content); ///< Without the end.
bool sendEnd(QIODevice &out, bool last = false); ///< @p last: the process takes no more requests.

} // namespace host

#endif
