// frmMain driven as a user drives it: clicks on tree nodes, summary rows and
// list rows, checked on what the window shows and on the files.

#include "fixtures.h"
#include "store/records.h"
#include "store/state.h"
#include "testsupport.h"
#include "texts.h"
#include "ui/common/forms.h"
#include "ui/common/twips.h"
#include "ui/main/foldernodes.h"
#include "ui/main/frmMain.h"
#include "ui/message/frmMailEdit.h"
#include "ui/message/frmMailRead.h"

#include <QAction>
#include <QFrame>
#include <QHeaderView>
#include <QLabel>
#include <QScreen>
#include <QSignalSpy>
#include <QStatusBar>
#include <QTest>
#include <QTextEdit>
#include <QTreeWidget>

#include <memory>

using namespace Qt::Literals::StringLiterals;

namespace {

// The eight context buttons (2-7, 13, 14): H hidden, D disabled, E enabled;
// the four fixed ones (1, 9, 11, 12) must always be there to use.
QString contextButtons(const frmMain *w)
{
    for (int i : {1, 9, 11, 12}) {
        if (!w->toolbarButton(i)->isVisible() || !w->toolbarButton(i)->isEnabled())
            return u"fixed button %1 unavailable"_s.arg(i);
    }
    QString s;
    for (int i : {2, 3, 4, 5, 6, 7, 13, 14}) {
        const QAction *a = w->toolbarButton(i);
        s += !a->isVisible() ? u'H' : a->isEnabled() ? u'E' : u'D';
    }
    return s;
}

// Headers of the person, time and account columns, joined by "|".
QString listHeaders(const frmMain *w)
{
    const QTreeWidgetItem *h = w->ListView1->headerItem();
    return h->text(2) + u'|' + h->text(4) + u'|' + h->text(5);
}

QString page(const frmMain *w)
{
    if (w->Frame2->isVisible())
        return u"message"_s;
    if (w->Frame5->isVisible())
        return u"summary"_s;
    return w->Frame4->isVisible() ? u"start"_s : u"none"_s;
}

const QString Received = u"发件人|接收时间|"_s;
const QString Sent = u"收件人|发送时间|账号"_s;

}  // namespace

using namespace fixtures;

class tst_frmMain : public WindowTest
{
    Q_OBJECT

private slots:
    void init() { begin(); }
    void cleanup() { end(); }

    void startUp_data();
    void startUp();
    void nodeClick_data();
    void nodeClick();
    void summaryCounts();
    void summaryRowClick_data();
    void summaryRowClick();
    void listRows_data();
    void listRows();
    void previewToLine_data();
    void previewToLine();
    void clickBesideRowsClearsPreview();
    void doubleClick_data();
    void doubleClick();
    void layout();
};

void tst_frmMain::startUp_data()
{
    QTest::addColumn<int>("inboxUnread");
    QTest::addColumn<int>("deletedUnread");
    QTest::addColumn<QString>("inboxText");
    QTest::addColumn<QString>("deletedText");
    QTest::newRow("no unread mail: plain names") << 0 << 0 << u"收件箱"_s << u"已删除邮件"_s;
    QTest::newRow("three unread in the Inbox: count in bold")
        << 3 << 0 << u"收件箱(3)"_s << u"已删除邮件"_s;
    QTest::newRow("unread in Deleted Items only") << 0 << 2 << u"收件箱"_s << u"已删除邮件(2)"_s;
}

