// SPDX-License-Identifier: MIT
#include "host/item/parts_in_pick.h"

namespace host {

std::vector<bool> partsInPick(const GL::Camera &camera, const Mesh &mesh, const QVector3D &centre,
                              float scale, const PartMarks &marks,
                              const std::vector<PlaneGrid> &planes)
{
    const PickSquare square(camera);
    const auto placeOf = [&](std::size_t vertex) {
        PickSquare::Place p;
        for (std::size_t i = 0; i < 3; ++i)
            p[i] =
                (double(mesh.positions[vertex * 3 + i]) - double(centre[int(i)])) * double(scale);
        return p;
    };
    std::vector<PickSquare::Seen> corners(mesh.firstPoint());
    for (std::size_t i = 0; i < corners.size(); ++i)
        corners[i] = square.seen(placeOf(i));

    std::vector<bool> met(mesh.parts.size());
    const auto meets = [&](const quint32 *at, quint32 count) {
        if (!PickSquare::isMet(corners[at[0]], corners[at[1]], corners[at[count - 1]]))
            return false;
        if (planes.empty())
            return true;
        std::vector<PickSquare::Place> left;
        for (quint32 k = 0; k < count; ++k)
            left.push_back(placeOf(at[k]));
        return square.isMet(std::move(left), planes);
    };
    for (std::size_t i = 0; i < mesh.parts.size(); ++i) {
        const MeshPart &part = mesh.parts[i];
        const quint32 step = part.kind == MeshPart::Kind::Triangles ? 3 : 2;
        for (quint32 at = 0; at < part.indexCount && !met[i] && !marks.isHidden(i); at += step)
            met[i] = meets(&mesh.indices[part.firstIndex + at], step);
        for (quint32 at = 0; at < part.vertexCount && !met[i] && !marks.isHidden(i); ++at) {
            const PickSquare::Place place = placeOf(part.firstVertex + at);
            const PickSquare::Seen seen = square.seen(place);
            met[i] = PickSquare::isMet(seen, seen, seen) &&
                     (planes.empty() || square.isMet({place}, planes));
        }
    }
    return met;
}

} // namespace host
