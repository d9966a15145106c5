#pragma once

#include <QByteArray>
#include <QByteArrayView>
#include <QHash>
#include <QList>
#include <QString>
#include <QStringList>

// Reading and writing of the INI-format data files.
//
// ProfileFile reads a whole file once and then answers (section, key)
// queries exactly as the platform's profile-string reader would, with
// default "" and a buffer of a given size:
//  - section and key names match without regard to ASCII letter case; only
//    the first section of a name is searched (a later one of the same name
//    is not merged in), and in it the first line with a matching key wins;
//  - blanks (space, tab, vertical tab) around a section name inside the
//    brackets, around a key and around a value are dropped; blank lines are
//    ignored;
//  - a line whose first non-blank character is ";" is a comment; a ";"
//    anywhere else is ordinary text;
//  - a line whose first non-blank character is "[" is a section header; the
//    name ends at the first "]" and the rest of the line is ignored; with no
//    "]" the rest of the line is the name;
//  - the first "=" separates key from value, so "k=a=b" gives "a=b"; a line
//    with no "=" is a key with no value, which reads as "" and still hides a
//    later line of the same key; lines before the first header belong to no
//    section and are never found;
//  - one pair of matching quotes (both ends the same, single or double, the
//    value at least two characters long) is stripped from a value, keeping
//    the blanks inside; mismatched ends are kept;
//  - CR LF, LF alone and CR alone end a line, and so does the end of the
//    file;
//  - a value longer than the buffer is cut to at most buffer - 1 bytes of
//    the file's GB18030 text, never splitting a character;
//  - a missing file, section or key reads as "".
// A file saved by a text editor in another encoding is read as its
// encoding says: UTF-16 (either byte order) and UTF-8 by their byte-order
// mark, UTF-8 without one when its bytes are valid UTF-8 holding Chinese
// characters (and nothing GB18030 bytes would turn into when taken for
// UTF-8); everything else is GB18030. Foreign text is turned into
// GB18030 first, which holds every character, so the rules below apply to
// it unchanged.
// Parsing works on the raw bytes, stepping over whole GB18030 characters,
// so a trail byte that looks like "]" never ends a section name. Queries are
// ASCII, so plain byte-wise case folding is enough to match them. Keys stay
// spans of the file's bytes: a load asks a few hundred questions, and
// copying every key would cost more than the answers.
class ProfileFile
{
public:
    static constexpr int ValueBuffer = 256;     // every ordinary key
    static constexpr int ContentBuffer = 2048;  // the message body

    ProfileFile() = default;

    // Reads and parses the file; a missing file is empty. Throws FileError
    // when something stands at path that cannot be read (no permission, a
    // folder), so that it is never taken for an empty file and replaced.
    static ProfileFile load(const QString &path);
    // Parses bytes as they would stand in a file.
    static ProfileFile parse(QByteArray bytes);
    // Parses GB18030 bytes as they are, whatever encoding they might pass
    // for alone: a part of a file whose encoding is settled.
    static ProfileFile parseGb18030(QByteArray bytes);

    // The value of key in section, cut to bufferSize - 1 bytes and decoded.
    QString value(QByteArrayView section, QByteArrayView key,
                  int bufferSize = ValueBuffer) const;

    // The file's bytes, as GB18030.
    const QByteArray &bytes() const { return m_bytes; }
    // Nothing but blanks and line ends (a missing file included).
    bool isBlank() const;
    // Holds bytes no text file has: NUL or other control characters.
    bool isBinary() const;
    bool hasSection(QByteArrayView section) const;
    // Whether some section is named prefix followed by digits.
    bool hasNumberedSection(QByteArrayView prefix) const;

