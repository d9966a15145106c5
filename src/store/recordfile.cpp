#include "recordfile.h"

#include "profile.h"
#include "textutil.h"

#include <algorithm>

namespace {

QByteArray withLineEnd(QByteArrayView bytes)
{
    QByteArray out;
    AppendLines(out, bytes);
    return out;
}

// The digits of a record's section name, leading zeros dropped, or a null
// array when the section is no record.
QByteArray recordNumber(QByteArrayView name, QByteArrayView prefix)
{
    if (name.size() <= prefix.size() || !name.startsWith(prefix))
        return QByteArray();
    const QByteArrayView digits = name.sliced(prefix.size());
    for (char c : digits) {
        if (c < '0' || c > '9')
            return QByteArray();
    }
    qsizetype zeros = 0;
    while (zeros + 1 < digits.size() && digits[zeros] == '0')
        ++zeros;
    return digits.sliced(zeros).toByteArray();
}

bool isBlankByte(char c)
{
    return c == ' ' || c == '\t' || c == '\v' || c == '\f' || c == '\r' || c == '\n';
}

// Where a line for a field that had none goes: after the last line of the
// body that is not blank, before the blank line that parts it from the next.
qsizetype appendPoint(QByteArrayView body)
{
    qsizetype end = body.size();
    while (end > 0 && isBlankByte(body[end - 1]))
        --end;
    if (end == 0)
        return 0;
    while (end < body.size() && body[end] != '\r' && body[end] != '\n')
        ++end;
    if (end + 1 < body.size() && body[end] == '\r' && body[end + 1] == '\n')
        return end + 2;
    return qMin(end + 1, body.size());
}

void writeField(ProfileWriter &out, const FieldFormat &format, const QString &value)
{
    const QString key = QString::fromLatin1(format.key);
    switch (format.kind) {
    case FieldKind::Kept: out.line(key, value); break;
    case FieldKind::Trimmed: out.line(key, RightTrimmed(value)); break;
    case FieldKind::Body: out.bodyLine(key, value); break;
    }
}

}  // namespace

FileFrame PlainFrame()
{
    return {QByteArray(), QByteArray(), QByteArray("\r\n"), QByteArray()};
}

RecordSections SortSections(const ProfileFile &file, QByteArrayView header, QByteArrayView prefix)
{
    RecordSections out;
    out.frame = PlainFrame();
    out.frame.prelude = withLineEnd(file.prelude());
    struct Record
    {
        QByteArray number;
        qsizetype section;
    };
    QList<Record> records;
    bool headerSeen = false;
    for (qsizetype i = 0; i < file.sectionCount(); ++i) {
        const QByteArrayView name = file.sectionName(i);
        if (!headerSeen && name == header) {
            // Only the first header section counts, as for the reader.
            headerSeen = true;
            const QByteArrayView body = file.sectionBody(i);
            const KeyLine count = FindKeyLine(body, "number");
            if (count.begin < 0) {
                out.frame.headerBefore = withLineEnd(body);
            } else {
                out.frame.headerBefore = body.first(count.begin).toByteArray();
                out.frame.headerAfter = withLineEnd(body.sliced(count.next));
            }
            continue;
        }
        if (file.sectionIsBinary(i)) {
            AppendLines(out.setAside, file.sectionWhole(i));
            ++out.setAsideCount;
            continue;
        }
        QByteArray number = recordNumber(name, prefix);
        if (number.isNull())
            AppendLines(out.frame.trailer, file.sectionWhole(i));
        else
            records.append({std::move(number), i});
    }
    std::stable_sort(records.begin(), records.end(), [](const Record &a, const Record &b) {
        return a.number.size() != b.number.size() ? a.number.size() < b.number.size()
                                                  : a.number < b.number;
    });
    out.records.reserve(records.size());
    for (const Record &r : records)
        out.records.append(r.section);
    // Read whole: a folder holds any number of messages.
    out.number = LeadingNumber(file.value(header, "number", 16));
    return out;
}

StoredOrigin OriginOf(const ProfileFile &file, qsizetype section, QList<QString> fields)
{
    return std::make_shared<const StoredSection>(
        StoredSection{withLineEnd(file.sectionBody(section)), std::move(fields)});
}

RecordFileWriter::RecordFileWriter(const FileFrame &frame, QByteArrayView header,
                                   QByteArrayView prefix, qsizetype count, qsizetype sizeHint)
    : m_prefix(prefix)
{
    QByteArray &out = m_image.bytes;
    out.reserve(sizeHint + frame.prelude.size() + frame.headerBefore.size()
                + frame.headerAfter.size() + frame.trailer.size() + 64);
    out += frame.prelude;
    out += '[';
    out += header;
    out += "]\r\n";
    out += frame.headerBefore;
    out += "number=";
    out += QByteArray::number(count);
    out += "\r\n";
    out += frame.headerAfter;
    m_trailer = frame.trailer;  // written by finish()
    m_image.bodyBegin.reserve(count);
    m_image.bodyEnd.reserve(count);
    m_image.asOrigin.reserve(count);
}

QByteArray &RecordFileWriter::sectionHeader()
{
    QByteArray &out = m_image.bytes;
    out += '[';
    out += m_prefix;
    out += QByteArray::number(m_image.bodyBegin.size() + 1);
    out += "]\r\n";
    m_image.bodyBegin.append(out.size());
    return out;
}

void RecordFileWriter::record(const QList<FieldFormat> &formats, const QList<const QString *> &fields,
                              const StoredOrigin &origin)
{
    QByteArray &out = sectionHeader();
    bool asOrigin = false;

    if (!origin || origin->asRead.size() != fields.size()) {
        ProfileWriter lines;
        for (qsizetype i = 0; i < formats.size(); ++i)
            writeField(lines, formats[i], *fields[i]);
        lines.line(QStringView());
        out += lines.bytes();
    } else {
        struct Replacement
        {
            KeyLine line;
            QByteArray bytes;
        };
        QList<Replacement> replacements;
        const QByteArrayView body = origin->bytes;
        for (qsizetype i = 0; i < formats.size(); ++i) {
            if (SameText(*fields[i], origin->asRead[i]))
                continue;
            ProfileWriter line;
            writeField(line, formats[i], *fields[i]);
            KeyLine at = FindKeyLine(body, formats[i].key);
            if (at.begin < 0)
                at.begin = at.next = appendPoint(body);
            replacements.append({at, line.bytes()});
        }
        asOrigin = replacements.isEmpty();
        std::stable_sort(replacements.begin(), replacements.end(),
                         [](const Replacement &a, const Replacement &b) {
                             return a.line.begin < b.line.begin;
                         });
        qsizetype from = 0;
        for (const Replacement &r : replacements) {
            out += body.sliced(from, r.line.begin - from);
            out += r.bytes;
            from = r.line.next;
        }
        out += body.sliced(from);
    }
    m_image.bodyEnd.append(out.size());
    m_image.asOrigin.append(asOrigin);
}

void RecordFileWriter::stored(const StoredOrigin &origin)
{
    QByteArray &out = sectionHeader();
    out += origin->bytes;
    m_image.bodyEnd.append(out.size());
    m_image.asOrigin.append(true);
}

FileImage RecordFileWriter::finish()
{
    m_image.bytes += m_trailer;
    return std::move(m_image);
}
