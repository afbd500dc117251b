// SPDX-License-Identifier: MIT
#include "host/read/scene.h"

#include <cmath>

#include <assimp/metadata.h>

namespace host {
namespace {

/// The unit of FBX, a number of centimetres, by name.
QString fbxUnit(const aiMetadata &about)
{
    static const std::pair<double, const char *> units[] = {
        {0.1, "mm"},  {1, "cm"},     {100, "m"},   {1e5, "km"},
        {2.54, "in"}, {30.48, "ft"}, {91.44, "yd"}};
    float centimetres = 0;
    about.Get("UnitScaleFactor", centimetres);
    for (const auto &[size, name] : units)
        if (std::abs(double(centimetres) - size) < 1e-5 * size)
            return QString::fromLatin1(name);
    return {};
}

} // namespace

QString lengthUnit(const aiScene &scene, const std::string &format)
{
    for (const char *metric : {"Collada", "glTF", "Industry Foundation Classes"})
        if (format.rfind(metric, 0) == 0)
            return QStringLiteral("m");
    return format.rfind("Autodesk FBX", 0) == 0 && scene.mMetaData ? fbxUnit(*scene.mMetaData)
                                                                   : QString();
}

} // namespace host
