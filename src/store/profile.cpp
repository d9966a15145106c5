#include "profile.h"

#include "errors.h"
#include "texts.h"

#include "commit.h"

#include <QFile>
#include <QStringDecoder>
#include <QStringEncoder>

#include <algorithm>
#include <cerrno>
#include <cstring>
#include <memory>
#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

namespace {
constexpr char Gb18030[] = "GB18030";

bool isBlankChar(char c)
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
    while (begin < end && isBlankChar(bytes.at(begin)))
        ++begin;
    while (end > begin && isBlankChar(bytes.at(end - 1)))
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
    // short value takes to decode. One per thread: the class folder's thread
    // reads message files while the window reads folders.
    static thread_local QStringDecoder decoder(Gb18030, QStringConverter::Flag::Stateless);
    return decoder.decode(bytes);
}

// Whether bytes without a byte-order mark are UTF-8 text. Valid UTF-8 is not
// enough: one GB18030 character in five is valid UTF-8 on its own. So the
// text must also read as a Chinese user writes it: some CJK characters and
// nothing but CJK, its punctuation, full-width forms and Latin-1 besides
// ASCII, where GB18030 bytes taken for UTF-8 give Greek, Cyrillic and the
// like.
bool looksUtf8(QByteArrayView bytes)
{
    // GB18030 Chinese text fails the check on its first character, before
    // anything is decoded.
    if (!bytes.isValidUtf8())
        return false;
    bool cjk = false;
    for (QChar c : QString::fromUtf8(bytes)) {
        const char16_t u = c.unicode();
        if (u < 0x80)
            continue;
        const bool ideograph = (u >= 0x3000 && u <= 0x9FFF) || (u >= 0xFF00 && u <= 0xFFEF);
        if (!ideograph && !(u >= 0xA0 && u <= 0xFF) && !(u >= 0x2000 && u <= 0x206F)
            && !c.isSurrogate())
            return false;
        cjk = cjk || ideograph;
    }
    return cjk;
}

// NUL and the control characters that no text holds; tab, the line ends,
// vertical tab, form feed and the old end-of-file mark are text.
bool isBinaryByte(uchar c)
{
    return c < 0x20 && c != '\t' && c != '\n' && c != '\v' && c != '\f' && c != '\r' && c != 0x1A;
}

