// SPDX-License-Identifier: MIT
// The module, as a host uses it: a multi-view that is loaded and steered by name.
#include <QGLWidget>
#include <QHash>
#include <QLibrary>

#include "GL/glw.h"
#include "fixed.h"
#include "peer.h"

namespace {

class ModulePeer : public QObject, public Peer {
    Q_OBJECT
public:
    explicit ModulePeer(int rows)
    {
        QLibrary module(QStringLiteral(GLWINDOW_MODULE));
        const auto init = reinterpret_cast<int (*)(QObject *)>(module.resolve("init"));
        if (!init)
            qFatal("%s", qPrintable(module.errorString()));
        init(this);
        window_.reset(static_cast<GLWindow *>(factories_["GLWindow"](nullptr, "window")));
        window_->setProperty("fps", 0.0f);
        window_->setProperty("drawfps", false);
        view_.reset(factories_["GLMultiWidget"](nullptr, "view"));
        view_->setProperty("spacing", 0);
        QMetaObject::invokeMethod(window_.get(), "AddGLWidget", Q_ARG(QObject *, view_.get()));
        QMetaObject::invokeMethod(view_.get(), "Connect", Q_ARG(QObject *, this));
        for (int i = 0; i < rows * rows; ++i) {
            QObject *tile = nullptr;
            QMetaObject::invokeMethod(view_.get(), "AddTile", Q_RETURN_ARG(QObject *, tile),
                                      Q_ARG(uint, uint(i)));
            tiles_.push_back(static_cast<GLW *>(tile));
            GL::Camera &camera = tiles_.back()->camera;
            camera.radius = scene::distance;
            camera.maxRadius = 4 * scene::distance;
            camera.fov = scene::fieldOfView;
            camera.rot.x = scene::elevation;
        }
    }
    QWidget *window() override { return window_.get(); }
    void turn(int tile, float azimuth) override
    {
        tiles_[std::size_t(tile)]->camera.rot.y = -azimuth;
    }
    void draw(const std::vector<int> &) override { window_->updateGL(); }

public Q_SLOTS:
    void Register(const char *, const char *name, void *factory)
    {
        factories_[name] = reinterpret_cast<Factory>(factory);
    }
    void Draw3D(GLW *)
    {
        if (list_ == 0)
            list_ = fixed::begin();
        fixed::drawLit(list_);
    }

private:
    using Factory = QObject *(*)(QObject *parent, const char *name);
    QHash<QByteArray, Factory> factories_;
    std::unique_ptr<GLWindow> window_;
    std::unique_ptr<QObject> view_;
    std::vector<GLW *> tiles_;
    GLuint list_ = 0;
};

} // namespace

void prepare() {}

std::unique_ptr<Peer> makePeer(int rows)
{
    return std::make_unique<ModulePeer>(rows);
}

#include "module_peer.moc"
