// SPDX-License-Identifier: MIT
// What a person does to a sheet and to its tiles.
#include <algorithm>

#include <QVariant>

#include "host/view/sheet/sheet_view.h"
#include "host/view/window/binding.h"
#include "host/view/window/menu_tree.h"
#include "host/view/window/window.h"

namespace host {

void SheetView::bindKeys()
{
    struct Key {
        const char *keys; // with blanks between: several keys for the same
        const char *name;
        QString text;
        QObject *receiver;
        const char *slot;
    };
    const Key all[] = {
        {"Ctrl+A", "select-all", tr("Select all, or none"), this, SLOT(SelectAll())},
        {"V", "only-selected", tr("Only the selected, or all"), this, SLOT(ToggleShown())},
        {"L", "link", tr("Link cameras"), this, SLOT(ToggleLink())},
        {"N", "sort-name", tr("Sort by name"), this, SLOT(SortByName())},
        {"S", "sort-size", tr("Sort by file size"), this, SLOT(SortBySize())},
        {"C", "sort-count", tr("Sort by triangles or rows"), this, SLOT(SortByCount())},
        {"+ =", "wider", tr("More space between tiles"), this, SLOT(WiderSpacing())},
        {"-", "narrower", tr("Less space"), this, SLOT(NarrowerSpacing())},
        {"D", "compare", tr("Compare the two that are selected"), this, SLOT(CompareSelected())},
        {"Shift+Home", "reset-all", tr("All cameras back to the first view"), this,
         SLOT(ResetAll())},
    };
    for (const Key &key : all) {
        const QStringList keys = QString(key.keys).split(' ');
        for (int i = 0; i < keys.size(); ++i) {
            // Further keys for the same thing are not listed.
            const QByteArray name = key.name + (i ? QByteArray::number(i) : QByteArray());
            bindViewKey(keys[i], name, i ? QString() : key.text, key.receiver, key.slot);
        }
    }
    // In the place of the module's, which hides all other tiles.
    QMetaObject::invokeMethod(scene(), "DeleteAction",
                              Q_ARG(const char *, "scene_leftdoublemouse"));
    bindMouse(scene(), LeftButton | DoubleClick, 0, "open-tile", tr("Open alone"), this,
              SLOT(OpenTile(GLW *, bool)));
    // The module's other bindings, which have no texts of their own.
    const std::pair<const char *, QString> named[] = {
        {"leftmouse", tr("Select")}, {"ctrlleftmouse", tr("Add to the selection, or take away")}};
    const QList<QAction *> actions = static_cast<GLW *>(scene())->actions();
    for (QAction *action : actions) {
        for (const auto &[name, text] : named) {
            if (action->objectName().section('_', 1) == QLatin1String(name)) {
                action->setText(text);
                action->setProperty("verb", QString());
            }
        }
    }
}

void SheetView::ToggleLink()
{
    const QList<int> chosen = selected();
    const bool few = chosen.size() < 2;
    QSet<int> wanted;
    for (const auto &[id, entry] : entries_)
        if (few || chosen.contains(id))
            wanted.insert(id);
    linked_ = linked_ == wanted || (few && !linked_.isEmpty()) ? QSet<int>() : wanted;
    leader_ = -1;
    pose_.reset();
    changed();
}

/// The linked cameras take the pose of the one that a hand moved last, each when it is in view.
void SheetView::followLeader(GLW *glw)
{
    if (leader_ < 0 || !linked_.contains(glw->id()) || !isSpatial(glw))
        return;
    const GL::Camera &own = glw->camera;
    if (pose_ && own.rot == pose_->rot && own.setTarget == pose_->setTarget &&
        own.radius == pose_->radius && own.ortho == pose_->ortho)
        return;
    if (glw->id() == leader_)
        pose_ = own;
    else if (pose_)
        item(glw)->steering().restore(glw, *pose_);
    changed(); // those that come before the leader follow in the next frame
}

bool SheetView::isSpatial(GLW *glw) const
{
    const Item *shown = item(glw);
    return shown && shown->isSpatial();
}

bool SheetView::isLinked(int id) const
{
    return linked_.contains(id) && isSpatial(tile(id));
}

void SheetView::ResetAll()
{
    leader_ = -1; // each goes its own way home
    pose_.reset();
    for (auto &[id, entry] : entries_) {
        entry.goesHome = entry.left.has_value();
        entry.fits = false;
        if (Item *shown = item(tile(id)))
            shown->steering().home(tile(id));
    }
    changed();
}

/// Those without an item are fitted when they have one.
void SheetView::fit(const QList<int> &ids)
{
    leader_ = -1;
    pose_.reset();
    for (int id : ids) {
        entries_.at(id).fits = entries_.at(id).left.has_value();
        if (Item *shown = item(tile(id)))
            shown->steering().fit(tile(id));
    }
    changed();
}

void SheetView::remove(const QList<int> &ids)
{
    for (int id : ids) {
        const int job = entries_.at(id).job;
        queue_.cancel(job);
        jobs_.remove(job);
        if (tile(id))
            dropTile(id);
        entries_.erase(id);
        linked_.remove(id);
        selected_.remove(id);
        inView_.removeOne(id);
    }
    hovered_ = -1;
    const auto gone = [this](int id) { return entries_.count(id) == 0; };
    inOrder_.erase(std::remove_if(inOrder_.begin(), inOrder_.end(), gone), inOrder_.end());
    listShown();
    applyCounts();
    emit titleChanged();
}

/// All of it, though it may be in view only in part.
void SheetView::pictureOf(int id)
{
    if (!grid_.fits())
        scrollTo(grid_.revealing(index_.value(id), scroll_.offset()));
    emit pictureAsked(entries_.at(id).name, tile(id)->orect.toAlignedRect());
}

void SheetView::fillMenu(GLW *glw, MenuTree *tree)
{
    const auto found = entries_.find(glw->id());
    if (found != entries_.end()) {
        const QList<int> targets = targetsOf(glw);
        const QString what = targets.size() > 1 ? tr("%1 tiles").arg(targets.size()) : tr("tile");
        const QString path = found->second.path;
        tree->add(tr("Open alone"), {}, this, [this, path] { emit openAsked(path); });
        addCompareEntry(tree);
        tree->add(tr("Fit %1").arg(what), {}, this, [this, targets] { fit(targets); });
        tree->add(tr("Hide %1").arg(what), {}, this, [this, targets] { hide(targets); });
        tree->add(tr("Remove %1 from the sheet").arg(what), {}, this,
                  [this, targets] { remove(targets); });
        const int id = found->first;
        tree->add(tr("Picture of this tile…"), {}, this, [this, id] { pictureOf(id); });
        tree->addSeparator();
    }
    tree->add(tr("Select all, or none"), "Ctrl+A", this, [this] { SelectAll(); });
    tree->add(tr("Only the selected, or all"), "V", this, [this] { ToggleShown(); });
    tree->add(tr("Find tiles by name"), "Ctrl+F", this, [this] { Find(); });
    tree->add(tr("Larger tiles"), "Z", this, [this] { LargerTiles(); });
    tree->add(tr("Smaller tiles"), "Shift+Z", this, [this] { SmallerTiles(); });
    tree->addCheck(tr("Link cameras"), "L", !linked_.isEmpty(), this, [this] { ToggleLink(); });
    tree->add(tr("All cameras back to the first view"), "Shift+Home", this, [this] { ResetAll(); });
    MenuTree *sort = tree->addMenu(tr("Sort by"));
    sort->add(tr("Name"), "N", this, [this] { SortByName(); });
    sort->add(tr("File size"), "S", this, [this] { SortBySize(); });
    sort->add(tr("Triangles or rows"), "C", this, [this] { SortByCount(); });
    tree->addSeparator();
    View::fillMenu(glw, tree);
}

} // namespace host
