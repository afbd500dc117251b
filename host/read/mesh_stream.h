// SPDX-License-Identifier: MIT
#ifndef HOST_READ_MESH_STREAM_H
#define HOST_READ_MESH_STREAM_H

#include <memory>

#include <QByteArray>
#include <QString>

#include "host/read/mesh.h"

class QIODevice;

namespace host {

/// The stream between the process that reads a model and the one that shows it: a run of frames,
/// each of a tag, a length, the payload and a checksum over all three. It begins with a frame that
/// names the version and ends with a whole mesh or a failure; reports of progress may stand
/// between. Numbers have the byte order of the machine, which the stream never leaves. The
/// functions return false if the device takes no more.
bool writeStreamStart(QIODevice &out);
bool writeProgress(QIODevice &out, double fraction, const QString &stage);
bool writeFailure(QIODevice &out, const QString &reason);
bool writeMesh(QIODevice &out, const Mesh &mesh);

/// Takes a stream apart as it arrives, in pieces of any size, and trusts nothing in it: what it
/// gives keeps every promise of Mesh, and its memory stays within the bytes fed and the limits.
class MeshDecoder {
public:
    enum class State {
        Reading, ///< More has to come.
        Done,    ///< The mesh is whole.
        Failed,  ///< The stream is broken, or carried a failure: see reason().
    };

    explicit MeshDecoder(const MeshLimits &limits = {}) : limits_(limits) {}

    /// Takes the next bytes. Work is in proportion to them. Bytes after the end are ignored.
    State feed(const QByteArray &bytes);

    State state() const { return state_; }
    QString reason() const { return reason_; } ///< Empty unless Failed.

    double fraction() const { return fraction_; } ///< Of the import, 0..1, as last reported.
    QString stage() const { return stage_; }      ///< As last reported, at most 80 characters.

    bool announced() const { return mesh_ != nullptr; }        ///< The size of the mesh is known.
    quint64 announcedBytes() const { return wanted_.bytes(); } ///< Mesh::byteSize() to be; or 0.
    double arrived() const; ///< The share of announcedBytes() that is here, 0..1.

    /// The mesh, once; null unless Done.
    MeshPtr take();

private:
    struct Counts {
        quint32 vertices = 0;
        quint32 indices = 0;
        quint32 parts = 0;
        quint32 coloured = 0; // 1 if each vertex has a colour
        quint64 bytes() const;
    };

    bool takeFrame();
    QString accept(quint32 tag, const char *data, quint32 size);
    QString acceptCounts(const char *data, quint32 size);
    QString acceptProgress(const char *data, quint32 size);
    QString acceptPart(const char *data, quint32 size);
    QString acceptArray(quint32 tag, const char *data, quint32 size);
    QString checkIndices(std::size_t from) const;
    QString finish();
    void grow(std::size_t firstPosition);
    void fail(const QString &reason);

    MeshLimits limits_;
    State state_ = State::Reading;
    QString reason_;
    double fraction_ = 0;
    QString stage_;
    QByteArray buffer_; // less than one frame between two calls
    int begin_ = 0;     // of what is not yet taken from buffer_
    bool started_ = false;
    Counts wanted_;
    std::shared_ptr<Mesh> mesh_;
};

} // namespace host

#endif
