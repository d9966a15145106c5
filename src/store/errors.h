#pragma once

#include <QString>

#include <stdexcept>

// Errors that end the running operation. Each store routine checks before
// it writes, and a command commits its files as one unit, so an operation
// ended by one of these has changed no file unless filesUnchanged() says
// otherwise. The boundary that catches it shows userText() in an error box.
class StoreError : public std::runtime_error
{
public:
    explicit StoreError(const QString &userText, bool filesUnchanged = true);
    QString userText() const { return m_userText; }
    bool filesUnchanged() const { return m_filesUnchanged; }

private:
    QString m_userText;
    bool m_filesUnchanged = true;
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

// A data file that could not be written or read (disk full, no
// permission, a folder in its place).
class FileError : public StoreError
{
public:
    explicit FileError(const QString &userText, bool filesUnchanged = true);
};

// The error box's text: "nothing changed" or "not all done" as the error
// says, CR CR, the reason.
QString ErrorBoxText(const StoreError &error);
