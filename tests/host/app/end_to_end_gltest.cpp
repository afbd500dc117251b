// SPDX-License-Identifier: MIT
// The program as a person meets it: started on a file, steered by the X server's own input, judged
// by the pixels on the screen. Needs xdotool and openbox.
#include <functional>

#include <gtest/gtest.h>

#include "host/view/overlay/triad.h"

#include <QElapsedTimer>
#include <QFile>
#include <QGuiApplication>
#include <QImage>
#include <QPixmap>
#include <QProcess>
#include <QScreen>
#include <QTemporaryDir>
#include <QThread>

namespace {

constexpr int patience = 20000; // milliseconds; far more than anything takes

/// Three boxes: a red one on the left, a green one on the right, and a small blue one that stands
/// in front of the gap between them.
const char *const boxes = R"(mtllib boxes.mtl
v -2 -1 -1
v -0.5 -1 -1
v -0.5 1 -1
v -2 1 -1
v -2 -1 1
v -0.5 -1 1
v -0.5 1 1
v -2 1 1
v 0.5 -1 -1
v 2 -1 -1
v 2 1 -1
v 0.5 1 -1
v 0.5 -1 1
v 2 -1 1
v 2 1 1
v 0.5 1 1
v -0.25 -0.25 1.5
v 0.25 -0.25 1.5
v 0.25 0.25 1.5
v -0.25 0.25 1.5
v -0.25 -0.25 2
v 0.25 -0.25 2
v 0.25 0.25 2
v -0.25 0.25 2
)";

QByteArray box(const char *name, int base)
{
    const int faces[6][4] = {{1, 4, 3, 2}, {5, 6, 7, 8}, {1, 2, 6, 5},
                             {2, 3, 7, 6}, {3, 4, 8, 7}, {4, 1, 5, 8}};
    QByteArray text = QByteArray("o ") + name + "\nusemtl " + name + "\n";
    for (const auto &face : faces) {
        text += "f";
        for (int corner : face)
            text += " " + QByteArray::number(base + corner);
        text += "\n";
    }
    return text;
}

void write(const QString &path, const QByteArray &text)
{
    QFile file(path);
    ASSERT_TRUE(file.open(QIODevice::WriteOnly));
    file.write(text);
}

enum class Colour { Red, Green, Blue, Other };

Colour colourOf(QRgb c)
{
    const int r = qRed(c), g = qGreen(c), b = qBlue(c);
    if (r > 2 * g && r > 2 * b && r > 40)
        return Colour::Red;
    if (g > 2 * r && g > 2 * b && g > 40)
        return Colour::Green;
    if (b > 2 * r && b > 2 * g && b > 40)
        return Colour::Blue;
    return Colour::Other;
}

/// Where a colour is seen, above the overlays at the window's lower edge.
struct Blob {
    int pixels = 0;
    QPointF middle;
    QRect extent;
};

Blob find(const QImage &picture, Colour colour)
{
    constexpr int overlays = 110; // pixels
    Blob blob;
    for (int y = 0; y < picture.height() - overlays; ++y) {
        for (int x = 0; x < picture.width(); ++x) {
            if (colourOf(picture.pixel(x, y)) != colour)
                continue;
            ++blob.pixels;
            blob.middle += QPointF(x, y);
            blob.extent |= QRect(x, y, 1, 1);
        }
    }
    if (blob.pixels)
        blob.middle /= blob.pixels;
    return blob;
}

/// The program on the model, with a window manager that gives it the keyboard.
class EndToEnd : public testing::Test {
protected:
    QTemporaryDir folder;
    QProcess viewer;
    QString id;   // of the window
    QRect window; // on the screen
    QImage start; // the window at rest, the pointer beside the model
    const QPoint beside{14, 300};

    static QProcess *manager; // one for all: a display changes its manager with some delay

    static void SetUpTestSuite()
    {
        manager = new QProcess;
        manager->start("openbox", QStringList());
        ASSERT_TRUE(manager->waitForStarted()) << "openbox is missing";
        // It tells the number of desktops once it manages them.
        ASSERT_TRUE(eventually([] { return !run({"get_num_desktops"}).isEmpty(); }));
    }
    static void TearDownTestSuite()
    {
        manager->terminate();
        manager->waitForFinished();
        delete manager;
    }

