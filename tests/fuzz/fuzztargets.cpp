#include "fuzztargets.h"

#include "store/commit.h"
#include "store/errors.h"
#include "store/folders.h"
#include "store/mailboxes.h"
#include "store/mailstore.h"
#include "store/profile.h"
#include "testsupport.h"

#include <functional>
#include <optional>

using namespace Qt::Literals::StringLiterals;
using testsupport::DataDir;

namespace {

void check(bool promise, const char *what)
{
    if (!promise)
        qFatal("broken: %s", what);
}

QStringList idsOf(const MailList &mails)
{
    QStringList ids;
    for (const EmailRec &m : mails)
        ids << m.id;
    return ids;
}

// Only the errors the loaders document end a load; anything else escapes.
void loadQuietly(const std::function<void()> &load)
{
    try {
        load();
    } catch (const IndexError &) {
    } catch (const FormatError &) {
    }
}

// Loading never loses bytes: the file stands as it was, or it was set
// aside whole and the folder reads as empty.
void loadKeepsBytes(const QString &name, const QByteArray &bytes, const std::function<void()> &load)
{
    const DataDir dir;
    dir.writeBytes(name, bytes);
    loadQuietly(load);
    const QStringList left = dir.entries();
    check(left.size() == 1 && left[0].section(u".damaged-"_s, 0, 0) == name
              && dir.readBytes(left[0]) == bytes, "bytes kept, under the file's name or set aside");
}

}  // namespace

int FuzzReader(const uint8_t *data, size_t size)
{
    const ProfileFile file =
        ProfileFile::parse(QByteArray(reinterpret_cast<const char *>(data), qsizetype(size)));
    file.isBlank();
    file.hasNumberedSection("email-");
    for (int buffer : {0, 1, 2, 3, 4, 5, ProfileFile::ValueBuffer})
        file.value("email-1", "subject", buffer);

    // What the program writes from what it read, it reads back as a data file
    // (never one to set aside): as many messages under the same ids, no error.
    loadQuietly([&] {
        const MailList mails = ParseFolder(FolderFile::Inbox, file);
        const QByteArray bytes = FolderBytes(mails);
        const ProfileFile written = ProfileFile::parse(bytes);
        check(!written.isBinary(), "folder written as text");
        const MailList readBack = ParseFolder(FolderFile::Inbox, written);
        check(idsOf(mails) == idsOf(readBack), "folder read back");
        check(FolderAsRead(FolderFile::Inbox, mails, bytes) == readBack, "folder kept as read");
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
    SetSyncing(false);  // syncs only cost time: nothing survives a crash of this run
    const QByteArray bytes(reinterpret_cast<const char *>(data), qsizetype(size));
    const QString inbox = FolderFile::fileName(FolderFile::Inbox);
    std::optional<MailList> loaded;
    loadKeepsBytes(inbox, bytes, [&] { loaded = store::Folder(FolderFile::Inbox); });
    loadKeepsBytes(MailBoxFileName, bytes, [] { store::Accounts(); });

    // A folder the program loaded it can save and load again unchanged in
    // number and ids, and it is never taken for a damaged file.
    if (loaded) {
        const DataDir dir;
        FolderSet set;
        set.change(FolderFile::Inbox) = *loaded;
        set.commit();
        store::Forget();
        check(idsOf(store::Folder(FolderFile::Inbox)) == idsOf(*loaded), "saved folder read back");
        check(dir.entries() == QStringList{inbox}, "saved folder kept");
    }
    return 0;
}
