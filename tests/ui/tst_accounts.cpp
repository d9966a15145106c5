// The accounts dialog, the new-account wizard and the properties dialog, by
// mouse and keyboard; checked on the rows, the buttons and mailbox.dat.

#include "store/mailboxes.h"
#include "ui/accounts/ensuremailbox.h"
#include "ui/accounts/frmMailBox.h"
#include "ui/accounts/frmMailBoxProp.h"
#include "ui/accounts/frmMainBoxAdd1.h"
#include "ui/accounts/frmMainBoxAdd2.h"
#include "ui/accounts/frmMainBoxAdd3.h"
#include "ui/accounts/frmMainBoxAdd4.h"
#include "ui/accounts/frmMainBoxAdd5.h"
#include "windows.h"

using namespace Qt::Literals::StringLiterals;
using namespace testsupport;
namespace t = texts::accounts;

namespace {
// Accounts 1..n; display and logon names differ.
QList<MailBoxRec> accounts(int n)
{
    QList<MailBoxRec> list;
    for (int k = 1; k <= n; ++k) {
        const QString s = QString::number(k);
        list.append({u"office "_s + s, u"pop"_s + s, u"smtp"_s + s, u"logon"_s + s, u"pw"_s + s,
                     u"user"_s + s + u"@x.cn"_s});
    }
    return list;
}

MailBoxRec stored(const WizardAnswers &a)
{
    return {a.displayName.toLower(), a.incoming.toLower(), a.outgoing.toLower(),
            a.logon.toLower(),       a.password.toLower(), a.address.toLower()};
}

// mailbox.dat with accounts 1..n, and the dialog on it.
frmMailBox *openDialog(const DataDir &dir, int n)
{
    dir.writeBytes(MailBoxFileName, AccountBytes(accounts(n)));
    frmMailBox *d = forms::MailBox();
    d->show();
    return d;
}

QStringList rows(const frmMailBox *d)
{
    QStringList texts;
    for (int i = 0; i < d->ListView1->topLevelItemCount(); ++i)
        texts << d->ListView1->topLevelItem(i)->text(0);
    return texts;
}

QList<QDialog *> pages()
{
    return {forms::MainBoxAdd1(), forms::MainBoxAdd2(), forms::MainBoxAdd3(), forms::MainBoxAdd4(),
            forms::MainBoxAdd5()};
}

// A row chosen by mouse, or from the keyboard (arrows from the top);
// a click at -1 lands beside the rows.
void choose(frmMailBox *d, int row, bool keys = false)
{
    if (keys) {
        d->ListView1->setFocus();
        for (int i = 0; i <= row; ++i)
            QTest::keyClick(d->ListView1, Qt::Key_Down);
        return;
    }
    const QPoint at = row < 0 ? QPoint(5, d->ListView1->viewport()->height() - 4)
                              : d->ListView1->visualItemRect(d->ListView1->topLevelItem(row)).center();
    QTest::mouseClick(d->ListView1->viewport(), Qt::LeftButton, {}, at);
}

bool canDeleteOrEdit(const frmMailBox *d)
{
    return d->btnDelete->isEnabled() && d->btnProperty->isEnabled();
}

// The wizard's pages on screen, as "12" for the first two.
QString openPages()
{
    QString open;
    for (int i = 0; i < 5; ++i)
        open += pages().at(i)->isVisible() ? QString::number(i + 1) : QString();
    return open;
}
}  // namespace

class tst_accounts : public WindowTest
{
    Q_OBJECT

private slots:

    void dialog()
    {
        frmMailBox *d = openDialog(*dir, 3);
        QCOMPARE(rows(d).join(u'|'), u"logon1|logon2|logon3"_s);
        QVERIFY(!canDeleteOrEdit(d) && !d->Command[0]->isEnabled() && d->Command[3]->isEnabled());
        // A row clicked enables Delete and Properties; a click beside the rows
        // takes the selection away, remembering the row.
        choose(d, 1);
        QVERIFY(canDeleteOrEdit(d) && d->SelectedName == u"logon2");
        choose(d, -1);
        QVERIFY(!d->btnDelete->isEnabled() && d->ListView1->selectedItems().isEmpty());
        QCOMPARE(d->SelectedIndex, 1.0f);
        // The table is read from the file only while the dialog holds none.
        d->close();
        dir->writeBytes(MailBoxFileName, AccountBytes(accounts(4)));
        d->show();
        QCOMPARE(rows(d).size(), 3);

        // 22 accounts by hand: the table cannot hold them, and an empty table
        // offered instead would replace the file at its first save: it goes.
        forms::destroyAll();
        boxes->expectMessage(Icon::Exclamation, texts::AppTitle,
                             texts::OperationAbandoned + u"\r\r"_s + texts::TooManyAccounts);
        d = openDialog(*dir, 22);
        const QByteArray before = allFiles(*dir);
        QTRY_VERIFY(!d->isVisible());
        QCOMPARE(allFiles(*dir), before);
    }

