#pragma once

#include "ui/common/forms.h"

#include <QDialog>

class QComboBox;
class QLabel;
class QLineEdit;
class QPushButton;

// Wizard page 3: the incoming and outgoing servers.
class frmMainBoxAdd3 final : public QDialog
{
    Q_OBJECT

public:
    explicit frmMainBoxAdd3(QWidget *parent = nullptr);

    QString IncomingServer;  // stored by Next
    QString OutgoingServer;

    QLabel *Label1 = nullptr;
    QComboBox *Combo1 = nullptr;  // the server kind is shown, never stored
    QLabel *Label2 = nullptr;
    QLabel *Label3 = nullptr;
    QLineEdit *Text1 = nullptr;
    QLabel *Label4 = nullptr;
    QLabel *Label5 = nullptr;
    QLineEdit *Text2 = nullptr;
    QPushButton *btnBackWard = nullptr;
    QPushButton *btnForWard = nullptr;
    QPushButton *btnCancel = nullptr;

    void Form_Load();

private:
    void Text_Change();
};

namespace forms {
inline frmMainBoxAdd3 *MainBoxAdd3() { return instance<frmMainBoxAdd3>(); }
}  // namespace forms
