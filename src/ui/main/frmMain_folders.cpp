// frmMain: the folder tree, the folder summary and the toolbar states.

#include "frmMain.h"

#include "foldernodes.h"
#include "store/errors.h"
#include "store/folders.h"
#include "store/mailstore.h"
#include "texts.h"
#include "ui/common/headerbuttons.h"
#include "ui/common/icons.h"
#include "ui/common/scaffold.h"

#include <QAction>
#include <QScopedValueRollback>
#include <QLabel>
#include <QTextEdit>
#include <QTreeWidget>

#include <climits>

using namespace Qt::Literals::StringLiterals;

namespace {

struct NodeInfo
{
    const char *key;
    const QString &name;
    const char *image;    // the node's tree image
    const char *picture;  // the pane header's picture when the node is open
    qint16 folder;        // -1: not a folder
    bool holdsUnsent;
};

// The seven nodes in the order they are added, which gives their indices.
const NodeInfo &nodeInfo(int index)
{
    static const NodeInfo nodes[Node::Count] = {
        {"r1", texts::AppTitle, "internet-mail", "internet-mail", -1, false},
        {"r2", texts::LocalFolders, "folder", "folder", -1, false},
        {"receive", texts::InboxName, "mail_generic", "mail_generic", FolderFile::Inbox, false},
        {"send", texts::OutboxName, "network-transmit", "network-transmit", FolderFile::Outbox, true},
        {"sended", texts::SentItemsName, "mail-forward", "mail-forward", FolderFile::SentItems, false},
        {"deleted", texts::DeletedItemsName, "user-trash", "user-trash", FolderFile::DeletedItems, false},
        {"draft", texts::DraftsName, "accessories-text-editor", "accessories-text-editor",
         FolderFile::Drafts, true},
    };
    return nodes[index - 1];
}

constexpr int KeyRole = Qt::UserRole;
constexpr int IndexRole = Qt::UserRole + 1;

}  // namespace

QTreeWidgetItem *frmMain::node(int index) const
{
    return (index >= 1 && index <= m_nodes.size()) ? m_nodes.at(index - 1) : nullptr;
}

void frmMain::buildTree()
{
    const QScopedValueRollback choosing(m_choosingNode, true);
    TreeView1->clear();
    m_nodes.clear();
    for (int i = 1; i <= Node::Count; ++i) {
        const NodeInfo &info = nodeInfo(i);
        QTreeWidgetItem *item = i == Node::Root ? new QTreeWidgetItem(TreeView1)
            : new QTreeWidgetItem(node(i == Node::LocalFolders ? Node::Root : Node::LocalFolders));
        item->setData(0, KeyRole, QString::fromLatin1(info.key));
        item->setData(0, IndexRole, i);
        item->setIcon(0, appIcon(QLatin1StringView(info.image)));
        item->setText(0, info.name);
        m_nodes.append(item);
    }
    setNodeCaption(Node::Inbox, texts::InboxName, InboxUnread);
    setNodeCaption(Node::DeletedItems, texts::DeletedItemsName, DeletedUnread);
}

void frmMain::setNodeCaption(int index, const QString &name, int unread)
{
    const NodeCaption caption = unreadCaption(name, unread);
    QTreeWidgetItem *item = node(index);
    if (!item)
        return;
    item->setText(0, caption.text);
    QFont f = TreeView1->font();
    f.setBold(caption.bold);
    item->setFont(0, f);
}

QString frmMain::folderName(int folder) const
{
    for (int i = Node::Inbox; i <= Node::Drafts; ++i) {
        if (nodeInfo(i).folder == folder)
            return nodeInfo(i).name;
    }
    return QString();
}

void frmMain::ShowUnreadCounts()
{
    // A count not known yet leaves the caption as it is until it is; a
    // folder that cannot be read counts nothing, and its box said why.
    const auto unread = [](int folder, qint16 shown) {
        const std::optional<FolderFigures> figures = store::Figures(folder);
        return figures ? qint16(qMin(figures->unread, int(SHRT_MAX))) : shown;
    };
    InboxUnread = unread(FolderFile::Inbox, InboxUnread);
    DeletedUnread = unread(FolderFile::DeletedItems, DeletedUnread);
    setNodeCaption(Node::Inbox, texts::InboxName, InboxUnread);
    setNodeCaption(Node::DeletedItems, texts::DeletedItemsName, DeletedUnread);
}

void frmMain::setPaneHeader(int index)
{
    const NodeInfo &info = nodeInfo(index);
    Label1->setText(info.name);
    Image1->setPixmap(appIcon(QLatin1StringView(info.picture)).pixmap(QSize(24, 24)));
}

void frmMain::TreeView1_CurrentChanged(QTreeWidgetItem *item)
{
    if (item && !m_choosingNode)
        NodeClick(item->data(0, IndexRole).toInt());
}

void frmMain::TreeView1_NodeClick(QTreeWidgetItem *item)
{
    // Only a click on the node that was current already: a click that made
    // a node current has shown its page by then.
    if (item && item == m_pressedNode)
        NodeClick(item->data(0, IndexRole).toInt());
    m_pressedNode = nullptr;
}

