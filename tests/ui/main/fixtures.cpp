#include "fixtures.h"

#include "store/folders.h"
#include "store/state.h"
#include "ui/common/forms.h"
#include "ui/main/frmMain.h"

#include <QTest>
#include <QToolBar>
#include <QTreeWidget>

using namespace Qt::Literals::StringLiterals;

namespace fixtures {

QByteArray folderBytes(const QList<Mail> &mails)
{
    QStringList lines = {u"[email]"_s, u"number="_s + QString::number(mails.size()), QString()};
    for (int k = 1; k <= mails.size(); ++k) {
        const Mail &m = mails.at(k - 1);
        lines << u"[email-%1]"_s.arg(k) << u"id="_s + m.id << u"from="_s + m.from
              << u"to="_s + m.to << u"alsoto="_s + m.alsoto << u"subject="_s + m.subject
              << u"content="_s + m.content << u"datetime="_s + m.datetime
              << u"attachment="_s + m.attachment << u"isnew="_s + m.isnew << QString();
    }
    return testsupport::crlfLines(lines);
}

void writeFolder(const testsupport::DataDir &dir, int folder, const QList<Mail> &mails)
{
    dir.writeBytes(FolderFile::fileName(folder), folderBytes(mails));
}

void writeAccounts(const testsupport::DataDir &dir, const QStringList &addresses)
{
    QStringList lines = {u"[mailbox]"_s, u"number="_s + QString::number(addresses.size()),
                         QString()};
    for (int k = 1; k <= addresses.size(); ++k) {
        lines << u"[mailbox-%1]"_s.arg(k) << u"name=n%1"_s.arg(k) << u"pop=pop"_s
              << u"smtp=smtp"_s << u"username=u"_s << u"userpassword=p"_s
              << u"address="_s + addresses.at(k - 1) << QString();
    }
    dir.writeLines(MailBoxFileName, lines);
}

QList<Mail> mails(int n, int unread)
{
    QList<Mail> list;
    for (int i = 0; i < n; ++i) {
        Mail m;
        m.id = QString::number(20000000 + i);
        m.from = u"sender%1@x.com"_s.arg(i);
        m.to = u"rcpt%1@x.com"_s.arg(i);
        m.subject = u"subject %1"_s.arg(i);
        m.content = u"[body %1]"_s.arg(i);
        m.isnew = i < unread ? u"1"_s : u"0"_s;
        list.append(m);
    }
    return list;
}

Mail addressed(const QString &id, const QString &from, const QString &to)
{
    Mail m;
    m.id = id;
    m.from = from;
    m.to = to;
    return m;
}

QList<EmailRec> stored(int folder)
{
    EmailArray mails;
    MailCount count = 0;
    LoadEmails(folder, mails, count);
    return QList<EmailRec>(mails.begin(), mails.begin() + count);
}

QString ids(int folder)
{
    QStringList list;
    for (const EmailRec &m : stored(folder))
        list << m.id;
    return list.join(u'|');
}

QByteArray allFiles(const testsupport::DataDir &dir)
{
    QByteArray all;
    for (int f = 0; f < FolderFile::Count; ++f)
        all += dir.readBytes(FolderFile::fileName(f)) + '|';
    return all + dir.readBytes(MailBoxFileName);
}

void clickItem(QTreeWidget *view, QTreeWidgetItem *item)
{
    QTest::mouseClick(view->viewport(), Qt::LeftButton, {}, view->visualItemRect(item).center());
}

void clickRow(QTreeWidget *list, int row)
{
    clickItem(list, list->topLevelItem(row));
}

void doubleClickAt(QTreeWidget *list, QPoint at)
{
    QTest::mouseClick(list->viewport(), Qt::LeftButton, {}, at);
    QTest::mouseDClick(list->viewport(), Qt::LeftButton, {}, at);
}

void doubleClickRow(QTreeWidget *list, int row)
{
    doubleClickAt(list, list->visualItemRect(list->topLevelItem(row)).center());
}

QPoint belowRows(QTreeWidget *list)
{
    const QRect last = list->visualItemRect(list->topLevelItem(list->topLevelItemCount() - 1));
    return QPoint(last.center().x(), last.bottom() + 3 * last.height());
}

void clickButton(QToolBar *bar, QAction *button)
{
    QTest::mouseClick(bar->widgetForAction(button), Qt::LeftButton);
}

void clickButton(frmMain *w, int index)
{
    clickButton(w->Toolbar1, w->toolbarButton(index));
}

frmMain *mainOn(int node, int row)
{
    frmMain *w = forms::Main();
    w->show();
    QCoreApplication::processEvents();
    if (node > 0)
        clickItem(w->TreeView1, w->node(node));
    if (row >= 0 && row < w->ListView1->topLevelItemCount())
        clickRow(w->ListView1, row);
    return w;
}

void WindowTest::begin()
{
    dir = std::make_unique<testsupport::DataDir>();
    boxes = std::make_unique<testsupport::ScriptedPrompter>();
    Main::resetState();
}

void WindowTest::end()
{
    Main::gbModified = false;  // edits left in a window would ask on the way out
    forms::destroyAll();
    QVERIFY2(boxes->done(), boxes->report());
    boxes.reset();
    dir.reset();
}

}  // namespace fixtures
