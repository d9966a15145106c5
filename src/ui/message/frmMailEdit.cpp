#include "frmMailEdit.h"

#include "composerules.h"
#include "sendrecv/engine.h"
#include "sendrecv/frmSendAndReceive.h"
#include "store/errors.h"
#include "store/folders.h"
#include "store/mailboxes.h"
#include "store/prompter.h"
#include "store/state.h"
#include "store/textutil.h"
#include "texts.h"
#include "ui/accounts/ensuremailbox.h"
#include "ui/common/filechooser.h"
#include "ui/common/fonts.h"
#include "ui/common/icons.h"
#include "ui/common/twips.h"
#include "ui/common/widgets.h"
#include "ui/main/foldernodes.h"
#include "ui/main/frmMain.h"

#include <QAction>
#include <QCloseEvent>
#include <QComboBox>
#include <QFileInfo>
#include <QGridLayout>
#include <QLabel>
#include <QLineEdit>
#include <QListWidget>
#include <QMenu>
#include <QMenuBar>
#include <QMouseEvent>
#include <QPlainTextEdit>
#include <QShortcut>
#include <QStatusBar>
#include <QTimer>
#include <QToolBar>
#include <QTreeWidget>

using namespace Qt::Literals::StringLiterals;

namespace {

// Appends a record to a loaded folder; a 102nd message ends the command
// before anything is written.
void append(EmailArray &mails, MailCount &count, const EmailRec &m)
{
    if (count < 0 || count >= MAX_FOLDER_MAILS)
        throw IndexError(texts::TooManyMails);
    mails[count] = m;
    ++count;
}

// Puts a record in the place of the message found on opening. When none
// was found (the folder changed under the window), it is appended rather
// than written over some other message.
void replaceAt(EmailArray &mails, MailCount &count, int index, const EmailRec &m)
{
    if (index >= 0 && index < count)
        mails[index] = m;
    else
        append(mails, count, m);
}

void removeAt(EmailArray &mails, MailCount &count, int index)
{
    if (index < 0 || index >= count)
        return;
    RemoveEmailAt(mails, index);
    --count;
}

// The main window's list is redrawn when it shows the folder just written.
void refreshMainIfShown(qint16 folder)
{
    frmMain *main = forms::Main();
    QTreeWidgetItem *shown = main->node(Node::Inbox + folder);
    if (shown && shown == main->TreeView1->currentItem() && main->Frame2->isVisible())
        main->refreshlistview(folder);
}

}  // namespace

frmMailEdit::frmMailEdit()
{
    setObjectName(u"frmMailEdit"_s);
    setWindowTitle(texts::compose::Caption);
    setWindowIcon(appIcon(u"mail-message-new"_s));
    setFont(fonts::uiFont());

    buildMenus();
    buildToolbar();
    buildFields();
    connectHandlers();

    resize(twips::toPixels(DesignWidth), twips::toPixels(DesignHeight));
}

frmMailEdit::~frmMailEdit() = default;

// ---- Construction -------------------------------------------------------

