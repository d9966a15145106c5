#include "commit.h"

#include "appdir.h"
#include "clock.h"
#include "errors.h"
#include "profile.h"
#include "records.h"
#include "texts.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QRegularExpression>

#include <atomic>
#include <cerrno>
#include <mutex>
#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

using namespace Qt::Literals::StringLiterals;

const char JournalName[] = "quillpost.journal";
const char NewFileSuffix[] = ".new";

namespace {

std::atomic<bool> syncing = true;
std::mutex faultLock;
FileFault fileFault;

constexpr char JournalHeader[] = "quillpost-journal 1";
constexpr char JournalEnd[] = "end";

QString filePath(const QString &dir, const QString &fileName)
{
    return QDir(dir).filePath(fileName);
}

QByteArray nativePath(const QString &dir, const QString &fileName)
{
    return QFile::encodeName(filePath(dir, fileName));
}

[[noreturn]] void fail(const QString &dir, const QString &fileName, int error, bool unchanged = true)
{
    throw FileError(texts::CannotWriteFile.arg(filePath(dir, fileName), FileFailureReason(error)),
                    unchanged);
}

// The system calls, each asked of the fault first. They return 0 or the
// errno of the failure.
int doRename(const QByteArray &from, const QByteArray &to)
{
    if (const int error = InjectedFault(FileOp::Rename, from))
        return error;
    return ::rename(from.constData(), to.constData()) == 0 ? 0 : errno;
}

int doRemove(const QByteArray &path)
{
    if (const int error = InjectedFault(FileOp::Remove, path))
        return error;
    return ::unlink(path.constData()) == 0 || errno == ENOENT ? 0 : errno;
}

// Writes bytes to path, every byte checked and synced to the disk. The
// file takes the permissions of the one it is to replace, when there is
// one. Returns 0 or the errno of the first failure, with the file removed.
int writeSynced(const QByteArray &path, const QByteArray &bytes, const QByteArray &replaces,
                int flags = O_TRUNC)
{
    int error = InjectedFault(FileOp::Open, path);
    const int fd =
        error != 0 ? -1 : ::open(path.constData(), O_WRONLY | O_CREAT | O_CLOEXEC | flags, 0666);
    if (fd < 0)
        return error != 0 ? error : errno;
    struct stat old;
    if (!replaces.isEmpty() && ::stat(replaces.constData(), &old) == 0 && S_ISREG(old.st_mode))
        ::fchmod(fd, old.st_mode & 07777);
    if (!bytes.isEmpty())
        error = InjectedFault(FileOp::Write, path);
    if (error == 0)
        error = WriteToEnd(fd, bytes);
    if (error == 0 && syncing) {
        error = InjectedFault(FileOp::Sync, path);
        if (error == 0 && ::fsync(fd) != 0)
            error = errno;
    }
    if (::close(fd) != 0 && error == 0)
        error = errno;
    if (error != 0)
        ::unlink(path.constData());
    return error;
}

// A rename or a removal is only on the disk once the folder holding it is
// synced.
int syncFolder(const QString &folder)
{
    if (!syncing)
        return 0;
    const QByteArray dir = QFile::encodeName(folder);
    if (const int error = InjectedFault(FileOp::SyncFolder, dir))
        return error;
    const int fd = ::open(dir.constData(), O_RDONLY | O_DIRECTORY | O_CLOEXEC);
    if (fd < 0)
        return errno;
    const int result = ::fsync(fd) == 0 ? 0 : errno;
    ::close(fd);
    return result;
}

bool isFolder(const QByteArray &path)
{
    struct stat st;
    return ::lstat(path.constData(), &st) == 0 && S_ISDIR(st.st_mode);
}

// A data file set read-only (no write permission for anyone) in a folder
// that can be written: the rename would replace it all the same, so it is
// refused first. Root may write any file, and so is never refused here; a
// file that is only someone else's is replaced, as it always was.
bool isReadOnlyFile(const QByteArray &path)
{
    struct stat st;
    return ::stat(path.constData(), &st) == 0 && S_ISREG(st.st_mode) && (st.st_mode & 0222) == 0
        && ::access(path.constData(), W_OK) != 0 && errno == EACCES;
}

// The names a journal lists, or nothing when it is not a whole journal.
// It is put in place by a rename, so it is either whole or absent; the
// check guards against a hand-made file of the same name.
QStringList journalNames(const QByteArray &content)
{
    const QList<QByteArray> lines = content.split('\n');
    if (lines.size() < 3 || lines.first() != JournalHeader || lines.last() != ""
        || lines.at(lines.size() - 2) != JournalEnd)
        return {};
    QStringList names;
    for (qsizetype i = 1; i < lines.size() - 2; ++i) {
        const QString name = QString::fromUtf8(lines.at(i));
        // Only the program's own files are ever renamed into place.
        if (name.contains(u'/') || name.isEmpty())
            return {};
        names.append(name);
    }
    return names;
}

enum class Renames { Live, Recovering };

// Moves every NAME.new of the names into place. Returns 0 or the first errno,
// with the name it failed on. A commit that runs wrote each of its files
// itself: one missing was removed behind its back, and the change fails.
// Only a recovery may find a file already moved before an interruption.
int renameAll(const QString &dir, const QStringList &names, Renames mode, QString *failedName)
{
    for (const QString &name : names) {
        const QByteArray from = nativePath(dir, name + QLatin1StringView(NewFileSuffix));
        if (mode == Renames::Recovering && ::access(from.constData(), F_OK) != 0)
            continue;
        if (const int error = doRename(from, nativePath(dir, name))) {
            *failedName = name;
            return error;
        }
    }
    return 0;
}

// The journal's content; throws FileError when a journal stands that cannot
// be opened or read, null bytes when there is none.
QByteArray readJournal(const QString &dir)
{
    const QString journalName = QLatin1StringView(JournalName);
    const QByteArray path = nativePath(dir, journalName);
    struct stat st;
    if (::lstat(path.constData(), &st) != 0 && errno == ENOENT)
        return QByteArray();
    const auto unreadable = [&](int error) {
        return FileError(texts::JournalUnreadable.arg(filePath(dir, journalName),
                                                      FileFailureReason(error)));
    };
    int error = InjectedFault(FileOp::Open, path);
    const int fd = error != 0 ? -1 : ::open(path.constData(), O_RDONLY | O_CLOEXEC);
    if (fd < 0)
        throw unreadable(error != 0 ? error : errno);
    QByteArray content(64 * 1024, Qt::Uninitialized);
    error = InjectedFault(FileOp::Read, path);
    ssize_t n = -1;
    while (error == 0 && (n = ::read(fd, content.data(), size_t(content.size()))) < 0) {
        if (errno != EINTR)
            error = errno;
    }
    ::close(fd);
    if (error != 0)
        throw unreadable(error);
    content.truncate(n);
    return content.isNull() ? QByteArray("") : content;
}

}  // namespace

