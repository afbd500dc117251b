// SPDX-License-Identifier: MIT
// What a model says of itself, what of it is selected and hidden, how much of it is drawn and
// how it moves.
#include "host/item/model_item.h"

#include <cmath>
#include <set>

#include <QThreadPool>

#include "GL/glwidget.h"
#include "host/item/detail_budget.h"
#include "host/item/mesh_points.h"
#include "host/item/rig_pose.h"
#include "host/item/series_item.h"
#include "host/item/transparent_parts.h"
#include "tests/host/shapes.h"
#include "tests/support/table.h"

namespace host {
namespace {

struct AxesCase {
    const char *name;
    FileAxes axes;                    // of the mesh, which is 1 x 2 x 3 large
    std::optional<FileAxes::Axis> up; // that a person chooses
    const char *size;                 // the file's own, and its axis that points up
    QVector3D world;                  // from the least to the largest corner, before the scale
};

const AxesCase axesCases[] = {
    {"AsTheFileHasThem", {}, {}, "1 × 2 × 3  ·  Y up", {1, 2, 3}},
    {"TurnedByTheReader", {{{1, 3, -2}}}, {}, "1 × 3 × 2  ·  Z up", {1, 2, 3}},
    {"UpsideDown", {{{1, -2, -3}}}, {}, "1 × 2 × 3  ·  −Y up", {1, 2, 3}},
    {"ChosenAsItIs", {{{1, 3, -2}}}, FileAxes::Z, "1 × 3 × 2  ·  Z up", {1, 2, 3}},
    {"ChosenAnother", {{{1, 3, -2}}}, FileAxes::X, "1 × 3 × 2  ·  X up", {3, 1, 2}},
    {"ChosenOtherEnd", {{{1, -2, -3}}}, FileAxes::Y, "1 × 2 × 3  ·  Y up", {1, 2, 3}},
};

TABLE(ModelAxes, testing::Test, AxesCase, axesCases);

TEST_P(ModelAxes, AreTheFilesOwn)
{
    const AxesCase &row = GetParam();
    Mesh mesh;
    mesh.positions = {10, 0, 0, 11, 2, 0, 10, 2, 3};
    mesh.normals.assign(9, 0);
    mesh.indices = {0, 1, 2};
    mesh.findBounds();
    mesh.axes = row.axes;
    mesh.origin = {{500, 60, 7}};
    ModelItem item("a", std::make_shared<Mesh>(mesh));
    GLWidget glw(nullptr, "glw");
    if (row.up)
        item.standOn(&glw, *row.up);
    EXPECT_EQ(item.details().toStdString(), "1 triangle  ·  " + std::string(row.size));
    EXPECT_TRUE(item.chosenUp() == row.up && item.mesh().max - item.mesh().min == row.world);
    EXPECT_EQ(item.centre(), (item.mesh().max + item.mesh().min) / 2);
    EXPECT_FLOAT_EQ(item.scale(), CameraMotion::worldRadius / std::sqrt(3.5f));
    const Mesh &m = item.mesh();
    const QVector3D p = m.position(0), q = m.position(1), r = m.position(2);
    const QVector3D middle = ((p + q + r) / 3 - item.centre()) * item.scale();
    QThreadPool::globalInstance()->waitForDone();
    const auto hit = item.hit({middle + QVector3D::normal(p, q, r), -QVector3D::normal(p, q, r)});
    EXPECT_NEAR(hit ? hit->distance * double(item.scale()) : 0, 1, 1e-5);
    for (const auto axis : {FileAxes::X, FileAxes::Y, FileAxes::Z}) { // as people know the file
        item.setSection({{item.planeOf({axis, true, false, 510.5})}});
        EXPECT_EQ(item.section()->planes[0].place() + item.sectionFrames()[0].origin, 510.5);
        EXPECT_EQ(item.sectionFrames()[0].origin, mesh.origin[std::size_t(axis)]);
    }
    mesh.positions = {0, 0, 0, 1e-39f, 0, 0, 0, 0, 0};
    mesh.findBounds();
    EXPECT_EQ(ModelItem("tiny", std::make_shared<Mesh>(mesh)).scale(), 1);
}

TEST(ModelItem, TellsOfLinesAndPoints)
{
    auto mesh = std::make_shared<Mesh>();
    mesh->positions.assign(3 * 1202, 0);
    mesh->positions[0] = 2;
    mesh->indices = {0, 1};
    mesh->parts = {{"l", {}, {}, 0, 2, MeshPart::Kind::Lines},
                   {"p", {}, {}, 2, 0, MeshPart::Kind::Points, 2, 1200}};
    mesh->findBounds();
    ModelItem item("a", mesh);
    EXPECT_EQ(item.details().toStdString(), "1 line  ·  1,200 points  ·  2 × 0 × 0  ·  Y up");
    QThreadPool::globalInstance()->waitForDone();
    EXPECT_TRUE(item.hasPoints() && !item.isBusy() && item.count() == 1201);
    EXPECT_FALSE(item.hit({{0, 0, 9}, {0, 0, -1}})) << "no triangle";
}

/// A box and points behind it, in front of it, on it and within, seen from the front.
TEST(ModelItem, PointsAreFoundWhereTheyAreSeen)
{
    Mesh mesh = box({-3, -1, -2}, {3, 1, 0}).mesh;
    const std::vector<QVector3D> places{{-2, .5f, -3}, {0, 0, 1}, {2, 0, -1e-4f}, {1, .5f, -1}};
    for (const QVector3D &p : places) {
        const auto at = quint32(mesh.vertexCount());
        mesh.parts.push_back({"p", {}, {}, 36, 0, MeshPart::Kind::Points, at, 1});
        mesh.positions.insert(mesh.positions.end(), {p.x(), p.y(), p.z()});
    }
    mesh.findBounds();
    ModelItem item("a", std::make_shared<Mesh>(mesh));
    GLWidget glw(nullptr, "glw");
    glw.setGeometry({0, 0, 400, 400});
    // A part that is hidden; where a plane cuts; what is found there, and 3 and 6 pixels beside.
    const std::tuple<std::size_t, double, const char *> rows[] = {
        {9, 2, "023002300000"},  {0, 2, "12341234----"},   {2, 2, "003000300000"},
        {9, .5, "003000300000"}, {9, -.5, "000000000000"}, {0, -.5, "1--41--4----"}};
    for (int i = 0; i < 12; ++i) {
        const auto &[hidden, cut, expected] = rows[i / 2];
        item.marks().showAll();
        item.marks().setHidden(hidden, true);
        item.setSection({{{{0, 0, 1}, cut}}});
        QThreadPool::globalInstance()->waitForDone();
        GL::Camera camera;
        camera.ortho = i % 2;
        item.steering().lookAlong(&glw, camera);
        const CameraGeometry geometry = CameraSteering::geometryOf(&glw);
        std::string found;
        for (const double aside : {0, 3, 6})
            for (const QVector3D &place : places) {
                const QPointF at = geometry.pixel((place - item.centre()) * item.scale());
                found += "-01234"[item.partAt(&glw, at + QPointF(aside, 0)) + 1];
            }
        EXPECT_EQ(found, expected) << i;
    }
}

TEST(ModelItem, IsTakenUpAsAnotherOneWasLeft)
{
    Mesh mesh = box({0, 0, 0}, {1, 2, 4}).split(4).mesh, other = box({4, -1, 0}, {5, 3, 4}).mesh;
    mesh.findBounds(), other.findBounds();
    const auto shared = std::make_shared<Mesh>(mesh);
    ModelItem a("a", shared), b("b", shared), both("c", shared, std::make_shared<Mesh>(other));
    GLWidget glw(nullptr, "glw");
    std::set<QByteArray> looks; // each another one
    for (int step = 0; step < 7; ++step) {
        step == 1   ? a.standOn(&glw, FileAxes::Z)
        : step == 5 ? a.marks().setHidden(1, true)
        : step == 6 ? a.marks().setSelected(0, true)
        : step > 1  ? a.setSection({{{{0, float(step == 4), float(step < 4)}, step < 3 ? 2. : 1.}}})
                    : void();
        QThreadPool::globalInstance()->waitForDone();
        looks.insert(a.look(&glw));
    }
    EXPECT_EQ(looks.size(), 7u);
    b.restore(&glw, a.state(&glw));
    EXPECT_EQ(b.details() + b.underPointer(),
              "12 triangles  ·  1 × 2 × 4  ·  Z up  ·  1 part hidden"
              "1 of 2 parts selected");
    EXPECT_TRUE(b.section()->planes == a.section()->planes && b.chosenUp() == FileAxes::Z);
    both.standOn(&glw, FileAxes::Z); // both are a box of 5 by 4 by 4
    EXPECT_FLOAT_EQ(both.scale(), CameraMotion::worldRadius / std::sqrt(14.25f));
    EXPECT_EQ(both.centre(), both.mesh().axes.fromFile({2.5f, 1, 2}));
}

TEST(SeriesItem, NeedsNothingOfWhatModelsDo)
{
    auto table = std::make_shared<Table>();
    table->x = {1, 2, 3};
    table->columns = {{"p", {4, 5, 6}}};
    SeriesItem item(table);
    GLWidget glw(nullptr, "glw");
    EXPECT_TRUE(item.count() == 3 && item.isWhole() && item.paintsTitle() && item.byteSize() == 64);
    EXPECT_FALSE(item.passed({}) || item.isReduced() || item.isBusy() || item.play(1) ||
                 item.hasPoints() || item.isSpatial() || item.pick3D(&glw, {}) || item.model() ||
                 item.steering().isOrthographic(&glw) || item.playback() || item.section() ||
                 item.axes() || item.chosenUp() || item.unitsPerPixel(&glw) != 0);
    EXPECT_EQ(item.details(), QStringLiteral("3 rows  ·  1 columns"));
}

TEST(TransparentPartsTest, TheFarthestComesFirst)
{
    Shape s;
    // Seen from (0, 0, 3) the middles of parts 1 to 3 are 4, 3.905 and 4.031 away.
    for (const Vec &at : {Vec(9, 9, 9), {10, 0, -2}, {16, 0, 1}, {10, 7, 2}, {10, 0, -2}}) {
        s.endPart().triangle(at - Vec(1, 1, 1), at + Vec(1, -1, 1), at + Vec(1, 1, .5));
        s.mesh.parts.back().colour[3] = s.mesh.parts.size() > 1 ? .5f : 1;
    }
    s.mesh.parts[4].cover = {0, Cover::Repeat, Cover::Repeat, true, Cover::Blended};
    s.mesh.parts[4].colour[3] = 1;
    s.mesh.parts.push_back({"empty", {}, {1, 1, 1, .5f}, 15, 0});
    s.mesh.parts.push_back({"line", {}, {1, 1, 1, .5f}, 13, 2, MeshPart::Kind::Lines});
    const TransparentParts parts(s.mesh, {10, 0, 0}, .5f);
    QMatrix4x4 view;
    view.translate(0, 0, -3);
    EXPECT_EQ(parts.farFirst(view, false), (std::vector<std::size_t>{3, 1, 4, 2}));
    EXPECT_EQ(parts.farFirst(view, true), (std::vector<std::size_t>{1, 4, 2, 3}));
    EXPECT_TRUE(TransparentParts().isEmpty() && !parts.isEmpty());
}

TEST(DetailBudget, IsLessWhileFramesAreSlowAndAllAtRest)
{
    constexpr std::size_t all = DetailBudget::all;
    // Whether it moved, seconds, those that a frame took, what the last one drew; and then the
    // most, 0 for all. The last step is of others: it drew nothing.
    const char *steps =
        "1 .1 9 200000 300000; 1 .1 .041 200000 300000; 1 .1 .05 200000 300000; "
        "1 .1 .0625 200000 114285; 1 .1 .032 100000 125000; 1 .1 .05 120000 125000; "
        "1 .1 .045 120000 125000; 1 .1 .05 120000 125000; 1 .1 .25 120000 17142; "
        "1 .1 .25 20000 10000; 1 .1 .01 15000 12500; 0 .1 9 15000 12500; 1 .1 9 15000 12500; "
        "1 .1 .01 15000 15625; 1 .1 .01 15000 19530; 1 .1 .01 15000 19999; 0 .15 0 0 19999; "
        "0 .05 0 0 0; 1 .1 9 0 19999; 1 .1 .01 15000 24995; 1 .1 9 0 24995";
    DetailBudget budget;
    for (const QString &step : QString(steps).split("; ")) {
        const QStringList v = step.split(' ');
        budget.drew(v[3].toULongLong());
        budget.advance(v[0] == "1", v[1].toDouble(), v[2].toDouble());
        EXPECT_EQ(budget.rests() ? 0 : budget.most(), v[4].toULongLong()) << step.toStdString();
    }
    budget.drew(all);
    for (int i = 0; i < 100; ++i)
        budget.advance(true, 1, 0.001);
    EXPECT_EQ(budget.most(), all);
    for (const auto &[pixels, least] :
         {std::pair(0, 10'000), {240'000, 20'000}, {9'999'999, 45'000}})
        EXPECT_EQ(DetailBudget::leastTriangles(pixels), std::size_t(least));
}

TEST(PointLook, PointsTouchWithinBounds)
{
    Mesh mesh;
    mesh.positions.resize(30003);
    mesh.parts = {{"p", {}, {}, 0, 0, MeshPart::Kind::Points, 0, 10001}};
    mesh.max = {40, 90, 70}; // 10,001 points on half of its sides
    EXPECT_NEAR(pointSpacing(mesh), std::sqrt(12700 / 10001.0), 1e-9);
    mesh.max = {20002, 0, 0};
    EXPECT_NEAR(pointSpacing(mesh), 2, 1e-9);
    Display display;
    const std::pair<PointLook, double> rows[] = {
        {{2, 3, 10001}, 2.25}, {{4, 3, 20000}, 1.125}, {{1, 0.1, 10001}, 1},
        {{1, 9, 10001}, 4},    {{0, 9, 10001}, 1},     {{8, 3, 1000}, 0.5625 * std::sqrt(10.001)}};
    for (const auto &[look, size] : rows)
        EXPECT_NEAR(pointSize(mesh, display, look), size, 1e-9);
    display.pointScale = 2;
    EXPECT_NEAR(pointSize(mesh, display, {1, 9, 10001}), 8, 1e-9);
    EXPECT_EQ(pointSpacing(Mesh()), 0);
}

/// Four points at (1, 2, 3): held by the root, by a node that moves, half by each, and by one that
/// is flat. The node is at (10, 0, 0); its clip shifts it along y, turns it about z and stretches
/// it.
Mesh rigged()
{
    Mesh m;
    m.positions = {1, 2, 3, 1, 2, 3, 1, 2, 3, 1, 2, 3};
    m.normals = {1, 0, 0, 1, 0, 0, 1, 0, 0, 1, 0, 0};
    auto rig = std::make_shared<Rig>();
    rig->nodes.resize(3);
    rig->nodes[1].parent = rig->nodes[2].parent = 0;
    rig->nodes[1].local.translate(10, 0, 0);
    rig->nodes[2].local.scale(0);
    rig->bones = {{0, {}}, {1, {}}, {2, {}}};
    rig->vertexBones = {0, 0, 0, 0, 1, 0, 0, 0, 0, 1, 0, 0, 2, 0, 0, 0};
    rig->vertexWeights = {1, 0, 0, 0, 1, 0, 0, 0, 0.5f, 0.5f, 0, 0, 1, 0, 0, 0};
    Rig::Track track;
    track.node = 1;
    track.places = {{1, {10, 0, 0}}, {3, {10, 8, 0}}};
    track.turns = {{1, QQuaternion()}, {3, QQuaternion::fromAxisAndAngle(0, 0, 1, 90)}};
    track.scales = {{1, {1, 1, 1}}, {3, {3, 3, 3}}};
    rig->clips = {{"all", 4, {track}}};
    m.rig = rig;
    return m;
}

struct PoseRow {
    const char *name;
    int clip;
    double seconds;
    std::size_t vertex;
    QVector3D place, normal;
};

// At rest the points are at (-9, 2, 3) of the node; half of both bones shifts them by 5.
const float h = std::sqrt(0.5f), t = std::sqrt(0.1f);
const PoseRow poseRows[] = {
    {"before the first key", 0, 0, 1, {1, 2, 3}, {1, 0, 0}},
    {"half", 0, 2, 1, {10 + 2 * h * (-9 - 2), 4 + 2 * h *(-9 + 2), 6}, {h, h, 0}},
    {"at the last key", 0, 3, 1, {10 + 3 * -2, 8 + 3 * -9, 9}, {0, 1, 0}},
    {"after it", 0, 4, 1, {4, -19, 9}, {0, 1, 0}},
    {"two bones", 0, 3, 2, {(-4 + 10 - 6) / 2.0f, (2 + 8 - 12) / 2.0f, 6}, {t, 3 * t, 0}},
    {"flat", 0, 3, 3, {1, 2, 3}, {1, 0, 0}},
    {"back", -1, 0, 1, {1, 2, 3}, {1, 0, 0}},
};

TEST(RigPoseTest, VerticesGoWithTheirBonesHoweverTheModelStands)
{
    for (const bool turned : {false, true}) {
        Mesh m = rigged();
        if (turned)
            m.standOn(FileAxes::Z); // y becomes the mesh's -z
        RigPose pose(m);
        const auto at = [](const std::vector<float> &all, std::size_t i) {
            return QVector3D(all[i * 3], all[i * 3 + 1], all[i * 3 + 2]);
        };
        for (const PoseRow &row : poseRows) {
            pose.pose(row.clip, row.seconds);
            const QVector3D place = at(pose.positions(), row.vertex);
            EXPECT_LT((place - m.axes.fromFile(row.place)).length(), 1e-4f) << row.name;
            const QVector3D normal = at(pose.normals(), row.vertex);
            EXPECT_LT((normal - m.axes.fromFile(row.normal)).length(), 1e-5f) << row.name;
        }
    }
}

} // namespace
} // namespace host
