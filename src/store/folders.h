#pragma once

#include "recordfile.h"
#include "records.h"

#include <QByteArray>
#include <QList>

class ProfileFile;

// The six folder files.

// Reads a whole folder into mails from index 0 and sets count to the number
// of its records. A folder number outside 0..5 shows the out-of-range box
// and leaves mails and count as they were. Throws IndexError for more than
// 101 records, changing nothing.
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

// A folder file read: its records (the rules in recordfile.h), each with the
// section it came from, and the rest of the file. Throws IndexError for
// more than 101 records.
struct FolderReading
{
    QList<EmailRec> mails;
    RecordSections sections;
};
FolderReading ReadFolder(int folder, const ProfileFile &file);
// Its records alone.
QList<EmailRec> ParseFolder(int folder, const ProfileFile &file);

// The bytes SaveEmails writes for these records in a file of their own.
QByteArray FolderBytes(const QList<EmailRec> &mails);
// The same around the rest of the file the records were read from.
FileImage FolderImage(const QList<EmailRec> &mails, const FileFrame &frame);
// What ReadFolder gives for the bytes FolderImage wrote for mails and frame.
// A record written as its bytes were read, or whose new lines read back as
// they were written, is taken as it is; only the others are parsed, so
// keeping a saved folder costs little.
FolderReading FolderAsRead(int folder, const QList<EmailRec> &mails, const FileFrame &frame,
                           const FileImage &image);
