// The exercise window: where it goes beside the main window, a task ticked by the real command that does it,
// hidden, shown, closed and reopened from the keyboard, a file it cannot use explained. It never writes a file.

#include "sendrecv/classroom.h"
#include "store/errors.h"
#include "ui/exercise/frmExercise.h"
#include "windows.h"

using namespace Qt::Literals::StringLiterals;
using namespace testsupport;
namespace t = texts::exercise;

namespace {
// What the window shows: each task as a screen reader says it, then the count.
QString shown(const frmExercise *x)
{
    QStringList rows;
    for (int i = 0; i < x->Tasks->count(); ++i)
        rows << x->Tasks->item(i)->data(Qt::AccessibleTextRole).toString();
    return rows.join(u" | "_s) + u" | "_s + x->Progress->text();
}
}  // namespace

class tst_exercisewindow : public WindowTest
{
    Q_OBJECT

private slots:
    // Frames on a screen's free area: the main window (tool bar 523 wide with its frame) and the exercise
    // window (300 wide, 220 at the least).
    void placement_data()
    {
        QTest::addColumn<QRect>("area");
        QTest::addColumn<QRect>("main");
        QTest::addColumn<QRect>("exercise");
        const QRect asItWas(1, 1, 904, 624), beside(909, 1, 300, 624);
        QTest::newRow("room beside: the main window as it was") << QRect(0, 0, 1920, 1080) << asItWas << beside;
        QTest::newRow("room for just the exercise window") << QRect(0, 0, 1209, 800) << asItWas << beside;
        QTest::newRow("1024 wide: the main window moves left and gives up width")
            << QRect(0, 0, 1024, 768) << QRect(0, 1, 720, 624) << QRect(724, 1, 300, 624);
        QTest::newRow("800 wide: the main window at its narrowest, the exercise narrower")
            << QRect(0, 0, 800, 600) << QRect(0, 1, 523, 624) << QRect(527, 1, 273, 599);
        QTest::newRow("too small for both: the exercise over the main window's edge")
            << QRect(0, 0, 640, 480) << QRect(0, 1, 523, 624) << QRect(420, 1, 220, 479);
    }
    void placement()
    {
        QFETCH(QRect, area);
        const SideBySide p = PlaceSideBySide(area, {1, 1, 904, 624}, 523, 300, 220);
        QTEST(p.main, "main");
        QTEST(p.exercise, "exercise");
    }

    // With no account yet, sending calls up the wizard; the account it sets up and the message sent tick.
    void aTaskTicksAfterTheCommandThatDoesIt()
    {
        dir->writeBytes(u"lesson.ini"_s, u"[exercise]\ntitle=第三课\n[task1]\ntext=发会议通知\nfolder=sent\n"
                                         "to=lisi@example.cn\nsubject=Meeting 会议\n[task2]\ntext=存草稿\nfolder=drafts\n"
                                         "[task3]\ntext=加账号\naccount=New.Office@Example.com\n"_s
                                             .toUtf8());
        frmMain *w = mainOn(Node::Inbox);
        w->startExercise(dir->filePath(u"lesson.ini"_s));
        frmExercise *x = forms::Exercise();
        QCOMPARE(x->Title->text() + u": "_s + shown(x),
                 u"第三课: 未完成：1. 发会议通知 | 未完成：2. 存草稿 | 未完成：3. 加账号 | 已完成 0/3"_s);

        const QByteArray before = allFiles(*dir);
        QVERIFY(QTest::qWaitForWindowActive(w));
        // Hidden by CTRL+E, shown from the View menu, closed by Escape.
        QString seen;
        for (const char *keys : {"Ctrl+E", "Alt+V E", "Escape"}) {
            press(QString::fromLatin1(keys));
            seen += x->isVisible() && QTest::qWaitForWindowActive(x) ? u'1' : u'0';
        }
        QCOMPARE(seen, u"010"_s);
        QCOMPARE(allFiles(*dir), before);
        w->activateWindow();  // offscreen, a closed window does not hand it back
        QVERIFY(QTest::qWaitForWindowActive(w));
        press(u"Ctrl+E"_s);
        QVERIFY(x->isVisible());

        clickButton(w->Toolbar1, w->toolbarButton(frmMain::tbNewMail));
        frmMailEdit *e = forms::MailEdit();
        QVERIFY(QTest::qWaitForWindowActive(e));
        QTest::keyClicks(e->Text3, u"LiSi@Example.cn"_s);
        QTest::keyClicks(e->Text5, u"Meeting "_s);
        e->Text5->insert(u"会议通知"_s);  // Chinese comes from an input method, not from keys
        ModalScript script;
        walkWizard(script);
        script.start();
        clickButton(e->Toolbar1, e->toolbarButton(frmMailEdit::tbSend));
        QVERIFY2(script.finished(), script.report());
        QTRY_COMPARE(shown(x), u"已完成：1. 发会议通知 | 未完成：2. 存草稿 | 已完成：3. 加账号 | 已完成 2/3"_s);
        QVERIFY(x->Note->isHidden());
        const EmailRec sent = stored(FolderFile::SentItems).value(0);
        QCOMPARE(sent.from + u' ' + sent.subject, u"new.office@example.com meeting 会议通知"_s);

        // The class folder's overview of this machine names the exercise and how far it is, the window closed.
        x->close();
        QTemporaryDir share;
        classroom::SetClassDir(share.path());
        classroom::ClassRun::runHere(SendReceiveModes::ReceiveOnly);
        classroom::SetClassDir(QString());
        QString table, why;
        QVERIFY(classroom::StatusTable(share.path(), &table, &why));
        QVERIFY2(table.contains(u"第三课"_s) && table.contains(u" 2/3"_s), qPrintable(table));
    }

