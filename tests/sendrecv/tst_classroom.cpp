// A class mailing itself through a class folder: several data folders, each
// its own machine, run one after another in this process.

#include "sendrecv/classroom.h"
#include "sendrecv/classstate.h"
#include "store/appdir.h"
#include "store/clock.h"
#include "store/folderlock.h"
#include "store/mailstore.h"
#include "testsupport.h"
#include "texts.h"

#include <QSettings>
#include <QTest>

using namespace Qt::Literals::StringLiterals;
using namespace testsupport;

namespace {

struct Send { int machine; QString to; };
using Sends = QList<Send>;
using PerMachine = QList<QStringList>;

// A data folder of its own on a machine of its own name.
struct Machine
{
    DataDir data;
    QString name;

    void use() const { SetAppDir(data.path()), SetMachineName(name); }
    void accounts(const QStringList &addresses) const { putAccounts(data, addresses); }
    // A message from the first account into the Outbox.
    void compose(const QString &to, const QString &subject) const
    {
        use();
        put(data, FolderFile::Outbox, stored(FolderFile::Outbox) << mail(u"1"_s, store::Accounts().value(0).address, to, subject, true));
    }
    // What the run would tell the user.
    QStringList run(qint16 mode = SendReceiveModes::SendAndReceive) const
    {
        use();
        QStringList notices;
        const QString error = classroom::ClassRun::runHere(mode, &notices).errorText;
        return error.isEmpty() ? notices : notices << error;
    }
    QStringList inbox() const
    {
        use();
        QStringList subjects = fieldOf(store::Folder(FolderFile::Inbox), &EmailRec::subject);
        return subjects.sort(), subjects;
    }
};

// A message to b@c.cn as a class folder file.
QByteArray classFile(const QString &subject)
{
    return classroom::MessageFileBytes(mail(u"1"_s, u"x@c.cn"_s, u"b@c.cn"_s, subject));
}

}  // namespace

Q_DECLARE_METATYPE(Sends)

class tst_classroom : public QObject
{
    Q_OBJECT

    QTemporaryDir share;
    std::unique_ptr<Machine> machines[3];
    QString classDir() const { return share.filePath(u"class"_s); }

private slots:
    void initTestCase() { SetClock([] { return QDateTime({2024, 2, 3}, {4, 5}); }); }

    void init()
    {
        QVERIFY(QDir(share.path()).mkpath(u"class"_s));
        classroom::SetClassDir(classDir());
        for (int i = 0; i < 3; ++i) {
            machines[i] = std::make_unique<Machine>();
            machines[i]->name = u"PC-%1"_s.arg(i + 1);
        }
    }

    void cleanup()
    {
        QDir(share.path()).removeRecursively();
        QDir().mkpath(share.path());
        classroom::SetClassDir(QString());
    }

    // Message k has the subject "mk"; late is a machine that starts only in the
    // second round, added an account machine 3 sets up then.
    void delivery_data()
    {
        QTest::addColumn<PerMachine>("accounts");
        QTest::addColumn<Sends>("sends");
        QTest::addColumn<PerMachine>("inboxes");
        QTest::addColumn<int>("late");
        QTest::addColumn<QString>("added");
        const auto row = [](const char *name, const PerMachine &accounts, const Sends &sends,
                            const PerMachine &inboxes, int late = -1, const QString &added = {}) {
            QTest::newRow(name) << accounts << sends << inboxes << late << added;
        };
        const QString a = u"a@c.cn"_s, b = u"b@c.cn"_s, y = u"y@c.cn"_s, z = u"z@c.cn"_s, m0 = u"m0"_s, m1 = u"m1"_s;
        const PerMachine one{{a}, {b}, {z}};
        row("to a classmate on another machine", one, {{0, b}}, {{}, {m0}, {}});
        row("each way, and a copy to oneself once", one, {{0, b + u';' + a}, {1, a}}, {{m0, m1}, {m0}, {}});
        row("the same address on two machines reaches both", {{a}, {z}, {z}}, {{0, z}}, {{}, {m0}, {m0}});
        row("two accounts on one machine, a copy each", {{a}, {b, y}, {}}, {{0, y + u',' + b}}, {{}, {m0, m0}, {}});
        row("two accounts of one address on one machine, a copy each", {{a}, {b, b}, {}}, {{0, b}}, {{}, {m0, m0}, {}});
        row("between two accounts of the sending machine", {{a, y}, {}, {}}, {{0, y}}, {{m0}, {}, {}});
        row("an address inside a longer one matches", one, {{0, u"xb@c.cnx"_s}}, {{}, {m0}, {}});
        row("mail to nobody waits for an account set up later", one, {{0, u"new@c.cn"_s}, {1, u"new@c.cn"_s}},
            {{}, {}, {m0, m1}}, -1, u"new@c.cn"_s);
        row("a machine that was off gets its mail when it runs", one, {{0, z}, {1, z + u';' + a}}, {{m1}, {}, {m0, m1}}, 2);
    }

