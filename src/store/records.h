#pragma once

#include <QByteArray>
#include <QList>
#include <QString>
#include <QtGlobal>

#include <algorithm>
#include <iterator>
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
    QString isnew;       // "1" unread, "0" read
    StoredOrigin origin = {};  // none for a message not read from a file

    // Only an isnew of exactly "1" marks a message unread: bold in the
    // list, counted beside its folder, marked read when opened.
    bool isUnread() const { return isnew.size() == 1 && isnew.front() == u'1'; }

    // Equal records show the same; where they were read from is not
    // compared.
    friend bool operator==(const EmailRec &a, const EmailRec &b)
    {
        return std::tie(a.id, a.from, a.to, a.alsoto, a.subject, a.content, a.datetime,
                        a.attachment, a.isnew)
            == std::tie(b.id, b.from, b.to, b.alsoto, b.subject, b.content, b.datetime,
                        b.attachment, b.isnew);
    }
    friend bool operator!=(const EmailRec &a, const EmailRec &b) { return !(a == b); }
};

// The messages of a folder, in record order. Each record is shared by every
// copy of the list that holds it, and copied only when one copy changes
// it: a command that changes one message of a folder of 20,000 copies one
// message and 20,000 pointers, and whether two lists hold the very same
// record is a pointer's comparison.
class MailList
{
    using Items = QList<std::shared_ptr<EmailRec>>;

public:
    class const_iterator
    {
    public:
        using iterator_category = std::random_access_iterator_tag;
        using value_type = EmailRec;
        using difference_type = qsizetype;
        using pointer = const EmailRec *;
        using reference = const EmailRec &;

        const_iterator() = default;
        explicit const_iterator(Items::const_iterator at) : m_at(at) {}
        reference operator*() const { return **m_at; }
        pointer operator->() const { return m_at->get(); }
        reference operator[](difference_type n) const { return *m_at[n]; }
        const_iterator &operator++() { ++m_at; return *this; }
        const_iterator operator++(int) { return const_iterator(m_at++); }
        const_iterator &operator--() { --m_at; return *this; }
        const_iterator operator--(int) { return const_iterator(m_at--); }
        const_iterator &operator+=(difference_type n) { m_at += n; return *this; }
        const_iterator &operator-=(difference_type n) { m_at -= n; return *this; }
        friend const_iterator operator+(const_iterator i, difference_type n) { return i += n; }
        friend const_iterator operator+(difference_type n, const_iterator i) { return i += n; }
        friend const_iterator operator-(const_iterator i, difference_type n) { return i -= n; }
        friend difference_type operator-(const_iterator a, const_iterator b) { return a.m_at - b.m_at; }
        friend bool operator==(const_iterator a, const_iterator b) { return a.m_at == b.m_at; }
        friend bool operator!=(const_iterator a, const_iterator b) { return a.m_at != b.m_at; }
        friend bool operator<(const_iterator a, const_iterator b) { return a.m_at < b.m_at; }
        friend bool operator>(const_iterator a, const_iterator b) { return a.m_at > b.m_at; }
        friend bool operator<=(const_iterator a, const_iterator b) { return a.m_at <= b.m_at; }
        friend bool operator>=(const_iterator a, const_iterator b) { return a.m_at >= b.m_at; }

    private:
        Items::const_iterator m_at;
    };
    using iterator = const_iterator;
    using value_type = EmailRec;

    MailList() = default;
    MailList(std::initializer_list<EmailRec> mails)
    {
        reserve(qsizetype(mails.size()));
        for (const EmailRec &m : mails)
            append(m);
    }

    // n records that hold m, one record until one of them is changed.
    explicit MailList(qsizetype n, const EmailRec &m = {})
        : m_items(n, std::make_shared<EmailRec>(m))
    {
    }

    qsizetype size() const { return m_items.size(); }
    bool isEmpty() const { return m_items.isEmpty(); }
    void reserve(qsizetype n) { m_items.reserve(n); }
    void clear() { m_items.clear(); }

    const EmailRec &at(qsizetype i) const { return *m_items.at(i); }
    const EmailRec &operator[](qsizetype i) const { return at(i); }
    // Record i, or an empty record past the end.
    EmailRec value(qsizetype i) const { return i >= 0 && i < size() ? at(i) : EmailRec(); }
    const EmailRec &first() const { return at(0); }
    const EmailRec &last() const { return at(size() - 1); }
    // The record to change: this list's own, copied first if another list
    // holds it too.
    EmailRec &operator[](qsizetype i)
    {
        std::shared_ptr<EmailRec> &item = m_items[i];
        if (item.use_count() > 1)
            item = std::make_shared<EmailRec>(*item);
        return *item;
    }
    EmailRec &last() { return (*this)[size() - 1]; }

    void append(const EmailRec &m) { m_items.append(std::make_shared<EmailRec>(m)); }
    void append(EmailRec &&m) { m_items.append(std::make_shared<EmailRec>(std::move(m))); }
    MailList &operator<<(const EmailRec &m) { append(m); return *this; }
    void insert(qsizetype i, const EmailRec &m) { m_items.insert(i, std::make_shared<EmailRec>(m)); }
    void removeAt(qsizetype i) { m_items.removeAt(i); }
    void remove(qsizetype i, qsizetype n) { m_items.remove(i, n); }
    void removeLast() { m_items.removeLast(); }
    MailList mid(qsizetype i, qsizetype n = -1) const
    {
        MailList part;
        part.m_items = m_items.mid(i, n);
        return part;
    }

    const_iterator begin() const { return const_iterator(m_items.cbegin()); }
    const_iterator end() const { return const_iterator(m_items.cend()); }
    const_iterator cbegin() const { return begin(); }
    const_iterator cend() const { return end(); }

    // Whether both are the very same list, not a copy.
    bool isSameList(const MailList &other) const
    {
        return m_items.constData() == other.m_items.constData() && size() == other.size();
    }
    // Whether record i here is the very record j of other, not a copy.
    bool isSameRecord(qsizetype i, const MailList &other, qsizetype j) const
    {
        return m_items.at(i) == other.m_items.at(j);
    }

    friend MailList operator+(MailList a, const MailList &b)
    {
        a.m_items += b.m_items;
        return a;
    }

    friend bool operator==(const MailList &a, const MailList &b)
    {
        return std::equal(a.begin(), a.end(), b.begin(), b.end());
    }
    friend bool operator!=(const MailList &a, const MailList &b) { return !(a == b); }

private:
    Items m_items;
};

// A folder holds any number of messages; the accounts are at most 21.
inline constexpr int MAX_MAILBOXES = 21;

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
