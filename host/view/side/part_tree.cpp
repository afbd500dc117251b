// SPDX-License-Identifier: MIT
#include "host/view/side/part_tree.h"

namespace host {

namespace {

quint64 sizeOf(const MeshPart &part)
{
    return part.indexCount / (part.kind == MeshPart::Kind::Lines ? 2 : 3) + part.vertexCount;
}

} // namespace

PartTree::PartTree(MeshPtr mesh) : mesh_(std::move(mesh))
{
    const std::size_t nodes = mesh_->nodes.size();
    std::vector<int> content(nodes); // parts and nodes right below
    for (const MeshNode &node : mesh_->nodes)
        if (node.above >= 0)
            ++content[std::size_t(node.above)];
    for (const MeshPart &part : mesh_->parts)
        if (part.node >= 0)
            ++content[std::size_t(part.node)];
    for (std::size_t i = 0; i < nodes; ++i) {
        rows_.emplace_back();
        rows_.back().node = int(i);
        rows_.back().above = mesh_->nodes[i].above;
    }
    for (std::size_t i = 0; i < mesh_->parts.size(); ++i) {
        const MeshPart &part = mesh_->parts[i];
        const bool alone = part.node >= 0 && content[std::size_t(part.node)] == 1;
        if (!alone) {
            rows_.emplace_back();
            rows_.back().above = part.node;
        }
        rowOfPart_.push_back(alone ? part.node : count() - 1);
        Row &row = rows_[std::size_t(rowOfPart_.back())];
        row.part = int(i);
        row.size = sizeOf(part);
    }
    for (std::size_t i = rows_.size(); i-- > 0;)
        if (rows_[i].above >= 0)
            rows_[std::size_t(rows_[i].above)].size += rows_[i].size;
    setMarks(PartMarks(mesh_->parts.size()));
    filter({});
}

QString PartTree::name(int row) const
{
    const Row &r = at(row);
    const QString part = r.part < 0 ? QString() : mesh_->parts[std::size_t(r.part)].name;
    if (r.node < 0)
        return part;
    const QString &node = mesh_->nodes[std::size_t(r.node)].name;
    return part.isEmpty() || part == node ? node : QStringLiteral("%1  ·  %2").arg(node, part);
}

std::vector<bool> PartTree::partsOf(std::vector<bool> rows) const
{
    std::vector<bool> parts(rowOfPart_.size());
    rows.resize(rows_.size());
    for (std::size_t i = 0; i < rows_.size(); ++i) {
        const Row &row = rows_[i];
        if (row.above >= 0 && rows[std::size_t(row.above)])
            rows[i] = true;
        if (rows[i] && row.part >= 0)
            parts[std::size_t(row.part)] = true;
    }
    return parts;
}

bool PartTree::matches(const Row &row, const QString &text) const
{
    const auto has = [&](const QString &name) { return name.contains(text, Qt::CaseInsensitive); };
    if (row.node >= 0 && has(mesh_->nodes[std::size_t(row.node)].name))
        return true;
    if (row.part < 0)
        return false;
    const MeshPart &part = mesh_->parts[std::size_t(row.part)];
    return has(part.name) || has(part.material);
}

void PartTree::filter(const QString &text)
{
    std::vector<bool> shown(rows_.size());
    for (std::size_t i = 0; i < rows_.size(); ++i) {
        const int above = rows_[i].above;
        shown[i] = (above >= 0 && shown[std::size_t(above)]) || matches(rows_[i], text);
    }
    for (std::size_t i = rows_.size(); i-- > 0;)
        if (shown[i] && rows_[i].above >= 0)
            shown[std::size_t(rows_[i].above)] = true;
    top_.clear();
    shownCount_ = 0;
    for (Row &row : rows_)
        row.below.clear();
    for (std::size_t i = 0; i < rows_.size(); ++i) {
        Row &row = rows_[i];
        row.place = -1;
        if (!shown[i])
            continue;
        auto &beside = row.above < 0 ? top_ : rows_[std::size_t(row.above)].below;
        row.place = int(beside.size());
        beside.push_back(int(i));
        ++shownCount_;
    }
}

void PartTree::setMarks(const PartMarks &marks)
{
    marks_ = marks;
    for (Row &row : rows_) {
        row.sum = {};
        if (row.part < 0)
            continue;
        const auto part = std::size_t(row.part);
        row.sum = {1, marks.isSelected(part), marks.isHidden(part)};
    }
    for (std::size_t i = rows_.size(); i-- > 0;) {
        if (rows_[i].above < 0)
            continue;
        const Sum &own = rows_[i].sum;
        Sum &all = rows_[std::size_t(rows_[i].above)].sum;
        all.parts += own.parts;
        all.selected += own.selected;
        all.hidden += own.hidden;
    }
}

} // namespace host
