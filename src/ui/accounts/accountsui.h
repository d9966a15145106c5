#pragma once

// Small helpers shared by the accounts dialog, the wizard pages and the
// properties dialog.

class QLineEdit;

namespace accountsui {

// A box that cannot be typed into also looks like it: greyed boxes take the
// button-face colour, live ones the window background.
void setBoxGreyed(QLineEdit *box, bool greyed);

}  // namespace accountsui
