#pragma once

#include "records.h"

#include <QByteArray>
#include <QByteArrayView>
#include <QList>
#include <QString>

class ProfileFile;

// A data file as its records and the rest.
//
// How a file is read: its records are the sections named prefix followed by
// decimal digits ("email-7", "mailbox-12"), whatever the header's "number"
// says, which is only a hint. They are taken in the order of their number
// (leading zeros and all: "email-007" is 7), sections of the same number in
// the order the file has them; a number no section has is no record, so a
// gap costs nothing. What else the file holds is kept, and written back
// around the records at the next save: the lines before the first section
// first, then the header section with every line but its count as it was,
// then the records, renumbered from 1, then every other section (a second
// header, a section of another name) whole, in the order of the file. A
// section holding bytes no text holds (NUL and the like) is no record: it
// is kept aside (RecordSections::setAside) for the store to save beside
// the file. Every part ends with a line end, one being added where the
// file had none, so that no part runs into the header written after it.

struct FileFrame
{
    QByteArray prelude;       // the lines before the first section
    QByteArray headerBefore;  // the header section's lines before its count
    QByteArray headerAfter;   // and after it: the blank line, in a file the program wrote
    QByteArray trailer;       // the sections that are no records

    friend bool operator==(const FileFrame &a, const FileFrame &b)
    {
        return a.prelude == b.prelude && a.headerBefore == b.headerBefore
            && a.headerAfter == b.headerAfter && a.trailer == b.trailer;
    }
};

// The frame of a file that the program writes afresh.
FileFrame PlainFrame();

struct RecordSections
{
    FileFrame frame;
    QList<qsizetype> records;  // the file's sections that are records, in order
    int number = 0;            // what the header's count says
    QByteArray setAside;       // the sections holding bytes no text holds, whole
    int setAsideCount = 0;

    bool countDisagrees() const { return number != records.size(); }
};
RecordSections SortSections(const ProfileFile &file, QByteArrayView header, QByteArrayView prefix);

// The origin of a record read from section i of file, with its fields.
StoredOrigin OriginOf(const ProfileFile &file, qsizetype section, QList<QString> fields);

// How a new line of a field is written.
enum class FieldKind {
    Kept,     // lower-cased (account values keep their trailing blanks)
    Trimmed,  // lower-cased and right-trimmed (message values)
    Body,     // lower-cased, in brackets, line breaks as "\n"
};
struct FieldFormat
{
    const char *key;
    FieldKind kind;
};

// The bytes written for a data file, and where each record's section
// body lies in them.
struct FileImage
{
    QByteArray bytes;
    QList<qsizetype> bodyBegin;
    QList<qsizetype> bodyEnd;
    QList<bool> asOrigin;  // the body is the bytes of the record's origin
};

class RecordFileWriter
{
public:
    RecordFileWriter(const FileFrame &frame, QByteArrayView header, QByteArrayView prefix,
                     qsizetype count, qsizetype sizeHint);
    // The next record: its fields in the order of formats, and where it was
    // read from. A record without an origin, or with one of other fields,
    // is written as new; one whose fields all hold what was read, as the
    // bytes read; any other keeps the lines of the fields that did not
    // change, and a field that had no line gets one after the last line
    // that is not blank.
    void record(const QList<FieldFormat> &formats, const QList<const QString *> &fields,
                const StoredOrigin &origin);
    // The next record, whose fields all hold what was read: its bytes.
    void stored(const StoredOrigin &origin);
    FileImage finish();

private:
    // Writes the next record's "[PREFIXn]" line and marks where its body
    // begins; the bytes, for the body to follow.
    QByteArray &sectionHeader();
    QByteArrayView m_prefix;
    QByteArray m_trailer;
    FileImage m_image;
};
