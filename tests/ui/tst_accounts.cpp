// The accounts dialog, the new-account wizard and the properties dialog, by mouse and keyboard.

#include "store/commit.h"
#include "ui/accounts/ensuremailbox.h"
#include "windows.h"

#include <numeric>

using namespace Qt::Literals::StringLiterals;
using namespace testsupport;
namespace t = texts::accounts;

namespace {
// The accounts of the given numbers, in that order; display and logon names differ.
QList<MailBoxRec> accounts(const QList<int> &numbers)
{
    QList<MailBoxRec> list;
    for (int k : numbers)
        list.append({u"office %1"_s.arg(k), u"pop%1"_s.arg(k), u"smtp%1"_s.arg(k), u"logon%1"_s.arg(k),
                     u"pw%1"_s.arg(k), u"user%1@x.cn"_s.arg(k)});
    return list;
}
// Accounts 1..n.
QList<MailBoxRec> accounts(int n)
{
    QList<int> numbers(n);
    return std::iota(numbers.begin(), numbers.end(), 1), accounts(numbers);
}
// The account the wizard walk of windows.cpp sets up, stored in lower case.
const MailBoxRec walked{u"new office"_s, u"pop.example.com"_s, u"smtp.example.com"_s,
                        u"newlogon"_s, u"secret"_s, u"new.office@example.com"_s};

frmMailBox *openDialog(const DataDir &dir, const QList<MailBoxRec> &onFile)
{
    dir.writeBytes(MailBoxFileName, AccountBytes(onFile));
    forms::MailBox()->show();
    // Keys reach it once it is the active window, as it is for a user.
    QApplication::setActiveWindow(forms::MailBox());
    return forms::MailBox();
}

// The dialog's rows by logon name, "*" after the one chosen.
QStringList rows(const frmMailBox *d)
{
    QStringList out;
    for (int i = 0; i < d->ListView1->topLevelItemCount(); ++i) {
        const QTreeWidgetItem *r = d->ListView1->topLevelItem(i);
        out << r->text(0) + (r->isSelected() ? u"*"_s : QString());
    }
    return out;
}

QDialog *wizardPage(int n)
{
    return QList<QDialog *>{forms::MainBoxAdd1(), forms::MainBoxAdd2(), forms::MainBoxAdd3(),
                            forms::MainBoxAdd4(), forms::MainBoxAdd5()}.at(n - 1);
}
// The wizard's pages on screen, as "12" for the first two.
QString openPages()
{
    QString open;
    for (int n = 1; n <= 5; ++n)
        open += wizardPage(n)->isVisible() ? QString::number(n) : QString();
    return open;
}
}  // namespace

class tst_accounts : public WindowTest
{
    Q_OBJECT

private slots:
    // What the user does in the dialog on n accounts and the logon name the question to delete names (none:
    // no question; answered Yes when an account goes), then the rows, whether Delete and Properties are
    // enabled, and the accounts left in the file.
    void dialog_data()
    {
        QTest::addColumn<int>("onFile");
        QTest::addColumn<Steps>("steps");
        QTest::addColumn<QString>("asked");
        QTest::addColumn<QStringList>("shown");
        QTest::addColumn<bool>("buttons");
        QTest::addColumn<QList<int>>("left");
        const QStringList three{u"logon1"_s, u"logon2"_s, u"logon3"_s}, second{u"logon1"_s, u"logon2*"_s, u"logon3"_s};
        const QList all{1, 2, 3};
        QTest::newRow("every account by its logon name, none chosen") << 3 << Steps{} << QString() << three << false << all;
        QTest::newRow("a click beside the rows takes the choice away")
            << 3 << Steps{row(1), beside()} << QString() << three << false << all;
        QTest::newRow("delete answered No keeps every account and the choice")
            << 3 << Steps{row(1), click("btnDelete")} << u"logon2"_s << second << true << all;
        QTest::newRow("a row chosen, then the News tab: an empty list, nothing to delete")
            << 3 << Steps{row(1), tab(2)} << QString() << QStringList{} << false << all;
        QTest::newRow("delete the only account: the file holds none")
            << 1 << Steps{row(0), click("btnDelete")} << u"logon1"_s << QStringList{} << false << QList<int>{};
        QTest::newRow("the Delete key on a row the arrows reached: the later ones move up")
            << 5 << Steps{key("Tab"), key("Down"), key("Down"), key("Delete")} << u"logon3"_s
            << QStringList{u"logon1"_s, u"logon2"_s, u"logon4"_s, u"logon5"_s} << false << QList{1, 2, 4, 5};
    }
    void dialog()
    {
        QFETCH(int, onFile);
        QFETCH(QString, asked);
        QFETCH(QList<int>, left);
        frmMailBox *d = openDialog(*dir, accounts(onFile));
        if (!asked.isEmpty())
            boxes->expectConfirm(Icon::Warning, t::Caption, t::AskDeleteAccount.arg(asked), left.size() < onFile);
        QFETCH(Steps, steps);
        act(d, steps);
        QTEST(rows(d), "shown");
        QTEST(d->btnDelete->isEnabled(), "buttons");
        QCOMPARE(d->btnProperty->isEnabled(), d->btnDelete->isEnabled());
        QCOMPARE(dir->readBytes(MailBoxFileName), AccountBytes(accounts(left)));
    }

