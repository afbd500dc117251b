// SPDX-License-Identifier: MIT
// What files of numbers give: tables, and clouds of points.
#include "host/read/csv_reader.h"
#include "tests/host/read/support.h"

namespace host {
namespace {

/// A table as "x|column|column/skipped: row; row", or the error.
std::string summary(const CsvResult &result)
{
    if (!result.table)
        return result.error.toStdString();
    const Table &table = *result.table;
    QString text = table.xName;
    for (const Column &column : table.columns)
        text += '|' + column.name;
    text += (table.skipped.isEmpty() ? "" : '/' + table.skipped.join('|'));
    text += table.xIsTime ? " over time:" : ":";
    for (std::size_t row = 0; row < table.rows(); ++row) {
        text += (row > 0 ? "; " : " ") + QString::number(table.x[row], 'g', 12);
        for (const Column &column : table.columns)
            text +=
                std::isnan(column.values[row]) ? " -" : ' ' + QString::number(column.values[row]);
    }
    return text.toStdString();
}

const char *const quoteInside =
    "a quote stands inside a field; it must be doubled and the field quoted";

const struct {
    QByteArray bytes; // | ends a line, ' stands for "
    std::string summary;
    const char *file = "file.csv";
} tables[] = {
    {"t,a,b|1,2,3|4,5,6", "t|a|b: 1 2 3; 4 5 6"},
    {"\xEF\xBB\xBFt,a\r|1,2\r|\r|3,4\r|", "t|a: 1 2; 3 4"},
    {"t\ta|1\t2|3\t|", "t|a: 1 2; 3 -"},
    {"t;a, b|1,5;2,25|2;-3.5|", "t|a, b: 1.5 2.25; 2 -3.5"},
    {"t;a|1;2|3;1,2,3|4;1,2.5|5;6|6;7|7;8|", "line 3: the value of a is \"1,2,3\", not a number"},
    {"'t, s','a ''q''|z'|'1','2'|", "t, s|a \"q\" z: 1 2"},
    {"'t;;;;',a|1,2|", "t;;;;|a: 1 2"},
    {"t,a|1,|2,NA|3,nan|4,-|5,7|", "t|a: 1 -; 2 -; 3 -; 4 -; 5 7"},
    {"1,2,-|3,4,5|", "column 1|column 2|column 3: 1 2 -; 3 4 5"},
    {"1970-01-02,2|", "column 1|column 2 over time: 86400 2"},
    {"-,2|1,3|", "-|2: 1 3"},
    {"t,2001,2002|1,2,3|", "t|2001|2002: 1 2 3"},
    {",,b|1,2,3|", "column 1|column 2|b: 1 2 3"},
    {"t,w,a,e|1,rain,2,|2,7,3,|", "t|a/w|e: 1 2; 2 3"},
    {"t,a|-1e3,+.5| 7 ,\t8 |", "t|a: -1000 0.5; 7 8"},
    {"t,a|3,1|1,2|3,3|1,4|", "t|a: 1 2; 1 4; 3 1; 3 3"},
    {"d,a|1969-12-31,1|1972-03-01,2|", "d|a over time: -86400 1; 68256000 2"},
    {"d,a|1970-01-01T00:00:01.5,1|1970-01-01 02:00+02:00,2|1970-01-01T00:00:00-0030,3|"
     "1970-02,4|1970-01-01T23:59:59Z,5|1970-01-01T09:01+09,6|",
     "d|a over time: 0 2; 1.5 1; 60 6; 1800 3; 86399 5; 2678400 4"},
    {"t\ta,b,c|1\t2|", "t|a,b,c: 1 2", "a.tsv"},
    {"t,a|1,2|", "t|a: 1 2", "a.tsv"},
    {"t\ta,b,c|1\t1,2,3|", "line 2: x (t a) is \"1 1\", neither a number nor an ISO date"},
    {"t;a|1,5;2|", "t|a: 1.5 2", "a.TXT"},
    {"Dear diary,|it rains|", "the text is no table: line 2: 1 fields where the first row has 2",
     "a.txt"},

    {"|  \r||", "the file is empty"},
    {"t,a|", "the file has names of columns but no rows"},
    {"t,a,b|1,2,3||1,2|", "line 4: 2 fields where the first row has 3"},
    {"t,a|1,2,3|", "line 2: 3 fields where the first row has 2"},
    {"t,'a|b'|1,2|1|", "line 4: 1 fields where the first row has 2"},
    {"t,a|mon,2|", "line 2: x (t) is \"mon\", neither a number nor an ISO date"},
    {"t,a|1,2|abc,2|", "line 3: x (t) is \"abc\", not a number like those above"},
    {"t,a|1,2|inf,2|", "line 3: x (t) is \"inf\", not a number like those above"},
    {"t,a|1,2|,2|", "line 3: the value of x (t) is missing"},
    {"t,a,b|1,2,3|2,3,1.2.3|3,x,4|4,5,6|", "line 3: the value of b is \"1.2.3\", not a number"},
    {"t,a|1,2|2,3|3," + QByteArray(41, 'w') + '|',
     "line 4: the value of a is \"" + std::string(40, 'w') + "…\", not a number"},
    {"t,a,b|1,x,y|", "no column after the first holds numbers (a, b)"},
    {"t|1|", "line 1: only one column; x and at least one series are needed, separated by comma, "
             "semicolon or tab"},
    {"t,a|1,2|3,'4|5,6|", "line 3: a quote opened in this row is never closed"},
    {"t,a|1,2|3,4'5|", std::string("line 3: ") + quoteInside},
    {"t,a|'1|2'3,4|", std::string("line 3: ") + quoteInside + " (the row begins on line 2)"},
    {QByteArray("t,a|1,\0|", 8), "line 2: a zero byte: the file is binary or not UTF-8 text"},
    {QByteArray("\xFF\xFEt\0,\0", 6), "the text is UTF-16; save it as UTF-8"},
    // Within and beyond limits of 4 columns, 6 rows, 12 values and 200 bytes a row.
    {"t,a,b,c|1,2,3,4|", "t|a|b|c: 1 2 3 4"},
    {"t,a,b,c,d|1,2,3,4,5|", "line 1: 5 columns; at most 4 can be shown"},
    {"t,a|1,1|2,2|3,3|4,4|5,5|6,6|7,7|",
     "line 8: more than 6 rows, which is the most that can be shown"},
    {"t,a,b|1,1,1|2,2,2|3,3,3|4,4,4|5,5,5|",
     "line 6: more than 12 values, which is the most that can be shown"},
    {"t,a|1,2|3,'" + QByteArray(300, '|') + "'|",
     "line 3: a row of more than 200 bytes; is a quote left open?"},
};

TEST(Csv, IsATableOrAMessageWithFileLineAndReason)
{
    CsvLimits small;
    small.columns = 4;
    small.rows = 6;
    small.values = 12;
    small.rowBytes = 200;
    const ModelFolder folder;
    for (const auto &c : tables) {
        SCOPED_TRACE(c.bytes.toStdString());
        const QString file =
            folder.write(c.file, QByteArray(c.bytes).replace('|', '\n').replace('\'', '"'));
        EXPECT_EQ(summary(readCsv(file, {}, small)), c.summary);
    }
}

TEST(Csv, DatesThatDoNotExistAreNone)
{
    const ModelFolder folder;
    const QString dates =
        "2011-02-29|2011-13-01|0000-01-01|2011-1-01|2011-01-1|2011/01/01|2011-01-01T24:01|"
        "2011-01-01T23:60|2011-01-01T23:59:60|2011-01-01T2:00|2011-01-01T20|2011-01-01T20:00:00.|"
        "2011-01-01T20:00+15|2011-01-01T20:00+01:60|2011-01-01T20:00Zz|2011-01-01x20:00|"
        "2011-01T20:00|20110101|2011-01-01T20:0a";
    for (const QString &date : dates.split('|'))
        EXPECT_EQ(
            summary(readCsv(folder.write("a.csv", "t,a\n2011-02-28,2\n" + date.toUtf8() + ",2"))),
            "line 3: x (t) is \"" + date.toStdString() + "\", not an ISO date like those above");
}

// Longer than the reader's blocks, in falling order of x, and with a mistake behind them.
TEST(Csv, ALongFileIsReadWithProgress)
{
    QByteArray bytes = "t,a\n";
    for (int i = 150000; i > 0; --i)
        bytes += QByteArray::number(i) + ',' + QByteArray::number(i % 7) + '\n';
    const ModelFolder folder;
    double last = 0;
    const CsvResult result =
        readCsv(folder.write("a.csv", bytes), [&](double fraction, const QString &) {
            EXPECT_GT(fraction, last);
            last = fraction;
        });
    EXPECT_EQ(last, 1);
    ASSERT_TRUE(result.table) << result.error.toStdString();
    ASSERT_EQ(result.table->rows(), 150000u);
    for (std::size_t i = 0; i < result.table->rows(); ++i)
        ASSERT_TRUE(result.table->x[i] == double(i + 1) &&
                    result.table->columns[0].values[i] == double((i + 1) % 7));
    EXPECT_EQ(summary(readCsv(folder.write("b.csv", "t" + QByteArray(",a").repeated(256) + "\n"))),
              "line 1: 257 columns; at most 256 can be shown");
    ASSERT_TRUE(QFile::link("/proc/self/mem", folder.path("c.csv"))); // opens, but is not read
    EXPECT_EQ(summary(readCsv(folder.path("c.csv"))), "Input/output error");
    EXPECT_EQ(summary(readCsv(folder.write("a.csv", bytes + "1\n"))),
              "line 150002: 1 fields where the first row has 2");
}

// Clouds of points: what is made of text and PLY files, of broken ones too, and their order.

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
        EXPECT_TRUE(m.colours.empty() || m.colours[i * 4 + 3] == 255);
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
constexpr char both[] = "1 2 3 | 4 5 -6 | ", le[] = "binary_little_endian",
               be[] = "binary_big_endian";

const struct {
    const char *file;
    QByteArray content;
    std::string summary; // or a part of the reason
} clouds[] = {
    {"a.xyz", "1 2 3\n4 5 -6", both},
    {"a.asc", "\xEF\xBB\xBF# by hand\r\n\r\n1,2, 3\r\n4\t5;-6e0\r\n// end\r\n%\r\n", both},
    {"names.xyz", "X, Y; Z\n1,2,3\n4,5,-6\n", both},
    {"count.pts", "2\n1 2 3\n4 5 -6\n", both},
    {"comma.xyz", "1,5;2;3\n", "1.5 2 3 | "},
    {"rgb.xyz", "1 2 3 16 32 255\n+4 5 -6 0 0 300", "1 2 3 0 0 1 | 4 5 -6 0 0 1 | "},
    {"bytes.pts", "1 2 3 16 32 255\n", "1 2 3 10 20 ff | "},
    {"dark.xyz", "1 2 3 1 0 1\n", "1 2 3 1 0 1 | "},
    {"fractions.xyz", "1 2 3 1 0.6 0\n", "1 2 3 ff 99 0 | "},
    {"normals.xyz", "1 2 3 0 0.6 -0.8\n", "1 2 3 | "},
    {"normals-rgb.xyz", "1 2 3 0 0.6 -0.8 17 0 0\n", "1 2 3 11 0 0 | "},
    {"rgb-normals.xyz", "1 2 3 17 0 0 0 0.6 -0.8\n", "1 2 3 11 0 0 | "},
    {"intensity.xyz", "1 2 3 -10\n4 5 -6 10\n7 8 9 0",
     "1 2 3 1e 1e 1e | 4 5 -6 e1 e1 e1 | 7 8 9 80"},
    {"holes.xyz", "1 2 3 nan\n4 5 -6 -10\n7 8 9 10\n",
     "1 2 3 0 0 0 | 4 5 -6 1e 1e 1e | 7 8 9 e1 e1 e1 | "},
    {"i.pts", "1 2 3 -10 -1\n4 5 -6 10 -1\n", "1 2 3 1e 1e 1e | 4 5 -6 e1 e1 e1 | "},
    {"one-intensity.xyz", "1 2 3 7\n", "1 2 3 | "},
    {"a.pts", "1 2 3 -900 17 0 0\n", "1 2 3 11 0 0 | "},
    {"i-rgb.xyz", "1 2 3 -900 17 0 0\n", "1 2 3 11 0 0 | "},
    {"far.xyz", "500000.25 5000000.5 3\n500001.25 5000000.5 3\n",
     "500000.25 5000000.5 3 | 500001.25 5000000.5 3 | "},
    {"nan.xyz", "1 2 3\nnan 0 0\n0 1e20 0\n1e999 0 0\n4 5 -6", std::string(both) + "3 points"},
    {"tiny.xyz", "1e-400 2 3\n", "0 2 3 | "},
    {"astray.xyz", "-9e11 0 0\n1e15 0 0\n",
     "-9e+11 0 0 | 1 points without usable coordinates left out"},
    {"words.xyz", "1 2 3\nhello\n4 5 -6\n7 8\n",
     std::string(both) + "2 lines that are no points left out, the first is line 2"},

    {"a.ply", ply("ascii", twoPoints, "1 2 3\n \t\n4 5 -6\n"), both},
    {"little.ply", ply(le, twoPoints, little), both},
    {"big.ply", ply(be, twoPoints + "; face 0, list uchar int i", big), both},
    {"bytes.ply", ply(le, "vertex 1, char x, uchar y, ushort z", "\xfe\xfd\1\2"), "-2 253 513 | "},
    {"words.ply",
     ply(be, "vertex 1, int x, uint y, float z",
         QByteArray("\xff\xff\xff\xfe\x80\0\1\0\x3f\x80\0\0", 12)),
     "-2 2147483904 1 | "},
    {"wide.ply", // as wide as may be
     ply("ascii", one.chopped(2) + QByteArray(", float w").repeated(61),
         "1 2 3" + QByteArray(" 0").repeated(61)),
     "1 2 3 | "},
    {"before.ply", ply(le, "camera 2, uchar a, int b; " + twoPoints, "0123456789" + little), both},
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
    {"cut.ply", ply(le, twoPoints, little.left(27)), "1 2 3 | the file ends after 1 of 2 points"},
    {"lie.ply", ply("ascii", QByteArray(twoPoints).replace("2", "30000000"), "1 2 3\n4 5 -6\n"),
     std::string(both) + "the file ends after 2 of 30000000 points"},

    {"none.ply", ply(be, twoPoints, "123"), "ends before its first point"},
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
    EXPECT_EQ(summaryOf(importMesh(folder.path("a.xyz"))),
              "2/0 (1 -6 -5)..(4 3 -2) n(0l2p) #ffcccccc "); // +Z was up
    EXPECT_EQ(summaryOf(importMesh(folder.path("a.ply"))),
              "2/0 (1 2 -6)..(4 5 3) n(0l2p) #ffcccccc ");
    ASSERT_TRUE(QFile::link("/proc/self/mem", folder.path("bad.xyz"))); // opens, but is not read
    EXPECT_EQ(importMesh(folder.path("bad.xyz")).reason, "Input/output error");
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
    for (const std::size_t part : {10, 3, 1}) {
        double sum = 0;
        const std::size_t sample = count / part;
        for (std::size_t i = 0; i < sample; ++i)
            sum += double(mesh.positions[i * 3]);
        EXPECT_NEAR(sum / double(sample), (count - 1) / 2.0, part > 1 ? count / 100.0 : 0);
    }
}

} // namespace
} // namespace host
