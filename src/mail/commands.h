#pragma once

// The commands that change messages, as the windows give them. Each one
// says which folders it changes, changes them in memory and commits them as
// one unit (FolderSet), so that a failure or a kill leaves every message
// exactly once where it was or where the command puts it. They show
// nothing: the windows ask the questions, show the boxes and redraw when
// the store tells them a folder changed. The commands of the compose window
// return once the disk holds its message, since until then the window is
// the only other place it is kept; the others return at once.

#include "store/mailstore.h"

#include <QString>

// A message as the user sees it: the folder it is shown from, its position
// in the list shown and the record shown there. A command acts on that
// message or on nothing: when the folder has changed behind the window and
// the record is no longer there, the command reports that instead of acting
// on whatever lies at the position now.
struct MailRef
{
    int folder = -1;
    int index = -1;
    EmailRec shown;

    bool isSet() const { return folder >= 0; }
};

// The position of the message in a folder's records: its own position
// when the record there is still the one shown, else the first record
// equal to it; -1 when it is gone.
int LocateMail(const MailList &folder, const MailRef &ref);

// Moves the message to the end of Deleted Items. False when it is gone.
bool MoveToDeletedItems(const MailRef &ref);

// Removes a message of Deleted Items for good. False when it is gone.
bool DeleteForGood(const MailRef &ref);

// Marks a message read ("isnew" "1" to "0"). True when the file changed.
bool MarkRead(const MailRef &ref);

// Where a compose window's message is stored once it is: the folder and
// the id, with the record as the window last stored or opened it.
struct StoredMail
{
    int folder = -1;
    QString id;
    int index = -1;
    EmailRec record;

    bool isSet() const { return folder >= 0; }
};

// Saves a message as a draft. A window whose message is stored already
// (a draft or Outbox message opened again, or saved before) replaces that
// message under its id; any other message becomes a new draft with a new
// id, and so does one whose stored copy has gone meanwhile. The message a
// reply or forward quotes is never touched. `created` tells whether a new
// draft was made.
StoredMail SaveDraft(const EmailRec &message, const StoredMail &stored, bool *created);

// Stores a message in the Outbox to be sent. A stored draft moves there
// with its id; a stored Outbox message is replaced; anything else is added
// with a new id.
void StoreForSend(const EmailRec &message, const StoredMail &stored);

// Stores a message in the Outbox for a later run: as StoreForSend, except
// that a message of Deleted Items opened for editing moves to the Outbox
// as well, with its id.
void StoreForSendLater(const EmailRec &message, const StoredMail &stored);

// A new message id: eight random digits.
QString NewMailId();
