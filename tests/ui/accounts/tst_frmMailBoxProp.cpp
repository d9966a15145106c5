// The account properties dialog, opened from the accounts dialog: what it
// shows, what OK, Apply and Cancel store, the Apply button and the tabs.

#include "accountsfixture.h"

#include "store/records.h"
#include "ui/accounts/frmMailBox.h"
#include "ui/accounts/frmMailBoxProp.h"
#include "ui/common/application.h"
#include "ui/common/forms.h"

#include <QCheckBox>
#include <QFrame>
#include <QLabel>
#include <QLineEdit>
#include <QPushButton>
#include <QTabBar>
#include <QTest>
#include <QTreeWidget>

using namespace Qt::Literals::StringLiterals;
using namespace accountstest;
using testsupport::DataDir;

namespace {
frmMailBox *openOn(int row)
{
    frmMailBox *d = forms::MailBox();
    d->show();
    const QRect r = d->ListView1->visualItemRect(d->ListView1->topLevelItem(row));
    QTest::mouseClick(d->ListView1->viewport(), Qt::LeftButton, {}, r.center());
    return d;
}

// Replaces every editable value with one derived from the tag.
void editAll(QWidget *w, const QString &tag)
{
    const QList<QPair<QString, QString>> boxes = {
        {u"Frm1Txt2"_s, u"Name"_s}, {u"Frm1Txt4"_s, u"Addr"_s}, {u"Frm2Txt2"_s, u"Pop"_s},
        {u"Frm2Txt3"_s, u"Smtp"_s}, {u"Frm2Txt4"_s, u"Logon"_s}, {u"Frm2Txt5"_s, u"Pw"_s}};
    for (const auto &[box, value] : boxes) {
        w->findChild<QLineEdit *>(box)->clear();
        type(w, box, value + tag);
    }
}

MailBoxRec edited(const QString &tag, const QString &smtp)
{
    return {u"name"_s + tag, u"pop"_s + tag, smtp, u"logon"_s + tag, u"pw"_s + tag,
            u"addr"_s + tag};
}
}  // namespace

class tst_frmMailBoxProp : public QObject
{
    Q_OBJECT

private slots:
    void cleanup() { forms::destroyAll(); }

    void showsTheClickedAccount()
    {
        DataDir dir;
        writeAccounts(dir, accounts(3));
        frmMailBox *d = openOn(1);
        ModalScript script;
        script.on(u"frmMailBoxProp"_s, [](QWidget *) {
            frmMailBoxProp *p = forms::MailBoxProp();
            const QStringList shown{p->Frm1Txt1->text(), p->Frm1Txt2->text(), p->Frm1Txt4->text(),
                                    p->Frm2Txt1->text(), p->Frm2Txt2->text(), p->Frm2Txt3->text(),
                                    p->Frm2Txt4->text(), p->Frm2Txt5->text()};
            // The account label shows the logon name; the server kind keeps its blank.
            QCOMPARE(shown, (QStringList{u"logon2"_s, u"office 2"_s, u"user2@example.com"_s,
                                         u" POP3"_s, u"pop2.example.com"_s, u"smtp2.example.com"_s,
                                         u"logon2"_s, u"pw2"_s}));
            QVERIFY(p->Frm1Txt3->text().isEmpty() && p->Frm1Txt5->text().isEmpty());
            QVERIFY(p->Check1->isChecked() && p->Check2->isChecked());
            QVERIFY(p->Command3->isEnabled());  // the filling counts as an edit
            QVERIFY(p->Frame1->isVisible() && !p->Frame2->isVisible());
            click(p, u"Command2"_s);
        });
        script.start();
        // A double-click on the row opens it as the Properties button does.
        const QRect r = d->ListView1->visualItemRect(d->ListView1->topLevelItem(1));
        QTest::mouseDClick(d->ListView1->viewport(), Qt::LeftButton, {}, r.center());
        QVERIFY2(script.finished(), script.report());
        QVERIFY(!d->btnProperty->isEnabled());  // rebuilt after closing
    }

    void storing_data()
    {
        QTest::addColumn<bool>("earlierOk");  // an OK on account 1 comes first
        QTest::addColumn<bool>("edit");
        QTest::addColumn<QStringList>("buttons");
        QTest::addColumn<MailBoxRec>("stored");  // account 2 on file afterwards
        QTest::newRow("OK without edits rewrites the same values")
            << false << false << QStringList{u"Command1"_s} << account(2);
        QTest::newRow("Cancel stores nothing") << false << true << QStringList{u"Command2"_s} << account(2);
        QTest::newRow("Apply then OK stores all six")
            << false << true << QStringList{u"Command3"_s, u"Command1"_s} << edited(u"x"_s, u"smtpx"_s);
        QTest::newRow("Apply then Cancel stores five and an empty outgoing server")
            << false << true << QStringList{u"Command3"_s, u"Command2"_s} << edited(u"x"_s, QString());
        QTest::newRow("Apply then Cancel takes the outgoing server of an earlier OK")
            << true << true << QStringList{u"Command3"_s, u"Command2"_s}
            << edited(u"x"_s, u"smtp1.example.com"_s);
    }

