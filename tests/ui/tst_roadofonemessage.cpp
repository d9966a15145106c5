// One message from the first account to the second and back, through the
// real windows: written, sent, received, read, replied to, deleted and
// deleted for good. After every step: what the user sees and what the six
// folder files hold.

#include "fixtures.h"
#include "ui/sendrecv/frmSendAndReceive.h"
#include "store/clock.h"
#include "store/folders.h"
#include "store/state.h"
#include "testsupport.h"
#include "ui/common/forms.h"
#include "ui/main/foldernodes.h"
#include "ui/main/frmMain.h"
#include "ui/message/frmMailEdit.h"
#include "ui/message/frmMailRead.h"

#include <QAction>
#include <QComboBox>
#include <QLabel>
#include <QLineEdit>
#include <QPlainTextEdit>
#include <QTest>
#include <QToolBar>
#include <QTreeWidget>

using namespace Qt::Literals::StringLiterals;
using testsupport::DataDir;
using testsupport::ScriptedPrompter;
using fixtures::clickButton;
using fixtures::clickItem;

namespace {

// The six folders, each as "subject:isnew" per message, in folder order:
// Inbox, Outbox, Sent Items, Deleted Items, Drafts, queue.
QString folders()
{
    QStringList all;
    for (int f = 0; f < FolderFile::Count; ++f) {
        QStringList one;
        for (const EmailRec &m : fixtures::stored(f))
            one << m.subject + u':' + m.isnew;
        all << one.join(u',');
    }
    return all.join(u" | "_s);
}

}  // namespace

class tst_RoadOfOneMessage : public QObject
{
    Q_OBJECT

private slots:
    void road();
};

void tst_RoadOfOneMessage::road()
{
    DataDir dir;
    ScriptedPrompter boxes;
    Main::resetState();
    SetClock([] { return QDateTime(QDate(2024, 7, 9), QTime(14, 5)); });
    fixtures::writeAccounts(dir, {u"ann@x.com"_s, u"bob@x.com"_s});

    frmMain *w = forms::Main();
    w->show();
    QCoreApplication::processEvents();

    // 1. New message from the first account to the second, sent now.
    clickButton(w->Toolbar1, w->toolbarButton(frmMain::tbNewMail));
    frmMailEdit *e = forms::MailEdit();
    QVERIFY(e->isVisible());
    QCOMPARE(e->Combo3->currentText(), u"ann@x.com"_s);
    QTest::keyClicks(e->Text3, u"Bob@x.com"_s);
    QTest::keyClicks(e->Text5, u"Hello"_s);
    QTest::keyClicks(e->Text1, u"Hi Bob"_s);
    clickButton(e->Toolbar1, e->toolbarButton(frmMailEdit::tbSend));
    QVERIFY(!e->isVisible());
    QVERIFY(!forms::SendAndReceive()->isVisible());
    QCOMPARE(folders(), u" |  | hello:0 |  |  | hello:1"_s);
    {
        EmailArray sent;
        MailCount n = 0;
        LoadEmails(FolderFile::SentItems, sent, n);
        fixtures::Mail m;
        m.id = sent[0].id;
        m.from = u"ann@x.com"_s;
        m.to = u"bob@x.com"_s;
        m.subject = u"hello"_s;
        m.content = u"[hi bob]"_s;
        m.datetime = u"24-07-09 14:05"_s;
        QCOMPARE(dir.readBytes(u"receive_s.dat"_s), fixtures::folderBytes({m}));
    }

    // 2. Send and receive from the main window: the message arrives once,
    // for the second account, unread.
    clickButton(w->Toolbar1, w->toolbarButton(frmMain::tbSendReceive));
    QTRY_VERIFY(!forms::SendAndReceive()->isVisible());
    QCOMPARE(folders(), u"hello:1 |  | hello:0 |  |  | "_s);
    QCOMPARE(w->node(Node::Inbox)->text(0), u"收件箱(1)"_s);
    QVERIFY(w->node(Node::Inbox)->font(0).bold());

    // 3. In the Inbox the row is bold; a double-click reads it.
    clickItem(w->TreeView1, w->node(Node::Inbox));
    QTreeWidgetItem *row = w->ListView1->topLevelItem(0);
    QCOMPARE(row->text(3), u"hello"_s);
    QVERIFY(row->font(3).bold());
    clickItem(w->ListView1, row);
    QTest::mouseDClick(w->ListView1->viewport(), Qt::LeftButton, {},
                       w->ListView1->visualItemRect(row).center());
    frmMailRead *r = forms::MailRead();
    QVERIFY(r->isVisible());
    QCOMPARE(r->Label5->text(), u"ann@x.com"_s);
    QCOMPARE(r->Label8->text(), u"hello"_s);
    QCOMPARE(folders(), u"hello:0 |  | hello:0 |  |  | "_s);
    QCOMPARE(w->node(Node::Inbox)->text(0), u"收件箱"_s);
    QVERIFY(!w->ListView1->topLevelItem(0)->font(3).bold());

    // 4. Reply from the read window, sent now.
    clickButton(r->Toolbar1, r->toolbarButton(frmMailRead::tbReply));
    QVERIFY(!r->isVisible());
    QVERIFY(e->isVisible());
    QCOMPARE(e->Text3->text(), u"ann@x.com"_s);
    QCOMPARE(e->Text5->text(), u"Re:hello"_s);
    QVERIFY(e->Text1->toPlainText().startsWith(u"\n\n-----Original Message-----\nFrom:ann@x.com\n"_s));
    QVERIFY(e->Text1->toPlainText().endsWith(u"\n\n> hi bob"_s));
    e->Text1->moveCursor(QTextCursor::Start);
    QTest::keyClicks(e->Text1, u"Thanks"_s);
    clickButton(e->Toolbar1, e->toolbarButton(frmMailEdit::tbSend));
    QVERIFY(!e->isVisible());
    QCOMPARE(folders(), u"hello:0 |  | hello:0,re:hello:0 |  |  | re:hello:1"_s);

    // 5. Delete moves it to Deleted Items.
    clickItem(w->ListView1, w->ListView1->topLevelItem(0));
    clickButton(w->Toolbar1, w->toolbarButton(frmMain::tbDelete));
    QCOMPARE(w->ListView1->topLevelItemCount(), 0);
    QCOMPARE(folders(), u" |  | hello:0,re:hello:0 | hello:0 |  | re:hello:1"_s);

    // 6. Deleted there, it is gone for good after one question.
    clickItem(w->TreeView1, w->node(Node::DeletedItems));
    clickItem(w->ListView1, w->ListView1->topLevelItem(0));
    boxes.expectConfirm(Prompter::Icon::Exclamation, u"Quillpost Express"_s,
                        u"你确实要彻底删除这些邮件吗?"_s, true);
    clickButton(w->Toolbar1, w->toolbarButton(frmMain::tbDelete));
    QCOMPARE(w->ListView1->topLevelItemCount(), 0);
    QVERIFY(!w->toolbarButton(frmMain::tbDelete)->isEnabled());
    QCOMPARE(folders(), u" |  | hello:0,re:hello:0 |  |  | re:hello:1"_s);

    QVERIFY2(boxes.done(), boxes.report());
    forms::destroyAll();
    SetClock({});
}

QTEST_MAIN(tst_RoadOfOneMessage)
#include "tst_roadofonemessage.moc"
