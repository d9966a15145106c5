// The read window: what it shows, marking read, stepping through the
// folder, and its commands acting on the message it shows.

#include "store/folders.h"
#include "store/state.h"
#include "texts.h"
#include "ui/common/forms.h"
#include "ui/main/foldernodes.h"
#include "ui/main/frmMain.h"
#include "ui/message/frmMailEdit.h"
#include "ui/message/frmMailRead.h"
#include "windows.h"

#include <QLabel>
#include <QLineEdit>
#include <QListWidget>
#include <QMenu>
#include <QTest>
#include <QTextEdit>
#include <QTreeWidget>

using namespace Qt::Literals::StringLiterals;
using namespace testsupport;
using Icon = Prompter::Icon;

namespace {
QString isnewInFile(int folder)
{
    QString s;
    for (const EmailRec &m : stored(folder))
        s += m.isnew;
    return s;
}

bool rowBold(const frmMain *w, int row)
{
    return w->ListView1->topLevelItem(row)->font(3).bold();
}

frmMailRead *openRow(frmMain *w, int row)
{
    doubleClickRow(w->ListView1, row);
    // Its keys work once it is the active window, as it is for a user.
    if (!forms::MailRead()->isVisible() || !QTest::qWaitForWindowActive(forms::MailRead()))
        return nullptr;
    return forms::MailRead();
}
}  // namespace

class tst_readwindow : public WindowTest
{
    Q_OBJECT

private slots:
    void init() { begin(); }
    void cleanup() { end(); }

    void showsTheMessage();
    void openingMarksRead_data();
    void openingMarksRead();
    void stepsAndActsOnWhatItShows_data();
    void stepsAndActsOnWhatItShows();
    void saveAttachment();
};

void tst_readwindow::showsTheMessage()
{
    putAccounts(*dir, {u"a@x.com"_s, u"b@x.com"_s});
    EmailRec m = mail(u"2"_s, u"boss@y.com"_s, u"c@y.com;b@x.com"_s, u"周报"_s);
    m.attachment = u"report.doc(12.50kb)  a.txt(1.00kb)"_s;
    m.content = u"第一行\r\n第二行"_s;
    put(*dir, FolderFile::Inbox, {mail(u"1"_s), m});

    frmMailRead *r = openRow(mainOn(Node::Inbox), 1);
    QVERIFY(r);
    QCOMPARE(QStringList({r->Label5->text(), r->Label6->text(), r->Label7->text(),
                          r->Label8->text(), r->windowTitle(), r->Text1->toPlainText()}),
             QStringList({u"boss@y.com"_s, u"24-05-13 09:12"_s, u"b@x.com"_s, u"周报"_s, u"周报"_s,
                          u"第一行\n第二行"_s}));
    QVERIFY(r->Text1->isReadOnly());
    QVERIFY(r->lvAddfile->isVisible() && r->Label9->isVisible());
    QCOMPARE(r->lvAddfile->count(), 2);
    QCOMPARE(r->lvAddfile->item(1)->text(), u"a.txt(1.00kb)"_s);

    // Without attachments the row is hidden; a long subject ends in "…".
    r->close();
    m.attachment.clear();
    m.subject = u"很长的主题"_s.repeated(24);
    put(*dir, FolderFile::Inbox, {m});
    r = openRow(mainOn(Node::Inbox), 0);
    QVERIFY(!r->lvAddfile->isVisible() && !r->Label9->isVisible());
    QVERIFY(r->Label8->text().endsWith(u'…'));
    QCOMPARE(r->Label8->toolTip(), m.subject);
}

void tst_readwindow::openingMarksRead_data()
{
    QTest::addColumn<int>("node");
    QTest::addColumn<QString>("name");
    QTest::newRow("Inbox") << int(Node::Inbox) << u"收件箱"_s;
    QTest::newRow("Deleted Items") << int(Node::DeletedItems) << u"已删除邮件"_s;
}

void tst_readwindow::openingMarksRead()
{
    QFETCH(int, node);
    QFETCH(QString, name);
    const int folder = node - Node::Inbox;
    put(*dir, folder, mails(3, 2));  // rows 0 and 1 unread
    frmMain *w = mainOn(node);

    QVERIFY(openRow(w, 0));
    QCOMPARE(isnewInFile(folder), u"010"_s);
    QVERIFY(!rowBold(w, 0) && rowBold(w, 1));
    QCOMPARE(w->node(node)->text(0), name + u"(1)"_s);

    // Opening a read message writes nothing; with the window still open,
    // another message shows at once and is marked too.
    const QByteArray before = dir->readBytes(FolderFile::fileName(folder));
    QVERIFY(openRow(w, 0));
    QCOMPARE(dir->readBytes(FolderFile::fileName(folder)), before);
    QVERIFY(openRow(w, 1));
    QCOMPARE(forms::MailRead()->Label8->text(), u"s20000001"_s);
    QCOMPARE(isnewInFile(folder), u"000"_s);
    QCOMPARE(w->node(node)->text(0), name);
    QVERIFY(!w->node(node)->font(0).bold() && !rowBold(w, 1));
}

