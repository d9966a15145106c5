// The data files from the bytes up: the profile reader, which must answer as the
// platform's would whatever an editor did to a file; folder and account files written
// to the byte and read back within their limits; files that are no data files, set
// aside and never overwritten; the data folder chosen; the random numbers of ids.

#include "mail/commands.h"
#include "sendrecv/engine.h"
#include "store/appdir.h"
#include "store/clock.h"
#include "store/commit.h"
#include "store/datadir.h"
#include "store/errors.h"
#include "store/folders.h"
#include "store/mailboxes.h"
#include "store/mailstore.h"
#include "store/profile.h"
#include "store/random.h"
#include "testsupport.h"
#include "texts.h"

#include <QDir>
#include <QElapsedTimer>
#include <QSemaphore>
#include <QSignalSpy>
#include <QStringDecoder>
#include <QStringEncoder>
#include <QTest>

#include <atomic>
#include <cerrno>
#include <thread>

using namespace Qt::Literals::StringLiterals;
using namespace testsupport;

namespace {

// Messages are given as "id|subject|content|isnew", isnew "1" when left out: a folder
// file saying number, a section for each, the content as stored; and such a message.
QByteArray folderFile(const QString &number, const QStringList &messages)
{
    QStringList lines{u"[email]"_s, u"number="_s + number, QString()};
    for (int k = 0; k < messages.size(); ++k) {
        const QStringList m = messages[k].split(u'|');
        lines << u"[email-%1]"_s.arg(k + 1) << u"id="_s + m[0] << u"from=f"_s << u"to=t"_s
              << u"alsoto="_s << u"subject="_s + m[1] << u"content="_s + m[2] << u"datetime=d"_s
              << u"attachment="_s << u"isnew="_s + m.value(3, u"1"_s) << QString();
    }
    return crlfLines(lines);
}
EmailRec record(const QString &message)
{
    const QStringList m = message.split(u'|');
    return {m[0], u"f"_s, u"t"_s, {}, m[1], m[2], u"d"_s, {}, m.value(3, u"1"_s)};
}

}  // namespace

class tst_store : public QObject
{
    Q_OBJECT

private slots:
    // Sends are dated, and files set aside named, by this clock.
    void initTestCase() { SetClock([] { return QDateTime({2024, 2, 3}, {4, 5}); }); }

    // Each row is a hand-made file and the value of k in section a.
    void profileReads_data()
    {
        QTest::addColumn<QByteArray>("file");
        QTest::addColumn<QString>("expected");
        const auto k = [](const char *name, const QByteArray &file, const QString &expected) {
            QTest::newRow(name) << file << expected;
        };
        const auto v = [&](const char *name, const QByteArray &value, const QString &expected) {
            k(name, "[a]\r\nk=" + value, expected);
        };
        // Names, blanks and lines
        k("first section of a name, in any letter case", "[A]\r\nk=1\r\n[a]\r\nk=2", u"1"_s);
        k("first key of a name, in any letter case", "[a]\r\nK=1\r\nk=2", u"1"_s);
        k("names alike but for their first letter differ", "[b]\r\nj=1\r\n[a]\r\nj=2\r\nk=3", u"3"_s);
        k("outer blanks off, inner kept", " \t[ \t a \v]\r\n\r\n \t k \v= \t v  1 \v", u"v  1"_s);
        k("CR alone and LF alone end a line", "[a]\rk=1\nj=0", u"1"_s);
        // Values, quotes and buffer limits; the end of the file ends the last line.
        v("first equals sign separates", "a=b", u"a=b"_s);
        v("semicolon inside a value is text", "x;y", u"x;y"_s);
        v("double quotes stripped, blanks inside kept", "\" a \"", u" a "_s);
        v("blanks outside single quotes dropped first", "  'a'  ", u"a"_s);
        v("mismatched quotes kept", "\"a'", u"\"a'"_s);
        v("only one pair stripped", "\"\"a\"\"", u"\"a\""_s);
        v("unquoted, then cut to 255 bytes", '"' + QByteArray(300, 'x') + '"', QString(255, u'x'));
        v("2-byte characters fill 255", "x" + gb(QString(200, u'中')), u"x"_s + QString(127, u'中'));
        // Encodings a text editor may have saved the file in
        const QString inbox = u"收件箱 信耀 é𠀀"_s, text = u"[a]\r\nk="_s + inbox;
        using E = QStringEncoder;
        k("UTF-8 with a byte-order mark", "\xEF\xBB\xBF" + text.toUtf8(), inbox);
        k("UTF-16 little-endian", E(E::Utf16LE, E::Flag::WriteBom)(text), inbox);
        k("UTF-16 big-endian", E(E::Utf16BE, E::Flag::WriteBom)(text), inbox);
        v("GB18030 that is also valid UTF-8 stays GB18030", gb(u"隆"_s), u"隆"_s);
        v("UTF-8 of ideographs and Latin-1 letters is UTF-8", u"ÿ中文"_s.toUtf8(), u"ÿ中文"_s);
        v("a byte 0x80 beside ASCII is GB18030's, not Latin-1's", "a\x80", QStringDecoder("GB18030").decode("a\x80"));
        v("UTF-8 cut as the GB18030 it becomes", QString(200, u'中').toUtf8(), QString(127, u'中'));
    }
    void profileReads()
    {
        QFETCH(QByteArray, file);
        QTEST(ProfileFile::parse(file).value("a", "k"), "expected");
    }

