// SPDX-License-Identifier: MIT
#include "host/read/point_order.h"

namespace host {

PointOrder::PointOrder(std::size_t count) : count_(count)
{
    std::array<std::size_t, heaps> sizes{};
    for (std::size_t i = 0; i < count; ++i)
        ++sizes[heapOf(i)];
    for (std::size_t heap = 1; heap < heaps; ++heap)
        begins_[heap] = begins_[heap - 1] + sizes[heap - 1];
}

} // namespace host
