// SPDX-License-Identifier: MIT
#ifndef HOST_VIEW_SINGLE_VIEW_H
#define HOST_VIEW_SINGLE_VIEW_H

#include <memory>
#include <vector>

#include "host/read/read_queue.h"
#include "host/view/measure_tool.h"
#include "host/view/overlay/neighbours.h"
#include "host/view/overlay/section_handles.h"
#include "host/view/overlay/triad.h"
#include "host/view/section_tool.h"
#include "host/view/view.h"

namespace host {

class PartsPanel;

/// One file in the whole window: read in the background by a queue that outlives the view, with its
/// progress or the reason of its failure in the window.
class SingleView : public View {
    Q_OBJECT
public:
    /// With an empty @p path it tells how to open a file. With an @p item, which was made of the
    /// file before, it reads nothing.
    SingleView(Window &window, ReadQueue &queue, const QString &path,
               const std::shared_ptr<Item> &item = {});
    ~SingleView() override;

    bool isSettled() const override;
    QString fault() const override { return fault_; }
    QString title() const override;
    void readAgain(const QString &path) override;

    QList<QAction *> bindings() const override;
    bool leaveTool() override;
    MeasureTool *measureTool() const { return measure_.get(); } ///< Null without a file.

public slots:
    void OpenNext() { openNeighbour(1); }
    void OpenPrevious() { openNeighbour(-1); }
    void HideParts();
    void ShowOnlyParts();
    void ShowAllParts();
    void ToggleParts(); ///< The list of parts beside the view.
    void FindPart();    ///< Opens it, for a name to be typed.
    void Play();        ///< Plays the animation, or stops it.

signals:
    void fileChosen(const QString &path); ///< A person wants another file in this one's place.

protected:
    bool fillsWindow() const override { return true; }
    void fillPicture(PictureContents &contents) override;
    void paintText(GLW *scene, QPainter *painter) override;
    bool toolClicked(GLW *glw, const QPointF &at) override;
    void clicked(GLW *glw, const QPointF &at, Qt::KeyboardModifiers modifiers) override;
    void fillMenu(GLW *glw, MenuTree *tree) override;
    QMarginsF covered(GLW *glw) const override;

private:
    void connectQueue();
    void show(const std::shared_ptr<Item> &item);
    void addOverlays();
    double lowerRoom() const;
    bool hasHeading() const;
    void openNeighbour(int step);
    void bindParts();
    void forMenu(GLW *glw);
    ModelItem *model() const;
    void listParts();
    void openPartsMenu(const QPoint &at);
    void fillPartsMenu(MenuTree *tree);
    void followParts();
    void marksChanged();
    Playback *playback() const;
    void fillPlayMenu(MenuTree *tree);
    GLW *glw() const { return mainGLW(); }

    QRectF labelBounds() const;
    void paintMeasures(QPainter *painter);

    std::unique_ptr<MeasureTool> measure_;
    std::vector<std::unique_ptr<Overlay>> overlays_;
    std::unique_ptr<SectionHandles> handles_; // over all of it; null without a file, as is the next
    std::unique_ptr<SectionTool> section_;
    QPointer<PartsPanel> parts_; // null while it is not wanted, or there are none
    Triad *triad_ = nullptr;     // among the overlays, as is the next
    Neighbours *neighbours_ = nullptr;
    QString path_;
    QString fault_;
    QString stage_;
    double fraction_ = 0;
    ReadQueue &queue_;
    int job_ = 0;  // that of the file
    int list_ = 0; // that of its neighbours
};

} // namespace host

#endif