    void SetUp() override
    {
        write(folder.filePath("boxes.obj"),
              QByteArray(boxes) + box("red", 0) + box("green", 8) + box("blue", 16));
        write(folder.filePath("boxes.mtl"), "newmtl red\nKd 0.9 0 0\nnewmtl green\nKd 0 0.9 0\n"
                                            "newmtl blue\nKd 0 0 0.9\n");
        launch("boxes.obj");
        ASSERT_TRUE(eventually([&] { return find(grab(), Colour::Red).pixels > 1000; }));
        run({"key", "--window", "0", "1"}); // from the front: squares
        start = settled();
    }

    /// Starts the program on a file of the folder and puts the pointer beside its content.
    void launch(const char *name)
    {
        viewer.setProcessChannelMode(QProcess::ForwardedChannels);
        viewer.start(GLVIEW_PROGRAM, {"--size", "800x600", folder.filePath(name)});
        ASSERT_TRUE(viewer.waitForStarted());
        ASSERT_TRUE(eventually([&] {
            id = run({"search", "--onlyvisible", "--name", name}).section('\n', -1);
            return !id.isEmpty();
        })) << "no window";
        run({"windowactivate", "--sync", id});
        // Where the pointer lands, since the geometry that is told counts the frame twice.
        run({"mousemove", "--window", id, "0", "0"});
        const QStringList shell = run({"getmouselocation", "--shell"}).split('\n');
        const auto number = [&](const char *key) {
            return shell.filter(QString(key) + '=').value(0).section('=', 1).toInt();
        };
        window = QRect(number("X"), number("Y"), 800, 600);
        point(beside);
    }

    void TearDown() override
    {
        viewer.kill();
        viewer.waitForFinished();
    }

    static QString run(const QStringList &arguments)
    {
        QProcess tool;
        tool.start("xdotool", arguments);
        EXPECT_TRUE(tool.waitForStarted()) << "xdotool is missing";
        tool.waitForFinished(patience);
        return QString::fromUtf8(tool.readAllStandardOutput()).trimmed();
    }

    static bool eventually(const std::function<bool()> &condition)
    {
        QElapsedTimer since;
        for (since.start(); since.elapsed() < patience; QThread::msleep(50))
            if (condition())
                return true;
        return false;
    }

    static QImage screen() { return QGuiApplication::primaryScreen()->grabWindow(0).toImage(); }
    QImage grab() const { return screen().copy(window); }

    /// The window once it stays as it is.
    QImage settled() const
    {
        QImage last = grab();
        int same = 0;
        eventually([&] {
            const QImage now = grab();
            same = now == last ? same + 1 : 0;
            last = now;
            return same == 8;
        });
        return last;
    }

    void point(int x, int y) const
    {
        run({"mousemove", QString::number(window.x() + x), QString::number(window.y() + y)});
    }
    void point(const QPointF &p) const { point(qRound(p.x()), qRound(p.y())); }
};

QProcess *EndToEnd::manager = nullptr;

TEST_F(EndToEnd, TheModelIsShownAsItIs)
{
    const Blob red = find(start, Colour::Red), green = find(start, Colour::Green),
               blue = find(start, Colour::Blue);
    EXPECT_LT(red.middle.x(), blue.middle.x());
    EXPECT_LT(blue.middle.x(), green.middle.x());
    EXPECT_NEAR(red.pixels, green.pixels, red.pixels * 0.02);
    EXPECT_GT(green.extent.right() - red.extent.left(), 0.8 * window.width());
}

TEST_F(EndToEnd, ThePartUnderThePointerIsMarkedAndNamed)
{
    const Blob red = find(start, Colour::Red), green = find(start, Colour::Green);
    point(red.middle);
    const QImage marked = settled();
    EXPECT_NE(marked.pixel(red.middle.toPoint()), start.pixel(red.middle.toPoint()));
    EXPECT_EQ(find(marked, Colour::Green).pixels, green.pixels);
    const QRect note(100, 520, 150, 40);
    EXPECT_NE(marked.copy(note), start.copy(note)) << "its name appears near the corner";
    point(beside);
    EXPECT_EQ(settled(), start);
}

