// Kills at random instants. A child process sends and receives with full
// folders and two accounts, over and over; the parent kills it with SIGKILL
// at a random moment, runs the start-up recovery, and checks what a user
// would find. QUILLPOST_KILL_TRIALS sets the number of trials (make torture
// runs 2000).

#include "sendrecv/engine.h"
#include "store/appdir.h"
#include "store/clock.h"
#include "store/commit.h"
#include "store/errors.h"
#include "store/folders.h"
#include "store/mailstore.h"
#include "testsupport.h"

#include <QDir>
#include <QElapsedTimer>
#include <QRandomGenerator>
#include <QTest>

#include <array>
#include <csignal>
#include <cstdio>
#include <ctime>
#include <sys/wait.h>
#include <unistd.h>

using namespace Qt::Literals::StringLiterals;

namespace {

using Folders = std::array<MailList, FolderFile::Count>;

Folders loadAll()
{
    store::Forget();
    Folders all;
    for (int f = 0; f < FolderFile::Count; ++f)
        all[f] = store::Folder(f);
    return all;
}

MailList mails(int folder, int count, const QStringList &recipients)
{
    MailList list;
    const QString body = QString(u"第二行 line of the body\r\n"_s).repeated(10);
    for (int i = 0; i < count; ++i) {
        const QString id = QString::number(10000000 * (folder + 1) + i);
        list.append({id, u"a@x.cn"_s, recipients[i % recipients.size()], QString(),
                     u"主题 "_s + id, body, u"24-01-01 08:00"_s, QString(), folder, i, u"0"_s});
    }
    return list;
}

// Full folders: the Outbox's 40 messages go to a, to b, to both and to
// nobody, so a receive brings 40 copies and leaves 10 queued. Every id is
// unique, so each one's place says which step it went through.
Folders startingFolders()
{
    const QStringList recipients{u"a@x.cn"_s, u"b@x.cn"_s, u"a@x.cn;b@x.cn"_s, u"c@y.cn"_s};
    Folders f;
    f[FolderFile::Inbox] = mails(FolderFile::Inbox, 40, recipients);
    f[FolderFile::Outbox] = mails(FolderFile::Outbox, 40, recipients);
    f[FolderFile::SentItems] = mails(FolderFile::SentItems, 50, recipients);
    f[FolderFile::DeletedItems] = mails(FolderFile::DeletedItems, 30, recipients);
    f[FolderFile::Drafts] = mails(FolderFile::Drafts, 30, recipients);
    f[FolderFile::ServerQueue] = mails(FolderFile::ServerQueue, 20, {u"c@y.cn"_s});
    return f;
}

// Back to the starting folders in one unit: the Outbox refilled, the
// copies of the last run gone.
void refill(const Folders &start)
{
    FolderSet set;
    for (int f = 0; f < FolderFile::Count; ++f) {
        if (set.read(f) != start[f])
            set.change(f) = start[f];
    }
    set.commit();
}

QStringList entryNames()
{
    return QDir(AppDir()).entryList(QDir::AllEntries | QDir::NoDotAndDotDot | QDir::Hidden
                                    | QDir::System);
}

QString describe(const Folders &f)
{
    QStringList sizes;
    for (const MailList &m : f)
        sizes.append(QString::number(m.size()));
    return sizes.join(u' ');
}

}  // namespace

class tst_killrecovery : public QObject
{
    Q_OBJECT

private slots:
    void everyMessageOnceAfterAKill();

    void startUpRemovesOnlyItsOwnLeftovers_data()
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

    void startUpRemovesOnlyItsOwnLeftovers()
    {
        QFETCH(QString, name);
        QFETCH(bool, removed);
        testsupport::DataDir dir;
        dir.writeBytes(name, "[email]\r\nnumber=0\r\n");
        RecoverDataFolder();
        QCOMPARE(dir.exists(name), !removed);
    }
};

