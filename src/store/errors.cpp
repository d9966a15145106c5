#include "errors.h"

StoreError::StoreError(const QString &userText)
    : std::runtime_error(userText.toStdString()), m_userText(userText)
{
}

IndexError::IndexError(const QString &userText) : StoreError(userText) {}
FormatError::FormatError(const QString &userText) : StoreError(userText) {}
OverflowError::OverflowError(const QString &userText) : StoreError(userText) {}
FileError::FileError(const QString &userText) : StoreError(userText) {}
