// SPDX-License-Identifier: MIT
// What camera, 2D viewport and lights compute, load and read back, in a region of 200 x 100 pixels.
#include <sstream>

#include "tests/support/window.h"

namespace {

const char *const cameraRows = R"(
Defaults: get a mode ortho eye target setTarget rot radius fov nearZ farZ minRadius maxRadius d_pos_max d_target_max dt d_radius bounds up m => 2 0 0,0,0 0,0,0 0,0,0 0,0,0 0 60 0.001 10000 0.0005 1000 1 1 30 0 1000,1000,1000 0,1,0 1,0,0,0,0,1,0,0,0,0,1,0,0,0,0,1
AlongMinusZ: update 0; get a eye radius nearZ farZ => 0,0,0.0005 0.0005 0.0001 40
LargestRadiusAndHalf: set a radius 2000; update 0; get a radius nearZ farZ; set a radius 500.00025; update 0; get a radius nearZ farZ => 1000 0.05 10000 500 0.02505 5020
FieldOfView: set a fov 0.5; update 0; get a fov; set a fov 1.5; update 0; get a fov; set a fov 89.5; update 0; get a fov; set a fov 120; update 0; get a fov => 1 1.5 89.5 90
SetRadius: radius 1000; radius 1000.0001; radius 0.0004; radius nan; get a radius; radius 0.0005; get a radius => 1 0 0 0 1000 1 0.0005
Azimuth: set a radius 10 rot 0,90,0; update 0; get a eye => -10,0,0
BothAngles: set a radius 10 rot 30,60,0; update 0; get a eye => -7.5,5,4.3301
Steepest: set a radius 10 rot 91,0,0; update 0; get a eye rot; set a rot -91,0,0; update 0; get a eye rot => 0,10,0 90,0,0 0,-10,0 -90,0,0
UpTurnsAboutXThenYThenZ: set a rot 30,60,90; update 0; get a up => 0.86603,-0.43301,-0.25
TargetFromEye: set a mode 1 eye 1,2,3 rot 0,90,0 radius 10; update 0; get a target eye; set a radius 100; update 0; get a setTarget => 11,2,3 1,2,3 101,2,3
AnglesFromBoth: set a mode 3 eye 10,0,0 rot 5,6,7 radius 1; update 0; get a rot radius; set a eye 0,6,8; update 0; get a rot radius; set a eye -3,0,-3; update 0; get a rot => 0,-90,0 10 36.87,0,0 10 0,135,0
NoAnglesOnTheTarget: set a mode 3 rot 5,6,7; update 0; get a rot radius => 5,6,7 0
FixedIsLeft: set a mode 0 eye 1,2,3 rot 0,0,90; update 0; get a eye up => 1,2,3 0,1,0
OtherModesHaveUpOnly: set a mode 9 eye 1,2,3 rot 0,0,90; update 0; get a eye up target => 1,2,3 1,0,0 0,0,0
NearPointMovesWithAnOrthographicEye: set a radius 10 vnear 1,1,1; update 0; get a vnear; set a ortho 1 eye 0,0,0; update 0; get a vnear => 1,1,1 1,1,11
Step: set a d_target_max 2 setTarget 100,0,0; update 0; get a target; set a dt 10; update 0; get a target => 60,0,0 80,0,0
StepWithin: set a mode 3 d_target_max 2 target 1,1,1 setTarget 29,0,0; update 0; get a target => 29,0,0
BoundsAreOfTheAxisAndTheGround: set a dt 1e5 bounds 1000,500,1 setTarget 2000,-5000,0; update 0; get a target; set a setTarget 1200,-7,1600; update 0; get a target; set a setTarget 3,700,4; update 0; get a target => 1000,-500,0 600,-7,800 3,500,4
NotOfATargetThatIsReached: set a target 5000,0,0 setTarget 5000,0,0; update 0; get a target => 5000,0,0
Velocities: set a mode 9 radius 1 dt 2 d_eye 1,2,3 d_target 4,5,6 d_rot 7,8,9 d_radius 5; update 0; get a eye setTarget rot radius; update 1; get a eye setTarget rot radius => 0,0,0 0,0,0 0,0,0 1 2,4,6 8,10,12 7,8,9 11
Perspective: set a fov 45 nearZ 1 farZ 3 eye 0,0,10; setup 0 0 0 0; get a projection view viewport => 1.2071,0,0,0,0,2.4142,0,0,0,0,-2,-1,0,0,-3,0 1,0,0,0,0,1,0,0,0,0,1,0,0,0,-10,1 0,0,200,100
PerspectivePick: set a fov 45 nearZ 1 farZ 3 eye 0,0,10; setup 150 75 100 50; get a projection => 2.4142,0,0,0,0,4.8284,0,0,1,1,-2,-1,0,0,-3,0
Orthographic: set a ortho 1 fov 45 radius 10 farZ 4 eye 0,0,10; setup 50 25 0 50; get a projection; setup 50 25 100 0; get a projection => 0.05,0,0,0,0,0.1,0,0,0,0,-0.25,0,0,0,0,1 0.05,0,0,0,0,0.1,0,0,0,0,-0.25,0,0,0,0,1
OrthographicPick: set a ortho 1 fov 45 radius 10 farZ 4 eye 0,0,10; setup 50 75 100 50; get a projection => 0.1,0,0,0,0,0.2,0,0,0,0,-0.25,0,1,-1,0,1
LooksAlongX: set a eye 1,2,3 target 4,2,3 up 0,0,1; setup 0 0 0 0; get a view => 0,0,-1,0,-1,0,0,0,0,1,0,0,2,-3,1,1
LooksFromAFarTarget: set a eye 1,2,3 target 1,2,-4; setup 0 0 0 0; get a view => 1,0,0,0,0,1,0,0,0,0,1,0,-1,-2,-3,1
FixedMatrix: set a mode 0 m 1,2,3,4,5,6,7,8,9,10,11,12,13,14,15,16; setup 0 0 0 0; get a view => 1,2,3,4,5,6,7,8,9,10,11,12,13,14,15,16
Rotation: set a rot 90,90,30; rotate; matrix => 0,0.86603,0.5,0,0,-0.5,0.86603,0,1,0,0,0,0,0,0,1
Ray: set a fov 90 nearZ 1 farZ 3 eye 1,0,10 target 1,0,0; setup 0 0 0 0; unproject 100 50; get a unproj; unproject 150 100; get a unproj last_unproj vnear => 1 0,0,-1 1 0.57735,0.57735,-0.57735 0,0,-1 0,0,0
ParallelRay: set a ortho 1 fov 45 radius 10 farZ 3 eye 0,0,10 vnear 1,2,3 unproj 4,5,6; setup 0 0 0 0; unproject 200 25; get a unproj last_unproj vnear last_vnear => 1 0,0,-1 4,5,6 20,-5,13 1,2,3
NoWidth: set a eye 0,0,10 unproj 1,2,3 last_unproj 4,5,6; setup 0 0 0 0; set a viewport 0,0,0,100; unproject 100 50; get a unproj last_unproj rot => 0 0,0,0 0,0,0 0,0,0
NoHeight: set a ortho 1 radius 10 eye 0,0,10 unproj 1,2,3; setup 0 0 0 0; set a viewport 0,0,200,0; unproject 100 50; get a unproj => 0 0,0,0
SingularTurnsOn: set a eye 0,0,10 unproj 1,2,3 d_rot 1,0,0; setup 0 0 0 0; set a projection 0,0,0,0,0,0; unproject 100 50; get a unproj rot => 0 0,0,0 1,0.0001,0
SingularOrthographicDoesNot: set a ortho 1 radius 10 eye 0,0,10 unproj 1,2,3 vnear 1,2,3 d_rot 1,0,0; setup 0 0 0 0; set a projection 0,0,0,0,0,0; unproject 100 50; get a unproj rot vnear => 0 0,0,0 0,0,0 1,2,3
)";