void tst_killrecovery::everyMessageOnceAfterAKill()
{
    testsupport::DataDir dir;
    SetClock([] { return QDateTime({2024, 2, 3}, {4, 5}); });
    {
        FolderSet set;
        set.changeAccounts() = {{u"a"_s, u"p"_s, u"s"_s, u"a"_s, u"pw"_s, u"a@x.cn"_s},
                                {u"b"_s, u"p"_s, u"s"_s, u"b"_s, u"pw"_s, u"b@x.cn"_s}};
        set.commit();
    }
    const QByteArray accounts = dir.readBytes(MailBoxFileName);
    const Folders start = startingFolders();
    refill(start);

    // Each step is one unit, so after any kill the folders are exactly one
    // of the three states the loop passes through: every Outbox message
    // still in the Outbox; or in Sent Items and the queue; or in Sent Items
    // and once per matching account in the Inbox (unmatched ones still
    // queued). Comparing whole folders checks each id's place, its number
    // of copies and its contents at once.
    QElapsedTimer cycle;
    cycle.start();
    QCOMPARE(loadAll(), start);
    SendStep();
    const Folders sent = loadAll();
    ReceiveStep();
    const Folders received = loadAll();
    refill(start);
    const qint64 cycleNs = cycle.nsecsElapsed();
    QCOMPARE(received[FolderFile::Inbox].size(), 80);
    QCOMPARE(received[FolderFile::ServerQueue].size(), 30);
    const QList<Folders> states{start, sent, received};

    const QStringList files{u"deleted_c.dat"_s, u"draft.dat"_s, MailBoxFileName,
                            u"receive_c.dat"_s, u"receive_s.dat"_s, u"send_c.dat"_s,
                            u"send_s.dat"_s};
    const int trials = qEnvironmentVariableIntValue("QUILLPOST_KILL_TRIALS") > 0
        ? qEnvironmentVariableIntValue("QUILLPOST_KILL_TRIALS")
        : 200;
    int afterJournal = 0, whileWriting = 0, failures = 0;
    std::array<int, 3> landedIn{};
    QElapsedTimer clock;
    clock.start();
    for (int trial = 0; trial < trials; ++trial) {
        const pid_t pid = ::fork();
        if (pid == 0) {
            for (;;) {
                if (!RunSendReceive(SendReceiveModes::SendAndReceive).errorText.isEmpty())
                    ::_exit(1);
                refill(start);
            }
        }
        // Anywhere in up to two turns of the loop, the child's start included.
        const qint64 delay = QRandomGenerator::global()->bounded(2 * cycleNs);
        const timespec pause{time_t(delay / 1000000000), long(delay % 1000000000)};
        ::nanosleep(&pause, nullptr);
        ::kill(pid, SIGKILL);
        int status = 0;
        ::waitpid(pid, &status, 0);

        const QStringList left = entryNames();
        if (left.contains(QLatin1StringView(JournalName)))
            ++afterJournal;
        else if (!left.filter(QLatin1StringView(NewFileSuffix)).isEmpty())
            ++whileWriting;
        RecoverDataFolder();

        QString problem;
        Folders now;
        try {
            now = loadAll();
        } catch (const StoreError &e) {
            problem = u"a file does not load: "_s + e.userText();
        }
        const qsizetype state = states.indexOf(now);
        if (!WIFSIGNALED(status))
            problem = u"the child ended by itself"_s;
        else if (entryNames() != files)
            problem = u"left in the folder: "_s + entryNames().join(u' ');
        else if (dir.readBytes(MailBoxFileName) != accounts)
            problem = u"the accounts changed"_s;
        else if (problem.isEmpty() && state < 0)
            problem = u"no state before or after a step; folders 0 to 5 hold "_s + describe(now);
        if (problem.isEmpty()) {
            ++landedIn[state];
            continue;
        }
        ++failures;
        qWarning("trial %d: %s", trial, qPrintable(problem));
        // Start the next trial from whole files again.
        for (const QString &name : entryNames()) {
            if (!files.contains(name))
                QFile::remove(dir.filePath(name));
        }
        dir.writeBytes(MailBoxFileName, accounts);
        refill(start);
    }
    std::printf("kill trials: %d in %.1f s, one loop turn %.1f ms; killed past a journal "
                "(completed at start-up) %d, while writing new files (dropped) %d; found "
                "before sending %d, sent %d, received %d; failures %d\n",
                trials, double(clock.elapsed()) / 1000, double(cycleNs) / 1e6, afterJournal,
                whileWriting, landedIn[0], landedIn[1], landedIn[2], failures);
    QCOMPARE(failures, 0);
}

QTEST_GUILESS_MAIN(tst_killrecovery)
#include "tst_killrecovery.moc"
