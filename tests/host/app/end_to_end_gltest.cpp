// SPDX-License-Identifier: MIT
// The program as a person meets it: started on a file and steered by the X server's own input.
// Needs xdotool and openbox.
#include <gtest/gtest.h>

#include <QFile>
#include <QProcess>
#include <QTemporaryDir>
#include <QTest>

namespace {

constexpr int patience = 120000; // milliseconds; far more than anything takes

QString run(const QStringList &arguments)
{
    QProcess tool;
    tool.start("xdotool", arguments);
    EXPECT_TRUE(tool.waitForFinished(patience))
        << "no xdotool? " << arguments.join(' ').toStdString();
    return QString::fromUtf8(tool.readAllStandardOutput()).trimmed();
}

/// Windows of a name, or of the program: it has another one within.
QStringList windows(const char *by, const char *what)
{
    return run({"search", "--onlyvisible", by, what}).split('\n', Qt::SkipEmptyParts);
}

TEST(EndToEnd, AModelIsShownAndClosedByTheMenu)
{
    const QTemporaryDir folder;
    QFile file(folder.filePath("one.obj"));
    ASSERT_TRUE(file.open(QIODevice::WriteOnly) &&
                file.write("v 0 0 0\nv 1 0 0\nv 0 1 0\nf 1 2 3\n") > 0);
    file.close();
    // A window that comes while the manager takes over may be shown by neither; it says when it
    // has.
    const QString ready = folder.filePath("ready");
    QProcess manager, viewer;
    manager.start("openbox", {"--startup", "touch " + ready});
    ASSERT_TRUE(QTest::qWaitFor([&] { return QFile::exists(ready); }, patience)) << "no openbox?";
    viewer.start(GLVIEW_PROGRAM, {"--size", "800x600", file.fileName()});
    // Both are asked again in every turn: a name can belong to several windows for a while.
    QString active;
    const auto isActive = [&] {
        const QStringList named = windows("--name", "one.obj");
        run({"windowactivate", named.value(named.size() - 1)});
        active = run({"getactivewindow"});
        return named.contains(active) && windows("--class", "glview").size() == 2;
    };
    ASSERT_TRUE(QTest::qWaitFor(isActive, patience)) << active.toStdString();
    run({"mousemove", "--window", active, "300", "60", "click", "3"});
    const auto isOpen = [] { return windows("--class", "glview").size() > 2; };
    ASSERT_TRUE(QTest::qWaitFor(isOpen, patience)) << "no menu";
    run({"key", "Up", "Return"}); // its last entry
    EXPECT_TRUE(viewer.waitForFinished(patience));
    EXPECT_TRUE(viewer.exitStatus() == QProcess::NormalExit && viewer.exitCode() == 0);
}

} // namespace
