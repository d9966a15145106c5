// The accounts dialog, the new-account wizard and the properties dialog, by
// mouse and keyboard; checked on the rows, the buttons and mailbox.dat.

#include "ui/accounts/ensuremailbox.h"
#include "windows.h"

using namespace Qt::Literals::StringLiterals;
using namespace testsupport;
namespace t = texts::accounts;

namespace {
// Accounts 1..n; display and logon names differ.
QList<MailBoxRec> accounts(int n)
{
    QList<MailBoxRec> list;
    for (int k = 1; k <= n; ++k)
        list.append({u"office %1"_s.arg(k), u"pop%1"_s.arg(k), u"smtp%1"_s.arg(k), u"logon%1"_s.arg(k),
                     u"pw%1"_s.arg(k), u"user%1@x.cn"_s.arg(k)});
    return list;
}

// mailbox.dat with accounts 1..n, and the dialog on it.
frmMailBox *openDialog(const DataDir &dir, int n)
{
    dir.writeBytes(MailBoxFileName, AccountBytes(accounts(n)));
    forms::MailBox()->show();
    return forms::MailBox();
}

// A window as the user sees it: the rows of its list, "*" on the one chosen,
// then "E" or "D" for each box and push button: on the accounts dialog from
// Add down to Close, on a wizard page its boxes, then Back, Next and Cancel.
QString shown(const QWidget *w)
{
    QString s;
    if (const auto *list = w->findChild<QTreeWidget *>()) {
        for (int i = 0; i < list->topLevelItemCount(); ++i)
            s += list->topLevelItem(i)->text(0) + (list->topLevelItem(i)->isSelected() ? u"* "_s : u" "_s);
    }
    for (const QWidget *c : w->findChildren<QWidget *>()) {
        if (c->inherits("QLineEdit") || c->inherits("QComboBox") || c->inherits("QPushButton"))
            s += c->isEnabled() ? u'E' : u'D';
    }
    return s;
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

// A user's step in a window: "Box=text" typed at the end of a box ("Box="
// erases it), "rowN" of its list or "beside" the rows clicked, "tabN"
// clicked, a button clicked by name, else a key given to the list or window.
void act(QWidget *w, const QString &step)
{
    auto *list = w->findChild<QTreeWidget *>();
    auto *tabs = w->findChild<QTabBar *>();
    if (auto *box = w->findChild<QLineEdit *>(step.section(u'=', 0, 0)))
        QTest::keyClicks(box, step.endsWith(u'=') ? QString(box->text().size(), u'\b') : step.section(u'=', 1));
    else if (step.startsWith(u"row"))
        clickRow(list, step.mid(3).toInt());
    else if (step == u"beside")
        QTest::mouseClick(list->viewport(), Qt::LeftButton, {}, QPoint(5, list->viewport()->height() - 4));
    else if (step.startsWith(u"tab"))
        QTest::mouseClick(tabs, Qt::LeftButton, {}, tabs->tabRect(step.mid(3).toInt()).center());
    else if (w->findChild<QAbstractButton *>(step))
        click(w, step);
    else
        QTest::keyClick(list ? static_cast<QWidget *>(list) : w, QKeySequence(step)[0].key());
}

// Steps given to a window, "; " between them, each what the user does "->"
// what the window shows after it.
void walk(QWidget *w, const QString &steps)
{
    for (const QString &step : steps.split(u"; "_s)) {
        for (const QString &a : step.section(u"->"_s, 0, 0).split(u' ', Qt::SkipEmptyParts))
            act(w, a);
        QCOMPARE(shown(w), step.section(u"-> "_s, 1));
    }
}
}  // namespace

class tst_accounts : public WindowTest
{
    Q_OBJECT

private slots:

    // The table is read from the file only while the dialog holds none; 22
    // accounts by hand are more than it can hold, and an empty table offered
    // instead would replace the file at its first save: the dialog goes.
    void reading()
    {
        frmMailBox *d = openDialog(*dir, 3);
        d->close();
        dir->writeBytes(MailBoxFileName, AccountBytes(accounts(4)));
        d->show();
        QCOMPARE(shown(d), u"logon1 logon2 logon3 logon4 EDDDDDEE"_s);
        forms::destroyAll();
        boxes->expectMessage(Icon::Exclamation, texts::AppTitle,
                             texts::OperationAbandoned + u"\r\r"_s + texts::TooManyAccounts);
        d = openDialog(*dir, 22);
        const QByteArray before = allFiles(*dir);
        QTRY_VERIFY(!d->isVisible());
        QCOMPARE(allFiles(*dir), before);
    }

