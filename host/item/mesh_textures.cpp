// SPDX-License-Identifier: MIT
#include "host/item/mesh_textures.h"

#include <algorithm>

#include <QImage>

namespace host {
namespace {

/// The picture in the size in which the GL takes it.
QImage fitted(const Texture &texture)
{
    const QImage whole(texture.pixels.data(), int(texture.width), int(texture.height),
                       int(texture.width) * 4, QImage::Format_RGBA8888);
    GLint most = 0;
    glGetIntegerv(GL_MAX_TEXTURE_SIZE, &most);
    most = std::max(most, 64); // the least that there is
    if (whole.width() <= most && whole.height() <= most)
        return whole;
    return whole.scaled(most, most, Qt::KeepAspectRatio, Qt::SmoothTransformation)
        .convertToFormat(QImage::Format_RGBA8888);
}

/// Returns the bytes that the GL keeps.
quint64 upload(const Texture &texture)
{
    const QImage image = fitted(texture);
    glTexParameteri(GL_TEXTURE_2D, GL_GENERATE_MIPMAP, GL_TRUE);
    glTexImage2D(GL_TEXTURE_2D, 0, GL_RGBA8, image.width(), image.height(), 0, GL_RGBA,
                 GL_UNSIGNED_BYTE, image.constBits());
    return quint64(image.sizeInBytes()) * 4 / 3; // each smaller copy takes a quarter
}

GLint wrapOf(Cover::Wrap wrap)
{
    return wrap == Cover::Repeat   ? GL_REPEAT
           : wrap == Cover::Mirror ? GL_MIRRORED_REPEAT
                                   : GL_CLAMP_TO_EDGE;
}

/// Lets the lit colour of what is drawn, which has the accent, show through the texture, whatever
/// the texture's own colours are. What the texture leaves out stays left out.
void mixWithColour()
{
    constexpr GLfloat share[4] = {0, 0, 0, 0.6f}; // of the colour
    glTexEnvi(GL_TEXTURE_ENV, GL_TEXTURE_ENV_MODE, GL_COMBINE);
    glTexEnvi(GL_TEXTURE_ENV, GL_COMBINE_RGB, GL_INTERPOLATE);
    glTexEnvi(GL_TEXTURE_ENV, GL_SRC0_RGB, GL_PRIMARY_COLOR);
    glTexEnvi(GL_TEXTURE_ENV, GL_SRC1_RGB, GL_TEXTURE);
    glTexEnvi(GL_TEXTURE_ENV, GL_SRC2_RGB, GL_CONSTANT);
    glTexEnvi(GL_TEXTURE_ENV, GL_OPERAND2_RGB, GL_SRC_ALPHA);
    glTexEnvfv(GL_TEXTURE_ENV, GL_TEXTURE_ENV_COLOR, share);
    glTexEnvi(GL_TEXTURE_ENV, GL_COMBINE_ALPHA, GL_MODULATE);
    glTexEnvi(GL_TEXTURE_ENV, GL_SRC0_ALPHA, GL_PRIMARY_COLOR);
    glTexEnvi(GL_TEXTURE_ENV, GL_SRC1_ALPHA, GL_TEXTURE);
}

} // namespace

void MeshTextures::create(const Mesh &mesh)
{
    if (!names_.empty() || mesh.textures.empty())
        return;
    names_.resize(mesh.textures.size());
    glPushAttrib(GL_TEXTURE_BIT);
    glPushClientAttrib(GL_CLIENT_PIXEL_STORE_BIT);
    glPixelStorei(GL_UNPACK_ALIGNMENT, 4);
    for (const GLenum offset : {GL_UNPACK_ROW_LENGTH, GL_UNPACK_SKIP_ROWS, GL_UNPACK_SKIP_PIXELS})
        glPixelStorei(offset, 0);
    glGenTextures(GLsizei(names_.size()), names_.data());
    for (std::size_t i = 0; i < names_.size(); ++i) {
        glBindTexture(GL_TEXTURE_2D, names_[i]);
        bytes_ += upload(*mesh.textures[i]);
    }
    glPopClientAttrib();
    glPopAttrib();
}

void MeshTextures::destroy()
{
    if (!names_.empty())
        glDeleteTextures(GLsizei(names_.size()), names_.data());
    names_.clear();
    bytes_ = 0;
}

void MeshTextures::cover(const Cover &cover, bool isMarked) const
{
    if (names_.empty())
        return;
    glDisable(GL_ALPHA_TEST);
    if (cover.texture < 0) {
        glDisable(GL_TEXTURE_2D);
        return;
    }
    glEnable(GL_TEXTURE_2D);
    glBindTexture(GL_TEXTURE_2D, names_[std::size_t(cover.texture)]);
    glTexParameteri(GL_TEXTURE_2D, GL_TEXTURE_WRAP_S, wrapOf(cover.wrapS));
    glTexParameteri(GL_TEXTURE_2D, GL_TEXTURE_WRAP_T, wrapOf(cover.wrapT));
    glTexParameteri(GL_TEXTURE_2D, GL_TEXTURE_MAG_FILTER, cover.smooth ? GL_LINEAR : GL_NEAREST);
    glTexParameteri(GL_TEXTURE_2D, GL_TEXTURE_MIN_FILTER,
                    cover.smooth ? GL_LINEAR_MIPMAP_LINEAR : GL_NEAREST_MIPMAP_LINEAR);
    glTexEnvi(GL_TEXTURE_ENV, GL_TEXTURE_ENV_MODE, GL_MODULATE);
    if (isMarked)
        mixWithColour();
    if (cover.alpha == Cover::Cutout) {
        glEnable(GL_ALPHA_TEST);
        glAlphaFunc(GL_GEQUAL, cover.cutoff);
    }
}

} // namespace host
