// The main window as a user drives it: its start, the tree and its pages
// by mouse and keyboard, the list and the preview, the commands and the
// windows they open, closing. Whatever the user does, the page belongs to
// the current node and every command acts on the message previewed.

#include "windows.h"

using namespace Qt::Literals::StringLiterals;
using namespace testsupport;

namespace {
const QString Received = u"发件人|主题|接收时间|"_s, Unsent = u"收件人|主题|发送时间|账号"_s;

QString page(const frmMain *w)
{
    return w->Frame2->isVisible() ? u"messages"_s : w->Frame5->isVisible() ? u"summary"_s : u"start"_s;
}

QString headers(const frmMain *w)
{
    const QTreeWidgetItem *h = w->ListView1->headerItem();
    return QStringList({h->text(2), h->text(3), h->text(4), h->text(5)}).join(u'|');
}

QString rows(const frmMain *w)
{
    QStringList list;
    for (int i = 0; i < w->ListView1->topLevelItemCount(); ++i)
        list << w->ListView1->topLevelItem(i)->text(3);
    return list.join(u'|');
}

// Keys given to a widget, as "Down Down Return".
void keys(QWidget *w, const QString &sequence)
{
    for (const QString &key : sequence.split(u' ', Qt::SkipEmptyParts)) {
        const QKeyCombination c = QKeySequence(key)[0];
        QTest::keyClick(w, c.key(), c.keyboardModifiers());
    }
}

// What a user does: "button N" on the tool bar, "list: KEYS" or "window:
// KEYS" from the keyboard, "double" on row 1, "drop N" in the send/receive
// drop-down, or the name of a menu item or a button.
void act(frmMain *w, const QString &how)
{
    const QString arg = how.section(u' ', 1);
    QWidget *typed = how.startsWith(u"list:") ? static_cast<QWidget *>(w->ListView1) : w;
    typed->setFocus();
    if (how.startsWith(u"button"))
        clickButton(w->Toolbar1, w->toolbarButton(arg.toInt()));
    else if (how.contains(u':'))
        keys(QTest::qWaitForWindowActive(w) ? typed : nullptr, arg);  // keys reach active windows
    else if (how == u"double")
        doubleClickRow(w->ListView1, 1);
    else if (how.startsWith(u"drop"))
        w->sendReceiveMenu->actions().at(arg.toInt())->trigger();
    else if (auto *b = w->findChild<QAbstractButton *>(how))
        QTest::mouseClick(b, Qt::LeftButton);
    else
        w->findChild<QAction *>(how)->trigger();
}
}  // namespace

class tst_mainwindow : public WindowTest
{
    Q_OBJECT

private slots:
    void init() { begin(); }
    void cleanup() { end(); }

    void startUp()
    {
        put(*dir, FolderFile::Inbox, mails(5, 3));
        put(*dir, FolderFile::DeletedItems, mails(2));
        const QByteArray before = allFiles(*dir);
        frmMain *w = mainOn();

        QString tree;  // bold captions marked with *
        for (int i = 1; i <= Node::Count; ++i)
            tree += w->node(i)->text(0) + (w->node(i)->font(0).bold() ? u"*|"_s : u"|"_s);
        QCOMPARE(tree, u"Quillpost Express|本地文件夹|收件箱(3)*|发件箱|已发送邮件|已删除邮件|草稿|"_s);
        QVERIFY(w->node(Node::Root)->isExpanded() && w->node(Node::LocalFolders)->isExpanded());
        QVERIFY(w->TreeView1->selectedItems().isEmpty());
        QCOMPARE(page(w), u"start"_s);
        QCOMPARE(contextButtons(w), u"--------"_s);
        QCOMPARE(allFiles(*dir), before);  // start-up writes nothing
    }

    void startUpWithDamagedFolders()
    {
        // Deleted Items claims 15 messages and holds 3; the Inbox has a body
        // without its brackets. Each says so once; the window stands whole and
        // nothing acts on mail it does not show.
        dir->writeBytes(u"deleted_c.dat"_s, FolderBytes(mails(3, 3)).replace("number=3", "number=15"));
        dir->writeBytes(u"receive_c.dat"_s, FolderBytes({mail(u"1"_s)}).replace("content=[body]", "content=x"));
        putAccounts(*dir, {u"a@x.com"_s});
        const QByteArray before = allFiles(*dir);
        const QString why = texts::OperationAbandoned + u"\r\r"_s + texts::BadStoredContent;
        for (int box = 0; box < 3; ++box)
            boxes->expectMessage(Icon::Exclamation, texts::AppTitle, why);

        frmMain *w = mainOn(Node::Inbox);
        QCOMPARE(w->node(Node::Inbox)->text(0), u"收件箱"_s);
        QCOMPARE(w->ListView1->topLevelItemCount(), 0);
        QCOMPARE(contextButtons(w), u"DDDDDDDD"_s);
        // Receiving needs the Inbox; the run ends with the reason.
        boxes->expectMessage(Icon::Exclamation, texts::AppTitle, why);
        w->mnuReceiveMail->trigger();
        QTRY_VERIFY(!forms::SendAndReceive()->isVisible());
        QCOMPARE(allFiles(*dir), before);
    }

