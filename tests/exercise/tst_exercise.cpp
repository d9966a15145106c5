// Exercise files against data folders: what counts as done, what is refused
// and where, the encodings a trainer's editor writes; then `quillpost --check`
// run as a trainer runs it, which reads and never writes.

#include "exercise/exercise.h"
#include "store/commit.h"
#include "store/folders.h"
#include "testsupport.h"
#include "texts.h"

#include <QTest>

using namespace Qt::Literals::StringLiterals;
using namespace testsupport;
namespace t = texts::exercise;

namespace {
const QString Header = u"[exercise]\ntitle=第三课\n"_s;

EmailRec full(const QString &to, const QString &subject, const QString &body = u"请于周一开会"_s)
{
    EmailRec m = mail(u"1"_s, u"zhangsan@example.cn"_s, to, subject);
    m.alsoto = u"wangwu@example.cn"_s, m.content = body, m.attachment = u"周报.doc(3.00kb)"_s;
    return m;
}
}  // namespace

class tst_exercise : public QObject
{
    Q_OBJECT

private slots:
    // An exercise file against Sent Items and the accounts; the tasks done.
    void checks_data()
    {
        QTest::addColumn<QByteArray>("file");
        QTest::addColumn<MailList>("sent");
        QTest::addColumn<QList<bool>>("done");
        const auto row = [](const char *name, const QString &tasks, const MailList &sent,
                            const QList<bool> &done) { QTest::newRow(name) << (Header + tasks).toUtf8() << sent << done; };
        const MailList one{full(u"lisi@example.cn"_s, u"会议通知 meeting"_s)};
        const auto task = [](int n, const QString &keys) { return u"[task%1]\n; 注释\n\ntext=任务\n%2\n"_s.arg(n).arg(keys); };
        row("each field by its own key; a text in another field does not count",
            task(1, u"folder=sent\nfrom=zhangsan@"_s) + task(2, u"folder=sent\nto=@example.cn"_s)
                + task(3, u"folder=sent\ncc=wangwu"_s) + task(4, u"folder=sent\nsubject=会议"_s)
                + task(5, u"folder=sent\nbody=周一"_s) + task(6, u"folder=sent\nattachment=周报.doc"_s)
                + task(7, u"folder=sent\nsubject=周一"_s), one, {true, true, true, true, true, true, false});
        row("letter case ignored both ways, accented and full-width letters alike but not as ASCII",
            task(1, u"folder=sent\nsubject=MEETING"_s) + task(2, u"folder=sent\nto=ADA@Example.CN"_s)
                + task(3, u"folder=sent\nsubject=ｑｕｉｚ"_s) + task(4, u"folder=sent\nsubject=ÉTUDE 2"_s)
                + task(5, u"folder=sent\nsubject=ＭＥＥＴＩＮＧ"_s),
            {full(u"ada@example.cn"_s, u"ＱＵＩＺ Meeting étude 2"_s)}, {true, true, true, true, false});
        row("a Chinese text matches characters, never the bytes across two",
            task(1, u"folder=sent\nsubject=形"_s), {full(u"x"_s, u"中文"_s)}, {false});
        row("every condition in one message, not spread over two", task(1, u"folder=sent\nto=lisi@example.cn\nsubject=会议通知"_s),
            {full(u"lisi@example.cn"_s, u"周报"_s), full(u"wangwu@example.cn"_s, u"会议通知"_s)}, {false});
        row("count asks for at least that many messages",
            task(1, u"folder=sent\nsubject=通知\ncount=2"_s) + task(2, u"folder=sent\nsubject=通知\ncount=3"_s),
            {full(u"a"_s, u"会议通知"_s), full(u"b"_s, u"放假通知"_s)}, {true, false});
        row("one message does several tasks; a folder alone asks for any message in it",
            task(1, u"Folder=SENT\nTo=lisi@"_s) + task(2, u"folder=sent\nsubject=\"会议\""_s)
                + task(3, u"folder=sent"_s) + task(4, u"folder=drafts"_s), one, {true, true, true, false});
        row("an account by its whole address, ignoring case",
            task(1, u"account=LiSi@Example.cn"_s) + task(2, u"account=si@example.cn"_s), {}, {true, false});
        // The same exercise as an editor may save it: the title and a Chinese subject read alike.
        const QString text = u"[exercise]\r\ntitle=第三课\r\n[task1]\r\ntext=发通知\r\nfolder=sent\r\nsubject=会议通知\r\n"_s;
        const MailList meeting{full(u"x"_s, u"会议通知"_s)};
        QTest::newRow("UTF-8 with a byte-order mark, CR LF") << "\xEF\xBB\xBF" + text.toUtf8() << meeting << QList{true};
        QTest::newRow("UTF-8 without one, LF") << QString(text).remove(u'\r').toUtf8() << meeting << QList{true};
        QTest::newRow("GB18030, CR LF") << gb(text) << meeting << QList{true};
    }
    void checks()
    {
        QFETCH(QByteArray, file);
        QFETCH(MailList, sent);
        DataDir dir;
        put(dir, FolderFile::SentItems, sent);
        putAccounts(dir, {u"lisi@example.cn"_s});
        const exercise::Exercise e = exercise::ParseExercise(file);
        QCOMPARE(e.title, u"第三课"_s);
        QTEST(exercise::CheckDataFolder(e, dir.path()), "done");
    }

