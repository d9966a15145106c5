// The accounts dialog: its list, the hit test of a click, deleting, the
// tabs, the add menu and the 22nd account; a new user's first two accounts.

#include "accountsfixture.h"

#include "texts.h"
#include "ui/accounts/frmMailBox.h"
#include "ui/accounts/frmMainBoxAdd3.h"
#include "ui/common/application.h"
#include "ui/common/twips.h"
#include "ui/sendrecv/frmSendAndReceive.h"
#include "store/folders.h"
#include "ui/main/foldernodes.h"
#include "ui/main/frmMain.h"
#include "ui/message/frmMailEdit.h"

#include <QAction>
#include <QComboBox>
#include <QLineEdit>
#include <QPlainTextEdit>
#include <QHeaderView>
#include <QMenu>
#include <QPushButton>
#include <QScreen>
#include <QTabBar>
#include <QTest>
#include <QToolBar>
#include <QTreeWidget>

using namespace Qt::Literals::StringLiterals;
using namespace accountstest;
using testsupport::DataDir;
using testsupport::ScriptedPrompter;

namespace {
frmMailBox *openDialog()
{
    frmMailBox *d = forms::MailBox();
    d->show();
    return d;
}

QStringList rows(const frmMailBox *d)
{
    QStringList texts;
    for (int i = 0; i < d->ListView1->topLevelItemCount(); ++i)
        texts.append(d->ListView1->topLevelItem(i)->text(0));
    return texts;
}

QStringList logonNames(const QList<MailBoxRec> &records)
{
    QStringList names;
    for (const MailBoxRec &r : records)
        names.append(r.username);
    return names;
}

void clickList(frmMailBox *d, int row)  // -1: empty space below the rows
{
    const QWidget *v = d->ListView1->viewport();
    const QPoint at = row < 0 ? QPoint(v->width() / 2, v->height() - 4)
                              : d->ListView1->visualItemRect(d->ListView1->topLevelItem(row)).center();
    QTest::mouseClick(d->ListView1->viewport(), Qt::LeftButton, {}, at);
}

void clickTab(QTabBar *bar, const QString &caption)
{
    for (int i = 0; i < bar->count(); ++i)
        if (bar->tabText(i) == caption)
            QTest::mouseClick(bar, Qt::LeftButton, {}, bar->tabRect(i).center());
}

void chooseAddMail(frmMailBox *d)
{
    QTest::mouseClick(d->btnAddNew, Qt::LeftButton);
    QTest::mouseClick(d->btMnu, Qt::LeftButton, {}, d->btMnu->actionGeometry(d->mnuEmail).center());
}

bool canDeleteOrEdit(const frmMailBox *d)
{
    return d->btnDelete->isEnabled() && d->btnProperty->isEnabled();
}
}  // namespace

class tst_frmMailBox : public QObject
{
    Q_OBJECT

private slots:
    void cleanup() { forms::destroyAll(); }

    void listsTheAccountsByLogonName_data()
    {
        QTest::addColumn<int>("count");
        QTest::addColumn<bool>("fileExists");
        QTest::newRow("no file gives an empty list") << 0 << false;
        QTest::newRow("number=0 gives an empty list") << 0 << true;
        QTest::newRow("three accounts give three rows") << 3 << true;
    }

    void listsTheAccountsByLogonName()
    {
        QFETCH(int, count);
        QFETCH(bool, fileExists);
        DataDir dir;
        if (fileExists)
            writeAccounts(dir, accounts(count));
        frmMailBox *d = openDialog();
        QCOMPARE(rows(d), logonNames(accounts(count)));
        for (int i = 0; i < count; ++i) {
            QCOMPARE(d->ListView1->topLevelItem(i)->text(1), u"邮件"_s);
            QCOMPARE(d->ListView1->topLevelItem(i)->text(2), u"任何可用连接"_s);
        }
        QVERIFY(!d->btnDelete->isEnabled() && !d->btnProperty->isEnabled());
        QVERIFY(!d->Command[0]->isEnabled() && !d->Command[2]->isEnabled() && d->Command[3]->isEnabled());
        QVERIFY(!d->ListView1->header()->sectionsClickable());
        QCOMPARE(d->ListView1->header()->sectionSize(1), twips::toPixels(1400));
    }

    void placement_data()
    {
        QTest::addColumn<bool>("accountsDialog");
        QTest::addColumn<int>("share");
        QTest::addColumn<int>("parts");
        QTest::newRow("the accounts dialog opens at two fifths of the free space") << true << 2 << 5;
        QTest::newRow("a wizard page opens centred") << false << 1 << 2;
    }