    // Through the dialog on n accounts ("n:") or a wizard page ("pageN:");
    // "then" answers the question to delete the account it names, or is done
    // in the properties of the second. mailbox.dat then holds what the list
    // shows, "logon2X" with an X typed at the end of each box: the list shows
    // it as typed, the file in lower case.
    void walks_data()
    {
        QTest::addColumn<QString>("steps");
        QTest::addColumn<QString>("then");
        const auto row = [](const char *name, const char *steps, const QString &then = {}) {
            QTest::newRow(name) << QString::fromLatin1(steps) << then;
        };
        const QString edit = u"Frm1Txt2=X Frm1Txt4=X Frm2Txt2=X Frm2Txt3=X Frm2Txt4=X Frm2Txt5=X "_s;
        row("a row chosen enables Delete and Properties, a click beside takes it away; the news tab lists none",
            "3:  -> logon1 logon2 logon3 EDDDDDEE; row1 -> logon1 logon2* logon3 EEEDDDEE; beside -> logon1 logon2 "
            "logon3 EDDDDDEE; row2 tab2 -> EEEDDDEE; tab0 -> logon1 logon2 logon3 EDDDDDEE");
        row("delete the only account: number=0", "1: row0 btnDelete -> EDDDDDEE", u"logon1? yes"_s);
        row("delete answered No: all kept, the row still chosen",
            "3: row1 btnDelete -> logon1 logon2* logon3 EEEDDDEE", u"logon2? no"_s);
        row("the Delete key on a row reached by arrows: the later ones move up",
            "5: Down Down Down Delete -> logon1 logon2 logon4 logon5 EDDDDDEE", u"logon3? yes"_s);
        row("properties: OK without edits rewrites the same values",
            "3: row1 btnProperty -> logon1 logon2 logon3 EDDDDDEE", u"Command1"_s);
        row("properties by Enter: Cancel stores nothing", "3: Down Down Return -> logon1 logon2 logon3 EDDDDDEE",
            edit + u"Command2"_s);
        row("properties: Apply then OK stores all six", "3: row1 btnProperty -> logon1 logon2x logon3 EDDDDDEE",
            edit + u"Command3 Command1"_s);
        row("properties: Apply then Cancel stores all six as shown",
            "3: row1 btnProperty -> logon1 logon2x logon3 EDDDDDEE", edit + u"Command3 Command2"_s);
        // A page enables Next once it holds what it asks for.
        row("page 1: a name", "page1:  -> EEDE; Text1=Ann -> EEEE; Text1= -> EEDE");
        row("page 2: an address, not a sign-up",
            "page2:  -> EDEDE; Option2 -> DEEDE; Option1 -> EDEDE; Text1=a@b.c -> EDEEE");
        row("page 3: both servers",
            "page3:  -> EEEEDE; Text1=pop -> EEEEDE; Text1= Text2=smtp -> EEEEDE; Text1=pop -> EEEEEE");
        row("page 4: a logon name; a password box only while it is remembered",
            "page4: Text2=pw -> EEEDE; Text1=ann -> EEEEE; Text2= -> EEEEE; Check1 -> EDEEE");
    }

    void walks()
    {
        QFETCH(QString, steps);
        QFETCH(QString, then);
        const QString on = steps.section(u':', 0, 0);
        QWidget *w = on.startsWith(u"page") ? static_cast<QWidget *>(wizardPage(on.mid(4).toInt()))
                                             : openDialog(*dir, on.toInt());
        w->show();
        ModalScript script;
        QString seen;  // the boxes of the properties; the label at the top shows the logon name
        if (then.contains(u'?')) {  // naming the logon name, not the display name; Enter says No
            boxes->expectConfirm(Icon::Warning, t::Caption, t::AskDeleteAccount.arg(then.section(u'?', 0, 0)),
                                 then.endsWith(u"yes"));
        } else if (!then.isEmpty()) {
            script.on(u"frmMailBoxProp"_s, [&](QWidget *prop) {
                const auto *p = static_cast<frmMailBoxProp *>(prop);
                seen = QStringList({p->Frm1Txt1->text(), p->Frm1Txt2->text(), p->Frm1Txt4->text(), p->Frm2Txt2->text(),
                                    p->Frm2Txt3->text(), p->Frm2Txt4->text(), p->Frm2Txt5->text()}).join(u' ');
                for (const QString &step : then.split(u' '))
                    act(prop, step);
            });
            script.start();
        }
        walk(w, steps.section(u": "_s, 1));
        QVERIFY2(script.finished(), script.report());
        if (!seen.isNull())
            QCOMPARE(seen, u"logon2 office 2 user2@x.cn pop2 smtp2 logon2 pw2"_s);
        QList<MailBoxRec> expected;
        const QStringList rows = steps.section(u"-> "_s, -1).remove(u'*').split(u' ');
        for (const QString &logon : rows.first(rows.size() - 1))
            expected << (logon.endsWith(u'x') ? MailBoxRec{u"office 2x"_s, u"pop2x"_s, u"smtp2x"_s, u"logon2x"_s,
                                                           u"pw2x"_s, u"user2@x.cnx"_s}
                                              : accounts(5).at(logon.mid(5).toInt() - 1));
        QCOMPARE(dir->readBytes(MailBoxFileName), on.startsWith(u"page") ? QByteArray() : AccountBytes(expected));
        QVERIFY(!boxes->defaults().contains(Prompter::Default::Yes));
    }

