// SPDX-License-Identifier: MIT
#include "host/view/window/refinement.h"

#include <algorithm>
#include <chrono>

#include <QOpenGLContext>
#include <QOpenGLFramebufferObject>
#include <QOpenGLFunctions>

#include "host/view/window/flat_state.h"

namespace host {

namespace {

/// Where in a pixel each frame looks, in sixteenths from its middle: no two in one row or column,
/// and the first so near to the middle that nothing seems to jump.
constexpr int places[Refinement::frames][2] = {{1, -3}, {-1, 3},  {5, 1}, {-3, -5},
                                               {-5, 5}, {-7, -1}, {3, 7}, {7, -7}};

} // namespace

/// The mean of pictures of a window. Sixteen bits a channel: the steps of eight would show.
class Refinement::Mean {
public:
    explicit Mean(const QSize &size);
    ~Mean();
    Mean(const Mean &) = delete;
    Mean &operator=(const Mean &) = delete;

    QSize size() const { return size_; }
    bool isValid() const { return sum_ && sum_->isValid(); }
    /// Takes up what was drawn, as number @p count, and puts the mean in its place: @p within what
    /// is told for the first.
    void add(int count, const QRect &within);

private:
    QSize size_;
    QRect within_;
    GLuint drawn_ = 0; // a texture
    std::unique_ptr<QOpenGLFramebufferObject> sum_;
};

Refinement::Mean::Mean(const QSize &size) : size_(size)
{
    constexpr GLenum sixteenBits = 0x805B; // GL_RGBA16, which not all headers name
    if (!QOpenGLFramebufferObject::hasOpenGLFramebufferObjects())
        return;
    const FramebufferKeeper keeper;
    sum_ = std::make_unique<QOpenGLFramebufferObject>(size, QOpenGLFramebufferObject::NoAttachment,
                                                      GL_TEXTURE_2D, sixteenBits);
    glPushAttrib(GL_TEXTURE_BIT);
    glGenTextures(1, &drawn_);
    glBindTexture(GL_TEXTURE_2D, drawn_);
    glTexParameteri(GL_TEXTURE_2D, GL_TEXTURE_MIN_FILTER, GL_NEAREST);
    glTexParameteri(GL_TEXTURE_2D, GL_TEXTURE_MAG_FILTER, GL_NEAREST);
    glTexImage2D(GL_TEXTURE_2D, 0, GL_RGBA8, size.width(), size.height(), 0, GL_RGBA,
                 GL_UNSIGNED_BYTE, nullptr);
    glPopAttrib();
}

Refinement::Mean::~Mean()
{
    glDeleteTextures(1, &drawn_);
}

void Refinement::Mean::add(int count, const QRect &within)
{
    if (count == 1)
        within_ = within & QRect({0, 0}, size_);
    QOpenGLFunctions *gl = QOpenGLContext::currentContext()->functions();
    const FlatState state(size_);
    glBindTexture(GL_TEXTURE_2D, drawn_);
    glCopyTexSubImage2D(GL_TEXTURE_2D, 0, within_.x(), within_.y(), within_.x(), within_.y(),
                        within_.width(), within_.height());
    if (count > 1) {
        glEnable(GL_BLEND);
        gl->glBlendEquation(GL_FUNC_ADD);
        gl->glBlendColor(0, 0, 0, 1.0f / float(count));
        glBlendFunc(GL_CONSTANT_ALPHA, GL_ONE_MINUS_CONSTANT_ALPHA);
    }
    const std::vector<FlatState::Piece> all{{within_, within_.topLeft()}};
    {
        const FramebufferKeeper keeper;
        gl->glBindFramebuffer(GL_FRAMEBUFFER, sum_->handle());
        FlatState::draw(drawn_, size_, all);
    }
    glDisable(GL_BLEND);
    FlatState::draw(sum_->texture(), size_, all);
}

Refinement::Refinement(QWidget *window, std::function<bool()> allowed, const Pace &pace)
    : window_(window), allowed_(std::move(allowed)), pace_(pace)
{
    wait_.setSingleShot(true);
    connect(&wait_, &QTimer::timeout, this, &Refinement::drawOwn);
}

Refinement::~Refinement() = default;

qint64 Refinement::now() const
{
    using namespace std::chrono;
    return pace_.now ? pace_.now()
                     : duration_cast<milliseconds>(steady_clock::now().time_since_epoch()).count();
}

void Refinement::interrupt()
{
    wait_.stop();
    own_ = false;
    gaveUp_ = false;
}

void Refinement::drawOwn()
{
    gaveUp_ = count_ > 0 && !allowed_();
    if (!window_ || !allowed_())
        return;
    const QPointer<Refinement> self(this);
    const qint64 begin = now();
    own_ = true;
    window_->repaint();
    if (!self)
        return;
    own_ = false;
    spent_ += now() - begin;
}

Refinement::Shift::Shift(Refinement &refinement) : shifted_(refinement.own_)
{
    refinement.worth_ = true;
    if (!shifted_)
        return;
    GLint mode = 0, viewport[4];
    glGetIntegerv(GL_MATRIX_MODE, &mode);
    glGetIntegerv(GL_VIEWPORT, viewport);
    glGetDoublev(GL_PROJECTION_MATRIX, projection_);
    double shifted[16];
    std::copy_n(projection_, 16, shifted);
    for (int axis = 0; axis < 2; ++axis) {
        // A pixel is that much of what spans -1 to 1.
        const double pixel = 2.0 / std::max(viewport[2 + axis], 1);
        const double by = places[refinement.count_ % frames][axis] / 16.0 * pixel;
        for (int column = 0; column < 16; column += 4)
            shifted[column + axis] += by * projection_[column + 3];
    }
    glMatrixMode(GL_PROJECTION);
    glLoadMatrixd(shifted);
    glMatrixMode(GLenum(mode));
}

Refinement::Shift::~Shift()
{
    if (!shifted_)
        return;
    GLint mode = 0;
    glGetIntegerv(GL_MATRIX_MODE, &mode);
    glMatrixMode(GL_PROJECTION);
    glLoadMatrixd(projection_);
    glMatrixMode(GLenum(mode));
}

bool Refinement::finish(std::optional<QRect> within)
{
    const bool worth = worth_;
    worth_ = false;
    if (!own_) {
        count_ = 0;
        spent_ = 0;
        if (worth && able_)
            wait_.start(pace_.rest);
        else
            mean_.reset();
        return false;
    }
    const bool added = worth && add(within);
    if (added && count_ < frames && spent_ < pace_.most) {
        wait_.start(pace_.pause);
        return false;
    }
    mean_.reset(); // at rest it is not needed, and it is as large as the window
    return added;
}

/// Returns whether it worked.
bool Refinement::add(const std::optional<QRect> &within)
{
    const QSize size = pixelSize(window_);
    if (!mean_ || mean_->size() != size) {
        mean_ = std::make_unique<Mean>(size);
        able_ = mean_->isValid();
        count_ = 0;
    }
    if (able_)
        mean_->add(++count_, within.value_or(QRect({0, 0}, size)));
    return able_;
}

} // namespace host
