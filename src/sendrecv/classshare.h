#pragma once

#include "store/records.h"

#include <QByteArray>
#include <QList>
#include <QMap>
#include <QString>

#include <functional>

// The work a class run does in the class folder, off the window's thread.
// It is handed copies of all it needs and touches no data folder: what it
// found goes back to the window's thread, which takes it in one commit.
//
// The class folder holds one member folder per data folder, written only
// by that data folder's runs: message n is the file n.dat (one message in
// the folder file format, then an [end] line that a cut-off copy lacks),
// put in place by writing n.dat.part, syncing it and renaming it, so a
// reader sees the whole file or none; status.dat tells the trainer what
// the member did. Nothing is ever rewritten in place and nothing is
// locked, so no machine waits for another, dead or alive.
namespace classroom {

inline const QString StatusFileName = QStringLiteral("status.dat");
inline constexpr char PartSuffix[] = ".part";

// "00000042.dat": the number, so that a listing sorts as the sending did.
QString MessageFileName(qint64 number);
QByteArray MessageFileBytes(const EmailRec &m);
// The message of a file's bytes; false for a file that is not one, or is
// cut short.
bool ParseMessageFile(const QByteArray &bytes, EmailRec *m);

struct ShareJob
{
    QString classDir;
    QString member;
    // The outgoing messages' files, numbered from first on.
    qint64 first = 0;
    QList<QByteArray> outgoing;
    // Whether to look for mail; a send-only run does not.
    bool scan = false;
    // Per member folder, the smallest number a local address has not yet
    // considered (0 for a member folder not met before), and the numbers
    // to try again.
    QMap<QString, qint64> from;
    QMap<QString, QList<qint64>> retry;
};

struct ShareFile
{
    enum Kind { Mail, Damaged, Unreadable };
    QString member;
    qint64 number = 0;
    Kind kind = Mail;
    EmailRec mail;
    QString why;  // for Damaged and Unreadable: the reason
};

struct ShareOutcome
{
    // The data folder's commit that numbered the outgoing mail failed: the
    // job did nothing, and nothing of it is to be taken.
    bool notRun = false;
    // Why the class folder cannot be used; empty when it can. Publishing
    // can fail (a full or read-only share) while reading still works.
    QString away;
    // The member folder, which had mail in it, is gone from a class folder
    // that others use: the data folder takes a new one.
    bool memberGone = false;
    // How many outgoing messages stand in the member folder now, from the
    // first on.
    int published = 0;
    // Per member folder looked at, the end of the numbers considered: each
    // number from `from` up to it is in files, as mail, damaged or
    // unreadable. Retried numbers are in files as well.
    QMap<QString, qint64> scannedTo;
    QList<ShareFile> files;
};

ShareOutcome RunShareJob(const ShareJob &job);

// Puts status.dat in place in the member folder; the reason when it could
// not, else an empty text.
QString WriteStatus(const QString &classDir, const QString &member, const QByteArray &bytes);

// Called at the start of every piece of work in the class folder; tests
// make the share slow with it.
void SetShareHook(std::function<void()> hook);

// At most this many new files are taken from one member folder in a run,
// so that a new address going through a long history does it in steps.
inline constexpr int MaxFilesPerMember = 400;

}  // namespace classroom
