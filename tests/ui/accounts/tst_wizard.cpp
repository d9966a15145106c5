// The new-account wizard, driven page by page as a user would, and
// EnsureMailBox, which leads a first-time user into it.

#include "accountsfixture.h"

#include "store/records.h"
#include "texts.h"
#include "ui/accounts/ensuremailbox.h"
#include "ui/accounts/frmMailBox.h"
#include "ui/accounts/frmMainBoxAdd1.h"
#include "ui/accounts/frmMainBoxAdd2.h"
#include "ui/accounts/frmMainBoxAdd3.h"
#include "ui/accounts/frmMainBoxAdd4.h"
#include "ui/accounts/frmMainBoxAdd5.h"
#include "ui/common/application.h"
#include "ui/common/forms.h"
#include "ui/main/frmMain.h"

#include <QAction>
#include <QApplication>
#include <QCheckBox>
#include <QComboBox>
#include <QLabel>
#include <QLineEdit>
#include <QPushButton>
#include <QRadioButton>
#include <QScreen>
#include <QTest>

using namespace Qt::Literals::StringLiterals;
using namespace accountstest;
using testsupport::DataDir;
using testsupport::ScriptedPrompter;
using Icon = Prompter::Icon;

namespace {
const QString QuitText = u"新的 Internet 账号尚未创建。\r\r您确信要退出向导吗?"_s;

QDialog *page(int n)
{
    switch (n) {
    case 1: return forms::MainBoxAdd1();
    case 2: return forms::MainBoxAdd2();
    case 3: return forms::MainBoxAdd3();
    case 4: return forms::MainBoxAdd4();
    default: return forms::MainBoxAdd5();
    }
}

QList<int> openPages()
{
    QList<int> open;
    for (int n = 1; n <= 5; ++n)
        if (page(n)->isVisible())
            open.append(n);
    return open;
}
}  // namespace

class tst_wizard : public QObject
{
    Q_OBJECT

private slots:
    void cleanup() { forms::destroyAll(); }

    void nextButtonRule_data()
    {
        QTest::addColumn<int>("pageNo");
        QTest::addColumn<QStringList>("acts");  // "Box=text", "Box=" erases, "click Name"
        QTest::addColumn<bool>("nextEnabled");
        QTest::newRow("page 1 opens with Next disabled") << 1 << QStringList() << false;
        QTest::newRow("page 1 allows Next once a name is typed") << 1 << QStringList{u"Text1=Ann"_s} << true;
        QTest::newRow("page 1 disables Next when the name is erased again")
            << 1 << QStringList{u"Text1=Ann"_s, u"Text1="_s} << false;
        QTest::newRow("page 2 opens with Next disabled") << 2 << QStringList() << false;
        QTest::newRow("page 2 allows Next once an address is typed")
            << 2 << QStringList{u"Text1=a@b.c"_s} << true;
        QTest::newRow("page 2 disables Next when the address is erased")
            << 2 << QStringList{u"Text1=a@b.c"_s, u"Text1="_s} << false;
        QTest::newRow("page 2 choosing sign-up does not allow Next")
            << 2 << QStringList{u"click Option2"_s} << false;
        QTest::newRow("page 2 choosing sign-up keeps a typed address's Next")
            << 2 << QStringList{u"Text1=a@b.c"_s, u"click Option2"_s} << true;
        QTest::newRow("page 3 opens with Next disabled") << 3 << QStringList() << false;
        QTest::newRow("page 3 keeps Next disabled with only the incoming server")
            << 3 << QStringList{u"Text1=pop"_s} << false;
        QTest::newRow("page 3 keeps Next disabled with only the outgoing server")
            << 3 << QStringList{u"Text2=smtp"_s} << false;
        QTest::newRow("page 3 allows Next with both servers")
            << 3 << QStringList{u"Text1=pop"_s, u"Text2=smtp"_s} << true;
        QTest::newRow("page 3 disables Next when one server is erased")
            << 3 << QStringList{u"Text1=pop"_s, u"Text2=smtp"_s, u"Text1="_s} << false;
        QTest::newRow("page 4 opens with Next disabled") << 4 << QStringList() << false;
        QTest::newRow("page 4 allows Next with a name and no password")
            << 4 << QStringList{u"Text1=ann"_s} << true;
        QTest::newRow("page 4 keeps Next disabled with only a password")
            << 4 << QStringList{u"Text2=pw"_s} << false;
        QTest::newRow("page 4 disables Next when the name is erased")
            << 4 << QStringList{u"Text1=ann"_s, u"Text2=pw"_s, u"Text1="_s} << false;
        QTest::newRow("page 5 always offers Finish") << 5 << QStringList() << true;
    }

