#include "mailstore.h"

#include "appdir.h"
#include "clock.h"
#include "commit.h"
#include "errors.h"
#include "folders.h"
#include "mailboxes.h"
#include "profile.h"
#include "prompter.h"
#include "texts.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QSet>

#include <cerrno>
#include <malloc.h>
#include <condition_variable>
#include <deque>
#include <mutex>
#include <thread>
#include <sys/resource.h>
#include <sys/stat.h>
#include <sys/statfs.h>
#include <time.h>
#include <unistd.h>

using namespace Qt::Literals::StringLiterals;

namespace {

// A folder of thousands of messages is read, laid out and written as
// blocks of megabytes, again at every commit, on three threads. The C
// library would raise the size it maps such blocks from to the largest one
// freed, and serve the next ones from the heaps of those threads, where
// they leave holes that are never given back: the process would keep tens
// of megabytes it no longer uses. Blocks of 256 KiB and more are mapped,
// and given back when freed.
#ifdef M_MMAP_THRESHOLD
const bool largeBlocksMapped = ::mallopt(M_MMAP_THRESHOLD, 256 * 1024) == 1;
#endif

// What tells a file apart from the one read before: a file rewritten by
// anyone gets a new inode (a rename), a new time or a new size. A time is
// only as fine as the file system's clock, though (a tick of a few
// milliseconds on a local disk, two seconds on a memory stick), so a file
// whose time lies that close to the moment it was read can change again
// without its time showing it: for such a file the bytes themselves are
// kept and compared.
struct Signature
{
    bool exists = false;
    dev_t device = 0;
    ino_t inode = 0;
    off_t size = 0;
    qint64 modified = 0;  // nanoseconds since the epoch

    friend bool operator==(const Signature &a, const Signature &b)
    {
        return a.exists == b.exists && a.device == b.device && a.inode == b.inode
            && a.size == b.size && a.modified == b.modified;
    }
};

Signature signatureAt(const QString &path)
{
    Signature s;
    struct stat st;
    if (::stat(QFile::encodeName(path).constData(), &st) != 0)
        return s;
    s.exists = true;
    s.device = st.st_dev;
    s.inode = st.st_ino;
    s.size = st.st_size;
    s.modified = qint64(st.st_mtim.tv_sec) * 1000000000 + st.st_mtim.tv_nsec;
    return s;
}

qint64 wallClockNs()
{
    struct timespec now;
    ::clock_gettime(CLOCK_REALTIME, &now);
    return qint64(now.tv_sec) * 1000000000 + now.tv_nsec;
}

// How far apart two changes of a file may lie and still get the same time.
// The local file systems take it from the kernel's tick; for the others (a
// memory stick's FAT, a share whose server keeps the times) two seconds.
qint64 clockResolutionNs(const QString &dir)
{
    struct statfs fs;
    if (::statfs(QFile::encodeName(dir).constData(), &fs) == 0) {
        switch (static_cast<unsigned long>(fs.f_type)) {
        case 0xEF53UL:      // ext2, ext3, ext4
        case 0x58465342UL:  // xfs
        case 0x9123683EUL:  // btrfs
        case 0x01021994UL:  // tmpfs
        case 0xF2F52010UL:  // f2fs
            return 20'000'000;
        default:
            break;
        }
    }
    return 2'000'000'000;
}

// One file as last read or written.
struct Cached
{
    std::optional<Signature> signature;  // none: not read yet
    QByteArray bytes;  // kept only while its time cannot be trusted
    int pending = 0;   // commits of the file the disk does not have yet

    void record(const Signature &s, const QByteArray &content, qint64 resolution)
    {
        signature = s;
        const bool racy = s.exists && s.modified + resolution > wallClockNs();
        bytes = racy ? content : QByteArray();
    }

    // A file the writer has just put in place. Its signature was taken
    // after the rename, so the inode is the one this process made, and the
    // data folder is held by this copy alone: a change by anyone else shows
    // as another inode, size or time, except a rewrite in place, of the same
    // size, within one clock tick of the rename. Keeping its bytes to catch
    // that would cost a reading and comparison of the whole file (a
    // 20,000-message folder: 4 MB, some 2.5 ms) at every look for a tick
    // after each commit, on the window's thread; it is given up.
    void recordWritten(const Signature &s)
    {
        signature = s;
        bytes = QByteArray();
    }

