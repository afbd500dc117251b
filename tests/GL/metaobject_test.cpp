// SPDX-License-Identifier: MIT
// What hosts see of the classes by name: order and spelling are part of the interface.
#include <QMetaMethod>
#include <QMetaProperty>

#include "GL/glwindow.h"
#include "table.h"

namespace {

struct MetaCase {
    const char *name;
    const QMetaObject *meta;
    const char *methods, *properties;
};

const MetaCase metaCases[] = {
    {"QGLWindow", &QGLWindow::staticMetaObject,
     R"(signal void Resized(int, int)
slot QAction* NewAction(QString binding, const char* name, QObject* obj, const char* slot)
slot bool DeleteAction(const char* name)
slot QObject* AddGLWidget(QObject* o)
slot QObject* InsertGLWidget(int pos, QObject* o)
slot bool RemoveGLWidget(QObject* o)
slot void Update()
slot void ContextMenu(QObject* o)
)",
     "float fps rw\n"},
    {"GLWidget", &GLWidget::staticMetaObject,
     R"(signal void Init(GLW*)
signal void Resized(int, int)
signal void Pick3D(GLW*)
signal void Pick2D(GLW*)
signal void Draw3D(GLW*)
signal void Draw2D(GLW*)
signal void PaintForeground(GLW*, QPainter*)
signal void Range2D(QRectF*, int)
signal void NearestDataPos(QVector3D*)
signal void InitContextMenuTree(GLW*, QObject*)
slot QAction* AddAction(QAction* action)
slot QAction* InsertAction(QAction* before, QAction* action)
slot bool RemoveAction(QObject* action)
slot QObject* Connect(QObject* o)
slot void Resize(int, int)
slot QAction* NewKeyAction(QString binding, const char* name, QObject* obj, const char* slot)
slot QAction* NewMouseAction(uint binding, uint mask, const char* name, QObject* obj, const char* slot)
slot bool DeleteAction(const char* name)
slot void ContextMenu()
slot void SetTarget(Vector v)
)",
     "double x r\ndouble y r\ndouble width r\ndouble height r\n"
     "QPointF pos rw\nQSizeF size rw\nQRectF geometry rw\n"},
    {"KeyAction", &KeyAction::staticMetaObject,
     R"(signal void triggered()
signal void triggered(bool state)
signal void triggered(bool state, bool repeat)
signal void triggered(GLW* glw)
signal void triggered(GLW* glw, bool state)
signal void triggered(GLW* glw, bool state, bool repeat)
)",
     "QKeySequence key rw\n"},
    {"MouseAction", &MouseAction::staticMetaObject,
     R"(signal void triggered()
signal void triggered(bool state)
signal void triggered(Mouse* mouse)
signal void triggered(Mouse* mouse, bool state)
signal void triggered(GLW* glw)
signal void triggered(GLW* glw, bool state)
)",
     "uint binding rw\nuint mask rw\n"},
};

TABLE(MetaObject, testing::Test, MetaCase, metaCases);

TEST_P(MetaObject, IsExact)
{
    const QMetaObject *meta = GetParam().meta;
    EXPECT_STREQ(meta->className(), GetParam().name);
    QByteArray methods;
    for (int i = meta->methodOffset(); i < meta->methodCount(); ++i) {
        const QMetaMethod m = meta->method(i);
        QByteArrayList arguments;
        for (int k = 0; k < m.parameterCount(); ++k)
            arguments << (m.parameterTypes().at(k) + ' ' + m.parameterNames().at(k)).trimmed();
        methods += QByteArray(m.methodType() == QMetaMethod::Signal ? "signal " : "slot ") +
                   m.typeName() + ' ' + m.name() + '(' + arguments.join(", ") + ")\n";
        EXPECT_EQ(m.access(), QMetaMethod::Public);
        EXPECT_NE(m.methodType(), QMetaMethod::Method);
    }
    EXPECT_EQ(methods.toStdString(), GetParam().methods);

    QByteArray properties;
    for (int i = meta->propertyOffset(); i < meta->propertyCount(); ++i) {
        const QMetaProperty p = meta->property(i);
        properties += QByteArray(p.typeName()) + ' ' + p.name() + (p.isReadable() ? " r" : " ") +
                      (p.isWritable() ? "w\n" : "\n");
        EXPECT_TRUE(p.isDesignable() && p.isScriptable() && p.isStored());
        EXPECT_FALSE(p.hasNotifySignal() || p.isResettable() || p.isConstant() || p.isFinal());
    }
    EXPECT_EQ(properties.toStdString(), GetParam().properties);
}

} // namespace
