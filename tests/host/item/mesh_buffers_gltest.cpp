// SPDX-License-Identifier: MIT
// What of a mesh is drawn, its parts in which order, lines and points, and how textures lie on it.
#include <cmath>

#include <QThreadPool>

#include "drawing.h"
#include "host/item/part_brackets.h"
#include "tests/host/shapes.h"

namespace host {
namespace {

/// A square across the line of sight, red or green.
struct Square {
    char colour;
    float alpha;
    float z;
    bool looksAway = false; // its front does
};
using Parts = std::vector<std::vector<Square>>; // in the file's order
using Mode = Display::Mode;

struct DrawnCase {
    const char *name;
    Parts parts;
    const char *seen;
    Mode mode = Mode::Shaded;
    std::size_t hidden = 9, selected = 9;
    bool fromBehind = false, isLit = false;
};

const Parts opaque{{{'r', 1, 0}}, {{'g', 1, -1}}, {{'g', 1, .6f}}}; // the last one hides all
const Parts redFirst{{{'r', .5, .5}}, {{'g', .5, -.5}}};
const Parts inOne{{{'r', .5, .5}, {'g', .5, -.5, true}}};

// Of the opaque ones the red reaches from pixel 10 to 50 both ways, that behind it from 18 to 42.
const DrawnCase drawnCases[] = {
    {"NearFirstInTheFile", redFirst, "30,30 #804040"},
    {"FromBehind", redFirst, "30,30 #408040", Mode::Shaded, 9, 9, true},
    {"OpaqueBeforeAll", {{{'r', .5, .5}}, {{'g', 1, -.5}}}, "30,30 #808000"},
    {"OpaqueInFront", {{{'g', 1, .5}}, {{'r', .5, -.5}}}, "30,30 lime"},
    {"OpacityOfNothingIsASlip", {{{'r', 0, 0}}}, "30,30 red"},
    {"BackFacesFirst", inOne, "30,30 #804040"},
    {"BackFacesFirstFromBehind", inOne, "30,30 #408040", Mode::Shaded, 9, 9, true},
    {"HiddenTransparent", {{{'r', 1, 0}}, {{'g', .5, .5}}}, "30,30 red", Mode::Shaded, 1},
    {"Shaded", opaque, "36,24 red; 50~30 red; 46~46 red; 18,30 red", Mode::Shaded, 2},
    {"Edged", opaque, "36,24 red; 50~30 edge; 46~46 !edge; 18,30 red", Mode::Edged, 2},
    {"Hidden", opaque, "36,24 blue; 50~30 ink; 46~46 ink; 18~30 !ink", Mode::HiddenLines, 2},
    {"HiddenMarked", opaque, "36,24 blue; 50~30 accent; 46~46 accent", Mode::HiddenLines, 2, 0},
    {"LitAslant", {{{'r', 1, 0}}}, "30,30 #8e2d2d", Mode::Shaded, 9, 9, false, true},
    {"LitOnTheOtherSide", {{{'r', 1, 0, true}}}, "30,30 black", Mode::Shaded, 9, 9, false, true},
    {"Wireframe", opaque, "36,24 blue; 50~30 red; 46~46 red; 18~30 lime", Mode::Wireframe, 2},
};

std::shared_ptr<Mesh> meshOf(const Parts &parts)
{
    Shape s;
    for (const std::vector<Square> &squares : parts) {
        s.endPart().mesh.parts.back().colour[3] = squares[0].alpha;
        const quint8 alpha = quint8(std::lround(opacityOf(s.mesh.parts.back()) * 255));
        for (const Square &square : squares) {
            const double x = square.looksAway ? -1 : 1, z = double(square.z);
            s.quad({-x, -1, z}, {x, -1, z}, {x, 1, z}, {-x, 1, z});
            const quint8 red = square.colour == 'r' ? 255 : 0;
            while (s.mesh.colours.size() < s.mesh.vertexCount() * 4)
                for (const quint8 value : {red, quint8(255 - red), quint8(0), alpha})
                    s.mesh.colours.push_back(value);
        }
    }
    s.mesh.findBounds();
    return std::make_shared<Mesh>(s.mesh);
}

TABLE(MeshDrawing, Drawing, DrawnCase, drawnCases);

TEST_P(MeshDrawing, ShowsWhatShinesThroughOrLines)
{
    const DrawnCase &row = GetParam();
    const auto mesh = meshOf(row.parts);
    PartMarks marks(mesh->parts.size());
    marks.setHidden(row.hidden, true);
    marks.setSelected(row.selected, true);
    EdgeLines edges;
    edges.request(mesh);
    QThreadPool::globalInstance()->waitForDone();
    const quint64 found = edges.byteSize();
    buffers.create(*mesh, {}, 2);
    display.mode = row.mode;
    display.lighting = row.isLit; // 40 degrees from the line of sight
    const GLfloat half[] = {.5f, .5f, .5f, 1}, from[] = {.6428f, 0, .766f, 0};
    for (const bool parallel : {false, true}) { // from 3 in front of the origin or behind it
        QMatrix4x4 projection, view;
        parallel ? projection.ortho(-3, 3, -3, 3, 1, 9) : projection.frustum(-1, 1, -1, 1, 1, 9);
        view.translate(0, 0, -3);
        view.rotate(row.fromBehind ? 180 : 0, 0, 1, 0);
        for (int again = 0; again < 2; ++again) {
            begin(projection, view);
            glEnable(GL_LIGHT0);
            glLightfv(GL_LIGHT0, GL_DIFFUSE, half);
            glLightfv(GL_LIGHT0, GL_POSITION, from);
            buffers.draw(*mesh, display, marks, &edges);
        }
        EXPECT_EQ(edges.byteSize() > found, row.mode == Mode::Edged);
        expect(QString(row.seen).section("; ", 0, parallel ? 0 : -1));
    }
    edges.destroy();
    EXPECT_EQ(edges.byteSize(), found);
}

using Kind = MeshPart::Kind;

/// In pixels from the corner: a red point at (30, 30), a green one, which is near, at (42, 30), two
/// grey ones at (18, 30) and (18, 18), and a yellow line along y = 42.5, a little behind a white
/// square from (22, 38) to (38, 46).
struct Scan {
    Scan()
    {
        mesh.positions = {22, 38,    0,      38, 38, 0, 38, 46, 0, 22, 46, 0, 22, 42.5f, -3e-4f,
                          38, 42.5f, -3e-4f, 30, 30, 0, 42, 30, 9, 18, 30, 0, 18, 18,    0};
        mesh.normals.assign(12, 1);
        mesh.indices = {0, 1, 2, 0, 2, 3, 4, 5};
        mesh.parts = {{"square", {}, {1, 1, 1, 1}, 0, 6},
                      {"line", {}, {1, 1, 0, 1}, 6, 2, Kind::Lines},
                      {"red", {}, {1, 0, 0, 0.5f}, 8, 0, Kind::Points, 6, 1},
                      {"green", {}, {0, 1, 0, 1}, 8, 0, Kind::Points, 7, 1},
                      {"grey", {}, {0.6f, 0.6f, 0.6f, 1}, 8, 0, Kind::Points, 8, 2}};
        mesh.findBounds();
    }
    void colour() { mesh.colours.assign(40, 255), mesh.colours[25] = 0; } // the red point's green

