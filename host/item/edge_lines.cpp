// SPDX-License-Identifier: MIT
#include "host/item/edge_lines.h"

#include "host/item/buffer_offset.h"
#include "host/ui/metrics.h"

namespace host {

namespace {

/// Dark on all but what is nearly black.
QColor colourOn(const MeshPart &part, const Theme &theme)
{
    const auto &c = part.colour;
    const float light = 0.2126f * c[0] + 0.7152f * c[1] + 0.0722f * c[2];
    return light < 0.12f ? theme.edgeOnDark : theme.edge;
}

} // namespace

void EdgeLines::request(const MeshPtr &mesh)
{
    if (!found_.isStarted())
        found_.start(
            [mesh](const std::atomic<bool> &cancelled) { return edgesOf(*mesh, cancelled); });
}

quint64 EdgeLines::byteSize() const
{
    const MeshEdges *edges = found_.get();
    const quint64 inGL =
        edges && indices_.isCreated() ? edges->vertices.size() * sizeof(quint32) : 0;
    return (edges ? edges->byteSize() : 0) + inGL;
}

std::size_t EdgeLines::count() const
{
    return found_.get() ? found_.get()->vertices.size() / 2 : 0;
}

void EdgeLines::draw(const Mesh &mesh, const Display &display, const PartMarks &marks)
{
    const MeshEdges *edges = found_.get();
    if (!edges || edges->vertices.empty())
        return;
    if (!indices_.isCreated()) {
        indices_.create();
        indices_.bind();
        indices_.allocate(edges->vertices.data(), int(edges->vertices.size() * sizeof(quint32)));
    }
    indices_.bind();
    for (const GLenum off : {GL_LIGHTING, GL_TEXTURE_2D, GL_ALPHA_TEST, GL_BLEND})
        glDisable(off);
    for (const GLenum off : {GL_COLOR_ARRAY, GL_TEXTURE_COORD_ARRAY})
        glDisableClientState(off);
    glLineWidth(display.scale * float(Metrics::px(1.2)));
    quint32 begin = 0;
    for (std::size_t i = 0; i < edges->ends.size(); ++i) {
        const quint32 end = edges->ends[i];
        if (end > begin && !marks.isHidden(i)) {
            const QColor c = colourOn(mesh.parts[i], display.theme());
            glColor4d(c.redF(), c.greenF(), c.blueF(), 1);
            glDrawElements(GL_LINES, GLsizei(end - begin), GL_UNSIGNED_INT,
                           bufferOffset(begin * sizeof(quint32)));
        }
        begin = end;
    }
}

void EdgeLines::destroy()
{
    indices_.destroy();
}

} // namespace host
