#pragma once

#include "records.h"

#include <QByteArray>
#include <QList>

class ProfileFile;

// mailbox.dat: the accounts.

// Fills accounts from index 0. A count of 0 on entry is replaced by the
// file's "number"; any other count reads that many accounts. Throws
// IndexError when the count exceeds the array's capacity.
void LoadMailBoxes(MailBoxArray &accounts, MailCount &count);
// Rewrites mailbox.dat with records 0..count-1, every value lower-cased.
void SaveMailBoxes(const MailBoxArray &accounts, MailCount count);
// Shifts the records after position one place down; the last slot keeps
// its contents.
void RemoveMailBoxAt(MailBoxArray &accounts, int position);

// The accounts of a parsed mailbox.dat: count of them, or as many as its
// "number" says when count is 0.
QList<MailBoxRec> ParseAccounts(const ProfileFile &file, int count);
// The bytes SaveMailBoxes writes for these accounts.
QByteArray AccountBytes(const QList<MailBoxRec> &accounts);
