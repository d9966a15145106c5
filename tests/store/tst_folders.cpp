// The six folder files: exact bytes written, what reads back, and the
// failures that must leave every file and array as it was.

#include "store/errors.h"
#include "store/folders.h"
#include "store/mailstore.h"
#include "testsupport.h"
#include "texts.h"

#include <QTest>

using namespace Qt::Literals::StringLiterals;
using testsupport::crlfLines;
using testsupport::DataDir;
using testsupport::gb;
using testsupport::ScriptedPrompter;

namespace {
EmailRec mail(const QString &id, const QString &subject, const QString &content,
              const QString &isnew = u"1"_s)
{
    EmailRec m;
    m.id = id;
    m.from = u"Li Lei <lilei@example.com>"_s;
    m.to = u"hanmeimei@example.com"_s;
    m.alsoto = QString();
    m.subject = subject;
    m.content = content;
    m.datetime = u"24-07-09 14:05"_s;
    m.attachment = u" Report.DOC"_s;
    m.isnew = isnew;
    return m;
}

// The lines of one message section as the program writes them.
QStringList section(int k, const QString &id, const QString &subject, const QString &content,
                    const QString &isnew = u"1"_s)
{
    return {u"[email-%1]"_s.arg(k), u"id="_s + id, u"from=li lei <lilei@example.com>"_s,
            u"to=hanmeimei@example.com"_s, u"alsoto="_s, u"subject="_s + subject,
            u"content="_s + content, u"datetime=24-07-09 14:05"_s,
            u"attachment= report.doc"_s, u"isnew="_s + isnew, QString()};
}

// A folder file with the given raw message sections.
QByteArray folderBytes(int number, const QList<QStringList> &sections)
{
    QStringList lines{u"[email]"_s, u"number=%1"_s.arg(number), QString()};
    for (const QStringList &s : sections)
        lines += s;
    return crlfLines(lines);
}
}  // namespace

class tst_folders : public QObject
{
    Q_OBJECT

private slots:
    void eachFolderHasItsOwnFile();
    void saveWritesExactLines_data();
    void saveWritesExactLines();
    void roundTrip_data();
    void roundTrip();
    void loadReadsHandEditedFiles_data();
    void loadReadsHandEditedFiles();
    void fullFolderRoundTrips();
    void loadFailuresChangeNothing_data();
    void loadFailuresChangeNothing();
    void saveOverCapacityWritesNothing();
    void badFolderNumberShowsBoxAndChangesNothing_data();
    void badFolderNumberShowsBoxAndChangesNothing();
    void countUnread();
    void removeEmailAt_data();
    void removeEmailAt();
    void escapeUnescape_data();
    void escapeUnescape();
};

void tst_folders::eachFolderHasItsOwnFile()
{
    DataDir dir;
    EmailArray mails;
    for (int folder = 0; folder < FolderFile::Count; ++folder)
        SaveEmails(folder, mails, 0);
    QStringList files = QDir(dir.path()).entryList(QDir::Files);
    files.sort();
    QCOMPARE(files, (QStringList{u"deleted_c.dat"_s, u"draft.dat"_s, u"receive_c.dat"_s,
                                 u"receive_s.dat"_s, u"send_c.dat"_s, u"send_s.dat"_s}));
    QCOMPARE(FolderFile::fileName(FolderFile::ServerQueue), u"send_s.dat"_s);
    QCOMPARE(FolderFile::fileName(FolderFile::Inbox), u"receive_c.dat"_s);
}

