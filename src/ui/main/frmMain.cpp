#include "frmMain.h"

#include "foldernodes.h"
#include "mainlayout.h"
#include "sendrecv/engine.h"
#include "sendrecv/frmSendAndReceive.h"
#include "store/errors.h"
#include "store/folders.h"
#include "store/prompter.h"
#include "store/state.h"
#include "texts.h"
#include "ui/about/frmAbout.h"
#include "ui/accounts/ensuremailbox.h"
#include "ui/accounts/frmMailBox.h"
#include "ui/common/fonts.h"
#include "ui/common/icons.h"
#include "ui/common/twips.h"
#include "ui/common/widgets.h"
#include "ui/message/frmMailEdit.h"
#include "ui/message/frmMailRead.h"

#include <QAction>
#include <QApplication>
#include <QCloseEvent>
#include <QFrame>
#include <QGuiApplication>
#include <QHeaderView>
#include <QLabel>
#include <QLayout>
#include <QLinearGradient>
#include <QMenu>
#include <QMenuBar>
#include <QMouseEvent>
#include <QPushButton>
#include <QScreen>
#include <QShortcut>
#include <QStatusBar>
#include <QTextEdit>
#include <QToolBar>
#include <QToolButton>
#include <QTreeWidget>

#include <algorithm>

using namespace Qt::Literals::StringLiterals;

namespace {

void place(QWidget *w, const twips::Rect &r)
{
    // A move to a negative size fails and the widget stays where it was;
    // the rest of the layout still runs.
    if (fits(r))
        w->setGeometry(twips::toPixels(r.left, r.top, r.width, r.height));
}

}  // namespace

frmMain::frmMain()
{
    setObjectName(u"frmMain"_s);
    setWindowTitle(texts::AppTitle);
    setWindowIcon(appIcon(u"internet-mail"_s));
    setFont(fonts::uiFont());

    buildMenus();
    buildPanes();
    buildToolbar();
    buildStatusBar();
    connectHandlers();

    resize(twips::toPixels(DesignWidth), twips::toPixels(DesignHeight));
}

frmMain::~frmMain() = default;

// ---- Construction -------------------------------------------------------

