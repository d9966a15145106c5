#include "fuzztargets.h"

#include "store/appdir.h"
#include "store/commit.h"
#include "store/errors.h"
#include "store/folders.h"
#include "store/mailboxes.h"
#include "store/mailstore.h"
#include "store/profile.h"

#include <QDir>
#include <QFile>
#include <QTemporaryDir>

#include <cstdio>
#include <cstdlib>

using namespace Qt::Literals::StringLiterals;

namespace {

void check(bool promise, const char *what)
{
    if (!promise) {
        std::fprintf(stderr, "broken: %s\n", what);
        std::abort();
    }
}

bool sameIds(const MailList &a, const MailList &b)
{
    if (a.size() != b.size())
        return false;
    for (qsizetype i = 0; i < a.size(); ++i) {
        if (a[i].id != b[i].id)
            return false;
    }
    return true;
}

// Only the errors the loaders document end a load; anything else escapes.
template<typename Load>
void loadQuietly(Load load)
{
    try {
        load();
    } catch (const IndexError &) {
    } catch (const FormatError &) {
    }
}

QDir &dataFolder()
{
    static QTemporaryDir dir;
    static QDir folder = [] {
        SetAppDir(dir.path());
        // Syncs only cost time here: nothing survives a crash of this run.
        SetSyncing(false);
        return QDir(dir.path());
    }();
    return folder;
}

void emptyDataFolder()
{
    for (const QString &name : dataFolder().entryList(QDir::Files | QDir::Hidden))
        dataFolder().remove(name);
}

// Loading never loses bytes: the file stands as it was, or it was set
// aside whole and the folder reads as empty.
template<typename Load>
void loadKeepsBytes(const QString &fileName, const QByteArray &bytes, Load load)
{
    emptyDataFolder();
    QFile file(dataFolder().filePath(fileName));
    check(file.open(QIODevice::WriteOnly) && file.write(bytes) == bytes.size(), "fixture");
    file.close();
    store::Forget();
    loadQuietly(load);
    const QStringList left = dataFolder().entryList(QDir::Files | QDir::Hidden);
    check(left.size() == 1, "one file in the folder");
    QFile kept(dataFolder().filePath(left.first()));
    check(kept.open(QIODevice::ReadOnly) && kept.readAll() == bytes, "bytes kept");
    check(left.first() == fileName || left.first().startsWith(fileName + u".damaged-"_s),
          "kept under its name or set aside");
}

}  // namespace

int FuzzReader(const uint8_t *data, size_t size)
{
    const ProfileFile file =
        ProfileFile::parse(QByteArray(reinterpret_cast<const char *>(data), qsizetype(size)));
    file.isBlank();
    file.isBinary();
    file.hasNumberedSection("email-");
    for (int buffer : {0, 1, 2, 3, 4, 5, ProfileFile::ValueBuffer})
        file.value("email-1", "subject", buffer);

    // What the program writes from what it read, it reads back as a data
    // file (never one to set aside): as many messages under the same ids,
    // and no error.
    loadQuietly([&] {
        const MailList mails = ParseFolder(FolderFile::Inbox, file);
        const ProfileFile written = ProfileFile::parse(FolderBytes(mails));
        check(!written.isBinary(), "folder written as text");
        check(sameIds(mails, ParseFolder(FolderFile::Inbox, written)), "folder read back");
    });
    loadQuietly([&] {
        const AccountList accounts = ParseAccounts(file, 0);
        const ProfileFile written = ProfileFile::parse(AccountBytes(accounts));
        check(!written.isBinary(), "accounts written as text");
        check(ParseAccounts(written, 0).size() == accounts.size(), "accounts read back");
    });
    return 0;
}

int FuzzLoad(const uint8_t *data, size_t size)
{
    const QByteArray bytes(reinterpret_cast<const char *>(data), qsizetype(size));
    const QString inbox = FolderFile::fileName(FolderFile::Inbox);
    MailList mails;
    bool loaded = false;
    loadKeepsBytes(inbox, bytes, [&] {
        mails = store::Folder(FolderFile::Inbox);
        loaded = true;
    });
    loadKeepsBytes(MailBoxFileName, bytes, [] { store::Accounts(); });

    // A folder the program loaded it can save and load again unchanged in
    // number and ids, and it is never taken for a damaged file.
    if (loaded) {
        emptyDataFolder();
        store::Forget();
        FolderSet set;
        set.change(FolderFile::Inbox) = mails;
        set.commit();
        store::Forget();
        check(sameIds(store::Folder(FolderFile::Inbox), mails), "saved folder read back");
        check(dataFolder().entryList(QDir::Files | QDir::Hidden) == QStringList{inbox},
              "saved folder kept");
    }
    return 0;
}
