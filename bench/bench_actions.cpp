// The actions a trainee repeats all day, driven through the real main
// window on the offscreen platform with full folders: two accounts, 101
// messages in every folder, every field near its size limit and mostly
// Chinese. Each figure runs from the input event until the event loop is
// idle and the window has painted. Beside them, the floor: a bare
// QTreeWidget cleared, refilled with the same 101 rows and painted.
//
// bench_actions          prints rows of the `make bench` table
// bench_actions --tsv    prints "name<TAB>median ms<TAB>p95 ms" per action,
//                        then "rss_growth_kib<TAB>N" for 3,000 folder clicks

#include "benchutil.h"

#include "store/appdir.h"
#include "store/commit.h"
#include "store/folders.h"
#include "store/mailboxes.h"
#include "store/prompter.h"
#include "ui/common/application.h"
#include "ui/common/fonts.h"
#include "ui/common/forms.h"
#include "ui/main/foldernodes.h"
#include "ui/main/frmMain.h"
#include "ui/message/frmMailRead.h"
#include "ui/sendrecv/frmSendAndReceive.h"

#include <QElapsedTimer>
#include <QFile>
#include <QTemporaryDir>
#include <QTest>
#include <QTimer>
#include <QToolBar>
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

void fill(int folder, int count, const QString &unread = u"1"_s, const QString &from = QString())
{
    EmailArray mails;
    for (int i = 0; i < count; ++i) {
        mails[i] = fullMail(folder, i, unread);
        // The Outbox's messages name the first account, as a send needs.
        if (!from.isEmpty())
            mails[i].from = from;
    }
    SaveEmails(folder, mails, MailCount(count));
}

void fillAll()
{
    MailBoxArray accounts;
    accounts[0] = {u"alice"_s, u"pop"_s, u"smtp"_s, u"alice"_s, u"pw"_s, Alice};
    accounts[1] = {u"bob"_s, u"pop"_s, u"smtp"_s, u"bob"_s, u"pw"_s, Bob};
    SaveMailBoxes(accounts, 2);
    for (int folder = FolderFile::Inbox; folder <= FolderFile::Drafts; ++folder)
        fill(folder, MAX_FOLDER_MAILS);
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
    std::sort(times.begin(), times.end());
    return {name, times.at(times.size() / 2), times.at(qMin<qsizetype>(times.size() - 1,
                                                                       (times.size() * 95) / 100))};
}

void clickNode(frmMain *w, int node)
{
    QTreeWidgetItem *item = w->node(node);
    QTest::mouseClick(w->TreeView1->viewport(), Qt::LeftButton, {},
                      w->TreeView1->visualItemRect(item).center());
}

void clickRow(frmMain *w, int row, bool twice = false)
{
    w->ListView1->scrollToItem(w->ListView1->topLevelItem(row));
    const QPoint at = w->ListView1->visualItemRect(w->ListView1->topLevelItem(row)).center();
    QTest::mouseClick(w->ListView1->viewport(), Qt::LeftButton, {}, at);
    if (twice)
        QTest::mouseDClick(w->ListView1->viewport(), Qt::LeftButton, {}, at);
}

qint64 rssKib()
{
    QFile status(u"/proc/self/status"_s);
    if (!status.open(QIODevice::ReadOnly))
        return 0;
    for (const QByteArray &line : status.readAll().split('\n')) {
        if (line.startsWith("VmRSS:"))
            return line.mid(6).trimmed().split(' ').first().toLongLong();
    }
    return 0;
}

}  // namespace

