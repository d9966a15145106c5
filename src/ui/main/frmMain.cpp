#include "frmMain.h"

#include "foldernodes.h"
#include "mainlayout.h"
#include "messagelist.h"
#include "exercise/exercise.h"
#include "sendrecv/engine.h"
#include "store/errors.h"
#include "store/folders.h"
#include "store/prompter.h"
#include "store/textutil.h"
#include "texts.h"
#include "ui/about/frmAbout.h"
#include "ui/accounts/ensuremailbox.h"
#include "ui/accounts/frmMailBox.h"
#include "ui/common/fonts.h"
#include "ui/common/icons.h"
#include "ui/common/longtext.h"
#include "ui/common/scaffold.h"
#include "ui/common/twips.h"
#include "ui/common/widgets.h"
#include "ui/exercise/frmExercise.h"
#include "ui/message/frmMailEdit.h"
#include "ui/message/frmMailRead.h"
#include "ui/sendrecv/frmSendAndReceive.h"

#include <QAction>
#include <QApplication>
#include <QCloseEvent>
#include <QFrame>
#include <QHeaderView>
#include <QItemSelectionModel>
#include <QKeyEvent>
#include <QLabel>
#include <QLayout>
#include <QLinearGradient>
#include <QMenu>
#include <QMenuBar>
#include <QMouseEvent>
#include <QPushButton>
#include <QScopedValueRollback>
#include <QShortcut>
#include <QStatusBar>
#include <QTimer>
#include <QTextEdit>
#include <QToolBar>
#include <QToolButton>
#include <QTreeView>
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
    // The window is built once; its start-up runs when it is first shown.
    scaffold::loadOnShow(this, [this] { Form_Load(); });

    resize(twips::toPixels(DesignWidth), twips::toPixels(DesignHeight));
}

frmMain::~frmMain() = default;

// ---- Construction -------------------------------------------------------

