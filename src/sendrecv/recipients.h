#pragma once

#include "store/records.h"

#include <QList>
#include <QString>

// The two address rules of a send-and-receive run: whether an Outbox
// message may leave, and which local accounts a queued message reaches.

// Send side: to must hold "@"; alsoto, with character 0 removed and
// surrounding spaces trimmed, must be empty or hold "@". Only the presence
// of "@" is tested, so a field of several addresses passes when any one
// of them has it.
bool RecipientsAcceptable(const QString &to, const QString &alsoto);

// Receive side: to + ";" + alsoto with every ";" and "," turned into
// character 0, so that each address stands between separators that no
// address can contain.
QString RecipientText(const QString &to, const QString &alsoto);

// True when address occurs anywhere in a RecipientText, letter case
// respected. Text around it is allowed: "xbob@a.cny" matches "bob@a.cn".
bool AddressMatches(const QString &recipientText, const QString &address);

// The To line a message shows in the preview and the read window. In the
// Inbox it names the local account the message reached: for each account
// in file order the line becomes that account's address when it is among
// the recipients and the message's own To text when it is not, so the last
// account decides. Elsewhere it is always the To text.
QString ToLine(const EmailRec &m, bool inInbox, const QList<MailBoxRec> &accounts);
