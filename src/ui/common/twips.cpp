#include "twips.h"

#include <QGuiApplication>
#include <QScreen>

#include <cmath>

namespace twips {

double perPixel(double logicalDpi)
{
    return PerInch / logicalDpi;
}

int toPixels(double tw, double logicalDpi)
{
    return int(std::lround(tw / perPixel(logicalDpi)));
}

double fromPixels(double px, double logicalDpi)
{
    return px * perPixel(logicalDpi);
}

double screenDpi()
{
    const QScreen *screen = QGuiApplication::primaryScreen();
    return screen ? screen->logicalDotsPerInch() : 96.0;
}

int toPixels(double tw)
{
    return toPixels(tw, screenDpi());
}

double fromPixels(double px)
{
    return fromPixels(px, screenDpi());
}

QRect toPixels(double left, double top, double width, double height)
{
    const double dpi = screenDpi();
    // Convert edges, not sizes, so that neighbours share their border pixel.
    const int x = toPixels(left, dpi);
    const int y = toPixels(top, dpi);
    return QRect(x, y, toPixels(left + width, dpi) - x, toPixels(top + height, dpi) - y);
}

int freeSpaceOffset(int screenTwips, int windowTwips, int divisor)
{
    return (screenTwips - windowTwips) / divisor;
}

QPoint nearTopLeft(QSize screenTwips, QSize windowTwips)
{
    return QPoint(freeSpaceOffset(screenTwips.width(), windowTwips.width(), 100),
                  freeSpaceOffset(screenTwips.height(), windowTwips.height(), 100));
}

}  // namespace twips
