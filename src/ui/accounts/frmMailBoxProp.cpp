#include "frmMailBoxProp.h"

#include "accountsui.h"

#include "texts.h"
#include "ui/common/widgets.h"
#include "ui/common/icons.h"
#include "ui/common/scaffold.h"
#include "ui/common/twips.h"

#include <QBoxLayout>
#include <QCheckBox>
#include <QFrame>
#include <QGridLayout>
#include <QLabel>
#include <QLineEdit>
#include <QPushButton>
#include <QTabBar>

using namespace Qt::Literals::StringLiterals;

namespace {

constexpr int WidthTw = 6600;
constexpr int HeightTw = 6900;

QLabel *label(QWidget *parent, const QString &name, const QString &text)
{
    auto *l = new QLabel(text, parent);
    l->setObjectName(name);
    return l;
}

QLineEdit *box(QWidget *parent, const QString &name, QLabel *caption = nullptr)
{
    auto *b = new QLineEdit(parent);
    b->setObjectName(name);
    if (caption)
        caption->setBuddy(b);
    return b;
}

QCheckBox *check(QWidget *parent, const QString &name, const QString &text)
{
    auto *c = new QCheckBox(text, parent);
    c->setObjectName(name);
    return c;
}

// A section heading followed by an etched line to the right edge.
QFrame *rule(QWidget *parent, const QString &name)
{
    auto *f = new QFrame(parent);
    f->setObjectName(name);
    f->setFrameShape(QFrame::HLine);
    f->setFrameShadow(QFrame::Sunken);
    return f;
}

QHBoxLayout *heading(QLabel *caption, QFrame *line)
{
    auto *row = new QHBoxLayout;
    row->addWidget(caption);
    row->addWidget(line, 1);
    return row;
}

// Two columns: captions, then boxes that take the rest of the width.
QGridLayout *pairs(const QList<QPair<QLabel *, QLineEdit *>> &rows)
{
    auto *grid = new QGridLayout;
    grid->setColumnMinimumWidth(0, 12);
    for (int i = 0; i < rows.size(); ++i) {
        grid->addWidget(rows[i].first, i, 1);
        grid->addWidget(rows[i].second, i, 2);
    }
    grid->setColumnStretch(2, 1);
    return grid;
}

}  // namespace