    // Everyone sends, then everyone runs twice (the second run takes what
    // others sent after one's first); then the late changes and two more
    // rounds. Each account has each message meant for it exactly once.
    void delivery()
    {
        QFETCH(PerMachine, accounts);
        QFETCH(Sends, sends);
        QFETCH(int, late);
        QFETCH(QString, added);
        for (int i = 0; i < 3; ++i)
            machines[i]->accounts(accounts[i]);
        for (int k = 0; k < sends.size(); ++k)
            machines[sends[k].machine]->compose(sends[k].to, u"m%1"_s.arg(k));
        for (int round = 0; round < 4; ++round) {
            if (round == 2 && !added.isEmpty())
                machines[2]->accounts(accounts[2] + QStringList{added});
            for (int i = 0; i < 3; ++i) {
                if (round >= 2 || i != late)
                    QCOMPARE(machines[i]->run(), QStringList());
            }
        }
        PerMachine inboxes;
        for (const auto &m : machines)
            inboxes.append(m->inbox());
        QTEST(inboxes, "inboxes");
        // Each message once in the class folder, its sender's Sent Items and nowhere else.
        int files = 0;
        for (const QString &member : QDir(classDir()).entryList(QDir::Dirs | QDir::NoDotAndDotDot))
            files += QDir(classDir() + u'/' + member).entryList({u"0*.dat"_s}, QDir::Files).size();
        QCOMPARE(files, sends.size());
        for (int i = 0; i < 3; ++i) {
            machines[i]->use();
            QVERIFY(stored(FolderFile::Outbox).isEmpty() && stored(FolderFile::ServerQueue).isEmpty());
        }
    }

    // Receiving alone leaves the Outbox as it is; sending alone takes
    // nothing in.
    void oneWayRuns()
    {
        machines[0]->accounts({u"a@c.cn"_s}), machines[1]->accounts({u"b@c.cn"_s});
        machines[0]->compose(u"b@c.cn"_s, u"m0"_s), machines[1]->compose(u"a@c.cn"_s, u"m1"_s);
        const auto state = [this] {
            QString s;
            for (int i : {0, 1})
                s += machines[i]->inbox().join(u',') + u'/' + QString::number((machines[i]->use(), stored(FolderFile::Outbox).size())) + u' ';
            return s;
        };
        QVERIFY(machines[0]->run(SendReceiveModes::ReceiveOnly).isEmpty());
        QCOMPARE(state(), u"/1 /1 "_s);
        QVERIFY(machines[1]->run(SendReceiveModes::SendOnly).isEmpty() && machines[0]->run(SendReceiveModes::SendOnly).isEmpty());
        QCOMPARE(state(), u"/0 /0 "_s);
        QVERIFY(machines[0]->run(SendReceiveModes::ReceiveOnly).isEmpty() && machines[1]->run(SendReceiveModes::ReceiveOnly).isEmpty());
        QCOMPARE(state(), u"m1/0 m0/0 "_s);
        // A message sent after the others last looked is taken the next time.
        machines[1]->compose(u"a@c.cn"_s, u"m2"_s);
        QVERIFY(machines[1]->run(SendReceiveModes::SendOnly).isEmpty() && machines[0]->run(SendReceiveModes::ReceiveOnly).isEmpty());
        QCOMPARE(state(), u"m1,m2/0 m0/0 "_s);
    }