void tst_frmMain::startUp()
{
    QFETCH(int, inboxUnread);
    QFETCH(int, deletedUnread);
    QFETCH(QString, inboxText);
    QFETCH(QString, deletedText);
    writeFolder(*dir, FolderFile::Inbox, mails(5, inboxUnread));
    writeFolder(*dir, FolderFile::DeletedItems, mails(2, deletedUnread));
    const QByteArray before = allFiles(*dir);

    frmMain *w = mainOn();

    QCOMPARE(w->windowTitle(), u"Quillpost Express"_s);
    const QStringList nodeTexts = {u"Quillpost Express"_s, u"本地文件夹"_s, inboxText,
                                   u"发件箱"_s, u"已发送邮件"_s, deletedText, u"草稿"_s};
    for (int i = 1; i <= Node::Count; ++i) {
        QCOMPARE(w->node(i)->text(0), nodeTexts.at(i - 1));
        QCOMPARE(w->node(i)->font(0).bold(), nodeTexts.at(i - 1).endsWith(u')'));
    }
    QCOMPARE(w->node(Node::Inbox)->parent(), w->node(Node::LocalFolders));
    QVERIFY(w->node(Node::Root)->isExpanded() && w->node(Node::LocalFolders)->isExpanded());
    QVERIFY(w->TreeView1->selectedItems().isEmpty());
    QCOMPARE(page(w), u"start"_s);
    QCOMPARE(contextButtons(w), u"HHHHHHHH"_s);
    QVERIFY(w->StatusPanel2->text().endsWith(u"正在联机工作"_s));
    QCOMPARE(allFiles(*dir), before);  // start-up writes nothing

    // Near the top-left corner: a hundredth of the free space in. Checked
    // where the screen has room; elsewhere the platform may pull the window
    // back onto the screen.
    const QRect screen = QGuiApplication::primaryScreen()->geometry();
    const QPoint at = twips::nearTopLeft(
        QSize(int(twips::fromPixels(screen.width())), int(twips::fromPixels(screen.height()))),
        QSize(frmMain::DesignWidth, frmMain::DesignHeight));
    if (at.x() >= 0)
        QCOMPARE(w->x(), twips::toPixels(at.x()));
    if (at.y() >= 0)
        QCOMPARE(w->y(), twips::toPixels(at.y()));
}

void tst_frmMain::nodeClick_data()
{
    QTest::addColumn<int>("node");
    QTest::addColumn<QString>("label1");
    QTest::addColumn<QString>("shownPage");
    QTest::addColumn<int>("folder");
    QTest::addColumn<bool>("holdsUnsent");
    QTest::addColumn<QString>("headers");
    QTest::addColumn<QString>("toolbar");
    QTest::addColumn<QString>("rowToolbar");  // once a message is previewed
    QTest::newRow("root after a folder: start page, buttons hidden")
        << 1 << u"Quillpost Express"_s << u"start"_s << 4 << true << QString() << u"HHHHHHHH"_s
        << QString();
    QTest::newRow("Local Folders: summary, buttons disabled")
        << 2 << u"本地文件夹"_s << u"summary"_s << 4 << true << QString() << u"DDDDDDDD"_s
        << QString();
    QTest::newRow("Inbox: received-mail columns; reply, forward and delete")
        << 3 << u"收件箱"_s << u"message"_s << 0 << false << Received << u"DDDDDDDD"_s
        << u"EEEEEEEE"_s;
    QTest::newRow("Outbox: unsent, recipient columns; forward and delete")
        << 4 << u"发件箱"_s << u"message"_s << 1 << true << Sent << u"DDDDDDDD"_s << u"DDEEEEEE"_s;
    QTest::newRow("Sent Items: recipient columns; forward and delete")
        << 5 << u"已发送邮件"_s << u"message"_s << 2 << false << Sent << u"DDDDDDDD"_s
        << u"DDEEEEEE"_s;
    QTest::newRow("Deleted Items: received-mail columns; forward and delete")
        << 6 << u"已删除邮件"_s << u"message"_s << 3 << false << Received << u"DDDDDDDD"_s
        << u"DDEEEEEE"_s;
    QTest::newRow("Drafts: unsent, recipient columns")
        << 7 << u"草稿"_s << u"message"_s << 4 << true << Sent << u"DDDDDDDD"_s << u"DDEEEEEE"_s;
}

void tst_frmMain::nodeClick()
{
    QFETCH(int, node);
    QFETCH(QString, shownPage);
    for (int f : {FolderFile::Inbox, FolderFile::Outbox, FolderFile::SentItems,
                  FolderFile::DeletedItems, FolderFile::Drafts})
        writeFolder(*dir, f, mails(2));
    frmMain *w = mainOn(Node::Drafts);  // come from a folder page

    clickItem(w->TreeView1, w->node(node));

    QCOMPARE(page(w), shownPage);
    QTEST(w->Label1->text(), "label1");
    QTEST(int(w->CurrentFolder), "folder");
    QTEST(w->FolderHoldsUnsent, "holdsUnsent");
    QTEST(contextButtons(w), "toolbar");
    if (shownPage == u"message") {
        QTEST(listHeaders(w), "headers");
        QCOMPARE(w->Text1->toPlainText(), u"未选择任何邮件"_s);
        QCOMPARE(w->Text1->alignment(), Qt::AlignCenter);
        QCOMPARE(w->SelectedMail, 0);
        clickRow(w->ListView1, 0);
        QTEST(contextButtons(w), "rowToolbar");
    }
}