    void pages_data()
    {
        QTest::addColumn<QString>("how");  // "click" or keys given to the tree
        QTest::addColumn<int>("node");
        QTest::addColumn<QString>("shown");
        QTest::addColumn<int>("folder");
        QTest::addColumn<bool>("holdsUnsent");
        QTest::addColumn<QString>("headers");
        QTest::addColumn<QString>("rowToolbar");  // once a message is previewed
        const auto row = [](const char *name, const QString &how, int node, const QString &shown,
                            int folder, bool unsent, const QString &headers, const QString &toolbar) {
            QTest::newRow(name) << how << node << shown << folder << unsent << headers << toolbar;
        };
        // Every row starts on Drafts, the last node, with a message previewed.
        row("click root: start page", u"click"_s, 1, u"start"_s, 4, true, {}, {});
        row("click Local Folders: summary", u"click"_s, 2, u"summary"_s, 4, true, {}, {});
        row("click Inbox: reply, forward, delete", u"click"_s, 3, u"messages"_s, 0, false, Received,
            u"EEEEEEEE"_s);
        row("click Outbox", u"click"_s, 4, u"messages"_s, 1, true, Unsent, u"DDEEEEEE"_s);
        row("click Sent Items", u"click"_s, 5, u"messages"_s, 2, false, Unsent, u"DDEEEEEE"_s);
        row("Up: Deleted Items", u"Up"_s, 6, u"messages"_s, 3, false, Received, u"DDEEEEEE"_s);
        row("Up Up Up: Outbox", u"Up Up Up"_s, 4, u"messages"_s, 1, true, Unsent, u"DDEEEEEE"_s);
        row("Home: start page", u"Home"_s, 1, u"start"_s, 4, true, {}, {});
        row("Home Down: summary", u"Home Down"_s, 2, u"summary"_s, 4, true, {}, {});
        row("Home End: Drafts again", u"Home End"_s, 7, u"messages"_s, 4, true, Unsent, u"DDEEEEEE"_s);
    }

    void pages()
    {
        QFETCH(QString, how);
        QFETCH(int, node);
        QFETCH(QString, shown);
        for (int f = FolderFile::Inbox; f <= FolderFile::Drafts; ++f)
            put(*dir, f, mails(2, 0, 20000000 + 10 * f));
        frmMain *w = mainOn(Node::Drafts, 0);

        if (how == u"click") {
            clickItem(w->TreeView1, w->node(node));
        } else {
            w->TreeView1->setFocus();
            keys(w->TreeView1, how);
        }

        QCOMPARE(w->TreeView1->currentItem(), w->node(node));
        QCOMPARE(page(w), shown);
        QCOMPARE(w->Label1->text(), w->node(node)->text(0));
        QTEST(int(w->CurrentFolder), "folder");
        QTEST(w->FolderHoldsUnsent, "holdsUnsent");
        QCOMPARE(contextButtons(w), shown == u"start" ? u"--------"_s : u"DDDDDDDD"_s);
        if (shown == u"messages") {
            QTEST(headers(w), "headers");
            const int first = 20000000 + 10 * w->CurrentFolder;
            QCOMPARE(rows(w), u"s%1|s%2"_s.arg(first).arg(first + 1));
            QCOMPARE(w->Text1->toPlainText(), texts::NoMailSelected);
            clickRow(w->ListView1, 1);
            QTEST(contextButtons(w), "rowToolbar");
        }
    }

