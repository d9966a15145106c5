#pragma once

#include "records.h"

#include <QByteArray>
#include <QList>

class ProfileFile;

// The six folder files.

// Reads a whole folder into mails from index 0 and sets count from the
// file. A folder number outside 0..5 shows the out-of-range box and leaves
// mails and count as they were. Throws IndexError for a count above 101 and
// FormatError for a stored body without its brackets, changing nothing.
void LoadEmails(int folder, EmailArray &mails, MailCount &count);
// Rewrites the folder's file with records 0..count-1, every value
// lower-cased and right-trimmed. A bad folder number shows the box and
// writes nothing.
void SaveEmails(int folder, const EmailArray &mails, MailCount count);

// The body of a stored value (in brackets, line breaks as "\n"); throws
// FormatError when it is shorter than the two brackets.
QString UnescapeContent(const QString &stored);

// Messages of the folder whose isnew is exactly "1".
MailCount CountUnread(int folder);
// The same count for records 0..count-1 of a folder already loaded.
MailCount CountUnread(const EmailArray &mails, MailCount count);
MailCount CountUnread(const QList<EmailRec> &mails);

// Shifts the records after position one place down; the last slot keeps
// its contents.
void RemoveEmailAt(EmailArray &mails, int position);

// The records of a parsed folder file, by its "number"; the rules above.
QList<EmailRec> ParseFolder(int folder, const ProfileFile &file);
// The bytes SaveEmails writes for these records.
QByteArray FolderBytes(const QList<EmailRec> &mails);
// What ParseFolder gives for bytes, which FolderBytes wrote for mails. Most
// records read back as they were written and are taken as they are; only
// the others are parsed, so keeping a saved folder costs little.
QList<EmailRec> FolderAsRead(int folder, const QList<EmailRec> &mails, const QByteArray &bytes);
