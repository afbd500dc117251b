// SPDX-License-Identifier: MIT
#ifndef HOST_ITEM_MODEL_ITEM_H
#define HOST_ITEM_MODEL_ITEM_H

#include <memory>

#include <QCoreApplication>

#include "host/item/background.h"
#include "host/item/camera_steering.h"
#include "host/item/detail_budget.h"
#include "host/item/edge_lines.h"
#include "host/item/item.h"
#include "host/item/level_buffers.h"
#include "host/item/mesh_buffers.h"
#include "host/item/model_section.h"
#include "host/item/part_brackets.h"
#include "host/item/part_marks.h"
#include "host/item/playback.h"
#include "host/item/rig_pose.h"
#include "host/item/thin_tree.h"
#include "host/item/triangle_tree.h"
#include "host/read/mesh.h"

namespace host {

/// A model: its triangles, lines and points in GL buffers, lit, with the part under the pointer
/// marked. While the view moves, a frame draws a sample of many points, and many triangles with
/// less detail: all of them once the view rests. Only what is drawn on the screen is reduced.
///
/// World: the model is moved and scaled so that it fills CameraMotion::worldRadius.
class ModelItem : public Item, private CameraSteering::Shape {
    Q_DECLARE_TR_FUNCTIONS(ModelItem)
public:
    /// @p mesh has a triangle, line or point. What the pointer needs to find them is built in a
    /// thread of its own; until then nothing is under the pointer. With another mesh @p beside it,
    /// in the same frame, the world is the one that both fill together, whole views hold both, and
    /// an item of that one beside this one has the same.
    ModelItem(const QString &name, MeshPtr mesh, MeshPtr beside = {});
    QString name() const override { return name_; }
    QString details() const override;
    QString underPointer() const override;
    quint64 count() const override
    {
        return mesh_->triangleCount() + mesh_->lineCount() + mesh_->pointCount();
    }
    quint64 byteSize() const override;
    const Mesh &mesh() const { return *mesh_; }
    /// Another one after standOn() and where an animation stopped.
    const MeshPtr &sharedMesh() const { return mesh_; }
    int hoveredPart() const { return hovered_; } ///< Into the mesh's parts; -1 for none.

    /// The centre and the size of the model's own units in the world:
    /// world = (model - centre) * scale.
    QVector3D centre() const { return centre_; }
    float scale() const { return scale_; }

    /// What a line of sight meets first of what is shown; nothing as long as what finds it is not
    /// built. The distance is in the mesh's units.
    std::optional<TriangleHit> hit(const Ray &world) const;

    Steering &steering() override { return steering_; }
    void setInsets(const QMarginsF &insets) override { steering_.setInsets(insets); }
    bool isSpatial() const override { return true; }
    std::optional<FileAxes> axes() const override { return mesh_->axes; }
    void standOn(GLW *glw, FileAxes::Axis up) override;
    std::optional<FileAxes::Axis> chosenUp() const override { return chosenUp_; }
    double unitsPerPixel(const GLW *glw) const override;
    bool passed(const Pass &pass) override;
    bool isReduced() const override { return reduced_; }
    bool isBusy() const override { return tree_.isBusy() || !isWhole(); }
    bool hasPoints() const override { return mesh_->pointCount() > 0; }
    bool isWhole() const override { return !section_.isBusy() && !(edged_ && edges_.isBusy()); }

    const Section *section() const override { return &section_.get(); }
    void setSection(const Section &section) override { section_.set(section); }
    std::vector<SectionFrame> sectionFrames() const override { return section_.frames(); }
    CutPlane planeOf(const SectionRequest &request) const override;
    std::optional<CutPlane> planeAt(const GLW *glw, const QPointF &pixel) const override;

    bool play(double seconds) override;
    Playback *playback() override { return playback_.get(); }
    void init(GLW *glw) override;
    void release() override;
    void draw3D(GLW *glw, const Display &display) override;
    QByteArray look(GLW *glw) const override;
    void drawMark(GLW *glw, const Display &display) override;
    bool pick3D(GLW *glw, const std::optional<QPointF> &pointer) override;

    void selectArea3D(GLW *glw, const QRectF &area, Reach reach) override;
    void clearSelection() override { marks_.clearSelection(); }
    /// What is selected and hidden; written to, it holds from the next frame on.
    PartMarks &marks() { return marks_; }
    const PartMarks &marks() const { return marks_; }
    /// The part that is shown at a pixel of @p glw; -1 for none, and until triangles can be found.
    int partAt(const GLW *glw, const QPointF &at);
    /// Selects @p part alone, nothing for -1. With @p toggle the others stay as they are, and this
    /// one changes.
    void select(int part, bool toggle);
    void hideParts();     ///< Those selected, or else the one that the pointer is on.
    void showOnlyParts(); ///< The same ones.

    ModelItem *model() override { return this; }
    const ModelItem *model() const override { return this; }
    ItemState state(GLW *glw) override;
    /// Takes up what was selected and hidden of a mesh with as many parts.
    void restore(GLW *glw, const ItemState &state) override;

private:
    std::optional<QVector3D> surfaceAt(const Ray &ray) const override;
    const std::vector<QVector3D> &outline() const override;
    std::vector<QVector3D> chosen() const override;

    /// What finds things under the pointer.
    struct Trees {
        TriangleTree triangles;
        std::optional<ThinTree> thin; // where there are lines or points
    };

    void drawBody(const Display &display);
    void measure();
    void buildTree();
    void measurePixel(const GLW *glw);
    std::optional<ThinHit> thinHit(const Ray &world,
                                   const std::optional<TriangleHit> &surface) const;
    bool isThere(const TriangleHit &hit, const Ray &inMesh) const;
    int partOf(quint32 triangle) const;
    void selectMeant();
    void takePose();
    /// What a frame draws of the model.
    struct Detail {
        std::size_t points = 0;
        int level = -1; // of its triangles; negative: all
    };
    Detail detailOf(bool reduces) const;
    void noteDetail(const Display &display);

    QString name_;
    MeshPtr mesh_;            // as it is drawn, but for while it moves
    MeshPtr base_;            // as it stands without an animation
    MeshPtr beside_;          // null: it is alone in its world
    bool ownsBeside_ = false; // it is a copy of its own
    std::unique_ptr<Playback> playback_;
    std::unique_ptr<RigPose> pose_; // of base_; made when it is first needed
    bool moving_ = false;           // what is drawn is not mesh_
    QVector3D centre_;
    float scale_ = 1;
    mutable std::vector<QVector3D> outline_; // of what is shown; empty: to be made
    mutable std::vector<bool> outlineHides_; // the parts that it leaves out
    std::optional<FileAxes::Axis> chosenUp_;
    CameraSteering steering_{*this};
    MeshBuffers buffers_;
    DetailBudget budget_;
    LevelBuffers levels_;
    bool reduces_ = true;            // frames may leave something out while the view moves
    bool shown_ = false;             // by a frame on the screen
    bool reduced_ = false;           // the last of them left something out
    quint64 shape_ = 0;              // which of its meshes it is
    double spacing_ = 0;             // of points, in the world
    double pixel_ = 0;               // of the object, in the world, at the depth that one looks at
    std::size_t leastTriangles_ = 0; // that a frame draws, however long that takes
    double aimRadius_ = 0, aimSlope_ = 0; // of the room that a pixel sees: see Aim
    ModelSection section_;
    PartBrackets brackets_;
    EdgeLines edges_;
    bool edged_ = false; // the last frame was to show them
    Background<Trees> tree_;
    int hovered_ = -1;
    PartMarks marks_; // of the mesh's parts
};

} // namespace host

#endif
