#include "frmMailBox.h"

#include "frmMainBoxAdd1.h"
#include "frmMainBoxAdd2.h"
#include "frmMainBoxAdd3.h"
#include "frmMainBoxAdd4.h"
#include "wizard.h"

#include "store/mailstore.h"
#include "store/prompter.h"
#include "texts.h"
#include "ui/common/widgets.h"
#include "ui/common/headerbuttons.h"
#include "ui/common/icons.h"
#include "ui/common/scaffold.h"
#include "ui/common/twips.h"

#include <QFrame>
#include <QHeaderView>
#include <QMenu>
#include <QKeyEvent>
#include <QMouseEvent>
#include <QPainter>
#include <QPushButton>
#include <QTabBar>
#include <QTimer>
#include <QTreeWidget>

using namespace Qt::Literals::StringLiterals;

namespace {

// The dialog is laid out in fixed pixel positions, like the add menu's
// anchor that depends on them.
constexpr int DialogWidth = 446;
constexpr int DialogHeight = 330;
constexpr int ButtonLeft = 338;
constexpr int ButtonWidth = 100;  // ButtonLeft + ButtonWidth is the menu anchor's x
constexpr int ButtonHeight = 24;
constexpr int PanelLeft = 8;
constexpr int PanelWidth = 322;
constexpr int PanelBottom = 290;
constexpr int ColumnWidthTw = 1400;

// The add button's face: a word and a drop-down arrow, no caption.
QPixmap addPicture(qreal ratio, const QFont &font, const QColor &ink)
{
    const QSize size(92, 18);
    QPixmap pm(size * ratio);
    pm.setDevicePixelRatio(ratio);
    pm.fill(Qt::transparent);
    QPainter p(&pm);
    p.setRenderHint(QPainter::Antialiasing);
    p.setFont(font);
    p.setPen(ink);
    p.drawText(QRect(0, 0, 70, size.height()), Qt::AlignCenter, texts::accounts::AddPicture);
    p.setBrush(ink);
    p.setPen(Qt::NoPen);
    const QPointF arrow[] = {{74, 7}, {84, 7}, {79, 12}};
    p.drawPolygon(arrow, 3);
    return pm;
}

}  // namespace

