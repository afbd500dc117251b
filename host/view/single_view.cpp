// SPDX-License-Identifier: MIT
#include "host/view/single_view.h"

#include <QFileInfo>
#include <QPainter>

#include "host/item/content_item.h"
#include "host/read/file_kind.h"
#include "host/view/overlay/scale_bar.h"
#include "host/view/overlay/triad.h"
#include "host/view/window/binding.h"
#include "host/view/window/panel.h"
#include "host/view/window/window.h"

namespace host {

SingleView::SingleView(Window &window, ReadQueue &queue, const QString &path)
    : View(window, "GLWidget", true), path_(path), queue_(queue)
{
    wire();
    if (path_.isEmpty())
        return;
    addOverlays();
    bindKey(scene(), "PgDown", "next-file", tr("Next file in the folder"), this, SLOT(OpenNext()));
    bindKey(scene(), "PgUp", "previous-file", tr("File before it"), this, SLOT(OpenPrevious()));
    // Over an overlay the pointer is on another object, and still the keys mean the main one.
    for (const auto &overlay : overlays_)
        overlay->shareKeys();
    controls().setPeers([this](GLW *) { return QList<GLW *>{glw()}; });
    connectQueue();
    job_ = queue_.add(path_, ReadQueue::Opened);
    list_ = queue_.listNeighbours(path_);
}

SingleView::~SingleView()
{
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
    auto triad = std::make_unique<Triad>(under, window());
    connect(triad.get(), &Triad::sideChosen, this, &View::lookFrom);
    overlays_.push_back(std::move(triad));
    overlays_.push_back(std::make_unique<ScaleBar>(under, window()));
    auto neighbours = std::make_unique<Neighbours>(under, window(), path_);
    neighbours_ = neighbours.get();
    connect(neighbours_, &Neighbours::chosen, this, &SingleView::fileChosen);
    overlays_.push_back(std::move(neighbours));
}

void SingleView::openNeighbour(int step)
{
    const QString path = neighbours_->next(step);
    if (!path.isEmpty())
        emit fileChosen(path);
}

QString SingleView::title() const
{
    return QFileInfo(path_).fileName();
}

bool SingleView::isSettled() const
{
    return item(glw());
}

void SingleView::show(const std::shared_ptr<Item> &item)
{
    const auto before = camera(); // of the same file, read earlier
    fault_.clear();
    setItem(glw(), item);
    if (before)
        item->steering().restore(glw(), *before);
    changed();
}

/// What is shown stays until the new is there, or for good if that cannot be read.
void SingleView::readAgain(const QString &)
{
    if (path_.isEmpty())
        return;
    queue_.cancel(job_);
    job_ = queue_.add(path_, ReadQueue::Opened);
}

void SingleView::fillPicture(PictureContents &contents)
{
    View::fillPicture(contents);
    for (const auto &overlay : overlays_)
        if (overlay->belongsInPicture())
            contents.add(overlay->pictured());
}

void SingleView::clicked(GLW *clicked)
{
    if (Item *shown = item(clicked))
        shown->clearSelection();
}

void SingleView::paintText(GLW *, QPainter *painter)
{
    const Theme &theme = display().theme();
    const QRectF bounds = window().widget()->rect();
    if (const Item *shown = item(glw())) {
        if (!shown->paintsTitle())
            paintNote(painter, bounds, Qt::AlignTop | Qt::AlignLeft, shown->name(),
                      shown->details(), theme);
        // Beside the triad, which has the corner, and above the strip of neighbours.
        const QRectF free =
            bounds.adjusted(Triad::size() + Triad::margin(), 0, 0, -bounds.height() * 0.06);
        paintNote(painter, free, Qt::AlignBottom | Qt::AlignLeft, {},
                  fault_.isEmpty() ? shown->underPointer() : fault_, theme);
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
