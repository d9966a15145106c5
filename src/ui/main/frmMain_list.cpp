// frmMain: the message list and the preview under it.

#include "frmMain.h"

#include "foldernodes.h"
#include "mainlayout.h"
#include "messagelist.h"
#include "sendrecv/recipients.h"
#include "store/mailstore.h"
#include "store/textutil.h"
#include "texts.h"
#include "ui/common/scaffold.h"
#include "ui/common/twips.h"
#include "ui/message/frmMailEdit.h"
#include "ui/message/frmMailRead.h"

#include <QItemSelectionModel>
#include <QLabel>
#include <QScopedValueRollback>
#include <QStatusBar>
#include <QTextEdit>
#include <QTreeView>
#include <QTreeWidget>

using namespace Qt::Literals::StringLiterals;

void frmMain::refreshlistview(qint16 folder)
{
    const MailRef previewed = previewedMail();
    // The columns follow the tree: received mail (Inbox, Deleted Items)
    // shows who sent it and when it came. Deleted Items opened from the
    // folder summary is marked as holding unsent mail and keeps the
    // recipient columns, until a delete for good refills it as received
    // mail.
    const QTreeWidgetItem *selected = TreeView1->currentItem();
    const bool inboxStyle = m_forceInboxStyle
        || (!FolderHoldsUnsent && selected
            && (selected == node(Node::Inbox) || selected == node(Node::DeletedItems)));
    // A folder not in memory yet is read off this thread, and the list is
    // filled once it is (folderRead); meanwhile it is empty, with nothing to
    // act on. A folder that cannot be read is read here, to say why.
    if (!store::InMemory(folder) && store::ReadAhead(folder)) {
        m_reading = folder;
        StatusPanel1->setText(texts::ReadingFolder.arg(folderName(folder)));
        showMails(folder, inboxStyle, {});
        showNoMail();
        SetToolbarState(ToolbarState::NoSelection);
        return;
    }
    m_reading = -1;
    StatusPanel1->clear();
    // Read before anything is cleared: a folder that cannot be read leaves
    // an empty list with nothing to act on, under the folder's own columns.
    MailList mails;
    try {
        mails = store::Folder(folder);
    } catch (...) {
        showMails(folder, inboxStyle, {});
        showNoMail();
        SetToolbarState(ToolbarState::NoSelection);
        throw;
    }
    showMails(folder, inboxStyle, mails);

    // The previewed message stays previewed while it is still there;
    // otherwise nothing is, and the preview and the toolbar say so.
    int keep = -1;
    if (previewed.isSet() && previewed.folder == folder) {
        if (previewed.index < Mails.size() && SameMessage(Mails.at(previewed.index), previewed.shown))
            keep = previewed.index;
        for (int i = 0; keep < 0 && i < Mails.size(); ++i) {
            if (SameMessage(Mails.at(i), previewed.shown))
                keep = i;
        }
    }
    QItemSelectionModel *chosen = ListView1->selectionModel();
    if (keep >= 0) {
        const QModelIndex row = m_list->index(keep, 0);
        if (!chosen->isRowSelected(keep, {}) || chosen->currentIndex().row() != keep) {
            const QScopedValueRollback quiet(m_choosingRow, true);
            ListView1->setCurrentIndex(row);
        }
        // The preview shows nothing a read mark changes; it is drawn afresh
        // only when the message moved.
        if (keep != previewed.index)
            previewRow(keep);
    } else {
        if (chosen->hasSelection()) {
            const QScopedValueRollback quiet(m_choosingRow, true);
            chosen->clearSelection();
        }
        if (m_previewed >= 0) {
            showNoMail();
            SetToolbarState(ToolbarState::NoSelection);
        }
    }
}

void frmMain::showMails(int folder, bool inboxStyle, const MailList &mails)
{
    Mails = mails;
    const bool afresh = m_list->folder() != folder || m_list->inboxStyle() != inboxStyle;
    m_list->show(folder, inboxStyle, mails);
    // Another folder opens at its top, with nothing chosen; the first row
    // gets the focus frame when the list takes the focus from the keys.
    if (afresh)
        ListView1->scrollToTop();
}

void frmMain::stackPreviewLabels()
{
    const PreviewStack s = ::stackPreviewLabels(twips::fromPixels(Label5->y()),
                                                twips::fromPixels(Label5->height()),
                                                twips::fromPixels(Label6->height()));
    Label6->move(Label6->x(), twips::toPixels(s.label6Top));
    Label7->move(Label7->x(), twips::toPixels(s.label7Top));
}

void frmMain::showNoMail()
{
    m_previewed = -1;
    Text1->setPlainText(texts::NoMailSelected);
    Text1->selectAll();
    Text1->setAlignment(Qt::AlignCenter);
    Text1->moveCursor(QTextCursor::Start);
    Label5->clear();
    Label7->clear();
    Label9->clear();
    Label9->setToolTip(QString());
}

void frmMain::ShowMessagePage()
{
    ListView1->show();
    ListView2->hide();
    Frame2->show();
    m_page = Page::Messages;
    m_forceInboxStyle = false;
    // Nothing is previewed on a page just entered.
    showNoMail();
    stackPreviewLabels();
    SetToolbarState(ToolbarState::Shown);
    SetToolbarState(ToolbarState::NoSelection);
    scaffold::guarded([this] { refreshlistview(CurrentFolder); });
}

MailRef frmMain::previewedMail() const
{
    if (m_page != Page::Messages || m_previewed < 0 || m_previewed >= Mails.size())
        return {};
    return {CurrentFolder, m_previewed, Mails.at(m_previewed)};
}

int frmMain::chosenRow() const
{
    const QModelIndexList rows = ListView1->selectionModel()->selectedRows();
    return rows.isEmpty() ? -1 : rows.first().row();
}

void frmMain::ListView1_Click()
{
    if (m_page != Page::Messages || m_choosingRow)
        return;
    const int index = chosenRow();
    if (index < 0) {
        showNoMail();
        SetToolbarState(ToolbarState::NoSelection);
        return;
    }
    if (index != m_previewed)
        previewRow(index);
}

void frmMain::previewRow(int row)
{
    if (row < 0 || row >= Mails.size())
        return;
    AccountList accounts;
    scaffold::guarded([&accounts] { accounts = store::Accounts(); });

    m_previewed = row;
    const EmailRec &m = Mails.at(row);
    Text1->setPlainText(ToWidgetText(m.content));
    Text1->selectAll();
    Text1->setAlignment(Qt::AlignLeft);
    Text1->moveCursor(QTextCursor::Start);
    Label5->setText(m.from);
    stackPreviewLabels();
    Label7->setText(ToLine(m, CurrentFolder == FolderFile::Inbox, accounts));
    // A long subject ends in "…" at the pane's edge; the whole of it is in
    // the tooltip.
    Label9->setText(Label9->fontMetrics().elidedText(m.subject, Qt::ElideRight, Label9->width()));
    Label9->setToolTip(m.subject);

    SetToolbarState(TreeView1->currentItem() == node(Node::Inbox) ? ToolbarState::InboxMessage
                                                                   : ToolbarState::OtherMessage);
}

void frmMain::ListView1_DblClick()
{
    const MailRef ref = previewedMail();
    if (!ref.isSet())
        return;
    if (FolderHoldsUnsent)
        frmMailEdit::openAs(Main::ComposeModes::Reopen, ref);
    else
        frmMailRead::open(ref);
}
