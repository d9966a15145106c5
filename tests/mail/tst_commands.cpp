// The commands that move messages, without any window: the address rules,
// the send and receive steps and their runs, delete, mark read, the
// compose window's three ways of storing, and the texts it builds.

#include "mail/commands.h"
#include "mail/composerules.h"
#include "sendrecv/engine.h"
#include "sendrecv/recipients.h"
#include "store/clock.h"
#include "store/errors.h"
#include "store/folders.h"
#include "testsupport.h"
#include "texts.h"

#include <QTest>

using namespace Qt::Literals::StringLiterals;
using namespace testsupport;
using Mails = QList<EmailRec>;

namespace {
const QString Me = u"me@x.cn"_s, You = u"you@x.cn"_s;

EmailRec to(const QString &to, const QString &alsoto = {}, const QString &id = u"7"_s)
{
    EmailRec m = mail(id, Me, to, u"s"_s, true);
    m.alsoto = alsoto;
    return m;
}

// Each message as "id:isnew:datetime".
QString look(int folder)
{
    QStringList out;
    for (const EmailRec &m : stored(folder))
        out << m.id + u':' + m.isnew + u':' + m.datetime;
    return out.join(u' ');
}
}  // namespace

class tst_commands : public QObject
{
    Q_OBJECT

private slots:
    void init() { SetClock([] { return QDateTime({2009, 1, 2}, {3, 4, 59}); }); }
    void cleanup() { SetClock({}); }

    void addressRules_data();
    void addressRules();
    void toLine_data();
    void toLine();
    void checkOutboxAccounts_data();
    void checkOutboxAccounts();
    void sendStep_data();
    void sendStep();
    void receiveStep_data();
    void receiveStep();
    void runs_data();
    void runs();
    void actOnTheMessageShown_data();
    void actOnTheMessageShown();
    void composeStoring_data();
    void composeStoring();
    void quotedTexts();
    void attachments_data();
    void attachments();
    void tooLongForTheFile_data();
    void tooLongForTheFile();
};

void tst_commands::addressRules_data()
{
    QTest::addColumn<QString>("to");
    QTest::addColumn<QString>("alsoto");
    QTest::addColumn<bool>("sendable");
    QTest::addColumn<bool>("reachesBob");
    QTest::newRow("to with @ and no copy") << u"bob@a.cn"_s << QString() << true << true;
    QTest::newRow("to without @") << u"bob"_s << QString() << false << false;
    QTest::newRow("copy line without @") << u"x@y"_s << u"bob"_s << false << false;
    QTest::newRow("one of several copies with @") << u"x@y"_s << u"z,bob@a.cn"_s << true << true;
    QTest::newRow("copy of spaces and NULs is empty") << u"x@y"_s << u" \0 "_s << true << false;
    QTest::newRow("a tab is not trimmed away") << u"x@y"_s << u"\t"_s << false << false;
    QTest::newRow("inside a longer address") << u"xbob@a.cnz"_s << QString() << true << true;
    QTest::newRow("letter case differs") << u"Bob@a.cn"_s << QString() << true << false;
    QTest::newRow("not across to and copy") << u"bob@a"_s << u".cn"_s << false << false;
}

void tst_commands::addressRules()
{
    QFETCH(QString, to);
    QFETCH(QString, alsoto);
    QTEST(RecipientsAcceptable(to, alsoto), "sendable");
    QTEST(AddressMatches(RecipientText(to, alsoto), u"bob@a.cn"_s), "reachesBob");
}

void tst_commands::toLine_data()
{
    QTest::addColumn<QString>("to");
    QTest::addColumn<bool>("inbox");
    QTest::addColumn<QString>("line");
    QTest::newRow("Inbox: the last account decides, it matches") << u"a@x, b@x"_s << true << u"b@x"_s;
    QTest::newRow("Inbox: only the first matches, To is shown") << u"a@x"_s << true << u"a@x"_s;
    QTest::newRow("Inbox: found in the copy line") << u"q@x"_s << true << u"b@x"_s;
    QTest::newRow("elsewhere always To") << u"b@x"_s << false << u"b@x"_s;
}

