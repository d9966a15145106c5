// A class of 30 machines sharing a class folder: each sends 10 messages to 5
// classmates, then one machine's run is timed (its own 10 sent, about 50
// taken in; the others' receiving runs are the same work and are left out). Timed over a fresh class folder and over one holding 10,000
// messages of history that every machine has already taken: a run reads
// only what is new, so the two should be alike. Timed synced, as the
// program runs, and without the syncs, which on a busy disk swamp the rest.

#include "benchutil.h"

#include "sendrecv/classroom.h"
#include "store/folderlock.h"
#include "sendrecv/classstate.h"
#include "store/appdir.h"
#include "store/commit.h"
#include "store/folders.h"
#include "store/mailstore.h"
#include "store/profile.h"

#include <QCoreApplication>
#include <QDir>
#include <QElapsedTimer>
#include <QFile>
#include <QTemporaryDir>

#include <memory>

using namespace Qt::Literals::StringLiterals;

namespace {

constexpr int Machines = 30;
constexpr int Rounds = 7;

QString address(int machine)
{
    return u"s%1@class.cn"_s.arg(machine, 2, 10, QChar(u'0'));
}

EmailRec message(int from, int k)
{
    EmailRec m;
    m.id = QString::number(10000000 + from * 1000 + k);
    m.from = address(from);
    QStringList to;
    for (int j = 1; j <= 5; ++j)
        to.append(address((from + j + k) % Machines));
    m.to = to.join(u';');
    m.subject = u"第 %1 课的作业 %2"_s.arg(from).arg(k);
    m.content = u"同学你好：\r\n这是练习用的邮件，请回复。\r\n"_s;
    m.datetime = u"24-01-01 08:00"_s;
    m.isnew = u"1"_s;
    return m;
}

struct Class
{
    QTemporaryDir share;
    std::unique_ptr<QTemporaryDir> data[Machines];

    void use(int i) const
    {
        classroom::SetClassDir(share.path());
        SetAppDir(data[i]->path());
        SetMachineName(u"pc%1"_s.arg(i, 2, 10, QChar(u'0')));
    }

    Class()
    {
        for (int i = 0; i < Machines; ++i) {
            data[i] = std::make_unique<QTemporaryDir>();
            use(i);
            FolderSet set;
            set.changeAccounts() = {{u"学生"_s, u"pop"_s, u"smtp"_s, u"s"_s, u"pw"_s, address(i)}};
            set.commit();
            classroom::ClassRun::runHere(0);
        }
    }

    // History that every machine has sent and taken already: its files in
    // the member folders, the numbers and cursors in each class.dat.
    void addHistory(int messages)
    {
        QMap<QString, qint64> counts;
        QList<classroom::ClassState> states;
        for (int i = 0; i < Machines; ++i) {
            use(i);
            states.append(classroom::ClassState::parse(
                ProfileFile::load(AppFilePath(classroom::StateFileName)).bytes()));
            const int n = messages / Machines + (i < messages % Machines ? 1 : 0);
            classroom::ClassState &s = states.last();
            for (int k = 0; k < n; ++k) {
                QFile f(share.path() + u'/' + s.member + u'/' + classroom::MessageFileName(s.first + k));
                if (!f.open(QIODevice::WriteOnly) || !f.write(classroom::MessageFileBytes(message(i, k))))
                    qFatal("cannot write the history");
            }
            s.first += n;
            counts[s.member] = s.first;
        }
        for (int i = 0; i < Machines; ++i) {
            for (const auto &[member, next] : counts.asKeyValueRange())
                states[i].cursor(member, address(i)).next = next;
            QFile f(data[i]->filePath(classroom::StateFileName));
            if (!f.open(QIODevice::WriteOnly) || !f.write(states[i].bytes()))
                qFatal("cannot write class.dat");
        }
        store::Forget();
    }

    // Every machine writes 10 messages; all but the first send them; the
    // first's run, which sends and takes in, is timed.
    double round() const
    {
        for (int i = 0; i < Machines; ++i) {
            use(i);
            FolderSet set;
            MailList &outbox = set.change(FolderFile::Outbox);
            for (int k = 0; k < 10; ++k)
                AppendMail(outbox, message(i, k));
            if (i == 0)
                set.change(FolderFile::Inbox).clear();
            set.commit();
            if (i > 0)
                classroom::ClassRun::runHere(SendReceiveModes::SendOnly);
        }
        use(0);
        QElapsedTimer t;
        t.start();
        const RunResult r = classroom::ClassRun::runHere(SendReceiveModes::SendAndReceive);
        const double ms = double(t.nsecsElapsed()) / 1e6;
        if (r.send.sent != 10 || r.receive.received < 40)
            qFatal("the run did not send and receive the round's mail");
        return ms;
    }
};

double median(QList<double> times)
{
    std::sort(times.begin(), times.end());
    return times.at(times.size() / 2);
}

}  // namespace

int main(int argc, char **argv)
{
    QCoreApplication app(argc, argv);
    double times[2][2];  // synced or not, fresh or with history
    for (int synced = 1; synced >= 0; --synced) {
        SetSyncing(synced);
        // Rounds of the two classes alternate, so that a disk busy for a
        // while weighs on both alike.
        Class fresh, old;
        old.addHistory(10000);
        QList<double> rounds[2];
        for (int i = 0; i < Rounds; ++i) {
            rounds[0].append(fresh.round());
            rounds[1].append(old.round());
        }
        times[synced][0] = median(rounds[0]);
        times[synced][1] = median(rounds[1]);
    }
    bench::printRow("class run: 10 sent, ~50 taken, 30 machines", times[1][0]);
    bench::printRow("  the same over 10,000 messages of history", times[1][1], times[1][0]);
    bench::printRow("  the two without syncing: a fresh class", times[0][0]);
    bench::printRow("  and over 10,000 messages of history", times[0][1], times[0][0]);
    return 0;
}
