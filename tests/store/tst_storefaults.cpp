// The store under the faults a system brings: writes the kernel refuses,
// and kills at random instants. Both run the commands in a child process,
// because the limits used (a file-size limit, dropping root) cannot be
// taken back and a kill ends the process. QUILLPOST_KILL_TRIALS sets the
// number of kill trials (200; make torture runs 2000).

#include "mail/commands.h"
#include "sendrecv/engine.h"
#include "store/clock.h"
#include "store/commit.h"
#include "store/errors.h"
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
#include <cstdio>
#include <ctime>
#include <grp.h>
#include <sys/resource.h>
#include <sys/stat.h>
#include <sys/wait.h>
#include <unistd.h>

using namespace Qt::Literals::StringLiterals;
using testsupport::DataDir;

namespace {

using Folders = std::array<MailList, FolderFile::Count>;
const QString A = u"a@x.cn"_s, B = u"b@x.cn"_s, Nobody = u"c@y.cn"_s;

MailList mails(int folder, int count, const QStringList &to)
{
    MailList list;
    for (int i = 0; i < count; ++i)
        list.append({QString::number(10000000 * (folder + 1) + i), A, to[i % to.size()],
                     QString(), u"主题 %1"_s.arg(i), QString(u"正文 body\r\n"_s).repeated(20),
                     u"24-01-01 08:00"_s, QString(), folder, i, u"1"_s});
    return list;
}

// Full folders and two accounts; every id is unique. The Outbox's 40
// messages go to a, to b, to both and to nobody, and half of the 20 queued
// ones to a: a send and receive brings 50 Inbox copies and leaves 20
// messages for nobody queued.
const Folders start = [] {
    const QStringList each{A, B, A + u';' + B, Nobody};
    return Folders{mails(0, 40, each), mails(1, 40, each), mails(2, 50, each),
                   mails(3, 30, each), mails(4, 30, each), mails(5, 20, {A, Nobody})};
}();

// The data folder as given, in one unit.
void put(const Folders &folders)
{
    FolderSet set;
    const AccountList accounts{{u"a"_s, u"p"_s, u"s"_s, u"a"_s, u"pw"_s, A},
                               {u"b"_s, u"p"_s, u"s"_s, u"b"_s, u"pw"_s, B}};
    if (set.accounts() != accounts)
        set.changeAccounts() = accounts;
    for (int f = 0; f < FolderFile::Count; ++f) {
        if (set.read(f) != folders[f])
            set.change(f) = folders[f];
    }
    set.commit();
}

// Every entry of the data folder: a file's bytes, or a mark for a folder.
QMap<QString, QByteArray> entries(const DataDir &dir)
{
    QMap<QString, QByteArray> all;
    const QFileInfoList infos = QDir(dir.path()).entryInfoList(
        QDir::AllEntries | QDir::NoDotAndDotDot | QDir::Hidden | QDir::System);
    for (const QFileInfo &info : infos)
        all[info.fileName()] = info.isDir() ? "<folder>" : dir.readBytes(info.fileName());
    return all;
}

// The first message of a folder as a window shows it or opened it.
MailRef shown(int folder)
{
    return {folder, 0, store::Folder(folder).first()};
}
StoredMail opened(int folder)
{
    return {folder, store::Folder(folder).first().id, 0, store::Folder(folder).first()};
}

const QList<std::pair<const char *, std::function<void()>>> commands{
    {"SaveEmails", [] {
         EmailArray a;
         MailCount n = 0;
         LoadEmails(FolderFile::Inbox, a, n);
         a[n++] = a[0];
         SaveEmails(FolderFile::Inbox, a, n);
     }},
    {"SaveMailBoxes", [] {
         MailBoxArray a;
         MailCount n = 0;
         LoadMailBoxes(a, n);
         a[n++] = a[0];
         SaveMailBoxes(a, n);
     }},
    {"SendStep", [] { SendStep(); }},
    {"ReceiveStep", [] { ReceiveStep(); }},
    {"MoveToDeletedItems", [] { MoveToDeletedItems(shown(FolderFile::Inbox)); }},
    {"DeleteForGood", [] { DeleteForGood(shown(FolderFile::DeletedItems)); }},
    {"MarkRead", [] { MarkRead(shown(FolderFile::Inbox)); }},
    {"SaveDraft", [] {
         bool created = false;
         SaveDraft(start[FolderFile::Inbox].first(), {}, &created);
     }},
    {"StoreForSend",
     [] { StoreForSend(start[FolderFile::Inbox].first(), opened(FolderFile::Drafts)); }},
    {"StoreForSendLater",
     [] { StoreForSendLater(start[FolderFile::Inbox].first(), opened(FolderFile::DeletedItems)); }},
};

enum class Fault { NothingFits, LargestCutShort, ReadOnlyFolder, FolderInFilesPlace };
// How a child that ran a command under a fault ended, as its exit code.
enum Ending { AsExpected, Otherwise, RootKept };

// Runs command in a child under the fault; it must throw FileError saying
// that nothing changed and giving reason.
int runInChild(Fault fault, rlim_t sizeLimit, const std::function<void()> &command,
               const QString &reason)
{
    const pid_t pid = ::fork();
    if (pid == 0) {
        if (fault == Fault::ReadOnlyFolder) {
            // Root writes into any folder; as nobody the child meets its mode.
            if (::geteuid() == 0
                && (::setgroups(0, nullptr) != 0 || ::setgid(65534) != 0 || ::setuid(65534) != 0))
                ::_exit(RootKept);
        } else if (fault != Fault::FolderInFilesPlace) {
            // Ignored, SIGXFSZ lets write() fail with EFBIG instead of killing.
            ::signal(SIGXFSZ, SIG_IGN);
            rlimit limit;
            ::getrlimit(RLIMIT_FSIZE, &limit);
            limit.rlim_cur = sizeLimit;
            ::setrlimit(RLIMIT_FSIZE, &limit);
        }
        try {
            command();
        } catch (const StoreError &e) {
            std::fprintf(stderr, "%s\n", qPrintable(e.userText()));
            ::_exit(dynamic_cast<const FileError *>(&e) && e.filesUnchanged()
                            && e.userText().contains(reason)
                        ? AsExpected
                        : Otherwise);
        }
        ::_exit(Otherwise);
    }
    int status = 0;
    ::waitpid(pid, &status, 0);
    return WIFEXITED(status) ? WEXITSTATUS(status) : -status;
}

}  // namespace