void tst_commands::toLine()
{
    QFETCH(QString, to);
    QFETCH(bool, inbox);
    EmailRec m = mail(u"1"_s, Me, to);
    if (to == u"q@x")
        m.alsoto = u"b@x"_s;
    const QList<MailBoxRec> accounts = {{{}, {}, {}, {}, {}, u"a@x"_s}, {{}, {}, {}, {}, {}, u"b@x"_s}};
    QTEST(ToLine(m, inbox, accounts), "line");
}

void tst_commands::checkOutboxAccounts_data()
{
    QTest::addColumn<QStringList>("accounts");
    QTest::addColumn<Mails>("outbox");
    QTest::addColumn<bool>("refused");
    const EmailRec mine = to(You), toMe = mail(u"1"_s, You, Me), yours = mail(u"2"_s, You, You);
    QTest::newRow("empty Outbox") << QStringList{Me, You} << Mails{} << false;
    QTest::newRow("no account") << QStringList{} << Mails{yours} << false;
    QTest::newRow("from or to the first account") << QStringList{Me, You} << Mails{mine, toMe}
                                                  << false;
    QTest::newRow("from the second account, box once") << QStringList{Me, You}
                                                       << Mails{mine, yours, yours} << true;
    QTest::newRow("letter case differs") << QStringList{u"Me@x.cn"_s} << Mails{mine} << true;
}

void tst_commands::checkOutboxAccounts()
{
    QFETCH(QStringList, accounts);
    QFETCH(Mails, outbox);
    QFETCH(bool, refused);
    DataDir dir;
    ScriptedPrompter boxes;
    putAccounts(dir, accounts);
    // Capitals only come from a file edited by hand: the program writes
    // lower case.
    if (accounts.value(0) != accounts.value(0).toLower())
        dir.writeBytes(MailBoxFileName, crlfLines({u"[mailbox]"_s, u"number=1"_s, u"[mailbox-1]"_s,
                                                   u"address="_s + accounts.first()}));
    put(dir, FolderFile::Outbox, outbox);
    if (refused)
        boxes.expectMessage(Prompter::Icon::Exclamation, texts::AppTitle, texts::OutboxWithoutAccount);
    QCOMPARE(CheckOutboxAccounts(), refused);
    QVERIFY2(boxes.done(), boxes.report());
}

void tst_commands::sendStep_data()
{
    QTest::addColumn<Mails>("outbox");
    QTest::addColumn<bool>("failed");
    EmailRec read = to(You, {}, u"8"_s);
    read.isnew = u"0"_s;
    QTest::newRow("empty Outbox is saved empty") << Mails{} << false;
    QTest::newRow("all sent and stamped; Sent Items keeps isnew, the queue unread")
        << Mails{to(You), read} << false;
    QTest::newRow("a bad second of three writes nothing")
        << Mails{to(You), to(u"ab"_s), to(You)} << true;
    QTest::newRow("a bad last copy line writes nothing") << Mails{to(You), to(You, u"c"_s)} << true;
}

void tst_commands::sendStep()
{
    QFETCH(Mails, outbox);
    QFETCH(bool, failed);
    DataDir dir;
    put(dir, FolderFile::Outbox, outbox);
    put(dir, FolderFile::SentItems, {mail(u"1"_s)});
    const QByteArray before = allFiles(dir);

    const SendResult r = SendStep();
    QCOMPARE(r.failed, failed);
    QCOMPARE(r.barStarts, !failed);
    if (failed) {
        QCOMPARE(allFiles(dir), before);
        return;
    }
    QCOMPARE(r.sent, MailCount(outbox.size()));
    QString sent = u"1:0:24-05-13 09:12"_s, queued;
    for (const EmailRec &m : outbox) {
        sent += u' ' + m.id + u':' + m.isnew + u":09-01-02 03:04"_s;
        queued += (queued.isEmpty() ? u""_s : u" "_s) + m.id + u":1:09-01-02 03:04"_s;
    }
    QCOMPARE(look(FolderFile::SentItems), sent);
    QCOMPARE(look(FolderFile::ServerQueue), queued);
    QCOMPARE(dir.readBytes(u"send_c.dat"_s), QByteArray("[email]\r\nnumber=0\r\n\r\n"));
}

