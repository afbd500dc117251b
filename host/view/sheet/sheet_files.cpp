// SPDX-License-Identifier: MIT
// How a sheet's tiles fill with files, and give their memory back.
#include "host/view/sheet/sheet_view.h"

#include <algorithm>

#include <QFileInfo>
#include <QLocale>

#include "host/item/content_item.h"

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
    refusedAgain_.setSingleShot(true);
    refusedAgain_.setInterval(200); // milliseconds
    connect(&refusedAgain_, &QTimer::timeout, this, &SheetView::makeRoom);
    connect(&queue_, &ReadQueue::started, this, [this](int job) {
        if (SheetEntry *entry = entryOfJob(job))
            entry->state = State::Reading;
    });
    connect(&queue_, &ReadQueue::progressed, this, [this](int job, double fraction) {
        if (SheetEntry *entry = entryOfJob(job))
            entry->fraction = fraction;
        changedSoon();
    });
    connect(&queue_, &ReadQueue::finished, this, [this](int job, const Content &content) {
        int id = 0;
        if (const SheetEntry *entry = entryOfJob(job, &id))
            show(id, itemOf(entry->name, content));
        jobs_.remove(job);
    });
    connect(&queue_, &ReadQueue::failed, this,
            [this](int job, const QString &reason, quint64 needed) {
                int id = 0;
                if (job == list_) {
                    list_ = 0;
                    notice_ = tr("%1: %2").arg(name_, reason);
                } else if (entryOfJob(job, &id))
                    fail(id, reason, needed);
                jobs_.remove(job);
                changedSoon();
                applyCounts();
            });
    connect(&queue_, &ReadQueue::listed, this, [this](int job, const FileListPtr &list) {
        if (job == list_)
            takeList(*list);
    });
}

/// Makes the tiles of files at once, and those of folders when these were looked through.
void SheetView::open(const QStringList &paths)
{
    const auto isFolder = [](const QString &path) { return QFileInfo(path).isDir(); };
    if (std::any_of(paths.begin(), paths.end(), isFolder))
        list_ = queue_.list(paths);
    else
        addTiles(paths);
}

void SheetView::takeList(const FileList &list)
{
    list_ = 0;
    QStringList notices;
    for (const QString &folder : list.empty)
        notices
            << tr("%1: there is nothing to show in this folder, or it cannot be read").arg(folder);
    for (const QString &folder : list.cut)
        notices << tr("%1: only a part is shown; the folder holds more").arg(folder);
    notice_ = notices.join('\n');
    addTiles(list.files);
    emit filesFound(list.files);
    emit titleChanged();
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

/// 0 if there is none.
int SheetView::idOf(const QString &path) const
{
    const auto found = std::find_if(entries_.begin(), entries_.end(),
                                    [&](const auto &each) { return each.second.path == path; });
    return found == entries_.end() ? 0 : found->first;
}

/// Puts the file in the queue; those in view come first.
void SheetView::read(int id)
{
    SheetEntry &entry = entries_.at(id);
    entry.state = State::Waiting;
    entry.fraction = 0;
    entry.needed = 0;
    entry.job = queue_.add(entry.path, entry.visible ? ReadQueue::InView : ReadQueue::Background);
    jobs_[entry.job] = id;
}

/// What is shown stays until the new is there.
void SheetView::readAgain(const QString &path)
{
    for (auto &[id, entry] : entries_) {
        const bool unread =
            entry.state == State::Released || (entry.state == State::Waiting && entry.job == 0);
        if ((!path.isEmpty() && entry.path != path) || unread)
            continue;
        if (Item *shown = item(tiles_.value(id)))
            entry.left = shown->state(tiles_.value(id));
        queue_.cancel(entry.job);
        jobs_.remove(entry.job);
        read(id);
    }
}

void SheetView::fail(int id, const QString &reason, quint64 needed)
{
    SheetEntry &entry = entries_.at(id);
    entry.state = State::Failed;
    entry.reason = reason;
    entry.needed = needed;
    entry.job = 0;
    if (needed > 0)
        refusedAgain_.start();
    changedSoon();
}

void SheetView::show(int id, const std::shared_ptr<Item> &made)
{
    SheetEntry &entry = entries_.at(id);
    entry.job = 0;
    entry.count = made->count();
    const bool wanted = tile(id) != nullptr;
    entry.state = wanted ? State::Shown : State::Released;
    if (wanted)
        take(id, made);
    applyCounts();
}

/// Gives an item to its tile, if there is room for it.
void SheetView::take(int id, const std::shared_ptr<Item> &made)
{
    SheetEntry &entry = entries_.at(id);
    GLW *glw = tileFor(id);
    made->setTitled(false); // the header names the file
    setItem(glw, made);
    if (entry.left) {
        made->restore(glw, *entry.left);
        entry.left.reset();
    }
    if (entry.goesHome)
        made->steering().home(glw);
    else if (entry.fits)
        made->steering().fit(glw);
    entry.goesHome = entry.fits = false;
    held_ += bytesOf(id); // at most so much: all are counted only where it matters
    if (held_ > budget_ / 2 && makeRoom() > budget_) {
        const quint64 needed = bytesOf(id);
        setItem(glw, nullptr);
        countHeld();
        fail(id,
             tr("there is no memory left for it: all tiles in view together may take %1")
                 .arg(QLocale().formattedDataSize(qint64(budget_))),
             needed);
        return;
    }
    changedSoon();
}

quint64 SheetView::bytesOf(int id) const
{
    const Item *shown = item(tiles_.value(id));
    return shown ? shown->byteSize() : 0;
}

void SheetView::countHeld()
{
    held_ = 0;
    for (auto it = tiles_.cbegin(); it != tiles_.cend(); ++it)
        held_ += bytesOf(it.key());
}

/// Returns the bytes that the items hold afterwards.
quint64 SheetView::makeRoom()
{
    // What a reader still holds is the queue's to bound; the rest is left to the items.
    queue_.setMemoryLimit(budget_);
    countHeld();
    if (held_ > budget_ / 2) {
        const auto bytes = [this](int each) { return bytesOf(each); };
        for (int id : idsToRelease(entries_, budget_ / 2, bytes))
            release(id);
        countHeld();
    }
    readRefused(held_);
    return held_;
}

/// Reads again what there was no room for, as far as there is now; @p held bytes are taken.
void SheetView::readRefused(quint64 held)
{
    for (int id : qAsConst(inView_)) {
        const SheetEntry &entry = entries_.at(id);
        if (entry.needed == 0 || held + entry.needed > budget_)
            continue;
        if (queue_.memoryInUse() + entry.needed > budget_) {
            refusedAgain_.start(); // threads still work on what was given back, or readers
            return;
        }
        held += entry.needed;
        read(id);
    }
}

/// Gives back the memory of an item until its tile is looked at again.
void SheetView::release(int id)
{
    SheetEntry &entry = entries_.at(id);
    GLW *glw = tiles_.value(id);
    entry.left = item(glw)->state(glw);
    entry.state = State::Released;
    entry.fraction = 0;
    setItem(glw, nullptr);
}

} // namespace host
