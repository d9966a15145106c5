// The commands without any window: the address rules, send and receive,
// delete, mark read, the compose window's ways of storing and its texts.

#include "mail/commands.h"
#include "mail/composerules.h"
#include "sendrecv/engine.h"
#include "sendrecv/recipients.h"
#include "store/clock.h"
#include "store/folders.h"
#include "testsupport.h"

#include <QTest>

using namespace Qt::Literals::StringLiterals;
using namespace testsupport;
using namespace FolderFile;
using Mails = MailList;

namespace {
const QString Me = u"me@x.cn"_s, You = u"you@x.cn"_s, none;

// A folder as its ids: "u" after an unread message, "@" after one a step
// stamped, "*" after the one a compose command wrote, "new" for a new id.
QString look(int folder)
{
    QStringList out;
    for (const EmailRec &m : stored(folder))
        out << (m.id.size() == 8 ? u"new"_s : m.id) + (m.isnew == u"1" ? u"u"_s : QString())
                + (m.datetime == u"09-01-02 03:04" ? u"@"_s : QString()) + (m.subject == u"written" ? u"*"_s : QString());
    return out.join(u' ');
}

// Messages from Me as look() shows them, to You unless one says another
// after a colon: "5u:ab 7" is an unread 5 to ab, then a read 7 to You.
Mails msgs(const QString &looks)
{
    Mails out;
    for (const QString &m : looks.split(u' ', Qt::SkipEmptyParts)) {
        const QString look = m.section(u':', 0, 0), to = m.section(u':', 1);
        out << mail(look.chopped(look.endsWith(u'u')), Me, to.isEmpty() ? You : to, u"s"_s, look.endsWith(u'u'));
    }
    return out;
}

// Folders filled from msgs() texts; what they hold now as look() shows them,
// "=" for one unchanged, joined by "|".
void fill(const DataDir &dir, const QList<int> &folders, const QStringList &start)
{
    for (int i = 0; i < folders.size(); ++i)
        put(dir, folders[i], msgs(start[i]));
}
QString changes(const QList<int> &folders, const QStringList &start)
{
    QStringList now;
    for (int i = 0; i < folders.size(); ++i)
        now << (look(folders[i]) == start[i] ? u"="_s : look(folders[i]));
    return now.join(u'|');
}

enum Command { Move, Read, ForGood, Save, Send, SendLater };
}  // namespace

Q_DECLARE_METATYPE(Command)

class tst_commands : public QObject
{
    Q_OBJECT

private slots:
    void init() { SetClock([] { return QDateTime({2009, 1, 2}, {3, 4, 59}); }); }
    void cleanup() { SetClock({}); }

    // With the accounts x@y, then bob@a.cn, the last decides the To line in the Inbox:
    // bob@a.cn when the message reaches it, else To, which every other folder shows.
    void addressRules_data()
    {
        QTest::addColumn<QString>("to");
        QTest::addColumn<QString>("alsoto");
        QTest::addColumn<bool>("sendable");
        QTest::addColumn<bool>("reachesBob");
        const QString bob = u"bob@a.cn"_s, xy = u"x@y"_s;
        QTest::newRow("to with @ and no copy") << bob << none << true << true;
        QTest::newRow("to without @") << u"bob"_s << none << false << false;
        QTest::newRow("copy line without @") << xy << u"bob"_s << false << false;
        QTest::newRow("one of several copies with @") << xy << u"z,"_s + bob << true << true;
        QTest::newRow("copy of spaces, NULs is empty") << u"x@yz"_s << u" \0 "_s << true << false;
        QTest::newRow("letter case differs") << u"Bob@a.cn"_s << none << true << false;
        QTest::newRow("not across to and copy") << u"bob@a"_s << u".cn"_s << false << false;
    }
    void addressRules()
    {
        QFETCH(QString, to);
        QFETCH(QString, alsoto);
        QFETCH(bool, reachesBob);
        QTEST(RecipientsAcceptable(to, alsoto), "sendable");
        QCOMPARE(AddressMatches(RecipientText(to, alsoto), u"bob@a.cn"_s), reachesBob);
        EmailRec m = mail(u"1"_s, Me, to);
        m.alsoto = alsoto;
        const QList<MailBoxRec> accounts = {{{}, {}, {}, {}, {}, u"x@y"_s}, {{}, {}, {}, {}, {}, u"bob@a.cn"_s}};
        QCOMPARE(ToLine(m, true, accounts), reachesBob ? u"bob@a.cn"_s : to);
        QCOMPARE(ToLine(m, false, accounts), to);
    }

