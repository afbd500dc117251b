// SPDX-License-Identifier: MIT
#include "host/read/import.h"

#include <algorithm>
#include <exception>
#include <new>
#include <stdexcept>

#include <QFile>
#include <QFileInfo>

#include <assimp/Importer.hpp>
#include <assimp/ProgressHandler.hpp>
#include <assimp/importerdesc.h>
#include <assimp/postprocess.h>

#include "host/read/companion_files.h"
#include "host/read/left_out.h"
#include "host/read/point_reader.h"
#include "host/read/scene.h"

namespace host {
namespace {

/// The shares of the whole that the steps of an import take, by rule of thumb.
constexpr double parsed = 0.6;
constexpr double processed = 0.8;

/// Passes on what assimp tells of its progress; the importer owns it.
class ProgressRelay : public Assimp::ProgressHandler {
public:
    explicit ProgressRelay(const ReadProgress &sink) : sink_(sink) {}

    bool Update(float) override { return true; }

    void UpdateFileRead(int step, int steps) override
    {
        tell(0, parsed, step, steps, QStringLiteral("reading"));
    }

    void UpdatePostProcess(int step, int steps) override
    {
        tell(parsed, processed, step, steps, QStringLiteral("preparing"));
    }

private:
    void tell(double from, double to, int step, int steps, const QString &stage)
    {
        const double done = steps > 0 ? qBound(0.0, double(step) / steps, 1.0) : 0;
        if (sink_)
            sink_(from + (to - from) * done, stage);
    }

    ReadProgress sink_;
};

/// The words of a parser, made fit to be shown: one line, of bounded length, without folders.
QString tidyReason(const char *text, const QString &path)
{
    QString reason = QString::fromUtf8(text);
    const QString name = QFileInfo(path).fileName();
    reason.replace(path, name);
    for (QChar &c : reason) {
        if (!c.isPrint())
            c = QLatin1Char(' ');
    }
    reason = reason.simplified();
    if (reason.size() > 200)
        reason = reason.left(199) + QChar(0x2026);
    return reason.isEmpty() ? QStringLiteral("the reader gives no reason") : reason;
}

QString whyNot(const Assimp::Importer &importer, const QString &path)
{
    try {
        if (importer.GetException())
            std::rethrow_exception(importer.GetException());
    } catch (const std::bad_alloc &) {
        return QStringLiteral("it asks for more memory than there is");
    } catch (const std::length_error &) {
        return QStringLiteral("it gives an impossible size; it may be broken or cut short");
    } catch (...) {
        // Its words are in the importer's error text.
    }
    const QString reason = tidyReason(importer.GetErrorString(), path);
    if (!reason.startsWith(QLatin1String("No suitable reader found")))
        return reason;
    const QString suffix = QFileInfo(path).suffix().toLower();
    if (suffix.isEmpty() || !importer.IsExtensionSupported('.' + suffix.toStdString()))
        return QStringLiteral("no reader knows this kind of file");
    return QStringLiteral("no reader knows it for a .%1 file; it may be broken or cut short")
        .arg(suffix);
}

std::string formatName(const Assimp::Importer &importer)
{
    const int index = importer.GetPropertyInteger("importerIndex", -1);
    const aiImporterDesc *about =
        index < 0 ? nullptr : importer.GetImporterInfo(std::size_t(index));
    return about && about->mName ? about->mName : "";
}

/// Returns why @p scene shows nothing, or nothing if it has a face or a cloud of points;
/// @p dropped faces were taken out.
QString lackOf(const aiScene &scene, quint64 dropped)
{
    for (unsigned i = 0; i < scene.mNumMeshes; ++i) {
        if (scene.mMeshes[i]->mPrimitiveTypes != 0)
            return {};
    }
    return dropped > 0 ? QStringLiteral("none of its faces has usable vertices") : nothingToShow();
}

/// Whether some mesh has faces of more than one kind.
bool isMixed(const aiScene &scene)
{
    return std::any_of(scene.mMeshes, scene.mMeshes + scene.mNumMeshes, [](const aiMesh *mesh) {
        const unsigned kinds =
            mesh->mPrimitiveTypes &
            (aiPrimitiveType_POINT | aiPrimitiveType_LINE | aiPrimitiveType_TRIANGLE);
        return (kinds & (kinds - 1)) != 0;
    });
}

/// Asks for the pictures that the materials name, so that there is a note of what is refused.
void noteTextures(const aiScene &scene, CompanionFiles &files)
{
    for (unsigned i = 0; i < scene.mNumMaterials; ++i) {
        const aiMaterial &material = *scene.mMaterials[i];
        for (int type = aiTextureType_DIFFUSE; type <= AI_TEXTURE_TYPE_MAX; ++type) {
            for (unsigned k = 0; k < material.GetTextureCount(aiTextureType(type)); ++k) {
                aiString name;
                if (material.GetTexture(aiTextureType(type), k, &name) == AI_SUCCESS &&
                    !scene.GetEmbeddedTexture(name.C_Str()))
                    files.find(QString::fromUtf8(name.C_Str()));
            }
        }
    }
}

Imported import(const QString &path, const ReadProgress &progress, const MeshLimits &limits,
                Companions companions)
{
    Assimp::Importer importer;
    auto *files = new CompanionFiles(path, companions);
    importer.SetIOHandler(files); // which owns it
    importer.SetProgressHandler(new ProgressRelay(progress));

    // No processing at first: several steps misbehave on the numbers that prepareScene() removes.
    const aiScene *scene = importer.ReadFile(QFile::encodeName(path).constData(), 0);
    if (!scene)
        return {{}, whyNot(importer, path)};
    const std::string format = formatName(importer);
    // The importer has no other way to work on its scene between two steps.
    aiScene &ours = const_cast<aiScene &>(*scene);
    poseSkins(ours, format);
    QStringList notes;
    const std::unique_ptr<SceneRig> rig = SceneRig::of(ours, format, notes);
    const quint64 dropped = prepareScene(ours, format);
    if (rig)
        rig->attach(ours);
    const QString lack = lackOf(*scene, dropped);
    if (!lack.isEmpty())
        return {{}, lack};
    if (!importer.ApplyPostProcessing(aiProcess_Triangulate) ||
        (isMixed(*scene) && !importer.ApplyPostProcessing(aiProcess_SortByPType)))
        return {{}, whyNot(importer, path)};
    if (asksForCoordinates(*scene) && !importer.ApplyPostProcessing(aiProcess_GenUVCoords))
        return {{}, whyNot(importer, path)};
    if (progress)
        progress(processed, QStringLiteral("joining"));
    const SceneTextures textures = readTextures(ours, format, *files, limits);
    finishScene(ours);
    const aiMatrix4x4 turn = uprightTurn(*scene, format);
    Imported result = flattenScene(*scene, turn, limits, textures, rig.get());
    result.mesh.axes = fileAxes(*scene, format, turn);
    result.mesh.unit = lengthUnit(*scene, format);
    noteTextures(*scene, *files);
    result.mesh.notes += textures.notes + files->notes() + notes;
    return result;
}

} // namespace

Imported importMesh(const QString &path, const ReadProgress &progress, const MeshLimits &limits,
                    Companions companions)
{
    try {
        if (isPointFile(path))
            return readPoints(path, progress, limits);
        return import(path, progress, limits, companions);
    } catch (const std::bad_alloc &) {
        return {{}, QStringLiteral("it asks for more memory than there is")};
    } catch (const std::exception &error) {
        return {{}, tidyReason(error.what(), path)};
    }
}

} // namespace host
