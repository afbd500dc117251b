// SPDX-License-Identifier: MIT
#ifndef HOST_ITEM_MODEL_SECTION_H
#define HOST_ITEM_MODEL_SECTION_H

#include <optional>
#include <vector>

#include "host/item/background.h"
#include "host/item/camera_geometry.h"
#include "host/item/part_marks.h"
#include "host/item/section.h"
#include "host/item/section_caps.h"
#include "host/item/solids.h"
#include "host/read/mesh.h"

namespace host {

/// How a model is cut: its planes, what they leave, and the faces that they make. Costs nothing
/// until a plane is set; what is solid in the model is found then, once, in a thread of its own,
/// and the faces are there when that has ended.
///
/// Each point p of the mesh stands at (p - centre) * scale in the world.
class ModelSection {
public:
    /// What is cut from now on, with the planes that were set.
    void setMesh(MeshPtr mesh, const QVector3D &centre, float scale);
    void set(const Section &section);
    const Section &get() const { return section_; } ///< In the file's coordinates.
    bool isCutting() const { return inMesh_.isCutting(); }
    bool isBusy() const { return solids_.isBusy(); }             ///< Faces are still to come.
    bool lackedMemory() const { return solids_.lackedMemory(); } ///< What is cut stays open.

    /// Whether a point, in the mesh's coordinates, is left.
    bool keeps(const QVector3D &point) const { return inMesh_.keeps(point); }
    std::vector<PlaneGrid> planes() const; ///< Those that cut, in the world.
    /// The first cut face that a ray of the world meets from the open side.
    std::optional<CapHit> hit(const Ray &ray, const PartMarks &marks) const;
    /// The planes as rectangles around the model; none while they do not cut.
    std::vector<SectionFrame> frames() const;

    /// For its lifetime, what is drawn is cut. Expects the world's matrices.
    class Clipping {
    public:
        explicit Clipping(const ModelSection &section);
        ~Clipping();
        Clipping(const Clipping &) = delete;
        Clipping &operator=(const Clipping &) = delete;

    private:
        bool on_;
    };
    /// Draws the faces, within a Clipping; see SectionCaps.
    void drawCaps(SectionCaps::Kind kind, const Display &display, const PartMarks &marks,
                  double perPixel);
    /// The faces alone, within a Clipping; see SectionCaps.
    void drawShapes(const PartMarks &marks, const PartColour &colourOf) const;
    /// Whose faces meet the square; see SectionCaps.
    void addMet(const PickSquare &square, const PartMarks &marks, std::vector<bool> &met) const;
    void release() { caps_.release(); }
    std::size_t byteSize() const;

private:
    void turn();
    void findCaps() const;

    Section section_, inMesh_;
    MeshPtr mesh_;
    QVector3D centre_;
    float scale_ = 1;
    Background<Solids> solids_; // not started until there is a plane
    // Found when somebody asks for them.
    mutable SectionCaps caps_;
    mutable bool capsAreDue_ = true;
};

/// The plane of a triangle of @p mesh, just below it, in the file's coordinates; cuts away the side
/// from which one looks along @p direction. Nothing if the triangle has no area.
std::optional<CutPlane> planeThrough(const Mesh &mesh, quint32 triangle,
                                     const QVector3D &direction);

} // namespace host

#endif
