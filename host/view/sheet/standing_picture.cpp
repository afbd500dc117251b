// SPDX-License-Identifier: MIT
#include "host/view/sheet/standing_picture.h"

#include <algorithm>

#include <QOpenGLContext>
#include <QOpenGLExtraFunctions>
#include <QOpenGLFramebufferObject>

#include "host/view/window/flat_state.h"

namespace host {

std::unique_ptr<QOpenGLFramebufferObject> makeTexture(const QSize &size)
{
    if (!QOpenGLFramebufferObject::hasOpenGLFramebufferObjects())
        return nullptr;
    const FramebufferKeeper keeper;
    auto made = std::make_unique<QOpenGLFramebufferObject>(
        size, QOpenGLFramebufferObject::NoAttachment, GL_TEXTURE_2D, GL_RGBA8);
    return made->isValid() ? std::move(made) : nullptr;
}

bool areAlike(const std::vector<StandingPicture::Tile> &a,
              const std::vector<StandingPicture::Tile> &b)
{
    return std::equal(a.begin(), a.end(), b.begin(), b.end(),
                      [](const auto &one, const auto &other) { return one.seen == other.seen; });
}

StandingPicture::StandingPicture() = default;
StandingPicture::~StandingPicture() = default;

bool StandingPicture::make(const QSize &window)
{
    if (!picture_)
        picture_ = makeTexture(window);
    return picture_ != nullptr;
}

void StandingPicture::clear()
{
    picture_.reset();
    forget();
}

QSize StandingPicture::size() const
{
    return picture_ ? picture_->size() : QSize();
}

GLuint StandingPicture::texture() const
{
    return picture_ ? picture_->texture() : 0;
}

bool StandingPicture::holds(const std::vector<Tile> &shown, const QColor &ground) const
{
    const auto isIn = [](const Tile &now, const Tile &here) {
        return now.seen == here.seen && (now.drawn || now.id == here.id);
    };
    return !tiles_.empty() && ground == ground_ &&
           std::equal(shown.begin(), shown.end(), tiles_.begin(), tiles_.end(), isIn);
}

void StandingPicture::draw() const
{
    const int width = size().width(), height = size().height();
    GLint samples = 0, window = 0;
    glGetIntegerv(GL_SAMPLES, &samples);
    if (samples == 0 && QOpenGLFramebufferObject::hasOpenGLFramebufferBlit()) {
        const FramebufferKeeper keeper;
        glGetIntegerv(GL_FRAMEBUFFER_BINDING, &window);
        glPushAttrib(GL_SCISSOR_BIT);
        glDisable(GL_SCISSOR_TEST);
        QOpenGLExtraFunctions *gl = QOpenGLContext::currentContext()->extraFunctions();
        gl->glBindFramebuffer(GL_READ_FRAMEBUFFER, picture_->handle());
        gl->glBindFramebuffer(GL_DRAW_FRAMEBUFFER, GLuint(window));
        gl->glBlitFramebuffer(0, 0, width, height, 0, 0, width, height, GL_COLOR_BUFFER_BIT,
                              GL_NEAREST);
        glPopAttrib();
    } else {
        const FlatState state(size());
        FlatState::draw(texture(), size(), {{QRect({0, 0}, size()), {0, 0}}});
    }
    glFlush(); // software GL draws it in threads of its own
}

void StandingPicture::take(const QRect &part)
{
    glPushAttrib(GL_TEXTURE_BIT);
    glBindTexture(GL_TEXTURE_2D, texture());
    glCopyTexSubImage2D(GL_TEXTURE_2D, 0, part.x(), part.y(), part.x(), part.y(), part.width(),
                        part.height());
    glPopAttrib();
}

void StandingPicture::takeAll(const std::vector<Tile> &shown, const QColor &ground)
{
    take({{0, 0}, size()});
    tiles_ = shown;
    ground_ = ground;
}

void StandingPicture::setTile(std::size_t index, int id)
{
    if (index < tiles_.size())
        tiles_[index].id = id;
}

} // namespace host
