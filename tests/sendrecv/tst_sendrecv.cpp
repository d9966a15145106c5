#include "sendrecv/engine.h"
#include "sendrecv/recipients.h"
#include "store/clock.h"
#include "store/errors.h"
#include "testsupport.h"

#include <QTest>

using namespace Qt::Literals::StringLiterals;
using namespace testsupport;

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
using Mails = QList<Msg>;

// A folder file exactly as the store writes one.
QByteArray folder(const Mails &mails)
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
        l << u"[mailbox-%1]"_s.arg(l.size() / 8 + 1) << u"address="_s + a << QString()
          << QString() << QString() << QString() << QString() << QString();
    dir.writeLines(u"mailbox.dat"_s, l);
}

// The messages as a run moves them, stamped by the clock that init() fixes.
Mails moved(Mails mails, const QString &isnew = QString())
{
    for (Msg &m : mails) {
        m.datetime = u"09-01-02 03:04"_s;
        m.isnew = isnew.isEmpty() ? m.isnew : isnew;
    }
    return mails;
}
}  // namespace

class tst_sendrecv : public QObject
{
    Q_OBJECT

private slots:
    void init() { SetClock([] { return QDateTime({2009, 1, 2}, {3, 4, 59}); }); }
    void cleanup() { SetClock({}); }

    void rules_data()
    {
        QTest::addColumn<QString>("to");
        QTest::addColumn<QString>("alsoto");
        QTest::addColumn<bool>("sendable");
        QTest::addColumn<bool>("deliveredToBob");  // account bob@a.cn
        const QString bob = u"bob@a.cn"_s;
        QTest::newRow("to with @ and no copy") << bob << QString() << true << true;
        QTest::newRow("to without @") << u"bob"_s << QString() << false << false;
        QTest::newRow("copy line without @") << u"x@y"_s << u"bob"_s << false << false;
        QTest::newRow("one of several copies with @") << u"x@y"_s << u"z,bob@a.cn"_s << true << true;
        QTest::newRow("copy of spaces and NULs is empty") << u"x@y"_s << u" \0 "_s << true << false;
        QTest::newRow("a tab is not trimmed away") << u"x@y"_s << u"\t"_s << false << false;
        QTest::newRow("inside a longer address") << u"xbob@a.cnz"_s << QString() << true << true;
        QTest::newRow("letter case differs") << u"Bob@a.cn"_s << QString() << true << false;
        QTest::newRow("not across to and copy") << u"bob@a"_s << u".cn"_s << false << false;
    }
    void rules()
    {
        QFETCH(QString, to);
        QFETCH(QString, alsoto);
        QFETCH(bool, sendable);
        QFETCH(bool, deliveredToBob);
        QCOMPARE(RecipientsAcceptable(to, alsoto), sendable);
        QCOMPARE(AddressMatches(RecipientText(to, alsoto), u"bob@a.cn"_s), deliveredToBob);
    }
    void separatorsBecomeNul() { QCOMPARE(RecipientText(u"a,b"_s, u"c;d"_s), u"a\0b\0c\0d"_s); }

    void checkOutboxAccounts_data()
    {
        QTest::addColumn<QStringList>("accounts");
        QTest::addColumn<Mails>("outbox");
        QTest::addColumn<bool>("refused");
        const QStringList two{u"me@x.cn"_s, u"you@x.cn"_s};
        const Msg mine{u"a@b"_s}, toMe{u"me@x.cn"_s, {}, u"1"_s, u"you@x.cn"_s},
            yours{u"a@b"_s, {}, u"1"_s, u"you@x.cn"_s};
        QTest::newRow("empty Outbox") << two << Mails{} << false;
        QTest::newRow("no account") << QStringList{} << Mails{yours} << false;
        QTest::newRow("from or to the first account") << two << Mails{mine, toMe} << false;
        QTest::newRow("from the second account, box once") << two << Mails{mine, yours, yours} << true;
        QTest::newRow("letter case differs") << QStringList{u"Me@x.cn"_s} << Mails{mine} << true;
    }
    void checkOutboxAccounts()
    {
        QFETCH(QStringList, accounts);
        QFETCH(Mails, outbox);
        QFETCH(bool, refused);
        DataDir dir;
        writeAccounts(dir, accounts);
        dir.writeBytes(Out, folder(outbox));
        ScriptedPrompter boxes;
        if (refused)
            boxes.expectMessage(Prompter::Icon::Exclamation, u"Quillpost Express"_s,
                                u"发件箱中的部分邮件没有指定账号,请检查。"_s);
        QCOMPARE(CheckOutboxAccounts(), refused);
        QVERIFY2(boxes.done(), boxes.report());
    }

