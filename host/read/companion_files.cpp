// SPDX-License-Identifier: MIT
#include "host/read/companion_files.h"

#include <algorithm>

#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QRegularExpression>

namespace host {
namespace {

bool isBelow(const QString &folder, const QString &path)
{
    return path.startsWith(folder.endsWith(QLatin1Char('/')) ? folder : folder + '/');
}

/// What stands behind the last separator of this system or another.
QString baseName(const QString &path)
{
    const int slash = path.lastIndexOf(QLatin1Char('/'));
    return path.mid(std::max(slash, path.lastIndexOf(QLatin1Char('\\'))) + 1);
}

bool isPicture(const QString &name)
{
    static const QStringList suffixes{"bmp", "dds", "gif", "jpeg", "jpg", "pcx",
                                      "png", "tga", "tif", "tiff", "webp"};
    return suffixes.contains(QFileInfo(name).suffix().toLower());
}

} // namespace

CompanionFiles::CompanionFiles(const QString &model, Companions allowed)
    : allowed_(allowed),
      model_(QFileInfo(model).canonicalFilePath()),
      folder_(QFileInfo(QFileInfo(model).absolutePath()).canonicalFilePath()),
      given_(QDir::cleanPath(QFileInfo(model).absolutePath()))
{
}

CompanionFiles::Verdict CompanionFiles::judge(const QString &path) const
{
    const QFileInfo info(path);
    const bool anywhere = allowed_ == Companions::Anywhere;
    if (!info.exists()) {
        const QString clean = QDir::cleanPath(info.absoluteFilePath());
        const bool inside = isBelow(given_, clean) || isBelow(folder_, clean);
        return anywhere || inside ? Verdict::Missing : Verdict::Outside;
    }
    const QString real = info.canonicalFilePath();
    if (real != model_ && !anywhere && !isBelow(folder_, real))
        return Verdict::Outside;
    return info.isFile() ? Verdict::Good : Verdict::Irregular;
}

/// Returns where to read what is asked for by @p path, or nothing and in @p verdict why.
QString CompanionFiles::openable(const QString &path, Verdict *verdict) const
{
    *verdict = judge(path);
    if (*verdict == Verdict::Good)
        return path;
    // Importers put the folder before absolute paths as well.
    const QString absolute = path.mid(path.indexOf(QLatin1String("//")) + 1);
    if (*verdict == Verdict::Missing && QFileInfo::exists(absolute)) {
        *verdict = judge(absolute);
        if (*verdict == Verdict::Good)
            return absolute;
    }
    return nearby(path);
}

/// Returns what stands here where a path of another machine, or of another writing, leads to.
QString CompanionFiles::nearby(const QString &path) const
{
    constexpr int mostFolders = 6;
    QStringList names = path.split(QRegularExpression(QStringLiteral("[/\\\\]")));
    const QString name = names.takeLast();
    names = names.mid(std::max(0, names.size() - mostFolders));
    for (;;) {
        const QString found = inFolder(QDir::cleanPath(given_ + '/' + names.join('/')), name);
        if (!found.isEmpty() || names.isEmpty())
            return found;
        names.removeFirst();
    }
}

/// The file @p name in @p folder, whatever its case, if it may be read.
QString CompanionFiles::inFolder(const QString &folder, const QString &name) const
{
    if (name.isEmpty())
        return {};
    const QString here = folder + '/' + name;
    if (judge(here) == Verdict::Good)
        return here;
    if (!names_.contains(folder))
        names_[folder] = QDir(folder).entryList(QDir::Files);
    for (const QString &other : qAsConst(names_[folder])) {
        const QString path = folder + '/' + other;
        if (other.compare(name, Qt::CaseInsensitive) == 0 && judge(path) == Verdict::Good)
            return path;
    }
    return {};
}

QString CompanionFiles::find(const QString &named, Verdict *why)
{
    if (named.isEmpty())
        return {};
    QString path = QDir(given_).filePath(named);
    if (!QFileInfo::exists(path)) // a name may hold what separates folders elsewhere
        path = QDir(given_).filePath(QString(named).replace('\\', '/'));
    Verdict verdict = Verdict::Good;
    const QString found = openable(path, &verdict);
    if (found.isEmpty())
        note(path, verdict);
    if (why)
        *why = verdict;
    return found;
}

QString CompanionFiles::skin() const
{
    const QString model = QFileInfo(model_).completeBaseName();
    QStringList names = QDir(given_).entryList(QDir::Files, QDir::Name);
    std::stable_sort(names.begin(), names.end(), // the shortest names the model alone
                     [](const QString &a, const QString &b) { return a.size() < b.size(); });
    for (const QString &name : names) {
        const QString path = given_ + '/' + name;
        if (isPicture(name) && name.startsWith(model, Qt::CaseInsensitive) &&
            judge(path) == Verdict::Good)
            return path;
    }
    return {};
}

void CompanionFiles::note(const QString &path, Verdict verdict) const
{
    if (verdict != Verdict::Outside && verdict != Verdict::Irregular)
        return;
    const QString name = baseName(path).left(60);
    const bool picture = isPicture(name);
    QString text;
    if (verdict == Verdict::Irregular)
        text = tr("%1 is not a regular file: not read").arg(name);
    else if (picture)
        text = tr("texture outside the folder: not read (%1)").arg(name);
    else
        text = tr("file outside the folder: not read (%1)").arg(name);
    if (!refused_.contains(text))
        refused_.append(text);
}

QStringList CompanionFiles::notes() const
{
    if (refused_.size() <= maxNotes)
        return refused_;
    const int left = refused_.size() - maxNotes + 1;
    return refused_.mid(0, maxNotes - 1) << tr("%n more files not read", nullptr, left);
}

bool CompanionFiles::Exists(const char *path) const
{
    const QString asked = QFile::decodeName(path);
    Verdict verdict = Verdict::Good;
    const QString found = openable(asked, &verdict);
    // Importers ask for much that no model names, so only what is there is worth a note.
    if (found.isEmpty() && QFileInfo::exists(asked) && !QFileInfo(asked).isDir())
        note(asked, verdict);
    return !found.isEmpty();
}

Assimp::IOStream *CompanionFiles::Open(const char *path, const char *mode)
{
    const QString asked = QFile::decodeName(path);
    Verdict verdict = Verdict::Good;
    const QString found = mode && mode[0] == 'r' ? openable(asked, &verdict) : QString();
    if (found.isEmpty()) {
        note(asked, verdict);
        return nullptr;
    }
    return DefaultIOSystem::Open(QFile::encodeName(found).constData(), "rb");
}

} // namespace host
