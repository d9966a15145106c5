#pragma once

// Shared ground of the window tests: folder and account files written as the
// program writes them (GB18030, CR LF) without going through the store, the
// clicks a user makes, and a test object with a fresh data folder and a
// scripted prompter for every test function.

#include "store/records.h"
#include "testsupport.h"

#include <QList>
#include <QObject>
#include <QPoint>
#include <QString>
#include <QStringList>

#include <memory>

class QAction;
class QToolBar;
class QTreeWidget;
class QTreeWidgetItem;
class frmMain;

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
Mail addressed(const QString &id, const QString &from, const QString &to);

// What the store reads back: the records, or their ids joined by "|".
QList<EmailRec> stored(int folder);
QString ids(int folder);
// The six folder files and mailbox.dat, for "nothing was written".
QByteArray allFiles(const testsupport::DataDir &dir);

void clickItem(QTreeWidget *view, QTreeWidgetItem *item);
void clickRow(QTreeWidget *list, int row);
// A user's double-click: the first click lands before the second press.
void doubleClickAt(QTreeWidget *list, QPoint at);
void doubleClickRow(QTreeWidget *list, int row);
// A point in the empty space below the last row.
QPoint belowRows(QTreeWidget *list);
void clickButton(QToolBar *bar, QAction *button);
void clickButton(frmMain *w, int index);
// The main window shown, on a tree node and a previewed row when given.
frmMain *mainOn(int node = 0, int row = -1);

// A fresh data folder and a scripted prompter for each test function;
// cleanup fails the test when a scripted box never came.
class WindowTest : public QObject
{
protected:
    void begin();
    void end();
    std::unique_ptr<testsupport::DataDir> dir;
    std::unique_ptr<testsupport::ScriptedPrompter> boxes;
};

}  // namespace fixtures