    // Only A to Z lower-cased, values right-trimmed, bodies in brackets.
    void writesExactBytes()
    {
        QCOMPARE(FolderBytes({record(u"1|Hello World  |Dear Han,\r\n  See You. "_s),
                              record(u"2|ÄÖ Ｈｉ 你好 AZ@[|正文|0"_s), record(u"3|   |x"_s)}),
                 folderFile(u"3"_s, {u"1|hello world|[dear han,\\n  see you. ]"_s,
                                     u"2|ÄÖ Ｈｉ 你好 az@[|[正文]|0"_s, u"3||[x]"_s}));
    }

    void loads_data()
    {
        QTest::addColumn<QByteArray>("file");
        // The count, then the subject, content, id and isnew of the first message.
        QTest::addColumn<QString>("expected");
        // One message, or as many copies under a count.
        const auto one = [](const char *name, const QString &message, const QString &expected,
                            const QString &number = u"1"_s, int copies = 1) {
            QTest::newRow(name) << folderFile(number, QStringList(copies, message)) << expected;
        };
        one("line breaks, \\n and \\N", u"1|s|[a\\nb\\Nc]"_s, u"1|s|a\r\nb\r\nc|1|1"_s);
        one("brackets only read as an empty body", u"1|s|[]"_s, u"1|s||1|1"_s);
        one("a body without its brackets shows whole", u"1|s|x\\ny"_s, u"1|s|x\r\ny|1|1"_s);
        one("ids, flags: their leading number, else 0", u"abc|s|[b]|01abc"_s, u"1|s|b|0|1"_s);
        one("hand-edited capitals stay", u"1|Hi|[B]"_s, u"1|Hi|B|1|1"_s);
        one("a body cut at 2047 bytes loses its last kept character too",
            u"1|s|["_s + QString(3000, u'x') + u']', u"1|s|"_s + QString(2045, u'x') + u"|1|1"_s);
        const QString b = u"1|s|[b]"_s;
        one("every section is a message, whatever the count says", b, u"3|s|b|1|1"_s, u"1"_s, 3);
        one("a count above the sections: the sections there are", b, u"1|s|b|1|1"_s, u"2"_s);
        one("a count quoted with a blank inside is a count", b, u"1|s|b|1|1"_s, u"\" 1\""_s);
        QTest::newRow("blank lines alone: empty, not set aside") << QByteArray(" \t\r\n\f\r\n") << u"0"_s;
        QTest::newRow("a count that is no number, no message section: empty, not set aside")
            << QByteArray("[email]\r\nnumber=none\r\n[email-]\r\n") << u"0"_s;
    }
    void loads()
    {
        QFETCH(QByteArray, file);
        DataDir dir;
        dir.writeBytes(u"receive_s.dat"_s, file);
        errno = EINTR;  // left by a wait a signal broke off: the read still ends at the end of the file
        QCOMPARE(ProfileFile::load(dir.filePath(u"receive_s.dat"_s)).bytes(), ProfileFile::parse(file).bytes());
        const MailList mails = stored(FolderFile::SentItems);
        QString got = QString::number(mails.size());
        if (!mails.isEmpty()) {
            const EmailRec &m = mails.first();
            got += u"|%1|%2|%3|%4"_s.arg(m.subject, m.content, m.id, m.isnew);
        }
        QTEST(got, "expected");
        QCOMPARE(dir.entries(), QStringList{u"receive_s.dat"_s});  // no load writes
        QCOMPARE(dir.readBytes(u"receive_s.dat"_s), file);
    }

