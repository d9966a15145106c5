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
// Whether folder names a file; otherwise the user is told that the number
// is out of range.
bool validFolder(int folder)
{
    if (!FolderFile::fileName(folder).isEmpty())
        return true;
    prompter().message(Prompter::Icon::Exclamation, texts::ErrorTitle, texts::FolderOutOfRange);
    return false;
}

QByteArray sectionName(int k)
{
    return "email-" + QByteArray::number(k + 1);
}
}  // namespace

QList<EmailRec> ParseFolder(int folder, const ProfileFile &file)
{
    // Only four characters of "number" are ever read.
    const int number = LeadingNumber(file.value("email", "number", 5));
    if (number > MAX_FOLDER_MAILS)
        throw IndexError(texts::TooManyMails);

    QList<EmailRec> read(number);
    for (int k = 0; k < number; ++k) {
        const QByteArray section = sectionName(k);
        EmailRec &m = read[k];
        m.id = LeadingNumberText(file.value(section, "id"));
        m.from = file.value(section, "from");
        m.to = file.value(section, "to");
        m.alsoto = file.value(section, "alsoto");
        m.subject = file.value(section, "subject");
        m.content = UnescapeContent(file.value(section, "content", ProfileFile::ContentBuffer));
        m.datetime = file.value(section, "datetime");
        m.attachment = file.value(section, "attachment");
        m.isnew = LeadingNumberText(file.value(section, "isnew"));
        m.folder = folder;
        m.index = k;
    }
    return read;
}

QByteArray FolderBytes(const QList<EmailRec> &mails)
{
    ProfileWriter out;
    qsizetype characters = 32;
    for (const EmailRec &m : mails) {
        characters += 128 + m.id.size() + m.from.size() + m.to.size() + m.alsoto.size()
            + m.subject.size() + 2 * m.content.size() + m.datetime.size() + m.attachment.size()
            + m.isnew.size();
    }
    out.reserve(characters);
    out.section("email");
    out.line(u"number", QString::number(mails.size()));
    out.line(QStringView());
    for (int k = 0; k < mails.size(); ++k) {
        const EmailRec &m = mails[k];
        out.section(sectionName(k));
        // Trailing blanks go from every value but the body.
        out.line(u"id", RightTrimmed(m.id));
        out.line(u"from", RightTrimmed(m.from));
        out.line(u"to", RightTrimmed(m.to));
        out.line(u"alsoto", RightTrimmed(m.alsoto));
        out.line(u"subject", RightTrimmed(m.subject));
        out.bodyLine(u"content", m.content);  // its blanks kept, in brackets
        out.line(u"datetime", RightTrimmed(m.datetime));
        out.line(u"attachment", RightTrimmed(m.attachment));
        out.line(u"isnew", RightTrimmed(m.isnew));
        out.line(QStringView());
    }
    return out.bytes();
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

bool readsBackAsWritten(const EmailRec &m)
{
    return numberReadsBack(m.id) && numberReadsBack(m.isnew) && readsBackAsWritten(m.from)
        && readsBackAsWritten(m.to) && readsBackAsWritten(m.alsoto)
        && readsBackAsWritten(m.subject) && readsBackAsWritten(m.datetime)
        && readsBackAsWritten(m.attachment) && bodyReadsBack(m.content);
}
}  // namespace

QList<EmailRec> FolderAsRead(int folder, const QList<EmailRec> &mails, const QByteArray &bytes)
{
    // Bytes that would be read in another encoding are parsed whole.
    if (!ReadsAsGb18030(bytes))
        return ParseFolder(folder, ProfileFile::parse(bytes));
    QList<EmailRec> read = mails;
    for (int k = 0; k < read.size(); ++k) {
        EmailRec &m = read[k];
        // Sections are independent, since no written value spans lines: a
        // record alone reads as it does in its file, in the file's encoding.
        if (!readsBackAsWritten(m))
            m = ParseFolder(folder, ProfileFile::parseGb18030(FolderBytes({m}))).front();
        m.folder = folder;
        m.index = k;
    }
    return read;
}

void LoadEmails(int folder, EmailArray &mails, MailCount &count)
{
    if (!validFolder(folder))
        return;
    // Read whole first, so that a damaged record leaves the caller's array
    // as it was.
    const QList<EmailRec> read = store::Folder(folder);
    for (int k = 0; k < read.size(); ++k)
        mails[k] = read[k];
    count = MailCount(read.size());
}

void SaveEmails(int folder, const EmailArray &mails, MailCount count)
{
    if (!validFolder(folder))
        return;
    if (count > MAX_FOLDER_MAILS)
        throw IndexError(texts::TooManyMails);
    FolderSet set;
    set.change(folder) = QList<EmailRec>(mails.begin(), mails.begin() + qMax<int>(count, 0));
    set.commit();
}

QString UnescapeContent(const QString &stored)
{
    if (stored.size() < 2)
        throw FormatError(texts::BadStoredContent);
    QString out = stored.mid(1, stored.size() - 2);
    out.replace(u"\\n"_s, u"\r\n"_s, Qt::CaseInsensitive);
    return out;
}

MailCount CountUnread(int folder)
{
    if (!validFolder(folder))
        return 0;
    return CountUnread(store::Folder(folder));
}

MailCount CountUnread(const QList<EmailRec> &mails)
{
    MailCount unread = 0;
    for (const EmailRec &m : mails) {
        if (m.isnew == u"1")
            ++unread;
    }
    return unread;
}

MailCount CountUnread(const EmailArray &mails, MailCount count)
{
    MailCount unread = 0;
    for (int k = 0; k < count; ++k) {
        if (mails[k].isnew == u"1")
            ++unread;
    }
    return unread;
}

void RemoveEmailAt(EmailArray &mails, int position)
{
    if (position < 0)
        throw IndexError(texts::BadPosition);
    // Whole records move down; the last slot keeps its old contents.
    const int upper = MAX_FOLDER_MAILS - 1;
    for (int i = position; i < upper; ++i)
        mails[i] = mails[i + 1];
}
