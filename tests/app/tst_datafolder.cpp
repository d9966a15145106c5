// One copy per data folder, as starts meet it: the program started beside a
// test that holds the folder, a killed copy's empty lock, another machine's
// lock (this copy plays a second machine), a takeover while running.

#include "app/onecopy.h"
#include "store/appdir.h"
#include "store/errors.h"
#include "store/folderlock.h"
#include "windows.h"

#include <QLocalServer>
#include <QLockFile>
#include <QProcess>

using namespace Qt::Literals::StringLiterals;
using namespace testsupport;
namespace t = texts::lock;

class tst_datafolder : public WindowTest
{
    Q_OBJECT

    std::unique_ptr<DataFolderLock> lock;
    std::unique_ptr<FrontDoor> door;

    QString lockPath() const { return dir->filePath(QString::fromLatin1(LockFileName)); }
    QString folder() const { return QDir::toNativeSeparators(dir->path()); }
    qint64 holder() const
    {
        qint64 pid = 0;
        QString machine, program;
        return QLockFile(lockPath()).getLockInfo(&pid, &machine, &program), pid;
    }
    // The folder's last change, and every entry: name, last change, bytes.
    QStringList snapshot() const
    {
        QStringList all{QString::number(QFileInfo(dir->path()).lastModified().toMSecsSinceEpoch())};
        for (const QFileInfo &f : QDir(dir->path()).entryInfoList(QDir::AllEntries | QDir::Hidden | QDir::NoDotAndDotDot))
            all << f.fileName() + QString::number(f.lastModified().toMSecsSinceEpoch()) + QString::fromLatin1(dir->readBytes(f.fileName()).toBase64());
        return all;
    }
    bool start()
    {
        lock = std::make_unique<DataFolderLock>(dir->path());
        door = std::make_unique<FrontDoor>(LocalServerName(dir->path()));
        return OpenDataFolderOrHandOver(*lock, *door);
    }

private slots:
    void cleanup()
    {
        lock.reset(), door.reset();
        SetMachineName({});
        SetDataReadOnly(false);
        end();
    }

    // Started on a folder this test holds, with a change being written, the
    // program brings this window to the front and ends, every file as it was.
    void secondStart()
    {
        QVERIFY(start());
        dir->writeBytes(u"send_c.dat.new"_s, "being written");
        frmMain *w = mainOn();
        w->showMinimized();
        const QStringList before = snapshot();
        QProcess second;
        second.start(QStringLiteral(BUILT_EXE), {u"--data-dir"_s, dir->path()});
        QTRY_VERIFY_WITH_TIMEOUT(second.state() == QProcess::NotRunning, 30000);
        QVERIFY(second.exitStatus() == QProcess::NormalExit && second.exitCode() == 0);
        QTRY_VERIFY(w->isActiveWindow() && !w->isMinimized());
        QCOMPARE(snapshot(), before);
    }

    // A copy killed while it made its lock leaves it empty; the next start
    // takes the folder all the same.
    void emptyLockOfAKilledCopy()
    {
        QFile made(lockPath());
        QVERIFY(made.open(QIODevice::WriteOnly)
                && made.setFileTime(QDateTime::currentDateTime().addSecs(-60), QFileDevice::FileModificationTime));
        QVERIFY(start() && holder() == QCoreApplication::applicationPid());
    }

    // A copy on this machine holds the folder but does not answer: the start
    // ends with a box naming its process.
    void copyHereDoesNotAnswer()
    {
        QLockFile other(lockPath());
        QLocalServer hung;
        QVERIFY(other.tryLock(0) && hung.listen(LocalServerName(dir->path())));
        boxes->expectMessage(Icon::Exclamation, texts::AppTitle,
                             t::HeldHereNoAnswer.arg(folder()).arg(QCoreApplication::applicationPid()));
        QVERIFY(!start());
    }

    // A lock of this machine's name whose process does not run here comes
    // from another machine of the same name.
    void sameNameElsewhere()
    {
        SetMachineName(u"pc-02"_s);
        dir->writeBytes(QString::fromLatin1(LockFileName), "2147483646\nquillpost\npc-02\n");
        boxes->expectMessage(Icon::Exclamation, texts::AppTitle, t::HeldElsewhere.arg(folder(), u"pc-02"_s));
        QVERIFY(!start());
    }

    void anotherMachinesLock_data()
    {
        QTest::addColumn<int>("minutesOld");  // since it was renewed; -1: a lock no one can read
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
        QLockFile other(lockPath());
        QFile file(lockPath());
        dir->writeBytes(u"send_c.dat.new"_s, "being written there");
        if (minutesOld < 0) {
            QVERIFY(QDir(dir->path()).mkdir(QString::fromLatin1(LockFileName)));
            boxes->expectMessage(Icon::Exclamation, texts::AppTitle, t::Unavailable.arg(folder()));
        } else {
            QVERIFY(other.tryLock(0) && file.open(QIODevice::ReadWrite)
                    && file.setFileTime(QDateTime::currentDateTime().addSecs(-60 * minutesOld), QFileDevice::FileModificationTime));
            if (minutesOld < 5)
                boxes->expectMessage(Icon::Exclamation, texts::AppTitle, t::HeldElsewhere.arg(folder(), machine));
            else
                boxes->expectConfirm(Icon::Warning, texts::AppTitle, t::AskTakeOver.arg(folder(), machine).arg(minutesOld), yes);
        }
        const QStringList before = snapshot();

        QCOMPARE(start(), yes || minutesOld < 0);
        QCOMPARE(std::pair(lock->isHeld(), DataReadOnly()), std::pair(yes, minutesOld < 0));
        QCOMPARE(snapshot() == before, !yes);
        QVERIFY(!yes || (holder() == QCoreApplication::applicationPid() && !dir->exists(u"send_c.dat.new"_s)));
    }

    // Another machine took the folder over while this copy ran: every save
    // changes nothing and names that machine, whose lock stays after this copy.
    void takenOverWhileRunning()
    {
        QVERIFY(start() && QFile::remove(lockPath()));
        QLockFile other(lockPath());
        QVERIFY(other.tryLock(0));
        for (int save = 0; save < 2; ++save)
            QVERIFY_THROWS_EXCEPTION(FileError, [] { FolderSet s; s.change(FolderFile::Inbox); s.commit(); }());
        QCOMPARE(DataReadOnlyText(), t::TakenOver.arg(folder(), QSysInfo::machineHostName()));
        lock.reset();
        QCOMPARE(dir->entries(), QStringList{QString::fromLatin1(LockFileName)});
    }
};

QTEST_MAIN(tst_datafolder)
#include "tst_datafolder.moc"