    // Folder files as a hand edit or another tool leaves them. A command changes one message
    // (the one with id 7 when the folder shows one, else the first) and the file it saves is
    // checked to the byte: every other record as it was read, in the changed one only the line
    // of the field it changed, the true count, and the rest of the file around them.
    void keepsWhatOtherToolsWrote_data()
    {
        QTest::addColumn<QString>("command");      // read, delete, send or save
        QTest::addColumn<QByteArray>("file");      // the Inbox; for send the Outbox, for save Drafts
        QTest::addColumn<QByteArray>("expected");  // the Inbox, Deleted Items, Sent Items or Drafts
        const QByteArray plain = "id=1\r\nfrom=a@x.cn\r\nto=b@x.cn\r\nalsoto=\r\nsubject=s\r\n"
                                 "content=[c]\r\ndatetime=d\r\nattachment=\r\nisnew=1\r\n\r\n";
        const auto marked = [](QByteArray body) -> QByteArray { return body.replace("isnew=1", "isnew=0"); };
        const QByteArray read = marked(plain);
        const auto head = [](const QByteArray &number) -> QByteArray { return "[email]\r\nnumber=" + number + "\r\n\r\n"; };
        const auto sec = [](int k, const QByteArray &body) -> QByteArray {
            return "[email-" + QByteArray::number(k) + "]\r\n" + body;
        };
        const auto odd = [](const QByteArray &lines) -> QByteArray { return "id=7\r\nto=b@x.cn\r\n" + lines + "isnew=1\r\n"; };
        const auto row = [](const char *name, const char *command, const QByteArray &file, const QByteArray &expected) {
            QTest::newRow(name) << QString::fromLatin1(command) << file << expected;
        };
        QByteArray nine;
        for (int k = 2; k <= 10; ++k)
            nine += sec(k, QByteArray(plain).replace("id=1", QByteArray("id=2" + QByteArray::number(k))));
        for (const char *count : {"3", "00010", "1 0"})
            row(qPrintable(u"a count of %1 over 10 sections"_s.arg(QLatin1StringView(count))), "read",
                head(count) + sec(1, plain) + nine, head("10") + sec(1, read) + nine);
        row("repeated and missing numbers: by number, then file order", "read",
            head("4") + sec(5, "id=2\r\n") + sec(2, plain) + sec(5, "id=3\r\n") + sec(9, "id=4"),
            head("4") + sec(1, read) + sec(2, "id=2\r\n") + sec(3, "id=3\r\n") + sec(4, "id=4\r\n"));
        const QByteArray long600 = gb(QString(300, u'长'));
        const QByteArray longOdd = odd("from=" + long600 + "\r\nsubject=" + long600 + "\r\nattachment="
                                       + long600 + "\r\ncontent=[" + QByteArray(8000, 'x') + "\\n"
                                       + gb(QString(1000, u'文')) + "]\r\n");
        row("values over 256 bytes and a body over 2 KB, marked read", "read",
            head("2") + sec(1, plain) + sec(2, longOdd), head("2") + sec(1, plain) + sec(2, marked(longOdd)));
        const QByteArray huge = odd("content=[" + QByteArray(3 << 20, 'y') + "]\r\nsubject=" + long600 + "\r\n");
        row("a body of 3 MB, deleted", "delete", head("2") + sec(1, plain) + sec(2, huge), head("1") + sec(1, huge));
        const QByteArray unknown = "; saved by another tool\r\nid=7\r\nFrom=Li@X.cn\r\nto=b@x.cn\r\n"
                                   "X-Mailer=other 2.0\r\nsubject=first\r\nsubject=hidden\r\n"
                                   "content=no brackets\\nat all\r\ndatetime=yesterday\r\nisnew=1\r\n\r\n";
        row("unknown keys, comments, capitals, a repeated key, a bare body, sent", "send",
            head("1") + sec(1, unknown),
            head("1") + sec(1, QByteArray(unknown).replace("yesterday", "24-02-03 04:05")));
        const QByteArray draft = odd("X-Tag=exam\r\nsubject=old\r\ncontent=[" + QByteArray(5000, 'b') + "]\r\n");
        row("a key the window does not show, a body longer than it shows: a draft saved with a new subject", "save",
            head("1") + sec(1, draft), head("1") + sec(1, QByteArray(draft).replace("subject=old", "subject=new")));
        row("a field without a line gets one after the last line, sent", "send",
            head("1") + sec(1, "id=7\r\nto=b@x.cn\r\ncontent=[c]\r\n\r\n\r\n"),
            head("1") + sec(1, "id=7\r\nto=b@x.cn\r\ncontent=[c]\r\ndatetime=24-02-03 04:05\r\n\r\n\r\n"));
        QByteArray lf = "[email]\nnumber=2\n\n" + sec(1, plain) + "[email-2]\nid=7\nsubject=lf\nisnew=1";
        row("LF-only lines, no final line end, marked read", "read", lf.replace("\r\n", "\n"),
            "[email]\r\nnumber=2\r\n\n[email-1]\r\n" + QByteArray(plain).replace("\r\n", "\n")
                + "[email-2]\r\nid=7\nsubject=lf\nisnew=0\r\n");
        row("lines before the first section first, other sections last", "read",
            "; by hand\r\n" + sec(1, plain) + "[notes]\r\nk=v\r\n" + head("1") + "[email]\r\nnumber=9",
            "; by hand\r\n" + head("1") + sec(1, read) + "[notes]\r\nk=v\r\n[email]\r\nnumber=9\r\n");
        row("the header's other lines around its count", "read",
            "[email]\r\nversion=2\r\nnumber=3\r\nfolder=inbox\r\n\r\n" + sec(1, plain),
            "[email]\r\nversion=2\r\nnumber=1\r\nfolder=inbox\r\n\r\n" + sec(1, read));
        row("a NUL in one subject costs that message alone", "read",
            head("2") + sec(1, plain) + sec(2, QByteArray("id=7\r\nsubject=a") + '\0' + "b\r\n"),
            head("1") + sec(1, read));
    }
    void keepsWhatOtherToolsWrote()
    {
        QFETCH(QString, command);
        QFETCH(QByteArray, file);
        DataDir dir;
        const int from = command == u"send" ? FolderFile::Outbox : command == u"save" ? FolderFile::Drafts : FolderFile::Inbox;
        dir.writeBytes(FolderFile::fileName(from), file);
        QElapsedTimer timer;
        timer.start();
        const MailList shown = stored(from);
        const auto seven = std::find_if(shown.cbegin(), shown.cend(), [](const EmailRec &m) { return m.id == u"7"; });
        const int at = seven == shown.cend() ? 0 : int(seven - shown.cbegin());
        const MailRef ref{from, at, shown.at(at)};
        if (command == u"send") {
            QVERIFY(!RunSendReceive(SendReceiveModes::SendOnly).sendFailed());
        } else if (command == u"save") {  // as the compose window gives it back, a new subject typed
            EmailRec edited = ref.shown;
            edited.subject = u"new"_s, edited.origin = {};
            bool made = true;
            SaveDraft(edited, {from, edited.id, at, ref.shown}, &made);
            QVERIFY(!made);
        } else {
            QVERIFY(command == u"read" ? MarkRead(ref) : MoveToDeletedItems(ref));
        }
        const int saved = command == u"read" || command == u"save" ? from
                          : command == u"delete" ? FolderFile::DeletedItems : FolderFile::SentItems;
        QTEST(dir.readBytes(FolderFile::fileName(saved)), "expected");
        QVERIFY2(timer.elapsed() < 20000, "unchanged messages are copied as bytes, not written anew");
        // What the store keeps is what the file now reads as.
        const MailList kept = stored(saved);
        store::Forget();
        QVERIFY(sameAsStored(kept, stored(saved)));
    }

