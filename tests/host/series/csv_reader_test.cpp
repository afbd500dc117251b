// SPDX-License-Identifier: MIT
#include "host/series/csv_reader.h"

#include <cmath>
#include <limits>
#include <numeric>

#include <QCoreApplication>
#include <QEventLoop>
#include <QFile>
#include <QTemporaryDir>
#include <gtest/gtest.h>

namespace host {
namespace {

const double none = std::numeric_limits<double>::quiet_NaN();
const double day = 86400;

class CsvFile {
public:
    explicit CsvFile(const QByteArray &bytes)
    {
        QFile file(path());
        if (!file.open(QIODevice::WriteOnly) || file.write(bytes) != bytes.size())
            ADD_FAILURE() << "cannot write " << qPrintable(path());
    }
    QString path() const { return folder_.filePath("file.csv"); }

private:
    QTemporaryDir folder_;
};

std::string names(const Table &table)
{
    QString text = table.xName;
    for (const Column &column : table.columns)
        text += '|' + column.name;
    return (text + '/' + table.skipped.join('|')).toStdString();
}

void expectSame(const std::vector<double> &read, const std::vector<double> &expected)
{
    ASSERT_EQ(read.size(), expected.size());
    for (std::size_t i = 0; i < read.size(); ++i)
        EXPECT_TRUE(read[i] == expected[i] || (std::isnan(read[i]) && std::isnan(expected[i])))
            << "row " << i << ": " << read[i] << ", expected " << expected[i];
}

struct GoodCase {
    const char *name;
    QByteArray bytes;
    const char *names; // x|columns/skipped
    bool xIsTime;
    std::vector<double> x;
    std::vector<double> y; // the first column
};

const GoodCase goodCases[] = {
    {"Plain", "t,a,b\n1,2,3\n4,5,6\n", "t|a|b/", false, {1, 4}, {2, 5}},
    {"NoNewlineAtTheEnd", "t,a\n1,2", "t|a/", false, {1}, {2}},
    {"CrLfAndMark", "\xEF\xBB\xBFt,a\r\n1,2\r\n\r\n3,4\r\n", "t|a/", false, {1, 3}, {2, 4}},
    {"Tabs", "t\ta\n1\t2\n3\t\n", "t|a/", false, {1, 3}, {2, none}},
    {"SemicolonsAndDecimalComma",
     "t;a, b\n1,5;2,25\n2;-3.5\n",
     "t|a, b/",
     false,
     {1.5, 2},
     {2.25, -3.5}},
    {"QuotedSeparatorsAndNewlines",
     "\"t, s\",\"a \"\"q\"\"\nz\"\n\"1\",\"2\"\n",
     "t, s|a \"q\" z/",
     false,
     {1},
     {2}},
    {"SeparatorInQuotesIsNotCounted", "\"t;;;;\",a\n1,2\n", "t;;;;|a/", false, {1}, {2}},
    {"Missing",
     "t,a\n1,\n2,NA\n3,nan\n4,-\n5,7\n",
     "t|a/",
     false,
     {1, 2, 3, 4, 5},
     {none, none, none, none, 7}},
    {"FirstRowOfValues", "1,2,-\n3,4,5\n", "column 1|column 2|column 3/", false, {1, 3}, {2, 4}},
    {"FirstRowOfDates", "1970-01-02,2\n", "column 1|column 2/", true, {day}, {2}},
    {"YearsAsNames", "t,2001,2002\n1,2,3\n", "t|2001|2002/", false, {1}, {2}},
    {"NamelessColumns", ",,b\n1,2,3\n", "column 1|column 2|b/", false, {1}, {2}},
    {"WordsAreSkipped", "t,w,a,e\n1,rain,2,\n2,7,3,\n", "t|a/w|e", false, {1, 2}, {2, 3}},
    {"Numbers", "t,a\n-1e3,+.5\n 7 ,\t8 \n", "t|a/", false, {-1000, 7}, {0.5, 8}},
    {"SortedStably", "t,a\n3,1\n1,2\n3,3\n1,4\n", "t|a/", false, {1, 1, 3, 3}, {2, 4, 1, 3}},
    {"Dates", "d,a\n1969-12-31,1\n1972-03-01,2\n", "d|a/", true, {-day, 790 * day}, {1, 2}},
    {"DateTimes",
     "d,a\n1970-01-01T00:00:01.5,1\n1970-01-01 02:00+02:00,2\n1970-01-01T00:00:00-0030,3\n"
     "1970-02,4\n",
     "d|a/",
     true,
     {0, 1.5, 1800, 31 * day},
     {2, 1, 3, 4}},
};

void PrintTo(const GoodCase &c, std::ostream *out)
{
    *out << c.name;
}

class CsvGood : public testing::TestWithParam<GoodCase> {};

TEST_P(CsvGood, IsRead)
{
    const GoodCase &c = GetParam();
    const CsvFile file(c.bytes);
    const CsvResult result = readCsv(file.path());
    ASSERT_TRUE(result.table) << result.error.toStdString();
    EXPECT_EQ(result.table->name, "file.csv");
    EXPECT_EQ(names(*result.table), c.names);
    EXPECT_EQ(result.table->xIsTime, c.xIsTime);
    expectSame(result.table->x, c.x);
    expectSame(result.table->columns.at(0).values, c.y);
}

INSTANTIATE_TEST_SUITE_P(Rows, CsvGood, testing::ValuesIn(goodCases),
                         [](const auto &row) { return std::string(row.param.name); });

struct BadCase {
    const char *name;
    QByteArray bytes;
    const char *error; // its end, from ":line:" on
};

const BadCase badCases[] = {
    {"Empty", "", ": the file is empty"},
    {"OnlyBlankLines", "\n  \r\n\n", ": the file is empty"},
    {"OnlyNames", "t,a\n", ": the file has names of columns but no rows"},
    {"TooFewFields", "t,a,b\n1,2,3\n\n1,2\n", ":4: 2 fields where the first row has 3"},
    {"TooManyFields", "t,a\n1,2,3\n", ":2: 3 fields where the first row has 2"},
    {"LineAfterQuotedNewline", "t,\"a\nb\"\n1,2\n1\n", ":4: 1 fields where the first row has 2"},
    {"XIsAWord", "t,a\nmon,2\n", ":2: x (t) is \"mon\", neither a number nor an ISO date"},
    {"XTurnsBad", "t,a\n1,2\nabc,2\n", ":3: x (t) is \"abc\", not a number like those above"},
    {"NoSuchDay", "t,a\n2011-02-28,2\n2011-02-29,2\n",
     ":3: x (t) is \"2011-02-29\", not an ISO date like those above"},
    {"NoSuchTime", "t,a\n2011-02-28,2\n2011-02-28T24:01,2\n",
     ":3: x (t) is \"2011-02-28T24:01\", not an ISO date like those above"},
    {"XMissing", "t,a\n1,2\n,2\n", ":3: the value of x (t) is missing"},
    {"XInfinite", "t,a\n1,2\ninf,2\n", ":3: x (t) is \"inf\", not a number like those above"},
    {"OneBadValue", "t,a,b\n1,2,3\n2,3,1.2.3\n3,x,4\n4,5,6\n",
     ":3: the value of b is \"1.2.3\", not a number"},
    {"OnlyWords", "t,a,b\n1,x,y\n", ": no column after the first holds numbers (a, b)"},
    {"OneColumn", "t\n1\n",
     ":1: only one column; x and at least one series are needed, "
     "separated by comma, semicolon or tab"},
    {"QuoteLeftOpen", "t,a\n1,2\n3,\"4\n5,6\n", ":3: a quote opened in this row is never closed"},
    {"QuoteInField", "t,a\n1,2\n3,4\"5\n",
     ":3: a quote stands inside a field; it must be doubled and the field quoted"},
    {"TextAfterQuote", "t,a\n\"1\n2\"3,4\n",
     ":3: a quote stands inside a field; it must be doubled and the field quoted "
     "(the row begins on line 2)"},
    {"Binary", QByteArray("t,a\n1,\0\n", 8),
     ":2: a zero byte: the file is binary or not UTF-8 text"},
    {"Utf16", QByteArray("\xFF\xFEt\0,\0", 6), ":1: the text is UTF-16; save it as UTF-8"},
    {"TooManyColumns", "t,a,b,c,d\n1,2,3,4,5\n", ":1: 5 columns; at most 4 can be shown"},
    {"TooManyRows", "t,a\n1,1\n2,2\n3,3\n4,4\n5,5\n6,6\n",
     ":7: more than 5 rows, which is the most that can be shown"},
    {"TooManyValues", "t,a,b\n1,1,1\n2,2,2\n3,3,3\n4,4,4\n5,5,5\n",
     ":6: more than 12 values, which is the most that can be shown"},
    {"RowTooLong", "t,a\n1,2\n3,\"" + QByteArray(300, '\n') + "\"\n",
     ":3: a row of more than 200 bytes; is a quote left open?"},
};

void PrintTo(const BadCase &c, std::ostream *out)
{
    *out << c.name;
}

class CsvBad : public testing::TestWithParam<BadCase> {};

TEST_P(CsvBad, IsRefusedWithFileLineAndReason)
{
    const CsvFile file(GetParam().bytes);
    CsvLimits small;
    small.columns = 4;
    small.rows = 5;
    small.values = 12;
    small.rowBytes = 200;
    const CsvResult result = readCsv(file.path(), {}, small);
    EXPECT_FALSE(result.table);
    EXPECT_EQ(result.error.toStdString(), file.path().toStdString() + GetParam().error);
}

INSTANTIATE_TEST_SUITE_P(Rows, CsvBad, testing::ValuesIn(badCases),
                         [](const auto &row) { return std::string(row.param.name); });

TEST(CsvReaderTest, MissingFileAndFolderAreNamed)
{
    const QTemporaryDir folder;
    const QString missing = folder.filePath("gone.csv");
    EXPECT_TRUE(readCsv(missing).error.startsWith(missing + ": No such file"));
    EXPECT_EQ(readCsv(folder.path()).error, folder.path() + ": is a folder");
}

TEST(CsvReaderTest, LinesAreCountedThroughoutALongFile)
{
    const CsvFile file("t,aa\n" + QByteArray("1,2\n").repeated(600000) + "1\n");
    EXPECT_EQ(readCsv(file.path()).error,
              file.path() + ":600002: 1 fields where the first row has 2");
}

TEST(CsvReaderTest, WeatherOfSeattle)
{
    const CsvResult result = readCsv(QStringLiteral(SAMPLES "/seattle-weather.csv"));
    ASSERT_TRUE(result.table) << result.error.toStdString();
    const Table &table = *result.table;
    EXPECT_EQ(names(table), "date|precipitation|temp_max|temp_min|wind/weather");
    ASSERT_EQ(table.rows(), 1461u);
    EXPECT_EQ(table.x.front(), 15340 * day);                  // 2012-01-01
    EXPECT_EQ(table.x.back(), 16800 * day);                   // 2015-12-31
    const double sums[] = {4426.0, 24017.5, 12031.0, 4735.3}; // added up with awk
    for (std::size_t i = 0; i < 4; ++i) {
        const std::vector<double> &values = table.columns[i].values;
        EXPECT_NEAR(std::accumulate(values.begin(), values.end(), 0.0), sums[i], 1e-6);
    }
}

// A million rows, in falling order of x and longer than the reader's blocks.
TEST(CsvReaderTest, AMillionRowsAreReadRightAndWithProgress)
{
    const int rows = 1000000;
    QByteArray bytes = "t,a,b\n";
    for (int i = rows; i > 0; --i)
        bytes += QByteArray::number(i) + ',' + QByteArray::number(i % 7) + ',' +
                 (i % 10 == 0 ? QByteArray() : QByteArray::number(i * 0.5, 'f', 1)) + '\n';
    const CsvFile file(bytes);
    int reports = 0;
    qint64 last = 0;
    const CsvResult result = readCsv(file.path(), [&](qint64 done, qint64 size) {
        EXPECT_GT(done, last);
        EXPECT_EQ(size, bytes.size());
        last = done;
        return ++reports > 0;
    });
    ASSERT_TRUE(result.table) << result.error.toStdString();
    EXPECT_EQ(last, bytes.size());
    EXPECT_GT(reports, 10);
    const Table &table = *result.table;
    ASSERT_EQ(table.rows(), std::size_t(rows));
    double weighted = 0;
    double halves = 0;
    int missing = 0;
    for (std::size_t i = 0; i < table.rows(); ++i) {
        ASSERT_EQ(table.x[i], double(i + 1));
        weighted += table.columns[0].values[i];
        missing += std::isnan(table.columns[1].values[i]);
        halves += std::isnan(table.columns[1].values[i]) ? 0 : table.columns[1].values[i];
    }
    EXPECT_EQ(weighted, 2999997 + 1.0); // 142857 whole weeks of 21, and a last day of 1
    EXPECT_EQ(missing, rows / 10);
    EXPECT_EQ(halves, (500000500000.0 - 50000500000.0) / 2);
}

TEST(CsvReaderTest, ProgressCanCancel)
{
    const CsvFile file("t,a\n1,2\n");
    const CsvResult result = readCsv(file.path(), [](qint64, qint64) { return false; });
    EXPECT_FALSE(result.table);
    EXPECT_TRUE(result.error.isEmpty());
}

// Reads in the background until finished() and gives all results that arrived.
std::vector<CsvResult> runReader(CsvReader &reader, int &percent)
{
    std::vector<CsvResult> results;
    QEventLoop loop;
    QObject::connect(&reader, &CsvReader::progressed, &loop, [&](int now) { percent = now; });
    QObject::connect(&reader, &CsvReader::finished, &loop, [&](const CsvResult &result) {
        results.push_back(result);
        loop.quit();
    });
    loop.exec();
    QCoreApplication::processEvents();
    return results;
}

TEST(CsvReaderThread, ReportsTheLastFileStartedAndOnlyThat)
{
    const CsvFile first("t,a\n1,2\n");
    const CsvFile second("t,a\n1,2\nx\n");
    CsvReader reader;
    int percent = -1;
    reader.start(first.path());
    reader.start(second.path());
    const auto results = runReader(reader, percent);
    ASSERT_EQ(results.size(), 1u);
    EXPECT_EQ(results[0].error, second.path() + ":3: 1 fields where the first row has 2");

    reader.start(first.path());
    const auto again = runReader(reader, percent);
    ASSERT_EQ(again.size(), 1u);
    EXPECT_TRUE(again[0].table);
    EXPECT_EQ(percent, 100);
}

TEST(CsvReaderThread, CancelEndsWithAnEmptyResult)
{
    const CsvFile file("t,a\n1,2\n");
    CsvReader reader;
    int percent = -1;
    reader.start(file.path());
    reader.cancel();
    const auto results = runReader(reader, percent);
    ASSERT_EQ(results.size(), 1u);
    EXPECT_FALSE(results[0].table);
    EXPECT_TRUE(results[0].error.isEmpty());
}

} // namespace
} // namespace host
