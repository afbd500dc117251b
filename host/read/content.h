// SPDX-License-Identifier: MIT
#ifndef HOST_READ_CONTENT_H
#define HOST_READ_CONTENT_H

#include <memory>

#include <QMetaType>
#include <QStringList>

#include "host/read/companions.h"
#include "host/read/mesh.h"
#include "host/series/table.h"

namespace host {

using TablePtr = std::shared_ptr<const Table>;

/// The files that stand for some paths: those of each folder in its place.
struct FileList {
    QStringList files;
    QStringList empty; ///< Folders, as given, that hold nothing to show or cannot be read.
    QStringList cut;   ///< Folders, as given, that hold more: a limit stopped the search.
};
using FileListPtr = std::shared_ptr<const FileList>;

/// What a reading gives: exactly one of these, the others are null.
struct Content {
    MeshPtr mesh;
    TablePtr table;
    FileListPtr list;

    quint64 byteSize() const ///< Memory held by the mesh or table.
    {
        return mesh ? mesh->byteSize() : table ? table->byteSize() : 0;
    }
};

/// What a reading process is asked for.
struct ReadRequest {
    enum class Kind : quint8 {
        File,       ///< The mesh or table of the one path.
        List,       ///< The files that all of the paths stand for: see listFiles().
        Neighbours, ///< The files in the folder of the one path, those below it aside.
    };
    Kind kind = Kind::File;
    QStringList paths;
    Companions companions = Companions::InFolder; ///< What a model may name.
};

} // namespace host

Q_DECLARE_METATYPE(host::Content)
Q_DECLARE_METATYPE(host::FileListPtr)

#endif
