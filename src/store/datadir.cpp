#include "datadir.h"

#include "texts.h"

#include <QDir>

namespace {
// True when dir is prefix itself or lies below it; /usr/local2 is not below
// /usr/local.
bool isInsideFolder(const QString &dir, const QString &prefix)
{
    const QString d = QDir::cleanPath(dir);
    const QString p = QDir::cleanPath(prefix);
    return d == p || d.startsWith(p + u'/');
}

bool isInstalled(const DataDirFacts &facts)
{
    for (const QString &prefix : facts.installPrefixes) {
        if (isInsideFolder(facts.executableDir, prefix))
            return true;
    }
    return false;
}

DataDirChoice writableOrReadOnly(const DataDirFacts &facts, const QString &dir)
{
    if (facts.canWrite(dir))
        return {dir, false, QString()};
    return {dir, true, texts::datadir::CannotWrite.arg(QDir::toNativeSeparators(dir))};
}
}  // namespace

DataDirChoice ChooseDataDir(const DataDirFacts &facts)
{
    // A folder named on the command line is what the trainer handed out:
    // never swap it silently for another one, even when it cannot be written.
    if (!facts.requestedDir.isEmpty())
        return writableOrReadOnly(facts, QDir::cleanPath(facts.requestedDir));

    // A copy in a folder of its own (the build tree, a USB stick) keeps its
    // data beside it, as the program always did. An installed copy never
    // does, even for root, who could write there: the files would be shared
    // by every user and left behind by the package manager.
    const QString exeDir = QDir::cleanPath(facts.executableDir);
    if (!isInstalled(facts) && facts.canWrite(exeDir))
        return {exeDir, false, QString()};

    return writableOrReadOnly(facts, QDir::cleanPath(facts.perUserDir));
}