void frmMailEdit::buildMenus()
{
    namespace t = texts::compose;
    QMenuBar *bar = menuBar();
    bar->setObjectName(u"MenuBar"_s);

    QMenu *file = named(bar->addMenu(t::MenuFile), u"mnuFile"_s);
    munNewMail = menuItem(file, u"munNewMail"_s, t::MenuNew);
    munNewMail->setIcon(appIcon(u"mail-message-new"_s));
    file->addSeparator();
    mnuMailSend = menuItem(file, u"mnuMailSend"_s, t::MenuSend);
    mnuMailSend->setIcon(appIcon(u"mail-send-receive"_s));
    mnuMailSendLate = menuItem(file, u"mnuMailSendLate"_s, t::MenuSendLater);
    file->addSeparator();
    Save = menuItem(file, u"Save"_s, t::MenuSave);
    menuItem(file, u"mnuSaveAs"_s, t::MenuSaveAs);
    file->addSeparator();
    menuItem(file, u"mnuProperties"_s, t::MenuProperties);

    QMenu *edit = named(bar->addMenu(t::MenuEdit), u"mnuEdit"_s);
    menuItem(edit, u"mnuUndo"_s, t::MenuUndo);
    edit->addSeparator();
    menuItem(edit, u"mnuCut"_s, t::MenuCut);
    menuItem(edit, u"mnuCopy"_s, t::MenuCopy);
    menuItem(edit, u"mnuPaste"_s, t::MenuPaste);
    edit->addSeparator();
    menuItem(edit, u"mnuSelectAll"_s, t::MenuSelectAll);
    menuItem(edit, u"mnuFind"_s, t::MenuFind)->setIcon(appIcon(u"edit-find"_s));

    QMenu *view = named(bar->addMenu(t::MenuView), u"mnuView"_s);
    menuItem(view, u"mnuAllHeaders"_s, t::MenuAllHeaders);
    view->addSeparator();
    menuItem(view, u"mnuToolbar"_s, t::MenuToolbar);
    menuItem(view, u"mnuStatusBar"_s, t::MenuStatusBar);

    Insert = named(bar->addMenu(t::MenuInsert), u"Insert"_s);
    InsertAdd = menuItem(Insert, u"InsertAdd"_s, t::MenuInsertAttachment);
    InsertAdd->setIcon(appIcon(u"mail-attachment"_s));
    menuItem(Insert, u"mnuInsertPicture"_s, t::MenuInsertPicture);
    Insert->addSeparator();
    menuItem(Insert, u"mnuInsertSignature"_s, t::MenuInsertSignature);

    QMenu *format = named(bar->addMenu(t::MenuFormat), u"mnuFormat"_s);
    menuItem(format, u"mnuFont"_s, t::MenuFont);
    menuItem(format, u"mnuParagraph"_s, t::MenuParagraph);
    format->addSeparator();
    menuItem(format, u"mnuPlainText"_s, t::MenuPlainText);

    QMenu *tools = named(bar->addMenu(t::MenuTools), u"mnuTools"_s);
    menuItem(tools, u"mnuSpelling"_s, t::MenuSpelling);
    menuItem(tools, u"mnuCheckNames"_s, t::MenuCheckNames);
    menuItem(tools, u"mnuSelectRecipients"_s, t::MenuSelectRecipients)
        ->setIcon(appIcon(u"x-office-address-book"_s));

    QMenu *message = named(bar->addMenu(t::MenuMessage), u"mnuMessage"_s);
    menuItem(message, u"mnuPriority"_s, t::MenuPriority);
    menuItem(message, u"mnuFlag"_s, t::MenuFlag);

    QMenu *help = named(bar->addMenu(t::MenuHelp), u"mnuHelp"_s);
    menuItem(help, u"mnuContents"_s, t::MenuContents);

    // The attachment list's pop-up.
    popmnu1 = named(new QMenu(this), u"popmnu1"_s);
    popmnuDelete = menuItem(popmnu1, u"popmnuDelete"_s, t::PopupDelete);
}

void frmMailEdit::buildToolbar()
{
    namespace t = texts::compose;
    Toolbar1 = named(new QToolBar(this), u"Toolbar1"_s);
    Toolbar1->setToolButtonStyle(Qt::ToolButtonTextUnderIcon);
    Toolbar1->setIconSize(QSize(22, 22));
    Toolbar1->setMovable(false);
    Toolbar1->setFloatable(false);
    Toolbar1->toggleViewAction()->setEnabled(false);
    addToolBar(Qt::TopToolBarArea, Toolbar1);

    struct Button
    {
        const char *name;
        const QString *caption;  // nullptr: a separator
        const char *icon;
    };
    const Button buttons[tbCount] = {
        {"tbSend", &t::TbSend, "mail-send-receive"},
        {"tbSeparator2", nullptr, nullptr},
        {"tbPrint", &t::TbPrint, "document-print"},
        {"tbFind", &t::TbFind, "edit-find"},
        {"tbSeparator5", nullptr, nullptr},
        {"tbCheckNames", &t::TbCheckNames, "mail_generic"},
        {"tbEncoding", &t::TbEncoding, "preferences-desktop-locale"},
        {"tbSeparator8", nullptr, nullptr},
        {"tbAddressBook", &t::TbAddressBook, "x-office-address-book"},
        {"tbSeparator10", nullptr, nullptr},
        {"tbAttach", &t::TbAttach, "mail-attachment"},
    };
    for (const Button &b : buttons) {
        QAction *a = b.caption ? Toolbar1->addAction(appIcon(QLatin1StringView(b.icon)), *b.caption)
                               : Toolbar1->addSeparator();
        a->setObjectName(QLatin1StringView(b.name));
        if (b.caption)
            a->setToolTip(*b.caption);
        m_buttons.append(a);
    }
}

