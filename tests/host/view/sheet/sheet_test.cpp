// SPDX-License-Identifier: MIT
// What a sheet decides without a window: names, order, memory; and what a rectangle holds.
#include <cmath>
#include <limits>

#include <gtest/gtest.h>

#include "host/item/parts_in_pick.h"
#include "host/view/overlay/scale_bar.h"
#include "host/view/sheet/sheet_entry.h"
#include "host/view/sheet/sheet_grid.h"
#include "host/view/sheet/sheet_scroll.h"

namespace host {
namespace {

TEST(SheetEntries, NamesTellFilesApart)
{
    const std::pair<const char *, const char *> rows[] = {
        {"/a/one.obj /b/two.obj", "one.obj two.obj"},
        {"/a/x.obj /b/x.obj /b/y.obj", "a/x.obj b/x.obj y.obj"},
        {"/p/a/x.obj /q/a/x.obj", "p/a/x.obj q/a/x.obj"},
        {"/a/x.obj /a/../a/./x.obj /a/x.obj", "x.obj"}};
    for (const auto &[paths, expected] : rows) {
        QStringList names;
        for (const auto &[id, entry] : makeEntries(QString(paths).split(' ')))
            names << entry.name;
        EXPECT_EQ(names.join(' ').toStdString(), expected);
    }
}

TEST(SheetEntries, AreSortedAsAPersonSortsAndTheLargestFirst)
{
    SheetEntries entries = makeEntries({"/m10.obj", "/M3.obj", "/m3.obj", "/z.obj"});
    const qint64 sizes[] = {1, 7, 7, 9};
    const quint64 counts[] = {40, 5, 5, 0};
    for (int id = 1; id <= 4; ++id) {
        entries[id].fileSize = sizes[id - 1];
        entries[id].count = counts[id - 1];
    }
    const std::tuple<SheetOrder, bool, QList<int>> rows[] = {
        {SheetOrder::Name, false, {2, 3, 1, 4}},
        {SheetOrder::Name, true, {4, 1, 3, 2}},
        {SheetOrder::Size, false, {4, 2, 3, 1}},
        {SheetOrder::Size, true, {1, 3, 2, 4}},
        {SheetOrder::Count, false, {1, 2, 3, 4}}};
    for (const auto &[order, reversed, ids] : rows)
        EXPECT_EQ(sortedIds(entries, order, reversed), ids);
}

// 1 is in view; 2 to 4 are hidden, 3 was seen longest ago; 5 holds nothing. Each has 10 bytes.
TEST(SheetEntries, WhatWasUnseenLongestGivesItsMemoryBack)
{
    SheetEntries entries = makeEntries({"/a", "/b", "/c", "/d", "/e"});
    const quint64 seen[] = {1, 9, 2, 5, 0};
    for (auto &[id, entry] : entries) {
        entry.state = id == 5 ? SheetEntry::State::Waiting : SheetEntry::State::Shown;
        entry.visible = id == 1;
        entry.lastSeen = seen[id - 1];
    }
    const auto bytes = [](int) { return quint64(10); };
    const std::pair<quint64, QList<int>> rows[] = {
        {40, {}}, {39, {3}}, {20, {3, 4}}, {0, {3, 4, 2}}};
    for (const auto &[limit, ids] : rows)
        EXPECT_EQ(idsToRelease(entries, limit, bytes), ids);
}

// Cells of at least 100 pixels, 4 pixels apart, with names of 20 and a bar of 10.
TEST(SheetGridTest, HasAsManyColumnsAsHaveRoom)
{
    const std::tuple<QSize, int, int, const char *> rows[] = {
        // window, cells, foot: columns, cell, name, largest offset
        {{400, 300}, 6, 0, "fits 3 100x95 20 0"},
        {{400, 202}, 6, 9, "fits 3 100x95 20 0"},
        {{400, 201}, 6, 0, "3 124x113 20 37"},
        {{400, 300}, 9, 0, "3 124x113 20 55"},
        {{400, 300}, 10, 7, "3 124x113 20 179"},
        {{80, 60}, 2, 0, "1 62x52 0 56"},
        {{108, 400}, 1, 0, "fits 1 100x95 20 0"},
        {{107, 400}, 1, 0, "1 89x86 20 0"},
        {{9, 1}, 1, 0, "1 1x1 0 8"},
        {{430, 300}, 100, 0, "4 100x95 20 2179"}};
    for (const auto &[window, count, foot, expected] : rows) {
        const SheetGrid grid({window, count, 100, 4, 20, 10, double(foot)});
        const QSizeF cell = grid.cellSize();
        EXPECT_EQ(QString("%1%2 %3x%4 %5 %6")
                      .arg(grid.fits() ? "fits " : "")
                      .arg(grid.columns())
                      .arg(cell.width())
                      .arg(cell.height())
                      .arg(grid.header())
                      .arg(grid.largestOffset())
                      .toStdString(),
                  expected);
    }
}

TEST(SheetGridTest, TellsWhatIsInViewAndWhere)
{
    const SheetGrid grid({{400, 300}, 100, 100, 4, 20, 10, 0}); // 34 rows of 117
    EXPECT_EQ(grid.cell(0, 0), QRectF(4, 4, 124, 113));
    EXPECT_EQ(grid.cell(4, 50), QRectF(132, 71, 124, 113));
    const int ranges[][4] = {// offset, around: first, end
                             {0, 0, 0, 9},    {116, 0, 0, 12},    {117, 0, 3, 12},
                             {55, 0, 0, 9},   {56, 0, 0, 12},     {1000, 300, 15, 42},
                             {0, 300, 0, 18}, {3682, 0, 93, 100}, {3682, 300, 84, 100}};
    for (const auto &[offset, around, first, end] : ranges) {
        const SheetGrid::Range range = grid.inView(offset, around);
        EXPECT_TRUE(range.first == first && range.end == end) << offset;
    }
}

// Two thirds of the way are gone in 0.06 seconds.
TEST(SheetScrollTest, GlidesAndEndsWhereItShould)
{
    SheetScroll scroll;
    scroll.setLargest(1000);
    scroll.glideTo(600);
    EXPECT_EQ(scroll.offset(), 0);
    const std::tuple<double, bool, int> frames[] = {// time, whether it moved: offset
                                                    {5, true, 146},    {5, false, 146},
                                                    {5.06, true, 433}, {5.05, false, 433},
                                                    {9, true, 600},    {10, false, 600}};
    for (const auto &[time, moved, offset] : frames) {
        EXPECT_EQ(scroll.advance(time), moved) << time;
        EXPECT_EQ(scroll.offset(), offset) << time;
        EXPECT_EQ(scroll.isMoving(), time < 9) << time;
    }
    scroll.glideBy(-600), scroll.advance(100); // after a rest it begins with one frame's way again
    EXPECT_EQ(scroll.offset(), 454);
    scroll.glideBy(100), scroll.advance(200);
    EXPECT_EQ(scroll.offset(), 100);
    EXPECT_EQ((scroll.jumpTo(4000), scroll.offset()), 1000);
    scroll.setLargest(300);
    EXPECT_TRUE(scroll.offset() == 300 && !scroll.isMoving());
    EXPECT_EQ((scroll.jumpTo(-1), scroll.offset()), 0);
}

TEST(ScaleBarTest, HasARoundLengthThatFits)
{
    const double none = std::numeric_limits<double>::quiet_NaN(), endless = HUGE_VAL;
    const double rows[][3] = {// units per pixel, most pixels, and the length in units
                              {1, 100, 100}, {1, 99.9, 50},     {1, 49, 20},  {1, 19.9, 10},
                              {1, 10, 10},   {1e-6, 160, 1e-4}, {0, 100, 0},  {-1, 100, 0},
                              {none, 9, 0},  {endless, 100, 0}, {1, none, 0}, {1, 0, 0}};
    for (const auto &[units, most, length] : rows)
        EXPECT_NEAR(ScaleBar::roundLength(units, most), length, length * 1e-9) << units << most;
}

// The square that is picked goes from -1 to 1; w is the distance in front of the eye.
TEST(PartsInPick, MeetWhatThePickPassShows)
{
    const struct {
        float x[3], y[3], w;
        bool met;
    } rows[] = {
        {{0, 0.5f, 0}, {0, 0, 0.5f}, 1, true},   // inside
        {{-9, 9, 0}, {-9, -9, 9}, 1, true},      // around the square
        {{-5, 5, 0}, {0, 0, -9}, 1, true},       // an edge crosses it
        {{2, 3, 2}, {0, 0, 1}, 1, false},        // beside
        {{0.9f, 3, 3}, {3, 3, 0.9f}, 1, false},  // the boxes meet, but not the triangle
        {{3, 3, 0.9f}, {0.9f, 3, 3}, 1, false},  // the same the other way round
        {{0, 0.5f, 0}, {0, 0, 0.5f}, -1, false}, // behind the eye
        {{2, 3, 2}, {0, 0, 1}, 4, true},         // what is far away comes in
    };
    for (const auto &c : rows) {
        GL::Camera camera;
        for (int i = 0; i < 4; ++i)
            camera.model_matrix[i * 5] = camera.proj_matrix[i * 5] = 1;
        camera.proj_matrix[15] = double(c.w);
        // The mesh stands off its place in the world, and is twice as large.
        const QVector3D centre(10, 20, 30);
        Mesh mesh;
        for (int i = 0; i < 6; ++i) {
            const float far = i < 3 ? 0 : 1000; // the second part is never met
            mesh.positions.insert(mesh.positions.end(), {centre.x() + 2 * c.x[i % 3] + far,
                                                         centre.y() + 2 * c.y[i % 3], 30});
            mesh.indices.push_back(quint32(i));
        }
        mesh.parts.resize(2);
        mesh.parts[0].indexCount = mesh.parts[1].indexCount = mesh.parts[1].firstIndex = 3;
        EXPECT_EQ(partsInPick(camera, mesh, centre, 0.5f), (std::vector<bool>{c.met, false}));
        PartMarks marks(2);
        marks.setHidden(0, true);
        EXPECT_EQ(partsInPick(camera, mesh, centre, 0.5f, marks), std::vector<bool>(2));
    }
}

} // namespace
} // namespace host
