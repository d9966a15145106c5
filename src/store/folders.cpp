#include "folders.h"

#include "errors.h"
#include "mailstore.h"
#include "profile.h"
#include "prompter.h"
#include "textutil.h"
#include "texts.h"

#include <QList>

using namespace Qt::Literals::StringLiterals;

QString FolderFile::fileName(int folder)
{
    switch (folder) {
    case Inbox: return u"receive_c.dat"_s;
    case Outbox: return u"send_c.dat"_s;
    case SentItems: return u"receive_s.dat"_s;
    case DeletedItems: return u"deleted_c.dat"_s;
    case Drafts: return u"draft.dat"_s;
    case ServerQueue: return u"send_s.dat"_s;
    default: return QString();
    }
}

namespace {
// The fields of a message in the order of the file's lines, and how each
// is written.
const QList<FieldFormat> &emailFormats()
{
    static const QList<FieldFormat> formats{
        {"id", FieldKind::Trimmed},      {"from", FieldKind::Trimmed},
        {"to", FieldKind::Trimmed},      {"alsoto", FieldKind::Trimmed},
        {"subject", FieldKind::Trimmed}, {"content", FieldKind::Body},
        {"datetime", FieldKind::Trimmed}, {"attachment", FieldKind::Trimmed},
        {"isnew", FieldKind::Trimmed}};
    return formats;
}

QList<const QString *> fieldsOf(const EmailRec &m)
{
    return {&m.id, &m.from, &m.to, &m.alsoto, &m.subject, &m.content, &m.datetime,
            &m.attachment, &m.isnew};
}

QList<QString> valuesOf(const EmailRec &m)
{
    return {m.id, m.from, m.to, m.alsoto, m.subject, m.content, m.datetime, m.attachment, m.isnew};
}

// Whether a record's fields all hold what was read; asked of every record
// of a folder at every change, so without a list made for the question.
bool asRead(const EmailRec &m)
{
    static constexpr QString EmailRec::*fields[] = {
        &EmailRec::id,      &EmailRec::from,     &EmailRec::to,         &EmailRec::alsoto, &EmailRec::subject,
        &EmailRec::content, &EmailRec::datetime, &EmailRec::attachment, &EmailRec::isnew};
    if (!m.origin || m.origin->asRead.size() != qsizetype(std::size(fields)))
        return false;
    for (size_t i = 0; i < std::size(fields); ++i) {
        if (!SameText(m.*fields[i], m.origin->asRead.at(qsizetype(i))))
            return false;
    }
    return true;
}

// The body a record shows. One stored in its brackets is unescaped as the
// files have always been read; one another tool stored without them (or
// shorter than two brackets) shows whole, its line breaks restored, since
// its first and last characters are the writer's text and not marks.
QString bodyOf(const ProfileFile &file, qsizetype section)
{
    const QByteArrayView raw = file.rawValue(section, "content");
    const QString cut = file.sectionValue(section, "content", ProfileFile::ContentBuffer);
    if (raw.size() >= 2 && raw.front() == '[' && raw.back() == ']')
        return UnescapeContent(cut);
    QString body = cut;
    body.replace(u"\\n"_s, u"\r\n"_s, Qt::CaseInsensitive);
    return body;
}

EmailRec readEmail(const ProfileFile &file, qsizetype section)
{
    EmailRec m;
    m.id = LeadingNumberText(file.sectionValue(section, "id"));
    m.from = file.sectionValue(section, "from");
    m.to = file.sectionValue(section, "to");
    m.alsoto = file.sectionValue(section, "alsoto");
    m.subject = file.sectionValue(section, "subject");
    m.content = bodyOf(file, section);
    m.datetime = file.sectionValue(section, "datetime");
    m.attachment = file.sectionValue(section, "attachment");
    m.isnew = LeadingNumberText(file.sectionValue(section, "isnew"));
    m.origin = OriginOf(file, section, valuesOf(m));
    return m;
}
}  // namespace

FolderReading ReadFolder(const ProfileFile &file)
{
    FolderReading out;
    out.sections = SortSections(file, "email", "email-");
    const QList<qsizetype> &records = out.sections.records;
    out.mails.reserve(records.size());
    for (qsizetype k = 0; k < records.size(); ++k)
        out.mails.append(readEmail(file, records[k]));
    return out;
}

