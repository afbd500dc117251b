// SPDX-License-Identifier: MIT
#include <cstring>

#include <QOpenGLFramebufferObject>
#include <QPainter>

#include "scene.h"

namespace host {
namespace {

// Pixels of which a channel differs by more than the tolerance.
int differing(const QImage &a, const QImage &b, int tolerance)
{
    EXPECT_EQ(a.size(), b.size());
    const QImage p = a.convertToFormat(QImage::Format_ARGB32), q = b.convertToFormat(p.format());
    int count = 0;
    for (const uchar *i = p.constBits(), *k = q.constBits(); i < p.constBits() + p.sizeInBytes();
         i += 4, k += 4)
        count +=
            !std::equal(i, i + 4, k, [=](int x, int y) { return std::abs(x - y) <= tolerance; });
    return count;
}

using V = GL::Viewport;
struct ViewCase {
    const char *name, *set; // of both objects
    int align;
    double scale = 1; // picture pixels per window pixel
    bool transparent = false;
} const viewCases[] = {
    {"Perspective", "", V::AlignCenter},
    {"Orthographic", "ortho 1 scale 2,1,1", V::AlignBottom},
    {"FixedMatrix", "mode 0 m 1,0,0,0,0,1,0,0,0,0,1,0,0,0,-3,1", V::AlignLeft | V::AlignTop},
    {"Transparent", "scale 1,3,1", V::AlignCenter, 1, true},
    {"Enlarged", "", V::AlignHCenter, 2.5},
};
TABLE(Views, Scene, ViewCase, viewCases);

TEST_P(Views, AreWhatTheWindowShowsAndBlocksMakeTheWhole)
{
    main->viewport.align = inset->viewport.align = GetParam().align;
    run(QString("set main,inset pan -9,-4,0 mode 2 ") + GetParam().set);
    request.size = (QSizeF(request.window) * GetParam().scale).toSize();
    const QImage small = renderPicture(request).image.scaled(request.window, Qt::IgnoreAspectRatio,
                                                             Qt::SmoothTransformation);
    QImage black = small;
    black.fill(Qt::black);
    frame();
    EXPECT_LT(differing(small, machine.shown, 140), 320 * 200 / 100); // its edges are hard
    EXPECT_GT(differing(small, black, 100), 6000);

    request.transparent = GetParam().transparent;
    request.objects[0].background = [](GLW *, float) {
        glColor3f(1, 0, 0), glRectf(0.5f, -1, 1, 1);
    };
    const QImage whole = renderPicture(request).image;
    request.blockSide = 37;
    const QImage blocks = renderPicture(request).image;
    EXPECT_LE(differing(whole, blocks, 70), 4); // one of four samples at an edge may fall elsewhere
    EXPECT_LT(differing(whole, blocks, 2), whole.width() * whole.height() / 1000);
    for (const int edge : {-2, 2}) // the ground begins at three quarters
        EXPECT_EQ(whole.pixelColor(whole.width() * 3 / 4 + edge, whole.height() - 2).red(),
                  edge > 0 && !request.transparent ? 255 : 0);
}

using PictureTest = Scene;

TEST_F(PictureTest, AlphaIsWhatIsCoveredHoweverTheContentBlends)
{
    request.background = Qt::white;
    request.objects.resize(1);
    main->viewport.align = V::AlignLeft | V::AlignTop;
    request.objects[0].draw3D = nullptr;
    request.objects[0].draw2D = [](GLW *, float) {
        for (const GLenum of : {GL_PACK_ROW_LENGTH, GL_PACK_SKIP_ROWS, GL_PACK_SKIP_PIXELS})
            glPixelStorei(of, 99);   // as a host may leave it
        glColor4f(0.4f, 0, 0, 0.5f); // not blended: opaque on the screen whatever its alpha
        glRectf(270, 20, 319, 180);  // x = 319 is the right edge there
        glEnable(GL_BLEND);
        glBlendFunc(GL_SRC_ALPHA, GL_ONE_MINUS_SRC_ALPHA);
        glColor4f(0, 1, 0, 0.4f);
        glRectf(110, 20, 160, 180);
        glBlendFunc(GL_ONE, GL_ONE); // over white nothing of it is seen but that it is red
        glColor4f(0.4f, 0, 0, 1);
        glRectf(20, 20, 60, 180);
    };
    request.objects[0].foreground = [](GLW *, QPainter *painter) {
        painter->fillRect(200, 50, 20, 20, QColor(0, 0, 255, 102));
    };
    const QPoint probes[] = {{319, 100}, {130, 100}, {210, 60}, {300, 10}, {40, 100}};
    const QRgb colors[2][5] = {{0xff660000, 0xff99ff99, 0xff9999ff, 0xffffffff, 0xffffffff},
                               {0xff660000, 0x6600ff00, 0x660000ff, 0, 0x66ff0000}};
    for (const bool transparent : {false, true}) {
        request.transparent = transparent;
        const QImage image = renderPicture(request).image.convertToFormat(QImage::Format_ARGB32);
        for (int i = 0; i < 5; ++i)
            EXPECT_EQ(image.pixel(probes[i]), colors[transparent][i]) << transparent << i;
    }
}

// An object too large for a GL viewport is cut into frusta; a line and a point beside a seam, at
// 1728, reach over it.
TEST_F(PictureTest, WiderThanAnyViewport)
{
    request.window = QSize(2000, 20);
    request.size = QSize(20000, 200);
    request.blockSide = 1728;
    const auto draw = [](GLW *, float scale) {
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
    request.objects = {{main, QRectF(0, 0, 2000, 20), {}, {}, draw, {}}};
    const QImage image = renderPicture(request).image;
    ASSERT_EQ(image.size(), request.size);
    for (const auto &[y, first, last] :
         {std::array{50, 1678, 1737}, {150, 1720, 1759}, {120, 0, -1}})
        for (int x = 0; x < image.width(); ++x)
            ASSERT_EQ(qRed(image.pixel(x, y)) > 127, x >= first && x <= last) << x << ',' << y;
}

// GL's state that can be asked for by name, as one text.
std::string state()
{
    std::string all;
    for (const GLenum name :
         {GL_VIEWPORT, GL_SCISSOR_BOX, GL_SCISSOR_TEST, GL_MATRIX_MODE, GL_MODELVIEW_MATRIX,
          GL_PROJECTION_MATRIX, GL_FRAMEBUFFER_BINDING, GL_COLOR_CLEAR_VALUE, GL_PACK_ROW_LENGTH,
          GL_LIGHTING, GL_BLEND, GL_ATTRIB_STACK_DEPTH, GL_CLIENT_ATTRIB_STACK_DEPTH}) {
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
    main->lights[0].position = {0, 0, 0, 1}; // 3 in front
    request.objects[0].draw3D = [](GLW *glw, float) {
        GLfloat lamp[4];
        GLdouble view[16];
        glGetLightfv(GL_LIGHT0, GL_POSITION, lamp);
        glGetDoublev(GL_MODELVIEW_MATRIX, view);
        EXPECT_TRUE(glIsEnabled(GL_LIGHTING) && std::abs(lamp[2] + 3) < 1e-5f);
        EXPECT_FLOAT_EQ(float(view[14]), float(glw->camera.model_matrix[14]));
    };
    main->camera.model_matrix[14] = 9; // of another frame
    run("set window at 77,0 from 0,11");
    glEnable(GL_SCISSOR_TEST);
    glScissor(1, 2, 3, 4);
    glClearColor(0.25f, 0.5f, 0.75f, 1);
    glPixelStorei(GL_PACK_ROW_LENGTH, 33);
    glMatrixMode(GL_PROJECTION);
    request.objects[1].draw3D = [&](GLW *glw, float) {
        EXPECT_TRUE(run("record").startsWith("-123,-100 -200,-89"));
        EXPECT_TRUE(glw->camera.viewport[0] == 200 && glw->viewport.viewport[3] == 80 &&
                    glw->geometry(false) == QRectF(200, 20, 100, 80));
        glEnable(GL_BLEND);
    };
    inset->setGeometry({0.5, 0.5, 0.25, 0.25}); // not where the picture has it
    QOpenGLFramebufferObject other(8, 8);
    other.bind(); // not the window's
    const std::string before = state();
    const GL::Camera camera = inset->camera;
    const QString mouse = run("record");
    EXPECT_FALSE(renderPicture(request).image.isNull());
    EXPECT_EQ(state(), before);
    other.release();
    EXPECT_EQ(std::memcmp(&inset->camera, &camera, sizeof camera), 0);
    EXPECT_TRUE(run("record") == mouse && inset->rect == QRectF(0.5, 0.5, 0.25, 0.25));
}

TEST_F(PictureTest, ACropIsACutOfTheWholeAndMayBeGivenUp)
{
    request.size *= 2;
    request.objects[1].draw2D = nullptr;
    request.objects[0].foreground = [](GLW *, QPainter *painter) {
        painter->fillRect(160, 60, 30, 30, Qt::white);
    };
    const QImage whole = renderPicture(request).image;
    request.crop = QRect(150, 40, 120, 70);
    request.size = request.crop.size() * 2;
    const QImage area = renderPicture(request).image;
    EXPECT_EQ(area.pixelColor(20, 40), QColor(Qt::white));
    EXPECT_LE(differing(area, whole.copy(300, 80, 240, 140), 70), 4);
    request.blockSide = 60;
    std::vector<double> told;
    request.progress = [&](double done) { return told.push_back(done), told.size() < 3; };
    const Picture picture = renderPicture(request);
    EXPECT_TRUE(picture.image.isNull() && picture.error.isEmpty());
    EXPECT_EQ(told, (std::vector<double>{1 / 12.0, 2 / 12.0, 3 / 12.0}));
}

TEST(PictureSizes, AreRefusedWithTheirReason)
{
    // picture, window and crop
    const std::tuple<QSize, QSize, QSize, const char *> rows[] = {
        {{0, 100}, {1, 1}, {1, 1}, "nothing"},
        {{100, -1}, {1, 1}, {1, 1}, "nothing"},
        {{32768, 1}, {1, 1}, {1, 1}, "32767"},
        {{1, 32768}, {1, 1}, {1, 1}, "32767"},
        {{1, 1}, {0, 1}, {1, 1}, "no size"},
        {{1, 1}, {1, 1}, {1, -2}, "no size"},
        {{16384, 16385}, {1, 1}, {1, 1}, "268 million"}};
    for (const auto &[size, window, crop, said] : rows) {
        PictureRequest r;
        r.size = size, r.window = window, r.crop = QRect({0, 0}, crop);
        EXPECT_TRUE(renderPicture(r).error.contains(said)) << said; // before OpenGL is asked
    }
    EXPECT_EQ(pictureSizeFault({32767, 1}) + pictureSizeFault({16384, 16384}), "");
}

} // namespace
} // namespace host
