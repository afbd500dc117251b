// SPDX-License-Identifier: MIT
// What a model shows that is cut or moves, and what the pointer finds on it: colours at places
// known from geometry.
#include <set>

#include "GL/glwidget.h"
#include "drawing.h"
#include "host/item/model_item.h"
#include "tests/host/shapes.h"

namespace host {
namespace {

/// Boxes around the middle, a part each: half their sizes, their colours, and which triangles.
struct Part {
    double half;
    std::array<float, 4> colour;
    enum { Whole, Open, Lid } what = Whole; // without the side at +z, or that alone
};

MeshPtr nested(const std::vector<Part> &parts)
{
    Shape all;
    for (const Part &part : parts) {
        const Shape whole = box(Vec::Constant(-part.half), Vec::Constant(part.half));
        all.endPart();
        for (std::size_t i = 0; i < 12; ++i)
            if (part.what == Part::Whole || (i < 10) == (part.what == Part::Open))
                all.triangle(cornerOf(whole.mesh, quint32(i), 0),
                             cornerOf(whole.mesh, quint32(i), 1),
                             cornerOf(whole.mesh, quint32(i), 2));
        all.mesh.parts.back().colour = part.colour;
    }
    all.mesh.findBounds();
    return std::make_shared<Mesh>(all.mesh);
}

const Part red{2, {1, 0, 0, 1}}, green{1, {0, 1, 0, 1}}, glass{2, {1, 0, 0, .5f}};
const Part openRed{2, {1, 0, 0, 1}, Part::Open}, black{2, {0, 0, 0, 1}}, lid{2, {}, Part::Lid};
const CutPlane front{{0, 0, 1}, 0}, low{{0, 0, 1}, -1.5}, high{{0, 0, 1}, 1.5},
    right{{1, 0, 0}, .2}, back{{0, 0, -1}, 0};
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
    {"HiddenInPart", {openRed, green, lid}, {high}, "RGGR", {0, 1, 1, 0}, 2},
    {"InnerCutAway", {red, green}, {low}, "rrrr", {0, 0, 0, 0}},
    {"Slab", {red, green}, {{{0, 0, 1}, .1}, {{0, 0, -1}, .1}}, "rggr", {0, 1, 1, 0}},
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
    return found == names.end() ? 'm' : found->second;
}

class LargeDrawing : public Drawing {
protected:
    LargeDrawing() : Drawing(160) {}
};

TABLE(SectionSeen, LargeDrawing, SeenCase, seenCases);

TEST_P(SectionSeen, AndFoundByThePointer)
{
    const SeenCase &row = GetParam();
    GLWidget glw(nullptr, "glw");
    glw.setGeometry({0, 0, 160, 160});
    ModelItem item("a", nested(row.parts));
    item.init(&glw);
    glw.camera.ortho = 1;
    glw.camera.rot = {0, 0, 0};
    glw.camera.setTarget = {0, 0, 0};
    item.setSection({row.planes});
    item.marks().setHidden(std::size_t(row.hidden), true);
    ASSERT_TRUE(QTest::qWaitFor([&] { return !item.isBusy(); }, 20000));
    EXPECT_EQ(item.sectionFrames().size(), row.planes.size());

    const CameraGeometry geometry = CameraSteering::geometryOf(&glw);
    const float half = geometry.halfHeight(1);
    QMatrix4x4 projection;
    projection.ortho(-half, half, -half, half, -9, 9);
    begin(projection);
    display.mode = row.mode;
    item.draw3D(&glw, display);
    EXPECT_FALSE(glIsEnabled(GL_CLIP_PLANE0) || glIsEnabled(GL_TEXTURE_1D));
    std::string seen;
    for (int i = 0; i < 4; ++i) {
        // Off the diagonals, where triangles meet, and low in the picture.
        const QPointF at = geometry.pixel(QVector3D(float(i) - 1.5f, -.8f, 0) * item.scale());
        seen += nameOf(pixel(int(at.x()), int(at.y())));
        item.pick3D(&glw, at);
        EXPECT_EQ(item.hoveredPart(), row.part[i]) << i;
    }
    EXPECT_EQ(seen, row.seen);
    // A rectangle selects what the pointer finds in it; through all, what is left in the middle.
    std::set<std::size_t> found(row.part, row.part + 4), left;
    found.erase(std::size_t(-1));
    for (std::size_t i = 0; i < row.parts.size(); ++i)
        if (int(i) != row.hidden &&
            std::none_of(row.planes.begin(), row.planes.end(),
                         [&](auto &p) { return p.offset < -row.parts[i].half; }))
            left.insert(i);
    projection.scale(4, 4, 1);
    for (int i = 0; i < 16; ++i) {
        glw.camera.proj_matrix[i] = double(projection.constData()[i]);
        glw.camera.model_matrix[i] = i % 5 == 0;
    }
    for (const auto reach : {Item::Reach::Seen, Item::Reach::Through}) {
        item.selectArea3D(&glw, {0, 0, 160, 160}, reach);
        std::set<std::size_t> selected;
        for (std::size_t i = 0; i < row.parts.size(); ++i)
            if (item.marks().isSelected(i))
                selected.insert(i);
        EXPECT_EQ(selected, reach == Item::Reach::Seen ? found : left);
    }
    item.release();
}

/// A sheet that is flat at rest; its upper half turns towards the eye.
class Hinge : public LargeDrawing {
protected:
    Hinge()
    {
        Shape sheet;
        sheet.quad({-1, -1, 0}, {1, -1, 0}, {1, 0, 0}, {-1, 0, 0});
        sheet.quad({-1, 0, 0}, {1, 0, 0}, {1, 1, 0}, {-1, 1, 0});
        sheet.hinge().mesh.findBounds();
        item = std::make_unique<ModelItem>("a", std::make_shared<Mesh>(sheet.mesh));
        glw.setGeometry({0, 0, 160, 160});
        item->init(&glw);
        display.mode = Mode::Edged;
    }
    void draw()
    {
        QMatrix4x4 projection;
        projection.ortho(-.75, .75, -.75, .75, -9, 9);
        begin(projection);
        item->draw3D(&glw, display);
    }
    GLWidget glw{nullptr, "glw"};
    std::unique_ptr<ModelItem> item;
};

TEST_F(Hinge, HasTheEdgesThatItHasAtRest)
{
    for (const int clip : {0, -1}) {
        item->playback()->setClip(clip);
        item->play(0);
        item->play(0); // stands still
        const auto drawn = [&] { return draw(), item->isWhole(); };
        ASSERT_TRUE(QTest::qWaitFor(drawn, 20000));
    }
    expect("80~42 edge; 80~118 edge; 80~80 !edge");
}

TEST_F(Hinge, IsTakenOverWhileItMoves)
{
    item->playback()->setTime(1);
    item->play(0);
    item->release();
    item->standOn(&glw, FileAxes::Z);
    item->init(&glw);
    draw();
    expect("80,100 blue");
    item->play(0);
    draw();
    expect("80,100 !blue");
}

} // namespace
} // namespace host
