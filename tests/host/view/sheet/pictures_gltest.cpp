// SPDX-License-Identifier: MIT
// Which tiles are drawn again, and that copied pixels are those that drawing makes.
#include <cstring>
#include <set>

#include <QGLWidget>
#include <QOpenGLFramebufferObject>
#include <QPainter>
#include <QRegularExpression>

#include "host/view/sheet/sheet_view.h"
#include "support.h"

namespace host {
namespace {

constexpr int columns = 5;

/// Frames of single-coloured tiles in a framebuffer. A frame is a list of tiles, each its number,
/// the letter of its key (- for none; in capitals, half a tile to the left) and the column where it
/// stands (its number's, if none is named), and w if it is narrower than others; before it * if it
/// refines, + if it is the last that does, ! if no more do, ~ if its context is another, ^ if the
/// window is higher, % if its ground is another, < if what is drawn into is a column short of it.
class Frames {
public:
    explicit Frames(const QSize &tile) : tile_(tile) {}
    TilePictures pictures;

    std::string run(const QString &frame)
    {
        QGLWidget &widget = frame.contains('~') ? other_ : own_;
        widget.makeCurrent();
        const QSize window(tile_.width() * columns, tile_.height() + frame.contains('^'));
        QOpenGLFramebufferObject target(window - QSize(frame.contains('<') * tile_.width(), 0));
        target.bind();
        glDisable(GL_SCISSOR_TEST);
        glClearColor(0, 0, 1, 1); // what nobody wrote
        glClear(GL_COLOR_BUFFER_BIT);
        std::string drawn;
        const QColor ground(frame.contains('%') ? Qt::red : Qt::black);
        QImage expected(target.size(), QImage::Format_RGB32); // from its lower row
        expected.fill(ground);
        QPainter painter(&expected);
        if (frame.contains('!'))
            pictures.giveUp();
        pictures.begin(window, frame.contains('*') || frame.contains('+'), ground);
        static const QRegularExpression words("(\\d)([A-Za-z-])(\\d?)(w?)");
        for (auto it = words.globalMatch(frame); it.hasNext();) {
            const QRegularExpressionMatch word = it.next();
            const int id = word.captured(1).toInt(),
                      letter = word.captured(2)[0].toLower().unicode();
            const int column = word.captured(3).isEmpty() ? id - 1 : word.captured(3).toInt();
            const int half = word.captured(2)[0].isUpper() ? tile_.width() / 2 : 0;
            const QRect place(column * tile_.width() - half, 0,
                              tile_.width() - word.captured(4).size(), tile_.height());
            painter.fillRect(place, QColor(id, letter, 0));
            if (pictures.show(id, letter == '-' ? "" : word.captured(2).toLower().toLatin1(),
                              place))
                continue;
            drawn += std::to_string(id);
            glEnable(GL_SCISSOR_TEST);
            glScissor(place.x(), place.y(), place.width(), place.height());
            glClearColor(float(id) / 255, float(letter) / 255, 0, 1);
            glClear(GL_COLOR_BUFFER_BIT);
            glDisable(GL_SCISSOR_TEST);
        }
        pictures.finish();
        if (frame.contains('+'))
            pictures.keepSmoothed();
        painter.end();
        EXPECT_EQ(target.toImage().convertToFormat(expected.format()), expected.mirrored());
        EXPECT_EQ(glGetError(), GLenum(GL_NO_ERROR));
        return drawn;
    }

private:
    QSize tile_;
    QGLWidget own_, other_;
};

TEST(TilePicturesTest, DrawsWhatChangedAndCopiesTheRest)
{
    const struct {
        int side;
        int room; // in pages beside the window; below 0: for nothing
        const char *frames, *drawn;
    } rows[] = {
        {9, 9, "1a 2b|1a 2b|1c 2b|1a 2b 3a|2b|1a 2b 3a", "12||1|13||"},
        {9, 9, "1a0 2b1|1a1 2b0|1a4 2b3", "12||"},
        {9, 9, "1- 2b|1- 2b", "12|1"},
        {9, 9, "1a 2b|*1a 2b|+1a 2b|*1a 2b|1a 2c|+1a 2c|*1a 2c", "12|12|12||2|2|"},
        {9, 9, "1a 2b|*1a 2b|+1c 2b|*1a 2b|1a 2b", "12|12|12|1|"}, // not the same in all frames
        {9, 9, "1a|*1a|+1a 2b|*1a 2b", "1|1|12|2"},
        {9, 9, "1a 2b|*1a 2b|!1a 2c|*1a 2b|*1a 2c", "12|12|2|2|2"}, // too slow to be smoothed
        {9, 9, "1a 2b|1a 2b~|1a 2b", "12|12|12"},
        {9, 9, "1a|1a9|1a|2b9|2b9", "1|||2|2"},     // out of the window nothing is there to be kept
        {9, 9, "1A5|1A5|1a|1A5|1A0|1a", "1||1|||"}, // but what is in it is
        {9, 9, "1A0|1A5|1A5|1A0|1a|*1a", "1|1||1|1|1"},
        {9, 0, "1a 2b|1a 2b", "12|12"},
        {9, 9, "1a 2b 3a|1a 2b 3a|1a 2b 3a|1c 2b 3a|1c 2b 3a|1c 2b|1c 2b|1c 2b", "123|||1||||"},
        {9, 9, "1a 2b|1a 2b|1a 2b|1a1 2b0|1a1 2b0|1a1 2b0|1a 2b|1a 2c|1a 2c", "12|||||||2|"},
        {9, 9, "1a 2b|1a 2b|1a 2b|%1a 2b|%1c 2b|%1c 2b|1c 2b", "12||||1||"},
        {9, 9, "1a|*1a|+1a|1a|1a 2b|1a 2b|*1c 2b|1a 2b|1c 2b|1a", "1|1|1||2||12||1|1"},
        {9, -1, "1a 2b|1a 2b", "12|12"},
        {9, 9, "1a|<~1a 5b|~1a 5b|~1a 5b", "1|15|15|"},
        {9, 9, "1a|<^1a 5b|^1a 5b|^1a 5b", "1|5|5|"},
        {9, 9, "1a 2bw|1a 2bw|1aw 2bw|1aw 2bw", "12|2|12|"}, // the first says how large they are
        {600, 2, "1a|2b|3c|2b|1a|3c", "1|2|3||1|3"},
        {600, 2, "1a 2b 3c|1a 2b 3c", "123|3"},
        {600, 2, "1a 2b|3c 1d 2e|3c 1d 2e", "12|312|3"},
        {600, 2, "1a 2b|^1a 2b|^1a 2b", "12|12|2"}, // a page less
        {9, 9, "1a 2b|^1a 2b", "12|"},
    };
    for (const auto &row : rows) {
        Frames frames({row.side, row.side});
        const quint64 page =
            quint64(1024 / row.side * row.side) * quint64(1024 / row.side) * quint64(row.side) * 4;
        const quint64 window = quint64(row.side) * quint64(row.side) * columns * 4;
        const quint64 budget = row.room < 0 ? 0 : quint64(row.room) * page + window;
        frames.pictures.setBudget(budget);
        QStringList drawn;
        for (const QString &frame : QString(row.frames).split('|'))
            drawn << QString::fromStdString(frames.run(frame));
        EXPECT_EQ(drawn.join('|').toStdString(), row.drawn) << row.frames;
        EXPECT_LE(frames.pictures.byteSize(), budget);
    }
}

TEST_F(ViewTest, ASheetDrawsWhatChangedAndCopiesTheSamePixels)
{
    QStringList paths;
    for (int i = 1; i <= 4; ++i)
        paths << boxes(QString("m%1.obj").arg(i), i);
    SheetView sheet(*window, queue, "folder", paths << file("m5.csv", weather()));
    sheet.setTileSize(60);
    window->frame()->resize(320, 240);
    show(sheet);
    std::set<int> drawn; // since it was cleared
    QImage image;
    bool looked = false;
    double takes = 0; // seconds, each frame
    QObject::connect(&sheet, &View::framePainted, [&] {
        time += takes;
        if (looked)
            image = widget->grabFrameBuffer();
        for (const int id : sheet.pictures().drawn())
            drawn.insert(id);
    });
    const auto pixels = [&] {
        frame(), rest(sheet), drawn.clear();
        looked = true, frame(), looked = false;
        return image;
    };
    const auto at = [&](const QString &word) -> std::optional<QPointF> {
        const GLW *glw = word.size() == 1 ? sheet.tile(word.toInt()) : nullptr;
        return glw ? std::optional(glw->rect.center()) : std::nullopt;
    };
    const QString steps("; 2 move; 3 click; 4 down +40,9 move up > 4; 1 move M; M; W > 12345; G > "
                        "12345; B > 12345; 5 down +9,0 move up > 5; 3 move U > 3; 2 wheel > 2; "
                        "Ctrl+A; Ctrl++ > 12345; Shift+W > 12345");
    Display bare = sheet.display();
    bare.overlays = false, sheet.setDisplay(bare);
    QImage before = pixels();
    for (const QString &row : steps.split("; ")) {
        const std::string step = row.section(" > ", 0, 0).toStdString();
        drawn.clear();
        if (!step.empty())
            steer(
                widget.data(), step.c_str(), [this] { frame(); }, at);
        for (int id = 1; id <= 5; ++id)
            settle(sheet.tile(id));
        rest(sheet);
        QString ids;
        for (const int id : drawn)
            ids += QString::number(id);
        EXPECT_EQ(ids, row.section(" > ", 1)) << step;
        const QImage copied = pixels();
        EXPECT_TRUE(drawn.empty()) << step;
        EXPECT_EQ((sheet.pictures().clear(), pixels()), copied) << step;
        const GLW *tile = sheet.tile(step[0] < 'A' ? std::max(1, step[0] - '0') : 1);
        const QRect in = tile->rect.toRect(); // where it is done
        EXPECT_EQ(before.copy(in) == copied.copy(in), std::strchr("CS1", step[0]) != nullptr);
        before = copied;
    }
    const QPoint corner = sheet.tile(5)->rect.topLeft().toPoint() + QPoint(3, 3);
    EXPECT_EQ(before.pixel(corner), picture(sheet, false).pixel(corner)) << "the plot is drawn";
    sheet.pictures().clear(), frame(), drawn.clear();
    takes = 0.6, rest(sheet), takes = 0;
    EXPECT_FALSE(drawn.empty());
    frame(), drawn.clear(), rest(sheet);
    EXPECT_TRUE(drawn.empty()) << "what was too slow to be smoothed is not begun again";
    window->clock().setContinuous(true);
    EXPECT_EQ((frame(), drawn.size()), 5u) << "which tells what drawing takes";
}

} // namespace
} // namespace host
