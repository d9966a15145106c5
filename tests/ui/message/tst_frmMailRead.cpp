// The read window opened as a user opens it, by double-clicking a row of
// the main window's list, and driven through its tool bar and the
// attachment list's pop-up. Checked on both windows and on the files.

#include "fixtures.h"
#include "store/folders.h"
#include "store/state.h"
#include "testsupport.h"
#include "ui/common/filechooser.h"
#include "ui/common/forms.h"
#include "ui/main/foldernodes.h"
#include "ui/main/frmMain.h"
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
using fixtures::Mail;
using testsupport::DataDir;
using testsupport::ScriptedPrompter;

namespace {

const QString A = u"a@x.com"_s;
const QString B = u"b@x.com"_s;

void click(QTreeWidget *view, QTreeWidgetItem *item)
{
    QTest::mouseClick(view->viewport(), Qt::LeftButton, {}, view->visualItemRect(item).center());
}

frmMain *openFolder(int node)
{
    frmMain *w = forms::Main();
    w->show();
    click(w->TreeView1, w->node(node));
    return w;
}

// Click the row, then double-click it, as a user does.
frmMailRead *openRow(frmMain *w, int row)
{
    const QPoint at = w->ListView1->visualItemRect(w->ListView1->topLevelItem(row)).center();
    QTest::mouseClick(w->ListView1->viewport(), Qt::LeftButton, {}, at);
    QTest::mouseDClick(w->ListView1->viewport(), Qt::LeftButton, {}, at);
    frmMailRead *r = forms::MailRead();
    return r->isVisible() ? r : nullptr;
}

void press(frmMailRead *r, int button)
{
    r->toolbarButton(button)->trigger();
}

bool rowBold(const frmMain *w, int row)
{
    return w->ListView1->topLevelItem(row)->font(3).bold();
}

QStringList isnewInFile(int folder)
{
    EmailArray mails;
    MailCount n = 0;
    LoadEmails(folder, mails, n);
    QStringList flags;
    for (int i = 0; i < n; ++i)
        flags << mails[i].isnew;
    return flags;
}

QStringList items(const QListWidget *list)
{
    QStringList texts;
    for (int i = 0; i < list->count(); ++i)
        texts << list->item(i)->text();
    return texts;
}

}  // namespace

class tst_frmMailRead : public QObject
{
    Q_OBJECT

private slots:
    void init();
    void cleanup();

    void showsTheMessage_data();
    void showsTheMessage();
    void openingMarksRead_data();
    void openingMarksRead();
    void previousAndNext_data();
    void previousAndNext();
    void saveAttachment();
    void replyAndForward_data();
    void replyAndForward();
    void menuBar();
    void chooserFilter_data();
    void chooserFilter();

private:
    std::unique_ptr<DataDir> dir;
    std::unique_ptr<ScriptedPrompter> boxes;
};

void tst_frmMailRead::init()
{
    dir = std::make_unique<DataDir>();
    boxes = std::make_unique<ScriptedPrompter>();
    Main::resetState();
}

void tst_frmMailRead::cleanup()
{
    forms::destroyAll();
    QVERIFY2(boxes->done(), boxes->report());
    boxes.reset();
    dir.reset();
}

void tst_frmMailRead::showsTheMessage_data()
{
    QTest::addColumn<int>("node");
    QTest::addColumn<QString>("to");
    QTest::addColumn<QString>("alsoto");
    QTest::addColumn<QString>("attachment");
    QTest::addColumn<QString>("toLine");
    QTest::addColumn<QStringList>("attachments");  // empty: the row is hidden

    // Accounts a@x.com then b@x.com: the last one decides the To line.
    QTest::newRow("Inbox, sent to the last account: its address")
        << Node::Inbox << u"c@y.com;b@x.com"_s << QString() << QString() << B << QStringList();
    QTest::newRow("Inbox, last account only in the copy line")
        << Node::Inbox << u"c@y.com"_s << B << QString() << B << QStringList();
    QTest::newRow("Inbox, sent to the first account only: the To text")
        << Node::Inbox << u"a@x.com;c@y.com"_s << QString() << QString() << u"a@x.com;c@y.com"_s
        << QStringList();
    QTest::newRow("Inbox, case differs: the To text")
        << Node::Inbox << u"B@x.com"_s << QString() << QString() << u"B@x.com"_s << QStringList();
    QTest::newRow("Sent Items: always the To text")
        << Node::SentItems << B << QString() << QString() << B << QStringList();
    QTest::newRow("two attachments, split at blanks")
        << Node::Inbox << A << QString() << u"report.doc(12.50kb)  a.txt(1.00kb)"_s << A
        << QStringList{u"report.doc(12.50kb)"_s, u"a.txt(1.00kb)"_s};
}