    void shareAwayAndBack_data()
    {
        QTest::addColumn<bool>("fileInPlace");  // else the folder is missing, as when not mounted
        QTest::newRow("the share is not mounted") << false;
        QTest::newRow("a file stands where the class folder was") << true;
    }

    // Away, the local part goes on and the user hears of it once per outage;
    // back, the waiting mail goes out, once.
    void shareAwayAndBack()
    {
        QFETCH(bool, fileInPlace);
        const Machine &a = *machines[0], &b = *machines[1];
        a.accounts({u"a@c.cn"_s, u"y@c.cn"_s});
        b.accounts({u"b@c.cn"_s});
        QCOMPARE(a.run(), QStringList());
        const QString off = share.filePath(u"off"_s);
        const auto away = [&] {
            QFile f(classDir());
            QVERIFY(QDir().rename(classDir(), off) && (!fileInPlace || f.open(QIODevice::WriteOnly)));
        };
        const auto back = [&] { QVERIFY(QFile::remove(classDir()) || !fileInPlace); QVERIFY(QDir().rename(off, classDir())); };
        const QString told = texts::classroom::ShareAway.arg(
            classDir(), fileInPlace ? texts::classroom::NotAFolder : texts::classroom::FolderMissing);

        away();
        a.compose(u"b@c.cn;y@c.cn"_s, u"m0"_s);
        QCOMPARE(a.run(), QStringList{told});
        QCOMPARE(a.inbox(), QStringList{u"m0"_s});  // y, on the same machine
        a.compose(u"y@c.cn"_s, u"m1"_s);
        QCOMPARE(a.run(), QStringList());  // told once
        QCOMPARE(a.inbox(), (QStringList{u"m0"_s, u"m1"_s}));
        back();
        QCOMPARE(a.run(), QStringList());
        QCOMPARE(b.run(), QStringList());
        QCOMPARE(a.run(), QStringList());
        QCOMPARE(a.inbox(), (QStringList{u"m0"_s, u"m1"_s}));
        QCOMPARE(b.inbox(), QStringList{u"m0"_s});
        away();
        QCOMPARE(a.run(), QStringList{told});  // a new outage is told again
        back();

        // The trainer's overview, as the program prints it; a member that
        // never wrote its status shows by its folder's name, and another
        // folder of the trainer's is passed over.
        QVERIFY(QDir().mkpath(classDir() + u"/pc-9-00000001"_s) && QDir().mkpath(classDir() + u"/exercises"_s));
        const Run r = runProgram(QStringLiteral(BUILT_EXE), {u"--class-dir"_s, classDir(), u"--class-status"_s});
        QCOMPARE(r.exitCode, 0);
        // Columns two blanks apart, a Chinese character two places wide.
        QCOMPARE(r.out.split(u'\n'),
                 (QStringList{u"机器           账号    已发送  已接收  最近收发"_s,
                              u"PC-1           a@c.cn  2       0       2024-02-03 04:05"_s,
                              u"PC-1           y@c.cn  0       2       2024-02-03 04:05"_s,
                              u"PC-2           b@c.cn  0       1       2024-02-03 04:05"_s,
                              u"pc-9-00000001  -       0       0       从未收发"_s, QString()}));
    }

    void badFiles_data()
    {
        QTest::addColumn<QByteArray>("bytes");  // empty: a folder in the file's place
        QTest::addColumn<bool>("triedAgain");
        const QByteArray good = classFile(u"first"_s);
        QTest::newRow("a copy cut short is skipped") << good.left(good.size() - 3) << false;
        QTest::newRow("a NUL byte in it: skipped") << QByteArray(good).replace("first", QByteArray("fi\0st", 5)) << false;
        QTest::newRow("a file that cannot be read is tried again") << QByteArray() << true;
    }

