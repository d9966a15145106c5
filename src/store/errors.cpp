#include "errors.h"

#include "texts.h"

StoreError::StoreError(const QString &userText, bool filesUnchanged)
    : std::runtime_error(userText.toStdString()),
      m_userText(userText),
      m_filesUnchanged(filesUnchanged)
{
}

IndexError::IndexError(const QString &userText) : StoreError(userText) {}
FormatError::FormatError(const QString &userText) : StoreError(userText) {}
FileError::FileError(const QString &userText, bool filesUnchanged)
    : StoreError(userText, filesUnchanged)
{
}

QString ErrorBoxText(const StoreError &error)
{
    return (error.filesUnchanged() ? texts::OperationAbandoned : texts::OperationIncomplete)
        + QStringLiteral("\r\r") + error.userText();
}
