#pragma once

#include "ui/common/forms.h"

#include <QDialog>

class QCheckBox;
class QFrame;
class QLabel;
class QLineEdit;
class QPushButton;
class QTabBar;

// One account's six values as the properties dialog edits them, in the
// order the accounts dialog hands them over.
struct AccountFields
{
    QString name;
    QString address;
    QString pop;
    QString smtp;
    QString username;
    QString userpassword;
};

// The "邮件属性" dialog: one account's settings on two tab pages. It shows
// the account it is opened for and leaves the edited values in its own
// public fields; OK and Apply tell whoever opened it (accountChanged), who
// stores them.
class frmMailBoxProp final : public QDialog
{
    Q_OBJECT

public:
    explicit frmMailBoxProp(QWidget *parent = nullptr);

    // Shows the dialog, modal, for an account.
    void openFor(const AccountFields &account);

    // Public fields, read by the accounts dialog in this order. They outlive
    // the window.
    QString PropName;
    QString PropAddress;
    QString PropPOP3;
    QString PropSMTP;
    QString PropUserName;
    QString PropPassword;

    QTabBar *TabStrip1 = nullptr;

    QFrame *Frame1 = nullptr;  // the General page
    QLabel *Label1 = nullptr;
    QLabel *Image1 = nullptr;
    QLabel *Label2 = nullptr;
    QLineEdit *Frm1Txt1 = nullptr;  // account label, shows the logon name
    QLabel *Label3 = nullptr;
    QLabel *Label4 = nullptr;
    QLineEdit *Frm1Txt2 = nullptr;  // name
    QLabel *Label5 = nullptr;
    QLineEdit *Frm1Txt3 = nullptr;  // organization, neither filled nor read
    QLabel *Label6 = nullptr;
    QLineEdit *Frm1Txt4 = nullptr;  // address
    QLabel *Label7 = nullptr;
    QLineEdit *Frm1Txt5 = nullptr;  // reply address, neither filled nor read
    QCheckBox *Check1 = nullptr;
    QFrame *Frame3 = nullptr;
    QFrame *Frame4 = nullptr;

    QFrame *Frame2 = nullptr;  // the Servers page
    QLabel *Label8 = nullptr;
    QLabel *Label9 = nullptr;
    QLineEdit *Frm2Txt1 = nullptr;  // the server kind, shown only
    QLabel *Label10 = nullptr;
    QLabel *Label11 = nullptr;
    QLineEdit *Frm2Txt2 = nullptr;  // incoming server
    QLabel *Label12 = nullptr;
    QLineEdit *Frm2Txt3 = nullptr;  // outgoing server
    QLabel *Label13 = nullptr;
    QLabel *Label14 = nullptr;
    QLineEdit *Frm2Txt4 = nullptr;  // logon name
    QLabel *Label15 = nullptr;
    QLineEdit *Frm2Txt5 = nullptr;  // password
    QCheckBox *Check2 = nullptr;
    QCheckBox *Check3 = nullptr;
    QLabel *Label16 = nullptr;
    QCheckBox *Check4 = nullptr;
    QPushButton *Command4 = nullptr;
    QFrame *Frame5 = nullptr;
    QFrame *Frame6 = nullptr;
    QFrame *Frame7 = nullptr;

    QPushButton *Command1 = nullptr;  // OK
    QPushButton *Command2 = nullptr;  // Cancel
    QPushButton *Command3 = nullptr;  // Apply

    void Form_Load();

signals:
    // OK or Apply stored the boxes in the public fields.
    void accountChanged();

private:
    void Text_Change();
    void Check1_Click();
    void Check2_Click();
    void TabStrip1_Click();
    void Command1_Click();
    void Command2_Click();
    void Command3_Click();
    void storeFields();

    AccountFields m_account;  // the account the dialog was opened for
};

namespace forms {
inline frmMailBoxProp *MailBoxProp() { return instance<frmMailBoxProp>(); }
}  // namespace forms
