// SPDX-License-Identifier: MIT
#include "host/item/display.h"

#include <qopengl.h>

namespace host {

namespace {

void setColour(const QColor &c)
{
    glColor4f(float(c.redF()), float(c.greenF()), float(c.blueF()), float(c.alphaF()));
}

/// For its lifetime: the viewport spans -1 to 1 both ways, and nothing touches colours or depth.
class FlatDrawing {
public:
    FlatDrawing();
    ~FlatDrawing();
    FlatDrawing(const FlatDrawing &) = delete;
    FlatDrawing &operator=(const FlatDrawing &) = delete;
};

FlatDrawing::FlatDrawing()
{
    glPushAttrib(GL_ENABLE_BIT | GL_DEPTH_BUFFER_BIT | GL_TRANSFORM_BIT | GL_POLYGON_BIT |
                 GL_CURRENT_BIT | GL_LIGHTING_BIT | GL_COLOR_BUFFER_BIT);
    glDisable(GL_LIGHTING);
    glDisable(GL_DEPTH_TEST);
    glDisable(GL_CULL_FACE);
    glDisable(GL_BLEND);
    glDisable(GL_TEXTURE_2D);
    glDepthMask(GL_FALSE);
    glPolygonMode(GL_FRONT_AND_BACK, GL_FILL);
    glShadeModel(GL_SMOOTH);
    for (GLenum mode : {GL_PROJECTION, GL_MODELVIEW}) {
        glMatrixMode(mode);
        glPushMatrix();
        glLoadIdentity();
    }
}

FlatDrawing::~FlatDrawing()
{
    for (GLenum mode : {GL_PROJECTION, GL_MODELVIEW}) {
        glMatrixMode(mode);
        glPopMatrix();
    }
    glPopAttrib();
}

} // namespace

const Theme &Display::theme() const
{
    static const Theme light{{247, 249, 251},      {203, 212, 221}, {28, 34, 42},  {98, 108, 120},
                             {255, 255, 255, 205}, {214, 98, 10},   {176, 32, 32}, {36, 42, 52},
                             {38, 44, 54},         {128, 138, 150}};
    static const Theme darkTheme{
        {66, 74, 84},   {22, 25, 30},    {236, 240, 244}, {160, 170, 182}, {14, 17, 21, 190},
        {255, 158, 61}, {255, 128, 118}, {206, 214, 222}, {14, 17, 22},    {128, 138, 150}};
    return dark ? darkTheme : light;
}

void drawBackdrop(const Theme &theme)
{
    const FlatDrawing flat;
    glBegin(GL_QUADS);
    setColour(theme.bottom);
    glVertex2f(-1, -1);
    glVertex2f(1, -1);
    setColour(theme.top);
    glVertex2f(1, 1);
    glVertex2f(-1, 1);
    glEnd();
}

void drawPlain(const QColor &colour)
{
    const FlatDrawing flat;
    setColour(colour);
    glRectf(-1, -1, 1, 1);
}

void drawShade(const QSizeF &size, double width, double height)
{
    const FlatDrawing flat;
    const float left = float(1 - 2 * width / size.width());
    const float bottom = float(1 - 2 * height / size.height());
    glEnable(GL_BLEND);
    glBlendFunc(GL_SRC_ALPHA, GL_ONE_MINUS_SRC_ALPHA);
    setColour(QColor(20, 24, 30, 200));
    glRectf(left, bottom, 1, 1);
}

} // namespace host
