// SPDX-License-Identifier: MIT
// The program as a person meets it: started on a file and steered by the X server's own input.
// Needs xdotool and openbox.
#include <gtest/gtest.h>

#include <QFile>
#include <QImage>
#include <QProcess>
#include <QTemporaryDir>
#include <QTest>

namespace {

constexpr int patience = 120000; // milliseconds; far more than anything takes

/// A red square to the left of a green one, facing along Z.
const char *const squares = "mtllib two.mtl\nv -2 -1 0\nv 0 -1 0\nv 0 1 0\nv -2 1 0\nv 2 -1 0\n"
                            "v 2 1 0\nusemtl red\nf 1 2 3 4\nusemtl green\nf 2 5 6 3\n";

class EndToEnd : public testing::Test {
protected:
    QTemporaryDir folder;
    QProcess manager, viewer;

    void write(const char *name, const QByteArray &text) const
    {
        QFile file(folder.filePath(name));
        ASSERT_TRUE(file.open(QIODevice::WriteOnly) && file.write(text) > 0);
    }
    static QString run(const QStringList &arguments)
    {
        QProcess tool;
        tool.start("xdotool", arguments);
        EXPECT_TRUE(tool.waitForStarted()) << "xdotool is missing";
        EXPECT_TRUE(tool.waitForFinished(patience)) << arguments.join(' ').toStdString();
        return QString::fromUtf8(tool.readAllStandardOutput()).trimmed();
    }
    /// The window of that name once it has the keyboard. Both are asked again in every turn: a
    /// name can belong to several windows for a while, and the X server or its manager forgets a
    /// request that comes while another window goes.
    static QString windowOf(const char *name)
    {
        QString active, seen;
        EXPECT_TRUE(QTest::qWaitFor(
            [&] {
                seen = run({"search", "--onlyvisible", "--name", name});
                if (seen.isEmpty())
                    return false;
                const QStringList ids = seen.split('\n');
                run({"windowactivate", ids.last()});
                active = run({"getactivewindow"});
                return ids.contains(active);
            },
            patience))
            << name << " has the ids \"" << seen.toStdString() << "\", the keyboard is at "
            << active.toStdString();
        return active;
    }
    /// Whether the window comes to be alone, or something comes on top of it as dialogs and menus
    /// do. It has another one within.
    static bool comesToBe(bool alone)
    {
        return QTest::qWaitFor(
            [&] {
                const int more = run({"search", "--onlyvisible", "--class", "glview"}).count('\n');
                return alone ? more == 1 : more > 1;
            },
            patience);
    }
    /// Types a path into the dialog that the keys open; it listens once it has the keyboard.
    static void answer(const char *keys, const char *dialog, const QString &path)
    {
        run({"key", keys});
        windowOf(dialog);
        run({"key", "ctrl+a"});
        run({"type", "--delay", "5", path});
        run({"key", "Return"});
    }
    /// Saves what the window shows, and returns how far right of its middle the red square's is; a
    /// large number without one.
    double redOf(const QString &name) const
    {
        const QString path = folder.filePath(name);
        answer("ctrl+s", "Save a picture", path);
        EXPECT_TRUE(QTest::qWaitFor([&] { return QFile::exists(path); }, patience));
        const QImage picture(path);
        EXPECT_EQ(picture.size(), QSize(800, 600));
        double sum = 0, pixels = 0;
        for (int y = 0; y < picture.height(); ++y)
            for (int x = 0; x < picture.width(); ++x)
                if (const QColor c = picture.pixelColor(x, y);
                    c.red() > 2 * c.green() + 30 && c.red() > 2 * c.blue() + 30) {
                    sum += x - 400;
                    ++pixels;
                }
        return pixels > 1000 ? sum / pixels : 1000;
    }
    /// Where the red square's middle comes to rest, best at @p middle: turns are soft, so that the
    /// first pictures may show the way. @p key is pressed before each.
    double redAtRest(double middle, const char *key = "shift")
    {
        double red = 1000;
        for (int picture = 0; picture < 20 && std::abs(red - middle) > 4 && !HasFailure();
             ++picture) {
            run({"key", key});
            red = redOf(QString("%1%2.png").arg(middle).arg(picture));
            // A dialog that is still there would get what follows.
            EXPECT_TRUE(comesToBe(true));
            windowOf("two.obj");
        }
        return red;
    }
    void SetUp() override
    {
        write("two.obj", squares);
        write("other.obj", squares);
        write("two.mtl", "newmtl red\nKd 0.9 0 0\nnewmtl green\nKd 0 0.9 0\n");
        // A window that comes while the manager takes over may be shown by neither; it says when
        // it has.
        const QString ready = folder.filePath("ready");
        manager.start("openbox", {"--startup", "touch " + ready});
        ASSERT_TRUE(manager.waitForStarted()) << "openbox is missing";
        ASSERT_TRUE(QTest::qWaitFor([&] { return QFile::exists(ready); }, patience));
        viewer.setProcessChannelMode(QProcess::ForwardedChannels);
        viewer.start(GLVIEW_PROGRAM, {"--size", "800x600", folder.filePath("two.obj")});
        ASSERT_TRUE(viewer.waitForStarted());
    }
};

TEST_F(EndToEnd, AModelIsOpenedTurnedSavedReplacedAndClosedByTheMenu)
{
    const QString window = windowOf("two.obj");
    ASSERT_TRUE(comesToBe(true));
    run({"mousemove", "--window", window, "400", "150"});
    EXPECT_NEAR(redAtRest(-181, "1"), -181, 4);

    // Half around: 450 pixels at 0.4 degrees each. In two drags Qt may leave out the motion of the
    // first, as one that another follows.
    run({"mousemove", "--window", window, "175", "150", "mousedown", "1"});
    run({"mousemove", "--window", window, "625", "150", "mouseup", "1"});
    EXPECT_NEAR(redAtRest(180), 180, 4);

    answer("ctrl+o", "^Open files$", folder.filePath("other.obj"));
    windowOf("other.obj");
    ASSERT_TRUE(comesToBe(true));
    run({"mousemove", "--window", window, "300", "60", "click", "3"});
    ASSERT_TRUE(comesToBe(false)) << "no menu";
    run({"key", "Up", "Return"}); // its last entry
    EXPECT_TRUE(viewer.waitForFinished(patience));
    EXPECT_TRUE(viewer.exitStatus() == QProcess::NormalExit && viewer.exitCode() == 0);
}

} // namespace
