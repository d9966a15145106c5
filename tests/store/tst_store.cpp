// The folder files and the account file: the exact bytes written, what a
// reading gives back (hand-edited files included), the limits, and files
// that are no data files at all, which must be kept, never overwritten.

#include "store/appdir.h"
#include "store/clock.h"
#include "store/errors.h"
#include "store/folders.h"
#include "store/mailboxes.h"
#include "store/mailstore.h"
#include "testsupport.h"
#include "texts.h"

#include <QDir>
#include <QFile>
#include <QTest>

using namespace Qt::Literals::StringLiterals;
using namespace testsupport;
using Icon = Prompter::Icon;

namespace {

// One section of a folder file as its lines.
QStringList section(int k, const QString &id, const QString &subject, const QString &content,
                    const QString &isnew = u"1"_s)
{
    return {u"[email-%1]"_s.arg(k), u"id="_s + id, u"from=f"_s, u"to=t"_s, u"alsoto="_s,
            u"subject="_s + subject, u"content="_s + content, u"datetime=d"_s,
            u"attachment="_s, u"isnew="_s + isnew, QString()};
}

QByteArray folderFile(int number, const QList<QStringList> &sections)
{
    QStringList lines = {u"[email]"_s, u"number="_s + QString::number(number), QString()};
    for (const QStringList &s : sections)
        lines += s;
    return crlfLines(lines);
}

EmailRec record(const QString &id, const QString &subject, const QString &content,
                const QString &isnew = u"1"_s)
{
    EmailRec m = mail(id, u"f"_s, u"t"_s, subject);
    m.content = content;
    m.datetime = u"d"_s;
    m.isnew = isnew;
    return m;
}

void save(int folder, const QList<EmailRec> &records)
{
    EmailArray mails;
    std::copy(records.begin(), records.end(), mails.begin());
    SaveEmails(folder, mails, MailCount(records.size()));
}

}  // namespace

class tst_store : public QObject
{
    Q_OBJECT

private slots:
    void writesExactBytes_data();
    void writesExactBytes();
    void readsBack_data();
    void readsBack();
    void failuresChangeNothing_data();
    void failuresChangeNothing();
    void notDataFilesAreKept_data();
    void notDataFilesAreKept();
    void folderInPlaceOfFile();
    void linkedFileIsReadButReplacedByAFile();
    void changesBehindTheProgramAreSeen();
    void folderRoutines();
};

void tst_store::writesExactBytes_data()
{
    QTest::addColumn<QList<EmailRec>>("records");
    QTest::addColumn<QByteArray>("expected");
    QTest::newRow("count 0 writes three lines") << QList<EmailRec>{}
                                                << QByteArray("[email]\r\nnumber=0\r\n\r\n");
    QTest::newRow("values lower-cased and right-trimmed, body escaped in brackets")
        << QList<EmailRec>{record(u"12345678"_s, u"Hello World  "_s, u"Dear Han,\r\n  See You. "_s)}
        << folderFile(1, {section(1, u"12345678"_s, u"hello world"_s,
                                  u"[dear han,\\n  see you. ]"_s)});
    QTest::newRow("pasted control characters dropped, a lone line break kept as CR LF")
        << QList<EmailRec>{record(u"1"_s, u"a\u001b[0mb\nc"_s, u"x\ry\nz\u0001"_s)}
        << folderFile(1, {section(1, u"1"_s, u"a[0mb c"_s, u"[x\\ny\\nz]"_s)});
    QTest::newRow("only A to Z lower-cased; sections numbered from 1")
        << QList<EmailRec>{record(u"1"_s, u"a"_s, u"x"_s),
                           record(u"2"_s, u"ÄÖ Ｈｉ 你好 ABC"_s, u"正文"_s, u"0"_s)}
        << folderFile(2, {section(1, u"1"_s, u"a"_s, u"[x]"_s),
                          section(2, u"2"_s, u"ÄÖ Ｈｉ 你好 abc"_s, u"[正文]"_s, u"0"_s)});
}

