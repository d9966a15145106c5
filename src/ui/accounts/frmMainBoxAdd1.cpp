#include "frmMainBoxAdd1.h"

#include "frmMainBoxAdd2.h"
#include "wizard.h"

#include "texts.h"
#include "ui/common/widgets.h"

#include <QBoxLayout>
#include <QLabel>
#include <QLineEdit>
#include <QPushButton>

using namespace Qt::Literals::StringLiterals;

frmMainBoxAdd1::frmMainBoxAdd1(QWidget *parent) : QDialog(parent)
{
    namespace t = texts::accounts;
    setObjectName(u"frmMainBoxAdd1"_s);
    Label1 = wrapped(named(new QLabel(t::NameIntro, this), u"Label1"_s));
    Label2 = named(new QLabel(t::NameLabel, this), u"Label2"_s);
    Text1 = wizard::box(this, u"Text1"_s, Label2);
    Label3 = named(new QLabel(t::NameExample, this), u"Label3"_s);
    std::tie(btnBackWard, btnForWard, btnCancel) = wizard::buttons(this);

    QBoxLayout *body = wizard::frame(this, {btnBackWard, btnForWard, btnCancel});
    body->addWidget(Label1);
    body->addSpacing(12);
    body->addLayout(wizard::grid({{Label2, Text1}, {nullptr, Label3}}));
    body->addStretch();

    connect(Text1, &QLineEdit::textChanged, this, &frmMainBoxAdd1::Text1_Change);
    wizard::wire({this, btnBackWard, btnForWard, btnCancel, true, [this] { Form_Load(); },
                  [this] { DisplayName = Text1->text(); },
                  [] { return forms::MainBoxAdd2(); }});
}

void frmMainBoxAdd1::Form_Load()
{
    Text1->clear();
    btnForWard->setEnabled(!Text1->text().isEmpty());
    Text1->setFocus();
}

void frmMainBoxAdd1::Text1_Change()
{
    btnForWard->setEnabled(!Text1->text().isEmpty());
}

