// SPDX-License-Identifier: MIT
#include "host/read/model_files.h"

#include <algorithm>

#include <QCollator>
#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QSet>

#include <assimp/Importer.hpp>

#include "host/read/csv_reader.h"
#include "host/read/point_reader.h"

namespace host {
namespace {

/// Formats of assimp's that hold no shape of their own.
const char *const motionOnly[] = {"md5anim", "md5camera", "mot", "vta"};

/// Whether the first bytes of a file, whose suffix says little, are those of a model or table.
bool looksRight(const QString &path, const QString &suffix)
{
    QFile file(path);
    if (!file.open(QIODevice::ReadOnly))
        return true; // the reader will say what is wrong
    if (suffix == QLatin1String("txt"))
        return looksLikeTable(file.read(16 * 1024));
    if (pointSuffixes().contains(suffix))
        return looksLikePoints(file.read(16 * 1024));
    const QByteArray head = file.read(1024);
    if (suffix == QLatin1String("xml"))
        return head.contains("<mesh");
    if (suffix == QLatin1String("prj"))
        return head.startsWith("MM") || head.startsWith("\x3d\xc2");
    // Triangles in plain numbers and names, where a photograph's bytes go beyond text.
    return std::all_of(head.begin(), head.end(),
                       [](char c) { return (c >= ' ' && c <= '~') || (c >= '\t' && c <= '\r'); });
}

bool isVague(const QString &suffix)
{
    return suffix == QLatin1String("xml") || suffix == QLatin1String("prj") ||
           suffix == QLatin1String("raw") || suffix == QLatin1String("txt") ||
           pointSuffixes().contains(suffix);
}

QSet<QString> collectedSuffixes()
{
    const QStringList all = modelSuffixes();
    QSet<QString> suffixes(all.begin(), all.end());
    for (const char *suffix : motionOnly)
        suffixes.remove(QLatin1String(suffix));
    for (const char *suffix : {"csv", "tsv", "txt"})
        suffixes.insert(QLatin1String(suffix));
    return suffixes;
}

/// Walks the folders without recursion.
class Collector {
public:
    explicit Collector(const CollectLimits &limits) : limits_(limits) {}

    /// The files in @p folder, once.
    QStringList run(const QString &folder);
    bool isComplete() const { return complete_; } ///< No limit stopped the search.

private:
    struct Folder {
        QString path;
        int depth;
    };

    void visit(const Folder &folder);

    const CollectLimits limits_;
    const QSet<QString> suffixes_ = collectedSuffixes();
    QSet<QString> entered_; // canonical paths
    QList<Folder> ahead_;
    int entries_ = 0;
    bool complete_ = true;
    QStringList files_;
};

void Collector::visit(const Folder &folder)
{
    const QString canonical = QDir(folder.path).canonicalPath();
    if (canonical.isEmpty() || entered_.contains(canonical))
        return;
    entered_.insert(canonical);
    const QDir dir(folder.path);
    const auto entries = dir.entryInfoList(QDir::Files | QDir::Dirs | QDir::NoDotAndDotDot);
    for (const QFileInfo &entry : entries) {
        if (++entries_ > limits_.entries || files_.size() >= limits_.files) {
            complete_ = false;
            return;
        }
        if (entry.isDir()) {
            if (folder.depth < limits_.depth)
                ahead_.append({entry.filePath(), folder.depth + 1});
            else
                complete_ = false;
            continue;
        }
        const QString suffix = entry.suffix().toLower();
        if (entry.isFile() && suffixes_.contains(suffix) &&
            (!isVague(suffix) || looksRight(entry.filePath(), suffix)))
            files_.append(entry.filePath());
    }
}

QStringList Collector::run(const QString &folder)
{
    ahead_.append({QDir(folder).absolutePath(), 0});
    while (!ahead_.isEmpty())
        visit(ahead_.takeFirst());
    // The C locale knows no numbers, so a language is named here.
    QCollator collator{QLocale(QLocale::English)};
    collator.setNumericMode(true);
    collator.setCaseSensitivity(Qt::CaseInsensitive);
    const auto before = [&collator](const QString &a, const QString &b) {
        const int order = collator.compare(a, b);
        return order != 0 ? order < 0 : a < b;
    };
    std::sort(files_.begin(), files_.end(), before);
    return files_;
}

} // namespace

QStringList modelSuffixes()
{
    static const QStringList suffixes = [] {
        aiString list; // "*.3ds;*.obj;..."
        Assimp::Importer().GetExtensionList(list);
        QStringList found;
        const auto patterns = QString::fromLatin1(list.C_Str()).split(QLatin1Char(';'));
        for (const QString &pattern : patterns)
            found.append(pattern.mid(pattern.lastIndexOf(QLatin1Char('.')) + 1).toLower());
        found += pointSuffixes();
        found.removeDuplicates();
        found.sort();
        return found;
    }();
    return suffixes;
}

FileList listFiles(const QStringList &paths, const CollectLimits &limits)
{
    FileList all;
    for (const QString &path : paths) {
        if (!QFileInfo(path).isDir()) {
            all.files << path;
            continue;
        }
        Collector collector(limits);
        const QStringList found = collector.run(path);
        all.files << found;
        if (found.isEmpty())
            all.empty << path;
        else if (!collector.isComplete())
            all.cut << path;
    }
    return all;
}

} // namespace host
