// SPDX-License-Identifier: MIT
// What the viewer's ways to draw a model cost, each beside the plain way.
#include <chrono>
#include <cmath>
#include <functional>

#include <QGLWidget>
#include <QImage>
#include <QOpenGLFramebufferObject>
#include <QThreadPool>

#include "GL/glwidget.h"
#include "bench/compare.h"
#include "host/item/detail_budget.h"
#include "host/item/lamps.h"
#include "host/item/mesh_buffers.h"
#include "host/item/model_section.h"

namespace {

constexpr QSize usual(1024, 1024); // pixels
constexpr int perSide = 20;        // boxes
const host::CutPlane middle{{0, 0, 1}, 0.015};

/// A block of @p count boxes each way, with air between them: 12 triangles and 12 edges each.
std::shared_ptr<host::Mesh> boxes(int count)
{
    auto mesh = std::make_shared<host::Mesh>();
    const auto add = [&](const QVector3D &at, const QVector3D &normal) {
        for (int k = 0; k < 3; ++k) {
            mesh->positions.push_back(at[k] / float(count) - 0.5f);
            mesh->normals.push_back(normal[k]);
        }
    };
    for (int box = 0; box < count * count * count; ++box) {
        const QVector3D corner(float(box % count), float(box / count % count),
                               float(box / count / count));
        for (int face = 0; face < 6; ++face) {
            QVector3D normal, u, v;
            normal[face / 2] = face % 2 ? 1 : -1;
            u[(face / 2 + 1) % 3] = 0.7f;
            v[(face / 2 + 2) % 3] = 0.7f;
            const QVector3D base = corner + (face % 2 ? normal * 0.7f : QVector3D());
            const auto first = quint32(mesh->vertexCount());
            for (const QVector3D &at : {base, base + u, base + u + v, base + v})
                add(at, normal);
            for (const quint32 i : {0, 1, 2, 0, 2, 3})
                mesh->indices.push_back(first + i);
        }
    }
    mesh->min = {-0.5f, -0.5f, -0.5f};
    mesh->max = {0.5f, 0.5f, 0.5f};
    host::MeshPart part;
    part.indexCount = quint32(mesh->indices.size());
    mesh->parts.push_back(part);
    return mesh;
}

/// Boxes under a texture of yellow and dark yellow, 512 x 512 pixels.
std::shared_ptr<host::Mesh> covered(const host::Mesh &plain)
{
    auto mesh = std::make_shared<host::Mesh>(plain);
    host::Texture texture{512, 512, {}};
    for (quint32 i = 0; i < 512 * 512; ++i) {
        const quint8 value = (i / 32 + i / 512 / 32) % 2 == 0 ? 255 : 128;
        texture.pixels.insert(texture.pixels.end(), {value, value, 0, 255});
    }
    for (std::size_t face = 0; face < mesh->vertexCount() / 4; ++face)
        mesh->uvs.insert(mesh->uvs.end(), {0, 0, 1, 0, 1, 1, 0, 1});
    mesh->textures = {std::make_shared<host::Texture>(texture)};
    mesh->parts[0].cover.texture = 0;
    return mesh;
}

/// A ring with bumps, of two triangles for each of @p around x @p across places.
std::shared_ptr<host::Mesh> ring(int around, int across)
{
    auto mesh = std::make_shared<host::Mesh>();
    const auto at = [&](int i, int j) {
        const double u = 2 * M_PI * i / around, v = 2 * M_PI * j / across;
        const double r = 0.13 + 0.006 * std::sin(24 * u) * std::sin(18 * v);
        const double from = 0.34 + r * std::cos(v);
        return QVector3D(float(from * std::cos(u)), float(from * std::sin(u)),
                         float(r * std::sin(v)));
    };
    const auto number = [&](int i, int j) { return quint32(i % around * across + j % across); };
    for (int i = 0; i < around; ++i)
        for (int j = 0; j < across; ++j) {
            const QVector3D p = at(i, j); // times a thousand, since a short vector has no direction
            const QVector3D n =
                QVector3D::normal((at(i + 1, j) - p) * 1000, (at(i, j + 1) - p) * 1000);
            for (int k = 0; k < 3; ++k) {
                mesh->positions.push_back(p[k]);
                mesh->normals.push_back(n[k]);
            }
            const quint32 a = number(i, j), b = number(i + 1, j), c = number(i + 1, j + 1);
            for (const quint32 corner : {a, b, c, a, c, number(i, j + 1)})
                mesh->indices.push_back(corner);
        }
    mesh->findBounds();
    host::MeshPart part;
    part.indexCount = quint32(mesh->indices.size());
    mesh->parts.push_back(part);
    return mesh;
}

/// One model in a picture off the screen.
class Scene {
public:
    explicit Scene(std::shared_ptr<host::Mesh> mesh = boxes(perSide), const QSize &size = usual)
        : mesh_(std::move(mesh)),
          marks_(mesh_->parts.size()),
          picture_((widget_.makeCurrent(), size), QOpenGLFramebufferObject::CombinedDepthStencil)
    {
        buffers_.create(*mesh_, {}, 1);
        edges_.request(mesh_);
        levels_.request(mesh_);
        QThreadPool::globalInstance()->waitForDone();
        host::hangLamps(&lit_);
    }
    ~Scene()
    {
        widget_.makeCurrent();
        edges_.destroy();
        levels_.destroy();
        buffers_.destroy();
        coveredBuffers_.destroy();
        section_.release();
    }

