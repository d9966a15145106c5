// The compose window driven as a user drives it: opened from the main
// window on fixture folders, typed into, its commands chosen; checked on
// what it shows, the boxes it raises and the exact bytes of the files.

#include "fixtures.h"
#include "store/clock.h"
#include "store/folders.h"
#include "store/state.h"
#include "testsupport.h"
#include "texts.h"
#include "ui/common/filechooser.h"
#include "ui/common/forms.h"
#include "ui/main/foldernodes.h"
#include "ui/main/frmMain.h"
#include "ui/message/frmMailEdit.h"
#include "ui/sendrecv/frmSendAndReceive.h"

#include <QAction>
#include <QComboBox>
#include <QFile>
#include <QLabel>
#include <QLineEdit>
#include <QListWidget>
#include <QMenu>
#include <QPlainTextEdit>
#include <QTemporaryDir>
#include <QTest>
#include <QToolBar>
#include <QTreeWidget>

#include <algorithm>
#include <memory>

using namespace Qt::Literals::StringLiterals;
using namespace fixtures;
using Icon = Prompter::Icon;

namespace {

const QString Stamp = u"24-07-09 14:05"_s;

// Opens the compose window the way a user gets there: New and the Inbox's
// Reply and Forward from the toolbar, a double-click for unsent mail, and
// for other folders the read window's commands, which set ComposeMode and
// show the window.
frmMailEdit *openCompose(int folder, qint16 mode)
{
    frmMain *w = mainOn(Node::Inbox + folder, 0);
    if (mode == Main::ComposeModes::New) {
        clickButton(w->Toolbar1, w->toolbarButton(frmMain::tbNewMail));
    } else if (mode == Main::ComposeModes::Reopen) {
        QTest::mouseDClick(w->ListView1->viewport(), Qt::LeftButton, {},
                           w->ListView1->visualItemRect(w->ListView1->topLevelItem(0)).center());
    } else if (folder == FolderFile::Inbox) {
        clickButton(w->Toolbar1, w->toolbarButton(mode == Main::ComposeModes::Reply
                                                      ? frmMain::tbReply
                                                      : frmMain::tbForward));
    } else {
        w->CurrentMailId = w->Mails.at(0).id;
        Main::ComposeMode = mode;
        forms::MailEdit()->show();
    }
    frmMailEdit *e = forms::MailEdit();
    QCoreApplication::processEvents();
    return e;
}

QString items(const QListWidget *list)
{
    QStringList texts;
    for (int i = 0; i < list->count(); ++i)
        texts << list->item(i)->text();
    return texts.join(u'|');
}

QString comboEntries(const QComboBox *combo)
{
    QStringList texts;
    for (int i = 0; i < combo->count(); ++i)
        texts << combo->itemText(i);
    return texts.join(u'|');
}

Mail quotedMail()
{
    Mail m;
    m.id = u"31415926"_s;
    m.from = u"bob@y.com"_s;
    m.to = u"a@x.com"_s;
    m.alsoto = u"carol@z.com"_s;
    m.subject = u"hello"_s;
    m.content = u"[first line\\nsecond line]"_s;
    m.datetime = u"24-05-13 09:12"_s;
    m.attachment = u"plan.doc(3.00kb) map.png(1.50kb)"_s;
    return m;
}

// A quoted block as the window shows it: LF line ends.
QString quoted(const QString &from, const QString &subject)
{
    return u"\n\n-----Original Message-----\nFrom:"_s + from + u"\nTo:a@x.com\nSent:24-05-13 09:12\n"
           "Subject:"_s + subject + u"\n\n> first line\nsecond line"_s;
}

}  // namespace

class tst_frmMailEdit : public WindowTest
{
    Q_OBJECT

private slots:
    void init();
    void cleanup();

    void opening_data();
    void opening();
    void newMessageStoredExactly();
    void storing_data();
    void storing();
    void refusals_data();
    void refusals();
    void attachments();
    void newMailInsideTheWindow();
    void closing_data();
    void closing();

private:
    std::unique_ptr<ScriptedFileChooser> files;
    QTemporaryDir attachDir;
};

