// SPDX-License-Identifier: MIT
#include "host/read/scene_textures.h"

#include <algorithm>
#include <map>

#include <QBuffer>
#include <QFile>
#include <QFileInfo>

#include <assimp/GltfMaterial.h>

#include "host/read/companion_files.h"
#include "host/read/image_read.h"
#include "host/read/scene_uvs.h"

namespace host {
namespace {

/// Pixels that are read for one model, before they are scaled down: some seconds of work.
constexpr qint64 maxWork = qint64(1) << 29;

/// Calls @p visit(mesh, its material, its use of a picture) for each mesh that has these.
template <class Visit> void forEachUse(const aiScene &scene, const Visit &visit)
{
    for (unsigned i = 0; i < scene.mNumMeshes; ++i) {
        aiMesh &mesh = *scene.mMeshes[i];
        if (mesh.mMaterialIndex >= scene.mNumMaterials || mesh.mNumFaces == 0)
            continue;
        if (const auto use = textureUseOf(*scene.mMaterials[mesh.mMaterialIndex]))
            visit(mesh, *scene.mMaterials[mesh.mMaterialIndex], *use);
    }
}

/// A picture that some material asks for.
struct Source {
    QString name; ///< For notes.
    QString path; ///< Or it is inside:
    const aiTexture *inside = nullptr;
    QString reason; ///< Why it cannot be read.
    QSize size;
    int texture = -1;
    enum class Alpha { None, TwoValued, Graded } alpha = Alpha::None;

    /// Calls @p then(device) on what is to be read; false if it cannot be opened.
    template <class Then> bool open(const Then &then) const
    {
        if (inside) {
            QBuffer buffer;
            buffer.setData(QByteArray::fromRawData(reinterpret_cast<char *>(inside->pcData),
                                                   int(std::min(inside->mWidth, 0x7fffffffu))));
            return buffer.open(QIODevice::ReadOnly) && (then(buffer), true);
        }
        QFile file(path);
        return file.open(QIODevice::ReadOnly) && (then(file), true);
    }
    bool isRaw() const { return inside && inside->mHeight > 0; }
};

Source::Alpha alphaOf(const Texture &texture)
{
    std::size_t some = 0, middle = 0;
    quint8 most = 0;
    for (std::size_t i = 3; i < texture.pixels.size(); i += 4) {
        const quint8 alpha = texture.pixels[i];
        some += alpha < 255 ? 1u : 0u;
        most = std::max(most, alpha);
        middle += alpha >= 16 && alpha < 240 ? 1u : 0u;
    }
    // Where nothing at all would be seen, the channel was left empty.
    if (some == 0 || most < 16)
        return Source::Alpha::None;
    return middle * 4 <= some ? Source::Alpha::TwoValued : Source::Alpha::Graded;
}

class TextureReader {
    Q_DECLARE_TR_FUNCTIONS(TextureReader)
public:
    TextureReader(aiScene &scene, const std::string &format, CompanionFiles &files,
                  const MeshLimits &limits)
        : scene_(scene), format_(format), files_(files), limits_(limits)
    {
    }

    SceneTextures run();

private:
    std::size_t sourceOf(const TextureUse &use);
    void search(const QString &named, Source &source);
    void look(Source &source) const;
    void readAll();
    void read(Source &source, int side);
    void cover(aiMaterial &material, const TextureUse &use, const Source &source,
               Cover &cover) const;
    QStringList notes() const;