    void deleting_data()
    {
        QTest::addColumn<int>("count");
        QTest::addColumn<int>("row");
        QTest::addColumn<bool>("keys");
        QTest::addColumn<bool>("yes");
        QTest::addColumn<QList<int>>("left");
        QTest::newRow("the only account leaves number=0") << 1 << 0 << false << true << QList<int>{};
        QTest::newRow("slot 3 of 5 moves the later ones up") << 5 << 2 << false << true << QList<int>{1, 2, 4, 5};
        QTest::newRow("answering No keeps them all") << 3 << 1 << false << false << QList<int>{1, 2, 3};
        QTest::newRow("the Delete key on a row reached by arrows") << 3 << 1 << true << true << QList<int>{1, 3};
    }

    void deleting()
    {
        QFETCH(int, count);
        QFETCH(int, row);
        QFETCH(bool, keys);
        QFETCH(bool, yes);
        QFETCH(QList<int>, left);
        frmMailBox *d = openDialog(*dir, count);
        // The question names the logon name, not the display name; Enter says No.
        boxes->expectConfirm(Icon::Warning, t::Caption, t::AskDeleteAccount.arg(u"logon%1"_s.arg(row + 1)), yes);
        choose(d, row, keys);
        QVERIFY(canDeleteOrEdit(d));
        keys ? QTest::keyClick(d->ListView1, Qt::Key_Delete) : QTest::mouseClick(d->btnDelete, Qt::LeftButton);
        QList<MailBoxRec> expected;
        for (int k : left)
            expected << accounts(5).at(k - 1);
        QCOMPARE(dir->readBytes(MailBoxFileName), AccountBytes(expected));
        QCOMPARE(rows(d).size(), expected.size());
        QCOMPARE(canDeleteOrEdit(d), !yes);  // a rebuild disables them again
        QVERIFY(!boxes->defaults().contains(Prompter::Default::Yes));
    }

    void wizardNextRule_data()
    {
        QTest::addColumn<int>("page");
        QTest::addColumn<QStringList>("acts");  // "Box=text", "Box=" erases, "click Name"
        QTest::addColumn<bool>("next");
        const auto row = [](const char *name, int p, QStringList acts, bool on) {
            QTest::newRow(name) << p << acts << on;
        };
        row("page 1 opens with Next disabled", 1, {}, false);
        row("page 1 disables Next when the name is erased", 1, {u"Text1=Ann"_s, u"Text1="_s}, false);
        row("page 2 allows Next once an address is typed", 2, {u"Text1=a@b.c"_s}, true);
        row("page 2 sign-up does not allow Next", 2, {u"click Option2"_s}, false);
        row("page 3 refuses only the incoming server", 3, {u"Text1=pop"_s}, false);
        row("page 3 refuses only the outgoing server", 3, {u"Text2=smtp"_s}, false);
        row("page 3 allows Next with both servers", 3, {u"Text1=pop"_s, u"Text2=smtp"_s}, true);
        row("page 4 allows Next with a name and no password", 4, {u"Text1=ann"_s}, true);
        row("page 4 refuses a password alone", 4, {u"Text2=pw"_s}, false);
    }

    void wizardNextRule()
    {
        QFETCH(int, page);
        QFETCH(QStringList, acts);
        QDialog *p = pages().at(page - 1);
        p->show();
        for (const QString &act : acts) {
            auto *box = p->findChild<QLineEdit *>(act.section(u'=', 0, 0));
            if (act.startsWith(u"click "_s)) {
                click(p, act.mid(6));
            } else if (act.section(u'=', 1).isEmpty()) {
                box->selectAll();
                QTest::keyClick(box, Qt::Key_Backspace);
            } else {
                QTest::keyClicks(box, act.section(u'=', 1));
            }
        }
        QTEST(p->findChild<QPushButton *>(u"btnForWard"_s)->isEnabled(), "next");
        // The sign-up option takes the address box away; the remembered
        // password's box follows its check box.
        if (page == 2)
            QCOMPARE(forms::MainBoxAdd2()->Text1->isEnabled(), !forms::MainBoxAdd2()->Combo1->isEnabled());
        if (page == 4) {
            click(p, u"Check1"_s);
            QVERIFY(!forms::MainBoxAdd4()->Text2->isEnabled());
        }
    }

    void wizard_data()
    {
        QTest::addColumn<int>("present");  // accounts on file
        QTest::addColumn<bool>("fromDialog");  // the add menu, else a command needing an account
        QTest::addColumn<int>("page");     // where the user leaves the wizard
        QTest::addColumn<QString>("leave");  // "finish", "cancel", "escape"; "no" answers No first
        const auto row = [](const char *name, int present, bool dialog, int page, const char *leave) {
            QTest::newRow(name) << present << dialog << page << QString::fromLatin1(leave);
        };
        row("no account: a finished wizard stores it, the command goes on", 0, false, 5, "finish");
        row("no account: a cancelled wizard ends the command", 0, false, 2, "cancel");
        row("an account on file: no wizard", 1, false, 0, "");
        row("21 accounts: a 22nd is refused, nothing written", 21, true, 5, "finish");
        row("Cancel on page 5 closes every page", 1, true, 5, "cancel");
        row("Escape on page 3 asks the same", 1, true, 3, "escape");
        row("No leaves every page open", 1, true, 2, "no");
    }

