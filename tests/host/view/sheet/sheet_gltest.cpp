// SPDX-License-Identifier: MIT
// A sheet under a person's hands: which tile a click means, and what becomes of tiles.
#include <QTest>

#include "host/item/model_item.h"
#include "host/view/sheet/sheet_view.h"
#include "support.h"

namespace host {
namespace {

/// Six files in two rows or more; the names sort as the ids do.
class SheetTest : public ViewTest {
protected:
    std::unique_ptr<SheetView> sheet;

    void open(const QStringList &paths)
    {
        sheet = std::make_unique<SheetView>(*window, queue, "folder", paths);
        show(*sheet);
    }
    void openSix()
    {
        QStringList paths;
        for (int i = 1; i <= 6; ++i)
            paths << boxes(QString("m%1.obj").arg(i), i % 3 + 1);
        open(paths);
    }
    void TearDown() override { sheet.reset(); }

    QPointF middle(int id) const { return sheet->tile(id)->orect.center(); }
    const GL::Camera &camera(int id) const { return sheet->tile(id)->camera; }

    QString idsWith(const char *property) const
    {
        QStringList ids;
        for (const auto &[id, entry] : sheet->entries())
            if (sheet->tile(id)->QObject::property(property).toBool())
                ids << QString::number(id);
        return ids.join(' ');
    }
    QString selected() const { return idsWith("selected"); }
    QString visible() const { return idsWith("visible"); }

