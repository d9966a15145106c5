#include "engine.h"

#include "recipients.h"
#include "store/clock.h"
#include "store/errors.h"
#include "store/folders.h"
#include "store/mailboxes.h"
#include "store/prompter.h"
#include "store/textutil.h"
#include "texts.h"

using namespace Qt::Literals::StringLiterals;

namespace {
// The next free slot of a folder array, refusing a 102nd message before
// anything is written.
EmailRec &slot(EmailArray &mails, int position)
{
    if (position >= MAX_FOLDER_MAILS)
        throw IndexError(texts::TooManyMails);
    return mails[position];
}
}  // namespace

bool CheckOutboxAccounts()
{
    EmailArray outbox;
    MailCount nOut = 0;
    LoadEmails(FolderFile::Outbox, outbox, nOut);
    MailBoxArray accounts;
    MailCount nAcc = 0;
    LoadMailBoxes(accounts, nAcc);
    if (nAcc == 0)
        return false;

    // Only the first account is compared, on purpose, and the first message
    // that names it neither as sender nor as recipient ends the check with a
    // single box: a message from the second account is refused as well.
    const QString &address = accounts[0].address;
    for (int i = 0; i < nOut; ++i) {
        if (TrimSpaces(outbox[i].from) == address || TrimSpaces(outbox[i].to) == address)
            continue;
        prompter().message(Prompter::Icon::Exclamation, texts::AppTitle,
                           texts::OutboxWithoutAccount);
        return true;
    }
    return false;
}

SendResult SendStep()
{
    EmailArray outbox, sent, queue;
    MailCount nOut = 0, nSent = 0, nQueue = 0;
    LoadEmails(FolderFile::Outbox, outbox, nOut);
    LoadEmails(FolderFile::SentItems, sent, nSent);
    LoadEmails(FolderFile::ServerQueue, queue, nQueue);

    SendResult result;
    // One stamp per step: every message a step moves bears the same minute.
    const QString stamp = NowStamp();
    // Every message is checked, even after a failure, and the valid ones
    // are copied in memory all the same; only the saving depends on the
    // whole Outbox being valid.
    for (int i = 0; i < nOut; ++i) {
        const EmailRec &m = outbox[i];
        if (!RecipientsAcceptable(m.to, m.alsoto)) {
            result.failed = true;
            continue;
        }
        EmailRec &kept = slot(sent, nSent + i);
        kept = m;  // keeps the Outbox message's own isnew
        kept.datetime = stamp;
        EmailRec &travelling = slot(queue, nQueue + i);
        travelling = m;
        travelling.isnew = u"1"_s;
        travelling.datetime = stamp;
    }
    if (result.failed)
        return result;

    SaveEmails(FolderFile::SentItems, sent, MailCount(nSent + nOut));
    SaveEmails(FolderFile::ServerQueue, queue, MailCount(nQueue + nOut));
    SaveEmails(FolderFile::Outbox, outbox, 0);
    result.sent = nOut;
    result.barStarts = true;
    return result;
}

ReceiveResult ReceiveStep()
{
    ReceiveResult result;
    EmailArray queue, inbox;
    MailCount nQueue = 0, nIn = 0;
    LoadEmails(FolderFile::ServerQueue, queue, nQueue);
    LoadEmails(FolderFile::Inbox, inbox, nIn);
    MailBoxArray accounts;
    MailCount nAcc = 0;
    LoadMailBoxes(accounts, nAcc);
    if (nAcc == 0) {
        result.kept = nQueue;
        return result;
    }
    result.hadAccounts = true;

    const MailCount unreadBefore = CountUnread(inbox, nIn);

    const QString stamp = NowStamp();
    MailCount kept = 0;
    for (int i = 0; i < nQueue; ++i) {
        const QString recipients = RecipientText(queue[i].to, queue[i].alsoto);
        bool matched = false;
        // One copy per matching account: a message for two local accounts
        // arrives twice. The copy keeps the queued isnew.
        for (int j = 0; j < nAcc; ++j) {
            if (!AddressMatches(recipients, accounts[j].address))
                continue;
            EmailRec &copy = slot(inbox, nIn);
            copy = queue[i];
            copy.datetime = stamp;
            ++nIn;
            ++result.received;
            matched = true;
        }
        if (!matched) {
            if (kept != i)
                queue[kept] = queue[i];
            ++kept;
        }
    }
    result.kept = kept;
    result.inboxUnread = MailCount(unreadBefore + result.received);

    SaveEmails(FolderFile::Inbox, inbox, nIn);
    SaveEmails(FolderFile::ServerQueue, queue, kept);
    return result;
}

RunResult RunSendReceive(qint16 mode)
{
    RunResult run;
    if (mode == SendReceiveModes::SendAndReceive || mode == SendReceiveModes::SendOnly) {
        run.send = SendStep();
        run.sendRan = true;
    }
    if (mode == SendReceiveModes::SendAndReceive || mode == SendReceiveModes::ReceiveOnly) {
        run.receive = ReceiveStep();
        run.receiveRan = true;
    }
    return run;
}
