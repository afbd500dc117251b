// SPDX-License-Identifier: MIT
#ifndef TESTS_HOST_READ_SUPPORT_H
#define TESTS_HOST_READ_SUPPORT_H

#include <algorithm>
#include <cmath>
#include <string>
#include <vector>

#include <QByteArray>
#include <QDir>
#include <QFile>
#include <QString>
#include <QTemporaryDir>
#include <gtest/gtest.h>

#include "host/read/import.h"

namespace host {

/// A folder of small files that vanishes with the test.
class ModelFolder {
public:
    /// Writes a file, with the folders above it, and returns its path.
    QString write(const QString &name, const QByteArray &content) const;
    QString path(const QString &name) const { return dir_.filePath(name); }

private:
    QTemporaryDir dir_;
};

/// A triangle in the x-y plane with the corners (0,0,0), (2,0,0), (0,3,0), as an OBJ file.
QByteArray objTriangle();

/// An accessor of a glTF file.
struct GltfArray {
    const char *type; ///< As the format names it, such as "VEC3".
    int count;
    QByteArray data;
    int componentType = 5126; ///< Floats; 5121: bytes.
};
QByteArray floats(const std::vector<float> &values);

/// A glTF file of what @p rest says, scenes and what they need, with @p arrays as its accessors.
QByteArray gltf(const QString &rest, const std::vector<GltfArray> &arrays);

/// A PLY file. @p elements tells of what, as "vertex 2, float x, float y; face 0, list uchar int
/// i".
QByteArray ply(const QByteArray &format, QByteArray elements, const QByteArray &data);

/// Fails the running test where @p mesh breaks a promise of Mesh.
void expectPromises(const Mesh &mesh);

/// The same, and where it breaks one of importMesh().
void expectSound(const Mesh &mesh);

/// Expects a sound mesh, and tells what is seen of it: vertices/triangles, its box, the first
/// vertex's normal or, where there is none, the lines and points, and its colour; the size of the
/// first part's texture, the lower left pixel and how its alpha counts; the notes. Or why there is
/// no mesh.
std::string summaryOf(const Imported &got);

} // namespace host

#endif
