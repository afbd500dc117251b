// SPDX-License-Identifier: MIT
#include <QCoreApplication>
#include <QFile>
#include <QTemporaryDir>
#include <gtest/gtest.h>

#include "host/series/csv_reader.h"

namespace host {
namespace {

TEST(CsvReaderTest, ReportsTheLastFileStartedAndOnlyThat)
{
    const QTemporaryDir folder;
    QFile file(folder.filePath("file.csv"));
    ASSERT_TRUE(file.open(QIODevice::WriteOnly) && file.write("t,a\n1,2\n") > 0);
    file.close();
    CsvReader reader;
    QStringList told;
    int percent = -1;
    QObject::connect(&reader, &CsvReader::progressed, [&](int now) { percent = now; });
    QObject::connect(&reader, &CsvReader::finished, [&](const CsvResult &result) {
        told << (result.table ? "table" : result.error);
    });
    const auto wait = [&] {
        for (told.clear(); told.isEmpty();)
            QCoreApplication::processEvents(QEventLoop::WaitForMoreEvents);
        QCoreApplication::processEvents();
        return told;
    };
    reader.start(file.fileName());
    reader.start(folder.path());
    EXPECT_EQ(wait(), QStringList(folder.path() + ": is a folder"));
    reader.start(file.fileName());
    reader.cancel();
    EXPECT_EQ(wait(), QStringList(QString()));
    reader.start(file.fileName());
    EXPECT_EQ(wait(), QStringList("table"));
    EXPECT_EQ(percent, 100);
}

} // namespace
} // namespace host
