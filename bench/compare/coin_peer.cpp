// SPDX-License-Identifier: MIT
// Coin's render action with a camera for each tile, in one widget.
#include <QGLWidget>

#include <Inventor/SoDB.h>
#include <Inventor/actions/SoGLRenderAction.h>
#include <Inventor/nodes/SoCoordinate3.h>
#include <Inventor/nodes/SoDirectionalLight.h>
#include <Inventor/nodes/SoIndexedFaceSet.h>
#include <Inventor/nodes/SoMaterial.h>
#include <Inventor/nodes/SoNormal.h>
#include <Inventor/nodes/SoNormalBinding.h>
#include <Inventor/nodes/SoPerspectiveCamera.h>
#include <Inventor/nodes/SoSeparator.h>
#include <Inventor/nodes/SoShapeHints.h>

#include "peer.h"
#include "scene.h"
#include "surface_peer.h"

namespace {

SoSeparator *makeTorus()
{
    const scene::Mesh mesh = scene::torus();
    auto *root = new SoSeparator;
    auto *grey = new SoMaterial;
    grey->ambientColor.setValue(0, 0, 0);
    grey->emissiveColor.setValue(scene::glow, scene::glow, scene::glow);
    grey->diffuseColor.setValue(scene::diffuse, scene::diffuse, scene::diffuse);
    root->addChild(grey);
    auto *hints = new SoShapeHints;
    hints->vertexOrdering = SoShapeHints::COUNTERCLOCKWISE;
    root->addChild(hints);
    auto *points = new SoCoordinate3;
    auto *normals = new SoNormal;
    for (std::size_t i = 0; i < mesh.positions.size(); ++i) {
        points->point.set1Value(int(i), mesh.positions[i].data());
        normals->vector.set1Value(int(i), mesh.normals[i].data());
    }
    root->addChild(points);
    root->addChild(normals);
    auto *binding = new SoNormalBinding;
    binding->value = SoNormalBinding::PER_VERTEX_INDEXED;
    root->addChild(binding);
    auto *faces = new SoIndexedFaceSet;
    int at = 0;
    for (std::size_t i = 0; i < mesh.indices.size(); ++i) {
        faces->coordIndex.set1Value(at++, int(mesh.indices[i]));
        if (i % 3 == 2)
            faces->coordIndex.set1Value(at++, -1);
    }
    root->addChild(faces);
    return root;
}

class Surface : public QGLWidget {
public:
    explicit Surface(int rows) : rows_(rows)
    {
        SoSeparator *torus = makeTorus();
        for (int i = 0; i < rows * rows; ++i) {
            Tile tile{new SoSeparator, new SoPerspectiveCamera, new SoDirectionalLight};
            tile.root->ref();
            tile.camera->heightAngle = float(double(scene::fieldOfView) * scene::degree);
            tile.root->addChild(tile.camera);
            tile.root->addChild(tile.light);
            tile.root->addChild(torus);
            tiles_.push_back(tile);
        }
    }
    ~Surface() override
    {
        for (const Tile &tile : tiles_)
            tile.root->unref();
    }
    void turn(int index, float azimuth)
    {
        const scene::Point eye = scene::eye(azimuth);
        const Tile &tile = tiles_[std::size_t(index)];
        tile.camera->position.setValue(eye.data());
        tile.camera->pointAt(SbVec3f(0, 0, 0), SbVec3f(0, 1, 0));
        tile.camera->nearDistance = scene::nearest;
        tile.camera->farDistance = scene::farthest;
        tile.light->direction.setValue(-eye[0], -eye[1], -eye[2]);
    }

protected:
    void initializeGL() override
    {
        glClearColor(0, 0, 0, 1);
        glEnable(GL_DEPTH_TEST);
    }
    void paintGL() override
    {
        glClear(GL_COLOR_BUFFER_BIT | GL_DEPTH_BUFFER_BIT);
        const short cell = short(Peer::side / rows_);
        SbViewportRegion region(Peer::side, Peer::side);
        for (int i = 0; i < rows_ * rows_; ++i) {
            region.setViewportPixels(short(i % rows_ * cell), short((rows_ - 1 - i / rows_) * cell),
                                     cell, cell);
            action_.setViewportRegion(region);
            action_.apply(tiles_[std::size_t(i)].root);
        }
    }

private:
    struct Tile {
        SoSeparator *root;
        SoPerspectiveCamera *camera;
        SoDirectionalLight *light;
    };
    int rows_;
    std::vector<Tile> tiles_;
    SoGLRenderAction action_{SbViewportRegion(Peer::side, Peer::side)};
};

} // namespace

void prepare()
{
    SoDB::init();
}

std::unique_ptr<Peer> makePeer(int rows)
{
    return std::make_unique<SurfacePeer<Surface>>(rows);
}
