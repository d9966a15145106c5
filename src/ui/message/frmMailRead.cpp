#include "frmMailRead.h"

#include "sendrecv/recipients.h"
#include "store/errors.h"
#include "store/mailstore.h"
#include "store/prompter.h"
#include "store/textutil.h"
#include "texts.h"
#include "ui/common/filechooser.h"
#include "ui/common/icons.h"
#include "ui/common/scaffold.h"
#include "ui/common/twips.h"
#include "ui/common/widgets.h"
#include "ui/message/frmMailEdit.h"

#include <QAction>
#include <QFile>
#include <QFileInfo>
#include <QFrame>
#include <QGridLayout>
#include <QKeyEvent>
#include <QLabel>
#include <QListWidget>
#include <QMenu>
#include <QMenuBar>
#include <QMouseEvent>
#include <QShortcut>
#include <QStatusBar>
#include <QTextEdit>
#include <QTimer>
#include <QToolBar>
#include <QVBoxLayout>

using namespace Qt::Literals::StringLiterals;

namespace {
// The same message after its folder changed: every field but the read
// mark, which opening it changes.
bool sameMessage(const EmailRec &a, const EmailRec &b)
{
    return a.id == b.id && a.from == b.from && a.to == b.to && a.alsoto == b.alsoto
        && a.subject == b.subject && a.content == b.content && a.datetime == b.datetime
        && a.attachment == b.attachment;
}
}  // namespace

frmMailRead::frmMailRead()
{
    setObjectName(u"frmMailRead"_s);
    setWindowIcon(appIcon(u"mail_generic"_s));

    buildMenus();
    buildToolbar();
    buildPanes();
    scaffold::loadOnShow(this, [this] { Form_Load(); });
    connect(&storeEvents(), &StoreEvents::folderChanged, this, &frmMailRead::folderChanged);

    resize(twips::toPixels(DesignWidth), twips::toPixels(DesignHeight));
}

frmMailRead::~frmMailRead() = default;

// ---- Construction -------------------------------------------------------

void frmMailRead::buildMenus()
{
    namespace t = texts;
    namespace r = texts::read;
    menuBar()->setObjectName(u"MenuBar"_s);
    scaffold::addMenus(menuBar(), {
        {0, "mnuFile", &t::MenuFile},
        {1, "mnuSaveAs", &t::MenuSaveAs},
        {1, "mnuSaveAttachments", &t::MenuSaveAttachments},
        {1, nullptr, nullptr},
        {1, "mnuPrint", &t::MenuPrint, "document-print"},
        {1, nullptr, nullptr},
        {1, "mnuProperties", &t::MenuProperties},
        {1, nullptr, nullptr},
        {1, "mnuClose", &r::MenuClose},
        {0, "mnuEdit", &t::MenuEdit},
        {1, "mnuCopy", &t::MenuCopy},
        {1, "mnuSelectAll", &t::MenuSelectAll},
        {1, nullptr, nullptr},
        {1, "mnuFindMessage", &t::MenuFindMessage, "edit-find"},
        {1, nullptr, nullptr},
        {1, "mnuMoveToFolder", &t::MenuMoveToFolder},
        {1, "mnuDelete", &t::MenuDelete, "edit-delete"},
        {1, nullptr, nullptr},
        {1, "mnuMarkUnread", &t::MenuMarkUnread},
        {0, "mnuView", &t::MenuView},
        {1, "mnuPreviousMail", &r::MenuPreviousMessage},
        {1, "mnuNextMail", &r::MenuNextMessage},
        {1, nullptr, nullptr},
        {1, "mnuTextSize", &t::MenuTextSize},
        {1, "mnuEncoding", &t::MenuEncoding},
        {0, "mnuTools", &t::MenuTools},
        {1, "mnuAddressBook", &t::MenuAddressBook, "x-office-address-book"},
        {1, "mnuAddSender", &t::MenuAddSender},
        {0, "mnuMessage", &t::MenuMessage},
        {1, "mnuMsgNew", &t::MenuMsgNew},
        {1, nullptr, nullptr},
        {1, "mnuMsgReply", &r::MenuReply},
        {1, "mnuMsgReplyAll", &r::MenuReplyAll},
        {1, "mnuMsgForward", &r::MenuForward},
        {1, "mnuMsgForwardAttached", &t::MenuMsgForwardAttached},
        {0, "mnuHelp", &t::MenuHelp},
        {1, "mnuContents", &t::MenuContents},
        {1, nullptr, nullptr},
        {1, "mnuAbout", &t::MenuAbout},
    });

    // Not on the menu bar: it pops up over the attachment list.
    mnuPop = named(new QMenu(r::PopupTitle, this), u"mnuPop"_s);
    menuItem(mnuPop, u"mnuOpen"_s, r::PopupOpen);
    menuItem(mnuPop, u"mnuPrintAttachment"_s, r::PopupPrint);
    menuItem(mnuPop, u"mnuQuickView"_s, r::PopupQuickView);
    mnuSave = menuItem(mnuPop, u"mnuSave"_s, r::PopupSaveAs);
    mnuPop->addSeparator();
    menuItem(mnuPop, u"mnuAdd"_s, r::PopupAdd);
    menuItem(mnuPop, u"mnuRemove"_s, r::PopupRemove);
    connect(mnuSave, &QAction::triggered, this, &frmMailRead::mnuSave_Click);
}

