// The read window, the send-and-receive dialog's endings, window geometry, the about box, the last guard.

#include "sendrecv/classroom.h"
#include "sendrecv/engine.h"
#include "store/errors.h"
#include "ui/common/application.h"
#include "ui/common/icons.h"
#include "windows.h"

#include <QSignalSpy>

#include <thread>

using namespace Qt::Literals::StringLiterals;
using namespace testsupport;

namespace {
frmMailRead *openRow(frmMain *w, int row)
{
    clickRow(w->ListView1, row, true);
    // Its keys work once it is the active window, as it is for a user.
    frmMailRead *r = forms::MailRead();
    return r->isVisible() && QTest::qWaitForWindowActive(r) ? r : nullptr;
}

// An event handler that a store error or another failure ends.
struct Failing : QObject
{
    int fault = 0;
    bool event(QEvent *) override
    {
        if (fault == 1)
            throw IndexError(texts::TooManyAccounts);
        throw std::runtime_error("disk gone");
    }
};
}  // namespace

class tst_windows : public WindowTest
{
    Q_OBJECT

private slots:

    // Three unread messages in Deleted Items, which the read window treats as the Inbox (the main window's
    // table covers the Inbox itself); one opened, then the steps in the read window (a row double-clicked is
    // in the main window's list). After each step the message shown (-1: the window closed); then each
    // message's isnew, and the subject of the reply or forward that opened.
    void readWindowActsOnWhatItShows_data()
    {
        QTest::addColumn<int>("opened");
        QTest::addColumn<Steps>("steps");
        QTest::addColumn<QList<int>>("shown");
        QTest::addColumn<QString>("isnew");
        QTest::addColumn<QString>("quoted");
        const Step previous = trigger("tbPrevious"), next = trigger("tbNext");
        const QString none;
        QTest::newRow("previous on the first stays") << 0 << Steps{previous} << QList{0} << u"011"_s << none;
        QTest::newRow("next on the last stays") << 2 << Steps{next} << QList{2} << u"110"_s << none;
        QTest::newRow("through all, by keys too") << 1 << Steps{previous, key("Ctrl+<"), next, key("Ctrl+>"), next}
                                                  << QList{0, 0, 1, 2, 2} << u"000"_s << none;
        QTest::newRow("another opened from the list shows, marked") << 0 << Steps{rowTwice(2)} << QList{2} << u"010"_s << none;
        QTest::newRow("next, then reply: the message shown is quoted")
            << 0 << Steps{next, trigger("tbReply")} << QList{1, -1} << u"001"_s << u"Re:s20000001"_s;
        QTest::newRow("reply to all replies to the sender") << 0 << Steps{key("Ctrl+>"), key("Ctrl+Shift+R")}
                                                            << QList{1, -1} << u"001"_s << u"Re:s20000001"_s;
        QTest::newRow("forward from the Message menu")
            << 2 << Steps{trigger("mnuMsgForward")} << QList{-1} << u"110"_s << u"Fw:s20000002"_s;
        QTest::newRow("Escape closes") << 1 << Steps{key("Escape")} << QList{-1} << u"101"_s << none;
    }

    void readWindowActsOnWhatItShows()
    {
        QFETCH(int, opened);
        QFETCH(Steps, steps);
        putAccounts(*dir, {u"a@x.com"_s});
        put(*dir, FolderFile::DeletedItems, mails(3, 3));
        frmMain *w = mainOn(Node::DeletedItems);
        frmMailRead *r = openRow(w, opened);
        QVERIFY(r);
        QList<int> shown;
        for (const Step &s : steps) {
            if (s.kind == Step::RowTwice)
                QVERIFY(openRow(w, s.n));
            else
                act(r, {s});
            shown << (r->isVisible() ? r->Label8->text().right(1).toInt() : -1);
        }
        QTEST(shown, "shown");
        QString isnew, bold;
        for (int i = 0; i < 3; ++i)
            isnew += stored(FolderFile::DeletedItems)[i].isnew, bold += testsupport::bold(w->ListView1, i) ? u'1' : u'0';
        QTEST(isnew, "isnew");
        QTEST(forms::MailEdit()->isVisible() ? forms::MailEdit()->Text5->text() : QString(), "quoted");
        QCOMPARE(bold, isnew);
        const int unread = isnew.count(u'1');
        QCOMPARE(w->node(Node::DeletedItems)->text(0), unread ? u"已删除邮件(%1)"_s.arg(unread) : u"已删除邮件"_s);
    }