    // One NUL in one subject of a folder whose count is short: the rest reads and
    // works, the user is told once of each, and the section is saved beside the
    // folder before anything else; read again, it is found there and not copied twice.
    void partsThatCannotShowAreKeptAside()
    {
        DataDir dir;
        ScriptedPrompter boxes;
        const QByteArray nul = QByteArray("[email-2]\r\nid=7\r\nsubject=a") + '\0' + "b\r\n";
        const QString file = u"receive_c.dat"_s, aside = file + u".damaged-20240203-0405"_s;
        dir.writeBytes(file, folderFile(u"1"_s, {u"1|s|[b]"_s}) + nul + "[email-3]\r\nid=3\r\ncontent=[c]\r\n");
        boxes.expectMessage(Icon::Information, texts::AppTitle, texts::MailCountDisagrees.arg(file).arg(1).arg(2));
        boxes.expectMessage(Icon::Exclamation, texts::AppTitle,
                            texts::PartsSetAside.arg(file).arg(1).arg(aside, QDir::toNativeSeparators(dir.path())));
        QCOMPARE(ids(FolderFile::Inbox), u"1|3"_s);
        QCOMPARE(dir.readBytes(aside), nul);
        store::Forget();
        QCOMPARE(ids(FolderFile::Inbox), u"1|3"_s);
        QVERIFY2(boxes.done(), boxes.report());
        QVERIFY(MarkRead({FolderFile::Inbox, 0, stored(FolderFile::Inbox).first()}));
        QCOMPARE(dir.entries(), (QStringList{file, aside}));
        // In a data folder opened read-only nothing is saved: the part stays where it is.
        DataDir readOnly;
        readOnly.writeBytes(u"draft.dat"_s, folderFile(u"0"_s, {}) + nul);
        SetDataReadOnly(true);
        boxes.expectMessage(Icon::Exclamation, texts::AppTitle, texts::PartsNotShown.arg(u"draft.dat"_s).arg(1));
        QVERIFY(stored(FolderFile::Drafts).isEmpty());
        SetDataReadOnly(false);
        QVERIFY2(boxes.done(), boxes.report());
        QCOMPARE(readOnly.entries(), QStringList{u"draft.dat"_s});
    }