void frmMain::buildMenus()
{
    QMenuBar *bar = menuBar();
    bar->setObjectName(u"MenuBar"_s);

    QMenu *file = named(bar->addMenu(texts::MenuFile), u"mnuFile"_s);
    QMenu *fileNew = named(file->addMenu(texts::MenuFileNew), u"mnuFileNew"_s);
    AddNewMail = menuItem(fileNew, u"AddNewMail"_s, texts::MenuNewMail);
    AddNewMail->setIcon(appIcon(u"mail-message-new"_s));
    fileNew->addSeparator();
    menuItem(fileNew, u"mnuNewPost"_s, texts::MenuNewPost);
    menuItem(fileNew, u"mnuNewContact"_s, texts::MenuNewContact);
    menuItem(fileNew, u"mnuNewFolder"_s, texts::MenuNewFolder);
    menuItem(file, u"mnuOpen"_s, texts::MenuOpen);
    file->addSeparator();
    menuItem(file, u"mnuSaveAs"_s, texts::MenuSaveAs);
    menuItem(file, u"mnuSaveAttachments"_s, texts::MenuSaveAttachments);
    file->addSeparator();
    menuItem(file, u"mnuImport"_s, texts::MenuImport);
    menuItem(file, u"mnuExport"_s, texts::MenuExport);
    file->addSeparator();
    menuItem(file, u"mnuPrint"_s, texts::MenuPrint)->setIcon(appIcon(u"document-print"_s));
    file->addSeparator();
    menuItem(file, u"mnuSwitchIdentity"_s, texts::MenuSwitchIdentity);
    menuItem(file, u"mnuProperties"_s, texts::MenuProperties);
    file->addSeparator();
    F20 = menuItem(file, u"F20"_s, texts::MenuExit);

    QMenu *edit = named(bar->addMenu(texts::MenuEdit), u"mnuEdit"_s);
    menuItem(edit, u"mnuCopy"_s, texts::MenuCopy);
    menuItem(edit, u"mnuSelectAll"_s, texts::MenuSelectAll);
    edit->addSeparator();
    menuItem(edit, u"mnuFindMessage"_s, texts::MenuFindMessage)->setIcon(appIcon(u"edit-find"_s));
    edit->addSeparator();
    menuItem(edit, u"mnuMoveToFolder"_s, texts::MenuMoveToFolder);
    menuItem(edit, u"mnuCopyToFolder"_s, texts::MenuCopyToFolder);
    menuItem(edit, u"mnuDelete"_s, texts::MenuDelete)->setIcon(appIcon(u"edit-delete"_s));
    edit->addSeparator();
    menuItem(edit, u"mnuMarkRead"_s, texts::MenuMarkRead);
    menuItem(edit, u"mnuMarkUnread"_s, texts::MenuMarkUnread);
    menuItem(edit, u"mnuMarkAllRead"_s, texts::MenuMarkAllRead);

    QMenu *view = named(bar->addMenu(texts::MenuView), u"mnuView"_s);
    menuItem(view, u"mnuCurrentView"_s, texts::MenuCurrentView);
    menuItem(view, u"mnuSortBy"_s, texts::MenuSortBy);
    view->addSeparator();
    menuItem(view, u"mnuColumns"_s, texts::MenuColumns);
    menuItem(view, u"mnuLayout"_s, texts::MenuLayout);
    view->addSeparator();
    menuItem(view, u"mnuTextSize"_s, texts::MenuTextSize);
    menuItem(view, u"mnuEncoding"_s, texts::MenuEncoding);
    view->addSeparator();
    menuItem(view, u"mnuPrevious"_s, texts::MenuPrevious);
    menuItem(view, u"mnuNext"_s, texts::MenuNext);
    menuItem(view, u"mnuGoToFolder"_s, texts::MenuGoToFolder);
    view->addSeparator();
    menuItem(view, u"mnuStop"_s, texts::MenuStop);
    menuItem(view, u"mnuRefresh"_s, texts::MenuRefresh);

    QMenu *tools = named(bar->addMenu(texts::MenuTools), u"mnuTools"_s);
    QMenu *sendReceive = named(tools->addMenu(texts::MenuSendReceive), u"mnuSendReceive"_s);
    sendReceive->setIcon(appIcon(u"mail-send-receive"_s));
    mnuRSMail = menuItem(sendReceive, u"mnuRSMail"_s, texts::MenuRSMail);
    sendReceive->addSeparator();
    mnuReceiveMail = menuItem(sendReceive, u"mnuReceiveMail"_s, texts::MenuReceiveMail);
    mnuSendMail = menuItem(sendReceive, u"mnuSendMail"_s, texts::MenuSendMail);
    menuItem(tools, u"mnuSynchronize"_s, texts::MenuSynchronize);
    tools->addSeparator();
    menuItem(tools, u"mnuAddressBook"_s, texts::MenuAddressBook)
        ->setIcon(appIcon(u"x-office-address-book"_s));
    menuItem(tools, u"mnuAddSender"_s, texts::MenuAddSender);
    tools->addSeparator();
    menuItem(tools, u"mnuRules"_s, texts::MenuRules);
    tools->addSeparator();
    T9 = menuItem(tools, u"T9"_s, texts::MenuAccounts);
    menuItem(tools, u"mnuOptions"_s, texts::MenuOptions);

    QMenu *message = named(bar->addMenu(texts::MenuMessage), u"mnuMessage"_s);
    menuItem(message, u"mnuMsgNew"_s, texts::MenuMsgNew);
    message->addSeparator();
    menuItem(message, u"mnuMsgReply"_s, texts::MenuMsgReply);
    menuItem(message, u"mnuMsgReplyAll"_s, texts::MenuMsgReplyAll);
    menuItem(message, u"mnuMsgForward"_s, texts::MenuMsgForward);
    menuItem(message, u"mnuMsgForwardAttached"_s, texts::MenuMsgForwardAttached);
    message->addSeparator();
    menuItem(message, u"mnuMsgBlockSender"_s, texts::MenuMsgBlockSender);

    QMenu *help = named(bar->addMenu(texts::MenuHelp), u"mnuHelp"_s);
    menuItem(help, u"mnuContents"_s, texts::MenuContents);
    menuItem(help, u"mnuOnline"_s, texts::MenuOnline);
    help->addSeparator();
    H6 = menuItem(help, u"H6"_s, texts::MenuAbout);
}

