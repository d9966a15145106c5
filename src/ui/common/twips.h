#pragma once

#include <QPoint>
#include <QRect>
#include <QSize>

class QWidget;

// Window geometry is worked out in twips (1/1440 inch) and converted to
// pixels with the screen's logical DPI: 15 twips to the pixel at 96 dpi.
namespace twips {

inline constexpr double PerInch = 1440.0;

// Twips per pixel at a logical DPI.
double perPixel(double logicalDpi);
// Rounded to the nearest pixel, so that adjacent edges meet.
int toPixels(double tw, double logicalDpi);
double fromPixels(double px, double logicalDpi);

// The logical DPI of the primary screen (96 when there is none).
double screenDpi();
int toPixels(double tw);
double fromPixels(double px);
QRect toPixels(double left, double top, double width, double height);

// A rectangle in twips; real numbers, because some layouts halve sizes.
struct Rect
{
    double left = 0;
    double top = 0;
    double width = 0;
    double height = 0;

    friend bool operator==(const Rect &a, const Rect &b)
    {
        return a.left == b.left && a.top == b.top && a.width == b.width && a.height == b.height;
    }
};

// Offset of a window from the screen's edge along one axis: the free space
// integer-divided by divisor (truncating, as whole-number division does).
// Divisor 2 centres; the main window uses 100 to open near the top-left.
int freeSpaceOffset(int screenTwips, int windowTwips, int divisor);
// The main window's top-left corner: about a hundredth of the free space
// in from the screen's top-left corner.
QPoint nearTopLeft(QSize screenTwips, QSize windowTwips);

}  // namespace twips