void frmMailRead::buildToolbar()
{
    namespace r = texts::read;
    Toolbar1 = scaffold::fixedToolBar(this);
    m_buttons = scaffold::addTools(Toolbar1, {
        {"tbReply", &r::TbReply, &r::TbReplyTip, "mail-reply-sender"},
        {"tbReplyAll", &r::TbReplyAll, nullptr, "mail-reply-all"},
        {"tbForward", &r::TbForward, nullptr, "mail-forward"},
        {"tbSeparator4", nullptr, nullptr, nullptr},
        {"tbPrint", &r::TbPrint, nullptr, "document-print"},
        {"tbDelete", &r::TbDelete, nullptr, "edit-delete"},
        {"tbSeparator7", nullptr, nullptr, nullptr},
        {"tbPrevious", &r::TbPrevious, &r::TbPreviousTip, "go-previous"},
        {"tbNext", &r::TbNext, &r::TbNextTip, "go-next"},
        {"tbSeparator10", nullptr, nullptr, nullptr},
        {"tbAddressBook", &r::TbAddressBook, nullptr, "x-office-address-book"},
    }, [this](int index) { Toolbar1_ButtonClick(index); });

    // The menu entries that name a command do it, with the shortcuts their
    // captions show (and the next message's counterpart of CTRL+<).
    struct Command
    {
        const char *entry;
        int button;
        QList<QKeySequence> keys;
    };
    const Command commands[] = {
        {"mnuMsgReply", tbReply, {QKeySequence(Qt::CTRL | Qt::Key_R)}},
        {"mnuMsgReplyAll", tbReplyAll, {QKeySequence(Qt::CTRL | Qt::SHIFT | Qt::Key_R)}},
        {"mnuMsgForward", tbForward, {}},
        {"mnuPreviousMail", tbPrevious,
         {QKeySequence(Qt::CTRL | Qt::Key_Less), QKeySequence(Qt::CTRL | Qt::Key_Comma)}},
        {"mnuNextMail", tbNext,
         {QKeySequence(Qt::CTRL | Qt::Key_Greater), QKeySequence(Qt::CTRL | Qt::Key_Period)}},
    };
    for (const Command &c : commands) {
        const int button = c.button;
        connect(scaffold::action(this, c.entry), &QAction::triggered, this,
                [this, button] { Toolbar1_ButtonClick(button); });
        for (const QKeySequence &key : c.keys) {
            auto *shortcut = new QShortcut(key, this);
            connect(shortcut, &QShortcut::activated, this,
                    [this, button] { Toolbar1_ButtonClick(button); });
        }
    }
    connect(scaffold::action(this, "mnuClose"), &QAction::triggered, this, &QWidget::close);
    connect(new QShortcut(QKeySequence(Qt::Key_Escape), this), &QShortcut::activated, this,
            &QWidget::close);
    connect(scaffold::action(this, "mnuMsgNew"), &QAction::triggered, this,
            [] { frmMailEdit::openAs(Main::ComposeModes::New, MailRef()); });
}

