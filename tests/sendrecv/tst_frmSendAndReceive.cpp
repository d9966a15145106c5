// The send-and-receive dialog driven as the main window's commands drive
// it: the caller sets the mode and shows it, the timers run it to its end.
// Checked on the dialog, on the main window and on the files.

#include "fixtures.h"
#include "sendrecv/engine.h"
#include "sendrecv/frmSendAndReceive.h"
#include "store/clock.h"
#include "store/folders.h"
#include "store/state.h"
#include "testsupport.h"
#include "ui/common/forms.h"
#include "ui/common/twips.h"
#include "ui/main/foldernodes.h"
#include "ui/main/frmMain.h"

#include <QGuiApplication>
#include <QLabel>
#include <QLineEdit>
#include <QPushButton>
#include <QScreen>
#include <QTest>
#include <QTimer>
#include <QTreeWidget>

#include <memory>

using namespace Qt::Literals::StringLiterals;
using fixtures::Mail;
using testsupport::DataDir;
using testsupport::ScriptedPrompter;

namespace {

const QString Alice = u"alice@a.cn"_s;
const QString Bob = u"bob@b.cn"_s;

Mail to(const QString &recipients, const QString &isnew = u"0"_s)
{
    Mail m;
    m.from = Alice;
    m.to = recipients;
    m.isnew = isnew;
    return m;
}

MailCount countIn(int folder)
{
    EmailArray mails;
    MailCount n = 0;
    LoadEmails(folder, mails, n);
    return n;
}

QByteArray folderFiles(const DataDir &dir)
{
    QByteArray all;
    for (int f = 0; f < FolderFile::Count; ++f)
        all += dir.readBytes(FolderFile::fileName(f)) + '|';
    return all;
}

frmMain *openMainAt(int node)
{
    frmMain *w = forms::Main();
    w->show();
    QTreeWidget *tree = w->TreeView1;
    QTest::mouseClick(tree->viewport(), Qt::LeftButton, {},
                      tree->visualItemRect(w->node(node)).center());
    return w;
}

// What the caller does: set the mode, show the dialog.
frmSendAndReceive *startRun(qint16 mode)
{
    frmSendAndReceive *d = forms::SendAndReceive();
    d->SendReceiveMode = mode;
    d->show();
    return d;
}

}  // namespace

class tst_frmSendAndReceive : public QObject
{
    Q_OBJECT

private slots:
    void init();
    void cleanup();

    void controlsAndPlace();
    void barGrowsInFourteenStepsThenUnloads();
    void runs_data();
    void runs();
    void failedSendOnlyWaitsForItsCaller();
    void timersFinishTheRunOnTheirOwn();
    void shownFolderIsRedrawn_data();
    void shownFolderIsRedrawn();

private:
    std::unique_ptr<DataDir> dir;
    std::unique_ptr<ScriptedPrompter> boxes;
};

void tst_frmSendAndReceive::init()
{
    dir = std::make_unique<DataDir>();
    boxes = std::make_unique<ScriptedPrompter>();
    Main::resetState();
    SetClock([] { return QDateTime({2024, 5, 14}, {8, 30}); });
}

void tst_frmSendAndReceive::cleanup()
{
    forms::destroyAll();
    SetClock({});
    QVERIFY2(boxes->done(), boxes->report());
    boxes.reset();
    dir.reset();
}

void tst_frmSendAndReceive::controlsAndPlace()
{
    forms::Main()->show();
    frmSendAndReceive *d = startRun(SendReceiveModes::ReceiveOnly);

    QCOMPARE(d->windowTitle(), u"Quillpost Express"_s);
    QCOMPARE(d->Label1->text(), u"正在连接服务器..."_s);
    QCOMPARE(d->Command1->text(), u"隐藏(&H)"_s);
    QCOMPARE(d->Command2->text(), u"停止(&S)"_s);
    QCOMPARE(d->Command3->text(), u"详细资料(&D) >>"_s);
    QCOMPARE(d->Text2Width(), 0);
    QCOMPARE(d->Timer2->interval(), 150);
    QCOMPARE(d->Timer1->interval(), 5);
    QVERIFY(d->Timer2->isActive());
    QVERIFY(!d->Timer1->isActive());

    // Centred by whole-number halves of the free space, in twips.
    const QRect screen = QGuiApplication::primaryScreen()->geometry();
    const int left = twips::freeSpaceOffset(int(twips::fromPixels(screen.width())),
                                            frmSendAndReceive::DesignWidth, 2);
    const int top = twips::freeSpaceOffset(int(twips::fromPixels(screen.height())),
                                           frmSendAndReceive::DesignHeight, 2);
    QCOMPARE(d->pos(), screen.topLeft() + QPoint(twips::toPixels(left), twips::toPixels(top)));

    // The buttons do nothing: the run goes on.
    for (QPushButton *b : {d->Command1, d->Command2, d->Command3})
        QTest::mouseClick(b, Qt::LeftButton);
    QVERIFY(d->isVisible());
    QVERIFY(d->Timer2->isActive());
    QCOMPARE(d->Label1->text(), u"正在连接服务器..."_s);
}

