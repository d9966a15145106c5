#include "frmMainBoxAdd2.h"

#include "frmMainBoxAdd3.h"
#include "wizard.h"

#include "texts.h"
#include "ui/common/widgets.h"

#include <QBoxLayout>
#include <QComboBox>
#include <QLabel>
#include <QLineEdit>
#include <QPushButton>
#include <QRadioButton>

using namespace Qt::Literals::StringLiterals;

frmMainBoxAdd2::frmMainBoxAdd2(QWidget *parent) : QDialog(parent)
{
    namespace t = texts::accounts;
    setObjectName(u"frmMainBoxAdd2"_s);
    Label1 = wrapped(named(new QLabel(t::AddressIntro, this), u"Label1"_s));
    Option1 = new QRadioButton(t::UseExistingAddress, this);
    Option1->setObjectName(u"Option1"_s);
    Label2 = named(new QLabel(t::AddressLabel, this), u"Label2"_s);
    Text1 = wizard::box(this, u"Text1"_s, Label2);
    Label3 = named(new QLabel(t::AddressExample, this), u"Label3"_s);
    Option2 = new QRadioButton(t::SignUpNewAccount, this);
    Option2->setObjectName(u"Option2"_s);
    Combo1 = new QComboBox(this);
    speak(Combo1, texts::a11y::SignUpService);
    Combo1->setObjectName(u"Combo1"_s);
    Combo1->addItem(t::SignUpService);
    std::tie(btnBackWard, btnForWard, btnCancel) = wizard::buttons(this);

    QBoxLayout *body = wizard::frame(this, {btnBackWard, btnForWard, btnCancel});
    body->addWidget(Label1);
    body->addSpacing(8);
    body->addWidget(Option1);
    body->addLayout(wizard::grid({{Label2, Text1}, {nullptr, Label3}}));
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
    wizard::wire({this, btnBackWard, btnForWard, btnCancel, false, [this] { Form_Load(); },
                  [this] { Address = Text1->text(); },
                  [] { return forms::MainBoxAdd3(); }});
}

void frmMainBoxAdd2::Form_Load()
{
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

