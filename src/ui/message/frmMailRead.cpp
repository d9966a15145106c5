#include "frmMailRead.h"

#include "sendrecv/recipients.h"
#include "store/errors.h"
#include "store/folders.h"
#include "store/mailboxes.h"
#include "store/state.h"
#include "store/textutil.h"
#include "texts.h"
#include "ui/common/filechooser.h"
#include "ui/common/icons.h"
#include "ui/common/twips.h"
#include "ui/common/widgets.h"
#include "ui/main/frmMain.h"

#include <QAction>
#include <QFile>
#include <QFrame>
#include <QGridLayout>
#include <QLabel>
#include <QListWidget>
#include <QMenu>
#include <QMenuBar>
#include <QMouseEvent>
#include <QPainter>
#include <QPolygonF>
#include <QShowEvent>
#include <QStatusBar>
#include <QTextEdit>
#include <QToolBar>
#include <QTreeWidget>
#include <QVBoxLayout>

#include <algorithm>

using namespace Qt::Literals::StringLiterals;

namespace {

// The previous and next buttons' arrows, drawn here because the icon set
// has none; every size the tool bar may ask for, so they stay crisp.
QIcon arrowIcon(bool pointsLeft)
{
    QIcon icon;
    for (int side : {16, 22, 24, 32, 33, 48}) {
        QPixmap pm(side, side);
        pm.fill(Qt::transparent);
        QPainter p(&pm);
        p.setRenderHint(QPainter::Antialiasing);
        const double s = side / 22.0;
        QPolygonF arrow({{3, 11}, {11, 3}, {11, 7.5}, {19, 7.5}, {19, 14.5}, {11, 14.5}, {11, 19}});
        for (QPointF &pt : arrow) {
            if (!pointsLeft)
                pt.setX(22 - pt.x());
            pt *= s;
        }
        p.setPen(QPen(QColor(0x20, 0x4a, 0x87), s));
        p.setBrush(QColor(0x72, 0x9f, 0xcf));
        p.drawPolygon(arrow);
        icon.addPixmap(pm);
    }
    return icon;
}

}  // namespace

frmMailRead::frmMailRead()
{
    setObjectName(u"frmMailRead"_s);
    setWindowIcon(appIcon(u"mail_generic"_s));

    buildMenus();
    buildToolbar();
    buildPanes();

    resize(twips::toPixels(DesignWidth), twips::toPixels(DesignHeight));
}

frmMailRead::~frmMailRead() = default;

// ---- Construction -------------------------------------------------------

