#include "accountsui.h"

#include <QApplication>
#include <QLineEdit>
#include <QPalette>

namespace accountsui {

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