void tst_frmMailRead::showsTheMessage()
{
    QFETCH(int, node);
    QFETCH(QString, to);
    QFETCH(QString, alsoto);
    QFETCH(QString, attachment);
    QFETCH(QString, toLine);
    QFETCH(QStringList, attachments);
    fixtures::writeAccounts(*dir, {A, B});
    Mail m;
    m.from = u"boss@y.com"_s;
    m.to = to;
    m.alsoto = alsoto;
    m.subject = u"周报"_s;
    m.content = u"[第一行\\n第二行]"_s;
    m.datetime = u"24-05-13 09:12"_s;
    m.attachment = attachment;
    fixtures::writeFolder(*dir, node == Node::Inbox ? FolderFile::Inbox : FolderFile::SentItems,
                          {fixtures::mails(1).first(), m});

    frmMailRead *r = openRow(openFolder(node), 1);
    QVERIFY(r);

    QCOMPARE(r->Label5->text(), u"boss@y.com"_s);
    QCOMPARE(r->Label6->text(), u"24-05-13 09:12"_s);
    QCOMPARE(r->Label7->text(), toLine);
    QCOMPARE(r->Label8->text(), u"周报"_s);
    QCOMPARE(r->Text1->toPlainText(), u"第一行\n第二行"_s);
    QVERIFY(r->Text1->isReadOnly());
    QCOMPARE(r->windowTitle(), u"周报"_s);
    QCOMPARE(r->Label9->isVisible(), !attachments.isEmpty());
    QCOMPARE(r->lvAddfile->isVisible(), !attachments.isEmpty());
    if (!attachments.isEmpty()) {
        QCOMPARE(r->Label9->text(), u"附件:"_s);
        QCOMPARE(items(r->lvAddfile), attachments);
    }
    const QStringList captions = {r->Label1->text(), r->Label2->text(), r->Label3->text(),
                                  r->Label4->text()};
    QCOMPARE(captions, (QStringList{u"发件人:"_s, u"日期:"_s, u"收件人:"_s, u"主题:"_s}));
}

void tst_frmMailRead::openingMarksRead_data()
{
    QTest::addColumn<int>("node");
    QTest::addColumn<int>("folder");
    QTest::addColumn<QString>("name");
    QTest::newRow("Inbox") << Node::Inbox << FolderFile::Inbox << u"收件箱"_s;
    QTest::newRow("Deleted Items") << Node::DeletedItems << FolderFile::DeletedItems
                                   << u"已删除邮件"_s;
}

void tst_frmMailRead::openingMarksRead()
{
    QFETCH(int, node);
    QFETCH(int, folder);
    QFETCH(QString, name);
    fixtures::writeFolder(*dir, folder, fixtures::mails(3, 2));  // rows 0 and 1 unread
    frmMain *w = openFolder(node);
    QCOMPARE(w->node(node)->text(0), name + u"(2)"_s);

    frmMailRead *r = openRow(w, 0);
    QVERIFY(r);
    QCOMPARE(isnewInFile(folder), (QStringList{u"0"_s, u"1"_s, u"0"_s}));
    QVERIFY(!rowBold(w, 0));
    QVERIFY(rowBold(w, 1));
    QCOMPARE(w->node(node)->text(0), name + u"(1)"_s);
    QVERIFY(w->node(node)->font(0).bold());

    // Opening a read message again changes nothing, not even the file.
    r->close();
    const QByteArray before = dir->readBytes(FolderFile::fileName(folder));
    QVERIFY(openRow(w, 0));
    QCOMPARE(dir->readBytes(FolderFile::fileName(folder)), before);
    QCOMPARE(w->node(node)->text(0), name + u"(1)"_s);

    // The last unread one: the bare name in normal type.
    r->close();
    QVERIFY(openRow(w, 1));
    QCOMPARE(isnewInFile(folder), (QStringList{u"0"_s, u"0"_s, u"0"_s}));
    QVERIFY(!rowBold(w, 1));
    QCOMPARE(w->node(node)->text(0), name);
    QVERIFY(!w->node(node)->font(0).bold());
}

