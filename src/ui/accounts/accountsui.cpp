#include "accountsui.h"

#include "ui/common/twips.h"

#include <QApplication>
#include <QGuiApplication>
#include <QLineEdit>
#include <QPalette>
#include <QScreen>

namespace accountsui {

void placeOnFreeSpace(QWidget *window, int share, int parts)
{
    const QScreen *screen = QGuiApplication::primaryScreen();
    if (!screen)
        return;
    const QRect area = screen->geometry();
    const QSize frame = window->frameGeometry().size();
    // Whole twips first, as the window and screen sizes are kept; the
    // multiplied free space is then divided with truncation.
    const auto tw = [](int px) { return int(twips::fromPixels(px) + 0.5); };
    const int left = twips::freeSpaceOffset(share * tw(area.width()), share * tw(frame.width()), parts);
    const int top = twips::freeSpaceOffset(share * tw(area.height()), share * tw(frame.height()), parts);
    window->move(area.topLeft() + QPoint(twips::toPixels(left), twips::toPixels(top)));
}

void setBoxGreyed(QLineEdit *box, bool greyed)
{
    box->setEnabled(!greyed);
    QPalette palette = box->palette();
    const QPalette system = QApplication::palette(box);
    const QColor background = system.color(greyed ? QPalette::Button : QPalette::Base);
    // Set for every colour group: a disabled box is drawn with the Disabled
    // group, and an inactive window with the Inactive one.
    for (QPalette::ColorGroup group : {QPalette::Active, QPalette::Inactive, QPalette::Disabled})
        palette.setColor(group, QPalette::Base, background);
    box->setPalette(palette);
}

}  // namespace accountsui
