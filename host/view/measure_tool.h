// SPDX-License-Identifier: MIT
#ifndef HOST_VIEW_MEASURE_TOOL_H
#define HOST_VIEW_MEASURE_TOOL_H

#include <functional>
#include <list>
#include <optional>

#include <QObject>
#include <QPointer>

#include "host/item/background.h"
#include "host/measure/measurement.h"
#include "host/measure/mesh_measures.h"
#include "host/measure/snap.h"
#include "host/view/overlay/overlay.h"

class QAction;

namespace host {

class MenuTree;
class ModelItem;

/// Measures the model of a single view: while it is active, clicks on the model are places that
/// are measured. What was measured stays until it is removed or the file is another.
///
/// Everything is said in the coordinates, the axes and, where it is known, the unit of the file.
/// The module finds the slots with capital letters by their names.
class MeasureTool : public QObject {
    Q_OBJECT
public:
    /// What the next clicks measure.
    enum class Kind { Distance, Point, FaceAngle, PointAngle, Radius };

    /// Binds a key of the whole view, as View does.
    using BindKey = std::function<QAction *(const char *key, const char *name, const QString &text,
                                            QObject *receiver, const char *slot)>;

    MeasureTool(Underlay under, Window &window, const BindKey &bind);

    bool isActive() const { return active_ && model(); }
    const std::vector<Measurement> &measurements() const { return all_; }
    /// Whether something that it looks for or measures is still to come, through advance().
    bool isBusy() const { return looking_ || !surfaces_.empty(); }

    /// A click, in the main object's pixels, y upwards. Returns whether it was for the tool.
    bool click(const QPointF &at);
    /// What it waits for or has to say, in one line; empty where that is nothing.
    QString hint() const;
    /// Takes up what was found meanwhile. Expects to be called once a frame of the window.
    void advance();
    /// Paints what was measured, with labels within @p bounds, in the window's pixels, y downwards.
    void paint(QPainter *painter, const QRectF &bounds) const;
    /// Paints what is no part of a picture: the places clicked so far, and what the next click
    /// takes at @p pointer, in the main object's pixels, y upwards.
    void paintStep(QPainter *painter, const std::optional<QPointF> &pointer) const;
    void fillMenu(MenuTree *tree);
    /// What no binding is for, for the list of bindings.
    const QList<QAction *> &hints() const { return hints_; }
    /// The view shows something else, of the same file: what was measured stays if its shape is
    /// exactly what it was.
    void itemChanged();

    bool eventFilter(QObject *object, QEvent *event) override;

signals:
    void changed(); ///< A frame is to be drawn.

public slots:
    void Measure();          ///< Becomes active, or goes on to the next kind.
    void MeasureSurface();   ///< Area and volume of what is selected, or of all that is shown.
    void RemoveLast();       ///< What was clicked last, or else measured last.
    void CopyMeasurements(); ///< To the clipboard, a line for each.
    bool leave();            ///< Returns whether it was active.

private:
    struct Picked {
        Vec at; // in the file's frame, as is the next
        Vec normal;
    };
    struct Surface {
        QString name;
        Background<SurfaceMeasures> found;
    };
    struct KindText {
        QString name;
        QStringList steps; // a click each
    };
    using TopologyPtr = std::shared_ptr<const MeshTopology>;

    static QVector<KindText> kinds();
    const ModelItem *model() const;
    void choose(Kind kind);
    void activate();
    void prepare();
    void prepareAgain();
    void sync();
    TopologyPtr topology() const;
    std::optional<Snap> snapAt(const QPointF &pixel) const;
    void take(const Snap &snap);
    void takeRadius(const Snap &snap);
    void startSurface();
    void add(const Measurement &measurement);
    void say(const QString &message);
    void keysFollow();
    std::vector<bool> measuredParts(QString &name) const;

    Underlay under_;
    Window &window_;
    QPointer<QAction> copy_, remove_, removeToo_;
    QList<QAction *> hints_;
    bool active_ = false;
    Kind kind_ = Kind::Distance;
    std::vector<Picked> picked_;
    std::vector<Measurement> all_;
    QString message_;           // until the next click
    bool surfaceAsked_ = false; // as soon as the topology is there
    MeshPtr mesh_;              // for which the topology is, or will be
    Background<TopologyPtr> topology_;
    bool looking_ = false;        // for the topology; what came of it is not taken up yet
    std::list<Surface> surfaces_; // to be taken up in this order
};

} // namespace host

#endif
