// The send-and-receive dialog driven as the main window's commands drive
// it: set the mode, show it, let the timers run. Checked on the dialog, the
// main window and the files.

#include "fixtures.h"
#include "sendrecv/engine.h"
#include "ui/sendrecv/frmSendAndReceive.h"
#include "store/clock.h"
#include "store/folders.h"
#include "store/state.h"
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

namespace {
const QString Alice = u"alice@a.cn"_s, Bob = u"bob@b.cn"_s;

Mail to(const QString &recipients)
{
    Mail m;
    m.to = recipients;
    return m;
}

int countIn(int folder)
{
    return int(fixtures::stored(folder).size());
}

frmSendAndReceive *startRun(qint16 mode)
{
    frmSendAndReceive *d = forms::SendAndReceive();
    d->SendReceiveMode = mode;
    d->show();
    return d;
}
}  // namespace

class tst_frmSendAndReceive : public fixtures::WindowTest
{
    Q_OBJECT

private slots:
    void init()
    {
        begin();
        SetClock([] { return QDateTime({2024, 5, 14}, {8, 30}); });
    }
    void cleanup()
    {
        SetClock({});
        end();
    }

    void barGrowsInFourteenStepsThenUnloads()
    {
        forms::Main()->show();
        frmSendAndReceive *d = startRun(SendReceiveModes::ReceiveOnly);
        QCOMPARE(d->windowTitle(), u"Quillpost Express"_s);
        QCOMPARE(d->Label1->text(), u"正在连接服务器..."_s);
        QCOMPARE((QStringList{d->Command1->text(), d->Command2->text(), d->Command3->text()}),
                 (QStringList{u"隐藏(&H)"_s, u"停止(&S)"_s, u"详细资料(&D) >>"_s}));
        // Centred by whole-number halves of the free space, in twips.
        const QRect s = QGuiApplication::primaryScreen()->geometry();
        const int left = twips::freeSpaceOffset(int(twips::fromPixels(s.width())),
                                                frmSendAndReceive::DesignWidth, 2);
        const int top = twips::freeSpaceOffset(int(twips::fromPixels(s.height())),
                                               frmSendAndReceive::DesignHeight, 2);
        QCOMPARE(d->pos(), s.topLeft() + QPoint(twips::toPixels(left), twips::toPixels(top)));
        QVERIFY(d->Timer2->isActive() && d->Timer2->interval() == 150);
        for (QPushButton *b : {d->Command1, d->Command2, d->Command3})
            QTest::mouseClick(b, Qt::LeftButton);  // inert: the run goes on
        QVERIFY(d->isVisible() && d->Timer2->isActive() && !d->Timer1->isActive());

        d->Timer2_Timer();
        QVERIFY(!d->Timer2->isActive() && d->Timer1->isActive() && d->Timer1->interval() == 5);
        QCOMPARE(d->Label1->text(), u"正在收发信息......请稍候"_s);
        for (int step = 1; step <= 13; ++step) {
            d->Timer1_Timer();
            QCOMPARE(d->Text2Width(), 400 * step);
            QCOMPARE(d->Text2->width(), twips::toPixels(400 * step));
            QVERIFY(d->isVisible());
        }
        d->Timer1_Timer();
        QCOMPARE(d->Text2Width(), 5600);
        QVERIFY(!d->isVisible() && !d->Timer1->isActive());

        // The next run starts from the first look.
        d = startRun(SendReceiveModes::ReceiveOnly);
        QCOMPARE(d->Label1->text(), u"正在连接服务器..."_s);
        QCOMPARE(d->Text2Width(), 0);
    }

