// SPDX-License-Identifier: MIT
// VTK's Qt widget with a renderer for each tile.
#include <QSurfaceFormat>
#include <QVTKOpenGLNativeWidget.h>
#include <vtkActor.h>
#include <vtkCamera.h>
#include <vtkCellArray.h>
#include <vtkFloatArray.h>
#include <vtkGenericOpenGLRenderWindow.h>
#include <vtkNew.h>
#include <vtkPointData.h>
#include <vtkPoints.h>
#include <vtkPolyData.h>
#include <vtkPolyDataMapper.h>
#include <vtkProperty.h>
#include <vtkRenderer.h>

#include "grid.h"
#include "scene.h"

namespace {

vtkSmartPointer<vtkActor> makeActor()
{
    const scene::Mesh mesh = scene::torus();
    vtkNew<vtkPoints> points;
    vtkNew<vtkFloatArray> normals;
    normals->SetNumberOfComponents(3);
    for (std::size_t i = 0; i < mesh.positions.size(); ++i) {
        points->InsertNextPoint(mesh.positions[i].data());
        normals->InsertNextTuple(mesh.normals[i].data());
    }
    vtkNew<vtkCellArray> triangles;
    for (std::size_t i = 0; i < mesh.indices.size(); i += 3) {
        const vtkIdType corners[] = {mesh.indices[i], mesh.indices[i + 1], mesh.indices[i + 2]};
        triangles->InsertNextCell(3, corners);
    }
    vtkNew<vtkPolyData> data;
    data->SetPoints(points);
    data->SetPolys(triangles);
    data->GetPointData()->SetNormals(normals);
    vtkNew<vtkPolyDataMapper> mapper;
    mapper->SetInputData(data);
    auto actor = vtkSmartPointer<vtkActor>::New();
    actor->SetMapper(mapper);
    vtkProperty *surface = actor->GetProperty();
    surface->SetColor(1, 1, 1);
    surface->SetAmbient(double(scene::glow));
    surface->SetDiffuse(double(scene::diffuse));
    surface->SetSpecular(0);
    return actor;
}

class VtkPeer : public Peer {
public:
    explicit VtkPeer(int rows)
    {
        vtkNew<vtkGenericOpenGLRenderWindow> target;
        target->SetMultiSamples(0);
        widget_.setRenderWindow(target);
        const vtkSmartPointer<vtkActor> actor = makeActor();
        const double cell = 1.0 / rows;
        for (int i = 0; i < rows * rows; ++i) {
            auto renderer = vtkSmartPointer<vtkRenderer>::New();
            const double x = i % rows * cell, y = (rows - 1 - i / rows) * cell;
            renderer->SetViewport(x, y, x + cell, y + cell);
            renderer->AddActor(actor);
            renderer->GetActiveCamera()->SetViewAngle(double(scene::fieldOfView));
            target->AddRenderer(renderer);
            renderers_.push_back(renderer);
        }
    }
    QWidget *window() override { return &widget_; }
    void turn(int tile, float azimuth) override
    {
        const scene::Point eye = scene::eye(azimuth);
        vtkCamera *camera = renderers_[std::size_t(tile)]->GetActiveCamera();
        camera->SetPosition(double(eye[0]), double(eye[1]), double(eye[2]));
        camera->SetFocalPoint(0, 0, 0);
        camera->SetViewUp(0, 1, 0);
        camera->SetClippingRange(double(scene::nearest), double(scene::farthest));
    }
    void draw(const std::vector<int> &) override
    {
        widget_.renderWindow()->Render();
        updateAndWait({&widget_});
    }

private:
    QVTKOpenGLNativeWidget widget_;
    std::vector<vtkSmartPointer<vtkRenderer>> renderers_;
};

} // namespace

void prepare()
{
    QSurfaceFormat format = QVTKOpenGLNativeWidget::defaultFormat();
    format.setSamples(0);
    QSurfaceFormat::setDefaultFormat(format);
}

std::unique_ptr<Peer> makePeer(int rows)
{
    return std::make_unique<VtkPeer>(rows);
}
