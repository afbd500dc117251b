// SPDX-License-Identifier: MIT
#include "host/view/single_view.h"

#include <algorithm>

#include <QFileInfo>
#include <QPainter>

#include "host/item/content_item.h"
#include "host/read/file_kind.h"
#include "host/ui/metrics.h"
#include "host/view/overlay/player.h"
#include "host/view/overlay/scale_bar.h"
#include "host/view/side/parts_panel.h"
#include "host/view/window/binding.h"
#include "host/view/window/menu_tree.h"
#include "host/view/window/panel.h"
#include "host/view/window/window.h"

namespace host {

SingleView::SingleView(Window &window, ReadQueue &queue, const QString &path,
                       const std::shared_ptr<Item> &item)
    : View(window, "GLWidget", true), path_(path), queue_(queue)
{
    wire();
    if (path_.isEmpty())
        return;
    addOverlays();
    bindViewKey("PgDown", "next-file", tr("Next file in the folder"), this, SLOT(OpenNext()));
    bindViewKey("PgUp", "previous-file", tr("File before it"), this, SLOT(OpenPrevious()));
    bindParts();
    setContents(
        bindViewKey("Space", "play", tr("Play the animation, or stop it"), this, SLOT(Play())),
        OnAnimated);
    controls().setPeers([this](GLW *) { return QList<GLW *>{glw()}; });
    connectQueue();
    list_ = queue_.listNeighbours(path_);
    if (!item) {
        job_ = queue_.add(path_, ReadQueue::Opened);
        return;
    }
    item->setTitled(true);
    show(item);
}

SingleView::~SingleView()
{
    delete parts_;
    if (SideFrame *frame = window().frame())
        frame->setContent(nullptr);
    queue_.disconnect(this); // cancelling tells of totals
    queue_.cancel(job_);
    queue_.cancel(list_);
}

void SingleView::connectQueue()
{
    connect(&queue_, &ReadQueue::progressed, this,
            [this](int job, double fraction, const QString &stage) {
                if (job != job_)
                    return;
                fraction_ = fraction;
                stage_ = stage;
                changedSoon();
            });
    connect(&queue_, &ReadQueue::finished, this, [this](int job, const Content &content) {
        if (job == job_)
            show(itemOf(title(), content));
    });
    connect(&queue_, &ReadQueue::failed, this, [this](int job, const QString &reason) {
        if (job != job_)
            return;
        fault_ = readFailure(path_, reason);
        changed();
    });
    connect(&queue_, &ReadQueue::listed, this, [this](int job, const FileListPtr &list) {
        if (job != list_)
            return;
        neighbours_->setFiles(list->files);
        changed();
    });
}

void SingleView::addOverlays()
{
    const Underlay under{glw(), [this] { return item(glw()); },
                         [this]() -> const Display & { return display(); }};
    handles_ = std::make_unique<SectionHandles>(under, window()); // behind the others
    connect(handles_.get(), &SectionHandles::changed, this, [this] { changed(); });
    const auto cut = [this] {
        forgetPointer(glw());
        changed();
    };
    section_ = std::make_unique<SectionTool>(
        SectionTool::Subject{glw(), [this] { return item(glw()); }, cut}, *handles_);
    auto triad = std::make_unique<Triad>(under, window());
    triad_ = triad.get();
    connect(triad.get(), &Triad::sideChosen, this, &View::lookFrom);
    overlays_.push_back(std::move(triad));
    overlays_.push_back(std::make_unique<ScaleBar>(under, window()));
    auto neighbours = std::make_unique<Neighbours>(under, window(), path_);
    neighbours_ = neighbours.get();
    connect(neighbours_, &Neighbours::chosen, this, &SingleView::fileChosen);
    overlays_.push_back(std::move(neighbours));
    auto player = std::make_unique<Player>(under, window(), [this] { return playback(); });
    connect(player.get(), &Player::changed, this, [this] { changed(); });
    overlays_.push_back(std::move(player));
    measure_ = std::make_unique<MeasureTool>(
        under, window(),
        [this](const char *key, const char *name, const QString &text, QObject *receiver,
               const char *slot) { return bindViewKey(key, name, text, receiver, slot); });
    connect(measure_.get(), &MeasureTool::changed, this, [this] { changed(); });
}

bool SingleView::toolClicked(GLW *, const QPointF &at)
{
    return measure_ && measure_->click(at);
}

bool SingleView::leaveTool()
{
    return measure_ && measure_->leave();
}

Playback *SingleView::playback() const
{
    Item *shown = item(glw());
    return shown ? shown->playback() : nullptr;
}

void SingleView::Play()
{
    Playback *shown = playback();
    if (!shown)
        return;
    shown->setPlaying(!shown->isPlaying());
    changed();
}

void SingleView::fillPlayMenu(MenuTree *tree)
{
    Playback *shown = playback();
    if (!shown)
        return;
    MenuTree *clips = tree->addMenu(tr("Animation"));
    clips->addCheck(tr("Play"), "Space", shown->isPlaying(), this, [this] { Play(); });
    clips->addSeparator();
    const auto add = [&](const QString &name, int clip) {
        clips->addCheck(name, {}, shown->clip() == clip, this, [this, clip] {
            if (Playback *later = playback(); later && clip < int(later->clips().size()))
                later->setClip(clip);
            changed();
        });
    };
    add(tr("None: as the file has it"), -1);
    for (std::size_t i = 0; i < shown->clips().size(); ++i)
        add(shown->clips()[i].name, int(i));
}

void SingleView::openNeighbour(int step)
{
    const QString path = neighbours_->next(step);
    if (!path.isEmpty())
        emit fileChosen(path);
}

QList<QAction *> SingleView::bindings() const
{
    QList<QAction *> all = View::bindings();
    for (const auto &overlay : overlays_)
        all = overlay->actions() + all;
    if (measure_)
        all = measure_->hints() + all;
    if (handles_)
        all = handles_->actions() + all;
    return all;
}

/// Whether a window of this size has room for the name over what is shown.
bool SingleView::hasHeading() const
{
    const Item *shown = item(glw());
    return display().overlays && shown && !shown->paintsTitle() &&
           window().widget()->width() >= Metrics::px(200) &&
           window().widget()->height() >= Metrics::px(150);
}

/// Where labels cover no other text.
QRectF SingleView::labelBounds() const
{
    const QFont font = window().widget()->font();
    const double margin = Metrics::px(8);
    return QRectF(window().widget()->rect())
        .adjusted(margin, hasHeading() ? noteHeight(font, 2) + margin : margin, -margin,
                  -lowerRoom() - noteHeight(font, 1) - margin);
}

/// What the strip of neighbours and the scale bar take of the height, at the lower edge.
double SingleView::lowerRoom() const
{
    double room = 0;
    // For the strip even before it is known whether there are other files: nothing jumps then.
    for (const auto &overlay : overlays_)
        if (overlay.get() != triad_ &&
            (overlay.get() == neighbours_ ? overlay->hasRoom() : overlay->isThere()))
            room = std::max(room, window().widget()->height() - overlay->bounds().top());
    return room;
}

/// The axes stand in a corner: room for them is made on the side where that takes less.
QMarginsF SingleView::covered(GLW *) const
{
    const QSizeF size = window().widget()->size();
    QMarginsF edges(0, 0, 0, lowerRoom());
    if (hasHeading())
        edges.setTop(noteHeight(window().widget()->font(), 2));
    if (!triad_ || !triad_->isThere())
        return edges;
    const QRectF corner = triad_->bounds();
    const double height = size.height() - edges.top() - edges.bottom();
    const double above = size.height() - corner.top();
    if (corner.right() * height < (above - edges.bottom()) * size.width())
        edges.setLeft(corner.right());
    else
        edges.setBottom(above);
    return edges;
}

QString SingleView::title() const
{
    return QFileInfo(path_).fileName();
}

bool SingleView::isSettled() const
{
    const Item *shown = item(glw());
    return shown && shown->isWhole();
}

void SingleView::show(const std::shared_ptr<Item> &item)
{
    std::optional<ItemState> before;
    if (Item *shown = View::item(glw())) // of the same file, read earlier
        before = shown->state(glw());
    fault_.clear();
    setItem(glw(), item);
    if (before)
        item->restore(glw(), *before);
    if (measure_)
        measure_->itemChanged();
    listParts();
    changed();
}

/// What is shown stays until the new is there, or for good if that cannot be read.
void SingleView::readAgain(const QString &path)
{
    if (path_.isEmpty() || !(path.isEmpty() || path == QFileInfo(path_).absoluteFilePath()))
        return;
    queue_.cancel(job_);
    job_ = queue_.add(path_, ReadQueue::Opened);
}

void SingleView::fillPicture(PictureContents &contents)
{
    View::fillPicture(contents);
    for (const auto &overlay : overlays_)
        if (picturesOverlays() && overlay->belongsInPicture())
            contents.add(overlay->pictured());
}

void SingleView::paintMeasures(QPainter *painter)
{
    if (display().overlays)
        measure_->paint(painter, labelBounds());
    if (paintsPicture())
        return;
    measure_->advance();
    measure_->paintStep(painter, hoverPointer(glw()));
    if (measure_->isBusy())
        changedSoon();
}

void SingleView::paintText(GLW *, QPainter *painter)
{
    const Theme &theme = display().theme();
    const QRectF bounds = window().widget()->rect();
    if (const Item *shown = item(glw())) {
        if (measure_)
            paintMeasures(painter);
        if (hasHeading())
            paintNote(painter, bounds, Qt::AlignTop | Qt::AlignLeft, shown->name(),
                      shown->details(), theme);
        // Beside the axes, which have the corner, and above the other overlays.
        const double left = triad_ && triad_->isThere() ? triad_->bounds().right() : 0;
        const QString hint = measure_ && !paintsPicture() ? measure_->hint() : QString();
        const QString under = hint.isEmpty() && display().hover ? shown->underPointer() : hint;
        if (hasHeading() || !fault_.isEmpty())
            paintNote(painter, bounds.adjusted(left, 0, 0, -lowerRoom()),
                      Qt::AlignBottom | Qt::AlignLeft, {}, fault_.isEmpty() ? under : fault_,
                      theme);
    } else if (!fault_.isEmpty()) {
        paintMessage(painter, bounds, fault_, tr("Drop another file here or press Ctrl+O."), -1,
                     theme);
    } else if (path_.isEmpty()) {
        paintMessage(painter, bounds, tr("Drop a model here or press Ctrl+O."),
                     tr("F1 lists the controls."), -1, theme);
    } else {
        paintMessage(painter, bounds, tr("Reading %1").arg(title()), stage_, fraction_, theme);
    }
}

} // namespace host
