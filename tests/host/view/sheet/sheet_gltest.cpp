// SPDX-License-Identifier: MIT
// A sheet under a person's hands: which tile a gesture means, and what becomes of tiles.
#include <QApplication>
#include <QLineEdit>
#include <QMimeData>

#include "host/app/viewer.h"
#include "host/view/sheet/sheet_view.h"
#include "host/view/window/binding.h"
#include "host/view/window/menu_tree.h"
#include "support.h"

namespace host {
namespace {

using State = SheetEntry::State;

/// Six models, m1.obj to m6.obj, in two rows or more; the names sort as the ids do.
class SheetTest : public ViewTest {
protected:
    std::unique_ptr<SheetView> own;
    SheetView *sheet = nullptr;

    SheetTest() { smooth = false; }

    void open(const QStringList &paths)
    {
        own.reset();
        own = std::make_unique<SheetView>(*window, queue, "folder", paths);
        sheet = own.get();
        show(*sheet);
    }
    QStringList six() const
    {
        QStringList paths;
        for (int i = 1; i <= 6; ++i)
            paths << boxes(QString("m%1.obj").arg(i), i % 3 + 1);
        return paths;
    }
    void TearDown() override { own.reset(); }

    const GL::Camera &camera(int id) const { return sheet->tile(id)->camera; }
    State state(int id) const { return sheet->entries().at(id).state; }
    template <typename Kind> Kind *item(int id) const
    {
        return dynamic_cast<Kind *>(sheet->item(sheet->tile(id)));
    }

    QString idsWith(const char *property) const
    {
        QString ids;
        for (const auto &[id, entry] : sheet->entries())
            if (sheet->tile(id)->QObject::property(property).toBool())
                ids += QString::number(id);
        return ids;
    }
    /// What is selected, and what is visible, as one reads.
    QString describe() const
    {
        std::map<std::pair<double, double>, QString> places;
        for (const QChar id : idsWith("visible")) {
            const QRectF at = sheet->tile(id.digitValue())->orect;
            places[{at.y(), at.x()}] = id;
        }
        QString read;
        for (const auto &[place, id] : places)
            read += id;
        return idsWith("selected") + " of " + read;
    }

