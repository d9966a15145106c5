#include "frmMainBoxAdd4.h"

#include "accountsui.h"
#include "frmMainBoxAdd5.h"
#include "wizard.h"

#include "texts.h"
#include "ui/common/widgets.h"

#include <QBoxLayout>
#include <QCheckBox>
#include <QLabel>
#include <QLineEdit>
#include <QPushButton>

using namespace Qt::Literals::StringLiterals;

frmMainBoxAdd4::frmMainBoxAdd4(QWidget *parent) : QDialog(parent)
{
    namespace t = texts::accounts;
    setObjectName(u"frmMainBoxAdd4"_s);
    Label1 = wrapped(named(new QLabel(t::LogonIntro, this), u"Label1"_s));
    Label2 = named(new QLabel(t::LogonNameLabel, this), u"Label2"_s);
    Text1 = wizard::box(this, u"Text1"_s, Label2);
    Label3 = named(new QLabel(t::PasswordLabel, this), u"Label3"_s);
    Text2 = wizard::box(this, u"Text2"_s, Label3);
    Text2->setEchoMode(QLineEdit::Password);
    Check1 = new QCheckBox(t::RememberPassword, this);
    Check1->setObjectName(u"Check1"_s);
    Check2 = new QCheckBox(t::UseSpa, this);
    Check2->setObjectName(u"Check2"_s);
    Label4 = wrapped(named(new QLabel(t::SpaNote, this), u"Label4"_s));
    std::tie(btnBackWard, btnForWard, btnCancel) = wizard::buttons(this);

    QBoxLayout *body = wizard::frame(this, {btnBackWard, btnForWard, btnCancel});
    body->addWidget(Label1);
    body->addSpacing(8);
    body->addLayout(wizard::grid({{Label2, Text1}, {Label3, Text2}, {nullptr, Check1}}));
    body->addSpacing(8);
    body->addWidget(Label4);
    body->addWidget(Check2);
    body->addStretch();

    connect(Text1, &QLineEdit::textChanged, this, &frmMainBoxAdd4::Text1_Change);
    connect(Check1, &QCheckBox::toggled, this, &frmMainBoxAdd4::Check1_Click);
    wizard::wire({this, btnBackWard, btnForWard, btnCancel, false, [this] { Form_Load(); },
                  [this] {
                      AccountName = Text1->text();
                      Password = Text2->text();
                  },
                  [] { return forms::MainBoxAdd5(); }});
}

void frmMainBoxAdd4::Form_Load()
{
    Text1->clear();
    Text2->clear();
    Check2->setChecked(false);
    Check1->setChecked(true);
    Check1_Click();
    btnForWard->setEnabled(!Text1->text().isEmpty());
    Text1->setFocus();
}

// The password may stay empty: only the account name decides.
void frmMainBoxAdd4::Text1_Change()
{
    btnForWard->setEnabled(!Text1->text().isEmpty());
}

// A password not to be remembered cannot be typed; whatever the box already
// holds is still taken by Next.
void frmMainBoxAdd4::Check1_Click()
{
    accountsui::setBoxGreyed(Text2, !Check1->isChecked());
}

