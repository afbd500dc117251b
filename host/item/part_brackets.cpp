// SPDX-License-Identifier: MIT
#include "host/item/part_brackets.h"

#include <algorithm>

#include <qopengl.h>

#include "host/ui/metrics.h"

namespace host {

const PartBrackets::Box &PartBrackets::boxOf(const Mesh &mesh, std::size_t part)
{
    boxes_.resize(mesh.parts.size());
    std::optional<Box> &box = boxes_[part];
    if (box)
        return *box;
    if (mesh.parts.size() == 1) {
        box = Box{mesh.min, mesh.max};
        return *box;
    }
    box.emplace(Box{mesh.max, mesh.min});
    const MeshPart &p = mesh.parts[part];
    const auto hold = [&mesh, &box](std::size_t vertex) {
        const float *at = &mesh.positions[vertex * 3];
        for (int axis = 0; axis < 3; ++axis) {
            box->min[axis] = std::min(box->min[axis], at[axis]);
            box->max[axis] = std::max(box->max[axis], at[axis]);
        }
    };
    for (std::size_t i = p.firstIndex; i < std::size_t(p.firstIndex) + p.indexCount; ++i)
        hold(mesh.indices[i]);
    for (std::size_t i = 0; i < p.vertexCount; ++i)
        hold(p.firstVertex + i);
    return *box;
}

namespace {

/// Lines from each of the eight corners a share of the way along the three edges there.
void drawCorners(const QVector3D &low, const QVector3D &high)
{
    constexpr float share = 0.16f;
    const QVector3D size = high - low;
    glBegin(GL_LINES);
    for (int corner = 0; corner < 8; ++corner) {
        QVector3D at;
        for (int axis = 0; axis < 3; ++axis)
            at[axis] = corner >> axis & 1 ? high[axis] : low[axis];
        for (int axis = 0; axis < 3; ++axis) {
            QVector3D end = at;
            end[axis] += size[axis] * (corner >> axis & 1 ? -share : share);
            glVertex3f(at.x(), at.y(), at.z());
            glVertex3f(end.x(), end.y(), end.z());
        }
    }
    glEnd();
}

} // namespace

void PartBrackets::draw(const Mesh &mesh, std::size_t part, const QVector3D &centre, float scale,
                        const Display &display)
{
    const Box &box = boxOf(mesh, part);
    const QVector3D low = (box.min - centre) * scale, high = (box.max - centre) * scale;
    const QVector3D air = QVector3D(1, 1, 1) * (high - low).length() * 0.01f; // off the surface
    const QColor c = display.theme().accent;
    glPushAttrib(GL_ENABLE_BIT | GL_DEPTH_BUFFER_BIT | GL_COLOR_BUFFER_BIT | GL_CURRENT_BIT |
                 GL_LINE_BIT);
    glDisable(GL_LIGHTING);
    glDisable(GL_TEXTURE_2D);
    glEnable(GL_BLEND);
    glBlendFunc(GL_SRC_ALPHA, GL_ONE_MINUS_SRC_ALPHA);
    glDepthMask(GL_FALSE);
    glLineWidth(display.scale * float(Metrics::px(1.5)));
    // Faintly where other parts are in front, so that one inside can be made out.
    for (const bool seen : {false, true}) {
        glDepthFunc(GL_LEQUAL);
        (seen ? glEnable : glDisable)(GL_DEPTH_TEST);
        glColor4f(float(c.redF()), float(c.greenF()), float(c.blueF()), seen ? 0.9f : 0.25f);
        drawCorners(low - air, high + air);
    }
    glPopAttrib();
}

} // namespace host