void tst_folders::saveWritesExactLines_data()
{
    QTest::addColumn<QList<EmailRec>>("records");
    QTest::addColumn<QByteArray>("expected");

    QTest::newRow("count 0 writes three lines")
        << QList<EmailRec>{} << QByteArray("[email]\r\nnumber=0\r\n\r\n");

    QTest::newRow("values lower-cased and right-trimmed, body escaped")
        << QList<EmailRec>{mail(u"12345678"_s, u"Hello World  "_s, u"Dear Han,\r\nSee You."_s)}
        << folderBytes(1, {section(1, u"12345678"_s, u"hello world"_s,
                                   u"[dear han,\\nsee you.]"_s)});

    QTest::newRow("only A to Z lower-cased, Chinese and others kept")
        << QList<EmailRec>{mail(u"1"_s, u"ÄÖ Ｈｉ 你好 ABC"_s, u"正文 XYZ"_s, u"0"_s)}
        << folderBytes(1, {section(1, u"1"_s, u"ÄÖ Ｈｉ 你好 abc"_s, u"[正文 xyz]"_s, u"0"_s)});

    QTest::newRow("sections numbered from 1")
        << QList<EmailRec>{mail(u"1"_s, u"a"_s, u"x"_s), mail(u"2"_s, u"b"_s, u"y"_s, u"0"_s)}
        << folderBytes(2, {section(1, u"1"_s, u"a"_s, u"[x]"_s),
                           section(2, u"2"_s, u"b"_s, u"[y]"_s, u"0"_s)});

    QTest::newRow("body blanks kept inside the brackets")
        << QList<EmailRec>{mail(u"1"_s, u"a"_s, u"  padded  "_s)}
        << folderBytes(1, {section(1, u"1"_s, u"a"_s, u"[  padded  ]"_s)});
}

void tst_folders::saveWritesExactLines()
{
    QFETCH(QList<EmailRec>, records);
    QFETCH(QByteArray, expected);
    DataDir dir;
    EmailArray mails;
    for (int i = 0; i < records.size(); ++i)
        mails[i] = records.at(i);
    SaveEmails(FolderFile::Inbox, mails, MailCount(records.size()));
    QCOMPARE(dir.readBytes(u"receive_c.dat"_s), expected);
}

void tst_folders::roundTrip_data()
{
    QTest::addColumn<QString>("subject");
    QTest::addColumn<QString>("content");
    QTest::addColumn<QString>("expectedSubject");
    QTest::addColumn<QString>("expectedContent");

    QTest::newRow("line breaks survive")
        << u"s"_s << u"a\r\nb\r\n\r\nc"_s << u"s"_s << u"a\r\nb\r\n\r\nc"_s;
    QTest::newRow("Chinese text survives")
        << u"会议通知"_s << u"明天上午九点开会。\r\n请准时。"_s << u"会议通知"_s
        << u"明天上午九点开会。\r\n请准时。"_s;
    QTest::newRow("upper case comes back lower")
        << u"Hello World"_s << u"Dear Sir"_s << u"hello world"_s << u"dear sir"_s;
    QTest::newRow("backslash-n typed in a body becomes a line break")
        << u"s"_s << u"c:\\new"_s << u"s"_s << u"c:\r\new"_s;
    QTest::newRow("empty body, stored as brackets only") << u"s"_s << QString() << u"s"_s << QString();
    QTest::newRow("body that is only line breaks")
        << u"s"_s << u"\r\n\r\n"_s << u"s"_s << u"\r\n\r\n"_s;
    QTest::newRow("body with brackets of its own")
        << u"s"_s << u"[x]"_s << u"s"_s << u"[x]"_s;
    QTest::newRow("leading blanks of a subject are lost, of a body kept")
        << u"  s"_s << u"  b  "_s << u"s"_s << u"  b  "_s;
    QTest::newRow("quoted subject loses its quotes")
        << u"\"quoted\""_s << u"b"_s << u"quoted"_s << u"b"_s;
    QTest::newRow("four-byte characters survive")
        << u"𠀀"_s << u"𠀀\r\n𠀀"_s << u"𠀀"_s << u"𠀀\r\n𠀀"_s;
    // Text pasted from a terminal brings colour codes; a file holding their
    // escape character would read back as binary and be set aside.
    QTest::newRow("control characters dropped, not the folder")
        << u"a\u0001b"_s << u"\u001b[31mred\u001b[0m\tx"_s << u"ab"_s << u"[31mred[0m\tx"_s;
}

