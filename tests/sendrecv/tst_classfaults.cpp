// Three machines share a class folder, each a child process that writes
// mail and runs send-and-receive over and over, killed at random instants.
// QUILLPOST_KILL_TRIALS sets the trials (200; make torture 2000, a mutation
// run fewer).

#include "sendrecv/classroom.h"
#include "sendrecv/recipients.h"
#include "store/appdir.h"
#include "store/clock.h"
#include "store/folderlock.h"
#include "store/mailstore.h"
#include "store/profile.h"
#include "testsupport.h"

#include <QDirIterator>
#include <QElapsedTimer>
#include <QRandomGenerator>
#include <QTest>

#include <csignal>
#include <sys/wait.h>
#include <thread>
#include <unistd.h>

using namespace Qt::Literals::StringLiterals;
using namespace testsupport;

namespace {

// The same address on two machines, mail to two accounts, to nobody.
const QList<QStringList> accounts{{u"a@c.cn"_s, u"z@c.cn"_s}, {u"b@c.cn"_s, u"z@c.cn"_s}, {u"c@c.cn"_s}};
const QStringList recipients{u"a@c.cn"_s, u"b@c.cn"_s,  u"c@c.cn"_s,      u"z@c.cn"_s,
                             u"a@c.cn;b@c.cn"_s, u"b@c.cn,c@c.cn"_s, u"nobody@c.cn"_s};
// Each machine writes at most this many messages, so that no Inbox fills.
constexpr int Budget = 25;

void use(const DataDir &data, int machine) { SetAppDir(data.path()), SetMachineName(u"PC-%1"_s.arg(machine + 1)); }

// The child's loop: now and then a message into the Outbox, then a run in
// any mode, then a short pause.
[[noreturn]] void machineLoop(const DataDir &data, int machine, int trial, double writeChance)
{
    use(data, machine);
    QRandomGenerator random{quint32(::getpid())};
    for (int counter = 0;; ++counter) {
        FolderSet set;
        if (random.generateDouble() < writeChance
            && set.read(FolderFile::Outbox).size() + set.read(FolderFile::SentItems).size() < Budget) {
            AppendMail(set.change(FolderFile::Outbox), mail(u"1"_s, accounts[machine].first(), recipients[random.bounded(int(recipients.size()))],
                                                            u"%1-%2-%3"_s.arg(machine).arg(trial).arg(counter), true));
            set.commit();
        }
        if (!classroom::ClassRun::runHere(qint16(random.bounded(3))).errorText.isEmpty())
            ::_exit(1);
        std::this_thread::sleep_for(std::chrono::microseconds(random.bounded(3000)));
    }
}

}  // namespace

class tst_classfaults : public QObject
{
    Q_OBJECT

private slots:
    void initTestCase() { SetClock([] { return QDateTime({2024, 2, 3}, {4, 5}); }); }

    void everyMessageOnceAfterKills()
    {
        QTemporaryDir share;
        DataDir data[3];
        classroom::SetClassDir(share.path());
        for (int i = 0; i < 3; ++i)
            putAccounts(data[i], accounts[i]);

        // A run's length on this disk now, so that kills fall anywhere in it
        // (bounded, for a disk that others keep busy).
        use(data[0], 0);
        classroom::ClassRun::runHere(0);
        QElapsedTimer cycle;
        cycle.start();
        classroom::ClassRun::runHere(0);
        const int cycleUs = qBound(1000, int(cycle.nsecsElapsed() / 1000), 10000);
        store::Flush();  // no write of this process left when the machines start

        const int trials = qEnvironmentVariableIsSet("QUILLPOST_KILL_TRIALS") ? qEnvironmentVariableIntValue("QUILLPOST_KILL_TRIALS") : 200;
        const double writeChance = 12.0 / trials;
        int journals = 0, parts = 0;  // what the kills cut short: a commit past its journal, a file half in the share
        for (int trial = 0; trial < trials; ++trial) {
            pid_t pids[3];
            for (int i = 0; i < 3; ++i) {
                pids[i] = ::fork();
                if (pids[i] == 0)
                    machineLoop(data[i], i, trial, writeChance);
            }
            // Each at its own instant, the three running at once until then.
            for (pid_t pid : pids) {
                std::this_thread::sleep_for(std::chrono::microseconds(QRandomGenerator::global()->bounded(2 * cycleUs)));
                ::kill(pid, SIGKILL);
            }
            for (int i = 0; i < 3; ++i) {
                int status = 0;
                ::waitpid(pids[i], &status, 0);
                QVERIFY2(WIFSIGNALED(status), "a machine's run failed");
                journals += QFile::exists(data[i].filePath(u"quillpost.journal"_s));
            }
            for (QDirIterator it(share.path(), {u"*.part"_s}, QDir::Files, QDirIterator::Subdirectories); it.hasNext(); it.next())
                ++parts;
        }

        // Every machine runs until nothing more moves: its waiting mail goes
        // out, then everyone takes what the others sent.
        for (int round = 0; round < 2; ++round) {
            for (int i = 0; i < 3; ++i) {
                use(data[i], i);
                QVERIFY(classroom::ClassRun::runHere(0).errorText.isEmpty());
            }
        }

        // Nothing waits; each message sent once, and in each Inbox once per
        // account of that machine it is meant for.
        QMap<QString, EmailRec> sent;
        for (int i = 0; i < 3; ++i) {
            use(data[i], i);
            QVERIFY(stored(FolderFile::Outbox).isEmpty());
            QVERIFY(!ProfileFile::load(AppFilePath(u"class.dat"_s)).bytes().contains("[email-1]"));
            for (const EmailRec &m : stored(FolderFile::SentItems))
                QVERIFY2(!sent.contains(m.subject) && sent.insert(m.subject, m) != sent.end(),
                         qPrintable(u"sent twice: "_s + m.subject));
        }
        for (int i = 0; i < 3; ++i) {
            use(data[i], i);
            QMap<QString, int> expected, found;
            for (const EmailRec &m : sent)
                for (const QString &a : accounts[i])
                    if (AddressMatches(RecipientText(m.to, m.alsoto), a))
                        ++expected[m.subject];
            for (const EmailRec &m : stored(FolderFile::Inbox))
                ++found[m.subject];
            QCOMPARE(found, expected);
        }
        // One file per message sent, nothing half written left behind.
        QStringList files;
        for (QDirIterator it(share.path(), QDir::Files, QDirIterator::Subdirectories); it.hasNext();)
            files.append(it.next());
        QCOMPARE(files.filter(u".part"_s), QStringList());
        QCOMPARE(files.filter(u"/0"_s).size(), sent.size());
        qInfo("kill trials %d; after a kill a journal stood %d times, a half-written file %d; %d messages sent, each once",
              trials, journals, parts, int(sent.size()));
    }
};

QTEST_GUILESS_MAIN(tst_classfaults)
#include "tst_classfaults.moc"