void tst_store::writesExactBytes()
{
    QFETCH(QList<EmailRec>, records);
    DataDir dir;
    save(FolderFile::Drafts, records);
    QTEST(dir.readBytes(u"draft.dat"_s), "expected");

    // Accounts: lower-cased, but trailing blanks kept.
    MailBoxArray accounts;
    accounts[0] = {u"Work Mail "_s, u"POP"_s, u"smtp"_s, u"Li"_s, u"Secret"_s, u"Li@X.cn"_s};
    SaveMailBoxes(accounts, 1);
    QCOMPARE(dir.readBytes(MailBoxFileName),
             crlfLines({u"[mailbox]"_s, u"number=1"_s, QString(), u"[mailbox-1]"_s,
                        u"name=work mail "_s, u"pop=pop"_s, u"smtp=smtp"_s, u"username=li"_s,
                        u"userpassword=secret"_s, u"address=li@x.cn"_s, QString()}));
}

void tst_store::readsBack_data()
{
    QTest::addColumn<QByteArray>("file");
    QTest::addColumn<QString>("expected");  // subject|content|id|isnew of the first message

    const auto one = [](const QString &id, const QString &subject, const QString &content,
                        const QString &isnew) {
        return folderFile(1, {section(1, id, subject, content, isnew)});
    };
    QTest::newRow("line breaks, backslash-n and upper-case \\N")
        << one(u"1"_s, u"s"_s, u"[a\\nb\\Nc]"_s, u"1"_s) << u"s|a\r\nb\r\nc|1|1"_s;
    QTest::newRow("brackets only read as an empty body")
        << one(u"1"_s, u"s"_s, u"[]"_s, u"1"_s) << u"s||1|1"_s;
    QTest::newRow("ids and flags read as their leading number")
        << one(u"00123"_s, u"s"_s, u"[b]"_s, u"yes"_s) << u"s|b|123|0"_s;
    QTest::newRow("a flag 1abc is 1, an id abc is 0")
        << one(u"abc"_s, u"s"_s, u"[b]"_s, u"1abc"_s) << u"s|b|0|1"_s;
    QTest::newRow("a quoted subject loses its quotes, hand-edited capitals stay")
        << one(u"1"_s, u"\"Hi\""_s, u"[B]"_s, u"0"_s) << u"Hi|B|1|0"_s;
    QTest::newRow("a Chinese subject of 300 bytes is cut to 254")
        << one(u"1"_s, QString(150, u'中'), u"[b]"_s, u"0"_s)
        << QString(127, u'中') + u"|b|1|0"_s;
    QTest::newRow("a body cut at 2047 bytes loses its last kept character too")
        << one(u"1"_s, u"s"_s, u"["_s + QString(3000, u'x') + u']', u"0"_s)
        << u"s|"_s + QString(2045, u'x') + u"|1|0"_s;
    QTest::newRow("a number above the sections present reads as it says")
        << folderFile(1, {section(1, u"1"_s, u"a"_s, u"[x]"_s), section(2, u"2"_s, u"b"_s, u"[y]"_s)})
        << u"a|x|1|1"_s;
}

void tst_store::readsBack()
{
    QFETCH(QByteArray, file);
    DataDir dir;
    dir.writeBytes(u"receive_s.dat"_s, file);
    EmailArray mails;
    MailCount count = 0;
    LoadEmails(FolderFile::SentItems, mails, count);
    QVERIFY(count >= 1);
    const EmailRec &m = mails[0];
    QTEST(QStringList({m.subject, m.content, m.id, m.isnew}).join(u'|'), "expected");
    QCOMPARE(m.folder, int(FolderFile::SentItems));
    QCOMPARE(mails[count - 1].index, count - 1);
}

void tst_store::failuresChangeNothing_data()
{
    QTest::addColumn<QByteArray>("file");
    QTest::addColumn<bool>("indexError");  // else a format error
    QList<QStringList> full;
    for (int k = 1; k <= 102; ++k)
        full << section(k, QString::number(k), u"s"_s, u"[b]"_s);
    QTest::newRow("102 messages exceed the capacity") << folderFile(102, full) << true;
    QTest::newRow("number 9999 exceeds the capacity") << folderFile(9999, {}) << true;
    QTest::newRow("a number above the sections fails on the empty body")
        << folderFile(2, {section(1, u"1"_s, u"a"_s, u"[x]"_s)}) << false;
    QTest::newRow("a body of one character is malformed")
        << folderFile(1, {section(1, u"1"_s, u"a"_s, u"x"_s)}) << false;
}

