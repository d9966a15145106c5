// The store under writes the kernel refuses and kills at random instants, each in a child
// process, as a file-size limit and dropping root cannot be taken back. QUILLPOST_KILL_TRIALS
// sets the kill trials (200; make torture 2000, a mutation run fewer).

#include "mail/commands.h"
#include "sendrecv/engine.h"
#include "store/appdir.h"
#include "store/clock.h"
#include "store/commit.h"
#include "store/errors.h"
#include "store/folderlock.h"
#include "store/folders.h"
#include "store/mailboxes.h"
#include "testsupport.h"
#include "texts.h"

#include <QDir>
#include <QElapsedTimer>
#include <QMap>
#include <QRandomGenerator>
#include <QTest>

#include <array>
#include <csignal>
#include <sys/resource.h>
#include <sys/stat.h>
#include <sys/wait.h>
#include <thread>
#include <unistd.h>

using namespace Qt::Literals::StringLiterals;
using namespace testsupport;

namespace {

using Folders = std::array<MailList, FolderFile::Count>;
const QString A = u"a@x.cn"_s, B = u"b@x.cn"_s, Nobody = u"c@y.cn"_s;

// Full folders and two accounts, every id unique. The Outbox's 40 messages go to a, to
// b, to both and to nobody, half the 20 queued ones to a: a send and receive brings 50
// Inbox copies and leaves 20 for nobody queued. Long bodies give writes time to be cut.
const Folders start = [] {
    const auto folder = [](int f, int n, const QStringList &to) {
        MailList list = mails(n, n, 10000000 * (f + 1));
        for (int i = 0; i < n; ++i)
            list[i].from = A, list[i].to = to[i % to.size()], list[i].content = u"正文 body\r\n"_s.repeated(20);
        return list;
    };
    const QStringList each{A, B, A + u';' + B, Nobody};
    return Folders{folder(0, 40, each), folder(1, 40, each), folder(2, 50, each),
                   folder(3, 30, each), folder(4, 30, each), folder(5, 20, {A, Nobody})};
}();

// Committed behind the caller; a test that looks at the files waits for it through DataDir.
void reset(const Folders &folders)
{
    FolderSet set;
    set.changeAccounts() = {{u"a"_s, u"p"_s, u"s"_s, u"a"_s, u"pw"_s, A},
                            {u"b"_s, u"p"_s, u"s"_s, u"b"_s, u"pw"_s, B}};
    for (int f = 0; f < FolderFile::Count; ++f)
        set.change(f) = folders[f];
    set.commit();
}

QMap<QString, QByteArray> entries(const DataDir &dir)
{
    QMap<QString, QByteArray> all;
    for (const QString &name : dir.entries())
        all[name] = dir.readBytes(name);
    return all;
}

// The first message of a folder as a window shows it, or opened it.
MailRef shown(int folder) { return {folder, 0, stored(folder).first()}; }
StoredMail opened(int folder) { return {folder, shown(folder).shown.id, 0, shown(folder).shown}; }
// What a compose window stores.
const EmailRec written = start[FolderFile::Inbox].first();

// Each command returns what it tells its caller of a failure at once; one
// found by the writer later is told in a box.
const QList<std::pair<const char *, std::function<QString()>>> commands{
    {"accounts", [] { FolderSet s; s.changeAccounts() = {MailBoxRec()}; s.commit(); return QString(); }},
    {"send", [] { return RunSendReceive(SendReceiveModes::SendOnly).errorText; }},
    {"receive", [] { return RunSendReceive(SendReceiveModes::ReceiveOnly).errorText; }},
    {"MoveToDeletedItems", [] { MoveToDeletedItems(shown(FolderFile::Inbox)); return QString(); }},
    {"DeleteForGood", [] { DeleteForGood(shown(FolderFile::DeletedItems)); return QString(); }},
    {"MarkRead", [] { MarkRead(shown(FolderFile::Inbox)); return QString(); }},
    {"SaveDraft", [] { bool made; SaveDraft(written, {}, &made); return QString(); }},
    {"StoreForSend", [] { StoreForSend(written, opened(FolderFile::Drafts)); return QString(); }},
    {"StoreForSendLater", [] { StoreForSendLater(written, opened(FolderFile::DeletedItems)); return QString(); }},
};

// Every box shown, one after another.
struct Told final : Prompter
{
    Told() { setPrompter(this); }
    ~Told() override { setPrompter(nullptr); }
    void message(Icon, const QString &, const QString &text) override { all += text + u'\n'; }
    bool confirm(Icon i, const QString &t, const QString &text, Default) override { message(i, t, text); return false; }
    QString all;
};

enum class Fault { NothingFits, LargestCutShort, ReadOnlyFolder, FolderInFilesPlace, ReadOnlyFile };

// How a child that ran a command under a fault, or a copy started on a folder, ended.
enum Ending { AsExpected, Otherwise, RootKept, Left, Held };

// A child's exit code, or minus the signal that ended it.
int exitCode(pid_t pid)
{
    int status = 0;
    ::waitpid(pid, &status, 0);
    return WIFEXITED(status) ? WEXITSTATUS(status) : -WTERMSIG(status);
}

// Runs command in a child process, as the fault cannot be taken back. Its failure, at once
// or once the writer meets it, must tell the user the reason and that nothing changed, in
// one message; what the program keeps must then be what the files hold.
int runInChild(Fault fault, rlim_t cap, const std::function<QString()> &command, const QString &reason)
{
    const pid_t pid = ::fork();
    if (pid == 0) {
        // Root writes into any folder and file; as nobody the child meets their modes.
        const bool modes = fault == Fault::ReadOnlyFolder || fault == Fault::ReadOnlyFile;
        if (modes && ::geteuid() == 0 && ::setuid(65534) != 0)
            ::_exit(RootKept);
        // Ignored, SIGXFSZ lets write() fail with EFBIG instead of killing.
        ::signal(SIGXFSZ, SIG_IGN);
        rlimit limit;
        ::getrlimit(RLIMIT_FSIZE, &limit);
        limit.rlim_cur = qMin(cap, limit.rlim_max);
        ::setrlimit(RLIMIT_FSIZE, &limit);
        Told told;
        try {
            told.all += command();
        } catch (const FileError &e) {
            if (!e.filesUnchanged())
                ::_exit(Otherwise);
            told.all += texts::OperationAbandoned + e.userText();
        }
        const bool saved = store::Flush();
        const auto all = [] {  // a folder in a file's place reads as unreadable
            QString kept;
            for (int f = 0; f < FolderFile::Count; ++f)
                try { kept += ids(f) + u'/'; } catch (const StoreError &) { kept += u"unreadable/"_s; }
            return kept;
        };
        const QString shown = all();
        store::Forget();
        const QString unchanged = texts::unsaved::NotSaved.section(u'\r', -1);
        const bool toldOnce = told.all.count(reason) == 1
            && (told.all.contains(texts::OperationAbandoned) || (!saved && told.all.contains(unchanged)));
        qWarning("%s", qPrintable(told.all));
        ::_exit(toldOnce && shown == all() ? AsExpected : Otherwise);
    }
    return exitCode(pid);
}

}  // namespace