void tst_commands::receiveStep_data()
{
    QTest::addColumn<QStringList>("accounts");
    QTest::addColumn<Mails>("queue");
    QTest::addColumn<QString>("inbox");  // after the Inbox's own 10:0
    QTest::addColumn<QString>("left");
    QTest::newRow("two accounts, two copies; the copy keeps its flag")
        << QStringList{Me, You} << Mails{to(u"you@x.cn;me@x.cn"_s)}
        << u" 7:1:09-01-02 03:04 7:1:09-01-02 03:04"_s << QString();
    QTest::newRow("unmatched stay queued in order")
        << QStringList{Me} << Mails{to(u"z@x"_s, {}, u"5"_s), to(Me), to(u"q@x"_s, {}, u"6"_s)}
        << u" 7:1:09-01-02 03:04"_s << u"5 6"_s;
    QTest::newRow("no account moves nothing") << QStringList{} << Mails{to(Me)} << QString()
                                              << u"7"_s;
}

void tst_commands::receiveStep()
{
    QFETCH(QStringList, accounts);
    QFETCH(Mails, queue);
    QFETCH(QString, left);
    DataDir dir;
    putAccounts(dir, accounts);
    put(dir, FolderFile::ServerQueue, queue);
    put(dir, FolderFile::Inbox, {mail(u"10"_s)});
    // Run twice: what was delivered is not delivered again, what matched no
    // account waits on.
    for (int run = 0; run < 2; ++run) {
        const ReceiveResult r = ReceiveStep();
        QCOMPARE(r.hadAccounts, !accounts.isEmpty());
        if (run == 0)
            QCOMPARE(r.inboxUnread, r.received);  // the Inbox's own message is read
        QTEST(look(FolderFile::Inbox).remove(u"10:0:24-05-13 09:12"_s), "inbox");
        QCOMPARE(ids(FolderFile::ServerQueue).replace(u'|', u' '), left);
    }
}

void tst_commands::runs_data()
{
    QTest::addColumn<qint16>("mode");
    QTest::addColumn<int>("sentBefore");
    QTest::addColumn<int>("inboxBefore");
    QTest::addColumn<bool>("barStarts");
    QTest::addColumn<QString>("error");  // the box's first line
    QTest::addColumn<QString>("outbox");  // ids after the run
    QTest::newRow("both: the message comes back") << qint16(0) << 0 << 0 << true << QString()
                                                  << QString();
    QTest::newRow("receive only leaves the Outbox") << qint16(1) << 0 << 0 << true << QString()
                                                    << u"7"_s;
    QTest::newRow("unknown mode does nothing") << qint16(3) << 0 << 0 << false << QString()
                                               << u"7"_s;
    QTest::newRow("a full Sent Items stops the send, nothing changed")
        << qint16(2) << 101 << 0 << false << texts::OperationAbandoned << u"7"_s;
    QTest::newRow("a full Inbox stops the receive after the send went through")
        << qint16(0) << 0 << 101 << false << texts::SentButNotReceived << QString();
}

void tst_commands::runs()
{
    QFETCH(qint16, mode);
    QFETCH(int, sentBefore);
    QFETCH(int, inboxBefore);
    QFETCH(QString, error);
    DataDir dir;
    putAccounts(dir, {You});
    put(dir, FolderFile::Outbox, {to(u"You@x.cn"_s.toLower())});
    put(dir, FolderFile::SentItems, mails(sentBefore, 0, 30000000));
    put(dir, FolderFile::Inbox, mails(inboxBefore, 0, 40000000));

    const RunResult r = RunSendReceive(mode);
    QTEST(r.barStarts(), "barStarts");
    QCOMPARE(r.errorText.section(u'\r', 0, 0), error);
    QTEST(ids(FolderFile::Outbox), "outbox");
    if (error.isEmpty() && mode == 0)
        QCOMPARE(ids(FolderFile::Inbox), u"7"_s);
    if (error == texts::SentButNotReceived)
        QCOMPARE(ids(FolderFile::ServerQueue), u"7"_s);
}