void tst_store::failuresChangeNothing()
{
    QFETCH(QByteArray, file);
    QFETCH(bool, indexError);
    DataDir dir;
    dir.writeBytes(u"deleted_c.dat"_s, file);
    EmailArray mails;
    mails[0].id = u"kept"_s;
    MailCount count = 7;
    try {
        LoadEmails(FolderFile::DeletedItems, mails, count);
        QFAIL("the load went through");
    } catch (const IndexError &) {
        QVERIFY(indexError);
    } catch (const FormatError &) {
        QVERIFY(!indexError);
    }
    QCOMPARE(count, MailCount(7));
    QCOMPARE(mails[0].id, u"kept"_s);
    QCOMPARE(dir.readBytes(u"deleted_c.dat"_s), file);

    // A 102nd message is refused before anything is written.
    EmailArray many;
    QVERIFY_THROWS_EXCEPTION(IndexError, SaveEmails(FolderFile::Inbox, many, 102));
    QVERIFY(!dir.exists(u"receive_c.dat"_s));
}

void tst_store::notDataFilesAreKept_data()
{
    QTest::addColumn<QString>("file");
    QTest::addColumn<QByteArray>("bytes");
    const QByteArray valid = folderFile(1, {section(1, u"1"_s, u"a"_s, u"[x]"_s)});
    QTest::newRow("random bytes") << u"receive_c.dat"_s
                                  << QByteArray::fromHex("8f00e31b7a7f0102c3ffee10");
    QTest::newRow("a folder file with NUL bytes") << u"receive_c.dat"_s
                                                  << QByteArray(valid).insert(10, '\0');
    QTest::newRow("UTF-16 without its byte-order mark")
        << u"send_c.dat"_s << QByteArray("[\0e\0m\0a\0i\0l\0]\0", 14);
    QTest::newRow("no header, messages present")
        << u"draft.dat"_s << crlfLines(section(1, u"1"_s, u"a"_s, u"[x]"_s));
    QTest::newRow("a count that is no number, messages present")
        << u"receive_s.dat"_s << QByteArray(valid).replace("number=1", "number=abc");
    QTest::newRow("accounts without their header")
        << MailBoxFileName << crlfLines({u"[mailbox-1]"_s, u"address=a@x.cn"_s});
}

void tst_store::notDataFilesAreKept()
{
    QFETCH(QString, file);
    QFETCH(QByteArray, bytes);
    DataDir dir;
    ScriptedPrompter boxes;
    dir.writeBytes(file, bytes);
    const QString aside = file + u".damaged-20261123-1105"_s;
    boxes.expectMessage(Icon::Exclamation, texts::AppTitle,
                        texts::DamagedFileSetAside.arg(file, aside, QDir::toNativeSeparators(dir.path())));
    SetClock([] { return QDateTime(QDate(2026, 11, 23), QTime(11, 5)); });

    // It reads as empty, the user is told once where it went, and the
    // next save writes a fresh file beside it.
    if (file == MailBoxFileName) {
        QVERIFY(store::Accounts().isEmpty());
        SaveMailBoxes(MailBoxArray(), 0);
    } else {
        const int folder = QStringList{u"receive_c.dat"_s, u"send_c.dat"_s, u"receive_s.dat"_s,
                                       u"deleted_c.dat"_s, u"draft.dat"_s}.indexOf(file);
        QVERIFY(store::Folder(folder).isEmpty());
        QVERIFY(store::Folder(folder).isEmpty());
        save(folder, {record(u"2"_s, u"new"_s, u"b"_s)});
    }
    SetClock({});
    QVERIFY2(boxes.done(), boxes.report());
    QCOMPARE(dir.readBytes(aside), bytes);
    QVERIFY(dir.readBytes(file) != bytes);
}

void tst_store::folderInPlaceOfFile()
{
    DataDir dir;
    QVERIFY(QDir(dir.path()).mkdir(u"receive_c.dat"_s));
    QVERIFY_THROWS_EXCEPTION(FileError, store::Folder(FolderFile::Inbox));
    try {
        save(FolderFile::Inbox, {});
        QFAIL("saved over a folder");
    } catch (const FileError &error) {
        QVERIFY(error.userText().contains(texts::ReasonIsFolder));
        QVERIFY(error.filesUnchanged());
    }
    QVERIFY(QFileInfo(dir.filePath(u"receive_c.dat"_s)).isDir());
    QCOMPARE(dir.entries(), QStringList{u"receive_c.dat"_s});

    // A data folder found read-only at start-up refuses every save, saying why.
    SetDataReadOnly(true);
    try {
        SaveMailBoxes(MailBoxArray(), 0);
        QFAIL("saved in a read-only folder");
    } catch (const FileError &error) {
        QCOMPARE(error.userText(), DataReadOnlyText());
    }
    SetDataReadOnly(false);
    QCOMPARE(dir.entries(), QStringList{u"receive_c.dat"_s});
}

