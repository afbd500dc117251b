// SPDX-License-Identifier: MIT
// A section under a person's hands: keys, the wheel, and handles that are dragged.
#include <QApplication>
#include <QTest>
#include <QWheelEvent>

#include "host/item/model_item.h"
#include "host/view/single_view.h"
#include "sheet/support.h"

namespace host {
namespace {

/// A cube from 0 to 2 along each axis of its file, seen from the front, cut by a plane across z.
class SectionTest : public ViewTest {
protected:
    std::unique_ptr<SingleView> view;

    void SetUp() override
    {
        ViewTest::SetUp();
        view = std::make_unique<SingleView>(*window, queue, boxes("a.obj", 1));
        show(*view);
        QApplication::setActiveWindow(window->widget()); // shortcuts are heard
        look(Steering::Side::Front);
        move({300, 200});
        key(Qt::Key_C);
        ASSERT_EQ(planes().size(), 1u);
    }
    void TearDown() override { view.reset(); }

    void look(Steering::Side side)
    {
        view->lookFrom(side);
        settle(view->mainGLW());
    }
    Item *item() const { return view->item(view->mainGLW()); }
    const std::vector<CutPlane> &planes() const { return item()->section()->planes; }
    float radius() const { return view->mainGLW()->camera.radius; }
    CameraGeometry camera() const { return CameraSteering::geometryOf(view->mainGLW()); }
    /// Where the window shows the upper right corner of the first plane's rectangle.
    QPointF corner() const
    {
        QPointF best(0, 400);
        const SectionFrame frame = item()->sectionFrames().at(0);
        for (const QVector3D &p : frame.corners) {
            const QPointF at(camera().pixel(p).x(), 400 - camera().pixel(p).y());
            best = at.x() - at.y() > best.x() - best.y() ? at : best;
        }
        return best;
    }
    void wheel(int degrees)
    {
        QWheelEvent event({300, 200}, {}, {}, {0, degrees * 8}, Qt::NoButton, Qt::ControlModifier,
                          Qt::NoScrollPhase, false);
        QCoreApplication::sendEvent(window->widget(), &event);
        settle(view->mainGLW());
    }
};

TEST_F(SectionTest, KeysAndWheelCutTurnAndMove)
{
    EXPECT_EQ(planes()[0], (CutPlane{{0, 0, 1}, 1})) << "away from who looks";
    key(Qt::Key_C);
    EXPECT_FALSE(item()->section()->isCutting());
    const float before = radius();
    wheel(15);
    EXPECT_NE(radius(), before) << "zooms while nothing is cut";
    key(Qt::Key_C);
    EXPECT_TRUE(item()->section()->isCutting());
    const float now = radius();
    wheel(15);
    wheel(15);
    wheel(-15);
    EXPECT_DOUBLE_EQ(planes()[0].offset, 1 - 2.0 / 500);
    EXPECT_EQ(radius(), now);
    key(Qt::Key_Down, Qt::ControlModifier);
    key(Qt::Key_X);
    EXPECT_EQ(planes()[0], (CutPlane{{0, 0, -1}, -1}));

    key(Qt::Key_C, Qt::ShiftModifier); // now the face at z = 2
    ASSERT_EQ(planes().size(), 2u);
    EXPECT_EQ(planes()[1].normal, QVector3D(0, 0, 1));
    EXPECT_NEAR(planes()[1].offset, 2 - 2e-4 * std::sqrt(3.0), 1e-6);
    move({10, 200});
    for (int i = 0; i < 2; ++i)
        key(Qt::Key_C, Qt::ShiftModifier); // beside the model: across the axes that are left
    ASSERT_EQ(planes().size(), 3u) << "the last one gives way";
    EXPECT_EQ(planes()[2].axis(), 1);
    key(Qt::Key_X);
    EXPECT_EQ(planes()[2].axis(), 1);

    const Section cut = *item()->section();
    const Item *first = item();
    view->readAgain({});
    ASSERT_TRUE(QTest::qWaitFor([&] { return item() != first; }, 20000));
    EXPECT_EQ(item()->section()->planes, cut.planes);
}

TEST_F(SectionTest, HandlesAreDraggedAlongTheNormal)
{
    const auto perPixel = [&] {
        const float depth = camera().depth(item()->sectionFrames()[0].corners[0]);
        return 2 * double(camera().halfHeight(depth)) / 400 / item()->sectionFrames()[0].scale;
    };
    const auto pose = [&] {
        const Vector &rot = view->mainGLW()->camera.rot;
        return QString::number(double(rot.x)) + ' ' + QString::number(double(rot.y));
    };
    const QString before = pose();
    double step = 20 * perPixel();
    drag(corner(), corner() + QPointF(0, -20), Qt::LeftButton);
    EXPECT_NEAR(planes()[0].offset, 1 - step, step / 10) << "upwards pushes it away";
    drag(corner() - QPointF(30, 0), corner() + QPointF(-30, 250), Qt::LeftButton);
    EXPECT_EQ(planes()[0].offset, 2) << "an edge is a handle; it stops where it cuts nothing";
    EXPECT_EQ(pose(), before);
    drag({300, 200}, {310, 200}, Qt::LeftButton);
    settle(view->mainGLW());
    EXPECT_NE(pose(), before) << "the rest orbits";

    look(Steering::Side::Right); // z runs to the left
    step = 20 * perPixel();
    drag(corner(), corner() + QPointF(20, 7), Qt::LeftButton);
    EXPECT_NEAR(planes()[0].offset, 2 - step, step / 4) << "follows the pointer";
}

} // namespace
} // namespace host