    void placement()
    {
        QFETCH(bool, accountsDialog);
        QFETCH(int, share);
        QFETCH(int, parts);
        DataDir dir;
        QWidget *w = accountsDialog ? static_cast<QWidget *>(forms::MailBox()) : forms::MainBoxAdd3();
        w->show();
        const QRect screen = QGuiApplication::primaryScreen()->geometry();
        QVERIFY(qAbs(w->x() - share * (screen.width() - w->frameGeometry().width()) / parts) <= 1);
        QVERIFY(qAbs(w->y() - share * (screen.height() - w->frameGeometry().height()) / parts) <= 1);
    }

    void clickingEmptySpaceTakesTheSelectionAway()
    {
        DataDir dir;
        writeAccounts(dir, accounts(3));
        frmMailBox *d = openDialog();
        clickList(d, 1);
        QVERIFY(canDeleteOrEdit(d) && d->ListView1->topLevelItem(1)->isSelected());
        QCOMPARE(d->SelectedName, u"logon2"_s);
        clickList(d, -1);
        QVERIFY(!d->btnDelete->isEnabled() && !d->btnProperty->isEnabled());
        QVERIFY(d->ListView1->selectedItems().isEmpty());
        QCOMPARE(d->SelectedIndex, 1.0f);  // remembered, though no longer usable
    }

    void deletingAnAccount_data()
    {
        QTest::addColumn<int>("count");
        QTest::addColumn<int>("row");
        QTest::addColumn<bool>("yes");
        QTest::addColumn<QList<int>>("left");  // fixture numbers still on file
        QTest::newRow("the only account leaves number=0") << 1 << 0 << true << QList<int>{};
        QTest::newRow("slot 3 of 5 moves the later ones up") << 5 << 2 << true << QList<int>{1, 2, 4, 5};
        QTest::newRow("the last of 5") << 5 << 4 << true << QList<int>{1, 2, 3, 4};
        QTest::newRow("answering No keeps them all") << 3 << 1 << false << QList<int>{1, 2, 3};
    }

    void deletingAnAccount()
    {
        QFETCH(int, count);
        QFETCH(int, row);
        QFETCH(bool, yes);
        QFETCH(QList<int>, left);
        DataDir dir;
        writeAccounts(dir, accounts(count));
        frmMailBox *d = openDialog();
        ScriptedPrompter boxes;
        // The question names the logon name, not the display name.
        boxes.expectConfirm(Prompter::Icon::Warning, u"Internet 账号"_s,
                            u"您确信要删除'logon%1'账号吗?"_s.arg(row + 1), yes);
        clickList(d, row);
        QTest::mouseClick(d->btnDelete, Qt::LeftButton);
        QVERIFY2(boxes.done(), boxes.report());
        QList<MailBoxRec> expected;
        for (int k : left)
            expected.append(account(k));
        QCOMPARE(dir.readBytes(MailBoxFileName), accountFile(expected));
        QCOMPARE(rows(d), logonNames(expected));
        QCOMPARE(canDeleteOrEdit(d), !yes);  // a rebuild disables them again
    }

    // The table is read from the file only while the dialog holds none.
    void theFileIsReadOnlyWhenNoAccountIsHeld()
    {
        DataDir dir;
        frmMailBox *d = openDialog();
        d->close();
        writeAccounts(dir, accounts(2));
        d->show();
        QCOMPARE(rows(d).size(), 2);
        d->close();
        writeAccounts(dir, accounts(4));
        d->show();
        QCOMPARE(rows(d).size(), 2);
    }

    void tabs_data()
    {
        QTest::addColumn<QString>("tab");
        QTest::addColumn<int>("rowsShown");
        QTest::addColumn<bool>("buttonsKept");
        QTest::newRow("新闻 shows an empty list, buttons as they were") << u"新闻"_s << 0 << true;
        QTest::newRow("目录服务 shows an empty list, buttons as they were") << u"目录服务"_s << 0 << true;
        QTest::newRow("邮件 shows every account and resets the buttons") << u"邮件"_s << 3 << false;
    }

    void tabs()
    {
        QFETCH(QString, tab);
        QFETCH(int, rowsShown);
        QFETCH(bool, buttonsKept);
        DataDir dir;
        writeAccounts(dir, accounts(3));
        frmMailBox *d = openDialog();
        clickList(d, 0);
        clickTab(d->TabStrip1, tab);
        QCOMPARE(d->ListView1->topLevelItemCount(), rowsShown);
        QCOMPARE(canDeleteOrEdit(d), buttonsKept);
        clickTab(d->TabStrip1, u"全部"_s);
        QCOMPARE(d->ListView1->topLevelItemCount(), 3);
    }

