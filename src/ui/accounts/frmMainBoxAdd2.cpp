#include "frmMainBoxAdd2.h"

#include "frmMailBox.h"
#include "frmMainBoxAdd3.h"
#include "wizard.h"

#include "texts.h"

#include <QBoxLayout>
#include <QComboBox>
#include <QGridLayout>
#include <QLabel>
#include <QLineEdit>
#include <QPushButton>
#include <QRadioButton>
#include <QShowEvent>

using namespace Qt::Literals::StringLiterals;

frmMainBoxAdd2::frmMainBoxAdd2(QWidget *parent) : QDialog(parent)
{
    namespace t = texts::accounts;
    setObjectName(u"frmMainBoxAdd2"_s);
    Label1 = wizard::label(this, u"Label1"_s, t::AddressIntro, true);
    Option1 = new QRadioButton(t::UseExistingAddress, this);
    Option1->setObjectName(u"Option1"_s);
    Label2 = wizard::label(this, u"Label2"_s, t::AddressLabel);
    Text1 = new QLineEdit(this);
    Text1->setObjectName(u"Text1"_s);
    Label2->setBuddy(Text1);
    Label3 = wizard::label(this, u"Label3"_s, t::AddressExample);
    Option2 = new QRadioButton(t::SignUpNewAccount, this);
    Option2->setObjectName(u"Option2"_s);
    Combo1 = new QComboBox(this);
    Combo1->setObjectName(u"Combo1"_s);
    Combo1->addItem(t::SignUpService);
    btnBackWard = wizard::button(this, u"btnBackWard"_s, t::Back);
    btnForWard = wizard::button(this, u"btnForWard"_s, t::Next);
    btnCancel = wizard::button(this, u"btnCancel"_s, t::Cancel);
    btnForWard->setDefault(true);

    QBoxLayout *body = wizard::frame(this, {btnBackWard, btnForWard, btnCancel});
    body->addWidget(Label1);
    body->addSpacing(8);
    body->addWidget(Option1);
    auto *grid = new QGridLayout;
    grid->setColumnMinimumWidth(0, 24);
    grid->addWidget(Label2, 0, 1);
    grid->addWidget(Text1, 0, 2);
    grid->addWidget(Label3, 1, 2);
    grid->setColumnStretch(2, 1);
    body->addLayout(grid);
    body->addSpacing(8);
    body->addWidget(Option2);
    auto *combo = new QHBoxLayout;
    combo->addSpacing(24);
    combo->addWidget(Combo1);
    combo->addStretch();
    body->addLayout(combo);
    body->addStretch();

    connect(Text1, &QLineEdit::textChanged, this, &frmMainBoxAdd2::Text1_Change);
    connect(Option1, &QRadioButton::toggled, this, &frmMainBoxAdd2::Option1_Click);
    connect(Option2, &QRadioButton::toggled, this, &frmMainBoxAdd2::Option2_Click);
    connect(btnBackWard, &QPushButton::clicked, this, &frmMainBoxAdd2::btnBackWard_Click);
    connect(btnForWard, &QPushButton::clicked, this, &frmMainBoxAdd2::btnForWard_Click);
    connect(btnCancel, &QPushButton::clicked, this, &frmMainBoxAdd2::btnCancel_Click);
}

void frmMainBoxAdd2::showEvent(QShowEvent *event)
{
    if (!event->spontaneous())
        Form_Load();
    QDialog::showEvent(event);
}

void frmMainBoxAdd2::Form_Load()
{
    wizard::centre(this);
    // A fresh page: an existing address is the usual choice.
    Option1->setChecked(true);
    Text1->setEnabled(true);
    Combo1->setEnabled(false);
    Combo1->setCurrentIndex(0);
    Text1->clear();
    btnForWard->setEnabled(!Text1->text().isEmpty());
    Text1->setFocus();
}

void frmMainBoxAdd2::Text1_Change()
{
    btnForWard->setEnabled(!Text1->text().isEmpty());
}

void frmMainBoxAdd2::Option1_Click(bool checked)
{
    if (!checked)
        return;
    Combo1->setEnabled(false);
    Text1->setEnabled(true);
}

void frmMainBoxAdd2::Option2_Click(bool checked)
{
    if (!checked)
        return;
    Text1->setEnabled(false);
    Combo1->setEnabled(true);
}

void frmMainBoxAdd2::btnBackWard_Click()
{
    done(QDialog::Rejected);
}

void frmMainBoxAdd2::btnForWard_Click()
{
    Address = Text1->text();
    // The servers page is the one page that the accounts dialog owns.
    frmMainBoxAdd3 *next = forms::MainBoxAdd3();
    frmMailBox *owner = forms::MailBox();
    if (next->parentWidget() != owner)
        next->setParent(owner, next->windowFlags());
    next->exec();
}

void frmMainBoxAdd2::btnCancel_Click()
{
    wizard::cancelFrom(2);
}

void frmMainBoxAdd2::reject()
{
    btnCancel_Click();
}