    void summary()
    {
        put(*dir, FolderFile::Inbox, mails(4, 2));
        put(*dir, FolderFile::Outbox, mails(2, 2));  // never counted
        put(*dir, FolderFile::DeletedItems, mails(3, 1));
        frmMain *w = mainOn(Node::LocalFolders);
        QStringList figures;
        for (int r = 0; r < 5; ++r) {
            const QTreeWidgetItem *row = w->ListView2->topLevelItem(r);
            figures << row->text(0) + u' ' + row->text(1) + u' ' + row->text(2);
        }
        QCOMPARE(figures.join(u','), u"收件箱 2 4,发件箱 0 2,已发送邮件 0 0,已删除邮件 1 3,草稿 0 0"_s);

        // A row opens its folder; Deleted Items opened here counts as unsent
        // mail: recipient columns, and a double-click edits.
        clickRow(w->ListView2, 3);
        QCOMPARE(w->TreeView1->currentItem(), w->node(Node::DeletedItems));
        QVERIFY(page(w) == u"messages" && w->FolderHoldsUnsent);
        QCOMPARE(int(w->CurrentFolder), int(FolderFile::DeletedItems));
        QCOMPARE(headers(w), Unsent);
        // From the keyboard: Enter on a row.
        clickItem(w->TreeView1, w->node(Node::LocalFolders));
        w->ListView2->setFocus();
        w->ListView2->setCurrentItem(w->ListView2->topLevelItem(1));
        keys(w->ListView2, u"Return"_s);
        QCOMPARE(w->TreeView1->currentItem(), w->node(Node::Outbox));
    }

    void listAndPreview_data()
    {
        QTest::addColumn<int>("node");
        QTest::newRow("Inbox: unread bold, attachment icon, sender") << int(Node::Inbox);
        QTest::newRow("Outbox: never bold, no icon, recipient") << int(Node::Outbox);
    }

    void listAndPreview()
    {
        QFETCH(int, node);
        const bool inboxStyle = node == Node::Inbox;
        QList<EmailRec> list = mails(3, 1);
        list[0].attachment = u"plan.doc"_s;
        list[2].isnew = u"yes"_s;  // reads back as read
        list[1].subject = u"长"_s.repeated(120);
        list[1].content = u"line one\r\nline two"_s;
        put(*dir, node - Node::Inbox, list);
        const QByteArray before = allFiles(*dir);
        frmMain *w = mainOn(node);

        for (int r = 0; r < 3; ++r) {
            const QTreeWidgetItem *row = w->ListView1->topLevelItem(r);
            QCOMPARE(row->text(2), inboxStyle ? list[r].from : list[r].to);
            QCOMPARE(row->text(3), list[r].subject);  // file order, unsorted
            QCOMPARE(row->font(3).bold() || !row->icon(0).isNull(), inboxStyle && r == 0);
        }
        // A long subject ends in "…" with the whole in its tooltip.
        clickRow(w->ListView1, 1);
        QCOMPARE(w->Label5->text(), list[1].from);
        QVERIFY(w->Label9->text().endsWith(u'…'));
        QCOMPARE(w->Label9->toolTip(), list[1].subject);
        QCOMPARE(w->Text1->toPlainText(), u"line one\nline two"_s);
        // Another button than the left one does not move the highlight; a
        // click beside the rows leaves nothing previewed.
        QTest::mouseClick(w->ListView1->viewport(), Qt::RightButton, {},
                          w->ListView1->visualItemRect(w->ListView1->topLevelItem(2)).center());
        QCOMPARE(w->ListView1->currentItem(), w->ListView1->topLevelItem(1));
        QTest::mouseClick(w->ListView1->viewport(), Qt::LeftButton, {},
                          QPoint(5, w->ListView1->viewport()->height() - 3));
        QCOMPARE(w->Text1->toPlainText(), texts::NoMailSelected);
        QCOMPARE(w->Label5->text() + w->Label9->text(), QString());
        QCOMPARE(contextButtons(w), u"DDDDDDDD"_s);
        QCOMPARE(allFiles(*dir), before);  // previewing marks nothing read
    }

