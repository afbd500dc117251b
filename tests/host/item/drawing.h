// SPDX-License-Identifier: MIT
#ifndef TESTS_HOST_ITEM_DRAWING_H
#define TESTS_HOST_ITEM_DRAWING_H

#include <cmath>
#include <map>

#include <QMatrix4x4>
#include <QTest>

#include "GL/glwindow.h"
#include "host/item/mesh_buffers.h"
#include "tests/support/table.h"

namespace host {

/// So large a @p share of @p a, the rest of @p b.
inline QColor mixed(const QColor &a, double share, const QColor &b)
{
    const auto mix = [=](int x, int y) { return int(std::lround(share * x + (1 - share) * y)); };
    return {mix(a.red(), b.red()), mix(a.green(), b.green()), mix(a.blue(), b.blue())};
}

/// A square window, and what is drawn in it over blue without light.
class Drawing : public testing::Test {
protected:
    explicit Drawing(int pixels = 60) : side(pixels)
    {
        window.fps(0);
        window.resize(side, side);
        window.show();
        EXPECT_TRUE(QTest::qWaitForWindowExposed(&window));
        window.makeCurrent();
        glGetError(); // a frame of the window leaves one, and Qt takes it up only in the first ones
        const quint32 black = 0xFF000000;
        glTexParameteri(GL_TEXTURE_2D, GL_TEXTURE_MIN_FILTER, GL_NEAREST);
        glTexImage2D(GL_TEXTURE_2D, 0, GL_RGBA, 1, 1, 0, GL_RGBA, GL_UNSIGNED_BYTE, &black);
        display.lighting = false;
    }
    ~Drawing() override
    {
        buffers.destroy();
        int depths[2];
        glGetIntegerv(GL_ATTRIB_STACK_DEPTH, depths);
        glGetIntegerv(GL_CLIENT_ATTRIB_STACK_DEPTH, depths + 1);
        EXPECT_EQ(depths[0] + depths[1], 0) << "state is left over";
        EXPECT_EQ(glGetError(), GLenum(GL_NO_ERROR));
    }

    /// Leaves a state in which nothing is seen: who draws sets what it needs.
    void begin(const QMatrix4x4 &projection = {}, const QMatrix4x4 &view = {}) const
    {
        glViewport(0, 0, side, side);
        glDepthMask(GL_TRUE);
        glClearColor(0, 0, 1, 1);
        glClear(GL_COLOR_BUFFER_BIT | GL_DEPTH_BUFFER_BIT);
        glMatrixMode(GL_PROJECTION);
        glLoadMatrixf(projection.constData());
        glMatrixMode(GL_MODELVIEW);
        glLoadMatrixf(view.constData());
        for (const GLenum on : {GL_CULL_FACE, GL_BLEND, GL_LIGHTING, GL_TEXTURE_2D})
            glEnable(on);
        glCullFace(GL_FRONT_AND_BACK);
        glBlendFunc(GL_ZERO, GL_ONE);
        glDisable(GL_DEPTH_TEST);
        glDepthFunc(GL_NEVER);
        glDepthMask(GL_FALSE);
        glLineWidth(3);
    }
    /// A pixel from the lower left.
    static QColor pixel(int x, int y)
    {
        quint8 p[3];
        glReadPixels(x, y, 1, 1, GL_RGB, GL_UNSIGNED_BYTE, p);
        return {p[0], p[1], p[2]};
    }
    /// What each of the @p probes says, such as "30,30 red; 50~30 ink; 5,5 !white": a pixel has
    /// that colour but for 4 of 255, or one does of those around it (~), or it has not (!).
    void expect(const QString &probes) const
    {
        for (const QString &probe : probes.split("; ")) {
            const QString at = probe.section(' ', 0, 0), name = probe.section(' ', 1).remove('!');
            const int x = at.section(QRegExp("[,~]"), 0, 0).toInt();
            const int y = at.section(QRegExp("[,~]"), 1).toInt(), around = at.contains('~');
            const QColor want = names.count(name) ? names.at(name) : QColor(name);
            bool shows = false;
            for (int i = around ? 0 : 4; i < (around ? 9 : 5); ++i) {
                const QColor is = pixel(x + (i % 3 - 1) * around, y + (i / 3 - 1) * around);
                const int r = is.red() - want.red(), g = is.green() - want.green();
                shows = shows || std::hypot(r, g, is.blue() - want.blue()) < 5;
            }
            EXPECT_EQ(shows, !probe.contains('!'))
                << probe.toStdString() << ": " << pixel(x, y).name().toStdString();
        }
    }

    int side;
    QGLWindow window{nullptr, "window"};
    Display display;
    MeshBuffers buffers;
    std::map<QString, QColor> names{{"ink", display.theme().ink},
                                    {"edge", display.theme().edge},
                                    {"accent", display.theme().accent}};
};

} // namespace host

#endif