    /// The visible tiles as one reads: from the upper left.
    QString inReadingOrder() const
    {
        std::map<std::pair<double, double>, QString> places;
        for (const auto &[id, entry] : sheet->entries()) {
            const QRectF r = sheet->tile(id)->orect;
            places[{r.y(), r.x()}] = QString::number(id);
        }
        QStringList ids;
        for (const auto &[place, id] : places)
            ids << id;
        return ids.join(' ');
    }
};

TEST_F(SheetTest, AClickSelectsTheTileUnderThePointerInEveryRow)
{
    openSix();
    ASSERT_LT(middle(1).y(), middle(6).y()) << "one row would not tell up from down";
    for (int id = 1; id <= 6; ++id) {
        click(middle(id));
        EXPECT_EQ(selected(), QString::number(id));
    }
    click(middle(1), Qt::ControlModifier);
    click(middle(4), Qt::ControlModifier);
    EXPECT_EQ(selected(), "1 4 6");
    click(middle(4), Qt::ControlModifier);
    EXPECT_EQ(selected(), "1 6");
    key(Qt::Key_V);
    EXPECT_EQ(visible(), "1 6");
    key(Qt::Key_V);
    EXPECT_EQ(visible(), "1 2 3 4 5 6");
}

TEST_F(SheetTest, OnlyWhatIsUnderThePointerIsMarked)
{
    openSix();
    window->widget()->setAttribute(Qt::WA_UnderMouse);
    const auto marked = [&](int id) {
        return static_cast<ModelItem *>(sheet->item(sheet->tile(id)))->hoveredPart() >= 0;
    };
    // To a tile that is visited later in a pass, and back to one that is visited earlier.
    for (const auto &[under, left] : {std::pair(2, 3), std::pair(3, 2), std::pair(2, 3)}) {
        move(middle(under));
        frame();
        frame();
        EXPECT_TRUE(marked(under)) << under;
        EXPECT_FALSE(marked(left)) << left;
    }
}

TEST_F(SheetTest, ADragOrbitsOneTileAndSelectsNone)
{
    openSix();
    const float before = camera(5).rot.y, other = camera(2).rot.y;
    drag(middle(5), middle(5) + QPointF(40, 0), Qt::LeftButton);
    EXPECT_NE(camera(5).rot.y, before);
    EXPECT_EQ(camera(2).rot.y, other);
    EXPECT_EQ(selected(), "");
    click(middle(2));
    EXPECT_EQ(selected(), "2") << "the press of the drag is still remembered";
}

TEST_F(SheetTest, ADoubleClickOpensOneAndAnotherReturns)
{
    openSix();
    doubleClick(middle(5));
    EXPECT_EQ(visible(), "5");
    EXPECT_GT(sheet->tile(5)->orect.width(), 500);
    doubleClick({300, 200});
    EXPECT_EQ(visible(), "1 2 3 4 5 6");
}

TEST_F(SheetTest, LinkedCamerasMoveTogetherUntilUnlinked)
{
    openSix();
    click(middle(1));
    click(middle(4), Qt::ControlModifier);
    key(Qt::Key_L);
    EXPECT_TRUE(sheet->isLinked(1) && sheet->isLinked(4) && !sheet->isLinked(2));
    const float alone = camera(2).rot.y;
    const float first = camera(1).rot.y, second = camera(4).rot.y;
    drag(middle(4), middle(4) + QPointF(40, 0), Qt::LeftButton);
    settle(sheet->tile(4));
    settle(sheet->tile(1));
    EXPECT_NE(camera(4).rot.y, second);
    EXPECT_NEAR(camera(1).rot.y - first, camera(4).rot.y - second, 0.05);
    EXPECT_EQ(camera(2).rot.y, alone);

    key(Qt::Key_L);
    EXPECT_FALSE(sheet->isLinked(1));
    const float rest = camera(1).rot.y;
    drag(middle(4), middle(4) + QPointF(40, 0), Qt::LeftButton);
    EXPECT_EQ(camera(1).rot.y, rest);
}

TEST_F(SheetTest, KeysSortAndPressedAgainTurnRound)
{
    // Names against sizes against counts: comments make a file larger.
    open({boxes("a.obj", 2), boxes("b.obj", 3),
          file("c.obj", QByteArray(4000, '#') + "\nv 0 0 0\n"
                                                "v 1 0 0\nv 0 1 0\nf 1 2 3\n")});
    EXPECT_EQ(inReadingOrder(), "1 2 3");
    move(middle(1)); // between tiles nobody hears keys
    key(Qt::Key_C);
    EXPECT_EQ(inReadingOrder(), "2 1 3");
    key(Qt::Key_C);
    EXPECT_EQ(inReadingOrder(), "3 1 2");
    key(Qt::Key_S);
    EXPECT_EQ(inReadingOrder(), "3 2 1");
    key(Qt::Key_N);
    EXPECT_EQ(inReadingOrder(), "1 2 3");
}

TEST_F(SheetTest, AFileThatFailsKeepsItsTileAndTellsWhy)
{
    open({boxes("a.obj", 1), file("b.ply", "these are words\n"), file("c.csv", "a,b\n1,\"2\n"),
          folder.filePath("gone.stl")});
    EXPECT_EQ(visible(), "1 2 3 4");
    for (int id : {2, 3, 4}) {
        EXPECT_EQ(sheet->entries().at(id).state, SheetEntry::State::Failed) << id;
        EXPECT_NE(sheet->entries().at(id).reason, "") << id;
    }
    EXPECT_EQ(sheet->entries().at(1).state, SheetEntry::State::Shown);
}

TEST_F(SheetTest, ARectangleSelectsTheTilesThatItMeets)
{
    openSix();
    const QRectF lower = sheet->tile(6)->orect;
    drag(middle(5), lower.center() + QPointF(0, 9), Qt::RightButton, Qt::ShiftModifier);
    EXPECT_EQ(selected(), "5 6");
    drag(middle(1), middle(4) + QPointF(9, 0), Qt::RightButton, Qt::ShiftModifier);
    EXPECT_EQ(selected(), "1 4") << "in the place of what was selected before";
    EXPECT_EQ(window->widget()->mouse.area, 0);
}

TEST_F(SheetTest, WhatIsOutOfViewGivesItsMemoryBackAndReturnsAsItWasLeft)
{
    openSix();
    drag(middle(1), middle(1) + QPointF(30, 10), Qt::LeftButton);
    settle(sheet->tile(1));
    const float left = camera(1).rot.y;
    doubleClick(middle(2));
    sheet->setMemoryBudget(16384); // far too little for six
    using State = SheetEntry::State;
    EXPECT_EQ(sheet->entries().at(1).state, State::Released);
    EXPECT_EQ(sheet->item(sheet->tile(1)), nullptr);
    EXPECT_EQ(sheet->entries().at(2).state, State::Shown) << "it is in view";

    sheet->setMemoryBudget(SheetView::memoryBudget());
    doubleClick({300, 200});
    show(*sheet);
    EXPECT_EQ(sheet->entries().at(1).state, State::Shown);
    EXPECT_FLOAT_EQ(camera(1).rot.y, left);
}

TEST_F(SheetTest, WhatPassesTheMemoryForAllIsRefusedInItsTile)
{
    sheet = std::make_unique<SheetView>(*window, queue, "folder",
                                        QStringList{boxes("a.obj", 1), boxes("b.obj", 400)});
    sheet->setMemoryBudget(100000);
    show(*sheet);
    EXPECT_EQ(sheet->entries().at(1).state, SheetEntry::State::Shown);
    EXPECT_EQ(sheet->entries().at(2).state, SheetEntry::State::Failed);
    EXPECT_NE(sheet->entries().at(2).reason, "");
    sheet->setMemoryBudget(10000000);
    show(*sheet);
    EXPECT_EQ(sheet->entries().at(2).state, SheetEntry::State::Shown) << "there is room now";
}

} // namespace
} // namespace host
