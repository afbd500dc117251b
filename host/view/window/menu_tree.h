// SPDX-License-Identifier: MIT
#ifndef HOST_VIEW_WINDOW_MENU_TREE_H
#define HOST_VIEW_WINDOW_MENU_TREE_H

#include <functional>
#include <vector>

#include <QObject>
#include <QPointer>
#include <QString>
#include <QVector>

#include "host/view/window/binding.h"

class QMenu;

namespace host {

/// A context menu in the making: whoever owns it fills it with entries, and the window lets it
/// build the menu that a person sees.
class MenuTree : public QObject {
    Q_OBJECT
public:
    using Callback = std::function<void()>;

    explicit MenuTree(QObject *parent = nullptr) : QObject(parent) {}

    /// An entry that runs @p callback after the menu has closed, if @p receiver still lives then.
    /// @p key is shown beside the text.
    void add(const QString &text, const QString &key, QObject *receiver, Callback callback);
    /// The same with a mark that shows @p on.
    void addCheck(const QString &text, const QString &key, bool on, QObject *receiver,
                  Callback callback);
    void addSeparator();
    /// A submenu; the tree returned is owned by this one.
    MenuTree *addMenu(const QString &text);

    /// Lets every entry with a key say what @p all, the list of bindings, says of that key, and
    /// takes out those whose key is not in @p working, the rows of what does something now.
    void agreeWith(const QVector<BindingRow> &all, const QVector<BindingRow> &working);

public slots:
    /// Fills @p menu. Returns the number of entries.
    int Build(QMenu *menu);

private:
    struct Entry {
        QString text; // empty: a separator
        QString key;
        bool checkable = false;
        bool checked = false;
        QPointer<QObject> receiver;
        Callback callback;
        MenuTree *submenu = nullptr; // a child of this object
    };

    std::vector<Entry> entries_;
};

} // namespace host

#endif