frmMailBoxProp::frmMailBoxProp(QWidget *parent) : QDialog(parent)
{
    namespace t = texts::accounts;
    setObjectName(u"frmMailBoxProp"_s);
    setWindowTitle(t::PropCaption);
    setWindowFlag(Qt::WindowContextHelpButtonHint, false);
    setFixedSize(twips::toPixels(WidthTw), twips::toPixels(HeightTw));
    scaffold::loadOnShow(this, [this] { Form_Load(); });

    TabStrip1 = new QTabBar(this);
    TabStrip1->setObjectName(u"TabStrip1"_s);
    for (const QString &caption :
         {t::TabGeneral, t::TabServers, t::TabConnection, t::TabSecurity, t::TabAdvanced})
        TabStrip1->addTab(caption);
    TabStrip1->setDrawBase(false);

    // General.
    Frame1 = new QFrame(this);
    Frame1->setObjectName(u"Frame1"_s);
    Label1 = label(Frame1, u"Label1"_s, t::MailAccount);
    Frame3 = rule(Frame1, u"Frame3"_s);
    Image1 = label(Frame1, u"Image1"_s, QString());
    Image1->setPixmap(appIcon(u"internet-mail"_s).pixmap(32, 32));
    Label2 = label(Frame1, u"Label2"_s, t::AccountLabelHint);
    Label2->setWordWrap(true);
    Frm1Txt1 = box(Frame1, u"Frm1Txt1"_s);
    speak(Frm1Txt1, texts::a11y::AccountLabel);
    Label3 = label(Frame1, u"Label3"_s, t::UserInformation);
    Frame4 = rule(Frame1, u"Frame4"_s);
    Label4 = label(Frame1, u"Label4"_s, t::PropName);
    Frm1Txt2 = box(Frame1, u"Frm1Txt2"_s, Label4);
    Label5 = label(Frame1, u"Label5"_s, t::PropOrganization);
    Frm1Txt3 = box(Frame1, u"Frm1Txt3"_s, Label5);
    Label6 = label(Frame1, u"Label6"_s, t::PropAddress);
    Frm1Txt4 = box(Frame1, u"Frm1Txt4"_s, Label6);
    Label7 = label(Frame1, u"Label7"_s, t::PropReplyAddress);
    Frm1Txt5 = box(Frame1, u"Frm1Txt5"_s, Label7);
    Check1 = check(Frame1, u"Check1"_s, t::IncludeAccount);

    auto *account = new QGridLayout;
    account->addWidget(Image1, 0, 0, 2, 1, Qt::AlignTop);
    account->addWidget(Label2, 0, 1);
    account->addWidget(Frm1Txt1, 1, 1);
    account->setColumnStretch(1, 1);
    auto *general = new QVBoxLayout(Frame1);
    general->addLayout(heading(Label1, Frame3));
    general->addLayout(account);
    general->addSpacing(6);
    general->addLayout(heading(Label3, Frame4));
    general->addLayout(pairs({{Label4, Frm1Txt2}, {Label5, Frm1Txt3},
                              {Label6, Frm1Txt4}, {Label7, Frm1Txt5}}));
    general->addSpacing(6);
    general->addWidget(Check1);
    general->addStretch();

    // Servers.
    Frame2 = new QFrame(this);
    Frame2->setObjectName(u"Frame2"_s);
    Label8 = label(Frame2, u"Label8"_s, t::ServerInformation);
    Frame5 = rule(Frame2, u"Frame5"_s);
    Label9 = label(Frame2, u"Label9"_s, t::PropIncomingKindLabel);
    Frm2Txt1 = box(Frame2, u"Frm2Txt1"_s, Label9);
    Frm2Txt1->setText(t::PropIncomingKind);
    Frm2Txt1->setReadOnly(true);
    Frm2Txt1->setFixedWidth(fontMetrics().horizontalAdvance(u"IMAP"_s) * 2 + 16);
    Label10 = label(Frame2, u"Label10"_s, t::ServerSuffix);
    Label11 = label(Frame2, u"Label11"_s, t::PropIncoming);
    Frm2Txt2 = box(Frame2, u"Frm2Txt2"_s, Label11);
    Label12 = label(Frame2, u"Label12"_s, t::PropOutgoing);
    Frm2Txt3 = box(Frame2, u"Frm2Txt3"_s, Label12);
    Label13 = label(Frame2, u"Label13"_s, t::IncomingServerHeading);
    Frame6 = rule(Frame2, u"Frame6"_s);
    Label14 = label(Frame2, u"Label14"_s, t::PropLogonName);
    Frm2Txt4 = box(Frame2, u"Frm2Txt4"_s, Label14);
    Label15 = label(Frame2, u"Label15"_s, t::PropPassword);
    Frm2Txt5 = box(Frame2, u"Frm2Txt5"_s, Label15);
    Frm2Txt5->setEchoMode(QLineEdit::Password);
    Check2 = check(Frame2, u"Check2"_s, t::PropRememberPassword);
    Check3 = check(Frame2, u"Check3"_s, t::PropUseSpa);
    Label16 = label(Frame2, u"Label16"_s, t::OutgoingServerHeading);
    Frame7 = rule(Frame2, u"Frame7"_s);
    Check4 = check(Frame2, u"Check4"_s, t::ServerNeedsLogon);
    Command4 = new QPushButton(t::ServerSettings, Frame2);
    Command4->setObjectName(u"Command4"_s);
    Command4->setAutoDefault(false);

    auto *kind = new QHBoxLayout;
    kind->addSpacing(12);
    kind->addWidget(Label9);
    kind->addWidget(Frm2Txt1);
    kind->addWidget(Label10);
    kind->addStretch();
    auto *servers = new QVBoxLayout(Frame2);
    servers->addLayout(heading(Label8, Frame5));
    servers->addLayout(kind);
    servers->addLayout(pairs({{Label11, Frm2Txt2}, {Label12, Frm2Txt3}}));
    servers->addSpacing(6);
    servers->addLayout(heading(Label13, Frame6));
    servers->addLayout(pairs({{Label14, Frm2Txt4}, {Label15, Frm2Txt5}}));
    auto *logonChecks = new QVBoxLayout;
    logonChecks->setContentsMargins(12, 0, 0, 0);
    logonChecks->addWidget(Check2);
    logonChecks->addWidget(Check3);
    servers->addLayout(logonChecks);
    servers->addSpacing(6);
    servers->addLayout(heading(Label16, Frame7));
    auto *outgoing = new QHBoxLayout;
    outgoing->addSpacing(12);
    outgoing->addWidget(Check4);
    outgoing->addStretch();
    outgoing->addWidget(Command4);
    servers->addLayout(outgoing);
    servers->addStretch();

    Command1 = new QPushButton(t::Ok, this);
    Command1->setObjectName(u"Command1"_s);
    Command1->setDefault(true);
    Command2 = new QPushButton(t::Cancel, this);
    Command2->setObjectName(u"Command2"_s);
    Command3 = new QPushButton(t::Apply, this);
    Command3->setObjectName(u"Command3"_s);

    // Both pages share one panel below the tabs; the tab click decides which
    // of them (if either) is visible.
    auto *panel = new QFrame(this);
    panel->setFrameShape(QFrame::StyledPanel);
    auto *stack = new QGridLayout(panel);
    stack->setContentsMargins(4, 4, 4, 4);
    stack->addWidget(Frame1, 0, 0);
    stack->addWidget(Frame2, 0, 0);
    auto *buttons = new QHBoxLayout;
    buttons->addStretch();
    for (QPushButton *b : {Command1, Command2, Command3}) {
        b->setMinimumWidth(76);
        buttons->addWidget(b);
    }
    auto *root = new QVBoxLayout(this);
    root->setContentsMargins(8, 8, 8, 8);
    root->setSpacing(0);
    root->addWidget(TabStrip1);
    root->addWidget(panel, 1);
    root->addSpacing(8);
    root->addLayout(buttons);

    for (QLineEdit *b : {Frm1Txt1, Frm1Txt2, Frm1Txt3, Frm1Txt4, Frm1Txt5, Frm2Txt2, Frm2Txt3,
                         Frm2Txt4, Frm2Txt5})
        connect(b, &QLineEdit::textChanged, this, &frmMailBoxProp::Text_Change);
    connect(Check1, &QCheckBox::toggled, this, &frmMailBoxProp::Check1_Click);
    connect(Check2, &QCheckBox::toggled, this, &frmMailBoxProp::Check2_Click);
    connect(TabStrip1, &QTabBar::currentChanged, this, &frmMailBoxProp::TabStrip1_Click);
    connect(Command1, &QPushButton::clicked, this, &frmMailBoxProp::Command1_Click);
    connect(Command2, &QPushButton::clicked, this, &frmMailBoxProp::Command2_Click);
    connect(Command3, &QPushButton::clicked, this, &frmMailBoxProp::Command3_Click);
    // Check3, Check4 and Command4 are there to be seen; they do nothing.
}

