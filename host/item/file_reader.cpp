// SPDX-License-Identifier: MIT
#include "host/item/file_reader.h"

#include <QFileInfo>

#include "host/item/model_item.h"
#include "host/item/series_item.h"
#include "host/read/import.h"

namespace host {

bool isTable(const QString &path)
{
    return QFileInfo(path).suffix().compare(QLatin1String("csv"), Qt::CaseInsensitive) == 0;
}

FileReader::FileReader(QObject *parent) : QObject(parent)
{
    connect(&models_, &MeshReader::progressed, this, &FileReader::progressed);
    connect(&models_, &MeshReader::finished, this, [this](const MeshPtr &mesh) {
        emit finished(std::make_shared<ModelItem>(QFileInfo(path_).fileName(), mesh));
    });
    connect(&models_, &MeshReader::failed, this,
            [this](const QString &reason) { emit failed(readFailure(path_, reason)); });
    connect(&tables_, &CsvReader::progressed, this,
            [this](int percent) { emit progressed(percent / 100.0, tr("Reading rows")); });
    connect(&tables_, &CsvReader::finished, this, [this](const CsvResult &result) {
        if (result.table)
            emit finished(std::make_shared<SeriesItem>(result.table));
        else if (!result.error.isEmpty())
            emit failed(result.error);
    });
}

void FileReader::start(const QString &path)
{
    models_.cancel();
    tables_.cancel();
    path_ = path;
    if (isTable(path))
        tables_.start(path);
    else
        models_.start(path);
}

} // namespace host
