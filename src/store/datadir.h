#pragma once

#include <QString>
#include <QStringList>

#include <functional>

// Which folder holds the seven data files. The rule is kept apart from the
// file system so that every case can be tried without a real /usr: main()
// gathers the facts and passes them in.
struct DataDirFacts
{
    QString executableDir;        // absolute, symlinks resolved
    QStringList installPrefixes;  // e.g. /usr, /usr/local: never written to
    QString requestedDir;         // from --data-dir, absolute; empty when not given
    QString perUserDir;           // the desktop's per-user data folder for this program
    // True when files can be created in the folder (creating it if missing).
    std::function<bool(const QString &dir)> canWrite;
};

struct DataDirChoice
{
    QString dir;
    bool readOnly = false;
    // What the user is told at start-up; empty when all is well.
    QString problem;
};

DataDirChoice ChooseDataDir(const DataDirFacts &facts);