TEST_F(EndToEnd, ADragOrbitsAndThePressAloneDoesNot)
{
    const Blob blue = find(start, Colour::Blue);
    point(400, 80); // above the boxes: nothing is marked
    const QImage before = settled();
    run({"mousedown", "1"});
    EXPECT_EQ(settled(), before);
    point(440, 80);
    run({"mouseup", "1"});
    const QImage after = settled();
    EXPECT_GT(find(after, Colour::Blue).middle.x(), blue.middle.x() + 10)
        << "what is in front follows the hand";
    const QRect text(0, 0, 200, 50), corner(780, 520, 20, 20);
    EXPECT_EQ(after.copy(text), start.copy(text));
    EXPECT_EQ(after.copy(corner), start.copy(corner));
}

TEST_F(EndToEnd, TheWheelZoomsAboutThePointer)
{
    const Blob red = find(start, Colour::Red);
    const QPoint edge(red.extent.left() + 4, qRound(red.middle.y()));
    point(edge.x(), edge.y());
    run({"click", "--repeat", "4", "4"}); // forward
    point(20, 20);                        // off the model, so that red shows
    const QImage nearer = settled();
    EXPECT_GT(find(nearer, Colour::Green).pixels + find(nearer, Colour::Red).pixels,
              1.5 * (find(start, Colour::Green).pixels + red.pixels));
    EXPECT_EQ(colourOf(nearer.pixel(edge + QPoint(6, 0))), Colour::Red);
    EXPECT_EQ(colourOf(nearer.pixel(edge - QPoint(20, 0))), Colour::Other);

    point(edge.x(), edge.y());
    run({"click", "--repeat", "4", "5"}); // back
    point(beside);
    EXPECT_NEAR(find(settled(), Colour::Red).pixels, red.pixels, red.pixels * 0.02);
}

TEST_F(EndToEnd, TheRightButtonOpensTheMenuAndAnEntryActs)
{
    point(300, 60);
    const QImage before = settled();
    run({"click", "3"});
    QRect menu;
    ASSERT_TRUE(eventually([&] {
        const QImage now = settled();
        menu = QRect();
        for (int y = 0; y < now.height(); ++y)
            for (int x = 0; x < now.width(); ++x)
                if (now.pixel(x, y) != before.pixel(x, y))
                    menu |= QRect(x, y, 1, 1);
        return menu.width() > 100 && menu.height() > 150;
    })) << "no menu";
    EXPECT_NEAR(menu.left(), 300, 5);
    EXPECT_NEAR(menu.top(), 60, 5);
    run({"key", "Escape"});
    EXPECT_EQ(settled(), before) << "closing it changes nothing";

    run({"click", "3"});
    eventually([&] { return settled() != before; });
    run({"key", "Down", "Down", "Return"}); // the second entry: the first view, from the side
    EXPECT_TRUE(
        eventually([&] { return grab().copy(0, 70, 800, 530) != before.copy(0, 70, 800, 530); }));
    EXPECT_GT(find(settled(), Colour::Red).extent.height(),
              find(start, Colour::Red).extent.height() / 2);
    EXPECT_FALSE(find(settled(), Colour::Red).extent == find(start, Colour::Red).extent);

    run({"click", "3"});
    eventually([&] { return settled() != before; });
    run({"key", "Up", "Return"}); // the last entry: Quit
    EXPECT_TRUE(viewer.waitForFinished(patience));
    EXPECT_EQ(viewer.exitCode(), 0);
}

