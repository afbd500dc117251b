// SPDX-License-Identifier: MIT
#include "math/vector.h"

#include <tuple>
#include <utility>

#include <gtest/gtest.h>

namespace {

const Real numbers[] = {1, 2, 3};
const Vector a(numbers), b(4, -5, 6);
const std::tuple<const char *, Vector, Vector> rows[] = {
    {"zero", Vector(), {0, 0, 0}},
    {"sum", a + b, {5, -3, 9}},
    {"difference", a - b, {-3, 7, -3}},
    {"multiple", a * 2, {2, 4, 6}},
    {"added", Vector(a) += b, {5, -3, 9}},
    {"subtracted", Vector(a) -= b, {-3, 7, -3}},
    {"product", Vector(a) *= b, {4, -10, 18}},
    {"multiplied", Vector(a) *= 2, {2, 4, 6}},
    {"divided", Vector(b) /= 2, {2, -2.5f, 3}},
    {"assigned", Vector(a) = Real(5), {5, 5, 5}},
    {"zeroed", Vector(a).zero(), {0, 0, 0}},
    {"shortened", Vector(0, 3, 4).normalize(2.5f), {0, 1.5f, 2}},
    {"lengthened", Vector(2, 0, 0).normalize(5), {5, 0, 0}},
    {"zero without direction", Vector().normalize(5), {0, 0, 0}},
    {"turned about x", Vector(7, 1, 2).rotate_x(30), {7, -0.1339746f, 2.2320508f}},
    {"turned about y", Vector(1, 7, 2).rotate_y(30), {1.8660254f, 7, 1.2320508f}},
    {"turned about z", Vector(1, 2, 7).rotate_z(30), {-0.1339746f, 2.2320508f, 7}},
    {"dot product, length", {a * b, a.length_sq(), Vector(2, 3, 6).length()}, {12, 14, 7}},
};

TEST(VectorTest, CalculatesByComponentAndComparesExactly)
{
    for (const auto &[name, found, expected] : rows)
        EXPECT_LT(std::hypot(found.x - expected.x, found.y - expected.y, found.z - expected.z),
                  1e-6)
            << name;
    for (int i = 0; i < 3; ++i) {
        Vector other = a, zero(0, -0.0f, 0);
        other[i] += 1;
        EXPECT_TRUE(other != a && !(other == a) && !zero && zero == Vector());
        EXPECT_EQ(std::as_const(other)[i], numbers[i] + 1);
        EXPECT_EQ(static_cast<const Real *>(std::as_const(other))[i], numbers[i] + 1);
        static_cast<Real *>(zero)[i] = 1;
        EXPECT_FALSE(!zero);
        zero[i] = NAN;
        EXPECT_FALSE(zero == zero);
    }
}

} // namespace
