#pragma once

#include "folders.h"
#include "recordfile.h"
#include "records.h"

#include <QList>
#include <QObject>

#include <map>
#include <memory>
#include <optional>
#include <set>

class ProfileFile;

using AccountList = QList<MailBoxRec>;

// The folder files and the account file as the program holds them. Each
// file is read once and kept; it is read again only when it changed on the
// disk behind the program's back (another size, time or inode), so every
// caller still sees what the files hold. While a change of a file is on its
// way to the disk, what is kept is the authority: the disk is only behind.
// A file that is not a data file at all is set aside under a name that keeps
// it, the user is told where, and it reads as empty from then on.
//
// Everything here is asked on the window's thread. Files are written by one
// writer of their own, behind the windows (see FolderSet::commit), and
// folders not yet in memory can be read by a reader of their own.
namespace store {

// The messages of folder 0..5 in record order. Throws FileError when the
// file cannot be read. A count that is not the number of records, and
// records holding bytes no text holds (saved beside the file before
// anything else), are told once.
MailList Folder(int folder);
// The accounts of mailbox.dat, as many as its "number" says.
AccountList Accounts();

// Whether Folder(folder) answers from memory, without reading its file.
bool InMemory(int folder);
// Reads a folder that is not in memory on the reader's thread, ahead of
// what it was asked to read before; StoreEvents::folderRead follows. False
// when nothing is to be read there: the folder is in memory, or its file,
// as it stands, could not be read (Folder() then says why).
bool ReadAhead(int folder);
// How many messages a folder holds and how many are unread: from memory,
// or from a count of the file's records and their isnew lines made on the
// reader's thread. Nothing until that count is made; folderRead follows.
std::optional<FolderFigures> Figures(int folder);

// Readings off the window's thread wait until ReleaseReading() or for ms at
// most, as they do while the window is made and first painted. Flush()
// releases them.
void HoldReading(int ms);
void ReleaseReading();

// Another file of the data folder (class.dat) as ProfileFile::load gives
// its bytes: what the last commit gave it, whether the disk has it yet or
// not, else what the disk holds.
QByteArray DataFile(const QString &fileName);

// Waits until every commit made so far is on the disk or has failed, and
// every read begun has ended, and takes their outcomes here: a failure puts
// what is kept back to what the files hold and tells the user. True when no
// commit failed meanwhile.
bool Flush();
// Flush(), then forgets what was read; the next question reads the files
// again.
void Forget();

}  // namespace store

// The changes the program made to its files, for the windows that show
// them: the main window redraws from these and from nothing else.
class StoreEvents : public QObject
{
    Q_OBJECT

signals:
    // What is kept of a folder changed: a command changed it, or a change
    // that could not be saved was taken back.
    void folderChanged(int folder);
    void accountsChanged();
    // A folder's messages, or its figures, came from its file off the
    // window's thread.
    void folderRead(int folder);
};
StoreEvents &storeEvents();

// A commit on its way to the disk, for whoever must know that it is there
// before going on.
class CommitTicket
{
public:
    // Blocks until the commit is on the disk or has failed; true when it is
    // there. Any thread but the window's, whose own wait is
    // FolderSet::commitAndWait.
    bool wait() const;
    bool done() const;
    // Once it failed: why, and whether the files were left as they were.
    QString errorText() const;
    bool filesUnchanged() const;

    struct State;
    explicit CommitTicket(std::shared_ptr<State> state) : m_state(std::move(state)) {}

private:
    std::shared_ptr<State> m_state;
};

// The folders and accounts one command reads and changes, written back as
// one unit by commit(): all of them or, on any failure, none.
class FolderSet
{
public:
    const MailList &read(int folder);
    MailList &change(int folder);
    // How many messages of read(folder) are unread: the count the store
    // keeps, while the folder is as it was read.
    int unread(int folder);
    const AccountList &accounts();
    AccountList &changeAccounts();
    // Another file of the data folder (the class record), replaced in the
    // same unit as the folders.
    void alsoWrite(const QString &fileName, const QByteArray &bytes);
    // What the user is told was not saved, should the disk refuse the
    // change after the windows showed it: one line, from texts::unsaved.
    void describe(const QString &what);

    // Refuses at once, with IndexError (a 22nd account) or FileError (a data
    // folder that may not be written, a folder or a read-only file where a
    // file goes), before anything changes. Otherwise the change is kept at
    // once, the windows are told and paint it, and the writer puts it on the
    // disk behind them, after the commits before it, merged with those
    // still waiting. Should the disk refuse it there, every window goes back
    // to what the files hold and the user is told what was not saved.
    CommitTicket commit();
    // commit(), and waits until the change is on the disk: for a change that
    // exists nowhere else but in a window, such as a message just written,
    // which stays there when it cannot be saved. Throws FileError then, as
    // commit() throws at once, and it is for the caller to tell the user.
    void commitAndWait();

private:
    std::map<int, MailList> m_folders;
    std::map<int, MailList> m_kept;  // each folder as it was kept when read
    std::map<int, FileFrame> m_frames;  // the rest of each file read
    FileFrame m_accountsFrame = PlainFrame();
    std::set<int> m_changed;
    AccountList m_accounts;
    bool m_accountsRead = false;
    bool m_accountsChanged = false;
    std::map<QString, QByteArray> m_alsoWritten;
    QString m_what;
    bool m_waited = false;
};

// Appends m to a folder being changed, as its last record.
void AppendMail(MailList &folder, const EmailRec &m);