    void saveAttachment()
    {
        EmailRec m = mail(u"1"_s, u"b@y.cn"_s, u"c@y.cn, a@x.com"_s);
        m.attachment = u"report.doc(12.50kb)  plan.xls(3.00kb)"_s;
        put(*dir, FolderFile::Inbox, {m});
        putAccounts(*dir, {u"a@x.com"_s});
        ScriptedFileChooser files;
        frmMailRead *r = openRow(mainOn(Node::Inbox), 0);
        QVERIFY(r->lvAddfile->isVisible() && r->lvAddfile->count() == 2);
        // Sent to an account among others, the To line names the account, on the header's white.
        QCOMPARE(r->Label7->text(), u"a@x.com"_s);
        QTest::mouseDClick(r->Label7, Qt::LeftButton, {}, QPoint(4, r->Label7->height() / 2));
        QVERIFY(r->Label7->hasSelectedText());  // to be copied
        QCOMPARE(r->grab().toImage().pixelColor(r->Label7->mapTo(r, QPoint(-2, 1))), QColor(Qt::white));
        const QByteArray marker = "\"This is Quillpost Text\"\r\n";
        // The item chosen is offered as the name. Cancelled, nothing is written; then a new file; then onto
        // it, added to only when the user says so (No, then Yes).
        r->lvAddfile->setCurrentRow(1);
        QList<QByteArray> saved;
        for (int round = 0; round < 4; ++round) {
            if (round > 1)
                boxes->expectConfirm(Icon::Question, texts::read::SaveTitle,
                                     texts::read::AskAppendToFile.arg(u"saved.doc"_s), round == 3);
            files.answer(round ? dir->filePath(u"saved.doc"_s) : QString());
            r->mnuSave->trigger();
            saved << (dir->exists(u"saved.doc"_s) ? dir->readBytes(u"saved.doc"_s) : "none");
        }
        QCOMPARE(files.lastSuggestedName, u"plan.xls(3.00kb)"_s);
        QCOMPARE(saved, (QList<QByteArray>{"none", marker, marker, marker + marker}));
    }

    // An Outbox message to a recipient without @ ends the run with the name check; the Inbox row after.
    void sendReceiveCannotGoOn_data()
    {
        QTest::addColumn<QString>("menu");
        QTest::addColumn<QString>("summary");
        QTest::newRow("send only: ends at once") << u"mnuSendMail"_s << u"0 0"_s;
        QTest::newRow("send and receive: received, then the name check") << u"mnuRSMail"_s << u"1 1"_s;
    }

    void sendReceiveCannotGoOn()
    {
        putAccounts(*dir, {u"a@x.com"_s});
        put(*dir, FolderFile::Outbox, {mail(u"1"_s, u"a@x.com"_s, u"nobody"_s)});
        put(*dir, FolderFile::ServerQueue, {mail(u"2"_s, u"b@y.cn"_s, u"a@x.com"_s, u"q"_s, true)});
        frmMain *w = mainOn(Node::LocalFolders);
        boxes->expectMessage(Icon::Information, texts::NameCheckTitle, texts::NameCheckFailed);
        QFETCH(QString, menu);
        w->findChild<QAction *>(menu)->trigger();

        // The run ends by itself, its box after it; the summary shows the files, both figures of a row alike.
        QTRY_VERIFY(!forms::SendAndReceive()->isVisible());
        QTRY_VERIFY(boxes->done());
        const QTreeWidgetItem *row = w->ListView2->topLevelItem(0);
        QTEST(QString(row->text(1) + u' ' + row->text(2)), "summary");
    }

    void classRunThroughASlowShare_data()
    {
        QTest::addColumn<bool>("away");
        QTest::newRow("a slow share: the bar keeps moving, mail comes and goes") << false;
        QTest::newRow("the share away: said once, mail on this machine still arrives") << true;
    }