void tst_folders::roundTrip()
{
    QFETCH(QString, subject);
    QFETCH(QString, content);
    QFETCH(QString, expectedSubject);
    QFETCH(QString, expectedContent);

    DataDir dir;
    EmailArray mails;
    mails[0] = mail(u"87654321"_s, subject, content);
    SaveEmails(FolderFile::Drafts, mails, 1);
    store::Forget();  // read as the next start reads it

    EmailArray back;
    MailCount count = 0;
    LoadEmails(FolderFile::Drafts, back, count);
    QCOMPARE(count, MailCount(1));
    QCOMPARE(back[0].subject, expectedSubject);
    QCOMPARE(back[0].content, expectedContent);
    QCOMPARE(back[0].id, u"87654321"_s);
    QCOMPARE(back[0].from, u"li lei <lilei@example.com>"_s);
    // The writer keeps the attachment list's leading blank; the reader drops
    // it like every blank around a value.
    QCOMPARE(back[0].attachment, u"report.doc"_s);
    QCOMPARE(back[0].isnew, u"1"_s);
    QCOMPARE(back[0].folder, int(FolderFile::Drafts));
    QCOMPARE(back[0].index, 0);
}

void tst_folders::loadReadsHandEditedFiles_data()
{
    QTest::addColumn<QString>("key");
    QTest::addColumn<QString>("stored");
    QTest::addColumn<QString>("field");
    QTest::addColumn<QString>("expected");

    const QString body = u"content"_s;
    QTest::newRow("isnew yes reads as 0") << u"isnew"_s << u"yes"_s << u"isnew"_s << u"0"_s;
    QTest::newRow("isnew 1abc reads as 1") << u"isnew"_s << u"1abc"_s << u"isnew"_s << u"1"_s;
    QTest::newRow("isnew 01 reads as 1") << u"isnew"_s << u"01"_s << u"isnew"_s << u"1"_s;
    QTest::newRow("id 00123 reads as 123") << u"id"_s << u"00123"_s << u"id"_s << u"123"_s;
    QTest::newRow("id non-numeric reads as 0") << u"id"_s << u"abc"_s << u"id"_s << u"0"_s;
    QTest::newRow("id with minus sign reads as 0") << u"id"_s << u"-5"_s << u"id"_s << u"0"_s;
    QTest::newRow("long id keeps every digit")
        << u"id"_s << u"123456789012345678901"_s << u"id"_s << u"123456789012345678901"_s;
    QTest::newRow("brackets only read as empty body") << body << u"[]"_s << body << QString();
    QTest::newRow("upper-case \\N is a line break") << body << u"[a\\Nb]"_s << body << u"a\r\nb"_s;
    QTest::newRow("any outer characters are dropped") << body << u"xaby"_s << body << u"ab"_s;
    QTest::newRow("subject of 300 bytes cut to 255")
        << u"subject"_s << QString(300, u's') << u"subject"_s << QString(255, u's');
    QTest::newRow("Chinese subject of 300 bytes cut to 254")
        << u"subject"_s << QString(150, u'中') << u"subject"_s << QString(127, u'中');
    QTest::newRow("body cut at 2047 bytes loses its last kept character too")
        << body << u"["_s + QString(2100, u'b') + u"]"_s << body << QString(2045, u'b');
    QTest::newRow("upper case in a hand-edited file is kept on load")
        << u"subject"_s << u"Hello"_s << u"subject"_s << u"Hello"_s;
}

void tst_folders::loadReadsHandEditedFiles()
{
    QFETCH(QString, key);
    QFETCH(QString, stored);
    QFETCH(QString, field);
    QFETCH(QString, expected);

    QStringList lines = section(1, u"1"_s, u"s"_s, u"[b]"_s);
    for (QString &line : lines) {
        if (line.startsWith(key + u'='))
            line = key + u'=' + stored;
    }
    DataDir dir;
    dir.writeBytes(u"receive_c.dat"_s, folderBytes(1, {lines}));

    EmailArray mails;
    MailCount count = 0;
    LoadEmails(FolderFile::Inbox, mails, count);
    QCOMPARE(count, MailCount(1));
    const EmailRec &m = mails[0];
    const QHash<QString, QString> fields{{u"id"_s, m.id}, {u"subject"_s, m.subject},
                                         {u"content"_s, m.content}, {u"isnew"_s, m.isnew}};
    QCOMPARE(fields.value(field), expected);
}

