#pragma once

#include <QDateTime>
#include <QObject>
#include <QString>
#include <QTimer>

#include <chrono>
#include <memory>

class QLockFile;

// One copy of the program per data folder. The copy that opens a folder
// holds a lock file in it for as long as it runs, so that no second copy
// deletes the files the first one is writing or writes over its changes.
// A lock whose process is gone from this machine is taken at once; a lock
// of another machine (a folder on a share) is that machine's until it goes
// unrenewed for StalePeriod, and then it is for the user to say whether that
// copy is really gone.
//
// The holder renews its lock every RefreshPeriod: often enough that a lost
// minute or two of a busy or sleeping machine does not make it look gone,
// rarely enough to cost nothing on a share. Five minutes unrenewed is five
// renewals missed, and leaves room for machine clocks that are minutes
// apart, as classroom clocks may be; a trainee whose machine died waits no
// longer than that before the folder is offered on another one.
class DataFolderLock final : public QObject
{
    Q_OBJECT

public:
    enum class State {
        Held,            // this copy holds the folder
        HeldHere,        // another copy on this machine holds it
        HeldElsewhere,   // a copy on another machine holds it and renews its lock
        StaleElsewhere,  // another machine's lock, unrenewed for StalePeriod
        Unavailable,     // no lock can be made or read there
    };
    static constexpr std::chrono::seconds RefreshPeriod{60};
    static constexpr std::chrono::minutes StalePeriod{5};

    explicit DataFolderLock(const QString &dir);
    // Lets the folder go; a lock another copy took over is left to it.
    ~DataFolderLock() override;

    State tryHold();
    // Once the user agreed: removes the stale lock of another machine that
    // tryHold() found, and no other, and holds the folder.
    State takeOver();
    bool isHeld() const { return m_held; }

    // Of the lock that kept this copy out.
    qint64 holderPid() const { return m_holderPid; }
    QString holderMachine() const { return m_holderMachine; }
    qint64 minutesUnrenewed() const;

signals:
    // Another copy took the folder over while this one ran; from then on
    // the program is read-only. why names the machine, for the user.
    void lost(const QString &why);

private:
    void hold();
    // Empty while the lock file is still the one this copy made; else why
    // nothing may be written any more.
    QString stillOurs();
    void renew();

    QString m_dir;
    QString m_path;
    std::unique_ptr<QLockFile> m_lock;
    bool m_held = false;
    bool m_lost = false;
    quint64 m_device = 0, m_inode = 0;
    qint64 m_holderPid = 0;
    QString m_holderMachine;
    QDateTime m_holderRenewed;
    QTimer m_renewal;
};

// Start-up's work on the data folder before anything is read: holding it,
// and only once it is held, completing a change a kill interrupted and
// removing what such changes left (RecoverDataFolder). takeOverStale is the
// user's yes to taking over a stale lock of another machine. Throws the
// recovery's FileError with the folder held.
DataFolderLock::State OpenDataFolder(DataFolderLock &lock, bool takeOverStale = false);

// The name of the lock file in the data folder.
extern const char LockFileName[];

// The name of this machine: the host name unless set. Locks are compared by
// it, and the class folder shows it; tests give it another one to play a
// second machine, whose locks and mail this one then meets.
QString MachineName();
void SetMachineName(const QString &name);  // empty: the real one

// The local socket through which copies of one user on this machine find
// the copy that shows a folder: one name per folder, however it was named.
QString LocalServerName(const QString &dir);
