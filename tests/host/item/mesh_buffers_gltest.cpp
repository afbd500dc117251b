// SPDX-License-Identifier: MIT
// In which order the parts of a mesh are drawn, by the colour of the pixel in the middle.
#include <cmath>

#include <QTest>

#include "GL/glwindow.h"
#include "host/item/mesh_buffers.h"
#include "tests/GL/table.h"

namespace host {
namespace {

/// A square across the line of sight in one of two colours, red or green.
struct Square {
    char colour;
    float alpha;
    float z;
    bool looksAway = false; // its front does
};

struct OrderCase {
    const char *name;
    std::vector<std::vector<Square>> parts; // in the file's order
    bool fromBehind;
    QColor seen; // over blue
    std::size_t hidden = 9;
};

const OrderCase orderCases[] = {
    {"NearFirstInTheFile", {{{'r', 0.5, 1}}, {{'g', 0.5, -1}}}, false, {128, 64, 64}},
    {"FarFirstInTheFile", {{{'g', 0.5, -1}}, {{'r', 0.5, 1}}}, false, {128, 64, 64}},
    {"FromBehind", {{{'r', 0.5, 1}}, {{'g', 0.5, -1}}}, true, {64, 128, 64}},
    {"OpaqueBeforeAll", {{{'r', 0.5, 1}}, {{'g', 1, -1}}}, false, {128, 128, 0}},
    {"OpaqueInFront", {{{'g', 1, 1}}, {{'r', 0.5, -1}}}, false, {0, 255, 0}},
    {"OpacityOfNothingIsASlip", {{{'r', 0, 0}}}, false, {255, 0, 0}},
    {"BackFacesFirst", {{{'r', 0.5, 1}, {'g', 0.5, -1, true}}}, false, {128, 64, 64}},
    {"BackFacesFirstFromBehind", {{{'r', 0.5, 1}, {'g', 0.5, -1, true}}}, true, {64, 128, 64}},
    {"HiddenOpaque", {{{'r', 1, -1}}, {{'g', 1, 1}}}, false, {255, 0, 0}, 1},
    {"HiddenTransparent", {{{'r', 1, -1}}, {{'g', 0.5, 1}}}, false, {255, 0, 0}, 1},
};

Mesh meshOf(const std::vector<std::vector<Square>> &parts)
{
    constexpr float corners[2][4][2] = {{{-1, -1}, {1, -1}, {1, 1}, {-1, 1}},
                                        {{-1, -1}, {-1, 1}, {1, 1}, {1, -1}}};
    Mesh mesh;
    for (const std::vector<Square> &squares : parts) {
        MeshPart part;
        part.firstIndex = quint32(mesh.indices.size());
        part.colour[3] = squares[0].alpha;
        for (const Square &square : squares) {
            for (quint32 i : {0, 1, 2, 0, 2, 3}) {
                const float *at = corners[square.looksAway][i];
                mesh.indices.push_back(quint32(mesh.vertexCount()));
                mesh.positions.insert(mesh.positions.end(), {at[0], at[1], square.z});
                mesh.normals.insert(mesh.normals.end(), {0, 0, 1});
                const quint8 red = square.colour == 'r' ? 255 : 0;
                const quint8 alpha = quint8(std::lround(opacityOf(part) * 255));
                mesh.colours.insert(mesh.colours.end(), {red, quint8(255 - red), 0, alpha});
            }
        }
        part.indexCount = quint32(mesh.indices.size()) - part.firstIndex;
        mesh.parts.push_back(part);
    }
    return mesh;
}

TABLE(DrawingOrder, testing::Test, OrderCase, orderCases);

TEST_P(DrawingOrder, ShowsWhatShinesThrough)
{
    QGLWindow window(nullptr, "window");
    window.fps(0);
    window.resize(60, 60);
    window.show();
    ASSERT_TRUE(QTest::qWaitForWindowExposed(&window));
    window.makeCurrent();
    const Mesh mesh = meshOf(GetParam().parts);
    PartMarks marks(mesh.parts.size());
    marks.setHidden(GetParam().hidden, true);
    Display display;
    display.lighting = false;
    for (const bool parallel : {false, true}) {
        MeshBuffers buffers;
        buffers.create(mesh, {}, 0.5f);
        glDepthMask(GL_TRUE);
        glViewport(0, 0, 60, 60);
        glClearColor(0, 0, 1, 1);
        glClear(GL_COLOR_BUFFER_BIT | GL_DEPTH_BUFFER_BIT);
        QMatrix4x4 projection, view;
        parallel ? projection.ortho(-1, 1, -1, 1, 1, 9) : projection.frustum(-1, 1, -1, 1, 1, 9);
        view.translate(0, 0, -3);
        view.rotate(GetParam().fromBehind ? 180 : 0, 0, 1, 0);
        glMatrixMode(GL_PROJECTION);
        glLoadMatrixf(projection.constData());
        glMatrixMode(GL_MODELVIEW);
        glLoadMatrixf(view.constData());
        const GLboolean culled = glIsEnabled(GL_CULL_FACE);
        buffers.draw(mesh, display, marks);
        EXPECT_EQ(glIsEnabled(GL_CULL_FACE), culled);
        quint8 p[3];
        glReadPixels(30, 30, 1, 1, GL_RGB, GL_UNSIGNED_BYTE, p);
        const QColor &seen = GetParam().seen;
        EXPECT_TRUE(std::abs(p[0] - seen.red()) < 4 && std::abs(p[1] - seen.green()) < 4 &&
                    std::abs(p[2] - seen.blue()) < 4)
            << int(p[0]) << ' ' << int(p[1]) << ' ' << int(p[2]) << " parallel " << parallel;
        buffers.destroy();
    }
    EXPECT_EQ(glGetError(), GLenum(GL_NO_ERROR));
}

} // namespace
} // namespace host
