// The read window opened as a user opens it, by double-clicking a row of
// the main window's list, then driven through its tool bar and the
// attachment pop-up. Checked on both windows and on the files.

#include "fixtures.h"
#include "store/folders.h"
#include "store/state.h"
#include "ui/common/filechooser.h"
#include "ui/main/foldernodes.h"
#include "ui/main/frmMain.h"
#include "ui/message/frmMailEdit.h"
#include "ui/message/frmMailRead.h"

#include <QAction>
#include <QLabel>
#include <QListWidget>
#include <QMenu>
#include <QMenuBar>
#include <QSignalSpy>
#include <QTest>
#include <QTextEdit>
#include <QTreeWidget>

#include <memory>

using namespace Qt::Literals::StringLiterals;

using namespace fixtures;

namespace {
// Click the row, then double-click it, as a user does.
frmMailRead *openRow(frmMain *w, int row)
{
    doubleClickRow(w->ListView1, row);
    return forms::MailRead()->isVisible() ? forms::MailRead() : nullptr;
}

bool rowBold(const frmMain *w, int row)
{
    return w->ListView1->topLevelItem(row)->font(3).bold();
}

QString isnewInFile(int folder)
{
    QString flags;
    for (const EmailRec &m : stored(folder))
        flags += m.isnew;
    return flags;
}
}  // namespace

class tst_frmMailRead : public WindowTest
{
    Q_OBJECT

private slots:
    void init() { begin(); }
    void cleanup() { end(); }

    void showsTheMessage_data()
    {
        QTest::addColumn<int>("node");
        QTest::addColumn<QString>("to");
        QTest::addColumn<QString>("alsoto");
        QTest::addColumn<QString>("attachment");
        QTest::addColumn<QString>("toLine");
        QTest::addColumn<QStringList>("attachments");  // none: the row is hidden

        // Accounts a@x.com then b@x.com: the last one decides the To line.
        const QString b = u"b@x.com"_s;
        QTest::newRow("Inbox, to the last account: its address")
            << Node::Inbox << u"c@y.com;b@x.com"_s << QString() << QString() << b << QStringList();
        QTest::newRow("Inbox, last account in the copy line")
            << Node::Inbox << u"c@y.com"_s << b << QString() << b << QStringList();
        QTest::newRow("Inbox, to the first account only: the To text")
            << Node::Inbox << u"a@x.com;c@y"_s << QString() << QString() << u"a@x.com;c@y"_s
            << QStringList();
        QTest::newRow("Inbox, case differs: the To text")
            << Node::Inbox << u"B@x.com"_s << QString() << QString() << u"B@x.com"_s
            << QStringList();
        QTest::newRow("Sent Items: always the To text")
            << Node::SentItems << b << QString() << QString() << b << QStringList();
        QTest::newRow("two attachments, split at blanks")
            << Node::Inbox << b << QString() << u"report.doc(12.50kb)  a.txt(1.00kb)"_s << b
            << QStringList{u"report.doc(12.50kb)"_s, u"a.txt(1.00kb)"_s};
    }
    void showsTheMessage()
    {
        QFETCH(int, node);
        QFETCH(QStringList, attachments);
        writeAccounts(*dir, {u"a@x.com"_s, u"b@x.com"_s});
        Mail m;
        m.from = u"boss@y.com"_s;
        QFETCH(QString, to);
        QFETCH(QString, alsoto);
        QFETCH(QString, attachment);
        m.to = to;
        m.alsoto = alsoto;
        m.attachment = attachment;
        m.subject = u"周报"_s;
        m.content = u"[第一行\\n第二行]"_s;
        writeFolder(*dir, node == Node::Inbox ? FolderFile::Inbox : FolderFile::SentItems,
                              {mails(1).first(), m});

        frmMailRead *r = openRow(mainOn(node), 1);
        QVERIFY(r);
        QCOMPARE((QStringList{r->Label1->text(), r->Label2->text(), r->Label3->text(),
                              r->Label4->text()}),
                 (QStringList{u"发件人:"_s, u"日期:"_s, u"收件人:"_s, u"主题:"_s}));
        QCOMPARE(r->Label5->text(), u"boss@y.com"_s);
        QCOMPARE(r->Label6->text(), u"24-05-13 09:12"_s);
        QTEST(r->Label7->text(), "toLine");
        QCOMPARE(r->Label8->text(), u"周报"_s);
        QCOMPARE(r->windowTitle(), u"周报"_s);
        QCOMPARE(r->Text1->toPlainText(), u"第一行\n第二行"_s);
        QVERIFY(r->Text1->isReadOnly());
        QCOMPARE(r->Label9->isVisible(), !attachments.isEmpty());
        QCOMPARE(r->lvAddfile->isVisible(), !attachments.isEmpty());
        QStringList shown;
        for (int i = 0; i < r->lvAddfile->count(); ++i)
            shown << r->lvAddfile->item(i)->text();
        QCOMPARE(shown, attachments);
    }