MailList ParseFolder(const ProfileFile &file)
{
    return ReadFolder(file).mails;
}

FolderFigures FiguresOf(const ProfileFile &file)
{
    // The same sections as ReadFolder's records, and the same reading of
    // their isnew, without the other eight values.
    const RecordSections sections = SortSections(file, "email", "email-");
    FolderFigures figures;
    figures.total = int(sections.records.size());
    for (qsizetype section : sections.records) {
        if (LeadingNumberText(file.sectionValue(section, "isnew")) == u"1")
            ++figures.unread;
    }
    return figures;
}

FileImage FolderImage(const MailList &mails, const FileFrame &frame)
{
    qsizetype bytes = 32;
    for (const EmailRec &m : mails) {
        bytes += m.origin ? m.origin->bytes.size() + 64
                          : 128 + 2 * (m.id.size() + m.from.size() + m.to.size() + m.alsoto.size()
                                       + m.subject.size() + 2 * m.content.size() + m.datetime.size()
                                       + m.attachment.size() + m.isnew.size());
    }
    RecordFileWriter out(frame, "email", "email-", mails.size(), bytes);
    for (const EmailRec &m : mails) {
        // Most records of a large folder are as they were read: their
        // bytes are taken as they are, without a look at their text.
        if (asRead(m))
            out.stored(m.origin);
        else
            out.record(emailFormats(), fieldsOf(m), m.origin);
    }
    return out.finish();
}

QByteArray FolderBytes(const MailList &mails)
{
    return FolderImage(mails, PlainFrame()).bytes;
}

namespace {
// The GB18030 length of a character that surely reads back as itself: one
// byte for printable ASCII but capitals (which are written lower-cased),
// two for the common Chinese characters and punctuation. 0 for any other:
// its record is parsed instead.
int plainLength(char16_t u)
{
    // Common Chinese first: most of what a trainee writes.
    if (char16_t(u - 0x4E00) <= 0x9FA5 - 0x4E00)
        return 2;
    if (u >= 0x20 && u < 0x7F)
        return u >= u'A' && u <= u'Z' ? 0 : 1;
    if ((u >= 0xFF01 && u <= 0xFF5E) || (u >= 0x3000 && u <= 0x3003)
        || (u >= 0x3008 && u <= 0x3011) || u == 0x2018 || u == 0x2019 || u == 0x201C
        || u == 0x201D || u == 0x2026 || u == 0x00B7)
        return 2;
    return 0;
}

// Whether a value is stored and read back unchanged: nothing lower-cased,
// trimmed, dropped, unquoted or cut.
bool readsBackAsWritten(const QString &value)
{
    qsizetype bytes = 0;
    for (const QChar c : value) {
        const int n = plainLength(c.unicode());
        if (n == 0)
            return false;
        bytes += n;
    }
    if (bytes >= ProfileFile::ValueBuffer)
        return false;
    if (value.isEmpty())
        return true;
    const QChar first = value.front();
    const QChar last = value.back();
    return first != u' ' && last != u' '
        && !((first == u'"' || first == u'\'') && last == first && value.size() >= 2);
}

// The same for a number the reader takes the leading digits of.
bool numberReadsBack(const QString &value)
{
    if (value.isEmpty() || value.size() >= ProfileFile::ValueBuffer
        || (value.front() == u'0' && value.size() > 1))
        return false;
    return std::all_of(value.begin(), value.end(), [](QChar c) { return c >= u'0' && c <= u'9'; });
}

// A body is stored in brackets with its line breaks as "\n"; a backslash
// or a lone CR or LF would not come back the same.
bool bodyReadsBack(const QString &body)
{
    qsizetype bytes = 2;  // the brackets
    const char16_t *text = reinterpret_cast<const char16_t *>(body.utf16());
    for (qsizetype i = 0; i < body.size(); ++i) {
        const char16_t u = text[i];
        if (u == u'\r' && i + 1 < body.size() && text[i + 1] == u'\n') {
            bytes += 2;
            ++i;
            continue;
        }
        const int n = u == u'\\' ? 0 : plainLength(u);
        if (n == 0)
            return false;
        bytes += n;
    }
    return bytes < ProfileFile::ContentBuffer;
}

// Whether each field a record's line was written for reads back as it is.
bool linesReadBack(const EmailRec &m)
{
    const QList<const QString *> fields = fieldsOf(m);
    const QList<FieldFormat> &formats = emailFormats();
    for (qsizetype i = 0; i < fields.size(); ++i) {
        const QString &value = *fields[i];
        if (m.origin && m.origin->asRead.at(i) == value)
            continue;  // its line was kept, and reads as it did
        const bool number = fields[i] == &m.id || fields[i] == &m.isnew;
        const bool back = number ? numberReadsBack(value)
            : formats[i].kind == FieldKind::Body ? bodyReadsBack(value)
                                               : readsBackAsWritten(value);
        if (!back)
            return false;
    }
    return true;
}
}  // namespace