    // The folders before and after as Outbox|Sent Items|queue|Inbox, in the
    // grammar of msgs() and changes() ("7u@": message 7, unread, stamped by a
    // step; "5u:ab" before: sent to ab). Each run goes twice: the second finds
    // nothing more to do, so it leaves the folders and reports as the first did.
    void sendAndReceive_data()
    {
        QTest::addColumn<int>("mode");
        QTest::addColumn<QString>("before");
        QTest::addColumn<QString>("after");
        QTest::addColumn<bool>("barStarts");
        QTest::addColumn<bool>("accounts");  // Me and You, or none
        const auto row = [](const char *name, int mode, const char *before, const char *after, bool bar = true,
                            bool accounts = true) {
            QTest::newRow(name) << mode << QString::fromUtf8(before) << QString::fromUtf8(after) << bar << accounts;
        };
        using namespace SendReceiveModes;
        row("send: all stamped; Sent Items keeps isnew, the queue gets them unread", SendOnly,
            "7u 8|1||10u", "|1 7u@ 8@|7u@ 8u@|=");
        row("send: a bad second of three writes nothing", SendOnly, "5u 6u:ab 7u|1||10u", "5u 6u 7u|=|=|=", false);
        row("receive: a copy for each account keeps its flag; the rest stay in order", ReceiveOnly,
            "9u|1|5u:z@x 7:you@x.cn;me@x.cn 6u:q|10u", "=|=|5u 6u|10u 7@ 7@");
        row("receive: no account moves nothing", ReceiveOnly, "|1|7u|10u", "=|=|=|=", true, false);
        row("both: the message comes back", SendAndReceive, "7u|1||10u", "|1 7u@|=|10u 7u@");
    }
    void sendAndReceive()
    {
        QFETCH(int, mode);
        QFETCH(QString, before);
        QFETCH(bool, accounts);
        DataDir dir;
        putAccounts(dir, accounts ? QStringList{Me, You} : QStringList());
        const QList<int> folders{Outbox, SentItems, ServerQueue, Inbox};
        const QStringList start = before.split(u'|');
        fill(dir, folders, start);
        for (int run = 0; run < 2; ++run) {
            const RunResult r = RunSendReceive(qint16(mode));
            QTEST(r.barStarts(), "barStarts");
            QCOMPARE(r.errorText, QString());
            const QString now = changes(folders, start);
            QTEST(now, "after");
            // What a step moved it stamped.
            QCOMPARE(r.send.sent, int(run == 0 ? now.section(u'|', 1, 1).count(u'@') : 0));
            QCOMPARE(r.receive.received, int(run == 0 ? now.section(u'|', 3, 3).count(u'@') : 0));
        }
    }