void frmMain::buildMenus()
{
    namespace t = texts;
    menuBar()->setObjectName(u"MenuBar"_s);
    scaffold::addMenus(menuBar(), {
        {0, "mnuFile", &t::MenuFile},
        {1, "mnuFileNew", &t::MenuFileNew},
        {2, "AddNewMail", &t::MenuNewMail, "mail-message-new"},
        {2, nullptr, nullptr},
        {2, "mnuNewPost", &t::MenuNewPost},
        {2, "mnuNewContact", &t::MenuNewContact},
        {2, "mnuNewFolder", &t::MenuNewFolder},
        {1, "mnuOpen", &t::MenuOpen},
        {1, nullptr, nullptr},
        {1, "mnuSaveAs", &t::MenuSaveAs},
        {1, "mnuSaveAttachments", &t::MenuSaveAttachments},
        {1, nullptr, nullptr},
        {1, "mnuImport", &t::MenuImport},
        {1, "mnuExport", &t::MenuExport},
        {1, nullptr, nullptr},
        {1, "mnuPrint", &t::MenuPrint, "document-print"},
        {1, nullptr, nullptr},
        {1, "mnuSwitchIdentity", &t::MenuSwitchIdentity},
        {1, "mnuProperties", &t::MenuProperties},
        {1, nullptr, nullptr},
        {1, "F20", &t::MenuExit},
        {0, "mnuEdit", &t::MenuEdit},
        {1, "mnuCopy", &t::MenuCopy},
        {1, "mnuSelectAll", &t::MenuSelectAll},
        {1, nullptr, nullptr},
        {1, "mnuFindMessage", &t::MenuFindMessage, "edit-find"},
        {1, nullptr, nullptr},
        {1, "mnuMoveToFolder", &t::MenuMoveToFolder},
        {1, "mnuCopyToFolder", &t::MenuCopyToFolder},
        {1, "mnuDelete", &t::MenuDelete, "edit-delete"},
        {1, nullptr, nullptr},
        {1, "mnuMarkRead", &t::MenuMarkRead},
        {1, "mnuMarkUnread", &t::MenuMarkUnread},
        {1, "mnuMarkAllRead", &t::MenuMarkAllRead},
        {0, "mnuView", &t::MenuView},
        {1, "mnuCurrentView", &t::MenuCurrentView},
        {1, "mnuSortBy", &t::MenuSortBy},
        {1, nullptr, nullptr},
        {1, "mnuColumns", &t::MenuColumns},
        {1, "mnuLayout", &t::MenuLayout},
        {1, nullptr, nullptr},
        {1, "mnuTextSize", &t::MenuTextSize},
        {1, "mnuEncoding", &t::MenuEncoding},
        {1, nullptr, nullptr},
        {1, "mnuPrevious", &t::MenuPrevious},
        {1, "mnuNext", &t::MenuNext},
        {1, "mnuGoToFolder", &t::MenuGoToFolder},
        {1, nullptr, nullptr},
        {1, "mnuStop", &t::MenuStop},
        {1, "mnuRefresh", &t::MenuRefresh},
        {1, nullptr, nullptr},
        {1, "mnuExercise", &t::MenuExercise},
        {0, "mnuTools", &t::MenuTools},
        {1, "mnuSendReceive", &t::MenuSendReceive, "mail-send-receive"},
        {2, "mnuRSMail", &t::MenuRSMail},
        {2, nullptr, nullptr},
        {2, "mnuReceiveMail", &t::MenuReceiveMail},
        {2, "mnuSendMail", &t::MenuSendMail},
        {1, "mnuSynchronize", &t::MenuSynchronize},
        {1, nullptr, nullptr},
        {1, "mnuAddressBook", &t::MenuAddressBook, "x-office-address-book"},
        {1, "mnuAddSender", &t::MenuAddSender},
        {1, nullptr, nullptr},
        {1, "mnuRules", &t::MenuRules},
        {1, nullptr, nullptr},
        {1, "T9", &t::MenuAccounts},
        {1, "mnuOptions", &t::MenuOptions},
        {0, "mnuMessage", &t::MenuMessage},
        {1, "mnuMsgNew", &t::MenuMsgNew},
        {1, nullptr, nullptr},
        {1, "mnuMsgReply", &t::MenuMsgReply},
        {1, "mnuMsgReplyAll", &t::MenuMsgReplyAll},
        {1, "mnuMsgForward", &t::MenuMsgForward},
        {1, "mnuMsgForwardAttached", &t::MenuMsgForwardAttached},
        {1, nullptr, nullptr},
        {1, "mnuMsgBlockSender", &t::MenuMsgBlockSender},
        {0, "mnuHelp", &t::MenuHelp},
        {1, "mnuContents", &t::MenuContents},
        {1, "mnuOnline", &t::MenuOnline},
        {1, nullptr, nullptr},
        {1, "H6", &t::MenuAbout},
    });
    AddNewMail = scaffold::action(this, "AddNewMail");
    F20 = scaffold::action(this, "F20");
    mnuRSMail = scaffold::action(this, "mnuRSMail");
    mnuReceiveMail = scaffold::action(this, "mnuReceiveMail");
    mnuSendMail = scaffold::action(this, "mnuSendMail");
    T9 = scaffold::action(this, "T9");
    H6 = scaffold::action(this, "H6");
    mnuExercise = scaffold::action(this, "mnuExercise");
    mnuExercise->setCheckable(true);
    mnuExercise->setVisible(false);
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
    Toolbar1->layout()->setContentsMargins(0, 0, 0, 0);
    Toolbar1->layout()->setSpacing(0);

    namespace t = texts;
    m_buttons = scaffold::addTools(Toolbar1, {
        {"tbNewMail", &t::TbNewMail, nullptr, "mail-message-new"},
        {"tbReply", &t::TbReply, &t::TbReplyTip, "mail-reply-sender"},
        {"tbReplyAll", &t::TbReplyAll, &t::TbReplyAllTip, "mail-reply-all"},
        {"tbForward", &t::TbForward, nullptr, "mail-forward"},
        {"tbSeparator5", nullptr, nullptr, nullptr},
        {"tbPrint", &t::TbPrint, nullptr, "document-print"},
        {"tbDelete", &t::TbDelete, nullptr, "edit-delete"},
        {"tbSeparator8", nullptr, nullptr, nullptr},
        {"tbSendReceive", &t::TbSendReceive, &t::SendAndReceiveAll, "mail-send-receive"},
        {"tbSeparator10", nullptr, nullptr, nullptr},
        {"tbAddressBook", &t::TbAddressBook, nullptr, "x-office-address-book"},
        {"tbFind", &t::TbFind, nullptr, "edit-find"},
        {"tbSeparator13", nullptr, nullptr, nullptr},
        {"tbEncoding", &t::TbEncoding, nullptr, "preferences-desktop-locale"},
    }, [this](int index) { Toolbar1_ButtonClick(index); });

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
    speak(TreeView1, texts::a11y::FolderTree, texts::a11y::FolderTreeHelp);
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
    speak(ListView2, texts::a11y::FolderSummary, texts::a11y::FolderSummaryHelp);
    ListView2->setRootIsDecorated(false);
    ListView2->setColumnCount(3);
    ListView2->setHeaderLabels({texts::SummaryFolderColumn, texts::SummaryUnreadColumn,
                                texts::SummaryTotalColumn});
    ListView2->setColumnWidth(0, twips::toPixels(2600));
    ListView2->setColumnWidth(1, twips::toPixels(1000));

    // Message page: list above, preview below.
    Frame2 = named(new QFrame(client), u"Frame2"_s);
    // A model of its own behind the list: the view asks for the rows it
    // paints, all of one height, so a folder of any size shows at once.
    ListView1 = named(new QTreeView(Frame2), u"ListView1"_s);
    speak(ListView1, texts::a11y::MessageList, texts::a11y::MessageListHelp);
    ListView1->setRootIsDecorated(false);
    ListView1->setUniformRowHeights(true);
    ListView1->setSelectionMode(QAbstractItemView::SingleSelection);
    ListView1->setSelectionBehavior(QAbstractItemView::SelectRows);
    ListView1->setItemDelegate(new LongTextDelegate(ListView1));
    ListModel = m_list = new MessageListModel(ListView1);
    m_list->setFont(ListView1->font());
    m_list->show(FolderFile::Inbox, true, {});
    ListView1->setModel(m_list);
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
    speak(Text1, texts::a11y::Preview);
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
    // Whatever makes a node current shows its page: a click, the arrow
    // keys, Home and End, or a command. A click on the node that is current
    // already shows its page afresh, as a click always has.
    connect(TreeView1, &QTreeWidget::currentItemChanged, this, &frmMain::TreeView1_CurrentChanged);
    connect(TreeView1, &QTreeWidget::itemClicked, this, &frmMain::TreeView1_NodeClick);
    TreeView1->viewport()->installEventFilter(this);
    TreeView1->installEventFilter(this);
    // The preview shows the row the user chose, by a click or the keys, and
    // the commands act on it. The list never chooses one by itself: the row
    // it makes current when it takes the focus only gets the focus frame,
    // lest a click meant for the message just read reach another one.
    connect(ListView1->selectionModel(), &QItemSelectionModel::selectionChanged, this,
            &frmMain::ListView1_Click);
    ListView1->viewport()->installEventFilter(this);
    ListView1->installEventFilter(this);
    connect(ListView2, &QTreeWidget::itemClicked, this, &frmMain::ListView2_Click);
    ListView2->installEventFilter(this);
    centralWidget()->installEventFilter(this);

    connect(AddNewMail, &QAction::triggered, this, &frmMain::AddNewMail_Click);
    connect(F20, &QAction::triggered, this, &frmMain::F20_Click);
    connect(mnuRSMail, &QAction::triggered, this, &frmMain::mnuRSMail_Click);
    connect(mnuReceiveMail, &QAction::triggered, this, &frmMain::mnuReceiveMail_Click);
    connect(mnuSendMail, &QAction::triggered, this, &frmMain::mnuSendMail_Click);
    connect(T9, &QAction::triggered, this, &frmMain::T9_Click);
    connect(H6, &QAction::triggered, this, &frmMain::H6_Click);
    connect(Command11, &QPushButton::clicked, this, &frmMain::Command11_Click);
    // The message commands are in the menus too, for the keyboard; each
    // follows its toolbar button, enabled and shown alike.
    const std::pair<const char *, int> mirrored[] = {
        {"mnuMsgNew", tbNewMail}, {"mnuMsgReply", tbReply}, {"mnuMsgReplyAll", tbReplyAll},
        {"mnuMsgForward", tbForward}, {"mnuDelete", tbDelete}};
    for (const auto &[name, index] : mirrored) {
        QAction *item = scaffold::action(this, name);
        QAction *button = toolbarButton(index);
        connect(item, &QAction::triggered, button, &QAction::trigger);
        connect(button, &QAction::changed, item, [item, button] {
            item->setEnabled(button->isEnabled() && button->isVisible());
        });
    }
    // The caption shows CTRL+M itself, so the key works through a shortcut
    // of the window rather than one the menu would print a second time.
    auto *ctrlM = new QShortcut(QKeySequence(Qt::CTRL | Qt::Key_M), this);
    connect(ctrlM, &QShortcut::activated, this, &frmMain::mnuRSMail_Click);
    connect(mnuExercise, &QAction::triggered, this, &frmMain::mnuExercise_Click);
    connect(new QShortcut(QKeySequence(Qt::CTRL | Qt::Key_E), this), &QShortcut::activated, this,
            &frmMain::mnuExercise_Click);
    connect(findChild<QMenu *>(u"mnuView"_s), &QMenu::aboutToShow, this, [this] {
        if (mnuExercise->isVisible())
            mnuExercise->setChecked(forms::Exercise()->isVisible());
    });

    connect(&storeEvents(), &StoreEvents::folderChanged, this, &frmMain::folderChanged);
    connect(&storeEvents(), &StoreEvents::folderRead, this, &frmMain::folderRead);
    connect(&storeEvents(), &StoreEvents::accountsChanged, this, [this] {
        // The preview's To line names accounts.
        if (m_page == Page::Messages && m_previewed >= 0)
            previewRow(m_previewed);
    });
}

