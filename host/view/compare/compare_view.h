// SPDX-License-Identifier: MIT
#ifndef HOST_VIEW_COMPARE_COMPARE_VIEW_H
#define HOST_VIEW_COMPARE_COMPARE_VIEW_H

#include <array>
#include <memory>

#include "host/read/read_queue.h"
#include "host/view/compare/compare_way.h"
#include "host/view/compare/difference.h"
#include "host/view/compare/divider.h"
#include "host/view/compare/legend.h"
#include "host/view/view.h"

namespace host {

/// Two models in one world, where their files' coordinates put them: beside one another with one
/// pose for both cameras, in one place with a line that is dragged between them, or the second in
/// colours that say how far it lies from the first one's surface.
///
/// The first of the two is shown on the left. Files are read by a queue that outlives the view.
class CompareView : public View {
    Q_OBJECT
public:
    /// One of the two: a mesh that was made of its file before is not read again.
    struct Model {
        QString path;
        MeshPtr mesh = {};
    };
    CompareView(Window &window, ReadQueue &queue, const Model &first, const Model &second,
                CompareWay way);
    ~CompareView() override;

    CompareWay way() const { return way_; }
    void setWay(CompareWay way);
    Divider &divider() { return *divider_; }
    /// What was measured of the second one from the first; null until it is there.
    const Difference::Found *difference() const { return difference_.get(); }
    /// What holds a model and its camera: 0 is the one that was named first, 2 their difference.
    /// Not all are in the window at once: with the divider both are drawn in that of 0.
    GLW *tile(int model) const { return tiles_[std::size_t(model)]; }

    bool isSettled() const override;
    QString fault() const override;
    QString title() const override;
    void readAgain(const QString &path) override;
    QList<QAction *> bindings() const override;
    bool leaveTool() override;

public slots:
    void Update(GLW *glw); ///< Called for every visible tile in every pass.
    void DrawBG(GLW *glw); ///< Called before the tiles are drawn.
    void DrawFG(GLW *glw); ///< Called after them.

    void NextWay(); ///< Shows the two in the next way.
    void Swap();    ///< Lets the first be the second.
    void DividerLeft() { moveDivider(-1); }
    void DividerRight() { moveDivider(1); }
    void WiderColours() { stepColours(true); }
    void NarrowerColours() { stepColours(false); }
    void LargerTolerance() { stepTolerance(true); }
    void SmallerTolerance() { stepTolerance(false); }

protected:
    bool advancesInPick() const override { return false; }
    bool showsItemAt(const GLW *glw, const QPointF &at) const override;
    void drawContents(GLW *glw, const Display &display) override;
    void fillPicture(PictureContents &contents) override;
    void paintText(GLW *scene, QPainter *painter) override;
    void fillMenu(GLW *glw, MenuTree *tree) override;
    GLW *keyTarget() const override { return shownTile(); }
    QMarginsF covered(GLW *glw) const override;

private:
    struct Side {
        QString path;
        QString name;
        MeshPtr mesh; ///< As it was read; null until then.
        int job = 0;
        double fraction = 0;
        QString stage;
        QString fault;
    };

    void addTiles();
    void bindKeys();
    void bindColours();
    void read(Side &side);
    void connectQueue();
    Side *sideOf(int job);
    void take(Side &side, const Content &content);
    void makeItems();
    void place();
    void follow();
    void hover(GLW *glw);
    void moveDivider(int steps);
    MeshPtr meshOf(int model) const;
    QString differenceFault() const;
    void leadByFirst();
    void forgetDifference();
    void measureDifference();
    void showDifference(double end);
    void colour(const Difference::Found &found);
    void tellDifference();
    void stepColours(bool up);
    void stepTolerance(bool up);
    void paintDifferenceState(QPainter *painter);
    bool areThere() const;
    int first() const { return first_; }
    int second() const { return 1 - first_; }
    GLW *shownTile() const;
    Item *shownItem(int model) const { return item(tile(model)); }
    bool hasHeadings() const;
    bool isOver(const Overlay *overlay) const;
    void paintWaiting(QPainter *painter);
    void paintHeadings(QPainter *painter);

    std::array<Side, 2> sides_;
    static constexpr std::size_t differenceTile = 2;
    std::array<GLW *, 3> tiles_{}; // of the scene: of both, and of their difference
    int first_ = 0;                // of sides_: on the left
    GLW *leader_ = nullptr;        // the tile whose pose all take
    GLW *hovered_ = nullptr;       // the tile that the pointer was on last
    CompareWay way_;
    std::unique_ptr<Divider> divider_;
    std::unique_ptr<Legend> legend_;
    Difference difference_;
    bool lacksMemory_ = false;       // for its colours
    double end_ = 0, tolerance_ = 0; // of the colours, in the file's unit; 0: not chosen yet
    ReadQueue &queue_;
};

} // namespace host

#endif
