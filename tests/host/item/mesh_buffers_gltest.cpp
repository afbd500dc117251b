// SPDX-License-Identifier: MIT
// What of a mesh is drawn, and its parts in which order, by colours of pixels.
#include <cmath>

#include <QTest>
#include <QThreadPool>

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

class MeshDrawing : public testing::Test {
protected:
    QGLWindow window{nullptr, "window"};
    Display display;

    void SetUp() override
    {
        window.fps(0);
        window.resize(60, 60);
        window.show();
        ASSERT_TRUE(QTest::qWaitForWindowExposed(&window));
        window.makeCurrent();
        display.lighting = false;
    }
    void TearDown() override { EXPECT_EQ(glGetError(), GLenum(GL_NO_ERROR)); }

    /// Over blue, from 3 in front of the origin or behind it.
    void begin(bool parallel, bool fromBehind)
    {
        glDepthMask(GL_TRUE);
        glViewport(0, 0, 60, 60);
        glClearColor(0, 0, 1, 1);
        glClear(GL_COLOR_BUFFER_BIT | GL_DEPTH_BUFFER_BIT);
        QMatrix4x4 projection, view;
        parallel ? projection.ortho(-1, 1, -1, 1, 1, 9) : projection.frustum(-1, 1, -1, 1, 1, 9);
        view.translate(0, 0, -3);
        view.rotate(fromBehind ? 180 : 0, 0, 1, 0);
        glMatrixMode(GL_PROJECTION);
        glLoadMatrixf(projection.constData());
        glMatrixMode(GL_MODELVIEW);
        glLoadMatrixf(view.constData());
    }
    /// Whether a pixel at most @p around from this one, y upwards, has that colour.
    static bool shows(const QColor &colour, int x, int y, int around = 0)
    {
        for (int dy = -around; dy <= around; ++dy)
            for (int dx = -around; dx <= around; ++dx) {
                quint8 p[3];
                glReadPixels(x + dx, y + dy, 1, 1, GL_RGB, GL_UNSIGNED_BYTE, p);
                if (std::abs(p[0] - colour.red()) < 4 && std::abs(p[1] - colour.green()) < 4 &&
                    std::abs(p[2] - colour.blue()) < 4)
                    return true;
            }
        return false;
    }
};

TABLE(DrawingOrder, MeshDrawing, OrderCase, orderCases);

TEST_P(DrawingOrder, ShowsWhatShinesThrough)
{
    const Mesh mesh = meshOf(GetParam().parts);
    PartMarks marks(mesh.parts.size());
    marks.setHidden(GetParam().hidden, true);
    for (const bool parallel : {false, true}) {
        MeshBuffers buffers;
        buffers.create(mesh, {}, 0.5f);
        begin(parallel, GetParam().fromBehind);
        const GLboolean culled = glIsEnabled(GL_CULL_FACE);
        buffers.draw(mesh, display, marks);
        EXPECT_EQ(glIsEnabled(GL_CULL_FACE), culled);
        EXPECT_TRUE(shows(GetParam().seen, 30, 30)) << "parallel " << parallel;
        buffers.destroy();
    }
}

/// The near square reaches from pixel 10 to 50 both ways, the far one from 18 to 42.
struct ModeCase {
    const char *name;
    Display::Mode mode;
    bool selected; // the near one
    QColor inside;
    QColor lines;  // of the near one
    bool diagonal; // of the near one
    QColor behind; // where a side of the far one is
};

const QColor red(255, 0, 0), green(0, 255, 0), blue(0, 0, 255);
const Theme theme = Display().theme();

const ModeCase modeCases[] = {
    {"Shaded", Display::Mode::Shaded, false, red, red, true, red},
    {"Edged", Display::Mode::Edged, false, red, theme.edge, false, red},
    {"HiddenLines", Display::Mode::HiddenLines, false, blue, theme.ink, true, blue},
    {"HiddenLinesSelected", Display::Mode::HiddenLines, true, blue, theme.accent, true, blue},
    {"Wireframe", Display::Mode::Wireframe, false, blue, red, true, green},
};

TABLE(DrawingMode, MeshDrawing, ModeCase, modeCases);

TEST_P(DrawingMode, ShowsSurfacesOrLines)
{
    const ModeCase &row = GetParam();
    const auto mesh =
        std::make_shared<Mesh>(meshOf({{{'r', 1, 0}}, {{'g', 1, -1}}, {{'g', 1, 1.2f}}}));
    mesh->max = {1, 1, 1};
    MeshBuffers buffers;
    buffers.create(*mesh, {}, 2);
    EdgeLines edges;
    edges.request(mesh);
    QThreadPool::globalInstance()->waitForDone();
    PartMarks marks(mesh->parts.size());
    marks.setSelected(0, row.selected);
    marks.setHidden(2, true); // it would cover all
    display.mode = row.mode;
    begin(false, false);
    buffers.draw(*mesh, display, marks, &edges);
    EXPECT_TRUE(shows(row.inside, 36, 24));
    EXPECT_TRUE(shows(row.lines, 50, 30, 1));
    EXPECT_EQ(shows(row.lines, 46, 46, 1), row.diagonal);
    EXPECT_TRUE(shows(row.behind, 18, 30, row.behind == green ? 1 : 0));
    EXPECT_FALSE(row.behind == blue && shows(theme.ink, 18, 30, 1));
    edges.destroy();
    buffers.destroy();
}

} // namespace
} // namespace host
