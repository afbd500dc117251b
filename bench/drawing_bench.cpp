// SPDX-License-Identifier: MIT
// What the viewer's ways to draw a model cost, each beside the plain way.
#include <chrono>
#include <cmath>

#include <QGLWidget>
#include <QOpenGLFramebufferObject>
#include <QThreadPool>

#include "GL/glwidget.h"
#include "bench/compare.h"
#include "host/item/detail_budget.h"
#include "host/item/lamps.h"
#include "host/item/mesh_buffers.h"

namespace {

constexpr QSize usual(1024, 1024); // pixels

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
    explicit Scene(std::shared_ptr<host::Mesh> mesh = boxes(20), const QSize &size = usual)
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
    }

    static void setLamps(int count)
    {
        for (int i = 0; i < 3; ++i)
            (i < count ? glEnable : glDisable)(GLenum(GL_LIGHT0 + i));
    }

    /// From @p azimuth; all triangles, or the level of @p most.
    void draw(host::Display::Mode mode, float azimuth = 30, std::size_t most = ~std::size_t(0))
    {
        host::Display display;
        display.mode = mode;
        picture_.bind();
        const QSizeF size = picture_.size();
        glViewport(0, 0, picture_.width(), picture_.height());
        glClear(GL_COLOR_BUFFER_BIT | GL_DEPTH_BUFFER_BIT);
        QMatrix4x4 projection, view;
        projection.perspective(45, float(size.width() / size.height()), 0.1f, 10);
        view.translate(0, 0, -1.7f);
        view.rotate(25, 1, 0, 0);
        view.rotate(azimuth, 0, 1, 0);
        glMatrixMode(GL_PROJECTION);
        glLoadMatrixf(projection.constData());
        glMatrixMode(GL_MODELVIEW);
        glLoadMatrixf(view.constData());
        host::placeLamps(&lit_, host::CameraGeometry(lit_.camera, size));
        for (GL::Light &lamp : lit_.lights)
            lamp.Reposition();
        const bool fewer = levels_.choose(levels_.levelFor(*mesh_, most));
        drawn_ = fewer ? levels_.triangleCount() : mesh_->triangleCount();
        buffers_.draw(*mesh_, display, marks_, &edges_, fewer ? &levels_ : nullptr);
    }
    QImage picture() const { return picture_.toImage(); }
    int triangles() const { return int(mesh_->triangleCount()); }
    std::size_t drawn() const { return drawn_; } ///< Of them, in the last picture.

private:
    QGLWidget widget_;
    GLWidget lit_{nullptr, "lit"}; // its lights alone
    std::shared_ptr<host::Mesh> mesh_;
    host::PartMarks marks_;
    QOpenGLFramebufferObject picture_;
    host::MeshBuffers buffers_;
    host::EdgeLines edges_;
    host::LevelBuffers levels_;
    std::size_t drawn_ = 0;
};

/// @p drawn against the shaded surface, in one run.
void compareWithPlain(benchmark::State &state, const std::function<void(Scene &)> &drawn)
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
        const QImage plain = scene.picture();
        c.module();
        return scene.picture() != plain;
    };
    c.items = scene.triangles();
    c.gl = true;
    compare(state, c);
}

void Drawing(benchmark::State &state, host::Display::Mode mode)
{
    compareWithPlain(state, [mode](Scene &scene) { scene.draw(mode); });
}

/// The other way round: what there would be to gain with one lamp alone.
void DrawingOneLamp(benchmark::State &state)
{
    compareWithPlain(state, [](Scene &scene) {
        Scene::setLamps(1);
        scene.draw(host::Display::Mode::Shaded);
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
    state.counters["drawn"] = double(scene.drawn());
}

BENCHMARK_CAPTURE(Drawing, Edged, host::Display::Mode::Edged)
    ->UseManualTime()
    ->Unit(benchmark::kMillisecond);
BENCHMARK_CAPTURE(Drawing, HiddenLines, host::Display::Mode::HiddenLines)
    ->UseManualTime()
    ->Unit(benchmark::kMillisecond);
BENCHMARK(Turning)->UseManualTime()->Unit(benchmark::kMillisecond);
BENCHMARK(DrawingOneLamp)->UseManualTime()->Unit(benchmark::kMillisecond);

} // namespace
