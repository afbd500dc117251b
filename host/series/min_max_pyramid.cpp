// SPDX-License-Identifier: MIT
#include "host/series/min_max_pyramid.h"

#include <algorithm>

namespace host {

void Extent::add(double value)
{
    if (value < min) // false for NaN
        min = value;
    if (value > max)
        max = value;
}

void Extent::add(const Extent &other)
{
    min = std::min(min, other.min);
    max = std::max(max, other.max);
}

namespace {

template <class Item> std::vector<Extent> grouped(const std::vector<Item> &items)
{
    std::vector<Extent> groups((items.size() + MinMaxPyramid::fan - 1) / MinMaxPyramid::fan);
    for (std::size_t i = 0; i < items.size(); ++i)
        groups[i / MinMaxPyramid::fan].add(items[i]);
    return groups;
}

// Adds the items of [first, last) that do not fill a whole group, and takes them off the run.
template <class Item>
void addEnds(Extent &sum, const std::vector<Item> &items, std::size_t &first, std::size_t &last)
{
    while (first < last && first % MinMaxPyramid::fan != 0)
        sum.add(items[first++]);
    while (first < last && last % MinMaxPyramid::fan != 0)
        sum.add(items[--last]);
}

} // namespace

MinMaxPyramid::MinMaxPyramid(const std::vector<double> &values)
{
    if (values.empty())
        return;
    levels_.push_back(grouped(values));
    while (levels_.back().size() > 1)
        levels_.push_back(grouped(levels_.back()));
}

std::size_t MinMaxPyramid::byteSize(std::size_t rows)
{
    std::size_t nodes = 0;
    while (rows > 1 || (rows == 1 && nodes == 0)) {
        rows = (rows + fan - 1) / fan;
        nodes += rows;
    }
    return nodes * sizeof(Extent);
}

Extent MinMaxPyramid::extent(const std::vector<double> &values, std::size_t first,
                             std::size_t last) const
{
    Extent sum;
    addEnds(sum, values, first, last);
    for (auto level = levels_.begin(); first < last; ++level) {
        first /= fan;
        last /= fan;
        addEnds(sum, *level, first, last);
    }
    return sum;
}

} // namespace host