void frmMain::buildToolbar()
{
    CoolBar1 = named(new QFrame(centralWidget()), u"CoolBar1"_s);
    CoolBar1->setFrameShape(QFrame::StyledPanel);
    CoolBar1->setFrameShadow(QFrame::Raised);
    Toolbar1 = named(new QToolBar(CoolBar1), u"Toolbar1"_s);
    Toolbar1->setToolButtonStyle(Qt::ToolButtonTextUnderIcon);
    Toolbar1->setIconSize(QSize(22, 22));
    Toolbar1->setMovable(false);
    // Compact buttons: the band and the pane header must fit in the 1170
    // twips above the panes.
    Toolbar1->setContentsMargins(0, 0, 0, 0);
    Toolbar1->layout()->setContentsMargins(0, 0, 0, 0);
    Toolbar1->layout()->setSpacing(0);

    struct Button
    {
        const char *name;
        const QString *caption;
        const QString *tip;
        const char *icon;
    };
    // In toolbar order; a null caption is a separator.
    const Button buttons[tbCount] = {
        {"tbNewMail", &texts::TbNewMail, &texts::TbNewMail, "mail-message-new"},
        {"tbReply", &texts::TbReply, &texts::TbReplyTip, "mail-reply-sender"},
        {"tbReplyAll", &texts::TbReplyAll, &texts::TbReplyAllTip, "mail-reply-all"},
        {"tbForward", &texts::TbForward, &texts::TbForward, "mail-forward"},
        {"tbSeparator5", nullptr, nullptr, nullptr},
        {"tbPrint", &texts::TbPrint, &texts::TbPrint, "document-print"},
        {"tbDelete", &texts::TbDelete, &texts::TbDelete, "edit-delete"},
        {"tbSeparator8", nullptr, nullptr, nullptr},
        {"tbSendReceive", &texts::TbSendReceive, &texts::SendAndReceiveAll, "mail-send-receive"},
        {"tbSeparator10", nullptr, nullptr, nullptr},
        {"tbAddressBook", &texts::TbAddressBook, &texts::TbAddressBook, "x-office-address-book"},
        {"tbFind", &texts::TbFind, &texts::TbFind, "edit-find"},
        {"tbSeparator13", nullptr, nullptr, nullptr},
        {"tbEncoding", &texts::TbEncoding, &texts::TbEncoding, "preferences-desktop-locale"},
    };
    for (const Button &b : buttons) {
        QAction *a = b.caption ? Toolbar1->addAction(appIcon(QLatin1StringView(b.icon)), *b.caption)
                               : Toolbar1->addSeparator();
        a->setObjectName(QLatin1StringView(b.name));
        if (b.tip)
            a->setToolTip(*b.tip);
        m_buttons.append(a);
    }

    sendReceiveMenu = named(new QMenu(this), u"sendReceiveMenu"_s);
    sendReceiveMenu->addAction(texts::SendAndReceiveAll, this, &frmMain::mnuRSMail_Click);
    sendReceiveMenu->addAction(texts::ReceiveAll, this, &frmMain::mnuReceiveMail_Click);
    sendReceiveMenu->addAction(texts::SendAll, this, &frmMain::mnuSendMail_Click);
    QAction *sendReceive = toolbarButton(tbSendReceive);
    sendReceive->setMenu(sendReceiveMenu);
    if (auto *button = qobject_cast<QToolButton *>(Toolbar1->widgetForAction(sendReceive)))
        button->setPopupMode(QToolButton::MenuButtonPopup);

    Toolbar1->adjustSize();
    CoolBar1->setGeometry(0, 0, width(), Toolbar1->sizeHint().height() + 2);
    Toolbar1->move(1, 1);
}