    // A command acts on the record shown at a position, a compose command on the window's
    // message stored there (folder -1: not stored yet). The Inbox holds 1 (unread), 2, 2
    // again unread (a copy) and 3; Drafts 40 41, the Outbox 50 51, Deleted Items 9. After:
    // Inbox|Drafts|Outbox|Deleted Items as changes() writes them.
    // result: the command acted; for a save, a draft was made.
    void commands_data()
    {
        QTest::addColumn<Command>("command");
        QTest::addColumn<int>("folder");
        QTest::addColumn<int>("position");
        QTest::addColumn<QString>("shown");
        QTest::addColumn<bool>("result");
        QTest::addColumn<QString>("after");
        const auto row = [](const char *name, Command c, int folder, int position, const char *shown, bool result,
                            const char *after) {
            QTest::newRow(name) << c << folder << position << QString::fromUtf8(shown) << result << QString::fromUtf8(after);
        };
        const int unstored = -1;
        row("move: the one shown goes last to Deleted", Move, Inbox, 0, "1u", true, "2 2u 3|=|=|9 1u");
        row("move: of two copies the one shown", Move, Inbox, 2, "2u", true, "1u 2 3|=|=|9 2u");
        row("move: found where it went meanwhile", Move, Inbox, 3, "2", true, "1u 2u 3|=|=|9 2");
        row("move: found at the top", Move, Inbox, 2, "1u", true, "2 2u 3|=|=|9 1u");
        row("move: one gone meanwhile moves nothing", Move, Inbox, 0, "5", false, "=|=|=|=");
        row("mark read: the copy shown only", Read, Inbox, 2, "2u", true, "1u 2 2 3|=|=|=");
        row("mark read: a read one writes nothing", Read, Inbox, 1, "2", false, "=|=|=|=");
        row("delete for good: the one shown only", ForGood, DeletedItems, 0, "9", true, "=|=|=|");
        row("delete for good: one gone, nothing goes", ForGood, DeletedItems, 0, "5", false, "=|=|=|=");
        row("save, nothing stored: a new draft", Save, unstored, 0, "", true, "=|40 41 new*|=|=");
        row("save a draft again: in place, same id", Save, Drafts, 1, "41", false, "=|40 41*|=|=");
        row("save a draft that moved: found by id", Save, Drafts, 1, "40", false, "=|40* 41|=|=");
        row("save a draft deleted meanwhile: again", Save, Drafts, 1, "45", true, "=|40 41 45*|=|=");
        row("save an Outbox message: in place", Save, Outbox, 1, "51", false, "=|=|50 51*|=");
        row("send, nothing stored: to the Outbox", Send, unstored, 0, "", false, "=|=|50 51 new*|=");
        row("send a draft: it moves with its id", Send, Drafts, 1, "41", false, "=|40|50 51 41*|=");
        row("send a draft gone meanwhile: new id", Send, Drafts, 1, "45", false, "=|=|50 51 new*|=");
        row("send an Outbox message: in place", Send, Outbox, 0, "50", false, "=|=|50* 51|=");
        row("send from Deleted Items: a copy", Send, DeletedItems, 0, "9", false, "=|=|50 51 new*|=");
        row("send later from Deleted Items: moves", SendLater, DeletedItems, 0, "9", false, "=|=|50 51 9*|");
    }
    void commands()
    {
        QFETCH(Command, command);
        QFETCH(int, folder);
        QFETCH(int, position);
        QFETCH(QString, shown);
        const QList<int> folders{Inbox, Drafts, Outbox, DeletedItems};
        const QStringList start{u"1u 2 2u 3"_s, u"40 41"_s, u"50 51"_s, u"9"_s};
        DataDir dir;
        fill(dir, folders, start);
        const MailRef ref{folder, position, msgs(shown).value(0)};
        const StoredMail own = folder < 0 ? StoredMail() : StoredMail{folder, ref.shown.id, position, ref.shown};
        const EmailRec written = mail(QString(), Me, You, u"written"_s);

        bool result = false;
        switch (command) {
        case Move: result = MoveToDeletedItems(ref); break;
        case Read: result = MarkRead(ref); break;
        case ForGood: result = DeleteForGood(ref); break;
        case Save: {
            const StoredMail now = SaveDraft(written, own, &result);
            QCOMPARE(stored(now.folder).value(now.index).id, now.id);
            break;
        }
        case Send: StoreForSend(written, own); break;
        case SendLater: StoreForSendLater(written, own); break;
        }
        QTEST(result, "result");
        QTEST(changes(folders, start), "after");
    }

    // A reply's and a forward's subject and quoted text; the record the
    // window's fields make: lower-cased, the copy line right-trimmed, stamped
    // now; attachments as the list shows them.
    void composeTexts()
    {
        EmailRec q = mail(u"1"_s, u"  lilei@x.com  "_s, u"hanmeimei@x.com  "_s, u"Re:hello  "_s);
        q.alsoto = u"cc@x.com"_s, q.datetime = u"24-07-09 14:05 "_s, q.content = u"line one\r\nline two  "_s;
        QCOMPARE(compose::ReplySubject(q) + u'|' + compose::ForwardSubject(q), u"Re:Re:hello|Fw:Re:hello"_s);
        // Two empty lines, the header block without blanks after the colons, an
        // empty line, "> " before the first body line only, never the copy line;
        // a reply trims the sender on both sides, a forward on the right only.
        const QString head = u"\r\n\r\n-----Original Message-----\r\nFrom:"_s;
        const QString rest = u"lilei@x.com\r\nTo:hanmeimei@x.com\r\n"
                             u"Sent:24-07-09 14:05\r\nSubject:Re:hello\r\n\r\n> line one\r\nline two  "_s;
        QCOMPARE(compose::QuotedBlock(q, true), head + rest);
        QCOMPARE(compose::QuotedBlock(q, false), head + u"  "_s + rest);

        const EmailRec m = compose::BuildRecord(u"12345678"_s, {u"Li@Example.COM"_s, u"Han@X.com"_s, u"Cc@X.COM   "_s,
                                                                 u"Test"_s, u"Hello\r\n你好 ABC  "_s, u" a.txt(1.00kb)"_s});
        QCOMPARE(QStringList({m.id, m.from, m.to, m.alsoto, m.subject, m.content, m.datetime, m.attachment, m.isnew}).join(u'|'),
                 u"12345678|li@example.com|han@x.com|cc@x.com|test|hello\r\n你好 abc  |09-01-02 03:04| a.txt(1.00kb)|0"_s);
        QCOMPARE(compose::JoinAttachments({u"a.txt(1.00KB)"_s, u"B C.TXT(2.00KB)"_s}), u" a.txt(1.00kb) b c.txt(2.00kb)"_s);
    }