    // The class folder's part runs behind the bar: the dialog shows at once, paints, the main window answers.
    void classRunThroughASlowShare()
    {
        QFETCH(bool, away);
        QTemporaryDir share;
        const QString classDir = share.filePath(u"class"_s);
        if (!away) {  // a classmate's message, waiting for a@x.com
            QVERIFY(QDir().mkpath(classDir + u"/pc-2-0000abcd"_s));
            QFile f(classDir + u"/pc-2-0000abcd/"_s + classroom::MessageFileName(0));
            QVERIFY(f.open(QIODevice::WriteOnly));
            f.write(classroom::MessageFileBytes(mail(u"7"_s, u"b@y.cn"_s, u"a@x.com"_s, u"from pc-2"_s, true)));
        }
        classroom::SetClassDir(classDir);
        static std::atomic<bool> busy = false;  // the class folder is at work
        classroom::SetShareHook([] {
            busy = true, std::this_thread::sleep_for(std::chrono::milliseconds(300)), busy = false;
        });
        putAccounts(*dir, {u"a@x.com"_s, u"y@x.com"_s});
        put(*dir, FolderFile::Outbox, {mail(u"1"_s, u"a@x.com"_s, u"b@y.cn;y@x.com"_s, u"out"_s)});
        if (away)
            boxes->expectMessage(Icon::Exclamation, texts::AppTitle,
                                 texts::classroom::ShareAway.arg(classDir, texts::classroom::FolderMissing));
        frmMain *w = mainOn(Node::Inbox);
        frmSendAndReceive *run = forms::SendAndReceive();
        struct Paints : QObject
        {
            int count = 0;
            bool eventFilter(QObject *, QEvent *e) override { return count += e->type() == QEvent::Paint && busy, false; }
        } paints;
        run->Text2->installEventFilter(&paints);
        // While the class folder works, the main window's own timer fires and sees the bar grow.
        QSet<int> widths;
        QTimer tick;
        connect(&tick, &QTimer::timeout, [&] { busy ? widths.insert(run->Text2Width()) : widths.end(); });
        tick.start(20);

        QSignalSpy over(run, &frmSendAndReceive::runsOver);
        QTest::keyClick(w, Qt::Key_M, Qt::ControlModifier);
        QVERIFY(run->isVisible());
        // Asked again meanwhile, the run follows the first, never beside it.
        put(*dir, FolderFile::Outbox, {mail(u"2"_s, u"a@x.com"_s, u"b@y.cn"_s, u"later"_s)});
        QTest::keyClick(w, Qt::Key_M, Qt::ControlModifier);
        QTRY_COMPARE_WITH_TIMEOUT(over.size(), 1, 10000);
        QVERIFY(!run->isVisible());
        classroom::SetShareHook({}), classroom::SetClassDir(QString());
        QVERIFY2(paints.count >= 5 && widths.size() >= 5,
                 qPrintable(u"%1 paints, %2 widths"_s.arg(paints.count).arg(widths.size())));
        QTRY_VERIFY(boxes->done());

        // y@x.com has its copy through the class folder or, with the share away, straight from this machine;
        // the classmate's arrives with the share.
        QStringList subjects;
        for (int i = 0; i < w->ListView1->model()->rowCount(); ++i)
            subjects.append(cell(w->ListView1, i, 3));
        subjects.sort();
        QCOMPARE(subjects.join(u'|'), away ? u"out"_s : u"from pc-2|out"_s);
        QCOMPARE(stored(FolderFile::SentItems).size(), 2);
        int files = 0;
        for (const QString &member : QDir(classDir).entryList(QDir::Dirs | QDir::NoDotAndDotDot))
            files += QDir(classDir + u'/' + member).entryList({u"0*.dat"_s}).size();
        QCOMPARE(files, away ? 0 : 3);
    }