    void runs_data()
    {
        QTest::addColumn<int>("mode");
        QTest::addColumn<QList<Mail>>("outbox");
        QTest::addColumn<QList<Mail>>("queue");
        QTest::addColumn<bool>("sendFailed");
        QTest::addColumn<int>("unread");  // 1 before the run
        QTest::addColumn<QList<int>>("counts");  // Inbox (2 before), Outbox, Sent, queue

        QTest::newRow("send and receive: the sent mail comes straight back")
            << 0 << QList<Mail>{to(Bob)} << QList<Mail>{} << false << 2
            << QList<int>{3, 0, 1, 0};
        QTest::newRow("receive only: for two accounts it arrives twice")
            << 1 << QList<Mail>{to(Bob)} << QList<Mail>{to(Bob + u";"_s + Alice)} << false << 3
            << QList<int>{4, 1, 0, 0};
        QTest::newRow("receive only, nothing for us")
            << 1 << QList<Mail>{} << QList<Mail>{to(u"carol@c.cn"_s)} << false << 1
            << QList<int>{2, 0, 0, 1};
        QTest::newRow("send only: the queue fills, the Inbox waits")
            << 2 << QList<Mail>{to(Bob)} << QList<Mail>{} << false << 1 << QList<int>{2, 0, 1, 1};
        QTest::newRow("send and receive, bad second message: receive still runs")
            << 0 << QList<Mail>{to(Bob), to(u"nobody"_s), to(Bob)} << QList<Mail>{to(Bob)} << true
            << 2 << QList<int>{3, 3, 0, 0};
    }
    void runs()
    {
        QFETCH(int, mode);
        QFETCH(int, unread);
        fixtures::writeAccounts(*dir, {Alice, Bob});
        fixtures::writeFolder(*dir, FolderFile::Inbox, fixtures::mails(2, 1));
        QFETCH(QList<Mail>, outbox);
        QFETCH(QList<Mail>, queue);
        fixtures::writeFolder(*dir, FolderFile::Outbox, outbox);
        fixtures::writeFolder(*dir, FolderFile::ServerQueue, queue);
        frmMain *w = fixtures::mainOn(Node::LocalFolders);

        frmSendAndReceive *d = startRun(qint16(mode));

        // Every file is written while the dialog loads.
        QTEST(d->SendFailed, "sendFailed");
        QTEST((QList<int>{countIn(FolderFile::Inbox), countIn(FolderFile::Outbox),
                          countIn(FolderFile::SentItems), countIn(FolderFile::ServerQueue)}),
              "counts");
        QCOMPARE(w->node(Node::Inbox)->text(0), u"收件箱(%1)"_s.arg(unread));
        QVERIFY(w->node(Node::Inbox)->font(0).bold());
        QCOMPARE(w->ListView2->topLevelItem(0)->text(1), QString::number(unread));
        QVERIFY(d->Timer2->isActive());
    }

    void failedSendOnlyWaitsForItsCaller()
    {
        fixtures::writeAccounts(*dir, {Alice});
        fixtures::writeFolder(*dir, FolderFile::Outbox, {to(Bob), to(u"nobody"_s), to(Bob)});
        const QByteArray outbox = dir->readBytes(FolderFile::fileName(FolderFile::Outbox));
        forms::Main()->show();

        frmSendAndReceive *d = startRun(SendReceiveModes::SendOnly);
        QVERIFY(d->SendFailed);
        QTest::qWait(300);
        QVERIFY(d->isVisible() && !d->Timer2->isActive() && d->Text2Width() == 0);
        QCOMPARE(dir->readBytes(FolderFile::fileName(FolderFile::Outbox)), outbox);
        QVERIFY(!dir->exists(FolderFile::fileName(FolderFile::SentItems)));

        d->close();  // what the caller does; the next run clears the flag
        QVERIFY(!startRun(SendReceiveModes::ReceiveOnly)->SendFailed);
    }

    void shownFolderIsRedrawn_data()
    {
        QTest::addColumn<int>("node");
        QTest::addColumn<int>("rowsWhileLoaded");
        QTest::addColumn<int>("rowsAfterRun");
        // Mode 0 with one Outbox and one queued message for Bob. A run never
        // redraws Deleted Items.
        QTest::newRow("Inbox") << Node::Inbox << 0 << 2;
        QTest::newRow("Outbox") << Node::Outbox << 1 << 0;
        QTest::newRow("Sent Items") << Node::SentItems << 0 << 1;
        QTest::newRow("Deleted Items") << Node::DeletedItems << 1 << 1;
    }
    void shownFolderIsRedrawn()
    {
        fixtures::writeAccounts(*dir, {Bob});
        for (int folder : {FolderFile::Outbox, FolderFile::ServerQueue, FolderFile::DeletedItems})
            fixtures::writeFolder(*dir, folder, {to(Bob)});
        QFETCH(int, node);
        frmMain *w = fixtures::mainOn(node);

        frmSendAndReceive *d = startRun(SendReceiveModes::SendAndReceive);
        QTEST(w->ListView1->topLevelItemCount(), "rowsWhileLoaded");
        QTRY_VERIFY_WITH_TIMEOUT(!d->isVisible(), 5000);  // the timers alone finish the run
        QTEST(w->ListView1->topLevelItemCount(), "rowsAfterRun");
    }
};

QTEST_MAIN(tst_frmSendAndReceive)
#include "tst_frmSendAndReceive.moc"