    void sendStep_data()
    {
        QTest::addColumn<Mails>("outbox");
        QTest::addColumn<bool>("failed");
        const Msg ok{u"a@b"_s, u"c@d"_s, u"0"_s}, ok2{u"e@f"_s};
        QTest::newRow("empty Outbox is saved empty") << Mails{} << false;
        QTest::newRow("all sent, stamped, Sent Items keeps isnew") << Mails{ok, ok2} << false;
        QTest::newRow("bad second of three writes nothing") << Mails{ok, {u"ab"_s}, ok2} << true;
        QTest::newRow("bad last copy line writes nothing") << Mails{ok, ok2, {u"a@b"_s, u"c"_s}} << true;
    }
    void sendStep()
    {
        QFETCH(Mails, outbox);
        QFETCH(bool, failed);
        DataDir dir;
        const Mails before{{u"old@x"_s, {}, u"0"_s}}, sent = failed ? Mails{} : outbox;
        dir.writeBytes(Out, folder(outbox));
        dir.writeBytes(Sent, folder(before));
        dir.writeBytes(Queue, folder(before));
        const SendResult r = SendStep();
        QCOMPARE(r.failed, failed);
        QCOMPARE(r.barStarts, !failed);
        QCOMPARE(r.sent, sent.size());
        QCOMPARE(dir.readBytes(Out), folder(failed ? outbox : Mails{}));
        QCOMPARE(dir.readBytes(Sent), folder(before + moved(sent)));
        QCOMPARE(dir.readBytes(Queue), folder(before + moved(sent, u"1"_s)));
    }

    void receiveStep_data()
    {
        QTest::addColumn<QStringList>("accounts");
        QTest::addColumn<Mails>("queue");
        QTest::addColumn<QList<int>>("delivered");  // queue positions, in Inbox order
        QTest::addColumn<QList<int>>("kept");
        const QStringList ab{u"a@x.cn"_s, u"b@x.cn"_s};
        const Msg toA{u"a@x.cn"_s}, nobody{u"c@x.cn"_s}, readToB{u"q@q"_s, u"b@x.cn"_s, u"0"_s};
        QTest::newRow("two accounts, two copies") << ab << Mails{{u"b@x.cn;a@x.cn"_s}} << QList<int>{0, 0} << QList<int>{};
        QTest::newRow("unmatched stay queued in order, run after run")
            << ab << Mails{nobody, toA, nobody, readToB} << QList<int>{1, 3} << QList<int>{0, 2};
        QTest::newRow("no account moves nothing") << QStringList{} << Mails{toA} << QList<int>{} << QList<int>{0};
    }
    void receiveStep()
    {
        QFETCH(QStringList, accounts);
        QFETCH(Mails, queue);
        QFETCH(QList<int>, delivered);
        QFETCH(QList<int>, kept);
        DataDir dir;
        writeAccounts(dir, accounts);
        Mails inbox{{u"r@x"_s, {}, u"0"_s}, {u"u@x"_s}}, left;
        dir.writeBytes(In, folder(inbox));
        dir.writeBytes(Queue, folder(queue));
        for (int i : delivered)
            inbox += moved({queue[i]});
        for (int i : kept)
            left << queue[i];
        // A second run finds only what the first left behind and changes nothing.
        for (int run = 0; run < 2; ++run) {
            const ReceiveResult r = ReceiveStep();
            QCOMPARE(r.received, run == 0 ? delivered.size() : 0);
            QCOMPARE(r.kept, kept.size());
            if (r.received > 0)  // each copy counts as unread, whatever its isnew
                QCOMPARE(r.inboxUnread, 1 + delivered.size());
            QCOMPARE(dir.readBytes(In), folder(inbox));
            QCOMPARE(dir.readBytes(Queue), folder(left));
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

    void fullFolderWritesNothing()
    {
        DataDir dir;
        writeAccounts(dir, {u"a@x.cn"_s});
        const QByteArray full = folder(Mails(MAX_FOLDER_MAILS, {u"a@x.cn"_s})), one = folder({{u"a@x.cn"_s}});
        for (const QString &name : {Out, Sent, Queue, In})
            dir.writeBytes(name, name == Out || name == Queue ? one : full);
        QVERIFY_THROWS_EXCEPTION(IndexError, SendStep());
        QVERIFY_THROWS_EXCEPTION(IndexError, ReceiveStep());
        for (const QString &name : {Out, Sent, Queue, In})
            QCOMPARE(dir.readBytes(name), name == Out || name == Queue ? one : full);
    }
};

QTEST_GUILESS_MAIN(tst_sendrecv)
#include "tst_sendrecv.moc"