    // The second of three accounts opened in the properties; "x" typed at the end of every box it fills, then
    // its buttons. The file keeps the edit, the outgoing server included, or the account as it was. Another
    // program rewriting the file while the dialog lists it (as 3, 1, 2) makes a command on a listed account
    // change nothing and say so, and the list shows the file as it now is.
    void properties_data()
    {
        QTest::addColumn<Steps>("open");
        QTest::addColumn<bool>("edit");
        QTest::addColumn<QStringList>("buttons");
        QTest::addColumn<bool>("stored");
        QTest::addColumn<bool>("rewritten");
        const Steps byButton{row(1), click("btnProperty")};
        const QString ok = u"Command1"_s, cancel = u"Command2"_s, apply = u"Command3"_s;
        QTest::newRow("OK without edits stores the same values") << byButton << false << QStringList{ok} << false << false;
        QTest::newRow("opened by Enter, Cancel stores nothing")
            << Steps{key("Tab"), key("Down"), key("Return")} << true << QStringList{cancel} << false << false;
        QTest::newRow("Apply then Cancel keeps what Apply stored")
            << byButton << true << QStringList{apply, cancel} << true << false;
        QTest::newRow("a password not remembered is still stored")
            << byButton << true << QStringList{u"Check2"_s, ok} << true << false;
        QTest::newRow("the file rewritten meanwhile: OK, then Delete, change nothing")
            << byButton << true << QStringList{ok} << false << true;
    }
    void properties()
    {
        QFETCH(Steps, open);
        QFETCH(bool, edit);
        QFETCH(QStringList, buttons);
        QFETCH(bool, stored);
        QFETCH(bool, rewritten);
        frmMailBox *d = openDialog(*dir, accounts(3));
        const QList<MailBoxRec> other = accounts({3, 1, 2});
        QStringList seen;
        bool passwordBox = false;
        ModalScript script;
        script.on(u"frmMailBoxProp"_s, [&](QWidget *w) {
            auto *p = static_cast<frmMailBoxProp *>(w);
            const QList<QLineEdit *> filled{p->Frm1Txt1, p->Frm1Txt2, p->Frm1Txt4, p->Frm2Txt2,
                                            p->Frm2Txt3, p->Frm2Txt4, p->Frm2Txt5};
            for (QLineEdit *box : filled)
                seen << box->text();
            seen << (p->Check1->isChecked() ? u"included"_s : u"left out"_s);
            for (QLineEdit *box : edit ? filled.mid(1) : QList<QLineEdit *>())
                QTest::keyClicks(box, u"X"_s);
            if (rewritten)
                dir->writeBytes(MailBoxFileName, AccountBytes(other));
            p->TabStrip1->setCurrentIndex(1);
            for (const QString &button : buttons)
                click(p, button);
            passwordBox = p->Frm2Txt5->isEnabled();  // greyed once the password is not to be remembered
        });
        script.start();
        if (rewritten)
            boxes->expectMessage(Icon::Exclamation, t::Caption, t::ListOutdated);
        act(d, open);
        QVERIFY2(script.finished(), script.report());
        QCOMPARE(passwordBox, !buttons.contains(u"Check2"_s));
        // The label at the top shows the logon name.
        QCOMPARE(seen, (QStringList{u"logon2"_s, u"office 2"_s, u"user2@x.cn"_s, u"pop2"_s, u"smtp2"_s, u"logon2"_s, u"pw2"_s, u"included"_s}));
        QList<MailBoxRec> expected = rewritten ? other : accounts(3);
        if (stored)
            expected[1] = {u"office 2x"_s, u"pop2x"_s, u"smtp2x"_s, u"logon2x"_s, u"pw2x"_s, u"user2@x.cnx"_s};
        if (rewritten) {  // and once more, under a delete
            boxes->expectConfirm(Icon::Warning, t::Caption, t::AskDeleteAccount.arg(u"logon1"_s), true);
            boxes->expectMessage(Icon::Exclamation, t::Caption, t::ListOutdated);
            act(d, {row(1)});
            dir->writeBytes(MailBoxFileName, AccountBytes(expected = accounts(3)));
            act(d, {click("btnDelete")});
        }
        QCOMPARE(dir->readBytes(MailBoxFileName), AccountBytes(expected));
        // The list shows the file.
        QCOMPARE(rows(d), (QStringList{expected[0].username, expected[1].username, expected[2].username}));
        int page = -1;  // left on the Servers page, it opens again on the General page
        script.on(u"frmMailBoxProp"_s, [&](QWidget *w) { page = static_cast<frmMailBoxProp *>(w)->TabStrip1->currentIndex(), click(w, u"Command2"_s); });
        script.start(), act(d, {row(1), click("btnProperty")});
        QCOMPARE(page, 0);
    }

