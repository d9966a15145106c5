#pragma once

#include "mail/commands.h"
#include "store/records.h"
#include "ui/common/forms.h"

#include <QList>
#include <QMainWindow>

class QAction;
class QFrame;
class QLabel;
class QMenu;
class QPushButton;
class QStatusBar;
class QTextEdit;
class QToolBar;
class QTreeView;
class QTreeWidget;
class QTreeWidgetItem;
class MessageListModel;

// The start-up window: toolbar, folder tree, a right-hand pane showing the
// start page, the folder summary or the message list with its preview, and
// the status bar. It stays open for the whole run and opens every other
// window. What it shows always belongs to the tree's current node and the
// list's chosen row, and it redraws whenever the store reports that a
// folder changed, whoever changed it.
class frmMain final : public QMainWindow
{
    Q_OBJECT

public:
    // Toolbar buttons by their position on the toolbar (1-based); the
    // numbers are the ones the states and the commands refer to.
    enum ToolbarButton : int {
        tbNewMail = 1,
        tbReply = 2,
        tbReplyAll = 3,
        tbForward = 4,
        tbSeparator5 = 5,
        tbPrint = 6,
        tbDelete = 7,
        tbSeparator8 = 8,
        tbSendReceive = 9,
        tbSeparator10 = 10,
        tbAddressBook = 11,
        tbFind = 12,
        tbSeparator13 = 13,
        tbEncoding = 14,
        tbCount = 14
    };

    // What the eight context buttons (2-7, 13, 14) look like.
    enum class ToolbarState {
        StartPage,     // hidden
        Shown,         // visible
        NoSelection,   // disabled
        InboxMessage,  // enabled
        OtherMessage   // 4-7, 13, 14 enabled; 2 and 3 keep their state
    };

    // The window's size when it opens, in twips.
    static constexpr int DesignWidth = 13500;
    static constexpr int DesignHeight = 9300;

    frmMain();
    ~frmMain() override;

    // Reloads folder and refills the message list in file order. The row
    // shown in the preview stays current when its message is still there;
    // otherwise nothing is selected and the preview says so. A folder not
    // in memory yet is read off the window's thread: the list stays empty
    // until it is, and the status bar says so.
    void refreshlistview(qint16 folder);
    // Recounts the unread mail of the Inbox and Deleted Items and rewrites
    // their node captions and summary rows.
    void ShowUnreadCounts();

    // Tree node click by node index (1-7); other indices do nothing.
    void NodeClick(int index);
    void FillFolderSummary();
    void ShowMessagePage();
    void SetToolbarState(ToolbarState state);

    // The toolbar button at a 1-based position.
    QAction *toolbarButton(int index) const;
    // The tree node at a 1-based index.
    QTreeWidgetItem *node(int index) const;

    // The message the preview shows; unset when it shows none.
    MailRef previewedMail() const;

    // Reads an exercise and shows it beside this window, the View menu
    // offering to close and reopen it; a file that cannot be used is
    // explained in a box, and the program goes on without it.
    void startExercise(const QString &path);
    // The exercise window beside this one; activate gives it the keyboard.
    void openExercise(bool activate);
    // The narrowest this window may be with its whole tool bar in view,
    // frame included.
    int narrowestWidth() const;

    // ---- Menu items that act -------------------------------------------
    QAction *AddNewMail = nullptr;
    QAction *F20 = nullptr;
    QAction *mnuRSMail = nullptr;
    QAction *mnuReceiveMail = nullptr;
    QAction *mnuSendMail = nullptr;
    QAction *T9 = nullptr;
    QAction *H6 = nullptr;
    QAction *mnuExercise = nullptr;  // hidden unless an exercise was started

