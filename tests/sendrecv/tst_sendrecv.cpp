#include "sendrecv/engine.h"
#include "sendrecv/recipients.h"
#include "store/errors.h"
#include "testsupport.h"

#include <QTest>

using namespace Qt::Literals::StringLiterals;
using namespace testsupport;
using Icon = Prompter::Icon;

namespace {
const QString In = u"receive_c.dat"_s, Out = u"send_c.dat"_s, Sent = u"receive_s.dat"_s,
              Queue = u"send_s.dat"_s;

struct Msg
{
    Msg(const QString &to = {}, const QString &alsoto = {}, const QString &isnew = u"1"_s,
        const QString &from = u"me@x.cn"_s)
        : to(to), alsoto(alsoto), isnew(isnew), from(from) {}
    QString to, alsoto, isnew, datetime = u"d"_s, from;
};

// A folder file exactly as the store writes one.
QByteArray folder(const QList<Msg> &mails)
{
    QStringList l{u"[email]"_s, u"number=%1"_s.arg(mails.size()), QString()};
    for (const Msg &m : mails)
        l << u"[email-%1]"_s.arg(l.size() / 11 + 1) << u"id=7"_s << u"from="_s + m.from
          << u"to="_s + m.to << u"alsoto="_s + m.alsoto << u"subject=s"_s << u"content=[b]"_s
          << u"datetime="_s + m.datetime << u"attachment="_s << u"isnew="_s + m.isnew << QString();
    return crlfLines(l);
}

void writeAccounts(const DataDir &dir, const QStringList &addresses)
{
    QStringList l{u"[mailbox]"_s, u"number=%1"_s.arg(addresses.size()), QString()};
    for (const QString &a : addresses)
        l << u"[mailbox-%1]"_s.arg(l.size() / 8 + 1) << u"name=n"_s << u"pop=p"_s << u"smtp=s"_s
          << u"username=u"_s << u"userpassword=w"_s << u"address="_s + a << QString();
    dir.writeLines(u"mailbox.dat"_s, l);
}

QList<Msg> stamped(QList<Msg> mails, const QString &isnew = QString())
{
    for (Msg &m : mails) {
        m.datetime = u"09-01-02 03:04"_s;
        if (!isnew.isEmpty())
            m.isnew = isnew;
    }
    return mails;
}
}  // namespace

Q_DECLARE_METATYPE(Msg)

class tst_sendrecv : public QObject
{
    Q_OBJECT

private slots:
    void init() { SetSendReceiveClock([] { return QDateTime({2009, 1, 2}, {3, 4, 59}); }); }
    void cleanup() { SetSendReceiveClock({}); }

    void sendCheck_data()
    {
        QTest::addColumn<QString>("to");
        QTest::addColumn<QString>("alsoto");
        QTest::addColumn<bool>("ok");
        QTest::newRow("to with @ and no copy passes") << u"a@b"_s << QString() << true;
        QTest::newRow("a bare @ is enough") << u"@"_s << QString() << true;
        QTest::newRow("to without @ fails") << u"ab"_s << QString() << false;
        QTest::newRow("empty to fails") << QString() << u"a@b"_s << false;
        QTest::newRow("copy without @ fails") << u"a@b"_s << u"c"_s << false;
        QTest::newRow("one address with @ among several passes") << u"x;a@b"_s << u"c,d@e"_s << true;
        QTest::newRow("copy of spaces and NULs counts as empty") << u"a@b"_s << u" \0 "_s << true;
        QTest::newRow("a tab is not trimmed away") << u"a@b"_s << u"\t"_s << false;
    }
    void sendCheck()
    {
        QFETCH(QString, to);
        QFETCH(QString, alsoto);
        QFETCH(bool, ok);
        QCOMPARE(RecipientsAcceptable(to, alsoto), ok);
    }

    void match_data()
    {
        QTest::addColumn<QString>("to");
        QTest::addColumn<QString>("alsoto");
        QTest::addColumn<QString>("address");
        QTest::addColumn<bool>("matches");
        QTest::newRow("address in the copy line") << u"x@y"_s << u"z@y,bob@a.cn"_s << u"bob@a.cn"_s << true;
        QTest::newRow("inside a longer address") << u"xbob@a.cnz"_s << QString() << u"bob@a.cn"_s << true;
        QTest::newRow("letter case differs") << u"Bob@a.cn"_s << QString() << u"bob@a.cn"_s << false;
        QTest::newRow("not across to and copy") << u"bob@a"_s << u".cn"_s << u"bob@a.cn"_s << false;
        QTest::newRow("an address with a comma never") << u"a,b@c"_s << QString() << u"a,b@c"_s << false;
        QTest::newRow("an address with a semicolon never") << u"a;b@c"_s << QString() << u"a;b@c"_s << false;
    }
    void match()
    {
        QFETCH(QString, to);
        QFETCH(QString, alsoto);
        QFETCH(QString, address);
        QFETCH(bool, matches);
        QCOMPARE(AddressMatches(RecipientText(to, alsoto), address), matches);
    }