void SetSyncing(bool on)
{
    syncing = on;
}

void SetFileFault(FileFault fault)
{
    const std::lock_guard<std::mutex> lock(faultLock);
    fileFault = std::move(fault);
}

int InjectedFault(FileOp op, const QByteArray &path)
{
    FileFault fault;
    {
        const std::lock_guard<std::mutex> lock(faultLock);
        fault = fileFault;
    }
    if (!fault)
        return 0;
    return fault(op, op == FileOp::SyncFolder ? QFile::decodeName(path)
                                                  : QFileInfo(QFile::decodeName(path)).fileName());
}

bool Syncing()
{
    return syncing;
}

QString FileFailureReason(int error)
{
    switch (error) {
    case ENOSPC:
    case EDQUOT:
        return texts::ReasonDiskFull;
    case EFBIG:
        return texts::ReasonTooLarge;
    case EACCES:
    case EPERM:
        return texts::ReasonNoPermission;
    case EROFS:
        return texts::ReasonReadOnly;
    case EISDIR:
        return texts::ReasonIsFolder;
    case EIO:
        return texts::ReasonIoError;
    case ENOENT:
        return texts::ReasonVanished;
    default:
        return texts::ReasonOther.arg(error);
    }
}

FileCommit::FileCommit(const QString &dir) : m_dir(dir) {}

void FileCommit::add(const QString &fileName, const QByteArray &bytes)
{
    for (File &f : m_files) {
        if (f.name == fileName) {
            f.bytes = bytes;
            return;
        }
    }
    m_files.append({fileName, bytes});
}

void CheckReplaceable(const QString &dir, const QString &fileName)
{
    const QByteArray path = nativePath(dir, fileName);
    if (isFolder(path))
        fail(dir, fileName, EISDIR);
    if (isReadOnlyFile(path))
        throw FileError(texts::CannotWriteFile.arg(filePath(dir, fileName), texts::ReasonFileReadOnly));
}