    void attachmentPieces_data()
    {
        QTest::addColumn<QString>("field");
        QTest::addColumn<QString>("shown");
        const QString thirty = u"x "_s.repeated(29) + u'x';
        QTest::newRow("a leading blank shows nothing") << u" a.txt(1.00kb)"_s << none;
        QTest::newRow("a name with a blank splits in two") << u"my file.txt"_s << u"my|file.txt"_s;
        QTest::newRow("a double blank stops the list") << u"a  b"_s << u"a"_s;
        QTest::newRow("character 0 stops the list") << u"a \u0000b c"_s << u"a"_s;
        QTest::newRow("at most 21 pieces") << thirty << thirty.left(41).replace(u' ', u'|');
    }
    void attachmentPieces()
    {
        QFETCH(QString, field);
        QTEST(compose::AttachmentPieces(field).join(u'|'), "shown");
    }

    // A field longer than the file keeps, as field:bytes:limit:kept, and the body's
    // characters the cut to fit keeps, never half a line break; what is cut reads
    // back whole.
    void tooLongForTheFile_data()
    {
        QTest::addColumn<QString>("subject");
        QTest::addColumn<QString>("body");
        QTest::addColumn<QString>("overflows");
        QTest::addColumn<int>("bodyKept");
        const QString b = u"b"_s;
        QTest::newRow("fits exactly") << QString(127, u'中') + u'x' << b.repeated(2045) << none << 2045;
        QTest::newRow("a body of 2046") << u"s"_s << b.repeated(2046) << u"4:2046:2045:2045"_s << 2045;
        QTest::newRow("whole characters") << u"s"_s << QString(1023, u'中') << u"4:2046:2045:1022"_s << 1022;
        QTest::newRow("line breaks count two bytes, trailing blanks of a subject none")
            << QString(255, u'S') + u"   "_s << u"\r\n"_s.repeated(1023) << u"4:2046:2045:2044"_s << 2044;
        QTest::newRow("256-byte subject") << QString(128, u'中') << b << u"3:256:255:127"_s << 1;
        QTest::newRow("cut between CR and LF: the CR goes too") << u"s"_s << b.repeated(2044) + u"\r\n"_s
                                                                << u"4:2046:2045:2044"_s << 2044;
    }
    void tooLongForTheFile()
    {
        QFETCH(QString, subject);
        QFETCH(QString, body);
        EmailRec m = mail(u"1"_s, Me, You, subject);
        m.content = body;
        QStringList found;
        for (const compose::Overflow &o : compose::Overflows(m))
            found << u"%1:%2:%3:%4"_s.arg(int(o.field)).arg(o.bytes).arg(o.limit).arg(o.keptChars);
        QTEST(found.join(u' '), "overflows");
        const EmailRec fitted = compose::CutToFit(m);
        QTEST(int(fitted.content.size()), "bodyKept");
        QVERIFY(body.startsWith(fitted.content));
        DataDir dir;
        put(dir, FolderFile::Drafts, {fitted});
        const EmailRec read = stored(FolderFile::Drafts).value(0);
        // The file holds every line break as CR LF.
        QCOMPARE(read.subject + u'|' + read.content,
                 fitted.subject + u'|' + QString(fitted.content).replace(u"\r\n"_s, u"\r"_s).replace(u'\r', u"\r\n"_s));
    }
};

QTEST_GUILESS_MAIN(tst_commands)
#include "tst_commands.moc"
