// SPDX-License-Identifier: MIT
// What a pointer means, and where labels stand.
#include "host/measure/snap.h"

#include <cmath>

#include "host/measure/label_layout.h"
#include "tests/host/shapes.h"
#include "tests/support/table.h"

namespace host {
namespace {

/// A box seen from above, along -z: its top reaches from (0, 0) to (4, 2), 100 pixels a unit.
const Shape shape = box({0, 0, 0}, {4, 2, 1});

struct SnapCase {
    const char *name;
    QPointF pointer;
    const char *kind; // of vertex, edge, face; empty: nothing
    Vec at;
    SnapTo to = SnapTo::All;
    bool known = true;  // the topology
    double hidden = -1; // places left of this x are not seen
};

const SnapCase snapCases[] = {
    {"Corner", {3, 4}, "vertex", {0, 0, 1}},
    {"CornerFromOutside", {406, 207}, "vertex", {4, 2, 1}},
    {"CornerOutOfReach", {8, 7}, "edge", {0.08, 0, 1}},
    {"Edge", {150, 6}, "edge", {1.5, 0, 1}},
    {"EdgeFromOutside", {150, -6}, "edge", {1.5, 0, 1}},
    {"NotTheDiagonal", {200, 100}, "face", {2, 1, 1}},
    {"DiagonalIfUnknown", {200, 101}, "edge", {2.004, 1.002, 1}, SnapTo::All, false},
    {"Face", {50, 150}, "face", {0.5, 1.5, 1}},
    {"Outside", {150, -60}, "", {0, 0, 0}},
    {"EdgesAlone", {3, 4}, "edge", {0, 0.04, 1}, SnapTo::Edges},
    {"FacesAlone", {3, 4}, "face", {0.03, 0.04, 1}, SnapTo::Faces},
    {"HiddenCorner", {3, 4}, "edge", {0.03, 0, 1}, SnapTo::All, true, 0.02},
};

TABLE(Snaps, testing::Test, SnapCase, snapCases);

TEST_P(Snaps, ToTheNearest)
{
    const SnapCase &row = GetParam();
    const MeshTopology topology = shape.topology();
    const auto sight = [](const Vec &p) { return Seen{QPointF(p[0], p[1]) * 100, 1}; };
    const auto shown = [&](const Vec &v) { return v[0] > row.hidden; };
    std::optional<SurfacePoint> under;
    const QPointF p = row.pointer / 100;
    if (QRectF(0, 0, 4, 2).contains(p))
        under = SurfacePoint{10, {p.x(), p.y(), 1}};
    const SnapWish wish{shape.mesh, row.known ? &topology : nullptr, row.to, 10};
    const auto snap = snapTo(wish, {10, 11}, under, row.pointer, sight, shown);
    const char *kinds[] = {"vertex", "edge", "face"};
    EXPECT_STREQ(snap ? kinds[int(snap->kind)] : "", row.kind);
    EXPECT_LT((snap.value_or(Snap()).at - row.at).norm(), 1e-6);
}

TEST(SnapTest, PerspectiveIsTakenOutOfEdges)
{
    // An edge that runs away from the eye at depth 1 to depth 3: its middle is seen at a third of
    // its other end's place.
    Shape slope;
    slope.triangle({1, 0, 0}, {1, 0, 2}, {9, 9, 0});
    const auto sight = [](const Vec &p) {
        return Seen{QPointF(p[0], p[1]) * 300 / (1 + p[2]), 1 + p[2]};
    };
    const auto snap = snapTo({slope.mesh, nullptr, SnapTo::All, 5}, {0}, {}, {150, -2}, sight,
                             [](const Vec &) { return true; });
    ASSERT_TRUE(snap);
    EXPECT_LT((snap->at - Vec(1, 0, 1)).norm(), 1e-9) << snap->at.transpose();
}

TEST(LabelLayoutTest, LabelsStayInsideAndApart)
{
    const QRectF bounds(0, 0, 300, 200);
    std::vector<LabelWish> wishes{{{100, 100}, {60, 20}}, {{290, 10}, {60, 20}}};
    EXPECT_EQ(layLabels(wishes, bounds, 4)[0], QRectF(108, 72, 60, 20));
    for (int i = 0; i < 10; ++i)
        wishes.push_back({{290, 10}, {60, 20}});
    const auto places = layLabels(wishes, bounds, 4);
    for (std::size_t i = 0; i < places.size(); ++i) {
        EXPECT_TRUE(bounds.contains(places[i])) << i;
        for (std::size_t k = 0; k < i; ++k)
            EXPECT_FALSE(places[i].intersects(places[k])) << i << " on " << k;
    }
}

} // namespace
} // namespace host
