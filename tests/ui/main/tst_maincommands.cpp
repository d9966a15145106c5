// The main window's commands as a user gives them: toolbar buttons, menu
// items, the keyboard, the summary page's button, and closing the window;
// checked on the windows they open, the tree, the list and the files.

#include "fixtures.h"
#include "ui/sendrecv/frmSendAndReceive.h"
#include "store/folders.h"
#include "store/state.h"
#include "testsupport.h"
#include "texts.h"
#include "ui/common/forms.h"
#include "ui/main/foldernodes.h"
#include "ui/main/frmMain.h"
#include "ui/message/frmMailEdit.h"

#include <QAction>
#include <QLineEdit>
#include <QMenu>
#include <QPushButton>
#include <QTest>
#include <QToolBar>
#include <QTreeWidget>

#include <memory>

using namespace Qt::Literals::StringLiterals;
using namespace fixtures;
using Icon = Prompter::Icon;

namespace {
QString rows(const frmMain *w)
{
    QStringList list;
    for (int i = 0; i < w->ListView1->topLevelItemCount(); ++i)
        list << w->ListView1->topLevelItem(i)->text(3);
    return list.join(u'|');
}

QList<Mail> numbered(int first, int n, int unread)
{
    QList<Mail> list = mails(n, unread);
    for (int i = 0; i < n; ++i) {
        list[i].id = QString::number(first + i);
        list[i].subject = u"s"_s + list[i].id;
    }
    return list;
}
}  // namespace

class tst_MainCommands : public WindowTest
{
    Q_OBJECT

private slots:
    void init() { begin(); }
    void cleanup() { end(); }

    void composeCommands_data();
    void composeCommands();
    void deleting_data();
    void deleting();
    void sendAndReceive_data();
    void sendAndReceive();
    void closing_data();
    void closing();
};

void tst_MainCommands::composeCommands_data()
{
    QTest::addColumn<QString>("command");
    QTest::addColumn<int>("mode");  // -1: nothing opens
    QTest::addColumn<QString>("subject");
    QTest::newRow("New on the toolbar") << u"button 1"_s << 1 << QString();
    QTest::newRow("New in the File menu") << u"AddNewMail"_s << 1 << QString();
    QTest::newRow("Reply quotes the previewed message") << u"button 2"_s << 2 << u"Re:s71"_s;
    QTest::newRow("Forward quotes the previewed message") << u"button 4"_s << 3 << u"Fw:s71"_s;
    QTest::newRow("Reply All does nothing") << u"button 3"_s << -1 << QString();
    QTest::newRow("Print does nothing") << u"button 6"_s << -1 << QString();
}

void tst_MainCommands::composeCommands()
{
    QFETCH(QString, command);
    QFETCH(int, mode);
    writeAccounts(*dir, {u"a@x.com"_s});
    writeFolder(*dir, FolderFile::Inbox, numbered(70, 3, 0));
    const QByteArray before = dir->readBytes(u"receive_c.dat"_s);
    frmMain *w = mainOn(Node::Inbox, 1);
    Main::ComposeMode = -1;

    if (command == u"AddNewMail")
        w->AddNewMail->trigger();
    else
        clickButton(w, command.section(u' ', 1).toInt());
    QCoreApplication::processEvents();

    QCOMPARE(int(Main::ComposeMode), mode);
    frmMailEdit *e = forms::MailEdit();
    QCOMPARE(e->isVisible(), mode >= 0);
    QTEST(e->Text5->text(), "subject");
    QCOMPARE(dir->readBytes(u"receive_c.dat"_s), before);
}

void tst_MainCommands::deleting_data()
{
    QTest::addColumn<int>("node");
    QTest::addColumn<int>("row");
    QTest::addColumn<int>("answer");  // -1 no question, 0 No, 1 Yes
    QTest::addColumn<QString>("inbox");
    QTest::addColumn<QString>("sent");
    QTest::addColumn<QString>("deleted");
    QTest::addColumn<QString>("listRows");
    QTest::addColumn<QString>("inboxCaption");
    QTest::addColumn<QString>("deletedCaption");
    QTest::addColumn<bool>("deleteEnabled");

    // Inbox 100, 101 (both unread); Sent Items 200; Deleted Items 300
    // (unread) and, where the row says so, 301.
    QTest::newRow("unread Inbox message moves: both counts change")
        << int(Node::Inbox) << 0 << -1 << u"101"_s << u"200"_s << u"300|100"_s << u"s101"_s
        << u"收件箱(1)"_s << u"已删除邮件(2)"_s << true;
    QTest::newRow("Sent Items message moves without a question")
        << int(Node::SentItems) << 0 << -1 << u"100|101"_s << QString() << u"300|200"_s
        << QString() << u"收件箱(2)"_s << u"已删除邮件(1)"_s << true;
    QTest::newRow("the only message of Deleted Items: asked once, gone, Delete off")
        << int(Node::DeletedItems) << 0 << 1 << u"100|101"_s << u"200"_s << QString()
        << QString() << u"收件箱(2)"_s << u"已删除邮件"_s << false;
    QTest::newRow("No keeps the message of Deleted Items")
        << int(Node::DeletedItems) << 0 << 0 << u"100|101"_s << u"200"_s << u"300"_s
        << u"s300"_s << u"收件箱(2)"_s << u"已删除邮件(1)"_s << true;
}

