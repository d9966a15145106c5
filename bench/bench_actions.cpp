// The actions a trainee repeats all day, driven through the real main
// window on the offscreen platform: two accounts and 101 messages in every
// folder, every field near its size limit and mostly Chinese; with
// --messages N the Inbox holds N messages of ordinary size instead (a
// subject of 10 to 30 characters, a body of 100 to 500), and every action
// is timed with that Inbox. Each figure runs from the input event until the
// event loop is idle and the window has painted; what the writer puts on
// the disk behind the window is not waited for. Beside them, the floor: a
// bare QTreeWidget cleared, refilled with 101 rows and painted.
//
// bench_actions [--messages N]          rows of the `make bench` table
// bench_actions [--messages N] --tsv    "name<TAB>median ms<TAB>p95 ms" per action,
//                                       then "rss_growth_kib<TAB>N" for 3,000 folder clicks

#include "benchutil.h"

#include "store/appdir.h"
#include "store/commit.h"
#include "store/folders.h"
#include "store/mailboxes.h"
#include "store/mailstore.h"
#include "store/profile.h"
#include "store/prompter.h"
#include "ui/common/application.h"
#include "ui/common/fonts.h"
#include "ui/common/forms.h"
#include "ui/main/foldernodes.h"
#include "ui/main/frmMain.h"
#include "ui/main/messagelist.h"
#include "ui/message/frmMailRead.h"
#include "ui/sendrecv/frmSendAndReceive.h"

#include <QDir>
#include <QElapsedTimer>
#include <QFile>
#include <QRandomGenerator>
#include <QTemporaryDir>
#include <QTest>
#include <QTimer>
#include <QToolBar>
#include <QTreeView>
#include <QTreeWidget>

#include <cstdio>
#include <cstring>

using namespace Qt::Literals::StringLiterals;

