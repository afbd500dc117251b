// SPDX-License-Identifier: MIT
#include "math/vector.h"

#include <cmath>
#include <limits>

#include "tests/GL/table.h"

namespace {

struct ResultCase {
    const char *name;
    Vector (*make)();
    Vector expected;
};

const ResultCase resultCases[] = {
    {"DefaultIsZero", [] { return Vector(); }, {0, 0, 0}},
    {"ZeroClearsAll", [] { return Vector(1, 2, 3).zero(); }, {0, 0, 0}},
    {"ScalarAssignment", [] { return Vector(1, 2, 3) = 4.0f; }, {4, 4, 4}},
    {"ProductIsByComponent", [] { return Vector(1, 2, 3) *= Vector(4, 5, 6); }, {4, 10, 18}},
    {"Quotient", [] { return Vector(2, 4, 6) /= 2; }, {1, 2, 3}},
    {"SumAndDifference",
     [] { return Vector(1, 2, 3) + Vector(10, 20, 30) - Vector(5, 5, 5); },
     {6, 17, 28}},
    {"NormalizeLengthens", [] { return Vector(0, 2, 0).normalize(5); }, {0, 5, 0}},
    {"NormalizeShortens", [] { return Vector(0, 6, 8).normalize(5); }, {0, 3, 4}},
    {"NormalizeOfZero", [] { return Vector(0, 0, 0).normalize(5); }, {0, 0, 0}},
    {"RotateX", [] { return Vector(0, 1, 0).rotate_x(-90); }, {0, 0, -1}},
    {"RotateY", [] { return Vector(0, 0, 1).rotate_y(90); }, {1, 0, 0}},
    {"RotateYBack", [] { return Vector(1, 0, 0).rotate_y(90); }, {0, 0, -1}},
    {"RotateZ", [] { return Vector(1, 0, 0).rotate_z(90); }, {0, 1, 0}},
    // Single-precision sines would leave 1e-7 of a half turn.
    {"HalfTurnInDouble", [] { return Vector(1, 0, 0).rotate_z(180) * 1e6f; }, {-1e6f, 0, 0}},
};

TABLE(VectorResult, testing::Test, ResultCase, resultCases);

TEST_P(VectorResult, IsExpected)
{
    const Vector v = GetParam().make();
    for (int i = 0; i < 3; ++i)
        EXPECT_NEAR(v[i], GetParam().expected[i], 1e-6) << "component " << i;
}

TEST(VectorTest, ProductOfTwoIsTheDotProduct)
{
    EXPECT_EQ(Vector(1, 2, 3) * Vector(4, 5, 6), 32);
    EXPECT_EQ(Vector(1, 2, 2).length(), 3);
}

TEST(VectorTest, EqualityIsExact)
{
    const float nan = std::numeric_limits<float>::quiet_NaN();
    EXPECT_TRUE(Vector(0, 0, 0) == Vector(-0.0f, 0, 0));
    EXPECT_FALSE(Vector(1, 2, 3) == Vector(1, 2, std::nextafter(3.0f, 4.0f)));
    EXPECT_FALSE(Vector(nan, 0, 0) == Vector(nan, 0, 0));
}

TEST(VectorTest, ServesAsAnArray)
{
    const float numbers[] = {1, 2, 3};
    Vector v(numbers);
    v[1] = 7;
    const Real *p = v;
    EXPECT_EQ(p[0], 1);
    EXPECT_EQ(p[1], 7);
    EXPECT_EQ(p[2], 3);
}

} // namespace