    // A file that cannot be used keeps nothing after it from arriving, is
    // told once, and is taken when it can be read, if it could not be.
    void badFiles()
    {
        QFETCH(QByteArray, bytes);
        QFETCH(bool, triedAgain);
        const Machine &b = *machines[1];
        b.accounts({u"b@c.cn"_s});
        // Each row its own member: a file is told once while the program runs.
        static int row = 0;
        const QString member = classDir() + u"/pc-9-0000000%1/"_s.arg(++row);
        QVERIFY(QDir().mkpath(member));
        const auto put = [&](int n, const QByteArray &content) {
            const QString path = member + classroom::MessageFileName(n);
            QFile f(path);
            QVERIFY((f.remove() || QDir().rmdir(path) || true)
                    && (content.isEmpty() ? QDir().mkdir(path) : f.open(QIODevice::WriteOnly) && f.write(content)));
        };
        put(0, bytes);
        put(1, classFile(u"second"_s));

        const QString notice = b.run().join(u"\n---\n"_s);
        QVERIFY2(notice.startsWith(texts::classroom::BadFiles.arg(QString()))
                     && notice.endsWith(triedAgain ? u"下次收发时再试。"_s : u"已跳过。"_s) && !notice.contains(u"\n---\n"_s),
                 qPrintable(notice));
        QCOMPARE(b.inbox(), QStringList{u"second"_s});
        QCOMPARE(b.run(), QStringList());  // told once
        put(0, classFile(u"first"_s));
        QCOMPARE(b.run(), QStringList());
        QCOMPARE(b.run(), QStringList());
        QCOMPARE(b.inbox(), triedAgain ? (QStringList{u"first"_s, u"second"_s}) : QStringList{u"second"_s});
    }

    // This machine's own folder gone, a file in its place, after it sent
    // mail there: the class folder is taken for away, never written into.
    void ownFolderReplacedByAFile()
    {
        const Machine &a = *machines[0];
        a.accounts({u"a@c.cn"_s});
        a.compose(u"a@c.cn"_s, u"m0"_s);
        QCOMPARE(a.run(), QStringList());
        const QString own = classDir() + u'/' + QDir(classDir()).entryList(QDir::Dirs | QDir::NoDotAndDotDot).value(0);
        QFile file(own);
        QVERIFY(QDir(own).removeRecursively() && file.open(QIODevice::WriteOnly));
        a.compose(u"a@c.cn"_s, u"m1"_s);
        QCOMPARE(a.run(), QStringList{texts::classroom::ShareAway.arg(classDir(), texts::classroom::FolderMissing)});
        QVERIFY(QFileInfo(own).isFile());
    }

    // A copy of a data folder, handed out or opened elsewhere, writes into
    // a member folder of its own, named after its machine, and keeps what
    // was taken as taken.
    void copiedDataFolderTakesItsOwnMemberFolder()
    {
        const Machine &a = *machines[0];
        a.accounts({u"a@c.cn"_s});
        a.compose(u"a@c.cn"_s, u"m0"_s);
        QCOMPARE(a.run(), QStringList());
        const Machine &copy = *machines[1];
        store::Flush();  // the copy is of what the disk holds
        for (const QString &name : QDir(a.data.path()).entryList(QDir::Files))
            QVERIFY(QFile::copy(a.data.filePath(name), copy.data.filePath(name)));
        copy.compose(u"a@c.cn"_s, u"m1"_s);
        QCOMPARE(copy.run(), QStringList());
        QCOMPARE(a.run(), QStringList());
        QStringList members = QDir(classDir()).entryList(QDir::Dirs | QDir::NoDotAndDotDot);
        QCOMPARE(members.replaceInStrings(QRegularExpression(u"-[0-9a-f]{8}$"_s), QString()), (QStringList{u"pc-1"_s, u"pc-2"_s}));
        QCOMPARE(a.inbox() + copy.inbox(), (QStringList{u"m0"_s, u"m1"_s, u"m0"_s, u"m1"_s}));
    }

    // The administrator's file, as the README names it.
    void classFolderFromSettings()
    {
        QTemporaryDir etc;
        QSettings::setPath(QSettings::NativeFormat, QSettings::SystemScope, etc.path());
        QFile conf(etc.filePath(u"quillpost-express.conf"_s));
        QVERIFY(conf.open(QIODevice::WriteOnly) && conf.write("[classroom]\nfolder=/mnt/school/class\n") > 0);
        conf.close();
        QCOMPARE(classroom::ConfiguredClassDir(), u"/mnt/school/class"_s);
    }
};

QTEST_GUILESS_MAIN(tst_classroom)
#include "tst_classroom.moc"
