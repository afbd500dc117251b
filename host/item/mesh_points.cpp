// SPDX-License-Identifier: MIT
#include "host/item/mesh_points.h"

#include <algorithm>
#include <cmath>

#include <qopengl.h>

#include "host/item/buffer_offset.h"
#include "host/item/camera_motion.h"
#include "host/ui/metrics.h"

namespace host {

namespace {

/// A grey is what formats and readers put where nothing was said.
bool hasHue(const MeshPart &part)
{
    const auto [low, high] = std::minmax({part.colour[0], part.colour[1], part.colour[2]});
    return high - low > 0.02f;
}

/// What lies behind takes a share of the background's colour.
void setFog(const Theme &theme)
{
    constexpr float farShare = 0.55f; // of the background at the far end
    GLfloat view[16];
    glGetFloatv(GL_MODELVIEW_MATRIX, view);
    const float start = -view[14] - CameraMotion::worldRadius;
    const QColor &a = theme.top, &b = theme.bottom;
    const GLfloat colour[4] = {float(a.redF() + b.redF()) / 2, float(a.greenF() + b.greenF()) / 2,
                               float(a.blueF() + b.blueF()) / 2, 1};
    glFogi(GL_FOG_MODE, GL_LINEAR);
    glFogf(GL_FOG_START, start);
    glFogf(GL_FOG_END, start + 2 * CameraMotion::worldRadius / farShare);
    glFogfv(GL_FOG_COLOR, colour);
}

/// Sets the colour of what comes next.
void setColour(const Mesh &mesh, const MeshPart &part, const Theme &theme, bool selected)
{
    const bool fromVertices = !mesh.colours.empty() && !selected;
    (fromVertices ? glEnableClientState : glDisableClientState)(GL_COLOR_ARRAY);
    (fromVertices || selected || hasHue(part) ? glDisable : glEnable)(GL_FOG);
    const QColor &c = selected ? theme.accent : theme.ink;
    if (!selected && hasHue(part))
        glColor4f(part.colour[0], part.colour[1], part.colour[2], 1);
    else
        glColor4d(c.redF(), c.greenF(), c.blueF(), 1);
}

void setState(const Display &display)
{
    glEnable(GL_DEPTH_TEST);
    glDepthFunc(GL_LEQUAL);
    glDepthMask(GL_TRUE);
    glDisable(GL_LIGHTING);
    glDisable(GL_TEXTURE_2D);
    glDisable(GL_BLEND);
    glDisable(GL_POINT_SMOOTH);
    glDisable(GL_LINE_SMOOTH);
    glLineWidth(display.scale * float(Metrics::px(1.2)));
    setFog(display.theme());
}

/// In pieces that are done one after the other: software GL keeps what it has still to draw, and
/// would keep gigabytes.
void drawPoints(quint32 first, quint32 count)
{
    constexpr quint32 batch = 2'000'000;
    for (quint32 at = 0; at < count; at += batch) {
        if (at > 0)
            glFinish();
        glDrawArrays(GL_POINTS, GLint(first + at), GLsizei(std::min(batch, count - at)));
    }
}

} // namespace

double pointSpacing(const Mesh &mesh)
{
    const std::size_t count = mesh.pointCount();
    if (count == 0)
        return 0;
    const QVector3D size = mesh.max - mesh.min;
    const double x = double(size.x()), y = double(size.y()), z = double(size.z());
    const double sides = x * y + y * z + z * x;
    return std::max(std::sqrt(sides / double(count)), std::max({x, y, z}) / double(count));
}

double pointSize(const Mesh &mesh, const Display &display, const PointLook &look)
{
    const double sample = double(mesh.pointCount()) / double(std::max<std::size_t>(look.most, 1));
    const double apart = look.spacing * std::sqrt(std::max(sample, 1.0));
    constexpr double overlap = 1.5; // by chance some stand farther apart
    const double touching = look.pixel > 0 ? overlap * apart / look.pixel : 0;
    return std::clamp(touching, Metrics::px(1), Metrics::px(4)) * double(display.pointScale);
}

void drawThinPart(const MeshPart &part, double share)
{
    const bool lines = part.kind == MeshPart::Kind::Lines;
    // A little nearer, so that lines on a surface are seen.
    glDepthRange(0, lines ? 0.99998 : 1);
    if (lines)
        glDrawElements(GL_LINES, GLsizei(part.indexCount), GL_UNSIGNED_INT,
                       bufferOffset(std::size_t(part.firstIndex) * sizeof(quint32)));
    else
        drawPoints(part.firstVertex, quint32(std::ceil(part.vertexCount * share)));
}

void drawLinesAndPoints(const Mesh &mesh, std::size_t colours, const Display &display,
                        const PartMarks &marks, const PointLook &look)
{
    glPushAttrib(GL_ENABLE_BIT | GL_DEPTH_BUFFER_BIT | GL_CURRENT_BIT | GL_LINE_BIT | GL_POINT_BIT |
                 GL_FOG_BIT | GL_VIEWPORT_BIT);
    glPushClientAttrib(GL_CLIENT_VERTEX_ARRAY_BIT);
    setState(display);
    glPointSize(std::max(1.0f, display.scale * float(pointSize(mesh, display, look))));
    glDisableClientState(GL_NORMAL_ARRAY);
    glEnableClientState(GL_VERTEX_ARRAY);
    glVertexPointer(3, GL_FLOAT, 0, nullptr);
    if (!mesh.colours.empty())
        glColorPointer(4, GL_UNSIGNED_BYTE, 0, bufferOffset(colours));
    const double share =
        std::min(1.0, double(look.most) / double(std::max<std::size_t>(mesh.pointCount(), 1)));
    for (std::size_t i = mesh.trianglePartCount(); i < mesh.parts.size(); ++i) {
        const MeshPart &part = mesh.parts[i];
        if (marks.isHidden(i))
            continue;
        setColour(mesh, part, display.theme(), marks.isSelected(i));
        drawThinPart(part, share);
    }
    glPopClientAttrib();
    glPopAttrib();
}

} // namespace host
