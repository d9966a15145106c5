#include "frmMainBoxAdd5.h"

#include "wizard.h"

#include "texts.h"
#include "ui/common/widgets.h"

#include <QBoxLayout>
#include <QLabel>
#include <QPushButton>

using namespace Qt::Literals::StringLiterals;

frmMainBoxAdd5::frmMainBoxAdd5(QWidget *parent) : QDialog(parent)
{
    namespace t = texts::accounts;
    setObjectName(u"frmMainBoxAdd5"_s);
    Label1 = wrapped(named(new QLabel(t::DoneIntro, this), u"Label1"_s));
    Label2 = wrapped(named(new QLabel(t::DoneHint, this), u"Label2"_s));
    std::tie(btnBackWard, btnOK, btnCancel) = wizard::buttons(this, true);

    QBoxLayout *body = wizard::frame(this, {btnBackWard, btnOK, btnCancel});
    body->addWidget(Label1);
    body->addSpacing(12);
    body->addWidget(Label2);
    body->addStretch();

    wizard::wire({this, btnBackWard, btnOK, btnCancel, false, [this] { Form_Load(); }, nullptr, nullptr});
}

void frmMainBoxAdd5::Form_Load()
{
    btnOK->setFocus();
}

