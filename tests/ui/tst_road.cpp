// A new trainee's whole road, with the keyboard alone: the first account
// through the wizard that a send-and-receive calls up, a second one from
// the Tools menu, a message from the first to the second, received, read,
// answered, deleted and deleted for good. After the steps: what the user
// sees and what the files hold.

#include "store/clock.h"
#include "store/folders.h"
#include "texts.h"
#include "ui/accounts/frmMailBox.h"
#include "ui/common/forms.h"
#include "ui/main/foldernodes.h"
#include "ui/main/frmMain.h"
#include "ui/message/frmMailEdit.h"
#include "ui/message/frmMailRead.h"
#include "ui/sendrecv/frmSendAndReceive.h"
#include "windows.h"

#include <QComboBox>
#include <QLabel>
#include <QLineEdit>
#include <QMenu>
#include <QPushButton>
#include <QTest>
#include <QTextEdit>
#include <QTreeWidget>

using namespace Qt::Literals::StringLiterals;
using namespace testsupport;
using Icon = Prompter::Icon;

namespace {
// Where the keyboard's keys go: an open menu, else the focus.
QWidget *keyboard()
{
    if (QWidget *menu = QApplication::activePopupWidget())
        return menu;
    return QApplication::focusWidget() ? QApplication::focusWidget() : QApplication::activeWindow();
}

// Keys as a user types them: "Alt+F N M", "Ctrl+M", or text in quotes.
void press(const QString &keys)
{
    if (keys.startsWith(u'"')) {
        QTest::keyClicks(keyboard(), keys.mid(1, keys.size() - 2));
        return;
    }
    for (const QString &k : keys.split(u' ', Qt::SkipEmptyParts)) {
        const QKeyCombination c = QKeySequence(k)[0];
        QTest::keyClick(keyboard(), c.key(), c.keyboardModifiers());
    }
}

// The window the user returns to: offscreen, a closed modal window does
// not hand the activation back by itself.
bool activate(QWidget *window)
{
    window->activateWindow();
    return QTest::qWaitForWindowActive(window);
}

// The six folders, each as "subject:isnew" per message: Inbox, Outbox,
// Sent Items, Deleted Items, Drafts, queue.
QString folders()
{
    QStringList all;
    for (int f = 0; f < FolderFile::Count; ++f) {
        QStringList one;
        for (const EmailRec &m : stored(f))
            one << m.subject + u':' + m.isnew;
        all << one.join(u',');
    }
    return all.join(u" | "_s);
}

// The wizard's five pages, answered from the keyboard.
void wizard(ModalScript &script, const QString &name, const QString &address)
{
    const QStringList pages = {u"\"%1\" Return"_s.arg(name), u"\"%1\" Return"_s.arg(address),
                               u"\"pop.x.cn\" Tab \"smtp.x.cn\" Return"_s,
                               u"\"%1\" Tab \"pw\" Return"_s.arg(name), u"Return"_s};
    for (int i = 0; i < pages.size(); ++i) {
        const QString keys = pages[i];
        script.on(u"frmMainBoxAdd%1"_s.arg(i + 1), [keys](QWidget *page) {
            QVERIFY(QTest::qWaitForWindowActive(page));
            for (const QString &part : keys.split(u' '))
                press(part);
        });
    }
    script.start();
}
}  // namespace

class tst_road : public WindowTest
{
    Q_OBJECT

private slots:
    void init()
    {
        begin();
        SetClock([] { return QDateTime(QDate(2024, 7, 9), QTime(14, 5)); });
    }
    void cleanup()
    {
        SetClock({});
        end();
    }
    void byKeyboardAlone();
};