// The menu bar of a read window. Its entries are there to be seen; the
// window acts through its tool bar and the attachment list's pop-up.
void frmMailRead::buildMenus()
{
    QMenuBar *bar = menuBar();
    bar->setObjectName(u"MenuBar"_s);

    QMenu *file = named(bar->addMenu(texts::MenuFile), u"mnuFile"_s);
    menuItem(file, u"mnuSaveAs"_s, texts::MenuSaveAs);
    menuItem(file, u"mnuSaveAttachments"_s, texts::MenuSaveAttachments);
    file->addSeparator();
    menuItem(file, u"mnuPrint"_s, texts::MenuPrint)->setIcon(appIcon(u"document-print"_s));
    file->addSeparator();
    menuItem(file, u"mnuProperties"_s, texts::MenuProperties);
    file->addSeparator();
    menuItem(file, u"mnuClose"_s, texts::read::MenuClose);

    QMenu *edit = named(bar->addMenu(texts::MenuEdit), u"mnuEdit"_s);
    menuItem(edit, u"mnuCopy"_s, texts::MenuCopy);
    menuItem(edit, u"mnuSelectAll"_s, texts::MenuSelectAll);
    edit->addSeparator();
    menuItem(edit, u"mnuFindMessage"_s, texts::MenuFindMessage)->setIcon(appIcon(u"edit-find"_s));
    edit->addSeparator();
    menuItem(edit, u"mnuMoveToFolder"_s, texts::MenuMoveToFolder);
    menuItem(edit, u"mnuDelete"_s, texts::MenuDelete)->setIcon(appIcon(u"edit-delete"_s));
    edit->addSeparator();
    menuItem(edit, u"mnuMarkUnread"_s, texts::MenuMarkUnread);

    QMenu *view = named(bar->addMenu(texts::MenuView), u"mnuView"_s);
    menuItem(view, u"mnuPreviousMail"_s, texts::read::MenuPreviousMessage);
    menuItem(view, u"mnuNextMail"_s, texts::read::MenuNextMessage);
    view->addSeparator();
    menuItem(view, u"mnuTextSize"_s, texts::MenuTextSize);
    menuItem(view, u"mnuEncoding"_s, texts::MenuEncoding);

    QMenu *tools = named(bar->addMenu(texts::MenuTools), u"mnuTools"_s);
    menuItem(tools, u"mnuAddressBook"_s, texts::MenuAddressBook)
        ->setIcon(appIcon(u"x-office-address-book"_s));
    menuItem(tools, u"mnuAddSender"_s, texts::MenuAddSender);

    QMenu *message = named(bar->addMenu(texts::MenuMessage), u"mnuMessage"_s);
    menuItem(message, u"mnuMsgNew"_s, texts::MenuMsgNew);
    message->addSeparator();
    menuItem(message, u"mnuMsgReply"_s, texts::read::MenuReply);
    menuItem(message, u"mnuMsgReplyAll"_s, texts::read::MenuReplyAll);
    menuItem(message, u"mnuMsgForward"_s, texts::read::MenuForward);
    menuItem(message, u"mnuMsgForwardAttached"_s, texts::MenuMsgForwardAttached);

    QMenu *help = named(bar->addMenu(texts::MenuHelp), u"mnuHelp"_s);
    menuItem(help, u"mnuContents"_s, texts::MenuContents);
    help->addSeparator();
    menuItem(help, u"mnuAbout"_s, texts::MenuAbout);

    // Not on the menu bar: it pops up over the attachment list.
    mnuPop = named(new QMenu(texts::read::PopupTitle, this), u"mnuPop"_s);
    menuItem(mnuPop, u"mnuOpen"_s, texts::read::PopupOpen);
    menuItem(mnuPop, u"mnuPrintAttachment"_s, texts::read::PopupPrint);
    menuItem(mnuPop, u"mnuQuickView"_s, texts::read::PopupQuickView);
    mnuSave = menuItem(mnuPop, u"mnuSave"_s, texts::read::PopupSaveAs);
    mnuPop->addSeparator();
    menuItem(mnuPop, u"mnuAdd"_s, texts::read::PopupAdd);
    menuItem(mnuPop, u"mnuRemove"_s, texts::read::PopupRemove);
    connect(mnuSave, &QAction::triggered, this, &frmMailRead::mnuSave_Click);
}

