#pragma once

// Shared ground of the tests: a fresh data folder, a scripted prompter, and
// messages and accounts written the way the program writes them.

#include "store/prompter.h"
#include "store/records.h"

#include <QByteArray>
#include <QDir>
#include <QFileInfo>
#include <QList>
#include <QString>
#include <QStringList>
#include <QTemporaryDir>

namespace testsupport {

using Icon = Prompter::Icon;

// A fresh, empty data folder for as long as the object lives. Each look at its
// files, and its end, first waits for the store's writer (store::Flush).
class DataDir
{
public:
    DataDir();
    ~DataDir();
    Q_DISABLE_COPY(DataDir)

    QString path() const { return m_dir.path(); }
    QString filePath(const QString &name) const { return QDir(m_dir.path()).filePath(name); }
    // Written beside and renamed into place, as another program saving
    // the file would, so that the store sees a new file.
    void writeBytes(const QString &name, const QByteArray &bytes) const;
    QByteArray readBytes(const QString &name) const;
    bool exists(const QString &name) const { return QFileInfo::exists(filePath(name)); }
    // The names in the folder, sorted.
    QStringList entries() const;

private:
    QTemporaryDir m_dir;
    QString m_previous;
};

// GB18030 bytes of a text.
QByteArray gb(const QString &text);
// Lines joined by CR LF, with a CR LF after the last, as GB18030 bytes.
QByteArray crlfLines(const QStringList &lines);

// A message: the rest of its fields are plain ("body", a date, read).
EmailRec mail(const QString &id, const QString &from = QStringLiteral("a@x.com"),
              const QString &to = QStringLiteral("b@x.com"),
              const QString &subject = QStringLiteral("hello"), bool unread = false);
// n messages, ids first, first+1, ..., subjects "s<id>", the first `unread` unread.
MailList mails(int n, int unread = 0, int first = 20000000);
// Writes a folder or the accounts (one per address) as the program would.
void put(const DataDir &dir, int folder, const MailList &mails);
void putAccounts(const DataDir &dir, const QStringList &addresses);
// One field of each message, in order.
QStringList fieldOf(const MailList &mails, QString EmailRec::*field);
// What the store reads back, and the ids of it joined by "|".
MailList stored(int folder);
QString ids(int folder);
// Whether two lists of records are equal, down to the bytes and values each was read from.
bool sameAsStored(const MailList &a, const MailList &b);
// The seven files' bytes, for "nothing was written".
QByteArray allFiles(const DataDir &dir);

// A program run to its end on the offscreen platform, with variables set in its environment: its exit
// code (-1 when it crashed or ran a minute) and its output.
struct Run { int exitCode = -1; QString out, err; };
Run runProgram(const QString &program, const QStringList &args, const QList<std::pair<QString, QString>> &variables = {});

// Expects boxes in order and answers them as scripted. Any box that was not
// expected, or shown with another icon, title, text or answer for Enter, fails
// the running test; done() is false while an expected box never came.
class ScriptedPrompter final : public Prompter
{
public:
    ScriptedPrompter();   // installs itself
    ~ScriptedPrompter() override;  // goes back to the silent prompter

    void expectMessage(Icon icon, const QString &title, const QString &text);
    void expectConfirm(Icon icon, const QString &title, const QString &text, bool answerYes, Default enter = Default::No);

    void message(Icon icon, const QString &title, const QString &text) override;
    bool confirm(Icon icon, const QString &title, const QString &text, Default answer) override;

    bool done() const { return m_expected.isEmpty() && m_wrong.isEmpty(); }
    QByteArray report() const;

private:
    bool take(const QString &box);

    QList<QPair<QString, bool>> m_expected;  // a box described, and its answer
    QStringList m_wrong;
};

}  // namespace testsupport
