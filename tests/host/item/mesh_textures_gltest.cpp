// SPDX-License-Identifier: MIT
// How textures lie on what is drawn, by the pixels in the quarters of a square.
#include <cmath>

#include <QTest>

#include "GL/glwindow.h"
#include "host/item/mesh_buffers.h"
#include "tests/GL/table.h"

namespace host {
namespace {

struct CoverCase {
    const char *name;
    Cover cover;
    float from, to;              // both coordinates across the square
    std::array<float, 4> colour; // of the part
    std::array<QColor, 4> seen;  // lower left, lower right, upper left, upper right; over black
};

const QColor red(255, 0, 0), green(0, 255, 0), blue(0, 0, 255), white(255, 255, 255),
    pale(64, 64, 64), black(0, 0, 0);
constexpr std::array<float, 4> plain{1, 1, 1, 1};
using C = Cover;

const CoverCase coverCases[] = {
    {"Plain", {0, C::Repeat, C::Repeat, false}, 0, 1, plain, {red, green, blue, white}},
    {"ColourMultiplies",
     {0, C::Repeat, C::Repeat, false},
     0,
     1,
     {1, 0, 0.5f, 1},
     {red, black, QColor(0, 0, 128), QColor(255, 0, 128)}},
    {"Repeats", {0, C::Repeat, C::Repeat, false}, -1, 0, plain, {red, green, blue, white}},
    {"MirrorsAcross", {0, C::Mirror, C::Repeat, false}, -1, 0, plain, {green, red, white, blue}},
    {"MirrorsUp", {0, C::Repeat, C::Mirror, false}, -1, 0, plain, {blue, white, red, green}},
    {"ClampsAcross", {0, C::Clamp, C::Repeat, false}, 1, 2, plain, {green, green, white, white}},
    {"ClampsUp", {0, C::Repeat, C::Clamp, false}, 1, 2, plain, {blue, white, blue, white}},
    {"Cutout",
     {0, C::Repeat, C::Repeat, false, C::Cutout, 0.26f},
     0,
     1,
     plain,
     {red, green, blue, black}},
    {"CutoutKeeps",
     {0, C::Repeat, C::Repeat, false, C::Cutout, 0.24f},
     0,
     1,
     plain,
     {red, green, blue, white}},
    {"Blended",
     {0, C::Repeat, C::Repeat, false, C::Blended},
     0,
     1,
     plain,
     {red, green, blue, pale}},
    {"None", {}, 0, 1, plain, {white, white, white, white}},
    // Seen from afar, black and white are grey.
    {"Small",
     {1, C::Repeat, C::Repeat, true},
     0,
     1,
     plain,
     {QColor(127, 127, 127), QColor(127, 127, 127), QColor(127, 127, 127), QColor(127, 127, 127)}},
};

TexturePtr texture(quint32 side, const std::vector<std::array<quint8, 4>> &pixels)
{
    Texture t;
    t.width = t.height = side;
    for (const auto &pixel : pixels)
        t.pixels.insert(t.pixels.end(), pixel.begin(), pixel.end());
    return std::make_shared<Texture>(t);
}

Mesh square(const CoverCase &c)
{
    std::vector<std::array<quint8, 4>> checks;
    for (quint32 i = 0; i < 128 * 128; ++i) {
        const quint8 value = (i / 128 + i) % 2 == 0 ? 255 : 0;
        checks.push_back({value, value, value, 255});
    }
    Mesh mesh;
    mesh.positions = {-1, -1, 0, 1, -1, 0, 1, 1, 0, -1, 1, 0};
    mesh.normals = {0, 0, 1, 0, 0, 1, 0, 0, 1, 0, 0, 1};
    mesh.uvs = {c.from, c.from, c.to, c.from, c.to, c.to, c.from, c.to};
    mesh.indices = {0, 1, 2, 0, 2, 3};
    mesh.parts.resize(1);
    mesh.parts[0].indexCount = 6;
    mesh.parts[0].colour = c.colour;
    mesh.parts[0].cover = c.cover;
    mesh.textures = {
        texture(2, {{255, 0, 0, 255}, {0, 255, 0, 255}, {0, 0, 255, 255}, {255, 255, 255, 64}}),
        texture(128, checks)};
    return mesh;
}

using Pixels = std::array<QColor, 4>;

Pixels drawn(const Mesh &mesh, const MeshBuffers::Marks &marks, Display display)
{
    MeshBuffers buffers;
    buffers.create(mesh, {}, 1);
    EXPECT_GE(buffers.byteSize(), mesh.textureBytes() * 4 / 3);
    glClearColor(0, 0, 0, 1);
    glClear(GL_COLOR_BUFFER_BIT | GL_DEPTH_BUFFER_BIT);
    display.lighting = false;
    buffers.draw(mesh, display, marks);
    EXPECT_FALSE(glIsEnabled(GL_TEXTURE_2D) || glIsEnabled(GL_ALPHA_TEST));
    buffers.destroy();
    EXPECT_EQ(buffers.byteSize(), 0u);
    Pixels pixels;
    for (std::size_t i = 0; i < 4; ++i) {
        quint8 p[3];
        glReadPixels(15 + 30 * GLint(i % 2), 15 + 30 * GLint(i / 2), 1, 1, GL_RGB, GL_UNSIGNED_BYTE,
                     p);
        pixels[i] = QColor(p[0], p[1], p[2]);
    }
    return pixels;
}

int distance(const QColor &a, const QColor &b)
{
    return std::abs(a.red() - b.red()) + std::abs(a.green() - b.green()) +
           std::abs(a.blue() - b.blue());
}

TABLE(CoverOf, testing::Test, CoverCase, coverCases);

TEST_P(CoverOf, IsSeenAndAMarkShinesThrough)
{
    QGLWindow window(nullptr, "window");
    window.fps(0);
    window.resize(60, 60);
    window.show();
    ASSERT_TRUE(QTest::qWaitForWindowExposed(&window));
    window.makeCurrent();
    glViewport(0, 0, 60, 60);
    for (const GLenum matrix : {GL_PROJECTION, GL_MODELVIEW}) {
        glMatrixMode(matrix);
        glLoadIdentity();
    }
    const Mesh mesh = square(GetParam());
    Display display;
    for (int again = 0; again < 2; ++again) { // as after a release
        const Pixels seen = drawn(mesh, PartMarks(), display);
        for (std::size_t i = 0; i < 4; ++i)
            EXPECT_LT(distance(seen[i], GetParam().seen[i]), 9)
                << i << seen[i].name().toStdString();
    }
    PartMarks marks(1);
    marks.setSelected(0, true);
    const Pixels marked = drawn(mesh, marks, display);
    const Cover &cover = GetParam().cover;
    const QColor accent = display.theme().accent;
    const auto mixed = [](int texture, int tint) {
        return int(0.4 * texture + 0.6 * (0.55 * 255 + 0.45 * tint));
    };
    for (std::size_t i = 0; i < 4; ++i) {
        const QColor &before = GetParam().seen[i];
        if (cover.alpha == Cover::Cutout && before == black)
            EXPECT_EQ(marked[i], black); // what is left out stays so
        else if (cover.texture >= 0 && cover.alpha != Cover::Blended && GetParam().colour == plain)
            EXPECT_LT(distance(marked[i], QColor(mixed(before.red(), accent.red()),
                                                 mixed(before.green(), accent.green()),
                                                 mixed(before.blue(), accent.blue()))),
                      9);
        else
            EXPECT_LT(distance(marked[i], accent), distance(before, accent));
    }
    EXPECT_EQ(glGetError(), GLenum(GL_NO_ERROR));
}

} // namespace
} // namespace host
