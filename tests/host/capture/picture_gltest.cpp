// SPDX-License-Identifier: MIT
#include <cstring>

#include <QBuffer>
#include <QOpenGLFramebufferObject>
#include <QPainter>

#include "host/capture/picture.h"
#include "scene.h"

namespace host {
namespace {

struct ViewCase {
    const char *name;
    int mode, ortho; // of the camera
    int align;       // of the 2D viewport
    Vector scale2D;
    double scale; // picture pixels per window pixel
    bool transparent;
};

const ViewCase viewCases[] = {
    {"Perspective", 2, 0, GL::Viewport::AlignCenter, {1, 1, 1}, 1, false},
    {"Orthographic", 2, 1, GL::Viewport::AlignBottom, {2, 1, 1}, 1, false},
    {"FixedMatrix", 0, 0, GL::Viewport::AlignLeft | GL::Viewport::AlignTop, {1, 1, 1}, 1, false},
    {"Transparent", 2, 0, GL::Viewport::AlignCenter, {1, 3, 1}, 1, true},
    {"Enlarged", 2, 0, GL::Viewport::AlignHCenter, {1, 1, 1}, 2.5, false},
};

void PrintTo(const ViewCase &c, std::ostream *out)
{
    *out << c.name;
}

class Views : public Scene, public testing::WithParamInterface<ViewCase> {};

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
    for (GLWidget *object : {&main, &inset}) {
        object->camera.ortho = GetParam().ortho;
        object->camera.mode = GetParam().mode;
        object->camera.m[14] = -3;
        object->viewport.align = GetParam().align;
        object->viewport.scale = GetParam().scale2D;
        object->viewport.pos = Vector(-9, -4, 0);
    }
    PictureRequest r = request();
    r.size = (QSizeF(r.window) * GetParam().scale).toSize();
    const Picture picture = renderPicture(r);
    ASSERT_FALSE(picture.image.isNull()) << picture.error.toStdString();
    const QImage small =
        picture.image.scaled(r.window, Qt::IgnoreAspectRatio, Qt::SmoothTransformation);
    QImage black(small.size(), QImage::Format_RGB32);
    black.fill(Qt::black);
    // The window's edges are hard, the picture's are soft.
    EXPECT_LT(differing(small, shown(), 140), 320 * 200 / 100);
    EXPECT_GT(differing(small, black, 100), 6000);

