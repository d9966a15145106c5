// The send-and-receive dialog: its two timers' phases, and how a run that
// cannot go on ends, with the main window showing what the files hold.

#include "sendrecv/engine.h"
#include "store/folders.h"
#include "texts.h"
#include "ui/common/forms.h"
#include "ui/common/twips.h"
#include "ui/main/foldernodes.h"
#include "ui/main/frmMain.h"
#include "ui/sendrecv/frmSendAndReceive.h"
#include "windows.h"

#include <QGuiApplication>
#include <QLabel>
#include <QLineEdit>
#include <QPushButton>
#include <QScreen>
#include <QTest>
#include <QTimer>
#include <QTreeWidget>

using namespace Qt::Literals::StringLiterals;
using namespace testsupport;
using Icon = Prompter::Icon;

class tst_sendreceive : public WindowTest
{
    Q_OBJECT

private slots:
    void init() { begin(); }
    void cleanup() { end(); }

    void barGrowsInFourteenStepsThenUnloads();
    void runsThatCannotGoOn_data();
    void runsThatCannotGoOn();
};

void tst_sendreceive::barGrowsInFourteenStepsThenUnloads()
{
    frmSendAndReceive::start(SendReceiveModes::ReceiveOnly, false);
    frmSendAndReceive *d = forms::SendAndReceive();
    QCOMPARE(d->Label1->text(), texts::sendreceive::Connecting);
    // Centred by whole-number halves of the free space, in twips.
    const QRect s = QGuiApplication::primaryScreen()->geometry();
    const auto half = [](int screenPx, int designTw) {
        return twips::toPixels((int(twips::fromPixels(screenPx) + 0.5) - designTw) / 2);
    };
    QCOMPARE(d->pos(), QPoint(half(s.width(), frmSendAndReceive::DesignWidth),
                              half(s.height(), frmSendAndReceive::DesignHeight)));
    QVERIFY(d->Timer2->isActive() && d->Timer2->interval() == 150);
    for (QPushButton *b : {d->Command1, d->Command2, d->Command3})
        QTest::mouseClick(b, Qt::LeftButton);  // inert: the run goes on
    QVERIFY(d->isVisible() && d->Timer2->isActive() && !d->Timer1->isActive());

    d->Timer2_Timer();
    QVERIFY(!d->Timer2->isActive() && d->Timer1->isActive() && d->Timer1->interval() == 5);
    QCOMPARE(d->Label1->text(), texts::sendreceive::Working);
    for (int step = 1; step <= 13; ++step) {
        d->Timer1_Timer();
        QCOMPARE(d->Text2Width(), 400 * step);
        QVERIFY(d->isVisible());
    }
    d->Timer1_Timer();
    QCOMPARE(d->Text2Width(), 5600);
    QVERIFY(!d->isVisible() && !d->Timer1->isActive());

    // The next run starts from the first look.
    frmSendAndReceive::start(SendReceiveModes::ReceiveOnly, false);
    QCOMPARE(d->Label1->text(), texts::sendreceive::Connecting);
    QCOMPARE(d->Text2Width(), 0);
}

void tst_sendreceive::runsThatCannotGoOn_data()
{
    QTest::addColumn<qint16>("mode");
    QTest::addColumn<int>("inbox");  // messages in the Inbox before
    QTest::addColumn<QString>("to");  // of the Outbox message
    QTest::addColumn<QString>("title");
    QTest::addColumn<QString>("text");
    QTest::addColumn<QString>("summary");  // the Inbox row's figures after
    QTest::newRow("send only, a recipient without @: ends at once with the name check")
        << qint16(2) << 0 << u"nobody"_s << texts::NameCheckTitle << texts::NameCheckFailed
        << u"0 0"_s;
    QTest::newRow("send and receive, the same: received, then the name check")
        << qint16(0) << 0 << u"nobody"_s << texts::NameCheckTitle << texts::NameCheckFailed
        << u"1 1"_s;
    QTest::newRow("a full Inbox: sent, not received, and said so")
        << qint16(0) << 101 << u"a@x.com"_s << texts::AppTitle
        << texts::SentButNotReceived + u"\r\r"_s + texts::TooManyMails << u"0 101"_s;
}

void tst_sendreceive::runsThatCannotGoOn()
{
    QFETCH(qint16, mode);
    QFETCH(int, inbox);
    QFETCH(QString, to);
    QFETCH(QString, title);
    QFETCH(QString, text);
    putAccounts(*dir, {u"a@x.com"_s});
    put(*dir, FolderFile::Inbox, mails(inbox));
    put(*dir, FolderFile::Outbox, {mail(u"1"_s, u"a@x.com"_s, to)});
    put(*dir, FolderFile::ServerQueue, {mail(u"2"_s, u"b@y.cn"_s, u"a@x.com"_s, u"q"_s, true)});
    frmMain *w = mainOn(Node::LocalFolders);
    boxes->expectMessage(text == texts::NameCheckFailed ? Icon::Information : Icon::Exclamation,
                         title, text);

    frmSendAndReceive::start(mode, false);

    // The run ends by itself, its box after it; the summary shows what the
    // files hold, both figures of a row alike.
    QTRY_VERIFY(!forms::SendAndReceive()->isVisible());
    QTRY_VERIFY(boxes->done());
    const QTreeWidgetItem *row = w->ListView2->topLevelItem(0);
    QTEST(QString(row->text(1) + u' ' + row->text(2)), "summary");
    QCOMPARE(w->node(Node::Inbox)->text(0).endsWith(u')'), row->text(1) != u"0");
}

QTEST_MAIN(tst_sendreceive)
#include "tst_sendreceive.moc"