    void openingMarksRead_data()
    {
        QTest::addColumn<int>("node");
        QTest::addColumn<int>("folder");
        QTest::addColumn<QString>("name");
        QTest::newRow("Inbox") << Node::Inbox << FolderFile::Inbox << u"收件箱"_s;
        QTest::newRow("Deleted Items")
            << Node::DeletedItems << FolderFile::DeletedItems << u"已删除邮件"_s;
    }
    void openingMarksRead()
    {
        QFETCH(int, node);
        QFETCH(int, folder);
        QFETCH(QString, name);
        writeFolder(*dir, folder, mails(3, 2));  // rows 0 and 1 unread
        frmMain *w = mainOn(node);

        QVERIFY(openRow(w, 0));
        QCOMPARE(isnewInFile(folder), u"010"_s);
        QVERIFY(!rowBold(w, 0) && rowBold(w, 1));
        QCOMPARE(w->node(node)->text(0), name + u"(1)"_s);
        QVERIFY(w->node(node)->font(0).bold());

        // Opening a read message again writes nothing and counts nothing.
        forms::MailRead()->close();
        const QByteArray before = dir->readBytes(FolderFile::fileName(folder));
        QVERIFY(openRow(w, 0));
        QCOMPARE(dir->readBytes(FolderFile::fileName(folder)), before);
        QCOMPARE(w->node(node)->text(0), name + u"(1)"_s);

        // The last unread one: the bare name in normal type.
        forms::MailRead()->close();
        QVERIFY(openRow(w, 1));
        QCOMPARE(isnewInFile(folder), u"000"_s);
        QCOMPARE(w->node(node)->text(0), name);
        QVERIFY(!w->node(node)->font(0).bold() && !rowBold(w, 1));
    }

    void previousAndNext_data()
    {
        QTest::addColumn<int>("openedRow");
        QTest::addColumn<QString>("presses");  // P previous, N next
        QTest::addColumn<QString>("shown");    // row shown after each press
        QTest::addColumn<QString>("isnew");    // the file afterwards; all three start unread
        QTest::newRow("previous on the first stays") << 0 << u"P"_s << u"0"_s << u"011"_s;
        QTest::newRow("next on the last stays") << 2 << u"N"_s << u"2"_s << u"110"_s;
        QTest::newRow("walk through all") << 1 << u"PPNNN"_s << u"00122"_s << u"000"_s;
    }
    void previousAndNext()
    {
        QFETCH(int, openedRow);
        QFETCH(QString, presses);
        writeFolder(*dir, FolderFile::Inbox, mails(3, 3));
        frmMain *w = mainOn(Node::Inbox);
        frmMailRead *r = openRow(w, openedRow);
        QVERIFY(r);

        QString shown;
        for (QChar key : presses) {
            r->toolbarButton(key == u'P' ? frmMailRead::tbPrevious : frmMailRead::tbNext)->trigger();
            shown += r->Label8->text().right(1);  // "subject N"
        }
        QTEST(shown, "shown");
        QTEST(isnewInFile(FolderFile::Inbox), "isnew");
        const int unread = isnewInFile(FolderFile::Inbox).count(u'1');
        QCOMPARE(w->InboxUnread, unread);
        QCOMPARE(w->node(Node::Inbox)->text(0), unread ? u"收件箱(%1)"_s.arg(unread) : u"收件箱"_s);
        for (int row = 0; row < 3; ++row)
            QCOMPARE(rowBold(w, row), isnewInFile(FolderFile::Inbox).at(row) == u'1');
    }

