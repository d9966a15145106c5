#include "frmMainBoxAdd5.h"

#include "wizard.h"

#include "texts.h"

#include <QBoxLayout>
#include <QLabel>
#include <QPushButton>
#include <QShowEvent>

using namespace Qt::Literals::StringLiterals;

frmMainBoxAdd5::frmMainBoxAdd5(QWidget *parent) : QDialog(parent)
{
    namespace t = texts::accounts;
    setObjectName(u"frmMainBoxAdd5"_s);
    Label1 = wizard::label(this, u"Label1"_s, t::DoneIntro, true);
    Label2 = wizard::label(this, u"Label2"_s, t::DoneHint, true);
    btnBackWard = wizard::button(this, u"btnBackWard"_s, t::Back);
    btnOK = wizard::button(this, u"btnOK"_s, t::Finish);
    btnCancel = wizard::button(this, u"btnCancel"_s, t::Cancel);
    btnOK->setDefault(true);

    QBoxLayout *body = wizard::frame(this, {btnBackWard, btnOK, btnCancel});
    body->addWidget(Label1);
    body->addSpacing(12);
    body->addWidget(Label2);
    body->addStretch();

    connect(btnBackWard, &QPushButton::clicked, this, &frmMainBoxAdd5::btnBackWard_Click);
    connect(btnOK, &QPushButton::clicked, this, &frmMainBoxAdd5::btnOK_Click);
    connect(btnCancel, &QPushButton::clicked, this, &frmMainBoxAdd5::btnCancel_Click);
}

void frmMainBoxAdd5::showEvent(QShowEvent *event)
{
    if (!event->spontaneous())
        Form_Load();
    QDialog::showEvent(event);
}

void frmMainBoxAdd5::Form_Load()
{
    wizard::centre(this);
    btnOK->setFocus();
}

void frmMainBoxAdd5::btnBackWard_Click()
{
    done(QDialog::Rejected);
}

void frmMainBoxAdd5::btnOK_Click()
{
    wizard::finish();
}

void frmMainBoxAdd5::btnCancel_Click()
{
    wizard::cancelFrom(5);
}

void frmMainBoxAdd5::reject()
{
    btnCancel_Click();
}
