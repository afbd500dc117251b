// SPDX-License-Identifier: MIT
// What a sheet decides without a window: names, order, memory; and what a dragged rectangle holds.
#include <cmath>
#include <limits>

#include <gtest/gtest.h>

#include "host/item/parts_in_pick.h"
#include "host/view/area_selection.h"
#include "host/view/overlay/scale_bar.h"
#include "host/view/sheet/sheet_entry.h"

namespace host {
namespace {

QString words(const QList<int> &ids)
{
    QStringList text;
    for (int id : ids)
        text << QString::number(id);
    return text.join(' ');
}

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
    SheetEntries entries = makeEntries({"/m10.obj", "/M2.obj", "/m3.obj", "/z.obj"});
    const qint64 sizes[] = {1, 7, 7, 9};
    const quint64 counts[] = {40, 5, 5, 0};
    for (int id = 1; id <= 4; ++id) {
        entries[id].fileSize = sizes[id - 1];
        entries[id].count = counts[id - 1];
    }
    const std::tuple<SheetOrder, bool, const char *> rows[] = {
        {SheetOrder::Name, false, "2 3 1 4"},
        {SheetOrder::Name, true, "4 1 3 2"},
        {SheetOrder::Size, false, "4 2 3 1"},
        {SheetOrder::Size, true, "1 3 2 4"},
        {SheetOrder::Count, false, "1 2 3 4"}};
    for (const auto &[order, reversed, ids] : rows)
        EXPECT_EQ(words(sortedIds(entries, order, reversed)).toStdString(), ids);
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
    const std::pair<quint64, const char *> rows[] = {
        {40, ""}, {39, "3"}, {20, "3 4"}, {0, "3 4 2"}};
    for (const auto &[limit, ids] : rows)
        EXPECT_EQ(words(idsToRelease(entries, limit, bytes)).toStdString(), ids);
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

TEST(DraggedArea, IsTheSameFromEveryCorner)
{
    Mouse mouse{};
    const QRectF expected(10, 20, 30, 40);
    for (int corner = 0; corner < 4; ++corner) {
        mouse.x0 = corner & 1 ? 40 : 10;
        mouse.x = corner & 1 ? 10 : 40;
        mouse.y0 = corner & 2 ? 60 : 20;
        mouse.y = corner & 2 ? 20 : 60;
        EXPECT_EQ(draggedArea(mouse), expected) << corner;
    }
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
