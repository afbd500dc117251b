// SPDX-License-Identifier: MIT
#include "host/item/section_caps.h"

#include <algorithm>
#include <cmath>

#include <GL/glu.h>

#include "host/item/camera_geometry.h"
#include "host/item/transparent_parts.h"
#include "host/ui/metrics.h"

namespace host {

namespace {

/// A colour, darker or lighter by @p share, 0 to 1, whichever can be told from it.
std::array<float, 4> apart(const std::array<float, 4> &colour, float share)
{
    const float bright = 0.3f * colour[0] + 0.6f * colour[1] + 0.1f * colour[2];
    std::array<float, 4> other = colour;
    for (std::size_t i = 0; i < 3; ++i)
        other[i] += ((bright > 0.25f ? 0.0f : 1.0f) - colour[i]) * share;
    return other;
}

std::array<float, 4> mixedWith(const std::array<float, 4> &colour, const QColor &tint, float share)
{
    const float other[3] = {float(tint.redF()), float(tint.greenF()), float(tint.blueF())};
    std::array<float, 4> mixed = colour;
    for (std::size_t i = 0; i < 3; ++i)
        mixed[i] += (other[i] - colour[i]) * share;
    return mixed;
}

/// Lets the lines of the hatch run in one of two directions, @p period apart in world units.
void setHatch(const PlaneGrid &grid, double period, bool falling)
{
    const QVector3D across =
        (grid.right() + (falling ? grid.up() : -grid.up())) / float(period * std::sqrt(2.0));
    const GLfloat plane[4] = {across.x(), across.y(), across.z(), 0};
    glTexGenfv(GL_S, GL_OBJECT_PLANE, plane);
}

/// A solid that lacks a part has no face.
bool isHidden(const Solids::Solid &solid, const PartMarks &marks)
{
    return std::any_of(solid.parts.begin(), solid.parts.end(),
                       [&](quint32 part) { return marks.isHidden(part); });
}

void addCorners(const PlaneGrid &grid, const std::vector<PlanePoint> &points)
{
    for (const PlanePoint &at : points) {
        const QVector3D p = grid.inWorld(at);
        glVertex3f(p.x(), p.y(), p.z());
    }
}

} // namespace

void SectionCaps::update(const Mesh &mesh, const Solids &solids, const Place &place)
{
    const std::vector<CutPlane> &wanted = place.section.planes;
    std::vector<Plane> planes;
    for (const CutPlane &plane : wanted) {
        const auto found = std::find_if(planes_.begin(), planes_.end(),
                                        [&](const Plane &p) { return p.plane == plane; });
        if (found != planes_.end()) {
            planes.push_back(*found);
            continue;
        }
        const PlaneGrid grid(plane, place.centre, place.scale);
        planes.push_back({plane, grid, capShapes(mesh, solids, plane, grid)});
    }
    planes_ = std::move(planes);
}

/// A line across a texture of one dimension, soft at its edges, also from far away.
void SectionCaps::beginHatch()
{
    glEnable(GL_TEXTURE_1D);
    if (hatch_ == 0) {
        constexpr int size = 32, line = 7;
        GLubyte texels[size];
        std::fill(texels, texels + size, GLubyte(255));
        std::fill(texels, texels + line, GLubyte(190));
        glGenTextures(1, &hatch_);
        glBindTexture(GL_TEXTURE_1D, hatch_);
        glTexParameteri(GL_TEXTURE_1D, GL_TEXTURE_WRAP_S, GL_REPEAT);
        glTexParameteri(GL_TEXTURE_1D, GL_TEXTURE_MIN_FILTER, GL_LINEAR_MIPMAP_LINEAR);
        glTexParameteri(GL_TEXTURE_1D, GL_TEXTURE_MAG_FILTER, GL_LINEAR);
        glPushClientAttrib(GL_CLIENT_PIXEL_STORE_BIT);
        glPixelStorei(GL_UNPACK_ALIGNMENT, 1);
        gluBuild1DMipmaps(GL_TEXTURE_1D, GL_LUMINANCE8, size, GL_LUMINANCE, GL_UNSIGNED_BYTE,
                          texels);
        glPopClientAttrib();
    }
    glBindTexture(GL_TEXTURE_1D, hatch_);
    glTexEnvi(GL_TEXTURE_ENV, GL_TEXTURE_ENV_MODE, GL_MODULATE);
    glTexGeni(GL_S, GL_TEXTURE_GEN_MODE, GL_OBJECT_LINEAR);
    glEnable(GL_TEXTURE_GEN_S);
}

void SectionCaps::draw(Kind kind, const Solids &solids, const Look &look)
{
    if (planes_.empty())
        return;
    glPushAttrib(GL_ENABLE_BIT | GL_DEPTH_BUFFER_BIT | GL_LIGHTING_BIT | GL_POLYGON_BIT |
                 GL_COLOR_BUFFER_BIT | GL_CURRENT_BIT | GL_LINE_BIT | GL_TEXTURE_BIT |
                 GL_TRANSFORM_BIT);
    glEnable(GL_DEPTH_TEST);
    glDepthFunc(GL_LEQUAL);
    glDisable(GL_CULL_FACE);
    glDisable(GL_TEXTURE_2D);
    glShadeModel(GL_SMOOTH);
    glPolygonMode(GL_FRONT_AND_BACK, GL_FILL);
    glLineWidth(look.display.scale * float(Metrics::px(1)));
    const GLfloat none[4] = {0, 0, 0, 1};
    glLightModeli(GL_LIGHT_MODEL_TWO_SIDE, GL_TRUE);
    glMaterialfv(GL_FRONT_AND_BACK, GL_SPECULAR, none);
    glMaterialfv(GL_FRONT_AND_BACK, GL_EMISSION, none);
    glColorMaterial(GL_FRONT_AND_BACK, GL_AMBIENT_AND_DIFFUSE);
    glEnable(GL_COLOR_MATERIAL);
    beginHatch();
    if (kind == Transparent) {
        glEnable(GL_BLEND);
        glBlendFunc(GL_SRC_ALPHA, GL_ONE_MINUS_SRC_ALPHA);
        // Behind the faces of opaque solids in the same plane.
        glEnable(GL_POLYGON_OFFSET_FILL);
        glPolygonOffset(1, 4);
    } else {
        glDisable(GL_BLEND);
    }
    for (std::size_t i = 0; i < planes_.size(); ++i) {
        const GLenum own = GLenum(GL_CLIP_PLANE0 + i); // it would cut its face to shreds
        const GLboolean cuts = glIsEnabled(own);
        glDisable(own);
        drawPlane(planes_[i], kind, solids, look);
        if (cuts)
            glEnable(own);
    }
    glPopAttrib();
}

/// Faces lie in one plane: none hides another by its depth. So they are painted over each other
/// first, and their depth comes afterwards, for what lies behind.
void SectionCaps::drawPlane(const Plane &plane, Kind kind, const Solids &solids,
                            const Look &look) const
{
    std::vector<const CapShape *> shown;
    for (const CapShape &shape : plane.shapes) {
        const Solids::Solid &solid = solids.all()[shape.solid];
        if (!isHidden(solid, look.marks) && (opacityOf(solid.colour) < 1) == (kind == Transparent))
            shown.push_back(&shape);
    }
    if (shown.empty())
        return;
    const QVector3D &n = plane.grid.normal();
    glNormal3f(n.x(), n.y(), n.z());
    // Steps of two, so that the lines stay where they are while one comes nearer.
    const double wanted = Metrics::px(9) * look.perPixel;
    const double period = wanted > 0 ? std::exp2(std::round(std::log2(wanted))) : 1;
    const bool lines = look.display.mode == Display::Mode::Wireframe; // one sees through
    glDepthMask(GL_FALSE);
    for (const CapShape *shape : shown) {
        const Solids::Solid &solid = solids.all()[shape->solid];
        const bool marked = std::any_of(solid.parts.begin(), solid.parts.end(),
                                        [&](quint32 part) { return look.marks.isSelected(part); });
        std::array<float, 4> colour = apart(solid.colour, 0.15f);
        if (marked)
            colour = mixedWith(colour, look.display.theme().accent, 0.55f);
        colour[3] = opacityOf(solid.colour);
        if (!lines) {
            (look.display.lighting ? glEnable : glDisable)(GL_LIGHTING);
            glEnable(GL_TEXTURE_1D);
            setHatch(plane.grid, period, shape->solid % 2 == 1);
            glColor4fv(colour.data());
            glBegin(GL_TRIANGLES);
            addCorners(plane.grid, shape->triangles);
            glEnd();
        }
        glDisable(GL_TEXTURE_1D);
        glDisable(GL_LIGHTING);
        glColor4fv((lines ? colour : apart(colour, 0.6f)).data());
        glBegin(GL_LINES);
        addCorners(plane.grid, shape->outline);
        glEnd();
    }
    if (lines || kind == Transparent)
        return;
    glDepthMask(GL_TRUE);
    glColorMask(GL_FALSE, GL_FALSE, GL_FALSE, GL_FALSE);
    glBegin(GL_TRIANGLES);
    for (const CapShape *shape : shown)
        addCorners(plane.grid, shape->triangles);
    glEnd();
    glColorMask(GL_TRUE, GL_TRUE, GL_TRUE, GL_TRUE);
}

void SectionCaps::drawShapes(const Solids &solids, const PartMarks &marks,
                             const PartColour &colourOf) const
{
    glPushAttrib(GL_ALL_ATTRIB_BITS);
    glEnable(GL_DEPTH_TEST);
    glDepthFunc(GL_LEQUAL);
    for (const GLenum off : {GL_LIGHTING, GL_BLEND, GL_CULL_FACE, GL_TEXTURE_1D, GL_TEXTURE_2D})
        glDisable(off);
    for (std::size_t i = 0; i < planes_.size(); ++i) {
        const GLenum own = GLenum(GL_CLIP_PLANE0 + i);
        glDisable(own);
        for (const bool depth : {false, true}) { // as drawPlane() does
            glDepthMask(depth);
            glColorMask(!depth, !depth, !depth, !depth);
            for (const CapShape &shape : planes_[i].shapes) {
                const Solids::Solid &solid = solids.all()[shape.solid];
                if (isHidden(solid, marks) || !colourOf(solid.parts.front()))
                    continue;
                glBegin(GL_TRIANGLES);
                addCorners(planes_[i].grid, shape.triangles);
                glEnd();
            }
        }
        glEnable(own);
    }
    glPopAttrib();
}

void SectionCaps::addMet(const PickSquare &square, const Solids &solids, const PartMarks &marks,
                         std::vector<bool> &met) const
{
    std::vector<PlaneGrid> grids;
    for (const Plane &plane : planes_)
        grids.push_back(plane.grid);
    for (std::size_t i = 0; i < planes_.size(); ++i)
        for (const CapShape &shape : planes_[i].shapes) {
            const Solids::Solid &solid = solids.all()[shape.solid];
            const quint32 part = solid.parts.front();
            if (met[part] || isHidden(solid, marks))
                continue;
            const std::vector<PlanePoint> &corners = shape.triangles;
            for (std::size_t k = 0; k < corners.size() && !met[part]; k += 3) {
                std::vector<PickSquare::Place> triangle;
                for (std::size_t n = k; n < k + 3; ++n) {
                    const QVector3D p = grids[i].inWorld(corners[n]);
                    triangle.push_back({double(p.x()), double(p.y()), double(p.z())});
                }
                met[part] = square.isMet(std::move(triangle), grids, i);
            }
        }
}

std::optional<CapHit> SectionCaps::hit(const Ray &ray, const Solids &solids, const Place &place,
                                       const PartMarks &marks) const
{
    std::optional<CapHit> best;
    for (std::size_t i = 0; i < planes_.size(); ++i) {
        const PlaneGrid &grid = planes_[i].grid;
        const double toward = -double(QVector3D::dotProduct(ray.direction, grid.normal()));
        const double over =
            double(QVector3D::dotProduct(ray.origin, grid.normal())) - grid.height();
        if (!(toward > 0 && over >= 0) || (best && best->distance <= over / toward))
            continue;
        const QVector3D at = ray.origin + ray.direction * float(over / toward);
        if (!place.section.keeps(at / place.scale + place.centre, int(i)))
            continue;
        // The smaller faces come last and are seen.
        const auto &shapes = planes_[i].shapes;
        const auto found = std::find_if(shapes.rbegin(), shapes.rend(), [&](const CapShape &s) {
            return s.holds(grid.onPlaneOf(at)) && !isHidden(solids.all()[s.solid], marks);
        });
        if (found != shapes.rend())
            best = CapHit{solids.all()[found->solid].parts.front(), over / toward};
    }
    return best;
}

void SectionCaps::release()
{
    if (hatch_ != 0)
        glDeleteTextures(1, &hatch_);
    hatch_ = 0;
}

std::size_t SectionCaps::byteSize() const
{
    std::size_t bytes = 0;
    for (const Plane &plane : planes_)
        for (const CapShape &shape : plane.shapes)
            bytes += (shape.outline.capacity() + shape.triangles.capacity()) * sizeof(PlanePoint);
    return bytes;
}

} // namespace host