void frmMailRead::buildPanes()
{
    auto *client = named(new QWidget(this), u"ClientArea"_s);
    setCentralWidget(client);

    // The header: captions on the left, values beside them, on white.
    auto *header = named(new QFrame(client), u"Frame1"_s);
    header->setFrameShape(QFrame::StyledPanel);
    header->setAutoFillBackground(true);
    QPalette white = header->palette();
    white.setColor(QPalette::Window, Qt::white);
    header->setPalette(white);

    Label1 = named(new QLabel(texts::PreviewFrom, header), u"Label1"_s);
    Label2 = named(new QLabel(texts::read::DateCaption, header), u"Label2"_s);
    Label3 = named(new QLabel(texts::PreviewTo, header), u"Label3"_s);
    Label4 = named(new QLabel(texts::PreviewSubject, header), u"Label4"_s);
    Label9 = named(new QLabel(texts::read::AttachmentsCaption, header), u"Label9"_s);
    Label5 = named(new QLabel(header), u"Label5"_s);
    Label6 = named(new QLabel(header), u"Label6"_s);
    Label7 = named(new QLabel(header), u"Label7"_s);
    Label8 = named(new QLabel(header), u"Label8"_s);
    for (QLabel *caption : {Label1, Label2, Label3, Label4, Label9}) {
        QFont f = caption->font();
        f.setBold(true);
        caption->setFont(f);
    }
    // A long address or subject is cut at the window's edge rather than
    // widening the window.
    for (QLabel *value : {Label5, Label6, Label7, Label8}) {
        value->setSizePolicy(QSizePolicy::Ignored, QSizePolicy::Preferred);
        value->setTextInteractionFlags(Qt::TextSelectableByMouse);
    }

    lvAddfile = named(new QListWidget(header), u"lvAddfile"_s);
    speak(lvAddfile, texts::a11y::Attachments, texts::a11y::AttachmentsHelp);
    lvAddfile->setViewMode(QListView::ListMode);
    lvAddfile->setFlow(QListView::LeftToRight);
    lvAddfile->setWrapping(false);
    lvAddfile->setFrameShape(QFrame::NoFrame);
    lvAddfile->setIconSize(QSize(16, 16));
    lvAddfile->setSpacing(2);
    lvAddfile->setFixedHeight(std::max(16, fontMetrics().height()) + 12);
    lvAddfile->viewport()->installEventFilter(this);
    lvAddfile->installEventFilter(this);

    auto *grid = new QGridLayout(header);
    grid->setContentsMargins(twips::toPixels(120), twips::toPixels(60), twips::toPixels(120),
                             twips::toPixels(60));
    grid->setHorizontalSpacing(twips::toPixels(120));
    grid->setVerticalSpacing(twips::toPixels(30));
    const QList<QPair<QLabel *, QWidget *>> rows = {
        {Label1, Label5}, {Label2, Label6}, {Label3, Label7}, {Label4, Label8}, {Label9, lvAddfile}};
    for (int r = 0; r < rows.size(); ++r) {
        grid->addWidget(rows[r].first, r, 0, Qt::AlignLeft | Qt::AlignVCenter);
        grid->addWidget(rows[r].second, r, 1);
    }
    grid->setColumnStretch(1, 1);
    Label9->hide();
    lvAddfile->hide();

    Text1 = named(new QTextEdit(client), u"Text1"_s);
    speak(Text1, texts::a11y::MessageBody);
    Text1->setReadOnly(true);
    Text1->setAcceptRichText(false);

    auto *column = new QVBoxLayout(client);
    column->setContentsMargins(0, 0, 0, 0);
    column->setSpacing(0);
    column->addWidget(header);
    column->addWidget(Text1, 1);

    StatusBar1 = named(statusBar(), u"StatusBar1"_s);
}

