#include "frmMainBoxAdd1.h"

#include "frmMainBoxAdd2.h"
#include "wizard.h"

#include "texts.h"
#include "ui/common/widgets.h"

#include <QBoxLayout>
#include <QGridLayout>
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
    Text1 = new QLineEdit(this);
    Text1->setObjectName(u"Text1"_s);
    Label2->setBuddy(Text1);
    Label3 = named(new QLabel(t::NameExample, this), u"Label3"_s);
    btnBackWard = named(new QPushButton(t::Back, this), u"btnBackWard"_s);
    btnForWard = named(new QPushButton(t::Next, this), u"btnForWard"_s);
    btnCancel = named(new QPushButton(t::Cancel, this), u"btnCancel"_s);

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
    wizard::wire({this, btnBackWard, btnForWard, btnCancel, true, [this] { Form_Load(); },
                  [this] {
                      DisplayName = Text1->text();
                  },
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