void tst_folders::fullFolderRoundTrips()
{
    DataDir dir;
    EmailArray mails;
    for (int i = 0; i < MAX_FOLDER_MAILS; ++i)
        mails[i] = mail(QString::number(10000000 + i), u"第%1封"_s.arg(i), u"正文\r\n%1"_s.arg(i));
    SaveEmails(FolderFile::SentItems, mails, MAX_FOLDER_MAILS);

    EmailArray back;
    MailCount count = 0;
    LoadEmails(FolderFile::SentItems, back, count);
    QCOMPARE(count, MailCount(101));
    QCOMPARE(back[100].subject, u"第100封"_s);
    QCOMPARE(back[100].content, u"正文\r\n100"_s);
    QCOMPARE(back[100].index, 100);
    QCOMPARE(back[100].folder, int(FolderFile::SentItems));
}

void tst_folders::loadFailuresChangeNothing_data()
{
    QTest::addColumn<QByteArray>("file");
    QTest::addColumn<bool>("indexError");

    QList<QStringList> full;
    for (int k = 1; k <= 102; ++k)
        full.append(section(k, QString::number(k), u"s"_s, u"[b]"_s));
    QTest::newRow("102 messages exceed the capacity") << folderBytes(102, full) << true;
    QTest::newRow("number 9999 exceeds the capacity") << folderBytes(9999, {}) << true;
    QTest::newRow("number larger than the sections present fails on the empty body")
        << folderBytes(3, {section(1, u"1"_s, u"s"_s, u"[b]"_s)}) << false;
    QTest::newRow("a body of one character is malformed")
        << folderBytes(1, {section(1, u"1"_s, u"s"_s, u"]"_s)}) << false;
}

void tst_folders::loadFailuresChangeNothing()
{
    QFETCH(QByteArray, file);
    QFETCH(bool, indexError);

    DataDir dir;
    dir.writeBytes(u"receive_c.dat"_s, file);
    EmailArray mails;
    mails[0] = mail(u"42"_s, u"kept"_s, u"kept"_s);
    MailCount count = 7;

    bool thrownIndex = false;
    bool thrownFormat = false;
    try {
        LoadEmails(FolderFile::Inbox, mails, count);
    } catch (const IndexError &) {
        thrownIndex = true;
    } catch (const FormatError &) {
        thrownFormat = true;
    }
    QCOMPARE(thrownIndex, indexError);
    QCOMPARE(thrownFormat, !indexError);
    QCOMPARE(count, MailCount(7));
    QCOMPARE(mails[0], mail(u"42"_s, u"kept"_s, u"kept"_s));
    QCOMPARE(dir.readBytes(u"receive_c.dat"_s), file);
}

void tst_folders::saveOverCapacityWritesNothing()
{
    DataDir dir;
    const QByteArray before = folderBytes(0, {});
    dir.writeBytes(u"send_c.dat"_s, before);
    EmailArray mails;
    QVERIFY_THROWS_EXCEPTION(IndexError, SaveEmails(FolderFile::Outbox, mails, 102));
    QCOMPARE(dir.readBytes(u"send_c.dat"_s), before);
}

void tst_folders::badFolderNumberShowsBoxAndChangesNothing_data()
{
    QTest::addColumn<int>("folder");
    QTest::addColumn<QString>("routine");
    for (int folder : {-1, 6, 32767}) {
        for (const QString &routine : {u"LoadEmails"_s, u"SaveEmails"_s, u"CountUnread"_s}) {
            QTest::addRow("%s with folder %d", qPrintable(routine), folder) << folder << routine;
        }
    }
}