QAction *frmMailRead::toolbarButton(int index) const
{
    return (index >= 1 && index <= m_buttons.size()) ? m_buttons.at(index - 1) : nullptr;
}

// ---- Loading and showing a message --------------------------------------

void frmMailRead::open(const MailRef &message)
{
    frmMailRead *w = forms::MailRead();
    w->m_opened = message;
    scaffold::bringUp(w, [w] { w->Form_Load(); });
}

void frmMailRead::Form_Load()
{
    // The window lives on between openings; start from an empty one.
    for (QLabel *value : {Label5, Label6, Label7, Label8})
        value->clear();
    Text1->clear();
    lvAddfile->clear();
    Label9->hide();
    lvAddfile->hide();
    setWindowTitle(QString());
    m_folder = qint16(m_opened.folder);
    m_index = 0;
    m_mails.clear();
    if (!m_opened.isSet())
        return;

    const bool loaded = scaffold::guarded([this] {
        m_mails = store::Folder(m_folder);
        m_accounts = store::Accounts();
    });
    // The message opened is the one asked for, even where another one of
    // the folder has the same id (a message delivered to two accounts).
    const int at = loaded ? LocateMail(m_mails, m_opened) : -1;
    if (at < 0) {
        if (loaded)
            prompter().message(Prompter::Icon::Exclamation, texts::AppTitle, texts::MailGone);
        // Nothing to show: the window does not stay open empty.
        QTimer::singleShot(0, this, &QWidget::close);
        return;
    }
    m_index = at;
    showMail(at);
}

void frmMailRead::showMail(int index)
{
    const EmailRec &m = m_mails.at(index);
    Label5->setText(m.from);
    Label6->setText(m.datetime);
    Label7->setText(ToLine(m, m_folder == FolderFile::Inbox, m_accounts));
    // A long subject ends in "…" at the window's edge; the whole of it is
    // in the tooltip and the caption.
    Label8->setToolTip(m.subject);
    Label8->setText(Label8->fontMetrics().elidedText(m.subject, Qt::ElideRight,
                                                      qMax(Label8->width(), 1)));
    Text1->setPlainText(ToWidgetText(m.content));
    setWindowTitle(m.subject);

    const QString attachment = TrimSpaces(m.attachment);
    const bool hasAttachments = !attachment.isEmpty() && attachment.at(0) != QChar(u'\0');
    lvAddfile->clear();
    if (hasAttachments) {
        const QIcon icon = appIcon(u"mail-attachment"_s);
        for (const QString &piece : m.attachment.split(u' ', Qt::SkipEmptyParts))
            lvAddfile->addItem(new QListWidgetItem(icon, piece));
    }
    Label9->setVisible(hasAttachments);
    lvAddfile->setVisible(hasAttachments);

    markRead(index);
}

void frmMailRead::resizeEvent(QResizeEvent *event)
{
    QMainWindow::resizeEvent(event);
    if (!Label8->toolTip().isEmpty())
        Label8->setText(Label8->fontMetrics().elidedText(Label8->toolTip(), Qt::ElideRight,
                                                          qMax(Label8->width(), 1)));
}

void frmMailRead::markRead(int index)
{
    if (!m_mails.at(index).isUnread())
        return;
    // The main window learns of it from the store and redraws the row, the
    // counts and the captions itself.
    scaffold::guarded([&] { MarkRead({m_folder, index, m_mails.at(index)}); });
}