void tst_store::linkedFileIsReadButReplacedByAFile()
{
    DataDir dir;
    QTemporaryDir elsewhere;
    const QString target = QDir(elsewhere.path()).filePath(u"shared.dat"_s);
    const QByteArray original = FolderBytes({record(u"1"_s, u"linked"_s, u"b"_s)});
    QFile f(target);
    QVERIFY(f.open(QIODevice::WriteOnly) && f.write(original) == original.size());
    f.close();
    QVERIFY(QFile::link(target, dir.filePath(u"draft.dat"_s)));

    QCOMPARE(ids(FolderFile::Drafts), u"1"_s);
    save(FolderFile::Drafts, {});
    QVERIFY(!QFileInfo(dir.filePath(u"draft.dat"_s)).isSymLink());
    QCOMPARE(ids(FolderFile::Drafts), QString());
    QFile again(target);
    QVERIFY(again.open(QIODevice::ReadOnly));
    QCOMPARE(again.readAll(), original);
}

void tst_store::changesBehindTheProgramAreSeen()
{
    // Another program rewrites a folder in place, at once and with the same
    // size: the file's time cannot tell, its bytes do.
    DataDir dir;
    put(dir, FolderFile::Inbox, {mail(u"11111111"_s)});
    QCOMPARE(ids(FolderFile::Inbox), u"11111111"_s);
    QFile f(dir.filePath(u"receive_c.dat"_s));
    QVERIFY(f.open(QIODevice::ReadWrite));
    const QByteArray changed = f.readAll().replace("11111111", "22222222");
    QVERIFY(f.seek(0) && f.write(changed) == changed.size());
    f.close();
    QCOMPARE(ids(FolderFile::Inbox), u"22222222"_s);
}

void tst_store::folderRoutines()
{
    DataDir dir;
    ScriptedPrompter boxes;
    // A folder number outside 0..5 is told and changes nothing.
    for (int bad : {-1, 6}) {
        boxes.expectMessage(Icon::Exclamation, texts::ErrorTitle, texts::FolderOutOfRange);
        EmailArray mails;
        MailCount count = 3;
        LoadEmails(bad, mails, count);
        QCOMPARE(count, MailCount(3));
        boxes.expectMessage(Icon::Exclamation, texts::ErrorTitle, texts::FolderOutOfRange);
        SaveEmails(bad, mails, 0);
    }
    QVERIFY2(boxes.done(), boxes.report());
    QCOMPARE(dir.entries(), QStringList());

    // CountUnread counts exactly "1"; RemoveEmailAt moves whole records down
    // and leaves the last slot as it was.
    put(dir, FolderFile::DeletedItems, mails(4, 3));
    QCOMPARE(CountUnread(FolderFile::DeletedItems), MailCount(3));
    EmailArray shifted;
    for (int i = 0; i < MAX_FOLDER_MAILS; ++i)
        shifted[i].id = QString::number(i);
    RemoveEmailAt(shifted, 98);
    QCOMPARE(shifted[98].id + shifted[99].id + shifted[100].id, u"99100100"_s);
    RemoveEmailAt(shifted, 100);
    QCOMPARE(shifted[100].id, u"100"_s);

    // Accounts read by a count given from outside: the file's number is not
    // asked.
    putAccounts(dir, {u"a@x.cn"_s, u"b@x.cn"_s, u"c@x.cn"_s});
    MailBoxArray accounts;
    MailCount count = 2;
    LoadMailBoxes(accounts, count);
    QCOMPARE(count, MailCount(2));
    QCOMPARE(accounts[1].address, u"b@x.cn"_s);
    QCOMPARE(accounts[2].address, QString());
}

QTEST_GUILESS_MAIN(tst_store)
#include "tst_store.moc"