void tst_frmSendAndReceive::barGrowsInFourteenStepsThenUnloads()
{
    forms::Main()->show();
    frmSendAndReceive *d = startRun(SendReceiveModes::ReceiveOnly);

    d->Timer2_Timer();
    QVERIFY(!d->Timer2->isActive());
    QVERIFY(d->Timer1->isActive());
    QCOMPARE(d->Label1->text(), u"正在收发信息......请稍候"_s);
    QCOMPARE(d->Text2Width(), 0);

    for (int step = 1; step <= 13; ++step) {
        d->Timer1_Timer();
        QCOMPARE(d->Text2Width(), 400 * step);
        QCOMPARE(d->Text2->width(), twips::toPixels(400 * step));
        QVERIFY2(d->isVisible(), qPrintable(u"closed after step %1"_s.arg(step)));
    }
    d->Timer1_Timer();
    QCOMPARE(d->Text2Width(), 5600);
    QVERIFY(!d->isVisible());
    QVERIFY(!d->Timer1->isActive());

    // The next run starts over from the first look.
    d = startRun(SendReceiveModes::ReceiveOnly);
    QCOMPARE(d->Label1->text(), u"正在连接服务器..."_s);
    QCOMPARE(d->Text2Width(), 0);
    QVERIFY(d->Timer2->isActive());
}

void tst_frmSendAndReceive::runs_data()
{
    QTest::addColumn<int>("mode");
    QTest::addColumn<QList<Mail>>("outbox");
    QTest::addColumn<QList<Mail>>("queue");
    QTest::addColumn<bool>("sendFailed");
    QTest::addColumn<QString>("inboxCaption");  // one unread message was there before
    QTest::addColumn<QList<int>>("counts");  // Inbox (two before), Outbox, Sent Items, queue after the run

    const Mail toBob = to(Bob);
    const Mail toBoth = to(Bob + u";"_s + Alice);
    const Mail noAt = to(u"nobody"_s);
    QTest::newRow("send and receive: sent mail comes straight back")
        << 0 << QList<Mail>{toBob} << QList<Mail>{} << false << u"收件箱(2)"_s
        << QList<int>{3, 0, 1, 0};
    QTest::newRow("receive only: one message for two accounts arrives twice")
        << 1 << QList<Mail>{toBob} << QList<Mail>{toBoth} << false << u"收件箱(3)"_s
        << QList<int>{4, 1, 0, 0};
    QTest::newRow("receive only, nothing for us: caption unchanged")
        << 1 << QList<Mail>{} << QList<Mail>{to(u"carol@c.cn"_s)} << false << u"收件箱(1)"_s
        << QList<int>{2, 0, 0, 1};
    QTest::newRow("send only: the queue fills, the Inbox waits")
        << 2 << QList<Mail>{toBob} << QList<Mail>{} << false << u"收件箱(1)"_s
        << QList<int>{2, 0, 1, 1};
    QTest::newRow("send and receive, bad second message: receive still runs")
        << 0 << QList<Mail>{toBob, noAt, toBob} << QList<Mail>{toBob} << true << u"收件箱(2)"_s
        << QList<int>{3, 3, 0, 0};
}