    // A folder changed behind the program's back and read again, off the window's thread or on it: its
    // unread count is counted again, and a save keeps the file's other lines as they now are. So is one
    // rewritten in place, with the same size, just after the program wrote it.
    void aFolderReadAgain()
    {
        DataDir dir;
        dir.writeBytes(u"receive_c.dat"_s, folderFile(u"2"_s, {u"1|a|[x]"_s, u"2|b|[y]"_s}));
        QCOMPARE(stored(FolderFile::Inbox).size(), 2);
        QCOMPARE(store::Figures(FolderFile::Inbox)->unread, 2);
        const QByteArray note = "; written by hand\r\n";
        dir.writeBytes(u"receive_c.dat"_s, note + folderFile(u"1"_s, {u"1|a|[x]"_s}));
        QVERIFY(store::ReadAhead(FolderFile::Inbox) && store::Flush());
        QCOMPARE(store::Figures(FolderFile::Inbox)->unread, 1);
        QVERIFY(MarkRead({FolderFile::Inbox, 0, stored(FolderFile::Inbox).first()}));
        QCOMPARE(dir.readBytes(u"receive_c.dat"_s), note + folderFile(u"1"_s, {u"1|a|[x]|0"_s}));
        // And on the window's thread, what is read replacing what was written.
        QFile f(dir.filePath(u"receive_c.dat"_s));
        QVERIFY(f.open(QIODevice::ReadWrite));
        const QByteArray changed = f.readAll().replace("id=1", "id=7").replace("isnew=0", "isnew=1");
        QVERIFY(f.seek(0) && f.write(changed) == changed.size());
        f.close();
        QCOMPARE(ids(FolderFile::Inbox) + u' ' + ids(FolderFile::Inbox), u"7 7"_s);
        QCOMPARE(store::Figures(FolderFile::Inbox)->unread, 1);
    }

