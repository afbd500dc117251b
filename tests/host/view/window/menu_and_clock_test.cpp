// SPDX-License-Identifier: MIT
// The context menu in the making, the clock that lets an idle window rest, and its two sides.
#include <QMenu>
#include <QMouseEvent>
#include <QTest>
#include <QWidget>

#include <gtest/gtest.h>

#include "host/view/window/frame_clock.h"
#include "host/view/window/menu_tree.h"
#include "host/view/window/side_frame.h"

namespace host {
namespace {

TEST(MenuTreeTest, BuildsWhatWasAddedAndRunsItAfterwards)
{
    QObject receiver;
    auto *dies = new QObject;
    QStringList ran;
    MenuTree tree;
    tree.add("Fit", "F", &receiver, [&] { ran << "fit"; });
    tree.add("Lighting", "G", dies, [&] { ran << "lighting"; });
    QMenu menu;
    EXPECT_TRUE(tree.Build(&menu) == 2 && !menu.actions()[0]->isCheckable());
    for (QAction *entry : menu.actions())
        entry->trigger();
    delete dies;
    EXPECT_TRUE(ran.isEmpty()) << "the menu is still open";
    QCoreApplication::processEvents();
    EXPECT_EQ(ran.join(' '), "fit");
    QAction list("Controls");
    list.setShortcut(QKeySequence("Shift+?"));
    EXPECT_EQ(bindingWords(&list), "?");
}

/// Stands for the module's window: its properties and its slot.
class FakeWindow : public QWidget {
    Q_OBJECT

public:
    int requested = 0;

    FakeWindow() { setMouseTracking(true); } // as the module's does
    float fps() const { return property("fps").toFloat(); }

public slots:
    void Update() { ++requested; }
};

/// Its rests are over as soon as events are looked for.
TEST(FrameClockTest, RestsWhenNothingHappensAndWakesWithInput)
{
    FakeWindow window;
    FrameClock clock(&window, 50, nullptr, 0);
    const auto rest = [] { QCoreApplication::processEvents(); };
    EXPECT_TRUE(!window.property("timer").toBool() && window.fps() == 50) << "frames are asked for";
    rest();
    EXPECT_EQ(window.fps(), 0);

    QMouseEvent move(QEvent::MouseMove, QPointF(1, 1), Qt::NoButton, Qt::NoButton, Qt::NoModifier);
    QCoreApplication::sendEvent(&window, &move);
    EXPECT_EQ(window.fps(), int(FrameClock::lookRate));
    clock.setLookRate(7);
    QCoreApplication::sendEvent(&window, &move);
    EXPECT_EQ(window.fps(), 7);
    FakeWindow busy;
    const FrameClock other(&busy, 50, nullptr, 60000);
    QCoreApplication::sendEvent(&busy, &move);
    EXPECT_EQ(busy.fps(), 50) << "something else goes on";
    QMouseEvent drag(QEvent::MouseMove, QPointF(1, 1), Qt::NoButton, Qt::LeftButton,
                     Qt::NoModifier);
    QCoreApplication::sendEvent(&window, &drag);
    EXPECT_TRUE(window.fps() == 50 && window.requested == 0) << "input alone draws nothing";
    rest();
    QResizeEvent resize({9, 9}, {8, 8});
    QCoreApplication::sendEvent(&window, &resize);
    EXPECT_TRUE(window.fps() == 50 && window.requested == 1);

    clock.setContinuous(true);
    EXPECT_TRUE(window.property("timer").toBool());
    rest();
    QCoreApplication::sendEvent(&window, &move);
    EXPECT_EQ(window.fps(), 50) << "continuous drawing never rests";
    clock.setContinuous(false);
    rest();
    EXPECT_TRUE(!window.property("timer").toBool() && window.fps() == 0);
}

TEST(SideFrameTest, TheViewsHaveWhatTheSideLeaves)
{
    SideFrame frame;
    auto *views = new QWidget, *content = new QWidget;
    frame.setViews(views);
    frame.setContent(content);
    frame.resize(600, 400);
    frame.show();
    QCoreApplication::processEvents();
    views->resize(200, 100); // what the X server tells of it can be old
    QCoreApplication::processEvents();
    EXPECT_EQ(views->size(), QSize(600, 400));
    for (const auto &[chosen, wide] : {std::pair(0, 270), {150, 150}, {500, 360}}) {
        frame.setSideWidth(chosen);
        frame.setOpen(true);
        EXPECT_EQ(content->width(), wide);
        frame.setOpen(false);
    }
    emit frame.splitterMoved(400, 1);
    EXPECT_EQ(frame.sideWidth(), 360);
}

} // namespace
} // namespace host

#include "menu_and_clock_test.moc"
