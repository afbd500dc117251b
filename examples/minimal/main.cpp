// SPDX-License-Identifier: MIT
// The smallest host: loads the module, opens a window and draws a lit cube. Drag to orbit.
#include <QApplication>
#include <QCommandLineParser>
#include <QLibrary>
#include <QScreen>
#include <QTimer>

#include "GL/glw.h"

class Host : public QObject {
    Q_OBJECT
public:
    using Factory = QObject *(*)(QObject *parent, const char *name);
    QMap<QByteArray, Factory> make; // by class name
public Q_SLOTS:
    void Register(const char *, const char *name, void *factory) { make[name] = Factory(factory); }
    void Init(GLW *view)
    {
        glClearColor(0.11f, 0.14f, 0.19f, 1);
        view->camera.rot = Vector(26, 35, 0); // degrees: elevation, azimuth
        view->camera.radius = 5.5f;
        view->camera.maxRadius = 20;
        view->camera.fov = 40;
        view->lights.emplace_back(GL_LIGHT0, 's');
        view->lights.back().position = {-3, 6, 5, 0}; // w = 0: a direction, in world coordinates
        view->lights.back().Init();
        view->NewMouseAction(Qt::LeftButton, 0, "orbit", this, SLOT(Orbit(GLW *)));
    }
    void Draw3D(GLW *)
    {
        const float coral[] = {1.0f, 0.47f, 0.33f, 1};
        glMaterialfv(GL_FRONT, GL_AMBIENT_AND_DIFFUSE, coral);
        glEnable(GL_DEPTH_TEST); // every frame: text over the last one switched it off
        glBegin(GL_QUADS);
        for (int face = 0; face < 6; ++face)
            for (int corner = 0; corner < 4; ++corner) {
                const int axis = face / 2;
                Vector normal, point;
                normal[axis] = point[axis] = face % 2 ? 1 : -1;
                point[(axis + 1) % 3] = corner == 1 || corner == 2 ? 1 : -1;
                point[(axis + 2) % 3] = corner > 1 ? point[axis] : -point[axis];
                glNormal3fv(normal);
                glVertex3fv(point);
            }
        glEnd();
    }
    void Orbit(GLW *view)
    {
        view->camera.rot += Vector(view->gl->mouse.dy, -view->gl->mouse.dx, 0) * 0.5f;
    }
};

int main(int argc, char **argv)
{
    QApplication app(argc, argv);
    QCommandLineParser options;
    options.addOptions({{"timeout", "Quit after this many seconds.", "seconds"},
                        {"picture", "Before that, save what the window shows.", "file"}});
    options.process(app);
    Host host;
    QLibrary module(MODULE);
    if (const auto init = reinterpret_cast<int (*)(QObject *)>(module.resolve("init")))
        init(&host);
    else
        qFatal("%s", qPrintable(module.errorString()));
    QScopedPointer<QWidget> window(qobject_cast<QWidget *>(host.make["GLWindow"](&host, "window")));
    QObject *view = host.make["GLWidget"](&host, "view");
    QMetaObject::invokeMethod(window.data(), "AddGLWidget", Q_ARG(QObject *, view));
    QMetaObject::invokeMethod(view, "Connect", Q_ARG(QObject *, &host));
    window->resize(800, 600);
    window->show();
    if (const double seconds = options.value("timeout").toDouble())
        QTimer::singleShot(int(seconds * 1000), &app, [&] {
            const QString file = options.value("picture");
            app.exit(!file.isEmpty() && !window->screen()->grabWindow(window->winId()).save(file));
        });
    return app.exec();
}
#include "main.moc"
