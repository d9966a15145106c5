#pragma once

#include "store/records.h"

#include <QString>

class FolderSet;

// The send-and-receive engine. There is no network: sending copies the
// Outbox into Sent Items and the server queue, receiving moves queued mail
// into the Inbox. A step loads the folders it needs whole and changes them
// in memory; they are saved whole once it ends (once both end, in a run of
// both), so a step ended by a check or an error has written nothing. The
// steps show nothing; they report what they did and the progress dialog
// turns that into window updates.

// What the dialog's SendReceiveMode asks for.
namespace SendReceiveModes {
inline constexpr qint16 SendAndReceive = 0;
inline constexpr qint16 ReceiveOnly = 1;
inline constexpr qint16 SendOnly = 2;
}  // namespace SendReceiveModes

struct SendResult
{
    // A message failed the recipient check: no file was written and the
    // Outbox keeps every message. The dialog's SendFailed.
    bool failed = false;
    // Messages moved out of the Outbox (0 when failed).
    int sent = 0;
    // The step asks the dialog to start its bar; false only when failed.
    bool barStarts = false;
};

struct ReceiveResult
{
    // Inbox copies appended; a message for two accounts counts twice.
    int received = 0;
    // Messages left in the server queue: those that matched no account, or
    // all of them when there was no account.
    int kept = 0;
    // The Inbox unread count to show: the unread messages the Inbox had
    // before the step plus received. Only meaningful when received > 0; the
    // main window is told nothing otherwise.
    int inboxUnread = 0;
    // Receiving always lets the bar run.
    bool barStarts = true;
};

struct RunResult
{
    bool sendRan = false;
    bool receiveRan = false;
    SendResult send;
    ReceiveResult receive;

    // A step that a store error ended (a file that cannot be read, a data
    // folder that cannot be written): the box to show, which says what did
    // and did not change.
    // Empty when both steps ran to their end.
    QString errorText;

    bool sendFailed() const { return send.failed; }
    // Whether any step started the bar; after a failed send-only run
    // nothing does and the dialog waits for its caller to unload it.
    bool barStarts() const
    {
        return errorText.isEmpty()
            && ((sendRan && send.barStarts) || (receiveRan && receive.barStarts));
    }
};

// Checks before a send that every Outbox message names the first account,
// by its from or its to (spaces trimmed, exact, case-sensitive). At the
// first message that names neither it shows the "no account" box and
// returns true: the send must not happen. False with no message or no
// account. Only the first account is compared, deliberately.
bool CheckOutboxAccounts();

// The send step on folders that the caller commits, so that a class run
// saves its own record in the same unit.
SendResult SendInto(FolderSet &set);

// The steps of one dialog load: mode 0 send then receive, 1 receive, 2
// send, any other mode neither. Sending moves the whole Outbox or nothing:
// every message must pass RecipientsAcceptable, then each goes to Sent
// Items (keeping its isnew) and to the server queue (isnew "1"), both
// stamped with NowStamp(). Receiving delivers each queued message into the
// Inbox once for every account whose address occurs among its recipients;
// messages that match no account stay queued in order. A failed send does not keep mode 0 from
// receiving. Both steps are saved as one unit, unless the receive cannot
// be made (the Inbox or the accounts cannot be read): then the send is
// saved alone. A store error ends the run and is reported in errorText,
// which says whether the send went through.
RunResult RunSendReceive(qint16 mode);
