// SPDX-License-Identifier: MIT
#include "host/view/measure_tool.h"

#include <utility>

#include <QAction>
#include <QEvent>
#include <QPainter>

#include "host/item/model_item.h"
#include "host/measure/round.h"
#include "host/view/measure_paint.h"
#include "host/view/window/binding.h"

namespace host {

MeasureTool::MeasureTool(Underlay under, Window &window, const BindKey &bind)
    : under_(std::move(under)), window_(window)
{
    setContents(
        bind("D", "measure", tr("Measure; the next kind of measure"), this, SLOT(Measure())),
        OnModel);
    setContents(bind("Shift+D", "measure-surface", tr("Measure area and volume"), this,
                     SLOT(MeasureSurface())),
                OnModel);
    copy_ = bind("Ctrl+C", "copy-measures", tr("Copy the measures as text"), this,
                 SLOT(CopyMeasurements()));
    remove_ = bind("Backspace", "remove-measure", tr("Remove the last measure"), this,
                   SLOT(RemoveLast()));
    removeToo_ =
        bind("Del", "delete-measure", tr("Remove the last measure"), this, SLOT(RemoveLast()));
    for (QAction *action : {copy_.data(), remove_.data(), removeToo_.data()})
        setContents(action, OnModel);
    // The whole program listens to this key; it asks the view.
    auto *leave = new QAction(tr("Stop measuring"), this);
    leave->setProperty("words", QStringLiteral("Esc"));
    setContents(leave, OnModel);
    hints_.append(leave);
    keysFollow();
    window_.widget()->installEventFilter(this);
}

const ModelItem *MeasureTool::model() const
{
    const Item *shown = under_.item();
    return shown ? shown->model() : nullptr;
}

/// Keys do something only where there is something to do it to.
void MeasureTool::keysFollow()
{
    const bool any = !all_.empty();
    for (QAction *action : {remove_.data(), removeToo_.data()})
        if (action)
            action->setEnabled(any || !picked_.empty());
    if (copy_)
        copy_->setEnabled(any);
    hints_.first()->setEnabled(isActive());
}

void MeasureTool::say(const QString &message)
{
    message_ = message;
    keysFollow();
    emit changed();
}

void MeasureTool::activate()
{
    active_ = true;
    picked_.clear();
    prepareAgain();
    say({});
}

void MeasureTool::choose(Kind kind)
{
    kind_ = kind;
    activate();
}

void MeasureTool::Measure()
{
    if (!model())
        return;
    choose(active_ ? Kind((int(kind_) + 1) % kinds().size()) : kind_);
}

bool MeasureTool::leave()
{
    const bool was = isActive();
    active_ = false;
    picked_.clear();
    say({});
    return was;
}

/// Whatever is known of another mesh is known no more.
void MeasureTool::sync()
{
    const ModelItem *shown = model();
    if (!shown || shown->sharedMesh() == mesh_)
        return;
    topology_.clear();
    looking_ = surfaceAsked_ = false;
    surfaces_.clear();
    mesh_ = shown->sharedMesh();
}

void MeasureTool::prepare()
{
    sync();
    if (!model() || topology_.isStarted())
        return;
    looking_ = true;
    topology_.start([mesh = mesh_](const std::atomic<bool> &cancelled) {
        return std::make_shared<const MeshTopology>(mesh, cancelled);
    });
}

/// A person asks for it: there may be memory now where there was none.
void MeasureTool::prepareAgain()
{
    if (topology_.lackedMemory() && !looking_)
        topology_.clear();
    prepare();
}

/// Null until it is found, and if there was no memory for it.
MeasureTool::TopologyPtr MeasureTool::topology() const
{
    const TopologyPtr *found = topology_.get();
    return found ? *found : nullptr;
}

void MeasureTool::advance()
{
    if (isActive())
        prepare();
    if (looking_ && !topology_.isBusy()) {
        looking_ = false;
        if (std::exchange(surfaceAsked_, false) && topology())
            startSurface();
        say(topology() ? message_ : tr("There is not enough memory to measure edges and volumes."));
    }
    while (!surfaces_.empty() && !surfaces_.front().found.isBusy()) {
        if (const SurfaceMeasures *found = surfaces_.front().found.get())
            add(Measurement::surface(*found, *mesh_, surfaces_.front().name));
        else
            say(tr("There is not enough memory to measure the volume."));
        surfaces_.pop_front();
    }
}

std::optional<Snap> MeasureTool::snapAt(const QPointF &pixel) const
{
    const SnapTo to = kind_ == Kind::FaceAngle ? SnapTo::Faces
                      : kind_ == Kind::Radius  ? SnapTo::Edges
                                               : SnapTo::All;
    return MeasureSight(*model(), under_.glw).snap(pixel, topology().get(), to);
}

bool MeasureTool::click(const QPointF &at)
{
    if (!isActive())
        return false;
    prepare();
    message_.clear();
    if (const auto snap = snapAt(at))
        take(*snap);
    keysFollow();
    emit changed();
    return true;
}

void MeasureTool::take(const Snap &snap)
{
    const Mesh &mesh = *mesh_;
    if (kind_ == Kind::Radius) {
        takeRadius(snap);
        return;
    }
    picked_.push_back(
        {placeInFile(mesh, snap.at), toFile(mesh.axes, normalOf(mesh, snap.triangle()))});
    const std::vector<Picked> &p = picked_;
    if (kind_ == Kind::Point)
        add(Measurement::point(p[0].at, mesh.unit));
    else if (kind_ == Kind::Distance && p.size() == 2)
        add(Measurement::distance(p[0].at, p[1].at, mesh.unit));
    else if (kind_ == Kind::FaceAngle && p.size() == 2)
        add(Measurement::faceAngle({p[0].at, p[0].normal}, {p[1].at, p[1].normal}, mesh.unit));
    else if (kind_ == Kind::PointAngle && p.size() == 3)
        add(Measurement::pointAngle(p[0].at, p[1].at, p[2].at));
}

void MeasureTool::takeRadius(const Snap &snap)
{
    const TopologyPtr topology = this->topology();
    if (!topology) {
        message_ = looking_ ? tr("The model is still looked through: click again in a moment.")
                            : tr("There is not enough memory to measure edges and volumes.");
        return;
    }
    auto circle = snap.kind == Snap::Kind::Edge ? roundEdge(*topology, snap.corner) : std::nullopt;
    if (!circle)
        circle = roundFace(*topology, snap.triangle(), snap.at);
    if (!circle) {
        message_ = tr("There is no circle: neither the edge nor the face is round.");
        return;
    }
    circle->centre = placeInFile(*mesh_, circle->centre);
    circle->normal = toFile(mesh_->axes, circle->normal);
    add(Measurement::radius(*circle, mesh_->unit));
}

void MeasureTool::add(const Measurement &measurement)
{
    all_.push_back(measurement);
    picked_.clear();
    say({});
}

void MeasureTool::MeasureSurface()
{
    if (!model())
        return;
    prepareAgain();
    message_.clear();
    if (topology())
        startSurface();
    else
        surfaceAsked_ = true;
    emit changed();
}

/// The parts that are selected, else those that are not hidden; empty: all.
std::vector<bool> MeasureTool::measuredParts(QString &name) const
{
    const PartMarks &marks = model()->marks();
    const auto &parts = model()->mesh().parts;
    std::vector<bool> wanted;
    name = tr("whole model");
    if (marks.selectedCount() > 0) {
        wanted = marks.selected();
        name = tr("%1 of %2 parts").arg(marks.selectedCount()).arg(parts.size());
        for (std::size_t i = 0; marks.selectedCount() == 1 && i < parts.size(); ++i)
            name = marks.isSelected(i) ? parts[i].name : name;
    } else if (marks.hiddenCount() > 0) {
        for (std::size_t i = 0; i < parts.size(); ++i)
            wanted.push_back(!marks.isHidden(i));
        name = tr("all that is shown");
    }
    return wanted;
}

void MeasureTool::startSurface()
{
    surfaces_.emplace_back();
    const std::vector<bool> parts = measuredParts(surfaces_.back().name);
    surfaces_.back().found.start(
        [topology = topology(), parts](const std::atomic<bool> &cancelled) {
            return measureSurface(*topology, parts, cancelled);
        });
}

void MeasureTool::RemoveLast()
{
    if (!picked_.empty())
        picked_.pop_back();
    else if (!all_.empty())
        all_.pop_back();
    say({});
}

void MeasureTool::itemChanged()
{
    const MeshPtr before = mesh_;
    sync();
    picked_.clear();
    const bool same = before && model() && mesh_->axes.of == before->axes.of &&
                      mesh_->positions == before->positions && mesh_->indices == before->indices;
    const bool lost = !all_.empty() && !same;
    if (lost)
        all_.clear();
    if (active_)
        prepare();
    say(lost ? tr("The measures are gone: the file's shape is another now.") : QString());
}

QString MeasureTool::hint() const
{
    if (!message_.isEmpty())
        return message_;
    if (surfaceAsked_ || !surfaces_.empty())
        return tr("Measuring…");
    if (!isActive())
        return {};
    const KindText now = kinds()[int(kind_)];
    return tr("%1: %2  ·  D: another kind, Esc: done")
        .arg(now.name, now.steps.value(int(picked_.size())));
}

void MeasureTool::paint(QPainter *painter, const QRectF &bounds) const
{
    if (!model() || all_.empty())
        return;
    painter->save();
    MeasurePaint(painter, *model(), under_.glw, under_.display().theme())
        .measurements(all_, bounds);
    painter->restore();
}

void MeasureTool::paintStep(QPainter *painter, const std::optional<QPointF> &pointer) const
{
    if (!isActive())
        return;
    painter->save();
    MeasurePaint paint(painter, *model(), under_.glw, under_.display().theme());
    std::vector<Vec> places;
    for (const Picked &p : picked_)
        places.push_back(p.at);
    paint.pending(places);
    if (const auto snap = pointer ? snapAt(*pointer) : std::nullopt)
        paint.snap(*snap);
    painter->restore();
}

/// What the pointer is on is marked anew as it moves.
bool MeasureTool::eventFilter(QObject *object, QEvent *event)
{
    if (isActive() && (event->type() == QEvent::MouseMove || event->type() == QEvent::Leave))
        emit changed();
    return QObject::eventFilter(object, event);
}

} // namespace host
