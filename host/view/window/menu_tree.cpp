// SPDX-License-Identifier: MIT
#include "host/view/window/menu_tree.h"

#include <algorithm>

#include <QMenu>
#include <QTimer>

namespace host {

void MenuTree::add(const QString &text, const QString &key, QObject *receiver, Callback callback)
{
    Entry entry;
    entry.text = text;
    entry.key = key;
    entry.receiver = receiver;
    entry.callback = std::move(callback);
    entries_.push_back(std::move(entry));
}

void MenuTree::addCheck(const QString &text, const QString &key, bool on, QObject *receiver,
                        Callback callback)
{
    add(text, key, receiver, std::move(callback));
    entries_.back().checkable = true;
    entries_.back().checked = on;
}

void MenuTree::addSeparator()
{
    entries_.push_back({});
}

MenuTree *MenuTree::addMenu(const QString &text)
{
    add(text, {}, nullptr, {});
    return entries_.back().submenu = new MenuTree(this);
}

namespace {

QString textOf(const QString &key, const QVector<BindingRow> &rows)
{
    for (const BindingRow &row : rows)
        if (row.keys.split(", ").contains(key))
            return row.text;
    return {};
}

} // namespace

void MenuTree::agreeWith(const QVector<BindingRow> &all, const QVector<BindingRow> &working)
{
    const auto useless = [&](Entry &entry) {
        if (entry.submenu) {
            entry.submenu->agreeWith(all, working);
            return entry.submenu->entries_.empty();
        }
        if (entry.key.isEmpty() || textOf(entry.key, all).isEmpty())
            return false;
        const QString text = textOf(entry.key, working);
        entry.text = text.isEmpty() ? entry.text : text;
        return text.isEmpty();
    };
    entries_.erase(std::remove_if(entries_.begin(), entries_.end(), useless), entries_.end());
}

int MenuTree::Build(QMenu *menu)
{
    for (const Entry &entry : entries_) {
        if (entry.text.isEmpty()) {
            menu->addSeparator();
            continue;
        }
        if (entry.submenu) {
            entry.submenu->Build(menu->addMenu(entry.text));
            continue;
        }
        // The key is text only: a shortcut object would compete with the binding that it names.
        QAction *action =
            menu->addAction(entry.key.isEmpty() ? entry.text : entry.text + '\t' + entry.key);
        action->setCheckable(entry.checkable);
        action->setChecked(entry.checked);
        if (!entry.receiver || !entry.callback)
            continue;
        // After the menu is gone: what it starts may delete the object whose menu it was.
        QObject *receiver = entry.receiver;
        const Callback callback = entry.callback;
        connect(action, &QAction::triggered, receiver,
                [receiver, callback] { QTimer::singleShot(0, receiver, callback); });
    }
    return int(entries_.size());
}

} // namespace host
