// SPDX-License-Identifier: MIT
// What is left of a mesh in its levels, part by part.
#include "host/item/rough_level.h"

#include <array>

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
    {"Small", 220, false, false, 0, true},   {"Shared", 226, false, false, 6, true},
    {"Facets", 226, true, false, 6, true},   {"InPieces", 400, true, false, 9, true},
    {"Coloured", 226, false, true, 6, true}, {"ColouredFacets", 226, true, true, 6, false},
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
    const bool hasRough = row.levels == 9;                  // it is the same for all
    double whole = double(mesh.triangleCount());
    for (std::size_t i = 0; i < made.count() + hasRough; ++i) {
        const bool isRough = i == made.count(), keepsShape = row.keepsShape && !isRough;
        for (std::size_t v = 0; isRough && v < mesh.normals.size(); v += 6) // every second one
            std::copy_n(std::array<float, 3>{0, 0.9f, 0.436f}.begin(), 3, &mesh.normals[v]);
        const MeshLevel &level = isRough ? roughLevelOf(mesh, std::atomic<bool>(false)) : made[i];
        whole = isRough ? double(roughSize) : whole / M_SQRT2;
        EXPECT_LE(double(level.triangleCount()), whole * (keepsShape ? 1.2 : 1) + 16);
        EXPECT_GE(double(level.triangleCount()), whole * 0.6);
        ASSERT_EQ(level.ends.size(), 3u);
        EXPECT_EQ(level.ends[2], level.indices.size());
        EXPECT_EQ(level.ends[2] - level.ends[1], 3u) << "a small part is whole";
        if (i % 4 != 2 && !isRough)
            continue; // they are made the same way, and looking at all takes long
        quint32 at = 0;
        for (const std::size_t part : {0, 1}) {
            double area = 0, bent = 0, off = 0, least = 1; // bent: lit as beyond the ridge
            for (; at < level.ends[part]; at += 3) {
                const quint32 *c = &level.indices[at];
                const QVector3D p = mesh.position(c[0]), q = mesh.position(c[1]);
                const QVector3D middle = (p + q + mesh.position(c[2])) / 3;
                const QVector3D across = QVector3D::crossProduct(q - p, mesh.position(c[2]) - p);
                float lit = across.length();
                for (int k = 0; k < 3; ++k) {
                    const float *n = &mesh.normals[c[k] * 3];
                    lit = std::min(lit, QVector3D::dotProduct(across, {n[0], n[1], n[2]}));
                }
                bent += lit < 0.999f * across.length() ? double(across.length()) / 2 : 0;
                area += double(across.z()) / 2;
                least = std::min(least, double(across.z()));
                off = std::max(off, std::abs(double(middle.z()) - 0.2 +
                                             0.4 * std::abs(double(middle.x()) - 0.5)));
            }
            EXPECT_GE(least, -1e-9) << "turned over";
            EXPECT_LT(bent, isRough ? 0.02 : 1) << "lit as what it is not";
            if (keepsShape) {
                const double over = area - (part == 0 ? share : 1 - share);
                EXPECT_GT(over, -1e-4) << "a gap";
                EXPECT_LT(over, 0.05) << "folds";
                EXPECT_LT(off, 1e-5);
                EXPECT_TRUE(bent < 1e-4 || !row.facets) << bent;
            }
        }
    }
    MeshLevels cancelled(mesh);
    cancelled.make(mesh, std::atomic<bool>(true));
    EXPECT_EQ(cancelled.count() + roughLevelOf(mesh, std::atomic<bool>(true)).ends.size(), 0u);
}

} // namespace
} // namespace host