    bool stillHolds(const QString &path, qint64 resolution)
    {
        // The disk is behind what is kept until the writer has caught up.
        if (pending > 0)
            return true;
        if (!signature || !(*signature == signatureAt(path)))
            return false;
        if (bytes.isNull())
            return true;
        QFile file(path);
        if (!file.open(QIODevice::ReadOnly) || ToGb18030(file.readAll()) != bytes)
            return false;
        // Once the clock has moved past the file's time, any change to come
        // shows in the time, and the bytes need not be read again.
        if (signature->modified + resolution <= wallClockNs())
            bytes = QByteArray();
        return true;
    }
};

struct CachedFolder : Cached
{
    MailList mails;
    FileFrame frame = PlainFrame();
    int unread = -1;  // of mails; -1 not counted yet
    // A count made on the reader's thread while the messages were not read,
    // and the file it was made of.
    std::optional<FolderFigures> figures;
    Signature figuresOf;
    // The file as it stood when it could not be read: it is not tried again
    // off the window's thread until it changes.
    std::optional<Signature> failedOf;
};

struct CachedAccounts : Cached
{
    AccountList accounts;
    FileFrame frame = PlainFrame();
};

struct CachedFile : Cached
{
    QByteArray content;
};

struct Cache
{
    QString dir;
    qint64 resolution = 2'000'000'000;
    CachedFolder folders[FolderFile::Count];
    CachedAccounts accounts;
    std::map<QString, CachedFile> files;
};

// A child process made by fork() starts from what the files hold: what its
// parent kept may be on its way to the disk by the parent's writer, which
// the child does not have.
Cache &theCache()
{
    static Cache c;
    static pid_t owner = ::getpid();
    if (owner != ::getpid()) {
        owner = ::getpid();
        c = Cache();
    }
    return c;
}

void drain();

// Everything kept belongs to one data folder; tests and --data-dir may
// point the program at another. What is on its way to the old one's disk
// gets there first.
Cache &cache()
{
    Cache &c = theCache();
    if (c.dir != AppDir()) {
        drain();
        c = Cache();
        c.dir = AppDir();
        c.resolution = clockResolutionNs(c.dir);
    }
    return c;
}

QString pathIn(const QString &dir, const QString &fileName)
{
    return QDir(dir).filePath(fileName);
}

bool startsWithDigit(const QString &value)
{
    for (QChar c : value) {
        if (c == u' ' || c == u'\t')
            continue;
        return c >= u'0' && c <= u'9';
    }
    return false;
}

// Whether bytes are a data file whose first section is header and whose
// records are sections prefix1, prefix2, ... No header, a count that is no
// number over records, or bytes no text holds before the first record make
// no data file at all. What a hand edit or another tool can do to a real
// data file (a wrong count, a long value, a damaged record) is left to the
// record reader.
bool isDataFile(const ProfileFile &file, QByteArrayView header, QByteArrayView prefix)
{
    if (file.isBlank())
        return true;
    bool binaryHead = file.isBinary() && HoldsBinary(file.prelude());
    for (qsizetype i = 0; i < file.sectionCount() && file.isBinary() && !binaryHead; ++i) {
        if (file.sectionName(i) == header) {
            binaryHead = file.sectionIsBinary(i);
            break;
        }
    }
    return !binaryHead && file.hasSection(header)
        && (startsWithDigit(file.value(header, "number")) || !file.hasNumberedSection(prefix));
}

// Moves a file that is not a data file out of the way under a name that
// keeps it, and tells the user where it went. Throws FileError when it
// cannot be moved: it must then not be read as empty and later replaced.
void setAside(const QString &fileName)
{
    const QString stem = fileName + u".damaged-"_s + Now().toString(u"yyyyMMdd-HHmm"_s);
    QString aside = stem;
    for (int n = 2; QFileInfo::exists(AppFilePath(aside)) || QFileInfo(AppFilePath(aside)).isSymLink();
         ++n)
        aside = stem + u'-' + QString::number(n);
    if (::rename(QFile::encodeName(AppFilePath(fileName)).constData(),
                 QFile::encodeName(AppFilePath(aside)).constData())
        != 0)
        throw FileError(texts::CannotWriteFile.arg(AppFilePath(fileName), FileFailureReason(errno)));
    prompter().message(Prompter::Icon::Exclamation, texts::AppTitle,
                       texts::DamagedFileSetAside.arg(fileName, aside,
                                                      QDir::toNativeSeparators(AppDir())));
}

// Reads a data file; one that is no data file at all is set aside whole and
// read as an empty file.
ProfileFile readDataFile(const QString &fileName, QByteArrayView header, QByteArrayView prefix)
{
    ProfileFile file = ProfileFile::load(AppFilePath(fileName));
    if (isDataFile(file, header, prefix))
        return file;
    setAside(fileName);
    return ProfileFile();
}

// What the writer and the reader have done, taken on the window's thread
// without waiting for more.
void takeAll();

}  // namespace

struct CommitTicket::State
{
    std::mutex lock;
    std::condition_variable settled;
    int result = 0;  // 1 on the disk, -1 failed, 0 not yet
    QString errorText;
    bool filesUnchanged = true;

    void settle(bool saved, const QString &error = QString(), bool unchanged = true)
    {
        const std::lock_guard<std::mutex> guard(lock);
        result = saved ? 1 : -1;
        errorText = error;
        filesUnchanged = unchanged;
        settled.notify_all();
    }
};

bool CommitTicket::wait() const
{
    if (!m_state)
        return true;
    std::unique_lock<std::mutex> guard(m_state->lock);
    m_state->settled.wait(guard, [this] { return m_state->result != 0; });
    return m_state->result > 0;
}

bool CommitTicket::done() const
{
    if (!m_state)
        return true;
    const std::lock_guard<std::mutex> guard(m_state->lock);
    return m_state->result != 0;
}

QString CommitTicket::errorText() const
{
    if (!m_state)
        return QString();
    const std::lock_guard<std::mutex> guard(m_state->lock);
    return m_state->errorText;
}