void tst_frmMain::summaryCounts()
{
    writeFolder(*dir, FolderFile::Inbox, mails(4, 2));
    writeFolder(*dir, FolderFile::Outbox, mails(2, 2));  // never counted
    writeFolder(*dir, FolderFile::SentItems, mails(1, 1));
    writeFolder(*dir, FolderFile::DeletedItems, mails(3, 1));
    const QByteArray before = allFiles(*dir);
    frmMain *w = mainOn(Node::LocalFolders);

    const QStringList expected = {u"收件箱 2 4"_s, u"发件箱 0 2"_s, u"已发送邮件 0 1"_s,
                                  u"已删除邮件 1 3"_s, u"草稿 0 0"_s};  // no drafts file
    QCOMPARE(w->ListView2->topLevelItemCount(), expected.size());
    for (int r = 0; r < expected.size(); ++r) {
        const QTreeWidgetItem *row = w->ListView2->topLevelItem(r);
        QCOMPARE(row->text(0) + u' ' + row->text(1) + u' ' + row->text(2), expected.at(r));
        QVERIFY(!row->icon(0).isNull());
    }
    QCOMPARE(w->ListView2->headerItem()->text(0), u"文件夹"_s);
    QVERIFY(!w->ListView2->header()->sectionsClickable());
    QCOMPARE(allFiles(*dir), before);
}

void tst_frmMain::summaryRowClick_data()
{
    QTest::addColumn<int>("row");
    QTest::addColumn<int>("node");
    QTest::addColumn<bool>("holdsUnsent");
    QTest::addColumn<QString>("headers");
    QTest::newRow("Inbox row opens the Inbox") << 0 << 3 << false << Received;
    QTest::newRow("Outbox row opens the Outbox") << 1 << 4 << true << Sent;
    QTest::newRow("Sent Items row opens Sent Items") << 2 << 5 << false << Sent;
    QTest::newRow("Deleted Items row opens it as unsent mail") << 3 << 6 << true << Sent;
    QTest::newRow("Drafts row opens Drafts") << 4 << 7 << true << Sent;
}

void tst_frmMain::summaryRowClick()
{
    QFETCH(int, row);
    QFETCH(int, node);
    writeFolder(*dir, row, mails(3, 3));
    frmMain *w = mainOn(Node::LocalFolders);

    clickRow(w->ListView2, row);

    QCOMPARE(page(w), u"message"_s);
    QCOMPARE(w->TreeView1->currentItem(), w->node(node));
    QCOMPARE(w->Label1->text(), w->ListView2->topLevelItem(row)->text(0));
    QCOMPARE(int(w->CurrentFolder), row);
    QTEST(w->FolderHoldsUnsent, "holdsUnsent");
    QTEST(listHeaders(w), "headers");
    QCOMPARE(w->ListView1->topLevelItemCount(), 3);
}

void tst_frmMain::listRows_data()
{
    QTest::addColumn<int>("node");
    QTest::addColumn<bool>("inboxStyle");
    QTest::newRow("Inbox: unread bold, attachment icon, sender") << 3 << true;
    QTest::newRow("Deleted Items node: like the Inbox") << 6 << true;
    QTest::newRow("Outbox: never bold, no icon, recipient") << 4 << false;
    QTest::newRow("Sent Items: never bold, no icon, recipient") << 5 << false;
}

