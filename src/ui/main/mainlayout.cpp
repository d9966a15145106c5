#include "mainlayout.h"

MainLayout mainLayout(double W, double H)
{
    MainLayout l;
    l.Frame4 = {2760, 1170, W - 2760, H - 1450};
    l.Picture1 = {30, 10, W - 2700, H - 1500};
    l.TreeView1 = {0, 1170, 2760, H - 1450};
    // Deliberately 60 wider than the message page lying over it.
    l.Frame5 = {2760, 1170, W - 2700, H - 1450};
    l.ListView2 = {0, 1320, W - 2760, H - 2780};
    l.Label11 = {20, 0, W - 2760, H - 2780};
    l.Frame2 = {2760, 1170, W - 2760, H - 1450};
    // Halves are real numbers; the list and the preview share the page.
    l.ListView1 = {0, 20, W - 2760, (H - 1450) / 2.0};
    l.Frame3 = {0, (H - 1450) / 2.0, W - 2760, (H - 1450) / 2.0};
    l.Text1 = {0, 600, W - 2760, (H - 1750) / 2.0};
    l.statusPanel1Width = W - 4200;
    return l;
}

PreviewStack stackPreviewLabels(double label5Top, double label5Height, double label6Height)
{
    PreviewStack s;
    s.label6Top = label5Top + label5Height + 100;
    s.label7Top = s.label6Top + label6Height + 50;
    return s;
}
