#include "commit.h"

#include "appdir.h"
#include "errors.h"
#include "records.h"
#include "texts.h"

#include <QDir>
#include <QFile>
#include <QRegularExpression>

#include <cerrno>
#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

using namespace Qt::Literals::StringLiterals;

const char JournalName[] = "quillpost.journal";
const char NewFileSuffix[] = ".new";

namespace {

bool syncing = true;

constexpr char JournalHeader[] = "quillpost-journal 1";
constexpr char JournalEnd[] = "end";

QByteArray nativePath(const QString &fileName)
{
    return QFile::encodeName(AppFilePath(fileName));
}

[[noreturn]] void fail(const QString &fileName, int error, bool unchanged = true)
{
    throw FileError(texts::CannotWriteFile.arg(AppFilePath(fileName), FileFailureReason(error)),
                    unchanged);
}

// Writes bytes to path, every byte checked and synced to the disk. The
// file takes the permissions of the one it is to replace, when there is
// one. Returns 0 or the errno of the first failure, with the file removed.
int writeSynced(const QByteArray &path, const QByteArray &bytes, const QByteArray &replaces)
{
    const int fd = ::open(path.constData(), O_WRONLY | O_CREAT | O_TRUNC | O_CLOEXEC, 0666);
    if (fd < 0)
        return errno;
    int error = 0;
    struct stat old;
    if (::stat(replaces.constData(), &old) == 0 && S_ISREG(old.st_mode))
        ::fchmod(fd, old.st_mode & 07777);
    const char *p = bytes.constData();
    qsizetype left = bytes.size();
    while (left > 0 && error == 0) {
        const ssize_t n = ::write(fd, p, size_t(left));
        if (n < 0) {
            if (errno != EINTR)
                error = errno;
        } else {
            p += n;
            left -= n;
        }
    }
    if (error == 0 && syncing && ::fsync(fd) != 0)
        error = errno;
    if (::close(fd) != 0 && error == 0)
        error = errno;
    if (error != 0)
        ::unlink(path.constData());
    return error;
}

// A rename is only on the disk once the folder holding it is synced.
int syncFolder()
{
    if (!syncing)
        return 0;
    const int fd = ::open(QFile::encodeName(AppDir()).constData(),
                          O_RDONLY | O_DIRECTORY | O_CLOEXEC);
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

// Moves every NAME.new of the names into place. Returns 0 or the first errno,
// with the name it failed on.
int renameAll(const QStringList &names, QString *failedName)
{
    for (const QString &name : names) {
        const QByteArray from = nativePath(name + QLatin1StringView(NewFileSuffix));
        if (::access(from.constData(), F_OK) != 0)
            continue;  // moved before an interruption
        if (::rename(from.constData(), nativePath(name).constData()) != 0) {
            *failedName = name;
            return errno;
        }
    }
    return 0;
}

}  // namespace

void SetSyncing(bool on)
{
    syncing = on;
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
    default:
        return texts::ReasonOther.arg(error);
    }
}

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

void FileCommit::run()
{
    if (m_files.isEmpty())
        return;
    // A data folder that cannot be written is known from the start: every
    // save is refused before anything is begun.
    if (DataReadOnly())
        throw FileError(DataReadOnlyText());
    // A journal still standing belongs to a commit that could not finish;
    // it is completed first so that this one builds on its files.
    if (QFile::exists(AppFilePath(QLatin1StringView(JournalName))))
        RecoverDataFolder();

    // Nothing is written when one of the files could not be replaced.
    for (const File &f : m_files) {
        if (isFolder(nativePath(f.name)))
            fail(f.name, EISDIR);
    }
    QStringList written;
    const auto removeWritten = [&written] {
        for (const QString &name : written)
            ::unlink(nativePath(name + QLatin1StringView(NewFileSuffix)).constData());
    };
    for (const File &f : m_files) {
        const int error = writeSynced(nativePath(f.name + QLatin1StringView(NewFileSuffix)),
                                      f.bytes, nativePath(f.name));
        if (error != 0) {
            removeWritten();
            fail(f.name, error);
        }
        written.append(f.name);
    }

    // One file needs no journal: its rename alone is the unit.
    if (m_files.size() > 1) {
        QByteArray journal = QByteArray(JournalHeader) + '\n';
        for (const File &f : m_files)
            journal += f.name.toUtf8() + '\n';
        journal += QByteArray(JournalEnd) + '\n';
        const QString journalName = QLatin1StringView(JournalName);
        const QByteArray pending = nativePath(journalName + QLatin1StringView(NewFileSuffix));
        int error = writeSynced(pending, journal, QByteArray());
        if (error == 0 && ::rename(pending.constData(), nativePath(journalName).constData()) != 0)
            error = errno;
        if (error == 0)
            error = syncFolder();
        if (error != 0) {
            // Before the journal stands nothing has changed; should the
            // journal after all have reached the disk, the start-up will
            // find no new files to move and simply remove it.
            ::unlink(pending.constData());
            ::unlink(nativePath(journalName).constData());
            removeWritten();
            fail(m_files.first().name, error);
        }
    }

    QString failedName;
    const int error = renameAll(written, &failedName);
    if (error != 0) {
        if (m_files.size() == 1) {
            removeWritten();
            fail(failedName, error);
        }
        // Past the journal the change stands; the next start-up or commit
        // completes it.
        throw FileError(texts::CannotWriteFile.arg(AppFilePath(failedName),
                                                   FileFailureReason(error))
                            + u"\r\r"_s + texts::CommitUnfinished,
                        false);
    }
    // The renames are made; a folder that cannot be synced now leaves
    // nothing better to do than to go on.
    syncFolder();
    if (m_files.size() > 1)
        ::unlink(nativePath(QLatin1StringView(JournalName)).constData());
}

void RecoverDataFolder()
{
    const QString journalName = QLatin1StringView(JournalName);
    QFile journal(AppFilePath(journalName));
    if (journal.open(QIODevice::ReadOnly)) {
        const QStringList names = journalNames(journal.read(64 * 1024));
        journal.close();
        QString failedName;
        const int error = renameAll(names, &failedName);
        if (error != 0)
            fail(failedName, error, false);
        syncFolder();
        ::unlink(nativePath(journalName).constData());
    }

    // What is left are files of commits that never reached their journal,
    // and the temporary files of the save-then-rename an older version
    // used (NAME.dat.XXXXXX): none of them holds anything the data files
    // do not. Six characters of one kind only are a word or a number that
    // a user gave a copy (receive_c.dat.backup, draft.dat.202401), which
    // must be kept; the older version's random ones nearly always mix.
    static const QRegularExpression leftover(
        u"^(mailbox|receive_c|send_c|receive_s|deleted_c|draft|send_s|class)\\.dat"
        u"(\\.new|\\.(?![a-z]{6}$|[A-Z]{6}$|[0-9]{6}$)[A-Za-z0-9]{6})$"_s);
    const QDir dir(AppDir());
    const QStringList entries = dir.entryList(QDir::Files | QDir::Hidden | QDir::System);
    for (const QString &entry : entries) {
        if (entry == journalName + QLatin1StringView(NewFileSuffix) || leftover.match(entry).hasMatch())
            ::unlink(nativePath(entry).constData());
    }
}
