// SPDX-License-Identifier: MIT
#include "host/series/line_clip.h"

#include <algorithm>

namespace host {
namespace {

// Narrows [enter, leave], shares of the way, to where start + t * way >= bound.
void keepAbove(double start, double way, double bound, double &enter, double &leave)
{
    if (way == 0) {
        if (start < bound)
            leave = -1;
        return;
    }
    const double t = (bound - start) / way;
    if (way > 0)
        enter = std::max(enter, t);
    else
        leave = std::min(leave, t);
}

} // namespace

bool clipSegment(const QRectF &area, QPointF &a, QPointF &b)
{
    const QPointF way = b - a;
    double enter = 0;
    double leave = 1;
    keepAbove(a.x(), way.x(), area.left(), enter, leave);
    keepAbove(-a.x(), -way.x(), -area.right(), enter, leave);
    keepAbove(a.y(), way.y(), area.top(), enter, leave);
    keepAbove(-a.y(), -way.y(), -area.bottom(), enter, leave);
    if (!(enter <= leave))
        return false;
    const QPointF start = a;
    if (enter > 0)
        a = start + enter * way;
    if (leave < 1)
        b = start + leave * way;
    return true;
}

} // namespace host