    void storing()
    {
        QFETCH(bool, earlierOk);
        QFETCH(bool, edit);
        QFETCH(QStringList, buttons);
        QFETCH(MailBoxRec, stored);
        DataDir dir;
        writeAccounts(dir, accounts(3));
        frmMailBox *d = forms::MailBox();
        ModalScript script;
        if (earlierOk) {
            openOn(0);
            script.on(u"frmMailBoxProp"_s, [](QWidget *w) { click(w, u"Command1"_s); });
            script.start();
            QTest::mouseClick(d->btnProperty, Qt::LeftButton);
            QVERIFY2(script.finished(), script.report());
        }
        openOn(1);
        script.on(u"frmMailBoxProp"_s, [edit, buttons](QWidget *w) {
            if (edit)
                editAll(w, u"X"_s);
            for (const QString &b : buttons)
                click(w, b);
        });
        script.start();
        QTest::mouseClick(d->btnProperty, Qt::LeftButton);
        QVERIFY2(script.finished(), script.report());
        QList<MailBoxRec> expected = accounts(3);
        expected[1] = stored;
        QCOMPARE(dir.readBytes(MailBoxFileName), accountFile(expected));
    }

    void applyButtonFollowsEdits()
    {
        DataDir dir;
        writeAccounts(dir, accounts(1));
        frmMailBox *d = openOn(0);
        ModalScript script;
        script.on(u"frmMailBoxProp"_s, [](QWidget *w) {
            frmMailBoxProp *p = forms::MailBoxProp();
            click(w, u"Command3"_s);
            QVERIFY(!p->Command3->isEnabled());
            // The password box follows "remember password" and does not
            // count as an edit.
            p->TabStrip1->setCurrentIndex(1);
            click(w, u"Check2"_s);
            QVERIFY(!p->Frm2Txt5->isEnabled());
            QCOMPARE(p->Frm2Txt5->palette().color(QPalette::Base),
                     QApplication::palette(p->Frm2Txt5).color(QPalette::Button));
            QVERIFY(!p->Command3->isEnabled());
            p->TabStrip1->setCurrentIndex(0);
            type(w, u"Frm1Txt3"_s, u"Org"_s);  // shown, not stored, but an edit
            QVERIFY(p->Command3->isEnabled());
            click(w, u"Command3"_s);
            click(w, u"Check1"_s);
            QVERIFY(p->Command3->isEnabled());
            click(w, u"Command1"_s);
        });
        script.start();
        QTest::mouseClick(d->btnProperty, Qt::LeftButton);
        QVERIFY2(script.finished(), script.report());
        // A greyed password is still stored.
        QCOMPARE(dir.readBytes(MailBoxFileName), accountFile(accounts(1)));
    }

    void tabs_data()
    {
        QTest::addColumn<QString>("tab");
        QTest::addColumn<bool>("general");
        QTest::addColumn<bool>("servers");
        QTest::newRow("常规 shows the General page") << u"常规"_s << true << false;
        QTest::newRow("服务器 shows the Servers page") << u"服务器"_s << false << true;
        QTest::newRow("连接 shows neither") << u"连接"_s << false << false;
        QTest::newRow("安全 shows neither") << u"安全"_s << false << false;
        QTest::newRow("高级 shows neither") << u"高级"_s << false << false;
    }

    void tabs()
    {
        QFETCH(QString, tab);
        QFETCH(bool, general);
        QFETCH(bool, servers);
        frmMailBoxProp *p = forms::MailBoxProp();
        p->show();
        // Start from another tab, so that every row is a change.
        p->TabStrip1->setCurrentIndex(tab == u"服务器" ? 0 : 1);
        QTabBar *bar = p->TabStrip1;
        for (int i = 0; i < bar->count(); ++i)
            if (bar->tabText(i) == tab)
                QTest::mouseClick(bar, Qt::LeftButton, {}, bar->tabRect(i).center());
        QCOMPARE(p->Frame1->isVisible(), general);
        QCOMPARE(p->Frame2->isVisible(), servers);
    }
};

ACCOUNTS_TEST_MAIN(tst_frmMailBoxProp)
#include "tst_frmMailBoxProp.moc"