void tst_commands::actOnTheMessageShown_data()
{
    QTest::addColumn<QString>("command");
    QTest::addColumn<int>("index");      // the position shown
    QTest::addColumn<QString>("shown");  // the record shown there
    QTest::addColumn<bool>("acted");
    QTest::addColumn<QString>("inbox");  // ids and flags after
    QTest::addColumn<QString>("deleted");
    // The Inbox holds 1 (unread), 2, 2 again unread (a copy), 3; Deleted
    // Items holds 9.
    QTest::newRow("move: the message shown goes last into Deleted Items")
        << u"move"_s << 0 << u"1"_s << true << u"2:0 2:1 3:0"_s << u"9:0 1:1"_s;
    QTest::newRow("move: of two copies the one shown")
        << u"move"_s << 2 << u"2u"_s << true << u"1:1 2:0 3:0"_s << u"9:0 2:1"_s;
    QTest::newRow("move: found where it went meanwhile")
        << u"move"_s << 3 << u"2"_s << true << u"1:1 2:1 3:0"_s << u"9:0 2:0"_s;
    QTest::newRow("move: a message gone meanwhile moves nothing")
        << u"move"_s << 0 << u"5"_s << false << u"1:1 2:0 2:1 3:0"_s << u"9:0"_s;
    QTest::newRow("mark read: the copy shown only")
        << u"read"_s << 2 << u"2u"_s << true << u"1:1 2:0 2:0 3:0"_s << u"9:0"_s;
    QTest::newRow("mark read: a read message writes nothing")
        << u"read"_s << 1 << u"2"_s << false << u"1:1 2:0 2:1 3:0"_s << u"9:0"_s;
    QTest::newRow("delete for good: the one shown only")
        << u"forgood"_s << 0 << u"9"_s << true << u"1:1 2:0 2:1 3:0"_s << QString();
}

void tst_commands::actOnTheMessageShown()
{
    QFETCH(QString, command);
    QFETCH(int, index);
    QFETCH(QString, shown);
    DataDir dir;
    const QHash<QString, EmailRec> records = {
        {u"1"_s, mail(u"1"_s, Me, You, u"s"_s, true)}, {u"2"_s, mail(u"2"_s)},
        {u"2u"_s, mail(u"2"_s, u"a@x.com"_s, u"b@x.com"_s, u"hello"_s, true)},
        {u"3"_s, mail(u"3"_s)}, {u"5"_s, mail(u"5"_s)}, {u"9"_s, mail(u"9"_s)}};
    put(dir, FolderFile::Inbox, {records[u"1"_s], records[u"2"_s], records[u"2u"_s], records[u"3"_s]});
    put(dir, FolderFile::DeletedItems, {records[u"9"_s]});
    const MailRef ref{command == u"forgood" ? FolderFile::DeletedItems : FolderFile::Inbox, index,
                      records[shown]};

    const bool acted = command == u"move" ? MoveToDeletedItems(ref)
        : command == u"read"              ? MarkRead(ref)
                                          : DeleteForGood(ref);
    QTEST(acted, "acted");
    const auto flags = [](int folder) {
        QStringList out;
        for (const EmailRec &m : stored(folder))
            out << m.id + u':' + m.isnew;
        return out.join(u' ');
    };
    QTEST(flags(FolderFile::Inbox), "inbox");
    QTEST(flags(FolderFile::DeletedItems), "deleted");
}

void tst_commands::composeStoring_data()
{
    QTest::addColumn<QString>("command");
    QTest::addColumn<int>("storedIn");  // -1: not stored yet
    QTest::addColumn<bool>("gone");     // removed from there meanwhile
    QTest::addColumn<QString>("drafts");
    QTest::addColumn<QString>("outbox");
    QTest::addColumn<QString>("deleted");
    // Drafts hold 40 and 41, the Outbox 50 and 51, Deleted Items 61; the
    // window's own stored message is 41, 51 or 61. "*" marks the message
    // written by the window under an old id, "new" under a new one.
    const int none = -1, drafts = FolderFile::Drafts, outbox = FolderFile::Outbox,
              deleted = FolderFile::DeletedItems;
    QTest::newRow("save, nothing stored: a new draft")
        << u"save"_s << none << false << u"40|41|new"_s << u"50|51"_s << u"61"_s;
    QTest::newRow("save a draft again: replaced in place, same id")
        << u"save"_s << drafts << false << u"40|41*"_s << u"50|51"_s << u"61"_s;
    QTest::newRow("save an Outbox message: replaced in place")
        << u"save"_s << outbox << false << u"40|41"_s << u"50|51*"_s << u"61"_s;
    QTest::newRow("save a draft deleted meanwhile: a draft again, same id")
        << u"save"_s << drafts << true << u"40|41*"_s << u"50|51"_s << u"61"_s;
    QTest::newRow("send, nothing stored: added to the Outbox")
        << u"send"_s << none << false << u"40|41"_s << u"50|51|new"_s << u"61"_s;
    QTest::newRow("send a draft: it moves with its id")
        << u"send"_s << drafts << false << u"40"_s << u"50|51|41*"_s << u"61"_s;
    QTest::newRow("send an Outbox message: replaced in place")
        << u"send"_s << outbox << false << u"40|41"_s << u"50|51*"_s << u"61"_s;
    QTest::newRow("send from Deleted Items: a new message, the old one stays")
        << u"send"_s << deleted << false << u"40|41"_s << u"50|51|new"_s << u"61"_s;
    QTest::newRow("send later from Deleted Items: it moves with its id")
        << u"later"_s << deleted << false << u"40|41"_s << u"50|51|61*"_s << QString();
    QTest::newRow("send later a draft: it moves with its id")
        << u"later"_s << drafts << false << u"40"_s << u"50|51|41*"_s << u"61"_s;
}

