// The accounts dialog: its list, the hit test of a click, deleting, the
// tabs, the add menu and the 22nd account, opened from the main window.

#include "accountsfixture.h"

#include "store/records.h"
#include "texts.h"
#include "ui/accounts/frmMailBox.h"
#include "ui/common/application.h"
#include "ui/common/forms.h"
#include "ui/common/twips.h"
#include "ui/main/frmMain.h"

#include <QAction>
#include <QGuiApplication>
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
using Icon = Prompter::Icon;

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

void clickRow(frmMailBox *d, int row)
{
    const QRect r = d->ListView1->visualItemRect(d->ListView1->topLevelItem(row));
    QTest::mouseClick(d->ListView1->viewport(), Qt::LeftButton, {}, r.center());
}

void clickEmptySpace(frmMailBox *d)
{
    const QWidget *v = d->ListView1->viewport();
    QTest::mouseClick(d->ListView1->viewport(), Qt::LeftButton, {},
                      QPoint(v->width() / 2, v->height() - 4));
}

void clickTab(QTabBar *bar, const QString &caption)
{
    for (int i = 0; i < bar->count(); ++i)
        if (bar->tabText(i) == caption)
            QTest::mouseClick(bar, Qt::LeftButton, {}, bar->tabRect(i).center());
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
        QCOMPARE(d->windowTitle(), u"Internet 账号"_s);
        QStringList expected;
        for (const MailBoxRec &r : accounts(count))
            expected.append(r.username);
        QCOMPARE(rows(d), expected);
        for (int i = 0; i < count; ++i) {
            QCOMPARE(d->ListView1->topLevelItem(i)->text(1), u"邮件"_s);
            QCOMPARE(d->ListView1->topLevelItem(i)->text(2), u"任何可用连接"_s);
            QVERIFY(!d->ListView1->topLevelItem(i)->icon(0).isNull());
        }
        QVERIFY(!d->btnDelete->isEnabled() && !d->btnProperty->isEnabled());
        QVERIFY(!d->Command[0]->isEnabled() && !d->Command[1]->isEnabled()
                && !d->Command[2]->isEnabled() && d->Command[3]->isEnabled());
        QCOMPARE(d->AccountCount, count);
        QVERIFY(!d->ListView1->header()->sectionsClickable());
        QCOMPARE(d->ListView1->header()->sectionSize(1), twips::toPixels(1400));
    }

    void opensAtTwoFifthsOfTheFreeSpace()
    {
        DataDir dir;
        frmMailBox *d = openDialog();
        const QRect screen = QGuiApplication::primaryScreen()->geometry();
        QVERIFY(qAbs(d->x() - 2 * (screen.width() - d->frameGeometry().width()) / 5) <= 1);
        QVERIFY(qAbs(d->y() - 2 * (screen.height() - d->frameGeometry().height()) / 5) <= 1);
    }

    void clickingEmptySpaceTakesTheSelectionAway()
    {
        DataDir dir;
        writeAccounts(dir, accounts(3));
        frmMailBox *d = openDialog();
        clickRow(d, 1);
        QVERIFY(canDeleteOrEdit(d));
        QCOMPARE(d->SelectedIndex, 1.0f);
        QCOMPARE(d->SelectedName, u"logon2"_s);
        QVERIFY(d->ListView1->topLevelItem(1)->isSelected());

        clickEmptySpace(d);
        QVERIFY(!d->btnDelete->isEnabled() && !d->btnProperty->isEnabled());
        QVERIFY(d->ListView1->selectedItems().isEmpty());
        QCOMPARE(d->SelectedName, u"logon2"_s);  // remembered, though no longer usable
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
        boxes.expectConfirm(Icon::Warning, u"Internet 账号"_s,
                            u"您确信要删除'logon%1'账号吗?"_s.arg(row + 1), yes);
        clickRow(d, row);
        QTest::mouseClick(d->btnDelete, Qt::LeftButton);
        QVERIFY2(boxes.done(), boxes.report());

        QList<MailBoxRec> expected;
        QStringList names;
        for (int k : left) {
            expected.append(account(k));
            names.append(account(k).username);
        }
        QCOMPARE(dir.readBytes(MailBoxFileName), accountFile(expected));
        QCOMPARE(rows(d), names);
        QCOMPARE(d->AccountCount, left.size());
        QCOMPARE(canDeleteOrEdit(d), !yes);  // a rebuild disables them again
    }

    void afterDeletingTheLastAccountTheFileIsReadAgain()
    {
        DataDir dir;
        writeAccounts(dir, accounts(1));
        frmMailBox *d = openDialog();
        ScriptedPrompter boxes;
        boxes.expectConfirm(Icon::Warning, u"Internet 账号"_s, u"您确信要删除'logon1'账号吗?"_s, true);
        clickRow(d, 0);
        QTest::mouseClick(d->btnDelete, Qt::LeftButton);
        d->close();
        // With no account in memory, the next opening reads the file...
        writeAccounts(dir, accounts(2));
        d->show();
        QCOMPARE(rows(d), (QStringList{u"logon1"_s, u"logon2"_s}));
        d->close();
        // ...but with accounts in memory it keeps its own table.
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
        clickRow(d, 0);
        clickTab(d->TabStrip1, tab);
        QCOMPARE(d->ListView1->topLevelItemCount(), rowsShown);
        QCOMPARE(canDeleteOrEdit(d), buttonsKept);
        clickTab(d->TabStrip1, u"全部"_s);
        QCOMPARE(d->ListView1->topLevelItemCount(), 3);
        QVERIFY(!canDeleteOrEdit(d));
    }

    void theAddMenuStartsTheWizardAndStoresTheAccount()
    {
        DataDir dir;
        writeAccounts(dir, accounts(2));
        frmMailBox *d = openDialog();
        QTest::mouseClick(d->btnAddNew, Qt::LeftButton);
        QVERIFY(d->btMnu->isVisible());
        QCOMPARE(d->btMnu->pos(), d->mapToGlobal(QPoint(438, 16)));
        QCOMPARE(d->btnAddNew->geometry().topRight() + QPoint(1, 0), QPoint(438, 16));
        QStringList items;
        for (const QAction *a : d->btMnu->actions())
            items.append(a->text());
        QCOMPARE(items, (QStringList{u"邮件(&M)..."_s, u"新闻(&N)..."_s, u"目录服务(&D)..."_s}));

        ModalScript script;
        walkWizard(script, WizardAnswers());
        script.start();
        QTest::mouseClick(d->btMnu, Qt::LeftButton, {},
                          d->btMnu->actionGeometry(d->mnuEmail).center());
        QVERIFY2(script.finished(), script.report());
        QCOMPARE(dir.readBytes(MailBoxFileName),
                 accountFile(accounts(2) << storedRecord(WizardAnswers())));
        // The list shows the table in memory, as typed; only the file is lower-cased.
        QCOMPARE(rows(d).last(), u"NewLogon"_s);
        QVERIFY(!d->Changed);  // cleared by the rebuild
    }

    void aTwentySecondAccountIsRefusedWithNothingWritten()
    {
        DataDir dir;
        writeAccounts(dir, accounts(21));
        const QByteArray before = dir.readBytes(MailBoxFileName);
        frmMailBox *d = openDialog();
        ScriptedPrompter boxes;
        boxes.expectMessage(Icon::Exclamation, u"Quillpost Express"_s,
                            QuillpostApplication::abandonedText(texts::TooManyAccounts));
        ModalScript script;
        walkWizard(script, WizardAnswers());
        script.start();
        QTest::mouseClick(d->btnAddNew, Qt::LeftButton);
        QTest::mouseClick(d->btMnu, Qt::LeftButton, {},
                          d->btMnu->actionGeometry(d->mnuEmail).center());
        QVERIFY2(script.finished(), script.report());
        QVERIFY2(boxes.done(), boxes.report());
        QCOMPARE(dir.readBytes(MailBoxFileName), before);
        QCOMPARE(d->AccountCount, 21);
        QCOMPARE(rows(d).size(), 21);
    }

    void theAccountsMenuItemOpensItModeless()
    {
        DataDir dir;
        writeAccounts(dir, accounts(2));
        frmMain *main = forms::Main();
        main->show();
        QCOMPARE(main->T9->text(), u"账号(&A)..."_s);
        main->T9->trigger();
        frmMailBox *d = forms::MailBox();
        QVERIFY(d->isVisible());
        QVERIFY(!d->isModal() && !QApplication::activeModalWidget());
        QCOMPARE(rows(d).size(), 2);
        QTest::mouseClick(d->btnClose, Qt::LeftButton);
        QVERIFY(!d->isVisible());
        QCOMPARE(d->AccountCount, 2);  // the object outlives the window
    }

    // The first steps of a new user: Send/Receive on an empty data folder
    // leads through the wizard; the second account comes from the Accounts
    // menu item.
    void aNewUserSetsUpTwoAccounts()
    {
        DataDir dir;
        frmMain *main = forms::Main();
        main->show();
        WizardAnswers first;
        ModalScript script;
        walkWizard(script, first);
        script.start();
        QWidget *sendReceive = main->Toolbar1->widgetForAction(
            main->toolbarButton(frmMain::tbSendReceive));
        QTest::mouseClick(sendReceive, Qt::LeftButton);
        QVERIFY2(script.finished(), script.report());

        main->T9->trigger();
        frmMailBox *d = forms::MailBox();
        QCOMPARE(rows(d), QStringList{u"NewLogon"_s});
        WizardAnswers second{u"Second"_s, u"second@example.com"_s, u"pop.example.com"_s,
                             u"smtp.example.com"_s, u"second"_s, u"pw"_s};
        walkWizard(script, second);
        script.start();
        QTest::mouseClick(d->btnAddNew, Qt::LeftButton);
        QTest::mouseClick(d->btMnu, Qt::LeftButton, {},
                          d->btMnu->actionGeometry(d->mnuEmail).center());
        QVERIFY2(script.finished(), script.report());
        QCOMPARE(rows(d), (QStringList{u"NewLogon"_s, u"second"_s}));
        QCOMPARE(dir.readBytes(MailBoxFileName),
                 accountFile({storedRecord(first), storedRecord(second)}));
    }
};

ACCOUNTS_TEST_MAIN(tst_frmMailBox)
#include "tst_frmMailBox.moc"
