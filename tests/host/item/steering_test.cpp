// SPDX-License-Identifier: MIT
// Where drags, wheel and keys leave the camera of a model.
#include "host/item/camera_steering.h"

#include <gtest/gtest.h>

#include "GL/glwidget.h"

namespace host {
namespace {

QString words(std::initializer_list<double> values)
{
    QStringList all;
    for (const double v : values)
        all << QString::number(std::round(v * 100) / 100 + 0.0); // no minus before a zero
    return all.join(' ');
}

/// Does what is written, step after step: "pan x,y x,y", "zoom x,y steps", "focus x,y", "from
/// side", "size w,h" and words alone are what they say. The next does not wait for one with a "+".
void run(Steering &s, GLWidget &glw, const QString &script)
{
    for (const QString &step : script.split("; ", Qt::SkipEmptyParts)) {
        const QStringList all = step.split(' ');
        const QString &what = all[0];
        const auto at = [&](int i) {
            const QString word = all.value(i);
            return QPointF(word.section(',', 0, 0).toDouble(), word.section(',', 1).toDouble());
        };
        const auto drag = Steering::Drag(QStringList{"orbit", "pan", "roll"}.indexOf(what));
        what == "zoom"    ? s.zoom(&glw, at(1), float(at(2).x()), {})
        : what == "focus" ? s.focus(&glw, at(1))
        : what == "from"  ? s.lookFrom(&glw, Steering::Side(int(at(1).x())))
        : what == "size"  ? glw.setGeometry({0, 0, at(1).x(), at(1).y()})
        : what == "fit"   ? s.fit(&glw)
        : what == "turn"  ? s.fitTurn(&glw)
        : what == "home"  ? s.home(&glw)
        : int(drag) < 0   ? s.toggleProjection(&glw)
                          : (s.beginDrag(&glw, drag, at(1)), s.drag(&glw, drag, at(1), at(2)));
        do
            glw.camera.Update(1);
        while (s.advance(&glw, 0.05) && all.last() != "+");
    }
}

/// A rectangle of 0.8 by 0.6 in the x-y plane, in an object of 400 x 400 pixels, seen from the
/// front: 450 pixels for a unit.
struct Steered : CameraSteering::Shape, CameraSteering {
    GLWidget glw{nullptr, "glw"};
    std::vector<QVector3D> corners{{-.4f, -.3f, 0}, {.4f, -.3f, 0}, {.4f, .3f, 0}, {-.4f, .3f, 0}};
    std::vector<QVector3D> picked;