void frmMailEdit::buildFields()
{
    namespace t = texts::compose;
    auto *client = named(new QWidget(this), u"ClientArea"_s);
    setCentralWidget(client);

    Label1 = named(new QLabel(t::FromLabel, client), u"Label1"_s);
    Label2 = named(new QLabel(t::ToLabel, client), u"Label2"_s);
    Label3 = named(new QLabel(t::CcLabel, client), u"Label3"_s);
    Label4 = named(new QLabel(t::SubjectLabel, client), u"Label4"_s);
    Label5 = named(new QLabel(t::AttachmentsLabel, client), u"Label5"_s);
    Combo3 = named(new QComboBox(client), u"Combo3"_s);
    // The sender is picked from the accounts, but the box also shows the
    // stored sender of a re-opened message that is no account's address.
    Combo3->setEditable(true);
    Combo3->setInsertPolicy(QComboBox::NoInsert);
    Text3 = named(new QLineEdit(client), u"Text3"_s);
    Text4 = named(new QLineEdit(client), u"Text4"_s);
    Text5 = named(new QLineEdit(client), u"Text5"_s);

    ListView1 = named(new QListWidget(client), u"ListView1"_s);
    ListView1->setFlow(QListView::LeftToRight);
    ListView1->setWrapping(true);
    ListView1->setResizeMode(QListView::Adjust);
    ListView1->setSpacing(2);
    ListView1->setIconSize(QSize(16, 16));
    ListView1->setContextMenuPolicy(Qt::NoContextMenu);
    // Two rows of items at most; the body keeps the rest.
    const int itemHeight = std::max(18, QFontMetrics(font()).height() + 6);
    ListView1->setFixedHeight(2 * itemHeight + 2 * ListView1->frameWidth() + 6);

    // The format bar between the header and the body: face, size and a
    // picture; shown as in any compose window, it changes nothing.
    Combo1 = named(new QComboBox(client), u"Combo1"_s);
    Combo1->addItem(fonts::uiFamily());
    Combo1->setMinimumContentsLength(12);
    Combo2 = named(new QComboBox(client), u"Combo2"_s);
    Combo2->addItems({u"8"_s, u"9"_s, u"10"_s, u"12"_s, u"14"_s});
    Combo2->setCurrentIndex(2);
    Image1 = named(new QLabel(client), u"Image1"_s);
    Image1->setPixmap(appIcon(u"accessories-text-editor"_s).pixmap(QSize(16, 16)));
    for (QWidget *w : {static_cast<QWidget *>(Combo1), static_cast<QWidget *>(Combo2)})
        w->setFocusPolicy(Qt::NoFocus);

    Text1 = named(new QPlainTextEdit(client), u"Text1"_s);
    Text1->setTabChangesFocus(false);

    StatusBar1 = named(new QStatusBar(this), u"StatusBar1"_s);
    setStatusBar(StatusBar1);

    // From, To, Cc, Subject, attachments, then the format bar and body.
    auto *header = new QGridLayout;
    header->setHorizontalSpacing(twips::toPixels(120));
    header->setVerticalSpacing(twips::toPixels(60));
    header->setColumnStretch(1, 1);
    const QList<QPair<QLabel *, QWidget *>> rows = {
        {Label1, Combo3}, {Label2, Text3}, {Label3, Text4}, {Label4, Text5}, {Label5, ListView1}};
    for (int r = 0; r < rows.size(); ++r) {
        header->addWidget(rows[r].first, r, 0, Qt::AlignRight | Qt::AlignVCenter);
        header->addWidget(rows[r].second, r, 1);
    }
    Label5->setAlignment(Qt::AlignRight | Qt::AlignTop);
    header->setAlignment(Label5, Qt::AlignRight | Qt::AlignTop);

    auto *formatBar = new QHBoxLayout;
    formatBar->addWidget(Combo1);
    formatBar->addWidget(Combo2);
    formatBar->addSpacing(twips::toPixels(120));
    formatBar->addWidget(Image1);
    formatBar->addStretch(1);

    auto *column = new QVBoxLayout(client);
    const int margin = twips::toPixels(90);
    column->setContentsMargins(margin, margin, margin, margin);
    column->setSpacing(twips::toPixels(60));
    column->addLayout(header);
    column->addLayout(formatBar);
    column->addWidget(Text1, 1);

    showAttachmentRow(false);
}

