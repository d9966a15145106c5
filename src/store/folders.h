#pragma once

#include "recordfile.h"
#include "records.h"

#include <QByteArray>
#include <QList>

class ProfileFile;

// The six folder files.

// The body of a stored value (in brackets, line breaks as "\n"); throws
// FormatError when it is shorter than the two brackets.
QString UnescapeContent(const QString &stored);

// Messages of the folder whose isnew is exactly "1". A folder number
// outside 0..5 shows the out-of-range box and counts nothing.
int CountUnread(int folder);
int CountUnread(const QList<EmailRec> &mails);

// A folder file read: its records (the rules in recordfile.h), each with the
// section it came from, and the rest of the file.
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
// Makes mails what ReadFolder gives for the file FolderImage writes for
// them, as long as that file reads as GB18030 (ReadsAsGb18030): lower-cased,
// trimmed and cut as the next start will see them, each record at its
// position. A record whose fields still hold what was read is taken as it
// is; of the others only the section is written, and kept as it reads back,
// so that keeping a folder of any size after a change costs the records
// that changed.
void KeepAsRead(int folder, QList<EmailRec> &mails);
// The same for records changed from kept, records of this folder as
// KeepAsRead or ReadFolder left them.
void KeepAsRead(int folder, QList<EmailRec> &mails, const QList<EmailRec> &kept);

// How many records a folder file holds and how many are unread, by the
// rules ReadFolder reads them with, without decoding the messages.
struct FolderFigures
{
    int total = 0;
    int unread = 0;
};
FolderFigures FiguresOf(const ProfileFile &file);
