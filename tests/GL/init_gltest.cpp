// SPDX-License-Identifier: MIT
// The module as a host loads it: entry, factories, the window's entry in its parent.
#include <dlfcn.h>

#include "GL/glmultiwidget.h"
#include "testing.h"

namespace {

using Factory = QObject *(*)(QObject *, const char *);
using Entry = int (*)(QObject *);

class Registrar : public QObject {
    Q_OBJECT

public:
    QStringList order;
    QMap<QString, Factory> factories;

public Q_SLOTS:
    void Register(const char *kind, const char *name, void *factory)
    {
        order << kind + QString(":") + name;
        factories[name] = reinterpret_cast<Factory>(factory);
    }
};

class Module : public testing::Test {
protected:
    Module()
    {
        void *library = dlopen(GLWINDOW_MODULE, RTLD_NOW);
        const auto entry = library ? reinterpret_cast<Entry>(dlsym(library, "init")) : nullptr;
        EXPECT_TRUE(entry);
        if (!entry)
            return;
        EXPECT_EQ(entry(nullptr), 1);
        QObject deaf;
        EXPECT_EQ(entry(&deaf), 1);
        EXPECT_EQ(entry(&host), 1);
    }

    Registrar host;
};

TEST_F(Module, RegistersItsClassesInOrder)
{
    EXPECT_EQ(host.order,
              (QStringList{"qobject:KeyAction", "qobject:MouseAction", "qobject:GLWidget",
                           "qobject:GLMultiWidget", "qobject:GLWindow"}));
}

TEST_F(Module, FactoriesGiveParentAndName)
{
    for (const char *name : {"KeyAction", "MouseAction", "GLWidget", "GLMultiWidget"}) {
        QObject parent;
        QObject *object = host.factories[name](&parent, "b\xE4r");
        EXPECT_STREQ(object->metaObject()->className(), name);
        EXPECT_EQ(object->parent(), &parent);
        EXPECT_EQ(object->objectName(), QString::fromLatin1("b\xE4r"));
        EXPECT_EQ(host.factories[name](&parent, nullptr)->objectName(), "");
    }
}

TEST_F(Module, WindowIsEnteredInAParentThatIsNoWidget)
{
    QObject *window = host.factories["GLWindow"](&host, "main");
    EXPECT_STREQ(window->metaObject()->className(), "QGLWindow");
    EXPECT_EQ(window->objectName(), "main");
    EXPECT_EQ(window->parent(), nullptr);
    EXPECT_EQ(host.property("main").value<QObject *>(), window);
    EXPECT_STREQ(window->property("parent").typeName(), "QPointer<QObject>");
    QVariant parent = window->property("parent");
    EXPECT_TRUE(parent.convert(qMetaTypeId<QObject *>()));
    EXPECT_EQ(parent.value<QObject *>(), &host);
    delete window;
    EXPECT_FALSE(host.dynamicPropertyNames().contains("main"));
}

TEST_F(Module, WindowMayOutliveItsParent)
{
    auto *parent = new QObject;
    QScopedPointer<QObject> window(host.factories["GLWindow"](parent, "main"));
    delete parent;
    EXPECT_EQ(window->property("parent").value<QPointer<QObject>>(), nullptr);
}

TEST_F(Module, OtherWindowsAreNotEntered)
{
    QWidget widget;
    QObject *child = host.factories["GLWindow"](&widget, "main");
    EXPECT_EQ(child->parent(), &widget);
    EXPECT_EQ(widget.dynamicPropertyNames().size(), 0);
    EXPECT_FALSE(child->property("parent").isValid());
    for (const char *name : {"", static_cast<const char *>(nullptr)}) {
        QScopedPointer<QObject> window(host.factories["GLWindow"](&host, name));
        EXPECT_EQ(window->objectName(), "");
        EXPECT_FALSE(window->property("parent").isValid());
        EXPECT_EQ(host.dynamicPropertyNames().size(), 0);
    }
    QScopedPointer<QObject> free(host.factories["GLWindow"](nullptr, "free"));
    EXPECT_EQ(free->objectName(), "free");
    EXPECT_FALSE(free->property("parent").isValid());
}

} // namespace

#include "init_gltest.moc"
