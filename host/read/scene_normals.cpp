// SPDX-License-Identifier: MIT
#include "host/read/scene.h"

#include <algorithm>
#include <cmath>
#include <utility>
#include <vector>

#include "host/read/first_of_each.h"

namespace host {
namespace {

constexpr float creaseCosine = 0.5f; // of 60 degrees
/// Around a vertex of more faces, about so many of them are asked: asking each about each would
/// take the square of their number.
constexpr unsigned manyFaces = 256;

quint64 mixedVector(quint64 sum, const aiVector3D &v)
{
    return mixed(mixed(mixed(sum, v.x), v.y), v.z);
}

/// Whether a normal says something; too short ones would not survive being scaled.
bool isDirection(const aiVector3D &normal)
{
    const float length = normal.SquareLength();
    return std::isfinite(length) && length > 1e-12f;
}

/// The faces around each place, place by place.
struct Surroundings {
    std::vector<unsigned> begin; // of each place in faces; one more at the end
    std::vector<unsigned> faces;
};

Surroundings surroundingsOf(const aiMesh &mesh, const std::vector<unsigned> &place)
{
    Surroundings around;
    around.begin.assign(std::size_t(mesh.mNumVertices) + 1, 0);
    for (unsigned f = 0; f < mesh.mNumFaces; ++f) {
        for (unsigned k = 0; k < 3; ++k)
            ++around.begin[place[mesh.mFaces[f].mIndices[k]] + 1];
    }
    for (std::size_t i = 1; i < around.begin.size(); ++i)
        around.begin[i] += around.begin[i - 1];
    around.faces.resize(std::size_t(mesh.mNumFaces) * 3);
    std::vector<unsigned> next(around.begin.begin(), around.begin.end() - 1);
    for (unsigned f = 0; f < mesh.mNumFaces; ++f) {
        for (unsigned k = 0; k < 3; ++k)
            around.faces[next[place[mesh.mFaces[f].mIndices[k]]]++] = f;
    }
    return around;
}

/// The normal of a face at one of its corners: the sum over the faces around that do not stand at
/// more than the crease's angle to it, each by its area.
aiVector3D cornerNormal(const std::vector<aiVector3D> &units, const std::vector<float> &areas,
                        const Surroundings &around, unsigned place, unsigned face)
{
    const unsigned begin = around.begin[place], end = around.begin[place + 1];
    const unsigned step = 1 + (end - begin) / manyFaces;
    aiVector3D sum;
    for (unsigned i = begin; i < end; i += step) {
        const unsigned other = around.faces[i];
        if (units[face] * units[other] >= creaseCosine)
            sum += units[other] * areas[other];
    }
    return sum;
}

template <class T> void replace(T *&array, const std::vector<T> &values)
{
    delete[] array;
    array = new T[values.size()];
    std::copy(values.begin(), values.end(), array);
}

/// Replaces @p array, one element for each vertex, by one for each corner of each face.
template <class T> void spread(T *&array, const aiMesh &mesh)
{
    if (!array)
        return;
    std::vector<T> corners;
    corners.reserve(std::size_t(mesh.mNumFaces) * 3);
    for (unsigned f = 0; f < mesh.mNumFaces; ++f) {
        for (unsigned k = 0; k < 3; ++k)
            corners.push_back(array[mesh.mFaces[f].mIndices[k]]);
    }
    replace(array, corners);
}

/// Keeps of @p array the elements that stand for all that equal them.
template <class T> void thin(T *&array, const std::vector<unsigned> &first)
{
    if (!array)
        return;
    std::size_t kept = 0;
    for (std::size_t i = 0; i < first.size(); ++i) {
        if (first[i] == i)
            array[kept++] = array[i];
    }
}

} // namespace

bool hasNormals(const aiMesh &mesh)
{
    return mesh.mNormals &&
           std::all_of(mesh.mNormals, mesh.mNormals + mesh.mNumVertices, isDirection);
}

void makeNormals(aiMesh &mesh)
{
    const unsigned faces = mesh.mNumFaces;
    if (faces == 0)
        return;
    const aiVector3D *at = mesh.mVertices;
    const std::vector<unsigned> place = firstOfEach(
        mesh.mNumVertices, [at](unsigned i) { return mixedVector(1, at[i]); },
        [at](unsigned a, unsigned b) { return at[a] == at[b]; });
    const Surroundings around = surroundingsOf(mesh, place);
    std::vector<aiVector3D> units(faces), normals;
    std::vector<float> areas(faces);
    for (unsigned f = 0; f < faces; ++f) {
        const unsigned *corner = mesh.mFaces[f].mIndices;
        units[f] = (at[corner[1]] - at[corner[0]]) ^ (at[corner[2]] - at[corner[0]]);
        areas[f] = units[f].Length();
        units[f].NormalizeSafe();
    }
    normals.reserve(std::size_t(faces) * 3);
    for (unsigned f = 0; f < faces; ++f) {
        for (unsigned k = 0; k < 3; ++k) {
            const unsigned corner = mesh.mFaces[f].mIndices[k];
            const bool given = mesh.mNormals && isDirection(mesh.mNormals[corner]);
            normals.push_back(given ? mesh.mNormals[corner]
                                    : cornerNormal(units, areas, around, place[corner], f));
        }
    }
    spread(mesh.mVertices, mesh);
    for (aiColor4D *&colours : mesh.mColors)
        spread(colours, mesh);
    spread(mesh.mTextureCoords[0], mesh);
    replace(mesh.mNormals, normals);
    mesh.mNumVertices = faces * 3;
    for (unsigned f = 0; f < faces; ++f) {
        for (unsigned k = 0; k < 3; ++k)
            mesh.mFaces[f].mIndices[k] = f * 3 + k;
    }
}

void joinVertices(aiMesh &mesh)
{
    const aiVector3D *at = mesh.mVertices, *normal = mesh.mNormals;
    const aiColor4D *colour = mesh.mColors[0];
    const aiVector3D *uv = mesh.mTextureCoords[0];
    const auto sameColours = [&mesh](unsigned a, unsigned b) {
        return std::all_of(std::begin(mesh.mColors), std::end(mesh.mColors),
                           [=](const aiColor4D *set) { return !set || set[a] == set[b]; });
    };
    const std::vector<unsigned> first = firstOfEach(
        mesh.mNumVertices,
        [=](unsigned i) {
            quint64 sum = mixedVector(mixedVector(1, at[i]), normal ? normal[i] : aiVector3D());
            sum = uv ? mixedVector(sum, uv[i]) : sum;
            return colour ? mixedVector(sum, {colour[i].r, colour[i].g, colour[i].b}) : sum;
        },
        [=, &sameColours](unsigned a, unsigned b) {
            return at[a] == at[b] && (!normal || normal[a] == normal[b]) && sameColours(a, b) &&
                   (!uv || uv[a] == uv[b]);
        });
    std::vector<unsigned> number(first.size());
    unsigned kept = 0;
    for (unsigned i = 0; i < first.size(); ++i)
        number[i] = first[i] == i ? kept++ : number[first[i]];
    thin(mesh.mVertices, first);
    thin(mesh.mNormals, first);
    for (aiColor4D *&colours : mesh.mColors)
        thin(colours, first);
    thin(mesh.mTextureCoords[0], first);
    mesh.mNumVertices = kept;
    for (unsigned f = 0; f < mesh.mNumFaces; ++f) {
        aiFace &face = mesh.mFaces[f];
        for (unsigned k = 0; k < face.mNumIndices; ++k)
            face.mIndices[k] = number[face.mIndices[k]];
    }
}

} // namespace host
