// SPDX-License-Identifier: MIT
#include <cstring>

#include <QBuffer>
#include <QOpenGLFramebufferObject>
#include <QPainter>

#include "scene.h"

namespace host {
namespace {

// Pixels of which a channel differs by more than the tolerance.
int differing(const QImage &a, const QImage &b, int tolerance)
{
    EXPECT_EQ(a.size(), b.size());
    const auto apart = [&](int x, int y) {
        const QRgb p = a.pixel(x, y), q = b.pixel(x, y);
        return std::max({std::abs(qRed(p) - qRed(q)), std::abs(qGreen(p) - qGreen(q)),
                         std::abs(qBlue(p) - qBlue(q)), std::abs(qAlpha(p) - qAlpha(q))});
    };
    int count = 0;
    for (int i = 0; i < a.width() * a.height(); ++i)
        count += apart(i % a.width(), i / a.width()) > tolerance;
    return count;
}

struct ViewCase {
    const char *name;
    int mode, ortho; // of the camera
    int align;       // of the 2D viewport
    Vector scale2D;
    double scale; // picture pixels per window pixel
    bool transparent;
};
using V = GL::Viewport;
const ViewCase viewCases[] = {
    {"Perspective", 2, 0, V::AlignCenter, {1, 1, 1}, 1, false},
    {"Orthographic", 2, 1, V::AlignBottom, {2, 1, 1}, 1, false},
    {"FixedMatrix", 0, 0, V::AlignLeft | V::AlignTop, {1, 1, 1}, 1, false},
    {"Transparent", 2, 0, V::AlignCenter, {1, 3, 1}, 1, true},
    {"Enlarged", 2, 0, V::AlignHCenter, {1, 1, 1}, 2.5, false},
};
TABLE(Views, Scene, ViewCase, viewCases);

// From darkness to red, left to right.
void drawRamp(GLW *, float)
{
    glShadeModel(GL_SMOOTH);
    glBegin(GL_TRIANGLE_STRIP);
    for (const int corner : {0, 1, 2, 3}) {
        glColor3f(float(corner / 2), 0, 0);
        glVertex2i(corner / 2 ? 1 : -1, corner % 2 ? 1 : -1);
    }
    glEnd();
}

TEST_P(Views, AreWhatTheWindowShowsAndBlocksMakeTheWhole)
{
    for (GLWidget *object : {main, inset}) {
        object->camera.ortho = GetParam().ortho;
        object->camera.mode = GetParam().mode;
        object->camera.m[14] = -3;
        object->viewport.align = GetParam().align;
        object->viewport.scale = GetParam().scale2D;
        object->viewport.pos = Vector(-9, -4, 0);
    }
    request.size = (QSizeF(request.window) * GetParam().scale).toSize();
    const QImage small = renderPicture(request).image.scaled(request.window, Qt::IgnoreAspectRatio,
                                                             Qt::SmoothTransformation);
    QImage black(small.size(), QImage::Format_RGB32);
    black.fill(Qt::black);
    frame();
    EXPECT_LT(differing(small, machine.shown, 140), 320 * 200 / 100); // its edges are hard
    EXPECT_GT(differing(small, black, 100), 6000);

    request.transparent = GetParam().transparent;
    request.objects[0].background = drawRamp;
    const QImage whole = renderPicture(request).image;
    request.blockSide = 37;
    const QImage blocks = renderPicture(request).image;
    EXPECT_LE(differing(whole, blocks, 70), 4); // one of four samples at an edge may fall elsewhere
    EXPECT_LT(differing(whole, blocks, 2), whole.width() * whole.height() / 1000);
    const auto redAt = [&](int x) { return whole.pixelColor(x, whole.height() - 2).red(); };
    EXPECT_NEAR(redAt(whole.width() - 2), request.transparent ? 0 : 254, 2);
    EXPECT_NEAR(redAt(whole.width() / 4), request.transparent ? 0 : 64, 2);
}

using PictureTest = Scene;

TEST_F(PictureTest, AlphaIsWhatIsCoveredHoweverTheContentBlends)
{
    request.background = Qt::white;
    request.objects.resize(1);
    main->viewport.align = V::AlignLeft | V::AlignTop;
    request.objects[0].draw3D = nullptr;
    request.objects[0].draw2D = [](GLW *, float) {
        glColor4f(0.4f, 0, 0, 0.5f); // not blended: opaque on the screen whatever its alpha
        glRectf(270, 20, 319, 180);  // x = 319 is the right edge there
        glEnable(GL_BLEND);
        glBlendFunc(GL_SRC_ALPHA, GL_ONE_MINUS_SRC_ALPHA);
        glColor4f(0, 1, 0, 0.4f);
        glRectf(110, 20, 160, 180);
    };
    request.objects[0].foreground = [](GLW *, QPainter *painter) {
        painter->fillRect(200, 50, 20, 20, QColor(0, 0, 255, 102));
    };
    const QPoint probes[] = {{319, 100}, {130, 100}, {210, 60}, {300, 10}};
    const QRgb colors[2][4] = {{0xff660000, 0xff99ff99, 0xff9999ff, 0xffffffff},
                               {0xff660000, 0x6600ff00, 0x660000ff, 0}};
    for (const bool transparent : {false, true}) {
        request.transparent = transparent;
        QByteArray file;
        QBuffer buffer(&file);
        ASSERT_TRUE(renderPicture(request).image.save(&buffer, "PNG"));
        const QImage image = QImage::fromData(file).convertToFormat(QImage::Format_ARGB32);
        for (int i = 0; i < 4; ++i)
            EXPECT_EQ(image.pixel(probes[i]), colors[transparent][i]) << transparent << i;
    }
}

// An object too large for a GL viewport is cut into frusta; a line and a point beside a seam, at
// 1728, reach over it.
TEST_F(PictureTest, WiderThanAnyViewport)
{
    GLint limit[2] = {0, 0};
    glGetIntegerv(GL_MAX_VIEWPORT_DIMS, limit);
    request = PictureRequest();
    request.window = QSize(2000, 20);
    request.size = QSize(20000, 200);
    request.blockSide = 1728;
    ASSERT_GT(request.size.width(), limit[0]);
    request.objects.push_back({main, QRectF(0, 0, 2000, 20), {}, {}, {}, {}});
    request.objects[0].draw2D = [](GLW *, float scale) {
        glLineWidth(6 * scale);
        glBegin(GL_LINES); // columns 1678 to 1737
        glVertex2f(-829.2f, 0);
        glVertex2f(-829.2f, 10);
        glEnd();
        glPointSize(4 * scale);
        glBegin(GL_POINTS); // columns 1720 to 1759, rows 130 to 169
        glVertex2f(-826, -5);
        glEnd();
    };
    const QImage image = renderPicture(request).image;
    ASSERT_EQ(image.size(), request.size);
    const int rows[][3] = {{50, 1678, 1737}, {150, 1720, 1759}, {120, 0, -1}};
    for (const auto &[y, first, last] : rows)
        for (int x = 0; x < image.width(); ++x)
            ASSERT_EQ(qRed(image.pixel(x, y)) > 127, x >= first && x <= last) << x << ',' << y;
}

// All of GL's state that can be asked for by name, as one text.
std::string state()
{
    std::string all;
    for (const GLenum name :
         {GL_VIEWPORT, GL_SCISSOR_BOX, GL_SCISSOR_TEST, GL_MATRIX_MODE, GL_MODELVIEW_MATRIX,
          GL_PROJECTION_MATRIX, GL_FRAMEBUFFER_BINDING, GL_DRAW_BUFFER, GL_COLOR_CLEAR_VALUE,
          GL_LIGHTING, GL_LINE_WIDTH, GL_PACK_ROW_LENGTH, GL_BLEND, GL_ATTRIB_STACK_DEPTH,
          GL_CLIENT_ATTRIB_STACK_DEPTH, GL_MODELVIEW_STACK_DEPTH, GL_PROJECTION_STACK_DEPTH}) {
        GLdouble values[16] = {};
        glGetDoublev(name, values);
        for (const double value : values)
            all += std::to_string(value) + ' ';
    }
    return all;
}

TEST_F(PictureTest, GivesBackStateAndRecords)
{
    main->lights.emplace_back(GLenum(GL_LIGHT0), 'l');
    run("point 77,0 0,11");
    glEnable(GL_SCISSOR_TEST);
    glScissor(1, 2, 3, 4);
    glClearColor(0.25f, 0.5f, 0.75f, 1);
    glPixelStorei(GL_PACK_ROW_LENGTH, 33);
    glMatrixMode(GL_PROJECTION);
    request.size *= 3;
    bool local = true;
    request.objects[1].draw3D = [&](GLW *glw, float) {
        local = local && record().startsWith("-123,-100 -200,-89") &&
                glw->camera.viewport[0] == 200 && glw->camera.viewport[3] == 80 &&
                glw->geometry(false) == QRectF(200, 20, 100, 80);
        glEnable(GL_BLEND);
    };
    inset->setGeometry({0.5, 0.5, 0.25, 0.25}); // not where the picture has it
    QOpenGLFramebufferObject other(8, 8);
    other.bind(); // not the window's
    const std::string before = state();
    const GL::Camera camera = inset->camera;
    const QString mouse = record();
    ASSERT_FALSE(renderPicture(request).image.isNull());
    EXPECT_TRUE(local);
    EXPECT_EQ(state(), before);
    other.release();
    EXPECT_EQ(std::memcmp(&inset->camera, &camera, sizeof camera), 0);
    EXPECT_EQ(record(), mouse);
    EXPECT_EQ(inset->rect, QRectF(0.5, 0.5, 0.25, 0.25));
}

TEST_F(PictureTest, ACropIsACutOfTheWhole)
{
    request.size *= 2;
    request.objects[0].foreground = [](GLW *, QPainter *painter) {
        painter->fillRect(160, 60, 30, 30, Qt::white);
    };
    const QImage whole = renderPicture(request).image;
    request.crop = QRect(150, 40, 120, 70);
    request.size = request.crop.size() * 2;
    const QImage area = renderPicture(request).image;
    EXPECT_EQ(area.pixelColor(20, 40), QColor(Qt::white));
    EXPECT_LE(differing(area, whole.copy(300, 80, 240, 140), 70), 4);
}

TEST_F(PictureTest, GivesUpWhenAskedTo)
{
    request.blockSide = 100;
    std::vector<double> told;
    request.progress = [&](double done) {
        told.push_back(done);
        return told.size() < 3;
    };
    const Picture picture = renderPicture(request);
    EXPECT_TRUE(picture.image.isNull() && picture.error.isEmpty());
    EXPECT_EQ(told, (std::vector<double>{0.125, 0.25, 0.375}));
}

TEST(PictureSizes, AreRefusedWithTheirReason)
{
    const struct {
        QSize size, window;
        QRect crop;
        const char *said;
    } rows[] = {
        {{0, 100}, {1, 1}, {}, "nothing"},         {{100, -1}, {1, 1}, {}, "nothing"},
        {{32768, 1}, {1, 1}, {}, "32767"},         {{1, 32768}, {1, 1}, {}, "32767"},
        {{1, 1}, {0, 1}, {}, "no size"},           {{16384, 16385}, {1, 1}, {}, "268 million"},
        {{1, 1}, {1, 1}, {0, 0, 1, -2}, "no size"}};
    for (const auto &c : rows) {
        PictureRequest r;
        std::tie(r.size, r.window, r.crop) = std::tie(c.size, c.window, c.crop);
        EXPECT_TRUE(renderPicture(r).error.contains(c.said)) << c.said; // before OpenGL is asked
    }
    for (const QSize &most : {QSize(32767, 1), QSize(16384, 16384)})
        EXPECT_EQ(pictureSizeFault(most), QString());
}

} // namespace
} // namespace host
