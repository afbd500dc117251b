// SPDX-License-Identifier: MIT
// The window's list of scene objects and its frame.
#include "GL/glwindow.h"

#include <QCoreApplication>
#include <QSignalSpy>

#include "table.h"
#include "testing.h"

namespace {

using Frame = WindowTest;

void fill(float r, float g, float b)
{
    glMatrixMode(GL_PROJECTION);
    glLoadIdentity();
    glMatrixMode(GL_MODELVIEW);
    glLoadIdentity();
    glColor3f(r, g, b);
    glRectf(-1, -1, 1, 1);
}

TEST_F(Frame, PassesFollowEachOtherOverTheWholeList)
{
    add("a");
    window->AddGLWidget(add("b"));
    add("c");
    tick();
    EXPECT_EQ(host.take(), "b.Pick3D b.Pick2D a.Pick3D a.Pick2D c.Pick3D c.Pick2D "
                           "b.Draw3D b.Draw2D a.Draw3D a.Draw2D c.Draw3D c.Draw2D "
                           "b.PaintForeground a.PaintForeground c.PaintForeground");
}

TEST_F(Frame, EachPassTakesTheListAnew)
{
    GLWidget *a = add("a");
    GLWidget *b = add("b");
    window->RemoveGLWidget(b);
    host.on["a.Pick3D"] = [&] { window->AddGLWidget(b); };
    host.on["a.Draw2D"] = [&] { window->RemoveGLWidget(a); };
    tick();
    EXPECT_EQ(host.take(), "a.Pick3D a.Pick2D b.Draw3D b.Draw2D a.Draw3D a.Draw2D "
                           "b.PaintForeground");
}

struct GateCase {
    const char *name;
    QVariant timer;
    int updates;
    bool byTimer; // else by an expose
    QSize size;
    bool picks, paints;
};

const GateCase gateCases[] = {
    {"TickPaints", true, 0, true, {200, 100}, true, true},
    {"IdleTickPicksOnly", false, 0, true, {200, 100}, true, false},
    {"UnreadableTimerCountsAsFalse", QVariant(), 0, true, {200, 100}, true, false},
    {"UpdateLetsTheTickPaint", false, 2, true, {200, 100}, true, true},
    {"ExposePaintsWhenIdle", false, 0, false, {200, 100}, true, true},
    {"TenPixelsWide", true, 1, true, {10, 200}, false, false},
    {"TenPixelsHigh", true, 1, true, {200, 10}, false, false},
    {"ElevenPixelsSquare", true, 1, true, {11, 11}, true, true},
};

TABLE(FrameGate, WindowTest, GateCase, gateCases);

TEST_P(FrameGate, DecidesWhetherAFramePaints)
{
    const GateCase &c = GetParam();
    window->setProperty("timer", c.timer);
    window->resize(c.size);
    QCoreApplication::processEvents();
    window->update = 0;
    window->last_draw = 1; // until a swap
    add("a");
    for (int i = 0; i < c.updates; ++i)
        window->Update();
    EXPECT_EQ(host.take(), "") << "Update() does not repaint by itself";

    c.byTimer ? tick() : window->repaint();
    EXPECT_EQ(host.log.contains("a.Pick3D"), c.picks);
    EXPECT_EQ(host.log.contains("a.Draw3D"), c.paints);
    EXPECT_EQ(host.log.contains("a.PaintForeground"), c.paints);
    EXPECT_EQ(window->last_draw != 1, c.paints);
    EXPECT_EQ(window->update, c.paints ? 0 : c.updates);
    EXPECT_FALSE(window->timer_event);

    host.log.clear();
    tick();
    EXPECT_EQ(host.log.contains("a.Draw3D"), c.paints && c.timer.toBool())
        << "a request is served once";
}

TEST_F(Frame, HiddenWindowNeitherPicksNorPaints)
{
    add("a");
    window->hide();
    tick();
    EXPECT_EQ(host.take(), "");
}

TEST_F(Frame, ClearsDrawsInTheObjectsRectangleAndSwaps)
{
    add("a", QRectF(0.5, 0, 0.5, 0.5));
    host.on["a.Draw3D"] = [] { fill(1, 0, 0); };
    tick();
    QImage image = screen();
    EXPECT_EQ(image.pixelColor(110, 40), QColor(255, 0, 0)) << "the upper right quarter";
    EXPECT_EQ(image.pixelColor(110, 60), QColor(0, 0, 0)) << "below it";
    EXPECT_EQ(image.pixelColor(90, 40), QColor(0, 0, 0)) << "left of it";
    window->glwidgets[0]->setProperty("visible", false);
    tick();
    tick();
    EXPECT_EQ(screen().pixelColor(110, 40), QColor(0, 0, 0));
}

TEST_F(Frame, LeavesTheErrorOfAnUnknownCapability)
{
    window->setProperty("drawfps", false);
    GLenum before = GL_INVALID_VALUE;
    add("a");
    host.on["a.Draw2D"] = [&] { before = glGetError(); };
    tick();
    EXPECT_EQ(before, GLenum(GL_NO_ERROR));
    EXPECT_EQ(glGetError(), GLenum(GL_INVALID_ENUM));
    EXPECT_EQ(glGetError(), GLenum(GL_NO_ERROR));
}

TEST_F(Frame, AttributesSetForTheTextAreRestored)
{
    add("a");
    GLfloat colour[4] = {};
    host.on["a.Draw2D"] = [] { glColor3f(0.25f, 0.5f, 0.75f); };
    window->setProperty("drawfps", false);
    tick();
    glGetFloatv(GL_CURRENT_COLOR, colour);
    EXPECT_EQ(colour[0], 1) << "white is set ahead of the push";
    GLint depth = -1;
    glGetIntegerv(GL_ATTRIB_STACK_DEPTH, &depth);
    EXPECT_EQ(depth, 0);
}

TEST(GLWindowTest, StartsWithItsPropertiesAndSettings)
{
    QGLWindow window(nullptr, nullptr);
    QStringList properties;
    for (const QByteArray &name : window.dynamicPropertyNames())
        properties << name + ':' + window.property(name).typeName() + ':' +
                          window.property(name).toString();
    EXPECT_EQ(properties.join(' '),
              "verbose:int:0 timer:bool:true drawfps:bool:true fpsString:QString: "
              "cpuString:QString: swRendering:bool:false clampMouseToFrame:bool:true");
    EXPECT_EQ(window.objectName(), "");
    EXPECT_EQ(window.focusPolicy(), Qt::StrongFocus);
    EXPECT_EQ(window.sizePolicy().horizontalPolicy(), QSizePolicy::Expanding);
    EXPECT_EQ(window.sizePolicy().verticalPolicy(), QSizePolicy::Expanding);
    EXPECT_TRUE(window.hasMouseTracking());
    EXPECT_FALSE(window.autoFillBackground());
}

struct RendererCase {
    const char *name;
    const char *renderer;
    bool software;
};

const RendererCase rendererCases[] = {
    {"Software", "Mesa Software Rasterizer", true},
    {"CaseMatters", "software pipe", false},
    {"Hardware", "A Graphics Card", false},
};

TABLE(Renderer, testing::Test, RendererCase, rendererCases);

TEST_P(Renderer, IsToldAfterGLIsInitialised)
{
    fakeRenderer = GetParam().renderer;
    QGLWindow window(nullptr, nullptr);
    window.resize(50, 50);
    Host host;
    GLWidget object(nullptr, "a");
    window.AddGLWidget(&object);
    object.Connect(&host);
    EXPECT_EQ(host.take(), "") << "not before the window is shown";
    window.show();
    QCoreApplication::processEvents();
    fakeRenderer = nullptr;
    EXPECT_EQ(window.property("swRendering"), QVariant(GetParam().software));
    EXPECT_EQ(host.log.count("a.Init"), 1);
    EXPECT_EQ(host.log.first(), "a.Init");
}

TEST_F(Frame, TraceLinePerTickWhenVerbose)
{
    const auto traced = [this](const QVariant &verbose) {
        window->setProperty("verbose", verbose);
        testing::internal::CaptureStdout();
        tick();
        return testing::internal::GetCapturedStdout();
    };
    EXPECT_EQ(traced(2), "window # timerEvent()\n");
    EXPECT_EQ(traced(0), "");
    EXPECT_EQ(traced("loud"), "");
}

TEST_F(Frame, ResizingTellsTheNewSize)
{
    QSignalSpy spy(window, SIGNAL(Resized(int, int)));
    window->resize(120, 80);
    QCoreApplication::processEvents();
    ASSERT_GE(spy.size(), 1);
    EXPECT_EQ(spy.last(), (QVariantList{120, 80}));
}

/// A scene object that hears of its window.
class Listener : public GLWidget {
    Q_OBJECT

public:
    Listener() : GLWidget(nullptr, "listener") {}
    QStringList log;

public Q_SLOTS:
    void Connected() { log << (gl ? "Connected" : "no window"); }
    void Resize(int w, int h) { log << QString("%1x%2").arg(w).arg(h); }
};

TEST_F(Frame, InsertedObjectIsConnectedAndHearsOfSizes)
{
    Listener listener;
    EXPECT_EQ(window->AddGLWidget(&listener), &listener);
    EXPECT_EQ(listener.log, QStringList{"Connected"});
    emit window->Resized(3, 4);
    EXPECT_EQ(listener.log.mid(1), QStringList{"3x4"});
}

TEST_F(Frame, ListHoldsEachObjectOnceWhereItWasPutLast)
{
    GLWidget *a = add("a"), *b = add("b"), *c = add("c");
    EXPECT_EQ(window->InsertGLWidget(-1, a), a);
    EXPECT_EQ(window->glwidgets, (QList<GLWidget *>{b, c, a}));
    window->InsertGLWidget(1, a);
    EXPECT_EQ(window->glwidgets, (QList<GLWidget *>{b, a, c}));
    EXPECT_EQ(window->AddGLWidget(&owner), nullptr) << "no scene object";
    EXPECT_EQ(window->AddGLWidget(nullptr), nullptr);
    EXPECT_FALSE(window->RemoveGLWidget(&owner));
    EXPECT_EQ(a->gl, window.data());
    EXPECT_TRUE(window->RemoveGLWidget(a));
    EXPECT_EQ(a->gl, nullptr);
    EXPECT_FALSE(window->RemoveGLWidget(a));
    delete b;
    EXPECT_EQ(window->glwidgets.size(), 2) << "an object that dies unremoved keeps its entry";
    tick();
    EXPECT_EQ(host.take(), "c.Pick3D c.Pick2D c.Draw3D c.Draw2D c.PaintForeground");
    delete window;
    EXPECT_EQ(c->gl, nullptr);
}

} // namespace

#pragma GCC diagnostic ignored "-Wshadow" // moc's parameter _id, GLW's member
#include "glwindow_gltest.moc"
