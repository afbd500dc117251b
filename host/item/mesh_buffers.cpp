// SPDX-License-Identifier: MIT
#include "host/item/mesh_buffers.h"

#include <algorithm>
#include <vector>

#include "host/item/buffer_offset.h"
#include "host/ui/metrics.h"

namespace host {

namespace {

/// Writes the positions, moved and scaled, piece by piece: there is no second copy of them all.
void writePositions(QOpenGLBuffer &buffer, const std::vector<float> &positions,
                    const QVector3D &centre, float scale)
{
    constexpr std::size_t batch = 3 * 16384; // floats
    const float c[3] = {centre.x(), centre.y(), centre.z()};
    std::vector<float> moved;
    for (std::size_t begin = 0; begin < positions.size(); begin += batch) {
        const std::size_t end = std::min(begin + batch, positions.size());
        moved.clear();
        for (std::size_t i = begin; i < end; ++i)
            moved.push_back((positions[i] - c[i % 3]) * scale);
        buffer.write(int(begin * sizeof(float)), moved.data(), int(moved.size() * sizeof(float)));
    }
}

void setColour(const MeshPart &part, const Display &display, bool marked)
{
    const auto &c = part.colour;
    // Emission lifts what is selected, whatever colours its vertices have.
    const float lift = marked ? 0.22f : 0.0f;
    const QColor accent = display.theme().accent;
    const float tint[3] = {float(accent.redF()), float(accent.greenF()), float(accent.blueF())};
    const float share = marked ? 0.45f : 0.0f;
    GLfloat emission[4] = {0, 0, 0, 1};
    GLfloat colour[4] = {0, 0, 0, opacityOf(part)};
    for (int i = 0; i < 3; ++i) {
        emission[i] = lift * tint[i];
        colour[i] = c[std::size_t(i)] * (1 - share) + tint[i] * share;
    }
    glMaterialfv(GL_FRONT_AND_BACK, GL_EMISSION, emission);
    glColor4fv(colour);
}

} // namespace

void MeshBuffers::create(const Mesh &mesh, const QVector3D &centre, float scale)
{
    if (vertices_.isCreated())
        return;
    const int positions = int(mesh.positions.size() * sizeof(float));
    const int normals = int(mesh.normals.size() * sizeof(float));
    const int colours = int(mesh.colours.size());
    const int uvs = int(mesh.uvs.size() * sizeof(float));
    vertices_.create();
    vertices_.bind();
    vertices_.allocate(positions + normals + colours + uvs);
    writePositions(vertices_, mesh.positions, centre, scale);
    vertices_.write(positions, mesh.normals.data(), normals);
    if (colours > 0)
        vertices_.write(positions + normals, mesh.colours.data(), colours);
    if (uvs > 0)
        vertices_.write(positions + normals + colours, mesh.uvs.data(), uvs);
    vertices_.release();
    indices_.create();
    indices_.bind();
    indices_.allocate(mesh.indices.data(), int(mesh.indices.size() * sizeof(quint32)));
    indices_.release();
    textures_.create(mesh);
    bytes_ = quint64(positions) + quint64(normals) + quint64(colours) + quint64(uvs) +
             mesh.indices.size() * sizeof(quint32) + textures_.byteSize();
    transparent_ = TransparentParts(mesh, centre, scale);
}

void MeshBuffers::move(const std::vector<float> &positions, const std::vector<float> &normals,
                       const QVector3D &centre, float scale)
{
    if (!vertices_.isCreated())
        return;
    vertices_.bind();
    writePositions(vertices_, positions, centre, scale);
    vertices_.write(int(positions.size() * sizeof(float)), normals.data(),
                    int(normals.size() * sizeof(float)));
    vertices_.release();
}

void MeshBuffers::destroy()
{
    vertices_.destroy();
    indices_.destroy();
    textures_.destroy();
    bytes_ = 0;
}

void MeshBuffers::draw(const Mesh &mesh, const Display &display, const PartMarks &marks,
                       EdgeLines *edges, LevelBuffers *level)
{
    if (!vertices_.isCreated())
        return;
    glPushAttrib(GL_ENABLE_BIT | GL_DEPTH_BUFFER_BIT | GL_LIGHTING_BIT | GL_POLYGON_BIT |
                 GL_COLOR_BUFFER_BIT | GL_CURRENT_BIT | GL_LINE_BIT |
                 (mesh.textures.empty() ? 0 : GL_TEXTURE_BIT));
    glPushClientAttrib(GL_CLIENT_VERTEX_ARRAY_BIT);
    glEnable(GL_DEPTH_TEST);
    glDepthFunc(GL_LEQUAL);
    glDepthMask(GL_TRUE);
    glDisable(GL_CULL_FACE);
    glDisable(GL_TEXTURE_2D);
    glDisable(GL_BLEND);
    glShadeModel(GL_SMOOTH);
    glPolygonMode(GL_FRONT_AND_BACK, display.mode == Display::Mode::Wireframe ? GL_LINE : GL_FILL);
    // Lines lie over the surfaces that they belong to, with half of their width beside it.
    const float width = display.scale * float(Metrics::px(1));
    glLineWidth(width);
    glPolygonOffset(std::max(1.0f, width), 1);
    if (display.mode == Display::Mode::Edged || display.mode == Display::Mode::HiddenLines)
        glEnable(GL_POLYGON_OFFSET_FILL);
    if (display.lighting) {
        const GLfloat none[4] = {0, 0, 0, 1}, shine[4] = {1, 1, 1, 1};
        glEnable(GL_LIGHTING);
        glLightModelfv(GL_LIGHT_MODEL_AMBIENT, none);
        glLightModeli(GL_LIGHT_MODEL_TWO_SIDE, GL_TRUE); // many files are open or inside out
        glMaterialfv(GL_FRONT_AND_BACK, GL_SPECULAR, shine);
        glMaterialf(GL_FRONT_AND_BACK, GL_SHININESS, 28);
        glColorMaterial(GL_FRONT_AND_BACK, GL_AMBIENT_AND_DIFFUSE);
        glEnable(GL_COLOR_MATERIAL);
        if (!mesh.textures.empty()) // highlights lie on a dark texture too
            glLightModeli(GL_LIGHT_MODEL_COLOR_CONTROL, GL_SEPARATE_SPECULAR_COLOR);
    } else {
        glDisable(GL_LIGHTING);
    }

    const std::size_t normals = mesh.positions.size() * sizeof(float);
    const std::size_t colours = normals + mesh.normals.size() * sizeof(float);
    vertices_.bind();
    level_ = level;
    level ? level->bind() : void(indices_.bind());
    glEnableClientState(GL_VERTEX_ARRAY);
    glVertexPointer(3, GL_FLOAT, 0, bufferOffset(0));
    glEnableClientState(GL_NORMAL_ARRAY);
    glNormalPointer(GL_FLOAT, 0, bufferOffset(normals));
    if (!mesh.colours.empty())
        glColorPointer(4, GL_UNSIGNED_BYTE, 0, bufferOffset(colours));
    if (!mesh.uvs.empty())
        glTexCoordPointer(2, GL_FLOAT, 0, bufferOffset(colours + mesh.colours.size()));

    if (display.mode == Display::Mode::HiddenLines)
        drawHiddenLines(mesh, display, marks);
    else
        drawSurfaces(mesh, display, marks);
    if (display.mode == Display::Mode::Edged && edges)
        edges->draw(mesh, display, marks);

    level_ = nullptr;
    indices_.release();
    vertices_.release();
    glPopClientAttrib();
    glPopAttrib();
}

void MeshBuffers::drawSurfaces(const Mesh &mesh, const Display &display, const PartMarks &marks)
{
    for (std::size_t i = 0; i < mesh.trianglePartCount(); ++i)
        if (!isTransparent(mesh.parts[i]) && !marks.isHidden(i))
            drawPart(mesh, i, display, marks.isSelected(i));
    if (!transparent_.isEmpty())
        drawTransparent(mesh, display, marks);
}

/// The opaque parts leave nothing but their depth, so that what lies behind them is hidden and the
/// background shows; then come the outlines of all triangles.
void MeshBuffers::drawHiddenLines(const Mesh &mesh, const Display &display, const PartMarks &marks)
{
    glDisable(GL_LIGHTING);
    glDisableClientState(GL_COLOR_ARRAY);
    glColorMask(GL_FALSE, GL_FALSE, GL_FALSE, GL_FALSE);
    for (std::size_t i = 0; i < mesh.trianglePartCount(); ++i)
        if (!isTransparent(mesh.parts[i]) && !marks.isHidden(i))
            drawTriangles(mesh, i);
    glColorMask(GL_TRUE, GL_TRUE, GL_TRUE, GL_TRUE);
    glPolygonMode(GL_FRONT_AND_BACK, GL_LINE);
    const Theme &theme = display.theme();
    for (std::size_t i = 0; i < mesh.trianglePartCount(); ++i) {
        if (marks.isHidden(i))
            continue;
        const QColor &c = marks.isSelected(i) ? theme.accent : theme.ink;
        glColor4d(c.redF(), c.greenF(), c.blueF(), 1);
        drawTriangles(mesh, i);
    }
}

void MeshBuffers::drawThin(const Mesh &mesh, const Display &display, const PartMarks &marks,
                           const PointLook &look)
{
    if (!vertices_.isCreated() || mesh.trianglePartCount() == mesh.parts.size())
        return;
    vertices_.bind();
    indices_.bind();
    drawLinesAndPoints(mesh, (mesh.positions.size() + mesh.normals.size()) * sizeof(float), display,
                       marks, look);
    indices_.release();
    vertices_.release();
}

void MeshBuffers::drawShapes(const Mesh &mesh, const PartColour &paint)
{
    if (!vertices_.isCreated())
        return;
    level_ = nullptr; // a draw() that memory did not suffice for may have left one
    glPushAttrib(GL_ENABLE_BIT | GL_DEPTH_BUFFER_BIT | GL_LIGHTING_BIT | GL_POLYGON_BIT |
                 GL_CURRENT_BIT | GL_VIEWPORT_BIT);
    glPushClientAttrib(GL_CLIENT_VERTEX_ARRAY_BIT);
    for (const GLenum off : {GL_LIGHTING, GL_TEXTURE_2D, GL_BLEND, GL_CULL_FACE})
        glDisable(off);
    glEnable(GL_DEPTH_TEST);
    glDepthFunc(GL_LEQUAL);
    glDepthMask(GL_TRUE);
    glPolygonMode(GL_FRONT_AND_BACK, GL_FILL);
    vertices_.bind();
    indices_.bind();
    glEnableClientState(GL_VERTEX_ARRAY);
    glVertexPointer(3, GL_FLOAT, 0, bufferOffset(0));
    for (std::size_t i = 0; i < mesh.parts.size(); ++i) {
        if (!paint(i))
            continue;
        if (mesh.parts[i].kind == MeshPart::Kind::Triangles)
            drawTriangles(mesh, i);
        else
            drawThinPart(mesh.parts[i]);
    }
    indices_.release();
    vertices_.release();
    glPopClientAttrib();
    glPopAttrib();
}

/// Each part covers what lies farther away, its own far side too.
void MeshBuffers::drawTransparent(const Mesh &mesh, const Display &display, const PartMarks &marks)
{
    QMatrix4x4 view, projection; // as OpenGL keeps them, column by column
    glGetFloatv(GL_MODELVIEW_MATRIX, view.data());
    glGetFloatv(GL_PROJECTION_MATRIX, projection.data());
    const bool parallel = qFuzzyIsNull(projection(3, 2)); // what makes far things small
    glEnable(GL_BLEND);
    glBlendFunc(GL_SRC_ALPHA, GL_ONE_MINUS_SRC_ALPHA);
    glDepthMask(GL_FALSE);
    glFrontFace(GL_CCW);
    glEnable(GL_CULL_FACE);
    for (const std::size_t index : transparent_.farFirst(view, parallel)) {
        if (marks.isHidden(index))
            continue;
        for (const GLenum leftOut : {GL_FRONT, GL_BACK}) {
            glCullFace(leftOut);
            drawPart(mesh, index, display, marks.isSelected(index));
        }
    }
}

void MeshBuffers::drawPart(const Mesh &mesh, std::size_t index, const Display &display,
                           bool isMarked)
{
    const MeshPart &part = mesh.parts[index];
    if (part.indexCount == 0)
        return;
    // A marked part gives up its vertex colours: without lighting they would hide the mark.
    if (!mesh.colours.empty() && !isMarked)
        glEnableClientState(GL_COLOR_ARRAY);
    else
        glDisableClientState(GL_COLOR_ARRAY);
    setColour(part, display, isMarked);
    const bool covered = part.cover.texture >= 0 && display.mode != Display::Mode::Wireframe;
    textures_.cover(covered ? part.cover : Cover(), isMarked);
    // Not all vertices have coordinates.
    (covered ? glEnableClientState : glDisableClientState)(GL_TEXTURE_COORD_ARRAY);
    drawTriangles(mesh, index);
}

void MeshBuffers::drawTriangles(const Mesh &mesh, std::size_t index) const
{
    const MeshPart &part = mesh.parts[index];
    const auto [first, count] =
        level_ ? level_->run(index) : std::pair(part.firstIndex, part.indexCount);
    if (count > 0)
        glDrawElements(GL_TRIANGLES, GLsizei(count), GL_UNSIGNED_INT,
                       bufferOffset(std::size_t(first) * sizeof(quint32)));
}

} // namespace host
