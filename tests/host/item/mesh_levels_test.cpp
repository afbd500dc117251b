// SPDX-License-Identifier: MIT
// What is left of a mesh in its levels, part by part.
#include "host/item/rough_level.h"

#include "tests/host/shapes.h"
#include "tests/support/table.h"

namespace host {
namespace {

struct LevelsCase {
    const char *name;
    int cells;
    bool facets, coloured; // vertices that differ in colour are never one
    std::size_t levels;
    bool keepsShape;
};

const LevelsCase levelsCases[] = {
    {"Small", 220, false, false, 0, true},           {"Shared", 230, false, false, 6, true},
    {"Facets", 230, true, false, 6, true},           {"InPieces", 400, true, false, 9, true},
    {"Coloured", 230, false, true, 6, true},         {"ColouredFacets", 230, true, true, 6, false},
    {"ColouredInPieces", 400, true, true, 9, false},
};

TABLE(MeshLevelsOf, testing::Test, LevelsCase, levelsCases);

TEST_P(MeshLevelsOf, HaveTheSameShapeOfFewerTriangles)
{
    const LevelsCase &row = GetParam();
    Mesh mesh = roof(row.cells, row.facets);
    if (row.coloured)
        mesh.colours.assign(mesh.vertexCount() * 4, 255);
    MeshLevels made(mesh);
    made.make(mesh, std::atomic<bool>(false));
    ASSERT_EQ(made.count(), row.levels);
    const std::size_t expected = MeshLevels::expectedBytes(mesh);
    EXPECT_NEAR(double(expected), double(made.byteSize()), 0.2 * double(expected));
    const double share = double(row.cells / 4) / row.cells; // of the first part
    const bool hasRough = mesh.triangleCount() >= roughFrom;
    double whole = double(mesh.triangleCount());
    for (std::size_t i = 0; i < made.count() + hasRough; ++i) {
        const bool isRough = i == made.count(), keepsShape = row.keepsShape && !isRough;
        const MeshLevel &level = isRough ? roughLevelOf(mesh, std::atomic<bool>(false)) : made[i];
        whole = isRough ? double(roughSize) : whole / M_SQRT2;
        EXPECT_LE(double(level.triangleCount()), whole * (keepsShape ? 1.2 : 1) + 16);
        EXPECT_GE(double(level.triangleCount()), whole * 0.6);
        ASSERT_EQ(level.ends.size(), 3u);
        EXPECT_EQ(level.ends[2], level.indices.size());
        EXPECT_EQ(level.ends[2] - level.ends[1], 3u) << "a small part is whole";
        if (i % 3 != 1 && !isRough)
            continue; // they are made the same way, and looking at all takes long
        Mesh reduced = mesh, lit = mesh;
        reduced.indices = lit.indices = level.indices;
        lit.positions = mesh.normals;
        quint32 at = 0; // triangle
        for (const std::size_t part : {0, 1}) {
            double area = 0, bent = 0, off = 0, least = 1;
            int strayed = 0;
            for (; at * 3 < level.ends[part]; ++at) {
                Vec middle(0, 0, 0);
                const Vec across = normalOf(reduced, at);
                double bend = across.norm();
                for (quint32 k = 0; k < 3; ++k) {
                    middle += cornerOf(reduced, at, k) / 3;
                    bend = std::min(bend, across.dot(cornerOf(lit, at, k)));
                }
                area += across[2] / 2;
                least = std::min(least, across[2]);
                bent +=
                    bend < 0.999 * across.norm() ? across.norm() / 2 : 0; // lit as beyond the ridge
                off = std::max(off, std::abs(middle[2] - 0.2 + 0.4 * std::abs(middle[0] - 0.5)));
                strayed += (middle[0] < share + (part == 0 ? 1e-6 : -1e-6)) != (part == 0);
            }
            EXPECT_EQ(strayed, 0);
            EXPECT_GE(least, -1e-9) << "turned over";
            if (keepsShape) {
                const double over = area - (part == 0 ? share : 1 - share);
                EXPECT_GT(over, -1e-4) << "a gap";
                EXPECT_LT(over, 0.05) << "folds";
                EXPECT_LT(off, 1e-5);
            }
            EXPECT_LT(bent, keepsShape && row.facets ? 1e-4 : 1);
        }
    }
    MeshLevels cancelled(mesh);
    cancelled.make(mesh, std::atomic<bool>(true));
    EXPECT_EQ(cancelled.count() + roughLevelOf(mesh, std::atomic<bool>(true)).ends.size(), 0u);
}

TEST(MeshLevelsOf, AreCloseToEachOtherWhereTheyAreDrawn)
{
    Mesh mesh;
    mesh.indices.resize(3 * 4'000'000);
    mesh.parts.resize(2);
    const double close = 500'000 / (1 - M_SQRT1_2); // and so on, but for 12,000 and less
    EXPECT_NEAR(double(MeshLevels::expectedBytes(mesh)), 12 * (3e6 + close - 38'000), 12'000);
}

} // namespace
} // namespace host
