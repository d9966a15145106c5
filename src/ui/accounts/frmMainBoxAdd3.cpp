#include "frmMainBoxAdd3.h"

#include "frmMainBoxAdd4.h"
#include "wizard.h"

#include "texts.h"
#include "ui/common/widgets.h"

#include <QBoxLayout>
#include <QComboBox>
#include <QLabel>
#include <QLineEdit>
#include <QPushButton>

using namespace Qt::Literals::StringLiterals;

frmMainBoxAdd3::frmMainBoxAdd3(QWidget *parent) : QDialog(parent)
{
    namespace t = texts::accounts;
    setObjectName(u"frmMainBoxAdd3"_s);
    Label1 = named(new QLabel(t::IncomingKindLabel, this), u"Label1"_s);
    Combo1 = new QComboBox(this);
    Combo1->setObjectName(u"Combo1"_s);
    for (const QString &kind : t::ServerKinds)
        Combo1->addItem(kind);
    Label1->setBuddy(Combo1);
    Label2 = named(new QLabel(t::ServerSuffix, this), u"Label2"_s);
    Label3 = named(new QLabel(t::IncomingLabel, this), u"Label3"_s);
    Text1 = wizard::box(this, u"Text1"_s, Label3);
    Label4 = wrapped(named(new QLabel(t::OutgoingIntro, this), u"Label4"_s));
    Label5 = named(new QLabel(t::OutgoingLabel, this), u"Label5"_s);
    Text2 = wizard::box(this, u"Text2"_s, Label5);
    std::tie(btnBackWard, btnForWard, btnCancel) = wizard::buttons(this);

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
    wizard::wire({this, btnBackWard, btnForWard, btnCancel, false, [this] { Form_Load(); },
                  [this] {
                      IncomingServer = Text1->text();
                      OutgoingServer = Text2->text();
                  },
                  [] { return forms::MainBoxAdd4(); }});
}

void frmMainBoxAdd3::Form_Load()
{
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