    r.transparent = GetParam().transparent;
    r.objects[0].background = drawRamp;
    const QImage whole = renderPicture(r).image;
    r.blockSide = 37;
    const QImage blocks = renderPicture(r).image;
    // One of four samples at an edge may fall to the other side.
    EXPECT_LE(differing(whole, blocks, 70), 4);
    EXPECT_LT(differing(whole, blocks, 2), r.size.width() * r.size.height() / 1000);
    if (!r.transparent) {
        const QPoint right(r.size.width() - 2, r.size.height() - 2);
        EXPECT_NEAR(whole.pixelColor(right).red(), 254, 2);
        EXPECT_NEAR(whole.pixelColor(r.size.width() / 4, right.y()).red(), 64, 2);
    }
}

INSTANTIATE_TEST_SUITE_P(Rows, Views, testing::ValuesIn(viewCases),
                         [](const auto &row) { return std::string(row.param.name); });

class PictureTest : public Scene {};

TEST_F(PictureTest, AlphaIsWhatIsCoveredHoweverTheContentBlends)
{
    PictureRequest r = request();
    r.transparent = true;
    r.background = Qt::white;
    r.objects.resize(1);
    main.viewport.align = GL::Viewport::AlignLeft | GL::Viewport::AlignTop;
    int backgrounds = 0;
    r.objects[0].background = [&](GLW *, float) { ++backgrounds; };
    r.objects[0].draw3D = nullptr;
    r.objects[0].draw2D = [](GLW *, float) {
        glColor4f(0.4f, 0, 0, 0.5f); // not blended: opaque on the screen whatever its alpha
        glRectf(270, 20, 319, 180);  // x = 319 is the right edge there
        glEnable(GL_BLEND);
        glBlendFunc(GL_SRC_ALPHA, GL_ONE_MINUS_SRC_ALPHA);
        glColor4f(0, 1, 0, 0.4f);
        glRectf(110, 20, 160, 180);
    };
    r.objects[0].foreground = [](GLW *, QPainter *painter) {
        painter->fillRect(200, 50, 20, 20, QColor(0, 0, 255, 102));
    };
    const QImage image = renderPicture(r).image;
    QByteArray file;
    QBuffer buffer(&file);
    ASSERT_TRUE(image.save(&buffer, "PNG"));
    const QImage read = QImage::fromData(file).convertToFormat(QImage::Format_ARGB32);
    EXPECT_EQ(read.pixelColor(319, 100), QColor(102, 0, 0, 255));
    EXPECT_EQ(read.pixelColor(130, 100), QColor(0, 255, 0, 102));
    EXPECT_EQ(read.pixelColor(210, 60), QColor(0, 0, 255, 102));
    EXPECT_EQ(read.pixel(300, 10), 0u);
    EXPECT_EQ(backgrounds, 0);

    r.transparent = false;
    const QImage opaque = renderPicture(r).image;
    EXPECT_EQ(opaque.pixelColor(319, 100), QColor(102, 0, 0));
    EXPECT_EQ(opaque.pixelColor(130, 100), QColor(153, 255, 153));
    EXPECT_EQ(opaque.pixelColor(210, 60), QColor(153, 153, 255));
    EXPECT_EQ(opaque.pixelColor(300, 10), QColor(Qt::white));
    EXPECT_EQ(backgrounds, 1);
}

// An object too large for a GL viewport is cut into frusta; a line and a point beside a seam, at
// 1728, reach over it.
TEST_F(PictureTest, WiderThanAnyViewport)
{
    GLint limit[2] = {0, 0};
    glGetIntegerv(GL_MAX_VIEWPORT_DIMS, limit);
    PictureRequest r;
    r.window = QSize(2000, 20);
    r.size = QSize(20000, 200);
    r.blockSide = 1728;
    ASSERT_GT(r.size.width(), limit[0]);
    r.objects.push_back({&main, QRectF(0, 0, 2000, 20), {}, {}, {}, {}});
    r.objects[0].draw2D = [](GLW *, float scale) {
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
    const QImage image = renderPicture(r).image;
    ASSERT_EQ(image.size(), r.size);
    const auto firstAndLast = [&image](int y) {
        int first = -1, last = -1;
        for (int x = 0; x < image.width(); ++x)
            if (qRed(image.pixel(x, y)) > 127) {
                first = first < 0 ? x : first;
                last = x;
            }
        return std::make_pair(first, last);
    };
    EXPECT_EQ(firstAndLast(50), std::make_pair(1678, 1737));
    EXPECT_EQ(firstAndLast(150), std::make_pair(1720, 1759));
    EXPECT_EQ(firstAndLast(120), std::make_pair(-1, -1));
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
    main.lights.emplace_back(GLenum(GL_LIGHT0), 'l');
    window->mouse.x = 77;
    window->mouse.y0 = 11;
    glEnable(GL_SCISSOR_TEST);
    glScissor(1, 2, 3, 4);
    glClearColor(0.25f, 0.5f, 0.75f, 1);
    glPixelStorei(GL_PACK_ROW_LENGTH, 33);
    glMatrixMode(GL_PROJECTION);
    PictureRequest r = request();
    r.size *= 3;
    bool local = true;
    r.objects[1].draw3D = [&](GLW *glw, float) {
        local = local && window->mouse.x == 77 - 200 && window->mouse.y0 == 11 - 100 &&
                glw->camera.viewport[0] == 200 && glw->camera.viewport[3] == 80 &&
                glw->geometry(false) == QRectF(200, 20, 100, 80);
        glEnable(GL_BLEND);
    };
    inset.setGeometry({0.5, 0.5, 0.25, 0.25}); // not where the picture has it
    QOpenGLFramebufferObject other(8, 8);
    other.bind(); // not the window's
    const std::string before = state();
    const GL::Camera camera = inset.camera;
    const Mouse mouse = window->mouse;

    ASSERT_FALSE(renderPicture(r).image.isNull());

    EXPECT_TRUE(local);
    EXPECT_EQ(state(), before);
    other.release();
    EXPECT_EQ(std::memcmp(&inset.camera, &camera, sizeof camera), 0);
    EXPECT_EQ(std::memcmp(&window->mouse, &mouse, sizeof mouse), 0);
    EXPECT_EQ(inset.rect, QRectF(0.5, 0.5, 0.25, 0.25));
    EXPECT_EQ(glGetError(), GLenum(GL_NO_ERROR));
}

TEST_F(PictureTest, ACropIsACutOfTheWhole)
{
    PictureRequest r = request();
    r.size *= 2;
    r.objects[0].foreground = [](GLW *, QPainter *painter) {
        painter->fillRect(160, 60, 30, 30, Qt::white);
    };
    const QImage whole = renderPicture(r).image;
    r.crop = QRect(150, 40, 120, 70);
    r.size = r.crop.size() * 2;
    const QImage area = renderPicture(r).image;
    EXPECT_EQ(area.pixelColor(20, 40), QColor(Qt::white));
    EXPECT_LE(differing(area, whole.copy(300, 80, 240, 140), 70), 4);
}

TEST_F(PictureTest, GivesUpWhenAskedTo)
{
    PictureRequest r = request();
    r.blockSide = 100;
    std::vector<double> told;
    r.progress = [&](double done) {
        told.push_back(done);
        return told.size() < 3;
    };
    const Picture picture = renderPicture(r);
    EXPECT_TRUE(picture.image.isNull());
    EXPECT_TRUE(picture.error.isEmpty());
    EXPECT_EQ(told, (std::vector<double>{0.125, 0.25, 0.375}));
}

TEST(PictureSizes, AreRefusedWithTheirReason)
{
    const std::pair<QSize, const char *> sizes[] = {
        {{0, 100}, "nothing"},           {{100, -1}, "nothing"}, {{32767, 1}, nullptr},
        {{32768, 1}, "32767"},           {{1, 32768}, "32767"},  {{16384, 16384}, nullptr},
        {{16384, 16385}, "268 million"},
    };
    PictureRequest r;
    r.window = QSize(1, 1);
    for (const auto &[size, said] : sizes) {
        r.size = size;
        const std::string fault = pictureSizeFault(size).toStdString();
        EXPECT_NE(fault.find(said ? said : ""), std::string::npos) << fault;
        EXPECT_EQ(fault.empty(), !said) << fault;
        if (said) {
            EXPECT_EQ(renderPicture(r).error.toStdString(), fault); // before OpenGL is asked
        }
    }
    r.size = QSize(1, 1);
    r.window = QSize(0, 1);
    EXPECT_TRUE(renderPicture(r).error.contains("no size"));
    r.window = QSize(1, 1);
    r.crop = QRect(0, 0, 1, -2);
    EXPECT_TRUE(renderPicture(r).error.contains("no size"));
}

} // namespace
} // namespace host