bool CommitTicket::filesUnchanged() const
{
    if (!m_state)
        return true;
    const std::lock_guard<std::mutex> guard(m_state->lock);
    return m_state->filesUnchanged;
}

namespace {

// One file of a commit: a folder's records and the rest of its file, laid
// out into bytes by the writer, or the bytes of another file.
struct FileWrite
{
    QString name;
    bool isFolder = false;
    MailList mails;
    FileFrame frame;
    QByteArray bytes;
};

struct Job
{
    QString dir;
    QList<FileWrite> files;
    QString what;
    bool waited = false;  // someone waits for it and tells the user himself
    std::shared_ptr<CommitTicket::State> ticket;
};

struct Written
{
    QString name;
    Signature signature;
    bool readsBack = true;  // reads as the GB18030 it was written as
};

struct Outcome
{
    QString dir;
    QStringList touched;  // each file of each commit of the unit
    bool failed = false;
    QString errorText;
    bool filesUnchanged = true;
    QStringList lost;  // what the failed commits did, for the box
    QList<Written> written;
};

// Puts the calling thread behind the window's thread and the painter
// threads a repaint starts: the writer and the reader work behind the
// window, and with two cores and a 4 MB folder being written a repaint
// waited for them. A lower priority, not the idle one, so that a machine
// busy with other programs still gets the files written.
void runBehindTheWindow()
{
    setpriority(PRIO_PROCESS, pid_t(gettid()), 10);
}

// The one writer of the data files: it takes the commits in order on a
// thread of its own, and those that queued up while it wrote as one unit.
// After a failure it writes nothing more until the window's thread has put
// what is kept back to what the files hold; what was queued meanwhile was
// built on the failed change and goes with it.
class Writer
{
public:
    void submit(Job job)
    {
        std::unique_lock<std::mutex> guard(m_lock);
        if (!m_started) {
            m_started = true;
            std::thread([this] { run(); }).detach();
        }
        m_queue.push_back(std::move(job));
        m_changed.notify_all();
    }

    std::deque<Outcome> takeOutcomes()
    {
        const std::lock_guard<std::mutex> guard(m_lock);
        return std::exchange(m_outcomes, {});
    }

    // The commits queued behind a failure, dropped as it is taken back.
    std::deque<Job> dropQueued()
    {
        const std::lock_guard<std::mutex> guard(m_lock);
        m_blocked = false;
        m_changed.notify_all();
        return std::exchange(m_queue, {});
    }

    bool idle()
    {
        const std::lock_guard<std::mutex> guard(m_lock);
        return !m_busy && m_queue.empty() && m_outcomes.empty();
    }

    // Until the writer has nothing left to write or an outcome to hand over.
    void waitForOutcome(int ms)
    {
        std::unique_lock<std::mutex> guard(m_lock);
        m_changed.wait_for(guard, std::chrono::milliseconds(ms), [this] {
            return !m_outcomes.empty() || (!m_busy && (m_queue.empty() || m_blocked));
        });
    }

    pid_t owner = ::getpid();

private:
    void run()
    {
        runBehindTheWindow();
        for (;;) {
            std::deque<Job> unit;
            {
                std::unique_lock<std::mutex> guard(m_lock);
                m_changed.wait(guard, [this] { return !m_queue.empty() && !m_blocked; });
                const QString dir = m_queue.front().dir;
                while (!m_queue.empty() && m_queue.front().dir == dir) {
                    unit.push_back(std::move(m_queue.front()));
                    m_queue.pop_front();
                }
                m_busy = true;
            }
            Outcome outcome = write(unit);
            {
                const std::lock_guard<std::mutex> guard(m_lock);
                m_busy = false;
                m_blocked = outcome.failed;
                m_outcomes.push_back(outcome);
                m_changed.notify_all();
            }
            for (const Job &job : unit)
                job.ticket->settle(!outcome.failed, outcome.errorText, outcome.filesUnchanged);
            QMetaObject::invokeMethod(&storeEvents(), &takeAll, Qt::QueuedConnection);
        }
    }

    static Outcome write(const std::deque<Job> &unit)
    {
        Outcome outcome;
        outcome.dir = unit.front().dir;
        // Each file as the last commit of the unit left it, in the order
        // the files first came.
        QStringList order;
        std::map<QString, const FileWrite *> last;
        for (const Job &job : unit) {
            for (const FileWrite &f : job.files) {
                if (!last.count(f.name))
                    order.append(f.name);
                last[f.name] = &f;
                outcome.touched.append(f.name);
            }
        }
        FileCommit files(outcome.dir);
        for (const QString &name : order) {
            const FileWrite &f = *last[name];
            const QByteArray bytes = f.isFolder ? FolderImage(f.mails, f.frame).bytes : f.bytes;
            outcome.written.append({name, {}, !f.isFolder || ReadsAsGb18030(bytes)});
            files.add(name, bytes);
        }
        try {
            files.run();
        } catch (const StoreError &error) {
            outcome.failed = true;
            outcome.errorText = error.userText();
            outcome.filesUnchanged = error.filesUnchanged();
            outcome.written.clear();
            for (const Job &job : unit) {
                if (!job.waited)
                    outcome.lost.append(job.what);
            }
            return outcome;
        }
        for (Written &w : outcome.written)
            w.signature = signatureAt(pathIn(outcome.dir, w.name));
        return outcome;
    }

