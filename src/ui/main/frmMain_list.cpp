// frmMain: the message list and the preview under it.

#include "frmMain.h"

#include "foldernodes.h"
#include "mainlayout.h"
#include "store/folders.h"
#include "store/mailboxes.h"
#include "store/state.h"
#include "store/textutil.h"
#include "texts.h"
#include "ui/common/icons.h"
#include "ui/common/twips.h"

#include <QLabel>
#include <QTextEdit>
#include <QTreeWidget>

#include <algorithm>

using namespace Qt::Literals::StringLiterals;

namespace {
enum Column { ColAttachment, ColFlag, ColPerson, ColSubject, ColTime, ColAccount };
}

void frmMain::ReloadfrmMain()
{
    refreshlistview(CurrentFolder);
}

void frmMain::refreshlistview(qint16 folder)
{
    LoadEmails(folder, Mails, MailCount);

    // The columns follow the tree: received mail (Inbox, Deleted Items)
    // shows who sent it and when it came. Deleted Items opened from the
    // folder summary is marked as holding unsent mail and keeps the
    // recipient columns.
    const QTreeWidgetItem *selected = TreeView1->currentItem();
    const bool inboxStyle = !FolderHoldsUnsent && selected
        && (selected == node(Node::Inbox) || selected == node(Node::DeletedItems));
    QTreeWidgetItem *header = ListView1->headerItem();
    header->setText(ColPerson, inboxStyle ? texts::ColumnFrom : texts::ColumnTo);
    header->setText(ColTime, inboxStyle ? texts::ColumnReceived : texts::ColumnSent);
    header->setText(ColAccount, inboxStyle ? QString() : texts::ColumnAccount);

    ListView1->clear();
    const QIcon attachment = appIcon(u"mail-attachment"_s);
    QFont bold = ListView1->font();
    bold.setBold(true);
    QList<QTreeWidgetItem *> rows;
    rows.reserve(MailCount);
    // File order, never sorted: a row's position is the message's position.
    for (int k = 0; k < MailCount; ++k) {
        const EmailRec &m = Mails[k];
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
    Text1->setPlainText(texts::NoMailSelected);
    Text1->selectAll();
    Text1->setAlignment(Qt::AlignCenter);
    Text1->moveCursor(QTextCursor::Start);
    Label5->clear();
    Label7->clear();
    Label9->clear();
}

void frmMain::ShowMessagePage()
{
    ListView1->show();
    ListView2->hide();
    Frame2->show();
    showNoMail();
    stackPreviewLabels();
    SelectedMail = 0;
    SetToolbarState(ToolbarState::Shown);
    SetToolbarState(ToolbarState::NoSelection);
    // The server queue is read once more here; nothing uses the result, but
    // the read belongs to entering a folder.
    EmailArray queue;
    ::MailCount queued = 0;
    LoadEmails(FolderFile::ServerQueue, queue, queued);
    refreshlistview(CurrentFolder);
}

void frmMain::ListView1_Click()
{
    MailBoxArray accounts;
    ::MailCount accountCount = 0;
    LoadMailBoxes(accounts, accountCount);

    QTreeWidgetItem *row = ListView1->currentItem();
    if (!row || !row->isSelected()) {
        showNoMail();
        SetToolbarState(ToolbarState::NoSelection);
        return;
    }

    SelectedMail = ListView1->indexOfTopLevelItem(row);
    const EmailRec &m = Mails.at(SelectedMail);
    // Separators become NUL so that an address can never match across them.
    QString recipients = m.to.trimmed() + u';' + m.alsoto.trimmed();
    recipients.replace(u';', QChar(0)).replace(u',', QChar(0));

    Text1->setPlainText(ToWidgetText(m.content));
    Text1->selectAll();
    Text1->setAlignment(Qt::AlignLeft);
    Text1->moveCursor(QTextCursor::Start);
    Label5->setText(m.from);
    stackPreviewLabels();

    // The last account examined decides the To line: in the Inbox it shows
    // that account's address when the message was sent to it, else the
    // message's own To text.
    QString toLine = m.to;
    const int examined = std::min<int>(accountCount, MAX_MAILBOXES);
    for (int i = 0; i < examined; ++i) {
        const QString &address = accounts[i].address;
        toLine = (recipients.contains(address, Qt::CaseSensitive)
                  && CurrentFolder == FolderFile::Inbox)
            ? address : m.to;
    }
    Label7->setText(toLine);
    Label9->setText(m.subject);

    SetToolbarState(TreeView1->currentItem() == node(Node::Inbox) ? ToolbarState::InboxMessage
                                                                   : ToolbarState::OtherMessage);
}

void frmMain::ListView1_DblClick()
{
    if (SelectedMail >= 0 && SelectedMail < MAX_FOLDER_MAILS)
        CurrentMailId = Mails.at(SelectedMail).id.trimmed();
    if (Text1->toPlainText() == texts::NoMailSelected)
        return;
    if (FolderHoldsUnsent) {
        Main::ComposeMode = Main::ComposeModes::Reopen;
        emit mailEditRequested();
    } else {
        emit mailReadRequested();
    }
}
