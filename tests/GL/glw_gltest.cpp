// SPDX-License-Identifier: MIT
// Placement of a drawing object in its window, and what every drawing object has.
#include "GL/glw.h"

#include <QSize>

#include "GL/glwidget.h"
#include "table.h"
#include "testing.h"

namespace {

struct GeometryCase {
    const char *name;
    QRectF rect;
    QRectF pixels;
    double glY;
    bool alive = true; // whether the window, 800 x 600, is
};

const GeometryCase geometryCases[] = {
    {"Default", {0, 0, 1, 1}, {0, 0, 800, 600}, 0},
    {"Fractions", {0.25, 0.5, 0.5, 0.25}, {200, 300, 400, 150}, 150},
    {"FromTheRight", {-0.25, 0, 0.25, 1}, {400, 0, 200, 600}, 0},
    {"FromTheBottom", {0, -0.5, 1, 0.25}, {0, 150, 800, 150}, 300},
    {"Pixels", {10, 20, 100, 50}, {10, 20, 100, 50}, 530},
    {"PixelsFromTheFarCorner", {-10, -10, 100, 50}, {690, 540, 100, 50}, 10},
    {"TallerThanOneIsInPixels", {0, 0, 1, 2}, {0, 0, 1, 2}, 598},
    {"WiderThanOneIsInPixels", {0, 0, 1.5, 1}, {0, 0, 1.5, 1}, 599},
    {"DeadWindow", {0.5, 0.5, 1, 1}, {0.5, 0.5, 1, 1}, -1.5, false},
    {"DeadWindowFromTheFarCorner", {-10, -20, 100, 50}, {-110, -70, 100, 50}, 20, false},
};

TABLE(Geometry, testing::Test, GeometryCase, geometryCases);

TEST_P(Geometry, IsInPixelsOfTheWindow)
{
    auto *window = new QGLWindow(nullptr, nullptr);
    window->resize(800, 600);
    GLWidget object(nullptr, "a");
    window->AddGLWidget(&object);
    object.setGeometry(GetParam().rect);
    if (!GetParam().alive)
        delete window;
    const QRectF pixels = GetParam().pixels;
    EXPECT_EQ(object.geometry(false), pixels);
    EXPECT_EQ(object.pos(false), pixels.topLeft());
    EXPECT_EQ(object.size(false), pixels.size());
    EXPECT_EQ(object.property("x").toDouble(), pixels.x());
    EXPECT_EQ(object.property("height").toDouble(), pixels.height());
    EXPECT_EQ(object.glY(), GetParam().glY);
    EXPECT_EQ(object.geometry(), GetParam().rect) << "stored, not pixels";
    EXPECT_EQ(object.pos(), GetParam().rect.topLeft());
    EXPECT_EQ(object.size(), GetParam().rect.size());
    if (GetParam().alive)
        delete window;
}

TEST(GLWTest, EdgesAreHitAndEmptyObjectsAreNot)
{
    QGLWindow window(nullptr, nullptr);
    window.resize(800, 600);
    GLWidget object(nullptr, nullptr);
    window.AddGLWidget(&object);
    EXPECT_EQ(object.hit(800, 600), &object);
    EXPECT_EQ(object.hit(0, 0), &object);
    EXPECT_EQ(object.hit(801, 0), nullptr);
    EXPECT_EQ(object.hit(0, -1), nullptr);
    object.setGeometry(QRectF(0, 0, 0, 50));
    EXPECT_EQ(object.hit(0, 0), nullptr);
}

TEST(GLWTest, SettersWriteBothRectangles)
{
    GLWidget object(nullptr, nullptr);
    object.setGeometry({1, 2, 3, 4});
    object.rect = QRectF(5, 6, 7, 8); // as a layout does
    object.setProperty("pos", QPointF(10, 20));
    EXPECT_EQ(object.rect, QRectF(10, 20, 7, 8));
    EXPECT_EQ(object.orect, QRectF(10, 20, 3, 4));
    object.setProperty("size", QSizeF(30, 40));
    EXPECT_EQ(object.rect, QRectF(10, 20, 30, 40));
    EXPECT_EQ(object.orect, QRectF(10, 20, 30, 40));
    object.move(1, 1);
    object.resize(2, 2);
    EXPECT_EQ(object.orect, QRectF(1, 1, 2, 2));
}

/// A drawing object with nothing of its own.
class Bare : public GLW {
public:
    Bare() : GLW(nullptr, "b\xE4r") {}
    QAction *NewKeyAction(const QString &, const char *, QObject *, const char *) override
    {
        return nullptr;
    }
    QAction *NewMouseAction(quint32, quint32, const char *, QObject *, const char *) override
    {
        return nullptr;
    }
    bool DeleteAction(const char *) override { return false; }
};

TEST(GLWTest, BeginsWithItsDefaults)
{
    Bare bare;
    QStringList properties;
    for (const QByteArray &name : bare.dynamicPropertyNames())
        properties << name + ':' + bare.QObject::property(name).typeName() + ':' +
                          bare.QObject::property(name).toString();
    EXPECT_EQ(properties.join(' '), "enabled:bool:true visible:bool:true flags:int:0 "
                                    "pick3d:bool:true pick2d:bool:true draw3d:bool:true "
                                    "draw2d:bool:true");
    EXPECT_EQ(bare.objectName(), QString(QChar(0xE4)).prepend('b').append('r')) << "Latin-1";
    EXPECT_EQ(bare.id(), -1);
    EXPECT_TRUE(bare.lights.empty());
    EXPECT_EQ(bare.rect, QRectF(0, 0, 1, 1));
    EXPECT_EQ(bare.Range2D(1), QRectF(0, 0, 0, 0));
    EXPECT_EQ(bare.NearestDataPos(), QVector3D(0, 0, 0));
    EXPECT_GT(qMetaTypeId<GLW *>(), 0);
    EXPECT_STREQ(QMetaType::typeName(qMetaTypeId<GLW *>()), "GLW*");
    QObject child(&bare);
    QAction nested(&child);
    EXPECT_EQ(bare.actions(), QList<QAction *>{&nested});
}

TEST(GLWTest, PropertiesFallBackWhenTheyDoNotConvert)
{
    Bare bare;
    bool ok = true;
    EXPECT_EQ(bare.property<QSize>("missing", &ok), QSize(-1, -1));
    EXPECT_FALSE(ok);
    EXPECT_FALSE(bare.property<bool>("missing"));
    bare.setProperty("word", QString("abc"));
    EXPECT_EQ(bare.property<int>("word", &ok), 0);
    EXPECT_FALSE(ok);
    bare.setProperty("word", QString("42"));
    EXPECT_EQ(bare.property<int>("word", &ok), 42);
    EXPECT_TRUE(ok);
    bare.setProperty("word", QRectF(0, 0, 1, 1));
    EXPECT_FALSE(bare.property<bool>("word"));
    EXPECT_FALSE(bare.setProperty("size", 1.5f)) << "a dynamic property";
    EXPECT_EQ(bare.QObject::property("size").userType(), int(QMetaType::Float));
}

} // namespace
