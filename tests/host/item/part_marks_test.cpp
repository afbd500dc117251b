// SPDX-License-Identifier: MIT
// What is selected and hidden after each of some steps.
#include "host/item/part_marks.h"

#include <functional>
#include <string>

#include "tests/GL/table.h"

namespace host {
namespace {

struct MarksCase {
    const char *name;
    std::function<void(PartMarks &)> step;
    const char *after; // of four parts, of which the second is selected and the last one hidden
};

const MarksCase marksCases[] = {
    {"AsItWas", [](PartMarks &) {}, ".s.h"},
    {"HiddenIsNotSelected",
     [](PartMarks &m) {
         m.select({true, false, false, true});
     },
     "s..h"},
    {"NorOneByOne", [](PartMarks &m) { m.setSelected(3, true); }, ".s.h"},
    {"AddedAndTaken", [](PartMarks &m) { m.setSelected(0, true), m.setSelected(1, false); },
     "s..h"},
    {"TwiceIsOnce", [](PartMarks &m) { m.setSelected(1, true), m.setHidden(3, true); }, ".s.h"},
    {"Cleared", [](PartMarks &m) { m.clearSelection(); }, "...h"},
    {"HidingTakesTheSelection", [](PartMarks &m) { m.hideSelected(); }, ".h.h"},
    {"HidingOne", [](PartMarks &m) { m.setHidden(0, true); }, "hs.h"},
    {"ShowingOne", [](PartMarks &m) { m.setHidden(3, false); }, ".s.."},
    {"ShowOnly", [](PartMarks &m) { m.showOnlySelected(); }, "hshh"},
    {"ShowOnlyNothing", [](PartMarks &m) { m.clearSelection(), m.showOnlySelected(); }, "...h"},
    {"ShowAll", [](PartMarks &m) { m.showAll(); }, ".s.."},
    {"BeyondTheCount", [](PartMarks &m) { m.setHidden(4, true), m.setSelected(4, true); }, ".s.h"},
};

TABLE(PartMarksStep, testing::Test, MarksCase, marksCases);

TEST_P(PartMarksStep, LeavesTheseMarks)
{
    PartMarks marks(4);
    marks.setSelected(1, true);
    marks.setHidden(3, true);
    GetParam().step(marks);
    std::string after;
    std::size_t selected = 0, hidden = 0;
    for (std::size_t i = 0; i < marks.count(); ++i) {
        after += marks.isHidden(i) ? 'h' : marks.isSelected(i) ? 's' : '.';
        selected += marks.isSelected(i);
        hidden += marks.isHidden(i);
    }
    EXPECT_EQ(after, GetParam().after);
    EXPECT_EQ(marks.selectedCount(), selected);
    EXPECT_EQ(marks.hiddenCount(), hidden);
    EXPECT_FALSE(marks.isHidden(4) || marks.isSelected(4));
}

} // namespace
} // namespace host