frmMailBox::frmMailBox(QWidget *parent) : QDialog(parent)
{
    namespace t = texts::accounts;
    setObjectName(u"frmMailBox"_s);
    setWindowTitle(t::Caption);
    setWindowFlag(Qt::WindowContextHelpButtonHint, false);
    setFixedSize(DialogWidth, DialogHeight);

    TabStrip1 = new QTabBar(this);
    speak(TabStrip1, texts::a11y::AccountKinds);
    TabStrip1->setObjectName(u"TabStrip1"_s);
    for (const QString &caption : {t::TabAll, t::TabMail, t::TabNews, t::TabDirectory})
        TabStrip1->addTab(caption);
    TabStrip1->setDrawBase(false);
    const int tabHeight = TabStrip1->sizeHint().height();
    TabStrip1->setGeometry(PanelLeft, 8, PanelWidth, tabHeight);

    auto *panel = new QFrame(this);
    panel->setFrameShape(QFrame::StyledPanel);
    panel->setGeometry(PanelLeft, 8 + tabHeight - 1, PanelWidth, PanelBottom - 8 - tabHeight + 1);
    panel->lower();

    ListView1 = new QTreeWidget(panel);
    speak(ListView1, texts::a11y::AccountList, texts::a11y::AccountListHelp);
    ListView1->setObjectName(u"ListView1"_s);
    ListView1->setGeometry(8, 8, panel->width() - 16, panel->height() - 16);
    ListView1->setRootIsDecorated(false);
    ListView1->setHeaderLabels({t::ColumnAccount, t::ColumnType, t::ColumnConnection});
    ListView1->setIconSize(QSize(16, 16));
    for (int column = 0; column < 3; ++column)
        ListView1->header()->resizeSection(column, twips::toPixels(ColumnWidthTw));
    ListView1->header()->setStretchLastSection(false);
    ListView1->viewport()->installEventFilter(this);

    const auto button = [this](const QString &name, const QString &text, int top) {
        auto *b = new QPushButton(text, this);
        b->setObjectName(name);
        b->setGeometry(ButtonLeft, top, ButtonWidth, ButtonHeight);
        b->setAutoDefault(false);
        return b;
    };
    btnAddNew = button(u"btnAddNew"_s, QString(), MenuAnchor.y());
    btnAddNew->setIconSize(QSize(92, 18));
    btnAddNew->setAccessibleName(t::AddPicture);
    btnDelete = button(u"btnDelete"_s, t::Remove, 46);
    btnProperty = button(u"btnProperty"_s, t::Properties, 76);
    const QString commands[] = {t::SetDefault, t::Import, t::Export, t::SetOrder};
    for (int i = 0; i < 4; ++i) {
        Command[i] = button(u"Command%1"_s.arg(i), commands[i], 122 + 30 * i);
        Command[i]->setProperty("index", i);
    }
    btnClose = button(u"btnClose"_s, t::Close, DialogHeight - 8 - ButtonHeight);

    btMnu = new QMenu(t::AddMenu, this);
    btMnu->setObjectName(u"btMnu"_s);
    mnuEmail = btMnu->addAction(t::AddMail);
    mnuEmail->setObjectName(u"mnuEmail"_s);
    mnuNew = btMnu->addAction(t::AddNews);
    mnuNew->setObjectName(u"mnuNew"_s);
    mnudir = btMnu->addAction(t::AddDirectory);
    mnudir->setObjectName(u"mnudir"_s);

    connect(TabStrip1, &QTabBar::currentChanged, this, &frmMailBox::TabStrip1_Click);
    connect(btnAddNew, &QPushButton::clicked, this, &frmMailBox::btnAddNew_Click);
    connect(btnDelete, &QPushButton::clicked, this, &frmMailBox::btnDelete_Click);
    connect(btnProperty, &QPushButton::clicked, this, &frmMailBox::btnProperty_Click);
    connect(btnClose, &QPushButton::clicked, this, &frmMailBox::btnClose_Click);
    connect(mnuEmail, &QAction::triggered, this, &frmMailBox::mnuEmail_Click);
    // A row chosen with the keyboard is chosen as a click chooses it.
    connect(ListView1, &QTreeWidget::itemSelectionChanged, this,
            &frmMailBox::ListView1_SelectionChanged);
    ListView1->installEventFilter(this);
    scaffold::loadOnShow(this, [this] {
        btnAddNew->setIcon(addPicture(devicePixelRatioF(), font(),
                                      palette().color(QPalette::ButtonText)));
        // Every opening starts on "全部", whose list start-up fills.
        const QSignalBlocker quiet(TabStrip1);
        TabStrip1->setCurrentIndex(0);
        Form_Load();
    });
    // A change the disk refused after the list showed it, or one another
    // window made, shows as the store now holds it.
    connect(&storeEvents(), &StoreEvents::accountsChanged, this, [this] {
        if (isVisible())
            fillList();
    });
    // News and directory accounts are offered but not supported; their items
    // do nothing, and so do the four buttons of the Command array.
}

void frmMailBox::placeOnScreen()
{
    // Two fifths of the free space, not half: this dialog opens above and
    // left of the centre.
    scaffold::placeOnFreeSpace(this, scaffold::frameTwips(this), 2, 5);
}

bool frmMailBox::Form_Load()
{
    placeOnScreen();
    return fillList();
}

