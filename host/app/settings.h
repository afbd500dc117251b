// SPDX-License-Identifier: MIT
#ifndef HOST_APP_SETTINGS_H
#define HOST_APP_SETTINGS_H

#include <QSize>
#include <QStringList>

namespace host {

/// What the program keeps from one run to the next, in the person's settings.
class Settings {
public:
    static constexpr int mostFiles = 10;

    /// Files and folders opened before, the last one first; those that are gone are left out.
    QStringList recentFiles() const;
    /// Puts @p paths in front, as absolute paths, each named once.
    void addFiles(const QStringList &paths);

    QSize windowSize() const; ///< Logical pixels; invalid if none was kept.
    void setWindowSize(const QSize &size);

    bool isDark() const; ///< The background; light at first.
    void setDark(bool dark);
    bool isOrthographic() const; ///< The projection; perspective at first.
    void setOrthographic(bool orthographic);
    bool isReducing() const; ///< Large models while they move; on at first.
    void setReducing(bool reducing);
    bool arePartsOpen() const; ///< The list of parts; closed at first.
    void setPartsOpen(bool open);
    int partsWidth() const; ///< Its width in pixels; 0 if none was chosen.
    void setPartsWidth(int width);
    double tileSize() const; ///< The least width of a sheet's tiles; 0 if none was chosen.
    void setTileSize(double usual);
    QString folder() const; ///< Of what was opened last; empty if none was or it is gone.
    void setFolder(const QString &path);
};

} // namespace host

#endif