void tst_frmMailRead::previousAndNext_data()
{
    QTest::addColumn<int>("openedRow");
    QTest::addColumn<QString>("presses");  // P previous, N next
    QTest::addColumn<QStringList>("subjects");  // shown after each press
    QTest::addColumn<QString>("caption");

    // Three unread messages, "subject 0" to "subject 2".
    QTest::newRow("previous on the first stays")
        << 0 << u"P"_s << QStringList{u"subject 0"_s} << u"收件箱(2)"_s;
    QTest::newRow("next on the last stays")
        << 2 << u"N"_s << QStringList{u"subject 2"_s} << u"收件箱(2)"_s;
    QTest::newRow("walk through all: each one marked once")
        << 1 << u"PPNNN"_s
        << QStringList{u"subject 0"_s, u"subject 0"_s, u"subject 1"_s, u"subject 2"_s,
                       u"subject 2"_s}
        << u"收件箱"_s;
}

void tst_frmMailRead::previousAndNext()
{
    QFETCH(int, openedRow);
    QFETCH(QString, presses);
    QFETCH(QStringList, subjects);
    QFETCH(QString, caption);
    fixtures::writeFolder(*dir, FolderFile::Inbox, fixtures::mails(3, 3));
    frmMain *w = openFolder(Node::Inbox);
    frmMailRead *r = openRow(w, openedRow);
    QVERIFY(r);

    QStringList shown;
    for (QChar key : presses) {
        press(r, key == u'P' ? frmMailRead::tbPrevious : frmMailRead::tbNext);
        shown << r->Label8->text();
        QCOMPARE(r->windowTitle(), r->Label8->text());
    }
    QCOMPARE(shown, subjects);
    QCOMPARE(w->node(Node::Inbox)->text(0), caption);
    // Every message shown is read, in the file, in the list and in the count.
    const QStringList flags = isnewInFile(FolderFile::Inbox);
    QCOMPARE(int(w->InboxUnread), int(flags.count(u"1"_s)));
    for (int row = 0; row < 3; ++row) {
        const bool seen = row == openedRow || subjects.contains(u"subject %1"_s.arg(row));
        QCOMPARE(flags.at(row), seen ? u"0"_s : u"1"_s);
        QCOMPARE(rowBold(w, row), !seen);
    }
}

void tst_frmMailRead::saveAttachment()
{
    Mail m = fixtures::mails(1).first();
    m.attachment = u"report.doc(12.50kb) plan.xls(3.00kb)"_s;
    fixtures::writeFolder(*dir, FolderFile::Inbox, {m});
    frmMailRead *r = openRow(openFolder(Node::Inbox), 0);
    QVERIFY(r);
    ScriptedFileChooser chooser;
    const QString target = dir->filePath(u"saved.doc"_s);
    chooser.answer(target);
    chooser.answer(target);

    // Right-button release over the second attachment brings up the pop-up.
    QListWidget *list = r->lvAddfile;
    const QPoint at = list->visualItemRect(list->item(1)).center();
    QTest::mouseClick(list->viewport(), Qt::RightButton, {}, at);
    QTRY_VERIFY(r->mnuPop->isVisible());
    QCOMPARE(r->mnuSave->text(), u"另存为(&A)"_s);
    r->mnuSave->trigger();
    r->mnuPop->hide();

    QCOMPARE(chooser.asked(), 1);
    QCOMPARE(chooser.lastSuggestedName(), u"plan.xls(3.00kb)"_s);
    QCOMPARE(chooser.lastFilter(), u"All Files(*.*)|*.*|"_s);
    const QByteArray marker = "\"This is Quillpost Text\"\r\n";
    QCOMPARE(dir->readBytes(u"saved.doc"_s), marker);

    r->mnuSave->trigger();
    QCOMPARE(dir->readBytes(u"saved.doc"_s), marker + marker);

    // Cancelled: nothing written. The other entries do nothing.
    r->mnuSave->trigger();
    QCOMPARE(chooser.asked(), 3);
    for (QAction *a : r->mnuPop->actions()) {
        if (a != r->mnuSave)
            a->trigger();
    }
    QCOMPARE(chooser.asked(), 3);
    QCOMPARE(dir->readBytes(u"saved.doc"_s), marker + marker);
}