bool frmMailBox::fillList()
{
    SetHeaderButtons(ListView1, 1);
    ListView1->clear();

    // The list shows the account file as the store holds it. A file that
    // cannot be read leaves the dialog nothing to work on: it says why and
    // goes, rather than offer an empty table whose first change would
    // replace the file.
    if (!scaffold::guarded([this] { m_listed = store::Accounts(); })) {
        m_listed.clear();
        AccountCount = 0;
        QTimer::singleShot(0, this, &QWidget::close);
        return false;
    }
    AccountCount = qint32(m_listed.size());

    const QIcon icon = appIcon(u"internet-mail"_s);
    for (const MailBoxRec &account : std::as_const(m_listed)) {
        auto *row = new QTreeWidgetItem(ListView1);
        row->setText(0, account.username);
        row->setIcon(0, icon);
        row->setText(1, texts::accounts::RowTypeMail);
        row->setText(2, texts::accounts::RowAnyConnection);
    }

    for (int i = 0; i < 3; ++i)
        Command[i]->setEnabled(false);
    btnDelete->setEnabled(false);
    btnProperty->setEnabled(false);
    Changed = false;
    m_clickPending = false;
    return true;
}

bool frmMailBox::changeAccounts(int slot, const std::function<void(AccountList &)> &change)
{
    bool outdated = false;
    const bool stored = scaffold::guarded([&] {
        FolderSet set;
        AccountList &accounts = set.changeAccounts();
        // A slot names the account its row shows; when another program
        // rewrote the file since, the slot may hold another account now.
        if (slot >= 0 && (accounts.size() != m_listed.size() || accounts.value(slot) != m_listed.value(slot))) {
            outdated = true;
            return;
        }
        change(accounts);
        set.describe(texts::unsaved::Accounts);
        set.commit();
    });
    if (outdated)
        prompter().message(Prompter::Icon::Exclamation, texts::accounts::Caption,
                           texts::accounts::ListOutdated);
    Form_Load();
    return stored && !outdated;
}

bool frmMailBox::eventFilter(QObject *watched, QEvent *event)
{
    if (watched == ListView1 && event->type() == QEvent::KeyPress) {
        const int key = static_cast<QKeyEvent *>(event)->key();
        if ((key == Qt::Key_Return || key == Qt::Key_Enter) && btnProperty->isEnabled()) {
            btnProperty_Click();
            return true;
        }
        if (key == Qt::Key_Delete && btnDelete->isEnabled()) {
            btnDelete_Click();
            return true;
        }
    }
    if (watched == ListView1->viewport()) {
        switch (event->type()) {
        case QEvent::MouseButtonPress:
            ListView1_MouseDown(static_cast<QMouseEvent *>(event)->position().toPoint());
            m_clickPending = true;
            break;
        case QEvent::MouseButtonRelease:
            // A click is a press and a release in the list; the release that
            // ends a double-click is not a click of its own.
            if (m_clickPending) {
                m_clickPending = false;
                ListView1_Click();
            }
            break;
        case QEvent::MouseButtonDblClick:
            ListView1_MouseDown(static_cast<QMouseEvent *>(event)->position().toPoint());
            ListView1_DblClick();
            return true;
        default:
            break;
        }
    }
    return QDialog::eventFilter(watched, event);
}

void frmMailBox::ListView1_MouseDown(const QPoint &pos)
{
    MouseX = float(pos.x());
    MouseY = float(pos.y());
}

void frmMailBox::ListView1_Click()
{
    QTreeWidgetItem *hit = ListView1->itemAt(QPoint(int(MouseX), int(MouseY)));
    if (!hit) {
        btnDelete->setEnabled(false);
        btnProperty->setEnabled(false);
        // The old row loses its highlight; SelectedIndex and SelectedName
        // keep pointing at it.
        if (ListView1->topLevelItemCount() > 0)
            if (QTreeWidgetItem *old = ListView1->topLevelItem(int(SelectedIndex)))
                old->setSelected(false);
        return;
    }
    SelectedIndex = float(ListView1->indexOfTopLevelItem(hit));
    SelectedName = hit->text(0);
    btnDelete->setEnabled(true);
    btnProperty->setEnabled(true);
}

