// SPDX-License-Identifier: MIT
#include "support.h"

#include <QApplication>
#include <QDeadlineTimer>
#include <QFile>
#include <QGLFormat>
#include <QLineEdit>
#include <QTimerEvent>

#include "host/app/application.h"
#include "host/capture/picture.h"
#include "host/read/reader_process.h"
#include "host/view/window/menu_tree.h"

/// The program is also the child that a reader starts.
int runAsChild(int argc, char **argv);
int runAsChild(int argc, char **argv)
{
    if (argc != 2 || qstrcmp(argv[1], "--reader") != 0)
        return -1;
    const QCoreApplication application(argc, argv);
    return host::runReaderProcess();
}

QCoreApplication *makeApplication(int &argc, char **argv);
QCoreApplication *makeApplication(int &argc, char **argv)
{
    return new host::Application(argc, argv);
}

namespace host {

void ViewTest::SetUp()
{
    ASSERT_TRUE(loader.load({GLWINDOW_MODULE})) << loader.error().toStdString();
    QGLFormat format = QGLFormat::defaultFormat();
    format.setSampleBuffers(smooth);
    QGLFormat::setDefaultFormat(format);
    window = std::make_unique<Window>(loader.factory(), QSize(600, 400), 0);
    widget = window->widget();
    widget->setProperty("clampMouseToFrame", false);
    window->clock().setTime([this] { return time; });
}

QString ViewTest::file(const QString &name, const QByteArray &text) const
{
    const QString path = folder.filePath(name);
    QFile out(path);
    EXPECT_TRUE(out.open(QIODevice::WriteOnly));
    out.write(text);
    return path;
}

QString ViewTest::boxes(const QString &name, int count, double height) const
{
    QByteArray text;
    for (int box = 0; box < count; ++box) {
        text += "o box" + QByteArray::number(box) + "\n";
        for (int corner = 0; corner < 8; ++corner)
            text += "v " + QByteArray::number(3 * box + (corner & 1 ? 2 : 0)) + ' ' +
                    QByteArray::number(corner & 2 ? height : 0) + ' ' +
                    QByteArray::number(corner & 4 ? height : 0) + '\n';
        const int faces[6][4] = {{0, 2, 3, 1}, {4, 5, 7, 6}, {0, 1, 5, 4},
                                 {2, 6, 7, 3}, {0, 4, 6, 2}, {1, 3, 7, 5}};
        for (const auto &face : faces) {
            text += "f";
            for (int corner : face)
                text += " " + QByteArray::number(8 * box + corner + 1);
            text += "\n";
        }
    }
    return file(name, text);
}

QByteArray ViewTest::weather()
{
    return "day,warm,cold\n0,20,0\n1,20,0\n2,20,0\n3,20,0\n4,20,0\n5,20,0\n6,20,0\n7,20,0\n8,20,0\n"
           "9,20,0\n";
}

void ViewTest::show(View &view)
{
    widget->window()->show();
    ASSERT_TRUE(QTest::qWaitForWindowExposed(widget));
    QApplication::setActiveWindow(widget); // without a window manager nobody else does
    widget->setFocus();
    widget->setAttribute(Qt::WA_UnderMouse); // the hand is here, wherever the screen's pointer is
    ASSERT_TRUE(until([&] { return view.isSettled(); }));
    QThreadPool::globalInstance()->waitForDone(); // then the pointer finds triangles
    frame();
}

void ViewTest::frame()
{
    time += 0.1; // seconds
    widget->repaint();
    widget->makeCurrent();
    GLint depths[3] = {}; // of what is pushed and not popped
    glGetIntegerv(GL_ATTRIB_STACK_DEPTH, depths),
        glGetIntegerv(GL_MODELVIEW_STACK_DEPTH, depths + 1);
    glGetIntegerv(GL_PROJECTION_STACK_DEPTH, depths + 2);
    EXPECT_LT(depths[0] + depths[1] + depths[2], 4);
    QCoreApplication::processEvents();
}

bool ViewTest::until(const std::function<bool()> &holds)
{
    QTimer now; // and then: not all that happens elsewhere is told
    now.start(10);
    QDeadlineTimer end(60000);
    while (!holds() && !end.hasExpired())
        QCoreApplication::processEvents(QEventLoop::WaitForMoreEvents);
    return holds();
}

void ViewTest::rest(View &view)
{
    ASSERT_TRUE(until([&] {
        for (QTimer *each : view.findChildren<QTimer *>())
            if (each->isActive())
                each->start(0);
        return view.isQuiet();
    }));
}

void ViewTest::settle(GLW *glw)
{
    const GL::Camera &camera = glw->camera;
    int frames = 0;
    do {
        time += 1;
        frame(); // it moves on, and says how far it will move in the next one
        ASSERT_LT(++frames, 1000) << "it never comes to rest";
    } while (camera.d_rot != Vector() || camera.d_target != Vector() || camera.d_radius != 0);
}

void ViewTest::hand(const QString &script)
{
    steer(
        widget.data(), script, [this] { frame(); },
        [this](const QString &word) { return place(word); });
}

bool ViewTest::asks(View &view, const std::function<void()> &act)
{
    bool painted = true;
    const auto heard = QObject::connect(&view, &View::framePainted, [&] { painted = true; });
    const auto tick = [&] {
        QTimerEvent event(0);
        time += 1;
        QCoreApplication::sendEvent(widget, &event);
    };
    for (int i = 0; std::exchange(painted, false) && i < 99; ++i)
        tick();
    EXPECT_FALSE(painted) << "it never comes to rest";
    for (QTimer *each : view.findChildren<QTimer *>())
        each->stop(); // no frame comes by itself now
    QCoreApplication::processEvents();
    painted = false;
    act();
    tick();
    QObject::disconnect(heard);
    return painted;
}

bool ViewTest::asks(View &view, const QString &script)
{
    return asks(view, [&] {
        steer(
            widget.data(), script, [] {}, [this](const QString &word) { return place(word); });
    });
}

QString ViewTest::described(const QMenu &menu)
{
    QStringList all;
    for (QAction *entry : menu.actions())
        all << (entry->isChecked() ? "*" : "") + entry->text() +
                   (entry->menu() ? '{' + described(*entry->menu()) + '}' : QString());
    return all.join('|');
}

std::string ViewTest::menu(View &view, GLW *glw, const QString &path)
{
    MenuTree tree;
    QMenu top;
    view.InitContextMenuTree(glw, &tree);
    tree.Build(&top);
    const QMenu *menu = path.isEmpty() ? nullptr : &top;
    for (const QString &word : path.split('|')) {
        const QList<QAction *> all = menu ? menu->actions() : QList<QAction *>();
        menu = nullptr;
        QAction *found = nullptr;
        for (QAction *entry : all)
            if (entry->text().section('\t', 0, 0) == word)
                found = entry;
        EXPECT_TRUE(found || path.isEmpty()) << "no entry " << word.toStdString();
        if (found)
            menu = found->menu(), found->trigger();
    }
    QCoreApplication::processEvents();
    return described(top).toStdString();
}

PaintRecord ViewTest::written(const std::function<void(QPainter *)> &paint) const
{
    return {widget->size(), [&](QPainter *p) { p->save(), paint(p), p->restore(); }};
}

PaintRecord ViewTest::written(View &view) const
{
    return written([&](QPainter *p) { view.PaintForeground(view.mainGLW(), p); });
}

PaintRecord ViewTest::written(const PictureContents &picture) const
{
    return written([&](QPainter *p) {
        for (const PictureObject &each : picture.objects())
            if (each.foreground)
                each.foreground(each.glw, p);
    });
}

void ViewTest::walk(View &view, GLW *glw, const QString &steps,
                    const std::function<QString()> &state)
{
    QStringList before = state().split('|', Qt::SkipEmptyParts);
    for (const QString &step : steps.split("; ")) {
        const QString script = step.section(" > ", 0, 0), rest = script.mid(1);
        if (script.startsWith("~="))
            menu(view, glw, rest.mid(1));
        else if (script[0] == '=')
            EXPECT_TRUE(asks(view, [&] { menu(view, glw, rest); })) << rest.toStdString();
        else if (script[0] == '?')
            widget->findChild<QLineEdit *>()->setText(rest);
        else if (script[0] == '~')
            hand(rest);
        else
            EXPECT_TRUE(asks(view, script)) << script.toStdString();
        QStringList fresh, now = state().split('|', Qt::SkipEmptyParts);
        for (const QString &word : qAsConst(now))
            if (!before.contains(word))
                fresh << word;
        for (const QString &word : qAsConst(before))
            if (fresh.isEmpty() && !now.contains(word))
                fresh << '-' + word;
        before.swap(now);
        EXPECT_EQ(fresh.join('|').toStdString(), step.section(" > ", 1).toStdString())
            << script.toStdString();
    }
}

void SingleViewTest::open(const QString &path, bool fromTheFront)
{
    view.reset();
    view = std::make_unique<SingleView>(*window, queue, path);
    show(*view);
    if (fromTheFront)
        view->lookFrom(Steering::Side::Front);
    settle(glw());
}

std::string SingleViewTest::marks() const
{
    std::string all;
    const PartMarks &marks = item()->marks();
    for (std::size_t i = 0; i < marks.count(); ++i)
        all += marks.isHidden(i) ? 'h' : marks.isSelected(i) ? 's' : '.';
    return all;
}

QString SingleViewTest::pose() const
{
    const GL::Camera &c = glw()->camera;
    QString words;
    for (double v : {double(c.rot.x), double(c.rot.y), double(c.setTarget.x), double(c.radius)})
        words += QString::number(v, 'f', 3) + ' ';
    return words;
}

QPointF SingleViewTest::at(const QVector3D &place) const
{
    const QPointF p =
        CameraSteering::geometryOf(glw()).pixel((place - item()->centre()) * item()->scale());
    return {p.x(), 400 - p.y()};
}

std::optional<QPointF> SingleViewTest::place(const QString &word) const
{
    if (word[0] != '@')
        return {};
    if (word == "@c") {
        QPointF best(0, 400);
        const SectionFrame frame = item()->sectionFrames().at(0);
        for (const QVector3D &corner : frame.corners) {
            const QPointF p = CameraSteering::geometryOf(glw()).pixel(corner);
            best = p.x() + p.y() > best.x() + 400 - best.y() ? QPointF(p.x(), 400 - p.y()) : best;
        }
        return best;
    }
    QList<double> n;
    for (const QString &number : word.mid(1).split(','))
        n << number.toDouble();
    if (n.size() == 3)
        return at(QVector3D(float(n[0]), float(n[1]), float(n[2])));
    const SeriesPlot &plot = item<SeriesItem>()->plot();
    if (n.size() == 2)
        return plot.toLocal(glw(), {n[0], n[1]});
    return PlotLayout(plot.table(), {600, 400}, plot.options()).legend[int(n[0])].center();
}

QImage ViewTest::picture(View &view, bool overlays, int scale) const
{
    PictureRequest request;
    request.window = widget->size();
    request.size = request.window * scale;
    request.blockSide = 256 * scale;
    widget->makeCurrent();
    request.objects = view.pictured(false, overlays).objects();
    return renderPicture(request).image;
}

QImage SingleViewTest::painted()
{
    QImage image;
    const auto heard = QObject::connect(view.get(), &View::framePainted,
                                        [&] { image = widget->grabFrameBuffer(); });
    widget->repaint();
    QObject::disconnect(heard);
    return image;
}

} // namespace host
