// SPDX-License-Identifier: MIT
#ifndef HOST_ITEM_FILE_READER_H
#define HOST_ITEM_FILE_READER_H

#include <functional>
#include <memory>

#include <QMetaType>
#include <QObject>

#include "host/item/item.h"
#include "host/read/mesh_reader.h"
#include "host/series/csv_reader.h"

namespace host {

/// Whether the file is read as a table; all others are read as models.
bool isTable(const QString &path);

/// Reads one file of either kind in the background and makes an item of it.
class FileReader : public QObject {
    Q_OBJECT
public:
    explicit FileReader(QObject *parent = nullptr);

    /// Begins to read; what was being read before is dropped.
    void start(const QString &path);

signals:
    void progressed(double fraction, const QString &stage); ///< @p fraction from 0 to 1.
    void finished(std::shared_ptr<host::Item> item);
    void failed(const QString &message); ///< Names the file and the reason.

private:
    QString path_;
    MeshReader models_;
    CsvReader tables_;
};

} // namespace host

#endif