    // A folder the program cannot read: its task waits; the window says why, beside the main window's box.
    // The Inbox's task, met, ticks.
    void aFolderItCannotRead()
    {
        QVERIFY(QDir(dir->path()).mkdir(FolderFile::fileName(FolderFile::SentItems)));
        put(*dir, FolderFile::Inbox, {mail(u"1"_s)});
        dir->writeBytes(u"lesson.ini"_s, "[exercise]\ntitle=x\n[task1]\ntext=a\nfolder=sent\n"
                                         "[task2]\ntext=b\nfolder=inbox\n");
        const QString why = ErrorBoxText(FileError(texts::CannotReadFile.arg(
            dir->filePath(FolderFile::fileName(FolderFile::SentItems)), texts::ReasonIsFolder)));
        boxes->expectMessage(Icon::Exclamation, texts::AppTitle, why);
        frmMain *w = mainOn();
        w->startExercise(dir->filePath(u"lesson.ini"_s));
        QCOMPARE(shown(forms::Exercise()), u"未完成：1. a | 已完成：2. b | 已完成 1/2"_s);
        QVERIFY(forms::Exercise()->Note->isVisible());
        QCOMPARE(forms::Exercise()->Note->text(), t::Unreadable.arg(texts::SentItemsName));
        // Opened, the folder says why once more, and only then.
        boxes->expectMessage(Icon::Exclamation, texts::AppTitle, texts::OperationAbandoned + u"\r\r"_s + texts::CannotReadFile.arg(
            dir->filePath(FolderFile::fileName(FolderFile::SentItems)), texts::ReasonIsFolder));
        clickItem(w->TreeView1, w->node(Node::SentItems));
        QTRY_VERIFY(boxes->done());
        QCOMPARE(w->ListView1->model()->rowCount(), 0);
    }

    void aFileItCannotUse()
    {
        dir->writeBytes(u"lesson.ini"_s, "[exercise]\ntitle=x\n[task1]\ntext=a\nfoldr=sent\n");
        const QString path = dir->filePath(u"lesson.ini"_s);
        boxes->expectMessage(Icon::Exclamation, texts::AppTitle,
                             t::CannotUse.arg(path, t::AtLine.arg(5).arg(u"foldr=sent"_s, t::UnknownKey.arg(u"foldr"_s)))
                                 + u"\r\r"_s + t::StartsWithout);
        frmMain *w = mainOn();
        w->startExercise(path);
        QVERIFY(!forms::Exercise()->isVisible() && !w->mnuExercise->isVisible());
    }
};

QTEST_MAIN(tst_exercisewindow)
#include "tst_exercisewindow.moc"
