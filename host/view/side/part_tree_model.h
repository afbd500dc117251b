// SPDX-License-Identifier: MIT
#ifndef HOST_VIEW_SIDE_PART_TREE_MODEL_H
#define HOST_VIEW_SIDE_PART_TREE_MODEL_H

#include <QAbstractItemModel>

#include "host/item/display.h"
#include "host/view/side/part_tree.h"

namespace host {

/// A PartTree as Qt's views show it: a column of names with a box that says what is shown, and one
/// of the numbers of triangles (lines, points). A list of any length costs only what is in sight.
class PartTreeModel : public QAbstractItemModel {
    Q_OBJECT
public:
    enum Column { Name, Size, Columns };

    explicit PartTreeModel(QObject *parent) : QAbstractItemModel(parent) {}

    const PartTree &tree() const { return tree_; }
    void setMesh(const MeshPtr &mesh);
    void filter(const QString &text);
    void setMarks(const PartMarks &marks);
    void setTheme(const Theme &theme);

    QModelIndex indexOf(int row) const; ///< Invalid for one that is left out.
    static int rowOf(const QModelIndex &index)
    {
        return index.isValid() ? int(index.internalId()) : -1;
    }

    QModelIndex index(int row, int column, const QModelIndex &parent = {}) const override;
    QModelIndex parent(const QModelIndex &index) const override;
    int rowCount(const QModelIndex &parent = {}) const override;
    int columnCount(const QModelIndex & = {}) const override { return Columns; }
    QVariant data(const QModelIndex &index, int role) const override;
    bool setData(const QModelIndex &index, const QVariant &value, int role) override;
    QVariant headerData(int section, Qt::Orientation orientation, int role) const override;
    Qt::ItemFlags flags(const QModelIndex &index) const override;

signals:
    /// A person ticks or clears the box of a row: these parts, by their indices, are to be shown or
    /// hidden.
    void shownAsked(const std::vector<bool> &parts, bool shown);

private:
    QString hint(int row) const;
    void allChanged();

    PartTree tree_;
    Theme theme_;
};

} // namespace host

#endif
