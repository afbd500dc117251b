// SPDX-License-Identifier: MIT
// What a model shows that is cut or moves, and what the pointer finds on it: colours at places
// known from geometry.
#include "GL/glwidget.h"
#include "drawing.h"
#include "host/item/model_item.h"
#include "tests/host/shapes.h"

namespace host {
namespace {

/// Boxes around the middle, a part each: half their sizes, and their colours.
struct Part {
    double half;
    std::array<float, 4> colour;
    int dropped = 0; // of its triangles: 2 for the side at +z, 10 for all the others
};

MeshPtr nested(const std::vector<Part> &parts)
{
    Shape all;
    for (const Part &part : parts) {
        Shape shape = box(Vec::Constant(-part.half), Vec::Constant(part.half));
        for (int i = 0; i < part.dropped; ++i)
            shape.drop(part.dropped == 2 ? 10 : 0);
        all.endPart() += shape;
        all.mesh.parts.back().colour = part.colour;
        all.mesh.parts.back().name = QChar("abc"[&part - parts.data()]);
    }
    all.mesh.findBounds();
    return std::make_shared<Mesh>(all.mesh);
}

const Part red{2, {1, 0, 0, 1}}, green{1, {0, 1, 0, 1}}, glass{2, {1, 0, 0, .5f}};
const Part openRed{2, {1, 0, 0, 1}, 2}, lid{2, {1, 0, 0, 1}, 10}, black{2, {0, 0, 0, 1}};
const CutPlane front{{0, 0, 1}, 0}, right{{1, 0, 0}, .2}, back{{0, 0, -1}, 0};
const CutPlane high{{0, 0, 1}, 1.5}, low{{0, 0, 1}, -1.5}, behind{{0, 0, -1}, .1};
using Mode = Display::Mode;

struct SeenCase {
    const char *name;
    std::vector<Part> parts;
    std::vector<CutPlane> planes;
    const char *seen; // at -1.5 to 1.5 by 1 from left to right: see nameOf()
    int part[4];      // that the pointer finds there
    int hidden = 9;
    Mode mode = Mode::Shaded;
};

const SeenCase seenCases[] = {
    {"Whole", {red, green}, {}, "RRRR", {0, 0, 0, 0}},
    {"Front", {red, green}, {front}, "rggr", {0, 1, 1, 0}},
    {"FrontAndRight", {red, green}, {front, right}, "rgbb", {0, 1, -1, -1}},
    {"InnerHidden", {red, green}, {front}, "rrrr", {0, 0, 0, 0}, 1},
    {"OuterHidden", {red, green}, {front}, "bggb", {-1, 1, 1, -1}, 0},
    {"OpenHasNoFace", {openRed, green}, {front}, "RggR", {0, 1, 1, 0}},
    {"LidHidden", {openRed, green, lid}, {high}, "RGGR", {0, 1, 1, 0}, 2},
    {"InnerCutAway", {red, green}, {low}, "rrrr", {0, 0, 0, 0}},
    {"Slab", {red, green}, {front, behind}, "rggr", {0, 1, 1, 0}},
    {"FromTheOtherSide", {red, green}, {back}, "RRRR", {0, 0, 0, 0}},
    {"Glass", {glass}, {front}, "mmmm", {0, 0, 0, 0}},
    {"GlassOverItsContents", {glass, green}, {front}, "mggm", {0, 1, 1, 0}},
    {"Dark", {black}, {front}, "dddd", {0, 0, 0, 0}},
    {"HiddenLines", {red, green}, {front}, "rggr", {0, 1, 1, 0}, 9, Mode::HiddenLines},
    {"Wireframe", {red}, {front}, "bbbb", {0, 0, 0, 0}, 9, Mode::Wireframe},
};

/// r, g: a cut face; R, G: a side; d: a dark one's face; b: background; m: mixed.
char nameOf(const QColor &c)
{
    const bool full = c.value() > 250; // as no cut face is
    const std::map<int, char> names{{-1, c.value() > 15 ? 'd' : '?'},
                                    {0, full ? 'R' : 'r'},
                                    {120, full ? 'G' : 'g'},
                                    {240, full ? 'b' : '?'}};
    const auto found = names.find(c.hue());
    return found != names.end() ? found->second : c.hue() > 240 ? 'm' : '?'; // red over blue
}

class LargeDrawing : public Drawing {
protected:
    LargeDrawing() : Drawing(160) { glw.setGeometry({0, 0, 160, 160}); }
    /// Looks at it from the front, with parallel lines of sight, and cuts it.
    void show(ModelItem &item, const std::vector<CutPlane> &planes, std::size_t hidden = 9)
    {
        item.init(&glw);
        glw.camera.ortho = 1;
        glw.camera.rot = glw.camera.setTarget = {0, 0, 0};
        item.setSection({planes});
        item.marks().setHidden(hidden, true);
        ASSERT_TRUE(QTest::qWaitFor([&] { return !item.isBusy(); }, 20000));
        EXPECT_EQ(item.sectionFrames().size(), planes.size());
        const float half = camera().halfHeight(1);
        projection.ortho(-half, half, -half, half, -9, 9);
        begin(projection);
        item.draw3D(&glw, display);
    }
    CameraGeometry camera() const { return CameraSteering::geometryOf(&glw); }