TEST_F(EndToEnd, KeysLookFromTheSidesListTheBindingsAndQuit)
{
    run({"key", "2"}); // from the back
    const QImage back = settled();
    EXPECT_GT(find(back, Colour::Red).middle.x(), find(back, Colour::Green).middle.x());
    EXPECT_EQ(find(back, Colour::Blue).pixels > 0, true) << "through the gap";
    run({"key", "1"});
    const QImage front = settled();
    run({"key", "question"});
    const QImage list = settled();
    EXPECT_NE(list.copy(300, 100, 200, 400), front.copy(300, 100, 200, 400));
    run({"key", "Escape"});
    EXPECT_EQ(settled(), front);
    run({"key", "q"});
    EXPECT_TRUE(viewer.waitForFinished(patience));
    EXPECT_EQ(viewer.exitStatus(), QProcess::NormalExit);
    EXPECT_EQ(viewer.exitCode(), 0);
}

/// The triad is a scene object of its own in a corner: what it hears depends on which object is
/// found under the pointer and on the pointer's place in that object.
TEST_F(EndToEnd, AnArmOfTheTriadThatIsClickedIsLookedAlong)
{
    constexpr int reach = 34; // pixels from its middle to the end of an arm
    const int middle = int(host::Triad::margin() + host::Triad::size() / 2);
    const QPoint triad(middle, window.height() - middle);
    point(triad + QPoint(reach, 0)); // +X
    run({"click", "1"});
    const QImage fromRight = settled();
    EXPECT_EQ(find(fromRight, Colour::Red).pixels, 0) << "the green box hides the red one";
    EXPECT_GT(find(fromRight, Colour::Green).pixels, 1000);
    EXPECT_LT(find(fromRight, Colour::Blue).middle.x(), 300) << "what is in front is on the left";

    run({"key", "1"});
    EXPECT_EQ(find(settled(), Colour::Red).pixels, find(start, Colour::Red).pixels)
        << "keys are heard over the triad too";
    point(triad + QPoint(0, -reach)); // +Y
    run({"click", "1"});
    const QImage fromTop = settled();
    EXPECT_GT(find(fromTop, Colour::Blue).middle.y(), find(fromTop, Colour::Red).middle.y())
        << "what is in front is below";
}

TEST_F(EndToEnd, ARectangleSelectsThePartsInIt)
{
    const Blob red = find(start, Colour::Red), green = find(start, Colour::Green);
    const auto dragAcross = [&](const QRect &extent) {
        point(extent.topLeft() + QPoint(20, 20));
        run({"keydown", "shift", "mousedown", "3"});
        point(extent.center());
        point(extent.bottomRight() - QPoint(20, 20));
        settled();
        run({"mouseup", "3", "keyup", "shift"});
        point(beside);
        return settled();
    };
    const QImage selected = dragAcross(green.extent);
    EXPECT_LT(find(selected, Colour::Green).pixels, green.pixels / 10) << "it is tinted";
    EXPECT_EQ(find(selected, Colour::Red).pixels, red.pixels) << "the rest is as it was";
    point(beside);
    run({"click", "1"});
    EXPECT_EQ(find(settled(), Colour::Green).pixels, green.pixels) << "a click selects nothing";
}

TEST_F(EndToEnd, AClickInTheLegendTogglesItsColumn)
{
    viewer.kill();
    viewer.waitForFinished();
    QByteArray rows = "x,flat\n";
    for (int i = 0; i <= 10; ++i)
        rows += QByteArray::number(i) + "," + (i % 2 ? "1" : "0") + "\n";
    write(folder.filePath("flat.csv"), rows);
    launch("flat.csv");
    // The first colour of a plot on a light background.
    const auto ink = [](const QImage &picture) {
        int pixels = 0;
        for (int y = 0; y < picture.height(); ++y)
            for (int x = 0; x < picture.width(); ++x)
                pixels += picture.pixel(x, y) == qRgb(0, 114, 178);
        return pixels;
    };
    const auto inked = [&] { return ink(settled()); };
    ASSERT_TRUE(eventually([&] { return ink(grab()) > 1000; }));
    const int shown = inked();
    point(QPoint(75, 38)); // the only entry of the legend, below the title
    run({"click", "1"});
    point(beside);
    EXPECT_LT(inked(), shown / 4);
    point(QPoint(75, 38));
    run({"click", "1"});
    point(beside);
    EXPECT_EQ(inked(), shown);
}