    // A file refused: the line that says why (0: the whole file), and the reason.
    void refusals_data()
    {
        QTest::addColumn<QByteArray>("file");
        QTest::addColumn<int>("line");
        QTest::addColumn<QString>("reason");
        const auto row = [](const char *name, const QString &file, int line, const QString &reason) {
            QTest::newRow(name) << file.toUtf8() << line << reason;
        };
        const QString ok = u"[task1]\ntext=a\nfolder=sent\n"_s;
        row("an empty file, comments alone", u"; 注释\n\n# 注释\n"_s, 0, t::EmptyFile);
        row("a file that is no exercise", u"hello\n"_s, 1, t::ExerciseFirst);
        row("a task before [exercise]", ok + Header, 1, t::ExerciseFirst);
        row("text after a header", Header + u"[task1] 第一题\n"_s, 3, t::BadHeader);
        row("an unknown section", Header + u"[tsk1]\n"_s, 3, t::UnknownSection);
        row("a task number written with a zero", Header + u"[task01]\n"_s, 3, t::UnknownSection);
        row("a gap in the numbers", Header + ok + u"[task3]\n"_s, 6, t::TaskMissing.arg(2));
        row("a task twice", Header + ok + ok, 6, t::TaskAgain.arg(1).arg(2));
        QString ten = Header;
        for (int n = 1; n <= 10; ++n)
            ten += QString(ok).replace(u"task1"_s, u"task%1"_s.arg(n));
        row("a gap after task 10", ten + u"[task12]\n"_s, 33, t::TaskMissing.arg(11));
        row("a second [exercise]", Header + ok + u"[Exercise]\n"_s, 6, t::ExerciseTwice);
        row("a line without =", Header + u"[task1]\ntext a\n"_s, 4, t::NotKeyValue);
        row("an unknown key", Header + ok + u"foldr=sent\n"_s, 6, t::UnknownKey.arg(u"foldr"_s));
        row("a key twice", Header + ok + u"TEXT=b\n"_s, 6, t::KeyAgain.arg(u"text"_s));
        row("an empty value", Header + ok + u"subject=  \n"_s, 6, t::EmptyValue.arg(u"subject"_s));
        row("an unknown folder", Header + u"[task1]\ntext=a\nfolder=outbx\n"_s, 5, t::UnknownFolder);
        row("a count of none", Header + ok + u"count=0\n"_s, 6, t::BadCount);
        row("no title", u"[exercise]\n"_s + ok, 1, t::NoTitle);
        row("another key beside the title", Header + u"author=李\n"_s, 3, t::ExerciseKeys);
        row("no tasks", Header, 1, t::NoTasks);
        row("a task without text", Header + u"[task1]\nfolder=sent\n"_s, 3, t::NoText);
        row("a task without a condition", Header + u"[task1]\ntext=a\n"_s, 3, t::NoCondition);
        row("an account and a folder", Header + ok + u"account=a@b\n"_s, 6, t::AccountAlone.arg(u"folder"_s));
        row("a message field beside an account", Header + u"[task1]\ntext=a\nsubject=x\naccount=a@b\n"_s, 5,
            t::AccountAlone.arg(u"subject"_s));
        row("a message field without a folder", Header + u"[task1]\ntext=a\nsubject=x\n"_s, 5, t::NeedsFolder.arg(u"subject"_s));
        QTest::newRow("a byte no text has") << QByteArray("[exercise]\ntitle=a\x01\n") << 2 << t::NotText;
    }
    void refusals()
    {
        QFETCH(QByteArray, file);
        try {
            exercise::ParseExercise(file);
            QFAIL("accepted");
        } catch (const exercise::ExerciseError &e) {
            QTEST(e.reason(), "reason");
            QTEST(e.line(), "line");
        }
    }

