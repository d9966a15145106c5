// quillpost_screenshots OUTDIR [SUFFIX]
// Fills a temporary application folder with sample mail, shows the main
// window and saves the start page, the folder summary and the Inbox with a
// previewed message as OUTDIR/mainwindow-*SUFFIX.png, then the read window
// on a message with an attachment (readwindow), the send-and-receive
// dialog half-way through a run (sendreceive), the about box (about), the
// accounts dialog, the wizard's address page and the account properties
// (accounts-*), and the exercise window beside the main window on a
// 1024x768 screen (exercise-1024x768).

#include "sendrecv/engine.h"
#include "store/appdir.h"
#include "store/folders.h"
#include "store/mailboxes.h"
#include "store/mailstore.h"
#include "store/random.h"
#include "texts.h"
#include "ui/about/frmAbout.h"
#include "ui/accounts/frmMailBox.h"
#include "ui/accounts/frmMailBoxProp.h"
#include "ui/accounts/frmMainBoxAdd2.h"
#include "ui/common/application.h"
#include "ui/common/filechooser.h"
#include "ui/common/fonts.h"
#include "ui/common/forms.h"
#include "ui/common/msgboxprompter.h"
#include "ui/common/twips.h"
#include "ui/exercise/frmExercise.h"
#include "ui/main/foldernodes.h"
#include "ui/main/frmMain.h"
#include "ui/main/messagelist.h"
#include "ui/message/frmMailEdit.h"
#include "ui/message/frmMailRead.h"
#include "ui/sendrecv/frmSendAndReceive.h"

#include <QDir>
#include <QFileDialog>
#include <QPainter>
#include <QLineEdit>
#include <QPixmap>
#include <QPlainTextEdit>
#include <QTabBar>
#include <QTemporaryDir>
#include <QTreeView>
#include <QTest>
#include <QTimer>
#include <QTreeWidget>

#include <cstdio>

using namespace Qt::Literals::StringLiterals;

