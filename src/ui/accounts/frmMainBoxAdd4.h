#pragma once

#include "ui/common/forms.h"

#include <QDialog>

class QCheckBox;
class QLabel;
class QLineEdit;
class QPushButton;

// Wizard page 4: the logon name and password.
class frmMainBoxAdd4 final : public QDialog
{
    Q_OBJECT

public:
    explicit frmMainBoxAdd4(QWidget *parent = nullptr);

    QString AccountName;  // stored by Next
    QString Password;

    QLabel *Label1 = nullptr;
    QLabel *Label2 = nullptr;
    QLineEdit *Text1 = nullptr;
    QLabel *Label3 = nullptr;
    QLineEdit *Text2 = nullptr;
    QCheckBox *Check1 = nullptr;  // remember password
    QCheckBox *Check2 = nullptr;  // secure password authentication; no action
    QLabel *Label4 = nullptr;
    QPushButton *btnBackWard = nullptr;
    QPushButton *btnForWard = nullptr;
    QPushButton *btnCancel = nullptr;

    void Form_Load();

private:
    void Text1_Change();
    void Check1_Click();
};

namespace forms {
inline frmMainBoxAdd4 *MainBoxAdd4() { return instance<frmMainBoxAdd4>(); }
}  // namespace forms
