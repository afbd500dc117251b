// SPDX-License-Identifier: MIT
// Bindings: how a word matches, which action is found, what is emitted to which slot.
#include "GL/action.h"

#include <QCoreApplication>

#include "tests/support/window.h"

namespace {

constexpr quint32 shift = 0x02000000, control = 0x04000000, allModifiers = 0x3E000000;

const std::tuple<quint32, quint32, quint32, int> matches[] = {
    // binding, mask, word, score
    {0x1, 0, 0x1, 1},
    {0x1, 0, control | 0x1, -1},
    {control | 0x1, 0, 0x1, -1},
    {0x1, allModifiers, control | 0x1, 1},
    {shift | 0x1, allModifiers, 0x1, -1},
    {shift | 0x1, allModifiers, shift | control | 0x1, 2},
    {0, 0, 0x1, -1},
    {0x80000000, 0, 0x80000000, 1},
    {0, 0xFFFFFFFF, 0xFFFFFFFF, 0}};

TEST(MouseActionTest, ScoresWordsByTheirBits)
{
    EXPECT_TRUE(bit(31, 0x80000000ul) && bit(0, 1) && bit(63, 1ul << 63));
    EXPECT_FALSE(bit(30, 0x80000000ul) || bit(-1, 3) || bit(64, 1));
    EXPECT_EQ(bit_count(control | 1, 32) + 10 * bit_count(0xFF, 3) + bit_count(0xFF, -1), 32);
    for (const auto &[binding, mask, word, score] : matches) {
        MouseAction action(nullptr, nullptr);
        EXPECT_EQ(action.binding() + action.mask(), 0u);
        action.setBinding(binding, mask);
        EXPECT_EQ(action.match(word), score) << std::hex << binding << ' ' << mask << ' ' << word;
        action.setProperty("binding", 7u);
        EXPECT_EQ(action.property("mask").toUInt(), mask) << "each alone";
        action.setProperty("mask", 8u);
        EXPECT_EQ(action.property("binding").toUInt(), 7u);
    }
}

const std::tuple<const char *, quint32, quint32> bindings[] = {{"left", 0x1, allModifiers},
                                                               {"controlLeft", control | 0x1, 0},
                                                               {"middle", 0x4, 0},
                                                               {"again", 0x4, 0},
                                                               {"off", 0x2, 0},
                                                               {"right", 0x2, 0},
                                                               {"double", 0x101, 0},
                                                               {"none", 0, 0}};
// Press, buttons now and last, modifiers now and last, double press and click => what is found.
const std::tuple<bool, int, int, quint32, quint32, int, int, const char *> finds[] = {
    {true, 1, 2, 0, control, 0, 0, "left"},  // what is held now
    {false, 0, 1, control, 0, 0, 0, "left"}, // what was held
    {false, 0, 1, 0, control, 0, 0, "controlLeft"},
    {true, 1, 0, control, 0, 0, 0, "controlLeft"}, // more bits win, though later
    {true, 4, 0, 0, 0, 0, 0, "middle"},            // the earlier of equal ones
    {true, 2, 0, 0, 0, 0, 0, "right"},             // disabled ones are passed over
    {true, 1, 0, 0, 0, 1, 0, "double"},
    {false, 0, 1, 0, 0, 1, 0, "left"},
    {false, 0, 1, 0, 0, 0, 1, "double"},
    {true, 7, 0, 0, 0, 0, 0, ""},
    {true, 0, 0, 0, 0, 0, 0, "none"},
};

TEST(MouseActionTest, FindTakesTheBest)
{
    QObject owner;
    QList<QAction *> actions{new QAction(&owner), new KeyAction(&owner, "key")};
    for (const auto &[name, binding, mask] : bindings) {
        auto *action = new MouseAction(&owner, name);
        action->setBinding(binding, mask);
        action->setEnabled(*name != 'o');
        actions << action;
    }
    for (const auto &[press, now, last, modifier, lastModifier, doubled, clicked, name] : finds) {
        const Mouse m{
            0,       0,      0, 0, 0, 0, 0, 0, 0, now, last, int(modifier), int(lastModifier),
            doubled, clicked};
        const MouseAction *found = MouseAction::find(actions, m, press);
        EXPECT_EQ(found ? found->objectName() : "", QString(name));
    }
}

TEST(KeyActionTest, FindTakesTheFirstEnabledOfThatKey)
{
    QObject owner;
    QList<QAction *> actions{new MouseAction(&owner, nullptr)};
    for (const char *name : {"off", "first", "second", "plain"}) {
        actions << new KeyAction(&owner, name);
        actions.last()->setProperty("key", QKeySequence(*name == 'p' ? "S" : "Ctrl+S"));
        actions.last()->setEnabled(*name != 'o');
    }
    EXPECT_EQ(KeyAction::find(actions, Qt::Key_S | int(Qt::ControlModifier)), actions[2]);
    EXPECT_EQ(KeyAction::find(actions, Qt::Key_S), actions[4]);
    EXPECT_EQ(KeyAction::find(actions, Qt::Key_S | int(Qt::ShiftModifier)), nullptr);
}

TEST(ActionTest, EmitsInOrder)
{
    Recorder host;
    KeyAction key(nullptr, "k");
    MouseAction mouse(nullptr, "m");
    host.hear(&key, "*");
    host.hear(&mouse, "*");
    key.activate(nullptr, true, false);
    EXPECT_EQ(host.take(), "k k:null k:1 k:null,1 k:1,0 k:null,1,0");
    key.activate(nullptr, true, true);
    EXPECT_EQ(host.take(), "k k:null k:1,1 k:null,1,1");
    key.activate(nullptr, false, false);
    EXPECT_EQ(host.take(), "k:0 k:null,0 k:0,0 k:null,0,0");
    Mouse m{5, 6};
    mouse.activate(nullptr, m, true);
    EXPECT_EQ(host.take(), "m m:5;6 m:null m:1 m:5;6,1 m:null,1");
    mouse.activate(nullptr, m, false);
    EXPECT_EQ(host.take(), "m:0 m:5;6,0 m:null,0");
}

/// Offers a slot of every kind and logs which one was called.
class Receiver : public QObject {
    Q_OBJECT

public:
    QString log;

public Q_SLOTS:
    void none() { log += "none"; }
    void state(bool) { log += "state"; }
    void repeat(bool, bool) { log += "repeat"; }
    void object(GLW *) { log += "object"; }
    void objectState(GLW *, bool) { log += "objectState"; }
    void all(GLW *, bool, bool) { log += "all"; }
    void mouse(Mouse *) { log += "mouse"; }
    void mouseState(Mouse *, bool) { log += "mouseState"; }
    void number(int) { log += "number"; }
};

// A slot, and what a press of a key, of a mouse and of a plain action calls; "" where it does not
// fit.
const std::tuple<const char *, QString, QString, QString> connects[] = {
    {SLOT(none()), "none", "none", "none"},
    {SLOT(state(bool)), "state", "state", "state"},
    {SLOT(repeat(bool, bool)), "repeat", "", ""},
    {SLOT(object(GLW *)), "object", "object", ""},
    {SLOT(objectState(GLW *, bool)), "objectState", "objectState", ""},
    {"1all(GLW*,bool,bool)", "all", "", ""},
    {SLOT(mouse(Mouse *)), "", "mouse", ""},
    {"1mouseState( Mouse *,bool )", "", "mouseState", ""},
    {"1none", "", "", ""},
    {SLOT(number(int)), "", "", ""},
    {SLOT(missing()), "", "", ""},
    {nullptr, "", "", ""},
};

TEST(ActionTest, TakesExactlyOneOverloadAndDiesWithItsReceiver)
{
    Mouse m;
    for (const auto &[slot, ofKey, ofMouse, ofPlain] : connects) {
        QPointer<KeyAction> key = new KeyAction(nullptr, nullptr);
        QPointer<MouseAction> mouse = new MouseAction(nullptr, nullptr);
        QPointer<QAction> plain = new QAction(nullptr);
        auto *receiver = new Receiver;
        EXPECT_EQ(key->connect(receiver, slot), !ofKey.isEmpty()) << slot;
        EXPECT_EQ(mouse->connect(receiver, slot), !ofMouse.isEmpty()) << slot;
        EXPECT_EQ(action_connect(plain, receiver, slot), !ofPlain.isEmpty()) << slot;
        EXPECT_FALSE(key->connect(nullptr, slot) || action_connect(nullptr, qApp, slot));
        key->activate(nullptr, true, false);
        mouse->activate(nullptr, m, true);
        plain->trigger();
        EXPECT_EQ(receiver->log, ofKey + ofMouse + ofPlain);
        delete receiver;
        QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
        EXPECT_EQ(!key + !mouse + !plain, slot ? 3 : 0) << "bound, even if the slot did not fit";
        delete key;
        delete mouse;
        delete plain;
    }
}

} // namespace

#include "action_test.moc"
