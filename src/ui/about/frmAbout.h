#pragma once

#include "ui/common/forms.h"

#include <QDialog>

class QLabel;
class QPushButton;
class QTreeWidget;

// The Help menu's about box: a fixed list of the program's components with
// their versions and paths, the version line and the notices.
class frmAbout final : public QDialog
{
    Q_OBJECT

public:
    explicit frmAbout(QWidget *parent = nullptr);

    QLabel *Image1 = nullptr;  // banner
    QLabel *Image2 = nullptr;  // logo
    QTreeWidget *ListView1 = nullptr;
    QLabel *Label1 = nullptr;  // version
    QLabel *Label2 = nullptr;  // ownership notice
    QLabel *Label3 = nullptr;  // notices about designs and stationery
    QLabel *Label4 = nullptr;
    QPushButton *Command1 = nullptr;

    // Runs every time the box is shown: refills the component list.
    void Form_Load();

private:
    void Command1_Click();
};

namespace forms {
inline frmAbout *About() { return instance<frmAbout>(); }
}  // namespace forms
