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

#include <cerrno>
#include <optional>
#include <sys/stat.h>

using namespace Qt::Literals::StringLiterals;

namespace {

// What tells a file apart from the one read before: a file rewritten by
// anyone gets a new inode (a rename), a new time or a new size.
struct Signature
{
    bool exists = false;
    dev_t device = 0;
    ino_t inode = 0;
    off_t size = 0;
    qint64 seconds = 0;
    qint64 nanoseconds = 0;

    friend bool operator==(const Signature &a, const Signature &b)
    {
        return a.exists == b.exists && a.device == b.device && a.inode == b.inode
            && a.size == b.size && a.seconds == b.seconds && a.nanoseconds == b.nanoseconds;
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
    s.seconds = st.st_mtim.tv_sec;
    s.nanoseconds = st.st_mtim.tv_nsec;
    return s;
}

struct CachedFolder
{
    std::optional<Signature> signature;  // none: not read yet
    MailList mails;
    // Bytes the program wrote and has not read back yet: a folder a
    // command changed but no window shows costs no reading.
    QByteArray written;
};

struct CachedAccounts
{
    std::optional<Signature> signature;
    ProfileFile file;
    AccountList accounts;
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
// sections prefix1, prefix2, ... Bytes that are no such file at all are
// set aside and read as an empty file. What a hand edit can do to a real
// data file (a wrong count, a value cut short) is left to the loaders.
ProfileFile readDataFile(const QString &fileName, QByteArrayView header, QByteArrayView prefix)
{
    ProfileFile file = ProfileFile::load(AppFilePath(fileName));
    if (file.isBlank())
        return file;
    const bool notData = file.isBinary() || !file.hasSection(header)
        || (!startsWithDigit(file.value(header, "number")) && file.hasNumberedSection(prefix));
    if (!notData)
        return file;
    setAside(fileName);
    return ProfileFile();
}

}  // namespace

namespace store {

MailList Folder(int folder)
{
    CachedFolder &c = cache().folders[folder];
    const QString name = FolderFile::fileName(folder);
    Signature now = signatureOf(name);
    if (c.signature && *c.signature == now) {
        if (!c.written.isNull()) {
            c.mails = ParseFolder(folder, ProfileFile::parse(c.written));
            c.written = QByteArray();
        }
        return c.mails;
    }
    c.written = QByteArray();
    const ProfileFile file = readDataFile(name, "email", "email-");
    MailList mails = ParseFolder(folder, file);
    if (!QFileInfo::exists(AppFilePath(name)))
        now = Signature();  // set aside just now
    c.mails = std::move(mails);
    c.signature = now;
    return c.mails;
}

namespace {
CachedAccounts &accountsRead()
{
    CachedAccounts &c = cache().accounts;
    Signature now = signatureOf(MailBoxFileName);
    if (c.signature && *c.signature == now)
        return c;
    ProfileFile file = readDataFile(MailBoxFileName, "mailbox", "mailbox-");
    AccountList accounts = ParseAccounts(file, 0);
    if (!QFileInfo::exists(AppFilePath(MailBoxFileName)))
        now = Signature();
    c.file = std::move(file);
    c.accounts = std::move(accounts);
    c.signature = now;
    return c;
}
}  // namespace

AccountList Accounts()
{
    return accountsRead().accounts;
}

AccountList Accounts(int count)
{
    return ParseAccounts(accountsRead().file, count);
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
    if (it == m_folders.end())
        it = m_folders.emplace(folder, store::Folder(folder)).first;
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
        m_accounts = store::Accounts();
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

void FolderSet::commit()
{
    for (int folder : m_changed) {
        if (m_folders[folder].size() > MAX_FOLDER_MAILS)
            throw IndexError(texts::TooManyMails);
    }
    if (m_accountsChanged && m_accounts.size() > MAX_MAILBOXES)
        throw IndexError(texts::TooManyAccounts);

    FileCommit files;
    std::map<int, QByteArray> written;
    for (int folder : m_changed) {
        written[folder] = FolderBytes(m_folders[folder]);
        files.add(FolderFile::fileName(folder), written[folder]);
    }
    QByteArray accountBytes;
    if (m_accountsChanged) {
        accountBytes = AccountBytes(m_accounts);
        files.add(MailBoxFileName, accountBytes);
    }

    const auto tell = [this] {
        for (int folder : m_changed)
            emit storeEvents().folderChanged(folder);
        if (m_accountsChanged)
            emit storeEvents().accountsChanged();
    };
    try {
        files.run();
    } catch (const StoreError &error) {
        // Files that did change are read afresh, and the windows shown what
        // they now hold.
        if (!error.filesUnchanged()) {
            store::Forget();
            tell();
        }
        throw;
    }

    // What is kept is what a reading of the files just written gives, so
    // lower-casing, trimming and cutting are exactly as the next start
    // will see them.
    Cache &c = cache();
    for (const auto &[folder, bytes] : written) {
        CachedFolder &cached = c.folders[folder];
        cached.mails.clear();
        cached.written = bytes;
        cached.signature = signatureOf(FolderFile::fileName(folder));
    }
    if (m_accountsChanged) {
        c.accounts.file = ProfileFile::parse(accountBytes);
        c.accounts.accounts = ParseAccounts(c.accounts.file, 0);
        c.accounts.signature = signatureOf(MailBoxFileName);
    }
    tell();
}

void AppendMail(MailList &folder, const EmailRec &m)
{
    if (folder.size() >= MAX_FOLDER_MAILS)
        throw IndexError(texts::TooManyMails);
    folder.append(m);
    folder.last().index = int(folder.size() - 1);
}