    void notDataFilesAreSetAside_data()
    {
        QTest::addColumn<int>("folder");  // -1: the accounts
        QTest::addColumn<QByteArray>("bytes");
        QTest::newRow("UTF-16 without its byte-order mark") << FolderFile::Outbox << QByteArray("[\0e\0m\0a\0i\0l\0]\0", 14);
        QTest::newRow("no header, messages present")
            << FolderFile::Drafts << folderFile(u"1"_s, {u"1|a|[x]"_s}).replace("[email]", "");
        QTest::newRow("a count that is no number, a message present")
            << FolderFile::SentItems << folderFile(u"abc"_s, {u"1|a|[x]"_s}).replace("[email-1]", "[email-9]");
        QTest::newRow("a count of blanks, messages present") << FolderFile::Inbox << folderFile(u" "_s, {u"1|a|[x]"_s});
        QTest::newRow("control bytes in the header, not before it") << FolderFile::Inbox
            << folderFile(u"1"_s, {u"1|a|[x]"_s}).replace("[email]\r\n", "[email]\r\n\x01\x02\r\n");
        QTest::newRow("accounts without their header") << -1 << crlfLines({u"[mailbox-1]"_s, u"address=a@x.cn"_s});
    }
    // Such a file reads as empty, and the user is told once where it went: beside one
    // set aside in the same minute.
    void notDataFilesAreSetAside()
    {
        QFETCH(int, folder);
        QFETCH(QByteArray, bytes);
        const QString file = folder < 0 ? MailBoxFileName : FolderFile::fileName(folder);
        DataDir dir;
        ScriptedPrompter boxes;
        dir.writeBytes(file, bytes);
        const QString earlier = file + u".damaged-20240203-0405"_s, aside = earlier + u"-2"_s;
        dir.writeBytes(earlier, "earlier");
        boxes.expectMessage(Icon::Exclamation, texts::AppTitle,
                            texts::DamagedFileSetAside.arg(file, aside, QDir::toNativeSeparators(dir.path())));
        for (int read = 0; read < 2; ++read)
            QVERIFY(folder < 0 ? store::Accounts().isEmpty() : stored(folder).isEmpty());
        QVERIFY2(boxes.done(), boxes.report());
        QCOMPARE(dir.entries(), (QStringList{earlier, aside}));
        QCOMPARE(dir.readBytes(aside), bytes);
    }

    // The first commit held at its sync: what the commands did shows at once, the
    // commits queued behind it reach the disk as one, and a failure there puts back
    // what the files hold and says, in one box, what was not saved.
    void commitsBehindTheWindow_data()
    {
        QTest::addColumn<int>("marks");      // messages marked read while it is held
        QTest::addColumn<int>("error");      // what the disk answers to its sync
        QTest::addColumn<int>("writes");     // Inbox files written in all
        QTest::addColumn<QString>("isnew");  // kept at the end, as the files hold it
        QTest::newRow("changes queued meanwhile written as one") << 3 << 0 << 2 << u"0001"_s;
        QTest::newRow("a failed sync takes back all of them, told once") << 3 << ENOSPC << 1 << u"1111"_s;
    }
    void commitsBehindTheWindow()
    {
        QFETCH(int, marks);
        QFETCH(int, error);
        DataDir dir;
        ScriptedPrompter boxes;
        put(dir, FolderFile::Inbox, mails(4, 4));
        const QString file = dir.filePath(u"receive_c.dat"_s);
        const QByteArray before = dir.readBytes(u"receive_c.dat"_s);
        const auto isnew = [] { return fieldOf(stored(FolderFile::Inbox), &EmailRec::isnew).join(QString()); };
        QSemaphore entered, held;
        std::atomic<int> writes = 0;
        SetFileFault([&](FileOp op, const QString &name) {
            if (op != FileOp::Sync || name != u"receive_c.dat.new" || writes++ > 0)
                return 0;
            entered.release();
            held.acquire();
            return error;
        });
        QStringList lost;
        for (int i = 0; i < marks; ++i) {
            const EmailRec m = stored(FolderFile::Inbox).at(i);
            lost << texts::unsaved::MarkRead.arg(m.subject);
            QVERIFY(MarkRead({FolderFile::Inbox, i, m}));
            if (i == 0)
                entered.acquire();  // the writer is at the first one
        }
        QCOMPARE(isnew(), QString(marks, u'0') + QString(4 - marks, u'1'));
        QFile onDisk(file);
        QVERIFY(onDisk.open(QIODevice::ReadOnly) && onDisk.readAll() == before);
        const QString reason = texts::CannotWriteFile.arg(file, texts::ReasonDiskFull);
        if (error)
            boxes.expectMessage(Icon::Exclamation, texts::AppTitle, texts::unsaved::NotSaved.arg(lost.join(u'\r'), reason));
        QSignalSpy shown(&storeEvents(), &StoreEvents::folderChanged);
        held.release();
        // Time for a writer that went on past a failure to write what was queued behind it.
        std::this_thread::sleep_for(std::chrono::milliseconds(100));
        QCOMPARE(store::Flush(), error == 0);
        SetFileFault({});
        QVERIFY2(boxes.done(), boxes.report());
        QCOMPARE(shown.count(), error ? 1 : 0);  // the windows go back to the files
        QTEST(int(writes), "writes");
        QTEST(isnew(), "isnew");
        store::Forget();
        QTEST(isnew(), "isnew");
    }