class tst_storefaults : public QObject
{
    Q_OBJECT

private slots:
    void initTestCase() { SetClock([] { return QDateTime({2024, 2, 3}, {4, 5}); }); }

    void failedWriteChangesNothing_data()
    {
        QTest::addColumn<int>("command");
        QTest::addColumn<Fault>("fault");
        const char *names[] = {"nothing fits", "largest cut short", "read-only", "folder for file", "file set read-only"};
        for (int c = 0; c < commands.size(); ++c)
            for (int f = 0; f < 5; ++f)
                QTest::addRow("%s, %s", commands[c].first, names[f]) << c << Fault(f);
    }

    // Every command that saves ends with FileError naming the cause, says that nothing
    // changed, and leaves the data folder as it was to the byte, nothing of its own behind.
    void failedWriteChangesNothing()
    {
        QFETCH(int, command);
        QFETCH(Fault, fault);
        const auto &run = commands.at(command).second;

        // The largest file the command writes when nothing stops it.
        DataDir dir;
        reset(start);
        const auto before = entries(dir);
        QCOMPARE(run(), QString());
        QString largest;
        qsizetype largestSize = 0;
        for (const auto &[name, bytes] : entries(dir).asKeyValueRange())
            if (bytes != before.value(name) && bytes.size() > largestSize)
                std::tie(largest, largestSize) = std::pair(name, bytes.size());
        QVERIFY2(!largest.isEmpty(), "the command wrote nothing");
        reset(start);
        QCOMPARE(entries(dir), before);

        const QByteArray path = QFile::encodeName(dir.path());
        if (fault == Fault::ReadOnlyFolder)
            QVERIFY(::chmod(path.constData(), 0555) == 0);
        else if (fault == Fault::FolderInFilesPlace)
            QVERIFY(QFile::remove(dir.filePath(largest)) && QDir(dir.path()).mkdir(largest));
        else if (fault == Fault::ReadOnlyFile)
            QVERIFY(::chmod(path.constData(), 0777) == 0
                    && ::chmod(QFile::encodeName(dir.filePath(largest)).constData(), 0444) == 0);
        const auto faulty = entries(dir);
        // Cut short, the largest file fails after others were written, and
        // those must be taken back as well.
        const rlim_t limits[] = {0, rlim_t(largestSize - 1), RLIM_INFINITY, RLIM_INFINITY, RLIM_INFINITY};
        const QString reasons[] = {texts::ReasonTooLarge, texts::ReasonTooLarge, texts::ReasonNoPermission,
                                   texts::ReasonIsFolder, texts::ReasonFileReadOnly};
        const int ending = runInChild(fault, limits[int(fault)], run, reasons[int(fault)]);
        ::chmod(path.constData(), 0700);
        ::chmod(QFile::encodeName(dir.filePath(largest)).constData(), 0644);
        if (ending == RootKept)
            QSKIP("running as root without the right to become another user");
        QCOMPARE(ending, int(AsExpected));
        QCOMPARE(entries(dir), faulty);
    }