    std::mutex m_lock;
    std::condition_variable m_changed;
    std::deque<Job> m_queue;
    std::deque<Outcome> m_outcomes;
    bool m_started = false;
    bool m_busy = false;
    bool m_blocked = false;
};

// A child process made by fork() has none of its parent's threads: it gets
// a writer of its own. The parent's is left as it is, since its lock may
// be held by a thread that is not there.
Writer &writer()
{
    static Writer *w = new Writer;
    if (w->owner != ::getpid())
        w = new Writer;
    return *w;
}

// ---- The reader -------------------------------------------------------------

struct ReadJob
{
    QString dir;
    int folder = 0;
    bool figuresOnly = false;
};

struct ReadResult
{
    ReadJob job;
    // False when the file cannot be read, is no data file, or a change
    // stands half made: the window's thread then reads it itself, and says
    // why or sets it aside, or finishes the change.
    bool usable = false;
    Signature before;
    FolderReading reading;
    QByteArray bytes;
    FolderFigures figures;
};

// Reads folders that are not in memory on a thread of its own, so that a
// large one does not keep the window from painting. The windows ask for a
// folder ahead of those asked for before.
class Reader
{
public:
    void submit(const ReadJob &job)
    {
        storeEvents();  // made on this thread, before the reader posts to it
        const std::lock_guard<std::mutex> guard(m_lock);
        // A count is wanted before the folder's messages: it is only left
        // out for one queued already, or a reading under way.
        for (const ReadJob &queued : m_queue) {
            if (same(queued, job) && queued.figuresOnly == job.figuresOnly)
                return;
        }
        if (m_current && same(*m_current, job) && (!m_current->figuresOnly || job.figuresOnly))
            return;
        if (!m_started) {
            m_started = true;
            std::thread([this] { run(); }).detach();
        }
        m_queue.push_front(job);
        m_changed.notify_all();
    }

    std::deque<ReadResult> takeResults()
    {
        const std::lock_guard<std::mutex> guard(m_lock);
        return std::exchange(m_results, {});
    }

    // Leaves a folder to the window's thread: what is queued for it is
    // dropped, a reading under way ends first, and its result is handed
    // over.
    std::deque<ReadResult> settle(const QString &dir, int folder)
    {
        std::unique_lock<std::mutex> guard(m_lock);
        const ReadJob job{dir, folder, false};
        m_queue.erase(std::remove_if(m_queue.begin(), m_queue.end(),
                                     [&](const ReadJob &q) { return same(q, job); }),
                      m_queue.end());
        m_changed.wait(guard, [&] { return !m_current || !same(*m_current, job); });
        std::deque<ReadResult> mine, others;
        for (ReadResult &r : m_results)
            (same(r.job, job) ? mine : others).push_back(std::move(r));
        m_results = std::move(others);
        return mine;
    }

    bool idle()
    {
        const std::lock_guard<std::mutex> guard(m_lock);
        return !m_current && m_queue.empty() && m_results.empty();
    }

    // Readings wait, until release() or for ms at most: the window's first
    // paint is not to share the processor and the memory with them.
    void hold(int ms)
    {
        const std::lock_guard<std::mutex> guard(m_lock);
        m_heldUntil = std::chrono::steady_clock::now() + std::chrono::milliseconds(ms);
    }

    void release()
    {
        const std::lock_guard<std::mutex> guard(m_lock);
        m_heldUntil = {};
        m_changed.notify_all();
    }

    void waitForResult(int ms)
    {
        std::unique_lock<std::mutex> guard(m_lock);
        m_changed.wait_for(guard, std::chrono::milliseconds(ms),
                           [this] { return !m_results.empty() || (!m_current && m_queue.empty()); });
    }

    pid_t owner = ::getpid();

private:
    static bool same(const ReadJob &a, const ReadJob &b) { return a.dir == b.dir && a.folder == b.folder; }

    void run()
    {
        runBehindTheWindow();
        for (;;) {
            ReadJob job;
            {
                std::unique_lock<std::mutex> guard(m_lock);
                m_changed.wait(guard, [this] { return !m_queue.empty(); });
                while (std::chrono::steady_clock::now() < m_heldUntil)
                    m_changed.wait_until(guard, m_heldUntil);
                if (m_queue.empty())
                    continue;  // left to the window's thread meanwhile
                job = m_queue.front();
                m_queue.pop_front();
                m_current = job;
            }
            ReadResult result = read(job);
            {
                const std::lock_guard<std::mutex> guard(m_lock);
                m_current.reset();
                m_results.push_back(std::move(result));
                m_changed.notify_all();
            }
            QMetaObject::invokeMethod(&storeEvents(), &takeAll, Qt::QueuedConnection);
        }
    }