void frmMain::buildPanes()
{
    auto *client = named(new QWidget(this), u"ClientArea"_s);
    setCentralWidget(client);

    // Pane header: the shown folder's picture and name across the window.
    Label1 = named(new QLabel(texts::AppTitle, client), u"Label1"_s);
    // Palettes rather than style sheets: a style sheet costs start-up time
    // in every widget it reaches.
    {
        QLinearGradient band(0, 0, 1, 0);
        band.setCoordinateMode(QGradient::ObjectMode);
        band.setColorAt(0, QColor(0x3a, 0x5f, 0x8f));
        band.setColorAt(1, QColor(0x8a, 0xa6, 0xc8));
        QPalette p = Label1->palette();
        p.setBrush(QPalette::Window, band);
        p.setColor(QPalette::WindowText, Qt::white);
        Label1->setPalette(p);
        Label1->setAutoFillBackground(true);
        QFont f = Label1->font();
        f.setPointSize(12);
        f.setBold(true);
        Label1->setFont(f);
    }
    Image1 = named(new QLabel(client), u"Image1"_s);
    Image1->setPixmap(appIcon(u"internet-mail"_s).pixmap(QSize(24, 24)));

    TreeView1 = named(new QTreeWidget(client), u"TreeView1"_s);
    TreeView1->setHeaderHidden(true);
    TreeView1->setColumnCount(1);
    TreeView1->setIconSize(QSize(16, 16));

    // Start page; the other two pages lie on top of it when shown.
    Frame4 = named(new QFrame(client), u"Frame4"_s);
    Frame4->setFrameShape(QFrame::StyledPanel);
    Picture1 = named(new QLabel(Frame4), u"Picture1"_s);
    Picture1->setAlignment(Qt::AlignCenter);
    Picture1->setWordWrap(true);
    {
        QLinearGradient ground(0, 0, 0, 1);
        ground.setCoordinateMode(QGradient::ObjectMode);
        ground.setColorAt(0, Qt::white);
        ground.setColorAt(1, QColor(0xdb, 0xe6, 0xf3));
        QPalette p = Picture1->palette();
        p.setBrush(QPalette::Window, ground);
        p.setColor(QPalette::WindowText, QColor(0x2b, 0x3f, 0x5c));
        Picture1->setPalette(p);
        Picture1->setAutoFillBackground(true);
    }
    Picture1->setText(u"<p style='font-size:22pt; font-weight:bold; color:#2f5584'>%1</p>"
                      "<p style='font-size:12pt'>%2</p><p style='font-size:9pt; color:#55657a'>%3</p>"_s
                          .arg(texts::AppTitle, texts::StartPageWelcome, texts::StartPageHint));

    // Folder summary.
    Frame5 = named(new QFrame(client), u"Frame5"_s);
    Frame5->setFrameShape(QFrame::StyledPanel);
    Label11 = named(new QLabel(Frame5), u"Label11"_s);
    {
        QPalette p = Label11->palette();
        p.setColor(QPalette::Window, Qt::white);
        Label11->setPalette(p);
        Label11->setAutoFillBackground(true);
    }
    Label10 = named(new QLabel(Frame5), u"Label10"_s);
    Label10->setPixmap(appIcon(u"folder"_s).pixmap(32, 32));
    Label2 = named(new QLabel(texts::LocalFolders, Frame5), u"Label2"_s);
    {
        QFont f = Label2->font();
        f.setPointSize(14);
        f.setBold(true);
        Label2->setFont(f);
        QPalette p = Label2->palette();
        p.setColor(QPalette::WindowText, QColor(0x2f, 0x55, 0x84));
        Label2->setPalette(p);
    }
    Label3 = named(new QLabel(texts::LocalFoldersNote, Frame5), u"Label3"_s);
    Label3->setWordWrap(true);
    Command11 = named(new QPushButton(texts::SendAndReceiveAll, Frame5), u"Command11"_s);
    Command11->setIcon(appIcon(u"mail-send-receive"_s));
    ListView2 = named(new QTreeWidget(Frame5), u"ListView2"_s);
    ListView2->setRootIsDecorated(false);
    ListView2->setColumnCount(3);
    ListView2->setHeaderLabels({texts::SummaryFolderColumn, texts::SummaryUnreadColumn,
                                texts::SummaryTotalColumn});
    ListView2->setColumnWidth(0, twips::toPixels(2600));
    ListView2->setColumnWidth(1, twips::toPixels(1000));

    // Message page: list above, preview below.
    Frame2 = named(new QFrame(client), u"Frame2"_s);
    ListView1 = named(new QTreeWidget(Frame2), u"ListView1"_s);
    ListView1->setRootIsDecorated(false);
    ListView1->setUniformRowHeights(true);
    ListView1->setColumnCount(6);
    ListView1->setHeaderLabels({QString(), QString(), texts::ColumnFrom, texts::ColumnSubject,
                                texts::ColumnReceived, QString()});
    ListView1->headerItem()->setIcon(0, appIcon(u"mail-attachment"_s));
    const int columnTwips[] = {420, 300, 2700, 3900, 1800, 1200};
    for (int c = 0; c < 6; ++c)
        ListView1->setColumnWidth(c, twips::toPixels(columnTwips[c]));

    Frame3 = named(new QFrame(Frame2), u"Frame3"_s);
    Frame3->setAutoFillBackground(true);
    Line1 = named(new QFrame(Frame3), u"Line1"_s);
    Line2 = named(new QFrame(Frame3), u"Line2"_s);
    Line3 = named(new QFrame(Frame3), u"Line3"_s);
    for (QFrame *line : {Line1, Line2, Line3}) {
        line->setFrameShape(QFrame::HLine);
        line->setFrameShadow(QFrame::Sunken);
    }
    Label4 = named(new QLabel(texts::PreviewFrom, Frame3), u"Label4"_s);
    Label5 = named(new QLabel(Frame3), u"Label5"_s);
    Label6 = named(new QLabel(texts::PreviewTo, Frame3), u"Label6"_s);
    Label7 = named(new QLabel(Frame3), u"Label7"_s);
    Label8 = named(new QLabel(texts::PreviewSubject, Frame3), u"Label8"_s);
    Label9 = named(new QLabel(Frame3), u"Label9"_s);
    for (QLabel *caption : {Label4, Label6, Label8}) {
        QFont f = caption->font();
        f.setBold(true);
        caption->setFont(f);
    }
    Text1 = named(new QTextEdit(Frame3), u"Text1"_s);
    Text1->setReadOnly(true);
    Text1->setAcceptRichText(false);

    // Design-time places of the preview header, in twips: captions on the
    // left, values beside them; the To line is stacked under From.
    const int lineTwips = int(twips::fromPixels(QFontMetrics(Label5->font()).height()));
    Label4->setGeometry(twips::toPixels(60, 60, 900, lineTwips));
    Label5->setGeometry(twips::toPixels(960, 60, 4000, lineTwips));
    Label6->setGeometry(twips::toPixels(60, 0, 900, lineTwips));
    Label7->setGeometry(twips::toPixels(960, 0, 4000, lineTwips));
    stackPreviewLabels();
    Label8->setGeometry(twips::toPixels(60, 0, 900, lineTwips));
    Label9->setGeometry(twips::toPixels(960, 0, 4000, lineTwips));
    // The subject shares the caption line of To, so that the header stays
    // three lines high.
    Label8->move(Label8->x(), Label6->y());
    Label9->move(Label9->x(), Label6->y());
    m_previewHeaderBottom = twips::fromPixels(Label7->geometry().bottom() + 1) + 60;

    // Z-order: the start page at the bottom, the summary over it, the
    // message page over both.
    Frame4->lower();
    Frame2->raise();
}