void frmMailRead::folderChanged(int folder)
{
    if (folder != m_folder || !isVisible() || m_index >= m_mails.size())
        return;
    // The window follows its folder, so that previous and next step through
    // what the folder now holds, from the message shown.
    const EmailRec shown = m_mails.at(m_index);
    MailList fresh;
    if (!scaffold::guarded([&] { fresh = store::Folder(m_folder); }))
        return;
    int found = m_index < fresh.size() && sameMessage(fresh.at(m_index), shown) ? m_index : -1;
    for (int i = 0; found < 0 && i < fresh.size(); ++i) {
        if (sameMessage(fresh.at(i), shown))
            found = i;
    }
    if (found < 0) {
        // Gone from the folder: the window still shows it and its commands
        // still quote it; stepping goes on from where it stood.
        found = int(qMin<qsizetype>(m_index, fresh.size()));
        fresh.insert(found, shown);
    }
    m_mails = fresh;
    m_index = found;
}

MailRef frmMailRead::shownMail() const
{
    if (m_index < 0 || m_index >= m_mails.size())
        return {};
    return {m_folder, m_index, m_mails.at(m_index)};
}

// ---- Commands -------------------------------------------------------------

void frmMailRead::reply(qint16 mode)
{
    const MailRef shown = shownMail();
    if (!shown.isSet())
        return;
    // The window stays when the compose window is busy with another message.
    if (frmMailEdit::openAs(mode, shown))
        close();
}

void frmMailRead::Toolbar1_ButtonClick(int index)
{
    switch (index) {
    case tbReply:
    case tbReplyAll:
        // Replying to all goes to the sender as a reply does; the program
        // has no second list of recipients to fill.
        reply(Main::ComposeModes::Reply);
        break;
    case tbForward:
        reply(Main::ComposeModes::Forward);
        break;
    case tbPrevious:
        if (m_index > 0)
            showMail(--m_index);
        break;
    case tbNext:
        if (m_index < m_mails.size() - 1)
            showMail(++m_index);
        break;
    default:
        // Print, delete and the address book are for show.
        break;
    }
}

bool frmMailRead::eventFilter(QObject *watched, QEvent *event)
{
    if (watched == lvAddfile->viewport() && event->type() == QEvent::MouseButtonRelease) {
        const auto *mouse = static_cast<QMouseEvent *>(event);
        if (mouse->button() == Qt::RightButton) {
            mnuPop->popup(lvAddfile->viewport()->mapToGlobal(mouse->position().toPoint()));
            return true;
        }
    }
    // From the keyboard the pop-up opens with the menu key.
    if (watched == lvAddfile && event->type() == QEvent::KeyPress
        && static_cast<QKeyEvent *>(event)->key() == Qt::Key_Menu) {
        const QListWidgetItem *item = lvAddfile->currentItem();
        mnuPop->popup(lvAddfile->viewport()->mapToGlobal(
            item ? lvAddfile->visualItemRect(item).center() : QPoint()));
        return true;
    }
    return QMainWindow::eventFilter(watched, event);
}

void frmMailRead::mnuSave_Click()
{
    QListWidgetItem *item = lvAddfile->currentItem();
    if (!item)
        item = lvAddfile->item(0);
    if (!item)
        return;
    const QString path = fileChooser().saveFileName(this, texts::read::SaveTitle, item->text(),
                                                    texts::read::SaveFilter);
    if (path.isEmpty())
        return;
    // There is no attachment data in this system: every saved attachment
    // is this one quoted line, added at the end of the file, so saving twice
    // leaves two. A file that is there already is only added to when the
    // user says so.
    if (QFileInfo::exists(path)
        && !prompter().confirm(Prompter::Icon::Question, texts::read::SaveTitle,
                               texts::read::AskAppendToFile.arg(QFileInfo(path).fileName()),
                               Prompter::Default::No))
        return;
    scaffold::guarded([&path] {
        QFile file(path);
        const QByteArray line = '"' + texts::read::AttachmentMarker.toLatin1() + "\"\r\n";
        if (!file.open(QIODevice::WriteOnly | QIODevice::Append) || file.write(line) != line.size()
            || !file.flush())
            throw FileError(texts::CannotWriteFile.arg(path, file.errorString()));
    });
}
