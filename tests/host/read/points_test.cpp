// SPDX-License-Identifier: MIT
// Clouds of points: what is made of text and PLY files, of broken ones too, and their order.
#include "host/read/point_reader.h"

#include <algorithm>
#include <cmath>

#include <gtest/gtest.h>

#include "tests/host/read/support.h"

namespace host {
namespace {

/// The points of a mesh in the file's coordinates, with colours if there are any, sorted, and its
/// notes; or the reason why there is none.
std::string pointsOf(const Imported &got)
{
    if (!got.ok())
        return got.reason.toStdString();
    const Mesh &m = got.mesh;
    expectSound(m);
    QStringList points;
    for (std::size_t i = 0; i < m.vertexCount(); ++i) {
        const float *p = &m.positions[i * 3];
        const QVector3D at = m.axes.toFile({p[0], p[1], p[2]});
        points << QString();
        for (int k = 0; k < 3; ++k)
            points.back() += QString("%1 ").arg(at[k] + m.origin[std::size_t(k)], 0, 'g', 10);
        for (std::size_t k = 0; !m.colours.empty() && k < 3; ++k)
            points.back() += QString::number(m.colours[i * 4 + k], 16) + ' ';
    }
    points.sort();
    return (points.join("| ") + "| " + m.notes.join("; ")).toStdString();
}

const QByteArray twoPoints = "vertex 2, float x, double y, short z";
const QByteArray one = "vertex 1, float x, float y, float z, ";

// (1, 2, 3) and (4, 5, -6), as twoPoints tells.
const QByteArray little("\0\0\x80\x3f\0\0\0\0\0\0\0\x40\3\0"
                        "\0\0\x80\x40\0\0\0\0\0\0\x14\x40\xfa\xff",
                        28);
const QByteArray big("\x3f\x80\0\0\x40\0\0\0\0\0\0\0\0\3"
                     "\x40\x80\0\0\x40\x14\0\0\0\0\0\0\xff\xfa",
                     28);
constexpr char both[] = "1 2 3 | 4 5 -6 | ";

const struct {
    const char *file;
    QByteArray content;
    std::string summary; // or a part of the reason
} clouds[] = {
    {"a.xyz", "1 2 3\n4 5 -6", both},
    {"a.asc", "\xEF\xBB\xBF# by hand\r\n\r\n1,2, 3\r\n4\t5;-6e0\r\n// end\r\n", both},
    {"names.xyz", "X Y Z\n1 2 3\n4 5 -6\n", both},
    {"count.pts", "2\n1 2 3\n4 5 -6\n", both},
    {"comma.xyz", "1,5;2;3\n", "1.5 2 3 | "},
    {"rgb.xyz", "1 2 3 16 32 255\n+4 5 -6 0 0 300", "1 2 3 0 0 1 | 4 5 -6 0 0 1 | "},
    {"bytes.xyz", "1 2 3 16 32 255\n", "1 2 3 10 20 ff | "},
    {"dark.xyz", "1 2 3 1 0 1\n", "1 2 3 1 0 1 | "},
    {"fractions.xyz", "1 2 3 1 0.6 0\n", "1 2 3 ff 99 0 | "},
    {"normals.xyz", "1 2 3 0 0.6 -0.8\n", "1 2 3 | "},
    {"normals-rgb.xyz", "1 2 3 0 0.6 -0.8 17 0 0\n", "1 2 3 11 0 0 | "},
    {"rgb-normals.xyz", "1 2 3 17 0 0 0 0.6 -0.8\n", "1 2 3 11 0 0 | "},
    {"intensity.xyz", "1 2 3 -10\n4 5 -6 10\n7 8 9 0",
     "1 2 3 1e 1e 1e | 4 5 -6 e1 e1 e1 | 7 8 9 80"},
    {"one-intensity.xyz", "1 2 3 7\n", "1 2 3 | "},
    {"a.pts", "1 2 3 -900 17 0 0\n", "1 2 3 11 0 0 | "},
    {"i-rgb.xyz", "1 2 3 -900 17 0 0\n", "1 2 3 11 0 0 | "},
    {"far.xyz", "500000.25 5000000.5 3\n500001.25 5000000.5 3\n",
     "500000.25 5000000.5 3 | 500001.25 5000000.5 3 | "},
    {"nan.xyz", "1 2 3\nnan 0 0\n0 1e20 0\n1e999 0 0\n4 5 -6",
     std::string(both) + "3 points without usable coordinates left out"},
    {"tiny.xyz", "1e-400 2 3\n", "0 2 3 | "},
    {"astray.xyz", "-9e11 0 0\n1e15 0 0\n",
     "-9e+11 0 0 | 1 points without usable coordinates left out"},
    {"words.xyz", "1 2 3\nhello\n4 5 -6\n7 8\n",
     std::string(both) + "2 lines that are no points left out, the first is line 2"},

    {"a.ply", ply("ascii", twoPoints, "1 2 3\n4 5 -6\n"), both},
    {"little.ply", ply("binary_little_endian", twoPoints, little), both},
    {"big.ply", ply("binary_big_endian", twoPoints + "; face 0, list uchar int i", big), both},
    {"before.ply",
     ply("binary_little_endian", "camera 2, uchar a, int b; " + twoPoints, "0123456789" + little),
     both},
    {"text.ply", ply("ascii", "camera 1, uchar a; " + twoPoints, "9\n1 2 3\n4 5 -6"), both},
    {"uchar.ply", ply("ascii", one + "uchar red, uchar green, uchar blue", "1 2 3 16 32 255\n"),
     "1 2 3 10 20 ff | "},
    {"float.ply", ply("ascii", one + "float r, float g, float b", "1 2 3 1 0.2 0\n"),
     "1 2 3 ff 33 0 | "},
    {"deep.ply", ply("ascii", one + "ushort red, ushort green, ushort blue", "1 2 3 65535 257 0\n"),
     "1 2 3 ff 1 0 | "},
    {"i.ply",
     ply("ascii", "vertex 2, float intensity, float x, float y, float z", "0 1 2 3\n9 4 5 -6\n"),
     "1 2 3 1e 1e 1e | 4 5 -6 e1 e1 e1 | "},
    {"cut.ply", ply("binary_little_endian", twoPoints, little.left(27)),
     "1 2 3 | the file ends after 1 of 2 points"},
    {"lie.ply", ply("ascii", QByteArray(twoPoints).replace("2", "30000000"), "1 2 3\n4 5 -6\n"),
     std::string(both) + "the file ends after 2 of 30000000 points"},

    {"none.ply", ply("binary_big_endian", twoPoints, "123"), "ends before its first point"},
    {"late.ply",
     "ply\nelement vertex 1\nproperty double x\nproperty double y\nproperty double z\n"
     "format binary_little_endian 1.0\nend_header\n" +
         QByteArray(24, '\1'),
     "Missing format"},
    {"word.ply", ply("ascii", twoPoints, "1 2 3\n4 5\n"), "line 2 of its data"},
    {"many.ply", ply("ascii", QByteArray(twoPoints).replace("2", "99000000"), "1 2 3\n"),
     "more than 33554432 points"},
    {"molecule.xyz", "3\nwater\nO 0 0 0\nH 0 0 1\nH 0 1 0\n", "line 4 is no point"},
    {"rubbish.xyz", QByteArray("1 2 3\n\0\x93", 8), "a zero byte"},
    {"long.xyz", QByteArray(70000, '1'), "line 1 is longer than 65536 bytes"},
    {"empty.xyz", "\n", "there are no points in it"},
    {"nans.xyz", "nan nan nan\n", "none of its points has usable coordinates"},
};

TEST(PointReader, GivesThePointsOrTheReason)
{
    const ModelFolder folder;
    for (const auto &c : clouds) {
        SCOPED_TRACE(c.file);
        const std::string summary = pointsOf(importMesh(folder.write(c.file, c.content)));
        EXPECT_NE(summary.find(c.summary), std::string::npos) << summary;
    }
    EXPECT_EQ(importMesh(folder.path("a.xyz")).mesh.axes.up(), FileAxes::Z);
    EXPECT_EQ(importMesh(folder.path("a.ply")).mesh.axes.up(), FileAxes::Y);
    EXPECT_EQ(importMesh(folder.path("a.ply")).mesh.parts.at(0).name, "a");
    MeshLimits limits;
    limits.vertices = 1;
    EXPECT_EQ(importMesh(folder.path("a.xyz"), {}, limits).reason, "it has more than 1 points");
}

TEST(PointReader, LinesOfALongFileAreWholeAndEachBeginningIsAFairSample)
{
    constexpr int count = 200000;
    QByteArray text;
    for (int i = 0; i < count; ++i)
        text += QByteArray::number(i) + " 0 1\n";
    const ModelFolder folder;
    double last = 0;
    const Mesh mesh = importMesh(folder.write("a.xyz", text), [&last](double done, auto) {
                          EXPECT_TRUE(done >= last && done <= 1);
                          last = done;
                      }).mesh;
    EXPECT_GT(last, 0.5);
    ASSERT_EQ(mesh.pointCount(), std::size_t(count));
    std::vector<bool> there(count);
    for (const std::size_t part : {10, 3, 1}) {
        double sum = 0;
        const std::size_t sample = count / part;
        for (std::size_t i = 0; i < sample; ++i) {
            sum += double(mesh.positions[i * 3]);
            there[std::size_t(mesh.positions[i * 3])] = true;
        }
        EXPECT_NEAR(sum / double(sample) / count, 0.5, 0.01);
    }
    EXPECT_EQ(std::count(there.begin(), there.end(), true), count);
}

} // namespace
} // namespace host