    void errorPaths_data()
    {
        QTest::addColumn<QString>("action");    // recover a journal, commit two folders, load one
        QTest::addColumn<int>("op");            // the FileOp that fails, -1 none
        QTest::addColumn<QString>("file");      // on this file
        QTest::addColumn<int>("error");         // with this errno; -1: the file is gone first
        QTest::addColumn<QString>("expected");  // the error's text
        QTest::addColumn<QString>("after");     // "unchanged", "journal" or the last operations
        const auto row = [](const char *name, const char *action, FileOp op, const char *file, int error,
                            const QString &expected, const char *after) {
            QTest::newRow(name) << QString::fromLatin1(action) << int(op) << QString::fromLatin1(file)
                                << error << expected << QString::fromLatin1(after);
        };
        const auto path = [](const char *name) -> QString { return u"%1/"_s + QString::fromLatin1(name); };
        const auto journal = [&](const QString &why) { return texts::JournalUnreadable.arg(path(JournalName), why); };
        const auto write = [&](const char *file, const QString &why) { return texts::CannotWriteFile.arg(path(file), why); };
        const auto read = [&](const QString &why) { return texts::CannotReadFile.arg(path("receive_c.dat"), why); };
        const QString unfinished = u"\r\r"_s + texts::CommitUnfinished;
        row("a journal that cannot be opened: nothing deleted, start-up stops", "recover", FileOp::Open,
            JournalName, EACCES, journal(texts::ReasonNoPermission), "unchanged");
        row("a journal that cannot be read: the same", "recover", FileOp::Read, JournalName, EIO,
            journal(texts::ReasonIoError), "unchanged");
        row("a recovery whose rename fails keeps its journal", "recover", FileOp::Rename,
            "send_s.dat.new", EIO, write("send_s.dat", texts::ReasonIoError), "journal");
        row("a new file gone during a live commit fails it", "commit", FileOp::Rename, "draft.dat.new",
            -1, write("draft.dat", texts::ReasonVanished) + unfinished, "journal");
        row("the journal's removal is synced", "commit", FileOp::Open, "none", 0, QString(),
            "remove quillpost.journal|sync folder");
        row("a journal that cannot be written: nothing changes", "commit", FileOp::Write, "quillpost.journal.new",
            ENOSPC, write("receive_c.dat", texts::ReasonDiskFull), "unchanged");
        row("an I/O error while writing", "commit", FileOp::Write, "receive_c.dat.new", EIO,
            write("receive_c.dat", texts::ReasonIoError), "unchanged");
        row("a full disk at the sync", "commit", FileOp::Sync, "draft.dat.new", ENOSPC,
            write("draft.dat", texts::ReasonDiskFull), "unchanged");
        row("a read-only file system", "commit", FileOp::Open, "receive_c.dat.new", EROFS,
            write("receive_c.dat", texts::ReasonReadOnly), "unchanged");
        row("a folder file that cannot be opened", "load", FileOp::Open, "receive_c.dat", EACCES,
            read(texts::ReasonNoPermission), "unchanged");
        row("any other error says what to try", "load", FileOp::Read, "receive_c.dat", EPROTO,
            read(texts::ReasonOther.arg(EPROTO)), "unchanged");
    }
    // The journal's and the files' error paths, each failure by its cause: the error
    // names the file and says what the user can do, and the folder holds what it should.
    void errorPaths()
    {
        QFETCH(QString, action);
        QFETCH(int, op);
        QFETCH(QString, file);
        QFETCH(int, error);
        QFETCH(QString, expected);
        QFETCH(QString, after);
        DataDir dir;
        reset(start);
        if (action == u"recover") {
            for (int f : {FolderFile::SentItems, FolderFile::ServerQueue})
                dir.writeBytes(FolderFile::fileName(f) + u".new"_s, FolderBytes(start[f].mid(1)));
            dir.writeBytes(QString::fromLatin1(JournalName), "quillpost-journal 1\nreceive_s.dat\nsend_s.dat\nend\n");
        }
        store::Forget();
        const auto before = entries(dir);
        QStringList log;
        SetFileFault([&](FileOp o, const QString &name) {
            const char *ops[] = {"open", "read", "write", "sync", "rename", "remove", "sync folder"};
            log << QString::fromLatin1(ops[int(o)]) + (o == FileOp::SyncFolder ? QString() : u' ' + name);
            if (int(o) != op || name != file)
                return 0;
            if (error < 0)
                QFile::remove(dir.filePath(name));
            return qMax(error, 0);
        });
        QString got;
        try {
            if (action == u"recover") {
                RecoverDataFolder();
            } else if (action == u"load") {
                stored(FolderFile::Inbox);
            } else {
                FolderSet set;
                set.change(FolderFile::Inbox).removeLast();
                set.change(FolderFile::Drafts).removeLast();
                set.commitAndWait();
            }
        } catch (const FileError &e) {
            got = e.userText();
        }
        SetFileFault({});
        QCOMPARE(got, expected.arg(dir.path()));
        if (after == u"unchanged")
            QCOMPARE(entries(dir), before);
        else if (after == u"journal")
            QVERIFY(dir.exists(QString::fromLatin1(JournalName)));
        else
            QCOMPARE(log.mid(log.size() - 2).join(u'|'), after);
    }