namespace {

EmailRec mail(const QString &from, const QString &to, const QString &subject,
              const QString &body, const QString &when, bool unread,
              const QString &attachment = QString())
{
    EmailRec m;
    m.id = QString::number(RandomBetween(10000000, 99999999));
    m.from = from;
    m.to = to;
    m.subject = subject;
    m.content = body;
    m.datetime = when;
    m.attachment = attachment;
    m.isnew = unread ? u"1"_s : u"0"_s;
    return m;
}

void writeSampleData()
{
    FolderSet accounts;
    accounts.changeAccounts() = {{u"张伟"_s, u"pop.example.com"_s, u"smtp.example.com"_s, u"zhangwei"_s,
                                  u"secret"_s, u"zhangwei@example.com"_s},
                                 {u"李娜"_s, u"pop.example.com"_s, u"smtp.example.com"_s, u"lina"_s,
                                  u"secret"_s, u"lina@example.com"_s}};
    accounts.commitAndWait();

    MailList inbox(4);
    inbox[0] = mail(u"lina@example.com"_s, u"zhangwei@example.com"_s, u"下周项目例会安排"_s,
                    u"张伟：\r\n\r\n下周一上午九点在三楼会议室召开项目例会，请准备好本月的进度报告。"
                    "\r\n\r\n谢谢！\r\n李娜"_s,
                    u"24-05-13 09:12"_s, true, u"agenda.doc"_s);
    inbox[1] = mail(u"wangfang@example.com"_s, u"zhangwei@example.com"_s, u"培训资料已上传"_s,
                    u"培训资料已上传到共享文件夹，请查收。"_s, u"24-05-12 16:40"_s, true);
    inbox[2] = mail(u"chenjie@example.com"_s, u"zhangwei@example.com;lina@example.com"_s,
                    u"周末聚餐"_s, u"周六晚上六点，老地方见。"_s, u"24-05-10 18:05"_s, false);
    inbox[3] = mail(u"liuyang@example.com"_s, u"zhangwei@example.com"_s, u"季度报表"_s,
                    u"附件是第一季度的报表。"_s, u"24-05-08 11:30"_s, false, u"report.xls"_s);
    FolderSet set;
    set.change(FolderFile::Inbox) = inbox;
    set.change(FolderFile::SentItems) = {mail(u"zhangwei@example.com"_s, u"lina@example.com"_s,
                                              u"回复：会议时间"_s, u"好的，我会准时参加。"_s,
                                              u"24-05-11 10:02"_s, false)};
    set.change(FolderFile::DeletedItems) = {mail(u"news@example.com"_s, u"zhangwei@example.com"_s,
                                                 u"每周新闻摘要"_s, u"本周新闻摘要。"_s,
                                                 u"24-05-06 08:00"_s, true)};
    set.commit();
    store::Flush();
}

// The windows as they lie on a screen of the given size, each in a thin
// frame on the desktop's colour.
bool saveScreen(QSize screen, const QList<QWidget *> &windows, const QString &path)
{
    QCoreApplication::processEvents();
    const qreal ratio = windows.first()->devicePixelRatioF();
    QImage shot(screen * ratio, QImage::Format_RGB32);
    shot.setDevicePixelRatio(ratio);
    shot.fill(QColor(0x3b, 0x6e, 0x8f));
    QPainter p(&shot);
    for (QWidget *w : windows) {
        p.fillRect(w->frameGeometry(), QColor(0x55, 0x55, 0x55));
        p.drawPixmap(w->geometry().topLeft(), w->grab());
    }
    p.end();
    const bool ok = shot.save(path);
    std::printf("%s %s\n", ok ? "wrote" : "FAILED", qPrintable(path));
    return ok;
}

bool save(QWidget *window, const QString &path)
{
    QCoreApplication::processEvents();
    const bool ok = window->grab().save(path);
    std::printf("%s %s\n", ok ? "wrote" : "FAILED", qPrintable(path));
    return ok;
}

void clickItem(QTreeWidget *view, QTreeWidgetItem *item)
{
    const QRect r = view->visualItemRect(item);
    QTest::mouseClick(view->viewport(), Qt::LeftButton, {}, r.center());
}

// The first row of the message list, once its folder is read.
QPoint firstRow(frmMain *w)
{
    store::Flush();
    return w->ListView1->visualRect(w->ListModel->index(0, 0)).center();
}

}  // namespace