void tst_road::byKeyboardAlone()
{
    frmMain *w = mainOn();
    QVERIFY(QTest::qWaitForWindowActive(w));

    // 1. CTRL+M with no account: the wizard sets up the first, the run goes on.
    ModalScript first;
    wizard(first, u"ann"_s, u"Ann@x.cn"_s);
    press(u"Ctrl+M"_s);
    QVERIFY2(first.finished(), first.report());
    QTRY_VERIFY(!forms::SendAndReceive()->isVisible());

    // 2. Tools, Accounts: the dialog; the add button's menu, Mail: the
    // wizard again; Escape closes the dialog.
    QVERIFY(activate(w));
    press(u"Alt+T A"_s);
    frmMailBox *accounts = forms::MailBox();
    QTRY_VERIFY(accounts->isActiveWindow());
    accounts->btnAddNew->setFocus();  // Tab stops, checked in the keyboard test
    ModalScript second;
    wizard(second, u"bob"_s, u"bob@x.cn"_s);
    press(u"Space"_s);
    QTRY_VERIFY(accounts->btMnu->isVisible());
    press(u"Down Return"_s);
    QVERIFY2(second.finished(), second.report());
    QCOMPARE(accounts->ListView1->topLevelItemCount(), 2);
    QVERIFY(activate(accounts));
    press(u"Escape"_s);
    QVERIFY(!accounts->isVisible());

    // 3. File, New, Mail: write to Bob and send it from the File menu.
    QVERIFY(activate(w));
    press(u"Alt+F N M"_s);
    frmMailEdit *e = forms::MailEdit();
    QTRY_VERIFY(e->isActiveWindow());
    QCOMPARE(e->Combo3->currentText(), u"ann@x.cn"_s);
    press(u"\"bob@x.cn\""_s);
    press(u"Alt+S"_s);
    press(u"\"Hello\""_s);
    press(u"Tab"_s);
    press(u"\"Hi Bob\""_s);
    press(u"Alt+F M"_s);
    QTRY_VERIFY(!e->isVisible());
    QCOMPARE(folders(), u" |  | hello:0 |  |  | hello:1"_s);

    // 4. CTRL+M receives it; the Inbox turns bold.
    QVERIFY(activate(w));
    press(u"Ctrl+M"_s);
    QTRY_VERIFY(!forms::SendAndReceive()->isVisible());
    QCOMPARE(w->node(Node::Inbox)->text(0), u"收件箱(1)"_s);

    // 5. Into the tree, down to the Inbox, into its list, open the message.
    QVERIFY(activate(w));
    w->TreeView1->setFocus();
    press(u"Home Down Down Return Return"_s);
    frmMailRead *r = forms::MailRead();
    QTRY_VERIFY(r->isActiveWindow());
    QCOMPARE(r->Label8->text(), u"hello"_s);
    QCOMPARE(w->node(Node::Inbox)->text(0), u"收件箱"_s);

    // 6. CTRL+R answers it; the reply goes out later from the File menu.
    press(u"Ctrl+R"_s);
    QTRY_VERIFY(e->isActiveWindow());
    QCOMPARE(e->Text5->text(), u"Re:hello"_s);
    boxes->expectMessage(Icon::Information, texts::AppTitle, texts::compose::SendLaterNotice);
    // The File menu opens on its first entry, New (&N); the next N is Send
    // Later (&N).
    press(u"Alt+F N Return"_s);
    QTRY_VERIFY(!e->isVisible());

    // 7. Delete moves the message to Deleted Items; there Delete and Yes
    // remove it for good.
    QVERIFY(activate(w));
    w->ListView1->setFocus();
    press(u"Home Delete"_s);
    QCOMPARE(folders(), u" | re:hello:0 | hello:0 | hello:0 |  | "_s);
    w->TreeView1->setFocus();
    press(u"Down Down Down Return Home"_s);
    QCOMPARE(w->TreeView1->currentItem(), w->node(Node::DeletedItems));
    boxes->expectConfirm(Icon::Exclamation, texts::AppTitle, texts::AskDeleteForGood, true);
    press(u"Delete"_s);
    QCOMPARE(folders(), u" | re:hello:0 | hello:0 |  |  | "_s);
    QCOMPARE(w->Text1->toPlainText(), texts::NoMailSelected);
}

QTEST_MAIN(tst_road)
#include "tst_road.moc"