    // A child holds the folder and sends and receives over and over, killed at a random
    // instant; at another a second copy starts on the folder: it finds it held and leaves,
    // or, after the kill, holds it and recovers. Then the folder must be, to the byte, one
    // of the loop's three states: nothing sent; sent into Sent Items and the queue;
    // received as well. That checks each id's place, copies and contents at once.
    void everyMessageOnceAfterAKill()
    {
        DataDir dir;
        reset(start);
        QList<QMap<QString, QByteArray>> states{entries(dir)};
        QElapsedTimer cycle;
        cycle.start();
        for (qint16 mode : {SendReceiveModes::SendOnly, SendReceiveModes::ReceiveOnly})
            RunSendReceive(mode), states.append(entries(dir));
        QCOMPARE(stored(FolderFile::Inbox).size(), 90);
        reset(start);
        store::Flush();  // on the disk before any copy starts on it
        const qint64 cycleNs = cycle.nsecsElapsed();

        const int trials = qEnvironmentVariableIsSet("QUILLPOST_KILL_TRIALS")
            ? qEnvironmentVariableIntValue("QUILLPOST_KILL_TRIALS") : 200;
        std::array<int, 3> found{};
        int left = 0;
        // A copy of the program: it holds the folder and recovers it, or leaves; the
        // first then sends and receives until it is killed.
        const auto copy = [&dir](bool first) {
            const pid_t pid = ::fork();
            if (pid == 0) {
                DataFolderLock lock(dir.path());
                if (OpenDataFolder(lock) != DataFolderLock::State::Held)
                    ::_exit(Left);
                while (first && RunSendReceive(SendReceiveModes::SendAndReceive).errorText.isEmpty())
                    reset(start);
                ::_exit(first ? Otherwise : Held);
            }
            return pid;
        };
        for (int trial = 0; trial < trials; ++trial) {
            const pid_t first = copy(true);
            // Both anywhere in two turns of the loop, the first's start included.
            const qint64 killAt = QRandomGenerator::global()->bounded(2 * cycleNs);
            const qint64 secondAt = QRandomGenerator::global()->bounded(2 * cycleNs);
            std::this_thread::sleep_for(std::chrono::nanoseconds(qMin(killAt, secondAt)));
            const pid_t second = secondAt < killAt ? copy(false) : 0;
            std::this_thread::sleep_for(std::chrono::nanoseconds(qAbs(killAt - secondAt)));
            ::kill(first, SIGKILL);
            const int firstEnded = exitCode(first);
            QVERIFY2(firstEnded == -SIGKILL || firstEnded == Left, "the first copy's run failed");
            // Started after the kill, a copy holds the folder at once.
            const int secondEnded = exitCode(second ? second : copy(false));
            QVERIFY(secondEnded == Held || (second && secondEnded == Left));
            left += secondEnded == Left;
            {
                DataFolderLock lock(dir.path());
                QCOMPARE(OpenDataFolder(lock), DataFolderLock::State::Held);
            }
            const qsizetype state = states.indexOf(entries(dir));
            QVERIFY2(state >= 0, qPrintable(u"trial %1 left no state before or after a step: %2"_s
                                                .arg(trial).arg(dir.entries().join(u' '))));
            ++found[state];
        }
        qInfo("kill trials %d, a turn %.1f ms; unsent %d, sent %d, received %d; a second copy found the "
              "folder held %d times", trials, cycleNs / 1e6, found[0], found[1], found[2], left);
    }

