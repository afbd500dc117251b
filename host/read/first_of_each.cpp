// SPDX-License-Identifier: MIT
#include "host/read/first_of_each.h"

#include <algorithm>
#include <cstring>

namespace host {

quint64 mixed(quint64 sum, float value)
{
    value += 0.0f; // -0 becomes 0
    quint32 bits;
    std::memcpy(&bits, &value, sizeof bits);
    sum = (sum ^ bits) * 0x9E3779B97F4A7C15;
    return sum ^ (sum >> 29);
}

std::vector<quint32> firstAtPlace(const Mesh &mesh, std::size_t count,
                                  const std::atomic<bool> &cancelled)
{
    const auto at = [&mesh](quint32 vertex) { return &mesh.positions[std::size_t(vertex) * 3]; };
    return firstOfEach(
        count, [&](quint32 i) { return mixed(mixed(mixed(1, at(i)[0]), at(i)[1]), at(i)[2]); },
        [&](quint32 a, quint32 b) { return std::equal(at(a), at(a) + 3, at(b)); }, &cancelled);
}

} // namespace host