int main(int argc, char *argv[])
{
    QuillpostApplication app(argc, argv);
    app.setFont(fonts::uiFont());
    InstallChineseTranslations();
    if (argc < 2) {
        std::fprintf(stderr, "usage: quillpost_screenshots OUTDIR [SUFFIX]\n");
        return 2;
    }
    const QString outDir = QString::fromLocal8Bit(argv[1]);
    const QString suffix = argc > 2 ? QString::fromLocal8Bit(argv[2]) : QString();
    QDir().mkpath(outDir);

    QTemporaryDir data;
    SetAppDir(data.path());
    writeSampleData();

    frmMain *w = forms::Main();
    forms::setMainWindow(w);
    w->show();
    store::Flush();
    bool ok = save(w, outDir + u"/mainwindow-start"_s + suffix + u".png"_s);

    clickItem(w->TreeView1, w->node(Node::LocalFolders));
    ok &= save(w, outDir + u"/mainwindow-summary"_s + suffix + u".png"_s);

    clickItem(w->TreeView1, w->node(Node::Inbox));
    QTest::mouseClick(w->ListView1->viewport(), Qt::LeftButton, {}, firstRow(w));
    ok &= save(w, outDir + u"/mainwindow-inbox"_s + suffix + u".png"_s);

    QTest::mouseDClick(w->ListView1->viewport(), Qt::LeftButton, {}, firstRow(w));
    ok &= save(forms::MailRead(), outDir + u"/readwindow"_s + suffix + u".png"_s);
    forms::MailRead()->close();

    // A reply to the same message, with its quoted block under a first line.
    w->toolbarButton(frmMain::tbReply)->trigger();
    frmMailEdit *reply = forms::MailEdit();
    reply->Text1->moveCursor(QTextCursor::Start);
    reply->Text1->insertPlainText(u"李娜：\n好的，我会准备好进度报告。"_s);
    ok &= save(reply, outDir + u"/compose-reply"_s + suffix + u".png"_s);
    reply->hide();

    frmSendAndReceive *run = forms::SendAndReceive();
    run->SendReceiveMode = SendReceiveModes::ReceiveOnly;
    run->show();
    run->Timer2_Timer();
    for (int tick = 0; tick < 7; ++tick)
        run->Timer1_Timer();
    ok &= save(run, outDir + u"/sendreceive"_s + suffix + u".png"_s);
    run->close();

    frmAbout *about = forms::About();
    about->show();
    ok &= save(about, outDir + u"/about"_s + suffix + u".png"_s);

    frmMailBox *accounts = forms::MailBox();
    accounts->show();
    clickItem(accounts->ListView1, accounts->ListView1->topLevelItem(1));
    ok &= save(accounts, outDir + u"/accounts-dialog"_s + suffix + u".png"_s);

    // The wizard's pages are modal in use; shown modeless here, one at a time.
    frmMainBoxAdd2 *page = forms::MainBoxAdd2();
    page->show();
    QTest::keyClicks(page->Text1, u"lina@example.com"_s);
    ok &= save(page, outDir + u"/accounts-wizard-address"_s + suffix + u".png"_s);
    page->hide();

    // The properties dialog is modal: its pictures are taken from inside.
    frmMailBoxProp *prop = forms::MailBoxProp();
    QTimer::singleShot(0, prop, [&] {
        ok &= save(prop, outDir + u"/accounts-properties"_s + suffix + u".png"_s);
        prop->TabStrip1->setCurrentIndex(1);
        ok &= save(prop, outDir + u"/accounts-properties-servers"_s + suffix + u".png"_s);
        prop->done(QDialog::Rejected);
    });
    prop->openFor({u"李娜"_s, u"lina@example.com"_s, u"pop.example.com"_s, u"smtp.example.com"_s,
                   u"lina"_s, u"secret"_s});

    // A question of the program's own, and the toolkit's file chooser, both
    // in Chinese.
    MessageBoxPrompter boxes;
    QTimer::singleShot(0, &app, [&] {
        QWidget *box = QApplication::activeModalWidget();
        ok &= box && save(box, outDir + u"/messagebox"_s + suffix + u".png"_s);
        if (box)
            static_cast<QDialog *>(box)->reject();
    });
    boxes.confirm(Prompter::Icon::Exclamation, texts::AppTitle, texts::AskDeleteForGood,
                  Prompter::Default::No);
    QFileDialog chooser(nullptr, texts::compose::AttachTitle, data.path(), dialogFilter(texts::compose::AttachFilter));
    PrepareFileDialog(&chooser);
    chooser.show();
    QTest::qWait(500);  // the folder is read in the background
    ok &= save(&chooser, outDir + u"/filechooser"_s + suffix + u".png"_s);
    chooser.hide();

    // The sample exercise of the README beside the Inbox, on the smallest
    // screen it is made for: the main window gives up width, its whole
    // tool bar still in view.
    const QSize screen(1024, 768), design(frmMain::DesignWidth, frmMain::DesignHeight);
    const QPoint corner = twips::nearTopLeft(
        QSize(int(twips::fromPixels(screen.width())), int(twips::fromPixels(screen.height()))), design);
    w->resize(twips::toPixels(design.width()), twips::toPixels(design.height()));
    w->move(twips::toPixels(corner.x()), twips::toPixels(corner.y()));
    frmExercise *exercise = forms::Exercise();
    exercise->setExercise(exercise::ReadExercise(QStringLiteral(SAMPLE_EXERCISE)));
    exercise->openBeside(w, w->narrowestWidth(), false, QRect(QPoint(0, 0), screen));
    ok &= saveScreen(screen, {w, exercise}, outDir + u"/exercise-1024x768"_s + suffix + u".png"_s);

    forms::destroyAll();
    return ok ? 0 : 1;
}