    GLWidget glw{nullptr, "glw"};
    QMatrix4x4 projection;
};

TABLE(SectionSeen, LargeDrawing, SeenCase, seenCases);

TEST_P(SectionSeen, AndFoundByThePointer)
{
    const SeenCase &row = GetParam();
    ModelItem item("a", nested(row.parts));
    display.mode = row.mode;
    show(item, row.planes, std::size_t(row.hidden));
    EXPECT_FALSE(glIsEnabled(GL_CLIP_PLANE0) || glIsEnabled(GL_TEXTURE_1D));
    std::string seen;
    for (int i = 0; i < 4; ++i) {
        // Off the diagonals, where triangles meet, and low in the picture.
        const QPointF at = camera().pixel(QVector3D(float(i) - 1.5f, -.8f, 0) * item.scale());
        seen += nameOf(pixel(int(at.x()), int(at.y())));
        item.pick3D(&glw, at);
        EXPECT_EQ(item.hoveredPart(), row.part[i]) << i;
        EXPECT_EQ(item.underPointer(), QStringList({"", "a", "b"}).value(row.part[i] + 1)) << i;
    }
    EXPECT_EQ(seen, row.seen);
    // A rectangle selects what the pointer finds in it; through all, what is left in the middle.
    projection.scale(16, 16, 1);
    std::copy_n(projection.constData(), 16, glw.camera.proj_matrix);
    std::copy_n(QMatrix4x4().constData(), 16, glw.camera.model_matrix);
    for (const GLenum of : {GL_PACK_ROW_LENGTH, GL_PACK_SKIP_ROWS, GL_PACK_SKIP_PIXELS})
        glPixelStorei(of, 99); // as a host may leave it
    for (std::size_t i = 0; i < row.parts.size(); ++i) {
        bool left = int(i) != row.hidden;
        for (const CutPlane &plane : row.planes)
            left = left && plane.offset > -row.parts[i].half;
        item.selectArea3D(&glw, {0, 0, 160, 160}, Item::Reach::Through);
        EXPECT_EQ(item.marks().isSelected(i), left) << i;
        item.selectArea3D(&glw, {0, 0, 160, 160}, Item::Reach::Seen);
        EXPECT_EQ(item.marks().isSelected(i), std::count(row.part, row.part + 4, int(i)) > 0) << i;
    }
    item.release();
}

TEST_F(LargeDrawing, CutFacesAreHatchedTheirOwnWay)
{
    ModelItem item("a", nested({red, green}));
    show(item, {front});
    projection.scale(3);
    begin(projection);
    item.draw3D(&glw, display);
    for (const int part : {0, 1}) {
        const QVector3D corner = part == 0 ? QVector3D(-1.8f, -1.8f, 0) : QVector3D(-.8f, .5f, 0);
        const QPoint at = camera().pixel(corner * item.scale() * 3).toPoint();
        std::vector<int> values;
        for (int i = 0; i < 24; ++i) {
            values.push_back(pixel(at.x() + i, at.y()).value());
            const int along = pixel(at.x() + i + 5, at.y() + (part == 0 ? 5 : -5)).value();
            EXPECT_NEAR(values.back(), along, 4);
        }
        std::sort(values.begin(), values.end());
        EXPECT_NEAR(values[0], 217 * 190 / 255, 4);
        EXPECT_NEAR(values[14], 217, 1);
    }
    item.release();
}

TEST_F(LargeDrawing, WhatMovesHasTheEdgesOfItsRestAndIsTakenOver)
{
    ModelItem item("a", flattening(*nested({red})));
    item.init(&glw);
    display.mode = Mode::Edged;
    projection.ortho(-.75, .75, -.75, .75, -9, 9); // 15.4 pixels for one of the box's units
    const auto drawn = [&] {
        return begin(projection), item.draw3D(&glw, display), item.isWhole();
    };
    const MeshPtr rest = item.sharedMesh();
    for (const int clip : {0, -1}) {
        item.playback()->setClip(clip);
        ASSERT_TRUE(item.play(0) && item.play(0) && QTest::qWaitFor(drawn, 20000));
    }
    EXPECT_EQ(item.sharedMesh(), rest);
    expect("80~49 edge; 80~60 !edge; 80,90 red");
    EXPECT_EQ((item.playback()->setTime(-1), item.playback()->time()), 0);
    item.playback()->setTime(1);
    EXPECT_TRUE(!item.look(&glw).isEmpty() && item.play(0) && item.look(&glw).isEmpty());
    item.release(), item.init(&glw);
    projection.rotate(90, 0, 1, 0);
    drawn();
    expect("90,90 blue");
    projection.rotate(-90, 0, 1, 0);
    item.standOn(&glw, FileAxes::Z);
    EXPECT_TRUE(item.play(0) && drawn());
    expect("80,90 blue");
    item.release();
}

} // namespace
} // namespace host