    // The disk refusing a delete the dialog shows done: the box names the change lost; the file keeps it.
    void diskRefusesADelete()
    {
        frmMailBox *d = openDialog(*dir, accounts(2));
        SetFileFault([](FileOp op, const QString &name) { return op == FileOp::Sync && name == u"mailbox.dat.new" ? EIO : 0; });
        boxes->expectConfirm(Icon::Warning, t::Caption, t::AskDeleteAccount.arg(u"logon1"_s), true);
        boxes->expectMessage(Icon::Exclamation, texts::AppTitle, texts::unsaved::NotSaved.arg(
            texts::unsaved::Accounts, texts::CannotWriteFile.arg(dir->filePath(MailBoxFileName), texts::ReasonIoError)));
        act(d, {row(0), click("btnDelete")});
        QTRY_VERIFY(boxes->done());
        SetFileFault({});
        QCOMPARE(dir->readBytes(MailBoxFileName), AccountBytes(accounts(2)));
        QCOMPARE(rows(d), (QStringList{u"logon1"_s, u"logon2"_s}));  // the list shows it again
    }

    // Every opening shows the file as it is then. 22 accounts by hand are more than the dialog can hold: it
    // says so and goes, the file untouched.
    void reading()
    {
        frmMailBox *d = openDialog(*dir, accounts(3));
        d->close();
        openDialog(*dir, accounts(4));
        QCOMPARE(rows(d).size(), 4);
        forms::destroyAll();
        boxes->expectMessage(Icon::Exclamation, texts::AppTitle,
                             texts::OperationAbandoned + u"\r\r"_s + texts::TooManyAccounts);
        d = openDialog(*dir, accounts(22));
        const QByteArray before = allFiles(*dir);
        QTRY_VERIFY(!d->isVisible());
        QCOMPARE(allFiles(*dir), before);
    }

    // A page enables Next once it holds what it asks for.
    void nextRules_data()
    {
        QTest::addColumn<int>("page");
        QTest::addColumn<Steps>("steps");
        QTest::addColumn<bool>("next");
        QTest::newRow("1: empty") << 1 << Steps{} << false;
        QTest::newRow("1: a name") << 1 << Steps{type("Text1", u"Ann"_s)} << true;
        QTest::newRow("1: the name erased") << 1 << Steps{type("Text1", u"Ann"_s), key("Ctrl+A"), key("Backspace")} << false;
        QTest::newRow("2: empty") << 2 << Steps{} << false;
        QTest::newRow("2: an address") << 2 << Steps{type("Text1", u"a@b.c"_s)} << true;
        QTest::newRow("3: the incoming server alone") << 3 << Steps{type("Text1", u"pop"_s)} << false;
        QTest::newRow("3: the outgoing server alone") << 3 << Steps{type("Text2", u"smtp"_s)} << false;
        QTest::newRow("3: both servers") << 3 << Steps{type("Text1", u"pop"_s), type("Text2", u"smtp"_s)} << true;
        QTest::newRow("4: a password alone") << 4 << Steps{type("Text2", u"pw"_s)} << false;
        QTest::newRow("4: a logon name, no password") << 4 << Steps{type("Text1", u"ann"_s)} << true;
    }
    void nextRules()
    {
        QFETCH(int, page);
        QFETCH(Steps, steps);
        QDialog *w = wizardPage(page);
        w->show();
        act(w, steps);
        QTEST(w->findChild<QPushButton *>(u"btnForWard"_s)->isEnabled(), "next");
    }

