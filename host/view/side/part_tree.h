// SPDX-License-Identifier: MIT
#ifndef HOST_VIEW_SIDE_PART_TREE_H
#define HOST_VIEW_SIDE_PART_TREE_H

#include <vector>

#include <QString>

#include "host/item/part_marks.h"
#include "host/read/mesh.h"

namespace host {

/// The nodes and parts of a mesh as rows of a list with indentation: each part below its node. A
/// node whose only content is one part is one row with it. Rows are named by numbers from zero, the
/// one above before those below it. A filter leaves some rows out; marks of parts are summed up.
class PartTree {
public:
    PartTree() = default;            ///< Of no mesh, with no rows.
    explicit PartTree(MeshPtr mesh); ///< Of @p mesh, which is there.

    const Mesh *mesh() const { return mesh_.get(); }
    int count() const { return int(rows_.size()); }    ///< Of all rows, be they left out or not.
    int above(int row) const { return at(row).above; } ///< -1 for one at the top.
    int part(int row) const { return at(row).part; }   ///< -1 where it is a node alone.
    int rowOf(std::size_t part) const { return rowOfPart_[part]; }
    QString name(int row) const;
    /// Triangles, lines and points of all below.
    quint64 size(int row) const { return at(row).size; }
    /// The parts of the rows that are true in @p rows and of all below them, left out or not.
    std::vector<bool> partsOf(std::vector<bool> rows) const;

    /// Shows only the rows with @p text in their name or material, in letters of either case, and
    /// those above and below them. An empty text shows all.
    void filter(const QString &text);
    /// The rows that are shown below @p row; of -1, at the top.
    const std::vector<int> &below(int row) const { return row < 0 ? top_ : at(row).below; }
    int place(int row) const { return at(row).place; } ///< Among those beside it; -1: left out.
    int shownCount() const { return shownCount_; }

    void setMarks(const PartMarks &marks);
    const PartMarks &marks() const { return marks_; }
    /// How many parts a row holds, and how many of these are marked.
    struct Sum {
        int parts = 0;
        int selected = 0;
        int hidden = 0;
    };
    const Sum &sum(int row) const { return at(row).sum; }

private:
    struct Row {
        int node = -1; // into the mesh's nodes
        int part = -1; // into its parts
        int above = -1;
        int place = 0;
        quint64 size = 0;
        Sum sum;
        std::vector<int> below; // of those shown
    };
    const Row &at(int row) const { return rows_[std::size_t(row)]; }
    bool matches(const Row &row, const QString &text) const;

    MeshPtr mesh_;
    std::vector<Row> rows_;
    std::vector<int> rowOfPart_;
    std::vector<int> top_;
    int shownCount_ = 0;
    PartMarks marks_;
};

} // namespace host

#endif
