#include "folders.h"

#include "appdir.h"
#include "errors.h"
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
// The path of a folder's file, or an empty string after telling the user
// that the number is out of range.
QString chooseFile(int folder)
{
    const QString name = FolderFile::fileName(folder);
    if (name.isEmpty()) {
        prompter().message(Prompter::Icon::Exclamation, texts::ErrorTitle,
                           texts::FolderOutOfRange);
        return QString();
    }
    return AppFilePath(name);
}

QByteArray sectionName(int k)
{
    return "email-" + QByteArray::number(k + 1);
}

// How every message value is written: lower-cased, then right-trimmed.
QString stored(const QString &value)
{
    return RightTrim(LowerAscii(value));
}
}  // namespace

void LoadEmails(int folder, EmailArray &mails, MailCount &count)
{
    const QString path = chooseFile(folder);
    if (path.isEmpty())
        return;
    const ProfileFile file = ProfileFile::load(path);

    // Only four characters of "number" are ever read.
    const int number = LeadingNumber(file.value("email", "number", 5));
    if (number > MAX_FOLDER_MAILS)
        throw IndexError(texts::TooManyMails);

    // Read everything first, so that a damaged record leaves the caller's
    // array as it was.
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
    for (int k = 0; k < number; ++k)
        mails[k] = std::move(read[k]);
    count = MailCount(number);
}

void SaveEmails(int folder, const EmailArray &mails, MailCount count)
{
    const QString path = chooseFile(folder);
    if (path.isEmpty())
        return;
    if (count > MAX_FOLDER_MAILS)
        throw IndexError(texts::TooManyMails);

    ProfileWriter out;
    out.line(u"[email]"_s);
    out.line(u"number", QString::number(count));
    out.line(QString());
    for (int k = 0; k < count; ++k) {
        const EmailRec &m = mails[k];
        out.line(u'[' + QString::fromLatin1(sectionName(k)) + u']');
        out.line(u"id", stored(m.id));
        out.line(u"from", stored(m.from));
        out.line(u"to", stored(m.to));
        out.line(u"alsoto", stored(m.alsoto));
        out.line(u"subject", stored(m.subject));
        out.line(u"content", stored(EscapeContent(m.content)));
        out.line(u"datetime", stored(m.datetime));
        out.line(u"attachment", stored(m.attachment));
        out.line(u"isnew", stored(m.isnew));
        out.line(QString());
    }
    out.commit(path);
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
    EmailArray mails;
    MailCount count = 0;
    LoadEmails(folder, mails, count);
    return CountUnread(mails, count);
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