    void checkOutboxAccounts_data()
    {
        QTest::addColumn<QStringList>("accounts");
        QTest::addColumn<QList<Msg>>("outbox");
        QTest::addColumn<bool>("refused");
        const QStringList two{u"me@x.cn"_s, u"you@x.cn"_s};
        const Msg mine{u"a@b"_s}, toMe{u"me@x.cn"_s, {}, u"1"_s, u"you@x.cn"_s},
            yours{u"a@b"_s, {}, u"1"_s, u"you@x.cn"_s};
        QTest::newRow("empty Outbox") << two << QList<Msg>{} << false;
        QTest::newRow("no account") << QStringList{} << QList<Msg>{yours} << false;
        QTest::newRow("from or to the first account") << two << QList<Msg>{mine, toMe} << false;
        QTest::newRow("from the second account, shown once") << two << QList<Msg>{mine, yours, yours} << true;
        QTest::newRow("letter case differs") << QStringList{u"Me@x.cn"_s} << QList<Msg>{mine} << true;
    }
    void checkOutboxAccounts()
    {
        QFETCH(QStringList, accounts);
        QFETCH(QList<Msg>, outbox);
        QFETCH(bool, refused);
        DataDir dir;
        writeAccounts(dir, accounts);
        dir.writeBytes(Out, folder(outbox));
        ScriptedPrompter boxes;
        if (refused)
            boxes.expectMessage(Icon::Exclamation, u"Quillpost Express"_s,
                                u"发件箱中的部分邮件没有指定账号,请检查。"_s);
        QCOMPARE(CheckOutboxAccounts(), refused);
        QVERIFY2(boxes.done(), boxes.report());
    }

    void sendStep_data()
    {
        QTest::addColumn<QList<Msg>>("outbox");
        QTest::addColumn<bool>("failed");
        const Msg ok{u"a@b"_s, u"c@d"_s, u"0"_s}, ok2{u"e@f"_s}, noAt{u"ab"_s}, badCopy{u"a@b"_s, u"c"_s};
        QTest::newRow("empty Outbox is saved empty") << QList<Msg>{} << false;
        QTest::newRow("all sent, stamped, Sent Items keeps isnew") << QList<Msg>{ok, ok2} << false;
        QTest::newRow("second of three without @ writes nothing") << QList<Msg>{ok, noAt, ok2} << true;
        QTest::newRow("bad copy line last writes nothing") << QList<Msg>{ok, ok2, badCopy} << true;
    }
    void sendStep()
    {
        QFETCH(QList<Msg>, outbox);
        QFETCH(bool, failed);
        DataDir dir;
        const QList<Msg> before{{u"old@x"_s, {}, u"0"_s}};
        dir.writeBytes(Out, folder(outbox));
        dir.writeBytes(Sent, folder(before));
        dir.writeBytes(Queue, folder(before));

        const SendResult r = SendStep();
        QCOMPARE(r.failed, failed);
        QCOMPARE(r.barStarts, !failed);
        QCOMPARE(r.sent, failed ? 0 : outbox.size());
        QCOMPARE(dir.readBytes(Out), folder(failed ? outbox : QList<Msg>{}));
        QCOMPARE(dir.readBytes(Sent), folder(before + (failed ? QList<Msg>{} : stamped(outbox))));
        QCOMPARE(dir.readBytes(Queue), folder(before + (failed ? QList<Msg>{} : stamped(outbox, u"1"_s))));
    }

