#include "appdir.h"

#include "texts.h"

#include <QDir>

namespace {
QString &appDir()
{
    static QString dir;
    return dir;
}

bool &readOnly()
{
    static bool value = false;
    return value;
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

void SetDataReadOnly(bool value)
{
    readOnly() = value;
}

bool DataReadOnly()
{
    return readOnly();
}

QString DataReadOnlyText()
{
    return texts::datadir::SaveRefused.arg(QDir::toNativeSeparators(appDir()));
}
