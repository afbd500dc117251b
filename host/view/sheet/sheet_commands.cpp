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
        {"Ctrl+A", "select-all", tr("Select all, or none"), scene(), SLOT(SelectAll())},
        {"V", "only-selected", tr("Only the selected, or all"), scene(), SLOT(ToggleVisible())},
        {"L", "link", tr("Link cameras"), this, SLOT(ToggleLink())},
        {"N", "sort-name", tr("Sort by name"), this, SLOT(SortByName())},
        {"S", "sort-size", tr("Sort by file size"), this, SLOT(SortBySize())},
        {"C", "sort-count", tr("Sort by triangles or rows"), this, SLOT(SortByCount())},
        {"+ Shift++ = Num++", "wider", tr("More space between tiles"), this, SLOT(WiderSpacing())},
        {"- Num+-", "narrower", tr("Less space"), this, SLOT(NarrowerSpacing())},
        {"Shift+Home", "reset-all", tr("All cameras back to the first view"), this,
         SLOT(ResetAll())},
    };
    for (const Key &key : all) {
        const QStringList keys = QString(key.keys).split(' ');
        for (int i = 0; i < keys.size(); ++i) {
            // Further keys for the same thing are not listed.
            const QByteArray name = key.name + (i ? QByteArray::number(i) : QByteArray());
            bindKey(scene(), keys[i], name, i ? QString() : key.text, key.receiver, key.slot);
        }
    }
    // The module's own bindings, which have no texts of their own.
    const std::pair<const char *, QString> named[] = {
        {"leftmouse", tr("Select")},
        {"ctrlleftmouse", tr("Add to the selection, or take away")},
        {"leftdoublemouse", tr("Open one, or show all again")}};
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

/// A click that steered nothing is the module's, which selects with it.
void SheetView::passOn(GLW *glw, bool state)
{
    QMetaObject::invokeMethod(scene(), "LeftMouse", Q_ARG(GLW *, glw), Q_ARG(bool, state));
}

/// The tiles know which of them are selected.
QList<int> SheetView::selected() const
{
    QList<int> ids;
    QMetaObject::invokeMethod(scene(), "GetSelected", Q_RETURN_ARG(QList<int>, ids));
    return ids;
}

/// Selects @p ids, and tells of it as the module does when it selects.
void SheetView::select(const QList<int> &ids)
{
    for (auto it = tiles_.cbegin(); it != tiles_.cend(); ++it)
        it.value()->setProperty("selected", ids.contains(it.key()));
    QMetaObject::invokeMethod(scene(), "ValueChanged", Q_ARG(QList<int>, ids));
}

/// Selects the tiles in view that @p area meets; window pixels, y upwards.
void SheetView::areaSelected(const QRectF &area)
{
    QRectF fromTop = area;
    fromTop.moveTop(window().widget()->height() - area.bottom());
    QList<int> ids;
    for (const auto &[id, entry] : entries_)
        if (entry.visible && tiles_.value(id)->orect.intersects(fromTop))
            ids.append(id);
    select(ids);
}

void SheetView::sortBy(SheetOrder order)
{
    reversed_ = sorted_ && order == order_ && !reversed_;
    sorted_ = true;
    order_ = order;
    applyOrder();
}

void SheetView::applyOrder()
{
    QVariantList ids;
    for (int id : sortedIds(entries_, order_, reversed_))
        ids.append(id);
    scene()->setProperty("order", ids);
    changed();
}

void SheetView::changeSpacing(int pixels)
{
    constexpr int narrowest = 1; // cells have their far edges: at 0 neighbours would share a pixel
    constexpr int widest = 40;
    const int spacing = scene()->property("spacing").toInt() + pixels;
    scene()->setProperty("spacing", std::clamp(spacing, narrowest, widest));
    QMetaObject::invokeMethod(scene(), "UpdateLayout");
    changed();
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
    changed();
}

/// What is steered along with @p glw.
QList<GLW *> SheetView::peersOf(GLW *glw) const
{
    if (!linked_.contains(glw->id()))
        return {glw};
    QList<GLW *> peers{glw};
    for (int id : linked_)
        if (id != glw->id() && tiles_.contains(id))
            peers.append(tiles_.value(id));
    return peers;
}

void SheetView::ResetAll()
{
    for (GLW *glw : qAsConst(tiles_))
        if (Item *shown = item(glw))
            shown->steering().home(glw);
    changed();
}

/// What an entry of the menu over @p glw is for: the selection, if it is part of that.
QList<int> SheetView::targetsOf(const GLW *glw) const
{
    const QList<int> chosen = selected();
    return chosen.contains(glw->id()) ? chosen : QList<int>{glw->id()};
}

void SheetView::hide(const QList<int> &ids)
{
    QMetaObject::invokeMethod(scene(), "SetVisible", Q_ARG(QList<int>, ids), Q_ARG(bool, false));
    // The module tells nobody of what it was told to hide.
    QList<int> shown;
    QMetaObject::invokeMethod(scene(), "GetVisible", Q_RETURN_ARG(QList<int>, shown));
    QMetaObject::invokeMethod(scene(), "VisibleCountChanged", Q_ARG(int, shown.size()));
}

void SheetView::remove(const QList<int> &ids)
{
    for (int id : ids) {
        const auto found = entries_.find(id);
        if (found == entries_.end())
            continue;
        queue_.cancel(found->second.job);
        jobs_.remove(found->second.job);
        setItem(tiles_.take(id), nullptr);
        entries_.erase(found);
        linked_.remove(id);
        painter_.forget(id);
        QMetaObject::invokeMethod(scene(), "RemoveTile", Q_ARG(int, id));
    }
    hovered_ = -1;
    makeRoom();
    emit titleChanged();
    changed();
}

void SheetView::fillMenu(GLW *glw, MenuTree *tree)
{
    const auto found = entries_.find(glw->id());
    if (found != entries_.end()) {
        const QList<int> targets = targetsOf(glw);
        const QString what = targets.size() > 1 ? tr("%1 tiles").arg(targets.size()) : tr("tile");
        tree->add(tr("Fit %1").arg(what), {}, this, [this, targets] {
            for (int id : targets)
                if (Item *shown = item(tiles_.value(id)))
                    shown->steering().fit(tiles_.value(id));
            changed();
        });
        tree->add(tr("Hide %1").arg(what), {}, this, [this, targets] { hide(targets); });
        tree->add(tr("Remove %1 from the sheet").arg(what), {}, this,
                  [this, targets] { remove(targets); });
        const QRect cell = glw->orect.toAlignedRect();
        const QString name = found->second.name;
        tree->add(tr("Picture of this tile…"), {}, this,
                  [this, name, cell] { emit pictureAsked(name, cell); });
        tree->addSeparator();
    }
    tree->add(tr("Select all, or none"), "Ctrl+A", scene(),
              [this] { QMetaObject::invokeMethod(scene(), "SelectAll"); });
    tree->add(tr("Only the selected, or all"), "V", scene(),
              [this] { QMetaObject::invokeMethod(scene(), "ToggleVisible"); });
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