void frmMailEdit::connectHandlers()
{
    connect(munNewMail, &QAction::triggered, this, &frmMailEdit::munNewMail_Click);
    connect(mnuMailSend, &QAction::triggered, this, &frmMailEdit::mnuMailSend_Click);
    connect(mnuMailSendLate, &QAction::triggered, this, &frmMailEdit::mnuMailSendLate_Click);
    connect(Save, &QAction::triggered, this, &frmMailEdit::Save_Click);
    connect(InsertAdd, &QAction::triggered, this, &frmMailEdit::InsertAdd_Click);
    connect(popmnuDelete, &QAction::triggered, this, &frmMailEdit::popmnuDelete_Click);
    for (int i = 1; i <= tbCount; ++i)
        connect(toolbarButton(i), &QAction::triggered, this, [this, i] { Toolbar1_ButtonClick(i); });
    // The caption shows CTRL+S itself, so the key is a shortcut of the
    // window rather than one the menu would print a second time.
    auto *ctrlS = new QShortcut(QKeySequence(Qt::CTRL | Qt::Key_S), this);
    connect(ctrlS, &QShortcut::activated, this, &frmMailEdit::Save_Click);
    // The pop-up opens when the right button is released over the list.
    ListView1->viewport()->installEventFilter(this);

    connect(Combo3, &QComboBox::editTextChanged, this, &frmMailEdit::changed);
    for (QLineEdit *line : {Text3, Text4, Text5})
        connect(line, &QLineEdit::textChanged, this, &frmMailEdit::changed);
    connect(Text1, &QPlainTextEdit::textChanged, this, &frmMailEdit::changed);
}

QAction *frmMailEdit::toolbarButton(int index) const
{
    return (index >= 1 && index <= m_buttons.size()) ? m_buttons.at(index - 1) : nullptr;
}

void frmMailEdit::changed()
{
    if (!m_filling)
        Main::gbModified = true;
}

void frmMailEdit::showAttachmentRow(bool shown)
{
    m_attachmentRow = shown ? AttachmentRowShown : 0;
    Label5->setVisible(shown);
    ListView1->setVisible(shown);
}

// ---- Opening --------------------------------------------------------------

void frmMailEdit::showEvent(QShowEvent *event)
{
    QMainWindow::showEvent(event);
    if (!m_loaded) {
        m_loaded = true;
        Form_Load();
    }
}

void frmMailEdit::Form_Load()
{
    m_filling = true;
    // The window object outlives its closing; each opening starts from the
    // empty form.
    setWindowTitle(texts::compose::Caption);
    for (QLineEdit *line : {Text3, Text4, Text5})
        line->clear();
    Text1->clear();
    ListView1->clear();
    showAttachmentRow(false);
    m_mailCount = 0;
    m_index = -1;

    loadAccounts();

    const qint16 mode = Main::ComposeMode;
    if (mode == Main::ComposeModes::New) {
        Text1->clear();
        Text3->clear();
        Text4->clear();
        Text5->clear();
    } else if (mode == Main::ComposeModes::Reopen || mode == Main::ComposeModes::Reply
               || mode == Main::ComposeModes::Forward) {
        loadQuoted();
    }
    m_filling = false;
    Main::gbModified = false;
    Text3->setFocus();
}

void frmMailEdit::loadAccounts()
{
    Combo3->clear();
    m_accountCount = 0;
    LoadMailBoxes(m_accounts, m_accountCount);
    for (int i = 0; i < m_accountCount; ++i)
        Combo3->addItem(m_accounts[i].address);
    if (Combo3->count() >= 1)
        Combo3->setCurrentIndex(0);
    else
        Combo3->setEditText(QString());
}

