// mailbox.dat: exact bytes, what reads back, and the capacity failures.

#include "store/errors.h"
#include "store/mailboxes.h"
#include "testsupport.h"

#include <QTest>

using namespace Qt::Literals::StringLiterals;
using testsupport::crlfLines;
using testsupport::DataDir;

namespace {
MailBoxRec account(const QString &name, const QString &user)
{
    return {name, u"POP.Example.com"_s, u"smtp.example.com"_s, user, u"Secret"_s,
            user + u"@example.com"_s};
}

QStringList section(int k, const QString &name, const QString &user)
{
    return {u"[mailbox-%1]"_s.arg(k), u"name="_s + name, u"pop=pop.example.com"_s,
            u"smtp=smtp.example.com"_s, u"username="_s + user, u"userpassword=secret"_s,
            u"address="_s + user + u"@example.com"_s, QString()};
}

QByteArray fileWith(int number, const QList<QStringList> &sections)
{
    QStringList lines{u"[mailbox]"_s, u"number=%1"_s.arg(number), QString()};
    for (const QStringList &s : sections)
        lines += s;
    return crlfLines(lines);
}
}  // namespace

class tst_mailboxes : public QObject
{
    Q_OBJECT

private slots:
    void saveWritesExactLines();
    void deletingTheOnlyAccountWritesAnEmptyFile();
    void load_data();
    void load();
    void loadTrimsTrailingBlanks();
    void overCapacityChangesNothing();
    void removeMailBoxAt_data();
    void removeMailBoxAt();
};

void tst_mailboxes::saveWritesExactLines()
{
    DataDir dir;
    MailBoxArray accounts;
    accounts[0] = account(u"Work Mail"_s, u"Zhang"_s);
    accounts[1] = account(u"家里 Home  "_s, u"li"_s);
    SaveMailBoxes(accounts, 2);
    // Lower-cased, passwords included; trailing blanks kept.
    QCOMPARE(dir.readBytes(u"mailbox.dat"_s),
             fileWith(2, {section(1, u"work mail"_s, u"zhang"_s),
                          section(2, u"家里 home  "_s, u"li"_s)}));
}

void tst_mailboxes::deletingTheOnlyAccountWritesAnEmptyFile()
{
    DataDir dir;
    dir.writeBytes(u"mailbox.dat"_s, fileWith(1, {section(1, u"a"_s, u"a"_s)}));
    MailBoxArray accounts;
    MailCount count = 0;
    LoadMailBoxes(accounts, count);
    RemoveMailBoxAt(accounts, 0);
    SaveMailBoxes(accounts, --count);
    QCOMPARE(dir.readBytes(u"mailbox.dat"_s), QByteArray("[mailbox]\r\nnumber=0\r\n\r\n"));
}

void tst_mailboxes::load_data()
{
    QTest::addColumn<QByteArray>("file");
    QTest::addColumn<int>("countIn");
    QTest::addColumn<int>("countOut");
    QTest::addColumn<QString>("lastName");

    const QList<QStringList> five{section(1, u"a"_s, u"a"_s), section(2, u"b"_s, u"b"_s),
                                  section(3, u"c"_s, u"c"_s), section(4, u"d"_s, u"d"_s),
                                  section(5, u"e"_s, u"e"_s)};
    QTest::newRow("count 0 takes the file's number") << fileWith(5, five) << 0 << 5 << u"e"_s;
    QTest::newRow("count 3 reads three of five") << fileWith(5, five) << 3 << 3 << u"c"_s;
    QTest::newRow("count above the file's reads empty records")
        << fileWith(1, five.mid(0, 1)) << 2 << 2 << QString();
    QTest::newRow("no mailbox section gives count 0")
        << crlfLines({u"[other]"_s, u"number=3"_s}) << 0 << 0 << QString();
    QTest::newRow("only four characters of number count")
        << crlfLines({u"[mailbox]"_s, u"number=00002"_s}) << 0 << 0 << QString();
    QTest::newRow("no file gives count 0") << QByteArray() << 0 << 0 << QString();
}

void tst_mailboxes::load()
{
    QFETCH(QByteArray, file);
    QFETCH(int, countIn);
    QFETCH(int, countOut);
    QFETCH(QString, lastName);

    DataDir dir;
    if (!file.isEmpty())
        dir.writeBytes(u"mailbox.dat"_s, file);
    MailBoxArray accounts;
    MailCount count = MailCount(countIn);
    LoadMailBoxes(accounts, count);
    QCOMPARE(int(count), countOut);
    if (countOut > 0) {
        QCOMPARE(accounts[countOut - 1].name, lastName);
        if (!lastName.isEmpty())
            QCOMPARE(accounts[countOut - 1].address, lastName + u"@example.com"_s);
    }
}

void tst_mailboxes::loadTrimsTrailingBlanks()
{
    DataDir dir;
    dir.writeBytes(u"mailbox.dat"_s,
                   crlfLines({u"[mailbox]"_s, u"number=1"_s, u"[mailbox-1]"_s,
                              u"name=\"  my mail  \""_s, u"userpassword='pw  '"_s}));
    MailBoxArray accounts;
    MailCount count = 0;
    LoadMailBoxes(accounts, count);
    QCOMPARE(accounts[0].name, u"  my mail"_s);
    QCOMPARE(accounts[0].userpassword, u"pw"_s);
    QCOMPARE(accounts[0].pop, QString());
}

void tst_mailboxes::overCapacityChangesNothing()
{
    DataDir dir;
    const QByteArray file = fileWith(22, {});
    dir.writeBytes(u"mailbox.dat"_s, file);
    MailBoxArray accounts;
    accounts[0] = account(u"kept"_s, u"kept"_s);
    MailCount count = 0;
    QVERIFY_THROWS_EXCEPTION(IndexError, LoadMailBoxes(accounts, count));
    QCOMPARE(count, MailCount(0));
    QCOMPARE(accounts[0], account(u"kept"_s, u"kept"_s));

    QVERIFY_THROWS_EXCEPTION(IndexError, SaveMailBoxes(accounts, 22));
    QCOMPARE(dir.readBytes(u"mailbox.dat"_s), file);
}

void tst_mailboxes::removeMailBoxAt_data()
{
    QTest::addColumn<int>("position");
    QTest::addColumn<QStringList>("names");  // slots 0..4, then 19 and 20
    QTest::newRow("slot 3 of 5") << 2
        << QStringList{u"0"_s, u"1"_s, u"3"_s, u"4"_s, u"5"_s, u"20"_s, u"20"_s};
    QTest::newRow("slot 20 moves nothing") << 20
        << QStringList{u"0"_s, u"1"_s, u"2"_s, u"3"_s, u"4"_s, u"19"_s, u"20"_s};
}

void tst_mailboxes::removeMailBoxAt()
{
    QFETCH(int, position);
    QFETCH(QStringList, names);
    MailBoxArray accounts;
    for (int i = 0; i < MAX_MAILBOXES; ++i)
        accounts[i].name = QString::number(i);
    RemoveMailBoxAt(accounts, position);
    QStringList got;
    for (int i : {0, 1, 2, 3, 4, 19, 20})
        got.append(accounts[i].name);
    QCOMPARE(got, names);
}

QTEST_GUILESS_MAIN(tst_mailboxes)
#include "tst_mailboxes.moc"