    void wizard()
    {
        QFETCH(int, present);
        QFETCH(bool, fromDialog);
        QFETCH(int, page);
        QFETCH(QString, leave);
        if (present)
            dir->writeBytes(MailBoxFileName, AccountBytes(accounts(present)));
        const bool finish = leave == u"finish";
        QString openAfterNo;
        ModalScript script;
        if (page > 0) {
            walkWizard(script, WizardAnswers(), page, finish);
            if (!finish) {
                boxes->expectConfirm(Icon::Warning, t::WizardCaption, t::AskQuitWizard, leave != u"no");
                if (leave == u"no")
                    boxes->expectConfirm(Icon::Warning, t::WizardCaption, t::AskQuitWizard, true);
                script.on(u"frmMainBoxAdd%1"_s.arg(page), [&](QWidget *w) {
                    leave == u"escape" ? QTest::keyClick(w, Qt::Key_Escape) : click(w, u"btnCancel"_s);
                    if (leave == u"no") {
                        openAfterNo = openPages();
                        click(w, u"btnCancel"_s);  // then leaves for good
                    }
                });
            }
            script.start();
        }
        if (present == 21)
            boxes->expectMessage(Icon::Exclamation, texts::AppTitle,
                                 texts::OperationAbandoned + u"\r\r"_s + texts::TooManyAccounts);
        if (fromDialog)
            openDialog(*dir, present)->mnuEmail_Click();
        else
            QCOMPARE(EnsureMailBox(), present == 0 && !finish);  // true: the command is abandoned
        QVERIFY2(script.finished(), script.report());
        QVERIFY(!boxes->defaults().contains(Prompter::Default::Yes));
        QVERIFY(leave != u"no" || openAfterNo == u"12");
        QCOMPARE(openPages(), QString());
        QList<MailBoxRec> expected = accounts(present);
        if (present == 0 && finish)
            expected << stored(WizardAnswers());
        QCOMPARE(dir->readBytes(MailBoxFileName), present || finish ? AccountBytes(expected) : QByteArray());
    }

    void properties_data()
    {
        QTest::addColumn<QStringList>("buttons");  // pressed in order; "edit" changes every box
        QTest::addColumn<bool>("changed");
        QTest::newRow("OK without edits rewrites the same values") << QStringList{u"Command1"_s} << false;
        QTest::newRow("Enter opens it, Cancel stores nothing") << QStringList{u"edit"_s, u"Command2"_s} << false;
        QTest::newRow("Apply then OK stores all six") << QStringList{u"edit"_s, u"Command3"_s, u"Command1"_s}
                                                      << true;
        QTest::newRow("Apply then Cancel stores all six as shown")
            << QStringList{u"edit"_s, u"Command3"_s, u"Command2"_s} << true;
    }

    void properties()
    {
        QFETCH(QStringList, buttons);
        QFETCH(bool, changed);
        frmMailBox *d = openDialog(*dir, 3);
        const bool keys = QByteArray(QTest::currentDataTag()).startsWith("Enter");
        choose(d, 1, keys);
        ModalScript script;
        script.on(u"frmMailBoxProp"_s, [&](QWidget *w) {
            auto *p = static_cast<frmMailBoxProp *>(w);
            // The account shown, the label showing the logon name.
            QCOMPARE(QStringList({p->Frm1Txt1->text(), p->Frm1Txt2->text(), p->Frm1Txt4->text(),
                                  p->Frm2Txt2->text(), p->Frm2Txt3->text(), p->Frm2Txt5->text()}),
                     QStringList({u"logon2"_s, u"office 2"_s, u"user2@x.cn"_s, u"pop2"_s, u"smtp2"_s, u"pw2"_s}));
            for (const QString &b : buttons) {
                if (b != u"edit") {
                    click(w, b);
                    continue;
                }
                for (QLineEdit *box : {p->Frm1Txt2, p->Frm1Txt4, p->Frm2Txt2, p->Frm2Txt3, p->Frm2Txt4, p->Frm2Txt5})
                    QTest::keyClicks(box, u"X"_s);
                QVERIFY(p->Command3->isEnabled());
            }
        });
        script.start();
        keys ? QTest::keyClick(d->ListView1, Qt::Key_Return) : QTest::mouseClick(d->btnProperty, Qt::LeftButton);
        QVERIFY2(script.finished(), script.report());

        QList<MailBoxRec> expected = accounts(3);
        if (changed)
            expected[1] = {u"office 2x"_s, u"pop2x"_s, u"smtp2x"_s, u"logon2x"_s, u"pw2x"_s, u"user2@x.cnx"_s};
        QCOMPARE(dir->readBytes(MailBoxFileName), AccountBytes(expected));
    }
};

QTEST_MAIN(tst_accounts)
#include "tst_accounts.moc"