    static void setLamps(int count)
    {
        for (int i = 0; i < 3; ++i)
            (i < count ? glEnable : glDisable)(GLenum(GL_LIGHT0 + i));
    }

    /// From @p azimuth; all triangles, or the level of @p most.
    void draw(host::Display::Mode mode, float azimuth = 30, std::size_t most = ~std::size_t(0))
    {
        const host::Display display = begin(mode, azimuth);
        const int level = levels_.levelFor(*mesh_, most);
        const bool fewer = level >= 0;
        if (fewer)
            levels_.choose(level);
        drawn_ = fewer ? levels_.triangleCount() : mesh_->triangleCount();
        buffers_.draw(*mesh_, display, marks_, &edges_, fewer ? &levels_ : nullptr);
    }
    /// Boxes; what is drawn with is made the first time.
    void drawTextured()
    {
        const host::Display display = begin(host::Display::Mode::Shaded);
        if (!covered_)
            covered_ = covered(*mesh_);
        coveredBuffers_.create(*covered_, {}, 1);
        coveredBuffers_.draw(*covered_, display, marks_);
    }
    /// The same; cut faces are found once, as while only the camera moves.
    void drawCut()
    {
        const host::Display display = begin(host::Display::Mode::Shaded);
        if (section_.get().planes.empty()) {
            section_.setMesh(mesh_, {}, 1);
            section_.set({{middle}});
            QThreadPool::globalInstance()->waitForDone();
        }
        const host::ModelSection::Clipping clipping(section_);
        section_.drawCaps(host::SectionCaps::Opaque, display, marks_, 0.001);
        buffers_.draw(*mesh_, display, marks_);
        section_.drawCaps(host::SectionCaps::Transparent, display, marks_, 0.001);
    }

    /// What a picture shows of the box in the middle of the near side, or inside of it, at shares
    /// of its width and height.
    QColor onBox(float x, float y, bool inside = false) const
    {
        const float z = inside ? float(middle.offset) : (perSide - 0.3f) / perSide - 0.5f;
        const QVector3D at =
            (projection_ * view_).map(QVector3D(x * 0.7f / perSide, y * 0.7f / perSide, z));
        return picture().pixel(int((at.x() + 1) * float(picture_.width()) / 2),
                               int((1 - at.y()) * float(picture_.height()) / 2));
    }
    QColor beside() const { return picture().pixel(5, 5); } ///< In the corner, off all boxes.
    QImage picture() const { return picture_.toImage(); }
    int triangles() const { return int(mesh_->triangleCount()); }
    std::size_t drawn() const { return drawn_; } ///< Of them, in the last picture.

private:
    /// Clears the picture, and sets camera and lamps.
    host::Display begin(host::Display::Mode mode, float azimuth = 30)
    {
        host::Display display;
        display.mode = mode;
        picture_.bind();
        const QSizeF size = picture_.size();
        glViewport(0, 0, picture_.width(), picture_.height());
        glClear(GL_COLOR_BUFFER_BIT | GL_DEPTH_BUFFER_BIT);
        projection_ = view_ = {};
        projection_.perspective(45, float(size.width() / size.height()), 0.1f, 10);
        view_.translate(0, 0, -1.7f);
        view_.rotate(25, 1, 0, 0);
        view_.rotate(azimuth, 0, 1, 0);
        glMatrixMode(GL_PROJECTION);
        glLoadMatrixf(projection_.constData());
        glMatrixMode(GL_MODELVIEW);
        glLoadMatrixf(view_.constData());
        host::placeLamps(&lit_, host::CameraGeometry(lit_.camera, size));
        for (GL::Light &lamp : lit_.lights)
            lamp.Reposition();
        return display;
    }

