// SPDX-License-Identifier: MIT
#include "host/app/desktop.h"

#include <algorithm>
#include <cmath>

#include <QCoreApplication>
#include <QList>

namespace host {

namespace {

/// 1 for what is no positive number.
double positive(const QByteArray &text)
{
    bool number = false;
    const double value = text.toDouble(&number);
    return number && std::isfinite(value) && value > 0 ? value : 1;
}

QByteArray takeVariable(const char *name)
{
    QByteArray value = qgetenv(name);
    qunsetenv(name);
    return value;
}

} // namespace

DesktopScale DesktopScale::take()
{
    DesktopScale asked;
    asked.everywhere_ = takeVariable("QT_SCALE_FACTOR");
    asked.device_ = takeVariable("QT_DEVICE_PIXEL_RATIO");
    asked.screens_ = takeVariable("QT_SCREEN_SCALE_FACTORS");
    // These two let Qt make a factor of the dots per inch, which count in any case.
    for (const char *byDots : {"QT_AUTO_SCREEN_SCALE_FACTOR", "QT_ENABLE_HIGHDPI_SCALING"})
        qunsetenv(byDots);
    QCoreApplication::setAttribute(Qt::AA_DisableHighDpiScaling);
    // A Wayland compositor scales whatever the program says; through XWayland it does not.
    if (!qEnvironmentVariableIsEmpty("DISPLAY") && !qEnvironmentVariableIsSet("QT_QPA_PLATFORM"))
        qputenv("QT_QPA_PLATFORM", "xcb");
    return asked;
}

double DesktopScale::factor(const QString &screen, int number) const
{
    constexpr double least = 0.5, most = 8;
    double here = 1;
    const QList<QByteArray> all = screens_.split(';');
    for (int i = 0; i < all.size(); ++i) {
        const int equals = all[i].lastIndexOf('=');
        const bool meant = equals < 0 ? i == number : all[i].left(equals) == screen.toUtf8();
        if (meant)
            here = positive(all[i].mid(equals + 1));
    }
    return std::clamp(positive(everywhere_) * positive(device_) * here, least, most);
}

} // namespace host
