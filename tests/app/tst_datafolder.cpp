// One copy per data folder, as starts meet it: a second start on a held
// folder, a holder killed, another machine's lock, a takeover while running.
// The test holds folders as the program does, and starts the program beside.

#include "app/onecopy.h"
#include "store/appdir.h"
#include "store/errors.h"
#include "store/folderlock.h"
#include "windows.h"

#include <QLockFile>
#include <QProcess>

using namespace Qt::Literals::StringLiterals;
using namespace testsupport;
namespace t = texts::lock;

namespace {
// Every entry of the folder: name, time of the last change, bytes.
QStringList snapshot(const DataDir &dir)
{
    QStringList all;
    for (const QFileInfo &f : QDir(dir.path()).entryInfoList(QDir::AllEntries | QDir::Hidden | QDir::NoDotAndDotDot))
        all << f.fileName() + u' ' + QString::number(f.lastModified().toMSecsSinceEpoch()) + u' '
                + QString::fromLatin1(dir.readBytes(f.fileName()).toBase64());
    return all;
}

QString lockPath(const DataDir &dir) { return dir.filePath(QString::fromLatin1(LockFileName)); }
QString folder(const DataDir &dir) { return QDir::toNativeSeparators(dir.path()); }

qint64 holderPid(const DataDir &dir)
{
    qint64 pid = 0;
    QString machine, program;
    QLockFile(lockPath(dir)).getLockInfo(&pid, &machine, &program);
    return pid;
}
}  // namespace

class tst_datafolder : public WindowTest
{
    Q_OBJECT

private slots:
    void cleanup()
    {
        SetMachineName({});
        SetDataReadOnly(false);
        end();
    }

    // The program started a second time on a folder this test holds, with
    // a change being written: it brings this copy's window to the front,
    // ends, and leaves every file as it was.
    void secondStartHandsOver()
    {
        DataFolderLock lock(dir->path());
        FrontDoor door(LocalServerName(dir->path()));
        QVERIFY(OpenDataFolderOrHandOver(lock, door));
        put(*dir, FolderFile::Inbox, mails(2));
        dir->writeBytes(u"send_c.dat.new"_s, "being written");
        frmMain *w = mainOn();
        forms::About()->show();
        forms::About()->activateWindow();
        QVERIFY(QTest::qWaitForWindowActive(forms::About()));
        const QStringList before = snapshot(*dir);

        QProcess second;
        second.start(QStringLiteral(BUILT_EXE), {u"--data-dir"_s, dir->path()});
        QTRY_VERIFY_WITH_TIMEOUT(second.state() == QProcess::NotRunning, 30000);
        QVERIFY(second.exitStatus() == QProcess::NormalExit && second.exitCode() == 0);
        QTRY_VERIFY(w->isActiveWindow());
        QCOMPARE(snapshot(*dir), before);
    }

    // A copy killed while it held the folder blocks nothing: the next start
    // holds it at once, and completes what the kill left.
    void killedHolderBlocksNothing()
    {
        QProcess first;
        first.start(QStringLiteral(BUILT_EXE), {u"--data-dir"_s, dir->path()});
        QTRY_VERIFY_WITH_TIMEOUT(holderPid(*dir) == first.processId(), 30000);
        first.kill();
        QVERIFY(first.waitForFinished());
        dir->writeBytes(u"send_c.dat.new"_s, "cut short by the kill");

        DataFolderLock lock(dir->path());
        FrontDoor door(LocalServerName(dir->path()));
        QElapsedTimer took;
        took.start();
        QVERIFY(OpenDataFolderOrHandOver(lock, door));
        QVERIFY2(took.elapsed() < 1000, qPrintable(QString::number(took.elapsed())));
        QVERIFY(lock.isHeld() && !dir->exists(u"send_c.dat.new"_s) && holderPid(*dir) == QCoreApplication::applicationPid());
    }

    // This copy plays a second machine; the lock the test makes names the
    // real one, renewed the given minutes ago.
    void anotherMachinesLock_data()
    {
        QTest::addColumn<int>("minutesOld");  // -1: a lock no one can read
        QTest::addColumn<bool>("yes");  // to taking it over
        QTest::newRow("renewed four minutes ago: a box names the machine") << 4 << false;
        QTest::newRow("unrenewed for five: the question, No keeps it") << 5 << false;
        QTest::newRow("unrenewed for an hour, Yes: taken over and completed") << 60 << true;
        QTest::newRow("a lock no one can read: read-only, said so") << -1 << false;
    }
    void anotherMachinesLock()
    {
        QFETCH(int, minutesOld);
        QFETCH(bool, yes);
        SetMachineName(u"pc-02"_s);
        const QString machine = QSysInfo::machineHostName();
        QLockFile other(lockPath(*dir));
        if (minutesOld >= 0) {
            QVERIFY(other.tryLock(0));
            QFile file(lockPath(*dir));
            QVERIFY(file.open(QIODevice::ReadWrite)
                    && file.setFileTime(QDateTime::currentDateTime().addSecs(-60 * minutesOld),
                                        QFileDevice::FileModificationTime));
        } else {
            QVERIFY(QDir(dir->path()).mkdir(QString::fromLatin1(LockFileName)));
        }
        dir->writeBytes(u"send_c.dat.new"_s, "being written there");
        if (minutesOld < 0)
            boxes->expectMessage(Icon::Exclamation, texts::AppTitle, t::Unavailable.arg(folder(*dir)));
        else if (minutesOld < 5)
            boxes->expectMessage(Icon::Exclamation, texts::AppTitle, t::HeldElsewhere.arg(folder(*dir), machine));
        else
            boxes->expectConfirm(Icon::Warning, texts::AppTitle,
                                 t::AskTakeOver.arg(folder(*dir), machine).arg(minutesOld), yes);
        const QStringList before = snapshot(*dir);

        DataFolderLock lock(dir->path());
        FrontDoor door(LocalServerName(dir->path()));
        QCOMPARE(OpenDataFolderOrHandOver(lock, door), yes || minutesOld < 0);
        QCOMPARE(lock.isHeld(), yes);
        QCOMPARE(DataReadOnly(), minutesOld < 0);
        if (yes)
            QVERIFY(!dir->exists(u"send_c.dat.new"_s) && holderPid(*dir) == QCoreApplication::applicationPid());
        else
            QCOMPARE(snapshot(*dir), before);
        QVERIFY(!boxes->defaults().contains(Prompter::Default::Yes));
    }

    // Another machine took the folder over while this copy ran: a save
    // changes nothing and says which machine holds it, as do all later ones,
    // and the other machine's lock stays when this copy ends.
    void takenOverWhileRunning()
    {
        QLockFile other(lockPath(*dir));
        {
            DataFolderLock lock(dir->path());
            QCOMPARE(OpenDataFolder(lock), DataFolderLock::State::Held);
            QFile::remove(lockPath(*dir));
            QVERIFY(other.tryLock(0));
            const QString why = t::TakenOver.arg(folder(*dir), QSysInfo::machineHostName());
            for (int save = 0; save < 2; ++save) {
                try {
                    SaveEmails(FolderFile::Inbox, EmailArray(), 1);
                    QFAIL("saved into a folder taken over");
                } catch (const FileError &error) {
                    QCOMPARE(error.userText(), why);
                }
            }
            QVERIFY(DataReadOnly() && !dir->exists(FolderFile::fileName(FolderFile::Inbox)));
        }
        QCOMPARE(holderPid(*dir), QCoreApplication::applicationPid());
    }
};

QTEST_MAIN(tst_datafolder)
#include "tst_datafolder.moc"