    /// Tiles (3), the gap between them, and where there is nothing of the window.
    std::optional<QPointF> place(const QString &word) const override
    {
        const int id = word.size() == 1 ? word.toInt() : 0;
        if (id > 0 && sheet->tile(id))
            return sheet->tile(id)->orect.center();
        if (word == "gap")
            return sheet->tile(1)->orect.bottomRight() + QPointF(2, 2);
        return word == "out" ? std::optional(QPointF(-50, 900)) : std::nullopt;
    }
    /// What hands do, and between semicolons entries of a tile's menu (3:Text).
    void run(const QString &steps)
    {
        for (const QString &step : steps.split("; "))
            if (step.mid(1, 1) == ":")
                menu(*sheet, sheet->tile(step.left(1).toInt()), step.mid(2));
            else
                hand(step);
        frame();
    }
    /// Drags in tile @p id.
    void orbit(int id, const char *by = "+40,0")
    {
        hand(QString("%1 move down %2 move up").arg(id).arg(by));
        settle(sheet->tile(id));
    }
};

TEST_F(SheetTest, TheMenuOpensBesideTilesTooAndOnlyWhatIsUnderThePointerIsMarked)
{
    open(six());
    int opened = 0;
    QObject::connect(sheet, &View::menuOpening, [&](MenuTree *) {
        ++opened;
        QTimer::singleShot(0, qApp, [] { delete QApplication::activePopupWidget(); });
    });
    hand("right gap down up 3 down up");
    QCoreApplication::processEvents();
    EXPECT_EQ(opened, 2);
    run("out move");
    // To a tile that is visited later in a pass, and back to one that is visited earlier.
    for (const auto &[under, left] : {std::pair(2, 3), std::pair(3, 2), std::pair(2, 3)}) {
        hand(QString("%1 move").arg(under)), frame();
        EXPECT_TRUE(item<ModelItem>(under)->hoveredPart() >= 0 &&
                    item<ModelItem>(left)->hoveredPart() < 0);
    }
}

// The plot is m7.csv.
TEST_F(SheetTest, LinkedCamerasTakeThePoseOfTheOneThatIsMoved)
{
    open(six() << file("m7.csv", weather()));
    const float still = sheet->tile(7)->viewport.pos.x;
    const auto state = [&] {
        QString all = sheet->tile(7)->viewport.pos.x == still ? "still" : "moved";
        for (const int id : {1, 2, 5}) {
            settle(sheet->tile(id));
            const Vector v = camera(id).rot + Vector(0, 0, 100 * camera(id).radius);
            all +=
                QString("|%1: %2 %3 %4").arg(id).arg(qRound(v.x)).arg(qRound(v.y)).arg(qRound(v.z));
        }
        return all;
    };
    walk(*sheet, sheet->tile(1),
         "5 move down +40,0 move up > 5: 22 8 198; 1 click ctrl 5 click 7 click none L > ; "
         "1 move down +0,20 move up > 1: 42 -32 199|5: 42 -32 199; 7 move down +40,0 move up > "
         "moved; 1 move wheel > 1: 42 -32 159|5: 42 -32 159; "
         "1 move L down +40,0 move up > 1: 42 8 159; =All cameras back to the first view > "
         "still|1: 22 -32 199|5: 22 -32 198",
         state);
}

TEST_F(SheetTest, OpenedAloneItIsASingleViewAndEscapeGoesBack)
{
    six();
    Options options;
    options.files = QStringList(folder.path());
    options.size = QSize(600, 400);
    options.sizeGiven = true;
    Viewer viewer(loader, options);
    viewer.window().clock().setTime([this] { return time; });
    widget = viewer.view()->mainGLW()->gl;
    widget->setProperty("clampMouseToFrame", false);
    sheet = dynamic_cast<SheetView *>(viewer.view());
    EXPECT_EQ(texts(*sheet).substr(0, 16), "Looking through ");
    show(*sheet);
    const auto title = [&] { return widget->window()->windowTitle(); };
    run("N N; 6:Hide tile; 2 click ctrl 3 click 4 move");
    orbit(4, "+40,9");
    const QString before = describe();
    const GL::Camera pose = camera(4);
    auto *shown = item<ModelItem>(4);
    hand("4 click twice up");
    EXPECT_EQ(title(), "m4.obj");
    EXPECT_EQ(viewer.view()->item(viewer.view()->mainGLW()), shown) << "it is read again";
    EXPECT_EQ(viewer.view()->mainGLW()->camera.rot, pose.rot);
    EXPECT_EQ(sheet->item(sheet->tile(4)), nullptr);
    shown->select(0, true), shown->setSection({{CutPlane{{1, 0, 0}, 0.5}}});
    hand("V B");                      // the first is the sheet's
    EXPECT_TRUE(QTest::qWaitFor([&] { // its neighbours are listed in the background
        hand("PgDown");
        return title() == "m5.obj";
    }));
    EXPECT_EQ(widget->findChild<QAction *>("back")->text(), "Back to the sheet");
    hand("F1 Esc");
    EXPECT_EQ(title(), "m5.obj") << "the list of controls is closed first";
    hand("Esc");
    ASSERT_TRUE(viewer.view() == sheet && title().startsWith("6 files"));
    EXPECT_EQ(describe(), before);
    EXPECT_EQ(sheet->item(sheet->tile(4)), shown);
    EXPECT_TRUE(camera(4).rot == pose.rot && camera(4).radius == pose.radius);
    EXPECT_TRUE(!shown->marks().isSelected(0) && shown->section()->planes.size() == 1);
    EXPECT_TRUE(sheet->display().dark);
    run("V");
    EXPECT_EQ(idsWith("visible"), "23") << "the keys are back";

    run("D");
    EXPECT_EQ(title(), "m2.obj and m3.obj");
    EXPECT_TRUE(viewer.view()->isSettled()) << "nothing is read again";
    run("B Esc");
    ASSERT_EQ(viewer.view(), sheet);
    EXPECT_FALSE(sheet->display().dark);
    emit sheet->openAsked(folder.filePath("m2.obj")); // and then the sheet goes
    emit sheet->compareAsked(folder.filePath("m2.obj"), folder.filePath("m3.obj"));
    sheet = nullptr;
    viewer.open({folder.filePath("m1.obj")});
    QCoreApplication::processEvents();
    EXPECT_EQ(title(), "m1.obj");
}

TEST_F(SheetTest, WhatIsHiddenGivesItsMemoryBackAndReturnsAsItWasLeft)
{
    open({boxes("m1.obj", 2), file("m2.csv", weather()), boxes("m3.obj", 2)});
    orbit(1, "+30,10"), orbit(2, "+30,10");
    const GLW *tile = sheet->tile(2);
    const auto from = [&] { return item<SeriesItem>(2)->plot().visibleRange(tile).left(); };
    const double range = from();
    const float left = camera(1).rot.y;

    for (const int id : {1, 2})
        sheet->lend(sheet->entries().at(id).path), sheet->takeBack();
    EXPECT_FALSE(sheet->lend("nothing").item);
    run("1:Hide tile; 2:Hide tile");
    sheet->setMemoryBudget(300); // too little for all
    EXPECT_TRUE(state(1) == State::Released && state(2) == State::Released);
    EXPECT_EQ(state(3), State::Shown) << "it is in view";
    sheet->setMemoryBudget(SheetView::memoryBudget());
    run("V");
    show(*sheet);
    EXPECT_FLOAT_EQ(camera(1).rot.y, left);
    EXPECT_NEAR(from(), range, 0.01);
    sheet->readAgain(boxes("m1.obj", 3));
    EXPECT_TRUE(state(1) == State::Waiting && state(3) == State::Shown) << "what was named";
    EXPECT_TRUE(until([&] { return sheet->entries().at(1).count == 36; }));
    EXPECT_FLOAT_EQ(camera(1).rot.y, left);
}

TEST_F(SheetTest, AFileThatFailsKeepsItsTileAndTellsWhy)
{
    const QString gone = QString(30, 'm') + ".stl";
    open({boxes("a.obj", 1), file("b.ply", "these are words\n"), file("c.csv", "a,b\n1,\"2\n"),
          folder.filePath(gone)});
    hand("4 move");
    EXPECT_EQ(written(*sheet).texts.count(gone), 1u) << "it is cut in its header";
    EXPECT_TRUE(idsWith("visible") == "1234" && state(1) == State::Shown);
    for (int id : {2, 3, 4})
        EXPECT_TRUE(state(id) == State::Failed && sheet->entries().at(id).reason != "") << id;
    QString said;
    QObject::connect(&queue, &ReadQueue::failed, sheet, [&] { said += texts(*sheet).c_str(); });
    sheet->readAgain({});
    EXPECT_EQ(written(*sheet).texts.count("Reading 0 of 4"), 1u);
    EXPECT_TRUE(until([&] { return said.contains("  ·  1 cannot be read"); }));
    menu(*sheet, sheet->tile(2), "Remove tile from the sheet");
    EXPECT_EQ(idsWith("visible"), "134");
}

TEST_F(SheetTest, RoomIsTheDrawingsFirst)
{
    open(six()), hand("M"), sheet->setTileSize(16);
    const std::tuple<QSize, QRectF, const char *> rows[] = {
        // the last tile in view, and texts
        {{600, 400}, {400, 202, 194, 194}, "m1.obj|m2.obj|m3.obj|m4.obj|m5.obj|m6.obj"},
        {{150, 100}, {100, 52, 44, 44}, "m1.obj"},
        {{60, 40}, {40, 22, 14, 14}, ""},
        {{60, 9}, {24, 3, 18, 3}, ""}};
    for (const auto &[size, place, expected] : rows) {
        window->frame()->resize(size), frame(), hand("1 move");
        EXPECT_EQ(sheet->tile(sheet->inView().last())->orect, place);
        EXPECT_EQ(texts(*sheet), expected);
        EXPECT_EQ(sheet->mainGLW()->property<bool>("draw3d"), size.height() > 9);
    }
}

TEST_F(SheetTest, KeysAndEntriesDoWhatTheySayAndAreDrawn)
{
    open(six().mid(0, 5) << file("m6.csv", weather()));
    QString told;
    QObject::connect(sheet, &SheetView::openAsked,
                     [&](const QString &path) { told = "open " + QFileInfo(path).fileName(); });
    QObject::connect(sheet, &SheetView::pictureAsked, [&](const QString &name, const QRect &crop) {
        told = QString("%1 %2 %3").arg(name).arg(crop.x()).arg(crop.bottom());
    });
    QObject::connect(sheet, &SheetView::tileSizeChosen,
                     [&](double size) { told = QString("size %1").arg(size); });
    QObject::connect(sheet, &SheetView::compareAsked, [&](const QString &a, const QString &b) {
        told = QFileInfo(a).fileName() + ' ' + QFileInfo(b).fileName();
    });
    QObject::connect(sheet, &View::titleChanged, [&] { told = sheet->title(); });
    hand("D");
    EXPECT_EQ(texts(sheet->pictured(false)),
              "0|0|10|20|5|cold|day|m1.obj|m2.obj|m3.obj|m4.obj|m5.obj|m6.csv|warm");
    const auto state = [&] {
        GLW *first = sheet->tile(1);
        settle(first);
        const Display &display = sheet->display();
        const int radius = qRound(first->camera.radius * 100), up = qRound(first->camera.rot.x);
        QString all = describe() + '|' + std::exchange(told, {}) +
                      QString("|r %1 %2|wide %3|").arg(radius).arg(up).arg(first->orect.width());
        for (const bool on : {display.dark, display.lighting, display.hover, sheet->isLinked(1)})
            all += on ? '1' : '0';
        for (const QString &text : QString(texts(*sheet).c_str()).split('|'))
            if (text.count(' ') == 3 || text.startsWith("Select")) // a sentence
                all += '|' + text.section(':', 0, 0);
        return all;
    };
    walk(*sheet, sheet->tile(1),
         "5 click > 5 of 123456; ~gap move > ; 2 click click >  of 123456; 1 click ctrl 4 click 6 "
         "click 4 click > 16 of 123456; 1 click ctrl 6 click none V > 16 of 16|r 211 22|wide 294; "
         "~out move V > 16 of 123456|r 151 22|wide 194; shift right 5 move down 6 +9,9 move up > "
         "56 of 123456; shift right 1 move down 4 +9,9 move up > 14 of 123456; V > 14 of 14|r 211 "
         "22|wide 294; 1 click ctrl 4 click > ; =Hide 2 tiles >  of |All tiles are hidden.|V shows "
         "them again.; gap move Ctrl+A > ; ~Tab > ; ~V >  of 123456|r 151 22|wide 194; Ctrl+A > "
         "123456 of 123456; out Ctrl+A >  of 123456; ~Return > ; out Down > 1 of 123456; Down > 4 "
         "of 123456; Right > 5 of 123456; Right > 6 of 123456; ~Right > ; Tab > 1 of 123456; "
         "~Enter > open m1.obj; ~Left > -open m1.obj; Tab > 2 of 123456; ~Return > open m2.obj; D "
         "> Select two models to compare them; Ctrl+A > 123456 of 123456; D > Select two models to "
         "compare them; L > 0111; ~M > 0101; ~M 2 move > 0111; Ctrl+A >  of 123456; N >  of "
         "654321; S >  of 251436; S >  of 634152; C >  of 251436; N >  of 123456; ~0,0 = > r 150 "
         "22|wide 192; - > r 151 22|wide 194; ~+ + + + + + + + + + + + + + + + + + + + > r 138 "
         "22|wide 146; ~- - - - - - - - - - - - - - - - - - > r 151 22|wide 194; Shift+Home > ; B "
         "> 1111; G > 1011; 1 click ctrl 2 click none D > 12 of 123456|m1.obj m2.obj; =Fit 2 tiles "
         "> -m1.obj m2.obj; =Compare the two that are selected > m1.obj m2.obj; ~=Picture of this "
         "tile… > m1.obj 4 197; ~=Open alone > open m1.obj; =Sort by|Sort by file size > 12 of "
         "251436; =Sort by|Sort by triangles or rows > ; =Sort by|Sort by name > 12 of 123456; "
         "=Select all, or none > 123456 of 123456; =Link cameras > 1010; =All cameras back to the "
         "first view > ; =Hide 6 tiles >  of |All tiles are hidden.|V shows them again.; V >  of "
         "123456; =Find tiles by name > ; ?m1 OBJ >  of 1|r 108 22|wide 592; ?zz >  of |0 of 6 "
         "files|Esc shows all again.; ? >  of 123456|r 151 22|wide 194; =Larger tiles >  of "
         "1234|size 232.8|r 128 22|wide 287; ~gap move back >  of 3456; =Picture of this tile… >  "
         "of 1234|m1.obj 4 240; =Smaller tiles >  of 123456|size 194|r 151 22|wide 194; ~=Smaller "
         "tiles > ; 1 click ctrl 4 click none V > 14 of 123456",
         state);
    QStringList bound;
    for (const BindingRow &row : bindingRows(sheet->bindings(), sheet->contents()))
        bound += row.keys + ": " + row.text;
    EXPECT_TRUE(bound.contains("left button: Select"));
    EXPECT_TRUE(bound.contains("wheel, with Alt where that scrolls: Zoom towards the pointer"));
    menu(*sheet, sheet->tile(1), "Remove 2 tiles from the sheet");
    hand("out V");
    EXPECT_EQ(told + describe(), "4 files – folder of 2356");
    EXPECT_EQ(sheet->tile(2)->orect.width(), 294) << "what is gone needs no room";
    own.reset();
    own = std::make_unique<SheetView>(*window, queue, "no", QStringList());
    EXPECT_EQ(texts(*own), "Drop files or a folder here or press Ctrl+O.|The sheet is empty.");
    own = std::make_unique<SheetView>(*window, queue, "no", QStringList(folder.path()));
    emit queue.listed(queue.list({}) - 1, std::make_shared<FileList>(FileList{{}, {"/a"}, {"/b"}}));
    EXPECT_EQ(own->fault(), "/a: there is nothing to show in this folder, or it cannot be "
                            "read\n/b: only a part is shown; the folder holds more");
}

TEST_F(SheetTest, DroppedFilesAreTold)
{
    QStringList told;
    QObject::connect(window.get(), &Window::filesDropped,
                     [&](const QStringList &paths) { told << paths; });
    QMimeData data;
    data.setUrls({QUrl::fromLocalFile("/a/b.obj"), QUrl("http://c/d.obj")});
    QDragEnterEvent enter({9, 9}, Qt::CopyAction, &data, Qt::LeftButton, {});
    QCoreApplication::sendEvent(widget, &enter);
    EXPECT_TRUE(enter.isAccepted());
    QDropEvent drop(QPointF(9, 9), Qt::CopyAction, &data, Qt::LeftButton, {});
    QCoreApplication::sendEvent(widget, &drop);
    EXPECT_EQ(told.join(' '), "/a/b.obj");
}

} // namespace
} // namespace host
