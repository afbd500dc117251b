// SPDX-License-Identifier: MIT
// One file under a person's hands: parts, areas, the legend, and the overlays in front of it.
#include "host/item/camera_geometry.h"
#include "support.h"

namespace host {
namespace {

using SingleTest = SingleViewTest;

// The axes take 104 pixels on the left. From the right the third box covers the others.
TEST_F(SingleTest, PartsAreSelectedHiddenAndFitted)
{
    open(boxes("model.obj", 3));
    const auto parts = [&] { return QString(marks().c_str()); };
    walk(*view, glw(),
         "~150,200 click > s..; ~352,200 click > .s.; ~ctrl 550,200 click > .ss; ~ctrl 352,200 "
         "click > ..s; ~352,70 click > ...; ~shift right 150,80 move down 200,320 move up > s..; "
         "~shift right 200,120 move down 350,320 move up > ss.; ~shift right 500,320 move down "
         "380,80 move up > .ss; ~shift right 20,20 move down 60,50 move up > ...; ~150,200 move H "
         "> h..; ~150,200 click > ; ~550,200 click I > hhs; ~A > ..s; ~H > ..h",
         parts);
    EXPECT_TRUE(item()->details().endsWith("1 part hidden"));
    // What is fitted stands in the middle of the rest: where its front is seen, along x.
    walk(*view, glw(),
         "~F > 25 61 115 168; ~150,200 click F > 44 96 174 253; ~A ctrl 352,200 click none F > 25 "
         "48 81 115",
         [&] {
             QString all;
             settle(glw());
             for (const float x : {0, 2, 5, 8})
                 all += QString::number(int(at({x, 1, 2}).x() / 5)) + ' ';
             return all.trimmed();
         });
    hand("4");
    settle(glw());
    walk(*view, glw(),
         "~shift right 110,50 move down 550,350 move up > ..s; ~alt shift right 110,50 move down "
         "550,350 move up > sss; ~352,200 click H > ..h; ~shift right 110,50 move down 550,350 "
         "move up > .sh; ~alt shift right 110,50 move down 550,350 move up > ssh",
         parts);
}

TEST_F(SingleTest, ARectangleSelectsSamplesAndTheLegendTogglesColumns)
{
    open(file("weather.csv", weather()));
    const SeriesPlot &plot = item<SeriesItem>()->plot();
    walk(*view, glw(),
         "~shift right @1.5,20.5 move down @5.5,15 move up > 11: 4 of 4 0; ~shift right @6.5,-0.5 "
         "move down @8.5,20.5 move up > 11: 4 of 2 2; ~@1 click > 10: 2 of 2 0; ~@1 click > 11: 4 "
         "of 2 2; ~@4.5,10 click > 11: 0 of",
         [&] { // the range stays
             QString all = QString("%1%2: %3 of")
                               .arg(plot.enabled(0))
                               .arg(plot.enabled(1))
                               .arg(plot.selection().total);
             for (const std::size_t count : plot.selection().counts)
                 all += ' ' + QString::number(count);
             return all;
         });
}

// The middle of the triad stands 58 pixels from the left and from the bottom.
TEST_F(SingleTest, AnArmOfTheTriadLooksAlongItsAxis)
{
    open(boxes("model.obj", 2));
    walk(*view, glw(), "~75,325 click > ; ~92,342 click > -1 0 0; ~58,308 click > 0 -1 0", [&] {
        settle(glw());
        const QVector3D v = CameraGeometry(glw()->camera, QSizeF(600, 400)).forward();
        return QString("%1 %2 %3")
            .arg(qRound(v.x() * 50) / 50.0)
            .arg(qRound(v.y() * 50) / 50.0)
            .arg(qRound(v.z() * 50) / 50.0);
    });
}

TEST_F(SingleTest, TheStripOpensTheFilesBesideThisOne)
{
    boxes("a.obj", 1);
    boxes("c.obj", 1);
    open(boxes("b.obj", 1));
    QStringList chosen;
    QObject::connect(view.get(), &SingleView::fileChosen,
                     [&](const QString &path) { chosen << QFileInfo(path).fileName(); });
    ASSERT_TRUE(QTest::qWaitFor([&] { // the others are listed in the background
        hand("PgDown");
        return !chosen.isEmpty();
    }));
    // Five cells of 60 pixels in the middle of the lower edge, this file in the third; nothing
    // comes before a.obj.
    hand("180,386 click 300,386 click 240,386 click 360,386 click 300,100 move PgUp");
    EXPECT_EQ(chosen.join(' '), "c.obj a.obj c.obj a.obj");
}

TEST_F(SingleTest, AViewThatFillsTheWindowSparesItTheClearingAlone)
{
    open(boxes("model.obj", 2));
    const QImage shown = painted(), whole = picture();
    QTimerEvent tick(0); // after which no pass comes
    for (const bool hides : {false, true}) {
        view->eventFilter(widget, &tick);
        GLboolean depths = GL_TRUE, colours[4] = {};
        glClear(GL_COLOR_BUFFER_BIT | GL_DEPTH_BUFFER_BIT);
        glGetBooleanv(GL_DEPTH_WRITEMASK, &depths);
        glGetBooleanv(GL_COLOR_WRITEMASK, colours);
        EXPECT_FALSE(depths || colours[0] || colours[3]);
        if (hides)
            view->setShown(false);
        EXPECT_TRUE(hides || picture() == whole);
        glGetBooleanv(GL_DEPTH_WRITEMASK, &depths);
        glGetBooleanv(GL_COLOR_WRITEMASK, colours);
        EXPECT_TRUE(depths && colours[0] && colours[3]);
    }
    view->setShown(true);
    glClearColor(1, 0, 0, 1); // neither this is to be seen, nor these depths
    glClearDepth(0);
    glClear(GL_COLOR_BUFFER_BIT | GL_DEPTH_BUFFER_BIT);
    glClearDepth(1);
    EXPECT_EQ(painted(), shown);
}

} // namespace
} // namespace host
