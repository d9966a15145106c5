#pragma once

// Small helpers shared by the accounts dialog, the wizard pages and the
// properties dialog.

class QLineEdit;
class QWidget;

namespace accountsui {

// Moves a window so that its offset from the screen's top-left corner is
// (share x free space) integer-divided by parts, along each axis, worked out
// in whole twips: 1/2 centres, 2/5 opens above and left of centre.
void placeOnFreeSpace(QWidget *window, int share, int parts);

// A box that cannot be typed into also looks like it: greyed boxes take the
// button-face colour, live ones the window background.
void setBoxGreyed(QLineEdit *box, bool greyed);

}  // namespace accountsui