void tst_frmMain::listRows()
{
    QFETCH(int, node);
    QFETCH(bool, inboxStyle);
    QList<Mail> list = mails(3);
    list[0].isnew = u"1"_s;
    list[0].attachment = u"plan.doc"_s;
    list[1].isnew = u"yes"_s;  // reads back as "0"
    list[2].isnew = u"1"_s;
    list[2].datetime = u"stored as is"_s;
    writeFolder(*dir, node - Node::Inbox, list);

    frmMain *w = mainOn(node);

    QCOMPARE(w->ListView1->topLevelItemCount(), 3);
    const bool unread[] = {true, false, true};
    for (int r = 0; r < 3; ++r) {
        const QTreeWidgetItem *row = w->ListView1->topLevelItem(r);
        QCOMPARE(row->text(0) + row->text(1) + row->text(5), QString());
        QCOMPARE(row->text(2), inboxStyle ? list[r].from : list[r].to);
        QCOMPARE(row->text(3), list[r].subject);  // file order, unsorted
        QCOMPARE(row->text(4), list[r].datetime);
        for (int c : {2, 3, 4})
            QCOMPARE(row->font(c).bold(), inboxStyle && unread[r]);
        QCOMPARE(!row->icon(0).isNull(), inboxStyle && r == 0);
    }
}

void tst_frmMain::previewToLine_data()
{
    QTest::addColumn<int>("node");
    QTest::addColumn<QStringList>("accounts");
    QTest::addColumn<QString>("to");
    QTest::addColumn<QString>("alsoto");
    QTest::addColumn<QString>("toLine");
    const QStringList two = {u"a@x.com"_s, u"b@x.com"_s};
    QTest::newRow("Inbox, both accounts addressed: the last account's address")
        << 3 << two << u"a@x.com;b@x.com"_s << QString() << u"b@x.com"_s;
    QTest::newRow("Inbox, only the first account addressed: the To text")
        << 3 << two << u"a@x.com, c@y.com"_s << QString() << u"a@x.com, c@y.com"_s;
    QTest::newRow("Inbox, the last account in Cc: its address")
        << 3 << two << u"c@y.com"_s << u" b@x.com "_s << u"b@x.com"_s;
    QTest::newRow("Inbox, the address must match in case")
        << 3 << QStringList{u"B@x.com"_s} << u"b@x.com;c@y.com"_s << QString()
        << u"b@x.com;c@y.com"_s;
    QTest::newRow("Inbox, no match across a separator")
        << 3 << QStringList{u"x.com;b"_s} << u"a@x.com;b@x.com"_s << QString()
        << u"a@x.com;b@x.com"_s;
    QTest::newRow("Sent Items always shows the To text")
        << 5 << two << u"b@x.com;c@y.com"_s << QString() << u"b@x.com;c@y.com"_s;
}

void tst_frmMain::previewToLine()
{
    QFETCH(int, node);
    QFETCH(QStringList, accounts);
    writeAccounts(*dir, accounts);
    Mail m;
    m.from = u"sender@y.com"_s;
    QFETCH(QString, to);
    QFETCH(QString, alsoto);
    m.to = to;
    m.alsoto = alsoto;
    m.subject = u"会议"_s;
    m.content = u"[line one\\nline two]"_s;
    writeFolder(*dir, node - Node::Inbox, {mails(1).first(), m});
    const QByteArray before = allFiles(*dir);

    frmMain *w = mainOn(node, 1);

    QCOMPARE(w->SelectedMail, 1);
    QCOMPARE(w->Label5->text(), u"sender@y.com"_s);
    QTEST(w->Label7->text(), "toLine");
    QCOMPARE(w->Label9->text(), u"会议"_s);
    QCOMPARE(w->Text1->toPlainText(), u"line one\nline two"_s);
    QCOMPARE(w->Text1->alignment(), Qt::AlignLeft);
    QVERIFY(w->Label7->y() > w->Label6->y() && w->Label6->y() > w->Label5->y());
    QCOMPARE(allFiles(*dir), before);  // previewing does not mark mail read
}

void tst_frmMain::clickBesideRowsClearsPreview()
{
    writeFolder(*dir, FolderFile::Inbox, mails(2));
    frmMain *w = mainOn(Node::Inbox, 1);
    QCOMPARE(w->Label9->text(), u"subject 1"_s);

    QTest::mouseClick(w->ListView1->viewport(), Qt::LeftButton, {}, belowRows(w->ListView1));

    QCOMPARE(w->Text1->toPlainText(), u"未选择任何邮件"_s);
    QCOMPARE(w->Label5->text() + w->Label7->text() + w->Label9->text(), QString());
    QCOMPARE(contextButtons(w), u"DDDDDDDD"_s);

    // Another button than the left one does not act.
    clickRow(w->ListView1, 0);
    QTest::mouseClick(w->ListView1->viewport(), Qt::RightButton, {},
                      w->ListView1->visualItemRect(w->ListView1->topLevelItem(1)).center());
    QCOMPARE(w->Label9->text(), u"subject 0"_s);
}

