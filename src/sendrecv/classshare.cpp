#include "classshare.h"

#include "classstate.h"
#include "store/commit.h"
#include "store/errors.h"
#include "store/folders.h"
#include "store/profile.h"
#include "store/textutil.h"
#include "texts.h"

#include <QDir>
#include <QFile>

#include <cerrno>
#include <fcntl.h>
#include <mutex>
#include <sys/stat.h>
#include <unistd.h>

using namespace Qt::Literals::StringLiterals;

namespace classroom {

namespace {

constexpr char EndLine[] = "[end]\r\n";
// No message file comes near this; anything larger is not one.
constexpr qint64 LargestFile = 1 << 20;

std::mutex hookLock;
std::function<void()> &hook()
{
    static std::function<void()> h;
    return h;
}

void callHook()
{
    std::function<void()> h;
    {
        std::lock_guard<std::mutex> lock(hookLock);
        h = hook();
    }
    if (h)
        h();
}

QByteArray native(const QString &path)
{
    return QFile::encodeName(path);
}

QString reason(int error)
{
    if (error == ENOENT)
        return texts::classroom::FolderMissing;
    if (error == ENOTDIR)
        return texts::classroom::NotAFolder;
    return FileFailureReason(error);
}

bool isFolder(const QString &path)
{
    struct stat st;
    return ::stat(native(path).constData(), &st) == 0 && S_ISDIR(st.st_mode);
}

bool exists(const QString &path)
{
    struct stat st;
    return ::stat(native(path).constData(), &st) == 0;
}

// Writes dir/name.part, every byte checked and synced. Returns 0 or the
// errno of the first failure, with the part removed.
int writePart(const QString &dir, const QString &name, const QByteArray &bytes)
{
    const QByteArray part = native(dir + u'/' + name + QLatin1StringView(PartSuffix));
    const int fd = ::open(part.constData(), O_WRONLY | O_CREAT | O_TRUNC | O_CLOEXEC, 0644);
    if (fd < 0)
        return errno;
    int error = WriteToEnd(fd, bytes);
    if (error == 0 && Syncing() && ::fsync(fd) != 0)
        error = errno;
    if (::close(fd) != 0 && error == 0)
        error = errno;
    if (error != 0)
        ::unlink(part.constData());
    return error;
}

// Renames dir/name.part to dir/name: the file appears whole.
int placePart(const QString &dir, const QString &name)
{
    const QByteArray part = native(dir + u'/' + name + QLatin1StringView(PartSuffix));
    if (::rename(part.constData(), native(dir + u'/' + name).constData()) == 0)
        return 0;
    const int error = errno;
    ::unlink(part.constData());
    return error;
}

// Some network file systems cannot sync a folder; the renames stand on the
// server all the same.
void syncFolder(const QString &dir)
{
    if (!Syncing())
        return;
    const int folder = ::open(native(dir).constData(), O_RDONLY | O_DIRECTORY | O_CLOEXEC);
    if (folder >= 0) {
        ::fsync(folder);
        ::close(folder);
    }
}

// 0 with the bytes, or an errno.
int readWhole(const QString &path, QByteArray *bytes)
{
    const int fd = ::open(native(path).constData(), O_RDONLY | O_CLOEXEC);
    if (fd < 0)
        return errno;
    bytes->clear();
    const int error = ReadToEnd(fd, *bytes, LargestFile);
    ::close(fd);
    return error;
}

ShareFile read(const QString &dir, const QString &member, qint64 number, int *error)
{
    QByteArray bytes;
    *error = readWhole(dir + u'/' + member + u'/' + MessageFileName(number), &bytes);
    if (*error != 0) {
        return {member, number, ShareFile::Unreadable, {},
                *error == ENOENT ? texts::classroom::FileMissing : reason(*error)};
    }
    ShareFile file{member, number, ShareFile::Mail, {}, {}};
    if (bytes.size() > LargestFile || !ParseMessageFile(bytes, &file.mail))
        file = {member, number, ShareFile::Damaged, {}, texts::classroom::NotAMessage};
    return file;
}

// How many messages a member says it has put in its folder: a number
// below it whose file is missing was lost, not yet to come.
qint64 publishedBy(const QString &memberDir)
{
    QByteArray bytes;
    if (readWhole(memberDir + u'/' + StatusFileName, &bytes) != 0)
        return 0;
    const qsizetype at = bytes.indexOf("\npublished=");
    if (at < 0)
        return 0;
    const QByteArray value = bytes.mid(at + 11, bytes.indexOf('\r', at + 11) - at - 11);
    return qMax<qint64>(0, value.trimmed().toLongLong());
}

QStringList members(const QString &dir)
{
    QStringList out;
    for (const QString &name : QDir(dir).entryList(QDir::Dirs | QDir::NoDotAndDotDot, QDir::Name)) {
        if (IsMemberName(name))
            out.append(name);
    }
    return out;
}

}  // namespace

QString MessageFileName(qint64 number)
{
    return u"%1.dat"_s.arg(number, 8, 10, QChar(u'0'));
}

QByteArray MessageFileBytes(const EmailRec &m)
{
    return FolderBytes({m}) + EndLine;
}

bool ParseMessageFile(const QByteArray &bytes, EmailRec *m)
{
    if (!bytes.endsWith(EndLine))
        return false;
    const ProfileFile f = ProfileFile::parse(bytes);
    if (f.isBinary() || !f.hasSection("email") || LeadingNumber(f.value("email", "number")) != 1)
        return false;
    try {
        *m = ParseFolder(f).first();
    } catch (const StoreError &) {
        return false;
    }
    return true;
}

void SetShareHook(std::function<void()> h)
{
    std::lock_guard<std::mutex> lock(hookLock);
    hook() = std::move(h);
}

ShareOutcome RunShareJob(const ShareJob &job)
{
    callHook();
    ShareOutcome out;
    const QString &dir = job.classDir;
    struct stat st;
    if (::stat(native(dir).constData(), &st) != 0) {
        out.away = reason(errno);
        return out;
    }
    if (!S_ISDIR(st.st_mode)) {
        out.away = reason(ENOTDIR);
        return out;
    }

    // The class folder itself is never made here: a share that is not
    // mounted leaves an empty folder where it belongs, and mail written
    // there would reach nobody.
    const QString own = dir + u'/' + job.member;
    bool ownThere = isFolder(own);
    if (!ownThere && job.first > 0) {
        // Mail went into the member folder before, so this is not the
        // class folder it went to (its mount point alone), or the folder
        // was removed from a class folder others still use.
        if (members(dir).isEmpty()) {
            out.away = reason(ENOENT);
            return out;
        }
        out.memberGone = true;
    } else if (!ownThere) {
        if (::mkdir(native(own).constData(), 0777) != 0 && errno != EEXIST)
            out.away = reason(errno);
        else
            ownThere = true;
    }

    if (ownThere) {
        ::unlink(native(own + u'/' + StatusFileName + QLatin1StringView(PartSuffix)).constData());
        // Every file is written and synced first, then they are renamed in
        // their order and the folder synced once: a reader sees a number
        // only with all those before it. A number already in place was put
        // there by a run killed before its data folder learnt of it: the
        // same message, left as it is.
        QList<bool> written;
        int writeError = 0;
        for (qsizetype i = 0; i < job.outgoing.size(); ++i) {
            const QString name = MessageFileName(job.first + i);
            const bool there = exists(own + u'/' + name);
            writeError = there ? 0 : writePart(own, name, job.outgoing[i]);
            if (writeError != 0)
                break;
            written.append(!there);
        }
        int placeError = 0;
        for (qsizetype i = 0; i < written.size(); ++i) {
            const QString name = MessageFileName(job.first + i);
            if (placeError == 0 && written[i])
                placeError = placePart(own, name);
            else if (placeError != 0 && written[i])
                ::unlink(native(own + u'/' + name + QLatin1StringView(PartSuffix)).constData());
            if (placeError == 0)
                ++out.published;
        }
        const int error = writeError != 0 ? writeError : placeError;
        if (out.published > 0)
            syncFolder(own);
        if (error != 0)
            out.away = reason(error);
    }
    if (!job.scan)
        return out;

    for (const QString &member : members(dir)) {
        const qint64 from = job.from.value(member, 0);
        qint64 published = -1;  // read only when a file is missing
        qint64 n = from;
        int error = 0;
        for (int taken = 0; taken < MaxFilesPerMember; ++taken, ++n) {
            ShareFile file = read(dir, member, n, &error);
            if (error == ENOENT) {
                if (published < 0) {
                    published = member == job.member ? job.first + out.published
                                                     : publishedBy(dir + u'/' + member);
                }
                if (n >= published)
                    break;
            }
            out.files.append(std::move(file));
        }
        out.scannedTo[member] = n;
        for (qint64 r : job.retry.value(member)) {
            if (r < from || r >= n)
                out.files.append(read(dir, member, r, &error));
        }
    }
    return out;
}

QString WriteStatus(const QString &classDir, const QString &member, const QByteArray &bytes)
{
    callHook();
    const QString own = classDir + u'/' + member;
    if (!isFolder(own))
        return reason(ENOENT);
    int error = writePart(own, StatusFileName, bytes);
    if (error == 0)
        error = placePart(own, StatusFileName);
    if (error == 0)
        syncFolder(own);
    return error == 0 ? QString() : reason(error);
}

}  // namespace classroom
