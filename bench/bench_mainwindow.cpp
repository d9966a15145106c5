// Start-up of the main window, from an existing QApplication to the window
// painted, with a full Inbox and a full Deleted Items (101 messages each),
// beside the same for a bare QMainWindow holding the same widget kinds.

#include "benchutil.h"

#include "store/appdir.h"
#include "store/folders.h"
#include "ui/common/application.h"
#include "ui/common/fonts.h"
#include "ui/common/forms.h"
#include "ui/main/frmMain.h"

#include <QFrame>
#include <QLabel>
#include <QMenuBar>
#include <QPushButton>
#include <QStatusBar>
#include <QTemporaryDir>
#include <QTextEdit>
#include <QToolBar>
#include <QTreeWidget>

using namespace Qt::Literals::StringLiterals;

namespace {

void fillFolder(int folder)
{
    EmailArray mails;
    for (int i = 0; i < MAX_FOLDER_MAILS; ++i) {
        EmailRec &m = mails[i];
        m.id = QString::number(30000000 + i);
        m.from = u"sender%1@example.com"_s.arg(i);
        m.to = u"me@example.com"_s;
        m.subject = u"第 %1 封测试邮件"_s.arg(i);
        m.content = u"正文第一行\r\n正文第二行"_s;
        m.datetime = u"24-05-13 09:12"_s;
        m.attachment = i % 3 == 0 ? u"a.doc"_s : QString();
        m.isnew = i % 2 == 0 ? u"1"_s : u"0"_s;
    }
    SaveEmails(folder, mails, MAX_FOLDER_MAILS);
}

// What the main window is made of, without its files and rules.
void bareWindow()
{
    QMainWindow w;
    for (const char *menu : {"File", "Edit", "View", "Tools", "Message", "Help"}) {
        QMenu *m = w.menuBar()->addMenu(QLatin1StringView(menu));
        for (int i = 0; i < 10; ++i)
            m->addAction(u"item"_s);
    }
    auto *client = new QWidget;
    w.setCentralWidget(client);
    auto *bar = new QToolBar(client);
    bar->setToolButtonStyle(Qt::ToolButtonTextUnderIcon);
    for (int i = 0; i < 14; ++i)
        bar->addAction(u"button"_s);
    auto *tree = new QTreeWidget(client);
    for (int i = 0; i < 7; ++i)
        new QTreeWidgetItem(tree, {u"node"_s});
    tree->setGeometry(0, 80, 180, 500);
    auto *summary = new QTreeWidget(client);
    summary->setColumnCount(3);
    summary->hide();
    auto *page = new QFrame(client);
    page->setGeometry(180, 80, 700, 500);
    auto *list = new QTreeWidget(page);
    list->setColumnCount(6);
    list->setGeometry(0, 0, 700, 250);
    for (int i = 0; i < MAX_FOLDER_MAILS; ++i)
        new QTreeWidgetItem(list, {QString(), QString(), u"sender"_s, u"subject"_s, u"time"_s});
    auto *text = new QTextEdit(page);
    text->setGeometry(0, 280, 700, 220);
    for (int i = 0; i < 9; ++i)
        new QLabel(u"label"_s, page);
    new QPushButton(u"button"_s, client);
    w.statusBar()->addWidget(new QLabel(u"panel"_s));
    w.resize(900, 620);
    w.show();
    w.grab();
}

void mainWindow()
{
    frmMain *w = forms::Main();
    w->show();
    w->grab();
    forms::destroyAll();
}

}  // namespace

int main(int argc, char *argv[])
{
    QuillpostApplication app(argc, argv);
    app.setFont(fonts::uiFont());
    QTemporaryDir dir;
    SetAppDir(dir.path());
    fillFolder(FolderFile::Inbox);
    fillFolder(FolderFile::DeletedItems);

    const double floorMs = bench::medianMs(21, bareWindow);
    const double ms = bench::medianMs(21, mainWindow);
    bench::printRow("main window shown and painted (2 x 101 mails)", ms, floorMs);
    return 0;
}
