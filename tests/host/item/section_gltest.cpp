// SPDX-License-Identifier: MIT
// What a cut model shows and what the pointer finds on it: colours at places known from geometry.
#include <cmath>

#include <QTest>

#include "GL/glwidget.h"
#include "GL/glwindow.h"
#include "host/item/model_item.h"
#include "tests/GL/table.h"

namespace host {
namespace {

/// Boxes around the middle, a part each: half their sizes, and their colours.
struct Part {
    float half;
    std::array<float, 4> colour;
    bool open = false; // without the side at +z
};

MeshPtr nested(const std::vector<Part> &parts)
{
    constexpr int faces[6][4] = {{4, 5, 7, 6}, {0, 4, 6, 2}, {1, 3, 7, 5},
                                 {0, 1, 5, 4}, {2, 6, 7, 3}, {0, 2, 3, 1}};
    auto mesh = std::make_shared<Mesh>();
    for (const Part &box : parts) {
        MeshPart part;
        part.name = "box";
        part.colour = box.colour;
        part.firstIndex = quint32(mesh->indices.size());
        for (int f = box.open ? 1 : 0; f < 6; ++f)
            for (int k : {0, 1, 2, 0, 2, 3}) {
                mesh->indices.push_back(quint32(mesh->vertexCount()));
                for (int axis = 0; axis < 3; ++axis)
                    mesh->positions.push_back(faces[f][k] >> axis & 1 ? box.half : -box.half);
                mesh->normals.insert(mesh->normals.end(), {0, 0, 1});
            }
        part.indexCount = quint32(mesh->indices.size()) - part.firstIndex;
        mesh->parts.push_back(part);
    }
    mesh->max = QVector3D(1, 1, 1) * parts[0].half;
    mesh->min = -mesh->max;
    return mesh;
}

const Part red{2, {1, 0, 0, 1}}, green{1, {0, 1, 0, 1}}, glass{2, {1, 0, 0, .5f}};
const Part openRed{2, {1, 0, 0, 1}, true}, black{2, {0, 0, 0, 1}};
const CutPlane front{{0, 0, 1}, 0}, right{{1, 0, 0}, .2}, back{{0, 0, -1}, 0};

struct SeenCase {
    const char *name;
    std::vector<Part> parts;
    std::vector<CutPlane> planes;
    const char
        *seen;   // from the left edge of the largest box to its right one, at -1.5 to 1.5 by 1:
                 // r, g: a cut face; R, G: a side; d: a dark one's face; b: background; m: mixed
    int part[4]; // that the pointer finds there
    int hidden = -1;
    Display::Mode mode = Display::Mode::Shaded;
};

const SeenCase seenCases[] = {
    {"Whole", {red, green}, {}, "RRRR", {0, 0, 0, 0}},
    {"Front", {red, green}, {front}, "rggr", {0, 1, 1, 0}},
    {"FrontAndRight", {red, green}, {front, right}, "rgbb", {0, 1, -1, -1}},
    {"InnerHidden", {red, green}, {front}, "rrrr", {0, 0, 0, 0}, 1},
    {"OuterHidden", {red, green}, {front}, "bggb", {-1, 1, 1, -1}, 0},
    {"OpenHasNoFace", {openRed, green}, {front}, "RggR", {0, 1, 1, 0}},
    {"FromTheOtherSide", {red, green}, {back}, "RRRR", {0, 0, 0, 0}},
    {"Glass", {glass}, {front}, "mmmm", {0, 0, 0, 0}},
    {"GlassOverItsContents", {glass, green}, {front}, "mggm", {0, 1, 1, 0}},
    {"Dark", {black}, {front}, "dddd", {0, 0, 0, 0}},
    {"HiddenLines", {red, green}, {front}, "rggr", {0, 1, 1, 0}, -1, Display::Mode::HiddenLines},
    {"Wireframe", {red}, {front}, "bbbb", {0, 0, 0, 0}, -1, Display::Mode::Wireframe},
};

TABLE(SectionSeen, testing::Test, SeenCase, seenCases);

char nameOf(const quint8 *p)
{
    const int r = p[0], g = p[1], b = p[2];
    if (b > 250 && r + g < 5)
        return 'b';
    if (b > 20 && r > 60)
        return r == g && g == b ? 'd' : 'm';
    if (r > 250 || g > 250)
        return r > g ? 'R' : 'G';
    if (std::max(r, g) > 120 && std::min(r, g) < 5 && b < 5)
        return r > g ? 'r' : 'g';
    return r == g && g == b && r > 15 ? 'd' : '?';
}

TEST_P(SectionSeen, AndFoundByThePointer)
{
    const SeenCase &row = GetParam();
    QGLWindow window(nullptr, "window");
    window.fps(0);
    window.resize(160, 160);
    window.show();
    ASSERT_TRUE(QTest::qWaitForWindowExposed(&window));
    window.makeCurrent();
    GLWidget glw(nullptr, "glw");
    glw.setGeometry({0, 0, 160, 160});
    ModelItem item("a", nested(row.parts));
    item.init(&glw);
    glw.camera.ortho = 1;
    glw.camera.rot = {0, 0, 0};
    glw.camera.setTarget = {0, 0, 0};
    item.setSection({row.planes});
    if (row.hidden >= 0)
        item.marks().setHidden(std::size_t(row.hidden), true);
    ASSERT_TRUE(QTest::qWaitFor([&] { return !item.isBusy(); }, 20000));
    EXPECT_EQ(item.sectionFrames().size(), row.planes.size());

    const CameraGeometry geometry = CameraSteering::geometryOf(&glw);
    const double half = double(geometry.halfHeight(1));
    QMatrix4x4 projection, view;
    projection.ortho(float(-half), float(half), float(-half), float(half), -9, 9);
    glViewport(0, 0, 160, 160);
    glClearColor(0, 0, 1, 1);
    glDepthMask(GL_TRUE);
    glClear(GL_COLOR_BUFFER_BIT | GL_DEPTH_BUFFER_BIT);
    glMatrixMode(GL_PROJECTION);
    glLoadMatrixf(projection.constData());
    glMatrixMode(GL_MODELVIEW);
    glLoadIdentity();
    Display display;
    display.lighting = false;
    display.mode = row.mode;
    item.draw3D(&glw, display);
    EXPECT_FALSE(glIsEnabled(GL_CLIP_PLANE0) || glIsEnabled(GL_TEXTURE_1D));
    std::string seen;
    for (int i = 0; i < 4; ++i) {
        // Off the diagonals, where triangles meet, and low in the picture.
        const QPointF at = geometry.pixel(QVector3D(float(i) - 1.5f, -.8f, 0) * item.scale());
        quint8 p[3];
        glReadPixels(int(at.x()), int(at.y()), 1, 1, GL_RGB, GL_UNSIGNED_BYTE, p);
        seen += nameOf(p);
        item.pick3D(&glw, at);
        EXPECT_EQ(item.hoveredPart(), row.part[i]) << i;
    }
    EXPECT_EQ(seen, row.seen);
    item.release();
    EXPECT_EQ(glGetError(), GLenum(GL_NO_ERROR));
}

} // namespace
} // namespace host