void tst_frmSendAndReceive::runs()
{
    QFETCH(int, mode);
    QFETCH(QList<Mail>, outbox);
    QFETCH(QList<Mail>, queue);
    QFETCH(bool, sendFailed);
    QFETCH(QString, inboxCaption);
    QFETCH(QList<int>, counts);

    fixtures::writeAccounts(*dir, {Alice, Bob});
    fixtures::writeFolder(*dir, FolderFile::Inbox, fixtures::mails(2, 1));
    fixtures::writeFolder(*dir, FolderFile::Outbox, outbox);
    fixtures::writeFolder(*dir, FolderFile::ServerQueue, queue);
    frmMain *w = openMainAt(Node::LocalFolders);

    frmSendAndReceive *d = startRun(qint16(mode));

    // Every file is written while the dialog loads.
    QCOMPARE(d->SendFailed, sendFailed);
    QCOMPARE((QList<int>{countIn(FolderFile::Inbox), countIn(FolderFile::Outbox),
                         countIn(FolderFile::SentItems), countIn(FolderFile::ServerQueue)}),
             counts);
    QCOMPARE(w->node(Node::Inbox)->text(0), inboxCaption);
    QVERIFY(w->node(Node::Inbox)->font(0).bold());
    const QString unread = inboxCaption.mid(4, inboxCaption.size() - 5);
    QCOMPARE(w->ListView2->topLevelItem(0)->text(1), unread);
    QCOMPARE(w->InboxUnread, unread.toShort());
    QVERIFY(d->Timer2->isActive());
}

void tst_frmSendAndReceive::failedSendOnlyWaitsForItsCaller()
{
    fixtures::writeAccounts(*dir, {Alice});
    fixtures::writeFolder(*dir, FolderFile::Outbox, {to(Bob), to(u"nobody"_s), to(Bob)});
    const QByteArray before = folderFiles(*dir);
    forms::Main()->show();

    frmSendAndReceive *d = startRun(SendReceiveModes::SendOnly);

    QVERIFY(d->SendFailed);
    QCOMPARE(folderFiles(*dir), before);
    QVERIFY(!d->Timer2->isActive());
    QTest::qWait(300);
    QVERIFY(d->isVisible());
    QCOMPARE(d->Label1->text(), u"正在连接服务器..."_s);
    QCOMPARE(d->Text2Width(), 0);

    // The caller unloads it; the next run clears the flag.
    d->close();
    QVERIFY(!d->isVisible());
    d = startRun(SendReceiveModes::ReceiveOnly);
    QVERIFY(!d->SendFailed);
}

void tst_frmSendAndReceive::timersFinishTheRunOnTheirOwn()
{
    fixtures::writeAccounts(*dir, {Bob});
    fixtures::writeFolder(*dir, FolderFile::ServerQueue, {to(Bob)});
    frmMain *w = openMainAt(Node::Inbox);

    frmSendAndReceive *d = startRun(SendReceiveModes::ReceiveOnly);
    QVERIFY(d->isVisible());
    QTRY_VERIFY_WITH_TIMEOUT(!d->isVisible(), 5000);
    QCOMPARE(d->Text2Width(), 5600);
    QCOMPARE(w->ListView1->topLevelItemCount(), 1);
    QCOMPARE(w->node(Node::Inbox)->text(0), u"收件箱(1)"_s);
}

void tst_frmSendAndReceive::shownFolderIsRedrawn_data()
{
    QTest::addColumn<int>("node");
    QTest::addColumn<int>("rowsWhileLoaded");
    QTest::addColumn<int>("rowsAfterRun");
    // One Outbox message for Bob, one queued message for Bob, mode 0; the
    // Deleted Items list is never redrawn by a run.
    QTest::newRow("Inbox") << Node::Inbox << 0 << 2;
    QTest::newRow("Outbox") << Node::Outbox << 1 << 0;
    QTest::newRow("Sent Items") << Node::SentItems << 0 << 1;
    QTest::newRow("Deleted Items") << Node::DeletedItems << 1 << 1;
}

void tst_frmSendAndReceive::shownFolderIsRedrawn()
{
    QFETCH(int, node);
    QFETCH(int, rowsWhileLoaded);
    QFETCH(int, rowsAfterRun);
    fixtures::writeAccounts(*dir, {Bob});
    fixtures::writeFolder(*dir, FolderFile::Outbox, {to(Bob)});
    fixtures::writeFolder(*dir, FolderFile::ServerQueue, {to(Bob)});
    fixtures::writeFolder(*dir, FolderFile::DeletedItems, {to(Bob)});
    frmMain *w = openMainAt(node);

    frmSendAndReceive *d = startRun(SendReceiveModes::SendAndReceive);
    QCOMPARE(w->ListView1->topLevelItemCount(), rowsWhileLoaded);
    d->Timer2_Timer();
    for (int tick = 0; tick < 14; ++tick)
        d->Timer1_Timer();
    QVERIFY(!d->isVisible());
    QCOMPARE(w->ListView1->topLevelItemCount(), rowsAfterRun);
}

QTEST_MAIN(tst_frmSendAndReceive)
#include "tst_frmSendAndReceive.moc"
