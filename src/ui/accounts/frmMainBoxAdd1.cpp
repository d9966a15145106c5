#include "frmMainBoxAdd1.h"

#include "frmMainBoxAdd2.h"
#include "wizard.h"

#include "texts.h"

#include <QBoxLayout>
#include <QGridLayout>
#include <QLabel>
#include <QLineEdit>
#include <QPushButton>
#include <QShowEvent>

using namespace Qt::Literals::StringLiterals;

frmMainBoxAdd1::frmMainBoxAdd1(QWidget *parent) : QDialog(parent)
{
    namespace t = texts::accounts;
    setObjectName(u"frmMainBoxAdd1"_s);
    Label1 = wizard::label(this, u"Label1"_s, t::NameIntro, true);
    Label2 = wizard::label(this, u"Label2"_s, t::NameLabel);
    Text1 = new QLineEdit(this);
    Text1->setObjectName(u"Text1"_s);
    Label2->setBuddy(Text1);
    Label3 = wizard::label(this, u"Label3"_s, t::NameExample);
    btnBackWard = wizard::button(this, u"btnBackWard"_s, t::Back);
    btnForWard = wizard::button(this, u"btnForWard"_s, t::Next);
    btnCancel = wizard::button(this, u"btnCancel"_s, t::Cancel);
    btnForWard->setDefault(true);

    QBoxLayout *body = wizard::frame(this, {btnBackWard, btnForWard, btnCancel});
    body->addWidget(Label1);
    body->addSpacing(12);
    auto *grid = new QGridLayout;
    grid->setColumnMinimumWidth(0, 24);
    grid->addWidget(Label2, 0, 1);
    grid->addWidget(Text1, 0, 2);
    grid->addWidget(Label3, 1, 2);
    grid->setColumnStretch(2, 1);
    body->addLayout(grid);
    body->addStretch();

    connect(Text1, &QLineEdit::textChanged, this, &frmMainBoxAdd1::Text1_Change);
    connect(btnForWard, &QPushButton::clicked, this, &frmMainBoxAdd1::btnForWard_Click);
    connect(btnCancel, &QPushButton::clicked, this, &frmMainBoxAdd1::btnCancel_Click);
    // There is no page before this one: its Back button does nothing.
}

void frmMainBoxAdd1::showEvent(QShowEvent *event)
{
    if (!event->spontaneous())
        Form_Load();
    QDialog::showEvent(event);
}

void frmMainBoxAdd1::Form_Load()
{
    wizard::centre(this);
    Text1->clear();
    btnForWard->setEnabled(!Text1->text().isEmpty());
    Text1->setFocus();
}

void frmMainBoxAdd1::Text1_Change()
{
    btnForWard->setEnabled(!Text1->text().isEmpty());
}

void frmMainBoxAdd1::btnForWard_Click()
{
    DisplayName = Text1->text();
    forms::MainBoxAdd2()->exec();
}

void frmMainBoxAdd1::btnCancel_Click()
{
    wizard::cancelFrom(1);
}

void frmMainBoxAdd1::reject()
{
    btnCancel_Click();
}