    // A change whose renames failed after its journal is finished before the next
    // command reads, so that the command neither builds on half of it nor undoes the rest,
    // even while the writer is still busy with another data folder's change: a command
    // that finished it only at its second read would hold an Outbox from before the change.
    void unfinishedChangeIsFinishedFirst_data()
    {
        QTest::addColumn<QString>("outbox");  // where the Outbox without x stands
        QTest::newRow("nothing renamed yet") << u"send_c.dat.new"_s;
        QTest::newRow("the Outbox renamed, Sent Items and the queue not") << u"send_c.dat"_s;
    }
    void unfinishedChangeIsFinishedFirst()
    {
        DataDir dir;
        reset(start);
        const QStringList files = dir.entries();
        // x was sent: the change takes it from the Outbox into Sent Items and the queue.
        const MailList x{start[FolderFile::Outbox].first()};
        QFETCH(QString, outbox);
        dir.writeBytes(outbox, FolderBytes(start[FolderFile::Outbox].mid(1)));
        for (int f : {FolderFile::SentItems, FolderFile::ServerQueue})
            dir.writeBytes(FolderFile::fileName(f) + u".new"_s, FolderBytes(start[f] + x));
        dir.writeBytes(QString::fromLatin1(JournalName),
                       "quillpost-journal 1\nsend_c.dat\nreceive_s.dat\nsend_s.dat\nend\n");
        QTemporaryDir other;
        SetAppDir(other.path());
        FolderSet elsewhere;
        elsewhere.change(FolderFile::Drafts) = x;
        elsewhere.commit();  // its outcome not taken yet
        SetAppDir(dir.path());

        RunSendReceive(SendReceiveModes::SendAndReceive);

        QCOMPARE(dir.entries(), files);
        const auto copies = [&](int f) { return QString::number(ids(f).count(x[0].id)); };
        // Sent once, received once (x goes to a), no longer queued.
        QCOMPARE(copies(FolderFile::SentItems) + copies(FolderFile::Inbox)
                     + copies(FolderFile::ServerQueue), u"110"_s);
    }

    // What a commit or an older version (NAME.dat.XXXXXX) left is removed; what a user
    // keeps beside the data files, under names alike, is not, nor is a file named as
    // the journal's end line would be were it a name. The journal's one change is made.
    void startUpRemovesOnlyItsOwnLeftovers()
    {
        DataDir dir;
        const QStringList users{u"draft.dat.202401"_s, u"end.new"_s, u"notes.txt"_s, u"receive_c.dat.backup"_s,
                                u"send_s.dat.damaged-20240203-0405"_s};
        for (const QString &name : users + u"draft.dat.new|quillpost.journal.new|receive_c.dat.q3XbZ9|send_c.dat.new"_s.split(u'|'))
            dir.writeBytes(name, "[email]\r\nnumber=0\r\n");
        dir.writeBytes(QString::fromLatin1(JournalName), "quillpost-journal 1\nsend_c.dat\nend\n");
        RecoverDataFolder();
        QStringList kept = users + QStringList{u"send_c.dat"_s};
        kept.sort();
        QCOMPARE(dir.entries(), kept);
    }
};

QTEST_GUILESS_MAIN(tst_storefaults)
#include "tst_storefaults.moc"