void tst_folders::badFolderNumberShowsBoxAndChangesNothing()
{
    QFETCH(int, folder);
    QFETCH(QString, routine);

    DataDir dir;
    ScriptedPrompter prompts;
    prompts.expectMessage(Prompter::Icon::Exclamation, u"出错"_s, u"选定文件参数错误,超出范围!"_s);

    EmailArray mails;
    mails[0] = mail(u"42"_s, u"kept"_s, u"kept"_s);
    MailCount count = 5;
    if (routine == u"LoadEmails")
        LoadEmails(folder, mails, count);
    else if (routine == u"SaveEmails")
        SaveEmails(folder, mails, 1);
    else
        QCOMPARE(CountUnread(folder), MailCount(0));

    QVERIFY2(prompts.done(), prompts.report());
    QCOMPARE(count, MailCount(5));
    QCOMPARE(mails[0], mail(u"42"_s, u"kept"_s, u"kept"_s));
    QVERIFY(QDir(dir.path()).entryList(QDir::Files).isEmpty());
}

void tst_folders::countUnread()
{
    DataDir dir;
    QCOMPARE(CountUnread(FolderFile::Inbox), MailCount(0));  // no file yet

    dir.writeBytes(u"receive_c.dat"_s,
                   folderBytes(4, {section(1, u"1"_s, u"a"_s, u"[x]"_s, u"1"_s),
                                   section(2, u"2"_s, u"b"_s, u"[x]"_s, u"0"_s),
                                   section(3, u"3"_s, u"c"_s, u"[x]"_s, u"yes"_s),
                                   section(4, u"4"_s, u"d"_s, u"[x]"_s, u"1"_s)}));
    QCOMPARE(CountUnread(FolderFile::Inbox), MailCount(2));
    QCOMPARE(CountUnread(FolderFile::DeletedItems), MailCount(0));
}

void tst_folders::removeEmailAt_data()
{
    QTest::addColumn<int>("position");
    QTest::addColumn<QStringList>("firstThree");
    QTest::addColumn<QString>("slot99");
    QTest::addColumn<QString>("slot100");

    QTest::newRow("middle record removed")
        << 1 << QStringList{u"0"_s, u"2"_s, u"3"_s} << u"100"_s << u"100"_s;
    QTest::newRow("position 99 takes the last slot's record")
        << 99 << QStringList{u"0"_s, u"1"_s, u"2"_s} << u"100"_s << u"100"_s;
    QTest::newRow("the last slot itself moves nothing")
        << 100 << QStringList{u"0"_s, u"1"_s, u"2"_s} << u"99"_s << u"100"_s;
}

void tst_folders::removeEmailAt()
{
    QFETCH(int, position);
    QFETCH(QStringList, firstThree);
    QFETCH(QString, slot99);
    QFETCH(QString, slot100);

    EmailArray mails;
    for (int i = 0; i < MAX_FOLDER_MAILS; ++i)
        mails[i].id = QString::number(i);
    RemoveEmailAt(mails, position);
    QCOMPARE((QStringList{mails[0].id, mails[1].id, mails[2].id}), firstThree);
    QCOMPARE(mails[99].id, slot99);
    QCOMPARE(mails[100].id, slot100);
}

void tst_folders::escapeUnescape_data()
{
    // Only CR LF pairs are escaped; a lone CR or LF stays as it is.
    QTest::addColumn<QString>("body");
    QTest::addColumn<QString>("stored");
    QTest::newRow("lone CR kept") << u"a\rb"_s << u"[a\rb]"_s;
    QTest::newRow("lone LF kept") << u"a\nb"_s << u"[a\nb]"_s;
    QTest::newRow("CR CR LF keeps the first CR") << u"a\r\r\nb"_s << u"[a\r\\nb]"_s;
}

void tst_folders::escapeUnescape()
{
    QFETCH(QString, body);
    QFETCH(QString, stored);
    QCOMPARE(EscapeContent(body), stored);
    QCOMPARE(UnescapeContent(stored), body);
}

QTEST_GUILESS_MAIN(tst_folders)
#include "tst_folders.moc"