    void encodesAsTheConverter()
    {
        // Every character, as the converter writes it.
        QString all;
        for (char32_t u = 1; u <= 0x10FFFF; ++u)
            all += QChar::isSurrogate(u) ? QString() : QString::fromUcs4(&u, 1);
        QCOMPARE(EncodeGb18030(all), QByteArray(QStringEncoder("GB18030").encode(all)));
    }

    // A saved folder is kept as a reading of its file would give it. One field of each
    // record is changed: plain pieces repeated up to the reader's cut and past it, and
    // pieces the writer or reader alters (capitals, blanks, quotes, escapes, line ends,
    // characters at the edges of the common ranges) repeated, alone, around or inside.
    void whatIsKeptIsWhatIsRead()
    {
        DataDir dir;
        const QStringList plain = u"a|0|一|龥|！|～|　|〃|〈|】|‘|’|“|”|…|·"_s.split(u'|');
        const QStringList other = QString(u"A|Q|Z| |\t|\"|'|\\|\\n|\r|\n|\r\n|\x1b|é|龦|䷿|｟|〄|〒|‧|😀|"_s + QChar(0xD800)).split(u'|');
        const QStringList numbers = QString(u"0|00|07||a| 1|1 |"_s + QString(255, u'1') + u'|' + QString(256, u'1')).split(u'|');
        using M = EmailRec;
        QString M::*const texts[] = {&M::from, &M::to, &M::alsoto, &M::subject, &M::content, &M::datetime, &M::attachment};
        const EmailRec base{u"1"_s, u"a"_s, u"b"_s, u"c"_s, u"d"_s, u"e"_s, u"f"_s, u"g"_s, u"1"_s};
        MailList all;
        const auto add = [&](QString M::*field, const QString &v) { (all << base).last().*field = v; };
        for (QString M::*field : {&M::id, &M::isnew})
            for (const QString &n : numbers)
                add(field, n);
        for (QString M::*field : texts) {
            const int buffer = field == &M::content ? 2045 : 255;
            for (const QString &piece : plain + other) {
                const int most = buffer / int(qMax<qsizetype>(gb(piece).size(), 1));
                for (int n : {most - 1, most, most + 1})
                    add(field, piece.repeated(n));
            }
            const QString x = u"一"_s;
            for (const QString &p : other)
                for (const QString &v : QStringList{p, p + x, x + p, x + p + x, p + x + p})
                    add(field, v);
        }
        QList<MailList> folders{all};
        // Alone in a file, these characters' bytes pass for UTF-8, and are read so.
        folders.append({base});
        folders.last()[0].subject = QStringDecoder("GB18030").decode("\xE4\xB8\x81\x41");
        for (const MailList &mails : folders) {
            FolderSet set;
            set.change(FolderFile::Drafts) = mails;
            set.commit();
            // Bytes that pass for UTF-8 are known as such once written.
            store::Flush();
            const MailList kept = store::Folder(FolderFile::Drafts);
            store::Forget();
            QVERIFY(sameAsStored(kept, store::Folder(FolderFile::Drafts)));
            // A file this fresh is trusted only by its bytes, which a UTF-8
            // reading changes: what is kept is also compared alone.
            const FileImage image = FolderImage(mails, PlainFrame());
            MailList asRead = mails;
            KeepAsRead(asRead);
            QVERIFY(!ReadsAsGb18030(image.bytes)
                    || sameAsStored(asRead, ParseFolder(ProfileFile::parse(image.bytes))));
        }
    }

