// SPDX-License-Identifier: MIT
// A scene object's list of actions.
#include "GL/glwidget.h"

#include <gtest/gtest.h>

#include <QCoreApplication>
#include <QPointer>

namespace {

class ActionList : public testing::Test {
protected:
    std::string names() const
    {
        std::string all;
        for (const QAction *action : object.actions())
            all += action->objectName().toStdString() + ' ';
        return all;
    }
    QAction *make(const char *name)
    {
        return object.NewMouseAction(1, 2, name, &receiver, SLOT(deleteLater()));
    }

    QObject receiver;
    GLWidget object{nullptr, "object"};
};

TEST_F(ActionList, NewOnesGoToTheFrontOthersWhereTheyArePut)
{
    make("A");
    QAction *b = make("B");
    QAction *c = make("C");
    EXPECT_EQ(names(), "C B A ");
    QAction d(nullptr);
    d.setObjectName("D");
    EXPECT_EQ(object.AddAction(&d), &d);
    EXPECT_EQ(names(), "C B A D ");
    object.InsertAction(b, &d);
    EXPECT_EQ(names(), "C D B A ") << "inserted again, it moves";
    QAction stranger(nullptr);
    object.InsertAction(&stranger, c);
    EXPECT_EQ(names(), "D B A C ") << "an unknown neighbour appends";
    EXPECT_EQ(object.InsertAction(b, nullptr), nullptr);
    EXPECT_EQ(names(), "D B A C ");
    EXPECT_TRUE(object.RemoveAction(&d));
    EXPECT_FALSE(object.RemoveAction(&d));
    delete b;
    EXPECT_EQ(names(), "A C ") << "one that dies leaves by itself";
}

TEST_F(ActionList, NewActionReplacesAllOfItsName)
{
    QPointer<QAction> zoom = make("zoom");
    make("pan");
    QAction other(nullptr);
    other.setObjectName("zoom");
    QPointer<QAction> added = object.AddAction(new QAction(&receiver));
    added->setObjectName("zoom");
    QAction *fresh = object.NewKeyAction("Ctrl+S", "zoom", &receiver, SLOT(deleteLater()));
    EXPECT_EQ(names(), "zoom pan ");
    EXPECT_TRUE(zoom.isNull() && added.isNull()) << "deleted, whoever owned it";
    EXPECT_EQ(object.actions()[0], fresh);
    EXPECT_EQ(qobject_cast<KeyAction *>(fresh)->key(), QKeySequence(Qt::CTRL + Qt::Key_S));
    EXPECT_EQ(fresh->parent(), &object);
}

TEST_F(ActionList, NullNamesReplaceTheUnnamed)
{
    QPointer<QAction> unnamed = make(nullptr);
    make("A");
    QAction *fresh = object.NewKeyAction("", nullptr, &receiver, SLOT(deleteLater()));
    EXPECT_TRUE(unnamed.isNull());
    EXPECT_EQ(fresh->objectName(), "");
    EXPECT_EQ(names(), " A ");
}

TEST_F(ActionList, ActionsThatCouldNotBeConnectedAreKept)
{
    QAction *a = object.NewMouseAction(5, 6, "a", &receiver, SLOT(missing(int, int)));
    EXPECT_EQ(qobject_cast<MouseAction *>(a)->binding(), 5u);
    EXPECT_EQ(qobject_cast<MouseAction *>(a)->mask(), 6u);
    object.NewKeyAction("K", "b", nullptr, nullptr);
    EXPECT_EQ(names(), "b a ");
}

TEST_F(ActionList, DeleteActionTakesTheFirstOfTheName)
{
    make("twin");
    QAction *first = make("x");
    first->setObjectName("twin");
    EXPECT_FALSE(object.DeleteAction(nullptr));
    EXPECT_FALSE(object.DeleteAction("Twin"));
    QPointer<QAction> second = object.actions()[1];
    EXPECT_TRUE(object.DeleteAction("twin"));
    EXPECT_EQ(object.actions(), QList<QAction *>{second});
    EXPECT_TRUE(object.DeleteAction("twin"));
    EXPECT_EQ(names(), "");
}

TEST_F(ActionList, ActionsLeaveWithTheirReceiver)
{
    auto *host = new QObject;
    object.NewMouseAction(1, 0, "a", host, SLOT(deleteLater()));
    delete host;
    QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
    EXPECT_EQ(names(), "");
}

TEST_F(ActionList, EnablesByName)
{
    QAction *a = make("a");
    EXPECT_EQ(object.enableAction("a", false), a);
    EXPECT_FALSE(a->isEnabled());
    EXPECT_EQ(object.enableAction("b", false), nullptr);
}

} // namespace