void tst_frmMailEdit::init()
{
    begin();
    files = std::make_unique<ScriptedFileChooser>();
    SetClock([] { return QDateTime(QDate(2024, 7, 9), QTime(14, 5, 37)); });
}

void tst_frmMailEdit::cleanup()
{
    SetClock({});
    end();
    files.reset();
}

void tst_frmMailEdit::opening_data()
{
    QTest::addColumn<int>("folder");
    QTest::addColumn<int>("mode");
    QTest::addColumn<QString>("subjectIn");  // the stored subject
    QTest::addColumn<QString>("caption");
    QTest::addColumn<QString>("from");
    QTest::addColumn<QString>("entries");
    QTest::addColumn<QString>("to");
    QTest::addColumn<QString>("cc");
    QTest::addColumn<QString>("subject");
    QTest::addColumn<QString>("body");
    QTest::addColumn<QString>("attachments");

    const QString accounts = u"a@x.com|c@x.com"_s;
    QTest::newRow("new: empty fields, the first account sends")
        << 0 << 1 << u"hello"_s << u"新邮件"_s << u"a@x.com"_s << accounts << QString()
        << QString() << QString() << QString() << QString();
    QTest::newRow("reply: Re:, To is the sender, quoted block, no Cc")
        << 0 << 2 << u"hello"_s << u"新邮件"_s << u"a@x.com"_s << accounts << u"bob@y.com"_s
        << QString() << u"Re:hello"_s << quoted(u"bob@y.com"_s, u"hello"_s) << QString();
    QTest::newRow("reply to a reply: Re:Re:hello")
        << 0 << 2 << u"Re:hello"_s << u"新邮件"_s << u"a@x.com"_s << accounts << u"bob@y.com"_s
        << QString() << u"Re:Re:hello"_s << quoted(u"bob@y.com"_s, u"Re:hello"_s) << QString();
    QTest::newRow("reply from Deleted Items offers an empty sender too")
        << 3 << 2 << u"hello"_s << u"新邮件"_s << u"a@x.com"_s << accounts + u'|' << u"bob@y.com"_s
        << QString() << u"Re:hello"_s << quoted(u"bob@y.com"_s, u"hello"_s) << QString();
    QTest::newRow("forward: Fw:, To and Cc empty, attachments copied")
        << 0 << 3 << u"hello"_s << u"新邮件"_s << u"a@x.com"_s << accounts << QString()
        << QString() << u"Fw:hello"_s << quoted(u"bob@y.com"_s, u"hello"_s)
        << u"plan.doc(3.00kb)|map.png(1.50kb)"_s;
    QTest::newRow("re-opened draft: its subject as caption, its own sender kept")
        << 4 << 0 << u"hello"_s << u"hello"_s << u"bob@y.com"_s << accounts << u"a@x.com"_s
        << u"carol@z.com"_s << u"hello"_s << u"first line\nsecond line"_s
        << u"plan.doc(3.00kb)|map.png(1.50kb)"_s;
}

void tst_frmMailEdit::opening()
{
    QFETCH(int, folder);
    QFETCH(int, mode);
    QFETCH(QString, subjectIn);
    writeAccounts(*dir, {u"a@x.com"_s, u"c@x.com"_s});
    Mail m = quotedMail();
    m.subject = subjectIn;
    writeFolder(*dir, folder, {m});
    const QByteArray before = allFiles(*dir);

    frmMailEdit *e = openCompose(folder, qint16(mode));

    QVERIFY(e->isVisible());
    QCOMPARE(Main::ComposeMode, qint16(mode));
    QTEST(e->windowTitle(), "caption");
    QTEST(e->Combo3->currentText(), "from");
    QTEST(comboEntries(e->Combo3), "entries");
    QTEST(e->Text3->text(), "to");
    QTEST(e->Text4->text(), "cc");
    QTEST(e->Text5->text(), "subject");
    QTEST(e->Text1->toPlainText(), "body");
    QTEST(items(e->ListView1), "attachments");
    QCOMPARE(e->ListView1->isVisible(), e->ListView1->count() > 0);
    QCOMPARE(e->Label5->isVisible(), e->ListView1->count() > 0);
    QCOMPARE(allFiles(*dir), before);
}