void tst_commands::composeStoring()
{
    QFETCH(QString, command);
    QFETCH(int, storedIn);
    QFETCH(bool, gone);
    DataDir dir;
    put(dir, FolderFile::Drafts, gone ? Mails{mail(u"40"_s)} : Mails{mail(u"40"_s), mail(u"41"_s)});
    put(dir, FolderFile::Outbox, {mail(u"50"_s), mail(u"51"_s)});
    put(dir, FolderFile::DeletedItems, {mail(u"61"_s)});
    StoredMail own;
    if (storedIn == FolderFile::Drafts)
        own = {storedIn, u"41"_s, 1, mail(u"41"_s)};
    else if (storedIn == FolderFile::Outbox)
        own = {storedIn, u"51"_s, 1, mail(u"51"_s)};
    else if (storedIn == FolderFile::DeletedItems)
        own = {storedIn, u"61"_s, 0, mail(u"61"_s)};
    const EmailRec written = mail(QString(), Me, You, u"written"_s);

    if (command == u"save") {
        bool created = false;
        const StoredMail now = SaveDraft(written, own, &created);
        QCOMPARE(created, storedIn < 0 || gone);
        QCOMPARE(stored(now.folder).at(now.index).id, now.id);
    } else if (command == u"send") {
        StoreForSend(written, own);
    } else {
        StoreForSendLater(written, own);
    }
    const auto listed = [](int folder) {
        QStringList out;
        for (const EmailRec &m : stored(folder)) {
            const bool newId = m.id.size() == 8;
            out << (newId ? u"new"_s : m.id + (m.subject == u"written" ? u"*"_s : QString()));
        }
        return out.join(u'|');
    };
    QTEST(listed(FolderFile::Drafts), "drafts");
    QTEST(listed(FolderFile::Outbox), "outbox");
    QTEST(listed(FolderFile::DeletedItems), "deleted");
}

void tst_commands::quotedTexts()
{
    EmailRec q;
    q.from = u"  lilei@example.com  "_s;
    q.to = u"hanmeimei@example.com  "_s;
    q.alsoto = u"cc@example.com"_s;
    q.subject = u"Re:hello  "_s;
    q.datetime = u"24-07-09 14:05 "_s;
    q.content = u"line one\r\nline two  "_s;
    QCOMPARE(compose::ReplySubject(q), u"Re:Re:hello"_s);
    QCOMPARE(compose::ForwardSubject(q), u"Fw:Re:hello"_s);
    // Two empty lines, the header block without blanks after the colons, an
    // empty line, "> " before the first body line only, never the copy line.
    const QString rest = u"\r\nTo:hanmeimei@example.com\r\nSent:24-07-09 14:05\r\n"
                         u"Subject:Re:hello\r\n\r\n> line one\r\nline two  "_s;
    QCOMPARE(compose::QuotedBlock(q, true),
             u"\r\n\r\n-----Original Message-----\r\nFrom:lilei@example.com"_s + rest);
    QCOMPARE(compose::QuotedBlock(q, false),
             u"\r\n\r\n-----Original Message-----\r\nFrom:  lilei@example.com"_s + rest);

    SetClock([] { return QDateTime(QDate(2024, 7, 9), QTime(14, 5, 59)); });
    const EmailRec m = compose::BuildRecord(
        u"12345678"_s, {u"Li@Example.COM"_s, u"Han@X.com"_s, u"Cc@X.COM   "_s, u"Test"_s,
                        u"Hello\r\n你好 ABC  "_s, u" a.txt(1.00kb)"_s});
    QCOMPARE(QStringList({m.id, m.from, m.to, m.alsoto, m.subject, m.content, m.datetime,
                          m.attachment, m.isnew}),
             QStringList({u"12345678"_s, u"li@example.com"_s, u"han@x.com"_s, u"cc@x.com"_s,
                          u"test"_s, u"hello\r\n你好 abc  "_s, u"24-07-09 14:05"_s,
                          u" a.txt(1.00kb)"_s, u"0"_s}));
}

