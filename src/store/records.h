#pragma once

#include <QByteArray>
#include <QList>
#include <QString>
#include <QtGlobal>

#include <array>
#include <memory>
#include <tuple>

// The two record kinds that every window keeps in memory, the folder
// numbering, and the account limit.

// The section of a data file a record was read from: its GB18030 bytes
// after the header line (a line end added where the file had none), and
// the record's fields as they were read from them, in the record's order.
// A record whose fields still hold these values is written back as these
// bytes, so that what the program does not show (a long value, a key it
// does not know) is never cut or dropped; a record a command changed keeps
// every line but those of the fields that changed. The values share their
// text with the record's own fields, and a copy of a record shares all of
// it: keeping them costs the bytes and little more.
struct StoredSection
{
    QByteArray bytes;
    QList<QString> asRead;
};
using StoredOrigin = std::shared_ptr<const StoredSection>;

// One mail account, one section of mailbox.dat.
struct MailBoxRec
{
    QString name;          // display name shown in the accounts list
    QString pop;           // incoming (POP3) server
    QString smtp;          // outgoing (SMTP) server
    QString username;      // logon name
    QString userpassword;  // logon password, kept in clear
    QString address;       // the account's e-mail address
    StoredOrigin origin = {};  // none for an account not read from the file

    // Equal records show the same; where they were read from is not
    // compared.
    friend bool operator==(const MailBoxRec &a, const MailBoxRec &b)
    {
        return std::tie(a.name, a.pop, a.smtp, a.username, a.userpassword, a.address)
            == std::tie(b.name, b.pop, b.smtp, b.username, b.userpassword, b.address);
    }
    friend bool operator!=(const MailBoxRec &a, const MailBoxRec &b) { return !(a == b); }
};

// Whether two texts are equal; at once when they share their characters,
// as a record's fields do with the copies of it a folder of thousands keeps.
inline bool SameText(const QString &a, const QString &b)
{
    return (a.constData() == b.constData() && a.size() == b.size()) || a == b;
}

// One message, one section of a folder file.
struct EmailRec
{
    QString id;          // decimal whole number as text
    QString from;
    QString to;
    QString alsoto;      // copy recipients
    QString subject;
    QString content;     // body, line breaks as CR LF
    QString datetime;    // "yy-mm-dd hh:mm" when written by a send run
    QString attachment;  // attachment file list as one text
    qint32 folder = 0;   // the folder that holds the record; never stored
    qint32 index = 0;    // its 0-based position there; never stored
    QString isnew;       // "1" unread, "0" read
    StoredOrigin origin = {};  // none for a message not read from a file

    // Only an isnew of exactly "1" marks a message unread: bold in the
    // list, counted beside its folder, marked read when opened.
    bool isUnread() const { return isnew == u"1"; }

    // Equal records show the same; where they were read from is not
    // compared.
    friend bool operator==(const EmailRec &a, const EmailRec &b)
    {
        return std::tie(a.id, a.from, a.to, a.alsoto, a.subject, a.content, a.datetime,
                        a.attachment, a.folder, a.index, a.isnew)
            == std::tie(b.id, b.from, b.to, b.alsoto, b.subject, b.content, b.datetime,
                        b.attachment, b.folder, b.index, b.isnew);
    }
    friend bool operator!=(const EmailRec &a, const EmailRec &b) { return !(a == b); }
};

// A folder holds any number of messages; the accounts are at most 21, in
// a fixed array whose count is kept beside it, 16-bit like the file's
// "number".
using MailCount = qint16;
inline constexpr int MAX_MAILBOXES = 21;  // indices 0..20
using MailBoxArray = std::array<MailBoxRec, MAX_MAILBOXES>;

// The six message folders, by the number every folder routine takes.
namespace FolderFile {
inline constexpr int Inbox = 0;         // receive_c.dat, "收件箱"
inline constexpr int Outbox = 1;        // send_c.dat, "发件箱"
inline constexpr int SentItems = 2;     // receive_s.dat, "已发送邮件"
inline constexpr int DeletedItems = 3;  // deleted_c.dat, "已删除邮件"
inline constexpr int Drafts = 4;        // draft.dat, "草稿"
inline constexpr int ServerQueue = 5;   // send_s.dat, never shown to the user
inline constexpr int Count = 6;

// The file name of a folder, or an empty string for a number outside 0..5.
QString fileName(int folder);
}  // namespace FolderFile

inline const QString MailBoxFileName = QStringLiteral("mailbox.dat");
