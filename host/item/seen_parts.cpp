// SPDX-License-Identifier: MIT
#include "host/item/seen_parts.h"

#include <QOpenGLFramebufferObject>

#include "host/item/transparent_parts.h"

namespace host {

namespace {

/// Draws each part in the colour of its number, which counts from one; black is nothing.
void drawNumbers(MeshBuffers &buffers, const Mesh &mesh, const PartMarks &marks, bool opaqueOnly,
                 const std::function<void(const PartColour &)> &more)
{
    glClear(GL_COLOR_BUFFER_BIT | GL_DEPTH_BUFFER_BIT);
    const auto number = [&](std::size_t part) {
        if (marks.isHidden(part) || (opaqueOnly && isTransparent(mesh.parts[part])))
            return false;
        const auto from = quint32(part + 1);
        glColor4ub(GLubyte(from), GLubyte(from >> 8), GLubyte(from >> 16), 255);
        return true;
    };
    buffers.drawShapes(mesh, number);
    if (more)
        more(number);
}

/// Notes the parts whose numbers stand in the pixels.
void readNumbers(const QSize &size, std::vector<bool> &seen)
{
    std::vector<quint8> pixels(std::size_t(size.width()) * std::size_t(size.height()) * 4);
    glPixelStorei(GL_PACK_ALIGNMENT, 4);
    glPixelStorei(GL_PACK_ROW_LENGTH, 0);
    glPixelStorei(GL_PACK_SKIP_ROWS, 0);
    glPixelStorei(GL_PACK_SKIP_PIXELS, 0);
    glReadPixels(0, 0, size.width(), size.height(), GL_RGBA, GL_UNSIGNED_BYTE, pixels.data());
    for (std::size_t i = 0; i < pixels.size(); i += 4) {
        const std::size_t number =
            pixels[i] | std::size_t(pixels[i + 1]) << 8 | std::size_t(pixels[i + 2]) << 16;
        if (number > 0 && number <= seen.size())
            seen[number - 1] = true;
    }
}

bool hasTransparent(const Mesh &mesh)
{
    for (const MeshPart &part : mesh.parts)
        if (isTransparent(part))
            return true;
    return false;
}

} // namespace

std::vector<bool> partsSeen(MeshBuffers &buffers, const Mesh &mesh, const PartMarks &marks,
                            const QSize &size, const std::function<void(const PartColour &)> &more)
{
    if (!QOpenGLFramebufferObject::hasOpenGLFramebufferObjects())
        return {};
    QOpenGLFramebufferObjectFormat format;
    format.setAttachment(QOpenGLFramebufferObject::Depth);
    QOpenGLFramebufferObject target(size.expandedTo({1, 1}), format);
    if (!target.isValid() || !target.bind())
        return {};
    std::vector<bool> seen(mesh.parts.size());
    glPushAttrib(GL_ALL_ATTRIB_BITS);
    glPushClientAttrib(GL_CLIENT_PIXEL_STORE_BIT);
    glViewport(0, 0, target.width(), target.height());
    glClearColor(0, 0, 0, 0);
    glColorMask(GL_TRUE, GL_TRUE, GL_TRUE, GL_TRUE);
    glDepthMask(GL_TRUE);
    for (const GLenum off : {GL_SCISSOR_TEST, GL_DITHER, GL_MULTISAMPLE, GL_FOG})
        glDisable(off);
    drawNumbers(buffers, mesh, marks, false, more);
    readNumbers(target.size(), seen);
    if (hasTransparent(mesh)) {
        drawNumbers(buffers, mesh, marks, true, more);
        readNumbers(target.size(), seen);
    }
    glPopClientAttrib();
    glPopAttrib();
    target.release();
    return seen;
}

} // namespace host