void frmMailEdit::loadQuoted()
{
    frmMain *main = forms::Main();
    const qint16 folder = main->CurrentFolder;
    LoadEmails(folder, m_mails, m_mailCount);
    for (int i = 0; i < m_mailCount; ++i) {
        if (TrimSpaces(m_mails[i].id) == main->CurrentMailId) {
            m_index = i;
            break;
        }
    }
    const EmailRec quoted = m_index >= 0 ? m_mails[m_index] : EmailRec();
    const qint16 mode = Main::ComposeMode;

    if (mode == Main::ComposeModes::Reopen) {
        setWindowTitle(RightTrim(quoted.subject));
        if (RightTrim(quoted.from) != Combo3->currentText())
            Combo3->setEditText(RightTrim(quoted.from));
        Text3->setText(RightTrim(quoted.to));
        Text4->setText(RightTrim(quoted.alsoto));
        Text5->setText(RightTrim(quoted.subject));
        loadAttachments(quoted.attachment);
        Text1->setPlainText(ToWidgetText(RightTrim(quoted.content)));
        return;
    }

    if (Combo3->count() == 0) {
        prompter().message(Prompter::Icon::Exclamation, texts::AppTitle,
                           texts::compose::NoAccountYet);
        return;
    }

    if (mode == Main::ComposeModes::Reply) {
        // Whatever the quoted message was sent to, the reply goes out from
        // the first account; a reply from Deleted Items also offers an
        // empty sender. Both are kept as the program has always done.
        if (folder == FolderFile::Inbox || folder == FolderFile::Drafts
            || folder == FolderFile::SentItems || folder == FolderFile::Outbox) {
            if (RightTrim(quoted.to) != Combo3->currentText())
                Combo3->setCurrentIndex(0);
            else
                Combo3->setEditText(RightTrim(quoted.to));
        } else if (folder == FolderFile::DeletedItems) {
            Combo3->addItem(QString());
        }
        Text3->setText(RightTrim(quoted.from));
        Text5->setText(compose::ReplySubject(quoted));
        Text1->setPlainText(ToWidgetText(compose::QuotedBlock(quoted, true)));
    } else {
        const QString attachment = TrimSpaces(quoted.attachment);
        if (!attachment.isEmpty() && attachment.front() != QChar(0)) {
            loadAttachments(quoted.attachment);
            showAttachmentRow(true);
        }
        Text5->setText(compose::ForwardSubject(quoted));
        Text1->setPlainText(ToWidgetText(compose::QuotedBlock(quoted, false)));
    }
}

void frmMailEdit::loadAttachments(const QString &field)
{
    const QIcon icon = appIcon(u"mail-attachment"_s);
    for (const QString &piece : compose::AttachmentPieces(field))
        new QListWidgetItem(icon, piece, ListView1);
    if (ListView1->count() >= 1)
        showAttachmentRow(true);
}

// ---- Records --------------------------------------------------------------

QString frmMailEdit::joinedAttachments() const
{
    QStringList items;
    for (int i = 0; i < ListView1->count(); ++i)
        items.append(ListView1->item(i)->text());
    return compose::JoinAttachments(items);
}

EmailRec frmMailEdit::newRecord() const
{
    const QString id = QString::number(RandomBetween(10000000, 99999999));
    return compose::BuildRecord(id, {Combo3->currentText(), Text3->text(), Text4->text(),
                                     Text5->text(), FromWidgetText(Text1->toPlainText()),
                                     joinedAttachments()});
}

EmailRec frmMailEdit::sameIdRecord() const
{
    EmailRec m = newRecord();
    m.id = forms::Main()->CurrentMailId;
    return m;
}

// ---- Send now, send later, save -------------------------------------------

