// SPDX-License-Identifier: MIT
// Pictures as files, and progress on a terminal.
#include <cstdio>
#include <cstdlib>

#include <fcntl.h>
#include <unistd.h>

#include <QDir>
#include <QFileInfo>
#include <QTemporaryDir>

#include "host/capture/atomic_output.h"
#include "host/capture/picture_file.h"
#include "host/capture/progress_line.h"
#include "scene.h"

namespace host {
namespace {

QImage noise(QImage::Format format)
{
    QImage image(100, 60, format);
    for (int y = 0; y < 60; ++y)
        for (int x = 0; x < 100; ++x)
            image.setPixel(x, y, 0xff000000u | unsigned(std::rand()));
    return image;
}

TEST(PictureFileTest, FaultsAreFoundBeforeAnythingIsDrawn)
{
    const struct {
        const char *path;
        bool transparent;
        const char *said; // null where nothing is wrong
    } rows[] = {
        {"a.png", true, nullptr},
        {"a.PNG", true, nullptr},
        {"a", true, nullptr},
        {"a.b/c", true, nullptr},
        {"a.jpg", false, nullptr},
        {"a.bmp", false, nullptr},
        {"a.jpg", true, "a.jpg: a picture of this format cannot be transparent; a .png can"},
        {"a.ppm", true, "a.ppm: a picture of this format cannot be transparent; a .png can"},
        {"a.xyz", false, "a.xyz: a picture has one of these suffixes: "},
    };
    for (const auto &c : rows) {
        const QString fault = PictureFile::fault(c.path, c.transparent);
        EXPECT_EQ(fault.isEmpty(), !c.said) << c.path;
        EXPECT_TRUE(fault.startsWith(c.said)) << fault.toStdString();
    }
    const QString said = PictureFile::write(noise(QImage::Format_ARGB32), "/nowhere/a.jpg");
    EXPECT_TRUE(said.contains("transparent")) << said.toStdString();
}

TEST(PictureFileTest, AnOlderPictureIsReplacedByAWholeOneOrByNone)
{
    const QTemporaryDir folder;
    const QString name = folder.filePath("a.png"), link = folder.filePath("link.png");
    const auto left = [&] {
        return QDir(folder.path()).entryList(QDir::Files | QDir::Hidden, QDir::Name);
    };
    const QImage first = noise(QImage::Format_RGB32), second = noise(QImage::Format_RGB32);
    ASSERT_EQ(PictureFile::write(first, name), QString());
    const mode_t mask = umask(0);
    umask(mask);
    EXPECT_EQ(int(QFileInfo(name).permissions() & QFile::ReadOther) != 0, !(mask & 4));
    QFile::setPermissions(name, QFile::ReadOwner | QFile::WriteOwner | QFile::ExeOwner);
    {
        const FileSizeLimit limit(5000);
        const QString said = PictureFile::write(second, name);
        EXPECT_EQ(said, name + " cannot be written: File too large");
        EXPECT_EQ(left(), QStringList("a.png"));
        EXPECT_EQ(QImage(name).convertToFormat(QImage::Format_RGB32), first);
    }
    ASSERT_TRUE(QFile::link(name, link));
    ASSERT_EQ(PictureFile::write(second, link), QString());
    EXPECT_EQ(QImage(name).convertToFormat(QImage::Format_RGB32), second);
    EXPECT_TRUE(QFileInfo(link).isSymLink());
    EXPECT_TRUE(QFileInfo(name).permissions() & QFile::ExeOwner); // as it was
    {
        AtomicFile givenUp(name);
        EXPECT_GT(givenUp.device().write("half"), 0);
        EXPECT_TRUE(QFile::exists(givenUp.path()));
    }
    EXPECT_EQ(left(), QStringList({"a.png", "link.png"}));
    EXPECT_EQ(QImage(name).convertToFormat(QImage::Format_RGB32), second);
    EXPECT_EQ(PictureFile::write(first, "/dev/full"),
              QString("/dev/full cannot be written: No space left on device"));
    EXPECT_EQ(PictureFile::write(first, "/dev/null"), QString());
    EXPECT_FALSE(QFileInfo("/dev/null").isFile()); // nothing took its place
    EXPECT_EQ(PictureFile::write(first, folder.path()), folder.path() + " is a folder.");
    const QString nowhere = folder.filePath("none/a.png");
    EXPECT_EQ(PictureFile::write(first, nowhere),
              nowhere + " cannot be written: No such file or directory");
}

std::string shownOn(std::FILE *stream, int reader)
{
    ProgressLine line(stream, "Recording");
    for (int i = 1; i <= 20; ++i)
        if (i < 4 || i == 20)
            line.show(i, 20);
    line.end();
    line.end();
    std::fflush(stream);
    char text[500];
    const ssize_t size = pread(reader, text, sizeof text, 0);
    return std::string(text, std::size_t(std::max<ssize_t>(
                                 0, size >= 0 ? size : read(reader, text, sizeof text))));
}

TEST(ProgressLineTest, IsRewrittenOnATerminalAndRareInAFile)
{
    std::FILE *file = std::tmpfile();
    EXPECT_EQ(shownOn(file, fileno(file)), "Recording: 1 of 20 (5 %)\nRecording: 2 of 20 (10 %)\n"
                                           "Recording: 20 of 20 (100 %)\n");
    std::fclose(file);
    const int terminal = posix_openpt(O_RDWR | O_NOCTTY);
    ASSERT_TRUE(terminal >= 0 && grantpt(terminal) == 0 && unlockpt(terminal) == 0);
    std::FILE *other = std::fopen(ptsname(terminal), "w");
    ASSERT_TRUE(other);
    EXPECT_EQ(shownOn(other, terminal),
              "\rRecording: 1 of 20 (5 %)\rRecording: 2 of 20 (10 %)\rRecording: 3 of 20 (15 %)"
              "\rRecording: 20 of 20 (100 %)\r\n");
    std::fclose(other);
    close(terminal);
}

} // namespace
} // namespace host