    void receiveStep_data()
    {
        QTest::addColumn<QStringList>("accounts");
        QTest::addColumn<QList<Msg>>("queue");
        QTest::addColumn<QList<int>>("delivered");  // queue positions, in Inbox order
        QTest::addColumn<QList<int>>("kept");
        const QStringList ab{u"a@x.cn"_s, u"b@x.cn"_s};
        const Msg toBoth{u"b@x.cn;a@x.cn"_s}, toA{u"a@x.cn"_s}, nobody{u"c@x.cn"_s},
            inner{u"xa@x.cnz"_s}, readToB{u"q@q"_s, u"b@x.cn"_s, u"0"_s};
        QTest::newRow("two accounts, two copies") << ab << QList<Msg>{toBoth} << QList<int>{0, 0} << QList<int>{};
        QTest::newRow("inner address matches") << ab << QList<Msg>{inner} << QList<int>{0} << QList<int>{};
        QTest::newRow("letter case misses, stays queued")
            << QStringList{u"A@x.cn"_s} << QList<Msg>{toA} << QList<int>{} << QList<int>{0};
        QTest::newRow("unmatched stay queued in order")
            << ab << QList<Msg>{nobody, toA, nobody, readToB} << QList<int>{1, 3} << QList<int>{0, 2};
        QTest::newRow("no account moves nothing") << QStringList{} << QList<Msg>{toA} << QList<int>{} << QList<int>{0};
    }
    void receiveStep()
    {
        QFETCH(QStringList, accounts);
        QFETCH(QList<Msg>, queue);
        QFETCH(QList<int>, delivered);
        QFETCH(QList<int>, kept);
        DataDir dir;
        writeAccounts(dir, accounts);
        QList<Msg> inbox{{u"r@x"_s, {}, u"0"_s}, {u"u@x"_s}}, expectQueue;
        dir.writeBytes(In, folder(inbox));
        dir.writeBytes(Queue, folder(queue));
        for (int i : delivered)
            inbox += stamped({queue[i]});
        for (int i : kept)
            expectQueue << queue[i];

        // The second run finds only what the first left and must change nothing.
        for (int run = 0; run < 2; ++run) {
            const ReceiveResult r = ReceiveStep();
            QCOMPARE(r.received, run == 0 ? delivered.size() : 0);
            QCOMPARE(r.kept, accounts.isEmpty() ? 0 : kept.size());
            if (r.received > 0)  // copies count as unread whatever their isnew
                QCOMPARE(r.inboxUnread, 1 + delivered.size());
            QVERIFY(r.barStarts);
            QCOMPARE(dir.readBytes(In), folder(inbox));
            QCOMPARE(dir.readBytes(Queue), folder(expectQueue));
        }
    }

    void runModes_data()
    {
        QTest::addColumn<qint16>("mode");
        QTest::addColumn<bool>("outboxValid");
        QTest::addColumn<bool>("barStarts");
        QTest::addColumn<int>("received");
        QTest::newRow("both: capitals in To arrive") << SendReceiveModes::SendAndReceive << true << true << 1;
        QTest::newRow("both: a failed send still receives") << SendReceiveModes::SendAndReceive << false << true << 0;
        QTest::newRow("receive only leaves the Outbox") << SendReceiveModes::ReceiveOnly << true << true << 0;
        QTest::newRow("send only, failed: no bar") << SendReceiveModes::SendOnly << false << false << 0;
        QTest::newRow("unknown mode does nothing") << qint16(3) << true << false << 0;
    }
    void runModes()
    {
        QFETCH(qint16, mode);
        QFETCH(bool, outboxValid);
        QFETCH(bool, barStarts);
        QFETCH(int, received);
        DataDir dir;
        writeAccounts(dir, {u"a@x.cn"_s});
        const QByteArray outbox = folder({{outboxValid ? u"A@X.cn"_s : u"ax.cn"_s}});
        dir.writeBytes(Out, outbox);
        const RunResult r = RunSendReceive(mode);
        QCOMPARE(r.barStarts(), barStarts);
        QCOMPARE(r.sendFailed(), r.sendRan && !outboxValid);
        QCOMPARE(r.receive.received, received);
        QCOMPARE(dir.readBytes(Out) == outbox, !(r.sendRan && outboxValid));
    }

    void fullFolderRefused()
    {
        DataDir dir;
        writeAccounts(dir, {u"a@x.cn"_s});
        const QByteArray full = folder(QList<Msg>(MAX_FOLDER_MAILS, {u"a@x.cn"_s}));
        const QByteArray one = folder({{u"a@x.cn"_s}});
        dir.writeBytes(Out, one);
        dir.writeBytes(Sent, full);
        QVERIFY_THROWS_EXCEPTION(IndexError, SendStep());
        dir.writeBytes(In, full);
        dir.writeBytes(Queue, one);
        QVERIFY_THROWS_EXCEPTION(IndexError, ReceiveStep());
        QCOMPARE(dir.readBytes(Out), one);
        QCOMPARE(dir.readBytes(Queue), one);
        QCOMPARE(dir.readBytes(In), full);
    }
};

QTEST_GUILESS_MAIN(tst_sendrecv)
#include "tst_sendrecv.moc"
