// SPDX-License-Identifier: MIT
// A whole frame of a multi-view beside a bare loop that issues the same GL calls in the same order,
// in the same window and context, without objects, properties and signals.
#include <algorithm>
#include <cmath>
#include <vector>

#include <GL/glu.h>
#include <QCoreApplication>
#include <QPainter>

#include "GL/glmultiwidget.h"
#include "GL/glwindow.h"
#include "bench/compare.h"

namespace {

constexpr int side = 1024; // of the window, pixels
constexpr int depth = 100; // of a 2D pass, either way

using Pixels = std::vector<quint32>;

Pixels readPixels()
{
    Pixels pixels(size_t(side) * side);
    glReadPixels(0, 0, side, side, GL_RGBA, GL_UNSIGNED_BYTE, pixels.data());
    return pixels;
}

/// A sphere of some hundred triangles, and where the two ways keep what they drew.
struct Mesh {
    GLuint list = glGenLists(1);
    bool capture = false;
    Pixels moduleDrew, bareDrew;

    Mesh()
    {
        GLUquadric *quadric = gluNewQuadric();
        glNewList(list, GL_COMPILE);
        gluSphere(quadric, 1, 8, 9);
        glEndList();
        gluDeleteQuadric(quadric);
    }
    ~Mesh() { glDeleteLists(list, 1); }
    static quint32 colour(int id) { return 0xff0000ffu | quint32(id * 97 % 65536 + 1) << 8; }
    void draw(int id) const
    {
        const quint32 c = colour(id);
        glColor3ub(GLubyte(c), GLubyte(c >> 8), GLubyte(c >> 16));
        glCallList(list);
    }
};

/// The host: what it draws is the same in both ways.
class Host : public QObject {
    Q_OBJECT

public:
    explicit Host(Mesh &m) : mesh(m) {}

public Q_SLOTS:
    void Draw3D(GLW *w) { mesh.draw(w->id()); }
    void Pick3D(GLW *w) { mesh.draw(w->id()); }
    void DrawFG(GLW *)
    {
        if (mesh.capture)
            mesh.moduleDrew = readPixels();
    }

private:
    Mesh &mesh;
};

struct BareTile {
    int id;
    int left, top, width, height; // window pixels from the top
    float eye[3], up[3], nearZ, farZ, fov;
    GLdouble model[16], projection[16];
    GLint viewport[4];
};

class BareLoop {
public:
    BareLoop(QGLWindow &w, Mesh &m) : window(w), mesh(m) {}
    void add(const GLTile &t);
    void frame();

private:
    struct Region {
        double x, y, size;
    };
    void setup3D(BareTile &t, const Region *pick);
    void setup2D(int width, int height, GLint viewport[4], const Region *pick);
    void pick(BareTile &t);
    void whole();

