// SPDX-License-Identifier: MIT
// What a pass, an event or a new object leaves as it was.
#include <climits>

#include <QCoreApplication>
#include <QKeyEvent>
#include <QPainter>
#include <QWheelEvent>

#include "GL/glmultiwidget.h"
#include "Qt/module.h"
#include "table.h"
#include "testing.h"

namespace {

class StateTest : public WindowTest {};

struct RectangleCase {
    const char *name;
    QRectF rect;
};
const RectangleCase rectangles[] = {
    {"Ordinary", QRectF(30.9, 20.9, 100.9, 50)}, {"FarLeft", QRectF(-1e300, -1e300, 1e301, 1e301)},
    {"FarRight", QRectF(1e300, 1e300, 2, 2)},    {"Endless", QRectF(0, 0, INFINITY, INFINITY)},
    {"Nowhere", QRectF(NAN, NAN, NAN, NAN)},
};
TABLE(RectangleTest, WindowTest, RectangleCase, rectangles);

TEST_P(RectangleTest, RecordIsBackAfterAFrameAndAPress)
{
    GLWidget *object = add("o", GetParam().rect);
    object->NewMouseAction(Qt::LeftButton, 0, "press", &host, SLOT(Fired(GLW *)));
    window->mouse.update(50, 60, 1, Qt::LeftButton, 0);
    const QPoint corner = object->glCorner();
    QPoint seen;
    host.on["o.Draw3D"] =
        host.on["o.Fired"] = [&] { seen = QPoint(window->mouse.x, window->mouse.y); };
    tick();
    EXPECT_EQ(seen.x(), bounded::difference(50, corner.x()));
    EXPECT_EQ(seen.y(), bounded::difference(60, corner.y()));
    window->HandleMouseEvent(true);
    EXPECT_EQ(window->mouse.x, 50);
    EXPECT_EQ(window->mouse.y, 60);
    EXPECT_EQ(window->mouse.x0, 0);
}

TEST_F(StateTest, PickIsGivenInTheViewportOfThePaintingWhoeverPaintsText)
{
    GLWidget *object = add("o", QRectF(20, 10, 50, 40));
    QString seen;
    host.on["o.Pick3D"] = [&] {
        GLint v[4];
        glGetIntegerv(GL_VIEWPORT, v);
        seen = QString("%1 %2 %3 %4").arg(v[0]).arg(v[1]).arg(v[2]).arg(v[3]);
    };
    QObject::connect(object, &GLWidget::PaintForeground,
                     [](GLW *, QPainter *painter) { painter->drawText(20, 20, "text"); });
    tick();
    tick();
    EXPECT_EQ(seen, "20 50 50 40");
}

TEST_F(StateTest, ConnectInsideAFrameLeavesItsContext)
{
    QGLWindow other(nullptr, "other");
    other.fps(0);
    other.show();
    GLWidget *inOther = new GLWidget(&owner, "p");
    other.AddGLWidget(inOther);
    add("o");
    const QGLContext *init = nullptr, *after = nullptr;
    host.on["p.Init"] = [&] { init = QGLContext::currentContext(); };
    host.on["o.Draw3D"] = [&] {
        inOther->Connect(&host);
        after = QGLContext::currentContext();
    };
    tick();
    EXPECT_EQ(init, other.context());
    EXPECT_EQ(after, window->context());
    window->doneCurrent();
    inOther->Connect(&host);
    EXPECT_EQ(QGLContext::currentContext(), nullptr);
}

TEST_F(StateTest, KeySlotsHaveTheContext)
{
    GLWidget *object = add("o");
    object->NewKeyAction("K", "key", &host, SLOT(Fired(GLW *)));
    window->mouse.update(50, 60, 1, 0, 0);
    window->doneCurrent();
    const QGLContext *seen = nullptr;
    host.on["o.Fired"] = [&] { seen = QGLContext::currentContext(); };
    QKeyEvent key(QEvent::KeyPress, Qt::Key_K, Qt::NoModifier);
    QCoreApplication::sendEvent(window, &key);
    EXPECT_EQ(seen, window->context());
}

struct WheelCase {
    const char *name;
    Qt::KeyboardModifier modifier;
    QPoint delta;
    const char *fired;
};
const WheelCase wheels[] = {
    {"AltUp", Qt::AltModifier, {120, 0}, "Up"},
    {"AltDown", Qt::AltModifier, {-120, 0}, "Down"},
    {"AltVerticalWins", Qt::AltModifier, {120, -120}, "Down"},
    {"SidewaysWithoutAlt", Qt::ShiftModifier, {120, 0}, "Down"},
};
TABLE(WheelTest, WindowTest, WheelCase, wheels);

TEST_P(WheelTest, DirectionWithAlt)
{
    GLWidget *object = add("o");
    object->NewMouseAction(0x8, 0x3E000000, "Up", &host, SLOT(Plain()));
    QString fired = "Down";
    host.on["Plain"] = [&] { fired = "Up"; };
    QWheelEvent wheel(QPointF(50, 50), QPointF(150, 150), QPoint(), GetParam().delta, Qt::NoButton,
                      GetParam().modifier, Qt::NoScrollPhase, false);
    QCoreApplication::sendEvent(window, &wheel);
    EXPECT_EQ(fired, GetParam().fired);
}

TEST_F(StateTest, InsertedTwiceHearsOnce)
{
    GLMultiWidget view(nullptr, "m");
    window->AddGLWidget(&view);
    window->RemoveGLWidget(&view);
    window->InsertGLWidget(-1, &view);
    view.updateLayout = INT_MAX - 1;
    emit window->Resized(5, 5);
    EXPECT_EQ(view.updateLayout, INT_MAX);
    view.UpdateLayout();
    EXPECT_EQ(view.updateLayout, INT_MAX) << "the count ends there";
    view.updateLayout = 0;
    emit window->Resized(5, 5);
    EXPECT_EQ(view.updateLayout, 1);
}

TEST_F(StateTest, ActionsBeyondAsciiAreReplacedAndDeletedByName)
{
    GLWidget *object = add("o");
    object->NewKeyAction("K", "größer", &host, SLOT(Plain()));
    object->NewMouseAction(1, 0, "größer", &host, SLOT(Plain()));
    ASSERT_EQ(object->actions().size(), 1);
    EXPECT_EQ(object->actions()[0]->objectName(), QString::fromUtf8("größer"));
    EXPECT_TRUE(object->DeleteAction("größer"));
    EXPECT_EQ(KeyAction(nullptr, "\xFC").objectName(), QString::fromUtf8("ü"));
}

TEST(OwnerTest, ForgetsExactlyTheWindowThatEnds)
{
    for (const char *name : {"w", "gr\xFC\xDF", "größer"}) {
        QObject owner;
        QObject *first = qCreateWidget<QGLWindow>(&owner, name);
        QObject *second = qCreateWidget<QGLWindow>(&owner, name);
        delete first;
        EXPECT_EQ(owner.property(name).value<QObject *>(), second) << name;
        second->setObjectName("renamed");
        delete second;
        EXPECT_TRUE(owner.dynamicPropertyNames().isEmpty()) << name;
    }
}

} // namespace