void frmMain::buildStatusBar()
{
    StatusBar1 = named(new QStatusBar(this), u"StatusBar1"_s);
    setStatusBar(StatusBar1);
    StatusBar1->setSizeGripEnabled(false);
    StatusBar1->setFixedHeight(std::max(twips::toPixels(280), QFontMetrics(font()).height() + 4));
    StatusPanel1 = named(new QLabel(StatusBar1), u"StatusPanel1"_s);
    StatusPanel2 = named(new QLabel(StatusBar1), u"StatusPanel2"_s);
    registerImages();
    StatusPanel2->setText(u"<img src=':/icons/16x16/network-idle.png' width=14 height=14"
                          " style='vertical-align:middle'>&nbsp;"_s + texts::WorkingOnline);
    StatusPanel2->setTextFormat(Qt::RichText);
    StatusBar1->addWidget(StatusPanel1);
    StatusBar1->addPermanentWidget(StatusPanel2, 1);
}

void frmMain::connectHandlers()
{
    connect(TreeView1, &QTreeWidget::itemClicked, this, &frmMain::TreeView1_NodeClick);
    // The lists' clicks are taken from their viewports, so that a click
    // beside the rows and the pressed button are seen too.
    ListView1->viewport()->installEventFilter(this);
    ListView2->viewport()->installEventFilter(this);
    centralWidget()->installEventFilter(this);

    for (int i = 1; i <= tbCount; ++i) {
        connect(toolbarButton(i), &QAction::triggered, this, [this, i] { Toolbar1_ButtonClick(i); });
    }
    connect(AddNewMail, &QAction::triggered, this, &frmMain::AddNewMail_Click);
    connect(F20, &QAction::triggered, this, &frmMain::F20_Click);
    connect(mnuRSMail, &QAction::triggered, this, &frmMain::mnuRSMail_Click);
    connect(mnuReceiveMail, &QAction::triggered, this, &frmMain::mnuReceiveMail_Click);
    connect(mnuSendMail, &QAction::triggered, this, &frmMain::mnuSendMail_Click);
    connect(T9, &QAction::triggered, this, &frmMain::T9_Click);
    connect(H6, &QAction::triggered, this, &frmMain::H6_Click);
    connect(Command11, &QPushButton::clicked, this, &frmMain::Command11_Click);
    // The read window is modeless; asked again while it is open, it comes
    // to the front with the message it already shows.
    connect(this, &frmMain::mailReadRequested, this, [this] {
        frmMailRead *read = forms::MailRead();
        // Its reply and forward have set ComposeMode for the compose window.
        connect(read, &frmMailRead::mailEditRequested, this, &frmMain::showMailEdit,
                Qt::UniqueConnection);
        read->show();
        read->raise();
        read->activateWindow();
    });
    // A double-click on unsent mail has set ComposeMode to re-open it.
    connect(this, &frmMain::mailEditRequested, this, &frmMain::showMailEdit);
    // The caption shows CTRL+M itself, so the key works through a shortcut
    // of the window rather than one the menu would print a second time.
    auto *ctrlM = new QShortcut(QKeySequence(Qt::CTRL | Qt::Key_M), this);
    connect(ctrlM, &QShortcut::activated, this, &frmMain::mnuRSMail_Click);
}