QAction *frmMain::toolbarButton(int index) const
{
    return (index >= 1 && index <= m_buttons.size()) ? m_buttons.at(index - 1) : nullptr;
}

// ---- Start-up, layout, closing ------------------------------------------

void frmMain::Form_Load()
{
    // Close to the top-left corner, a hundredth of the free space in: the
    // window is meant to open there, not centred.
    scaffold::placeOnFreeSpace(this, QSize(DesignWidth, DesignHeight), 1, 100);

    // The tree and the pages stand before any file is read, so that a file
    // that cannot be read leaves a whole window behind its box.
    buildTree();
    node(Node::Root)->setExpanded(true);
    node(Node::LocalFolders)->setExpanded(true);
    Frame2->hide();
    Frame5->hide();
    m_page = Page::Start;
    {
        const QScopedValueRollback choosing(m_choosingNode, true);
        TreeView1->setCurrentItem(nullptr);
        TreeView1->clearSelection();
    }
    SetToolbarState(ToolbarState::StartPage);
    Form_Resize();

    // Every folder is read off this thread, the Inbox first; each that
    // cannot be read says so once, when its reading ends. The unread counts
    // come before the messages, from a count of each file's isnew lines.
    // The readings wait for the window's first paint, which the reading of a
    // large Inbox on the other core slowed by a third, for a quarter of a
    // second at most.
    store::HoldReading(250);
    m_painted = false;
    for (int folder = FolderFile::Drafts; folder >= FolderFile::Inbox; --folder)
        store::ReadAhead(folder);
    FillFolderSummary();
    ShowUnreadCounts();
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
    if (!Label9->toolTip().isEmpty())
        Label9->setText(Label9->fontMetrics().elidedText(Label9->toolTip(), Qt::ElideRight,
                                                         Label9->width()));
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
    const auto type = event->type();
    if (watched == centralWidget() && type == QEvent::Resize) {
        Form_Resize();
        return false;
    }
    if (watched == centralWidget() && type == QEvent::Paint && !std::exchange(m_painted, true))
        QTimer::singleShot(0, this, [] { store::ReleaseReading(); });
    if (watched == TreeView1->viewport() && type == QEvent::MouseButtonPress) {
        m_pressedNode = TreeView1->currentItem();
        return false;
    }
    // Only the left button acts on the list; the others would move its
    // highlight without a word.
    if (watched == ListView1->viewport()
        && (type == QEvent::MouseButtonPress || type == QEvent::MouseButtonRelease
            || type == QEvent::MouseButtonDblClick)
        && static_cast<QMouseEvent *>(event)->button() != Qt::LeftButton)
        return true;
    if (watched == ListView1->viewport() && type == QEvent::MouseButtonDblClick && !m_forwarding) {
        // The view sees the event first, so that the row under the pointer
        // is current and previewed when the message opens.
        {
            const QScopedValueRollback forwarding(m_forwarding, true);
            QCoreApplication::sendEvent(watched, event);
        }
        ListView1_DblClick();
        return true;
    }
    if (type == QEvent::KeyPress) {
        const int key = static_cast<QKeyEvent *>(event)->key();
        const bool enter = key == Qt::Key_Return || key == Qt::Key_Enter;
        // With nothing chosen, the first arrow key or Enter chooses the row
        // with the focus frame (the first row when none has it) instead of
        // moving past it or opening it, and Home, End and the page keys
        // choose the row they reach, even the one they start from: the
        // user sees a message before any command can act on it.
        if (watched == ListView1 && chosenRow() < 0 && !m_forwarding) {
            const bool step = key == Qt::Key_Up || key == Qt::Key_Down || enter;
            const bool jump = key == Qt::Key_Home || key == Qt::Key_End || key == Qt::Key_PageUp
                || key == Qt::Key_PageDown;
            if (jump) {
                const QScopedValueRollback forwarding(m_forwarding, true);
                QCoreApplication::sendEvent(watched, event);
            }
            if (step || jump) {
                const QModelIndex framed = ListView1->currentIndex();
                const QModelIndex row = framed.isValid() ? framed : m_list->index(0, 0);
                if (row.isValid())
                    ListView1->setCurrentIndex(row);
                return true;
            }
        }
        if (watched == ListView1 && enter) {
            ListView1_DblClick();
            return true;
        }
        if (watched == ListView1 && key == Qt::Key_Delete) {
            if (toolbarButton(tbDelete)->isEnabled())
                Delete_Click();
            return true;
        }
        if (watched == ListView2 && (enter || key == Qt::Key_Space)) {
            ListView2_Click();
            return true;
        }
        if (watched == TreeView1 && enter) {
            // Into the page the node shows.
            if (m_page == Page::Messages)
                ListView1->setFocus();
            else if (m_page == Page::Summary)
                ListView2->setFocus();
            return true;
        }
    }
    return QMainWindow::eventFilter(watched, event);
}

