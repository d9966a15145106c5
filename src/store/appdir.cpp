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

QString &readOnlyReason()
{
    static QString reason;
    return reason;
}

std::function<QString()> &writeCheck()
{
    static std::function<QString()> check;
    return check;
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
    readOnlyReason().clear();
}

bool DataReadOnly()
{
    if (!readOnly() && writeCheck()) {
        const QString why = writeCheck()();
        if (!why.isEmpty()) {
            readOnly() = true;
            readOnlyReason() = why;
        }
    }
    return readOnly();
}

QString DataReadOnlyText()
{
    if (!readOnlyReason().isEmpty())
        return readOnlyReason();
    return texts::datadir::SaveRefused.arg(QDir::toNativeSeparators(appDir()));
}

void SetWriteCheck(std::function<QString()> check)
{
    writeCheck() = std::move(check);
}
