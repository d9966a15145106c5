#pragma once

#include "ui/common/twips.h"

// Where frmMain's resize handler puts its panes, in twips of the client
// area (W wide, H high, below the menu bar). The folder tree is a fixed
// 2760 wide; 1170 at the top leaves room for the toolbar and the pane
// header, 280 at the bottom for the status bar.
struct MainLayout
{
    twips::Rect Frame4;
    twips::Rect Picture1;
    twips::Rect TreeView1;
    twips::Rect Frame5;
    twips::Rect ListView2;
    twips::Rect Label11;
    twips::Rect Frame2;
    twips::Rect ListView1;
    twips::Rect Frame3;
    twips::Rect Text1;
    double statusPanel1Width = 0;
};

MainLayout mainLayout(double W, double H);

// A move that a too small client area would give a negative size; such a
// move is skipped and the widget stays where it was.
inline bool fits(const twips::Rect &r)
{
    return r.width >= 0 && r.height >= 0;
}

// The preview's To line sits under the From line: the caption 100 twips
// below the From value, the To value 50 twips below the caption.
struct PreviewStack
{
    double label6Top = 0;
    double label7Top = 0;
};
PreviewStack stackPreviewLabels(double label5Top, double label5Height, double label6Height);