    void theAddMenuPopsUpAtTheButtonsCorner()
    {
        DataDir dir;
        frmMailBox *d = openDialog();
        QTest::mouseClick(d->btnAddNew, Qt::LeftButton);
        QVERIFY(d->btMnu->isVisible());
        QCOMPARE(d->btMnu->pos(), d->mapToGlobal(QPoint(438, 16)));
        QCOMPARE(d->btnAddNew->geometry().topRight() + QPoint(1, 0), QPoint(438, 16));
        QCOMPARE(d->btMnu->actions().size(), 3);
    }

    void aTwentySecondAccountIsRefusedWithNothingWritten()
    {
        DataDir dir;
        writeAccounts(dir, accounts(21));
        frmMailBox *d = openDialog();
        ScriptedPrompter boxes;
        boxes.expectMessage(Prompter::Icon::Exclamation, u"Quillpost Express"_s,
                            QuillpostApplication::abandonedText(texts::TooManyAccounts));
        ModalScript script;
        walkWizard(script, WizardAnswers());
        script.start();
        chooseAddMail(d);
        QVERIFY2(script.finished(), script.report());
        QVERIFY2(boxes.done(), boxes.report());
        QCOMPARE(dir.readBytes(MailBoxFileName), accountFile(accounts(21)));
        QCOMPARE(rows(d).size(), 21);
        QCOMPARE(d->AccountCount, 21);  // the dialog's own table is left as it was
    }

    // Send/Receive on an empty data folder leads through the wizard, and the
    // run goes on once the account exists; the second account comes from the
    // Accounts menu item's modeless dialog; then the first writes to the
    // second and the message arrives.
    void aNewUserSetsUpTwoAccountsAndWritesFromOneToTheOther()
    {
        DataDir dir;
        frmMain *main = forms::Main();
        main->show();
        WizardAnswers first;
        ModalScript script;
        walkWizard(script, first);
        script.start();
        fixtures::clickButton(main, frmMain::tbSendReceive);
        QVERIFY2(script.finished(), script.report());

        QCOMPARE(main->T9->text(), u"账号(&A)..."_s);
        main->T9->trigger();
        frmMailBox *d = forms::MailBox();
        QVERIFY(d->isVisible() && !d->isModal() && !QApplication::activeModalWidget());
        QCOMPARE(rows(d), QStringList{u"NewLogon"_s});  // as typed: only the file is lower-cased
        const WizardAnswers second{u"Second"_s, u"second@example.com"_s, u"pop.example.com"_s,
                                   u"smtp.example.com"_s, u"second"_s, u"pw"_s};
        walkWizard(script, second);
        script.start();
        chooseAddMail(d);
        QVERIFY2(script.finished(), script.report());
        QCOMPARE(rows(d), (QStringList{u"NewLogon"_s, u"second"_s}));
        QCOMPARE(dir.readBytes(MailBoxFileName),
                 accountFile({storedRecord(first), storedRecord(second)}));
        QTest::mouseClick(d->btnClose, Qt::LeftButton);
        QVERIFY(!d->isVisible());
        QCOMPARE(d->AccountCount, 2);  // the object outlives the window

        fixtures::clickButton(main, frmMain::tbNewMail);
        frmMailEdit *e = forms::MailEdit();
        QCOMPARE(e->Combo3->currentText(), u"new.office@example.com"_s);
        QTest::keyClicks(e->Text3, u"second@example.com"_s);
        QTest::keyClicks(e->Text5, u"Hello"_s);
        QTest::keyClicks(e->Text1, u"First mail"_s);
        // Returns once the send-only run has closed.
        fixtures::clickButton(e->Toolbar1, e->toolbarButton(frmMailEdit::tbSend));
        QVERIFY(!e->isVisible());

        fixtures::clickButton(main, frmMain::tbSendReceive);
        QTRY_VERIFY(!forms::SendAndReceive()->isVisible());
        QCOMPARE(main->node(Node::Inbox)->text(0), u"收件箱(1)"_s);
        QVERIFY(main->node(Node::Inbox)->font(0).bold());
        const QList<EmailRec> inbox = fixtures::stored(FolderFile::Inbox);
        QCOMPARE(inbox.size(), 1);
        QCOMPARE(inbox[0].from, u"new.office@example.com"_s);
        QCOMPARE(inbox[0].to, u"second@example.com"_s);
        QCOMPARE(inbox[0].subject, u"hello"_s);
        QCOMPARE(inbox[0].isnew, u"1"_s);
    }
};

ACCOUNTS_TEST_MAIN(tst_frmMailBox)
#include "tst_frmMailBox.moc"
