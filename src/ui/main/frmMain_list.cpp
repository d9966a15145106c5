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
    try {
        mails = store::Folder(folder);
    } catch (...) {
        Mails.clear();
        MailCount = 0;
        fillList(inboxStyle);
        showNoMail();
        SetToolbarState(ToolbarState::NoSelection);
        throw;
    }
    Mails = mails;
    MailCount = ::MailCount(Mails.size());
    fillList(inboxStyle);

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
        previewRow(keep);
    } else if (m_previewed >= 0) {
        showNoMail();
        SetToolbarState(ToolbarState::NoSelection);
    }
}

void frmMain::fillList(bool inboxStyle)
{
    QTreeWidgetItem *header = ListView1->headerItem();
    header->setText(ColPerson, inboxStyle ? texts::ColumnFrom : texts::ColumnTo);
    header->setText(ColTime, inboxStyle ? texts::ColumnReceived : texts::ColumnSent);
    header->setText(ColAccount, inboxStyle ? QString() : texts::ColumnAccount);

    const QSignalBlocker quiet(ListView1);
    ListView1->clear();
    const QIcon attachment = appIcon(u"mail-attachment"_s);
    QFont bold = ListView1->font();
    bold.setBold(true);
    QList<QTreeWidgetItem *> rows;
    rows.reserve(Mails.size());
    // File order, never sorted: a row's position is the message's position.
    for (const EmailRec &m : std::as_const(Mails)) {
        auto *row = new QTreeWidgetItem;
        row->setText(ColPerson, inboxStyle ? m.from : m.to);
        row->setText(ColSubject, m.subject);
        row->setText(ColTime, m.datetime);
        if (inboxStyle) {
            if (!m.attachment.isEmpty())
                row->setIcon(ColAttachment, attachment);
            if (m.isnew == u"1") {
                for (int c : {ColPerson, ColSubject, ColTime})
                    row->setFont(c, bold);
            }
        }
        rows.append(row);
    }
    ListView1->addTopLevelItems(rows);
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
    QTreeWidgetItem *row = ListView1->currentItem();
    if (!row || !row->isSelected()) {
        showNoMail();
        SetToolbarState(ToolbarState::NoSelection);
        return;
    }
    // Choosing a row reports twice (current and selection); it is shown once.
    const int index = ListView1->indexOfTopLevelItem(row);
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
