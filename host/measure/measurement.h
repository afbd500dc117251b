// SPDX-License-Identifier: MIT
#ifndef HOST_MEASURE_MEASUREMENT_H
#define HOST_MEASURE_MEASUREMENT_H

#include <vector>

#include <QCoreApplication>
#include <QStringList>

#include "host/measure/circle_fit.h"
#include "host/measure/mesh_measures.h"

namespace host {

/// A face of a mesh: a point on it and its normal, both in the file's frame.
struct FacePoint {
    Vec at = Vec::Zero();
    Vec normal = Vec::UnitZ(); ///< Towards the front; of any length but 0.
};

/// What was measured, as a value: what to draw and what to say. All places are in the file's own
/// frame, so that they stay what they are when the model is stood on another axis.
struct Measurement {
    Q_DECLARE_TR_FUNCTIONS(Measurement)
public:
    QString name;             ///< What kind it is, as people call it.
    QStringList values;       ///< Lines; the first one matters most.
    std::vector<Vec> marks;   ///< Places that were measured.
    std::vector<Vec> line;    ///< From place to place; may be empty.
    Vec anchor = Vec::Zero(); ///< What its label belongs to.

    /// All of it in one line, with tabs between.
    QString text() const;

    /// Makers. @p unit is that of lengths, such as "mm"; empty: none is known.
    static Measurement point(const Vec &at, const QString &unit);
    static Measurement distance(const Vec &a, const Vec &b, const QString &unit);
    /// The angle that two faces enclose, 180 degrees if they look the same way, with the distance
    /// of the planes where they are parallel.
    static Measurement faceAngle(const FacePoint &a, const FacePoint &b, const QString &unit);
    /// The angle at @p apex.
    static Measurement pointAngle(const Vec &a, const Vec &apex, const Vec &b);
    static Measurement radius(const Circle &circle, const QString &unit);
    /// @p what says whose surface it is; @p surface is of @p mesh.
    static Measurement surface(const SurfaceMeasures &surface, const Mesh &mesh,
                               const QString &what);

    /// A number with six digits in the person's language.
    static QString number(double value);
};

} // namespace host

#endif