    Steered() : CameraSteering(static_cast<const CameraSteering::Shape &>(*this))
    {
        glw.setGeometry({0, 0, 400, 400});
        init(&glw);
        lookAlong(&glw, GL::Camera());
    }
    std::optional<QVector3D> surfaceAt(const Ray &ray) const override
    {
        const QVector3D p = ray.origin - ray.direction * (ray.origin.z() / ray.direction.z());
        const bool isOn = std::abs(p.x()) < .4f && std::abs(p.y()) < .3f;
        return isOn ? std::optional(p) : std::nullopt;
    }
    const std::vector<QVector3D> &outline() const override { return corners; }
    std::vector<QVector3D> chosen() const override { return picked; }
    /// Angles; target; radius; o: orthographic; w: all of it is shown.
    std::string left(const QString &script)
    {
        run(*this, glw, script);
        const GL::Camera &c = glw.camera;
        const Vector &r = c.rot, &t = c.setTarget;
        return (words({double(r.x), double(r.y), double(r.z)}) + "; " +
                words({double(t.x), double(t.y), double(t.z)}) + "; " + words({double(c.radius)}) +
                (isOrthographic(&glw) ? " o" : "") + (wholeIn().isEmpty() ? "" : " w"))
            .toStdString();
    }
};

TEST(SteeringTest, LeavesTheCamera)
{
    // No farther up or down than 90, no farther aside than the model, and round the short way.
    const QString rows =
        "> 0 0 0; 0 0 0; 1.41 w | orbit 0,0 40,20 > -12 24 0; 0 0 0; 1.41 w | size 9,9; "
        "orbit 0,0 40,20 > -20 40 0; 0 0 0; 1.41 w | orbit 0,0 0,300; orbit 0,0 0,-100 > -30 "
        "0 0; 0 0 0; 1.41 w | roll 300,200 200,300 > 0 0 90; 0 0 0; 1.41 w | orbit 0,0 "
        "400,0; from 0 > 0 360 0; 0 0 0; 1.41 w | roll 100,210 100,190 > 0 0 11.42; 0 0 0; "
        "1.41 w | pan 200,200 290,155 > 0 0 0; -0.2 0.1 0; 1.41 | pan 5,5 95,5 > 0 0 0; -0.2 "
        "0 0; 1.41 | orbit 0,0 75,0; pan 5,5 9005,-3000 > 0 45 0; -0.71 1 -0.71; 1.41 | zoom "
        "200,200 2 > 0 0 0; 0 0 0; 0.9 | zoom 290,200 2 > 0 0 0; 0.07 0 0; 0.9 | zoom "
        "200,200 -1 > 0 0 0; 0 0 0; 1.76 | home; pan 200,200 290,155 > 22 -32 0; -0.12 0.06 "
        "0.05; 1.31 | roll 300,200 200,300; pan 200,200 290,155 > 0 0 90; 0.1 0.2 0; 1.41 | "
        "projection; zoom 290,155 2 > 0 0 0; 0.07 -0.04 0; 0.2 o | focus 290,155 > 0 0 0; "
        "0.2 -0.1 0; 1.41 | focus 200,390 > 0 0 0; 0 0 0; 1.41 w | home > 22 -32 0; 0.05 "
        "-0.02 -0.02; 1.31 w | from 1 > 0 180 0; 0 0 0; 1.41 w | from 2 > 0 90 0; 0 0 0; "
        "1.46 w | from 3 > 0 -90 0; 0 0 0; 1.46 w | from 4 > 90 0 0; 0 0 0; 1.71 w | from 5 "
        "> -90 0 0; 0 0 0; 1.71 w | zoom 200,200 2; from 2 > 0 90 0; 0 0 0; 0.9 | projection "
        "> 0 0 0; 0 0 0; 0.31 o w | pan 5,5 95,5; fit > 0 0 0; 0 0 0; 1.41 w | size 400,200 "
        "> 0 0 0; 0 0 0; 1.06 w | orbit 0,0 40,200 +; size 400,200 > -90 24 0; 0 0 0; 0.94 w "
        "| zoom 200,200 2; size 400,200 > 0 0 0; 0 0 0; 0.9 | roll 300,200 200,300; orbit "
        "0,0 40,20 > 24 12 90; 0 0 0; 1.41 w | projection; zoom 200,200 -99 > 0 0 0; 0 0 0; "
        "1.1 o | home; projection; turn > 22 -32 0; 0 0 0; 0.33 o w | orbit 0,0 0,100; turn "
        "> -60 0 0; 0 -0.03 0; 1.72 w | home; roll 300,200 200,300; fit > 22 -32 90; 0.05 "
        "-0.02 -0.02; 1.31 w | turn > 0 0 0; 0 0 0; 1.47 w";
    for (const QString &row : rows.split(" | "))
        EXPECT_EQ(Steered().left(row.section("> ", 0, 0).trimmed()),
                  row.section("> ", 1).toStdString());
    Steered s;
    const std::pair<QMarginsF, const char *> insets[] = {
        {{0, 0, 0, 60}, "0 0 0; 0 -0.07 0; 1.41 w"},
        {{0, 60, 0, 0}, "0 0 0; 0 0.07 0; 1.41 w"},
        {{60, 0, 0, 0}, "0 0 0; -0.08 0 0; 1.66 w"},
        {{0, 0, 60, 0}, "0 0 0; 0.08 0 0; 1.66 w"}};
    for (const auto &[edges, left] : insets) {
        s.setInsets(edges);
        EXPECT_EQ(s.left("size 400,400"), left);
    }
    s.picked = {{.1f, .2f, 0}, {.3f, .1f, 0}, {.2f, .1f, 0}};
    s.setInsets({});
    EXPECT_EQ(s.left("fit"), "0 0 0; 0.2 0.15 0; 0.35");
    GL::Camera other = s.glw.camera;
    other.rot = Vector(10, 20, 30);
    other.ortho = 1;
    other.radius = 0.5f;
    s.left("pan 5,5 95,5; zoom 200,200 2 +"); // which it ends
    s.restore(&s.glw, other);
    const QVector3D eye = CameraSteering::geometryOf(&s.glw).eye(); // at once
    EXPECT_LT((toQt(s.glw.camera.pos) - eye).length(), 1e-5f);
    EXPECT_EQ(s.left("size 400,400"), "10 20 30; 0.2 0.15 0; 0.5 o");
    s.left("projection; from 3"); // to which the lamps have gone, but for the sky
    QStringList lamps;
    for (GL::Light &l : s.glw.lights)
        for (const auto &v : {l.position, l.ambient, l.diffuse, l.specular})
            lamps << words({double(v.x), double(v.y), double(v.z)});
    EXPECT_EQ(lamps.join("; ").toStdString(),
              "0.83 0.45 0.33; 0.25 0.25 0.26; 0.53 0.52 0.5; 0.1 0.1 0.1; 0.57 -0.48 -0.67; 0 0 "
              "0; 0.17 0.17 0.18; 0 0 0; 0 1 0; 0 0 0; 0.12 0.13 0.13; 0 0 0");
}

TEST(SteeringTest, TurnsAtOnePaceAtAnyFrameRate)
{
    for (const int part : {1, 2, 20}) {
        Steered s;
        s.beginDrag(&s.glw, Steering::Drag::Orbit, {0, 0});
        s.drag(&s.glw, Steering::Drag::Orbit, {0, 0}, {150, 0});
        s.zoom(&s.glw, {200, 200}, 3, {});
        for (int i = 0; i < 3 * part; ++i, s.glw.camera.Update(1))
            s.advance(&s.glw, 0.05 / part);
        EXPECT_NEAR(s.glw.camera.rot.y, 79.4413, 1e-3) << part;
        EXPECT_NEAR(s.glw.camera.radius, 0.78068, 1e-5) << part;
    }
}

/// Two surfaces a thousandth of the model apart must land in different steps of a 24-bit buffer.
TEST(SteeringTest, TheClipRangeTellsCloseSurfacesApart)
{
    for (const bool ortho : {false, true})
        for (const float radius : {0.02f, 0.3f, 1.5f, 4.5f}) {
            Steered s;
            s.left(ortho ? "projection" : "");
            GL::Camera camera = s.glw.camera;
            camera.radius = ortho ? radiusShowing(camera, radius * 0.3f) : radius;
            camera.Update(1);
            const double n = ortho ? -camera.farZ : camera.nearZ, f = camera.farZ;
            const double back = double(camera.radius) + CameraMotion::worldRadius;
            const double front = back - 0.001 * CameraMotion::worldRadius;
            EXPECT_GT(ortho ? (back - front) / (f - n) : f / (f - n) * n * (1 / front - 1 / back),
                      4.0 / (1 << 24));
        }
}

} // namespace
} // namespace host
