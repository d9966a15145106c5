#include "engine.h"

#include "recipients.h"
#include "store/clock.h"
#include "store/errors.h"
#include "store/folders.h"
#include "store/mailstore.h"
#include "store/prompter.h"
#include "store/textutil.h"
#include "texts.h"

using namespace Qt::Literals::StringLiterals;


bool CheckOutboxAccounts()
{
    const MailList outbox = store::Folder(FolderFile::Outbox);
    const AccountList accounts = store::Accounts();
    if (accounts.isEmpty())
        return false;

    // Only the first account is compared, on purpose, and the first message
    // that names it neither as sender nor as recipient ends the check with a
    // single box: a message from the second account is refused as well.
    const QString &address = accounts.first().address;
    for (const EmailRec &m : outbox) {
        if (TrimSpaces(m.from) == address || TrimSpaces(m.to) == address)
            continue;
        prompter().message(Prompter::Icon::Exclamation, texts::AppTitle,
                           texts::OutboxWithoutAccount);
        return true;
    }
    return false;
}

namespace {

// The steps change a set of folders in memory; whoever runs them saves it.
SendResult send(FolderSet &set)
{
    const MailList &outbox = set.read(FolderFile::Outbox);
    MailList sent = set.read(FolderFile::SentItems);
    MailList queue = set.read(FolderFile::ServerQueue);

    SendResult result;
    // One stamp per step: every message a step moves bears the same minute.
    const QString stamp = NowStamp();
    // Every message is checked, even after a failure; only the saving
    // depends on the whole Outbox being valid.
    for (const EmailRec &m : outbox) {
        if (!RecipientsAcceptable(m.to, m.alsoto)) {
            result.failed = true;
            continue;
        }
        EmailRec kept = m;  // keeps the Outbox message's own isnew
        kept.datetime = stamp;
        AppendMail(sent, kept);
        EmailRec travelling = m;
        travelling.isnew = u"1"_s;
        travelling.datetime = stamp;
        AppendMail(queue, travelling);
    }
    if (result.failed)
        return result;

    // The three files change as one: a message is in the Outbox, or in
    // Sent Items and the queue, never in both and never lost.
    set.change(FolderFile::SentItems) = sent;
    set.change(FolderFile::ServerQueue) = queue;
    result.sent = int(outbox.size());
    set.change(FolderFile::Outbox).clear();
    result.barStarts = true;
    return result;
}

ReceiveResult receive(FolderSet &set)
{
    ReceiveResult result;
    const MailList &queue = set.read(FolderFile::ServerQueue);
    MailList inbox = set.read(FolderFile::Inbox);
    const AccountList &accounts = set.accounts();
    if (accounts.isEmpty()) {
        result.kept = int(queue.size());
        return result;
    }

    const int unreadBefore = set.unread(FolderFile::Inbox);

    const QString stamp = NowStamp();
    MailList kept;
    for (const EmailRec &m : queue) {
        const QString recipients = RecipientText(m.to, m.alsoto);
        bool matched = false;
        // One copy per matching account: a message for two local accounts
        // arrives twice. The copy keeps the queued isnew.
        for (const MailBoxRec &account : accounts) {
            if (!AddressMatches(recipients, account.address))
                continue;
            EmailRec copy = m;
            copy.datetime = stamp;
            AppendMail(inbox, copy);
            ++result.received;
            matched = true;
        }
        if (!matched)
            kept.append(m);
    }
    result.kept = int(kept.size());
    result.inboxUnread = unreadBefore + result.received;

    // The queue and the Inbox change as one: a message is waiting or
    // delivered, never both.
    set.change(FolderFile::Inbox) = inbox;
    set.change(FolderFile::ServerQueue) = kept;
    return result;
}

}  // namespace

SendResult SendInto(FolderSet &set)
{
    return send(set);
}

RunResult RunSendReceive(qint16 mode)
{
    RunResult run;
    const bool sending =
        mode == SendReceiveModes::SendAndReceive || mode == SendReceiveModes::SendOnly;
    const bool receiving =
        mode == SendReceiveModes::SendAndReceive || mode == SendReceiveModes::ReceiveOnly;
    // Both steps change one set of folders, saved as one unit at the end:
    // each file is written once, and a message is in the Outbox, on its way
    // or delivered. Only a receive that cannot be made (the Inbox or the
    // accounts cannot be read) lets the send be saved alone, and the error
    // box says so.
    FolderSet set;
    set.describe(texts::unsaved::SendReceive);
    bool sentAlone = false;
    try {
        if (sending) {
            run.sendRan = true;
            run.send = send(set);
        }
        if (receiving) {
            run.receiveRan = true;
            try {
                run.receive = receive(set);
            } catch (const StoreError &) {
                if (run.sendRan && !run.send.failed) {
                    set.commit();
                    sentAlone = true;
                }
                throw;
            }
        }
        set.commit();
    } catch (const StoreError &error) {
        run.errorText = sentAlone ? texts::SentButNotReceived + u"\r\r"_s + error.userText()
                                  : ErrorBoxText(error);
    }
    return run;
}