void frmMain::closeEvent(QCloseEvent *event)
{
    // The program ends with this window, so every other window goes with
    // it; a compose window whose user keeps an unsent message keeps the
    // program open as well. It ends once every change is on the disk; one
    // the disk refuses is told of here.
    if (Form_Unload() && closeOtherWindows()) {
        store::Flush();
        event->accept();
    } else {
        event->ignore();
    }
}

bool frmMain::Form_Unload()
{
    MailList outbox;
    scaffold::guarded([&outbox] { outbox = store::Folder(FolderFile::Outbox); });
    if (!outbox.isEmpty()
        && prompter().confirm(Prompter::Icon::Exclamation, texts::AppTitle,
                              texts::AskSendOutboxOnClose, Prompter::Default::Yes)) {
        mnuSendMail_Click();
        // A run that found a message it may not send ends at once with its
        // box, before the program does.
        forms::SendAndReceive()->endFailedRun();
    }
    // Nothing is saved here: every change went to the files when it was
    // made, and is on the disk once the window closes.
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
    // Reply and forward quote the previewed message and nothing else.
    MailRef ref;
    if (mode != Main::ComposeModes::New) {
        ref = previewedMail();
        if (!ref.isSet())
            return;
    }
    frmMailEdit::openAs(mode, ref);
}

