// SPDX-License-Identifier: MIT
#include "host/view/side/part_tree_model.h"

#include <QLocale>

namespace host {

void PartTreeModel::setMesh(const MeshPtr &mesh)
{
    beginResetModel();
    tree_ = PartTree(mesh);
    endResetModel();
}

void PartTreeModel::filter(const QString &text)
{
    beginResetModel();
    tree_.filter(text);
    endResetModel();
}

void PartTreeModel::setMarks(const PartMarks &marks)
{
    tree_.setMarks(marks);
    allChanged();
}

void PartTreeModel::setTheme(const Theme &theme)
{
    theme_ = theme;
    allChanged();
}

/// Views ask again for what is in sight, at whatever depth.
void PartTreeModel::allChanged()
{
    if (const int rows = rowCount())
        emit dataChanged(index(0, 0), index(rows - 1, Columns - 1));
}

QModelIndex PartTreeModel::indexOf(int row) const
{
    const int place = row < 0 || row >= tree_.count() ? -1 : tree_.place(row);
    return place < 0 ? QModelIndex() : createIndex(place, Name, quintptr(row));
}

QModelIndex PartTreeModel::index(int row, int column, const QModelIndex &parent) const
{
    const std::vector<int> &below = tree_.below(rowOf(parent));
    if (row < 0 || row >= int(below.size()) || column < 0 || column >= Columns)
        return {};
    return createIndex(row, column, quintptr(below[std::size_t(row)]));
}

QModelIndex PartTreeModel::parent(const QModelIndex &index) const
{
    return index.isValid() ? indexOf(tree_.above(rowOf(index))) : QModelIndex();
}

int PartTreeModel::rowCount(const QModelIndex &parent) const
{
    return parent.column() > 0 ? 0 : int(tree_.below(rowOf(parent)).size());
}

QString PartTreeModel::hint(int row) const
{
    const int part = tree_.part(row);
    const QString material = part < 0 ? QString() : tree_.mesh()->parts[std::size_t(part)].material;
    return material.isEmpty() ? tree_.name(row)
                              : QStringLiteral("%1  ·  %2").arg(tree_.name(row), material);
}

QVariant PartTreeModel::data(const QModelIndex &index, int role) const
{
    const int row = rowOf(index);
    if (row < 0)
        return {};
    const PartTree::Sum &sum = tree_.sum(row);
    const bool name = index.column() == Name, hidden = sum.hidden == sum.parts;
    switch (role) {
    case Qt::DisplayRole:
        return name ? tree_.name(row) : QLocale().toString(tree_.size(row));
    case Qt::ToolTipRole:
        return hint(row);
    case Qt::TextAlignmentRole:
        return int((name ? Qt::AlignLeft : Qt::AlignRight) | Qt::AlignVCenter);
    case Qt::ForegroundRole:
        return hidden || !name ? theme_.faint : sum.selected > 0 ? theme_.accent : theme_.text;
    case Qt::CheckStateRole:
        if (!name)
            return {};
        return hidden ? Qt::Unchecked : sum.hidden > 0 ? Qt::PartiallyChecked : Qt::Checked;
    default:
        return {};
    }
}

bool PartTreeModel::setData(const QModelIndex &index, const QVariant &value, int role)
{
    const int row = rowOf(index);
    if (row < 0 || role != Qt::CheckStateRole)
        return false;
    std::vector<bool> rows(std::size_t(row) + 1);
    rows.back() = true;
    emit shownAsked(tree_.partsOf(rows), value.toInt() != Qt::Unchecked);
    return true;
}

QVariant PartTreeModel::headerData(int section, Qt::Orientation orientation, int role) const
{
    if (orientation != Qt::Horizontal)
        return {};
    if (role == Qt::TextAlignmentRole)
        return int((section == Name ? Qt::AlignLeft : Qt::AlignRight) | Qt::AlignVCenter);
    return role == Qt::DisplayRole ? section == Name ? tr("Part") : tr("Count") : QVariant();
}

Qt::ItemFlags PartTreeModel::flags(const QModelIndex &index) const
{
    if (!index.isValid())
        return Qt::NoItemFlags;
    const Qt::ItemFlags plain = Qt::ItemIsEnabled | Qt::ItemIsSelectable;
    return index.column() == Name ? plain | Qt::ItemIsUserCheckable : plain;
}

} // namespace host