    // The built program over a data folder: its exit code, what it prints, and the
    // folder exactly as it was: no lock, no recovery, no damaged file set aside.
    void checkCommand_data()
    {
        QTest::addColumn<QString>("tasks");
        QTest::addColumn<QString>("folder");  // below the temporary folder
        QTest::addColumn<int>("exitCode");
        QTest::addColumn<QString>("out");
        QTest::addColumn<QString>("err");  // a part of standard error
        const QString sent = u"[task1]\ntext=发通知\nfolder=sent\nsubject=通知\n"_s;
        const QString account = u"[task2]\ntext=加账号\naccount=lisi@example.cn\n"_s;
        QTest::newRow("every task done: 0") << sent << u"."_s << 0 << u"完成\t1\t发通知\n1/1\n"_s << QString();
        QTest::newRow("a task open: 1") << sent + account << u"."_s << 1 << u"完成\t1\t发通知\n未完成\t2\t加账号\n1/2\n"_s << QString();
        QTest::newRow("a refused file: 2, the line quoted") << sent + u"foldr=x\n"_s << u"."_s << 2 << QString()
                                                           << u"第 7 行“foldr=x”：不认识“foldr=”"_s;
        QTest::newRow("no data folder: 3") << sent << u"gone"_s << 3 << QString() << u"gone”不存在"_s;
    }
    void checkCommand()
    {
        QFETCH(QString, tasks);
        QFETCH(QString, folder);
        QFETCH(QString, err);
        DataDir dir;
        dir.writeBytes(u"lesson.ini"_s, (Header + tasks).toUtf8());
        // Sent Items says nothing; the change its journal names does. Beside it a
        // file that is no data file, which a start of the program would set aside.
        put(dir, FolderFile::SentItems, {});
        dir.writeBytes(u"receive_s.dat.new"_s, FolderBytes({full(u"x"_s, u"会议通知"_s)}));
        dir.writeBytes(QString::fromLatin1(JournalName), "quillpost-journal 1\nreceive_s.dat\nend\n");
        dir.writeBytes(MailBoxFileName, QByteArray("\x01\x02 binary", 9));
        const auto before = std::pair(dir.entries(), allFiles(dir));

        const Run r = runProgram(QStringLiteral(BUILT_EXE), {u"--check"_s, dir.filePath(u"lesson.ini"_s), u"--data-dir"_s, dir.filePath(folder)});
        QTEST(r.exitCode, "exitCode");
        QTEST(r.out, "out");
        QVERIFY2(r.err.contains(err) && r.err.isEmpty() == err.isEmpty(), qPrintable(r.err));
        QCOMPARE(std::pair(dir.entries(), allFiles(dir)), before);
    }
};

QTEST_GUILESS_MAIN(tst_exercise)
#include "tst_exercise.moc"