void frmMailBoxProp::openFor(const AccountFields &account)
{
    m_account = account;
    exec();
}

void frmMailBoxProp::Form_Load()
{
    // Every opening starts from a fresh window: empty boxes, check boxes
    // clear, the General page in front.
    for (QLineEdit *b : {Frm1Txt1, Frm1Txt2, Frm1Txt3, Frm1Txt4, Frm1Txt5, Frm2Txt2, Frm2Txt3,
                         Frm2Txt4, Frm2Txt5})
        b->clear();
    for (QCheckBox *c : {Check1, Check2, Check3, Check4})
        c->setChecked(false);
    TabStrip1->setCurrentIndex(0);
    TabStrip1_Click();

    Command3->setEnabled(false);
    // Filling counts as editing: every box that changes, and both check
    // boxes, enable Apply again.
    const AccountFields &rec = m_account;
    Frm1Txt1->setText(rec.username);
    Frm1Txt2->setText(rec.name);
    Frm1Txt4->setText(rec.address);
    Frm2Txt2->setText(rec.pop);
    Frm2Txt3->setText(rec.smtp);
    Frm2Txt4->setText(rec.username);
    Frm2Txt5->setText(rec.userpassword);
    Check1->setChecked(true);
    Check2->setChecked(true);
}

void frmMailBoxProp::Text_Change()
{
    Command3->setEnabled(true);
}

void frmMailBoxProp::Check1_Click()
{
    Command3->setEnabled(true);
}

// The password box follows "remember password" but is still stored.
void frmMailBoxProp::Check2_Click()
{
    accountsui::setBoxGreyed(Frm2Txt5, !Check2->isChecked());
}

void frmMailBoxProp::TabStrip1_Click()
{
    const QString caption = TabStrip1->tabText(TabStrip1->currentIndex());
    Frame1->setVisible(caption == texts::accounts::TabGeneral);
    Frame2->setVisible(caption == texts::accounts::TabServers);
}

// OK and Apply store the same six boxes: Apply stores the outgoing server
// as the box shows it too, so that what the user saw in the box is what
// the account keeps.
void frmMailBoxProp::storeFields()
{
    PropName = Frm1Txt2->text();
    PropAddress = Frm1Txt4->text();
    PropPOP3 = Frm2Txt2->text();
    PropSMTP = Frm2Txt3->text();
    PropUserName = Frm2Txt4->text();
    PropPassword = Frm2Txt5->text();
    emit accountChanged();
}

void frmMailBoxProp::Command1_Click()
{
    storeFields();
    done(QDialog::Accepted);
}

void frmMailBoxProp::Command2_Click()
{
    done(QDialog::Rejected);
}

void frmMailBoxProp::Command3_Click()
{
    storeFields();
    Command3->setEnabled(false);
}
