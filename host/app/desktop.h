// SPDX-License-Identifier: MIT
#ifndef HOST_APP_DESKTOP_H
#define HOST_APP_DESKTOP_H

#include <QByteArray>
#include <QString>
#include <QStringList>

namespace host {

/// What the desktop asks of all programs: how much larger than on a usual screen to draw.
///
/// Qt's answer to it, logical pixels of several device pixels each, is not for OpenGL, whose
/// pictures would fill a part of their windows. So the wish is taken out of Qt's hands here, every
/// pixel is a device pixel, and the program draws larger by itself (see Metrics).
class DesktopScale {
public:
    /// Reads Qt's variables and takes them out of the environment. Expects to be called before the
    /// application object is made.
    static DesktopScale take();

    /// What they ask for on the screen called @p screen, @p number among all: 1 if they ask for
    /// nothing or for nonsense, else 0.5 to 8.
    double factor(const QString &screen, int number = 0) const;

private:
    QByteArray everywhere_; // one number
    QByteArray device_;     // the same, as Qt 5.4 called it
    QByteArray screens_;    // numbers, or name=number, with semicolons between
};

} // namespace host

#endif
