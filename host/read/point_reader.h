// SPDX-License-Identifier: MIT
#ifndef HOST_READ_POINT_READER_H
#define HOST_READ_POINT_READER_H

#include <QByteArray>
#include <QString>
#include <QStringList>

#include "host/read/import.h"

namespace host {

/// The suffixes of text files with a point on each line: xyz, pts, asc.
QStringList pointSuffixes();

/// Whether readPoints() is to read the file @p path: one of pointSuffixes(), or a .ply file whose
/// header tells of points and of no faces.
bool isPointFile(const QString &path);

/// Whether @p head, the first bytes of a file, are lines with points.
bool looksLikePoints(const QByteArray &head);

/// Reads a cloud of points from the file @p path, as many as the limits allow: millions take a
/// second or two. Points without usable coordinates are left out, which a note counts. Far from
/// zero the coordinates are counted from the mesh's origin.
///
/// Text: x, y and z on each line, +Z up, separated by blanks, tabs, commas or semicolons (with
/// semicolons, a comma may be the decimal point); then, as the first lines tell, red, green and
/// blue (0 to 255, 0 to 65535, or fractions of 1), an intensity, or a normal, which is not used. In
/// .pts files the intensity comes first. Lines that begin with #, / or %, and words on the
/// first three lines, are passed over; other lines that are no points are counted in a note, and
/// may be no more than those that are.
///
/// PLY: ascii and both binary forms, +Y up; x, y, z and red, green, blue or intensity of the
/// element vertex, of any type. A file that is cut short gives the points that are there, and a
/// note.
Imported readPoints(const QString &path, const ReadProgress &progress = {},
                    const MeshLimits &limits = {});

} // namespace host

#endif
