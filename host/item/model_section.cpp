// SPDX-License-Identifier: MIT
#include "host/item/model_section.h"

#include <algorithm>
#include <cmath>

#include <qopengl.h>

namespace host {

void ModelSection::setMesh(MeshPtr mesh, const QVector3D &centre, float scale)
{
    mesh_ = std::move(mesh);
    centre_ = centre;
    scale_ = scale;
    solids_.clear();
    caps_.clear();
    turn();
}

void ModelSection::set(const Section &section)
{
    section_ = section;
    if (section_.planes.size() > Section::most)
        section_.planes.resize(Section::most);
    turn();
}

/// Takes over the planes, and lets what is solid be found if that is needed now.
void ModelSection::turn()
{
    inMesh_ = section_.inMesh(mesh_->axes);
    capsAreDue_ = true;
    if (!solids_.isStarted() && isCutting()) // where memory lacks, a cut stays open
        solids_.start([mesh = mesh_](const std::atomic<bool> &cancelled) {
            return Solids(*mesh, cancelled);
        });
}

/// Expects that the solids are found.
void ModelSection::findCaps() const
{
    if (capsAreDue_)
        caps_.update(*mesh_, *solids_.get(), {inMesh_, centre_, scale_});
    capsAreDue_ = false;
}

std::optional<CapHit> ModelSection::hit(const Ray &ray, const PartMarks &marks) const
{
    if (!isCutting() || !solids_.get())
        return {};
    findCaps();
    return caps_.hit(ray, *solids_.get(), {inMesh_, centre_, scale_}, marks);
}

std::vector<SectionFrame> ModelSection::frames() const
{
    constexpr double air = 0.06; // of the size, so that the edges stand free
    std::vector<SectionFrame> frames;
    for (const CutPlane &plane : inMesh_.planes) {
        if (!inMesh_.on)
            break;
        const PlaneGrid grid(plane, centre_, scale_);
        PlanePoint low{}, high{};
        double least = 0, most = 0;
        for (int corner = 0; corner < 8; ++corner) {
            QVector3D at;
            for (int k = 0; k < 3; ++k)
                at[k] = corner >> k & 1 ? mesh_->max[k] : mesh_->min[k];
            const PlanePoint p = grid.onPlane(at);
            const double along = plane.beyond(at) + plane.offset;
            least = corner == 0 ? along : std::min(least, along);
            most = corner == 0 ? along : std::max(most, along);
            for (std::size_t k = 0; k < 2; ++k) {
                low[k] = corner == 0 ? p[k] : std::min(low[k], p[k]);
                high[k] = corner == 0 ? p[k] : std::max(high[k], p[k]);
            }
        }
        const double margin = air * std::max(high[0] - low[0], high[1] - low[1]);
        for (std::size_t k = 0; k < 2; ++k) {
            low[k] -= margin;
            high[k] += margin;
        }
        const int axis = section_.planes[frames.size()].axis();
        frames.push_back({{grid.inWorld(low), grid.inWorld({high[0], low[1]}), grid.inWorld(high),
                           grid.inWorld({low[0], high[1]})},
                          grid.normal(),
                          double(scale_),
                          least,
                          most,
                          axis < 0 ? 0 : mesh_->origin[std::size_t(axis)]});
    }
    return frames;
}

std::vector<PlaneGrid> ModelSection::planes() const
{
    std::vector<PlaneGrid> planes;
    for (const CutPlane &plane : inMesh_.planes)
        if (inMesh_.on)
            planes.emplace_back(plane, centre_, scale_);
    return planes;
}

ModelSection::Clipping::Clipping(const ModelSection &section) : on_(section.isCutting())
{
    if (!on_)
        return;
    glPushAttrib(GL_TRANSFORM_BIT); // planes, and which are on
    GLenum at = GL_CLIP_PLANE0;
    for (const PlaneGrid &plane : section.planes()) {
        // OpenGL keeps the points p with equation · (p, 1) >= 0, in the coordinates of this moment.
        const QVector3D &n = plane.normal();
        const GLdouble equation[4] = {-double(n.x()), -double(n.y()), -double(n.z()),
                                      plane.height()};
        glClipPlane(at, equation);
        glEnable(at++);
    }
}

ModelSection::Clipping::~Clipping()
{
    if (on_)
        glPopAttrib();
}

void ModelSection::drawCaps(SectionCaps::Kind kind, const Display &display, const PartMarks &marks,
                            double perPixel)
{
    if (!isCutting() || !solids_.get())
        return;
    findCaps();
    caps_.draw(kind, *solids_.get(), {display, marks, perPixel});
}

void ModelSection::drawShapes(const PartMarks &marks, const PartColour &colourOf) const
{
    if (!isCutting() || !solids_.get())
        return;
    findCaps();
    caps_.drawShapes(*solids_.get(), marks, colourOf);
}

void ModelSection::addMet(const PickSquare &square, const PartMarks &marks,
                          std::vector<bool> &met) const
{
    if (!isCutting() || !solids_.get())
        return;
    findCaps();
    caps_.addMet(square, *solids_.get(), marks, met);
}

std::size_t ModelSection::byteSize() const
{
    return caps_.byteSize() + (solids_.get() ? solids_.get()->byteSize() : 0);
}

std::optional<CutPlane> planeThrough(const Mesh &mesh, quint32 triangle, const QVector3D &direction)
{
    const auto corner = [&](std::size_t k) {
        return mesh.position(mesh.indices[triangle * 3 + k]);
    };
    const QVector3D a = (corner(1) - corner(0)).normalized();
    const QVector3D b = (corner(2) - corner(0)).normalized();
    QVector3D normal = QVector3D::crossProduct(a, b).normalized();
    if (normal.isNull())
        return {};
    if (QVector3D::dotProduct(normal, direction) > 0)
        normal = -normal;
    for (int k = 0; k < 3; ++k) // so that it is known to stand across an axis
        if (constexpr float nearly = 1 - 1e-6f; std::abs(normal[k]) > nearly) {
            const float sign = normal[k] > 0 ? 1.0f : -1.0f;
            normal = {};
            normal[k] = sign;
        }
    CutPlane plane{mesh.axes.toFile(normal), 0};
    // A face that lies in the plane would be left in shreds.
    constexpr double below = 1e-4;
    const double size = double((mesh.max - mesh.min).length());
    plane.offset = plane.beyond(mesh.axes.toFile(corner(0))) - below * size;
    return plane;
}

} // namespace host