namespace {

const QString Alice = u"alice@school.example"_s;
const QString Bob = u"bob@school.example"_s;

// n characters of Chinese text as trainees write it: common characters
// and punctuation, each message a different stretch of them.
QString chinese(int n, int seed)
{
    static const QString common =
        u"我们今天下午三点在学校会议室开会，请各位老师准时参加。会议内容包括本学期的教学计划、"
        u"学生成绩的统计以及下个月的考试安排。如果有事不能参加，请提前告诉我。另外，请把上周的"
        u"作业批改情况整理一下，明天上午交到办公室。谢谢大家的支持与配合！关于邮件系统的培训，"
        u"我们将在星期五组织一次练习，每位同学都要学会发送、接收、回复和转发邮件，并且知道怎样"
        u"保存草稿和删除不需要的邮件。练习结束后请填写反馈表，提出你的意见和建议。"_s;
    QString s;
    s.reserve(n);
    for (int i = 0; i < n; ++i)
        s += common.at((seed * 37 + i) % common.size());
    return s;
}

EmailRec fullMail(int folder, int i, const QString &unread)
{
    EmailRec m;
    m.id = QString::number(10000000 + folder * 1000 + i);
    m.from = chinese(110, i) + u" <"_s + Alice + u'>';
    m.to = chinese(110, i + 1) + u" <"_s + Bob + u'>';
    m.subject = chinese(127, i + 2);
    m.content = chinese(500, i) + u"\r\n"_s + chinese(500, i + 3);
    m.datetime = u"26-11-23 11:05"_s;
    m.attachment = u" 报告.doc(12.50kb)"_s;
    m.isnew = unread;
    return m;
}

// A message as a trainee's Inbox holds thousands of: a subject of 10 to 30
// characters, a body of 100 to 500 in a few lines, now and then an
// attachment, every one unread.
EmailRec ordinaryMail(int i, QRandomGenerator &random)
{
    EmailRec m;
    m.id = QString::number(20000000 + i);
    m.from = chinese(3, i) + u" <student"_s + QString::number(i % 40) + u"@school.example>"_s;
    m.to = Alice;
    m.subject = chinese(random.bounded(10, 31), i + 2);
    const int body = random.bounded(100, 501);
    for (int line = 0; line < body; line += 60)
        m.content += (line ? u"\r\n"_s : QString()) + chinese(qMin(60, body - line), i + line);
    m.datetime = u"26-%1-%2 %3:%4"_s.arg(1 + i % 12, 2, 10, QChar(u'0'))
                     .arg(1 + i % 28, 2, 10, QChar(u'0'))
                     .arg(8 + i % 10, 2, 10, QChar(u'0'))
                     .arg(i % 60, 2, 10, QChar(u'0'));
    m.attachment = i % 5 == 0 ? u" 作业%1.doc(24.00kb)"_s.arg(i) : QString();
    m.isnew = u"1"_s;
    return m;
}

// A data file put in place behind the program's back, as a copy would: the
// store reads it again at its next look.
void putFile(const QString &name, const QByteArray &bytes)
{
    store::Flush();
    QFile f(AppFilePath(name + u".bench"_s));
    if (!f.open(QIODevice::WriteOnly) || f.write(bytes) != bytes.size())
        qFatal("cannot write %s", qPrintable(name));
    f.close();
    QFile::remove(AppFilePath(name));
    if (!f.rename(AppFilePath(name)))
        qFatal("cannot place %s", qPrintable(name));
}

QByteArray folderOf(int folder, int count, const QString &unread = u"1"_s, const QString &from = {})
{
    MailList mails;
    for (int i = 0; i < count; ++i) {
        mails << fullMail(folder, i, unread);
        // The Outbox's messages name the first account, as a send needs.
        if (!from.isEmpty())
            mails.last().from = from;
    }
    return FolderBytes(mails);
}

// Answers Yes and shows nothing.
class YesPrompter final : public Prompter
{
public:
    void message(Icon, const QString &, const QString &) override {}
    bool confirm(Icon, const QString &, const QString &, Default) override { return true; }
};

void idle()
{
    for (int i = 0; i < 3; ++i)
        QCoreApplication::processEvents(QEventLoop::AllEvents);
}

struct Figure
{
    QString name;
    double median = 0;
    double p95 = 0;
};

Figure figure(const QString &name, QList<double> times)
{
    std::sort(times.begin(), times.end());
    return {name, times.at(times.size() / 2),
            times.at(qMin<qsizetype>(times.size() - 1, (times.size() * 95) / 100))};
}

// Times action after setup, runs times after one warm-up.
Figure measure(const QString &name, int runs, const std::function<void(int)> &setup,
               const std::function<void(int)> &action)
{
    // BENCH_ONLY=text runs the actions whose name holds it, for a profiler.
    const QString only = qEnvironmentVariable("BENCH_ONLY");
    if (!only.isEmpty() && !name.contains(only))
        return {name, 0, 0};
    QList<double> times;
    for (int i = -1; i < runs; ++i) {
        setup(i + 1);
        idle();
        QElapsedTimer t;
        t.start();
        action(i + 1);
        idle();
        if (i >= 0)
            times.append(double(t.nsecsElapsed()) / 1e6);
    }
    if (qEnvironmentVariableIsSet("BENCH_TRACE")) {
        QStringList all;
        for (double t : times)
            all << QString::number(t, 'f', 1);
        std::fprintf(stderr, "%s: %s\n", name.toUtf8().constData(), all.join(u' ').toUtf8().constData());
    }
    return figure(name, times);
}

void clickNode(frmMain *w, int node)
{
    QTreeWidgetItem *item = w->node(node);
    QTest::mouseClick(w->TreeView1->viewport(), Qt::LeftButton, {},
                      w->TreeView1->visualItemRect(item).center());
}

void clickRow(frmMain *w, int row, bool twice = false)
{
    const QModelIndex index = w->ListModel->index(row, 0);
    w->ListView1->scrollTo(index);
    const QPoint at = w->ListView1->visualRect(index).center();
    QTest::mouseClick(w->ListView1->viewport(), Qt::LeftButton, {}, at);
    if (twice)
        QTest::mouseDClick(w->ListView1->viewport(), Qt::LeftButton, {}, at);
}

// A folder opened and read, as a user finds it after start-up, when every
// folder has been read.
void openFolder(frmMain *w, int node)
{
    clickNode(w, node);
    for (int folder = FolderFile::Inbox; folder < FolderFile::Count; ++folder)
        store::ReadAhead(folder);
    store::Flush();
    idle();
}

}  // namespace