    static ReadResult read(const ReadJob &job)
    {
        ReadResult r;
        r.job = job;
        const QString path = pathIn(job.dir, FolderFile::fileName(job.folder));
        // A change whose journal stands is the window's thread's to finish.
        if (QFileInfo::exists(pathIn(job.dir, QLatin1StringView(JournalName))))
            return r;
        r.before = signatureAt(path);
        try {
            const ProfileFile file = ProfileFile::load(path);
            if (!isDataFile(file, "email", "email-"))
                return r;
            if (job.figuresOnly)
                r.figures = FiguresOf(file);
            else
                r.reading = ReadFolder(file);
            r.bytes = file.bytes();
        } catch (const StoreError &) {
            return r;
        }
        r.usable = true;
        return r;
    }

    std::mutex m_lock;
    std::condition_variable m_changed;
    std::deque<ReadJob> m_queue;
    std::optional<ReadJob> m_current;
    std::deque<ReadResult> m_results;
    std::chrono::steady_clock::time_point m_heldUntil;
    bool m_started = false;
};

Reader &reader()
{
    static Reader *r = new Reader;
    if (r->owner != ::getpid())
        r = new Reader;
    return *r;
}

// ---- Reading on the window's thread ---------------------------------------

// A change whose journal stands was made but not finished (its renames
// failed, or a kill came between): it is finished before anything is read,
// so that no command builds on half of it and then undoes the rest. While
// the writer is at work the journal may be its own, which it finishes. Work
// it has for another data folder is done first (by cache()): left waiting,
// it would put off the finishing to a later read of the same command, which
// would then hold files from before the change and after it together.
void finishPendingChange()
{
    Cache &c = cache();
    if (DataReadOnly() || !QFileInfo::exists(AppFilePath(QLatin1StringView(JournalName)))
        || !writer().idle())
        return;
    RecoverDataFolder();
    const QString dir = c.dir;
    const qint64 resolution = c.resolution;
    c = Cache();
    c.dir = dir;
    c.resolution = resolution;
}

// Tells the user what reading a data file found and kept, once for each
// state of the file (not at every look, nor again after the cache was
// forgotten): a count that is not the number of its records, and parts that
// could not be shown, which are first saved beside the file so that no
// later save of it can lose them.
void keepAndTell(const QString &fileName, const Signature &read, const RecordSections &sections,
                 const QString &countDisagrees)
{
    QString aside;
    if (!sections.setAside.isEmpty() && !DataReadOnly())
        aside = WriteAside(fileName + u".damaged-"_s, sections.setAside);
    static QSet<QString> told;
    const QString state = AppFilePath(fileName) + u'|' + QString::number(read.inode) + u'|'
        + QString::number(read.size) + u'|' + QString::number(read.modified);
    if ((!sections.countDisagrees() && sections.setAside.isEmpty()) || told.contains(state))
        return;
    told.insert(state);
    if (sections.countDisagrees()) {
        prompter().message(Prompter::Icon::Information, texts::AppTitle,
                           countDisagrees.arg(fileName)
                               .arg(sections.number)
                               .arg(sections.records.size()));
    }
    if (!aside.isEmpty()) {
        prompter().message(Prompter::Icon::Exclamation, texts::AppTitle,
                           texts::PartsSetAside.arg(fileName)
                               .arg(sections.setAsideCount)
                               .arg(aside, QDir::toNativeSeparators(AppDir())));
    } else if (!sections.setAside.isEmpty()) {
        // Nothing is ever saved in a folder opened read-only: the parts stay
        // where they are.
        prompter().message(Prompter::Icon::Exclamation, texts::AppTitle,
                           texts::PartsNotShown.arg(fileName).arg(sections.setAsideCount));
    }
}

void emitLater(int folder)
{
    QMetaObject::invokeMethod(
        &storeEvents(), [folder] { emit storeEvents().folderRead(folder); }, Qt::QueuedConnection);
}

// Takes a reading made on the reader's thread, unless what is kept is newer.
// False when it could not be used.
bool take(ReadResult &r)
{
    Cache &c = theCache();
    if (r.job.dir != c.dir)
        return true;
    CachedFolder &kept = c.folders[r.job.folder];
    if (kept.pending > 0)
        return true;
    if (!r.usable)
        return false;
    if (r.job.figuresOnly) {
        kept.figures = r.figures;
        kept.figuresOf = r.before;
        return true;
    }
    if (kept.signature && *kept.signature == r.before)
        return true;  // read here meanwhile
    const QString name = FolderFile::fileName(r.job.folder);
    keepAndTell(name, r.before, r.reading.sections, texts::MailCountDisagrees);
    kept.mails = std::move(r.reading.mails);
    kept.frame = std::move(r.reading.sections.frame);
    kept.unread = -1;
    kept.record(r.before.exists ? r.before : Signature(), r.bytes, c.resolution);
    return true;
}

CachedFolder &folderRead(int folder)
{
    finishPendingChange();
    Cache &c = cache();
    CachedFolder &kept = c.folders[folder];
    const QString name = FolderFile::fileName(folder);
    if (kept.stillHolds(AppFilePath(name), c.resolution))
        return kept;
    // A reading the reader has begun is waited for rather than made twice.
    for (ReadResult &r : reader().settle(c.dir, folder)) {
        if (!r.job.figuresOnly && take(r))
            emitLater(folder);
    }
    if (kept.stillHolds(AppFilePath(name), c.resolution))
        return kept;
    // The signature is taken before the reading, so that a change during
    // it shows at the next question.
    const Signature before = signatureAt(AppFilePath(name));
    ProfileFile file;
    try {
        file = readDataFile(name, "email", "email-");
    } catch (const StoreError &) {
        kept.failedOf = before;
        throw;
    }
    kept.failedOf.reset();
    FolderReading reading = ReadFolder(file);
    keepAndTell(name, before, reading.sections, texts::MailCountDisagrees);
    kept.mails = std::move(reading.mails);
    kept.frame = std::move(reading.sections.frame);
    kept.unread = -1;
    kept.record(QFileInfo::exists(AppFilePath(name)) ? before : Signature(), file.bytes(), c.resolution);
    return kept;
}

CachedAccounts &accountsRead()
{
    finishPendingChange();
    Cache &c = cache();
    CachedAccounts &kept = c.accounts;
    if (kept.stillHolds(AppFilePath(MailBoxFileName), c.resolution))
        return kept;
    const Signature before = signatureAt(AppFilePath(MailBoxFileName));
    const ProfileFile file = readDataFile(MailBoxFileName, "mailbox", "mailbox-");
    AccountsReading reading = ReadAccounts(file);
    keepAndTell(MailBoxFileName, before, reading.sections, texts::AccountCountDisagrees);
    kept.accounts = std::move(reading.accounts);
    kept.frame = std::move(reading.sections.frame);
    kept.record(QFileInfo::exists(AppFilePath(MailBoxFileName)) ? before : Signature(), file.bytes(),
                c.resolution);
    return kept;
}

// The entry kept for a file of the data folder, by its name.
Cached *entryFor(Cache &c, const QString &name)
{
    for (int folder = 0; folder < FolderFile::Count; ++folder) {
        if (name == FolderFile::fileName(folder))
            return &c.folders[folder];
    }
    if (name == MailBoxFileName)
        return &c.accounts;
    return &c.files[name];
}

int folderOf(const QString &name)
{
    for (int folder = 0; folder < FolderFile::Count; ++folder) {
        if (name == FolderFile::fileName(folder))
            return folder;
    }
    return -1;
}

// Forgets a file's entry, so that its next look reads the disk; true when
// the windows are to be told.
void forgetEntry(Cache &c, const QString &name, QSet<int> *folders, bool *accounts)
{
    const int folder = folderOf(name);
    if (folder >= 0)
        c.folders[folder] = CachedFolder(), folders->insert(folder);
    else if (name == MailBoxFileName)
        c.accounts = CachedAccounts(), *accounts = true;
    else
        c.files.erase(name);
}

// What the writer did, taken on the window's thread in order. False when a
// commit failed.
bool takeOutcomes()
{
    bool allSaved = true;
    for (Outcome &outcome : writer().takeOutcomes()) {
        Cache &c = theCache();
        const bool here = outcome.dir == c.dir;
        if (!outcome.failed) {
            QSet<int> reread;
            for (const QString &name : std::as_const(outcome.touched)) {
                Cached *kept = here ? entryFor(c, name) : nullptr;
                if (kept && kept->pending > 0)
                    --kept->pending;
            }
            for (const Written &w : std::as_const(outcome.written)) {
                Cached *kept = here ? entryFor(c, w.name) : nullptr;
                if (!kept || kept->pending > 0)
                    continue;
                kept->recordWritten(w.signature);
                // Written in GB18030, the file would be read in another
                // encoding: it is read as it will be.
                if (!w.readsBack)
                    kept->signature.reset(), reread.insert(folderOf(w.name));
            }
            for (int folder : reread)
                emit storeEvents().folderChanged(folder);
            continue;
        }

        allSaved = false;
        // Whatever was queued behind the failure was built on it: it goes
        // too, and every file either touched is read afresh.
        QStringList touched = outcome.touched;
        QStringList after;
        QSet<int> dropped;
        for (Job &job : writer().dropQueued()) {
            for (const FileWrite &f : std::as_const(job.files))
                touched.append(f.name), dropped.insert(folderOf(f.name));
            if (!job.waited)
                after.append(job.what);
            job.ticket->settle(false, outcome.errorText, outcome.filesUnchanged);
        }
        QSet<int> folders;
        bool accounts = false;
        if (here) {
            for (const QString &name : std::as_const(touched))
                forgetEntry(c, name, &folders, &accounts);
        }
        QString text;
        if (outcome.filesUnchanged) {
            // The windows go back to what the files hold, then say why.
            for (int folder : std::as_const(folders))
                emit storeEvents().folderChanged(folder);
            if (accounts)
                emit storeEvents().accountsChanged();
            const QStringList lost = outcome.lost + after;
            if (!lost.isEmpty())
                text = texts::unsaved::NotSaved.arg(lost.join(u'\r'), outcome.errorText);
        } else {
            // Past its journal the change stands, as the windows show it;
            // the next look at its files finishes it. What queued behind it
            // is taken back, and the box says so too.
            for (int folder : std::as_const(folders)) {
                if (dropped.contains(folder))
                    emit storeEvents().folderChanged(folder);
            }
            if (!outcome.lost.isEmpty())
                text = texts::OperationIncomplete + u"\r\r"_s + outcome.errorText;
            if (!after.isEmpty())
                text += (text.isEmpty() ? QString() : u"\r\r"_s)
                    + texts::unsaved::NotSavedAfter.arg(after.join(u'\r'));
        }
        if (!text.isEmpty())
            prompter().message(Prompter::Icon::Exclamation, texts::AppTitle, text);
    }
    return allSaved;
}

// Whether a folder's file is as it stood when it could not be read: the
// user has been told, and it is not read again until it changes.
bool failedAsItStands(const CachedFolder &kept, int folder)
{
    return kept.failedOf && *kept.failedOf == signatureAt(AppFilePath(FolderFile::fileName(folder)));
}

void takeReadings()
{
    for (ReadResult &r : reader().takeResults()) {
        if (take(r)) {
            if (r.job.dir == theCache().dir)
                emit storeEvents().folderRead(r.job.folder);
            continue;
        }
        // The window's thread reads it itself: the box says why it cannot,
        // or where a file that is no data file went; once for the file as
        // it stands, though its count and its messages were both asked for.
        try {
            if (r.job.dir == AppDir() && !failedAsItStands(theCache().folders[r.job.folder], r.job.folder))
                folderRead(r.job.folder);
        } catch (const StoreError &error) {
            prompter().message(Prompter::Icon::Exclamation, texts::AppTitle, ErrorBoxText(error));
        }
        emit storeEvents().folderRead(r.job.folder);
    }
}

// Waits for the writer and, with reads, the reader until both have
// nothing left to do, taking what they did. A box shown meanwhile may come
// back here: the inner call leaves the waiting to the outer one.
bool flush(bool reads)
{
    static bool flushing = false;
    if (flushing)
        return true;
    flushing = true;
    if (reads)
        reader().release();
    bool allSaved = true;
    for (;;) {
        allSaved = takeOutcomes() && allSaved;
        if (reads)
            takeReadings();
        const bool writing = !writer().idle();
        const bool reading = reads && !reader().idle();
        if (!writing && !reading)
            break;
        if (writing)
            writer().waitForOutcome(reading ? 1 : 50);
        else
            reader().waitForResult(50);
    }
    flushing = false;
    return allSaved;
}

void drain()
{
    flush(true);
}

void takeAll()
{
    takeOutcomes();
    takeReadings();
}

}  // namespace

