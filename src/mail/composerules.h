#pragma once

// The compose window's text rules, kept apart from its widgets so that the
// exact texts it stores can be checked on their own.

#include "store/records.h"

#include <QString>
#include <QStringList>

namespace compose {

// "Re:" / "Fw:" directly before the quoted message's right-trimmed subject,
// so replying twice gives "Re:Re:hello".
QString ReplySubject(const EmailRec &quoted);
QString ForwardSubject(const EmailRec &quoted);

// The body of a reply or forward: two empty lines to write in, the
// "-----Original Message-----" header block (no blank after the colons),
// an empty line, and the quoted content with "> " before its first line
// only. A reply trims the sender on both sides, a forward on the right.
QString QuotedBlock(const EmailRec &quoted, bool reply);

// The stored attachment list: every item lower-cased, each after one blank,
// so the field starts with a blank (" a.txt(1.00kb) b.txt(2.00kb)").
QString JoinAttachments(const QStringList &items);

// The items shown for a stored attachment list: the pieces between blanks,
// at most 21, stopping at the first piece that is empty or starts with
// character 0. A list that still has its leading blank therefore shows
// nothing; the profile reader normally trims that blank away.
QStringList AttachmentPieces(const QString &field);

// A new attachment item: the file's name and its size in KB with two
// decimals, as in "report.doc(12.50KB)".
QString AttachmentItemText(const QString &fileTitle, qint64 sizeBytes);

// What the compose window's fields become when stored.
struct Fields
{
    QString from;
    QString to;
    QString cc;
    QString subject;
    QString body;        // CR LF line breaks
    QString attachment;  // as JoinAttachments gives it
};

// The stored record: every text lower-cased, the copy line right-trimmed
// as well, stamped with the present time and marked read.
EmailRec BuildRecord(const QString &id, const Fields &fields);

// A field of a message longer than the file keeps: a value reads back with
// at most 255 bytes, the body with at most 2045 (2047 with its brackets),
// so more would be cut without a word on the next reading.
struct Overflow
{
    enum Field { From, To, Cc, Subject, Body, Attachment } field;
    qsizetype bytes = 0;       // the field as stored, in bytes
    qsizetype limit = 0;       // what the file keeps
    qsizetype keptChars = 0;   // characters left after cutting
};
QList<Overflow> Overflows(const EmailRec &m);
// The message with every field cut, at a whole character, to what the
// file keeps: what the next reading would give, without a body's last
// character lost to its missing bracket.
EmailRec CutToFit(EmailRec m);

}  // namespace compose