class tst_storefaults : public QObject
{
    Q_OBJECT

private slots:
    void initTestCase() { SetClock([] { return QDateTime({2024, 2, 3}, {4, 5}); }); }
    void failedWriteChangesNothing_data();
    void failedWriteChangesNothing();
    void everyMessageOnceAfterAKill();
    void unfinishedChangeIsFinishedFirst();
    void startUpRemovesOnlyItsOwnLeftovers_data();
    void startUpRemovesOnlyItsOwnLeftovers();
};

void tst_storefaults::failedWriteChangesNothing_data()
{
    QTest::addColumn<int>("command");
    QTest::addColumn<Fault>("fault");
    const std::pair<const char *, Fault> faults[] = {
        {"nothing fits", Fault::NothingFits},
        {"largest file cut short", Fault::LargestCutShort},
        {"read-only folder", Fault::ReadOnlyFolder},
        {"a folder in its file's place", Fault::FolderInFilesPlace}};
    for (int c = 0; c < commands.size(); ++c) {
        for (const auto &[name, fault] : faults)
            QTest::addRow("%s, %s", commands[c].first, name) << c << fault;
    }
}

// Every command that saves ends with FileError naming the cause, says that
// nothing changed, and leaves the data folder as it was to the byte, with
// nothing of its own left behind.
void tst_storefaults::failedWriteChangesNothing()
{
    QFETCH(int, command);
    QFETCH(Fault, fault);
    const auto &run = commands.at(command).second;

    // The largest file the command writes when nothing stops it.
    QString largest;
    qsizetype largestSize = 0;
    {
        DataDir dry;
        put(start);
        const auto before = entries(dry);
        run();
        const auto after = entries(dry);
        for (auto it = after.cbegin(); it != after.cend(); ++it) {
            if (it.value() != before.value(it.key()) && it.value().size() > largestSize) {
                largest = it.key();
                largestSize = it.value().size();
            }
        }
        QVERIFY2(!largest.isEmpty(), "the command wrote nothing");
    }

    DataDir dir;
    put(start);
    const QByteArray path = QFile::encodeName(dir.path());
    QString reason = texts::ReasonTooLarge;
    if (fault == Fault::ReadOnlyFolder) {
        QVERIFY(::chmod(path.constData(), 0555) == 0);
        reason = texts::ReasonNoPermission;
    } else if (fault == Fault::FolderInFilesPlace) {
        QVERIFY(QFile::remove(dir.filePath(largest)) && QDir(dir.path()).mkdir(largest));
        reason = texts::ReasonIsFolder;
    }
    const auto before = entries(dir);
    // Cut short, the largest file fails after others were written, and
    // those must be taken back as well.
    const rlim_t limit = fault == Fault::LargestCutShort ? rlim_t(largestSize - 1) : 0;
    const int ending = runInChild(fault, limit, run, reason);
    ::chmod(path.constData(), 0700);
    if (ending == RootKept)
        QSKIP("running as root without the right to become another user");
    QCOMPARE(ending, int(AsExpected));
    QCOMPARE(entries(dir), before);
}

