#pragma once

#include "ui/common/forms.h"

#include <QDialog>

class QLabel;
class QLineEdit;
class QPushButton;

// Wizard page 1: the display name that goes into the From field.
class frmMainBoxAdd1 final : public QDialog
{
    Q_OBJECT

public:
    explicit frmMainBoxAdd1(QWidget *parent = nullptr);

    QString DisplayName;  // stored by Next; outlives the page on screen

    QLabel *Label1 = nullptr;
    QLabel *Label2 = nullptr;
    QLineEdit *Text1 = nullptr;
    QLabel *Label3 = nullptr;
    QPushButton *btnBackWard = nullptr;
    QPushButton *btnForWard = nullptr;
    QPushButton *btnCancel = nullptr;

    void Form_Load();

private:
    void Text1_Change();
};

namespace forms {
inline frmMainBoxAdd1 *MainBoxAdd1() { return instance<frmMainBoxAdd1>(); }
}  // namespace forms