int main(int argc, char *argv[])
{
    bool tsv = false;
    int messages = 0;  // 0: the full Inbox of 101
    for (int i = 1; i < argc; ++i) {
        if (std::strcmp(argv[i], "--tsv") == 0)
            tsv = true;
        else if (std::strcmp(argv[i], "--messages") == 0 && i + 1 < argc)
            messages = std::atoi(argv[++i]);
    }
    QuillpostApplication app(argc, argv);
    app.setFont(fonts::uiFont());
    QTemporaryDir dir;
    SetAppDir(dir.path());
    YesPrompter yes;
    setPrompter(&yes);

    FolderSet set;
    set.changeAccounts() = {{u"alice"_s, u"pop"_s, u"smtp"_s, u"alice"_s, u"pw"_s, Alice},
                            {u"bob"_s, u"pop"_s, u"smtp"_s, u"bob"_s, u"pw"_s, Bob}};
    set.commitAndWait();
    for (int folder = FolderFile::Outbox; folder <= FolderFile::Drafts; ++folder)
        putFile(FolderFile::fileName(folder), folderOf(folder, 101));
    QByteArray inbox;
    if (messages > 0) {
        QRandomGenerator random(7);
        MailList mails;
        mails.reserve(messages);
        for (int i = 0; i < messages; ++i)
            mails << ordinaryMail(i, random);
        inbox = FolderBytes(mails);
    } else {
        inbox = folderOf(FolderFile::Inbox, 101);
    }
    const int inboxSize = messages > 0 ? messages : 101;
    const QString inboxName = FolderFile::fileName(FolderFile::Inbox);
    const QString deletedName = FolderFile::fileName(FolderFile::DeletedItems);
    const QByteArray deleted = folderOf(FolderFile::DeletedItems, 101);
    putFile(inboxName, inbox);

    frmMain *w = forms::Main();
    w->show();
    idle();
    store::Flush();
    idle();

    const int runs = 40;
    QList<Figure> figures;
    const QString inboxRows = u" (%1 in the Inbox)"_s.arg(inboxSize);
    const auto fromStart = [&w](int) { clickNode(w, Node::Root); };
    figures << measure(u"folder node 收件箱 (from the start page)"_s + inboxRows, runs, fromStart,
                       [&w](int) { clickNode(w, Node::Inbox); });
    const std::pair<int, QString> others[] = {{Node::Outbox, u"发件箱"_s},
                                              {Node::SentItems, u"已发送邮件"_s},
                                              {Node::DeletedItems, u"已删除邮件"_s},
                                              {Node::Drafts, u"草稿"_s}};
    for (const auto &[node, name] : others)
        figures << measure(u"folder node "_s + name, runs, fromStart,
                           [&w, node = node](int) { clickNode(w, node); });
    figures << measure(u"本地文件夹 (folder summary)"_s, runs, fromStart,
                       [&w](int) { clickNode(w, Node::LocalFolders); });

    openFolder(w, Node::Inbox);
    figures << measure(u"row click (preview)"_s, runs, [](int) {},
                       [&w](int i) { clickRow(w, i % 8); });

    // Row i is unread until this opens it: every sample opens unread mail,
    // and the read window marks it read.
    figures << measure(
        u"double-click an unread message, read window painted"_s, runs,
        [&w](int) {
            forms::MailRead()->close();
            clickNode(w, Node::Inbox);
        },
        [&w](int i) { clickRow(w, i, true); });
    forms::MailRead()->close();

    // Each delete starts from the same two folders, read as the user finds
    // them.
    const auto toDeletedItems = [&](int) {
        putFile(inboxName, inbox);
        putFile(deletedName, deleted);
        openFolder(w, Node::Inbox);
        clickRow(w, 5);
    };
    const auto pressDelete = [&w](int) { w->toolbarButton(frmMain::tbDelete)->trigger(); };
    figures << measure(u"delete an Inbox message to Deleted Items"_s, runs, toDeletedItems,
                       pressDelete);
    // The same without syncing the files to the disk: the difference is what
    // the syncs cost on this machine's disk.
    SetSyncing(false);
    figures << measure(u"the same delete without syncing"_s, runs, toDeletedItems, pressDelete);
    SetSyncing(true);

    figures << measure(
        u"delete for good"_s, runs,
        [&](int) {
            putFile(deletedName, deleted);
            openFolder(w, Node::DeletedItems);
            clickRow(w, 5);
        },
        pressDelete);

    // The run's own work: the dialog loaded, its files committed and the
    // window painted, without the 150 ms and 14 x 5 ms of its timers. It
    // delivers 40 messages into the Inbox the user is looking at.
    const auto beforeRun = [&](int) {
        frmSendAndReceive *run = forms::SendAndReceive();
        while (run->isVisible())
            QTest::qWait(20);
        putFile(FolderFile::fileName(FolderFile::Outbox),
                folderOf(FolderFile::Outbox, 40, u"0"_s, Alice));
        putFile(FolderFile::fileName(FolderFile::SentItems), folderOf(FolderFile::SentItems, 60));
        putFile(FolderFile::fileName(FolderFile::ServerQueue), folderOf(FolderFile::ServerQueue, 0));
        putFile(inboxName, inbox);
        openFolder(w, Node::Inbox);
        QApplication::setActiveWindow(w);
    };
    const auto pressCtrlM = [&w](int) {
        QTest::keyClick(w, Qt::Key_M, Qt::ControlModifier);
        if (!forms::SendAndReceive()->isVisible())
            qFatal("Ctrl+M started no run");
    };
    const QString intoInbox = u"Ctrl+M delivering into the Inbox, without the run's pauses"_s;
    figures << measure(intoInbox, runs, beforeRun, pressCtrlM);
    while (forms::SendAndReceive()->isVisible())
        QTest::qWait(20);
    store::Flush();
    if (figures.last().median > 0) {
        // Read from the file, as the next start would.
        store::Forget();
        const MailList after = store::Folder(FolderFile::Inbox);
        const MailList before = ParseFolder(ProfileFile::parse(inbox));
        if (after.size() != inboxSize + 40 || after.mid(0, inboxSize) != before)
            qFatal("Ctrl+M did not keep every earlier message of the Inbox");
    }
    SetSyncing(false);
    Figure unsynced = measure(u"Ctrl+M without syncing (what the syncs cost)"_s, runs, beforeRun,
                              pressCtrlM);
    SetSyncing(true);
    while (forms::SendAndReceive()->isVisible())
        QTest::qWait(20);
    putFile(inboxName, inbox);

    // The first look at the Inbox after start-up, with nothing in memory:
    // the click paints the page at once; the messages come from the reader,
    // off the window's thread, and the list fills when they are read.
    QList<double> filled;
    QElapsedTimer clicked;
    const auto rowsShown = [&] {
        if (!clicked.isValid())
            return;
        while (w->ListModel->rowCount() != inboxSize)
            QCoreApplication::processEvents(QEventLoop::AllEvents, 5);
        filled.append(double(clicked.nsecsElapsed()) / 1e6);
        clicked.invalidate();
    };
    Figure first = measure(
        u"first click on the Inbox after start-up"_s, runs,
        [&](int) {
            rowsShown();
            forms::destroyAll();
            store::Forget();
            w = forms::Main();
            w->show();
            idle();
        },
        [&](int) {
            clicked.start();
            clickNode(w, Node::Inbox);
        });
    rowsShown();
    if (!filled.isEmpty())
        filled.removeFirst();  // the warm-up's
    store::Flush();
    idle();

    QTreeWidget floorList;
    floorList.setColumnCount(6);
    floorList.setRootIsDecorated(false);
    floorList.setUniformRowHeights(true);
    floorList.resize(w->ListView1->size());
    floorList.show();
    const MailList rows = MailList(101, fullMail(0, 7, u"1"_s));
    figures << measure(u"floor: a bare QTreeWidget refilled with 101 rows"_s, runs, [](int) {},
                       [&floorList, &rows](int) {
                           floorList.clear();
                           QList<QTreeWidgetItem *> items;
                           for (const EmailRec &m : rows)
                               items.append(new QTreeWidgetItem(
                                   {QString(), QString(), m.from, m.subject, m.datetime}));
                           floorList.addTopLevelItems(items);
                       });
    floorList.hide();

    // Memory over a long day of folder clicks.
    for (int i = 0; i < 100; ++i)
        clickNode(w, i % 2 ? Node::Inbox : Node::Outbox);
    idle();
    const qint64 before = bench::statusKib("VmRSS:");
    for (int i = 0; i < 3000; ++i) {
        clickNode(w, i % 2 ? Node::Inbox : Node::Outbox);
        if (i % 50 == 0)
            idle();
    }
    idle();
    const qint64 growth = bench::statusKib("VmRSS:") - before;

    figures.insert(figures.size() - 1, unsynced);
    figures.insert(figures.size() - 1, first);
    if (!filled.isEmpty())
        figures.append(figure(u"(reader) first click until the Inbox's rows show"_s, filled));
    for (const Figure &f : figures) {
        if (tsv)
            std::printf("%s\t%.2f\t%.2f\n", f.name.toUtf8().constData(), f.median, f.p95);
        else
            std::printf("%-44s %10.3f %10.3f   (p95)\n", f.name.toUtf8().constData(), f.median,
                        f.p95);
    }
    if (tsv) {
        std::printf("rss_growth_kib\t%lld\n", static_cast<long long>(growth));
    } else {
        std::printf("%-44s %10lld KiB\n", "memory growth over 3,000 folder clicks",
                    static_cast<long long>(growth));
        std::printf("%-44s %10lld KiB\n", "memory in use at the end (RSS)",
                    static_cast<long long>(bench::statusKib("VmRSS:")));
    }
    forms::destroyAll();
    store::Flush();
    setPrompter(nullptr);
    return 0;
}
