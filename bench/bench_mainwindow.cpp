// Start-up of the main window, from an existing QApplication to the window
// painted, with a full Inbox and a full Deleted Items (101 messages each),
// beside the same for a bare QMainWindow holding the same widget kinds.
// Nothing is in memory at each start: the program reads its folders as a
// new start does.
//
// bench_mainwindow --messages N  puts N messages of ordinary size in the
// Inbox instead, and adds what follows the window's start: how long until
// the Inbox's unread count shows, and until its messages are read; then a
// Ctrl+M that delivers into that Inbox, checked in the file, and the memory
// in use after it.

#include "benchutil.h"

#include "store/appdir.h"
#include "store/folders.h"
#include "store/mailboxes.h"
#include "store/mailstore.h"
#include "ui/common/application.h"
#include "ui/common/fonts.h"
#include "ui/common/forms.h"
#include "ui/main/foldernodes.h"
#include "ui/main/frmMain.h"
#include "ui/sendrecv/frmSendAndReceive.h"

#include <QElapsedTimer>
#include <QFile>
#include <QFrame>
#include <QLabel>
#include <QMenuBar>
#include <QPushButton>
#include <QStatusBar>
#include <QTemporaryDir>
#include <QTest>
#include <QTextEdit>
#include <QToolBar>
#include <QTreeWidget>

#include <cstring>

using namespace Qt::Literals::StringLiterals;

namespace {

void putFolder(int folder, int count, bool ordinary)
{
    MailList mails;
    for (int i = 0; i < count; ++i) {
        EmailRec m;
        m.id = QString::number(30000000 + i);
        m.from = u"sender%1@example.com"_s.arg(i % 40);
        m.to = u"me@example.com"_s;
        m.subject = ordinary ? u"第 %1 封测试邮件：本周作业与考试安排"_s.arg(i) : u"第 %1 封测试邮件"_s.arg(i);
        m.content = ordinary ? u"各位同学：\r\n本周的作业已经发到共享文件夹，请在星期五之前完成。"_s.repeated(4)
                             : u"正文第一行\r\n正文第二行"_s;
        m.datetime = u"24-05-13 09:12"_s;
        m.attachment = i % 3 == 0 ? u"a.doc"_s : QString();
        m.isnew = i % 2 == 0 ? u"1"_s : u"0"_s;
        mails << m;
    }
    QFile f(AppFilePath(FolderFile::fileName(folder)));
    if (!f.open(QIODevice::WriteOnly) || !f.write(FolderBytes(mails)))
        qFatal("cannot write a folder");
}

// What the main window is made of, without its files and rules.
void bareWindow()
{
    QMainWindow w;
    for (const char *menu : {"File", "Edit", "View", "Tools", "Message", "Help"}) {
        QMenu *m = w.menuBar()->addMenu(QLatin1StringView(menu));
        for (int i = 0; i < 10; ++i)
            m->addAction(u"item"_s);
    }
    auto *client = new QWidget;
    w.setCentralWidget(client);
    auto *bar = new QToolBar(client);
    bar->setToolButtonStyle(Qt::ToolButtonTextUnderIcon);
    for (int i = 0; i < 14; ++i)
        bar->addAction(u"button"_s);
    auto *tree = new QTreeWidget(client);
    for (int i = 0; i < 7; ++i)
        new QTreeWidgetItem(tree, {u"node"_s});
    tree->setGeometry(0, 80, 180, 500);
    auto *summary = new QTreeWidget(client);
    summary->setColumnCount(3);
    summary->hide();
    auto *page = new QFrame(client);
    page->setGeometry(180, 80, 700, 500);
    auto *list = new QTreeWidget(page);
    list->setColumnCount(6);
    list->setGeometry(0, 0, 700, 250);
    for (int i = 0; i < 101; ++i)
        new QTreeWidgetItem(list, {QString(), QString(), u"sender"_s, u"subject"_s, u"time"_s});
    auto *text = new QTextEdit(page);
    text->setGeometry(0, 280, 700, 220);
    for (int i = 0; i < 9; ++i)
        new QLabel(u"label"_s, page);
    new QPushButton(u"button"_s, client);
    w.statusBar()->addWidget(new QLabel(u"panel"_s));
    w.resize(900, 620);
    w.show();
    w.grab();
}

// The window of a new start: nothing read yet, and nothing of an earlier
// start left to wind down (what it read, a reading still under way), since
// a new process has neither. Its close is timed, as the bare window's is.
double mainWindowOnceMs()
{
    QElapsedTimer t;
    t.start();
    frmMain *w = forms::Main();
    w->show();
    w->grab();
    forms::destroyAll();
    return double(t.nsecsElapsed()) / 1e6;
}

double bareWindowOnceMs()
{
    QElapsedTimer t;
    t.start();
    bareWindow();
    return double(t.nsecsElapsed()) / 1e6;
}

double median(QList<double> times)
{
    std::sort(times.begin(), times.end());
    return times.at(times.size() / 2);
}

}  // namespace

