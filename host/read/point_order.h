// SPDX-License-Identifier: MIT
#ifndef HOST_READ_POINT_ORDER_H
#define HOST_READ_POINT_ORDER_H

#include <array>
#include <cstddef>
#include <vector>

#include <QtGlobal>

namespace host {

/// An order of a cloud's points in which each beginning is a fair sample of all of them, to a
/// 256th: the points are dealt out to so many heaps by lot, and the heaps laid one after the
/// other. The lot is the same each time.
class PointOrder {
public:
    explicit PointOrder(std::size_t count);

    /// Brings the points' values into the order: the last elements of @p values, @p width for each
    /// point. Expects so many to be there.
    template <class T> void apply(std::vector<T> &values, std::size_t width) const
    {
        const std::size_t first = values.size() - count_ * width;
        const std::vector<T> old(values.begin() + std::ptrdiff_t(first), values.end());
        std::array<std::size_t, heaps> next = begins_;
        for (std::size_t i = 0; i < count_; ++i) {
            const std::size_t to = first + next[heapOf(i)]++ * width;
            for (std::size_t k = 0; k < width; ++k)
                values[to + k] = old[i * width + k];
        }
    }

private:
    static constexpr std::size_t heaps = 256;

    static std::size_t heapOf(quint64 point)
    {
        quint64 lot = (point + 1) * 0x9E3779B97F4A7C15;
        lot = (lot ^ (lot >> 30)) * 0xBF58476D1CE4E5B9;
        return std::size_t((lot ^ (lot >> 27)) * 0x94D049BB133111EB >> 56);
    }

    std::size_t count_;
    std::array<std::size_t, heaps> begins_{}; // of each heap in the order
};

} // namespace host

#endif