void tst_frmMailEdit::newMessageStoredExactly()
{
    writeAccounts(*dir, {u"Ann@X.com"_s});
    QFile a(attachDir.filePath(u"A.txt"_s)), b(attachDir.filePath(u"b.txt"_s));
    QVERIFY(a.open(QIODevice::WriteOnly) && a.write(QByteArray(1024, 'a')) == 1024);
    QVERIFY(b.open(QIODevice::WriteOnly) && b.write(QByteArray(2048, 'b')) == 2048);
    a.close();
    b.close();
    files->answer(a.fileName());
    files->answer(b.fileName());

    frmMailEdit *e = openCompose(FolderFile::Inbox, Main::ComposeModes::New);
    QTest::keyClicks(e->Text3, u"Bob@Y.com"_s);
    QTest::keyClicks(e->Text4, u"Carol@Z.com  "_s);
    QTest::keyClicks(e->Text5, u"Test"_s);
    QTest::keyClicks(e->Text1, u"Hello World"_s);
    QTest::keyClick(e->Text1, Qt::Key_Return);
    e->Text1->insertPlainText(u"第二行 Line"_s);  // as an input method enters it
    clickButton(e->Toolbar1, e->toolbarButton(frmMailEdit::tbAttach));
    e->InsertAdd->trigger();
    QCOMPARE(items(e->ListView1), u"A.txt(1.00KB)|b.txt(2.00KB)"_s);

    boxes->expectMessage(Icon::Information, u"Quillpost Express"_s,
                         u"当发送电子邮件时,邮件将首先放置在“发件箱”\r文件夹中,并在下次使用“发送和"
                         "接收”命令时发\r送出去。"_s);
    e->mnuMailSendLate->trigger();

    const QList<EmailRec> outbox = stored(FolderFile::Outbox);
    QCOMPARE(outbox.size(), 1);
    QVERIFY(outbox[0].id.toInt() >= 10000000 && outbox[0].id.toInt() <= 99999999);
    Mail expected;
    expected.id = outbox[0].id;
    expected.from = u"ann@x.com"_s;
    expected.to = u"bob@y.com"_s;
    expected.alsoto = u"carol@z.com"_s;
    expected.subject = u"test"_s;
    expected.content = u"[hello world\\n第二行 line]"_s;
    expected.datetime = Stamp;
    expected.attachment = u" a.txt(1.00kb) b.txt(2.00kb)"_s;
    QCOMPARE(dir->readBytes(u"send_c.dat"_s), folderBytes({expected}));
    QVERIFY(!e->isVisible());  // closed after storing
}