void tst_frmMain::doubleClick_data()
{
    QTest::addColumn<bool>("fromSummary");
    QTest::addColumn<int>("where");  // node, or summary row + 1
    QTest::addColumn<bool>("opensEditor");
    QTest::newRow("Inbox message opens the read window") << false << 3 << false;
    QTest::newRow("Deleted Items node opens the read window") << false << 6 << false;
    QTest::newRow("Outbox message opens the compose window") << false << 4 << true;
    QTest::newRow("Drafts message opens the compose window") << false << 7 << true;
    QTest::newRow("Deleted Items from the summary opens the compose window") << true << 4 << true;
}

void tst_frmMain::doubleClick()
{
    QFETCH(bool, fromSummary);
    QFETCH(int, where);
    QFETCH(bool, opensEditor);
    writeFolder(*dir, fromSummary ? where - 1 : where - Node::Inbox, mails(3));
    frmMain *w = mainOn();
    auto openFolder = [&] {
        clickItem(w->TreeView1, w->node(fromSummary ? int(Node::LocalFolders) : where));
        if (fromSummary)
            clickRow(w->ListView2, where - 1);
    };
    openFolder();
    Main::ComposeMode = Main::ComposeModes::New;

    doubleClickRow(w->ListView1, 2);

    QCOMPARE(w->CurrentMailId, u"20000002"_s);
    QCOMPARE(forms::MailRead()->isVisible(), !opensEditor);
    QCOMPARE(forms::MailEdit()->isVisible(), opensEditor);
    QCOMPARE(Main::ComposeMode, opensEditor ? Main::ComposeModes::Reopen : Main::ComposeModes::New);

    // With nothing previewed a double-click only records the id.
    clickItem(w->TreeView1, w->node(Node::Root));
    openFolder();
    doubleClickAt(w->ListView1, belowRows(w->ListView1));
    QCOMPARE(w->CurrentMailId, u"20000000"_s);  // SelectedMail went back to 0
}

void tst_frmMain::layout()
{
    frmMain *w = mainOn();
    const QRect tinyFrame2 = w->Frame2->geometry();
    const QRect tinyTree = w->TreeView1->geometry();
    w->resize(150, 60);  // below 1450 twips high and 2760 wide: nothing moves
    QCoreApplication::processEvents();
    QCOMPARE(w->Frame2->geometry(), tinyFrame2);
    QCOMPARE(w->TreeView1->geometry(), tinyTree);

    w->resize(1000, 700);
    QCoreApplication::processEvents();
    const double W = twips::fromPixels(w->centralWidget()->width());
    const double H = twips::fromPixels(w->centralWidget()->height() + w->StatusBar1->height());
    auto px = [](double tw) { return twips::toPixels(tw); };
    QCOMPARE(w->TreeView1->geometry(), QRect(0, px(1170), px(2760), px(H - 1450)));
    QCOMPARE(w->Frame2->geometry(), QRect(px(2760), px(1170), px(W - 2760), px(H - 1450)));
    QCOMPARE(w->Frame5->width(), w->Frame2->width() + px(60));
    // The panes end where the status bar begins.
    QCOMPARE(w->Frame2->geometry().bottom() + 1, w->centralWidget()->height());
    QVERIFY(qAbs(w->ListView1->height() - w->Frame3->height()) <= 1);
    QCOMPARE(w->StatusPanel1->width(), px(W - 4200));
    QVERIFY(w->CoolBar1->geometry().bottom() < w->TreeView1->y());
    QVERIFY(w->Label1->geometry().bottom() < w->TreeView1->y());

    // The tree keeps its width when the window grows; the panes take it.
    const int listWidth = w->ListView1->width();
    w->resize(1200, 700);
    QCoreApplication::processEvents();
    QCOMPARE(w->TreeView1->width(), px(2760));
    QCOMPARE(w->ListView1->width(), listWidth + 200);
}

QTEST_MAIN(tst_frmMain)
#include "tst_frmmain.moc"