    aiScene &scene_;
    const std::string &format_;
    CompanionFiles &files_;
    const MeshLimits &limits_;
    std::vector<Source> sources_;
    std::map<QString, std::size_t> found_; // what tells sources apart -> which
    QStringList missing_;
    SceneTextures out_;
};

QString shortName(const QString &path)
{
    const int slash = std::max(path.lastIndexOf('/'), path.lastIndexOf('\\'));
    return path.mid(slash + 1).simplified().left(60);
}

/// Finds the file, or the reason.
void TextureReader::search(const QString &named, Source &source)
{
    const bool madeUp = named.startsWith('$'); // by the reader: the file names none
    CompanionFiles::Verdict verdict = CompanionFiles::Verdict::Good;
    source.path = madeUp ? files_.skin() : files_.find(named, &verdict);
    if (!source.path.isEmpty())
        return;
    source.reason = QStringLiteral("missing"); // nobody reads it
    if (verdict == CompanionFiles::Verdict::Missing && !missing_.contains(source.name))
        missing_ << source.name; // what may not be read has a note already
}

std::size_t TextureReader::sourceOf(const TextureUse &use)
{
    Source source;
    source.inside = scene_.GetEmbeddedTexture(use.name.C_Str());
    const QString named = QString::fromUtf8(use.name.C_Str());
    source.name = shortName(named);
    if (source.inside && source.name.startsWith('*'))
        source.name = tr("inside the model (%1)").arg(source.name.mid(1));
    if (!source.inside)
        search(named, source);
    const QString key = source.inside           ? QStringLiteral("*%1").arg(quintptr(source.inside))
                        : source.path.isEmpty() ? '?' + named
                                                : QFileInfo(source.path).canonicalFilePath();
    const auto [at, isNew] = found_.emplace(key, sources_.size());
    if (isNew) {
        if (source.reason.isEmpty())
            look(source);
        sources_.push_back(source);
    }
    return at->second;
}

/// Finds out the size.
void TextureReader::look(Source &source) const
{
    if (sources_.size() >= limits_.textures) {
        source.reason = TextureReader::tr("too many");
    } else if (source.inside && !source.inside->pcData) {
        source.reason = TextureReader::tr("it is empty");
    } else if (source.isRaw()) {
        const quint64 width = source.inside->mWidth, height = source.inside->mHeight;
        if (width == 0 || width * height > quint64(ImageReader::maxPixels))
            source.reason = TextureReader::tr("too large: %1 × %2").arg(width).arg(height);
        else
            source.size = QSize(int(width), int(height));
    } else if (!source.open([&source](QIODevice &in) {
                   const ImageReader reader(in);
                   source.size = reader.size();
                   source.reason = reader.reason();
               })) {
        source.reason = TextureReader::tr("it cannot be opened");
    }
}

/// The longest side at which all pictures together keep within @p bytes.
int sideWithin(quint64 bytes, const std::vector<Source> &sources)
{
    for (int side = int(Texture::maxSide); side > 1; side /= 2) {
        quint64 sum = 0;
        for (const Source &source : sources) {
            const QSize size = fitting(source.size, side);
            sum += source.reason.isEmpty() ? quint64(size.width()) * quint64(size.height()) * 4 : 0;
        }
        if (sum <= bytes)
            return side;
    }
    return 1;
}

void TextureReader::readAll()
{
    const int side = sideWithin(limits_.textureBytes, sources_);
    qint64 work = 0;
    for (Source &source : sources_) {
        const qint64 pixels = qint64(source.size.width()) * source.size.height();
        if (!source.reason.isEmpty())
            continue;
        if (work + pixels > maxWork) {
            source.reason = TextureReader::tr("too many large ones");
            continue;
        }
        work += pixels;
        read(source, side);
    }
}

void TextureReader::read(Source &source, int side)
{
    std::shared_ptr<Texture> texture;
    if (source.isRaw()) {
        const auto *texels = reinterpret_cast<const uchar *>(source.inside->pcData);
        texture = textureOf(QImage(texels, source.size.width(), source.size.height(),
                                   source.size.width() * 4, QImage::Format_ARGB32),
                            side);
    } else {
        source.open([&](QIODevice &in) {
            ImageReader reader(in);
            texture = reader.read(side);
            source.reason = reader.reason();
        });
    }
    if (!texture) {
        if (source.reason.isEmpty())
            source.reason = tr("it cannot be opened");
        return;
    }
    source.alpha = alphaOf(*texture);
    source.texture = int(out_.textures.size());
    out_.textures.push_back(std::move(texture));
}

Cover::Wrap wrapOf(aiTextureMapMode mode)
{
    return mode == aiTextureMapMode_Wrap     ? Cover::Repeat
           : mode == aiTextureMapMode_Mirror ? Cover::Mirror
                                             : Cover::Clamp;
}

/// What is to be done with the picture's alpha. Few formats say; in the others it is as often a
/// leaf's outline as something that is no opacity at all.
Cover::Alpha alphaUse(const aiMaterial &material, const TextureUse &use, Source::Alpha has)
{
    aiString mode;
    if (has == Source::Alpha::None)
        return Cover::Ignored;
    if (material.Get(AI_MATKEY_GLTF_ALPHAMODE, mode) == AI_SUCCESS) {
        const std::string name = mode.C_Str();
        return name == "MASK" ? Cover::Cutout : name == "BLEND" ? Cover::Blended : Cover::Ignored;
    }
    int flags = 0;
    material.Get(AI_MATKEY_TEXFLAGS(use.type, 0), flags);
    if ((flags & aiTextureFlags_IgnoreAlpha) != 0)
        return Cover::Ignored;
    if (has == Source::Alpha::TwoValued)
        return Cover::Cutout;
    const bool meant = (flags & aiTextureFlags_UseAlpha) != 0 ||
                       material.GetTextureCount(aiTextureType_OPACITY) > 0;
    return meant ? Cover::Blended : Cover::Ignored;
}

bool isNeutral(const aiColor4D &c)
{
    return std::max({c.r, c.g, c.b}) - std::min({c.r, c.g, c.b}) < 0.02f;
}

void TextureReader::cover(aiMaterial &material, const TextureUse &use, const Source &source,
                          Cover &cover) const
{
    cover.texture = source.texture;
    cover.wrapS = wrapOf(use.wrap[0]);
    cover.wrapT = wrapOf(use.wrap[1]);
    cover.alpha = alphaUse(material, use, source.alpha);
    float cutoff = 0.5f;
    if (material.Get(AI_MATKEY_GLTF_ALPHACUTOFF, cutoff) == AI_SUCCESS && cutoff >= 0)
        cover.cutoff = std::min(cutoff, 1.0f); // false for NaN
    constexpr int nearest = 9728;              // as the format numbers it, after OpenGL
    int filter = 0;
    if (material.Get(AI_MATKEY_GLTF_MAPPINGFILTER_MAG(use.type, 0), filter) == AI_SUCCESS)
        cover.smooth = filter != nearest;
    // Elsewhere a grey beside a picture is a default that was never seen.
    aiColor4D colour{1, 1, 1, 1};
    if (!isGltf(format_) && material.Get(AI_MATKEY_COLOR_DIFFUSE, colour) == AI_SUCCESS &&
        isNeutral(colour))
        colour = {1, 1, 1, colour.a};
    if (!isGltf(format_)) {
        material.AddProperty(&colour, 1, AI_MATKEY_COLOR_DIFFUSE);
        material.RemoveProperty(AI_MATKEY_BASE_COLOR);
    }
}

/// One line for all of a kind.
QString summed(const QStringList &names, const char *one, const char *more)
{
    return names.size() == 1 ? TextureReader::tr(one).arg(names[0])
                             : TextureReader::tr(more).arg(names.size()).arg(names[0]);
}

QStringList TextureReader::notes() const
{
    QStringList broken, lines;
    for (const Source &source : sources_) {
        if (!source.reason.isEmpty() && (source.inside || !source.path.isEmpty()))
            broken << QStringLiteral("%1: %2").arg(source.name, source.reason);
    }
    if (!missing_.isEmpty())
        lines << summed(missing_, QT_TRANSLATE_NOOP("TextureReader", "texture not found: %1"),
                        QT_TRANSLATE_NOOP("TextureReader", "%1 textures not found: %2, …"));
    if (!broken.isEmpty())
        lines << summed(broken, QT_TRANSLATE_NOOP("TextureReader", "texture not read: %1"),
                        QT_TRANSLATE_NOOP("TextureReader", "%1 textures not read: %2, …"));
    return lines;
}

SceneTextures TextureReader::run()
{
    std::map<const aiMaterial *, std::size_t> sources;
    forEachUse(scene_, [&](const aiMesh &mesh, const aiMaterial &material, const TextureUse &use) {
        if (channelOf(mesh, use) && sources.count(&material) == 0)
            sources[&material] = sourceOf(use);
    });
    readAll();
    out_.covers.resize(scene_.mNumMaterials);
    for (unsigned i = 0; i < scene_.mNumMaterials; ++i) {
        const auto source = sources.find(scene_.mMaterials[i]);
        const auto use = textureUseOf(*scene_.mMaterials[i]);
        if (source != sources.end() && use && sources_[source->second].texture >= 0)
            cover(*scene_.mMaterials[i], *use, sources_[source->second], out_.covers[i]);
    }
    for (unsigned i = 0; i < scene_.mNumMeshes; ++i) {
        aiMesh &mesh = *scene_.mMeshes[i];
        const unsigned number = mesh.mMaterialIndex;
        const bool covered = number < out_.covers.size() && out_.covers[number].texture >= 0;
        const auto use = covered ? textureUseOf(*scene_.mMaterials[number]) : std::nullopt;
        if (use && channelOf(mesh, *use))
            keepCoordinates(mesh, *scene_.mMaterials[number], *use, format_);
        else
            dropCoordinates(mesh);
    }
    out_.notes = notes();
    return std::move(out_);
}

} // namespace

bool asksForCoordinates(const aiScene &scene)
{
    bool asks = false;
    forEachUse(scene, [&asks](const aiMesh &, const aiMaterial &, const TextureUse &use) {
        asks = asks || use.mapping != aiTextureMapping_UV;
    });
    return asks;
}

SceneTextures readTextures(aiScene &scene, const std::string &format, CompanionFiles &files,
                           const MeshLimits &limits)
{
    return TextureReader(scene, format, files, limits).run();
}

} // namespace host