void frmMailRead::buildToolbar()
{
    Toolbar1 = named(addToolBar(QString()), u"Toolbar1"_s);
    Toolbar1->setToolButtonStyle(Qt::ToolButtonTextUnderIcon);
    Toolbar1->setIconSize(QSize(22, 22));
    Toolbar1->setMovable(false);
    Toolbar1->setFloatable(false);
    Toolbar1->toggleViewAction()->setEnabled(false);

    struct Button
    {
        const char *name;
        const QString *caption;
        const QString *tip;
        QIcon icon;
    };
    // In tool bar order; a null caption is a separator.
    const Button buttons[tbCount] = {
        {"tbReply", &texts::read::TbReply, &texts::read::TbReplyTip, appIcon(u"mail-reply-sender"_s)},
        {"tbReplyAll", &texts::read::TbReplyAll, &texts::read::TbReplyAll,
         appIcon(u"mail-reply-all"_s)},
        {"tbForward", &texts::read::TbForward, &texts::read::TbForward, appIcon(u"mail-forward"_s)},
        {"tbSeparator4", nullptr, nullptr, {}},
        {"tbPrint", &texts::read::TbPrint, &texts::read::TbPrint, appIcon(u"document-print"_s)},
        {"tbDelete", &texts::read::TbDelete, &texts::read::TbDelete, appIcon(u"edit-delete"_s)},
        {"tbSeparator7", nullptr, nullptr, {}},
        {"tbPrevious", &texts::read::TbPrevious, &texts::read::TbPreviousTip, arrowIcon(true)},
        {"tbNext", &texts::read::TbNext, &texts::read::TbNextTip, arrowIcon(false)},
        {"tbSeparator10", nullptr, nullptr, {}},
        {"tbAddressBook", &texts::read::TbAddressBook, &texts::read::TbAddressBook,
         appIcon(u"x-office-address-book"_s)},
    };
    for (const Button &b : buttons) {
        QAction *a = b.caption ? Toolbar1->addAction(b.icon, *b.caption) : Toolbar1->addSeparator();
        a->setObjectName(QLatin1StringView(b.name));
        if (b.tip)
            a->setToolTip(*b.tip);
        m_buttons.append(a);
    }
    for (int i = 1; i <= tbCount; ++i)
        connect(toolbarButton(i), &QAction::triggered, this, [this, i] { Toolbar1_ButtonClick(i); });
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
    lvAddfile->setViewMode(QListView::ListMode);
    lvAddfile->setFlow(QListView::LeftToRight);
    lvAddfile->setWrapping(false);
    lvAddfile->setFrameShape(QFrame::NoFrame);
    lvAddfile->setIconSize(QSize(16, 16));
    lvAddfile->setSpacing(2);
    lvAddfile->setFixedHeight(std::max(16, fontMetrics().height()) + 12);
    lvAddfile->viewport()->installEventFilter(this);

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

void frmMailRead::showEvent(QShowEvent *event)
{
    if (!event->spontaneous())
        Form_Load();
    QMainWindow::showEvent(event);
}

void frmMailRead::Form_Load()
{
    frmMain *main = forms::Main();
    // The Outbox is read first and then read over; the read stays, so that
    // a damaged Outbox stops this window as it always has.
    LoadEmails(FolderFile::Outbox, m_mails, m_mailCount);
    m_folder = main->CurrentFolder;
    LoadEmails(m_folder, m_mails, m_mailCount);
    m_accountCount = 0;
    LoadMailBoxes(m_accounts, m_accountCount);

    // The window lives on between openings; start from an empty one.
    for (QLabel *value : {Label5, Label6, Label7, Label8})
        value->clear();
    Text1->clear();
    lvAddfile->clear();
    Label9->hide();
    lvAddfile->hide();
    setWindowTitle(QString());
    m_index = 0;

    // The first message with the id is the one opened: a message delivered
    // to two local accounts lies in the Inbox twice under one id.
    for (int i = 0; i < m_mailCount; ++i) {
        if (TrimSpaces(m_mails[i].id) == main->CurrentMailId) {
            m_index = i;
            showMail(i);
            break;
        }
    }
}

void frmMailRead::showMail(int index)
{
    const EmailRec &m = m_mails.at(index);
    Label5->setText(m.from);
    Label6->setText(m.datetime);

    // In the Inbox the To line names the local account the message reached.
    // The last account examined decides: its address when the message was
    // sent to it, else the message's own To text.
    const QString recipients = RecipientText(TrimSpaces(m.alsoto), TrimSpaces(m.to));
    QString toLine = m.to;
    const int examined = std::min<int>(m_accountCount, MAX_MAILBOXES);
    for (int i = 0; i < examined; ++i) {
        const QString &address = m_accounts[i].address;
        toLine = (m_folder == FolderFile::Inbox && AddressMatches(recipients, address)) ? address
                                                                                          : m.to;
    }
    Label7->setText(toLine);
    Label8->setText(m.subject);
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

void frmMailRead::markRead(int index)
{
    EmailRec &m = m_mails[index];
    if (m.isnew != u"1")
        return;
    m.isnew = u"0"_s;
    SaveEmails(m_folder, m_mails, m_mailCount);

    frmMain *main = forms::Main();
    // Rows of the main list are the folder's messages in file order.
    if (QTreeWidgetItem *row = main->ListView1->topLevelItem(index)) {
        for (int c = 0; c < main->ListView1->columnCount(); ++c) {
            QFont f = row->font(c);
            f.setBold(false);
            row->setFont(c, f);
        }
    }
    if (m_folder == FolderFile::Inbox)
        --main->InboxUnread;
    else if (m_folder == FolderFile::DeletedItems)
        --main->DeletedUnread;
    main->ShowUnreadCaptions();
}

// ---- Commands -------------------------------------------------------------

void frmMailRead::Toolbar1_ButtonClick(int index)
{
    switch (index) {
    case tbReply:
        Main::ComposeMode = Main::ComposeModes::Reply;
        emit mailEditRequested();
        close();
        break;
    case tbForward:
        Main::ComposeMode = Main::ComposeModes::Forward;
        emit mailEditRequested();
        close();
        break;
    case tbPrevious:
        if (m_index > 0)
            showMail(--m_index);
        break;
    case tbNext:
        if (m_index < m_mailCount - 1)
            showMail(++m_index);
        break;
    default:
        // Reply to all, print, delete and the address book are for show.
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
    // is this one quoted line, appended, so saving twice leaves two.
    QFile file(path);
    const QByteArray line = '"' + texts::read::AttachmentMarker.toLatin1() + "\"\r\n";
    if (!file.open(QIODevice::WriteOnly | QIODevice::Append) || file.write(line) != line.size()
        || !file.flush())
        throw FileError(texts::CannotWriteFile.arg(path, file.errorString()));
}