bool frmMailEdit::storeForSend()
{
    if (Text3->text().isEmpty()) {
        prompter().message(Prompter::Icon::Exclamation, texts::AppTitle,
                           texts::compose::CannotSendNoRecipient);
        return false;
    }
    if (Combo3->currentText().isEmpty() && EnsureMailBox())
        return false;

    const qint16 folder = forms::Main()->CurrentFolder;
    if (Main::ComposeMode == Main::ComposeModes::New) {
        // Deleted Items is read first and at once read over by the Outbox;
        // the first read has no effect and stays as the program has it.
        LoadEmails(FolderFile::DeletedItems, m_mails, m_mailCount);
        LoadEmails(FolderFile::Outbox, m_mails, m_mailCount);
        append(m_mails, m_mailCount, newRecord());
        SaveEmails(FolderFile::Outbox, m_mails, m_mailCount);
    } else if (folder == FolderFile::Drafts) {
        // The draft moves to the Outbox and keeps its id.
        LoadEmails(FolderFile::Outbox, m_mails, m_mailCount);
        append(m_mails, m_mailCount, sameIdRecord());
        SaveEmails(FolderFile::Outbox, m_mails, m_mailCount);
        LoadEmails(folder, m_mails, m_mailCount);
        removeAt(m_mails, m_mailCount, m_index);
        SaveEmails(folder, m_mails, m_mailCount);
        refreshMainIfShown(folder);
    } else if (folder == FolderFile::Inbox || folder == FolderFile::SentItems
               || folder == FolderFile::DeletedItems) {
        m_mailCount = 0;
        LoadEmails(FolderFile::Outbox, m_mails, m_mailCount);
        append(m_mails, m_mailCount, newRecord());
        SaveEmails(FolderFile::Outbox, m_mails, m_mailCount);
    } else {
        // A message re-opened from the Outbox is written over in place.
        LoadEmails(FolderFile::Outbox, m_mails, m_mailCount);
        replaceAt(m_mails, m_mailCount, m_index, sameIdRecord());
        SaveEmails(FolderFile::Outbox, m_mails, m_mailCount);
    }
    Main::gbModified = false;
    refreshMainIfShown(FolderFile::Outbox);
    return true;
}

void frmMailEdit::mnuMailSend_Click()
{
    if (!storeForSend())
        return;
    runSendOnly();
    close();
}

void frmMailEdit::runSendOnly()
{
    frmSendAndReceive *run = forms::SendAndReceive();
    run->SendReceiveMode = SendReceiveModes::SendOnly;
    // A failed send-only run never starts its bar and so never closes
    // itself; it is closed as soon as it stands, which ends the modal run.
    QTimer::singleShot(0, run, [run] {
        if (run->SendFailed)
            run->close();
    });
    run->exec();
    if (run->SendFailed) {
        run->close();
        prompter().message(Prompter::Icon::Information, texts::NameCheckTitle,
                           texts::NameCheckFailed);
    }
}

bool frmMailEdit::storeForSendLater()
{
    const qint16 folder = forms::Main()->CurrentFolder;
    if (Main::ComposeMode == Main::ComposeModes::New) {
        if (Text3->text().isEmpty()) {
            prompter().message(Prompter::Icon::Exclamation, texts::AppTitle,
                               texts::compose::CannotSendNoRecipient);
            return false;
        }
        if (Combo3->currentText().isEmpty()) {
            prompter().message(Prompter::Icon::Exclamation, texts::AppTitle,
                               texts::compose::CannotSaveNoSender);
            return false;
        }
        LoadEmails(FolderFile::Outbox, m_mails, m_mailCount);
        append(m_mails, m_mailCount, newRecord());
        SaveEmails(FolderFile::Outbox, m_mails, m_mailCount);
        prompter().message(Prompter::Icon::Information, texts::AppTitle,
                           texts::compose::SendLaterNotice);
    } else if ((folder == FolderFile::DeletedItems || folder == FolderFile::Drafts)
               && !Text3->text().isEmpty()) {
        // A draft (or a message of Deleted Items) leaves its folder for the
        // Outbox with its id.
        LoadEmails(FolderFile::Outbox, m_mails, m_mailCount);
        append(m_mails, m_mailCount, sameIdRecord());
        SaveEmails(FolderFile::Outbox, m_mails, m_mailCount);
        prompter().message(Prompter::Icon::Information, texts::AppTitle,
                           texts::compose::SendLaterNotice);
        LoadEmails(folder, m_mails, m_mailCount);
        removeAt(m_mails, m_mailCount, m_index);
        SaveEmails(folder, m_mails, m_mailCount);
        refreshMainIfShown(folder);
    } else {
        // Send later moves only new mail and messages of Drafts or Deleted
        // Items into the Outbox; anything else stays where it is.
        return false;
    }
    LoadEmails(folder, m_mails, m_mailCount);
    Main::gbModified = false;
    refreshMainIfShown(FolderFile::Outbox);
    return true;
}

