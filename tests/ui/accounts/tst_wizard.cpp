// The new-account wizard, driven page by page, and EnsureMailBox, which
// leads a first-time user into it.

#include "accountsfixture.h"

#include "ui/accounts/ensuremailbox.h"
#include "ui/accounts/frmMailBox.h"
#include "ui/accounts/frmMainBoxAdd1.h"
#include "ui/accounts/frmMainBoxAdd2.h"
#include "ui/accounts/frmMainBoxAdd3.h"
#include "ui/accounts/frmMainBoxAdd4.h"
#include "ui/accounts/frmMainBoxAdd5.h"
#include "ui/common/application.h"
#include "store/folders.h"
#include "ui/main/frmMain.h"
#include "ui/message/frmMailEdit.h"

#include <QAction>
#include <QCheckBox>
#include <QComboBox>
#include <QLineEdit>
#include <QToolBar>
#include <QPushButton>
#include <QTest>

using namespace Qt::Literals::StringLiterals;
using namespace accountstest;
using testsupport::DataDir;
using testsupport::ScriptedPrompter;

namespace {
const QString QuitText = u"新的 Internet 账号尚未创建。\r\r您确信要退出向导吗?"_s;

void expectQuitQuestion(ScriptedPrompter &boxes, bool yes)
{
    boxes.expectConfirm(Prompter::Icon::Warning, u"Internet 连接向导"_s, QuitText, yes);
}

QDialog *page(int n)
{
    QDialog *pages[] = {forms::MainBoxAdd1(), forms::MainBoxAdd2(), forms::MainBoxAdd3(),
                        forms::MainBoxAdd4(), forms::MainBoxAdd5()};
    return pages[n - 1];
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
        const auto row = [](const char *name, int p, QStringList acts, bool on) {
            QTest::newRow(name) << p << acts << on;
        };
        row("page 1 opens with Next disabled", 1, {}, false);
        row("page 1 allows Next once a name is typed", 1, {u"Text1=Ann"_s}, true);
        row("page 1 disables Next when the name is erased", 1, {u"Text1=Ann"_s, u"Text1="_s}, false);
        row("page 2 opens with Next disabled", 2, {}, false);
        row("page 2 allows Next once an address is typed", 2, {u"Text1=a@b.c"_s}, true);
        row("page 2 sign-up does not allow Next", 2, {u"click Option2"_s}, false);
        row("page 2 sign-up keeps a typed address's Next", 2, {u"Text1=a@b.c"_s, u"click Option2"_s}, true);
        row("page 3 opens with Next disabled", 3, {}, false);
        row("page 3 refuses only the incoming server", 3, {u"Text1=pop"_s}, false);
        row("page 3 refuses only the outgoing server", 3, {u"Text2=smtp"_s}, false);
        row("page 3 allows Next with both servers", 3, {u"Text1=pop"_s, u"Text2=smtp"_s}, true);
        row("page 3 disables Next when one is erased", 3,
            {u"Text1=pop"_s, u"Text2=smtp"_s, u"Text1="_s}, false);
        row("page 4 opens with Next disabled", 4, {}, false);
        row("page 4 allows Next with a name and no password", 4, {u"Text1=ann"_s}, true);
        row("page 4 refuses a password alone", 4, {u"Text2=pw"_s}, false);
        row("page 5 always offers Finish", 5, {}, true);
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
            const QString box = act.section(u'=', 0, 0), text = act.section(u'=', 1);
            if (act.startsWith(u"click "_s))
                click(p, act.mid(6));
            else if (text.isEmpty())
                erase(p, box);
            else
                type(p, box, text);
        }
        const auto *next = p->findChild<QPushButton *>(pageNo == 5 ? u"btnOK"_s : u"btnForWard"_s);
        QCOMPARE(next->isEnabled(), nextEnabled);
    }

    void optionsAndRememberPasswordSwitchTheBoxes()
    {
        frmMainBoxAdd2 *p2 = forms::MainBoxAdd2();
        p2->show();
        QVERIFY(p2->Text1->isEnabled() && !p2->Combo1->isEnabled());
        click(p2, u"Option2"_s);
        QVERIFY(!p2->Text1->isEnabled() && p2->Combo1->isEnabled());
        QCOMPARE(p2->Combo1->currentText(), u"Tessamail"_s);
        click(p2, u"Option1"_s);
        QVERIFY(p2->Text1->isEnabled() && !p2->Combo1->isEnabled());

        frmMainBoxAdd4 *p4 = forms::MainBoxAdd4();
        p4->show();
        const QPalette system = QApplication::palette(p4->Text2);
        click(p4, u"Check1"_s);
        QVERIFY(!p4->Text2->isEnabled());
        QCOMPARE(p4->Text2->palette().color(QPalette::Base), system.color(QPalette::Button));
        click(p4, u"Check1"_s);
        QVERIFY(p4->Text2->isEnabled());
        QCOMPARE(p4->Text2->palette().color(QPalette::Base), system.color(QPalette::Base));
    }

    void finishingAddsExactlyOneAccount()
    {
        DataDir dir;
        writeAccounts(dir, accounts(2));
        WizardAnswers answers;
        answers.displayName = u"Work Mail"_s;  // stored lower-cased
        ModalScript script;
        walkWizard(script, answers, 4, false);
        script.on(pageName(4), [](QWidget *w) {
            click(w, u"Check1"_s);  // a password not remembered is still stored
            click(w, u"btnForWard"_s);
        });
        script.on(pageName(5), [](QWidget *w) { click(w, u"btnOK"_s); });
        script.start();
        forms::MailBox()->mnuEmail_Click();
        QVERIFY2(script.finished(), script.report());
        QCOMPARE(openPages(), QList<int>());
        QCOMPARE(dir.readBytes(MailBoxFileName), accountFile(accounts(2) << storedRecord(answers)));
    }

    void cancellingAddsNothing_data()
    {
        QTest::addColumn<int>("onPage");
        QTest::addColumn<bool>("byEscape");
        for (int n = 1; n <= 5; ++n)
            QTest::addRow("Cancel on page %d closes it and every page below", n) << n << false;
        QTest::newRow("Escape asks the same question") << 3 << true;
    }

    void cancellingAddsNothing()
    {
        QFETCH(int, onPage);
        QFETCH(bool, byEscape);
        DataDir dir;
        writeAccounts(dir, accounts(1));
        ScriptedPrompter boxes;
        expectQuitQuestion(boxes, true);
        QList<int> openWhenAsked;
        ModalScript script;
        walkWizard(script, WizardAnswers(), onPage, false);
        script.on(pageName(onPage), [&](QWidget *w) {
            openWhenAsked = openPages();
            byEscape ? QTest::keyClick(w, Qt::Key_Escape) : click(w, u"btnCancel"_s);
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

    // Back uncovers the page below as it was left; Cancel answered No
    // changes nothing; a page shown again starts empty.
    void backCancelNoAndForwardAgain()
    {
        DataDir dir;
        WizardAnswers answers;
        ScriptedPrompter boxes;
        expectQuitQuestion(boxes, false);
        ModalScript script;
        walkWizard(script, answers, 4, false);
        script.on(pageName(4), [](QWidget *w) {
            click(w, u"Check1"_s);
            click(w, u"btnBackWard"_s);
        });
        script.on(pageName(3), [&](QWidget *w) {
            click(w, u"btnCancel"_s);
            QCOMPARE(openPages(), (QList<int>{1, 2, 3}));
            QCOMPARE(forms::MainBoxAdd1()->Text1->text(), answers.displayName);
            QCOMPARE(forms::MainBoxAdd3()->Text1->text(), answers.incoming);
            erase(w, u"Text1"_s);
            type(w, u"Text1"_s, u"POP.other.com"_s);
            click(w, u"btnForWard"_s);
        });
        script.on(pageName(4), [&](QWidget *w) {
            frmMainBoxAdd4 *p = forms::MainBoxAdd4();
            QVERIFY(p->Text1->text().isEmpty() && p->Text2->text().isEmpty());
            QVERIFY(!p->btnForWard->isEnabled() && p->Check1->isChecked() && p->Text2->isEnabled());
            type(w, u"Text1"_s, answers.logon);
            click(w, u"btnForWard"_s);
        });
        script.on(pageName(5), [](QWidget *w) { click(w, u"btnBackWard"_s); });
        script.on(pageName(4), [](QWidget *w) { click(w, u"btnForWard"_s); });
        script.on(pageName(5), [](QWidget *w) { click(w, u"btnOK"_s); });
        script.start();
        forms::MailBox()->mnuEmail_Click();
        QVERIFY2(script.finished(), script.report());
        QVERIFY2(boxes.done(), boxes.report());
        MailBoxRec expected = storedRecord(answers);
        expected.pop = u"pop.other.com"_s;
        expected.userpassword.clear();
        QCOMPARE(dir.readBytes(MailBoxFileName), accountFile({expected}));
    }

    void ensureMailBox_data()
    {
        QTest::addColumn<int>("present");
        QTest::addColumn<bool>("finish");
        QTest::addColumn<bool>("abandon");
        QTest::newRow("no account: a finished wizard stores it and the command goes on")
            << 0 << true << false;
        QTest::newRow("no account: a cancelled wizard ends the command") << 0 << false << true;
        QTest::newRow("an account on file: no wizard, the command goes on") << 1 << false << false;
    }

    void ensureMailBox()
    {
        QFETCH(int, present);
        QFETCH(bool, finish);
        QFETCH(bool, abandon);
        DataDir dir;  // no file at all unless an account is present
        if (present)
            writeAccounts(dir, accounts(present));
        ScriptedPrompter boxes;
        ModalScript script;
        if (!present) {
            walkWizard(script, WizardAnswers(), finish ? 5 : 2, finish);
            if (!finish) {
                expectQuitQuestion(boxes, true);
                script.on(pageName(2), [](QWidget *w) { click(w, u"btnCancel"_s); });
            }
            script.start();
        }
        QCOMPARE(EnsureMailBox(), abandon);
        QVERIFY2(script.finished(), script.report());
        QVERIFY2(boxes.done(), boxes.report());
        QVERIFY(!forms::MailBox()->isVisible());
        if (present)
            QCOMPARE(dir.readBytes(MailBoxFileName), accountFile(accounts(present)));
        else if (finish)
            QCOMPARE(dir.readBytes(MailBoxFileName), accountFile({storedRecord(WizardAnswers())}));
        else
            QVERIFY(!dir.exists(MailBoxFileName));
    }

    void composeSendLeadsANewUserThroughTheWizard_data()
    {
        QTest::addColumn<bool>("finish");
        QTest::newRow("finished: the message is sent") << true;
        QTest::newRow("cancelled: nothing stored, the window stays") << false;
    }

    // Send with no sender chosen (there is no account yet) asks for an
    // account first; the message leaves only if one was set up.
    void composeSendLeadsANewUserThroughTheWizard()
    {
        QFETCH(bool, finish);
        DataDir dir;
        ScriptedPrompter boxes;
        frmMain *main = forms::Main();
        main->show();
        main->AddNewMail->trigger();
        frmMailEdit *e = forms::MailEdit();
        QVERIFY(e->Combo3->currentText().isEmpty());
        QTest::keyClicks(e->Text3, u"friend@example.com"_s);

        ModalScript script;
        walkWizard(script, WizardAnswers(), finish ? 5 : 1, finish);
        if (!finish) {
            expectQuitQuestion(boxes, true);
            script.on(pageName(1), [](QWidget *w) { click(w, u"btnCancel"_s); });
        }
        script.start();
        fixtures::clickButton(e->Toolbar1, e->toolbarButton(frmMailEdit::tbSend));
        QVERIFY2(script.finished(), script.report());
        QVERIFY2(boxes.done(), boxes.report());

        QCOMPARE(fixtures::stored(FolderFile::SentItems).size(), finish ? 1 : 0);
        QCOMPARE(e->isVisible(), !finish);
        QCOMPARE(dir.exists(MailBoxFileName), finish);
        QVERIFY(!dir.exists(u"send_c.dat"_s) || dir.readBytes(u"send_c.dat"_s)
                                                    == "[email]\r\nnumber=0\r\n\r\n");
    }
};

ACCOUNTS_TEST_MAIN(tst_wizard)
#include "tst_wizard.moc"
