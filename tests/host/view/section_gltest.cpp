// SPDX-License-Identifier: MIT
// A section under a person's hands: keys, the wheel, and handles that are dragged.
#include "sheet/support.h"

namespace host {
namespace {

/// A cube from 0 to 2 along each axis of its file, seen from the front, cut by a plane across z.
class SectionTest : public SingleViewTest {
protected:
    void SetUp() override
    {
        SingleViewTest::SetUp();
        open(boxes("a.obj", 1));
        hand("300,200 move C");
        ASSERT_EQ(planes().size(), 1u);
    }
    const std::vector<CutPlane> &planes() const { return section().planes; }
    const Section &section() const { return *item()->section(); }
    CameraGeometry camera() const { return CameraSteering::geometryOf(glw()); }
    /// @c is where the window shows the upper right corner of the first plane's rectangle.
    std::optional<QPointF> place(const QString &word) const override
    {
        if (word != "@c")
            return {};
        QPointF best(0, 400);
        const SectionFrame frame = item()->sectionFrames().at(0);
        for (const QVector3D &p : frame.corners) {
            const QPointF at(camera().pixel(p).x(), 400 - camera().pixel(p).y());
            best = at.x() - at.y() > best.x() - best.y() ? at : best;
        }
        return best;
    }
};

TEST_F(SectionTest, KeysAndWheelCutTurnAndMove)
{
    EXPECT_EQ(planes()[0], (CutPlane{{0, 0, 1}, 1})) << "away from who looks";
    const QString before = pose();
    hand("C ctrl 300,200 wheel");
    settle(glw());
    EXPECT_FALSE(section().isCutting());
    EXPECT_NE(pose(), before) << "zooms while nothing is cut";
    const QString now = pose();
    hand("C ctrl 300,200 wheel wheel back");
    settle(glw());
    EXPECT_TRUE(section().isCutting());
    EXPECT_DOUBLE_EQ(planes()[0].offset, 1 - 2.0 / 500);
    EXPECT_EQ(pose(), now);
    hand("Ctrl+Down X");
    EXPECT_EQ(planes()[0], (CutPlane{{0, 0, -1}, -1}));

    hand("Shift+C"); // now the face at z = 2
    ASSERT_EQ(planes().size(), 2u);
    EXPECT_EQ(planes()[1].normal, QVector3D(0, 0, 1));
    EXPECT_NEAR(planes()[1].offset, 2 - 2e-4 * std::sqrt(3.0), 1e-6);
    hand("10,200 move Shift+C Shift+C"); // beside the model: across the axes that are left
    ASSERT_EQ(planes().size(), 3u) << "the last one gives way";
    EXPECT_EQ(planes()[2].axis(), 1);
    const CutPlane last = planes()[2];
    hand("X");
    EXPECT_EQ(planes()[2], last.flipped());

    const Section cut = section();
    const Item *first = item();
    view->readAgain({});
    ASSERT_TRUE(QTest::qWaitFor([&] { return item() != first; }, 20000));
    EXPECT_EQ(planes(), cut.planes);
}

TEST_F(SectionTest, WhereNoAxisIsLeftThePlaneThatIsThereIsChosen)
{
    hand("10,200 move Shift+C Shift+C Shift+C X");
    ASSERT_EQ(planes().size(), 3u);
    for (std::size_t i = 0; i < 3; ++i)
        EXPECT_TRUE(planes()[i].axis() == int(i + 2) % 3 && (planes()[i].offset < 0) == (i == 0));
}

TEST_F(SectionTest, HandlesAreDraggedAlongTheNormal)
{
    hand("9,200 move");
    const QImage still = painted();
    hand("@c move down middle down up 9,200 move");
    EXPECT_EQ(painted(), still) << "another button ends a drag";
    const struct {
        const char *script;
        double step; // in pixels of the picture, from the offset before; 0: to the end, at 2
        double within;
        bool orbits;
    } rows[] = {{"@c move down +0,-20 move up", 20, 0.1, false},     // upwards pushes it away
                {"@c +-30,0 move down +0,250 move up", 0, 0, false}, // an edge is a handle
                {"300,200 move down 310,200 move up", 0, 0, true},   // the rest orbits
                {"@c move down +20,7 move up", 20, 0.25, false}};
    for (const auto &row : rows) {
        if (&row == &rows[3])
            hand("4"), settle(glw()); // z runs to the left
        const QString before = pose();
        const SectionFrame frame = item()->sectionFrames()[0];
        const float depth = camera().depth(frame.corners[0]);
        const double step = row.step * 2 * double(camera().halfHeight(depth)) / 400 / frame.scale;
        const double expected = row.step > 0 ? planes()[0].offset - step : 2;
        hand(row.script);
        settle(glw());
        EXPECT_NEAR(planes()[0].offset, expected, step * row.within) << row.script;
        EXPECT_EQ(pose() != before, row.orbits) << row.script;
    }
}

} // namespace
} // namespace host
