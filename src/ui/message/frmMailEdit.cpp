#include "frmMailEdit.h"

#include "mail/composerules.h"
#include "sendrecv/engine.h"
#include "store/errors.h"
#include "store/mailstore.h"
#include "store/prompter.h"
#include "store/textutil.h"
#include "texts.h"
#include "ui/accounts/ensuremailbox.h"
#include "ui/common/filechooser.h"
#include "ui/common/fonts.h"
#include "ui/common/icons.h"
#include "ui/common/scaffold.h"
#include "ui/common/twips.h"
#include "ui/common/widgets.h"
#include "ui/sendrecv/frmSendAndReceive.h"

#include <QAction>
#include <QCloseEvent>
#include <QComboBox>
#include <QFileInfo>
#include <QGridLayout>
#include <QKeyEvent>
#include <QLabel>
#include <QLineEdit>
#include <QListWidget>
#include <QMenu>
#include <QMenuBar>
#include <QMouseEvent>
#include <QPlainTextEdit>
#include <QShortcut>
#include <QStatusBar>
#include <QToolBar>

using namespace Qt::Literals::StringLiterals;

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
    scaffold::loadOnShow(this, [this] { Form_Load(); });

    resize(twips::toPixels(DesignWidth), twips::toPixels(DesignHeight));
}

frmMailEdit::~frmMailEdit() = default;

// ---- Construction -------------------------------------------------------

void frmMailEdit::buildMenus()
{
    namespace t = texts::compose;
    menuBar()->setObjectName(u"MenuBar"_s);
    scaffold::addMenus(menuBar(), {
        {0, "mnuFile", &t::MenuFile},
        {1, "munNewMail", &t::MenuNew, "mail-message-new"},
        {1, nullptr, nullptr},
        {1, "mnuMailSend", &t::MenuSend, "mail-send-receive"},
        {1, "mnuMailSendLate", &t::MenuSendLater},
        {1, nullptr, nullptr},
        {1, "Save", &t::MenuSave},
        {1, "mnuSaveAs", &t::MenuSaveAs},
        {1, nullptr, nullptr},
        {1, "mnuProperties", &t::MenuProperties},
        {1, nullptr, nullptr},
        {1, "mnuClose", &t::MenuClose},
        {0, "mnuEdit", &t::MenuEdit},
        {1, "mnuUndo", &t::MenuUndo},
        {1, nullptr, nullptr},
        {1, "mnuCut", &t::MenuCut},
        {1, "mnuCopy", &t::MenuCopy},
        {1, "mnuPaste", &t::MenuPaste},
        {1, nullptr, nullptr},
        {1, "mnuSelectAll", &t::MenuSelectAll},
        {1, "mnuFind", &t::MenuFind, "edit-find"},
        {0, "mnuView", &t::MenuView},
        {1, "mnuAllHeaders", &t::MenuAllHeaders},
        {1, nullptr, nullptr},
        {1, "mnuToolbar", &t::MenuToolbar},
        {1, "mnuStatusBar", &t::MenuStatusBar},
        {0, "Insert", &t::MenuInsert},
        {1, "InsertAdd", &t::MenuInsertAttachment, "mail-attachment"},
        {1, "mnuInsertPicture", &t::MenuInsertPicture},
        {1, nullptr, nullptr},
        {1, "mnuInsertSignature", &t::MenuInsertSignature},
        {0, "mnuFormat", &t::MenuFormat},
        {1, "mnuFont", &t::MenuFont},
        {1, "mnuParagraph", &t::MenuParagraph},
        {1, nullptr, nullptr},
        {1, "mnuPlainText", &t::MenuPlainText},
        {0, "mnuTools", &t::MenuTools},
        {1, "mnuSpelling", &t::MenuSpelling},
        {1, "mnuCheckNames", &t::MenuCheckNames},
        {1, "mnuSelectRecipients", &t::MenuSelectRecipients, "x-office-address-book"},
        {0, "mnuMessage", &t::MenuMessage},
        {1, "mnuPriority", &t::MenuPriority},
        {1, "mnuFlag", &t::MenuFlag},
        {0, "mnuHelp", &t::MenuHelp},
        {1, "mnuContents", &t::MenuContents},
    });
    munNewMail = scaffold::action(this, "munNewMail");
    mnuMailSend = scaffold::action(this, "mnuMailSend");
    mnuMailSendLate = scaffold::action(this, "mnuMailSendLate");
    Save = scaffold::action(this, "Save");
    mnuClose = scaffold::action(this, "mnuClose");
    Insert = findChild<QMenu *>(u"Insert"_s);
    InsertAdd = scaffold::action(this, "InsertAdd");

    // The attachment list's pop-up.
    popmnu1 = named(new QMenu(this), u"popmnu1"_s);
    popmnuDelete = menuItem(popmnu1, u"popmnuDelete"_s, t::PopupDelete);
}

