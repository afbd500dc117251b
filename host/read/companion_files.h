// SPDX-License-Identifier: MIT
#ifndef HOST_READ_COMPANION_FILES_H
#define HOST_READ_COMPANION_FILES_H

#include <QCoreApplication>
#include <QHash>
#include <QString>
#include <QStringList>

#include <assimp/DefaultIOSystem.h>

#include "host/read/companions.h"

namespace host {

/// Opens a model and the files that it names, for an importer. They are regular files, read and
/// never written, and, unless told otherwise, in the model's folder or below it. A file that is not
/// where the model says, since the model came from another machine, is also looked for from the
/// model's folder by the last folders of its path, and by its name alone, whatever its case. What
/// was refused is in notes().
class CompanionFiles : public Assimp::DefaultIOSystem {
    Q_DECLARE_TR_FUNCTIONS(CompanionFiles)
public:
    static constexpr int maxNotes = 8;

    enum class Verdict { Good, Missing, Outside, Irregular };

    CompanionFiles(const QString &model, Companions allowed);

    /// The path to open for what the model calls @p named: a path from its folder or an absolute
    /// one, with the separators of any system. Returns nothing if there is no such file, and if it
    /// may not be read, of which there is a note; @p why is then the reason, and means nothing
    /// where a path is returned.
    QString find(const QString &named, Verdict *why = nullptr);

    /// The picture beside the model that is called as the model is, or begins so: the use of games
    /// whose models name none. Returns nothing if there is none.
    QString skin() const;

    /// One phrase for each file that was refused, in the order of the asking, without folders; the
    /// last of maxNotes phrases counts the rest.
    QStringList notes() const;

    bool Exists(const char *path) const override;
    Assimp::IOStream *Open(const char *path, const char *mode) override;

private:
    Verdict judge(const QString &path) const;
    QString openable(const QString &path, Verdict *verdict) const;
    QString nearby(const QString &path) const;
    QString inFolder(const QString &folder, const QString &name) const;
    void note(const QString &path, Verdict verdict) const;

    const Companions allowed_;
    const QString model_;                       // canonical
    const QString folder_;                      // canonical
    const QString given_;                       // the folder as it was named, absolute
    mutable QStringList refused_;               // Exists() is const to importers
    mutable QHash<QString, QStringList> names_; // of the files in folders that were asked for
};

} // namespace host

#endif