    Mesh mesh;
    PartMarks marks{5};
    Display display;
    std::size_t most = 9;
};

struct ThinCase {
    const char *name;
    void (*prepare)(Scan &);
    const char *seen;
};

const ThinCase thinCases[] = {
    {"AsWideAsAsked", [](Scan &) {}, "30,30 red; 33,33 red; 35,30 blue; 30,35 blue; 42,30 lime"},
    {"GreyTakesTheInkAndFades", [](Scan &) {}, "18,30 faded; 18,18 faded"},
    {"LineAndSquare", [](Scan &) {}, "34,42 yellow; 40,42 blue; 34,45 white"},
    {"WiderInALargerPicture", [](Scan &s) { s.display.scale = 2; }, "30,35 red"},
    {"ASample", [](Scan &s) { s.most = 2; }, "18,18 blue; 18,30 faded"},
    {"SomethingOfEachPart", [](Scan &s) { s.most = 1; }, "30,30 red; 42,30 lime"},
    {"NearInFrontOfOthers", [](Scan &s) { s.mesh.positions[21] = 30; }, "30,30 lime"},
    {"Hidden", [](Scan &s) { s.marks.setHidden(2, true); }, "30,30 blue"},
    {"HiddenLine", [](Scan &s) { s.marks.setHidden(1, true); }, "34,42 white"},
    {"Selected", [](Scan &s) { s.marks.setSelected(3, true); }, "42,30 accent; 30,30 red"},
    {"VertexColours", [](Scan &s) { s.colour(); }, "30,30 magenta"},
    {"MarkedAll", [](Scan &s) { s.colour(), s.marks.setSelected(2, true); }, "30,30 accent"},
};

TABLE(ThinDrawing, Drawing, ThinCase, thinCases);

TEST_P(ThinDrawing, ShowsLinesAndPoints)
{
    const Theme &theme = display.theme();
    const QColor ground = mixed(theme.top, .5, theme.bottom);
    names["faded"] = mixed(theme.ink, .725, ground); // in the middle of the depth
    Scan scan;
    scan.display.lighting = false;
    scan.display.pointScale = 8;
    GetParam().prepare(scan);
    buffers.create(scan.mesh, {30, 30, 0}, 1);
    QMatrix4x4 projection;
    projection.ortho(-30, 30, -30, 30, -20, 20);
    begin(projection);
    buffers.drawThin(scan.mesh, scan.display, scan.marks, {0, 0, scan.most});
    buffers.draw(scan.mesh, scan.display, scan.marks);
    expect(GetParam().seen);
    begin(projection);
    buffers.drawShapes(scan.mesh, [](auto i) { return glColor3d(1, i > 0, i == 2), true; });
    expect("34,42 yellow; 34,45 red; 18,18 yellow");
}

TEST_F(Drawing, BracketsStandAtTheCornersOfAPart)
{
    names["mark"] = mixed(display.theme().accent, .994, Qt::blue); // of lines that lie on others
    names["faint"] = mixed(display.theme().accent, .4375, Qt::blue);
    Scan scan;
    PartBrackets brackets;
    QMatrix4x4 projection;
    projection.ortho(-60, 60, -60, 60, -20, 20);
    for (const double depth : {0., 1.}) { // first something is in front of them
        glClearDepth(depth);
        begin(projection);
        for (const std::size_t part : {0, 1, 4})
            brackets.draw(scan.mesh, part, {30, 30, 0}, 2, display);
        expect(depth < 1 ? "24~38 faint; 36~46 faint; 30~38 !faint"
                         : "24~38 mark; 30~38 !mark; 36~38 mark; 36~46 mark; 30~46 !mark; "
                           "24~42 mark; 28~42 !mark; 36~42 mark; 18~20 mark; 18~23 !mark");
    }
}

using C = Cover;
constexpr C::Wrap R = C::Repeat, M = C::Mirror, K = C::Clamp;
constexpr std::array<float, 4> plain{1, 1, 1, 1};

struct CoverCase {
    const char *name;
    Cover cover;
    float from;                  // both coordinates, to 1 more across the square
    std::array<float, 4> colour; // of the part
    const char *seen;            // lower left, lower right, upper left, upper right
    bool marked = false;
};

// Texture 0 is red, lime, blue and a white that is hardly opaque; 1 is of black and white dots.
const CoverCase coverCases[] = {
    {"Plain", {0, R, R, false}, 0, plain, "red lime blue white"},
    {"ColourMultiplies", {0, R, R, false}, 0, {1, 0, .5f, 1}, "red black #000080 #ff0080"},
    {"Repeats", {0, R, R, false}, -1, plain, "red lime blue white"},
    {"MirrorsAcross", {0, M, R, false}, -1, plain, "lime red white blue"},
    {"MirrorsUp", {0, R, M, false}, -1, plain, "blue white red lime"},
    {"ClampsAcross", {0, K, R, false}, 1, plain, "lime lime white white"},
    {"ClampsUp", {0, R, K, false}, 1, plain, "blue white blue white"},
    {"Cutout", {0, R, R, false, C::Cutout, .26f}, 0, plain, "red lime blue black"},
    {"CutoutKeeps", {0, R, R, false, C::Cutout, .24f}, 0, plain, "red lime blue white"},
    {"Blended", {0, R, R, false, C::Blended}, 0, plain, "red lime blue #404040"},
    {"None", {}, 0, plain, "white white white white"},
    {"SmallIsGrey", {1, R, R, true}, 0, plain, "#7f7f7f #7f7f7f #7f7f7f #7f7f7f"},
    {"MarkShinesThrough", {0, R, R, false}, 0, plain, "red* lime* blue* white*", true},
    {"MarkedCutout", {0, R, R, false, C::Cutout, .26f}, 0, plain, "red* lime* blue* black", true},
    {"MarkedBlended", {0, R, R, false, C::Blended}, 0, plain, "red* lime* blue* pale*", true},
    {"MarkedWithout", {}, 0, plain, "tint tint tint tint", true},
};

Mesh square(const CoverCase &c)
{
    Texture corners{2, 2, {255, 0, 0, 255, 0, 255, 0, 255, 0, 0, 255, 255, 255, 255, 255, 64}};
    Texture dots{128, 128, {}};
    for (quint32 i = 0; i < 128 * 128; ++i) {
        const quint8 value = (i / 128 + i) % 2 == 0 ? 255 : 0;
        dots.pixels.insert(dots.pixels.end(), {value, value, value, 255});
    }
    const float from = c.from, to = from + 1;
    Mesh mesh;
    mesh.positions = {-1, -1, 0, 1, -1, 0, 1, 1, 0, -1, 1, 0};
    mesh.normals = {0, 0, 1, 0, 0, 1, 0, 0, 1, 0, 0, 1};
    mesh.uvs = {from, from, to, from, to, to, from, to};
    mesh.indices = {0, 1, 2, 0, 2, 3};
    mesh.parts = {{"a", {}, c.colour, 0, 6}};
    mesh.parts[0].cover = c.cover;
    mesh.textures = {std::make_shared<Texture>(corners), std::make_shared<Texture>(dots)};
    return mesh;
}

TABLE(CoverOf, Drawing, CoverCase, coverCases);

TEST_P(CoverOf, IsSeen)
{
    const CoverCase &row = GetParam();
    names["tint"] = mixed(Qt::white, .55, display.theme().accent);
    for (const char *name : {"red", "lime", "blue", "white"})
        names[QString(name) + '*'] = mixed(QColor(name), .4, names["tint"]);
    names["pale*"] = mixed(names["white*"], .25, Qt::black);
    const Mesh mesh = square(row);
    PartMarks marks(1);
    marks.setSelected(0, row.marked);
    for (int again = 0; again < 2; ++again) { // as after a release
        buffers.create(mesh, {}, 1);
        EXPECT_GE(buffers.byteSize(), mesh.textureBytes() * 4 / 3);
        begin();
        glClearColor(0, 0, 0, 1);
        glClear(GL_COLOR_BUFFER_BIT);
        buffers.draw(mesh, display, marks);
        EXPECT_FALSE(glIsEnabled(GL_ALPHA_TEST));
        buffers.destroy();
        EXPECT_EQ(buffers.byteSize(), 0u);
        for (int i = 0; i < 4; ++i)
            expect(QString("%1,%2 ").arg(15 + i % 2 * 30).arg(15 + i / 2 * 30) +
                   QString(row.seen).section(' ', i, i));
    }
}

TEST_F(Drawing, LevelsAreDrawnPartByPartAndOnlyIfTheyAreFewer)
{
    const auto mesh = std::make_shared<Mesh>(roof(390, false));
    LevelBuffers levels;
    EXPECT_EQ(levels.levelFor(*mesh, 1), -1);
    const quint64 expected = levels.byteSize(*mesh);
    EXPECT_GT(expected, MeshLevels::expectedBytes(*mesh) + mesh->triangleCount() * 6);
    const std::size_t all = mesh->triangleCount();
    const std::tuple<std::size_t, int, double> rows[] = {
        // what may be drawn, and what is
        {0, 0, 1.56},        {all, -1, 4},        {all - 1, 1, 2.83}, {all / 2 + 9, 2, 2},
        {all / 4 + 9, 4, 1}, {all / 5, 5, 0.707}, {0, 9, 0.1768}};
    buffers.create(*mesh, {1, 0.5f, 0}, 1); // x, y: a half of the window each
    for (const auto &[most, level, quarters] : rows) {
        levels.request(mesh, &most != &std::get<0>(rows[0])); // a rough one comes first
        QThreadPool::globalInstance()->waitForDone();
        ASSERT_EQ(levels.levelFor(*mesh, most), level);
        if (level >= 0) {
            levels.choose(level);
            EXPECT_NEAR(double(levels.triangleCount()) * 4 / double(all), quarters, quarters / 20);
        }
        PartMarks marks(3);
        for (const char *green : {"lime", "blue"}) {
            begin();
            buffers.draw(*mesh, display, marks, nullptr, level < 0 ? nullptr : &levels);
            expect(QString("3,30 red; 12,30 %1; 25,30 %1; 33,16 blue").arg(green));
            marks.setHidden(1, true);
        }
        begin(); // what is not drawn by a level
        buffers.drawShapes(*mesh,
                           [](std::size_t part) { return glColor3ub(0, 255, 0), part == 0; });
        expect("3,30 lime; 12,30 blue");
        if (level > 4)
            levels.destroy(); // and made again
    }
    for (const auto &[least, level] : {std::pair(all / 5, 4), {all * 3 / 10, 3}, {all, 1}})
        EXPECT_EQ(levels.levelFor(*mesh, 0, least), level);
    EXPECT_NEAR(double(levels.byteSize(*mesh)), double(expected), 0.1 * double(expected));
    levels.destroy();
}

} // namespace
} // namespace host