void frmMain::AddNewMail_Click()
{
    openCompose(Main::ComposeModes::New);
}

void frmMain::Delete_Click()
{
    const MailRef ref = previewedMail();
    if (!ref.isSet())
        return;
    const bool forGood = TreeView1->currentItem() == node(Node::DeletedItems);
    if (forGood
        && !prompter().confirm(Prompter::Icon::Exclamation, texts::AppTitle,
                               texts::AskDeleteForGood, Prompter::Default::No))
        return;
    // The message leaves the list; nothing is selected after it, so that a
    // second press cannot reach a message the user has not looked at.
    ListView1->setCurrentIndex(QModelIndex());
    // The list refilled after a delete for good shows received mail's
    // columns, whichever way Deleted Items was opened.
    m_forceInboxStyle = forGood;
    scaffold::guarded([&] {
        if (!(forGood ? DeleteForGood(ref) : MoveToDeletedItems(ref)))
            mailGone();
    });
    // The focus frame goes to the row that took the message's place, so
    // that the keys go on from there.
    const int rows = m_list->rowCount();
    if (rows > 0)
        ListView1->selectionModel()->setCurrentIndex(m_list->index(std::min(ref.index, rows - 1), 0),
                                                     QItemSelectionModel::NoUpdate);
}

void frmMain::mailGone()
{
    prompter().message(Prompter::Icon::Exclamation, texts::AppTitle, texts::MailGone);
    scaffold::guarded([this] { refreshlistview(CurrentFolder); });
}

