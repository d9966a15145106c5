#include "folderlock.h"

#include "appdir.h"
#include "commit.h"
#include "texts.h"

#include <QCryptographicHash>
#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QList>
#include <QLockFile>
#include <QSysInfo>
#include <QThread>

#include <algorithm>
#include <cerrno>
#include <fcntl.h>
#include <signal.h>
#include <sys/stat.h>
#include <unistd.h>

using namespace Qt::Literals::StringLiterals;

const char LockFileName[] = "quillpost.lock";

namespace {

QString &machineName()
{
    static QString name;
    return name;
}

// The identity of the file at a path. Opened rather than looked up: on a
// share an open asks the server, where a look-up may answer from a cache.
bool fileIdentity(const QString &path, quint64 *device, quint64 *inode)
{
    const int fd = ::open(QFile::encodeName(path).constData(), O_RDONLY | O_CLOEXEC);
    if (fd < 0)
        return false;
    struct stat st;
    const bool ok = ::fstat(fd, &st) == 0;
    ::close(fd);
    if (ok) {
        *device = st.st_dev;
        *inode = st.st_ino;
    }
    return ok;
}

bool runsHere(qint64 pid)
{
    return pid > 0 && (::kill(pid_t(pid), 0) == 0 || errno == EPERM);
}

// A copy killed between making its lock file and writing it leaves it
// empty, and QLockFile can tell neither its process nor its age from it.
// Once its maker cannot still be about to write it, it is removed, under the
// guard QLockFile removes stale locks with, and only if it is still the same
// empty file: two starts that found it cannot both remove it, the second
// then removing the first one's new lock.
bool removeUnfinishedLock(const QString &path)
{
    constexpr qint64 MakingMs = 2000;
    const QByteArray name = QFile::encodeName(path);
    struct stat seen, now;
    if (::stat(name.constData(), &seen) != 0 || !S_ISREG(seen.st_mode) || seen.st_size != 0)
        return false;
    const qint64 made = qint64(seen.st_mtim.tv_sec) * 1000 + seen.st_mtim.tv_nsec / 1000000;
    const qint64 age = QDateTime::currentMSecsSinceEpoch() - made;
    if (age < MakingMs)
        QThread::msleep(std::min(MakingMs, MakingMs - age));
    QLockFile guard(path + u".rmlock"_s);
    return guard.tryLock(0) && ::stat(name.constData(), &now) == 0 && now.st_dev == seen.st_dev
        && now.st_ino == seen.st_ino && now.st_size == 0 && QFile::remove(path);
}

// Unlocking removes the lock file by its name, which after a takeover is
// the new holder's file: a lock this copy lost is kept, never unlocked.
void abandon(std::unique_ptr<QLockFile> &lock)
{
    static QList<QLockFile *> *const kept = new QList<QLockFile *>;
    kept->append(lock.release());
}

}  // namespace

DataFolderLock::DataFolderLock(const QString &dir)
    : m_dir(dir), m_path(QDir(dir).filePath(QLatin1StringView(LockFileName))),
      m_lock(std::make_unique<QLockFile>(m_path))
{
    // Only a holder gone from this machine is stale by itself; another
    // machine's lock is for the user to judge, however old.
    m_lock->setStaleLockTime(0);
    m_renewal.setInterval(RefreshPeriod);
    connect(&m_renewal, &QTimer::timeout, this, &DataFolderLock::renew);
}

DataFolderLock::~DataFolderLock()
{
    if (m_held) {
        SetWriteCheck({});
        stillOurs();
    }
}

DataFolderLock::State DataFolderLock::tryHold()
{
    if (m_held)
        return State::Held;
    // A holder that quits between the try and the look at its lock, or an
    // empty lock removed, leaves the folder free: one more try takes it.
    for (int attempt = 0; attempt < 3; ++attempt) {
        if (m_lock->tryLock(0)) {
            hold();
            return State::Held;
        }
        if (m_lock->error() != QLockFile::LockFailedError)
            return State::Unavailable;
        QString program;
        if (m_lock->getLockInfo(&m_holderPid, &m_holderMachine, &program)) {
            m_holderRenewed = QFileInfo(m_path).lastModified();
            // A lock of this machine's name whose process does not run here
            // comes from another machine of the same name.
            if (m_holderMachine == MachineName() && runsHere(m_holderPid))
                return State::HeldHere;
            return minutesUnrenewed() >= StalePeriod.count() ? State::StaleElsewhere
                                                              : State::HeldElsewhere;
        }
        if (QFileInfo::exists(m_path) && !removeUnfinishedLock(m_path))
            break;
    }
    return State::Unavailable;
}

DataFolderLock::State DataFolderLock::takeOver()
{
    const qint64 pid = m_holderPid;
    const QString machine = m_holderMachine;
    const State found = tryHold();
    if (found != State::StaleElsewhere || m_holderPid != pid || m_holderMachine != machine)
        return found;
    // The file server may keep a dead machine's lock on the file long after
    // (an NFS lock outlives its client); the user's yes is what counts.
    if (!m_lock->removeStaleLockFile())
        QFile::remove(m_path);
    return tryHold();
}

qint64 DataFolderLock::minutesUnrenewed() const
{
    // A time ahead of this machine's clock is as old as it is ahead: the
    // clocks disagree, and it is no sign of a renewal.
    return qAbs(m_holderRenewed.secsTo(QDateTime::currentDateTime())) / 60;
}

void DataFolderLock::hold()
{
    m_held = true;
    fileIdentity(m_path, &m_device, &m_inode);
    SetWriteCheck([this] { return stillOurs(); });
    m_renewal.start();
}

QString DataFolderLock::stillOurs()
{
    quint64 device = 0, inode = 0;
    if (m_lost || (fileIdentity(m_path, &device, &inode) && device == m_device && inode == m_inode))
        return QString();
    m_lost = true;
    m_renewal.stop();
    abandon(m_lock);
    qint64 pid = 0;
    QString machine, program;
    QLockFile(m_path).getLockInfo(&pid, &machine, &program);
    return texts::lock::TakenOver.arg(QDir::toNativeSeparators(m_dir), machine);
}

void DataFolderLock::renew()
{
    // Asking whether the folder may still be written notices a takeover,
    // whether a save noticed it first or not.
    if (DataReadOnly()) {
        m_renewal.stop();
        if (m_lost)
            emit lost(DataReadOnlyText());
        return;
    }
    ::utimensat(AT_FDCWD, QFile::encodeName(m_path).constData(), nullptr, 0);
}

DataFolderLock::State OpenDataFolder(DataFolderLock &lock, bool takeOverStale)
{
    const DataFolderLock::State state = takeOverStale ? lock.takeOver() : lock.tryHold();
    if (state == DataFolderLock::State::Held)
        RecoverDataFolder();
    return state;
}

QString MachineName()
{
    return machineName().isEmpty() ? QSysInfo::machineHostName() : machineName();
}

void SetMachineName(const QString &name)
{
    machineName() = name;
}

QString LocalServerName(const QString &dir)
{
    QString path = QFileInfo(dir).canonicalFilePath();
    if (path.isEmpty())
        path = QDir::cleanPath(QDir(dir).absolutePath());
    const QByteArray hash = QCryptographicHash::hash(path.toUtf8(), QCryptographicHash::Sha256);
    return u"quillpost-%1-%2"_s.arg(::getuid()).arg(QString::fromLatin1(hash.toHex().left(24)));
}