QAction *frmMain::toolbarButton(int index) const
{
    return (index >= 1 && index <= m_buttons.size()) ? m_buttons.at(index - 1) : nullptr;
}

// ---- Start-up, layout, closing ------------------------------------------

void frmMain::showEvent(QShowEvent *event)
{
    QMainWindow::showEvent(event);
    if (!m_loaded) {
        m_loaded = true;
        Form_Load();
    }
}

void frmMain::Form_Load()
{
    // Close to the top-left corner, a hundredth of the free space in: the
    // window is meant to open there, not centred.
    if (const QScreen *screen = QGuiApplication::primaryScreen()) {
        const QSize screenTw(int(twips::fromPixels(screen->geometry().width())),
                             int(twips::fromPixels(screen->geometry().height())));
        const QPoint at = twips::nearTopLeft(screenTw, QSize(DesignWidth, DesignHeight));
        move(screen->geometry().topLeft()
             + QPoint(twips::toPixels(at.x()), twips::toPixels(at.y())));
    }

    InboxUnread = CountUnread(FolderFile::Inbox);
    DeletedUnread = CountUnread(FolderFile::DeletedItems);
    buildTree();
    node(Node::Root)->setExpanded(true);
    node(Node::LocalFolders)->setExpanded(true);
    FillFolderSummary();

    Frame2->hide();
    Frame5->hide();
    TreeView1->setCurrentItem(nullptr);
    TreeView1->clearSelection();
    SetToolbarState(ToolbarState::StartPage);
    Form_Resize();
}

void frmMain::Form_Resize()
{
    const double W = twips::fromPixels(centralWidget()->width());
    const double H = twips::fromPixels(centralWidget()->height() + StatusBar1->height());
    alignDockedWidgets(centralWidget()->width());

    const MainLayout l = mainLayout(W, H);
    place(Frame4, l.Frame4);
    place(Picture1, l.Picture1);
    place(TreeView1, l.TreeView1);
    place(Frame5, l.Frame5);
    place(ListView2, l.ListView2);
    place(Label11, l.Label11);
    place(Frame2, l.Frame2);
    place(ListView1, l.ListView1);
    place(Frame3, l.Frame3);
    twips::Rect text = l.Text1;
    // The stacked To line is taller than the 600 twips the body box leaves
    // with a CJK face; the box then starts below it and keeps its bottom.
    if (text.top < m_previewHeaderBottom) {
        text.height -= m_previewHeaderBottom - text.top;
        text.top = m_previewHeaderBottom;
    }
    place(Text1, text);
    if (l.statusPanel1Width >= 0)
        StatusPanel1->setFixedWidth(twips::toPixels(l.statusPanel1Width));

    // The lines and value labels of the preview follow its width.
    const int w = Frame3->width();
    Line1->setGeometry(0, 0, w, 2);
    Line2->setGeometry(0, Text1->y() - 3, w, 2);
    Line3->setGeometry(0, Frame3->height() - 2, w, 2);
    for (QLabel *value : {Label5, Label7})
        value->resize(std::max(0, w - value->x() - 8), value->height());
    Label8->move(std::max(Label7->x() + 8, w / 2), Label8->y());
    Label9->setGeometry(Label8->x() + Label8->width(), Label9->y(),
                        std::max(0, w - Label8->x() - Label8->width() - 8), Label9->height());
}