void frmMain::startRun(qint16 mode, bool checked)
{
    // A send needs an account, and every Outbox message must name the
    // first one; receiving alone needs neither.
    bool stop = false;
    if (checked && !scaffold::guarded([&stop] { stop = EnsureMailBox() || CheckOutboxAccounts(); }))
        return;
    if (stop)
        return;
    frmSendAndReceive::start(mode, false);
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

// ---- The exercise beside the window ----------------------------------------

void frmMain::startExercise(const QString &path)
{
    try {
        forms::Exercise()->setExercise(exercise::ReadExercise(path));
    } catch (const exercise::ExerciseError &error) {
        // The trainee came to work with the program, and what they do still
        // lands in the files a trainer checks: it starts all the same.
        prompter().message(Prompter::Icon::Exclamation, texts::AppTitle,
                           error.text(path) + u"\r\r"_s + texts::exercise::StartsWithout);
        return;
    }
    mnuExercise->setVisible(true);
    openExercise(false);
}

void frmMain::openExercise(bool activate)
{
    forms::Exercise()->openBeside(this, narrowestWidth(), activate);
}

int frmMain::narrowestWidth() const
{
    // Every button counts, shown or not: a page shown later shows them all.
    int buttons = 0;
    for (QAction *a : Toolbar1->actions()) {
        if (const QWidget *b = Toolbar1->widgetForAction(a))
            buttons += b->sizeHint().width();
    }
    return buttons + 2 + frameGeometry().width() - width();
}

void frmMain::mnuExercise_Click()
{
    if (!mnuExercise->isVisible())
        return;  // no exercise in this run
    if (forms::Exercise()->isVisible())
        forms::Exercise()->close();
    else
        openExercise(true);
}
