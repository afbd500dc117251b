// SPDX-License-Identifier: MIT
#ifndef HOST_READ_CONTENT_RECEIVE_H
#define HOST_READ_CONTENT_RECEIVE_H

#include <memory>

#include "host/read/assembly.h"
#include "host/read/messages.h"

class QIODevice;

namespace host {

/// Takes one answer of a reading process as it arrives, and trusts nothing in it: what it gives
/// keeps every promise of Mesh and Table, and its memory stays within what arrived and the limits.
class ContentReceiver {
public:
    enum class State {
        Reading, ///< More has to come.
        Done,    ///< The content is whole.
        Refused, ///< The process says why there is none: see reason().
        Broken,  ///< The answer makes no sense, or there is no memory for it: see reason().
    };

    /// @p name is the file's, without its folder.
    explicit ContentReceiver(const QString &name = {}, const MeshLimits &limits = {})
        : name_(name), limits_(limits)
    {
    }

    /// Takes the whole messages that @p in, which is sequential, holds; leaves the rest in it.
    State take(QIODevice &in);

    State state() const { return state_; }
    QString reason() const { return reason_; } ///< A phrase without the file's name.

    bool begun() const { return begun_; }         ///< The process has taken up the request.
    qint64 fileSize() const { return fileSize_; } ///< In bytes, once it has begun.
    double fraction() const;                      ///< Of all the work, 0..1, never falling.
    QString stage() const { return stage_; }      ///< In words, at most 80 characters.
    bool announced() const { return announced_; } ///< Its size is known.
    quint64 announcedBytes() const { return bytes_; }
    bool isLast() const { return last_; } ///< The process serves no more.

    /// The content, once; empty unless Done.
    Content take() { return std::move(whole_); }

private:
    bool takeMessage(QDataStream &in);
    bool takeBegin(QDataStream &in);
    bool takeProgress(QDataStream &in);
    bool takeFailure(QDataStream &in);
    bool takeHead(messages::Tag tag, QDataStream &in);
    bool takePiece(QDataStream &in);
    bool takeEnd(QDataStream &in);
    void fail(State state, const QString &reason);

    QString name_;
    MeshLimits limits_;
    State state_ = State::Reading;
    QString reason_;
    bool begun_ = false, announced_ = false, last_ = false;
    quint64 bytes_ = 0; // announced
    qint64 fileSize_ = 0;
    double fraction_ = 0;
    QString stage_;
    std::unique_ptr<Assembly> content_; // null unless it arrives
    Content whole_;
};

} // namespace host

#endif