TEST_F(EndToEnd, TheNextFileIsLookedAtAsTheOneBefore)
{
    viewer.kill();
    viewer.waitForFinished();
    ASSERT_TRUE(QFile::copy(folder.filePath("boxes.obj"), folder.filePath("next.obj")));
    launch("boxes.obj");
    ASSERT_TRUE(eventually([&] { return find(grab(), Colour::Red).pixels > 1000; }));
    run({"key", "o", "w"});
    settled(); // a turn shows the whole from where it ends, if nothing else is under way
    run({"key", "2"});
    const QImage back = settled();
    run({"key", "Page_Down"});
    ASSERT_TRUE(eventually([&] { return !run({"search", "--name", "next.obj"}).isEmpty(); }));
    const auto apart = [&](const QImage &now) {
        int pixels = 0;
        for (int y = 60; y < 460; ++y)
            for (int x = 0; x < 800; ++x)
                pixels += now.pixel(x, y) != back.pixel(x, y);
        return pixels;
    };
    EXPECT_TRUE(eventually([&] { return apart(grab()) < 100; }));
    for (const char *key : {"o", "w", "1"}) {
        run({"key", key});
        EXPECT_GT(apart(settled()), 100) << key;
        run({"key", *key == '1' ? "2" : key});
    }
}

/// OpenGL counts device pixels, and a window that counted others would be filled in part.
TEST_F(EndToEnd, ADenseScreenIsFilledAndItsTypeIsLarger)
{
    viewer.kill();
    viewer.waitForFinished();
    qputenv("QT_SCALE_FACTOR", "2");
    launch("boxes.obj");
    qunsetenv("QT_SCALE_FACTOR");
    ASSERT_TRUE(eventually([&] { return find(grab(), Colour::Red).pixels > 1000; }));
    run({"key", "1"});
    const QRect content(0, 160, 800, 210), heading(0, 60, 100, 40);
    EXPECT_EQ(settled().copy(content), start.copy(content));
    EXPECT_NE(grab().copy(heading), start.copy(heading));
}

TEST_F(EndToEnd, FilesAreOpenedAndPicturesSaved)
{
    write(folder.filePath("grey.obj"), QByteArray(boxes) + box("plain", 0));
    const QString picture = folder.filePath("saved.png");
    const auto answer = [](const char *keys, const char *dialog, const QString &path) {
        run({"key", keys});
        QString found;
        ASSERT_TRUE(eventually([&] {
            found = run({"search", "--onlyvisible", "--name", dialog});
            return !found.isEmpty();
        })) << "no dialog";
        // Again if the dialog was not ready to listen.
        ASSERT_TRUE(eventually([&] {
            run({"windowactivate", "--sync", found.section('\n', -1)});
            run({"key", "ctrl+a"});
            run({"type", "--delay", "5", path});
            run({"key", "Return"});
            QThread::msleep(300);
            return run({"search", "--onlyvisible", "--name", dialog}).isEmpty();
        })) << "the dialog stays";
    };
    answer("ctrl+s", "Save a picture", picture);
    ASSERT_TRUE(eventually([&] { return !QImage(picture).isNull(); }));
    const QImage saved(picture);
    EXPECT_EQ(saved.size(), window.size());
    const Blob inPicture = find(saved, Colour::Red), onScreen = find(start, Colour::Red);
    EXPECT_NEAR(inPicture.pixels, onScreen.pixels, onScreen.pixels * 0.01);
    EXPECT_NEAR(inPicture.middle.x(), onScreen.middle.x(), 1);
    EXPECT_NEAR(inPicture.middle.y(), onScreen.middle.y(), 1);

    answer("ctrl+o", "Open files", folder.filePath("grey.obj"));
    ASSERT_TRUE(eventually([&] { return !run({"search", "--name", "grey.obj"}).isEmpty(); }));
    const QImage other = settled();
    EXPECT_EQ(find(other, Colour::Red).pixels, 0);
    EXPECT_NE(other.pixel(400, 300), start.pixel(10, 300)) << "the other model is not there";
}

} // namespace