// Widgets that hug an edge of the client area rather than being moved by
// the layout table: the toolbar's band and the pane header under it.
void frmMain::alignDockedWidgets(int clientWidthPx)
{
    CoolBar1->setGeometry(0, 0, clientWidthPx, CoolBar1->height());
    Toolbar1->resize(std::max(Toolbar1->sizeHint().width(), clientWidthPx - 2),
                     Toolbar1->sizeHint().height());
    const int bandTop = CoolBar1->height();
    const int bandHeight = std::max(0, twips::toPixels(1170) - bandTop);
    Label1->setGeometry(0, bandTop, clientWidthPx, bandHeight);
    const int picture = std::min(24, bandHeight);
    Label1->setIndent(picture + 12);
    Image1->setGeometry(6, bandTop + (bandHeight - picture) / 2, picture, picture);
    Image1->raise();
    // Frame5 and its texts: heading and note above the summary list.
    const int top = twips::toPixels(90);
    Label10->setGeometry(twips::toPixels(180), top, 32, 32);
    Label2->setGeometry(Label10->geometry().right() + 10, top, 400, 32);
    Label3->setGeometry(Label2->x(), top + 36, std::max(0, Frame5->width() - Label2->x() - 20),
                        QFontMetrics(Label3->font()).height() + 2);
    Command11->adjustSize();
    Command11->move(std::max(Label2->x(), Frame5->width() - twips::toPixels(60) - Command11->width()
                                              - twips::toPixels(60)),
                    top);
}

bool frmMain::eventFilter(QObject *watched, QEvent *event)
{
    if (watched == centralWidget() && event->type() == QEvent::Resize) {
        Form_Resize();
        return false;
    }
    const bool list1 = watched == ListView1->viewport();
    const bool list2 = watched == ListView2->viewport();
    if ((list1 || list2) && !m_forwarding) {
        const auto type = event->type();
        const bool leftRelease = type == QEvent::MouseButtonRelease
            && static_cast<QMouseEvent *>(event)->button() == Qt::LeftButton;
        const bool doubleClick = list1 && type == QEvent::MouseButtonDblClick;
        if (leftRelease || doubleClick) {
            // The view sees the event first, so that its selection is up to
            // date when the handler runs.
            m_forwarding = true;
            QCoreApplication::sendEvent(watched, event);
            m_forwarding = false;
            if (doubleClick)
                ListView1_DblClick();
            else if (list1)
                ListView1_Click();
            else
                ListView2_Click();
            return true;
        }
    }
    return QMainWindow::eventFilter(watched, event);
}

void frmMain::closeEvent(QCloseEvent *event)
{
    // The program ends with this window, so every other window goes with
    // it; a compose window whose user keeps an unsent message keeps the
    // program open as well.
    if (Form_Unload() && closeOtherWindows()) {
        event->accept();
        m_loaded = false;
    } else {
        event->ignore();
    }
}

bool frmMain::Form_Unload()
{
    EmailArray outbox;
    ::MailCount count = 0;
    LoadEmails(FolderFile::Outbox, outbox, count);
    if (count >= 1
        && prompter().confirm(Prompter::Icon::Exclamation, texts::AppTitle,
                              texts::AskSendOutboxOnClose)) {
        mnuSendMail_Click();
        // A run that found a message it may not send never finishes by
        // itself; it is closed here and the user told why.
        frmSendAndReceive *run = forms::SendAndReceive();
        if (run->isVisible() && run->SendFailed) {
            run->close();
            prompter().message(Prompter::Icon::Information, texts::NameCheckTitle,
                               texts::NameCheckFailed);
        }
    }
    // Nothing is saved here: every change went to the files when it was made.
    return true;
}

bool frmMain::closeOtherWindows()
{
    bool allClosed = true;
    const QWidgetList windows = QApplication::topLevelWidgets();
    for (QWidget *w : windows) {
        if (w != this && w->isVisible() && w->isWindow() && !w->inherits("QMenu")) {
            w->close();
            allClosed = allClosed && !w->isVisible();
        }
    }
    return allClosed;
}

