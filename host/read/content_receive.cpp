// SPDX-License-Identifier: MIT
#include "host/read/content_receive.h"

#include <algorithm>
#include <new>

#include <QDataStream>
#include <QIODevice>
#include <sys/mman.h>

#include "host/read/messages.h"

namespace host {
namespace {

using messages::Tag;

/// The share of the whole that is done when the content begins to arrive.
constexpr double parsed = 0.8;

QString brokenAnswer()
{
    return QStringLiteral("the reader's answer is broken");
}

/// Throws unless @p bytes of address space are free.
void expectRoom(quint64 bytes)
{
    void *probe = mmap(nullptr, std::max<quint64>(bytes, 1), PROT_READ | PROT_WRITE,
                       MAP_PRIVATE | MAP_ANONYMOUS | MAP_NORESERVE, -1, 0);
    if (probe == MAP_FAILED)
        throw std::bad_alloc();
    munmap(probe, std::max<quint64>(bytes, 1));
}

} // namespace

ContentReceiver::State ContentReceiver::take(QIODevice &in)
{
    QDataStream stream(&in);
    try {
        while (state_ == State::Reading) {
            stream.startTransaction();
            const bool sound = takeMessage(stream);
            const bool whole = stream.commitTransaction();
            if (!sound || stream.status() == QDataStream::ReadCorruptData ||
                (!whole && in.bytesAvailable() > messages::maxMessage))
                fail(State::Broken, brokenAnswer());
            else if (!whole)
                break;
        }
    } catch (const std::bad_alloc &) {
        fail(State::Broken, QStringLiteral("there is not enough memory to hold it"));
    }
    return state_;
}

/// Returns whether the message may stand; it has no effect unless it is whole.
bool ContentReceiver::takeMessage(QDataStream &in)
{
    quint8 tag = 0;
    in >> tag;
    if (in.status() != QDataStream::Ok)
        return true;
    if ((Tag(tag) == Tag::Begin) == begun_)
        return false; // it stands at the beginning, and only there
    switch (Tag(tag)) {
    case Tag::Begin:
        return takeBegin(in);
    case Tag::Progress:
        return takeProgress(in);
    case Tag::Failure:
        return takeFailure(in);
    case Tag::MeshHead:
    case Tag::TableHead:
    case Tag::ListHead:
        return takeHead(Tag(tag), in);
    case Tag::Item:
        return content_ && content_->takeItem(in);
    case Tag::Piece:
        return content_ && takePiece(in);
    case Tag::End:
        return content_ && takeEnd(in);
    }
    return false;
}

bool ContentReceiver::takeBegin(QDataStream &in)
{
    quint32 version = 0;
    qint64 size = 0;
    in >> version >> size;
    if (in.status() != QDataStream::Ok)
        return true;
    begun_ = true;
    fileSize_ = size;
    if (version != messages::version)
        fail(State::Broken, QStringLiteral("the reader is of another version"));
    return true;
}

bool ContentReceiver::takeProgress(QDataStream &in)
{
    double fraction = 0;
    QString stage;
    in >> fraction >> stage;
    if (in.status() == QDataStream::Ok) {
        fraction_ = fraction <= 1 ? std::max(fraction_, fraction) : fraction_; // false for NaN
        stage_ = stage.left(80);
    }
    return true;
}

bool ContentReceiver::takeFailure(QDataStream &in)
{
    QString reason;
    bool last = false;
    in >> reason >> last;
    if (in.status() != QDataStream::Ok)
        return true;
    last_ = last;
    fail(State::Refused, reason.left(400));
    return !reason.isEmpty();
}

bool ContentReceiver::takeHead(Tag tag, QDataStream &in)
{
    if (content_)
        return false;
    auto content = tag == Tag::MeshHead    ? meshAssembly(in, limits_)
                   : tag == Tag::TableHead ? tableAssembly(in, name_)
                                           : listAssembly(in);
    if (in.status() != QDataStream::Ok)
        return true;
    if (!content)
        return false;
    // What shows it takes about as much again.
    expectRoom(content->byteSize() * 2);
    content_ = std::move(content);
    bytes_ = content_->byteSize();
    announced_ = true;
    return true;
}

bool ContentReceiver::takePiece(QDataStream &in)
{
    quint32 array = 0, size = 0;
    in >> array >> size;
    if (in.status() != QDataStream::Ok)
        return true;
    if (size > messages::maxPiece)
        return false;
    if (in.device()->bytesAvailable() < qint64(size)) {
        in.setStatus(QDataStream::ReadPastEnd);
        return true;
    }
    char *room = content_->room(array, size);
    return room && in.readRawData(room, int(size)) == int(size) && content_->check(array, size);
}

bool ContentReceiver::takeEnd(QDataStream &in)
{
    bool last = false;
    in >> last;
    if (in.status() != QDataStream::Ok)
        return true;
    whole_ = content_->finish();
    last_ = last;
    if (!whole_.mesh && !whole_.table && !whole_.list)
        return false;
    content_.reset();
    state_ = State::Done;
    return true;
}

double ContentReceiver::fraction() const
{
    if (state_ == State::Done)
        return 1;
    return content_ ? parsed + (1 - parsed) * content_->arrived() : parsed * fraction_;
}

void ContentReceiver::fail(State state, const QString &reason)
{
    state_ = state;
    reason_ = reason;
    content_.reset();
}

} // namespace host