    // The wizard called up from the add menu or by a command that needs an account: walked to a page, where
    // the user does the steps, each asking whether to quit, or finishes on page 5. Then the pages on screen
    // after each answer, none for a Yes: No keeps every page open. The file gets the new account only at the
    // finish.
    void wizard_data()
    {
        QTest::addColumn<int>("onFile");
        QTest::addColumn<bool>("forACommand");
        QTest::addColumn<int>("page");
        QTest::addColumn<Steps>("steps");
        QTest::addColumn<QStringList>("pages");
        QTest::addColumn<bool>("added");
        const Steps cancel{click("btnCancel")};
        const QStringList closed{QString()}, none;
        QTest::newRow("no account: a cancelled wizard ends the command") << 0 << true << 2 << cancel << closed << false;
        QTest::newRow("from the menu, added after those on file") << 2 << false << 5 << Steps{} << none << true;
        QTest::newRow("21 accounts: a 22nd is refused") << 21 << false << 5 << Steps{} << none << false;
        QTest::newRow("Cancel on page 5 closes every page") << 1 << false << 5 << cancel << closed << false;
        QTest::newRow("Escape on page 3 asks the same") << 1 << false << 3 << Steps{key("Escape")} << closed << false;
        QTest::newRow("No leaves every page open") << 1 << false << 2 << cancel + cancel << QStringList{u"12"_s, QString()}
                                                   << false;
    }
    void wizard()
    {
        QFETCH(int, onFile);
        QFETCH(bool, forACommand);
        QFETCH(int, page);
        QFETCH(Steps, steps);
        QFETCH(QStringList, pages);
        QFETCH(bool, added);
        dir->writeBytes(MailBoxFileName, AccountBytes(accounts(onFile)));
        ModalScript script;
        walkWizard(script, page, steps.isEmpty());
        QStringList open;
        if (!steps.isEmpty()) {
            script.on(u"frmMainBoxAdd%1"_s.arg(page), [&](QWidget *p) {
                for (int i = 0; i < steps.size(); ++i) {
                    const bool yes = pages.value(i).isEmpty();
                    boxes->expectConfirm(Icon::Warning, t::WizardCaption, t::AskQuitWizard, yes);
                    act(p, {steps[i]});
                    open << (yes ? QString() : openPages());  // a Yes closes them as their loops end
                }
            });
        }
        if (onFile == 21)
            boxes->expectMessage(Icon::Exclamation, texts::AppTitle,
                                 texts::OperationAbandoned + u"\r\r"_s + texts::TooManyAccounts);
        script.start();
        if (forACommand)
            QCOMPARE(EnsureMailBox(), onFile == 0 && !added);  // true: the command is abandoned
        else
            QCOMPARE(openDialog(*dir, accounts(onFile))->mnuEmail_Click(), added);
        QVERIFY2(script.finished(), script.report());
        QCOMPARE(open, pages);
        QCOMPARE(openPages(), QString());
        QList<MailBoxRec> expected = accounts(onFile);
        if (added)
            expected << walked;
        QCOMPARE(dir->readBytes(MailBoxFileName), AccountBytes(expected));
        QStringList logons;  // the list shows the file, the new logon name in lower case
        for (const MailBoxRec &a : expected)
            logons << a.username;
        QVERIFY(forACommand || rows(forms::MailBox()) == logons);
    }

    // Next on page 3 while page 4, just left by Back, is still closing (a user typing ahead): page 4 returns.
    // Then Back twice.
    void nextTypedAhead()
    {
        ModalScript script;
        walkWizard(script, 3);
        bool greyed = false;  // the password box, once the password is not to be remembered
        script.on(u"frmMainBoxAdd4"_s, [&greyed](QWidget *w) {
            click(w, u"Check1"_s);
            greyed = !w->findChild<QLineEdit *>(u"Text2"_s)->isEnabled();
            click(w, u"btnBackWard"_s);
            forms::MainBoxAdd3()->btnForWard->click();
        });
        script.on(u"frmMainBoxAdd4"_s, [](QWidget *w) { click(w, u"btnBackWard"_s); });
        // Back from page 3 too, to the address as it was typed.
        script.on(u"frmMainBoxAdd3"_s, [](QWidget *w) { click(w, u"btnBackWard"_s); });
        QString address;
        script.on(u"frmMainBoxAdd2"_s, [&address](QWidget *w) {
            address = w->findChild<QLineEdit *>(u"Text1"_s)->text();
            QTest::keyClick(w, Qt::Key_Escape);
        });
        boxes->expectConfirm(Icon::Warning, t::WizardCaption, t::AskQuitWizard, true);
        script.start();
        QVERIFY(EnsureMailBox());
        QVERIFY2(script.finished(), script.report());
        QCOMPARE(address, u"New.Office@Example.com"_s);
        QVERIFY(greyed);
    }
};

QTEST_MAIN(tst_accounts)
#include "tst_accounts.moc"
