#pragma once

#include "ui/common/forms.h"

#include <QDialog>

class QComboBox;
class QLabel;
class QLineEdit;
class QPushButton;
class QRadioButton;

// Wizard page 2: the e-mail address. Signing up for a new account is
// offered but leads nowhere: the page is left only with a typed address.
class frmMainBoxAdd2 final : public QDialog
{
    Q_OBJECT

public:
    explicit frmMainBoxAdd2(QWidget *parent = nullptr);

    QString Address;  // stored by Next

    QLabel *Label1 = nullptr;
    QRadioButton *Option1 = nullptr;
    QLabel *Label2 = nullptr;
    QLineEdit *Text1 = nullptr;
    QLabel *Label3 = nullptr;
    QRadioButton *Option2 = nullptr;
    QComboBox *Combo1 = nullptr;
    QPushButton *btnBackWard = nullptr;
    QPushButton *btnForWard = nullptr;
    QPushButton *btnCancel = nullptr;

    void Form_Load();

private:
    void Text1_Change();
    void Option1_Click(bool checked);
    void Option2_Click(bool checked);
};

namespace forms {
inline frmMainBoxAdd2 *MainBoxAdd2() { return instance<frmMainBoxAdd2>(); }
}  // namespace forms
