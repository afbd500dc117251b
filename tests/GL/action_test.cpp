// SPDX-License-Identifier: MIT
#include "GL/action.h"

#include <gtest/gtest.h>

#include <QCoreApplication>
#include <QStringList>

#include "table.h"

namespace {

constexpr quint32 shift = 0x02000000;
constexpr quint32 control = 0x04000000;
constexpr quint32 allModifiers = 0x3E000000;

/// Offers a slot of every kind and logs which one was called with what.
class Receiver : public QObject {
    Q_OBJECT

public:
    QStringList log;

public Q_SLOTS:
    void none() { log << "none"; }
    void state(bool s) { log << QString("state %1").arg(s); }
    void stateRepeat(bool s, bool r) { log << QString("stateRepeat %1 %2").arg(s).arg(r); }
    void object(GLW *) { log << "object"; }
    void objectState(GLW *, bool s) { log << QString("objectState %1").arg(s); }
    void objectStateRepeat(GLW *, bool s, bool r)
    {
        log << QString("objectStateRepeat %1 %2").arg(s).arg(r);
    }
    void mouse(Mouse *m) { log << QString("mouse %1").arg(m->x); }
    void mouseState(Mouse *m, bool s) { log << QString("mouseState %1 %2").arg(m->x).arg(s); }
    void number(int) { log << "number"; }
};

TEST(BitTest, CountsTheLowestBits)
{
    EXPECT_TRUE(bit(31, 0x80000000ul));
    EXPECT_FALSE(bit(30, 0x80000000ul));
    EXPECT_EQ(bit_count(control | 1, 32), 2);
    EXPECT_EQ(bit_count(0xFF, 3), 3);
    EXPECT_EQ(bit_count(0xFF, 0), 0);
    EXPECT_EQ(bit_count(0xFF, -1), 0);
}

struct MatchCase {
    const char *name;
    quint32 binding, mask, word;
    int score;
};

const MatchCase matchCases[] = {
    {"Exact", 0x1, 0, 0x1, 1},
    {"ForeignBitRefused", 0x1, 0, control | 0x1, -1},
    {"MissingBitRefused", control | 0x1, 0, 0x1, -1},
    {"MaskedBitIgnored", 0x1, allModifiers, control | 0x1, 1},
    {"BoundBitNeededThoughMasked", shift | 0x1, allModifiers, 0x1, -1},
    {"BoundBitCountsThoughMasked", shift | 0x1, allModifiers, shift | control | 0x1, 2},
    {"DoubleClickRefused", 0x1, allModifiers, 0x101, -1},
    {"NothingMatchesNothing", 0, 0, 0, 0},
    {"NothingRefusesAnything", 0, 0, 0x1, -1},
    {"EverythingMasked", 0, 0xFFFFFFFF, 0xFFFFFFFF, 0},
};

TABLE(MouseActionMatch, testing::Test, MatchCase, matchCases);

TEST_P(MouseActionMatch, Scores)
{
    MouseAction action(nullptr, nullptr);
    action.setBinding(GetParam().binding, GetParam().mask);
    EXPECT_EQ(action.match(GetParam().word), GetParam().score);
}

struct FindCase {
    const char *name;
    Mouse mouse;
    bool press;
    const char *expected; // object name, "" for none
};

Mouse record(int button, int last_button, int modifier, int last_modifier, int double_press = 0,
             int double_click = 0)
{
    Mouse m;
    m.button = button;
    m.last_button = last_button;
    m.modifier = modifier;
    m.last_modifier = last_modifier;
    m.double_press = double_press;
    m.double_click = double_click;
    return m;
}

const FindCase findCases[] = {
    {"PressUsesWhatIsHeldNow", record(1, 2, 0, control), true, "left"},
    {"ReleaseUsesWhatWasHeld", record(0, 1, control, 0), false, "left"},
    {"ReleaseUsesModifiersBefore", record(0, 1, 0, control), false, "controlLeft"},
    {"MoreBitsWinThoughLater", record(1, 0, control, 0), true, "controlLeft"},
    {"EqualScoreGoesToTheEarlier", record(4, 0, 0, 0), true, "middle"},
    {"DisabledIsPassedOver", record(2, 0, 0, 0), true, "right"},
    {"DoublePress", record(1, 0, 0, 0, 1), true, "double"},
    {"DoublePressIsNotForReleases", record(0, 1, 0, 0, 1), false, "left"},
    {"DoubleClickRelease", record(0, 1, 0, 0, 0, 1), false, "double"},
    {"WheelBit", record(0x10, 0, 0, 0), true, "wheelDown"},
    {"NothingFits", record(7, 0, 0, 0), true, ""},
};

TABLE(MouseActionFind, testing::Test, FindCase, findCases);

TEST_P(MouseActionFind, TakesTheBest)
{
    QObject owner;
    QList<QAction *> actions{new QAction(&owner), new KeyAction(&owner, "key")};
    const auto add = [&](const char *name, quint32 binding, quint32 mask, bool enabled = true) {
        auto *action = new MouseAction(&owner, name);
        action->setBinding(binding, mask);
        action->setEnabled(enabled);
        actions << action;
    };
    add("left", 0x1, allModifiers);
    add("controlLeft", control | 0x1, 0);
    add("middle", 0x4, 0);
    add("middleAgain", 0x4, 0);
    add("rightOff", 0x2, 0, false);
    add("right", 0x2, 0);
    add("double", 0x101, 0);
    add("wheelDown", 0x10, 0);
    const MouseAction *found = MouseAction::find(actions, GetParam().mouse, GetParam().press);
    EXPECT_EQ(found ? found->objectName().toStdString() : "", GetParam().expected);
}

TEST(KeyActionTest, FindTakesTheFirstEnabledOfThatKey)
{
    QObject owner;
    QList<QAction *> actions{new MouseAction(&owner, nullptr)};
    for (const char *name : {"off", "first", "second", "plain"}) {
        auto *action = new KeyAction(&owner, name);
        const bool plain = action->objectName() == "plain";
        action->setKey(QKeySequence(Qt::Key_S + (plain ? 0 : int(Qt::ControlModifier))));
        action->setEnabled(action->objectName() != "off");
        actions << action;
    }
    EXPECT_EQ(KeyAction::find(actions, Qt::Key_S | int(Qt::ControlModifier)), actions[2]);
    EXPECT_EQ(KeyAction::find(actions, Qt::Key_S), actions[4]);
    EXPECT_EQ(KeyAction::find(actions, Qt::Key_S | int(Qt::ShiftModifier)), nullptr);
}

/// Connects every overload, so that the log shows the order of emission.
template <typename Action> QStringList emitted(const QStringList &overloads, void (*fire)(Action &))
{
    Action action(nullptr, nullptr);
    Receiver receiver;
    for (const QString &overload : overloads) {
        const QStringList pair = overload.split('>');
        QObject::connect(&action, ("2triggered(" + pair[0] + ")").toLatin1(), &receiver,
                         ("1" + pair[1] + "(" + pair[0] + ")").toLatin1());
    }
    fire(action);
    return receiver.log;
}

TEST(KeyActionTest, EmitsInOrder)
{
    // Connected backwards: the order must be the emission's.
    const QStringList all{"GLW*,bool,bool>objectStateRepeat",
                          "bool,bool>stateRepeat",
                          "GLW*,bool>objectState",
                          "bool>state",
                          "GLW*>object",
                          ">none"};
    EXPECT_EQ(emitted<KeyAction>(all, [](KeyAction &a) { a.activate(nullptr, true, false); }),
              (QStringList{"none", "object", "state 1", "objectState 1", "stateRepeat 1 0",
                           "objectStateRepeat 1 0"}));
    EXPECT_EQ(emitted<KeyAction>(all, [](KeyAction &a) { a.activate(nullptr, true, true); }),
              (QStringList{"none", "object", "stateRepeat 1 1", "objectStateRepeat 1 1"}));
    EXPECT_EQ(
        emitted<KeyAction>(all, [](KeyAction &a) { a.activate(nullptr, false, false); }),
        (QStringList{"state 0", "objectState 0", "stateRepeat 0 0", "objectStateRepeat 0 0"}));
}

TEST(MouseActionTest, EmitsInOrder)
{
    const QStringList all{"GLW*,bool>objectState", "Mouse*,bool>mouseState", "bool>state",
                          "GLW*>object",           "Mouse*>mouse",           ">none"};
    const auto press = [](MouseAction &a) {
        Mouse m;
        m.x = 5;
        a.activate(nullptr, m, true);
    };
    const auto release = [](MouseAction &a) {
        Mouse m;
        a.activate(nullptr, m, false);
    };
    EXPECT_EQ(emitted<MouseAction>(all, press), (QStringList{"none", "mouse 5", "object", "state 1",
                                                             "mouseState 5 1", "objectState 1"}));
    EXPECT_EQ(emitted<MouseAction>(all, release),
              (QStringList{"state 0", "mouseState 0 0", "objectState 0"}));
}

struct ConnectCase {
    const char *name;
    const char *slot;
    bool keyFits, mouseFits;
    const char *keyLog, *mouseLog; // of one press
};

const ConnectCase connectCases[] = {
    {"None", SLOT(none()), true, true, "none", "none"},
    {"State", SLOT(state(bool)), true, true, "state 1", "state 1"},
    {"StateRepeat", SLOT(stateRepeat(bool, bool)), true, false, "stateRepeat 1 0", ""},
    {"Object", SLOT(object(GLW *)), true, true, "object", "object"},
    {"ObjectState", SLOT(objectState(GLW *, bool)), true, true, "objectState 1", "objectState 1"},
    {"MouseRecord", SLOT(mouse(Mouse *)), false, true, "", "mouse 0"},
    {"MouseState", SLOT(mouseState(Mouse *, bool)), false, true, "", "mouseState 0 1"},
    {"WithoutBlanks", "1objectState(GLW*,bool)", true, true, "objectState 1", "objectState 1"},
    {"WithOddBlanks", "1mouseState( Mouse *,bool )", false, true, "", "mouseState 0 1"},
    {"TwoBoolsWithoutBlank", "1stateRepeat(bool,bool)", true, false, "stateRepeat 1 0", ""},
    {"NoParentheses", "1none", false, false, "", ""},
    {"NothingFits", SLOT(number(int)), false, false, "", ""},
    {"NoSuchSlot", SLOT(missing()), false, false, "", ""},
    {"NullSlot", nullptr, false, false, "", ""},
};

TABLE(ActionConnect, testing::Test, ConnectCase, connectCases);

TEST_P(ActionConnect, TakesExactlyOneOverloadAndDiesWithItsReceiver)
{
    const ConnectCase &c = GetParam();
    auto *receiver = new Receiver;
    QPointer<KeyAction> key = new KeyAction(nullptr, nullptr);
    QPointer<MouseAction> mouse = new MouseAction(nullptr, nullptr);
    EXPECT_EQ(key->connect(receiver, c.slot), c.keyFits);
    EXPECT_EQ(mouse->connect(receiver, c.slot), c.mouseFits);
    EXPECT_FALSE(key->connect(nullptr, c.slot));

    key->activate(nullptr, true, false);
    EXPECT_EQ(receiver->log.join(','), c.keyLog);
    receiver->log.clear();
    Mouse m;
    mouse->activate(nullptr, m, true);
    EXPECT_EQ(receiver->log.join(','), c.mouseLog);

    delete receiver;
    QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
    EXPECT_EQ(bool(key), !c.slot) << "bound, even if the slot did not fit";
    EXPECT_EQ(bool(mouse), !c.slot);
    delete key;
    delete mouse;
}

} // namespace

#include "action_test.moc"