void frmMailEdit::buildToolbar()
{
    namespace t = texts::compose;
    Toolbar1 = scaffold::fixedToolBar(this);
    m_buttons = scaffold::addTools(Toolbar1, {
        {"tbSend", &t::TbSend, nullptr, "mail-send-receive"},
        {"tbSeparator2", nullptr, nullptr, nullptr},
        {"tbPrint", &t::TbPrint, nullptr, "document-print"},
        {"tbFind", &t::TbFind, nullptr, "edit-find"},
        {"tbSeparator5", nullptr, nullptr, nullptr},
        {"tbCheckNames", &t::TbCheckNames, nullptr, "mail_generic"},
        {"tbEncoding", &t::TbEncoding, nullptr, "preferences-desktop-locale"},
        {"tbSeparator8", nullptr, nullptr, nullptr},
        {"tbAddressBook", &t::TbAddressBook, nullptr, "x-office-address-book"},
        {"tbSeparator10", nullptr, nullptr, nullptr},
        {"tbAttach", &t::TbAttach, nullptr, "mail-attachment"},
    }, [this](int index) { Toolbar1_ButtonClick(index); });
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
    // A screen reader lands in the field inside the box, which the caption
    // beside the box does not name; unnamed, it reads out the address.
    speak(Combo3->lineEdit(), texts::a11y::Sender, texts::a11y::SenderHelp);
    Text3 = named(new QLineEdit(client), u"Text3"_s);
    Text4 = named(new QLineEdit(client), u"Text4"_s);
    Text5 = named(new QLineEdit(client), u"Text5"_s);
    // Alt and the underlined letter go to the field beside each caption.
    Label1->setBuddy(Combo3);
    Label2->setBuddy(Text3);
    Label3->setBuddy(Text4);
    Label4->setBuddy(Text5);

    ListView1 = named(new QListWidget(client), u"ListView1"_s);
    speak(ListView1, texts::a11y::Attachments, texts::a11y::AttachmentsHelp);
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
    speak(Text1, texts::a11y::MessageBody);
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
    connect(mnuClose, &QAction::triggered, this, &QWidget::close);
    connect(InsertAdd, &QAction::triggered, this, &frmMailEdit::InsertAdd_Click);
    connect(popmnuDelete, &QAction::triggered, this, &frmMailEdit::popmnuDelete_Click);
    // The caption shows CTRL+S itself, so the key is a shortcut of the
    // window rather than one the menu would print a second time.
    auto *ctrlS = new QShortcut(QKeySequence(Qt::CTRL | Qt::Key_S), this);
    connect(ctrlS, &QShortcut::activated, this, &frmMailEdit::Save_Click);
    // Escape closes the window, asking first when the text is unsaved.
    auto *escape = new QShortcut(QKeySequence(Qt::Key_Escape), this);
    connect(escape, &QShortcut::activated, this, &QWidget::close);
    // The pop-up opens when the right button is released over the list,
    // and with the menu key or Delete from the keyboard.
    ListView1->viewport()->installEventFilter(this);
    ListView1->installEventFilter(this);

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
        gbModified = true;
}

