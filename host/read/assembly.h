// SPDX-License-Identifier: MIT
#ifndef HOST_READ_ASSEMBLY_H
#define HOST_READ_ASSEMBLY_H

#include <memory>

#include "host/read/content.h"

class QDataStream;

namespace host {

/// Puts together what arrives piece by piece, and takes nothing that breaks a promise of it.
class Assembly {
public:
    virtual ~Assembly() = default;
    virtual quint64 byteSize() const { return 0; } ///< Content::byteSize() when it is whole.
    virtual double arrived() const { return 0; }   ///< The share of the bytes that is here, 0..1.

    /// Reads one item. Changes nothing unless all of it is there. Returns whether it may stand.
    virtual bool takeItem(QDataStream &in) = 0;
    /// Where the next @p size bytes of an array go; null if they do not belong there.
    virtual char *room(quint32 array, quint32 size) = 0;
    /// Whether the last @p size bytes of the array may stand.
    virtual bool check(quint32 array, quint32 size) = 0;
    /// The whole, once; empty if something is missing.
    virtual Content finish() = 0;
};

/// The assemblies. Each reads the head of its message. Null for a head that is not whole, and for
/// one that promises nothing or more than the limits; may throw std::bad_alloc.
std::unique_ptr<Assembly> meshAssembly(QDataStream &head, const MeshLimits &limits);
std::unique_ptr<Assembly> tableAssembly(QDataStream &head, const QString &name);
std::unique_ptr<Assembly> listAssembly(QDataStream &head);

/// Makes @p array larger by @p size bytes, in steps of @p step bytes and up to @p most elements.
/// Returns where they go, or null.
template <class T>
char *extend(std::vector<T> &array, quint32 size, std::size_t step, std::size_t most)
{
    const std::size_t old = array.size();
    if (size == 0 || size % step != 0 || size / sizeof(T) > most - old)
        return nullptr;
    array.resize(old + size / sizeof(T));
    return reinterpret_cast<char *>(array.data() + old);
}

} // namespace host

#endif