// ---- Commands -------------------------------------------------------------

void frmMain::Toolbar1_ButtonClick(int index)
{
    switch (index) {
    case tbNewMail:
        AddNewMail_Click();
        break;
    case tbReply:
        openCompose(Main::ComposeModes::Reply);
        break;
    case tbForward:
        openCompose(Main::ComposeModes::Forward);
        break;
    case tbDelete:
        Delete_Click();
        break;
    case tbSendReceive:
        mnuRSMail_Click();
        break;
    default:
        // Reply All is shown and enabled like Reply but does nothing, on
        // purpose; Print and the rest are there for show.
        break;
    }
}

void frmMain::openCompose(qint16 mode)
{
    // Reply and forward quote the message the compose window finds by
    // CurrentMailId; from the toolbar that is the previewed message.
    if (mode != Main::ComposeModes::New && SelectedMail >= 0 && SelectedMail < MailCount)
        CurrentMailId = Mails.at(SelectedMail).id.trimmed();
    Main::ComposeMode = mode;
    showMailEdit();
}

void frmMain::showMailEdit()
{
    frmMailEdit *edit = forms::MailEdit();
    edit->show();
    edit->raise();
    edit->activateWindow();
}

void frmMain::AddNewMail_Click()
{
    openCompose(Main::ComposeModes::New);
}

void frmMain::Delete_Click()
{
    if (TreeView1->currentItem() != node(Node::DeletedItems)) {
        // Into Deleted Items, without a question and without undo.
        EmailArray source;
        ::MailCount sourceCount = 0;
        EmailArray deleted;
        ::MailCount deletedCount = 0;
        LoadEmails(CurrentFolder, source, sourceCount);
        LoadEmails(FolderFile::DeletedItems, deleted, deletedCount);
        if (SelectedMail < 0 || SelectedMail >= sourceCount)
            return;
        if (deletedCount >= MAX_FOLDER_MAILS)
            throw IndexError(texts::TooManyMails);
        deleted[deletedCount++] = source[SelectedMail];
        RemoveEmailAt(source, SelectedMail);
        --sourceCount;
        SaveEmails(FolderFile::DeletedItems, deleted, deletedCount);
        SaveEmails(CurrentFolder, source, sourceCount);
        refreshlistview(CurrentFolder);
        ShowUnreadCounts();
        return;
    }

    if (!prompter().confirm(Prompter::Icon::Exclamation, texts::AppTitle,
                            texts::AskDeleteForGood))
        return;
    EmailArray deleted;
    ::MailCount count = 0;
    LoadEmails(FolderFile::DeletedItems, deleted, count);
    const ::MailCount held = count;
    if (SelectedMail >= 0 && SelectedMail < count) {
        RemoveEmailAt(deleted, SelectedMail);
        --count;
        SaveEmails(FolderFile::DeletedItems, deleted, count);
    }
    if (held <= 1)
        toolbarButton(tbDelete)->setEnabled(false);
    SelectedMail = 0;
    refreshlistview(FolderFile::DeletedItems);
    ShowUnreadCounts();
}

void frmMain::startRun(qint16 mode, bool checked)
{
    frmSendAndReceive *run = forms::SendAndReceive();
    run->SendReceiveMode = mode;
    // A send needs an account, and every Outbox message must name the
    // first one; receiving alone needs neither.
    if (checked && (EnsureMailBox() || CheckOutboxAccounts()))
        return;
    run->show();
    run->raise();
    run->activateWindow();
}

void frmMain::mnuRSMail_Click()
{
    startRun(SendReceiveModes::SendAndReceive, true);
}

void frmMain::mnuReceiveMail_Click()
{
    startRun(SendReceiveModes::ReceiveOnly, false);
}

void frmMain::mnuSendMail_Click()
{
    startRun(SendReceiveModes::SendOnly, true);
}

// Modeless: the main window stays usable beside the accounts dialog.
void frmMain::T9_Click()
{
    frmMailBox *dialog = forms::MailBox();
    dialog->show();
    dialog->raise();
    dialog->activateWindow();
}

void frmMain::H6_Click()
{
    frmAbout *about = forms::About();
    about->show();
    about->raise();
    about->activateWindow();
}

void frmMain::Command11_Click()
{
    mnuRSMail_Click();
}

void frmMain::F20_Click()
{
    close();
}