void tst_commands::attachments_data()
{
    QTest::addColumn<QString>("field");
    QTest::addColumn<QString>("shown");
    QTest::newRow("as read back from the file") << u"a.txt(1.00kb) b.txt(2.00kb)"_s
                                                << u"a.txt(1.00kb)|b.txt(2.00kb)"_s;
    QTest::newRow("a leading blank shows nothing") << u" a.txt(1.00kb)"_s << QString();
    QTest::newRow("a name with a blank splits in two") << u"my file.txt"_s << u"my|file.txt"_s;
    QTest::newRow("a double blank stops the list") << u"a  b"_s << u"a"_s;
    QTest::newRow("character 0 stops the list") << u"a \u0000b c"_s << u"a"_s;
    QTest::newRow("at most 21 pieces") << QStringList(QList<QString>(30, u"x"_s)).join(u' ')
                                       << QStringList(QList<QString>(21, u"x"_s)).join(u'|');
}

void tst_commands::attachments()
{
    QFETCH(QString, field);
    QTEST(compose::AttachmentPieces(field).join(u'|'), "shown");
    QCOMPARE(compose::JoinAttachments({u"a.txt(1.00KB)"_s, u"B C.TXT(2.00KB)"_s}),
             u" a.txt(1.00kb) b c.txt(2.00kb)"_s);
    QCOMPARE(compose::JoinAttachments({}), QString());
    QCOMPARE(compose::AttachmentItemText(u"r.doc"_s, 12800), u"r.doc(12.50KB)"_s);
    QCOMPARE(compose::AttachmentItemText(u"r.doc"_s, 512), u"r.doc(0.50KB)"_s);
}

void tst_commands::tooLongForTheFile_data()
{
    QTest::addColumn<QString>("subject");
    QTest::addColumn<QString>("body");
    QTest::addColumn<QString>("overflows");  // field:bytes:limit:kept
    QTest::addColumn<int>("keptBody");
    QTest::newRow("fits exactly") << QString(127, u'中') + u'x' << QString(2045, u'b') << QString()
                                  << 2045;
    QTest::newRow("a body of 2046 bytes") << u"s"_s << QString(2046, u'b') << u"4:2046:2045:2045"_s
                                          << 2045;
    QTest::newRow("a Chinese body is cut at a whole character")
        << u"s"_s << QString(1023, u'中') << u"4:2046:2045:1022"_s << 1022;
    QTest::newRow("line breaks count two bytes, trailing blanks of a subject none")
        << QString(255, u'S') + u"   "_s << QString(1023, u'\n').replace(u"\n"_s, u"\r\n"_s)
        << u"4:2046:2045:2044"_s << 2044;
    QTest::newRow("a subject of 256 bytes") << QString(128, u'中') << u"b"_s
                                            << u"3:256:255:127"_s << 1;
}

void tst_commands::tooLongForTheFile()
{
    QFETCH(QString, subject);
    QFETCH(QString, body);
    QFETCH(int, keptBody);
    EmailRec m = mail(u"1"_s, Me, You, subject);
    m.content = body;
    QStringList found;
    for (const compose::Overflow &o : compose::Overflows(m))
        found << u"%1:%2:%3:%4"_s.arg(int(o.field)).arg(o.bytes).arg(o.limit).arg(o.keptChars);
    QTEST(found.join(u' '), "overflows");
    // What is cut to fit reads back whole.
    DataDir dir;
    const EmailRec fitted = compose::CutToFit(m);
    QCOMPARE(fitted.content.size(), keptBody);
    put(dir, FolderFile::Drafts, {fitted});
    QCOMPARE(stored(FolderFile::Drafts).first().content, fitted.content);
    QCOMPARE(stored(FolderFile::Drafts).first().subject, fitted.subject);
}

QTEST_GUILESS_MAIN(tst_commands)
#include "tst_commands.moc"
