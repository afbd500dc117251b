// SPDX-License-Identifier: MIT
// What planes leave of a mesh, and the faces that they cut: their size is known from geometry.
#include "host/item/section.h"

#include <cmath>

#include "host/item/model_section.h"
#include "tests/GL/table.h"

namespace host {
namespace {

/// A box of triangles, each with corners of its own.
struct Box {
    QVector3D low, high;
    char kind = ' '; // 'i': inside out; 'o': open, without its face at -x; 't': one face turned
    bool own = true; // begins a part of its own
};

Mesh meshOf(const std::vector<Box> &boxes)
{
    // By bits of the corners: a face each, counter-clockwise from outside; the first at -x.
    constexpr int faces[6][4] = {{0, 4, 6, 2}, {1, 3, 7, 5}, {0, 1, 5, 4},
                                 {2, 6, 7, 3}, {0, 2, 3, 1}, {4, 5, 7, 6}};
    Mesh mesh;
    for (const Box &box : boxes) {
        for (int f = box.kind == 'o' ? 1 : 0; f < 6; ++f) {
            const int half = box.kind == 'h' ? 3 : 6; // a part for each half of the faces
            if ((f == 0 && box.own) || (f == 1 && box.kind == 'o') || f == half) {
                mesh.parts.emplace_back();
                mesh.parts.back().firstIndex = quint32(mesh.indices.size());
            }
            const bool turned = box.kind == 'i' || (box.kind == 't' && f == 1);
            for (int k : {0, 1, 2, 0, 2, 3}) {
                const int corner = faces[f][turned ? 3 - k : k];
                mesh.indices.push_back(quint32(mesh.vertexCount()));
                mesh.normals.insert(mesh.normals.end(), {0, 0, 1});
                for (int axis = 0; axis < 3; ++axis)
                    mesh.positions.push_back((corner >> axis & 1 ? box.high : box.low)[axis]);
            }
            mesh.parts.back().indexCount =
                quint32(mesh.indices.size()) - mesh.parts.back().firstIndex;
        }
    }
    return mesh;
}

const QVector3D unit(1, 1, 1);
const Box cube{{0, 0, 0}, unit}, block{{-1, -1, -1}, {3, 3, 3}};
const Box cavity{{0, 0, 0}, unit, 'i', false};
const float third = 1 / std::sqrt(3.0f);

struct CapCase {
    const char *name;
    std::vector<Box> boxes;
    CutPlane plane;
    std::vector<double> areas;   // the largest first
    std::vector<quint32> inside; // parts of the faces that hold the plane's middle, (.5, .5, .5)
    float shift = 0;             // of all, along each axis
};

const CapCase capCases[] = {
    {"Cube", {cube}, {{0, 0, 1}, .5}, {1}, {0}},
    {"FromTheOtherSide", {cube}, {{0, -1, 0}, -.5}, {1}, {0}},
    {"Inclined",
     {cube},
     {{third, third, third}, 1.5 * double(third)},
     {0.75 * std::sqrt(3.0)},
     {0}},
    {"Beside", {cube}, {{0, 0, 1}, 1.5}, {}, {}},
    {"CornersInThePlaneAreKept", {cube}, {{0, 0, 1}, 1}, {}, {}},
    {"AFaceInThePlane", {cube}, {{0, 0, 1}, 0}, {1}, {}},
    {"InsideOut", {{{0, 0, 0}, unit, 'i'}}, {{0, 0, 1}, .5}, {1}, {0}},
    {"AFaceTurned", {{{0, 0, 0}, unit, 't'}}, {{0, 0, 1}, .5}, {1}, {0}},
    {"Open", {{{0, 0, 0}, unit, 'o'}}, {{0, 0, 1}, .5}, {}, {}},
    {"OpenBesideClosed", {{{5, 0, 0}, {6, 1, 1}, 'o'}, cube}, {{0, 0, 1}, .5}, {1}, {1}},
    {"Cavity", {block, cavity}, {{0, 0, 1}, .5}, {15}, {}},
    {"TwoInOnePart", {block, {{0, 0, 0}, unit, ' ', false}}, {{0, 0, 1}, .5}, {16}, {0}},
    {"Nested", {cube, block}, {{0, 0, 1}, .5}, {16, 1}, {1, 0}},
    {"ApartInOnePart", {cube, {{2, 0, 0}, {3, 2, 1}, ' ', false}}, {{0, 0, 1}, .5}, {3}, {0}},
    {"AcrossParts", {{{0, 0, 0}, unit, 'h'}}, {{0, 0, 1}, .5}, {1}, {0}},
    {"FarFromTheOrigin", {cube}, {{0, 0, 1}, 1e5 + .5}, {1}, {0}, 1e5f},
};

TABLE(SectionCap, testing::Test, CapCase, capCases);

TEST_P(SectionCap, HasTheAreaAndThePartOfTheSolid)
{
    const CapCase &row = GetParam();
    Mesh mesh = meshOf(row.boxes);
    for (float &v : mesh.positions)
        v += row.shift;
    const Solids solids(mesh, std::atomic<bool>(false));
    const QVector3D centre = QVector3D(.25f, .25f, .25f) + unit * row.shift;
    const PlaneGrid grid(row.plane, centre, 2);
    const PlanePoint middle = grid.onPlane(unit * (row.shift + .5f));
    std::vector<double> areas;
    std::vector<quint32> inside;
    for (const CapShape &shape : capShapes(mesh, solids, row.plane, grid)) {
        areas.push_back(std::round(shape.area / 4 * 1e5) / 1e5);
        if (shape.holds(middle))
            inside.push_back(solids.all()[shape.solid].parts.front());
        EXPECT_FALSE(shape.holds(grid.onPlane({9, -.3f, -.3f})));
    }
    std::vector<double> expected;
    for (const double area : row.areas)
        expected.push_back(std::round(area * 1e5) / 1e5);
    EXPECT_EQ(areas, expected);
    if (row.plane.beyond(unit * (row.shift + .5f)) != 0)
        return;
    EXPECT_EQ(inside, row.inside);
    EXPECT_LT((grid.inWorld(middle) - unit / 2).length(), 1e-6f) << "twice as far from the centre";
}

TEST(SolidsTest, TakeColoursAndPartsOfTheirTriangles)
{
    Mesh mesh = meshOf({{{0, 0, 0}, unit, 'h'}, {{2, 0, 0}, {3, 1, 1}}});
    mesh.parts[1].colour = {1, 0, 0, .5f};
    mesh.parts[1].indexCount += 6, mesh.parts[0].indexCount -= 6, mesh.parts[1].firstIndex -= 6;
    const std::atomic<bool> goOn(false), stop(true);
    const Solids solids(mesh, goOn);
    ASSERT_EQ(solids.all().size(), 2u);
    EXPECT_EQ(solids.all()[0].parts, (std::vector<quint32>{1, 0})) << "most triangles first";
    EXPECT_EQ(solids.all()[0].colour, mesh.parts[1].colour);
    EXPECT_EQ(solids.all()[1].min, QVector3D(2, 0, 0));
    EXPECT_EQ(solids.all()[1].max, QVector3D(3, 1, 1));
    mesh.colours.assign(mesh.vertexCount() * 4, 51);
    EXPECT_FLOAT_EQ(Solids(mesh, goOn).all()[0].colour[0], 0.2f);
    auto texture = std::make_shared<Texture>(); // two rows, of which the lower one is seen
    texture->width = 1, texture->height = 2;
    texture->pixels = {102, 255, 0, 255, 9, 9, 9, 255};
    mesh.textures = {texture};
    mesh.parts[1].cover.texture = 0;
    mesh.uvs.assign(mesh.vertexCount() * 2, -.6f);
    EXPECT_FLOAT_EQ(Solids(mesh, goOn).all()[0].colour[0], 0.08f);
    EXPECT_TRUE(Solids(mesh, stop).all().empty());
}

TEST(SectionTest, KeepsWhatNoPlaneCutsAwayInAnyAxes)
{
    const FileAxes upright{{{1, 3, -2}}}; // of a file with +z up
    Section section{{{{0, 0, 1}, 2}, {{-1, 0, 0}, 0}}};
    EXPECT_TRUE(section.keeps({0, 9, 2}));
    EXPECT_FALSE(section.keeps({0, 9, 2.1f}));
    EXPECT_FALSE(section.keeps({-1, 9, 2}));
    EXPECT_TRUE(section.keeps({-1, 9, 2}, 1));
    const Section turned = section.inMesh(upright);
    EXPECT_EQ(turned.planes[0].normal, QVector3D(0, 1, 0));
    EXPECT_FALSE(turned.keeps({0, 2.1f, -9}));
    EXPECT_TRUE(turned.keeps({0, 2, -9}));
    const CutPlane flipped = section.planes[0].flipped();
    EXPECT_EQ(flipped.beyond({0, 0, 5}), -3);
    EXPECT_EQ(flipped.place(), 2);
    EXPECT_EQ(flipped.axis(), 2);
    EXPECT_EQ((CutPlane{{third, third, third}, 4}).axis(), -1);
    section.on = false;
    EXPECT_TRUE(section.keeps({-1, 9, 9}));
    EXPECT_FALSE(section.isCutting());
}

struct RequestCase {
    const char *name;
    const char *text;
    bool isRead;
    CutPlane plane = {}; // of a box from (0, 10, -4) to (1, 20, 4)
};

const RequestCase requestCases[] = {
    {"Middle", "x", true, {{1, 0, 0}, .5}},
    {"Share", "y:30%", true, {{0, 1, 0}, 13}},
    {"Place", "Z:-2.5", true, {{0, 0, 1}, -2.5}},
    {"BelowGoes", "-y:12", true, {{0, -1, 0}, -12}},
    {"NoAxis", "w", false},
    {"NoNumber", "x:much", false},
    {"NothingAfterTheColon", "x:", false},
    {"ShareBeyond", "x:101%", false},
    {"ShareBefore", "x:-1%", false},
    {"NotFinite", "x:inf", false},
    {"NotANumber", "x:nan", false},
    {"More", "x:5%%", false},
};

TABLE(SectionAsked, testing::Test, RequestCase, requestCases);

TEST_P(SectionAsked, IsReadOrRefused)
{
    SectionRequest request;
    ASSERT_EQ(parseSection(GetParam().text, request), GetParam().isRead);
    if (!GetParam().isRead)
        return;
    const CutPlane plane = request.plane({0, 10, -4}, {1, 20, 4});
    EXPECT_EQ(plane.normal, GetParam().plane.normal);
    EXPECT_DOUBLE_EQ(plane.offset, GetParam().plane.offset);
}

TEST(SectionTest, AFacesPlaneLiesJustBelowIt)
{
    Mesh mesh = meshOf({{{0, 0, 0}, {1, 2, 2}}});
    mesh.max = {1, 2, 2};
    mesh.axes = {{{1, 3, -2}}};
    const auto top = planeThrough(mesh, 6, {0.1f, -1, 0}); // of the face at +y, the file's +z
    ASSERT_TRUE(top);
    EXPECT_EQ(top->normal, QVector3D(0, 0, 1));
    EXPECT_NEAR(top->offset, 2 - 3e-4, 1e-7);
    EXPECT_EQ(planeThrough(mesh, 6, {0.1f, 1, 0})->normal, QVector3D(0, 0, -1)) << "from below";
    mesh.indices[1] = mesh.indices[0];
    EXPECT_FALSE(planeThrough(mesh, 0, {1, 0, 0}));
}

} // namespace
} // namespace host
