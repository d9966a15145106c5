#pragma once

#include "recordfile.h"
#include "records.h"

#include <QList>
#include <QObject>

#include <map>
#include <set>

class ProfileFile;

using MailList = QList<EmailRec>;
using AccountList = QList<MailBoxRec>;

// The folder files and the account file as the program last read or wrote
// them. Each file is read once and kept; it is read again only when it
// changed on the disk behind the program's back (another size, time or
// inode), so every caller still sees what the files hold. A file that is
// not a data file at all is set aside under a name that keeps it, the user
// is told where, and it reads as empty from then on.
namespace store {

// The messages of folder 0..5 in record order. Throws IndexError for more
// than 101, FileError when the file cannot be read. A count that is not the
// number of records, and records holding bytes no text holds (saved beside
// the file before anything else), are told once.
MailList Folder(int folder);
// The accounts of mailbox.dat, as many as its "number" says.
AccountList Accounts();
// The accounts of mailbox.dat read by a count given from outside, which
// the file's "number" does not overrule.
AccountList Accounts(int count);
// Forgets what was read; the next question reads the files again.
void Forget();

}  // namespace store

// The changes the program made to its files, for the windows that show
// them: the main window redraws from these and from nothing else.
class StoreEvents : public QObject
{
    Q_OBJECT

signals:
    void folderChanged(int folder);
    void accountsChanged();
};
StoreEvents &storeEvents();

// The folders and accounts one command reads and changes, written back as
// one unit by commit(): all of them or, on any failure, none.
class FolderSet
{
public:
    const MailList &read(int folder);
    MailList &change(int folder);
    const AccountList &accounts();
    AccountList &changeAccounts();
    // Another file of the data folder (the class record), replaced in the
    // same unit as the folders.
    void alsoWrite(const QString &fileName, const QByteArray &bytes);

    // Throws IndexError (a folder above 101 messages, 21 accounts) or
    // FileError before anything is written; then tells the windows. A
    // failure tells them nothing: its own box is all the user sees of it.
    void commit();

private:
    std::map<int, MailList> m_folders;
    std::map<int, FileFrame> m_frames;  // the rest of each file read
    FileFrame m_accountsFrame = PlainFrame();
    std::set<int> m_changed;
    AccountList m_accounts;
    bool m_accountsRead = false;
    bool m_accountsChanged = false;
    std::map<QString, QByteArray> m_alsoWritten;
};

// Appends m to a folder being changed; a 102nd message ends the command
// before anything is written.
void AppendMail(MailList &folder, const EmailRec &m);
