#pragma once

// Shared helpers of the tests: a fresh data directory per test, a scripted
// prompter, and fixture files written the way the program writes them.

#include "store/prompter.h"

#include <QByteArray>
#include <QList>
#include <QString>
#include <QStringList>
#include <QTemporaryDir>


namespace testsupport {

// A fresh, empty application directory for as long as the object lives.
class DataDir
{
public:
    DataDir();
    ~DataDir();
    DataDir(const DataDir &) = delete;
    DataDir &operator=(const DataDir &) = delete;

    QString path() const;
    QString filePath(const QString &name) const;

    // Writes lines joined by CR LF (and a CR LF after the last), GB18030.
    void writeLines(const QString &name, const QStringList &lines) const;
    void writeBytes(const QString &name, const QByteArray &bytes) const;
    QByteArray readBytes(const QString &name) const;
    bool exists(const QString &name) const;

private:
    QTemporaryDir m_dir;
    QString m_previous;
};

// GB18030 bytes of a text.
QByteArray gb(const QString &text);
// Lines joined by CR LF, with a CR LF after the last, as GB18030 bytes.
QByteArray crlfLines(const QStringList &lines);

// Expects boxes in order and answers them as scripted. Any box that was not
// expected, or shown with another icon, title or text, fails the running
// test; verify() fails it when an expected box never came.
class ScriptedPrompter final : public Prompter
{
public:
    ScriptedPrompter();   // installs itself
    ~ScriptedPrompter() override;  // goes back to the silent prompter

    void expectMessage(Icon icon, const QString &title, const QString &text);
    void expectConfirm(Icon icon, const QString &title, const QString &text, bool answerYes);

    void message(Icon icon, const QString &title, const QString &text) override;
    bool confirm(Icon icon, const QString &title, const QString &text, Default answer) override;
    // The answer each question offered to Enter, in order.
    QList<Default> defaults() const { return m_defaults; }

    // True when every expected box was shown and nothing else was.
    bool done() const { return m_expected.isEmpty() && m_unexpected.isEmpty(); }
    // Describes what went wrong, for QVERIFY2.
    QByteArray report() const;
    int shown() const { return m_shown; }

private:
    struct Box
    {
        bool isConfirm = false;
        Icon icon = Icon::Information;
        QString title;
        QString text;
        bool answer = false;
    };
    bool take(const Box &got);

    QList<Box> m_expected;
    QStringList m_unexpected;
    QList<Default> m_defaults;
    int m_shown = 0;
};

}  // namespace testsupport
