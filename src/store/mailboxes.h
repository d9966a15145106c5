#pragma once

#include "recordfile.h"
#include "records.h"

#include <QByteArray>
#include <QList>

class ProfileFile;

// mailbox.dat: the accounts.

// mailbox.dat read: its accounts (the sections mailbox-N, by the rules in
// recordfile.h), each with the section it came from, and the rest of the
// file. Throws IndexError for more than 21 accounts.
struct AccountsReading
{
    QList<MailBoxRec> accounts;
    RecordSections sections;
};
AccountsReading ReadAccounts(const ProfileFile &file);
// The accounts of a parsed mailbox.dat: all of them when count is 0, else
// the first count, empty ones making up for those the file lacks.
QList<MailBoxRec> ParseAccounts(const ProfileFile &file, int count);
// The bytes mailbox.dat holds for these accounts, in a file of their own
// or around the rest of the file they were read from.
QByteArray AccountBytes(const QList<MailBoxRec> &accounts);
QByteArray AccountBytes(const QList<MailBoxRec> &accounts, const FileFrame &frame);