    void nextButtonRule()
    {
        QFETCH(int, pageNo);
        QFETCH(QStringList, acts);
        QFETCH(bool, nextEnabled);
        QDialog *p = page(pageNo);
        p->show();
        QCOMPARE(p->windowTitle(), u"Internet 连接向导"_s);
        for (const QString &act : acts) {
            if (act.startsWith(u"click "_s)) {
                click(p, act.mid(6));
            } else {
                const QString box = act.section(u'=', 0, 0);
                const QString text = act.section(u'=', 1);
                if (text.isEmpty())
                    erase(p, box);
                else
                    type(p, box, text);
            }
        }
        QCOMPARE(enabled(p, pageNo == 5 ? u"btnOK"_s : u"btnForWard"_s), nextEnabled);
    }

    void pagesAreCentredAndShowTheirTexts()
    {
        frmMainBoxAdd2 *p = forms::MainBoxAdd2();
        p->show();
        const QRect screen = QGuiApplication::primaryScreen()->geometry();
        QVERIFY(qAbs(p->x() - (screen.width() - p->frameGeometry().width()) / 2) <= 1);
        QVERIFY(qAbs(p->y() - (screen.height() - p->frameGeometry().height()) / 2) <= 1);
        QVERIFY(p->Label3->text().startsWith(u"例如: "_s));
        QCOMPARE(p->Combo1->count(), 1);
        QCOMPARE(p->Combo1->itemText(0), u"Tessamail"_s);
        QCOMPARE(forms::MainBoxAdd3()->Combo1->currentText(), u"POP3"_s);
        QCOMPARE(forms::MainBoxAdd5()->btnOK->text(), u"完成"_s);
        QCOMPARE(forms::MainBoxAdd1()->btnBackWard->text(), u"< 上一步(&B)"_s);
        QCOMPARE(forms::MainBoxAdd1()->btnForWard->text(), u"下一步(&N) >"_s);
    }

    void addressPageOptionsSwitchTheBoxes()
    {
        frmMainBoxAdd2 *p = forms::MainBoxAdd2();
        p->show();
        QVERIFY(p->Option1->isChecked() && p->Text1->isEnabled() && !p->Combo1->isEnabled());
        click(p, u"Option2"_s);
        QVERIFY(!p->Text1->isEnabled() && p->Combo1->isEnabled());
        click(p, u"Option1"_s);
        QVERIFY(p->Text1->isEnabled() && !p->Combo1->isEnabled());
    }

    void rememberPasswordGreysThePasswordBox()
    {
        frmMainBoxAdd4 *p = forms::MainBoxAdd4();
        p->show();
        QVERIFY(p->Check1->isChecked());
        const QPalette system = QApplication::palette(p->Text2);
        click(p, u"Check1"_s);
        QVERIFY(!p->Text2->isEnabled());
        QCOMPARE(p->Text2->palette().color(QPalette::Base), system.color(QPalette::Button));
        click(p, u"Check1"_s);
        QVERIFY(p->Text2->isEnabled());
        QCOMPARE(p->Text2->palette().color(QPalette::Base), system.color(QPalette::Base));
    }

    void finishingAddsExactlyOneAccount()
    {
        DataDir dir;
        writeAccounts(dir, accounts(2));
        WizardAnswers answers;
        answers.displayName = u"Work Mail"_s;  // stored lower-cased, like every value
        ModalScript script;
        walkWizard(script, answers, 4, false);
        // A password that is not to be remembered is still stored.
        script.on(pageName(4), [](QWidget *w) {
            click(w, u"Check1"_s);
            click(w, u"btnForWard"_s);
        });
        script.on(pageName(5), [](QWidget *w) { click(w, u"btnOK"_s); });
        script.start();
        forms::MailBox()->mnuEmail_Click();
        QVERIFY2(script.finished(), script.report());
        QCOMPARE(openPages(), QList<int>());
        QCOMPARE(dir.readBytes(MailBoxFileName),
                 accountFile(accounts(2) << storedRecord(answers)));
        QCOMPARE(forms::MailBox()->AccountCount, 3);
    }

