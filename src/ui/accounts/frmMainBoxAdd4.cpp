#include "frmMainBoxAdd4.h"

#include "accountsui.h"
#include "frmMainBoxAdd5.h"
#include "wizard.h"

#include "texts.h"

#include <QBoxLayout>
#include <QCheckBox>
#include <QGridLayout>
#include <QLabel>
#include <QLineEdit>
#include <QPushButton>
#include <QShowEvent>

using namespace Qt::Literals::StringLiterals;

frmMainBoxAdd4::frmMainBoxAdd4(QWidget *parent) : QDialog(parent)
{
    namespace t = texts::accounts;
    setObjectName(u"frmMainBoxAdd4"_s);
    Label1 = wizard::label(this, u"Label1"_s, t::LogonIntro, true);
    Label2 = wizard::label(this, u"Label2"_s, t::LogonNameLabel);
    Text1 = new QLineEdit(this);
    Text1->setObjectName(u"Text1"_s);
    Label2->setBuddy(Text1);
    Label3 = wizard::label(this, u"Label3"_s, t::PasswordLabel);
    Text2 = new QLineEdit(this);
    Text2->setObjectName(u"Text2"_s);
    Text2->setEchoMode(QLineEdit::Password);
    Label3->setBuddy(Text2);
    Check1 = new QCheckBox(t::RememberPassword, this);
    Check1->setObjectName(u"Check1"_s);
    Check2 = new QCheckBox(t::UseSpa, this);
    Check2->setObjectName(u"Check2"_s);
    Label4 = wizard::label(this, u"Label4"_s, t::SpaNote, true);
    btnBackWard = wizard::button(this, u"btnBackWard"_s, t::Back);
    btnForWard = wizard::button(this, u"btnForWard"_s, t::Next);
    btnCancel = wizard::button(this, u"btnCancel"_s, t::Cancel);
    btnForWard->setDefault(true);

    QBoxLayout *body = wizard::frame(this, {btnBackWard, btnForWard, btnCancel});
    body->addWidget(Label1);
    body->addSpacing(8);
    auto *grid = new QGridLayout;
    grid->setColumnMinimumWidth(0, 24);
    grid->addWidget(Label2, 0, 1);
    grid->addWidget(Text1, 0, 2);
    grid->addWidget(Label3, 1, 1);
    grid->addWidget(Text2, 1, 2);
    grid->addWidget(Check1, 2, 2);
    grid->setColumnStretch(2, 1);
    body->addLayout(grid);
    body->addSpacing(8);
    body->addWidget(Label4);
    body->addWidget(Check2);
    body->addStretch();

    connect(Text1, &QLineEdit::textChanged, this, &frmMainBoxAdd4::Text1_Change);
    connect(Check1, &QCheckBox::toggled, this, &frmMainBoxAdd4::Check1_Click);
    connect(btnBackWard, &QPushButton::clicked, this, &frmMainBoxAdd4::btnBackWard_Click);
    connect(btnForWard, &QPushButton::clicked, this, &frmMainBoxAdd4::btnForWard_Click);
    connect(btnCancel, &QPushButton::clicked, this, &frmMainBoxAdd4::btnCancel_Click);
}

void frmMainBoxAdd4::showEvent(QShowEvent *event)
{
    if (!event->spontaneous())
        Form_Load();
    QDialog::showEvent(event);
}

void frmMainBoxAdd4::Form_Load()
{
    wizard::centre(this);
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

void frmMainBoxAdd4::btnBackWard_Click()
{
    done(QDialog::Rejected);
}

void frmMainBoxAdd4::btnForWard_Click()
{
    AccountName = Text1->text();
    Password = Text2->text();
    forms::MainBoxAdd5()->exec();
}

void frmMainBoxAdd4::btnCancel_Click()
{
    wizard::cancelFrom(4);
}

void frmMainBoxAdd4::reject()
{
    btnCancel_Click();
}