void tst_frmMailRead::replyAndForward_data()
{
    QTest::addColumn<int>("button");
    QTest::addColumn<int>("composeMode");  // -1: the button does nothing
    QTest::newRow("reply") << int(frmMailRead::tbReply) << int(Main::ComposeModes::Reply);
    QTest::newRow("forward") << int(frmMailRead::tbForward) << int(Main::ComposeModes::Forward);
    QTest::newRow("reply to all does nothing") << int(frmMailRead::tbReplyAll) << -1;
    QTest::newRow("delete does nothing") << int(frmMailRead::tbDelete) << -1;
}

void tst_frmMailRead::replyAndForward()
{
    QFETCH(int, button);
    QFETCH(int, composeMode);
    fixtures::writeFolder(*dir, FolderFile::Inbox, fixtures::mails(2));
    frmMailRead *r = openRow(openFolder(Node::Inbox), 1);
    QVERIFY(r);
    Main::ComposeMode = -1;
    QSignalSpy compose(r, &frmMailRead::mailEditRequested);

    press(r, button);

    QCOMPARE(int(Main::ComposeMode), composeMode);
    QCOMPARE(compose.count(), composeMode < 0 ? 0 : 1);
    QCOMPARE(r->isVisible(), composeMode < 0);
    QCOMPARE(r->Label8->text(), u"subject 1"_s);
}

void tst_frmMailRead::menuBar()
{
    fixtures::writeFolder(*dir, FolderFile::Inbox, fixtures::mails(2));
    frmMailRead *r = openRow(openFolder(Node::Inbox), 0);
    QVERIFY(r);

    QStringList titles;
    QStringList entries;
    for (QAction *top : r->menuBar()->actions()) {
        titles << top->text();
        for (QAction *a : top->menu()->actions()) {
            entries << a->text();
            a->trigger();  // none of them acts
        }
    }
    QCOMPARE(titles, (QStringList{u"文件(&F)"_s, u"编辑(&E)"_s, u"查看(&V)"_s, u"工具(&T)"_s,
                                  u"邮件(&M)"_s, u"帮助(&H)"_s}));
    for (const QString &caption : {u"答复发件人(&R)      CTRL+R"_s, u"全部答复            CTRL+SHIFT+R"_s,
                                   u"转发(&F)"_s, u"上一封邮件(&P)    CTRL+<"_s, u"下一封(&N)"_s})
        QVERIFY2(entries.contains(caption), qPrintable(caption));
    QVERIFY(r->isVisible());
    QCOMPARE(r->Label8->text(), u"subject 0"_s);
    QCOMPARE(r->mnuPop->title(), u"弹出"_s);
}

void tst_frmMailRead::chooserFilter_data()
{
    QTest::addColumn<QString>("filter");
    QTest::addColumn<QString>("forDialog");
    QTest::newRow("pattern already in the description")
        << u"All Files(*.*)|*.*|"_s << u"All Files(*.*)"_s;
    QTest::newRow("pattern appended, two pairs")
        << u"Text|*.txt|All|*.*"_s << u"Text (*.txt);;All (*.*)"_s;
    QTest::newRow("a Qt filter stays") << u"Images (*.png)"_s << u"Images (*.png)"_s;
}

void tst_frmMailRead::chooserFilter()
{
    QFETCH(QString, filter);
    QFETCH(QString, forDialog);
    QCOMPARE(dialogFilter(filter), forDialog);
}

QTEST_MAIN(tst_frmMailRead)
#include "tst_frmMailRead.moc"
