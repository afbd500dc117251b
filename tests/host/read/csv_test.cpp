// SPDX-License-Identifier: MIT
#include <cmath>

#include <gtest/gtest.h>

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
    for (const char *date :
         {"2011-02-29", "2011-13-01", "0000-01-01", "2011-1-01", "2011-01-1", "2011/01/01",
          "2011-01-01T24:01", "2011-01-01T23:60", "2011-01-01T23:59:60", "2011-01-01T2:00",
          "2011-01-01T20", "2011-01-01T20:00:00.", "2011-01-01T20:00+15", "2011-01-01T20:00+01:60",
          "2011-01-01T20:00Zz", "2011-01-01x20:00", "2011-01T20:00", "20110101",
          "2011-01-01T20:0a"})
        EXPECT_EQ(
            summary(
                readCsv(folder.write("a.csv", QByteArray("t,a\n2011-02-28,2\n") + date + ",2"))),
            std::string("line 3: x (t) is \"") + date + "\", not an ISO date like those above");
}

// Longer than the reader's blocks, in falling order of x, and with a mistake behind them.
TEST(Csv, ALongFileIsReadWithProgress)
{
    QByteArray bytes = "t,a\n";
    for (int i = 300000; i > 0; --i)
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
    ASSERT_EQ(result.table->rows(), 300000u);
    for (std::size_t i = 0; i < result.table->rows(); ++i)
        ASSERT_TRUE(result.table->x[i] == double(i + 1) &&
                    result.table->columns[0].values[i] == double((i + 1) % 7));
    EXPECT_EQ(summary(readCsv(folder.write("a.csv", bytes + "1\n"))),
              "line 300002: 1 fields where the first row has 2");
}

} // namespace
} // namespace host
