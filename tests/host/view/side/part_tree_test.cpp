// SPDX-License-Identifier: MIT
// Which rows a list of parts has, and what they say.
#include "host/view/side/part_tree_model.h"

#include <gtest/gtest.h>

namespace host {
namespace {

/// A car of two wheels on an axle, with a body of two parts and a cloud that belongs to nothing.
MeshPtr car()
{
    auto mesh = std::make_shared<Mesh>();
    mesh->nodes = {{"car", -1}, {"axle", 0}, {"left", 1}, {"right", 1}, {"body", 0}};
    const auto add = [&](const char *name, const char *material, quint32 triangles, qint32 node) {
        MeshPart part;
        part.name = name;
        part.material = material;
        part.indexCount = 3 * triangles;
        part.node = node;
        mesh->parts.push_back(part);
    };
    add("wheel", "Rubber", 5, 2);
    add("right", "Rubber", 6, 3);
    add("door", "steel", 7, 4);
    add("roof", "steel", 8, 4);
    add("cloud", "", 9, -1);
    return mesh;
}

/// One row in a line: by its depth dots, name, count and box (x shown, - in part, o hidden).
std::string drawn(const PartTreeModel &model, const QModelIndex &above = {}, int depth = 0)
{
    std::string text;
    for (int i = 0; i < model.rowCount(above); ++i) {
        const QModelIndex at = model.index(i, 0, above);
        EXPECT_TRUE(model.parent(at) == above && model.indexOf(PartTreeModel::rowOf(at)) == at);
        text += std::string(std::size_t(depth), '.') + at.data().toString().toStdString() + ' ' +
                at.sibling(i, 1).data().toString().toStdString() + ' ' +
                "o-x"[at.data(Qt::CheckStateRole).toInt()] + '\n';
        text += drawn(model, at, depth + 1);
    }
    return text;
}

TEST(PartTreeModelTest, RowsAreThoseOfTheFilterAndWhatIsAboveThem)
{
    const std::string left = "..left  ·  wheel 5 x\n", axle = ".axle 11 x\n" + left;
    const struct {
        const char *filter;
        std::vector<std::size_t> hidden;
        std::string drawn;
    } rows[] = {
        {"",
         {},
         "car 26 x\n" + axle + "..right 6 x\n.body 15 x\n..door 7 x\n..roof 8 x\ncloud 9 x\n"},
        {"OOF", {}, "car 26 x\n.body 15 x\n..roof 8 x\n"},
        {"body", {}, "car 26 x\n.body 15 x\n..door 7 x\n..roof 8 x\n"}, // with all below
        {"rubber", {}, "car 26 x\n" + axle + "..right 6 x\n"},          // a material
        {"left", {}, "car 26 x\n" + axle}, // a row of a node and its only part
        {"zebra", {}, ""},
        {"steel", {2}, "car 26 -\n.body 15 -\n..door 7 o\n..roof 8 x\n"},
        {"steel", {2, 3}, "car 26 -\n.body 15 o\n..door 7 o\n..roof 8 o\n"}};
    PartTreeModel model(nullptr);
    model.setMesh(car());
    for (const auto &row : rows) { // what was left out before comes back
        model.filter(row.filter);
        PartMarks marks(5);
        for (const std::size_t part : row.hidden)
            marks.setHidden(part, true);
        model.setMarks(marks);
        EXPECT_EQ(drawn(model), row.drawn) << row.filter;
    }
}

TEST(PartTreeModelTest, ABoxAsksForAllPartsBelowBeTheyInSightOrNot)
{
    PartTreeModel model(nullptr);
    model.setMesh(car());
    int told = 0; // of what is shown anew
    QObject::connect(&model, &PartTreeModel::modelReset, [&] { ++told; });
    model.filter("roof");
    std::string asked;
    QObject::connect(&model, &PartTreeModel::shownAsked,
                     [&](const std::vector<bool> &parts, bool shown) {
                         for (const bool part : parts)
                             asked += part ? '1' : '0';
                         asked += shown ? '+' : '-';
                     });
    const QModelIndex car = model.index(0, 0), body = model.index(0, 0, car);
    model.setData(body, Qt::Unchecked, Qt::CheckStateRole);
    model.setData(car, Qt::Checked, Qt::CheckStateRole);
    EXPECT_EQ(asked, "00110-11110+");
    EXPECT_TRUE(model.flags(body) & Qt::ItemIsUserCheckable);
    EXPECT_FALSE(model.index(1, 0).isValid() || model.setData(body, Qt::Checked, Qt::EditRole) ||
                 model.headerData(0, Qt::Vertical, Qt::DisplayRole).isValid());
    EXPECT_EQ(model.headerData(1, Qt::Horizontal, Qt::DisplayRole).toString(), "Count");
    EXPECT_EQ(model.headerData(0, Qt::Horizontal, Qt::DisplayRole).toString(), "Part");
    QModelIndex from, to;
    QObject::connect(&model, &PartTreeModel::dataChanged,
                     [&](const QModelIndex &a, const QModelIndex &b) { from = a, to = b, ++told; });
    PartMarks marks(5);
    marks.setSelected(2, true);
    model.setMarks(marks);
    EXPECT_TRUE(model.tree().sum(0).selected == 1 && model.tree().sum(0).parts == 4);
    const Theme theme = Display().theme();
    model.setTheme(theme);
    EXPECT_TRUE(from == car && to == car.sibling(0, 1) && told == 3);
    const QModelIndex roof = model.index(0, 0, body), size = roof.sibling(0, 1);
    const auto says = [](const QModelIndex &at, const QColor &colour, Qt::Alignment align) {
        return at.data(Qt::ForegroundRole) == colour &&
               at.data(Qt::TextAlignmentRole) == int(align | Qt::AlignVCenter);
    };
    EXPECT_TRUE(says(car, theme.accent, Qt::AlignLeft) && says(roof, theme.text, Qt::AlignLeft));
    EXPECT_TRUE(says(size, theme.faint, Qt::AlignRight));
    EXPECT_EQ(roof.data(Qt::ToolTipRole).toString(), "roof  ·  steel");
}

} // namespace
} // namespace host