void tst_frmMailEdit::storing_data()
{
    QTest::addColumn<int>("folder");
    QTest::addColumn<int>("mode");
    QTest::addColumn<QString>("command");  // send, later or save
    QTest::addColumn<QString>("to");       // typed after the To already there
    QTest::addColumn<QString>("box");      // notice, draft, names or none
    QTest::addColumn<QString>("outbox");   // ids after the command; "new" for a fresh id
    QTest::addColumn<QString>("sent");
    QTest::addColumn<QString>("drafts");
    QTest::addColumn<QString>("source");   // the folder opened from
    QTest::addColumn<bool>("closes");

    // The folder opened from holds 20000000 and 20000001; the first one is
    // quoted or re-opened. Sent mail also lands in the queue.
    const QString both = u"20000000|20000001"_s;
    QTest::newRow("new message sent now goes out at once")
        << 0 << 1 << u"send"_s << u"b@y.com"_s << QString() << QString() << u"new"_s
        << QString() << both << true;
    QTest::newRow("re-opened draft sent now leaves Drafts with its id")
        << 4 << 0 << u"send"_s << QString() << QString() << QString() << u"20000000"_s
        << u"20000001"_s << u"20000001"_s << true;
    QTest::newRow("forward from Sent Items goes out as a new message")
        << 2 << 3 << u"send"_s << u"b@y.com"_s << QString() << QString()
        << both + u"|new"_s << QString() << both + u"|new"_s << true;
    QTest::newRow("re-opened Outbox message replaced in place, then sent")
        << 1 << 0 << u"send"_s << QString() << QString() << QString() << both << QString()
        << QString() << true;
    QTest::newRow("To without @: name check box, the message waits in the Outbox")
        << 0 << 1 << u"send"_s << u"nobody"_s << u"names"_s << u"new"_s << QString()
        << QString() << both << true;
    QTest::newRow("draft sent later moves to the Outbox with its id")
        << 4 << 0 << u"later"_s << QString() << u"notice"_s << u"20000000"_s << QString()
        << u"20000001"_s << u"20000001"_s << true;
    QTest::newRow("reply sent later from the Inbox stores nothing")
        << 0 << 2 << u"later"_s << QString() << QString() << QString() << QString() << QString()
        << both << false;
    QTest::newRow("new message saved goes to Drafts, the window stays")
        << 0 << 1 << u"save"_s << u"b@y.com"_s << u"draft"_s << QString() << QString()
        << u"new"_s << both << false;
    QTest::newRow("reply saved goes to Drafts") << 0 << 2 << u"save"_s << QString() << u"draft"_s
                                                << QString() << QString() << u"new"_s << both
                                                << false;
    QTest::newRow("re-opened draft saved replaces itself")
        << 4 << 0 << u"save"_s << QString() << QString() << QString() << QString() << both
        << both << false;
    QTest::newRow("forward saved overwrites the forwarded message")
        << 0 << 3 << u"save"_s << u"b@y.com"_s << QString() << QString() << QString()
        << QString() << both << false;
}

void tst_frmMailEdit::storing()
{
    QFETCH(int, folder);
    QFETCH(int, mode);
    QFETCH(QString, command);
    QFETCH(QString, to);
    QFETCH(QString, box);
    QFETCH(bool, closes);
    writeAccounts(*dir, {u"a@x.com"_s});
    writeFolder(*dir, folder, mails(2));

    frmMailEdit *e = openCompose(folder, qint16(mode));
    QTest::keyClicks(e->Text3, to);
    QTest::keyClicks(e->Text5, u" Edited"_s);
    if (box == u"notice") {
        boxes->expectMessage(Icon::Information, u"Quillpost Express"_s,
                             texts::compose::SendLaterNotice);
    } else if (box == u"draft") {
        boxes->expectMessage(Icon::Information, u"已经保存的邮件"_s,
                             u"该邮件已存储在“草稿”文件夹中。"_s);
    } else if (box == u"names") {
        boxes->expectMessage(Icon::Information, u"检查姓名"_s,
                             u"未找到匹配项,请检查邮件填写是否有误"_s);
    }
    if (command == u"send")
        clickButton(e->Toolbar1, e->toolbarButton(frmMailEdit::tbSend));
    else
        (command == u"save" ? e->Save : e->mnuMailSendLate)->trigger();

    auto ids = [](int number) {
        QStringList list;
        for (const EmailRec &m : stored(number))
            list << (m.id.startsWith(u"2000000"_s) ? m.id : u"new"_s);
        return list.join(u'|');
    };
    QTEST(ids(FolderFile::Outbox), "outbox");
    QTEST(ids(FolderFile::SentItems), "sent");
    QTEST(ids(FolderFile::Drafts), "drafts");
    if (folder != FolderFile::Outbox && folder != FolderFile::SentItems
        && folder != FolderFile::Drafts)
        QTEST(ids(folder), "source");
    QCOMPARE(e->isVisible(), !closes);
    QVERIFY(!forms::SendAndReceive()->isVisible());
    // What was stored is the edited message, lower-cased and stamped.
    int edited = 0;
    for (int f = 0; f < FolderFile::Count; ++f) {
        for (const EmailRec &m : stored(f)) {
            if (m.subject.endsWith(u"edited"_s)) {
                ++edited;
                QCOMPARE(m.datetime, Stamp);
            }
        }
    }
    const bool sentOut = command == u"send" && box.isEmpty();
    QCOMPARE(edited, (command == u"later" && box.isEmpty()) ? 0 : sentOut ? 2 : 1);
    if (box == u"draft")
        QCOMPARE(Main::ComposeMode, Main::ComposeModes::Reopen);
}