    // ---- Child widgets ---------------------------------------------------
    QFrame *CoolBar1 = nullptr;
    QToolBar *Toolbar1 = nullptr;
    QMenu *sendReceiveMenu = nullptr;  // drop-down of the send/receive button
    QLabel *Image1 = nullptr;
    QLabel *Label1 = nullptr;
    QTreeWidget *TreeView1 = nullptr;
    QFrame *Frame4 = nullptr;
    QLabel *Picture1 = nullptr;
    QFrame *Frame5 = nullptr;
    QLabel *Label2 = nullptr;   // "本地文件夹"
    QLabel *Label3 = nullptr;   // the note under it
    QLabel *Label10 = nullptr;  // the heading's picture
    QLabel *Label11 = nullptr;  // the page's white ground
    QTreeWidget *ListView2 = nullptr;
    QPushButton *Command11 = nullptr;
    QFrame *Frame2 = nullptr;
    QTreeView *ListView1 = nullptr;
    MessageListModel *ListModel = nullptr;  // ListView1's rows
    QFrame *Frame3 = nullptr;
    QLabel *Label4 = nullptr;
    QLabel *Label5 = nullptr;
    QLabel *Label6 = nullptr;
    QLabel *Label7 = nullptr;
    QLabel *Label8 = nullptr;
    QLabel *Label9 = nullptr;
    QFrame *Line1 = nullptr;
    QFrame *Line2 = nullptr;
    QFrame *Line3 = nullptr;
    QTextEdit *Text1 = nullptr;
    QStatusBar *StatusBar1 = nullptr;
    QLabel *StatusPanel1 = nullptr;
    QLabel *StatusPanel2 = nullptr;

protected:
    void closeEvent(QCloseEvent *event) override;
    bool eventFilter(QObject *watched, QEvent *event) override;

private:
    // The unread counts the Inbox and Deleted Items nodes show, kept while
    // a new count is being made.
    qint16 InboxUnread = 0;
    qint16 DeletedUnread = 0;
    // The folder the message page shows, and whether it opens as holding
    // unsent mail (recipient columns, a double-click edits again).
    qint16 CurrentFolder = 0;
    bool FolderHoldsUnsent = false;
    MailList Mails;  // the folder the message list shows

    void buildMenus();
    void buildToolbar();
    void buildPanes();
    void buildStatusBar();
    void connectHandlers();

    void Form_Load();
    void Form_Resize();
    bool Form_Unload();
    void alignDockedWidgets(int clientWidthPx);
    void buildTree();
    void setNodeCaption(int index, const QString &name, int unread);
    void setPaneHeader(int node);
    void showNoMail();
    void stackPreviewLabels();
    // Shows mails in the list, as Mails.
    void showMails(int folder, bool inboxStyle, const MailList &mails);
    // The row the user chose in the list, or -1.
    int chosenRow() const;
    void previewRow(int row);
    void showSummaryRow(int folder);
    // The unread counts and the summary row of a folder whose figures may
    // have changed; false while the window is not built yet.
    bool showFigures(int folder);
    void folderChanged(int folder);
    // A folder came into memory, or its figures became known.
    void folderRead(int folder);
    QString folderName(int folder) const;

    // Handlers.
    void TreeView1_NodeClick(QTreeWidgetItem *item);
    void TreeView1_CurrentChanged(QTreeWidgetItem *item);
    void ListView2_Click();
    void ListView1_Click();
    void ListView1_DblClick();
    void Toolbar1_ButtonClick(int index);
    void AddNewMail_Click();
    void F20_Click();
    void mnuRSMail_Click();
    void mnuReceiveMail_Click();
    void mnuSendMail_Click();
    void T9_Click();
    void H6_Click();
    void Command11_Click();
    void Delete_Click();
    void mnuExercise_Click();

    // Opens the compose window for a mode, on the previewed message for a
    // reply or a forward.
    void openCompose(qint16 mode);
    // Shows the progress dialog for a run of the given mode, after the
    // account checks when checked.
    void startRun(qint16 mode, bool checked);
    // Tells the user that a command found its message gone.
    void mailGone();
    // Closes every other window as the program ends; false when one stays.
    bool closeOtherWindows();

    // The page the right-hand pane shows.
    enum class Page { Start, Summary, Messages };

    QList<QAction *> m_buttons;  // toolbar buttons, position 1 at 0
    Page m_page = Page::Start;
    QList<QTreeWidgetItem *> m_nodes;  // tree nodes, index 1 at 0
    QTreeWidgetItem *m_pressedNode = nullptr;  // current before a mouse press
    bool m_choosingNode = false;  // the program is making a node current
    bool m_forwarding = false;  // an event being handed to the list first
    bool m_forceInboxStyle = false;  // the list after a delete for good
    bool m_choosingRow = false;  // the program is choosing the previewed row again
    int m_previewed = -1;  // the row the preview shows; -1 none
    int m_reading = -1;  // the folder the list waits for; -1 none
    bool m_painted = false;  // the window has been painted since it loaded
    MessageListModel *m_list = nullptr;
    double m_previewHeaderBottom = 0;  // twips below which Text1 may start
};

namespace forms {
inline frmMain *Main() { return instance<frmMain>(); }
}  // namespace forms
