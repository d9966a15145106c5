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
#include <optional>
#include <sys/stat.h>
#include <time.h>

using namespace Qt::Literals::StringLiterals;

namespace {

// What tells a file apart from the one read before: a file rewritten by
// anyone gets a new inode (a rename), a new time or a new size. A time is
// only as fine as the file system's clock, though (a few milliseconds, two
// seconds on a memory stick), so a file whose time lies that close to the
// moment it was read can change again without its time showing it: for
// such a file the bytes themselves are kept and compared.
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

Signature signatureOf(const QString &fileName)
{
    Signature s;
    struct stat st;
    if (::stat(QFile::encodeName(AppFilePath(fileName)).constData(), &st) != 0)
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

constexpr qint64 ClockResolutionNs = 2'000'000'000;

// One file as last read or written.
struct Cached
{
    std::optional<Signature> signature;  // none: not read yet
    QByteArray bytes;  // kept only while its time cannot be trusted

    void record(const Signature &s, const QByteArray &content)
    {
        signature = s;
        const bool racy = s.exists && s.modified + ClockResolutionNs > wallClockNs();
        bytes = racy ? content : QByteArray();
    }

    bool stillHolds(const QString &fileName)
    {
        if (!signature || !(*signature == signatureOf(fileName)))
            return false;
        if (bytes.isNull())
            return true;
        QFile file(AppFilePath(fileName));
        if (!file.open(QIODevice::ReadOnly) || ToGb18030(file.readAll()) != bytes)
            return false;
        // Once the clock has moved past the file's time, any change to come
        // shows in the time, and the bytes need not be read again.
        if (signature->modified + ClockResolutionNs <= wallClockNs())
            bytes = QByteArray();
        return true;
    }
};

struct CachedFolder : Cached
{
    MailList mails;
    FileFrame frame = PlainFrame();
};

struct CachedAccounts : Cached
{
    AccountList accounts;
    FileFrame frame = PlainFrame();
};

struct Cache
{
    QString dir;
    CachedFolder folders[FolderFile::Count];
    CachedAccounts accounts;
};

// Everything read belongs to one data folder; tests and --data-dir may
// point the program at another.
Cache &cache()
{
    static Cache c;
    if (c.dir != AppDir()) {
        c = Cache();
        c.dir = AppDir();
    }
    return c;
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

// Reads a data file whose first section is header and whose records are
// sections prefix1, prefix2, ... Bytes that are no such file at all (no
// header, a count that is no number over records, or bytes no text holds
// before the first record) are set aside whole and read as an empty file.
// What a hand edit or another tool can do to a real data file (a wrong
// count, a long value, a damaged record) is left to the record reader.
ProfileFile readDataFile(const QString &fileName, QByteArrayView header, QByteArrayView prefix)
{
    ProfileFile file = ProfileFile::load(AppFilePath(fileName));
    if (file.isBlank())
        return file;
    bool binaryHead = file.isBinary() && HoldsBinary(file.prelude());
    for (qsizetype i = 0; i < file.sectionCount() && file.isBinary() && !binaryHead; ++i) {
        if (file.sectionName(i) == header) {
            binaryHead = file.sectionIsBinary(i);
            break;
        }
    }
    const bool notData = binaryHead || !file.hasSection(header)
        || (!startsWithDigit(file.value(header, "number")) && file.hasNumberedSection(prefix));
    if (!notData)
        return file;
    setAside(fileName);
    return ProfileFile();
}
// A change whose journal stands was made but not finished (its renames
// failed, or a kill came between): it is finished before anything is read,
// so that no command builds on half of it and then undoes the rest.
void finishPendingChange()
{
    if (DataReadOnly() || !QFileInfo::exists(AppFilePath(QLatin1StringView(JournalName))))
        return;
    RecoverDataFolder();
    cache() = Cache();
    cache().dir = AppDir();
}

}  // namespace

namespace {
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

CachedFolder &folderRead(int folder)
{
    finishPendingChange();
    CachedFolder &c = cache().folders[folder];
    const QString name = FolderFile::fileName(folder);
    if (c.stillHolds(name))
        return c;
    // The signature is taken before the reading, so that a change during
    // it shows at the next question.
    const Signature before = signatureOf(name);
    const ProfileFile file = readDataFile(name, "email", "email-");
    FolderReading reading = ReadFolder(folder, file);
    keepAndTell(name, before, reading.sections, texts::MailCountDisagrees);
    c.mails = std::move(reading.mails);
    c.frame = std::move(reading.sections.frame);
    c.record(QFileInfo::exists(AppFilePath(name)) ? before : Signature(), file.bytes());
    return c;
}

CachedAccounts &accountsRead()
{
    finishPendingChange();
    CachedAccounts &c = cache().accounts;
    if (c.stillHolds(MailBoxFileName))
        return c;
    const Signature before = signatureOf(MailBoxFileName);
    const ProfileFile file = readDataFile(MailBoxFileName, "mailbox", "mailbox-");
    AccountsReading reading = ReadAccounts(file);
    keepAndTell(MailBoxFileName, before, reading.sections, texts::AccountCountDisagrees);
    c.accounts = std::move(reading.accounts);
    c.frame = std::move(reading.sections.frame);
    c.record(QFileInfo::exists(AppFilePath(MailBoxFileName)) ? before : Signature(), file.bytes());
    return c;
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

AccountList Accounts(int count)
{
    if (count > MAX_MAILBOXES)
        throw IndexError(texts::TooManyAccounts);
    AccountList accounts = accountsRead().accounts;
    if (count != 0)
        accounts.resize(qMax(count, 0));
    return accounts;
}

void Forget()
{
    cache() = Cache();
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
        it = m_folders.emplace(folder, c.mails).first;
    }
    return it->second;
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

void FolderSet::commit()
{
    for (int folder : m_changed) {
        if (m_folders[folder].size() > MAX_FOLDER_MAILS)
            throw IndexError(texts::TooManyMails);
    }
    if (m_accountsChanged && m_accounts.size() > MAX_MAILBOXES)
        throw IndexError(texts::TooManyAccounts);

    FileCommit files;
    std::map<int, FileImage> written;
    for (int folder : m_changed) {
        FileImage &image = written[folder] = FolderImage(m_folders[folder], m_frames[folder]);
        files.add(FolderFile::fileName(folder), image.bytes);
    }
    QByteArray accountBytes;
    if (m_accountsChanged) {
        accountBytes = AccountBytes(m_accounts, m_accountsFrame);
        files.add(MailBoxFileName, accountBytes);
    }
    for (const auto &[fileName, bytes] : m_alsoWritten)
        files.add(fileName, bytes);

    try {
        files.run();
    } catch (const StoreError &error) {
        // Files that did change are read afresh at the next look. The
        // windows are not told from here: they would read at once, and a
        // reading that fails too would show a second box for this one
        // failure, whose box the user is about to see.
        if (!error.filesUnchanged())
            store::Forget();
        throw;
    }

    // What is kept is what a reading of the files just written gives, so
    // lower-casing, trimming and cutting are exactly as the next start
    // will see them.
    Cache &c = cache();
    for (const auto &[folder, image] : written) {
        CachedFolder &cached = c.folders[folder];
        FolderReading kept = FolderAsRead(folder, m_folders[folder], m_frames[folder], image);
        cached.mails = std::move(kept.mails);
        cached.frame = std::move(kept.sections.frame);
        cached.record(signatureOf(FolderFile::fileName(folder)), image.bytes);
    }
    if (m_accountsChanged) {
        AccountsReading kept = ReadAccounts(ProfileFile::parse(accountBytes));
        c.accounts.accounts = std::move(kept.accounts);
        c.accounts.frame = std::move(kept.sections.frame);
        c.accounts.record(signatureOf(MailBoxFileName), accountBytes);
    }
    for (int folder : m_changed)
        emit storeEvents().folderChanged(folder);
    if (m_accountsChanged)
        emit storeEvents().accountsChanged();
}

void AppendMail(MailList &folder, const EmailRec &m)
{
    if (folder.size() >= MAX_FOLDER_MAILS)
        throw IndexError(texts::TooManyMails);
    folder.append(m);
    folder.last().index = int(folder.size() - 1);
}