    void cancellingAddsNothing_data()
    {
        QTest::addColumn<int>("onPage");
        QTest::addColumn<bool>("byEscape");
        for (int n = 1; n <= 5; ++n)
            QTest::addRow("Cancel on page %d closes it and every page below", n) << n << false;
        QTest::newRow("Escape on page 3 asks the same question") << 3 << true;
    }

    void cancellingAddsNothing()
    {
        QFETCH(int, onPage);
        QFETCH(bool, byEscape);
        DataDir dir;
        writeAccounts(dir, accounts(1));
        ScriptedPrompter boxes;
        boxes.expectConfirm(Icon::Warning, u"Internet 连接向导"_s, QuitText, true);
        QList<int> openWhenAsked;
        ModalScript script;
        walkWizard(script, WizardAnswers(), onPage, false);
        script.on(pageName(onPage), [&](QWidget *w) {
            openWhenAsked = openPages();
            if (byEscape)
                QTest::keyClick(w, Qt::Key_Escape);
            else
                click(w, u"btnCancel"_s);
        });
        script.start();
        forms::MailBox()->mnuEmail_Click();
        QVERIFY2(script.finished(), script.report());
        QVERIFY2(boxes.done(), boxes.report());
        QCOMPARE(openWhenAsked.size(), onPage);
        QCOMPARE(openPages(), QList<int>());
        QVERIFY(!forms::MailBox()->Changed);
        QCOMPARE(dir.readBytes(MailBoxFileName), accountFile(accounts(1)));
    }

    void cancelAnsweredNoLeavesEveryPageOpen()
    {
        DataDir dir;
        ScriptedPrompter boxes;
        boxes.expectConfirm(Icon::Warning, u"Internet 连接向导"_s, QuitText, false);
        ModalScript script;
        WizardAnswers answers;
        walkWizard(script, answers, 3, false);
        script.on(pageName(3), [](QWidget *w) { click(w, u"btnCancel"_s); });
        script.on(pageName(3), [&](QWidget *w) {
            QCOMPARE(openPages(), (QList<int>{1, 2, 3}));
            QCOMPARE(forms::MainBoxAdd1()->Text1->text(), answers.displayName);
            QCOMPARE(forms::MainBoxAdd2()->Text1->text(), answers.address);
            QCOMPARE(forms::MainBoxAdd3()->Text2->text(), answers.outgoing);
            click(w, u"btnForWard"_s);
        });
        script.on(pageName(4), [&](QWidget *w) {
            type(w, u"Text1"_s, answers.logon);
            type(w, u"Text2"_s, answers.password);
            click(w, u"btnForWard"_s);
        });
        script.on(pageName(5), [](QWidget *w) { click(w, u"btnOK"_s); });
        script.start();
        forms::MailBox()->mnuEmail_Click();
        QVERIFY2(script.finished(), script.report());
        QVERIFY2(boxes.done(), boxes.report());
        QCOMPARE(dir.readBytes(MailBoxFileName), accountFile({storedRecord(answers)}));
    }

    void backFromPage4AndForwardAgain()
    {
        DataDir dir;
        WizardAnswers answers;
        ModalScript script;
        walkWizard(script, answers, 4, false);
        script.on(pageName(4), [](QWidget *w) {
            click(w, u"Check1"_s);
            click(w, u"btnBackWard"_s);
        });
        script.on(pageName(3), [&](QWidget *w) {
            // The page below comes back as it was left.
            QCOMPARE(openPages(), (QList<int>{1, 2, 3}));
            QCOMPARE(forms::MainBoxAdd3()->Text1->text(), answers.incoming);
            erase(w, u"Text1"_s);
            type(w, u"Text1"_s, u"POP.other.com"_s);
            click(w, u"btnForWard"_s);
        });
        script.on(pageName(4), [&](QWidget *w) {
            frmMainBoxAdd4 *p = forms::MainBoxAdd4();
            QVERIFY(p->Text1->text().isEmpty() && p->Text2->text().isEmpty());
            QVERIFY(!p->btnForWard->isEnabled());
            QVERIFY(p->Check1->isChecked() && p->Text2->isEnabled());
            type(w, u"Text1"_s, answers.logon);
            click(w, u"btnForWard"_s);
        });
        script.on(pageName(5), [](QWidget *w) { click(w, u"btnBackWard"_s); });
        script.on(pageName(4), [](QWidget *w) { click(w, u"btnForWard"_s); });
        script.on(pageName(5), [](QWidget *w) { click(w, u"btnOK"_s); });
        script.start();
        forms::MailBox()->mnuEmail_Click();
        QVERIFY2(script.finished(), script.report());
        MailBoxRec expected = storedRecord(answers);
        expected.pop = u"pop.other.com"_s;
        expected.userpassword.clear();
        QCOMPARE(dir.readBytes(MailBoxFileName), accountFile({expected}));
    }

