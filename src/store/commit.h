#pragma once

#include <QByteArray>
#include <QList>
#include <QString>
#include <QStringList>

#include <functional>

// Replacing the data files so that no message is ever lost or doubled.
//
// Each new file is written beside the old one as NAME.new; every byte is
// checked and the file synced before it may replace the old one, so a full
// disk or a power cut never leaves a short or empty file. Several files are
// replaced as one unit: once all of them are written and synced, a small
// journal naming them is put in place, and that moment is when the change
// counts as made; then come the renames, then the journal goes. A kill
// before the journal leaves every old file as it was, a kill after it is
// finished by the next start-up (RecoverDataFolder). A failure before the
// journal throws FileError with every file unchanged.
// It works in the folder it was made for, whatever AppDir() says later,
// and touches nothing else, so that the store's writer runs it on a thread
// of its own.
class FileCommit
{
public:
    explicit FileCommit(const QString &dir);
    // A file of the data folder, to be replaced by bytes.
    void add(const QString &fileName, const QByteArray &bytes);
    bool isEmpty() const { return m_files.isEmpty(); }

    // Throws FileError. When the renames themselves fail after the journal,
    // the error says that the change will be completed at the next start.
    // Whether the folder may be written at all is for the caller to ask.
    void run();

private:
    struct File
    {
        QString name;
        QByteArray bytes;
    };
    QString m_dir;
    QList<File> m_files;
};

// Throws FileError, before anything is written, for a file of dir that no
// commit could replace: a folder in its place, or a file set read-only.
void CheckReplaceable(const QString &dir, const QString &fileName);

// Run once at start-up, before anything is read: completes a commit that a
// kill interrupted after its journal, and removes the temporary files of
// one interrupted before it (with those an older version left behind).
// Throws FileError when an interrupted commit cannot be completed, and when
// a journal stands that cannot be opened or read: then nothing is touched,
// since the files it names may be the only copy of a change.
void RecoverDataFolder(const QString &dir);
void RecoverDataFolder();  // of AppDir()

// Writes bytes as a new file of the data folder whose name begins with stem
// (a date follows, and a number when that name is taken), synced to the
// disk with its folder, and returns the name. When a file of that stem
// already holds exactly these bytes, its name is returned and nothing is
// written, so that a start after a kill does not keep a second copy.
// Throws FileError.
QString WriteAside(const QString &stem, const QByteArray &bytes);
// The files a journal standing in dir names: a change that counts as made,
// whose NAME.new files hold what the folder says until the next start
// moves them into place. Empty when no whole journal stands there. Reads
// only, for a look at a folder that another copy may hold.
QStringList StandingChange(const QString &dir);

// The Chinese reason for a failed file operation, by errno: what the user
// can act on (disk full, no permission, a folder in the file's place).
QString FileFailureReason(int error);

// Whether commits sync files and folder to the disk (they do); off only
// for a benchmark that measures what the syncs cost. Any thread.
void SetSyncing(bool on);
bool Syncing();

// The file operations of the store, by kind. A fault, set by a test, is
// asked before each one with the operation and the file's name in the data
// folder (the folder's own path for SyncFolder): 0 lets it go on, an errno
// makes it fail as the system would with that error. A fault that always
// answers 0 sees the order of the operations.
enum class FileOp { Open, Read, Write, Sync, Rename, Remove, SyncFolder };
using FileFault = std::function<int(FileOp op, const QString &name)>;
void SetFileFault(FileFault fault);
// What the fault answers for op on a native path; 0 when none is set.
int InjectedFault(FileOp op, const QByteArray &path);

// The name of the journal in the data folder, and the suffix of a file
// being written; for the tests that look at what a kill left behind.
extern const char JournalName[];
extern const char NewFileSuffix[];