void frmMailBox::ListView1_SelectionChanged()
{
    const QList<QTreeWidgetItem *> rows = ListView1->selectedItems();
    if (rows.isEmpty())
        return;  // a click beside the rows says itself what it did
    SelectedIndex = float(ListView1->indexOfTopLevelItem(rows.first()));
    SelectedName = rows.first()->text(0);
    btnDelete->setEnabled(true);
    btnProperty->setEnabled(true);
}

void frmMailBox::ListView1_DblClick()
{
    btnProperty_Click();
}

void frmMailBox::TabStrip1_Click()
{
    const QString caption = TabStrip1->tabText(TabStrip1->currentIndex());
    if (caption == texts::accounts::TabAll || caption == texts::accounts::TabMail)
        Form_Load();
    else {
        // There are no news or directory accounts. Delete and Properties wait
        // for a row again, as after start-up: left on, they would act on an
        // account this list no longer shows.
        ListView1->clear();
        btnDelete->setEnabled(false);
        btnProperty->setEnabled(false);
    }
}

void frmMailBox::btnAddNew_Click()
{
    btMnu->popup(mapToGlobal(MenuAnchor));
}

bool frmMailBox::mnuEmail_Click()
{
    // Called from outside while the dialog is closed (EnsureMailBox): it
    // starts up first, as an opening would.
    Changed = false;
    if (!isVisible() && !Form_Load())
        return false;

    // The servers page is the one page that this dialog owns.
    QDialog *servers = forms::MainBoxAdd3();
    if (servers->parentWidget() != this)
        servers->setParent(this, servers->windowFlags());
    // The whole wizard runs inside this call; its finish is what the
    // account's storing waits for.
    if (forms::MainBoxAdd1()->exec() == wizard::Finished)
        Changed = true;
    if (!Changed)
        return false;
    const MailBoxRec account{forms::MainBoxAdd1()->DisplayName,  forms::MainBoxAdd3()->IncomingServer,
                             forms::MainBoxAdd3()->OutgoingServer, forms::MainBoxAdd4()->AccountName,
                             forms::MainBoxAdd4()->Password,      forms::MainBoxAdd2()->Address};
    // A 22nd account is refused by the store before anything is written.
    return changeAccounts(-1, [&account](AccountList &accounts) { accounts.append(account); });
}

void frmMailBox::btnDelete_Click()
{
    if (!prompter().confirm(Prompter::Icon::Warning, texts::accounts::Caption,
                            texts::accounts::AskDeleteAccount.arg(SelectedName),
                            Prompter::Default::No))
        return;
    const int slot = int(SelectedIndex);
    changeAccounts(slot, [slot](AccountList &accounts) { accounts.removeAt(slot); });
}

void frmMailBox::btnProperty_Click()
{
    const QTreeWidgetItem *row = ListView1->topLevelItem(int(SelectedIndex));
    const int slot = int(SelectedIndex);
    if (!row || !row->isSelected() || slot < 0 || slot >= m_listed.size())
        return;
    Changed = false;
    const MailBoxRec &account = m_listed.at(slot);
    EditRec = {account.name, account.address, account.pop,
               account.smtp, account.username, account.userpassword};

    frmMailBoxProp *prop = forms::MailBoxProp();
    connect(prop, &frmMailBoxProp::accountChanged, this, &frmMailBox::propertiesChanged,
            Qt::UniqueConnection);
    prop->openFor(EditRec);

    if (!Changed) {
        Form_Load();
        return;
    }
    changeAccounts(slot, [prop, slot](AccountList &accounts) {
        MailBoxRec &target = accounts[slot];
        target.address = prop->PropAddress;
        target.name = prop->PropName;
        target.pop = prop->PropPOP3;
        target.smtp = prop->PropSMTP;
        target.username = prop->PropUserName;
        target.userpassword = prop->PropPassword;
    });
}

void frmMailBox::propertiesChanged()
{
    Changed = true;
}

void frmMailBox::btnClose_Click()
{
    close();
}