    // Accounts on file; the wizard called up from the add menu or by a
    // command needing an account; the page where the user leaves it, and
    // what he does there, each step with the answer to the question to quit.
    void wizard_data()
    {
        QTest::addColumn<QString>("how");
        QTest::newRow("no account: a finished wizard stores it, the command goes on") << u"0 command 5"_s;
        QTest::newRow("no account: a cancelled wizard ends the command") << u"0 command 2 btnCancel:yes"_s;
        QTest::newRow("an account on file: no wizard") << u"1 command 0"_s;
        QTest::newRow("21 accounts: a 22nd is refused, nothing written") << u"21 menu 5"_s;
        QTest::newRow("Cancel on page 5 closes every page") << u"1 menu 5 btnCancel:yes"_s;
        QTest::newRow("Escape on page 3 asks the same") << u"1 menu 3 Escape:yes"_s;
        QTest::newRow("No leaves every page open") << u"1 menu 2 btnCancel:no btnCancel:yes"_s;
    }

    void wizard()
    {
        QFETCH(QString, how);
        const QStringList w = how.split(u' ');
        const int present = w[0].toInt(), page = w[2].toInt();
        const bool finish = page > 0 && w.size() == 3;
        if (present)
            dir->writeBytes(MailBoxFileName, AccountBytes(accounts(present)));
        ModalScript script;
        walkWizard(script, page, finish);
        QStringList open;  // the pages on screen after each step on the last page
        if (w.size() > 3) {
            script.on(u"frmMainBoxAdd%1"_s.arg(page), [&](QWidget *p) {
                for (const QString &step : w.mid(3)) {
                    boxes->expectConfirm(Icon::Warning, t::WizardCaption, t::AskQuitWizard, step.endsWith(u"yes"));
                    act(p, step.section(u':', 0, 0));
                    open << openPages();
                }
            });
        }
        if (present == 21)
            boxes->expectMessage(Icon::Exclamation, texts::AppTitle,
                                 texts::OperationAbandoned + u"\r\r"_s + texts::TooManyAccounts);
        script.start();
        if (w[1] == u"menu")
            openDialog(*dir, present)->mnuEmail_Click();
        else
            QCOMPARE(EnsureMailBox(), present == 0 && !finish);  // true: the command is abandoned
        QVERIFY2(script.finished(), script.report());
        QVERIFY(!boxes->defaults().contains(Prompter::Default::Yes));
        QVERIFY(!how.contains(u":no") || open.first() == u"12");
        QCOMPARE(openPages(), QString());
        QList<MailBoxRec> expected = accounts(present);
        if (present == 0 && finish)  // stored in lower case
            expected << MailBoxRec{u"new office"_s, u"pop.example.com"_s, u"smtp.example.com"_s,
                                   u"newlogon"_s, u"secret"_s, u"new.office@example.com"_s};
        QCOMPARE(dir->readBytes(MailBoxFileName), present || finish ? AccountBytes(expected) : QByteArray());
    }

    // Next on page 3 while page 4, just left by Back, is still closing, as a
    // user typing ahead gives it: page 4 comes back.
    void nextTypedAhead()
    {
        ModalScript script;
        walkWizard(script, 3);
        script.on(u"frmMainBoxAdd4"_s, [](QWidget *w) {
            click(w, u"btnBackWard"_s);
            forms::MainBoxAdd3()->btnForWard->click();
        });
        script.on(u"frmMainBoxAdd4"_s, [](QWidget *w) { QTest::keyClick(w, Qt::Key_Escape); });
        boxes->expectConfirm(Icon::Warning, t::WizardCaption, t::AskQuitWizard, true);
        script.start();
        QVERIFY(EnsureMailBox());
        QVERIFY2(script.finished(), script.report());
    }
};

QTEST_MAIN(tst_accounts)
#include "tst_accounts.moc"