bool hasBinaryBytes(QByteArrayView bytes)
{
    for (char ch : bytes) {
        if (isBinaryByte(uchar(ch)))
            return true;
    }
    return false;
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

namespace {
// The two-byte code of every character of the Basic Multilingual Plane that
// has one, 0 for the others, taken from the converter itself on first use.
// A full folder is some 300,000 characters, nearly all ASCII or two-byte
// Chinese: a look-up each costs a fraction of a pass through the converter.
const quint16 *twoByteCodes()
{
    static const std::unique_ptr<quint16[]> codes = [] {
        auto table = std::make_unique<quint16[]>(0x10000);
        QString all;
        for (char32_t u = 0x80; u <= 0xFFFF; ++u) {
            if (!QChar::isSurrogate(u))
                all += QChar(char16_t(u));
        }
        const QByteArray bytes =
            QStringEncoder(Gb18030, QStringConverter::Flag::Stateless).encode(all);
        // A GB18030 character is one byte below 0x80, four when its second
        // byte is a digit, else two.
        qsizetype at = 0;
        for (QChar c : all) {
            const uchar lead = uchar(bytes.at(at));
            const bool digit = at + 1 < bytes.size() && unsigned(uchar(bytes.at(at + 1)) - '0') < 10;
            const qsizetype length = lead < 0x80 ? 1 : (digit ? 4 : 2);
            if (length == 2)
                table[c.unicode()] = quint16(lead << 8 | uchar(bytes.at(at + 1)));
            at += length;
        }
        return table;
    }();
    return codes.get();
}
}  // namespace

QByteArray EncodeGb18030(const QString &text)
{
    const quint16 *codes = twoByteCodes();
    QByteArray out(text.size() * 2, Qt::Uninitialized);
    char *p = out.data();
    qsizetype o = 0;
    const char16_t *u = reinterpret_cast<const char16_t *>(text.utf16());
    const qsizetype n = text.size();
    for (qsizetype i = 0; i < n;) {
        if (u[i] < 0x80) {
            p[o++] = char(u[i++]);
        } else if (const quint16 code = codes[u[i]]) {
            p[o++] = char(code >> 8);
            p[o++] = char(code & 0xFF);
            ++i;
        } else if (QChar::isHighSurrogate(u[i]) && i + 1 < n && QChar::isLowSurrogate(u[i + 1])) {
            // Beyond the plane, the four-byte codes run on from 90 30 81 30.
            const uint index = QChar::surrogateToUcs4(u[i], u[i + 1]) - 0x10000;
            p[o++] = char(0x90 + index / 12600);
            p[o++] = char(0x30 + index / 1260 % 10);
            p[o++] = char(0x81 + index / 10 % 126);
            p[o++] = char(0x30 + index % 10);
            i += 2;
        } else if (QChar::isSurrogate(u[i])) {
            // Half a pair: the converter substitutes it, or at the very end
            // waits for the other half, which never comes.
            if (!(QChar::isHighSurrogate(u[i]) && i + 1 == n))
                p[o++] = '\x1A';
            ++i;
        } else {
            // The rest of the plane's characters take four bytes each, by
            // ranges the converter knows.
            qsizetype j = i + 1;
            while (j < n && u[j] >= 0x80 && codes[u[j]] == 0 && !QChar::isSurrogate(u[j]))
                ++j;
            const QByteArray run = QStringEncoder(Gb18030, QStringConverter::Flag::Stateless)
                                       .encode(QStringView(u + i, j - i));
            out.resize(out.size() + run.size());
            p = out.data();
            std::memcpy(p + o, run.constData(), size_t(run.size()));
            o += run.size();
            i = j;
        }
    }
    out.truncate(o);
    return out;
}

bool ReadsAsGb18030(QByteArrayView bytes)
{
    return !bytes.startsWith("\xEF\xBB\xBF") && !bytes.startsWith("\xFF\xFE")
        && !bytes.startsWith("\xFE\xFF") && !looksUtf8(bytes);
}

QByteArray ToGb18030(QByteArray bytes)
{
    const auto from = [&bytes](QStringConverter::Encoding encoding, qsizetype skip) {
        QStringDecoder decoder(encoding, QStringConverter::Flag::Stateless);
        return EncodeGb18030(decoder.decode(QByteArrayView(bytes).sliced(skip)));
    };
    if (ReadsAsGb18030(bytes))
        return bytes;
    if (bytes.startsWith("\xEF\xBB\xBF"))
        return from(QStringConverter::Utf8, 3);
    if (bytes.startsWith("\xFF\xFE"))
        return from(QStringConverter::Utf16LE, 2);
    if (bytes.startsWith("\xFE\xFF"))
        return from(QStringConverter::Utf16BE, 2);
    return from(QStringConverter::Utf8, 0);
}

ProfileFile ProfileFile::load(const QString &path)
{
    // Read with the system's own calls, so that a failure keeps its cause
    // (no permission, an I/O error, a folder in the file's place) for the
    // box that tells the user what to do.
    const QByteArray native = QFile::encodeName(path);
    const auto failure = [&path](int error) {
        return FileError(texts::CannotReadFile.arg(path, FileFailureReason(error)));
    };
    int error = InjectedFault(FileOp::Open, native);
    const int fd = error != 0 ? -1 : ::open(native.constData(), O_RDONLY | O_CLOEXEC);
    if (error == 0 && fd < 0)
        error = errno;
    if (error == ENOENT || error == ENOTDIR)
        return ProfileFile();
    if (error != 0)
        throw failure(error);
    QByteArray bytes;
    struct stat st;
    if (::fstat(fd, &st) != 0)
        error = errno;
    else if (S_ISDIR(st.st_mode))
        error = EISDIR;
    else
        error = InjectedFault(FileOp::Read, native);
    if (error == 0) {
        bytes.resize(qsizetype(st.st_size));
        error = ReadToEnd(fd, bytes);
    }
    ::close(fd);
    if (error != 0)
        throw failure(error);
    return parse(std::move(bytes));
}

int ReadToEnd(int fd, QByteArray &bytes, qsizetype limit)
{
    qsizetype got = 0;
    int error = 0;
    while (limit < 0 || got <= limit) {
        if (got == bytes.size())
            bytes.resize(got + 64 * 1024);  // the file grew meanwhile, or its size is unknown
        const ssize_t n = ::read(fd, bytes.data() + got, size_t(bytes.size() - got));
        if (n < 0 && errno == EINTR)
            continue;
        if (n < 0) {
            error = errno;
            break;
        }
        if (n == 0)
            break;
        got += n;
    }
    bytes.truncate(got);
    return error;
}

int WriteToEnd(int fd, QByteArrayView bytes)
{
    const char *p = bytes.data();
    qsizetype left = bytes.size();
    while (left > 0) {
        const ssize_t n = ::write(fd, p, size_t(left));
        if (n < 0 && errno != EINTR)
            return errno;
        if (n > 0) {
            p += n;
            left -= n;
        }
    }
    return 0;
}

bool ProfileFile::isBlank() const
{
    for (char c : m_bytes) {
        if (!isBlankChar(c) && c != '\r' && c != '\n' && c != '\f')
            return false;
    }
    return true;
}

bool ProfileFile::isBinary() const
{
    return m_binary;
}

bool ProfileFile::hasSection(QByteArrayView section) const
{
    return m_firstSection.contains(lowered(section));
}

bool ProfileFile::hasNumberedSection(QByteArrayView prefix) const
{
    const QByteArray p = lowered(prefix);
    for (const QByteArray &name : m_sectionNames) {
        if (name.size() > p.size() && name.startsWith(p)) {
            bool digits = true;
            for (qsizetype i = p.size(); i < name.size() && digits; ++i)
                digits = name.at(i) >= '0' && name.at(i) <= '9';
            if (digits)
                return true;
        }
    }
    return false;
}

ProfileFile ProfileFile::parse(QByteArray bytes)
{
    return parseGb18030(ToGb18030(std::move(bytes)));
}

ProfileFile ProfileFile::parseGb18030(QByteArray bytes)
{
    ProfileFile profile;
    profile.m_bytes = std::move(bytes);
    profile.m_binary = hasBinaryBytes(profile.m_bytes);
    const QByteArray &b = profile.m_bytes;
    const qsizetype n = b.size();
    Section *current = nullptr;  // lines before the first header go nowhere

    qsizetype pos = 0;
    while (pos < n) {
        const qsizetype lineBegin = pos;
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
            if (current)
                current->end = lineBegin;
            profile.m_sections.append(Section());
            profile.m_sections.last().entries.reserve(12);  // a message has nine keys
            profile.m_sections.last().headerBegin = lineBegin;
            profile.m_sections.last().bodyBegin = qMin(next, n);
            if (!profile.m_firstSection.contains(name))
                profile.m_firstSection.insert(name, profile.m_sections.size() - 1);
            profile.m_sectionNames.append(name);
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
    if (current)
        current->end = n;
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

const ProfileFile::Entry *ProfileFile::findIn(const Section &section, QByteArrayView key) const
{
    for (const Entry &entry : section.entries) {
        if (sameName(QByteArrayView(m_bytes).sliced(entry.keyBegin, entry.keyEnd - entry.keyBegin),
                     key))
            return &entry;
    }
    return nullptr;
}

const ProfileFile::Entry *ProfileFile::find(QByteArrayView section, QByteArrayView key) const
{
    const Section *found = findSection(section);
    return found ? findIn(*found, key) : nullptr;
}

QByteArrayView ProfileFile::valueOf(const Entry *entry) const
{
    if (!entry || entry->begin < 0)
        return QByteArrayView();
    QByteArrayView v = QByteArrayView(m_bytes).sliced(entry->begin, entry->end - entry->begin);
    if (v.size() >= 2 && (v.front() == '"' || v.front() == '\'') && v.back() == v.front())
        v = v.sliced(1, v.size() - 2);
    // An empty value is still there: not null.
    return v.isNull() ? QByteArrayView(m_bytes.constData(), qsizetype(0)) : v;
}

QString ProfileFile::value(QByteArrayView section, QByteArrayView key, int bufferSize) const
{
    if (bufferSize <= 1)
        return QString();
    return decode(cutToCharacters(valueOf(find(section, key)), bufferSize - 1));
}

QString ProfileFile::sectionValue(qsizetype i, QByteArrayView key, int bufferSize) const
{
    if (bufferSize <= 1)
        return QString();
    return decode(cutToCharacters(valueOf(findIn(m_sections.at(i), key)), bufferSize - 1));
}

QByteArrayView ProfileFile::rawValue(qsizetype i, QByteArrayView key) const
{
    return valueOf(findIn(m_sections.at(i), key));
}

QByteArrayView ProfileFile::sectionBody(qsizetype i) const
{
    const Section &s = m_sections.at(i);
    return QByteArrayView(m_bytes).sliced(s.bodyBegin, s.end - s.bodyBegin);
}

QByteArrayView ProfileFile::sectionWhole(qsizetype i) const
{
    const Section &s = m_sections.at(i);
    return QByteArrayView(m_bytes).sliced(s.headerBegin, s.end - s.headerBegin);
}

bool ProfileFile::sectionIsBinary(qsizetype i) const
{
    return m_binary && hasBinaryBytes(sectionWhole(i));
}

QByteArrayView ProfileFile::prelude() const
{
    return QByteArrayView(m_bytes).first(m_sections.isEmpty() ? m_bytes.size()
                                                               : m_sections.first().headerBegin);
}

KeyLine FindKeyLine(QByteArrayView body, QByteArrayView key)
{
    // The same steps as the parser's, for one key: blank lines and comments
    // hold none, and a section's body holds no header line.
    const qsizetype n = body.size();
    qsizetype pos = 0;
    while (pos < n) {
        qsizetype lineEnd = pos;
        while (lineEnd < n && body[lineEnd] != '\r' && body[lineEnd] != '\n')
            ++lineEnd;
        qsizetype next = lineEnd + 1;
        if (lineEnd + 1 < n && body[lineEnd] == '\r' && body[lineEnd + 1] == '\n')
            next = lineEnd + 2;
        qsizetype s = pos;
        qsizetype e = lineEnd;
        while (s < e && isBlankChar(body[s]))
            ++s;
        if (s < e && body[s] != ';') {
            qsizetype keyEnd = s;
            while (keyEnd < e && body[keyEnd] != '=')
                ++keyEnd;
            while (keyEnd > s && isBlankChar(body[keyEnd - 1]))
                --keyEnd;
            if (sameName(body.sliced(s, keyEnd - s), key))
                return {pos, qMin(next, n)};
        }
        pos = next;
    }
    return {};
}

bool HoldsBinary(QByteArrayView bytes)
{
    return hasBinaryBytes(bytes);
}

bool EndsLine(QByteArrayView bytes)
{
    return bytes.isEmpty() || bytes.back() == '\r' || bytes.back() == '\n';
}

void AppendLines(QByteArray &out, QByteArrayView bytes)
{
    out += bytes;
    if (!EndsLine(bytes))
        out += "\r\n";
}

void ProfileWriter::line(QStringView text)
{
    m_text += text;
    m_text += u"\r\n";
}

void ProfileWriter::section(QByteArrayView name)
{
    m_text += u'[';
    m_text += QLatin1StringView(name);
    m_text += u"]\r\n";
}

namespace {
// Appends value lower-cased. Pasted text can bring control characters (a
// terminal's colour codes); one of them in the file would make the reader
// take it for binary and set it aside, so they are dropped. They show as
// nothing anyway. A line break would end the line and cut the value: in a
// body it becomes "\n", elsewhere a blank.
void appendValue(QString &to, QStringView value, bool body)
{
    const qsizetype at = to.size();
    to.resize(at + value.size() * (body ? 2 : 1));
    QChar *out = to.data() + at;
    for (qsizetype i = 0; i < value.size(); ++i) {
        const char16_t u = value[i].unicode();
        if (u >= 0x80 || (u >= 0x20 && !(u >= u'A' && u <= u'Z'))) {
            *out++ = QChar(u);
        } else if (u >= u'A' && u <= u'Z') {
            *out++ = QChar(char16_t(u + (u'a' - u'A')));
        } else if (u == u'\r' || u == u'\n') {
            if (!body) {
                *out++ = u' ';
                continue;
            }
            *out++ = u'\\';
            *out++ = u'n';
            if (u == u'\r' && i + 1 < value.size() && value[i + 1] == u'\n')
                ++i;
        } else if (!isBinaryByte(uchar(u))) {
            *out++ = QChar(u);
        }
    }
    to.truncate(out - to.constData());
}
}  // namespace

void ProfileWriter::line(QStringView key, QStringView value)
{
    m_text += key;
    m_text += u'=';
    appendValue(m_text, value, false);
    m_text += u"\r\n";
}

void ProfileWriter::bodyLine(QStringView key, QStringView body)
{
    m_text += key;
    m_text += u"=[";
    appendValue(m_text, body, true);
    m_text += u"]\r\n";
}

QByteArray ProfileWriter::bytes() const
{
    return EncodeGb18030(m_text);
}