void tst_frmMailEdit::refusals_data()
{
    QTest::addColumn<bool>("withAccount");
    QTest::addColumn<int>("mode");
    QTest::addColumn<QString>("to");
    QTest::addColumn<QString>("command");
    QTest::addColumn<QString>("box");  // "" when none

    const QString noRecipient = u"无法发送邮件。\r\r必须为邮件指定收件人。"_s;
    const QString noSender = u"无法保存邮件。\r\r必须为邮件指定发件人。"_s;
    QTest::newRow("send with empty To") << true << 1 << QString() << u"send"_s << noRecipient;
    QTest::newRow("send tests To before From") << false << 1 << QString() << u"send"_s
                                                << noRecipient;
    QTest::newRow("send later with empty To") << true << 1 << QString() << u"later"_s
                                              << noRecipient;
    QTest::newRow("send later with empty From") << false << 1 << u"b@y.com"_s << u"later"_s
                                                << noSender;
    QTest::newRow("save with empty From") << false << 1 << u"b@y.com"_s << u"save"_s << noSender;
    QTest::newRow("reply with no account") << false << 2 << QString() << QString()
                                           << u"还未添加账号,请先设置账号!"_s;
    QTest::newRow("forward with no account") << false << 3 << QString() << QString()
                                             << u"还未添加账号,请先设置账号!"_s;
}

void tst_frmMailEdit::refusals()
{
    QFETCH(bool, withAccount);
    QFETCH(int, mode);
    QFETCH(QString, to);
    QFETCH(QString, command);
    QFETCH(QString, box);
    if (withAccount)
        writeAccounts(*dir, {u"a@x.com"_s});
    writeFolder(*dir, FolderFile::Inbox, {quotedMail()});
    const QByteArray before = allFiles(*dir);

    if (command.isEmpty() && !box.isEmpty())
        boxes->expectMessage(Icon::Exclamation, u"Quillpost Express"_s, box);
    frmMailEdit *e = openCompose(FolderFile::Inbox, qint16(mode));
    if (command.isEmpty()) {
        // The fields stay as they were: nothing quoted.
        QCOMPARE(e->Text5->text(), QString());
        QCOMPARE(e->Text1->toPlainText(), QString());
    } else {
        QTest::keyClicks(e->Text3, to);
        QTest::keyClicks(e->Text1, u"body"_s);
        if (!box.isEmpty())
            boxes->expectMessage(Icon::Exclamation, u"Quillpost Express"_s, box);
        QAction *a = command == u"send" ? e->mnuMailSend
                   : command == u"later" ? e->mnuMailSendLate : e->Save;
        a->trigger();
        QCOMPARE(e->Text3->text(), to);
        QCOMPARE(e->Text1->toPlainText(), u"body"_s);
    }
    QVERIFY(e->isVisible());
    QCOMPARE(allFiles(*dir), before);
}