    // Each window's inner size, and where its frame (2 pixels wide here) is placed on the 800 x 800 offscreen
    // screen: the accounts dialog at two fifths of the free space, the wizard centred, the message windows
    // 120 and 78 pixels right of and below the main window's corner (1, 2) and moved back inside the screen's
    // right edge. Then controls in their window: the accounts dialog's in its fixed pixel layout (the list's
    // top counted from the foot of the tabs, whose height the font decides), others as laid out with the fonts
    // the build installs; of size 0 x 0, by the corner only; a tool button by its action.
    void geometry_data()
    {
        QTest::addColumn<QString>("window");
        QTest::addColumn<QString>("control");  // empty: the window itself
        QTest::addColumn<QRect>("rect");  // at (-1, -1): left to the toolkit
        const auto row = [](const char *name, const char *window, const char *control, QRect rect) {
            QTest::newRow(name) << QString::fromLatin1(window) << QString::fromLatin1(control) << rect;
        };
        row("accounts dialog, 446 x 330 pixels", "frmMailBox", "", {140, 186, 446, 330});
        row("wizard page, 7800 x 5100 twips", "frmMainBoxAdd3", "", {138, 228, 520, 340});
        row("properties, 6600 x 6900 twips", "frmMailBoxProp", "", {-1, -1, 440, 460});
        row("compose window, 10500 x 8400 twips", "frmMailEdit", "", {100, 80, 700, 560});
        row("read window, 10200 x 7800 twips", "frmMailRead", "", {120, 80, 680, 520});
        row("accounts: the list, inside the panel below the tabs", "frmMailBox", "ListView1", {16, 8, 306, 274});
        // The add menu pops up at the add button's top-right corner, (438, 16).
        row("accounts: the add button", "frmMailBox", "btnAddNew", {338, 16, 100, 24});
        row("accounts: Close at the foot", "frmMailBox", "btnClose", {338, 298, 100, 24});
        row("wizard: Next, 84 pixels wide at least", "frmMainBoxAdd3", "btnForWard", {322, 304, 84, 24});
        row("properties: the name box, below the account's", "frmMailBoxProp", "Frm1Txt2", {136, 164, 282, 22});
        row("properties: the suffix after the server kind box", "frmMailBoxProp", "Label10", {260, 70, 0, 0});
        row("wizard page 4: the SPA box under its note, high on the page", "frmMainBoxAdd4", "Check2", {24, 190, 0, 0});
        row("main: the preview's body, below its header lines", "frmMain", "Text1", {184, 410, 716, 222});
        row("main: the status bar's first panel, 4200 twips short of the window", "frmMain", "StatusPanel1", {2, 604, 620, 14});
        row("main: the first tool button in the band's corner, below the menus", "frmMain", "tbNewMail", {1, 21, 0, 0});
        row("read: the first tool button in the window's corner, no grip before it", "frmMailRead", "tbReply", {4, 25, 0, 0});
    }
    void geometry()
    {
        QFETCH(QString, window);
        QFETCH(QString, control);
        QFETCH(QRect, rect);
        put(*dir, FolderFile::Inbox, {mail(u"1"_s)});
        putAccounts(*dir, {u"b@x.com"_s});  // a reply asks for an account
        mainOn(Node::Inbox);  // the message windows are placed by it
        QWidget *w = openWindow(window);
        if (control.isEmpty()) {
            QCOMPARE(w->size(), rect.size());
            if (rect.x() >= 0)
                QCOMPARE(w->frameGeometry().topLeft(), rect.topLeft());
            return;
        }
        const QWidget *c = w->findChild<QWidget *>(control);
        if (!c) {
            const QToolBar *bar = w->findChild<QToolBar *>();
            c = bar->widgetForAction(w->findChild<QAction *>(control));
        }
        QRect placed(c->mapTo(w, QPoint()), rect.size().isNull() ? rect.size() : c->size());
        if (control == u"ListView1") {
            placed.setTop(placed.top() - forms::MailBox()->TabStrip1->geometry().bottom());
            for (int column = 0; column < 3; ++column)  // 1400 twips each
                QCOMPARE(forms::MailBox()->ListView1->header()->sectionSize(column), 93);
        }
        QCOMPARE(placed, rect);
    }

    // Every size a window asks for is drawn from the file of that size, never scaled from another.
    void iconsAtTheirSize()
    {
        const auto argb = [](const QImage &image) { return image.convertToFormat(QImage::Format_ARGB32_Premultiplied); };
        for (int side : {16, 22, 24, 32})
            QCOMPARE(argb(appIcon(u"mail-message-new"_s).pixmap(side).toImage()),
                     argb(QImage(u":/icons/%1x%1/mail-message-new.png"_s.arg(side))));
    }

    // An error no command caught still ends in a box, and the program goes on.
    void lastResortGuard()
    {
        Failing target;
        for (int fault : {1, 2}) {
            target.fault = fault;
            boxes->expectMessage(Icon::Exclamation, texts::AppTitle,
                                 fault == 1 ? texts::OperationAbandoned + u"\r\r"_s + texts::TooManyAccounts
                                            : QuillpostApplication::abandonedText(u"disk gone"_s));
            QEvent e(QEvent::User);
            QVERIFY(!qApp->notify(&target, &e));
        }
    }

    // A trainer finds the data folder on the about box's version line.
    void aboutBox()
    {
        mainOn()->H6->trigger();
        frmAbout *box = forms::About();
        QVERIFY(box->isVisible());
        QCOMPARE(box->Label1->toolTip(), u"数据文件夹："_s + QDir::toNativeSeparators(dir->path()));
        QTest::mouseClick(box->Command1, Qt::LeftButton);
        QVERIFY(!box->isVisible());
    }
};

int main(int argc, char *argv[])
{
    // The program's own application object, whose guard is under test.
    QuillpostApplication app(argc, argv);
    tst_windows tc;
    return QTest::qExec(&tc, argc, argv);
}

#include "tst_windows.moc"
