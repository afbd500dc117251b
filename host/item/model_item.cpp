// SPDX-License-Identifier: MIT
#include "host/item/model_item.h"

#include <algorithm>
#include <limits>

#include <QLocale>

#include "host/ui/metrics.h"

namespace host {

namespace {

/// A copy that stands on another axis: others may hold the one that it is made of.
MeshPtr turned(const Mesh &mesh, FileAxes::Axis up)
{
    auto turned = std::make_shared<Mesh>(mesh);
    turned->standOn(up);
    return turned;
}

/// The longest distance of a vertex from @p centre.
float radiusAbout(const QVector3D &centre, const Mesh &mesh)
{
    float radius = 0;
    for (std::size_t i = 0; i < mesh.vertexCount(); ++i)
        radius = std::max(radius, (mesh.position(i) - centre).length());
    return radius;
}

} // namespace

ModelItem::ModelItem(const QString &name, MeshPtr mesh, MeshPtr beside)
    : name_(name),
      mesh_(std::move(mesh)),
      base_(mesh_),
      beside_(std::move(beside)),
      marks_(mesh_->parts.size())
{
    if (mesh_->rig)
        playback_ = std::make_unique<Playback>(mesh_->rig);
    measure();
    buildTree();
}

/// What the pointer was found with until now is given up.
void ModelItem::buildTree()
{
    ++shape_;
    tree_.start([shared = mesh_](const std::atomic<bool> &cancelled) {
        Trees trees{TriangleTree(shared, cancelled), {}};
        if (shared->trianglePartCount() < shared->parts.size())
            trees.thin.emplace(shared, cancelled);
        return trees;
    });
}

/// Finds where the model stands in the world.
void ModelItem::measure()
{
    QVector3D low = mesh_->min, high = mesh_->max;
    for (int k = 0; beside_ && k < 3; ++k) {
        low[k] = std::min(low[k], beside_->min[k]);
        high[k] = std::max(high[k], beside_->max[k]);
    }
    centre_ = (low + high) / 2;
    float radius = radiusAbout(centre_, *mesh_);
    if (beside_)
        radius = std::max(radius, radiusAbout(centre_, *beside_));
    scale_ = radius > Mesh::noSize ? CameraMotion::worldRadius / radius : 1;
    spacing_ = pointSpacing(*mesh_) * double(scale_);
    outline_.clear();
    outline(); // now, since what an item holds does not grow
    section_.setMesh(mesh_, centre_, scale_);
}

QString ModelItem::details() const
{
    const QVector3D size = mesh_->fileSize();
    const FileAxes &axes = mesh_->axes;
    const QLocale locale;
    const auto length = [&](float v) { return locale.toString(double(v), 'g', 4); };
    QStringList kinds;
    const auto tell = [&](std::size_t count, const QString &one, const QString &many) {
        if (count > 0)
            kinds << (count == 1 ? one : many.arg(locale.toString(qulonglong(count))));
    };
    tell(mesh_->triangleCount(), tr("1 triangle"), tr("%1 triangles"));
    tell(mesh_->lineCount(), tr("1 line"), tr("%1 lines"));
    tell(mesh_->pointCount(), tr("1 point"), tr("%1 points"));
    const QString up = (axes.upIsNegative() ? tr("−%1 up") : tr("%1 up")).arg("XYZ"[axes.up()]);
    QStringList all(QStringLiteral("%1  ·  %2 × %3 × %4  ·  %5")
                        .arg(kinds.join(QStringLiteral("  ·  ")), length(size.x()),
                             length(size.y()), length(size.z()), up));
    if (const std::size_t hidden = marks_.hiddenCount())
        all << (hidden == 1 ? tr("1 part hidden")
                            : tr("%1 parts hidden").arg(locale.toString(qulonglong(hidden))));
    all += mesh_->notes;
    if (tree_.lackedMemory())
        all << tr("no memory to find what the pointer is on");
    if (edges_.lackedMemory())
        all << tr("no memory for its edges");
    if (section_.lackedMemory())
        all << tr("no memory for the cut faces");
    if (levels_.lackedMemory())
        all << tr("no memory to draw less of it while it moves");
    return all.join(QStringLiteral("  ·  "));
}

QString ModelItem::underPointer() const
{
    if (hovered_ < 0) {
        const std::size_t count = marks_.selectedCount();
        return count == 0 ? QString()
                          : tr("%1 of %2 parts selected").arg(count).arg(mesh_->parts.size());
    }
    const MeshPart &part = mesh_->parts[std::size_t(hovered_)];
    return part.material.isEmpty() ? part.name
                                   : QStringLiteral("%1  ·  %2").arg(part.name, part.material);
}

quint64 ModelItem::byteSize() const
{
    quint64 bytes = mesh_->byteSize() + buffers_.byteSize() + section_.byteSize() +
                    outline_.size() * sizeof(QVector3D);
    // Until the tree is there, about what it will take: a size that grew afterwards would pass
    // limits that were kept.
    constexpr quint64 perTriangle = 36, perThin = 6;
    constexpr quint64 perPosed = 4 * 3 * sizeof(float); // place and normal, at rest and posed
    if (playback_) // a pose, and the mesh that stands in it, which shares textures and rig
        bytes += mesh_->normalCount() * perPosed + mesh_->byteSize() - mesh_->textureBytes() -
                 mesh_->rig->byteSize();
    bytes += edges_.byteSize() + levels_.byteSize(*mesh_);
    if (ownsBeside_)
        bytes += beside_->byteSize();
    if (const Trees *trees = tree_.get())
        return bytes + trees->triangles.byteSize() + (trees->thin ? trees->thin->byteSize() : 0);
    if (!tree_.isBusy())
        return bytes;
    return bytes + mesh_->triangleCount() * perTriangle +
           (mesh_->lineCount() + mesh_->pointCount()) * perThin;
}

double ModelItem::unitsPerPixel(const GLW *glw) const
{
    const double height = glw->height();
    return height > 0 ? 2 * double(shownHalfHeight(glw->camera)) / height / double(scale_) : 0;
}

void ModelItem::init(GLW *glw)
{
    buffers_.create(*mesh_, centre_, scale_);
    if (moving_)
        buffers_.move(pose_->positions(), pose_->normals(), centre_, scale_);
    steering_.init(glw);
}

void ModelItem::standOn(GLW *glw, FileAxes::Axis up)
{
    chosenUp_ = up;
    if (mesh_->axes.up() == up && !mesh_->axes.upIsNegative())
        return;
    base_ = mesh_ = turned(*base_, up);
    if (beside_) {
        beside_ = turned(*beside_, up);
        ownsBeside_ = true;
    }
    pose_.reset();
    moving_ = false;
    if (playback_ && playback_->clip() >= 0)
        playback_->setTime(playback_->time()); // the next frame takes it up
    hovered_ = -1;
    brackets_ = {};
    measure();
    buildTree();
    if (!buffers_.isCreated())
        return;
    buffers_.destroy();
    buffers_.create(*mesh_, centre_, scale_);
    steering_.lookAlong(glw, glw->camera);
}

ItemState ModelItem::state(GLW *glw)
{
    ItemState state = Item::state(glw);
    state.parts = marks_;
    state.section = section_.get();
    return state;
}

void ModelItem::restore(GLW *glw, const ItemState &state)
{
    if (state.parts.count() == marks_.count())
        marks_ = state.parts;
    setSection(state.section);
    Item::restore(glw, state);
}

void ModelItem::release()
{
    buffers_.destroy();
    section_.release();
    edges_.destroy();
    levels_.destroy();
}

/// Notes how large a pixel is that looks at the model.
void ModelItem::measurePixel(const GLW *glw)
{
    const CameraGeometry geometry = CameraSteering::geometryOf(glw);
    const double height = std::max(double(glw->height()), 1.0);
    pixel_ = 2 * double(shownHalfHeight(glw->camera)) / height;
    leastTriangles_ = DetailBudget::leastTriangles(double(glw->width()) * height);
    const bool parallel = glw->camera.ortho != 0;
    aimRadius_ = parallel ? pixel_ : 0;
    aimSlope_ = parallel ? 0 : 2 * double(geometry.halfHeight(1)) / height;
}

void ModelItem::draw3D(GLW *glw, const Display &display)
{
    measurePixel(glw);
    noteDetail(display);
    edged_ = display.mode == Display::Mode::Edged && mesh_->triangleCount() > 0;
    if (edged_)
        edges_.request(base_);
    drawBody(display);
    if (display.hover && hovered_ >= 0)
        brackets_.draw(*mesh_, std::size_t(hovered_), centre_, scale_, display);
}

void ModelItem::drawBody(const Display &display)
{
    const Detail detail = detailOf(display.reduces && !display.whole);
    LevelBuffers *level = detail.level < 0 ? nullptr : &levels_;
    if (level)
        level->choose(detail.level);
    // Lines by the million cost more than what they lie on.
    EdgeLines *edges = level && edges_.count() > level->triangleCount() ? nullptr : &edges_;
    const ModelSection::Clipping clipping(section_);
    if (!moving_) // its faces are those of the mesh
        section_.drawCaps(SectionCaps::Opaque, display, marks_, pixel_);
    buffers_.drawThin(*mesh_, display, marks_, {pixel_, spacing_, detail.points});
    buffers_.draw(*mesh_, display, marks_, edges, level);
    if (!moving_)
        section_.drawCaps(SectionCaps::Transparent, display, marks_, pixel_);
}

std::optional<TriangleHit> ModelItem::hit(const Ray &world) const
{
    const Trees *trees = tree_.get();
    if (!trees || moving_)
        return {};
    const Ray ray{world.origin / scale_ + centre_, world.direction};
    const auto found =
        trees->triangles.nearest(ray, [&](const TriangleHit &hit) { return isThere(hit, ray); });
    if (!found || !section_.isCutting())
        return found;
    const auto cap = section_.hit(world, marks_);
    return cap && cap->distance < found->distance * double(scale_) ? std::nullopt : found;
}

/// The line or point that is within a few pixels of the ray and not behind @p surface.
std::optional<ThinHit> ModelItem::thinHit(const Ray &world,
                                          const std::optional<TriangleHit> &surface) const
{
    const Trees *trees = tree_.get();
    if (!trees || !trees->thin || moving_)
        return {};
    const double reach = Metrics::px(4);
    const Aim aim{{world.origin / scale_ + centre_, world.direction},
                  reach * aimRadius_ / double(scale_),
                  reach * aimSlope_};
    double end = std::numeric_limits<double>::infinity(); // of what is seen, along the ray
    if (surface)
        end = surface->distance;
    else if (const auto cap = section_.hit(world, marks_))
        end = cap->distance / double(scale_);
    return trees->thin->nearest(aim, [&](const ThinHit &hit) {
        const double room = aim.radius + aim.slope * hit.distance; // it may lie on the surface
        return !marks_.isHidden(hit.part) && hit.distance < end + room &&
               (!section_.isCutting() || section_.keeps(hit.at));
    });
}

/// On triangles or on cut faces.
std::optional<QVector3D> ModelItem::surfaceAt(const Ray &ray) const
{
    const auto found = hit(ray);
    if (const auto thin = thinHit(ray, found))
        return (thin->at - centre_) * scale_;
    if (found)
        return ray.origin + ray.direction * float(found->distance * double(scale_));
    if (const auto cap = section_.hit(ray, marks_))
        return ray.origin + ray.direction * float(cap->distance);
    return {};
}

bool ModelItem::pick3D(GLW *glw, const std::optional<QPointF> &pointer)
{
    const int before = hovered_;
    hovered_ = -1;
    if (pointer)
        hovered_ = partAt(glw, *pointer);
    return hovered_ != before;
}

} // namespace host
