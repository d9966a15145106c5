#include "datafolder.h"

#include <QCoreApplication>
#include <QFileInfo>
#include <QStandardPaths>

using namespace Qt::Literals::StringLiterals;

namespace {
// Where an installed copy may live. Besides the system's prefixes, a copy
// installed anywhere else (cmake --install --prefix ~/programs, or staged
// into a DESTDIR) is known by the menu entry installed next to its bin/.
QStringList installPrefixes(const QString &exeDir)
{
    QStringList prefixes = {u"/usr"_s, u"/usr/local"_s, u"/opt"_s};
    const QFileInfo bin(exeDir);
    const QString prefix = bin.absolutePath();
    if (bin.fileName() == u"bin"
        && QFileInfo::exists(prefix + u"/share/applications/"_s + QStringLiteral(QUILLPOST_APP_ID)
                             + u".desktop"_s))
        prefixes.append(prefix);
    return prefixes;
}
}  // namespace

DataDirFacts DataDirFactsHere(const QString &requestedDir,
                              std::function<bool(const QString &dir)> canWrite)
{
    const QString exeDir = QCoreApplication::applicationDirPath();
    return {exeDir, installPrefixes(exeDir), requestedDir,
            QStandardPaths::writableLocation(QStandardPaths::AppDataLocation), std::move(canWrite)};
}