void tst_MainCommands::deleting()
{
    QFETCH(int, node);
    QFETCH(int, row);
    QFETCH(int, answer);
    writeFolder(*dir, FolderFile::Inbox, numbered(100, 2, 2));
    writeFolder(*dir, FolderFile::SentItems, numbered(200, 1, 0));
    writeFolder(*dir, FolderFile::DeletedItems, numbered(300, 1, 1));
    frmMain *w = mainOn(node, row);

    if (answer >= 0) {
        boxes->expectConfirm(Icon::Exclamation, u"Quillpost Express"_s,
                             u"你确实要彻底删除这些邮件吗?"_s, answer == 1);
    }
    clickButton(w, frmMain::tbDelete);

    QTEST(ids(FolderFile::Inbox), "inbox");
    QTEST(ids(FolderFile::SentItems), "sent");
    QTEST(ids(FolderFile::DeletedItems), "deleted");
    QTEST(rows(w), "listRows");
    QTEST(w->node(Node::Inbox)->text(0), "inboxCaption");
    QTEST(w->node(Node::DeletedItems)->text(0), "deletedCaption");
    QCOMPARE(w->node(Node::DeletedItems)->font(0).bold(),
             w->node(Node::DeletedItems)->text(0).endsWith(u')'));
    QTEST(w->toolbarButton(frmMain::tbDelete)->isEnabled(), "deleteEnabled");
}

void tst_MainCommands::sendAndReceive_data()
{
    QTest::addColumn<QString>("command");
    QTest::addColumn<QString>("outboxFrom");
    QTest::addColumn<bool>("runs");
    QTest::addColumn<QString>("outbox");  // ids after the run
    QTest::addColumn<QString>("inbox");
    QTest::addColumn<QString>("queue");

    // The Outbox holds 1 for b@x.com; the queue holds 2 for a@x.com.
    QTest::newRow("send and receive from the menu")
        << u"mnuRSMail"_s << u"a@x.com"_s << true << QString() << u"2|1"_s << QString();
    QTest::newRow("CTRL+M") << u"ctrl+m"_s << u"a@x.com"_s << true << QString()
                            << u"2|1"_s << QString();
    QTest::newRow("the toolbar's Send/Receive")
        << u"button"_s << u"a@x.com"_s << true << QString() << u"2|1"_s << QString();
    QTest::newRow("the drop-down's first item")
        << u"drop 0"_s << u"a@x.com"_s << true << QString() << u"2|1"_s << QString();
    QTest::newRow("the summary page's button")
        << u"Command11"_s << u"a@x.com"_s << true << QString() << u"2|1"_s << QString();
    QTest::newRow("receive only leaves the Outbox")
        << u"mnuReceiveMail"_s << u"a@x.com"_s << true << u"1"_s << u"2"_s << QString();
    QTest::newRow("receive from the drop-down")
        << u"drop 1"_s << u"a@x.com"_s << true << u"1"_s << u"2"_s << QString();
    QTest::newRow("send only leaves the queue for the next receive")
        << u"mnuSendMail"_s << u"a@x.com"_s << true << QString() << QString()
        << u"2|1"_s;
    QTest::newRow("send from the drop-down")
        << u"drop 2"_s << u"a@x.com"_s << true << QString() << QString() << u"2|1"_s;
    QTest::newRow("Outbox mail of no account: warned, no run")
        << u"mnuSendMail"_s << u"z@z.com"_s << false << u"1"_s << QString() << u"2"_s;
}

