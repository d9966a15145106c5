#pragma once

#include <QByteArray>
#include <QList>
#include <QString>

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
class FileCommit
{
public:
    // A file of the data folder, to be replaced by bytes.
    void add(const QString &fileName, const QByteArray &bytes);
    bool isEmpty() const { return m_files.isEmpty(); }

    // Throws FileError. When the renames themselves fail after the journal,
    // the error says that the change will be completed at the next start.
    void run();

private:
    struct File
    {
        QString name;
        QByteArray bytes;
    };
    QList<File> m_files;
};

// Run once at start-up, before anything is read: completes a commit that a
// kill interrupted after its journal, and removes the temporary files of
// one interrupted before it (with those an older version left behind).
// Throws FileError when an interrupted commit cannot be completed.
void RecoverDataFolder();

// The Chinese reason for a failed file operation, by errno: what the user
// can act on (disk full, no permission, a folder in the file's place).
QString FileFailureReason(int error);

// Whether commits sync files and folder to the disk (they do); off only
// for a benchmark that measures what the syncs cost.
void SetSyncing(bool on);
bool Syncing();

// The name of the journal in the data folder, and the suffix of a file
// being written; for the tests that look at what a kill left behind.
extern const char JournalName[];
extern const char NewFileSuffix[];