void tst_frmMailEdit::attachments()
{
    writeAccounts(*dir, {u"a@x.com"_s});
    QFile f(attachDir.filePath(u"report.doc"_s));
    QVERIFY(f.open(QIODevice::WriteOnly) && f.write(QByteArray(12800, 'r')) == 12800);
    f.close();
    frmMailEdit *e = openCompose(FolderFile::Inbox, Main::ComposeModes::New);
    QVERIFY(!e->ListView1->isVisible());

    // Cancelling the chooser adds nothing.
    e->InsertAdd->trigger();
    QCOMPARE(files->asked(), 1);
    QVERIFY(!e->attachmentRowShown());

    files->answer(f.fileName());
    files->answer(f.fileName());
    clickButton(e->Toolbar1, e->toolbarButton(frmMailEdit::tbAttach));
    e->InsertAdd->trigger();
    QCOMPARE(items(e->ListView1), u"report.doc(12.50KB)|report.doc(12.50KB)"_s);
    QVERIFY(e->attachmentRowShown());
    QVERIFY(e->ListView1->isVisible() && e->Label5->isVisible());

    // A right-button release over the list opens the pop-up.
    const QRect first = e->ListView1->visualItemRect(e->ListView1->item(0));
    QTest::mouseClick(e->ListView1->viewport(), Qt::LeftButton, {}, first.center());
    QTest::mouseRelease(e->ListView1->viewport(), Qt::RightButton, {}, first.center());
    QTRY_VERIFY(e->popmnu1->isVisible());
    e->popmnu1->close();
    e->popmnuDelete->trigger();
    QCOMPARE(e->ListView1->count(), 1);
    QVERIFY(e->attachmentRowShown());
    e->ListView1->setCurrentRow(0);
    e->popmnuDelete->trigger();
    QCOMPARE(e->ListView1->count(), 0);
    QVERIFY(!e->attachmentRowShown());
    QVERIFY(!e->ListView1->isVisible());
}

void tst_frmMailEdit::newMailInsideTheWindow()
{
    writeAccounts(*dir, {u"a@x.com"_s, u"c@x.com"_s});
    writeFolder(*dir, FolderFile::Inbox, {quotedMail()});
    frmMailEdit *e = openCompose(FolderFile::Inbox, Main::ComposeModes::Forward);
    e->Combo3->setCurrentIndex(1);
    QTest::keyClicks(e->Text4, u"d@x.com"_s);

    e->munNewMail->trigger();

    QCOMPARE(Main::ComposeMode, Main::ComposeModes::New);
    for (QLineEdit *field : {e->Text3, e->Text4, e->Text5})
        QCOMPARE(field->text(), QString());
    QCOMPARE(e->Text1->toPlainText(), QString());
    QCOMPARE(e->Combo3->currentText(), u"c@x.com"_s);
    QCOMPARE(e->ListView1->count(), 2);
}

void tst_frmMailEdit::closing_data()
{
    QTest::addColumn<bool>("typed");
    QTest::addColumn<int>("answer");  // -1 not asked, 0 No, 1 Yes
    QTest::addColumn<bool>("closes");
    QTest::newRow("untouched window closes without a question") << false << -1 << true;
    QTest::newRow("typed text asks; Yes drops it and closes") << true << 1 << true;
    QTest::newRow("typed text asks; No keeps the window") << true << 0 << false;
}

void tst_frmMailEdit::closing()
{
    QFETCH(bool, typed);
    QFETCH(int, answer);
    QFETCH(bool, closes);
    writeAccounts(*dir, {u"a@x.com"_s});
    writeFolder(*dir, FolderFile::Inbox, {quotedMail()});
    const QByteArray before = allFiles(*dir);
    // A reply fills in a whole quoted block; that alone is no change.
    frmMailEdit *e = openCompose(FolderFile::Inbox, Main::ComposeModes::Reply);
    if (typed)
        QTest::keyClicks(e->Text1, u"thanks"_s);
    if (answer >= 0) {
        boxes->expectConfirm(Icon::Exclamation, u"Quillpost Express"_s,
                             u"此邮件尚未发送，也未保存。\r\r是否放弃此邮件并关闭窗口？"_s,
                             answer == 1);
    }
    e->close();
    QCOMPARE(e->isVisible(), !closes);
    QCOMPARE(allFiles(*dir), before);
}

QTEST_MAIN(tst_frmMailEdit)
#include "tst_frmMailEdit.moc"
