#pragma once

// Folder and account files for the window tests, written as the program
// writes them (GB18030, CR LF), without going through the store.

#include "testsupport.h"

#include <QList>
#include <QString>
#include <QStringList>

namespace fixtures {

struct Mail
{
    QString id = QStringLiteral("10000001");
    QString from = QStringLiteral("a@x.com");
    QString to = QStringLiteral("b@x.com");
    QString alsoto;
    QString subject = QStringLiteral("hello");
    QString content = QStringLiteral("[body]");  // as stored, brackets included
    QString datetime = QStringLiteral("24-05-13 09:12");
    QString attachment;
    QString isnew = QStringLiteral("0");
};

// A folder file's bytes as the program writes them.
QByteArray folderBytes(const QList<Mail> &mails);
void writeFolder(const testsupport::DataDir &dir, int folder, const QList<Mail> &mails);
// One account per address.
void writeAccounts(const testsupport::DataDir &dir, const QStringList &addresses);
// n messages, the first `unread` of them unread.
QList<Mail> mails(int n, int unread = 0);

}  // namespace fixtures