// A child sends and receives over and over, killed at a random instant;
// then the start-up recovery runs. Each step is one unit, so the folder
// must be exactly one of the three states the loop passes through: every
// Outbox message still in the Outbox; or in Sent Items and the queue; or in
// Sent Items and once per matching account in the Inbox (unmatched ones
// still queued). Comparing every file's bytes with those states checks each
// id's place, its number of copies and its contents, that every file loads
// as before and that nothing else is left, all at once.
void tst_storefaults::everyMessageOnceAfterAKill()
{
    DataDir dir;
    put(start);
    QList<QMap<QString, QByteArray>> states{entries(dir)};
    QElapsedTimer cycle;
    cycle.start();
    SendStep();
    states.append(entries(dir));
    ReceiveStep();
    states.append(entries(dir));
    QCOMPARE(store::Folder(FolderFile::Inbox).size(), 90);
    QCOMPARE(store::Folder(FolderFile::ServerQueue).size(), 20);
    put(start);
    const qint64 cycleNs = cycle.nsecsElapsed();

    const int trials = qMax(200, qEnvironmentVariableIntValue("QUILLPOST_KILL_TRIALS"));
    int afterJournal = 0, whileWriting = 0, failures = 0;
    std::array<int, 3> found{};
    QElapsedTimer clock;
    clock.start();
    for (int trial = 0; trial < trials; ++trial) {
        const pid_t pid = ::fork();
        if (pid == 0) {
            for (;;) {
                if (!RunSendReceive(SendReceiveModes::SendAndReceive).errorText.isEmpty())
                    ::_exit(1);
                put(start);
            }
        }
        // Anywhere in two turns of the loop, the child's start included.
        const qint64 delay = QRandomGenerator::global()->bounded(2 * cycleNs);
        const timespec pause{time_t(delay / 1000000000), long(delay % 1000000000)};
        ::nanosleep(&pause, nullptr);
        ::kill(pid, SIGKILL);
        int status = 0;
        ::waitpid(pid, &status, 0);

        const QStringList left = entries(dir).keys();
        const bool journal = left.contains(QLatin1StringView(JournalName));
        afterJournal += journal;
        whileWriting += !journal && !left.filter(QLatin1StringView(NewFileSuffix)).isEmpty();
        RecoverDataFolder();
        const auto now = entries(dir);
        const qsizetype state = WIFSIGNALED(status) ? states.indexOf(now) : -1;
        if (state >= 0) {
            ++found[state];
            continue;
        }
        ++failures;
        QStringList held;  // each file with its number of messages
        for (auto it = now.cbegin(); it != now.cend(); ++it)
            held.append(it.key() + u':' + QString::number(it.value().count("[email-")));
        qWarning("trial %d: %s; the folder holds %s", trial,
                 WIFSIGNALED(status) ? "no state before or after a step" : "the child ended",
                 qPrintable(held.join(u' ')));
        for (const QString &name : now.keys())
            QFile::remove(dir.filePath(name));
        put(start);
    }
    std::printf("kill trials: %d in %.1f s, one loop turn %.1f ms; killed past a journal "
                "(completed at start-up) %d, while writing new files (dropped) %d; found "
                "before sending %d, sent %d, received %d; failures %d\n",
                trials, double(clock.elapsed()) / 1000, double(cycleNs) / 1e6, afterJournal,
                whileWriting, found[0], found[1], found[2], failures);
    QCOMPARE(failures, 0);
}