    void saveAttachmentAppendsTheMarker()
    {
        Mail m;
        m.attachment = u"report.doc(12.50kb) plan.xls(3.00kb)"_s;
        writeFolder(*dir, FolderFile::Inbox, {m});
        frmMailRead *r = openRow(mainOn(Node::Inbox), 0);
        QVERIFY(r);
        ScriptedFileChooser chooser;
        const QString target = dir->filePath(u"saved.doc"_s);
        chooser.answer(target);
        chooser.answer(target);  // then a cancel

        // Right-button release over the second attachment: the pop-up.
        QListWidget *list = r->lvAddfile;
        QTest::mouseClick(list->viewport(), Qt::RightButton, {},
                          list->visualItemRect(list->item(1)).center());
        QTRY_VERIFY(r->mnuPop->isVisible());
        QCOMPARE(r->mnuSave->text(), u"另存为(&A)"_s);
        const QByteArray marker = "\"This is Quillpost Text\"\r\n";
        const QByteArray twice = marker + marker;
        for (const QByteArray &expected : {marker, twice, twice}) {
            r->mnuSave->trigger();
            QCOMPARE(dir->readBytes(u"saved.doc"_s), expected);
        }
        QCOMPARE(chooser.asked(), 3);
        QCOMPARE(chooser.lastSuggestedName(), u"plan.xls(3.00kb)"_s);
        QCOMPARE(chooser.lastFilter(), u"All Files(*.*)|*.*|"_s);
        QCOMPARE(dialogFilter(chooser.lastFilter()), u"All Files(*.*)"_s);
        for (QAction *a : r->mnuPop->actions()) {  // the other entries do nothing
            if (a != r->mnuSave)
                a->trigger();
        }
        QCOMPARE(chooser.asked(), 3);
    }

    void toolbarAndMenus_data()
    {
        QTest::addColumn<int>("button");
        QTest::addColumn<int>("composeMode");  // -1: nothing happens
        QTest::newRow("reply") << int(frmMailRead::tbReply) << int(Main::ComposeModes::Reply);
        QTest::newRow("forward") << int(frmMailRead::tbForward) << int(Main::ComposeModes::Forward);
        QTest::newRow("reply to all") << int(frmMailRead::tbReplyAll) << -1;
        QTest::newRow("delete") << int(frmMailRead::tbDelete) << -1;
    }
    void toolbarAndMenus()
    {
        QFETCH(int, button);
        QFETCH(int, composeMode);
        writeFolder(*dir, FolderFile::Inbox, mails(2));
        // The compose window that reply and forward open wants an account.
        writeAccounts(*dir, {u"rcpt1@x.com"_s});
        frmMailRead *r = openRow(mainOn(Node::Inbox), 1);
        QVERIFY(r);
        Main::ComposeMode = -1;

        // The menu bar is there to be seen: every entry does nothing.
        QStringList titles, entries;
        for (QAction *top : r->menuBar()->actions()) {
            titles << top->text();
            for (QAction *a : top->menu()->actions()) {
                entries << a->text();
                a->trigger();
            }
        }
        QCOMPARE(titles, (QStringList{u"文件(&F)"_s, u"编辑(&E)"_s, u"查看(&V)"_s, u"工具(&T)"_s,
                                      u"邮件(&M)"_s, u"帮助(&H)"_s}));
        for (const QString &caption :
             {u"答复发件人(&R)      CTRL+R"_s, u"全部答复            CTRL+SHIFT+R"_s, u"转发(&F)"_s,
              u"上一封邮件(&P)    CTRL+<"_s, u"下一封(&N)"_s})
            QVERIFY2(entries.contains(caption), qPrintable(caption));
        QVERIFY(r->isVisible());

        r->toolbarButton(button)->trigger();
        QCOMPARE(int(Main::ComposeMode), composeMode);
        QCOMPARE(forms::MailEdit()->isVisible(), composeMode >= 0);
        QCOMPARE(r->isVisible(), composeMode < 0);
    }
};

QTEST_MAIN(tst_frmMailRead)
#include "tst_frmMailRead.moc"