// The edges are left, right, bottom and top, each 3 within, then width and height.
const char *const viewportRows = R"(
Defaults: get a pan scale minScale maxScale align => 0,0,0 1,1,1 0.001,0.001,0.001 1e+07,1e+07,1e+07 132
Centred: flat 50 25 100 50; state; flat 50 25 100 0; state; edges => 0,0,200,100=-100,-50,100,50,-0.02 0,0,200,100=-100,-50,200,100,-0.02 -97,97,-47,47,200,100
TopLeft: set a align 33; flat 100 50 100 50; state; flat 9 9 0 9; state; edges => 0,0,200,100=49.75,74.25,99.5,-49.5,-0.02 0,0,200,100=0,99,199,-99,-0.02 3,196,96,3,199,99
BottomLeft: set a align 64; flat 0 0 0 0; state; edges => 0,0,200,100=0,0,199,99,-0.02 3,196,3,96,199,99
MiddleIsBeforeBottom: set a align 192; flat 0 0 0 0; state; edges => 0,0,200,100=0,-50,199,100,-0.02 3,196,-47,47,199,100
TopCentre: set a align 4; flat 0 0 0 0; state; edges => 0,0,200,100=-100,99,200,-99,-0.02 -97,97,96,3,200,99
ScaledThenMoved: set a scale 2,4,5 pan 10,20,30; flat 0 0 0 0; matrix => 2,0,0,0,0,4,0,0,0,0,5,0,-20,-80,-150,1
CursorCentred: set a scale 2,4,1 pan 10,20,30; cursor 150 60 => 35,22.5,0
CursorFromTheLeft: set a scale 2,4,1 pan 10,20,30 align 1; cursor 150 60; set a align 65; cursor 150 60 => 85,35,0 85,35,0
CursorFromTheLastRow: set a scale 2,4,1 pan 10,20,30 align 32; cursor 150 59; set a align 160; cursor 0 60 => 85,30,0 10,22.5,0
Scale: set a scale 0.0001,5,2e7; limit; get a scale; set a minScale 9,9,9 maxScale 3,3,3; limit; get a scale => 0.001,5,1e+07 3,3,3
)";

