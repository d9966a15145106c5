// frmMain: the message list and the preview under it.

#include "frmMain.h"

#include "foldernodes.h"
#include "mainlayout.h"
#include "sendrecv/recipients.h"
#include "store/mailstore.h"
#include "store/state.h"
#include "store/textutil.h"
#include "texts.h"
#include "ui/common/icons.h"
#include "ui/common/scaffold.h"
#include "ui/common/twips.h"
#include "ui/message/frmMailEdit.h"
#include "ui/message/frmMailRead.h"

#include <QLabel>
#include <QSignalBlocker>
#include <QTextEdit>
#include <QTreeWidget>

using namespace Qt::Literals::StringLiterals;

namespace {
enum Column { ColAttachment, ColFlag, ColPerson, ColSubject, ColTime, ColAccount };

// The same message after a refresh: every field but the read mark, which
// opening it changes.
bool sameMessage(const EmailRec &a, const EmailRec &b)
{
    return a.id == b.id && a.from == b.from && a.to == b.to && a.alsoto == b.alsoto
        && a.subject == b.subject && a.content == b.content && a.datetime == b.datetime
        && a.attachment == b.attachment;
}
}  // namespace

void frmMain::ReloadfrmMain()
{
    refreshlistview(CurrentFolder);
}

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
    // Read before anything is cleared: a folder that cannot be read leaves
    // an empty list with nothing to act on, under the folder's own columns.
    MailList mails;
    const MailList listed = Mails;
    try {
        mails = store::Folder(folder);
    } catch (...) {
        Mails.clear();
        MailCount = 0;
        fillList(inboxStyle, listed);
        showNoMail();
        SetToolbarState(ToolbarState::NoSelection);
        throw;
    }
    Mails = mails;
    MailCount = ::MailCount(Mails.size());
    fillList(inboxStyle, listed);

    // The previewed message stays previewed while it is still there;
    // otherwise nothing is, and the preview and the toolbar say so.
    int keep = -1;
    if (previewed.isSet() && previewed.folder == folder) {
        if (previewed.index < Mails.size() && sameMessage(Mails.at(previewed.index), previewed.shown))
            keep = previewed.index;
        for (int i = 0; keep < 0 && i < Mails.size(); ++i) {
            if (sameMessage(Mails.at(i), previewed.shown))
                keep = i;
        }
    }
    if (keep >= 0) {
        {
            const QSignalBlocker quiet(ListView1);
            ListView1->setCurrentItem(ListView1->topLevelItem(keep));
        }
        // The preview shows nothing a read mark changes; it is drawn afresh
        // only when the message moved.
        if (keep != previewed.index)
            previewRow(keep);
    } else if (m_previewed >= 0) {
        showNoMail();
        SetToolbarState(ToolbarState::NoSelection);
    }
}

void frmMain::fillList(bool inboxStyle, const MailList &listed)
{
    QTreeWidgetItem *header = ListView1->headerItem();
    header->setText(ColPerson, inboxStyle ? texts::ColumnFrom : texts::ColumnTo);
    header->setText(ColTime, inboxStyle ? texts::ColumnReceived : texts::ColumnSent);
    header->setText(ColAccount, inboxStyle ? QString() : texts::ColumnAccount);

    const QSignalBlocker quiet(ListView1);
    const QIcon attachment = appIcon(u"mail-attachment"_s);
    QFont bold = ListView1->font();
    bold.setBold(true);
    const auto showUnread = [&](QTreeWidgetItem *row, const EmailRec &m) {
        const bool unread = inboxStyle && m.isnew == u"1";
        for (int c : {ColPerson, ColSubject, ColTime})
            row->setData(c, Qt::FontRole, unread ? QVariant(bold) : QVariant());
    };

    // A command changes a few rows of a folder (a read mark, a message
    // gone, mail received at the end): the rows before and after the
    // change stay, and only the rest are made afresh. Shaping a row's
    // Chinese texts is most of what a refilled list costs.
    qsizetype head = 0, tail = 0;
    const qsizetype before = listed.size(), after = Mails.size();
    if (m_listInboxStyle == inboxStyle && ListView1->topLevelItemCount() == before) {
        while (head < qMin(before, after) && sameMessage(listed.at(head), Mails.at(head)))
            ++head;
        while (tail < qMin(before, after) - head
               && sameMessage(listed.at(before - 1 - tail), Mails.at(after - 1 - tail)))
            ++tail;
        for (qsizetype i = before - tail - 1; i >= head; --i)
            delete ListView1->takeTopLevelItem(int(i));
        for (qsizetype i = 0; i < head; ++i)
            showUnread(ListView1->topLevelItem(int(i)), Mails.at(i));
    } else {
        ListView1->clear();
    }
    m_listInboxStyle = inboxStyle;

    QList<QTreeWidgetItem *> rows;
    rows.reserve(after - head - tail);
    // File order, never sorted: a row's position is the message's position.
    for (qsizetype i = head; i < after - tail; ++i) {
        const EmailRec &m = Mails.at(i);
        auto *row = new QTreeWidgetItem;
        row->setText(ColPerson, inboxStyle ? m.from : m.to);
        row->setText(ColSubject, m.subject);
        row->setText(ColTime, m.datetime);
        if (inboxStyle && !m.attachment.isEmpty())
            row->setIcon(ColAttachment, attachment);
        showUnread(row, m);
        rows.append(row);
    }
    ListView1->insertTopLevelItems(int(head), rows);
    for (qsizetype i = after - tail; i < after; ++i)
        showUnread(ListView1->topLevelItem(int(i)), Mails.at(i));

    // As after a refill: nothing chosen, the list at its top, and the
    // first row made current when the list takes the focus from the keys.
    ListView1->reset();
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
    showNoMail();
    stackPreviewLabels();
    SelectedMail = 0;
    SetToolbarState(ToolbarState::Shown);
    SetToolbarState(ToolbarState::NoSelection);
    // The server queue is read once more here; nothing uses the result, but
    // the read belongs to entering a folder.
    scaffold::guarded([] { store::Folder(FolderFile::ServerQueue); });
    scaffold::guarded([this] { refreshlistview(CurrentFolder); });
}

MailRef frmMain::previewedMail() const
{
    if (m_page != Page::Messages || m_previewed < 0 || m_previewed >= Mails.size())
        return {};
    return {CurrentFolder, m_previewed, Mails.at(m_previewed)};
}

void frmMain::ListView1_Click()
{
    if (m_page != Page::Messages)
        return;
    const QList<QTreeWidgetItem *> chosen = ListView1->selectedItems();
    if (chosen.isEmpty()) {
        showNoMail();
        SetToolbarState(ToolbarState::NoSelection);
        return;
    }
    const int index = ListView1->indexOfTopLevelItem(chosen.first());
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
    SelectedMail = row;
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
    if (SelectedMail >= 0 && SelectedMail < Mails.size())
        CurrentMailId = TrimSpaces(Mails.at(SelectedMail).id);
    if (!ref.isSet())
        return;
    if (FolderHoldsUnsent)
        frmMailEdit::openAs(Main::ComposeModes::Reopen, ref);
    else
        frmMailRead::open(ref);
}