    QGLWindow &window;
    Mesh &mesh;
    std::vector<BareTile> tiles;
};

void BareLoop::add(const GLTile &t)
{
    const GL::Camera &c = t.camera;
    tiles.push_back({t.id(),
                     int(t.x()),
                     int(t.y()),
                     int(t.width()),
                     int(t.height()),
                     {c.pos.x, c.pos.y, c.pos.z},
                     {c.up.x, c.up.y, c.up.z},
                     c.nearZ,
                     c.farZ,
                     c.fov,
                     {},
                     {},
                     {}});
}

void BareLoop::setup3D(BareTile &t, const Region *pick)
{
    glMatrixMode(GL_PROJECTION);
    glLoadIdentity();
    glGetIntegerv(GL_VIEWPORT, t.viewport);
    if (pick)
        gluPickMatrix(pick->x, pick->y, pick->size, pick->size, t.viewport);
    gluPerspective(t.fov, double(t.width) / t.height, t.nearZ, t.farZ);
    glMatrixMode(GL_MODELVIEW);
    glLoadIdentity();
    gluLookAt(t.eye[0], t.eye[1], t.eye[2], 0, 0, 0, t.up[0], t.up[1], t.up[2]);
    glGetDoublev(GL_MODELVIEW_MATRIX, t.model);
    glGetDoublev(GL_PROJECTION_MATRIX, t.projection);
}

void BareLoop::setup2D(int width, int height, GLint viewport[4], const Region *pick)
{
    glMatrixMode(GL_PROJECTION);
    glLoadIdentity();
    glGetIntegerv(GL_VIEWPORT, viewport);
    if (pick)
        gluPickMatrix(pick->x, pick->y, pick->size, pick->size, viewport);
    glOrtho(0, width - 1, height - 1, 0, -depth, depth);
    glMatrixMode(GL_MODELVIEW);
    glLoadIdentity();
    glScalef(1, 1, 1);
    glTranslatef(0, 0, 0);
}

void BareLoop::whole()
{
    GLint viewport[4];
    glViewport(0, 0, side, side);
    setup2D(side, side, viewport, nullptr);
}

void BareLoop::pick(BareTile &t)
{
    const Region region{double(window.mouse.x), double(window.mouse.y), 4};
    setup3D(t, &region);
    glDisable(GL_LIGHTING);
    mesh.draw(t.id);
    setup2D(t.width, t.height, t.viewport, &region);
    glDisable(GL_LIGHTING);
}

void BareLoop::frame()
{
    window.makeCurrent(); // once for the repaint, once for the frame
    window.makeCurrent();
    glClear(GL_COLOR_BUFFER_BIT | GL_DEPTH_BUFFER_BIT);
    const int x = window.mouse.x, y = side - window.mouse.y;
    for (BareTile &t : tiles) {
        glViewport(t.left, side - t.height - t.top, t.width, t.height);
        if (x >= t.left && x <= t.left + t.width && y >= t.top && y <= t.top + t.height)
            pick(t);
    }
    whole();
    for (BareTile &t : tiles) {
        glViewport(t.left, side - t.height - t.top, t.width, t.height);
        setup3D(t, nullptr);
        mesh.draw(t.id);
        setup2D(t.width, t.height, t.viewport, nullptr);
    }
    whole();
    if (mesh.capture)
        mesh.bareDrew = readPixels();
    glColor3f(1, 1, 1);
    glPushAttrib(GL_ALL_ATTRIB_BITS);
    glDisable(GL_DEPTH_BUFFER_BIT); // not a capability; the window's frame has this call
    glPopAttrib();
    {
        QPainter painter(&window);
        painter.end();
    }
    window.swapBuffers();
}

/// Whether both ways drew the same picture, with every tile's colour in its middle.
bool drewTheSame(const Mesh &mesh, const GLMultiWidget &view)
{
    if (mesh.moduleDrew.empty() || mesh.moduleDrew != mesh.bareDrew)
        return false;
    return std::all_of(view.tiles.begin(), view.tiles.end(), [&](const GLTile *t) {
        const QPoint p = t->orect.center().toPoint();
        const size_t at = size_t(side - 1 - p.y()) * side + size_t(p.x());
        return mesh.moduleDrew[at] == Mesh::colour(t->id());
    });
}

void Frame(benchmark::State &state)
{
    const int count = int(state.range(0));
    QGLWindow window(nullptr, "window");
    window.fps(0);
    window.setProperty("drawfps", false);
    window.setFixedSize(side, side);
    window.show();
    while (!window.isVisible() || !window.isValid())
        QCoreApplication::processEvents();
    QCoreApplication::processEvents();
    window.makeCurrent();
    glEnable(GL_DEPTH_TEST);
    Mesh mesh;
    Host host(mesh);
    GLMultiWidget view(nullptr, "view");
    window.AddGLWidget(&view);
    view.Connect(&host);
    for (int id = 1; id <= count; ++id) {
        view.AddTile(uint(id));
        view.tiles[uint(id)]->camera.radius = 4;
    }
    window.updateGL();
    const GLTile &pointed = *view.tiles[uint(count / 2 + 1)];
    window.mouse.x = int(pointed.orect.center().x());
    window.mouse.y = side - int(pointed.orect.center().y());
    BareLoop bare(window, mesh);
    for (const GLTile *tile : qAsConst(view.tiles))
        bare.add(*tile);

    Contest c;
    c.module = [&] { window.updateGL(); };
    c.bare = [&] { bare.frame(); };
    c.correct = [&] {
        mesh.capture = true;
        c.module();
        c.bare();
        mesh.capture = false;
        return drewTheSame(mesh, view);
    };
    c.items = count;
    c.gl = true;
    compare(state, c);
    window.RemoveGLWidget(&view);
}

BENCHMARK(Frame)->Arg(1)->Arg(16)->Arg(64)->Arg(256)->Arg(1024)->UseManualTime()->MinTime(20)->Unit(
    benchmark::kMillisecond);

} // namespace

#include "frame_bench.moc"
