#include "frmMainBoxAdd3.h"

#include "frmMainBoxAdd4.h"
#include "wizard.h"

#include "texts.h"

#include <QBoxLayout>
#include <QComboBox>
#include <QLabel>
#include <QLineEdit>
#include <QPushButton>
#include <QShowEvent>

using namespace Qt::Literals::StringLiterals;

frmMainBoxAdd3::frmMainBoxAdd3(QWidget *parent) : QDialog(parent)
{
    namespace t = texts::accounts;
    setObjectName(u"frmMainBoxAdd3"_s);
    Label1 = wizard::label(this, u"Label1"_s, t::IncomingKindLabel);
    Combo1 = new QComboBox(this);
    Combo1->setObjectName(u"Combo1"_s);
    for (const QString &kind : t::ServerKinds)
        Combo1->addItem(kind);
    Label1->setBuddy(Combo1);
    Label2 = wizard::label(this, u"Label2"_s, t::ServerSuffix);
    Label3 = wizard::label(this, u"Label3"_s, t::IncomingLabel);
    Text1 = new QLineEdit(this);
    Text1->setObjectName(u"Text1"_s);
    Label4 = wizard::label(this, u"Label4"_s, t::OutgoingIntro, true);
    Label5 = wizard::label(this, u"Label5"_s, t::OutgoingLabel);
    Text2 = new QLineEdit(this);
    Text2->setObjectName(u"Text2"_s);
    Label5->setBuddy(Text2);
    btnBackWard = wizard::button(this, u"btnBackWard"_s, t::Back);
    btnForWard = wizard::button(this, u"btnForWard"_s, t::Next);
    btnCancel = wizard::button(this, u"btnCancel"_s, t::Cancel);
    btnForWard->setDefault(true);

    QBoxLayout *body = wizard::frame(this, {btnBackWard, btnForWard, btnCancel});
    auto *kind = new QHBoxLayout;
    kind->addWidget(Label1);
    kind->addWidget(Combo1);
    kind->addWidget(Label2);
    kind->addStretch();
    body->addLayout(kind);
    body->addSpacing(8);
    body->addWidget(Label3);
    body->addWidget(Text1);
    body->addSpacing(8);
    body->addWidget(Label4);
    body->addWidget(Label5);
    body->addWidget(Text2);
    body->addStretch();

    connect(Text1, &QLineEdit::textChanged, this, &frmMainBoxAdd3::Text_Change);
    connect(Text2, &QLineEdit::textChanged, this, &frmMainBoxAdd3::Text_Change);
    connect(btnBackWard, &QPushButton::clicked, this, &frmMainBoxAdd3::btnBackWard_Click);
    connect(btnForWard, &QPushButton::clicked, this, &frmMainBoxAdd3::btnForWard_Click);
    connect(btnCancel, &QPushButton::clicked, this, &frmMainBoxAdd3::btnCancel_Click);
}

void frmMainBoxAdd3::showEvent(QShowEvent *event)
{
    if (!event->spontaneous())
        Form_Load();
    QDialog::showEvent(event);
}

void frmMainBoxAdd3::Form_Load()
{
    wizard::centre(this);
    Combo1->setCurrentIndex(0);
    Text1->clear();
    Text2->clear();
    // Unlike the change test below, the load test disables Next only when
    // both boxes are empty; on fresh empty boxes the two agree.
    if (Text1->text().isEmpty() && Text2->text().isEmpty())
        btnForWard->setEnabled(false);
    Text1->setFocus();
}

void frmMainBoxAdd3::Text_Change()
{
    btnForWard->setEnabled(!Text1->text().isEmpty() && !Text2->text().isEmpty());
}

void frmMainBoxAdd3::btnBackWard_Click()
{
    done(QDialog::Rejected);
}

void frmMainBoxAdd3::btnForWard_Click()
{
    IncomingServer = Text1->text();
    OutgoingServer = Text2->text();
    forms::MainBoxAdd4()->exec();
}

void frmMainBoxAdd3::btnCancel_Click()
{
    wizard::cancelFrom(3);
}

void frmMainBoxAdd3::reject()
{
    btnCancel_Click();
}