void tst_readwindow::stepsAndActsOnWhatItShows_data()
{
    QTest::addColumn<int>("openedRow");
    QTest::addColumn<QString>("presses");  // P previous, N next (buttons), p n (keys)
    QTest::addColumn<QString>("shown");    // row shown after each press
    QTest::addColumn<QString>("isnew");    // the file afterwards; all start unread
    QTest::addColumn<QString>("then");     // a command on the message shown last
    QTest::addColumn<QString>("subject");  // of the compose window it opens
    QTest::newRow("previous on the first stays") << 0 << u"P"_s << u"0"_s << u"011"_s << QString()
                                                 << QString();
    QTest::newRow("next on the last stays") << 2 << u"N"_s << u"2"_s << u"110"_s << QString()
                                            << QString();
    QTest::newRow("walk through all, keys too") << 1 << u"PpNnN"_s << u"00122"_s << u"000"_s
                                                << QString() << QString();
    QTest::newRow("next, then reply: the message shown is quoted")
        << 0 << u"N"_s << u"1"_s << u"001"_s << u"reply"_s << u"Re:s20000001"_s;
    QTest::newRow("CTRL+R replies") << 0 << QString() << QString() << u"011"_s << u"ctrl+r"_s
                                    << u"Re:s20000000"_s;
    QTest::newRow("reply to all replies to the sender")
        << 0 << u"n"_s << u"1"_s << u"001"_s << u"ctrl+shift+r"_s << u"Re:s20000001"_s;
    QTest::newRow("forward from the Message menu") << 2 << QString() << QString() << u"110"_s
                                                   << u"mnuMsgForward"_s << u"Fw:s20000002"_s;
    QTest::newRow("Escape closes") << 1 << QString() << QString() << u"101"_s << u"escape"_s
                                   << QString();
}

void tst_readwindow::stepsAndActsOnWhatItShows()
{
    QFETCH(int, openedRow);
    QFETCH(QString, presses);
    QFETCH(QString, then);
    putAccounts(*dir, {u"a@x.com"_s});
    put(*dir, FolderFile::Inbox, mails(3, 3));
    frmMain *w = mainOn(Node::Inbox);
    frmMailRead *r = openRow(w, openedRow);
    QVERIFY(r);

    QString shown;
    for (QChar key : presses) {
        if (key == u'P' || key == u'N')
            r->toolbarButton(key == u'P' ? frmMailRead::tbPrevious : frmMailRead::tbNext)->trigger();
        else
            QTest::keyClick(r, key == u'p' ? Qt::Key_Less : Qt::Key_Greater, Qt::ControlModifier);
        shown += r->Label8->text().right(1);
    }
    QTEST(shown, "shown");
    QTEST(isnewInFile(FolderFile::Inbox), "isnew");
    const int unread = isnewInFile(FolderFile::Inbox).count(u'1');
    QCOMPARE(w->node(Node::Inbox)->text(0), unread ? u"收件箱(%1)"_s.arg(unread) : u"收件箱"_s);

    if (then == u"reply")
        r->toolbarButton(frmMailRead::tbReply)->trigger();
    else if (then == u"ctrl+r")
        QTest::keyClick(r, Qt::Key_R, Qt::ControlModifier);
    else if (then == u"ctrl+shift+r")
        QTest::keyClick(r, Qt::Key_R, Qt::ControlModifier | Qt::ShiftModifier);
    else if (then == u"escape")
        QTest::keyClick(r, Qt::Key_Escape);
    else if (!then.isEmpty())
        r->findChild<QAction *>(then)->trigger();
    QCOMPARE(r->isVisible(), then.isEmpty());
    QFETCH(QString, subject);
    QCOMPARE(forms::MailEdit()->isVisible(), !subject.isEmpty());
    if (!subject.isEmpty())
        QCOMPARE(forms::MailEdit()->Text5->text(), subject);
}

void tst_readwindow::saveAttachment()
{
    EmailRec m = mail(u"1"_s);
    m.attachment = u"report.doc(12.50kb) plan.xls(3.00kb)"_s;
    put(*dir, FolderFile::Inbox, {m});
    ScriptedFileChooser files;
    frmMailRead *r = openRow(mainOn(Node::Inbox), 0);
    const QString path = dir->filePath(u"saved.doc"_s);
    const QByteArray marker = "\"This is Quillpost Text\"\r\n";

    // The item chosen is offered as the name; a cancel writes nothing.
    r->lvAddfile->setCurrentRow(1);
    r->mnuSave->trigger();
    QCOMPARE(files.lastSuggestedName, u"plan.xls(3.00kb)"_s);
    QCOMPARE(files.lastFilter, texts::read::SaveFilter);
    QVERIFY(!dir->exists(u"saved.doc"_s));

    // A file that is there is only added to when the user says so.
    files.answer(path);
    r->mnuSave->trigger();
    QCOMPARE(dir->readBytes(u"saved.doc"_s), marker);
    for (bool yes : {false, true}) {
        boxes->expectConfirm(Icon::Question, texts::read::SaveTitle,
                             texts::read::AskAppendToFile.arg(u"saved.doc"_s), yes);
        files.answer(path);
        r->mnuSave->trigger();
    }
    QCOMPARE(dir->readBytes(u"saved.doc"_s), marker + marker);

    // The pop-up opens over the list with the right button and the menu key.
    const QPoint at = r->lvAddfile->visualItemRect(r->lvAddfile->item(0)).center();
    QTest::mouseClick(r->lvAddfile->viewport(), Qt::RightButton, {}, at);
    QTRY_VERIFY(r->mnuPop->isVisible());
    r->mnuPop->close();
    QTest::keyClick(r->lvAddfile, Qt::Key_Menu);
    QTRY_VERIFY(r->mnuPop->isVisible());
    r->mnuPop->close();
}

QTEST_MAIN(tst_readwindow)
#include "tst_readwindow.moc"
