// SPDX-License-Identifier: MIT
// A sheet's tiles, and how they fill.
#include "host/view/sheet/sheet_view.h"

#include <algorithm>

#include <QLocale>
#include <QPainter>

#include "host/item/model_item.h"
#include "host/ui/metrics.h"
#include "host/view/window/panel.h"
#include "host/view/window/window.h"

namespace host {

SheetView::SheetView(Window &window, const QString &name, const QStringList &paths,
                     const QString &fault)
    : View(window, "GLMultiWidget", false), name_(name), fault_(fault), entries_(makeEntries(paths))
{
    scene()->setProperty("header", TilePainter::header());
    scene()->setProperty("spacing", qRound(Metrics::px(4)));
    connect(scene(), SIGNAL(ValueChanged(QList<int>)), this, SLOT(SelectionChanged()));
    connect(scene(), SIGNAL(VisibleCountChanged(int)), this, SLOT(VisibilityChanged()));
    connect(&controls(), &Controls::pressed, this, [this](GLW *glw) { passOn(glw, true); });
    controls().setPeers([this](GLW *glw) { return peersOf(glw); });
    bindKeys();
    wire();
    connectQueue();
    addTiles();
}

SheetView::~SheetView()
{
    queue_.cancelAll();
}

quint64 SheetView::memoryBudget()
{
    return std::min<quint64>(quint64(2) << 30, physicalMemory() / 4);
}

void SheetView::setMemoryBudget(quint64 bytes)
{
    budget_ = bytes;
    makeRoom();
}

void SheetView::addTiles()
{
    for (auto &[id, entry] : entries_) {
        QObject *made = nullptr;
        QMetaObject::invokeMethod(scene(), "AddTile", Q_RETURN_ARG(QObject *, made),
                                  Q_ARG(uint, uint(id)));
        auto *glw = static_cast<GLW *>(made);
        glw->setProperty("sizeHint", QSize(4, 3));
        tiles_[id] = glw;
        read(id);
    }
    sortBy(SheetOrder::Name);
}

void SheetView::connectQueue()
{
    queue_.setMemoryLimit(budget_);
    connect(&queue_, &ReadQueue::started, this, [this](int job) {
        if (SheetEntry *entry = entryOfJob(job))
            entry->state = State::Reading;
    });
    connect(&queue_, &ReadQueue::progressed, this, [this](int job, double fraction) {
        if (SheetEntry *entry = entryOfJob(job))
            entry->fraction = fraction;
        changedSoon();
    });
    connect(&queue_, &ReadQueue::finished, this, [this](int job, const MeshPtr &mesh) {
        int id = 0;
        if (const SheetEntry *entry = entryOfJob(job, &id))
            show(id, std::make_shared<ModelItem>(entry->name, mesh));
        jobs_.remove(job);
    });
    connect(&queue_, &ReadQueue::failed, this, [this](int job, const QString &reason) {
        int id = 0;
        if (entryOfJob(job, &id))
            fail(id, reason);
        jobs_.remove(job);
    });
    connect(&tableReader_, &FileReader::finished, this, [this](const std::shared_ptr<Item> &made) {
        show(table_, made);
        readNextTable();
    });
    connect(&tableReader_, &FileReader::failed, this, [this](const QString &message) {
        fail(table_, message);
        readNextTable();
    });
}

SheetEntry *SheetView::entryOf(const GLW *glw)
{
    const auto found = entries_.find(glw->id());
    return found == entries_.end() ? nullptr : &found->second;
}

SheetEntry *SheetView::entryOfJob(int job, int *id)
{
    const auto found = entries_.find(jobs_.value(job, 0));
    if (found == entries_.end())
        return nullptr;
    if (id)
        *id = found->first;
    return &found->second;
}

/// Puts the file in the queue; those in view come first.
void SheetView::read(int id)
{
    SheetEntry &entry = entries_.at(id);
    entry.state = State::Waiting;
    entry.fraction = 0;
    if (isTable(entry.path)) {
        tables_.append(id);
        if (table_ == 0)
            readNextTable();
        return;
    }
    const int job = queue_.add(entry.path, entry.visible ? 1 : 0);
    if (job != 0)
        jobs_[job] = id;
}

/// Tables are read one at a time, in a thread.
void SheetView::readNextTable()
{
    table_ = 0;
    while (table_ == 0 && !tables_.isEmpty()) {
        const int id = tables_.takeFirst();
        if (entries_.count(id))
            table_ = id;
    }
    if (table_)
        tableReader_.start(entries_.at(table_).path);
}

void SheetView::fail(int id, const QString &reason)
{
    const auto found = entries_.find(id);
    if (found == entries_.end())
        return;
    found->second.state = State::Failed;
    found->second.reason = reason;
    changedSoon();
}

void SheetView::show(int id, const std::shared_ptr<Item> &made)
{
    const auto found = entries_.find(id);
    if (found == entries_.end())
        return;
    SheetEntry &entry = found->second;
    entry.state = State::Shown;
    entry.count = made->count();
    GLW *glw = tiles_.value(id);
    made->setTitled(false); // the header names the file
    setItem(glw, made);
    if (entry.camera) {
        item(glw)->steering().restore(glw, *entry.camera);
        entry.camera.reset();
    }
    if (makeRoom() > budget_) {
        setItem(glw, nullptr);
        fail(id, tr("there is no memory left for it: all tiles in view together may take %1")
                     .arg(QLocale().formattedDataSize(qint64(budget_))));
        return;
    }
    changedSoon();
    if (order_ == SheetOrder::Count && queue_.isIdle())
        applyOrder();
}

quint64 SheetView::bytesOf(int id) const
{
    const Item *shown = item(tiles_.value(id));
    return shown ? shown->byteSize() : 0;
}

/// Returns the bytes that the items hold afterwards.
quint64 SheetView::makeRoom()
{
    // What a reader still holds is the queue's to bound; the rest is left to the items.
    queue_.setMemoryLimit(budget_);
    for (int id : idsToRelease(entries_, budget_ / 2, [this](int each) { return bytesOf(each); }))
        release(id);
    quint64 held = 0;
    for (const auto &[id, entry] : entries_)
        held += bytesOf(id);
    return held;
}

/// Gives back the memory of an item until its tile is looked at again.
void SheetView::release(int id)
{
    SheetEntry &entry = entries_.at(id);
    GLW *glw = tiles_.value(id);
    entry.camera = glw->camera;
    entry.state = State::Released;
    entry.fraction = 0;
    setItem(glw, nullptr);
}

void SheetView::Update(GLW *glw)
{
    SheetEntry *entry = entryOf(glw);
    if (!entry)
        return;
    entry->lastSeen = ++passes_;
    if (!entry->visible) {
        entry->visible = true;
        if (const int job = queue_.id(entry->path))
            queue_.setPriority(job, 1);
    }
    if (entry->state == State::Released)
        read(glw->id());
    hover(glw);
    advance(glw);
}

void SheetView::DrawBG(GLW *)
{
    drawGround();
}

/// What shows between the tiles.
void SheetView::drawGround() const
{
    drawPlain(display().dark ? display().theme().bottom : display().theme().top);
}

void SheetView::fillPicture(PictureContents &contents)
{
    contents.addGround(mainGLW(), window().widget()->rect(), [this] { drawGround(); });
    for (const auto &[id, entry] : entries_)
        if (entry.visible)
            contents.addItem(tiles_.value(id), item(tiles_.value(id)));
    addTextTo(contents);
}

/// Notes whether the pointer is over the tile.
void SheetView::hover(const GLW *glw)
{
    const GLWindow *widget = window().widget();
    const QPointF pointer(widget->mouse.x, widget->height() - widget->mouse.y);
    const bool over = widget->underMouse() && glw->orect.contains(pointer);
    if (over == (hovered_ == glw->id()))
        return;
    // Only the tile under the pointer is picked, so the one before would go on showing its mark.
    if (GLW *before = tiles_.value(hovered_))
        forgetPointer(before);
    hovered_ = over ? glw->id() : -1;
    changed();
}

/// The module tells of tiles shown in its passes; of those hidden it tells the count alone.
void SheetView::VisibilityChanged()
{
    for (auto &[id, entry] : entries_) {
        const bool visible = tiles_.value(id)->property<bool>("visible");
        if (entry.visible == visible)
            continue;
        entry.visible = visible;
        if (const int job = queue_.id(entry.path))
            queue_.setPriority(job, visible ? 1 : 0);
    }
    changed();
}

bool SheetView::isSettled() const
{
    if (entries_.empty())
        return false;
    for (const auto &[id, entry] : entries_) {
        if (entry.visible && entry.state != State::Failed && !item(tiles_.value(id)))
            return false;
    }
    return true;
}

QString SheetView::title() const
{
    return tr("%1 files").arg(entries_.size()) + QStringLiteral(" – ") + name_;
}

QString SheetView::progress() const
{
    if (queue_.isIdle())
        return {};
    const QString failures =
        queue_.failures() ? tr("  ·  %1 cannot be read").arg(queue_.failures()) : QString();
    return tr("Reading %1 of %2").arg(queue_.done() + queue_.failures()).arg(queue_.total()) +
           failures;
}

void SheetView::paintText(GLW *, QPainter *painter)
{
    const Theme &theme = display().theme();
    const QRectF bounds = window().widget()->rect();
    if (entries_.empty()) {
        paintMessage(painter, bounds, fault_.isEmpty() ? tr("The sheet is empty.") : fault_,
                     tr("Drop files or a folder here or press Ctrl+O."), -1, theme);
        return;
    }
    for (const auto &[id, entry] : entries_) {
        if (!entry.visible)
            continue;
        const GLW *glw = tiles_.value(id);
        painter_.paint(painter, id, entry, glw->orect,
                       {glw->property<bool>("selected"), hovered_ == id, linked_.contains(id)},
                       theme);
    }
    QString note = progress();
    if (note.isEmpty() && hovered_ > 0)
        if (const Item *shown = item(tiles_.value(hovered_)))
            note = shown->underPointer();
    paintNote(painter, bounds, Qt::AlignBottom | Qt::AlignLeft, {}, note, theme);
}

} // namespace host
