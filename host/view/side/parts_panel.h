// SPDX-License-Identifier: MIT
#ifndef HOST_VIEW_SIDE_PARTS_PANEL_H
#define HOST_VIEW_SIDE_PARTS_PANEL_H

#include <QWidget>

#include "host/item/display.h"
#include "host/item/part_marks.h"
#include "host/read/mesh.h"

class QItemSelection;
class QLabel;
class QLineEdit;
class QTreeView;

namespace host {

class PartTreeModel;

/// The list of a model's nodes and parts, to be searched, selected in and ticked. It shows marks
/// that others keep: it tells what a person asks for, and follow() brings what became of it.
class PartsPanel : public QWidget {
    Q_OBJECT
public:
    /// @p view is the widget that the list stands beside: its keys are heard here as well, but for
    /// those that move in a list or edit a text.
    PartsPanel(QWidget *view, QWidget *parent);

    void setMesh(const MeshPtr &mesh); ///< Not null; what a person folded stays for the same one.
    void setTheme(const Theme &theme);
    /// Shows these marks; what is selected first is scrolled to if it was not chosen here.
    void follow(const PartMarks &marks);
    void find(); ///< Lets the next letters go to the search.

    bool eventFilter(QObject *object, QEvent *event) override;

signals:
    void selected(const std::vector<bool> &parts);
    void shownAsked(const std::vector<bool> &parts, bool shown);
    void fitAsked(); ///< To what is selected.
    void menuAsked(const QPoint &globalAt);

private:
    void filter(const QString &text);
    void expand();
    void tellSelection();
    QItemSelection selectionOf(const std::vector<bool> &parts) const;
    void showSelection(const std::vector<bool> &parts);
    void sayCounts();
    bool forSearch(QEvent *event);
    bool forTree(QEvent *event);

    QWidget *view_;
    PartTreeModel *model_;
    QLineEdit *search_;
    QTreeView *tree_;
    QLabel *counts_;
    QColor text_;                      // of the theme
    std::vector<bool> shownSelection_; // of parts, as the tree shows it
    bool telling_ = true;              // what changes in the tree is a person's doing
};

} // namespace host

#endif
