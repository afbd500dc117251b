// SPDX-License-Identifier: MIT
#ifndef HOST_READ_FIRST_OF_EACH_H
#define HOST_READ_FIRST_OF_EACH_H

#include <atomic>
#include <cstddef>
#include <vector>

#include <QtGlobal>

#include "host/read/mesh.h"

namespace host {

/// Takes @p value up into a hash. Both zeros are the same.
quint64 mixed(quint64 sum, float value);

/// For each of @p count elements, which are below 2^32, the number of the first that equals it, in
/// time that grows with the count alone: @p hash(i) is the same for equal ones, which
/// @p equal(a, b) tells. Setting @p cancelled from another thread ends it early, with anything.
template <class Hash, class Equal>
std::vector<quint32> firstOfEach(std::size_t count, const Hash &hash, const Equal &equal,
                                 const std::atomic<bool> *cancelled = nullptr)
{
    constexpr quint32 none = ~quint32(0);
    std::size_t size = 16;
    while (size < count * 2)
        size *= 2;
    std::vector<quint32> table(size, none), first(count); // open addressing
    for (std::size_t i = 0; i < count && !(cancelled && *cancelled); ++i) {
        std::size_t at = std::size_t(hash(quint32(i))) & (size - 1);
        while (table[at] != none && !equal(table[at], quint32(i)))
            at = (at + 1) & (size - 1);
        if (table[at] == none)
            table[at] = quint32(i);
        first[i] = table[at];
    }
    return first;
}

/// For each of the first @p count vertices of @p mesh the first that stands exactly where it
/// stands: many files give each corner of a triangle a vertex of its own. Cancelled as
/// firstOfEach() is.
std::vector<quint32> firstAtPlace(const Mesh &mesh, std::size_t count,
                                  const std::atomic<bool> &cancelled);

} // namespace host

#endif
