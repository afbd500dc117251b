// SPDX-License-Identifier: MIT
// The module as a host loads it, and which slots of a host its objects find.
#include <dlfcn.h>

#include "Qt/module.h"
#include "tests/support/window.h"

namespace {

class Registrar : public QObject {
    Q_OBJECT

public:
    QString order;
    std::map<QString, QObjectFactory> make;

public Q_SLOTS:
    void Register(const char *kind, const char *name, void *factory)
    {
        order += kind + QString(":") + name + ' ';
        make[name] = reinterpret_cast<QObjectFactory>(factory);
    }
};

/// A parent of windows that has a property of its own for one.
class Holder : public QObject {
    Q_OBJECT
    Q_PROPERTY(QWidget *held MEMBER held)

public:
    QWidget *held = nullptr;
};

TEST(ModuleTest, RegistersFactoriesThatGiveParentAndName)
{
    Registrar host;
    QObject deaf;
    void *library = dlopen(GLWINDOW_MODULE, RTLD_NOW);
    const auto entry = reinterpret_cast<int (*)(QObject *)>(dlsym(library, "init"));
    EXPECT_EQ(entry(nullptr) + entry(&deaf) + entry(&host), 3);
    EXPECT_EQ(host.order, "qobject:KeyAction qobject:MouseAction qobject:GLWidget "
                          "qobject:GLMultiWidget qobject:GLWindow ");
    for (const char *name : {"KeyAction", "MouseAction", "GLWidget", "GLMultiWidget"}) {
        QObject parent;
        QObject *object = host.make[name](&parent, "b\xE4r");
        EXPECT_STREQ(object->metaObject()->className(), name);
        EXPECT_EQ(object->parent(), &parent);
        EXPECT_EQ(object->objectName(), QString::fromLatin1("b\xE4r"));
        EXPECT_EQ(host.make[name](&parent, nullptr)->objectName(), "");
    }
    // A window is entered in a parent that is no widget under its name, in so many bytes.
    const auto window = host.make["GLWindow"];
    QWidget widget;
    QScopedPointer<QObject> unnamed(window(&deaf, "")), null(window(&deaf, nullptr)),
        orphan(window(nullptr, "main"));
    EXPECT_EQ(window(&widget, "main")->parent(), &widget);
    EXPECT_TRUE(widget.dynamicPropertyNames().isEmpty() && deaf.dynamicPropertyNames().isEmpty());
    EXPECT_FALSE(orphan->property("parent").isValid());
    EXPECT_EQ(orphan->objectName() + unnamed->objectName() + null->objectName(), "main");
    for (const char *name : {"main", "gr\xFC\xDF", "größer"}) {
        QObject *first = window(&deaf, name), *second = window(&deaf, name);
        EXPECT_STREQ(first->metaObject()->className(), "QGLWindow");
        EXPECT_TRUE(first->objectName() == QString::fromLatin1(name) && !first->parent());
        QVariant parent = first->property("parent");
        EXPECT_STREQ(parent.typeName(), "QPointer<QObject>");
        EXPECT_TRUE(parent.convert(qMetaTypeId<QObject *>()) && parent.value<QObject *>() == &deaf);
        delete first;
        EXPECT_EQ(deaf.property(name).value<QObject *>(), second) << "not the other's entry";
        second->setObjectName("renamed");
        delete second;
        EXPECT_TRUE(deaf.dynamicPropertyNames().isEmpty());
    }
    auto *parent = new Holder;
    QObject *held = window(parent, "held");
    EXPECT_EQ(parent->held, held);
    delete held;
    EXPECT_EQ(parent->held, nullptr);
    unnamed.reset(window(parent, "main"));
    delete parent;
    EXPECT_EQ(unnamed->property("parent").value<QPointer<QObject>>(), nullptr)
        << "it may outlive its parent";
}

// Hosts that offer more or less.

class Modest : public QObject {
    Q_OBJECT
public:
    QString log;
    QObject *victim = nullptr;
    Q_INVOKABLE void DrawBG(GLW *) { log += "no slot"; }
Q_SIGNALS:
    void Pick3D(GLW *);
public Q_SLOTS:
    void Init() { log += "Init ", delete victim; }
    void Draw3D() { log += "Draw3D "; }
    void Draw2D() { log += "Draw2D "; }
    void Pick3D() { log += "Pick3D "; }
    void Pick2D() { log += "Pick2D "; }
    void Connected(GLW *o) { log += "Connected " + o->objectName() + " : "; }
};

class Full : public Modest {
    Q_OBJECT
public Q_SLOTS:
    void Init(GLW *o)
    {
        log += "Init " + o->objectName() + (QGLContext::currentContext() ? " " : "! ");
    }
    void Pick3D(GLW *o) { log += "Pick3D " + o->objectName() + ' '; }
    void InitContextMenuTree(GLW *, QObject *) { log += "Tree "; }
    void PaintForeground(GLW *, QPainter *) { log += "Foreground "; }
    void Range2D(QRectF *, int) { log += "Range "; }
    void NearestDataPos(QVector3D *) { log += "Nearest "; }
    void Update(GLW *) { log += "Update:GLW "; }
    void DrawBG(GLW *) { log += "BG "; }
    void DrawFG(GLW *) { log += "FG "; }
};

using Connect = WindowTest;

/// The log of connecting a T and emitting every signal, in a window or without one.
template <typename T, typename Object> QString connected(QGLWindow *window)
{
    T someone;
    Object object(nullptr, "a");
    if (window) {
        window->AddGLWidget(&object);
        window->doneCurrent();
    }
    EXPECT_EQ(object.Connect(&someone), &someone);
    EXPECT_EQ(QGLContext::currentContext(), nullptr) << "as it was";
    const QMetaObject *meta = object.metaObject();
    for (int i = QObject::staticMetaObject.methodCount(); i < meta->methodCount(); ++i) {
        void *nothing = nullptr, *o = static_cast<GLW *>(&object);
        void *arguments[] = {nullptr, &o, &nothing};
        if (meta->method(i).methodType() == QMetaMethod::Signal)
            QMetaObject::metacall(&object, QMetaObject::InvokeMetaMethod, i, arguments);
    }
    if (window)
        window->RemoveGLWidget(&object);
    return someone.log.trimmed();
}

TEST_F(Connect, TakesTheSlotsThatAHostHas)
{
    window->doneCurrent();
    const QString modest = "Connected a : Init Pick3D Pick2D Draw3D Draw2D";
    const QString full =
        "Connected a : Init a! Pick3D a Pick2D Draw3D Draw2D Foreground Range Nearest Tree";
    EXPECT_EQ((connected<Modest, GLWidget>(nullptr)), modest);
    EXPECT_EQ((connected<Modest, GLWidget>(window)), "Init " + modest);
    EXPECT_EQ((connected<Modest, GLMultiWidget>(nullptr)), modest) << "no other methods count";
    EXPECT_EQ((connected<Full, GLWidget>(nullptr)), full);
    EXPECT_EQ((connected<Full, GLWidget>(window)), "Init a " + full) << "with the context";
    EXPECT_EQ((connected<Full, GLMultiWidget>(nullptr)),
              "Connected a : Foreground Nearest Init a! Update:GLW Pick3D a Pick2D Draw3D Draw2D "
              "BG FG Range Tree");
    window->hide();
    EXPECT_EQ((connected<Full, GLWidget>(window)), full) << "not yet";
}

TEST_F(Connect, EndsWithWhoeverDiesOfItAndLeavesTheContext)
{
    for (const bool hostDies : {true, false}) {
        auto *someone = new Modest;
        QPointer<GLWidget> a = add("a");
        someone->victim = hostDies ? static_cast<QObject *>(someone) : a;
        EXPECT_EQ(a->Connect(someone), hostDies ? nullptr : someone);
        EXPECT_EQ(QGLContext::currentContext(), window->context());
        EXPECT_EQ(hostDies ? "Init " : someone->log, "Init ") << "no Connected";
        delete (hostDies ? static_cast<QObject *>(a) : someone);
    }
}

} // namespace

#include "init_gltest.moc"