namespace {
void keepAsRead(MailList &mails, qsizetype from, qsizetype to)
{
    for (qsizetype k = from; k < to; ++k) {
        if (asRead(mails.at(k)))
            continue;  // read so: nothing to touch
        EmailRec &m = mails[k];
        // Sections are independent, since no value spans lines: a record
        // alone reads as it does in its file.
        RecordFileWriter one(PlainFrame(), "email", "email-", 1, 0);
        one.record(emailFormats(), fieldsOf(m), m.origin);
        const FileImage image = one.finish();
        const QByteArray body =
            image.bytes.sliced(image.bodyBegin[0], image.bodyEnd[0] - image.bodyBegin[0]);
        if (linesReadBack(m))
            m.origin = std::make_shared<const StoredSection>(StoredSection{body, valuesOf(m)});
        else
            m = readEmail(ProfileFile::parseGb18030("[email-1]\r\n" + body), 0);
    }
}

// The same characters in the same place: an empty text too, which shares
// no data with anything.
bool sameChars(const QString &a, const QString &b)
{
    return a.constData() == b.constData() && a.size() == b.size();
}

// Whether record i of a is the very one of b at j, or a copy of it whose
// every field shares its characters: a look at the records alone, not at
// what they were read from.
bool sameRecord(const MailList &a, qsizetype i, const MailList &b, qsizetype j)
{
    if (a.isSameRecord(i, b, j))
        return true;
    const EmailRec &x = a.at(i), &y = b.at(j);
    return x.origin == y.origin && sameChars(x.id, y.id) && sameChars(x.from, y.from)
        && sameChars(x.to, y.to) && sameChars(x.alsoto, y.alsoto)
        && sameChars(x.subject, y.subject) && sameChars(x.content, y.content)
        && sameChars(x.datetime, y.datetime) && sameChars(x.attachment, y.attachment)
        && sameChars(x.isnew, y.isnew);
}
}  // namespace

void KeepAsRead(MailList &mails)
{
    keepAsRead(mails, 0, mails.size());
}

ChangedRecords KeepAsRead(MailList &mails, const MailList &kept)
{
    // A command changes a few records of a folder: those before and after
    // them are the records kept, as read, and are not looked into (in a
    // folder of 20,000 that look would be most of a change's cost).
    const qsizetype n = mails.size(), common = qMin(n, kept.size());
    qsizetype head = 0, tail = 0;
    while (head < common && sameRecord(mails, head, kept, head))
        ++head;
    while (tail < common - head && sameRecord(mails, n - 1 - tail, kept, kept.size() - 1 - tail))
        ++tail;
    keepAsRead(mails, head, n - tail);
    return {head, n - tail, kept.size() - tail};
}

QString UnescapeContent(const QString &stored)
{
    // The record reader never gives it such a value (see bodyOf); a caller
    // that does fails as the files' format always had it.
    if (stored.size() < 2)
        throw FormatError(texts::BadStoredContent);
    QString out = stored.mid(1, stored.size() - 2);
    out.replace(u"\\n"_s, u"\r\n"_s, Qt::CaseInsensitive);
    return out;
}

int CountUnread(const MailList &mails, qsizetype first, qsizetype last)
{
    return int(std::count_if(mails.begin() + first, last < 0 ? mails.end() : mails.begin() + last,
                             [](const EmailRec &m) { return m.isUnread(); }));
}
