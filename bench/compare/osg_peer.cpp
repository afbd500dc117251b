// SPDX-License-Identifier: MIT
// OpenSceneGraph's composite viewer with a view for each tile, embedded in one widget.
#include <QGLWidget>
#include <osg/Geode>
#include <osg/Geometry>
#include <osg/LightModel>
#include <osg/Material>
#include <osgViewer/CompositeViewer>
#include <osgViewer/GraphicsWindow>

#include "peer.h"
#include "scene.h"
#include "surface_peer.h"

namespace {

osg::ref_ptr<osg::Node> makeTorus()
{
    const scene::Mesh mesh = scene::torus();
    osg::ref_ptr<osg::Vec3Array> points(new osg::Vec3Array), normals(new osg::Vec3Array);
    for (std::size_t i = 0; i < mesh.positions.size(); ++i) {
        const scene::Point &p = mesh.positions[i], &n = mesh.normals[i];
        points->push_back(osg::Vec3(p[0], p[1], p[2]));
        normals->push_back(osg::Vec3(n[0], n[1], n[2]));
    }
    osg::ref_ptr<osg::Geometry> geometry(new osg::Geometry);
    geometry->setVertexArray(points);
    geometry->setNormalArray(normals, osg::Array::BIND_PER_VERTEX);
    geometry->addPrimitiveSet(new osg::DrawElementsUInt(GL_TRIANGLES, unsigned(mesh.indices.size()),
                                                        mesh.indices.data()));
    osg::ref_ptr<osg::Geode> node(new osg::Geode);
    node->addDrawable(geometry);
    osg::ref_ptr<osg::Material> grey(new osg::Material);
    const osg::Vec4 black(0, 0, 0, 1);
    grey->setAmbient(osg::Material::FRONT_AND_BACK, black);
    grey->setSpecular(osg::Material::FRONT_AND_BACK, black);
    grey->setEmission(osg::Material::FRONT_AND_BACK,
                      osg::Vec4(scene::glow, scene::glow, scene::glow, 1));
    grey->setDiffuse(osg::Material::FRONT_AND_BACK,
                     osg::Vec4(scene::diffuse, scene::diffuse, scene::diffuse, 1));
    osg::ref_ptr<osg::LightModel> dark(new osg::LightModel);
    dark->setAmbientIntensity(black);
    node->getOrCreateStateSet()->setAttributeAndModes(grey);
    node->getOrCreateStateSet()->setAttributeAndModes(dark);
    return node;
}

class Surface : public QGLWidget {
public:
    explicit Surface(int rows)
        : context_(new osgViewer::GraphicsWindowEmbedded(0, 0, Peer::side, Peer::side))
    {
        viewer_.setThreadingModel(osgViewer::ViewerBase::SingleThreaded);
        const osg::ref_ptr<osg::Node> torus = makeTorus();
        const int cell = Peer::side / rows;
        for (int i = 0; i < rows * rows; ++i) {
            osg::ref_ptr<osgViewer::View> view(new osgViewer::View);
            osg::Camera *camera = view->getCamera();
            camera->setGraphicsContext(context_);
            camera->setViewport(i % rows * cell, (rows - 1 - i / rows) * cell, cell, cell);
            camera->setClearColor(osg::Vec4(0, 0, 0, 1));
            camera->setComputeNearFarMode(osg::CullSettings::DO_NOT_COMPUTE_NEAR_FAR);
            camera->setProjectionMatrixAsPerspective(scene::fieldOfView, 1, scene::nearest,
                                                     scene::farthest);
            view->setLightingMode(osg::View::HEADLIGHT);
            view->getLight()->setAmbient(osg::Vec4(0, 0, 0, 1));
            view->getLight()->setDiffuse(osg::Vec4(1, 1, 1, 1));
            view->getLight()->setSpecular(osg::Vec4(0, 0, 0, 1));
            view->setSceneData(torus);
            viewer_.addView(view);
        }
    }
    void turn(int tile, float azimuth)
    {
        const scene::Point eye = scene::eye(azimuth);
        viewer_.getView(unsigned(tile))
            ->getCamera()
            ->setViewMatrixAsLookAt(osg::Vec3(eye[0], eye[1], eye[2]), osg::Vec3(),
                                    osg::Vec3(0, 1, 0));
    }

protected:
    void paintGL() override { viewer_.frame(); }

private:
    osg::ref_ptr<osgViewer::GraphicsWindowEmbedded> context_;
    osgViewer::CompositeViewer viewer_;
};

} // namespace

void prepare() {}

std::unique_ptr<Peer> makePeer(int rows)
{
    return std::make_unique<SurfacePeer<Surface>>(rows);
}