namespace store {

MailList Folder(int folder)
{
    return folderRead(folder).mails;
}

AccountList Accounts()
{
    return accountsRead().accounts;
}

bool InMemory(int folder)
{
    Cache &c = cache();
    CachedFolder &kept = c.folders[folder];
    if (kept.pending > 0)
        return true;
    if (!DataReadOnly() && QFileInfo::exists(AppFilePath(QLatin1StringView(JournalName)))
        && writer().idle())
        return false;
    return kept.stillHolds(AppFilePath(FolderFile::fileName(folder)), c.resolution);
}

bool ReadAhead(int folder)
{
    if (InMemory(folder))
        return false;
    Cache &c = cache();
    if (failedAsItStands(c.folders[folder], folder))
        return false;
    reader().submit({c.dir, folder, false});
    return true;
}

std::optional<FolderFigures> Figures(int folder)
{
    if (InMemory(folder)) {
        CachedFolder &kept = cache().folders[folder];
        if (kept.unread < 0)
            kept.unread = CountUnread(kept.mails);
        return FolderFigures{int(kept.mails.size()), kept.unread};
    }
    Cache &c = cache();
    CachedFolder &kept = c.folders[folder];
    if (kept.figures
        && kept.figuresOf == signatureAt(AppFilePath(FolderFile::fileName(folder))))
        return kept.figures;
    if (!failedAsItStands(kept, folder))
        reader().submit({c.dir, folder, true});
    return std::nullopt;
}

QByteArray DataFile(const QString &fileName)
{
    finishPendingChange();
    Cache &c = cache();
    CachedFile &kept = c.files[fileName];
    const QString path = AppFilePath(fileName);
    if (kept.stillHolds(path, c.resolution))
        return kept.content;
    const Signature before = signatureAt(path);
    kept.content = ProfileFile::load(path).bytes();
    kept.record(before, kept.content, c.resolution);
    return kept.content;
}

void HoldReading(int ms)
{
    reader().hold(ms);
}

void ReleaseReading()
{
    reader().release();
}

bool Flush()
{
    return flush(true);
}

void Forget()
{
    drain();
    Cache &c = theCache();
    c = Cache();
    c.dir = AppDir();
    c.resolution = clockResolutionNs(c.dir);
}

}  // namespace store

