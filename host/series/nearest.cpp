// SPDX-License-Identifier: MIT
#include "host/series/nearest.h"

#include <algorithm>
#include <array>
#include <cmath>

namespace host {
namespace {

/// Descends a column's pyramid, nearest nodes first, and leaves out those that lie too far away.
class Search {
public:
    Search(const Table &table, const Column &column, const QPointF &point, const QSizeF &scale,
           double within)
        : table_(table), column_(column), point_(point), scale_(scale), closest_{0, within}
    {
    }

    std::optional<NearestRow> run()
    {
        if (column_.pyramid.levels() > 0)
            visit(column_.pyramid.levels() - 1, 0, rowsPerNode(column_.pyramid.levels() - 1));
        return found_ ? std::optional<NearestRow>(closest_) : std::nullopt;
    }

private:
    struct Child {
        std::size_t index;
        double distance; // to the rectangle around its samples; not more than to any of them
    };

    static std::size_t rowsPerNode(int level)
    {
        std::size_t rows = MinMaxPyramid::fan;
        for (; level > 0; --level)
            rows *= MinMaxPyramid::fan;
        return rows;
    }

    // Distance from `value` to the interval, in data units.
    static double outside(double value, double low, double high)
    {
        return value < low ? low - value : value > high ? value - high : 0;
    }

    double distance(std::size_t first, std::size_t last, double low, double high) const
    {
        const double dx = outside(point_.x(), table_.x[first], table_.x[last - 1]);
        const double dy = outside(point_.y(), low, high);
        return std::hypot(dx * scale_.width(), dy * scale_.height());
    }

    void visit(int level, std::size_t node, std::size_t rows)
    {
        if (level == 0)
            return visitRows(node * rows, std::min((node + 1) * rows, table_.rows()));
        const std::vector<Extent> &below = column_.pyramid.level(level - 1);
        const std::size_t childRows = rows / MinMaxPyramid::fan;
        std::array<Child, MinMaxPyramid::fan> children;
        std::size_t count = 0;
        for (std::size_t i = node * children.size();
             i < std::min((node + 1) * children.size(), below.size()); ++i) {
            if (below[i].empty())
                continue;
            const std::size_t last = std::min((i + 1) * childRows, table_.rows());
            children[count++] = {i, distance(i * childRows, last, below[i].min, below[i].max)};
        }
        std::sort(children.begin(), children.begin() + count,
                  [](const Child &a, const Child &b) { return a.distance < b.distance; });
        for (std::size_t i = 0; i < count && children[i].distance < closest_.distance; ++i)
            visit(level - 1, children[i].index, childRows);
    }

    void visitRows(std::size_t first, std::size_t last)
    {
        for (std::size_t row = first; row < last; ++row) {
            const double y = column_.values[row];
            const double d = distance(row, row + 1, y, y);
            if (!std::isnan(y) && d < closest_.distance) {
                closest_ = {row, d};
                found_ = true;
            }
        }
    }

    const Table &table_;
    const Column &column_;
    QPointF point_;
    QSizeF scale_;
    NearestRow closest_;
    bool found_ = false;
};

} // namespace

std::optional<NearestRow> nearestRow(const Table &table, const Column &column, const QPointF &point,
                                     const QSizeF &scale, double within)
{
    return Search(table, column, point, scale, within).run();
}

} // namespace host