void frmMailEdit::mnuMailSendLate_Click()
{
    if (storeForSendLater())
        close();
}

void frmMailEdit::Save_Click()
{
    if (Combo3->currentText().isEmpty()) {
        prompter().message(Prompter::Icon::Exclamation, texts::AppTitle,
                           texts::compose::CannotSaveNoSender);
        return;
    }
    const qint16 mode = Main::ComposeMode;
    qint16 written = FolderFile::Drafts;
    if (mode == Main::ComposeModes::New || mode == Main::ComposeModes::Reply) {
        LoadEmails(FolderFile::Drafts, m_mails, m_mailCount);
        append(m_mails, m_mailCount, newRecord());
        SaveEmails(FolderFile::Drafts, m_mails, m_mailCount);
        prompter().message(Prompter::Icon::Information, texts::compose::DraftSavedTitle,
                           texts::compose::DraftSaved);
        // From now on this window stores the same message again.
        Main::ComposeMode = Main::ComposeModes::Reopen;
    } else {
        // Written in the place of the message found on opening, in the
        // folder the main window shows: a saved forward therefore replaces
        // the forwarded message. This is intended.
        written = forms::Main()->CurrentFolder;
        LoadEmails(written, m_mails, m_mailCount);
        replaceAt(m_mails, m_mailCount, m_index, sameIdRecord());
        SaveEmails(written, m_mails, m_mailCount);
    }
    LoadEmails(FolderFile::Inbox, m_mails, m_mailCount);
    Main::gbModified = false;
    refreshMainIfShown(written);
}

void frmMailEdit::munNewMail_Click()
{
    Main::ComposeMode = Main::ComposeModes::New;
    Text1->clear();
    Text3->clear();
    Text4->clear();
    Text5->clear();
}

void frmMailEdit::Toolbar1_ButtonClick(int index)
{
    switch (index) {
    case tbSend:
        mnuMailSend_Click();
        break;
    case tbAttach:
        InsertAdd_Click();
        break;
    default:
        // The other buttons are there for show.
        break;
    }
}

// ---- Attachments ----------------------------------------------------------

void frmMailEdit::InsertAdd_Click()
{
    const QString path = fileChooser().openFileName(this, texts::compose::AttachTitle,
                                                    texts::compose::AttachFilter);
    if (path.isEmpty())
        return;
    const QFileInfo file(path);
    new QListWidgetItem(appIcon(u"mail-attachment"_s),
                        compose::AttachmentItemText(file.fileName(), file.size()), ListView1);
    if (ListView1->count() >= 1)
        showAttachmentRow(true);
    Main::gbModified = true;
}

void frmMailEdit::popmnuDelete_Click()
{
    QListWidgetItem *item = ListView1->currentItem();
    if (!item || !item->isSelected())
        return;
    delete item;
    if (ListView1->count() == 0)
        showAttachmentRow(false);
    Main::gbModified = true;
}

bool frmMailEdit::eventFilter(QObject *watched, QEvent *event)
{
    if (watched == ListView1->viewport() && event->type() == QEvent::MouseButtonRelease
        && static_cast<QMouseEvent *>(event)->button() == Qt::RightButton) {
        popmnu1->popup(static_cast<QMouseEvent *>(event)->globalPosition().toPoint());
        return true;
    }
    return QMainWindow::eventFilter(watched, event);
}

// ---- Closing --------------------------------------------------------------

void frmMailEdit::closeEvent(QCloseEvent *event)
{
    if (Form_Unload()) {
        event->accept();
        m_loaded = false;
    } else {
        event->ignore();
    }
}

bool frmMailEdit::Form_Unload()
{
    // Text typed and neither sent nor saved would be lost without a word;
    // one question keeps a slip of the mouse from costing a long message.
    if (Main::gbModified
        && !prompter().confirm(Prompter::Icon::Exclamation, texts::AppTitle,
                               texts::compose::AskDiscardOnClose)) {
        return false;
    }
    Main::gbModified = false;
    return true;
}