StoreEvents &storeEvents()
{
    static StoreEvents events;
    return events;
}

const MailList &FolderSet::read(int folder)
{
    auto it = m_folders.find(folder);
    if (it == m_folders.end()) {
        const CachedFolder &c = folderRead(folder);
        m_frames[folder] = c.frame;
        m_kept[folder] = c.mails;
        it = m_folders.emplace(folder, c.mails).first;
    }
    return it->second;
}

int FolderSet::unread(int folder)
{
    const MailList &mails = read(folder);
    CachedFolder &kept = cache().folders[folder];
    if (!kept.mails.isSameList(mails))
        return CountUnread(mails);
    if (kept.unread < 0)
        kept.unread = CountUnread(kept.mails);
    return kept.unread;
}

MailList &FolderSet::change(int folder)
{
    read(folder);
    m_changed.insert(folder);
    return m_folders[folder];
}

const AccountList &FolderSet::accounts()
{
    if (!m_accountsRead) {
        const CachedAccounts &c = accountsRead();
        m_accounts = c.accounts;
        m_accountsFrame = c.frame;
        m_accountsRead = true;
    }
    return m_accounts;
}

AccountList &FolderSet::changeAccounts()
{
    accounts();
    m_accountsChanged = true;
    return m_accounts;
}

void FolderSet::alsoWrite(const QString &fileName, const QByteArray &bytes)
{
    m_alsoWritten[fileName] = bytes;
}