    QGLWidget widget_;
    GLWidget lit_{nullptr, "lit"}; // its lights alone
    QMatrix4x4 projection_, view_;
    std::shared_ptr<host::Mesh> mesh_, covered_;
    host::PartMarks marks_;
    QOpenGLFramebufferObject picture_;
    host::MeshBuffers buffers_, coveredBuffers_;
    host::ModelSection section_;
    host::EdgeLines edges_;
    host::LevelBuffers levels_;
    std::size_t drawn_ = 0;
};

/// @p drawn against the shaded surface, in one run; @p isRight looks at its picture.
void compareWithPlain(benchmark::State &state, const std::function<void(Scene &)> &drawn,
                      const std::function<bool(const Scene &, const QColor &plain)> &isRight)
{
    Scene scene;
    Contest c;
    c.module = [&] { drawn(scene); };
    c.bare = [&] {
        Scene::setLamps(3);
        scene.draw(host::Display::Mode::Shaded);
    };
    c.correct = [&] {
        c.bare();
        const QColor plain = scene.onBox(0.25f, 0.6f);
        if (plain.value() < 32 || scene.beside().value() > 0)
            return false;
        c.module();
        return scene.beside().value() == 0 && isRight(scene, plain);
    };
    c.items = scene.triangles();
    c.gl = true;
    compare(state, c);
}

void Drawing(benchmark::State &state, host::Display::Mode mode)
{
    const auto isRight = [mode](const Scene &scene, const QColor &plain) {
        const bool filled = mode == host::Display::Mode::Edged;
        const host::Theme &theme = host::Display().theme();
        bool line = false; // at the left side, within a pixel or two
        for (const float x : {-0.04f, -0.02f, 0.0f, 0.02f, 0.04f})
            line = line || scene.onBox(x, 0.6f) == (filled ? theme.edge : theme.ink);
        return line && scene.onBox(0.25f, 0.6f) == (filled ? plain : QColor(Qt::black));
    };
    compareWithPlain(
        state, [mode](Scene &scene) { scene.draw(mode); }, isRight);
}

void DrawingTextured(benchmark::State &state)
{
    compareWithPlain(
        state, [](Scene &scene) { scene.drawTextured(); },
        [](const Scene &scene, const QColor &plain) {
            const QColor now = scene.onBox(0.25f, 0.6f);
            return now.blue() < plain.blue() / 2 && now.red() > plain.red() / 3;
        });
}

void DrawingCut(benchmark::State &state)
{
    compareWithPlain(
        state, [](Scene &scene) { scene.drawCut(); },
        [](const Scene &scene, const QColor &plain) {
            const QColor face = scene.onBox(0.25f, 0.6f, true);
            return face.value() > 32 && face != plain; // darker, and hatched
        });
}

/// The other way round: what there would be to gain with one lamp alone.
void DrawingOneLamp(benchmark::State &state)
{
    compareWithPlain(
        state,
        [](Scene &scene) {
            Scene::setLamps(1);
            scene.draw(host::Display::Mode::Shaded);
        },
        [](const Scene &scene, const QColor &plain) {
            const int now = scene.onBox(0.25f, 0.6f).value();
            return now > 0 && now <= plain.value();
        });
}

/// The mean difference of a colour, 0 to 255.
double difference(const QImage &a, const QImage &b)
{
    double sum = 0;
    for (int y = 0; y < a.height(); ++y)
        for (int x = 0; x < a.width(); ++x) {
            const QRgb p = a.pixel(x, y), q = b.pixel(x, y);
            sum += std::abs(qGray(p) - qGray(q));
        }
    return sum / (a.width() * a.height());
}

/// A large model that turns, with as much detail as the frames before let it have.
void Turning(benchmark::State &state)
{
    Scene scene(ring(1000, 750), {800, 600});
    host::DetailBudget budget;
    float azimuth = 0;
    Contest c;
    c.module = [&] {
        const auto begin = std::chrono::steady_clock::now();
        scene.draw(host::Display::Mode::Shaded, azimuth += 2, budget.most());
        glFinish();
        budget.drew(scene.drawn());
        const auto took = std::chrono::steady_clock::now() - begin;
        budget.advance(true, 0, std::chrono::duration<double>(took).count());
    };
    c.bare = [&] { scene.draw(host::Display::Mode::Shaded, azimuth); };
    c.correct = [&] { // once it has found its level, both look alike
        for (int i = 0; i < 20; ++i)
            c.module();
        const QImage reduced = scene.picture();
        const bool isLess = scene.drawn() * 4 <= std::size_t(scene.triangles());
        c.bare();
        const double off = difference(reduced, scene.picture());
        state.counters["off"] = off;
        return isLess && off < 4;
    };
    c.items = scene.triangles();
    c.gl = true;
    compare(state, c);
}

BENCHMARK_CAPTURE(Drawing, Edged, host::Display::Mode::Edged)
    ->UseManualTime()
    ->Unit(benchmark::kMillisecond);
BENCHMARK_CAPTURE(Drawing, HiddenLines, host::Display::Mode::HiddenLines)
    ->UseManualTime()
    ->Unit(benchmark::kMillisecond);
BENCHMARK(Turning)->UseManualTime()->Unit(benchmark::kMillisecond);
BENCHMARK(DrawingTextured)->UseManualTime()->Unit(benchmark::kMillisecond);
BENCHMARK(DrawingCut)->UseManualTime()->Unit(benchmark::kMillisecond);
BENCHMARK(DrawingOneLamp)->UseManualTime()->Unit(benchmark::kMillisecond);

} // namespace