    // The sections one by one, in file order, each its own (a later section
    // of a name is not hidden here, as it is from value()).
    qsizetype sectionCount() const { return m_sections.size(); }
    // Lower-cased, the blanks around it dropped.
    QByteArrayView sectionName(qsizetype i) const { return m_sectionNames.at(i); }
    // The bytes after the header line, up to the next header line or the
    // end of the file; with the header line, for sectionWhole().
    QByteArrayView sectionBody(qsizetype i) const;
    QByteArrayView sectionWhole(qsizetype i) const;
    // Holds NUL or another control character no text holds.
    bool sectionIsBinary(qsizetype i) const;
    // The bytes before the first header line.
    QByteArrayView prelude() const;
    // value() of section i itself.
    QString sectionValue(qsizetype i, QByteArrayView key, int bufferSize = ValueBuffer) const;
    // The whole value of key in section i, its quotes stripped but not cut;
    // a null view when the key is missing or has no "=".
    QByteArrayView rawValue(qsizetype i, QByteArrayView key) const;

private:
    struct Entry
    {
        qsizetype keyBegin = 0;  // key bytes in m_bytes
        qsizetype keyEnd = 0;
        qsizetype begin = -1;  // value bytes in m_bytes; begin < 0: no "="
        qsizetype end = -1;
    };
    struct Section
    {
        QList<Entry> entries;
        qsizetype headerBegin = 0;  // the header line's first byte
        qsizetype bodyBegin = 0;    // the first byte after its line end
        qsizetype end = 0;          // the next header line's first byte
    };

    const Section *findSection(QByteArrayView section) const;
    const Entry *find(QByteArrayView section, QByteArrayView key) const;
    const Entry *findIn(const Section &section, QByteArrayView key) const;
    QByteArrayView valueOf(const Entry *entry) const;

    QByteArray m_bytes;
    bool m_binary = false;
    QList<Section> m_sections;
    QList<QByteArray> m_sectionNames;  // lower-cased, in file order
    QHash<QByteArray, qsizetype> m_firstSection;  // lower-cased name -> index
    // Callers ask for the keys of one section in a row; the last section
    // found is remembered so that the run costs one hash lookup.
    mutable QByteArray m_lastName;
    mutable qsizetype m_lastIndex = -1;  // -1: none yet, or not found
};

// Builds a data file line by line: GB18030 text, CR LF line ends. The
// bytes go to the disk through a FileCommit. Values are written lower-cased
// (ASCII letters only): the program writes no capital into a data file.
class ProfileWriter
{
public:
    void reserve(qsizetype characters) { m_text.reserve(characters); }
    void line(QStringView text);
    // "[name]"
    void section(QByteArrayView name);
    // "key=value"
    void line(QStringView key, QStringView value);
    // "key=[body]", each line break (CR LF, CR or LF) written as "\n". The
    // brackets keep leading and trailing blanks, which the reader would
    // otherwise trim away.
    void bodyLine(QStringView key, QStringView body);

    QByteArray bytes() const;

private:
    QString m_text;
};

// The first line of a section's body (as sectionBody() gives it) that holds
// key, the line the reader takes key's value from: its first byte and the
// first byte after its line end. begin is -1 when no line holds key.
struct KeyLine
{
    qsizetype begin = -1;
    qsizetype next = -1;
};
KeyLine FindKeyLine(QByteArrayView body, QByteArrayView key);

// Reads an open file to its end into bytes, filling the room bytes already
// has first, and stops once more than limit bytes have come (limit < 0: no
// limit). An interrupted read is tried again. 0, or the errno of a failure.
int ReadToEnd(int fd, QByteArray &bytes, qsizetype limit = -1);
// Writes all of bytes to an open file, trying an interrupted write again.
// 0, or the errno of a failure.
int WriteToEnd(int fd, QByteArrayView bytes);

// Whether bytes hold NUL or another control character no text holds.
bool HoldsBinary(QByteArrayView bytes);

// Whether bytes end with a line end (CR or LF); empty bytes need none.
bool EndsLine(QByteArrayView bytes);
// Appends bytes to out, and a CR LF when they do not end their last line.
void AppendLines(QByteArray &out, QByteArrayView bytes);

// Cuts GB18030 bytes to at most maxBytes without splitting a character.
QByteArrayView cutToCharacters(QByteArrayView bytes, qsizetype maxBytes);

// The bytes of a file as GB18030, whatever encoding its marks or its bytes
// show (see above).
QByteArray ToGb18030(QByteArray bytes);

// Whether ToGb18030 leaves bytes as they are.
bool ReadsAsGb18030(QByteArrayView bytes);

// Bytes of text as the files store it: GB18030.
QByteArray EncodeGb18030(const QString &text);
