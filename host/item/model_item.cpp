// SPDX-License-Identifier: MIT
#include "host/item/model_item.h"

#include <algorithm>

#include <QLocale>
#include <QThreadPool>

#include "host/item/parts_in_pick.h"

namespace host {

ModelItem::ModelItem(const QString &name, MeshPtr mesh)
    : name_(name), mesh_(std::move(mesh)), marks_(mesh_->parts.size())
{
    measure();
    buildTree();
}

ModelItem::~ModelItem()
{
    build_->cancel = true;
}

/// What the pointer was found with until now is given up.
void ModelItem::buildTree()
{
    build_->cancel = true;
    build_ = std::make_shared<TreeBuild>();
    QThreadPool::globalInstance()->start([build = build_, shared = mesh_] {
        build->tree = std::make_unique<TriangleTree>(shared, build->cancel);
        build->ready = true;
    });
}

/// Finds where the model stands in the world and which points outline it.
void ModelItem::measure()
{
    constexpr std::size_t enough = 40000; // points: the picture's edge lies within a pixel or two
    centre_ = (mesh_->min + mesh_->max) / 2;
    const std::size_t count = mesh_->vertexCount();
    const auto vertex = [&](std::size_t i) {
        const float *p = &mesh_->positions[i * 3];
        return QVector3D(p[0], p[1], p[2]) - centre_;
    };
    float radius = 0;
    for (std::size_t i = 0; i < count; ++i)
        radius = std::max(radius, vertex(i).length());
    scale_ = radius > 0 ? CameraMotion::worldRadius / radius : 1;
    const std::size_t step = count / enough + 1;
    outline_.clear();
    outline_.reserve(count / step + 1);
    for (std::size_t i = 0; i < count; i += step)
        outline_.push_back(vertex(i) * scale_);
}

QString ModelItem::details() const
{
    const QVector3D size = mesh_->fileSize();
    const FileAxes &axes = mesh_->axes;
    const QLocale locale;
    const auto length = [&](float v) { return locale.toString(double(v), 'g', 4); };
    const QString count =
        mesh_->triangleCount() == 1
            ? tr("1 triangle")
            : tr("%1 triangles").arg(locale.toString(qulonglong(mesh_->triangleCount())));
    const QString up = (axes.upIsNegative() ? tr("−%1 up") : tr("%1 up")).arg("XYZ"[axes.up()]);
    const QString counts =
        QStringLiteral("%1  ·  %2 × %3 × %4  ·  %5")
            .arg(count, length(size.x()), length(size.y()), length(size.z()), up);
    return (QStringList(counts) + mesh_->notes).join(QStringLiteral("  ·  "));
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
    quint64 bytes = mesh_->byteSize() + buffers_.byteSize() + outline_.size() * sizeof(QVector3D);
    // Until the tree is there, about what it will take: a size that grew afterwards would pass
    // limits that were kept.
    constexpr quint64 perTriangle = 36;
    return bytes +
           (build_->ready ? build_->tree->byteSize() : mesh_->triangleCount() * perTriangle);
}

double ModelItem::unitsPerPixel(const GLW *glw) const
{
    const double height = glw->height();
    return height > 0 ? 2 * double(shownHalfHeight(glw->camera)) / height / double(scale_) : 0;
}

void ModelItem::init(GLW *glw)
{
    buffers_.create(*mesh_, centre_, scale_);
    steering_.init(glw);
}

void ModelItem::standOn(GLW *glw, FileAxes::Axis up)
{
    chosenUp_ = up;
    if (mesh_->axes.up() == up && !mesh_->axes.upIsNegative())
        return;
    auto turned = std::make_shared<Mesh>(*mesh_); // others may hold the one that it was made of
    turned->standOn(up);
    mesh_ = std::move(turned);
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

void ModelItem::release()
{
    buffers_.destroy();
}

void ModelItem::draw3D(GLW *, const Display &display)
{
    buffers_.draw(*mesh_, display, marks_);
    if (display.hover && hovered_ >= 0)
        brackets_.draw(*mesh_, std::size_t(hovered_), centre_, scale_, display);
}

std::optional<TriangleHit> ModelItem::hit(const Ray &world) const
{
    if (!build_->ready)
        return {};
    return build_->tree->nearest({world.origin / scale_ + centre_, world.direction},
                                 [this](const TriangleHit &hit) { return isThere(hit); });
}

/// Whether what the ray meets there is shown: nothing else is picked or measured.
bool ModelItem::isThere(const TriangleHit &hit) const
{
    return marks_.hiddenCount() == 0 || !marks_.isHidden(std::size_t(partOf(hit.triangle)));
}

std::optional<QVector3D> ModelItem::surfaceAt(const Ray &ray) const
{
    const auto found = hit(ray);
    if (!found)
        return {};
    return ray.origin + ray.direction * float(found->distance * double(scale_));
}

int ModelItem::partOf(quint32 triangle) const
{
    const auto &parts = mesh_->parts;
    const auto after = std::upper_bound(
        parts.begin(), parts.end(), triangle * 3,
        [](quint32 index, const MeshPart &part) { return index < part.firstIndex; });
    return int(after - parts.begin()) - 1;
}

void ModelItem::selectArea3D(GLW *glw, const QRectF &)
{
    marks_.select(partsInPick(glw->camera, *mesh_, centre_, scale_, marks_));
}

bool ModelItem::pick3D(GLW *glw, const std::optional<QPointF> &pointer)
{
    const int before = hovered_;
    hovered_ = -1;
    if (pointer) {
        if (const auto found = hit(CameraSteering::geometryOf(glw).ray(*pointer)))
            hovered_ = partOf(found->triangle);
    }
    return hovered_ != before;
}

} // namespace host
