#include "logo.h"

#include <QPainter>
#include <QPainterPath>

// Drawn on a QImage, not a QPixmap, so the icon maker can call it without a
// window system.
QImage logoImage(int side, qreal ratio)
{
    const int pixels = qRound(side * ratio);
    QImage img(pixels, pixels, QImage::Format_ARGB32_Premultiplied);
    img.setDevicePixelRatio(ratio);
    img.fill(Qt::transparent);
    QPainter p(&img);
    p.setRenderHint(QPainter::Antialiasing);
    const QRectF env(side * 0.08, side * 0.3, side * 0.84, side * 0.55);
    p.setPen(QPen(QColor(0x1f, 0x4e, 0x8c), side / 24.0));
    p.setBrush(QColor(0xfd, 0xf6, 0xe3));
    p.drawRect(env);
    QPainterPath flap;
    flap.moveTo(env.topLeft());
    flap.lineTo(env.center().x(), env.top() + env.height() * 0.55);
    flap.lineTo(env.topRight());
    p.drawPath(flap);
    QPainterPath quill;
    quill.moveTo(side * 0.25, side * 0.95);
    quill.cubicTo(side * 0.45, side * 0.55, side * 0.7, side * 0.2, side * 0.95, side * 0.05);
    quill.cubicTo(side * 0.8, side * 0.35, side * 0.6, side * 0.6, side * 0.25, side * 0.95);
    p.setPen(QPen(QColor(0x8c, 0x3b, 0x1f), side / 40.0));
    p.setBrush(QColor(0xe8, 0xa8, 0x4c));
    p.drawPath(quill);
    return img;
}
