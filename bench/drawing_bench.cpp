// SPDX-License-Identifier: MIT
// What the viewer's ways to draw a model cost, each beside the plain way.
#include <QGLWidget>
#include <QOpenGLFramebufferObject>
#include <QThreadPool>

#include "GL/glwidget.h"
#include "bench/compare.h"
#include "host/item/lamps.h"
#include "host/item/mesh_buffers.h"

namespace {

constexpr int side = 1024; // pixels, both ways

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

/// One model of about 100,000 triangles in a picture off the screen.
class Scene {
public:
    Scene()
        : mesh_(boxes(20)),
          marks_(mesh_->parts.size()),
          picture_((widget_.makeCurrent(), QSize(side, side)),
                   QOpenGLFramebufferObject::CombinedDepthStencil)
    {
        buffers_.create(*mesh_, {}, 1);
        edges_.request(mesh_);
        QThreadPool::globalInstance()->waitForDone();
        host::hangLamps(&lit_);
    }
    ~Scene()
    {
        widget_.makeCurrent();
        edges_.destroy();
        buffers_.destroy();
    }

    static void setLamps(int count)
    {
        for (int i = 0; i < 3; ++i)
            (i < count ? glEnable : glDisable)(GLenum(GL_LIGHT0 + i));
    }

    void draw(host::Display::Mode mode)
    {
        host::Display display;
        display.mode = mode;
        picture_.bind();
        glViewport(0, 0, side, side);
        glClear(GL_COLOR_BUFFER_BIT | GL_DEPTH_BUFFER_BIT);
        QMatrix4x4 projection, view;
        projection.perspective(45, 1, 0.1f, 10);
        view.translate(0, 0, -1.7f);
        view.rotate(25, 1, 0, 0);
        view.rotate(30, 0, 1, 0);
        glMatrixMode(GL_PROJECTION);
        glLoadMatrixf(projection.constData());
        glMatrixMode(GL_MODELVIEW);
        glLoadMatrixf(view.constData());
        host::placeLamps(&lit_, host::CameraGeometry(lit_.camera, QSizeF(side, side)));
        for (GL::Light &lamp : lit_.lights)
            lamp.Reposition();
        buffers_.draw(*mesh_, display, marks_, &edges_);
    }
    QImage picture() const { return picture_.toImage(); }
    int triangles() const { return int(mesh_->triangleCount()); }

private:
    QGLWidget widget_;
    GLWidget lit_{nullptr, "lit"}; // its lights alone
    std::shared_ptr<host::Mesh> mesh_;
    host::PartMarks marks_;
    QOpenGLFramebufferObject picture_;
    host::MeshBuffers buffers_;
    host::EdgeLines edges_;
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

BENCHMARK_CAPTURE(Drawing, Edged, host::Display::Mode::Edged)
    ->UseManualTime()
    ->Unit(benchmark::kMillisecond);
BENCHMARK_CAPTURE(Drawing, HiddenLines, host::Display::Mode::HiddenLines)
    ->UseManualTime()
    ->Unit(benchmark::kMillisecond);
BENCHMARK(DrawingOneLamp)->UseManualTime()->Unit(benchmark::kMillisecond);

} // namespace