class CameraTest : public WindowTest {
protected:
    CameraTest()
    {
        glViewport(0, 0, 200, 100);
        using W = const Words &;
        const auto n = [](W w, int i) { return w[i].toFloat(); };
        const auto say = [this](auto... values) {
            double all[]{double(values)...};
            host.log << Numbers{all, sizeof...(values)}.text();
        };
        const auto camera = [this]() -> GL::Camera & { return object("a")->camera; };
        const auto flat = [this]() -> GL::Viewport & { return object("a")->viewport; };
        verbs["update"] = [=](W w) { camera().Update(w[0].toInt()); };
        verbs["setup"] = [=](W w) { camera().Setup(200, 100, n(w, 0), n(w, 1), n(w, 2), n(w, 3)); };
        verbs["radius"] = [=](W w) { say(camera().SetRadius(n(w, 0))); };
        verbs["unproject"] = [=](W w) { say(camera().Unproject(n(w, 0), n(w, 1))); };
        verbs["rotate"] = [=](W) { glLoadIdentity(), camera().SetupRotation(); };
        verbs["matrix"] = [this](W) {
            double now[16];
            glGetDoublev(GL_MODELVIEW_MATRIX, now);
            host.log << Numbers{now, 16}.text();
        };
        verbs["flat"] = [=](W w) {
            flat().Setup(200, 100, 50, n(w, 0), n(w, 1), n(w, 2), n(w, 3));
        };
        verbs["limit"] = [=](W) { flat().Update(); };
        verbs["cursor"] = [=](W w) {
            const Vector at = flat().Cursor(n(w, 0), n(w, 1), 200, 100);
            say(at.x, at.y, at.z);
        };
        verbs["edges"] = [=](W) {
            const GL::Viewport &v = flat();
            say(v.Left(200, 3), v.Right(200, 3), v.Bottom(100, 3), v.Top(100, 3), v.Width(200),
                v.Height(100));
        };
    }
};

TEST_F(CameraTest, ComputesAndLoads)
{
    for (const char *rows : {cameraRows, viewportRows})
        for (const Script &row : Script::table(rows)) {
            add("a"); // what was loaded before does not matter
            EXPECT_EQ(run(row.script), row.told) << row.name;
            delete find("a");
        }
}

TEST_F(CameraTest, PrintsOneLineWithoutItsEnd)
{
    add("a");
    run("set a radius 12.34567 eye 1,2.5,-3 rot 30,45,0");
    std::ostringstream out;
    EXPECT_EQ(&object("a")->camera.Print(out), &out);
    EXPECT_EQ(out.str(), "   m:2   r:12.35   p[ 1 2.5 -3]   rot[ 30 45 0]  fov:60");
    EXPECT_EQ(out.precision(), 4);
}

TEST_F(CameraTest, HandsLightsOver)
{
    GL::Light light(GL_LIGHT2, 'x');
    GL::Light::vector none;
    QString begun = QString::number(light.light - GL_LIGHT0) + light.mode, given;
    for (auto *part : {&none, &light.position, &light.ambient, &light.diffuse, &light.specular})
        begun += ' ' + Numbers{static_cast<float *>(*part), 4}.text();
    EXPECT_EQ(begun, "2x 0,0,0,0 0,0,1,0 0,0,0,1 1,1,1,1 1,1,1,1");
    light.position = {1, 2, 3, 4};
    for (int i = 0; i < 4; ++i)
        light.ambient[i] = light.diffuse[3 - i] = light.specular[i] = 0.25f * float(i);
    light.specular[1] = 1;
    glLoadIdentity();
    light.Reposition();
    light.Init();
    EXPECT_TRUE(glIsEnabled(GL_LIGHT2));
    for (const GLenum part : {GL_POSITION, GL_AMBIENT, GL_DIFFUSE, GL_SPECULAR}) {
        GLfloat c[4];
        glGetLightfv(GL_LIGHT2, part, c);
        given += Numbers{c, 4}.text() + ' ';
    }
    EXPECT_EQ(given, "1,2,3,4 0,0.25,0.5,0.75 0.75,0.5,0.25,0 0,1,0.5,0.75 ");
}

} // namespace