void FileCommit::run()
{
    if (m_files.isEmpty())
        return;
    // A journal still standing belongs to a commit that could not finish;
    // it is completed first so that this one builds on its files.
    if (QFileInfo::exists(filePath(m_dir, QLatin1StringView(JournalName))))
        RecoverDataFolder(m_dir);

    // Nothing is written when one of the files could not be replaced.
    for (const File &f : m_files)
        CheckReplaceable(m_dir, f.name);
    QStringList written;
    const auto removeWritten = [&written, this] {
        for (const QString &name : written)
            ::unlink(nativePath(m_dir, name + QLatin1StringView(NewFileSuffix)).constData());
    };
    for (const File &f : m_files) {
        const int error = writeSynced(nativePath(m_dir, f.name + QLatin1StringView(NewFileSuffix)),
                                      f.bytes, nativePath(m_dir, f.name));
        if (error != 0) {
            removeWritten();
            fail(m_dir, f.name, error);
        }
        written.append(f.name);
    }

    // One file needs no journal: its rename alone is the unit.
    const QString journalName = QLatin1StringView(JournalName);
    if (m_files.size() > 1) {
        QByteArray journal = QByteArray(JournalHeader) + '\n';
        for (const File &f : m_files)
            journal += f.name.toUtf8() + '\n';
        journal += QByteArray(JournalEnd) + '\n';
        const QByteArray pending = nativePath(m_dir, journalName + QLatin1StringView(NewFileSuffix));
        int error = writeSynced(pending, journal, QByteArray());
        if (error == 0)
            error = doRename(pending, nativePath(m_dir, journalName));
        if (error == 0)
            error = syncFolder(m_dir);
        if (error != 0) {
            // Before the journal stands nothing has changed; should the
            // journal after all have reached the disk, the start-up will
            // find no new files to move and simply remove it.
            ::unlink(pending.constData());
            ::unlink(nativePath(m_dir, journalName).constData());
            removeWritten();
            fail(m_dir, m_files.first().name, error);
        }
    }

    QString failedName;
    const int error = renameAll(m_dir, written, Renames::Live, &failedName);
    if (error != 0) {
        if (m_files.size() == 1) {
            removeWritten();
            fail(m_dir, failedName, error);
        }
        // Past the journal the change stands; the next start-up or commit
        // completes it.
        throw FileError(texts::CannotWriteFile.arg(filePath(m_dir, failedName),
                                                   FileFailureReason(error))
                            + u"\r\r"_s + texts::CommitUnfinished,
                        false);
    }
    // The change is made. The journal goes only once the renames are on the
    // disk, and its removal is synced in turn: a journal come back after a
    // power cut would rename whatever a later commit had half written under
    // its names. Should either fail, the journal still standing is finished
    // (there is nothing left to move) before anything else is read.
    if (syncFolder(m_dir) == 0 && m_files.size() > 1
        && doRemove(nativePath(m_dir, journalName)) == 0)
        syncFolder(m_dir);
}

void RecoverDataFolder()
{
    RecoverDataFolder(AppDir());
}

void RecoverDataFolder(const QString &dir)
{
    const QString journalName = QLatin1StringView(JournalName);
    const QByteArray journal = readJournal(dir);
    if (!journal.isNull()) {
        const QStringList names = journalNames(journal);
        QString failedName;
        int error = renameAll(dir, names, Renames::Recovering, &failedName);
        if (error == 0)
            error = syncFolder(dir);
        if (error == 0) {
            failedName = journalName;
            error = doRemove(nativePath(dir, journalName));
        }
        if (error == 0)
            error = syncFolder(dir);
        if (error != 0)
            fail(dir, failedName, error, false);
    }

    // What is left are files of commits that never reached their journal,
    // files being set aside when a kill came, and the temporary files of
    // the save-then-rename an older version used (NAME.dat.XXXXXX): none of
    // them holds anything the data files do not. Six characters of one kind
    // only are a word or a number that a user gave a copy
    // (receive_c.dat.backup, draft.dat.202401), which must be kept; the
    // older version's random ones nearly always mix.
    static const QRegularExpression leftover(
        u"^(mailbox|receive_c|send_c|receive_s|deleted_c|draft|send_s|class)\\.dat"
        u"(\\.new|\\.damaged-[0-9-]+\\.new|\\.(?![a-z]{6}$|[A-Z]{6}$|[0-9]{6}$)[A-Za-z0-9]{6})$"_s);
    const QStringList entries = QDir(dir).entryList(QDir::Files | QDir::Hidden | QDir::System);
    for (const QString &entry : entries) {
        if (entry == journalName + QLatin1StringView(NewFileSuffix) || leftover.match(entry).hasMatch())
            ::unlink(nativePath(dir, entry).constData());
    }
}

QString WriteAside(const QString &stem, const QByteArray &bytes)
{
    const QDir dir(AppDir());
    const QStringList taken = dir.entryList({stem + u'*'}, QDir::Files | QDir::Hidden | QDir::System);
    for (const QString &name : taken) {
        QFile f(dir.filePath(name));
        if (!name.endsWith(QLatin1StringView(NewFileSuffix)) && f.size() == bytes.size()
            && f.open(QIODevice::ReadOnly) && f.readAll() == bytes)
            return name;
    }
    const QString dated = stem + Now().toString(u"yyyyMMdd-HHmm"_s);
    QString name = dated;
    for (int n = 2; QFileInfo::exists(AppFilePath(name)) || QFileInfo(AppFilePath(name)).isSymLink();
         ++n)
        name = dated + u'-' + QString::number(n);
    // Written beside, then renamed: a kill leaves a whole file or a
    // temporary one that the start-up removes.
    const QString folder = AppDir();
    const QByteArray pending = nativePath(folder, name + QLatin1StringView(NewFileSuffix));
    int error = writeSynced(pending, bytes, QByteArray());
    if (error == 0)
        error = doRename(pending, nativePath(folder, name));
    if (error == 0)
        error = syncFolder(folder);
    if (error != 0) {
        ::unlink(pending.constData());
        fail(folder, name, error);
    }
    return name;
}

QStringList StandingChange(const QString &dir)
{
    QFile journal(QDir(dir).filePath(QLatin1StringView(JournalName)));
    if (!journal.open(QIODevice::ReadOnly))
        return {};
    return journalNames(journal.read(64 * 1024));
}
