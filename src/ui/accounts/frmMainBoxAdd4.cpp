#include "frmMainBoxAdd4.h"

#include "accountsui.h"
#include "frmMainBoxAdd5.h"
#include "wizard.h"

#include "texts.h"
#include "ui/common/widgets.h"

#include <QBoxLayout>
#include <QCheckBox>
#include <QGridLayout>
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
    Text1 = new QLineEdit(this);
    Text1->setObjectName(u"Text1"_s);
    Label2->setBuddy(Text1);
    Label3 = named(new QLabel(t::PasswordLabel, this), u"Label3"_s);
    Text2 = new QLineEdit(this);
    Text2->setObjectName(u"Text2"_s);
    Text2->setEchoMode(QLineEdit::Password);
    Label3->setBuddy(Text2);
    Check1 = new QCheckBox(t::RememberPassword, this);
    Check1->setObjectName(u"Check1"_s);
    Check2 = new QCheckBox(t::UseSpa, this);
    Check2->setObjectName(u"Check2"_s);
    Label4 = wrapped(named(new QLabel(t::SpaNote, this), u"Label4"_s));
    btnBackWard = named(new QPushButton(t::Back, this), u"btnBackWard"_s);
    btnForWard = named(new QPushButton(t::Next, this), u"btnForWard"_s);
    btnCancel = named(new QPushButton(t::Cancel, this), u"btnCancel"_s);

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