int main(int argc, char *argv[])
{
    const bool tsv = argc > 1 && std::strcmp(argv[1], "--tsv") == 0;
    QuillpostApplication app(argc, argv);
    app.setFont(fonts::uiFont());
    QTemporaryDir dir;
    SetAppDir(dir.path());
    YesPrompter yes;
    setPrompter(&yes);
    fillAll();

    frmMain *w = forms::Main();
    w->show();
    idle();

    const int runs = 40;
    QList<Figure> figures;
    const auto fromStart = [w](int) { clickNode(w, Node::Root); };
    figures << measure(u"folder node 收件箱 (from the start page)"_s, runs, fromStart,
                       [w](int) { clickNode(w, Node::Inbox); });
    const std::pair<int, QString> others[] = {{Node::Outbox, u"发件箱"_s},
                                              {Node::SentItems, u"已发送邮件"_s},
                                              {Node::DeletedItems, u"已删除邮件"_s},
                                              {Node::Drafts, u"草稿"_s}};
    for (const auto &[node, name] : others)
        figures << measure(u"folder node "_s + name, runs, fromStart,
                           [w, node = node](int) { clickNode(w, node); });
    figures << measure(u"本地文件夹 (folder summary)"_s, runs, fromStart,
                       [w](int) { clickNode(w, Node::LocalFolders); });

    clickNode(w, Node::Inbox);
    figures << measure(u"row click (preview)"_s, runs, [](int) {},
                       [w](int i) { clickRow(w, i % 8); });

    figures << measure(
        u"double-click, read window painted"_s, runs,
        [w](int) {
            forms::MailRead()->close();
            clickNode(w, Node::Inbox);
        },
        [w](int i) { clickRow(w, i % 8, true); });
    forms::MailRead()->close();

    const auto toDeletedItems = [w](int) {
        fill(FolderFile::Inbox, MAX_FOLDER_MAILS);
        fill(FolderFile::DeletedItems, MAX_FOLDER_MAILS - 1);
        clickNode(w, Node::Inbox);
        clickRow(w, 5);
    };
    const auto pressDelete = [w](int) { w->toolbarButton(frmMain::tbDelete)->trigger(); };
    figures << measure(u"delete an Inbox message to Deleted Items"_s, runs, toDeletedItems,
                       pressDelete);
    // The same without syncing the files to the disk: the difference is what
    // the syncs cost on this machine's disk.
    SetSyncing(false);
    figures << measure(u"the same delete without syncing"_s, runs, toDeletedItems, pressDelete);
    SetSyncing(true);

    figures << measure(
        u"delete for good"_s, runs,
        [w](int) {
            fill(FolderFile::DeletedItems, MAX_FOLDER_MAILS);
            clickNode(w, Node::DeletedItems);
            clickRow(w, 5);
        },
        pressDelete);

    // The run's own work: the dialog loaded, its files written and the
    // window painted, without the 150 ms and 14 x 5 ms of its timers.
    const auto beforeRun = [w](int) {
        frmSendAndReceive *run = forms::SendAndReceive();
        while (run->isVisible())
            QTest::qWait(20);
        fill(FolderFile::Outbox, 40, u"0"_s, Alice);
        fill(FolderFile::SentItems, 60);
        fill(FolderFile::ServerQueue, 0);
        fill(FolderFile::Inbox, 40);
        clickNode(w, Node::Inbox);
        QApplication::setActiveWindow(w);
    };
    const auto pressCtrlM = [w](int) {
        QTest::keyClick(w, Qt::Key_M, Qt::ControlModifier);
        if (!forms::SendAndReceive()->isVisible())
            qFatal("Ctrl+M started no run");
    };
    figures << measure(u"Ctrl+M, the run's work without its pauses"_s, runs, beforeRun, pressCtrlM);
    while (forms::SendAndReceive()->isVisible())
        QTest::qWait(20);
    SetSyncing(false);
    Figure unsynced =
        measure(u"Ctrl+M without syncing (what the syncs cost)"_s, runs, beforeRun, pressCtrlM);
    SetSyncing(true);
    while (forms::SendAndReceive()->isVisible())
        QTest::qWait(20);

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
    const qint64 before = rssKib();
    for (int i = 0; i < 3000; ++i) {
        clickNode(w, i % 2 ? Node::Inbox : Node::Outbox);
        if (i % 50 == 0)
            idle();
    }
    idle();
    const qint64 growth = rssKib() - before;

    figures.insert(figures.size() - 1, unsynced);
    for (const Figure &f : figures) {
        if (tsv)
            std::printf("%s\t%.2f\t%.2f\n", f.name.toUtf8().constData(), f.median, f.p95);
        else
            std::printf("%-44s %10.3f %10.3f   (p95)\n", f.name.toUtf8().constData(), f.median,
                        f.p95);
    }
    if (tsv)
        std::printf("rss_growth_kib\t%lld\n", static_cast<long long>(growth));
    else
        std::printf("%-44s %10lld KiB\n", "memory growth over 3,000 folder clicks",
                    static_cast<long long>(growth));
    forms::destroyAll();
    setPrompter(nullptr);
    return 0;
}
