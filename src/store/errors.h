#pragma once

#include <QString>

#include <stdexcept>

// Errors that end the running operation. Each store routine checks before
// it writes, so an operation ended by one of these has changed no file.
// The application's event guard shows userText() in an error box.
class StoreError : public std::runtime_error
{
public:
    explicit StoreError(const QString &userText);
    QString userText() const { return m_userText; }

private:
    QString m_userText;
};

// A count or position beyond an array's capacity (a 102nd message, a 22nd
// account).
class IndexError : public StoreError
{
public:
    explicit IndexError(const QString &userText);
};

// Malformed stored data, such as a stored body with no brackets.
class FormatError : public StoreError
{
public:
    explicit FormatError(const QString &userText);
};

// A number too large for its 32-bit type.
class OverflowError : public StoreError
{
public:
    explicit OverflowError(const QString &userText);
};

// A data file that could not be written (disk full, no permission).
class FileError : public StoreError
{
public:
    explicit FileError(const QString &userText);
};