    void deleting_data()
    {
        QTest::addColumn<int>("node");
        QTest::addColumn<QString>("how");
        QTest::addColumn<int>("answer");  // -1 no question, 0 No, 1 Yes
        QTest::addColumn<QString>("folders");  // ids of Inbox, Outbox, Sent Items, Deleted Items
        QTest::addColumn<QString>("captions");
        // Inbox 100, 101 (both unread); Outbox 400; Sent Items 200; Deleted Items 300 (unread).
        const QString button = u"button %1"_s.arg(frmMain::tbDelete);
        QTest::newRow("an unread Inbox message moves: both counts change")
            << 3 << button << -1 << u"101 400 200 300|100"_s << u"收件箱(1) 已删除邮件(2)"_s;
        QTest::newRow("the Delete key moves the row reached by arrows")
            << 3 << u"list: Down Delete"_s << -1 << u"100 400 200 300|101"_s << u"收件箱(1) 已删除邮件(2)"_s;
        QTest::newRow("a Sent Items message moves without a question")
            << 5 << button << -1 << u"100|101 400  300|200"_s << u"收件箱(2) 已删除邮件(1)"_s;
        QTest::newRow("the only message of Deleted Items: asked, gone for good")
            << 6 << button << 1 << u"100|101 400 200 "_s << u"收件箱(2) 已删除邮件"_s;
        QTest::newRow("No keeps the message of Deleted Items")
            << 6 << u"list: Delete"_s << 0 << u"100|101 400 200 300"_s << u"收件箱(2) 已删除邮件(1)"_s;
        QTest::newRow("sending from the Outbox")
            << 4 << u"mnuSendMail"_s << -1 << u"100|101  200|400 300"_s << u"收件箱(2) 已删除邮件(1)"_s;
    }

    void deleting()
    {
        QFETCH(int, node);
        QFETCH(QString, how);
        QFETCH(int, answer);
        putAccounts(*dir, {u"sender0@x.com"_s});
        put(*dir, FolderFile::Inbox, mails(2, 2, 100));
        put(*dir, FolderFile::Outbox, mails(1, 0, 400));
        put(*dir, FolderFile::SentItems, mails(1, 0, 200));
        put(*dir, FolderFile::DeletedItems, mails(1, 1, 300));
        frmMain *w = mainOn(node, 0);
        if (answer >= 0)
            boxes->expectConfirm(Icon::Exclamation, texts::AppTitle, texts::AskDeleteForGood, answer);

        act(w, how);
        QVERIFY(!boxes->defaults().contains(Prompter::Default::Yes));
        QTRY_VERIFY(!forms::SendAndReceive()->isVisible());

        QTEST(QStringList({ids(0), ids(1), ids(2), ids(3)}).join(u' '), "folders");
        QTEST(QString(w->node(Node::Inbox)->text(0) + u' ' + w->node(Node::DeletedItems)->text(0)),
              "captions");
        QCOMPARE(w->node(Node::DeletedItems)->font(0).bold(), w->DeletedUnread > 0);
        QCOMPARE(rows(w).count(u's'), int(stored(w->CurrentFolder).size()));
        if (answer == 0)
            return;
        // Nothing is previewed, nothing can be deleted or forwarded: a second
        // press reaches no message the user has not looked at.
        QCOMPARE(w->Text1->toPlainText(), texts::NoMailSelected);
        QCOMPARE(contextButtons(w), u"DDDDDDDD"_s);
        const QByteArray before = allFiles(*dir);
        w->toolbarButton(frmMain::tbDelete)->trigger();
        QCOMPARE(allFiles(*dir), before);
    }

    void opening_data()
    {
        QTest::addColumn<QString>("how");
        QTest::addColumn<int>("node");
        QTest::addColumn<int>("mode");  // ComposeMode after; -1 the read window, -2 nothing
        QTest::addColumn<QString>("subject");
        QTest::newRow("New on the toolbar") << u"button 1"_s << 3 << 1 << QString();
        QTest::newRow("New in the File menu") << u"AddNewMail"_s << 3 << 1 << QString();
        QTest::newRow("Reply quotes the previewed message") << u"button 2"_s << 3 << 2 << u"Re:s20000001"_s;
        QTest::newRow("Reply from the Message menu") << u"mnuMsgReply"_s << 3 << 2 << u"Re:s20000001"_s;
        QTest::newRow("Forward from Sent Items") << u"button 4"_s << 5 << 3 << u"Fw:s20000001"_s;
        QTest::newRow("Reply All does nothing") << u"button 3"_s << 3 << -2 << QString();
        QTest::newRow("double-click in the Inbox: read") << u"double"_s << 3 << -1 << u"s20000001"_s;
        QTest::newRow("double-click a draft: edit") << u"double"_s << 7 << 0 << u"s20000001"_s;
        QTest::newRow("Enter in the Inbox: read") << u"list: Return"_s << 3 << -1 << u"s20000001"_s;
        QTest::newRow("Down Enter on a draft: edit") << u"list: Down Return"_s << 7 << 0 << u"s20000002"_s;
    }

