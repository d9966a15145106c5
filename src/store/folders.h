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

// Messages whose isnew is exactly "1", of all or of those from first up
// to last.
int CountUnread(const MailList &mails, qsizetype first = 0, qsizetype last = -1);

// A folder file read: its records (the rules in recordfile.h), each with the
// section it came from, and the rest of the file.
struct FolderReading
{
    MailList mails;
    RecordSections sections;
};
FolderReading ReadFolder(const ProfileFile &file);
// Its records alone.
MailList ParseFolder(const ProfileFile &file);

// The bytes a folder file holds for these records alone.
QByteArray FolderBytes(const MailList &mails);
// The same around the rest of the file the records were read from.
FileImage FolderImage(const MailList &mails, const FileFrame &frame);
// Makes mails what ReadFolder gives for the file FolderImage writes for
// them, as long as that file reads as GB18030 (ReadsAsGb18030): lower-cased,
// trimmed and cut as the next start will see them. A record whose fields still hold what was read is taken as it
// is; of the others only the section is written, and kept as it reads back,
// so that keeping a folder of any size after a change costs the records
// that changed.
void KeepAsRead(MailList &mails);
// The same for records changed from kept, records as KeepAsRead or
// ReadFolder left them. Only records from first up to last of mails are
// looked at, in place of those of kept up to keptLast; the others are the
// very records kept.
struct ChangedRecords
{
    qsizetype first = 0;
    qsizetype last = 0;
    qsizetype keptLast = 0;
};
ChangedRecords KeepAsRead(MailList &mails, const MailList &kept);

// How many records a folder file holds and how many are unread, by the
// rules ReadFolder reads them with, without decoding the messages.
struct FolderFigures
{
    int total = 0;
    int unread = 0;
};
FolderFigures FiguresOf(const ProfileFile &file);