void FolderSet::describe(const QString &what)
{
    m_what = what;
}

namespace {
CommitTicket submit(Job job)
{
    job.ticket = std::make_shared<CommitTicket::State>();
    CommitTicket ticket(job.ticket);
    storeEvents();  // made on this thread, before the writer posts to it
    writer().submit(std::move(job));
    return ticket;
}
}  // namespace

CommitTicket FolderSet::commit()
{
    if (m_changed.empty() && !m_accountsChanged && m_alsoWritten.empty())
        return CommitTicket(nullptr);
    if (m_accountsChanged && m_accounts.size() > MAX_MAILBOXES)
        throw IndexError(texts::TooManyAccounts);
    // A data folder that may not be written, or no longer (another copy
    // took it over), is known before anything changes.
    if (DataReadOnly())
        throw FileError(DataReadOnlyText());
    Cache &c = cache();
    QStringList names;
    for (int folder : m_changed)
        names.append(FolderFile::fileName(folder));
    if (m_accountsChanged)
        names.append(MailBoxFileName);
    for (const auto &[fileName, bytes] : m_alsoWritten)
        names.append(fileName);
    for (const QString &name : std::as_const(names))
        CheckReplaceable(c.dir, name);

    // What is kept is what a reading of the files to be written gives, so
    // lower-casing, trimming and cutting are exactly as the next start will
    // see them; the windows paint it before the disk has it.
    Job job;
    job.dir = c.dir;
    job.waited = m_waited;
    job.what = m_what.isEmpty() ? texts::unsaved::Files.arg(names.join(u"、"_s)) : m_what;
    for (int folder : m_changed) {
        MailList mails = std::move(m_folders[folder]);
        const MailList &before = m_kept[folder];
        const ChangedRecords changed = KeepAsRead(mails, before);
        CachedFolder &kept = c.folders[folder];
        // The unread count follows the records that changed, as long as it
        // was counted of the very list this command read.
        kept.unread = kept.unread >= 0 && kept.mails.isSameList(before)
            ? kept.unread + CountUnread(mails, changed.first, changed.last)
                - CountUnread(before, changed.first, changed.keptLast)
            : -1;
        kept.mails = mails;
        kept.frame = m_frames[folder];
        kept.figures.reset();
        ++kept.pending;
        job.files.append({FolderFile::fileName(folder), true, std::move(mails), m_frames[folder], {}});
    }
    if (m_accountsChanged) {
        const QByteArray bytes = AccountBytes(m_accounts, m_accountsFrame);
        AccountsReading kept = ReadAccounts(ProfileFile::parse(bytes));
        c.accounts.accounts = std::move(kept.accounts);
        c.accounts.frame = std::move(kept.sections.frame);
        ++c.accounts.pending;
        job.files.append({MailBoxFileName, false, {}, {}, bytes});
    }
    for (const auto &[fileName, bytes] : m_alsoWritten) {
        CachedFile &kept = c.files[fileName];
        kept.content = ToGb18030(bytes);
        ++kept.pending;
        job.files.append({fileName, false, {}, {}, bytes});
    }
    const std::set<int> changed = std::exchange(m_changed, {});
    const bool accounts = std::exchange(m_accountsChanged, false);
    m_folders.clear();
    m_kept.clear();
    m_alsoWritten.clear();

    const CommitTicket ticket = submit(std::move(job));
    for (int folder : changed)
        emit storeEvents().folderChanged(folder);
    if (accounts)
        emit storeEvents().accountsChanged();
    return ticket;
}

void FolderSet::commitAndWait()
{
    // Its own failure is this caller's to tell, as a failure at once is.
    const bool any = !m_changed.empty() || m_accountsChanged || !m_alsoWritten.empty();
    if (!any)
        return;
    m_waited = true;
    const CommitTicket ticket = commit();
    // The outcomes are taken here as they come, since a commit queued behind
    // a failure is only dropped once the failure is taken.
    while (!ticket.done()) {
        takeOutcomes();
        writer().waitForOutcome(20);
    }
    takeOutcomes();
    if (!ticket.wait())
        throw FileError(ticket.errorText(), ticket.filesUnchanged());
}

void AppendMail(MailList &folder, const EmailRec &m)
{
    folder.append(m);
}
