// SPDX-License-Identifier: MIT
// What a sheet decides without a window: names, order, memory; and what a dragged rectangle holds.
#include <limits>

#include "host/item/parts_in_pick.h"
#include "host/view/area_selection.h"
#include "host/view/overlay/scale_bar.h"
#include "host/view/sheet/sheet_entry.h"
#include "tests/GL/table.h"

namespace host {
namespace {

QString words(const QList<int> &ids)
{
    QStringList text;
    for (int id : ids)
        text << QString::number(id);
    return text.join(' ');
}

struct NamesCase {
    const char *name;
    const char *paths; // apart by blanks
    const char *names;
};

const NamesCase namesCases[] = {
    {"Different", "/a/one.obj /b/two.obj", "one.obj two.obj"},
    {"SameInTwoFolders", "/a/x.obj /b/x.obj /b/y.obj", "a/x.obj b/x.obj y.obj"},
    {"SameFolderNamesToo", "/p/a/x.obj /q/a/x.obj", "p/a/x.obj q/a/x.obj"},
    {"SameFileTwice", "/a/x.obj /a/../a/./x.obj /a/x.obj", "x.obj"},
};

TABLE(EntryNames, testing::Test, NamesCase, namesCases);

TEST_P(EntryNames, TellFilesApart)
{
    QStringList names;
    for (const auto &[id, entry] : makeEntries(QString(GetParam().paths).split(' ')))
        names << entry.name;
    EXPECT_EQ(names.join(' ').toStdString(), GetParam().names);
}

struct OrderCase {
    const char *name;
    SheetOrder order;
    bool reversed;
    const char *ids;
};

const OrderCase orderCases[] = {
    {"NamesAsAPersonSorts", SheetOrder::Name, false, "2 3 1 4"},
    {"NamesReversed", SheetOrder::Name, true, "4 1 3 2"},
    {"LargestFirstThenByName", SheetOrder::Size, false, "4 2 3 1"},
    {"SmallestFirst", SheetOrder::Size, true, "1 3 2 4"},
    {"MostTrianglesFirst", SheetOrder::Count, false, "1 2 3 4"},
};

TABLE(EntryOrder, testing::Test, OrderCase, orderCases);

TEST_P(EntryOrder, SortsAllIds)
{
    SheetEntries entries = makeEntries({"/m10.obj", "/M2.obj", "/m3.obj", "/z.obj"});
    const qint64 sizes[] = {1, 7, 7, 9};
    const quint64 counts[] = {40, 5, 5, 0};
    for (int id = 1; id <= 4; ++id) {
        entries[id].fileSize = sizes[id - 1];
        entries[id].count = counts[id - 1];
    }
    EXPECT_EQ(words(sortedIds(entries, GetParam().order, GetParam().reversed)).toStdString(),
              GetParam().ids);
}

struct ReleaseCase {
    const char *name;
    quint64 limit;
    const char *ids;
};

// 1 is in view; 2 to 4 are hidden, 3 was seen longest ago; 5 holds nothing. Each has 10 bytes.
const ReleaseCase releaseCases[] = {
    {"AllFit", 40, ""},
    {"OneTooMany", 39, "3"},
    {"LongestUnseenFirst", 20, "3 4"},
    {"NeverWhatIsInView", 0, "3 4 2"},
};

TABLE(EntryRelease, testing::Test, ReleaseCase, releaseCases);

TEST_P(EntryRelease, GivesBackWhatIsOutOfView)
{
    SheetEntries entries = makeEntries({"/a", "/b", "/c", "/d", "/e"});
    const quint64 seen[] = {1, 9, 2, 5, 0};
    for (auto &[id, entry] : entries) {
        entry.state = id == 5 ? SheetEntry::State::Waiting : SheetEntry::State::Shown;
        entry.visible = id == 1;
        entry.lastSeen = seen[id - 1];
    }
    const auto bytes = [](int) { return quint64(10); };
    EXPECT_EQ(words(idsToRelease(entries, GetParam().limit, bytes)).toStdString(), GetParam().ids);
}

struct LengthCase {
    const char *name;
    double unitsPerPixel, most, length;
};

const LengthCase lengthCases[] = {
    {"JustFits", 1, 100, 100},
    {"JustNot", 1, 99.9, 50},
    {"TwoAndMore", 1, 49, 20},
    {"OneAndMore", 1, 19.9, 10},
    {"Small", 1e-6, 160, 1e-4},
    {"Nothing", 0, 100, 0},
    {"Negative", -1, 100, 0},
    {"NoNumber", std::numeric_limits<double>::quiet_NaN(), 9, 0},
    {"Endless", std::numeric_limits<double>::infinity(), 100, 0},
};

TABLE(BarLength, testing::Test, LengthCase, lengthCases);

TEST_P(BarLength, IsRoundAndFits)
{
    const LengthCase &c = GetParam();
    EXPECT_NEAR(ScaleBar::roundLength(c.unitsPerPixel, c.most), c.length, c.length * 1e-9);
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

struct PickCase {
    const char *name;
    float x[3], y[3];
    float w; // of the projection's last row: the distance in front of the eye
    bool met;
};

// The square that is picked goes from -1 to 1.
const PickCase pickCases[] = {
    {"Inside", {0, 0.5f, 0}, {0, 0, 0.5f}, 1, true},
    {"AroundTheSquare", {-9, 9, 0}, {-9, -9, 9}, 1, true},
    {"EdgeCrosses", {-5, 5, 0}, {0, 0, -9}, 1, true},
    {"Beside", {2, 3, 2}, {0, 0, 1}, 1, false},
    {"BoxesMeetButNotTheTriangle", {0.9f, 3, 3}, {3, 3, 0.9f}, 1, false},
    {"TheSameTheOtherWayRound", {3, 3, 0.9f}, {0.9f, 3, 3}, 1, false},
    {"BehindTheEye", {0, 0.5f, 0}, {0, 0, 0.5f}, -1, false},
    {"FarAwayComesIn", {2, 3, 2}, {0, 0, 1}, 4, true},
};

TABLE(PartsInPick, testing::Test, PickCase, pickCases);

TEST_P(PartsInPick, MeetWhatThePickPassShows)
{
    const PickCase &c = GetParam();
    GL::Camera camera;
    for (int i = 0; i < 4; ++i)
        camera.model_matrix[i * 5] = camera.proj_matrix[i * 5] = 1;
    camera.proj_matrix[15] = double(c.w);
    // The mesh stands off its place in the world, and is twice as large.
    const QVector3D centre(10, 20, 30);
    Mesh mesh;
    for (int i = 0; i < 6; ++i) {
        const float far = i < 3 ? 0 : 1000; // the second part is never met
        mesh.positions.insert(mesh.positions.end(),
                              {centre.x() + 2 * c.x[i % 3] + far, centre.y() + 2 * c.y[i % 3], 30});
        mesh.indices.push_back(quint32(i));
    }
    mesh.parts.resize(2);
    mesh.parts[0].indexCount = mesh.parts[1].indexCount = mesh.parts[1].firstIndex = 3;
    EXPECT_EQ(partsInPick(camera, mesh, centre, 0.5f), (std::vector<bool>{c.met, false}));
    PartMarks marks(2);
    marks.setHidden(0, true);
    EXPECT_EQ(partsInPick(camera, mesh, centre, 0.5f, marks), std::vector<bool>(2));
}

} // namespace
} // namespace host