void frmMailEdit::showAttachmentRow(bool shown)
{
    m_attachmentRow = shown ? AttachmentRowShown : 0;
    Label5->setVisible(shown);
    ListView1->setVisible(shown);
}

// ---- Opening --------------------------------------------------------------

bool frmMailEdit::openAs(qint16 mode, const MailRef &source)
{
    frmMailEdit *w = forms::MailEdit();
    if (w->isVisible() && w->gbModified) {
        w->raise();
        w->activateWindow();
        prompter().message(Prompter::Icon::Information, texts::AppTitle,
                           texts::compose::StillWriting);
        return false;
    }
    w->ComposeMode = mode;
    w->m_source = source;
    // An open window holds nothing unsaved here: it takes the new message.
    scaffold::bringUp(w, [w] { w->Form_Load(); });
    return true;
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
    m_stored = StoredMail();

    scaffold::guarded([this] { loadAccounts(); });
    const qint16 mode = ComposeMode;
    if (mode == Main::ComposeModes::Reopen || mode == Main::ComposeModes::Reply
        || mode == Main::ComposeModes::Forward)
        loadQuoted();
    m_filling = false;
    gbModified = false;
    Text3->setFocus();
}

void frmMailEdit::loadAccounts()
{
    Combo3->clear();
    const AccountList accounts = store::Accounts();
    for (const MailBoxRec &a : accounts)
        Combo3->addItem(a.address);
    if (Combo3->count() >= 1)
        Combo3->setCurrentIndex(0);
    else
        Combo3->setEditText(QString());
}

