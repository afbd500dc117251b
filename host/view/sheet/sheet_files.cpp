// SPDX-License-Identifier: MIT
// How a sheet's tiles fill with files, and give their memory back.
#include "host/view/sheet/sheet_view.h"

#include <algorithm>

#include <QLocale>

#include "host/item/model_item.h"

namespace host {

quint64 SheetView::memoryBudget()
{
    return std::min<quint64>(quint64(2) << 30, physicalMemory() / 4);
}

void SheetView::setMemoryBudget(quint64 bytes)
{
    budget_ = bytes;
    makeRoom();
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

/// What is shown stays until the new is there.
void SheetView::readAgain(const QString &path)
{
    for (auto &[id, entry] : entries_) {
        if ((!path.isEmpty() && entry.path != path) || entry.state == State::Released)
            continue;
        if (const Item *shown = item(tiles_.value(id)); shown && shown->isSpatial())
            entry.camera = tiles_.value(id)->camera;
        if (const int job = queue_.id(entry.path)) {
            queue_.cancel(job);
            jobs_.remove(job);
        }
        if (!tables_.contains(id))
            read(id);
    }
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

} // namespace host