    void opening()
    {
        QFETCH(QString, how);
        QFETCH(int, node);
        QFETCH(int, mode);
        putAccounts(*dir, {u"a@x.com"_s});
        put(*dir, node - Node::Inbox, mails(3, 3));
        frmMain *w = mainOn(node, 1);
        Main::ComposeMode = -2;
        const QByteArray before = allFiles(*dir);

        act(w, how);

        QCOMPARE(int(Main::ComposeMode), mode == -1 ? -2 : mode);
        QCOMPARE(forms::MailEdit()->isVisible(), mode >= 0);
        QCOMPARE(forms::MailRead()->isVisible(), mode == -1);
        QWidget *opened = mode == -1 ? static_cast<QWidget *>(forms::MailRead()) : forms::MailEdit();
        if (mode != -2)
            QTEST(mode == -1 ? opened->windowTitle() : forms::MailEdit()->Text5->text(), "subject");
        // Child windows open beside the main window, not over its tool bar.
        QVERIFY(!opened->isVisible() || opened->y() > w->y() + w->Toolbar1->height());
        QVERIFY(mode == -1 || allFiles(*dir) == before);
    }

    void runs_data()
    {
        QTest::addColumn<QString>("how");
        QTest::addColumn<int>("mode");  // the run's mode; -1 no run
        QTest::newRow("CTRL+M") << u"window: Ctrl+M"_s << 0;
        QTest::newRow("the toolbar's Send/Receive") << u"button %1"_s.arg(frmMain::tbSendReceive) << 0;
        QTest::newRow("the summary page's button") << u"Command11"_s << 0;
        QTest::newRow("receive from the drop-down") << u"drop 1"_s << 1;
        QTest::newRow("send from the drop-down") << u"drop 2"_s << 2;
        QTest::newRow("Outbox mail of no account: warned, no run") << u"mnuSendMail"_s << -1;
    }

    void runs()
    {
        QFETCH(QString, how);
        QFETCH(int, mode);
        putAccounts(*dir, {u"a@x.com"_s});
        put(*dir, FolderFile::Outbox, {mail(u"1"_s, mode < 0 ? u"z@z.com"_s : u"a@x.com"_s)});
        frmMain *w = mainOn(how == u"Command11" ? Node::LocalFolders : Node::Inbox);
        if (mode < 0)
            boxes->expectMessage(Icon::Exclamation, texts::AppTitle, texts::OutboxWithoutAccount);

        act(w, how);

        frmSendAndReceive *run = forms::SendAndReceive();
        QCOMPARE(run->isVisible(), mode >= 0);
        QVERIFY(mode < 0 || run->SendReceiveMode == mode);
        QTRY_VERIFY(!run->isVisible());
        QCOMPARE(ids(FolderFile::Outbox).isEmpty(), mode == 0 || mode == 2);
    }

    void closing_data()
    {
        QTest::addColumn<QString>("to");  // of the Outbox message
        QTest::addColumn<bool>("yes");
        QTest::addColumn<bool>("nameCheck");
        QTest::newRow("an empty Outbox closes without a question") << QString() << false << false;
        QTest::newRow("Yes sends the Outbox, then the program ends") << u"b@x.com"_s << true << false;
        QTest::newRow("Yes, a message it may not send: the name check") << u"nobody"_s << true << true;
        QTest::newRow("No ends the program without sending") << u"b@x.com"_s << false << false;
    }

    void closing()
    {
        QFETCH(QString, to);
        QFETCH(bool, yes);
        QFETCH(bool, nameCheck);
        putAccounts(*dir, {u"a@x.com"_s});
        if (!to.isEmpty())
            put(*dir, FolderFile::Outbox, {mail(u"1"_s, u"a@x.com"_s, to)});
        const QByteArray before = allFiles(*dir);
        frmMain *w = mainOn(Node::Outbox);
        w->AddNewMail->trigger();  // a compose window left open goes too

        if (!to.isEmpty())
            boxes->expectConfirm(Icon::Exclamation, texts::AppTitle, texts::AskSendOutboxOnClose, yes);
        if (nameCheck)
            boxes->expectMessage(Icon::Information, texts::NameCheckTitle, texts::NameCheckFailed);
        w->F20->trigger();

        QCOMPARE(ids(FolderFile::SentItems), yes && !nameCheck ? u"1"_s : QString());
        QVERIFY(yes || allFiles(*dir) == before);
        for (QWidget *window : QApplication::topLevelWidgets())
            QVERIFY2(!window->isVisible(), qPrintable(window->objectName()));
    }
};

QTEST_MAIN(tst_mainwindow)
#include "tst_mainwindow.moc"
