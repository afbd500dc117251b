// SPDX-License-Identifier: MIT
// The program at work in its window: keys and dialogs, and what it keeps from run to run.
#include <QApplication>
#include <QCheckBox>
#include <QFileDialog>
#include <QSettings>
#include <QSpinBox>

#include "host/app/settings.h"
#include "host/app/viewer.h"
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
        EXPECT_EQ(view.isOrthographic(), personal);
    }
}

TEST_F(ViewerTest, KeysAndDialogsAreForTheWholeProgram)
{
    options.watch = options.sizeGiven = true;
    options.size = {600, 400};
    boxes("b.obj", 2);
    file("ab.csv", weather()); // has no camera to go on with
    start({boxes("a.obj", 1)});
    QWidget *frame = widget->window();
    std::string flags;
    for (const char *key : {"F11", "F11", "T", "T", "F1", "F1", "?", "Esc"}) {
        hand(key);
        flags += frame->isFullScreen()                ? 'F'
                 : widget->property("timer").toBool() ? 'T'
                 : viewer->view()->showsBindings()    ? 'C'
                                                      : '.';
    }
    EXPECT_EQ(flags, "F.T.C.C.");
    for (const int boxed : {0, 3, 4}) { // the first file that is watched takes another's place
        const Item *before = item();
        EXPECT_TRUE(boxed != 3 || QFile::remove(folder.filePath("a.obj")));
        boxed > 0 ? void(boxes("a.obj", boxed)) : hand("Ctrl+R");
        EXPECT_TRUE(QTest::qWaitFor([&] { return item() != before; }, 20000)) << boxed;
    }
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
        if (auto *dialog = qobject_cast<QFileDialog *>(asks)) {
            auto *width = dialog->findChild<QSpinBox *>();
            EXPECT_EQ(QFileInfo(dialog->selectedFiles().value(0)).fileName(), "b.png");
            EXPECT_EQ(width->value(), step == 0 ? 600 : 300);
            for (const QCheckBox *box : dialog->findChildren<QCheckBox *>())
                EXPECT_EQ(box->isChecked(), box->text().contains("names"));
            width->setValue(300);
            dialog->selectFile(folder.filePath(step == 0 ? "none/b.png" : "b.png"));
        }
        if (asks && (++step, true))
            asks->accept(); // the second says what is wrong
    });
    answers.start(0);
    viewer->SavePicture();
    const QImage saved(folder.filePath("b.png"));
    EXPECT_TRUE(saved.size() == QSize(300, 200) && !saved.hasAlphaChannel());
    EXPECT_TRUE(step == 3 && frame->isVisible());

    hand("Q");
    EXPECT_FALSE(frame->isVisible());
}

} // namespace
} // namespace host