void frmMain::NodeClick(int index)
{
    // The node whose page shows is the current one, however the page was
    // asked for.
    if (QTreeWidgetItem *item = node(index); item && TreeView1->currentItem() != item) {
        const QScopedValueRollback choosing(m_choosingNode, true);
        TreeView1->setCurrentItem(item);
    }
    if (index == Node::Root) {
        ListView1->hide();
        ListView2->hide();
        Frame2->hide();
        Frame5->hide();
        m_page = Page::Start;
        m_previewed = -1;
        setPaneHeader(index);
        SetToolbarState(ToolbarState::StartPage);
    } else if (index == Node::LocalFolders) {
        ListView1->hide();
        ListView2->show();
        Frame2->hide();
        Frame5->show();
        m_page = Page::Summary;
        m_previewed = -1;
        setPaneHeader(index);
        SetToolbarState(ToolbarState::Shown);
        SetToolbarState(ToolbarState::NoSelection);
        FillFolderSummary();
    } else if (index >= Node::Inbox && index <= Node::Drafts) {
        const NodeInfo &info = nodeInfo(index);
        CurrentFolder = info.folder;
        FolderHoldsUnsent = info.holdsUnsent;
        setPaneHeader(index);
        // Frame5 stays as it is; the message page lies over it.
        ShowMessagePage();
    }
}

namespace {
struct SummaryRow
{
    int node;
    qint16 folder;
    bool countsUnread;  // the other folders always show "0", by design
};
const SummaryRow summaryRows[] = {
    {Node::Inbox, FolderFile::Inbox, true},
    {Node::Outbox, FolderFile::Outbox, false},
    {Node::SentItems, FolderFile::SentItems, false},
    {Node::DeletedItems, FolderFile::DeletedItems, true},
    {Node::Drafts, FolderFile::Drafts, false},
};
}  // namespace

void frmMain::FillFolderSummary()
{
    ListView2->clear();
    for (const SummaryRow &row : summaryRows) {
        const NodeInfo &info = nodeInfo(row.node);
        auto *item = new QTreeWidgetItem(ListView2, {info.name});
        item->setIcon(0, appIcon(QLatin1StringView(info.image)));
        item->setTextAlignment(1, Qt::AlignRight | Qt::AlignVCenter);
        item->setTextAlignment(2, Qt::AlignRight | Qt::AlignVCenter);
        showSummaryRow(row.folder);
    }
    SetHeaderButtons(ListView2, 1);
}

void frmMain::showSummaryRow(int folder)
{
    for (int i = 0; i < int(std::size(summaryRows)); ++i) {
        QTreeWidgetItem *item = ListView2->topLevelItem(i);
        if (summaryRows[i].folder != folder || !item)
            continue;
        // Both figures of a row come from one look at its folder, so they
        // always agree; a folder not counted yet, or that cannot be read,
        // shows none.
        const std::optional<FolderFigures> figures = store::Figures(folder);
        item->setText(1, figures ? QString::number(summaryRows[i].countsUnread ? figures->unread : 0)
                                 : QString());
        item->setText(2, figures ? QString::number(figures->total) : QString());
    }
}

bool frmMain::showFigures(int folder)
{
    if (!node(Node::Root))
        return false;  // not started yet
    if (folder == FolderFile::Inbox || folder == FolderFile::DeletedItems)
        ShowUnreadCounts();
    // The summary is filled afresh whenever it is opened.
    if (m_page == Page::Summary)
        showSummaryRow(folder);
    return true;
}

void frmMain::folderChanged(int folder)
{
    if (showFigures(folder) && m_page == Page::Messages && folder == CurrentFolder)
        scaffold::guarded([this] { refreshlistview(CurrentFolder); });
}

void frmMain::folderRead(int folder)
{
    // The list waiting for its folder fills once the messages are read (a
    // count may come first); a folder that could not be read stays empty,
    // its box shown.
    if (!showFigures(folder) || m_page != Page::Messages || folder != CurrentFolder || m_reading != folder)
        return;
    const bool read = store::InMemory(folder);
    if (!read && store::ReadAhead(folder))
        return;
    m_reading = -1;
    StatusPanel1->clear();
    if (read)
        scaffold::guarded([this] { refreshlistview(CurrentFolder); });
}

void frmMain::ListView2_Click()
{
    QTreeWidgetItem *item = ListView2->currentItem();
    if (!item || !item->isSelected())
        return;
    const int row = ListView2->indexOfTopLevelItem(item) + 1;
    if (row < 1 || row > 5)
        return;

    struct Target
    {
        int node;
        qint16 folder;
        bool holdsUnsent;
    };
    // Deleted Items opened from here counts as holding unsent mail, unlike
    // the tree's node: it opens with the recipient and send-time columns
    // and a double-click re-opens the message for editing. Kept on purpose.
    static const Target targets[] = {
        {Node::Inbox, FolderFile::Inbox, false},
        {Node::Outbox, FolderFile::Outbox, true},
        {Node::SentItems, FolderFile::SentItems, false},
        {Node::DeletedItems, FolderFile::DeletedItems, true},
        {Node::Drafts, FolderFile::Drafts, true},
    };
    const Target &t = targets[row - 1];

    {
        const QScopedValueRollback choosing(m_choosingNode, true);
        TreeView1->setCurrentItem(node(t.node));
    }
    setPaneHeader(t.node);
    CurrentFolder = t.folder;
    FolderHoldsUnsent = t.holdsUnsent;
    ShowMessagePage();
}

void frmMain::SetToolbarState(ToolbarState state)
{
    static const int context[] = {tbReply, tbReplyAll, tbForward, tbSeparator5,
                                  tbPrint, tbDelete, tbSeparator13, tbEncoding};
    for (int index : context) {
        QAction *button = toolbarButton(index);
        switch (state) {
        case ToolbarState::StartPage:
            button->setVisible(false);
            break;
        case ToolbarState::Shown:
            button->setVisible(true);
            break;
        case ToolbarState::NoSelection:
            button->setEnabled(false);
            break;
        case ToolbarState::InboxMessage:
            button->setEnabled(true);
            break;
        case ToolbarState::OtherMessage:
            // Replying is offered for Inbox mail only.
            if (index != tbReply && index != tbReplyAll)
                button->setEnabled(true);
            break;
        }
    }
}