void frmMailEdit::loadQuoted()
{
    const EmailRec quoted = m_source.shown;
    const int folder = m_source.folder;
    const qint16 mode = ComposeMode;

    if (mode == Main::ComposeModes::Reopen) {
        // The window edits this very message: its saves and sends replace
        // or move it, under its id.
        if (m_source.isSet())
            m_stored = {folder, TrimSpaces(quoted.id), m_source.index, quoted};
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
        // Deliberate quirks that trainees meet: whatever the quoted message
        // was sent to, the reply goes out from the first account, and a
        // reply from Deleted Items also offers an empty sender.
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

EmailRec frmMailEdit::composed() const
{
    return compose::BuildRecord(QString(), {Combo3->currentText(), Text3->text(), Text4->text(),
                                            Text5->text(), FromWidgetText(Text1->toPlainText()),
                                            joinedAttachments()});
}

bool frmMailEdit::fitsOrAccepted(EmailRec &m)
{
    const QList<compose::Overflow> overflows = compose::Overflows(m);
    if (overflows.isEmpty())
        return true;
    QStringList lines;
    for (const compose::Overflow &o : overflows)
        lines.append(texts::compose::TooLongLine.arg(texts::compose::FieldNames[o.field])
                         .arg(o.bytes)
                         .arg(o.limit)
                         .arg(o.keptChars));
    if (!prompter().confirm(Prompter::Icon::Exclamation, texts::AppTitle,
                            texts::compose::TooLongForFile.arg(lines.join(u'\r')),
                            Prompter::Default::No))
        return false;
    m = compose::CutToFit(m);
    return true;
}

// ---- Send now, send later, save -------------------------------------------

void frmMailEdit::mnuMailSend_Click()
{
    if (Text3->text().isEmpty()) {
        prompter().message(Prompter::Icon::Exclamation, texts::AppTitle,
                           texts::compose::CannotSendNoRecipient);
        return;
    }
    if (Combo3->currentText().isEmpty()) {
        bool abandon = false;
        if (!scaffold::guarded([&abandon] { abandon = EnsureMailBox(); }) || abandon)
            return;
        // The account just set up is the sender.
        scaffold::guarded([this] { loadAccounts(); });
    }
    EmailRec m = composed();
    if (!fitsOrAccepted(m) || !scaffold::guarded([&] { StoreForSend(m, m_stored); }))
        return;
    gbModified = false;
    // The message leaves the Outbox at once; the run says so itself when
    // it cannot.
    frmSendAndReceive::start(SendReceiveModes::SendOnly, true);
    close();
}

void frmMailEdit::mnuMailSendLate_Click()
{
    // Nothing goes to the Outbox that could never be sent or has no sender.
    if (Text3->text().isEmpty()) {
        prompter().message(Prompter::Icon::Exclamation, texts::AppTitle,
                           texts::compose::CannotSendNoRecipient);
        return;
    }
    if (Combo3->currentText().isEmpty()) {
        prompter().message(Prompter::Icon::Exclamation, texts::AppTitle,
                           texts::compose::CannotSaveNoSender);
        return;
    }
    EmailRec m = composed();
    if (!fitsOrAccepted(m) || !scaffold::guarded([&] { StoreForSendLater(m, m_stored); }))
        return;
    gbModified = false;
    prompter().message(Prompter::Icon::Information, texts::AppTitle,
                       texts::compose::SendLaterNotice);
    close();
}

void frmMailEdit::Save_Click()
{
    if (Combo3->currentText().isEmpty()) {
        prompter().message(Prompter::Icon::Exclamation, texts::AppTitle,
                           texts::compose::CannotSaveNoSender);
        return;
    }
    EmailRec m = composed();
    bool created = false;
    if (!fitsOrAccepted(m)
        || !scaffold::guarded([&] { m_stored = SaveDraft(m, m_stored, &created); }))
        return;
    gbModified = false;
    // From now on this window stores the same message again.
    ComposeMode = Main::ComposeModes::Reopen;
    if (created)
        prompter().message(Prompter::Icon::Information, texts::compose::DraftSavedTitle,
                           texts::compose::DraftSaved);
}

void frmMailEdit::munNewMail_Click()
{
    // New empties the fields; text nobody saved is only given up on a Yes.
    if (gbModified
        && !prompter().confirm(Prompter::Icon::Exclamation, texts::AppTitle,
                               texts::compose::AskDiscardOnNew, Prompter::Default::No))
        return;
    ComposeMode = Main::ComposeModes::New;
    setWindowTitle(texts::compose::Caption);
    m_stored = StoredMail();
    m_source = MailRef();
    m_filling = true;
    Text1->clear();
    Text3->clear();
    Text4->clear();
    Text5->clear();
    m_filling = false;
    gbModified = false;
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
    gbModified = true;
}

void frmMailEdit::popmnuDelete_Click()
{
    QListWidgetItem *item = ListView1->currentItem();
    if (!item || !item->isSelected())
        return;
    delete item;
    if (ListView1->count() == 0)
        showAttachmentRow(false);
    gbModified = true;
}

bool frmMailEdit::eventFilter(QObject *watched, QEvent *event)
{
    if (watched == ListView1->viewport() && event->type() == QEvent::MouseButtonRelease
        && static_cast<QMouseEvent *>(event)->button() == Qt::RightButton) {
        popmnu1->popup(static_cast<QMouseEvent *>(event)->globalPosition().toPoint());
        return true;
    }
    if (watched == ListView1 && event->type() == QEvent::KeyPress) {
        const int key = static_cast<QKeyEvent *>(event)->key();
        if (key == Qt::Key_Delete) {
            popmnuDelete_Click();
            return true;
        }
        if (key == Qt::Key_Menu) {
            popmnu1->popup(ListView1->viewport()->mapToGlobal(
                ListView1->visualItemRect(ListView1->currentItem()).center()));
            return true;
        }
    }
    return QMainWindow::eventFilter(watched, event);
}

// ---- Closing --------------------------------------------------------------

void frmMailEdit::closeEvent(QCloseEvent *event)
{
    if (Form_Unload())
        event->accept();
    else
        event->ignore();
}

bool frmMailEdit::Form_Unload()
{
    // Text typed and neither sent nor saved would be lost without a word;
    // one question keeps a slip of the mouse from costing a long message.
    if (gbModified
        && !prompter().confirm(Prompter::Icon::Exclamation, texts::AppTitle,
                               texts::compose::AskDiscardOnClose, Prompter::Default::No)) {
        return false;
    }
    gbModified = false;
    return true;
}
