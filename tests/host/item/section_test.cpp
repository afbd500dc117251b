// SPDX-License-Identifier: MIT
// What planes leave of a mesh, and the faces that they cut: their size is known from geometry.
#include "host/item/section.h"

#include <cmath>

#include <QThreadPool>

#include "host/item/model_section.h"
#include "tests/host/shapes.h"
#include "tests/support/table.h"

namespace host {
namespace {

const QVector3D unit(1, 1, 1);
const Shape cube = box({0, 0, 0}, {1, 1, 1}), block = box({-1, -1, -1}, {3, 3, 3});
const Shape open = Shape(cube).drop(0).drop(0);
const double third = 1 / std::sqrt(3.0);
const QVector3D aslant = unit * float(third);

struct CapCase {
    const char *name;
    Shape shape;
    CutPlane plane;
    std::vector<double> areas;   // the largest first
    std::vector<quint32> inside; // parts of the faces that hold the plane's middle, (.5, .5, .5)
    float shift = 0;             // of all, along each axis
};

const CutPlane middle{{0, 0, 1}, .5};

const CapCase capCases[] = {
    {"Cube", cube, middle, {1}, {0}},
    {"FromTheOtherSide", cube, {{0, -1, 0}, -.5}, {1}, {0}},
    {"Inclined", cube, {aslant, 1.5 * third}, {1.29904}, {0}},
    {"Beside", cube, {{0, 0, 1}, 1.5}, {}, {}},
    {"CornersInThePlaneAreKept", cube, {{0, 0, 1}, 1}, {}, {}},
    {"AFaceInThePlane", cube, {{0, 0, 1}, 0}, {1}, {}},
    {"InsideOut", Shape(cube).flip(), middle, {1}, {0}},
    {"AFaceTurned", Shape(cube).flip(2, 2), middle, {1}, {0}},
    {"Open", open, middle, {}, {}},
    {"OpenBeside", box({5, 0, 0}, {6, 1, 1}).drop(0).drop(0).endPart() + cube, middle, {1}, {1}},
    {"Cavity", block + Shape(cube).flip(), middle, {15}, {}},
    {"TwoInOnePart", block + cube, middle, {16}, {0}},
    {"Nested", Shape(cube).endPart() + block, middle, {16, 1}, {1, 0}},
    {"ApartInOnePart", cube + box({2, 0, 0}, {3, 2, 1}), middle, {3}, {0}},
    {"AcrossParts", Shape(cube).split(6), middle, {1}, {0}},
    {"FarFromTheOrigin", cube, {{0, 0, 1}, 1e5 + .5}, {1}, {0}, 1e5f},
    {"FartherNearAnEnd", box({0, 0, .0625}, {1, 1, 1}), {{0, 0, 1}, 1e6 + .99}, {1}, {}, 1e6f},
};

TABLE(SectionCap, testing::Test, CapCase, capCases);

TEST_P(SectionCap, HasTheAreaAndThePartOfTheSolid)
{
    const CapCase &row = GetParam();
    Mesh mesh = row.shape.mesh;
    for (float &v : mesh.positions)
        v += row.shift;
    const Solids solids(mesh, std::atomic<bool>(false));
    const QVector3D centre = QVector3D(.25f, .25f, .25f) + unit * row.shift;
    const PlaneGrid grid(row.plane, centre, 2);
    const PlanePoint at = grid.onPlane(unit * (row.shift + .5f));
    std::vector<double> areas;
    std::vector<quint32> inside;
    for (const CapShape &shape : capShapes(mesh, solids, row.plane, grid)) {
        areas.push_back(std::round(shape.area / 4 * 1e5) / 1e5);
        if (shape.holds(at))
            inside.push_back(solids.all()[shape.solid].parts.front());
        EXPECT_FALSE(shape.holds(grid.onPlane({9, -.3f, -.3f})));
    }
    EXPECT_EQ(areas, row.areas);
    if (row.plane.beyond(unit * (row.shift + .5f)) != 0)
        return;
    EXPECT_EQ(inside, row.inside);
    EXPECT_LT((grid.inWorld(at) - unit / 2).length(), 1e-6f) << "twice as far from the centre";
}

TEST(SolidsTest, TakeColoursAndPartsOfTheirTriangles)
{
    Mesh mesh = (Shape(cube).split(4).endPart() + box({2, 0, 0}, {3, 1, 1})).mesh;
    mesh.parts[1].colour = {1, 0, 0, .5f};
    const std::atomic<bool> goOn(false), stop(true);
    const Solids solids(mesh, goOn);
    ASSERT_EQ(solids.all().size(), 2u);
    EXPECT_EQ(solids.all()[0].parts, (std::vector<quint32>{1, 0})) << "most triangles first";
    EXPECT_EQ(solids.all()[0].colour, mesh.parts[1].colour);
    EXPECT_EQ(solids.all()[1].max * 9 + solids.all()[1].min, QVector3D(29, 9, 9));
    mesh.colours.assign(mesh.vertexCount() * 4, 51);
    EXPECT_FLOAT_EQ(Solids(mesh, goOn).all()[0].colour[0], 0.2f);
    const Texture texture{1, 2, {102, 255, 0, 255, 9, 9, 9, 255}}; // the lower row is seen
    mesh.textures = {std::make_shared<Texture>(texture)};
    mesh.parts[1].cover.texture = 0;
    mesh.uvs.assign(mesh.vertexCount() * 2, -.6f);
    EXPECT_FLOAT_EQ(Solids(mesh, goOn).all()[0].colour[0], 0.08f);
    EXPECT_TRUE(Solids(mesh, stop).all().empty());
}

TEST(SectionTest, KeepsWhatNoPlaneCutsAwayInAnyAxes)
{
    Section section{{{{0, 0, 1}, 2}, {{-1, 0, 0}, 0}}};
    EXPECT_TRUE(section.keeps({0, 9, 2}) && section.keeps({-1, 9, 2}, 1));
    EXPECT_FALSE(section.keeps({0, 9, 2.1f}) || section.keeps({-1, 9, 2}));
    const CutPlane flipped = section.planes[0].flipped();
    EXPECT_TRUE(flipped.beyond({0, 0, 5}) == -3 && flipped.place() == 2 && flipped.axis() == 2 &&
                (CutPlane{aslant, 4}).axis() == -1);
    section.on = false;
    EXPECT_TRUE(section.keeps({-1, 9, 9}) && !section.isCutting());
}

TEST(ModelSectionTest, IsThatOfTheMeshThatItHas)
{
    ModelSection section;
    for (const float half : {2.0f, 1.0f}) { // the second one ends beside the ray
        Mesh mesh = box(Vec::Constant(double(-half)), Vec::Constant(double(half))).mesh;
        mesh.findBounds();
        mesh.origin = {{5, 6, 7}};
        section.setMesh(std::make_shared<Mesh>(mesh), {0, 0, 0}, .5f);
        section.set({{{{0, 0, 1}, .5}, {{0, 0, -1}, .5}, {{1, 0, 0}, 1.9}, {{0, 1, 0}, 9}}});
        QThreadPool::globalInstance()->waitForDone();
        EXPECT_TRUE(section.planes().size() == 3 && section.keeps({1.8f, 0, .4f}));
        EXPECT_FALSE(section.keeps({1.8f, 0, .6f}));
        const auto hit = section.hit({{.7f, .6f, 3}, {0, 0, -1}}, PartMarks(1));
        EXPECT_EQ(hit ? hit->distance : 0, half > 1 ? 2.75 : 0);
        EXPECT_FALSE(section.hit({{.97f, .6f, 3}, {0, 0, -1}}, PartMarks(1))) << "cut away";
        const SectionFrame frame = section.frames().at(0);
        EXPECT_TRUE(frame.least == double(-half) && frame.most == double(half));
        EXPECT_TRUE(frame.origin == 7 && frame.scale == .5 && frame.normal == QVector3D(0, 0, 1));
        const float e = .56f * half; // with air
        const QVector3D corners[] = {{-e, -e, .25f}, {e, -e, .25f}, {e, e, .25f}, {-e, e, .25f}};
        for (std::size_t i = 0; i < 4; ++i)
            EXPECT_LT((frame.corners[i] - corners[i]).length(), 1e-6f);
    }
    section.set({section.get().planes, false});
    EXPECT_TRUE(section.planes().empty() && section.frames().empty() && !section.isCutting());
}

TEST(SectionTest, IsAskedForByText)
{
    const std::pair<const char *, CutPlane> read[] = {{"x", {{1, 0, 0}, .5}},
                                                      {"y:30%", {{0, 1, 0}, 13}},
                                                      {"Z:-2.5", {{0, 0, 1}, -2.5}},
                                                      {"-y:12", {{0, -1, 0}, -12}}};
    for (const auto &[text, expected] : read) {
        const std::optional<SectionRequest> request = parseSection(text);
        ASSERT_TRUE(request) << text;
        const CutPlane plane = request->plane({0, 10, -4}, {1, 20, 4});
        EXPECT_EQ(plane.normal, expected.normal) << text;
        EXPECT_DOUBLE_EQ(plane.offset, expected.offset) << text;
    }
    for (const char *text : {"w", "x:much", "x:", "x:101%", "x:-1%", "x:inf", "x:nan", "x:5%%"})
        EXPECT_FALSE(parseSection(text)) << text;
}

TEST(SectionTest, AFacesPlaneLiesJustBelowIt)
{
    Mesh mesh = box({0, 0, 0}, {1, 2, 2}).mesh;
    mesh.findBounds();
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
