// SPDX-License-Identifier: MIT
// Clicks on the tiles of a shown window, and slots that take things away while they are in use.
#include "tests/GL/glmultiwidget_sheet.h"

namespace {

struct Clicked : Sheet {
    using Sheet::Sheet;
    std::string told; // what selection and visibility told during the gestures
    /// One gesture, such as "ctrl+click 3"; what does not end at a tile ends at the border.
    void gesture(const QString &text)
    {
        frame();
        log.take();
        const QString verb = text.section(' ', 0, 0).section('+', -1);
        const int id = text.section(' ', 1).toInt();
        const QPoint p = id ? centre(id) : QPoint(1, 1);
        const Qt::MouseButton button = text.startsWith("right") ? Qt::RightButton : Qt::LeftButton;
        const Qt::KeyboardModifiers held =
            text.startsWith("ctrl") ? Qt::ControlModifier : Qt::NoModifier;
        QWindow *w = window->windowHandle();
        if (verb == "press")
            QTest::mousePress(w, button, held, p);
        else if (verb == "move")
            QTest::mouseMove(w, p);
        else if (verb == "release")
            QTest::mouseRelease(w, button, held, p);
        else if (verb == "double")
            QTest::mouseDClick(w, button, held, p);
        else
            QTest::mouseClick(w, button, held, p);
        const std::string words = log.take();
        told += (told.empty() || words.empty() ? "" : " ") + words;
    }
};

struct GestureCase {
    const char *name;
    int tiles;
    const char *gestures;
    const char *told;
    const char *property = "flags"; // of the view, set to false before
    QList<int> hidden = {};
    friend void PrintTo(const GestureCase &c, std::ostream *out) { *out << c.name; }
};

// Four tiles stand in two rows: 1 and 2 above 3 and 4.
const GestureCase gestureCases[] = {
    {"EveryRow", 4, "click 1, click 2, click 3, click 4", "values1 values2 values3 values4"},
    {"AgainClears", 4, "click 3, click 3", "values3 values"},
    {"ControlAddsInOrderAndRemoves", 4, "ctrl+click 3, ctrl+click 1, ctrl+click 3",
     "values3 values1,3 values1"},
    {"PlainAfterControlSelectsOne", 4, "click 4, ctrl+click 1, click 4",
     "values4 values1,4 values4"},
    {"ControlRemovesTheLast", 4, "click 2, ctrl+click 2", "values2 values"},
    {"ReleasedOnAnotherTile", 4, "press 1, release 3", ""},
    {"DraggedOutAndBack", 4, "press 1, move 3, move 1, release 1", "values1"},
    {"DraggedOverIsNotPressed", 4, "press 1, move 3, release 3", ""},
    {"PressedOnTheBorder", 4, "press 0, release 2", ""},
    {"RightButton", 4, "right+click 1", ""},
    {"DoubleOpensAndCloses", 4, "double 2, double 2", "values2 values visible1 values visible4"},
    {"DoubleInTheLowerRow", 4, "double 3, click 3", "values3 values visible1"},
    {"ClickAfterReturningFromDouble", 4, "double 4, double 4, click 1",
     "values4 values visible1 values visible4 values1"},
    {"ControlDoubleIsOneClick", 4, "ctrl+double 2", "values2"},
    {"DoubleOnTheBorder", 4, "double 0", ""},
    {"LoneTile", 1, "click 1, ctrl+click 1", ""},
    {"LoneTileStaysOpen", 1, "double 1", "values"},
    {"LoneVisibleTile", 3, "click 2", "", "flags", {1, 3}},
    {"SelectionSwitchedOff", 4, "click 1, ctrl+click 2, double 2", "values visible1",
     "enableSelection"},
    {"ViewDisabled", 4, "click 1, ctrl+click 2, double 2", "", "enabled"},
};

class Gestures : public testing::TestWithParam<GestureCase> {};

TEST_P(Gestures, Tell)
{
    const GestureCase &c = GetParam();
    Clicked s(c.tiles);
    s.view->SetVisible(c.hidden, false);
    ASSERT_TRUE(s.show());
    s.view->setProperty(c.property, false);
    for (const QString &text : QString(c.gestures).split(", "))
        s.gesture(text);
    EXPECT_EQ(s.told, c.told);
    const size_t last = s.told.rfind("values");
    QStringList selected;
    for (int id : s.view->GetSelected())
        selected << QString::number(id);
    EXPECT_EQ("values" + selected.join(',').toStdString(),
              last == std::string::npos ? "values"
                                        : s.told.substr(last, s.told.find(' ', last) - last));
}

INSTANTIATE_TEST_SUITE_P(Rows, Gestures, testing::ValuesIn(gestureCases), rowName());

TEST(Clicks, AloneTileFillsTheWindowAndTheGridReturns)
{
    Clicked s(4);
    ASSERT_TRUE(s.show());
    const QRectF cell = s.tile(3)->orect;
    s.gesture("double 3");
    s.frame();
    EXPECT_EQ(s.tile(3)->orect, QRectF(2, 2, 596, 396));
    EXPECT_EQ(s.view->GetVisible(), QList<int>{3});
    s.gesture("double 3");
    s.frame();
    EXPECT_EQ(s.tile(3)->orect, cell);
    s.view->doublePress = 1;
    s.told.clear();
    s.gesture("click 1");
    EXPECT_EQ(s.told, "") << "the release that ends a double click";
    for (GLW *none : {static_cast<GLW *>(nullptr), static_cast<GLW *>(s.tile(1))}) {
        s.log.take();
        if (none)
            none->gl = nullptr;
        s.view->LeftMouse(none, true);
        s.view->CtrlLeftMouse(none, false);
        s.view->LeftDoubleMouse(none, true);
        EXPECT_EQ(s.log.take(), "") << "without a tile, or its window";
    }
}

/// Something a host's slot does while the view is at work, and how many tiles of four it leaves.
struct Interference {
    const char *name;
    void (*run)(Sheet &, GLW *current);
    int left; // -1: the view is gone
};

const Interference interferences[] = {
    {"RemovesTheTile", [](Sheet &s, GLW *w) { s.view->RemoveTile(w->id()); }, -2},
    {"DeletesTheTile", [](Sheet &s, GLW *w) { delete (w == s.view ? nullptr : w); }, -2},
    {"RemovesTheNext", [](Sheet &s, GLW *) { s.view->RemoveTile(4); }, 3},
    {"Adds", [](Sheet &s, GLW *) { s.view->AddTile(9); }, 5},
    {"Clears", [](Sheet &s, GLW *) { s.view->Clear(); }, 0},
    {"Reorders",
     [](Sheet &s, GLW *) {
         s.view->SetOrder({4, 3});
     },
     4},
    {"TakesTheViewOut", [](Sheet &s, GLW *) { s.window->RemoveGLWidget(s.view); }, 4},
    {"DeletesTheView", [](Sheet &s, GLW *) { delete s.view; }, -1},
    {"DeletesTheWindow", [](Sheet &s, GLW *) { delete s.window; }, 4},
};

class Interferences : public testing::TestWithParam<std::tuple<int, std::string>> {};

std::string interferenceName(const testing::TestParamInfo<std::tuple<int, std::string>> &row)
{
    return interferences[std::get<0>(row.param)].name + std::get<1>(row.param);
}

TEST_P(Interferences, InAPassLeaveTheRestAtWork)
{
    const Interference &act = interferences[std::get<0>(GetParam())];
    const std::string &when = std::get<1>(GetParam());
    Sheet s(4);
    ASSERT_TRUE(s.show());
    s.point(s.centre(3));
    const int current = when.back() >= '1' && when.back() <= '4' ? when.back() - '0' : 0;
    const int expected = act.left == -2 ? (current ? 3 : 4) : act.left;
    bool done = false;
    s.log.on = [&](const std::string &name, GLW *w) {
        if (done || name + (current ? std::to_string(w->id()) : "") != when)
            return;
        done = true;
        act.run(s, w);
    };
    s.view->UpdateLayout();
    s.log.take();
    s.frame();
    EXPECT_TRUE(done);
    const std::string frame = s.log.take();
    ASSERT_EQ(s.view.isNull(), expected == -1);
    if (s.view) {
        EXPECT_EQ(s.view->tiles.size(), expected);
    }
    // What is not concerned goes on in the same frame; a view without window stops at once.
    const bool stops = !s.view || !s.window || !s.view->gl;
    const std::string last = frame.substr(frame.rfind(' ') + 1).substr(0, when.size());
    EXPECT_EQ(stops ? last == when : frame.find("DrawFG") != std::string::npos, true) << frame;
    s.frame();
}

std::vector<std::string> stages()
{
    return {"share",  "Update1", "Update3", "Pick3D3", "Pick2D3", "Draw",
            "DrawBG", "Draw3D1", "Draw3D3", "Draw2D1", "Draw2D4", "DrawFG"};
}

INSTANTIATE_TEST_SUITE_P(Rows, Interferences,
                         testing::Combine(testing::Range(0, int(std::size(interferences))),
                                          testing::ValuesIn(stages())),
                         interferenceName);

struct MidClickCase {
    const char *name;
    const char *gesture;
    int at; // the notice during which it happens, from 1
};

class MidClick : public testing::TestWithParam<std::tuple<int, int>> {};

const MidClickCase midClickCases[] = {
    {"OnSelection", "click 3", 1},
    {"OnClearedSelection", "double 3", 2},
    {"OnVisibility", "double 3", 3},
};

TEST_P(MidClick, NothingGoneIsRead)
{
    const Interference &act = interferences[std::get<0>(GetParam())];
    const MidClickCase &when = midClickCases[std::get<1>(GetParam())];
    Clicked s(4);
    ASSERT_TRUE(s.show());
    int notices = 0;
    s.log.on = [&](const std::string &name, GLW *) {
        if ((name == "values" || name == "visible") && ++notices == when.at)
            act.run(s, s.tile(3));
    };
    s.gesture(when.gesture);
    EXPECT_GE(notices, when.at);
    const int expected = act.left == -2 ? 3 : act.left;
    ASSERT_EQ(s.view.isNull(), expected == -1);
    if (s.view) {
        EXPECT_EQ(s.view->tiles.size(), expected);
    }
    s.frame();
}

INSTANTIATE_TEST_SUITE_P(Rows, MidClick,
                         testing::Combine(testing::Range(0, int(std::size(interferences))),
                                          testing::Range(0, 3)),
                         [](const auto &row) {
                             return std::string(interferences[std::get<0>(row.param)].name) +
                                    midClickCases[std::get<1>(row.param)].name;
                         });

} // namespace
