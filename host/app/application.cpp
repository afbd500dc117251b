// SPDX-License-Identifier: MIT
#include "host/app/application.h"

#include <cmath>

#include <QFontInfo>
#include <QGLFormat>
#include <QProxyStyle>
#include <QScreen>

#include "host/app/icon.h"
#include "host/ui/metrics.h"
#include "host/view/window/menu_tree.h"

namespace host {

namespace {

/// The desktop's style with boxes, margins and icons @p factor times as large.
class ScaledStyle : public QProxyStyle {
public:
    explicit ScaledStyle(double factor) : factor_(factor) {}

    int pixelMetric(PixelMetric metric, const QStyleOption *option,
                    const QWidget *widget) const override
    {
        return int(std::lround(QProxyStyle::pixelMetric(metric, option, widget) * factor_));
    }

private:
    double factor_;
};

QFont enlarged(QFont font, double factor)
{
    if (font.pointSizeF() > 0)
        font.setPointSizeF(font.pointSizeF() * factor);
    else
        font.setPixelSize(int(std::lround(font.pixelSize() * factor)));
    return font;
}

/// How much larger a screen's dots per inch ask to draw. They are given as exactly as the screen's
/// width in millimetres is: what is about usual counts as usual.
double scaleOf(const QScreen *screen)
{
    constexpr double usual = 96, steps = 8;
    const double scale = std::round(screen->logicalDotsPerInch() / usual * steps) / steps;
    return scale > 1.1 ? scale : 1;
}

} // namespace

Application::Application(int &argc, char **argv) : QApplication(argc, argv)
{
    setApplicationName("glview");
    setApplicationDisplayName("glview");
    setApplicationVersion(GLVIEW_VERSION);
    setWindowIcon(applicationIcon());
    // The module makes its windows with the default format. Lines and edges want multisampling;
    // the depths are spread for at least 24 bits.
    QGLFormat format = QGLFormat::defaultFormat();
    format.setDepthBufferSize(24);
    format.setSampleBuffers(true);
    format.setSamples(4);
    QGLFormat::setDefaultFormat(format);
}

void Application::setSizes(const DesktopScale &asked, bool aPerson)
{
    // Letters over a picture want to be a little larger than those of menus.
    constexpr double usualMenu = 12; // pixels
    const QScreen *screen = primaryScreen();
    const double factor = screen ? asked.factor(screen->name()) : 1;
    if (factor != 1) {
        setStyle(new ScaledStyle(factor));
        setFont(enlarged(font(), factor));
    }
    if (aPerson && screen)
        Metrics::set(factor * scaleOf(screen),
                     QFontInfo(font()).pixelSize() * Metrics::usualType / usualMenu);
    else
        Metrics::set(factor, factor * Metrics::usualType);
}

QObject *Application::NewObject(QString className, QObject *owner, QString name)
{
    if (className != QLatin1String("MenuTree"))
        return nullptr;
    auto *tree = new MenuTree(owner);
    tree->setObjectName(name);
    return tree;
}

} // namespace host
