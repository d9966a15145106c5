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

// A body's line breaks as the file keeps them: a CR or an LF alone (pasted
// from elsewhere) would end the stored line, so it becomes CR LF too.
QString lineBreaksAsCrLf(const QString &body)
{
    if (!body.contains(u'\r') && !body.contains(u'\n'))
        return body;
    QString out;
    out.reserve(body.size());
    for (qsizetype i = 0; i < body.size(); ++i) {
        const QChar c = body.at(i);
        if (c == u'\r' || c == u'\n') {
            out += u'\r';
            out += u'\n';
            if (c == u'\r' && i + 1 < body.size() && body.at(i + 1) == u'\n')
                ++i;
        } else {
            out += c;
        }
    }
    return out;
}

// How every message value is written: lower-cased, then right-trimmed.
QString stored(const QString &value)
{
    return RightTrim(LowerAscii(value));
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
    out.line(u"[email]"_s);
    out.line(u"number", QString::number(mails.size()));
    out.line(QString());
    for (int k = 0; k < mails.size(); ++k) {
        const EmailRec &m = mails[k];
        out.line(u'[' + QString::fromLatin1(sectionName(k)) + u']');
        out.line(u"id", stored(m.id));
        out.line(u"from", stored(m.from));
        out.line(u"to", stored(m.to));
        out.line(u"alsoto", stored(m.alsoto));
        out.line(u"subject", stored(m.subject));
        out.line(u"content", stored(EscapeContent(lineBreaksAsCrLf(m.content))));
        out.line(u"datetime", stored(m.datetime));
        out.line(u"attachment", stored(m.attachment));
        out.line(u"isnew", stored(m.isnew));
        out.line(QString());
    }
    return out.bytes();
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

QString EscapeContent(const QString &text)
{
    // The brackets keep leading and trailing blanks, which the profile
    // reader would otherwise trim away.
    QString out = u'[' + text + u']';
    out.replace(u"\r\n"_s, u"\\n"_s);
    return out;
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
