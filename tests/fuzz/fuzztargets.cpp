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

void check(bool promise, const char *what) { if (!promise) qFatal("broken: %s", what); }

QStringList idsOf(const MailList &mails) { return testsupport::fieldOf(mails, &EmailRec::id); }

// Only the errors the loaders document end a load; anything else escapes.
void loadQuietly(const std::function<void()> &load)
{
    try { load(); } catch (const IndexError &) {} catch (const FormatError &) {}
}

// Loading never loses bytes: the file stands as it was (its parts that
// cannot be shown copied beside it), or it was set aside whole and the
// folder reads as empty.
void loadKeepsBytes(const QString &name, const QByteArray &bytes, const std::function<void()> &load)
{
    const DataDir dir;
    dir.writeBytes(name, bytes);
    loadQuietly(load);
    const QStringList left = dir.entries();
    const QString aside = name + u".damaged-"_s;
    const bool whole = left.size() == 1 && left[0].startsWith(aside) && dir.readBytes(left[0]) == bytes;
    const bool kept = !left.isEmpty() && left[0] == name && dir.readBytes(name) == bytes
        && left.size() <= 2 && (left.size() == 1 || left[1].startsWith(aside));
    check(whole || kept, "bytes kept, under the file's name or set aside");
}
}  // namespace

int FuzzReader(const uint8_t *data, size_t size)
{
    const ProfileFile file = ProfileFile::parse(QByteArray(reinterpret_cast<const char *>(data), qsizetype(size)));
    // What the program writes from what it read, it reads back as a data file
    // (never one to set aside): the same records, each as the bytes it was
    // read from, no error; and what it keeps is what that reading gives.
    loadQuietly([&] {
        const FolderReading reading = ReadFolder(file);
        // The count made at start-up without decoding the messages.
        const FolderFigures figures = FiguresOf(file);
        check(figures.total == reading.mails.size() && figures.unread == CountUnread(reading.mails),
              "figures as the folder reads");
        const FileFrame &frame = reading.sections.frame;
        const FileImage image = FolderImage(reading.mails, frame);
        const ProfileFile written = ProfileFile::parse(image.bytes);
        check(!written.isBinary() || HoldsBinary(QByteArray(frame.prelude + frame.headerBefore + frame.headerAfter)),
              "folder written as text");
        const FolderReading readBack = ReadFolder(written);
        check(idsOf(reading.mails) == idsOf(readBack.mails), "folder read back");
        check(!readBack.sections.countDisagrees() && readBack.sections.setAside.isEmpty(), "folder written whole");
        MailList kept = reading.mails;
        if (ReadsAsGb18030(image.bytes)) {
            KeepAsRead(kept);
            check(testsupport::sameAsStored(kept, readBack.mails), "folder kept as read");
        }
        // Bytes that pass for UTF-8 are read as such, and so change; others
        // are written again as they were read.
        check(!ReadsAsGb18030(image.bytes) || FolderImage(readBack.mails, readBack.sections.frame).bytes == image.bytes,
              "folder written again as it was read");
        // A changed record keeps its other lines; it reads back as changed.
        if (!readBack.mails.isEmpty()) {
            MailList changed = readBack.mails;
            changed[0].isnew = changed[0].isnew == u"1" ? u"0"_s : u"1"_s;
            changed.last().subject += u"x"_s;
            const FileImage again = FolderImage(changed, frame);
            const FolderReading after = ReadFolder(ProfileFile::parse(again.bytes));
            check(after.mails.first().isnew == changed.first().isnew && after.mails.size() == changed.size(),
                  "changed record read back");
            if (ReadsAsGb18030(again.bytes)) {
                KeepAsRead(changed);
                check(testsupport::sameAsStored(changed, after.mails), "changed folder kept as read");
            }
        }
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
