#include "profile.h"

#include "errors.h"
#include "texts.h"

#include <QFile>
#include <QSaveFile>
#include <QStringDecoder>
#include <QStringEncoder>

namespace {
constexpr char Gb18030[] = "GB18030";

bool isBlank(char c)
{
    return c == ' ' || c == '\t' || c == '\v';
}

// Length of the GB18030 character that starts at p: 1, 2 or 4 bytes. A
// lead byte without a valid continuation counts as one byte of its own, so
// a damaged file never swallows a line end.
qsizetype charLength(const char *p, qsizetype remaining)
{
    const uchar c1 = uchar(p[0]);
    if (c1 < 0x81 || c1 == 0xFF || remaining < 2)
        return 1;
    const uchar c2 = uchar(p[1]);
    if ((c2 >= 0x40 && c2 <= 0x7E) || (c2 >= 0x80 && c2 <= 0xFE))
        return 2;
    if (c2 >= 0x30 && c2 <= 0x39 && remaining >= 4) {
        const uchar c3 = uchar(p[2]);
        const uchar c4 = uchar(p[3]);
        if (c3 >= 0x81 && c3 <= 0xFE && c4 >= 0x30 && c4 <= 0x39)
            return 4;
    }
    return 1;
}

void trim(const QByteArray &bytes, qsizetype &begin, qsizetype &end)
{
    while (begin < end && isBlank(bytes.at(begin)))
        ++begin;
    while (end > begin && isBlank(bytes.at(end - 1)))
        --end;
}

char foldCase(char c)
{
    return (c >= 'A' && c <= 'Z') ? char(c + ('a' - 'A')) : c;
}

QByteArray lowered(QByteArrayView name)
{
    QByteArray out(name.data(), name.size());
    for (char &c : out)
        c = foldCase(c);
    return out;
}

QString decode(QByteArrayView bytes)
{
    // GB18030 leaves ASCII as it is, and most values (ids, addresses,
    // dates, flags) are nothing else: those skip the converter.
    bool ascii = true;
    for (char c : bytes) {
        if (uchar(c) >= 0x80) {
            ascii = false;
            break;
        }
    }
    if (ascii)
        return QString::fromLatin1(bytes.data(), bytes.size());
    // One decoder for the whole run; opening a converter costs more than a
    // short value takes to decode.
    static QStringDecoder decoder(Gb18030, QStringConverter::Flag::Stateless);
    return decoder.decode(bytes);
}

bool sameName(QByteArrayView a, QByteArrayView b)
{
    if (a.size() != b.size())
        return false;
    for (qsizetype i = 0; i < a.size(); ++i) {
        if (foldCase(a[i]) != foldCase(b[i]))
            return false;
    }
    return true;
}
}  // namespace

QByteArrayView cutToCharacters(QByteArrayView bytes, qsizetype maxBytes)
{
    if (bytes.size() <= maxBytes)
        return bytes;
    qsizetype end = 0;
    while (end < bytes.size()) {
        const qsizetype len = charLength(bytes.data() + end, bytes.size() - end);
        if (end + len > maxBytes)
            break;
        end += len;
    }
    return bytes.first(end);
}

ProfileFile ProfileFile::load(const QString &path)
{
    QFile file(path);
    if (!file.open(QIODevice::ReadOnly))
        return ProfileFile();
    return parse(file.readAll());
}