// A change whose renames failed after its journal is finished before the
// next command reads, so that the command neither builds on half of it nor
// undoes the rest.
void tst_storefaults::unfinishedChangeIsFinishedFirst()
{
    DataDir dir;
    put(start);
    MailList sent = start[FolderFile::SentItems], queue = start[FolderFile::ServerQueue];
    EmailRec x = start[FolderFile::Outbox].first();
    x.id = u"99999999"_s;
    sent.append(x);
    queue.append(x);
    dir.writeBytes(u"receive_s.dat.new"_s, FolderBytes(sent));
    dir.writeBytes(u"send_s.dat.new"_s, FolderBytes(queue));
    dir.writeBytes(QString::fromLatin1(JournalName),
                   "quillpost-journal 1\nreceive_s.dat\nsend_s.dat\nend\n");

    ReceiveStep();

    QCOMPARE(dir.entries().filter(u".new"_s) + dir.entries().filter(u"journal"_s), QStringList());
    QCOMPARE(testsupport::ids(FolderFile::SentItems).split(u'|').count(u"99999999"_s), 1);
    QCOMPARE(testsupport::ids(FolderFile::Inbox).split(u'|').count(u"99999999"_s), 1);  // x goes to a
    QCOMPARE(testsupport::ids(FolderFile::ServerQueue).split(u'|').count(u"99999999"_s), 0);
}

void tst_storefaults::startUpRemovesOnlyItsOwnLeftovers_data()
{
    QTest::addColumn<QString>("name");
    QTest::addColumn<bool>("removed");
    QTest::newRow("a file of a commit without journal") << u"send_c.dat.new"_s << true;
    QTest::newRow("a journal being written") << u"quillpost.journal.new"_s << true;
    QTest::newRow("an older version's temporary file") << u"receive_c.dat.q3XbZ9"_s << true;
    QTest::newRow("a copy named by a word") << u"receive_c.dat.backup"_s << false;
    QTest::newRow("a copy named by a date") << u"draft.dat.202401"_s << false;
    QTest::newRow("a file set aside") << u"send_s.dat.damaged-20240203-0405"_s << false;
    QTest::newRow("a file of the user's own") << u"notes.txt"_s << false;
}

void tst_storefaults::startUpRemovesOnlyItsOwnLeftovers()
{
    QFETCH(QString, name);
    QFETCH(bool, removed);
    DataDir dir;
    dir.writeBytes(name, "[email]\r\nnumber=0\r\n");
    RecoverDataFolder();
    QCOMPARE(dir.exists(name), !removed);
}

QTEST_GUILESS_MAIN(tst_storefaults)
#include "tst_storefaults.moc"