    void aSecondRunStartsWithEmptyBoxes()
    {
        DataDir dir;
        ModalScript first;
        walkWizard(first, WizardAnswers());
        first.start();
        forms::MailBox()->mnuEmail_Click();
        QVERIFY2(first.finished(), first.report());

        ScriptedPrompter boxes;
        boxes.expectConfirm(Icon::Warning, u"Internet 连接向导"_s, QuitText, true);
        ModalScript second;
        second.on(pageName(1), [](QWidget *w) {
            QVERIFY(forms::MainBoxAdd1()->Text1->text().isEmpty());
            QVERIFY(!enabled(w, u"btnForWard"_s));
            click(w, u"btnCancel"_s);
        });
        second.start();
        forms::MailBox()->mnuEmail_Click();
        QVERIFY2(second.finished(), second.report());
        QCOMPARE(forms::MailBox()->AccountCount, 1);
    }

    void ensureMailBox_data()
    {
        QTest::addColumn<int>("present");
        QTest::addColumn<bool>("finish");
        QTest::addColumn<bool>("abandon");
        QTest::addColumn<int>("afterwards");
        // Storing the account rebuilds the accounts dialog, which clears
        // Changed: the command ends even though the account now exists.
        QTest::newRow("no account: a finished wizard stores it and still ends the command")
            << 0 << true << true << 1;
        QTest::newRow("no account: a cancelled wizard ends the command") << 0 << false << true << 0;
        QTest::newRow("an account on file: no wizard") << 1 << false << false << 1;
    }

    void ensureMailBox()
    {
        QFETCH(int, present);
        QFETCH(bool, finish);
        QFETCH(bool, abandon);
        QFETCH(int, afterwards);
        DataDir dir;  // starts without any file
        if (present)
            writeAccounts(dir, accounts(present));
        ScriptedPrompter boxes;
        ModalScript script;
        if (!present) {
            walkWizard(script, WizardAnswers(), finish ? 5 : 2, finish);
            if (!finish) {
                boxes.expectConfirm(Icon::Warning, u"Internet 连接向导"_s, QuitText, true);
                script.on(pageName(2), [](QWidget *w) { click(w, u"btnCancel"_s); });
            }
            script.start();
        }
        QCOMPARE(EnsureMailBox(), abandon);
        QVERIFY2(script.finished(), script.report());
        QVERIFY2(boxes.done(), boxes.report());
        QVERIFY(!forms::MailBox()->isVisible());
        if (afterwards == 0)
            QVERIFY(!dir.exists(MailBoxFileName));
        else if (present)
            QCOMPARE(dir.readBytes(MailBoxFileName), accountFile(accounts(present)));
        else
            QCOMPARE(dir.readBytes(MailBoxFileName), accountFile({storedRecord(WizardAnswers())}));
    }

    void sendAndReceiveLeadsANewUserThroughTheWizard_data()
    {
        QTest::addColumn<QString>("command");
        QTest::newRow("send and receive") << u"mnuRSMail"_s;
        QTest::newRow("send all") << u"mnuSendMail"_s;
    }

    void sendAndReceiveLeadsANewUserThroughTheWizard()
    {
        QFETCH(QString, command);
        DataDir dir;
        frmMain *main = forms::Main();
        main->show();
        ModalScript script;
        walkWizard(script, WizardAnswers());
        script.start();
        (command == u"mnuRSMail" ? main->mnuRSMail : main->mnuSendMail)->trigger();
        QVERIFY2(script.finished(), script.report());
        QCOMPARE(dir.readBytes(MailBoxFileName), accountFile({storedRecord(WizardAnswers())}));
    }
};

ACCOUNTS_TEST_MAIN(tst_wizard)
#include "tst_wizard.moc"