void tst_MainCommands::sendAndReceive()
{
    QFETCH(QString, command);
    QFETCH(QString, outboxFrom);
    QFETCH(bool, runs);
    writeAccounts(*dir, {u"a@x.com"_s, u"b@x.com"_s});
    writeFolder(*dir, FolderFile::Outbox, {addressed(u"1"_s, outboxFrom, u"b@x.com"_s)});
    writeFolder(*dir, FolderFile::ServerQueue,
                          {addressed(u"2"_s, u"c@y.com"_s, u"a@x.com"_s)});
    frmMain *w = mainOn(command == u"Command11" ? Node::LocalFolders : Node::Inbox);
    if (outboxFrom == u"z@z.com") {
        boxes->expectMessage(Icon::Exclamation, u"Quillpost Express"_s,
                             u"发件箱中的部分邮件没有指定账号,请检查。"_s);
    }

    if (command == u"ctrl+m") {
        w->activateWindow();
        QVERIFY(QTest::qWaitForWindowActive(w));
        QTest::keyClick(w, Qt::Key_M, Qt::ControlModifier);
    } else if (command == u"button") {
        clickButton(w, frmMain::tbSendReceive);
    } else if (command.startsWith(u"drop")) {
        w->sendReceiveMenu->actions().at(command.section(u' ', 1).toInt())->trigger();
    } else if (command == u"Command11") {
        QTest::mouseClick(w->Command11, Qt::LeftButton);
    } else {
        w->findChild<QAction *>(command)->trigger();
    }

    frmSendAndReceive *run = forms::SendAndReceive();
    QCOMPARE(run->isVisible(), runs);
    QTRY_VERIFY(!run->isVisible());
    QTEST(ids(FolderFile::Outbox), "outbox");
    QTEST(ids(FolderFile::Inbox), "inbox");
    QTEST(ids(FolderFile::ServerQueue), "queue");
    // Mail that arrived shows in the tree and, the Inbox being open, in the list.
    const int arrived = ids(FolderFile::Inbox).isEmpty() ? 0 : ids(FolderFile::Inbox).count(u'|') + 1;
    QCOMPARE(w->node(Node::Inbox)->text(0),
             arrived ? u"收件箱(%1)"_s.arg(arrived) : u"收件箱"_s);
    if (command != u"Command11")
        QCOMPARE(w->ListView1->topLevelItemCount(), arrived);
}

void tst_MainCommands::closing_data()
{
    QTest::addColumn<QString>("to");  // of the Outbox message
    QTest::addColumn<bool>("yes");
    QTest::addColumn<QString>("sent");
    QTest::addColumn<bool>("nameCheck");
    QTest::newRow("an empty Outbox closes without a question")
        << QString() << false << QString() << false;
    QTest::newRow("Yes sends the Outbox, then the program ends")
        << u"b@x.com"_s << true << u"1"_s << false;
    QTest::newRow("Yes with a message it may not send: the name check box")
        << u"nobody"_s << true << QString() << true;
    QTest::newRow("No ends the program without sending")
        << u"b@x.com"_s << false << QString() << false;
}

void tst_MainCommands::closing()
{
    QFETCH(QString, to);
    QFETCH(bool, yes);
    QFETCH(bool, nameCheck);
    writeAccounts(*dir, {u"a@x.com"_s});
    if (!to.isEmpty())
        writeFolder(*dir, FolderFile::Outbox, {addressed(u"1"_s, u"a@x.com"_s, to)});
    const QByteArray before = allFiles(*dir);
    frmMain *w = mainOn(Node::Outbox);
    w->AddNewMail->trigger();  // a compose window left open goes too
    QVERIFY(forms::MailEdit()->isVisible());

    if (!to.isEmpty()) {
        boxes->expectConfirm(Icon::Exclamation, u"Quillpost Express"_s,
                             u"“发件箱”中还有未发的邮件。是否现在发送？"_s, yes);
    }
    if (nameCheck) {
        boxes->expectMessage(Icon::Information, u"检查姓名"_s,
                             u"未找到匹配项,请检查邮件填写是否有误"_s);
    }
    w->F20->trigger();

    QTEST(ids(FolderFile::SentItems), "sent");
    QCOMPARE(ids(FolderFile::Outbox).isEmpty(), to.isEmpty() || (yes && !nameCheck));
    if (!yes)
        QCOMPARE(allFiles(*dir), before);
    for (QWidget *window : QApplication::topLevelWidgets())
        QVERIFY2(!window->isVisible(), qPrintable(window->objectName()));
}

QTEST_MAIN(tst_MainCommands)
#include "tst_maincommands.moc"