int main(int argc, char *argv[])
{
    int messages = 0;
    for (int i = 1; i + 1 < argc; ++i) {
        if (std::strcmp(argv[i], "--messages") == 0)
            messages = std::atoi(argv[i + 1]);
    }
    QuillpostApplication app(argc, argv);
    app.setFont(fonts::uiFont());
    QTemporaryDir dir;
    SetAppDir(dir.path());
    putFolder(FolderFile::Inbox, messages > 0 ? messages : 101, messages > 0);
    putFolder(FolderFile::DeletedItems, 101, false);

    // The two windows take turns, so that what else the machine does
    // weighs on both alike. Each turn starts once the last start's readings
    // have ended and been forgotten, and the window that comes first, just
    // after that work, is slower by a millisecond: each comes first every
    // other turn.
    QList<double> bare, main;
    for (int run = 0; run <= 32; ++run) {
        store::Forget();
        double b = 0, m = 0;
        if (run % 2)
            b = bareWindowOnceMs(), m = mainWindowOnceMs();
        else
            m = mainWindowOnceMs(), b = bareWindowOnceMs();
        if (run > 1)
            bare << b, main << m;
    }
    const double floorMs = median(bare), ms = median(main);
    if (messages <= 0) {
        bench::printRow("main window shown and painted (2 x 101 mails)", ms, floorMs);
        return 0;
    }
    const QByteArray name = "main window shown and painted, " + QByteArray::number(messages)
        + " in the Inbox";
    bench::printRow(name.constData(), ms, floorMs);

    // After the window: the Inbox's unread count, then its messages.
    QList<double> counted, read;
    for (int run = 0; run < 7; ++run) {
        store::Forget();
        QElapsedTimer t;
        t.start();
        frmMain *w = forms::Main();
        w->show();
        while (w->node(Node::Inbox)->text(0) == u"收件箱"_s)
            QCoreApplication::processEvents(QEventLoop::AllEvents, 2);
        counted << double(t.nsecsElapsed()) / 1e6;
        while (!store::InMemory(FolderFile::Inbox))
            QCoreApplication::processEvents(QEventLoop::AllEvents, 2);
        read << double(t.nsecsElapsed()) / 1e6;
        forms::destroyAll();
    }
    std::sort(counted.begin(), counted.end());
    std::sort(read.begin(), read.end());
    bench::printRow("  until the Inbox's unread count shows", counted.at(counted.size() / 2));
    bench::printRow("  until the Inbox's messages are read", read.at(read.size() / 2));

    // A Ctrl+M delivering into it: every earlier message kept, in the file.
    FolderSet accounts;
    accounts.changeAccounts() = {{u"me"_s, u"pop"_s, u"smtp"_s, u"me"_s, u"pw"_s, u"me@example.com"_s}};
    accounts.commitAndWait();
    store::Forget();
    frmMain *w = forms::Main();
    w->show();
    store::Flush();
    const MailList before = store::Folder(FolderFile::Inbox);
    FolderSet set;
    set.change(FolderFile::Outbox) = {EmailRec{u"1"_s, u"me@example.com"_s, u"me@example.com"_s, {},
                                               u"hello"_s, u"body"_s, {}, {}, u"0"_s}};
    set.commit();
    QApplication::setActiveWindow(w);
    QTest::keyClick(w, Qt::Key_M, Qt::ControlModifier);
    while (forms::SendAndReceive()->isVisible())
        QTest::qWait(20);
    store::Flush();
    store::Forget();
    const MailList after = store::Folder(FolderFile::Inbox);
    if (after.size() != before.size() + 1 || after.mid(0, before.size()) != before)
        qFatal("Ctrl+M lost or changed a message of the Inbox");
    std::printf("%-44s %10lld KiB (peak %lld KiB)\n", "  memory in use after a Ctrl+M into it",
                static_cast<long long>(bench::statusKib("VmRSS:")), static_cast<long long>(bench::statusKib("VmHWM:")));
    forms::destroyAll();
    return 0;
}
