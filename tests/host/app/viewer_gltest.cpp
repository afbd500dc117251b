// SPDX-License-Identifier: MIT
// The program at work in its window: keys and dialogs, and what it keeps from run to run.
#include <QCheckBox>
#include <QFileDialog>
#include <QLabel>
#include <QSettings>
#include <QSpinBox>
#include <QStyle>

#include "host/app/application.h"
#include "host/app/desktop.h"
#include "host/app/settings.h"
#include "host/app/viewer.h"
#include "host/ui/metrics.h"
#include "host/view/compare/compare_view.h"
#include "host/view/sheet/sheet_view.h"
#include "tests/host/view/sheet/support.h"

namespace host {
namespace {

class ViewerTest : public ViewTest {
protected:
    Options options;
    std::unique_ptr<Viewer> viewer;

    ViewerTest() { smooth = false; }

    View &start(const QStringList &files)
    {
        QSettings::setPath(QSettings::IniFormat, QSettings::UserScope, folder.path());
        viewer.reset();
        options.files = files;
        viewer = std::make_unique<Viewer>(loader, options);
        widget = viewer->view()->mainGLW()->gl;
        if (!files.isEmpty())
            show(*viewer->view());
        return *viewer->view();
    }
    void TearDown() override { viewer.reset(); }
    const Item *item() const { return viewer->view()->item(viewer->view()->mainGLW()); }
};

TEST_F(ViewerTest, WhatAPersonChoseIsThereTheNextTime)
{
    const QString a = boxes("a.obj", 1);
    start({a});
    hand("B O Shift+W P");
    viewer->window().frame()->setSideWidth(333);
    widget->window()->resize(700, 500);
    viewer.reset();
    const Settings kept;
    EXPECT_TRUE(kept.arePartsOpen() && kept.folder() == folder.path());
    EXPECT_EQ(kept.recentFiles().value(0), a);
    for (const bool personal : {true, false}) {
        options.screenshot = personal ? "" : "p.png";
        const View &view = start({});
        EXPECT_EQ(widget->window()->size(), personal ? QSize(700, 500) : windowSize(options));
        EXPECT_TRUE(view.display().dark == personal && !view.display().reduces);
        const SideFrame &frame = *viewer->window().frame();
        EXPECT_TRUE(view.isOrthographic() == personal && frame.isOpen() == personal &&
                    (frame.sideWidth() == 333) == personal);
    }
    options.screenshot.clear();
    Settings().setTileSize(150);
    auto &sheet = dynamic_cast<SheetView &>(start({folder.path()}));
    EXPECT_EQ(sheet.tileSize(), 150);
    hand("Z");
    const double size = sheet.tileSize();
    viewer.reset();
    EXPECT_TRUE(size > 150 && kept.tileSize() == size);
}

TEST_F(ViewerTest, KeysAndDialogsAreForTheWholeProgram)
{
    options.watch = options.sizeGiven = true;
    options.size = {600, 400};
    boxes("b.obj", 2);
    file("ab.csv", weather()); // has no camera to go on with
    start({boxes("a.obj", 1)});
    QWidget *frame = widget->window();
    const auto program = [&] { // its own entries, and what they lead to
        const QString all = menu(*viewer->view(), viewer->view()->mainGLW()).c_str();
        return all.mid(all.indexOf("|Open")) + (frame->isFullScreen() ? "|F" : "") +
               (widget->property("timer").toBool() ? "|T" : "") +
               (viewer->view()->showsBindings() ? "|C" : "");
    };
    EXPECT_EQ(program().toStdString(),
              "|Open files…\tCtrl+O|Open a folder…\tCtrl+Shift+O|Open recent{a.obj}|Read "
              "again\tCtrl+R|Save a picture…\tCtrl+S|Full screen\tF11|Frame "
              "rate\tT|Controls\tF1||Quit\tQ");
    walk(*viewer->view(), viewer->view()->mainGLW(),
         "~F11 > *Full screen\tF11|F; ~=Full screen > Full screen\tF11; ~T > *Frame rate\tT|T; "
         "~=Frame rate > Frame rate\tT; ~=Controls > *Controls\tF1|C; ~F1 > Controls\tF1; ~? > "
         "*Controls\tF1|C; ~Esc > Controls\tF1",
         program);
    for (const int boxed : {0, 3, 4, -1}) { // the first file that is watched takes another's place
        const Item *before = item();
        EXPECT_TRUE(boxed != 3 || QFile::remove(folder.filePath("a.obj")));
        boxed > 0    ? void(boxes("a.obj", boxed))
        : boxed == 0 ? hand("Ctrl+R")
                     : void(menu(*viewer->view(), viewer->view()->mainGLW(), "Open recent|a.obj"));
        EXPECT_TRUE(QTest::qWaitFor([&] { return item() != before; }, 20000)) << boxed;
    }
    show(*viewer->view());
    hand("300,200 move down +40,20 move up");
    settle(viewer->view()->mainGLW());
    const Vector turned = viewer->view()->mainGLW()->camera.rot;
    EXPECT_TRUE(QTest::qWaitFor([&] { // the others are listed in the background
        hand("PgDown");
        return frame->windowTitle() == "b.obj";
    }));
    show(*viewer->view());
    GLW *glw = viewer->view()->mainGLW();
    EXPECT_EQ(glw->camera.rot, turned) << "the next file is looked at from there";

    int step = 0;
    QTimer answers; // what is asked, one after the other
    QObject::connect(&answers, &QTimer::timeout, [&] {
        auto *asks = qobject_cast<QDialog *>(QApplication::activeModalWidget());
        auto *dialog = qobject_cast<QFileDialog *>(asks);
        if (auto *width = dialog ? dialog->findChild<QSpinBox *>() : nullptr) {
            EXPECT_EQ(QFileInfo(dialog->selectedFiles().value(0)).fileName(), "b.png");
            EXPECT_EQ(width->value(), step == 0 ? 600 : 300);
            EXPECT_TRUE(width->minimum() == 1 && width->maximum() == 16384 &&
                        width->singleStep() == (step < 5 ? 600 : 300));
            for (QCheckBox *box : dialog->findChildren<QCheckBox *>()) {
                EXPECT_EQ(box->isChecked(), box->text().contains("names") == (step != 2));
                if (step == 0)
                    box->click();
            }
            width->setValue(300);
            EXPECT_EQ(width->parentWidget()->findChild<QLabel *>()->text(), "× 200 pixels");
            dialog->selectFile(folder.filePath(step == 0 ? "none/b.png" : "b.png"));
        } else if (dialog) { // opens
            dialog->selectFile(step == 3 ? folder.filePath("a.obj") : folder.path());
        }
        if (asks && (++step, true))
            asks->accept(); // the second says what is wrong
    });
    answers.start(0);
    viewer->SavePicture();
    const QImage saved(folder.filePath("b.png"));
    EXPECT_TRUE(saved.size() == QSize(300, 200) && saved.hasAlphaChannel());
    EXPECT_TRUE(step == 3 && frame->isVisible());

    hand("Ctrl+O");
    EXPECT_EQ(frame->windowTitle(), "a.obj");
    hand("Ctrl+Shift+O");
    auto &sheet = dynamic_cast<SheetView &>(*viewer->view());
    show(sheet);
    QFile::remove(folder.filePath("b.png"));
    const QRect part(200, 100, 300, 200);
    const QImage whole = picture(sheet, true);
    emit sheet.pictureAsked("b.obj", part);
    const QImage cut(folder.filePath("b.png"));
    EXPECT_EQ(cut, whole.copy(part).convertToFormat(cut.format()));
    boxes("b.obj", 4); // found in the folder, and watched
    EXPECT_TRUE(until([&] { return sheet.entries().at(3).count == 48; }));
    hand("Q");
    EXPECT_FALSE(frame->isVisible());
}

TEST_F(ViewerTest, WhatIsComparedIsReadAgainWhenItChanges)
{
    options.watch = true;
    options.compare = CompareWay::Beside;
    auto &view = dynamic_cast<CompareView &>(start({boxes("a.obj", 1), boxes("b.obj", 1)}));
    boxes("b.obj", 3);
    EXPECT_TRUE(until([&] { return view.isSettled() && view.item(view.tile(1))->count() == 36; }));
}

TEST(ApplicationTest, AllIsAsLargeAsTheDesktopAsks)
{
    auto &all = *dynamic_cast<Application *>(qApp);
    const QFont usual = all.font();
    for (const bool person : {false, true}) { // whose font is told in pixels
        QFont font = usual;
        person ? font.setPixelSize(20) : font.setPointSizeF(10);
        all.setFont(font);
        qputenv("QT_SCALE_FACTOR", "1.5");
        all.setSizes(DesktopScale::take(), person);
        EXPECT_EQ(person ? all.font().pixelSize() : all.font().pointSizeF(), person ? 30 : 15);
        EXPECT_EQ(all.style()->pixelMetric(QStyle::PM_SmallIconSize), 24);
        Metrics::set(0, 99), Metrics::set(qInf(), 99), Metrics::set(1, 0); // which are no sizes
        EXPECT_NEAR(Metrics::px(10) * 100 + Metrics::type(10), person ? 1525 : 1515, 1e-9);
        all.setStyle("fusion");
    }
    all.setFont(usual);
    Metrics::set(1, Metrics::usualType);
}

TEST(IconTest, IsACubeOnADarkGround)
{
    const QImage image = QApplication::windowIcon().pixmap(256).toImage();
    const QHash<QString, char> names{
        {"#262c36", 'g'}, {"#8ecaff", 't'}, {"#2463b0", 'l'}, {"#4a96e6", 'r'}};
    std::string seen;
    EXPECT_EQ(QApplication::windowIcon().availableSizes().size(), 7);
    const int at[] = {1,  32, 3,  32, 60, 32, 62, 32, 5,  5,  7,  7,
                      32, 9,  32, 11, 32, 20, 22, 37, 31, 52, 42, 37};
    for (std::size_t i = 0; i < std::size(at); i += 2)
        seen += names.value(image.pixelColor(at[i] * 4 + 2, at[i + 1] * 4 + 2).name(), '.');
    EXPECT_EQ(seen, ".gg..ggttllr");
}

} // namespace
} // namespace host
