#pragma once

#include "ui/common/forms.h"

#include <QDialog>

class QLabel;
class QPushButton;

// Wizard page 5: the last word before the account is stored.
class frmMainBoxAdd5 final : public QDialog
{
    Q_OBJECT

public:
    explicit frmMainBoxAdd5(QWidget *parent = nullptr);

    QLabel *Label1 = nullptr;
    QLabel *Label2 = nullptr;
    QPushButton *btnBackWard = nullptr;
    QPushButton *btnOK = nullptr;
    QPushButton *btnCancel = nullptr;

    void Form_Load();

};

namespace forms {
inline frmMainBoxAdd5 *MainBoxAdd5() { return instance<frmMainBoxAdd5>(); }
}  // namespace forms