    void accountsFile()
    {
        DataDir dir;
        // Written lower-cased, but with their trailing blanks.
        QCOMPARE(AccountBytes({{u"Work Mail "_s, u"POP"_s, u"smtp"_s, u"Li"_s, u"Secret"_s, u"Li@X.cn"_s}}),
                 crlfLines(u"[mailbox]|number=1||[mailbox-1]|name=work mail |pop=pop|smtp=smtp|"
                           u"username=li|userpassword=secret|address=li@x.cn|"_s.split(u'|')));
        // An account another tool wrote, its last line ended by a CR alone, keeps its lines when one is
        // added after it; the file, which holds passwords, stays as private as its owner made it.
        const QByteArray first = "[mailbox-1]\r\nName=Li\r\nx-note=kept\r\naddress=li@x.cn\r";
        dir.writeBytes(MailBoxFileName, "[mailbox]\r\nnumber=1\r\n" + first);
        QFile::setPermissions(dir.filePath(MailBoxFileName), QFile::ReadOwner | QFile::WriteOwner);
        FolderSet added;
        added.changeAccounts().append({u"B"_s, u"p"_s, u"s"_s, u"b"_s, u"pw"_s, u"b@x.cn"_s});
        added.commit();
        QCOMPARE(dir.readBytes(MailBoxFileName),
                 "[mailbox]\r\nnumber=2\r\n" + first + "[mailbox-2]\r\nname=b\r\npop=p\r\nsmtp=s\r\n"
                     "username=b\r\nuserpassword=pw\r\naddress=b@x.cn\r\n\r\n");
        QCOMPARE(QFile::permissions(dir.filePath(MailBoxFileName)) & (QFile::ReadGroup | QFile::ReadOther), 0);
        FolderSet most;  // as many accounts as a file may hold
        most.changeAccounts() = QList<MailBoxRec>(MAX_MAILBOXES);
        most.commit();
    }

    // A data file linked to one elsewhere is read through the link; a save puts a file of
    // its own in its place and leaves the other as it was.
    void whatStandsAtAFilesName()
    {
        DataDir dir;
        put(dir, FolderFile::DeletedItems, mails(2));
        const QString linked = dir.filePath(u"send_s.dat"_s);
        const QByteArray original = dir.readBytes(u"deleted_c.dat"_s);
        QVERIFY(QFile::link(dir.filePath(u"deleted_c.dat"_s), linked));
        QCOMPARE(ids(FolderFile::ServerQueue), ids(FolderFile::DeletedItems));
        FolderSet emptied;
        emptied.change(FolderFile::ServerQueue).clear();
        emptied.commit();
        QVERIFY(store::Flush() && !QFileInfo(linked).isSymLink() && dir.readBytes(u"deleted_c.dat"_s) == original);
        QCOMPARE(dir.entries(), (QStringList{u"deleted_c.dat"_s, u"send_s.dat"_s}));
    }

    // The file system is replaced by a list of folders the probe may write,
    // so no real /usr, USB stick or read-only home is needed.
    void choosesTheDataFolder_data()
    {
        // The program's folder|--data-dir|the folders writable|the one chosen, marked "!"
        // when it cannot be written; "~" is the per-user folder.
        QTest::addColumn<QString>("folders");
        QTest::newRow("a copy in a read-only folder: the per-user folder") << u"/media/q||~|~"_s;
        QTest::newRow("installed in /usr/bin: the per-user folder, even for root") << u"/usr/bin||/usr/bin ~|~"_s;
        QTest::newRow("--data-dir wins over a portable folder") << u"/media/q|/srv/3/|/media/q /srv/3 ~|/srv/3"_s;
        QTest::newRow("nothing writable: the per-user folder, read-only") << u"/usr/bin||/usr/bin|!~"_s;
    }
    void choosesTheDataFolder()
    {
        QFETCH(QString, folders);
        const QString home = u"/home/li/.local/share/quillpost-express"_s;
        const QStringList f = folders.replace(u'~', home).split(u'|');
        const DataDirChoice choice = ChooseDataDir(
            {f[0], {u"/usr"_s, u"/usr/local"_s, u"/opt"_s}, f[1], home,
             [&](const QString &dir) { return f[2].split(u' ').contains(dir); }});
        QCOMPARE(choice.readOnly ? u'!' + choice.dir : choice.dir, f[3]);
    }

    void randomNumbers()
    {
        QSet<qint32> drawn, small;
        for (int i = 0; i < 20000; ++i)
            drawn.insert(RandomBetween(10000000, 99999999)), small.insert(RandomBetween(1, 3));
        const auto [low, high] = std::minmax_element(drawn.cbegin(), drawn.cend());
        QVERIFY(drawn.size() > 19000 && *low >= 10000000 && *high <= 99999999);  // draws differ, within range
        QCOMPARE(small, (QSet<qint32>{1, 2, 3}));  // both ends, nothing beyond
    }
};

QTEST_GUILESS_MAIN(tst_store)
#include "tst_store.moc"