ProfileFile ProfileFile::parse(QByteArray bytes)
{
    ProfileFile profile;
    profile.m_bytes = std::move(bytes);
    const QByteArray &b = profile.m_bytes;
    const qsizetype n = b.size();
    Section *current = nullptr;  // lines before the first header go nowhere

    qsizetype pos = 0;
    while (pos < n) {
        // One line: CR and LF are never part of a multi-byte character, so a
        // plain scan finds its end.
        qsizetype lineEnd = pos;
        while (lineEnd < n && b.at(lineEnd) != '\r' && b.at(lineEnd) != '\n')
            ++lineEnd;
        qsizetype next = lineEnd + 1;
        if (lineEnd + 1 < n && b.at(lineEnd) == '\r' && b.at(lineEnd + 1) == '\n')
            next = lineEnd + 2;

        qsizetype s = pos;
        qsizetype e = lineEnd;
        pos = next;
        trim(b, s, e);
        if (s == e || b.at(s) == ';')
            continue;

        if (b.at(s) == '[') {
            qsizetype nameBegin = s + 1;
            qsizetype nameEnd = nameBegin;
            while (nameEnd < e && b.at(nameEnd) != ']')
                nameEnd += charLength(b.constData() + nameEnd, e - nameEnd);
            nameEnd = qMin(nameEnd, e);
            trim(b, nameBegin, nameEnd);
            QByteArray name = lowered(QByteArrayView(b).sliced(nameBegin, nameEnd - nameBegin));
            profile.m_sections.append(Section());
            profile.m_sections.last().entries.reserve(12);  // a message has nine keys
            if (!profile.m_firstSection.contains(name))
                profile.m_firstSection.insert(name, profile.m_sections.size() - 1);
            current = &profile.m_sections.last();
            continue;
        }
        if (!current)
            continue;

        // "=" is never part of a multi-byte character either.
        qsizetype eq = QByteArrayView(b).sliced(s, e - s).indexOf('=');
        if (eq >= 0)
            eq += s;
        Entry entry;
        entry.keyBegin = s;
        entry.keyEnd = eq < 0 ? e : eq;
        trim(b, entry.keyBegin, entry.keyEnd);
        if (eq >= 0) {
            entry.begin = eq + 1;
            entry.end = e;
            trim(b, entry.begin, entry.end);
        }
        current->entries.append(std::move(entry));
    }
    return profile;
}

const ProfileFile::Section *ProfileFile::findSection(QByteArrayView section) const
{
    if (m_lastIndex < 0 || !sameName(m_lastName, section)) {
        const auto it = m_firstSection.constFind(lowered(section));
        m_lastName = section.toByteArray();
        m_lastIndex = it == m_firstSection.cend() ? -1 : it.value();
    }
    return m_lastIndex < 0 ? nullptr : &m_sections.at(m_lastIndex);
}

const ProfileFile::Entry *ProfileFile::find(QByteArrayView section, QByteArrayView key) const
{
    const Section *found = findSection(section);
    if (!found)
        return nullptr;
    for (const Entry &entry : found->entries) {
        if (sameName(QByteArrayView(m_bytes).sliced(entry.keyBegin, entry.keyEnd - entry.keyBegin),
                     key))
            return &entry;
    }
    return nullptr;
}

QString ProfileFile::value(QByteArrayView section, QByteArrayView key, int bufferSize) const
{
    const Entry *entry = find(section, key);
    if (!entry || entry->begin < 0 || bufferSize <= 1)
        return QString();
    QByteArrayView v = QByteArrayView(m_bytes).sliced(entry->begin, entry->end - entry->begin);
    if (v.size() >= 2 && (v.front() == '"' || v.front() == '\'') && v.back() == v.front())
        v = v.sliced(1, v.size() - 2);
    return decode(cutToCharacters(v, bufferSize - 1));
}

void ProfileWriter::line(const QString &text)
{
    m_text += text;
    m_text += u"\r\n";
}

void ProfileWriter::line(QStringView key, const QString &value)
{
    m_text += key;
    m_text += u'=';
    m_text += value;
    m_text += u"\r\n";
}

QByteArray ProfileWriter::bytes() const
{
    QStringEncoder encoder(Gb18030);
    return encoder.encode(m_text);
}

void ProfileWriter::commit(const QString &path) const
{
    QSaveFile file(path);
    if (!file.open(QIODevice::WriteOnly) || file.write(bytes()) < 0 || !file.commit())
        throw FileError(texts::CannotWriteFile.arg(path));
}
