#include "appdir.h"

#include <QDir>

namespace {
QString &appDir()
{
    static QString dir;
    return dir;
}
}  // namespace

void SetAppDir(const QString &dir)
{
    appDir() = dir;
}

QString AppDir()
{
    return appDir();
}

QString AppFilePath(const QString &fileName)
{
    return QDir(appDir()).filePath(fileName);
}
