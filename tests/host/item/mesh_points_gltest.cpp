// SPDX-License-Identifier: MIT
// Lines and points as they are drawn, by the colours of pixels.
#include <cmath>

#include <QTest>

#include "GL/glwindow.h"
#include "host/item/mesh_buffers.h"
#include "tests/GL/table.h"

namespace host {
namespace {

using Kind = MeshPart::Kind;

constexpr QColor ground()
{
    return {0, 0, 255};
}

/// In pixels from the middle: a red point at (0, 0), a green one, which is near, at (12, 0), a grey
/// one at (-12, 0), and a yellow line along y = 12.5 on a white square from (-8, 8) to (8, 16).
Mesh drawing()
{
    Mesh mesh;
    mesh.positions = {-8, 8,     0, 8, 8, 0, 8,  16, 0, -8,  16, 0, -8,  12.5f, 0,
                      8,  12.5f, 0, 0, 0, 0, 12, 0,  9, -12, 0,  0, -12, -12,   0};
    for (int i = 0; i < 4; ++i)
        mesh.normals.insert(mesh.normals.end(), {0, 0, 1});
    mesh.indices = {0, 1, 2, 0, 2, 3, 4, 5};
    mesh.parts = {{"square", {}, {1, 1, 1, 1}, 0, 6},
                  {"line", {}, {1, 1, 0, 1}, 6, 2, Kind::Lines},
                  {"red", {}, {1, 0, 0, 0.5f}, 8, 0, Kind::Points, 6, 1},
                  {"green", {}, {0, 1, 0, 1}, 8, 0, Kind::Points, 7, 1},
                  {"grey", {}, {0.6f, 0.6f, 0.6f, 1}, 8, 0, Kind::Points, 8, 2}};
    mesh.findBounds();
    return mesh;
}

/// The ink in the middle of the depth: 0.275 of it is the background's mean.
QColor faded()
{
    const Theme &theme = Display().theme();
    const auto mix = [&](int ink, int top, int bottom) {
        return int(std::lround(0.725 * ink + 0.275 * (top + bottom) / 2));
    };
    return {mix(theme.ink.red(), theme.top.red(), theme.bottom.red()),
            mix(theme.ink.green(), theme.top.green(), theme.bottom.green()),
            mix(theme.ink.blue(), theme.top.blue(), theme.bottom.blue())};
}

struct ThinCase {
    const char *name;
    QPoint at; // from the middle
    QColor seen;
    int hidden = -1, selected = -1;
    std::size_t most = 9;
    float scale = 1;
    bool wireframe = false, coloured = false, together = false;
};

const QColor red{255, 0, 0}, green{0, 255, 0}, yellow{255, 255, 0}, white{255, 255, 255};
const QColor accent = Display().theme().accent;

const ThinCase thinCases[] = {
    {"Point", {0, 0}, red},
    {"PointIsAsWideAsAsked", {3, 3}, red},
    {"AndNotWider", {5, 0}, ground()},
    {"WiderInALargerPicture", {0, 5}, red, -1, -1, 9, 2},
    {"GreyTakesTheInkAndFades", {-12, 0}, faded()},
    {"TheSecondOfAPart", {-12, -12}, faded()},
    {"ASample", {-12, -12}, ground(), -1, -1, 2},
    {"SomethingOfEachPart", {0, 0}, red, -1, -1, 1},
    {"Near", {12, 0}, green},
    {"NearInFrontOfOthers", {0, 0}, green, -1, -1, 9, 1, false, false, true},
    {"Line", {4, 12}, yellow},
    {"BesideTheLine", {10, 12}, ground()},
    {"Square", {4, 15}, white},
    {"Wireframe", {2, 2}, red, -1, -1, 9, 1, true},
    {"Hidden", {0, 0}, ground(), 2},
    {"HiddenLine", {4, 12}, white, 1},
    {"Selected", {12, 0}, accent, -1, 3},
    {"VertexColours", {0, 0}, {255, 0, 255}, -1, -1, 9, 1, false, true},
    {"SelectedInSpiteOfThem", {0, 0}, accent, -1, 2, 9, 1, false, true},
};

TABLE(ThinDrawing, testing::Test, ThinCase, thinCases);

TEST_P(ThinDrawing, ShowsLinesAndPoints)
{
    QGLWindow window(nullptr, "window");
    window.fps(0);
    window.resize(60, 60);
    window.show();
    ASSERT_TRUE(QTest::qWaitForWindowExposed(&window));
    window.makeCurrent();
    Mesh mesh = drawing();
    Display display;
    display.lighting = false;
    display.pointScale = 8;
    PartMarks marks(mesh.parts.size());
    const ThinCase &row = GetParam();
    marks.setHidden(std::size_t(row.hidden), true);
    marks.setSelected(std::size_t(row.selected), true);
    const PointLook look{0, 0, row.most};
    display.scale = row.scale;
    if (row.wireframe)
        display.mode = Display::Mode::Wireframe;
    if (row.coloured) {
        mesh.colours.assign(40, 255);
        mesh.colours[25] = 0; // the green of the red point
    }
    if (row.together)
        mesh.positions[21] = 0; // the green point before the red one
    MeshBuffers buffers;
    buffers.create(mesh, {}, 1);
    glViewport(0, 0, 60, 60);
    glClearColor(0, 0, 1, 1);
    glClear(GL_COLOR_BUFFER_BIT | GL_DEPTH_BUFFER_BIT);
    QMatrix4x4 projection;
    projection.ortho(-30, 30, -30, 30, -20, 20);
    glMatrixMode(GL_PROJECTION);
    glLoadMatrixf(projection.constData());
    glMatrixMode(GL_MODELVIEW);
    glLoadIdentity();
    glEnable(GL_LIGHTING);
    buffers.drawThin(mesh, display, marks, look);
    EXPECT_TRUE(glIsEnabled(GL_LIGHTING) && !glIsEnabled(GL_FOG));
    buffers.draw(mesh, display, marks);
    quint8 p[3];
    glReadPixels(30 + row.at.x(), 30 + row.at.y(), 1, 1, GL_RGB, GL_UNSIGNED_BYTE, p);
    const QColor &seen = row.seen;
    EXPECT_TRUE(std::abs(p[0] - seen.red()) < 3 && std::abs(p[1] - seen.green()) < 3 &&
                std::abs(p[2] - seen.blue()) < 3)
        << int(p[0]) << ' ' << int(p[1]) << ' ' << int(p[2]);
    buffers.destroy();
    EXPECT_EQ(glGetError(), GLenum(GL_NO_ERROR));
}

} // namespace
} // namespace host
